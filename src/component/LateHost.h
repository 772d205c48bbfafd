#pragma once

#include "component/HostPort.h"
#include "frame/host_contracts/Host.h"

namespace tavrin {

/// Installs a host on this thread of which every operation goes to the callback, and those that the callback
/// does not offer to the plain defaults, in place of one that was installed so before; nullptr takes that
/// away. Raises TV_E_UNEXPECTED while the one before is being asked.
void installLateHost(TvHostCall call, void* context);

/// The event hub of the host that is installed so. Raises TV_E_UNEXPECTED without one.
EventHub& lateHostEvents();

// The parts that stand in files of their own.
std::unique_ptr<TableCodeCache> makeLateTableCodeCache(const HostPortPtr& port);
std::unique_ptr<EmployeeListCache> makeLateEmployeeListCache(const HostPortPtr& port);
std::unique_ptr<OffenseListCache> makeLateOffenseListCache(const HostPortPtr& port);
std::unique_ptr<UsersCache> makeLateUsersCache(const HostPortPtr& port);
std::unique_ptr<ThumbnailService> makeLateThumbnailService(const HostPortPtr& port);
std::unique_ptr<AttachmentFolders> makeLateAttachmentFolders(const HostPortPtr& port);
std::unique_ptr<tvCustomDictionary> makeLateCustomDictionary(const HostPortPtr& port);
std::unique_ptr<Downloader> makeLateDownloader(const HostPortPtr& port);
std::unique_ptr<Uploader> makeLateUploader(const HostPortPtr& port);
/// nullptr when the host has no component of that name.
std::shared_ptr<NibrsModuleService> makeLateNibrsModule(const HostPortPtr& port, const QString& className);

} // namespace tavrin
