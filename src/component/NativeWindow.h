#pragma once

#include <QWindow>

namespace tavrin {

/// False for a number that is no window of the platform's. True also where the platform does not tell, as all
/// but X11 do.
bool mayBeWindow(WId window);

} // namespace tavrin
