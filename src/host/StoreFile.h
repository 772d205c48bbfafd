#pragma once

#include <QFile>
#include <QList>
#include <QString>

#include <memory>
#include <optional>

namespace tavrin {

class AttachmentStore;

/// A folder that files of the store lie below.
struct StoreBase
{
    /// As settings give it; paths of the store begin with it.
    QString Given;
    /// The same on this platform, absolute.
    QString Folder;
};

/// A file of the store, open for reading.
struct StoreFile
{
    std::unique_ptr<QFile> File;
    StoreBase Base;
    /// Below the folder, with slashes.
    QString Name;
};

/// Opens a file of the store, whose path has separators of either kind. None when it lies below none of the
/// folders, is no regular file, or cannot be read; no link is followed and no name leads out of the folder.
std::optional<StoreFile> openStoreFile(const QList<StoreBase>& bases, const QString& path);

/// The same of the host's store. Raises what the store raises.
StoreFile openStoreFile(const AttachmentStore& store, const QString& path);

} // namespace tavrin
