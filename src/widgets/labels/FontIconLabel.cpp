#include "widgets/labels/FontIconLabel.h"

#include "widgets/drawing/ConstituentLook.h"
#include "widgets/drawing/IconGlyphs.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace tavrin {

namespace {

constexpr int IconSide = 14;  // of what is seen of the sign
constexpr int IconMargin = 3; // around it in its box
constexpr int TextLeft = 20;

} // namespace

FontIconLabel::FontIconLabel(QWidget* parent)
    : QWidget(parent)
    , m_font([this] {
        setFont(wholeFont(m_font));
        updateGeometry();
    })
{
    installAccessibleRole<FontIconLabel, QAccessible::StaticText>();
    setFont(wholeFont(m_font));
}

void FontIconLabel::SetIcon(int glyph)
{
    m_icon = glyph;
    update();
}

void FontIconLabel::SetCaption(const QString& caption)
{
    m_caption = caption;
    setAccessibleName(caption);
    updateGeometry();
    update();
}

void FontIconLabel::SetFont(const FontPtr& font)
{
    m_font.set(font);
}

void FontIconLabel::SetForeColor(Color color)
{
    m_foreColor = color;
    update();
}

QSize FontIconLabel::sizeHint() const
{
    const auto textWidth = static_cast<int>(std::ceil(QFontMetricsF(font()).horizontalAdvance(m_caption)));
    return {TextLeft + textWidth, std::max(IconSide, QFontMetrics(font()).height())};
}

void FontIconLabel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const QColor color = shownColor(*this, m_foreColor);
    const QRect seen(0, (height() - IconSide) / 2, IconSide, IconSide);
    paintIconGlyph(painter, m_icon, seen.adjusted(-IconMargin, -IconMargin, IconMargin, IconMargin), color);
    const QRect room = rect().adjusted(TextLeft, 0, 0, 0);
    painter.setPen(color);
    painter.drawText(room, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                     fontMetrics().elidedText(m_caption, Qt::ElideRight, room.width()));
}

} // namespace tavrin
