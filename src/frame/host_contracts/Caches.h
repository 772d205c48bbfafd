#pragma once

#include "base/export/Export.h"
#include "base/failure/Event.h"
#include "base/xml/XmlDocument.h"
#include "frame/host_contracts/Contracts.h"

#include <QList>
#include <QPair>
#include <QStringList>

// Cache and helper classes of the host: a control makes one with a plain new object and keeps it or throws
// it away. The caches behind them are the host's.

namespace tavrin {

class TAVRIN_EXPORT TableCodeCache
{
public:
    virtual ~TableCodeCache() = default;
    /// The list of one code table: elements `TableCode` with `ValueNo`, `ValueCode`, `ValueDesc`,
    /// `ActiveFlag`.
    virtual XmlDocument Document(TableNumber table) = 0;
    /// "" for a code that the table does not know.
    virtual QString GetDescription(TableNumber table, const QVariant& code) = 0;
};

class TAVRIN_EXPORT EmployeeListCache
{
public:
    virtual ~EmployeeListCache() = default;
    /// Elements `Employee` with `OfficerNo`, `OfficerId`, `Name`, `BadgeNo`, `ActiveFlag`, `IsK9Handler`.
    virtual XmlDocument Document() = 0;
    virtual QString ShortText(const QVariant& officerNo) = 0;
    virtual QString FullText(const QVariant& officerNo) = 0;
};

class TAVRIN_EXPORT OffenseListCache
{
public:
    virtual ~OffenseListCache() = default;
    /// Elements `Offense` with `OffenseNo`, `OffenseId`, `Description`, `RptCode`, `ActiveFlag`.
    virtual XmlDocument Document() = 0;
    virtual QString ShortText(const QVariant& offenseNo) = 0;
    virtual QString FullText(const QVariant& offenseNo) = 0;
};

class TAVRIN_EXPORT UsersCache
{
public:
    virtual ~UsersCache() = default;
    /// Elements `UserAccount` with `UserId`, `IsActive`, `FirstName`, `LastName`, `OfficerId`, `BadgeNo`.
    virtual XmlDocument Document() = 0;
    virtual QString UserDisplayName(const QString& userId) = 0;
};

class TAVRIN_EXPORT ThumbnailService
{
public:
    virtual ~ThumbnailService() = default;
    /// Empty when there is none.
    virtual QVariant GetThumbnailPath(const QString& path) = 0;
};

class TAVRIN_EXPORT AttachmentFolders
{
public:
    virtual ~AttachmentFolders() = default;
    virtual QString GetFolderPath(const QVariant& folderNo) = 0;
};

class TAVRIN_EXPORT tvCustomDictionary
{
public:
    virtual ~tvCustomDictionary() = default;
    virtual void AddWord(const QString& word) = 0;
};

/// Fetches a file of the store. `Download` blocks; its events come inside the call.
class TAVRIN_EXPORT Downloader
{
public:
    virtual ~Downloader() = default;

    /// Bytes that are read at a time.
    virtual void SetBufferSize(qint32 bytes) = 0;
    /// Returns the path of the temporary copy. Raises an `Error` when it fails.
    virtual QString Download(const QString& path) = 0;
    /// Ends the download that is under way, within one buffer.
    virtual void Cancel() = 0;

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
    virtual ~Uploader() = default;

    /// Copies a local file to a full path in the store. Raises an `Error` when it fails; nothing then stands
    /// under the destination's name. `options` is always Empty here.
    virtual void Upload(const QString& source, const QString& destination, const QVariant& options) = 0;

    /// Path, bytes written, bytes in all.
    Event<const QString&, qint64, qint64> UploadProgress;
    /// Path, and a flag of the host's own that no control reads.
    Event<const QString&, bool> UploadComplete;
};

/// The NIBRS offense codes, reached by the component name "NIBRS.Singletons".
class TAVRIN_EXPORT NibrsModuleService
{
public:
    virtual ~NibrsModuleService() = default;
    /// Code and description; the order stays the same between calls.
    virtual QList<QPair<QString, QString>> GetNibrsOffenseCodeList() = 0;
};

} // namespace tavrin
