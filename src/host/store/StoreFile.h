#pragma once

#include <QFile>
#include <QString>

#include <memory>

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

/// Opens a file of the store. Raises what the store raises.
StoreFile openStoreFile(const AttachmentStore& store, const QString& path);

} // namespace tavrin
