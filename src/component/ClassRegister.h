#pragma once

#include "base/export/Export.h"
#include "frame/control_frame/ControlRegister.h"

namespace tavrin {

/// All public controls of the library by their class names.
TAVRIN_EXPORT const ControlRegister& publicControls();

} // namespace tavrin
