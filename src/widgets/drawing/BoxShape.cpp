#include "widgets/drawing/BoxShape.h"

#include "widgets/drawing/ConstituentLook.h"

#include <QApplication>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace tavrin {

BoxShape::BoxShape(QWidget* parent)
    : QWidget(parent)
{
    installAccessibleRole<BoxShape, QAccessible::Whitespace>(); // nothing that a screen reader would tell
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    lower();
}

void BoxShape::SetBorderColor(Color color)
{
    m_borderColor = color;
    update();
}

void BoxShape::SetBackColor(Color color)
{
    m_backColor = color;
    update();
}

void BoxShape::SetFilled(bool filled)
{
    m_filled = filled;
    update();
}

void BoxShape::paintEvent(QPaintEvent*)
{
    const QPalette palette = QApplication::palette(this);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    // As many whole pixels of the screen as fit into one of ours: half of one would look smeared.
    const qreal line = std::max(1.0, std::floor(devicePixelRatioF())) / devicePixelRatioF();
    painter.setPen(QPen(m_borderColor.resolve(palette), line));
    painter.setBrush(m_filled ? QBrush(m_backColor.resolve(palette)) : QBrush());
    const qreal inset = line / 2;
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), Radius, Radius);
}

} // namespace tavrin
