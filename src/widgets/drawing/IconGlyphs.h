#pragma once

#include <QString>

class QColor;
class QPainter;
class QRectF;

// Signs of our own for the codes of an icon font that need not be installed.

namespace tavrin {

constexpr int DropDownGlyph = 59758; ///< a chevron that points down
constexpr int ClearGlyph = 60846;    ///< a cross
constexpr int WarningGlyph = 59322;  ///< a triangle with an exclamation mark

bool isIconGlyph(int code);

/// What a press of the sign does, or what the sign says, for screen readers; "" for any other code.
QString iconGlyphName(int code);

/// Paints the sign in the middle of `box`, in proportion to the shorter of its sides. Another code paints
/// nothing.
void paintIconGlyph(QPainter& painter, int code, const QRectF& box, const QColor& color);

} // namespace tavrin
