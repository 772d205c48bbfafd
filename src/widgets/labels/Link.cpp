#include "widgets/labels/Link.h"

#include "widgets/drawing/ConstituentLook.h"
#include "widgets/drawing/IconGlyphs.h"

#include <QPainter>

namespace tavrin {

namespace {

constexpr float DisabledSign = 0.6F; // it answers nothing; its owner may keep its colour

/// The character of a code; "" for a code that has none.
QString characterOf(int code)
{
    const auto character = static_cast<char32_t>(code);
    const bool isCharacter =
        code > 0 && character <= QChar::LastValidCodePoint && !QChar::isSurrogate(character);
    return isCharacter ? QString::fromUcs4(&character, 1) : QString();
}

} // namespace

Link::Link(QWidget* parent)
    : LinkButton(parent)
{
    setFocusPolicy(Qt::NoFocus);
    fit();
}

void Link::SetSymbol(int glyph)
{
    m_symbol = glyph;
    applyName();
    update();
}

QString Link::contentName() const
{
    return isIconGlyph(m_symbol) ? iconGlyphName(m_symbol) : characterOf(m_symbol);
}

QSize Link::sizeHint() const
{
    constexpr int above = 2; // a line of a text beside it, and room to hit
    const int side = QFontMetrics(font()).height();
    return {side, side + 2 * above};
}

void Link::paintContent(QPainter& painter)
{
    QColor color = shownColor(*this, ForeColor());
    if (!isEnabled())
        color.setAlphaF(DisabledSign);
    if (isIconGlyph(m_symbol)) {
        // The sign is as large as the font, whatever place the link was given.
        QRectF box(QPointF(), sizeHint());
        box.moveCenter(QRectF(rect()).center());
        paintIconGlyph(painter, m_symbol, box, color);
        return;
    }
    painter.setPen(color);
    painter.drawText(rect(), Qt::AlignCenter | Qt::TextDontClip, characterOf(m_symbol));
}

} // namespace tavrin
