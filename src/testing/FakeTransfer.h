#pragma once

#include "testing/FakeRecorder.h"

namespace tavrin::testing {

// Transfer between real files, in two steps of progress, without what makes a store safe. Paths in the store
// may have backslashes. `FakeHostState::transferFailures` makes a transfer fail, `duringTransfer` is called
// before each step.

/// Copies the file, where it exists, into a folder of its own below the folder for temporary files, where it
/// stays as long as the fake host. A path without a file is answered as it is, so that a test without files
/// needs none.
std::unique_ptr<Downloader> makeFakeDownloader(StatePtr state);

/// Copies the source, where it exists, and makes the folders above the destination.
std::unique_ptr<Uploader> makeFakeUploader(StatePtr state);

} // namespace tavrin::testing
