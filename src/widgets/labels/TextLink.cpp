#include "widgets/labels/TextLink.h"

#include "widgets/drawing/ConstituentLook.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace tavrin {

namespace {

constexpr double LeastContrast = 4.5;

double luminance(const QColor& color)
{
    const auto linear = [](double channel) {
        return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double contrast(const QColor& a, const QColor& b)
{
    const double one = luminance(a);
    const double other = luminance(b);
    return (std::max(one, other) + 0.05) / (std::min(one, other) + 0.05);
}

/// The system's highlight is made to lie behind a text. Where a text in it cannot be read on the widget's
/// window, the theme's colour of links stands for it.
QColor textColor(const QWidget& widget, Color color)
{
    const QColor shown = shownColor(widget, color);
    const QPalette& palette = widget.palette();
    const bool isUnreadable =
        color == SystemColor::Highlight && contrast(shown, palette.color(QPalette::Window)) < LeastContrast;
    return isUnreadable ? palette.color(QPalette::Link) : shown;
}

} // namespace

TextLink::TextLink(QWidget* parent)
    : LinkButton(parent)
{
    setFocusPolicy(Qt::TabFocus);
    fit();
}

void TextLink::SetCaption(const QString& caption)
{
    m_caption = caption;
    applyName();
    fit();
    update();
}

void TextLink::SetDisabledColor(Color color)
{
    m_disabledColor = color;
    update();
}

void TextLink::SetHighlightColor(Color color)
{
    m_highlightColor = color;
    m_hasHighlightColor = true;
    update();
}

void TextLink::SetHoverUnderline(bool underline)
{
    m_hoverUnderline = underline;
    update();
}

QSize TextLink::sizeHint() const
{
    const QFontMetricsF metrics(font());
    return {qRound(metrics.horizontalAdvance(m_caption)), qRound(metrics.height())};
}

void TextLink::paintContent(QPainter& painter)
{
    const Color color = !isEnabled() ? m_disabledColor : isHovered() ? HighlightColor() : ForeColor();
    QFont shown = font();
    shown.setUnderline(shown.underline() || (m_hoverUnderline && isHovered()));
    painter.setFont(shown);
    painter.setPen(textColor(*this, color));
    const bool isSign = std::none_of(m_caption.cbegin(), m_caption.cend(),
                                     [](QChar character) { return character.isLetterOrNumber(); });
    if (!isSign) {
        painter.drawText(rect(), Qt::AlignCenter | Qt::TextDontClip, m_caption);
        return;
    }
    // In a line of a text a sign stands lower or higher than the middle, from font to font.
    const QFontMetricsF metrics(shown);
    const QPointF middle = QRectF(visiblePart()).center();
    painter.drawText(QPointF((width() - metrics.horizontalAdvance(m_caption)) / 2,
                             middle.y() - metrics.tightBoundingRect(m_caption).center().y()),
                     m_caption);
}

} // namespace tavrin
