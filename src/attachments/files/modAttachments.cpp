#include "attachments/files/modAttachments.h"

#include "base/failure/Error.h"
#include "base/values/StorePath.h"
#include "base/values/Variant.h"
#include "frame/host_contracts/Host.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>

namespace tavrin::modAttachments {

namespace {

const QString FileNameField = QStringLiteral("FileName");
const QString OriginalFileNameField = QStringLiteral("OriginalFileName");
const QString FolderNoField = QStringLiteral("FolderNo");

constexpr int FitMode = 1;
/// The system's three-dimensional light colour.
constexpr Color ThumbnailGround{0x80000016U};

QString textOf(tvTableRow& row, const QString& field)
{
    return ToText(fieldOf(row, field)->Value());
}

QImage thumbnailAt(const QString& path, Twips width, Twips height)
{
    const QString temporary = currentHost().newDownloader()->Download(path);
    const auto remove = qScopeGuard([&] { RemoveTemporaryCopy(temporary); });
    const QImage picture = currentHost().images().LoadPicture(temporary);
    return currentHost().listFilling().FitPicture(picture, toPixels(height), toPixels(width), FitMode, true,
                                                  ThumbnailGround, false);
}

} // namespace

QString GetAttachmentsFolder()
{
    QString folder = GetAttachmentsFolderSetting();
    if (folder.isEmpty())
        throw Error(QStringLiteral(
            "The \"Attachments Folder\" setting is not currently configured under \"<General>\" in Default "
            "Values in Administration. Configure this setting to use attachments."));
    return folder;
}

QString GetAttachmentsFolderSetting()
{
    return currentHost().session().GetSetting(QStringLiteral("_Global"),
                                              QStringLiteral("Attachments Folder"));
}

QString GetFileNameOnly(const QString& path)
{
    return StorePath::lastComponent(path);
}

bool HasDriveName(const QString& path)
{
    return StorePath::hasDrive(path);
}

bool IsRelativeAttachment(tvTableRow& row)
{
    return !HasDriveName(textOf(row, FileNameField));
}

bool IsImageAttachment(tvTableRow& row)
{
    return currentHost().images().IsImageFile(textOf(row, FileNameField));
}

QString GetAttachmentPath(tvTableRow& row)
{
    QString fileName = textOf(row, FileNameField);
    if (HasDriveName(fileName))
        return fileName;
    const QVariant folderNo = fieldOf(row, FolderNoField)->Value();
    const QString base = IsNull(folderNo) ? GetAttachmentsFolder()
                                          : currentHost().newAttachmentFolders()->GetFolderPath(folderNo);
    return StorePath::join(base, fileName);
}

QString GetAttachmentDisplayName(tvTableRow& row)
{
    const QString original = textOf(row, OriginalFileNameField);
    return GetFileNameOnly(original.isEmpty() ? textOf(row, FileNameField) : original);
}

QImage GetAttachmentThumbnail(tvTableRow& row, Twips width, Twips height)
{
    if (!IsImageAttachment(row))
        return {};
    try {
        const QString path =
            ToText(currentHost().newThumbnailService()->GetThumbnailPath(GetAttachmentPath(row)));
        return path.isEmpty() ? QImage() : thumbnailAt(path, width, height);
    } catch (...) {
        return {}; // a thumbnail that cannot be had is no failure
    }
}

void RemoveTemporaryCopy(const QString& path)
{
    if (path.isEmpty() || (QFile::exists(path) && !QFile::remove(path)))
        return;
    const QString folder = QFileInfo(path).absolutePath();
    if (folder.startsWith(QDir::cleanPath(QDir::tempPath()) + u'/'))
        QDir().rmdir(folder); // not while it holds anything else
}

} // namespace tavrin::modAttachments
