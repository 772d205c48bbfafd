#pragma once

#include "base/export/Export.h"
#include "frame/host_contracts/Host.h"
#include "host/database/Database.h"

#include <QDate>
#include <QString>

#include <memory>
#include <optional>

namespace tavrin {

/// The look of what a host has colours for.
enum class Theme
{
    Light,
    Dark,
};

/// What a host needs to know besides its database.
struct ReferenceHostOptions
{
    /// Sign-on name of the person at the workstation.
    QString UserId;
    /// The workstation's folder; "" takes one for this database in the platform's place for the data of
    /// applications: the custom words in it are one database's.
    QString WorkstationFolder;
    /// "" takes the platform's own.
    QString DownloadsFolder;
    /// The program that makes thumbnails in a process of its own; "" has the host make them itself.
    QString Thumbnailer = {};
    /// Path of the installed spelling dictionary's two files, without ".aff" and ".dic"; "" takes the
    /// platform's American English.
    QString InstalledDictionary = {};
};

/// Every service of a host over one database.
///
/// Lists, settings and rights are read when the host is made and kept until `refreshCaches`. What this host
/// does not offer raises an `Error` with the number `Error::NoSuchComponentNumber` when it is called.
class TAVRIN_EXPORT ReferenceHost : public Host
{
public:
    /// The database must outlive the host. Raises an `Error` when the lists cannot be read.
    ReferenceHost(Database& database, const ReferenceHostOptions& options);
    ~ReferenceHost() override;

    /// Reads the lists again, then raises `CacheRefreshed` with the names of those that have changed; not
    /// when none has. Raises an `Error` when reading fails; the lists then stay as they were and the event is
    /// not raised.
    void refreshCaches();
    /// Refreshes when another connection has changed the database since the last look; returns whether it
    /// has.
    bool refreshIfChanged();

    /// An employee's last day, as the kept lists have it. None while the person is there, when the day is not
    /// known, and for a number that nobody has.
    std::optional<QDate> employeeLeftOn(int officerNo) const;

    /// The file of the attachments store that a path of rows and settings leads to on this platform, which
    /// need not be there. Raises an `Error` for a path that leads to no attachments folder, or out of it.
    QString attachmentFile(const QString& path) const;
    /// A new host removes the temporary files that killed programs have left in the attachments folders, and
    /// their copies of downloads once these are a day old, beside its other work; returns when that is done.
    void waitForSweep();

    /// Which of the two sets of colours `UiServices::TextBoxColors` gives; light at first. A control takes
    /// them when it shows next or its state changes.
    void setTheme(Theme theme);
    Theme theme() const;

    HostServices& hostServices() override;
    Session& session() override;
    UiServices& uiServices() override;
    Environment& environment() override;

    std::unique_ptr<TableCodeCache> newTableCodeCache() override;
    std::unique_ptr<EmployeeListCache> newEmployeeListCache() override;
    std::unique_ptr<OffenseListCache> newOffenseListCache() override;
    std::unique_ptr<UsersCache> newUsersCache() override;
    std::unique_ptr<ThumbnailService> newThumbnailService() override;
    std::unique_ptr<AttachmentFolders> newAttachmentFolders() override;
    std::unique_ptr<tvCustomDictionary> newCustomDictionary() override;
    std::unique_ptr<Downloader> newDownloader() override;
    std::unique_ptr<Uploader> newUploader() override;
    tvTableCollectionPtr newTableCollection() override;
    std::shared_ptr<NibrsModuleService> createNibrsModule(const QString& className) override;

private:
    class Q_DECL_HIDDEN Private;
    std::unique_ptr<Private> d;
};

} // namespace tavrin
