#include "Link.h"

#include "ConstituentLook.h"
#include "IconGlyphs.h"
#include "base/Guard.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPainter>

namespace tavrin {

namespace {

constexpr float DisabledSign = 0.6F; // it answers nothing; its owner may keep its colour
constexpr qreal Radius = 3;
constexpr float HoverTint = 0.10F;
constexpr float PressedTint = 0.20F;

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
    : QAbstractButton(parent)
    , m_font([this] { fit(); })
{
    setFocusPolicy(Qt::NoFocus);
    setCursor(Qt::PointingHandCursor);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connectGuarded(this, &QAbstractButton::clicked, this, "Link_Click", [this] { Click.raise(); });
    fit();
}

void Link::SetFont(const FontPtr& font)
{
    m_font.set(font);
}

void Link::SetSymbol(int glyph)
{
    m_symbol = glyph;
    applyName();
    update();
}

void Link::SetForeColor(Color color)
{
    m_foreColor = color;
    update();
}

void Link::SetToolTipText(const QString& text)
{
    m_toolTipText = text;
    setPlainToolTip(*this, text);
    applyName();
}

void Link::applyName()
{
    const QString signName = isIconGlyph(m_symbol) ? iconGlyphName(m_symbol) : characterOf(m_symbol);
    setAccessibleName(m_toolTipText.isEmpty() ? signName : m_toolTipText);
}

QSize Link::sizeHint() const
{
    constexpr int above = 2; // a line of a text beside it, and room to hit
    const int side = QFontMetrics(font()).height();
    return {side, side + 2 * above};
}

void Link::fit()
{
    setFont(wholeFont(m_font));
    resize(sizeHint());
    updateGeometry();
}

void Link::keyPressEvent(QKeyEvent* event)
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

void Link::paintSign(QPainter& painter) const
{
    QColor color = shownColor(*this, m_foreColor);
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

void Link::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (isEnabled() && (underMouse() || isDown())) {
        QColor tint = shownColor(*this, m_foreColor);
        tint.setAlphaF(isDown() ? PressedTint : HoverTint);
        painter.setPen(Qt::NoPen);
        painter.setBrush(tint);
        painter.drawRoundedRect(rect(), Radius, Radius);
    }
    paintSign(painter);
    if (hasFocus()) {
        painter.setPen(QPen(QApplication::palette(this).color(QPalette::Highlight), 1));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), Radius, Radius);
    }
}

} // namespace tavrin
