#include "attachments/section/CameraPicture.h"

#include <QPaintEvent>
#include <QPainter>
#include <QPainterPath>

namespace tavrin {

namespace {

constexpr qreal Side = 48; // the path is drawn in a box of this side
constexpr qreal Line = 2.5;

/// The body with the hump of the view-finder.
QPainterPath body()
{
    QPainterPath box;
    box.addRoundedRect(QRectF(5, 14, 38, 26), 4, 4);
    QPainterPath hump;
    hump.moveTo(15, 15);
    hump.lineTo(18.5, 9);
    hump.lineTo(29.5, 9);
    hump.lineTo(33, 15);
    hump.closeSubpath();
    return box.united(hump);
}

} // namespace

CameraPicture::CameraPicture(QWidget* parent)
    : QWidget(parent)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void CameraPicture::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(width() / Side, height() / Side);
    const QColor quiet = palette().color(QPalette::PlaceholderText);
    painter.setPen(QPen(quiet, Line, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(body());
    painter.drawEllipse(QPointF(24, 27), 8, 8);
    painter.drawPoint(QPointF(37, 20));
}

} // namespace tavrin
