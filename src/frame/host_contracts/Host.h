#pragma once

#include "base/export/Export.h"
#include "frame/host_contracts/Caches.h"
#include "frame/host_contracts/Services.h"

#include <memory>

namespace tavrin {

/// Everything that a host offers to the controls on its thread.
///
/// The references stay valid for as long as the host is installed. An operation that a host does not offer
/// raises an `Error`, and only when it is called.
class TAVRIN_EXPORT Host
{
public:
    virtual ~Host() = default;

    virtual HostServices& hostServices() = 0;
    virtual XmlFactory& xmlFactory() = 0;
    virtual Session& session() = 0;
    virtual UiServices& uiServices() = 0;
    virtual ListFilling& listFilling() = 0;
    virtual Images& images() = 0;
    virtual Environment& environment() = 0;

    virtual std::unique_ptr<TableCodeCache> newTableCodeCache() = 0;
    virtual std::unique_ptr<EmployeeListCache> newEmployeeListCache() = 0;
    virtual std::unique_ptr<OffenseListCache> newOffenseListCache() = 0;
    virtual std::unique_ptr<UsersCache> newUsersCache() = 0;
    virtual std::unique_ptr<ThumbnailService> newThumbnailService() = 0;
    virtual std::unique_ptr<AttachmentFolders> newAttachmentFolders() = 0;
    virtual std::unique_ptr<tvCustomDictionary> newCustomDictionary() = 0;
    virtual std::unique_ptr<Downloader> newDownloader() = 0;
    virtual std::unique_ptr<Uploader> newUploader() = 0;
    /// A new empty collection of no record, whose `ItemClass` the caller sets.
    virtual tvTableCollectionPtr newTableCollection() = 0;

    /// A component of the host by its class name; raises error 429 when the host has none of that name.
    virtual std::shared_ptr<NibrsModuleService> createNibrsModule(const QString& className) = 0;
};

/// The host installed on this thread. Raises an `Error` when there is none.
TAVRIN_EXPORT Host& currentHost();

/// Installs a host on this thread for as long as the object lives, then puts back the one before.
class TAVRIN_EXPORT HostInstallation
{
public:
    explicit HostInstallation(Host& host);
    ~HostInstallation();
    HostInstallation(const HostInstallation&) = delete;
    HostInstallation& operator=(const HostInstallation&) = delete;

private:
    Host* m_before;
};

} // namespace tavrin
