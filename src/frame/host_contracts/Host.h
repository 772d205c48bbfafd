#pragma once

#include "base/export/Export.h"
#include "frame/host_contracts/Caches.h"
#include "frame/host_contracts/Services.h"

#include <QString>

#include <memory>

namespace tavrin {

/// Everything that a host offers to the controls on its thread.
///
/// A host overrides what it has something of its own for. The global services are by default the plain ones
/// of Services.h. What has no answer without a host raises an `Error` with the number
/// `Error::NoSuchComponentNumber` that names it, and only when it is called:
///
///     class MyHost : public Host
///     {
///     public:
///         HostServices& hostServices() override { return m_services; }
///         std::unique_ptr<EmployeeListCache> newEmployeeListCache() override;
///
///     private:
///         MyHostServices m_services; // overrides GetTableValues
///     };
///
/// The references stay valid for as long as the host is installed.
class TAVRIN_EXPORT Host
{
public:
    Host();
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;
    virtual ~Host();

    virtual HostServices& hostServices();
    virtual XmlFactory& xmlFactory();
    virtual Session& session();
    virtual UiServices& uiServices();
    /// By default lists what this host's `HostServices::GetTableValues` gives.
    virtual ListFilling& listFilling();
    virtual Images& images();
    virtual Environment& environment();

    /// By default the plain one, over `HostServices::GetTableValues` of the installed host.
    virtual std::unique_ptr<TableCodeCache> newTableCodeCache();
    virtual std::unique_ptr<EmployeeListCache> newEmployeeListCache();
    virtual std::unique_ptr<OffenseListCache> newOffenseListCache();
    virtual std::unique_ptr<UsersCache> newUsersCache();
    /// By default one that knows no thumbnail, so that the pictures themselves are shown.
    virtual std::unique_ptr<ThumbnailService> newThumbnailService();
    virtual std::unique_ptr<AttachmentFolders> newAttachmentFolders();
    virtual std::unique_ptr<tvCustomDictionary> newCustomDictionary();
    virtual std::unique_ptr<Downloader> newDownloader();
    virtual std::unique_ptr<Uploader> newUploader();
    /// A new empty collection of no record, whose `ItemClass` the caller sets.
    virtual tvTableCollectionPtr newTableCollection();

    /// A component of the host by its class name; raises error 429 when the host has none of that name.
    virtual std::shared_ptr<NibrsModuleService> createNibrsModule(const QString& className);

private:
    struct Private;
    std::unique_ptr<Private> d;
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
