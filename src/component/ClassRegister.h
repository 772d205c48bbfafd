#pragma once

#include "frame/control_frame/ControlRegister.h"

namespace tavrin {

/// All public controls of the library by their class names.
const ControlRegister& publicControls();

} // namespace tavrin
