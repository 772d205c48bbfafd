#pragma once

#include "base/export/Export.h"
#include "base/failure/Event.h"
#include "base/xml/XmlDocument.h"
#include "frame/host_contracts/Contracts.h"

#include <QList>
#include <QPair>
#include <QString>
#include <QVariant>

// Cache and helper classes of the host: a control makes one with a plain new object and keeps it or throws
// it away. The caches behind them are the host's.
//
// What says nothing of a default raises an `Error` with the number `Error::NoSuchComponentNumber` that names
// the operation.

namespace tavrin {

/// The code tables.
class TAVRIN_EXPORT TableCodeCache
{
public:
    virtual ~TableCodeCache();
    /// The list of one code table: elements `TableCode` with `ValueNo`, `ValueCode`, `ValueDesc`,
    /// `ActiveFlag`, which is "1" for a value in use and "0" for another. By default it is made at each call
    /// from `HostServices::GetTableValues` of the host that is installed on the thread.
    virtual XmlDocument Document(TableNumber table);
    /// "" for a code that the table does not know. By default looked for in `Document`.
    virtual QString GetDescription(TableNumber table, const QVariant& code);
};

/// The employees.
class TAVRIN_EXPORT EmployeeListCache
{
public:
    virtual ~EmployeeListCache();
    /// Elements `Employee` with `OfficerNo`, `OfficerId`, `Name`, `BadgeNo`, `ActiveFlag`, `IsK9Handler`.
    virtual XmlDocument Document();
    /// By default the `OfficerId` in `Document`; "" for a number that nobody has.
    virtual QString ShortText(const QVariant& officerNo);
    /// By default the `Name` in `Document`; "" for a number that nobody has.
    virtual QString FullText(const QVariant& officerNo);
};

/// The offenses.
class TAVRIN_EXPORT OffenseListCache
{
public:
    virtual ~OffenseListCache();
    /// Elements `Offense` with `OffenseNo`, `OffenseId`, `Description`, `RptCode`, `ActiveFlag`.
    virtual XmlDocument Document();
    /// By default the `OffenseId` in `Document`; "" for an offense that is not there.
    virtual QString ShortText(const QVariant& offenseNo);
    /// By default the `Description` in `Document`; "" for an offense that is not there.
    virtual QString FullText(const QVariant& offenseNo);
};

/// The people who may sign on.
class TAVRIN_EXPORT UsersCache
{
public:
    virtual ~UsersCache();
    /// Elements `UserAccount` with `UserId`, `IsActive`, `FirstName`, `LastName`, `OfficerId`, `BadgeNo`.
    virtual XmlDocument Document();
    /// By default first and last name in `Document`; "" for a user who is not there.
    virtual QString UserDisplayName(const QString& userId);
};

/// Small pictures of attached ones.
class TAVRIN_EXPORT ThumbnailService
{
public:
    virtual ~ThumbnailService();
    /// Empty when there is none, and by default.
    virtual QVariant GetThumbnailPath(const QString& path);
};

/// Where attachments lie that have no path of their own.
class TAVRIN_EXPORT AttachmentFolders
{
public:
    virtual ~AttachmentFolders();
    virtual QString GetFolderPath(const QVariant& folderNo);
};

/// The words that people have added to the dictionary.
class TAVRIN_EXPORT tvCustomDictionary
{
public:
    virtual ~tvCustomDictionary();
    virtual void AddWord(const QString& word);
};

/// Fetches a file of the store. `Download` blocks; its events come inside the call.
class TAVRIN_EXPORT Downloader
{
public:
    Downloader();
    virtual ~Downloader();

    /// Bytes that are read at a time. Not read by default.
    virtual void SetBufferSize(qint32 bytes);
    /// Returns the path of the temporary copy. Raises an `Error` when it fails.
    virtual QString Download(const QString& path);
    /// Ends the download that is under way, within one buffer. By default lets it go on.
    virtual void Cancel();

    /// Path.
    Event<const QString&> DownloadStarted;
    /// Path, bytes read, bytes in all.
    Event<const QString&, qint64, qint64> DownloadProgress;
    /// Path, and whether the download was cancelled.
    Event<const QString&, bool> DownloadComplete;
};

/// Brings a file into the store. `Upload` blocks; its events come inside the call.
class TAVRIN_EXPORT Uploader
{
public:
    Uploader();
    virtual ~Uploader();

    /// Copies a local file to a full path in the store. Raises an `Error` when it fails; nothing then stands
    /// under the destination's name. `options` is always Empty here.
    virtual void Upload(const QString& source, const QString& destination, const QVariant& options);

    /// Path, bytes written, bytes in all.
    Event<const QString&, qint64, qint64> UploadProgress;
    /// Path, and a flag of the host's own that no control reads.
    Event<const QString&, bool> UploadComplete;
};

/// The NIBRS offense codes, reached by the component name "NIBRS.Singletons".
class TAVRIN_EXPORT NibrsModuleService
{
public:
    virtual ~NibrsModuleService();
    /// Code and description; the order stays the same between calls.
    virtual QList<QPair<QString, QString>> GetNibrsOffenseCodeList();
};

} // namespace tavrin
