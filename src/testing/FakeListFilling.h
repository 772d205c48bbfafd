#pragma once

#include "testing/FakeRecorder.h"

namespace tavrin::testing {

// What fills lists and fits pictures for the controls.

std::unique_ptr<ListFilling> makeFakeListFilling(StatePtr state);

} // namespace tavrin::testing
