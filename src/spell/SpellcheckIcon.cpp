#include "spell/SpellcheckIcon.h"

#include <QPainter>
#include <QPainterPath>
#include <QPalette>

namespace tavrin {

namespace {

constexpr QRgb Tick = 0xFF2F8F5B; // readable on white and on dark grey

/// Strokes of the letters A, B and C, drawn rather than typed so that no font changes them.
QPainterPath letters()
{
    QPainterPath path;
    path.moveTo(4.5, 14.5); // A
    path.lineTo(7.75, 5.5);
    path.lineTo(11, 14.5);
    path.moveTo(5.75, 11.5);
    path.lineTo(9.75, 11.5);
    path.moveTo(13.5, 5.5); // B
    path.lineTo(13.5, 14.5);
    path.lineTo(16, 14.5);
    path.cubicTo(19.5, 14.5, 19.5, 9.75, 16, 9.75);
    path.lineTo(13.5, 9.75);
    path.moveTo(16, 9.75);
    path.cubicTo(18.75, 9.75, 18.75, 5.5, 16, 5.5);
    path.lineTo(13.5, 5.5);
    path.moveTo(27.5, 7); // C
    path.cubicTo(25.5, 4.5, 21.5, 5.25, 21.5, 10);
    path.cubicTo(21.5, 14.75, 25.5, 15.5, 27.5, 13);
    return path;
}

} // namespace

void paintSpellcheckIcon(QPainter& painter, const QPalette& palette)
{
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(palette.color(QPalette::PlaceholderText), 1));
    painter.setBrush(palette.color(QPalette::Base));
    painter.drawRoundedRect(QRectF(0.5, 0.5, 31, 31), 3, 3);

    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(palette.color(QPalette::Text), 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(letters());

    QPainterPath tick(QPointF(10, 22.5));
    tick.lineTo(14.5, 27);
    tick.lineTo(23, 18.5);
    painter.setPen(QPen(QColor::fromRgb(Tick), 3, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(tick);
}

} // namespace tavrin
