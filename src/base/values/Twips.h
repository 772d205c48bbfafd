#pragma once

#include "base/export/Export.h"

#include <cmath>

namespace tavrin {

/// Layout lengths are twips (1/1440 inch) in single precision. A widget's place is stored in pixels; the one
/// rounding happens on the way there. Pixels are Qt's device-independent ones at 96 to the inch, which Qt
/// scales for dense screens.
using Twips = float;

inline constexpr Twips TwipsPerInch = 1440; ///< on paper and screen alike
inline constexpr Twips TwipsPerPixel = 15;  ///< 96 pixels to the inch
inline constexpr Twips TwipsPerPoint = 20;  ///< 72 points to the inch

/// Pixels, rounded to the nearest; halves away from 0.
inline int toPixels(Twips twips)
{
    return static_cast<int>(std::lround(twips / TwipsPerPixel));
}

/// Twips, without rounding.
constexpr Twips toTwips(int pixels)
{
    return static_cast<Twips>(pixels) * TwipsPerPixel;
}

/// Units of a container, by their scale-mode numbers.
enum class ScaleMode
{
    User = 0,
    Twips = 1,
    Points = 2,
    Pixels = 3,
    Characters = 4,
    Inches = 5,
    Millimeters = 6,
    Centimeters = 7,
};

/// How many twips one unit is. A character is 120 twips wide and 240 high; a user unit counts as a twip.
TAVRIN_EXPORT Twips twipsPerUnitX(ScaleMode mode);
TAVRIN_EXPORT Twips twipsPerUnitY(ScaleMode mode);

} // namespace tavrin
