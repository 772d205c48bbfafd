#include "widgets/labels/LinkButton.h"

#include "base/failure/Guard.h"
#include "widgets/drawing/ConstituentLook.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPainter>

namespace tavrin {

namespace {

constexpr qreal Radius = 3;
constexpr float HoverTint = 0.10F;
constexpr float PressedTint = 0.20F;

} // namespace

LinkButton::LinkButton(QWidget* parent)
    : QAbstractButton(parent)
    , m_font([this] { fit(); })
{
    setCursor(Qt::PointingHandCursor);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connectGuarded(this, &QAbstractButton::clicked, this, "Link_Click", [this] { Click.raise(); });
}

void LinkButton::SetFont(const FontPtr& font)
{
    m_font.set(font);
}

void LinkButton::SetForeColor(Color color)
{
    m_foreColor = color;
    update();
}

void LinkButton::SetToolTipText(const QString& text)
{
    m_toolTipText = text;
    setPlainToolTip(*this, text);
    applyName();
}

void LinkButton::applyName()
{
    setAccessibleName(m_toolTipText.isEmpty() ? contentName() : m_toolTipText);
}

void LinkButton::fit()
{
    setFont(wholeFont(m_font));
    resize(sizeHint());
    updateGeometry();
}

void LinkButton::keyPressEvent(QKeyEvent* event)
{
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!isEnter) {
        QAbstractButton::keyPressEvent(event);
        return;
    }
    event->accept();
    if (!event->isAutoRepeat())
        click(); // a handler may delete the link
}

QRect LinkButton::visiblePart() const
{
    return parentWidget() ? rect().intersected(parentWidget()->rect().translated(-pos())) : rect();
}

void LinkButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRect shown = visiblePart();
    if (isTinted() && isEnabled() && (underMouse() || isDown())) {
        QColor tint = shownColor(*this, m_foreColor);
        tint.setAlphaF(isDown() ? PressedTint : HoverTint);
        painter.setPen(Qt::NoPen);
        painter.setBrush(tint);
        painter.drawRoundedRect(shown, Radius, Radius);
    }
    paintContent(painter);
    if (hasFocus()) {
        painter.setPen(QPen(QApplication::palette(this).color(QPalette::Highlight), 1));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(shown).adjusted(0.5, 0.5, -0.5, -0.5), Radius, Radius);
    }
}

} // namespace tavrin
