#pragma once

#include "base/export/Export.h"
#include "base/files/Descriptor.h"
#include "frame/host_contracts/Caches.h"
#include "host/lists/HostLists.h"

#include <QList>
#include <QStringList>

#include <memory>

namespace tavrin {

/// Why a file of the store cannot be had: a part of a sentence, without a stop at its end.
class TAVRIN_COMPANION_EXPORT StoreProblem : public Error
{
public:
    explicit StoreProblem(const QString& reason)
        : Error(reason)
    {
    }
};

/// The attachments folders on this platform: finds the file of a path that a row and a setting make up.
///
/// Such a path begins with a base folder, spelt as the setting "Attachments Folder" or the table of numbered
/// folders spells it: absolute (`/srv/attachments`), relative to the data folder (`attachments`), or with a
/// drive (`C:\Files`, `\\server\files`) for which the settings' section "_Drives" names a folder of this
/// platform by its absolute path. What follows may use either separator and must lead to a regular file below
/// the base folder without a symbolic link on the way; all else is refused. A path whose drive has a folder
/// stands for a file below that.
class TAVRIN_COMPANION_EXPORT AttachmentStore
{
public:
    /// Relative base folders lie in `dataFolder`.
    AttachmentStore(std::shared_ptr<const HostListsHolder> lists, QString dataFolder);

    /// A file or folder below a base folder.
    struct Place
    {
        QString Spelling;        ///< the base folder, as the path spells it
        QString Folder;          ///< the same, as a path of the platform
        bool IsOwn = false;      ///< it lies in the data folder
        QList<QByteArray> Names; ///< what leads from there to the file
    };
    /// Raises a `StoreProblem` for a path that leads to no base folder, or out of it again.
    Place placeOf(const QString& path) const;
    /// The path on this platform, of a file that need not exist. Raises as `placeOf`.
    QString platformPath(const QString& path) const;
    /// The regular file, for reading. Raises a `StoreProblem` or a `SystemError`.
    Descriptor openFile(const QString& path) const;
    /// Whether a base folder in the data folder is made when it is missing.
    enum class Missing
    {
        Raise,
        MakeOwn,
    };
    /// The base folder of a place; raises a `StoreProblem` that names it when it cannot be opened.
    static Descriptor openBase(const Place& place, Missing missing = Missing::Raise);

    /// All base folders that lead somewhere, as paths of the platform.
    QStringList baseFolders() const;

private:
    struct Base;
    QList<Base> bases() const;
    QString platformFolder(const QString& base) const;

    std::shared_ptr<const HostListsHolder> m_lists;
    QString m_dataFolder;
};

using AttachmentStorePtr = std::shared_ptr<const AttachmentStore>;

/// The numbered folders of the host's table.
class HostAttachmentFolders final : public AttachmentFolders
{
public:
    explicit HostAttachmentFolders(std::shared_ptr<const HostListsHolder> lists);
    /// The folder as the table spells it. Raises an `Error` that names a number which nobody has.
    QString GetFolderPath(const QVariant& folderNo) override;

private:
    std::shared_ptr<const HostListsHolder> m_lists;
};

} // namespace tavrin
