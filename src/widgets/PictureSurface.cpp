#include "PictureSurface.h"

#include <QApplication>
#include <QFontMetricsF>
#include <QPaintEngine>
#include <QPainter>

namespace tavrin {

PaintedPicture::PaintedPicture(QPainter& painter, const QRectF& row)
    : m_painter(painter)
    , m_row(row)
    , m_font(painter.font())
{
}

Twips PaintedPicture::TextWidth(const QString& text) const
{
    return static_cast<Twips>(QFontMetricsF(m_font, m_painter.device()).horizontalAdvance(text)) *
           TwipsPerPixel;
}

Twips PaintedPicture::TextHeight(const QString& text) const
{
    const auto lines = static_cast<Twips>(text.count(u'\n') + 1);
    return static_cast<Twips>(QFontMetricsF(m_font, m_painter.device()).height()) * TwipsPerPixel * lines;
}

void PaintedPicture::Print(const QString& text)
{
    const QFontMetricsF metrics(m_font, m_painter.device());
    const QPointF baseline(m_row.left() + m_x / TwipsPerPixel,
                           m_row.top() + m_y / TwipsPerPixel + metrics.ascent());
    m_painter.setFont(m_font);
    m_painter.drawText(baseline, text);
    m_x += TextWidth(text);
}

void PaintedPicture::DrawBox(Twips x1, Twips y1, Twips x2, Twips y2, Color color)
{
    const QRectF box(m_row.left() + x1 / TwipsPerPixel, m_row.top() + y1 / TwipsPerPixel,
                     (x2 - x1) / TwipsPerPixel, (y2 - y1) / TwipsPerPixel);
    m_painter.save();
    if (m_mode == DrawMode::MaskPen) {
        // Raster operations are the raster engine's; multiplying looks alike on the others.
        const bool raster = m_painter.paintEngine()->hasFeature(QPaintEngine::RasterOpModes);
        m_painter.setCompositionMode(raster ? QPainter::RasterOp_SourceAndDestination
                                            : QPainter::CompositionMode_Multiply);
    }
    m_painter.fillRect(box, color.resolve(QApplication::palette()));
    m_painter.restore();
    m_x = x2;
    m_y = y2;
}

} // namespace tavrin
