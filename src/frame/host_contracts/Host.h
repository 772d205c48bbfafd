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
/// The references stay valid for as long as the host is installed, and are the host's; what a `new...` gives
/// belongs to the caller. All of it is called on the thread that the host is installed on. What an operation
/// raises reaches the control that called it, and from there whoever called the control.
class TAVRIN_EXPORT Host
{
public:
    Host();
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;
    virtual ~Host();

    /// Lists, records and events.
    virtual HostServices& hostServices();
    /// Empty documents.
    virtual XmlFactory& xmlFactory();
    /// Who sits at the workstation.
    virtual Session& session();
    /// Colours and units.
    virtual UiServices& uiServices();
    /// By default lists what this host's `HostServices::GetTableValues` gives.
    virtual ListFilling& listFilling();
    /// Reading of pictures.
    virtual Images& images();
    /// Folders and error numbers.
    virtual Environment& environment();

    /// For the descriptions in `MultiValue` and `SuspRelList`, and for the teams of `FlatUserPicker`. By
    /// default the plain one, over `HostServices::GetTableValues` of the installed host.
    virtual std::unique_ptr<TableCodeCache> newTableCodeCache();
    /// For the pickers of employees, and the names in that of users. No default.
    virtual std::unique_ptr<EmployeeListCache> newEmployeeListCache();
    /// For `OffensePicker`. No default.
    virtual std::unique_ptr<OffenseListCache> newOffenseListCache();
    /// For `FlatUserPicker`. No default.
    virtual std::unique_ptr<UsersCache> newUsersCache();
    /// By default one that knows no thumbnail, so that the pictures themselves are shown.
    virtual std::unique_ptr<ThumbnailService> newThumbnailService();
    /// For `Attachments` and `CoverImage`. No default.
    virtual std::unique_ptr<AttachmentFolders> newAttachmentFolders();
    /// For the spelling dialog's "Add"; the object may be a `RemovableWord` too. No default.
    virtual std::unique_ptr<tvCustomDictionary> newCustomDictionary();
    /// One for each download. No default.
    virtual std::unique_ptr<Downloader> newDownloader();
    /// One for each upload. No default.
    virtual std::unique_ptr<Uploader> newUploader();
    /// A new empty collection of no record, whose `ItemClass` the caller sets. No default.
    virtual tvTableCollectionPtr newTableCollection();

    /// A component of the host by its class name; raises error 429 when the host has none of that name.
    virtual std::shared_ptr<NibrsModuleService> createNibrsModule(const QString& className);

private:
    struct Private;
    std::unique_ptr<Private> d;
};

/// The host that is installed on the calling thread. Raises an `Error` when there is none.
TAVRIN_EXPORT Host& currentHost();

/// Installs a host on the calling thread for as long as the object lives, then puts back the one before.
///
/// It stands before the first control is made and outlives the last one: a control asks the host in its
/// constructor already.
class TAVRIN_EXPORT HostInstallation
{
public:
    /// The host stays the caller's, and must outlive the object.
    explicit HostInstallation(Host& host);
    ~HostInstallation();
    HostInstallation(const HostInstallation&) = delete;
    HostInstallation& operator=(const HostInstallation&) = delete;

private:
    Host* m_before;
};

} // namespace tavrin
