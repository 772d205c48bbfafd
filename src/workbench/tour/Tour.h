#pragma once

#include "workbench/application/Options.h"

namespace tavrin::workbench {

/// Walks through the program with real key and mouse events as a person would, on a new database in the
/// tour's folder; checks what is seen and what the database then holds, prints one line a step and writes a
/// numbered picture of each. Returns the exit code: 0, or 1 at the first thing that is not so.
int runTour(const Options& options);

} // namespace tavrin::workbench
