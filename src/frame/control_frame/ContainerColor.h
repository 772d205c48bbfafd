#pragma once

#include "base/values/Color.h"

#include <optional>

class QVariant;
class QWidget;

namespace tavrin {

/// The colour that a property holds: a `Color`, a `QColor`, or a number with or without a sign, as forms hold
/// colours. Nothing for any other content, and nothing for a `QColor` that is looked through, wholly or in
/// part: what is seen then is the container itself.
std::optional<Color> colorOf(const QVariant& property);

/// The colour that a container shows behind its controls: its property "BackColor", else its own background,
/// else what shows through from the widgets under it. The button face where it says nothing of itself, so
/// that it stays the theme's; the colour of a gradient or of a style's drawing is the one in its middle.
Color shownBackColor(const QWidget& container);

} // namespace tavrin
