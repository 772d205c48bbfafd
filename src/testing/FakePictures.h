#pragma once

#include "testing/FakeRecorder.h"

namespace tavrin::testing {

// Pictures, their thumbnails, and the folders that they lie in.

std::unique_ptr<Images> makeFakeImages(StatePtr state);
std::unique_ptr<ThumbnailService> makeFakeThumbnailService(StatePtr state);
std::unique_ptr<AttachmentFolders> makeFakeAttachmentFolders(StatePtr state);

} // namespace tavrin::testing
