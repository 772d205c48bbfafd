#pragma once

class QPainter;
class QPalette;

namespace tavrin {

/// Paints the sign of the spell check, three letters over a tick, into 32 by 32 pixels at the origin, in the
/// colours of the theme.
void paintSpellcheckIcon(QPainter& painter, const QPalette& palette);

} // namespace tavrin
