#pragma once

#include "frame/host_contracts/Caches.h"

#include <memory>

// Stand-ins for services that this host does not offer: each can be made, and raises an `Error` with the
// number `Error::NoSuchComponentNumber` when it is called.

namespace tavrin {

[[noreturn]] void raiseNotOffered(const QString& what);

std::unique_ptr<ThumbnailService> makeMissingThumbnailService();
std::unique_ptr<AttachmentFolders> makeMissingAttachmentFolders();
std::unique_ptr<Downloader> makeMissingDownloader();
std::unique_ptr<Uploader> makeMissingUploader();

} // namespace tavrin
