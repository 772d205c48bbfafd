#include "TextLink.h"

#include "ConstituentLook.h"
#include "base/Guard.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPainter>

#include <cmath>

namespace tavrin {

TextLink::TextLink(QWidget* parent)
    : QAbstractButton(parent)
    , m_font([this] {
        setFont(wholeFont(m_font));
        updateGeometry();
    })
{
    setFont(wholeFont(m_font));
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::PointingHandCursor);
    setAttribute(Qt::WA_Hover);
    connectGuarded(this, &QAbstractButton::clicked, this, "TextLink_Click", [this] { Click.raise(); });
}

void TextLink::SetCaption(const QString& caption)
{
    m_caption = caption;
    setAccessibleName(caption);
    updateGeometry();
    update();
}

void TextLink::SetFont(const FontPtr& font)
{
    m_font.set(font);
}

void TextLink::SetForeColor(Color color)
{
    m_foreColor = color;
    update();
}

void TextLink::SetHighlightColor(Color color)
{
    m_highlightColor = color;
    update();
}

void TextLink::SetDisabledColor(Color color)
{
    m_disabledColor = color;
    update();
}

QSize TextLink::sizeHint() const
{
    const auto textWidth = static_cast<int>(std::ceil(QFontMetricsF(font()).horizontalAdvance(m_caption)));
    return {textWidth, QFontMetrics(font()).height()};
}

void TextLink::keyPressEvent(QKeyEvent* event)
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

QColor TextLink::textColor(bool isHovered) const
{
    if (!isEnabled())
        return shownColor(*this, m_disabledColor);
    return shownColor(*this, isHovered ? m_highlightColor : m_foreColor);
}

void TextLink::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const bool isHovered = isEnabled() && (underMouse() || isDown());
    QFont shown = font();
    shown.setUnderline(shown.underline() || isHovered);
    painter.setFont(shown);
    painter.setPen(textColor(isHovered));
    painter.drawText(rect(), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                     fontMetrics().elidedText(m_caption, Qt::ElideRight, width()));
    if (hasFocus()) {
        painter.setPen(QPen(QApplication::palette(this).color(QPalette::Highlight), 1));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(rect().adjusted(0, 0, -1, -1));
    }
}

} // namespace tavrin
