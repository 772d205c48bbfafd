#include "widgets/drawing/IconGlyphs.h"

#include <QPainter>
#include <QPainterPath>
#include <QTransform>

#include <algorithm>
#include <cmath>

namespace tavrin {

namespace {

// Shares of the box's side.
constexpr qreal ChevronReach = 0.25; // from the tip to either side, and half of it up and down
constexpr qreal CrossReach = 0.22;
constexpr qreal TriangleReach = 0.32; // from the middle of its base to either side
constexpr qreal TriangleHeight = 0.60;
constexpr qreal LineShare = 1.0 / 12;
constexpr qreal LeastLine = 1.25; // in pixels of the screen

/// The nearest point to which a line of 45 degrees runs along the diagonals of the screen's pixels: both
/// numbers are whole, or both lie half-way. So the sign is sharp, and its left side is like its right.
QPointF onPixelDiagonal(const QPointF& point)
{
    const qreal x = std::round(point.x() * 2) / 2;
    const qreal fraction = x - std::floor(x);
    return {x, std::round(point.y() - fraction) + fraction};
}

QPainterPath chevron(const QPointF& center, qreal side)
{
    const qreal reach = std::max(1.0, std::round(side * ChevronReach));
    const QPointF tip = onPixelDiagonal(center + QPointF(0, reach / 2));
    QPainterPath path(tip - QPointF(reach, reach));
    path.lineTo(tip);
    path.lineTo(tip + QPointF(reach, -reach));
    return path;
}

QPainterPath cross(const QPointF& center, qreal side)
{
    const QPointF middle = onPixelDiagonal(center);
    const qreal reach = std::max(1.0, std::round(side * CrossReach));
    QPainterPath path(middle - QPointF(reach, reach));
    path.lineTo(middle + QPointF(reach, reach));
    path.moveTo(middle + QPointF(-reach, reach));
    path.lineTo(middle + QPointF(reach, -reach));
    return path;
}

/// A triangle around an exclamation mark. Its left side is like its right, and its base is sharp.
QPainterPath warning(const QPointF& center, qreal side)
{
    const qreal middle = std::round(center.x() * 2) / 2;
    const qreal reach = std::max(1.0, std::round(side * TriangleReach));
    const qreal height = std::max(1.0, std::round(side * TriangleHeight));
    const qreal top = std::round(center.y() - height / 2 - 0.5) + 0.5;
    const qreal bottom = top + height;
    QPainterPath path(QPointF(middle - reach, bottom));
    path.lineTo(middle, top);
    path.moveTo(middle + reach, bottom); // lines of their own: Qt paints no two sides of a join alike
    path.lineTo(middle, top);
    path.moveTo(middle - reach, bottom);
    path.lineTo(middle + reach, bottom);
    path.moveTo(middle, top + std::round(height * 0.37));
    path.lineTo(middle, top + std::round(height * 0.60));
    const qreal dot = top + std::round(height * 0.80);
    path.moveTo(middle - 0.1, dot); // round ends make a dot of it
    path.lineTo(middle + 0.1, dot);
    return path;
}

QPainterPath pathOf(int code, const QPointF& center, qreal side)
{
    switch (code) {
    case DropDownGlyph:
        return chevron(center, side);
    case WarningGlyph:
        return warning(center, side);
    default:
        return cross(center, side);
    }
}

} // namespace

bool isIconGlyph(int code)
{
    return code == DropDownGlyph || code == ClearGlyph || code == WarningGlyph;
}

QString iconGlyphName(int code)
{
    switch (code) {
    case DropDownGlyph:
        return QStringLiteral("Open the list");
    case ClearGlyph:
        return QStringLiteral("Clear");
    case WarningGlyph:
        return QStringLiteral("Warning");
    default:
        return {};
    }
}

void paintIconGlyph(QPainter& painter, int code, const QRectF& box, const QColor& color)
{
    if (!isIconGlyph(code) || box.isEmpty())
        return;
    // Laid out in pixels of the screen.
    const QTransform toScreen = painter.deviceTransform();
    const QRectF place = toScreen.mapRect(box);
    const qreal side = std::min(place.width(), place.height());
    QPen pen(color, std::max(LeastLine, side * LineShare), Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setWorldTransform(toScreen.inverted(), true);
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(pathOf(code, place.center(), side));
    painter.restore();
}

} // namespace tavrin
