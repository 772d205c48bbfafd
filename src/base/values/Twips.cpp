#include "base/values/Twips.h"

namespace tavrin {

Twips twipsPerUnitX(ScaleMode mode)
{
    switch (mode) {
    case ScaleMode::Points:
        return TwipsPerPoint;
    case ScaleMode::Pixels:
        return TwipsPerPixel;
    case ScaleMode::Characters:
        return 120;
    case ScaleMode::Inches:
        return TwipsPerInch;
    case ScaleMode::Millimeters:
        return TwipsPerInch / 25.4F;
    case ScaleMode::Centimeters:
        return TwipsPerInch / 2.54F;
    case ScaleMode::User:
    case ScaleMode::Twips:
        break;
    }
    return 1;
}

Twips twipsPerUnitY(ScaleMode mode)
{
    return mode == ScaleMode::Characters ? 240 : twipsPerUnitX(mode);
}

} // namespace tavrin
