#pragma once

#include "base/values/Font.h"

#include <memory>

namespace tavrin::test {

/// A font that says only how large it is, as one does of which nothing else was ever set.
inline FontPtr fontOf(double points)
{
    auto font = std::make_shared<Font>();
    font->SetSize(points);
    return font;
}

} // namespace tavrin::test
