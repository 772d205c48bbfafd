#pragma once

#include "base/export/Export.h"
#include "base/failure/Event.h"
#include "base/xml/XmlDocument.h"
#include "frame/host_contracts/Contracts.h"

#include <QList>
#include <QPair>
#include <QString>
#include <QVariant>

// Cache and helper classes of the host: a control asks `Host` for one, which is its own from then on, and
// keeps it or throws it away. The caches behind them are the host's. A list is an XML document whose root has
// one element for each entry; its values are texts of child elements.
//
// What says nothing of a default raises an `Error` with the number `Error::NoSuchComponentNumber` that names
// the operation. Whatever an operation raises reaches the control that called it, which passes it on or tells
// it in a box, as its page says.

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
    /// Elements `Employee` with `OfficerNo`, `OfficerId`, `Name`, `BadgeNo`, `ActiveFlag`, `IsK9Handler`. A
    /// picker clones the document, once.
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
    /// Path in the store of a small picture of the one at `path`, as a text, which a `Downloader` then
    /// fetches; Empty when there is none, and by default.
    virtual QVariant GetThumbnailPath(const QString& path);
};

/// Where attachments lie that have no path of their own.
class TAVRIN_EXPORT AttachmentFolders
{
public:
    virtual ~AttachmentFolders();
    /// The folder with this number, as the rows hold it, as a path of the store.
    virtual QString GetFolderPath(const QVariant& folderNo);
};

/// The words that people have added to the dictionary.
class TAVRIN_EXPORT tvCustomDictionary
{
public:
    virtual ~tvCustomDictionary();
    /// Adds a word for everybody; one that is there already changes nothing. What it raises, the spelling
    /// dialog tells the person in a box.
    virtual void AddWord(const QString& word);
};

/// Fetches a file of the store. `Download` blocks; its events come inside the call, on its thread. The
/// dialogs let the person act inside them, so that `Cancel` comes from there.
class TAVRIN_EXPORT Downloader
{
public:
    Downloader();
    virtual ~Downloader();

    /// Bytes that are read at a time; controls set 1 MB. Not read by default.
    virtual void SetBufferSize(qint32 bytes);
    /// Copies a file of the store, named by its path as `Uploader::Upload` gets it, to the workstation and
    /// returns the local path of the temporary copy, "" for a cancelled download. The copy is the caller's: a
    /// control renames it in its folder where a person opens it, and removes it otherwise. Raises an `Error`
    /// when it fails.
    virtual QString Download(const QString& path);
    /// Ends the download that is under way, within one buffer. By default lets it go on.
    virtual void Cancel();

    /// Before the first byte: the path in the store.
    Event<const QString&> DownloadStarted;
    /// After each buffer: the path in the store, bytes read, bytes in all.
    Event<const QString&, qint64, qint64> DownloadProgress;
    /// At the end of a download that has not failed: the path in the store, and whether it was cancelled.
    Event<const QString&, bool> DownloadComplete;
};

/// Brings a file into the store. `Upload` blocks; its events come inside the call, on its thread.
class TAVRIN_EXPORT Uploader
{
public:
    Uploader();
    virtual ~Uploader();

    /// Copies a local file to a full path in the store, whose folders it makes: the folder as the setting
    /// spells it, with the date's folders and the name behind it, each behind a backslash. Raises an `Error`
    /// when it fails; nothing then stands under the destination's name. `options` is always Empty here.
    virtual void Upload(const QString& source, const QString& destination, const QVariant& options);

    /// After each part: the path of the local file, bytes written, bytes in all.
    Event<const QString&, qint64, qint64> UploadProgress;
    /// At the end of each upload that has not failed, for by it a file counts as stored: the path of the
    /// local file, which the person knows it by, and a flag of the host's own that no control reads.
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
