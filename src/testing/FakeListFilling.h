#pragma once

#include "support/FakeRecorder.h"

namespace tavrin::test {

// What fills lists and fits pictures for the controls.

std::unique_ptr<ListFilling> makeFakeListFilling(StatePtr state);

} // namespace tavrin::test
