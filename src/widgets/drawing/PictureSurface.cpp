#include "widgets/drawing/PictureSurface.h"

#include "widgets/drawing/ConstituentLook.h"

#include <QApplication>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QPainter>

#include <cstdlib>

namespace tavrin {

namespace {

/// The ground and the mark, bit for bit; where that would hardly show, as on a dark ground and on a selected
/// row, some of the mark over the ground.
QColor maskedColor(const QColor& ground, const QColor& mark)
{
    const QColor joined(ground.red() & mark.red(), ground.green() & mark.green(),
                        ground.blue() & mark.blue());
    const int difference = std::abs(ground.red() - joined.red()) + std::abs(ground.green() - joined.green()) +
                           std::abs(ground.blue() - joined.blue());
    constexpr int Visible = 60;
    if (difference >= Visible)
        return joined;
    const auto blend = [](int below, int above) { return (below * 2 + above) / 3; };
    return {blend(ground.red(), mark.red()), blend(ground.green(), mark.green()),
            blend(ground.blue(), mark.blue())};
}

} // namespace

// RowPicture

RowPicture::RowPicture(const QFont& font, QPaintDevice* device, const QSizeF& pixels)
    : m_font(wholeFont(font))
    , m_device(device)
    , m_width(static_cast<Twips>(pixels.width()) * TwipsPerPixel)
    , m_height(static_cast<Twips>(pixels.height()) * TwipsPerPixel)
{
}

void RowPicture::SetFont(const Font& font)
{
    m_font = wholeFont(font.toQFont());
}

double RowPicture::FontSize() const
{
    return m_font.pointSizeF() > 0 ? m_font.pointSizeF() : QFontInfo(m_font).pointSizeF();
}

Twips RowPicture::TextWidth(const QString& text) const
{
    return static_cast<Twips>(QFontMetricsF(m_font, m_device).horizontalAdvance(text)) * TwipsPerPixel;
}

Twips RowPicture::TextHeight(const QString& text) const
{
    const auto lines = static_cast<Twips>(text.count(u'\n') + 1);
    return static_cast<Twips>(QFontMetricsF(m_font, m_device).height()) * TwipsPerPixel * lines;
}

void RowPicture::EndLine()
{
    m_x = 0;
    m_y += TextHeight(QString());
}

// PaintedPicture

PaintedPicture::PaintedPicture(QPainter& painter, const QRectF& row, const QColor& ground)
    : RowPicture(painter.font(), painter.device(), row.size())
    , m_painter(painter)
    , m_row(row)
    , m_ground(ground)
{
}

void PaintedPicture::SetForeColor(Color color)
{
    m_painter.setPen(color.resolve(QApplication::palette()));
}

void PaintedPicture::Print(const QString& text)
{
    const QFontMetricsF metrics(font(), m_painter.device());
    const QPointF baseline(m_row.left() + CurrentX() / TwipsPerPixel,
                           m_row.top() + CurrentY() / TwipsPerPixel + metrics.ascent());
    m_painter.setFont(font());
    m_painter.drawText(baseline, text);
    SetCurrentX(CurrentX() + TextWidth(text));
}

void PaintedPicture::DrawBox(Twips x1, Twips y1, Twips x2, Twips y2, Color color)
{
    const QRectF box(m_row.left() + x1 / TwipsPerPixel, m_row.top() + y1 / TwipsPerPixel,
                     (x2 - x1) / TwipsPerPixel, (y2 - y1) / TwipsPerPixel);
    const QColor plain = color.resolve(QApplication::palette());
    m_painter.fillRect(box, drawMode() == DrawMode::MaskPen ? maskedColor(m_ground, plain) : plain);
    SetCurrentX(x2);
    SetCurrentY(y2);
}

// MeasuredPicture

void MeasuredPicture::Print(const QString& text)
{
    if (CurrentX() != m_endX || CurrentY() != m_endY)
        m_text += QLatin1Char(' ');
    m_text += text;
    SetCurrentX(CurrentX() + TextWidth(text));
    m_endX = CurrentX();
    m_endY = CurrentY();
}

void MeasuredPicture::EndLine()
{
    RowPicture::EndLine();
    m_text += QLatin1Char('\n');
    m_endX = CurrentX();
    m_endY = CurrentY();
}

void MeasuredPicture::DrawBox(Twips, Twips, Twips x2, Twips y2, Color)
{
    SetCurrentX(x2);
    SetCurrentY(y2);
}

} // namespace tavrin
