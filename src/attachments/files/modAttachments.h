#pragma once

#include "base/export/Export.h"
#include "base/values/Twips.h"
#include "frame/host_contracts/Records.h"

#include <QImage>
#include <QString>

/// Where the file of an attachment lives and what it is called.
///
/// An attachment is a row of class "TVEvent.tvAttachmentIndex" whose `FileName` is a path below a base
/// folder, or a path with a drive. Paths are those of `StorePath`.
namespace tavrin::modAttachments {

/// Class name of the rows.
inline constexpr char ItemClass[] = "TVEvent.tvAttachmentIndex";

/// The base folder from the settings, read anew at each call. Raises error 5 while it is not set.
TAVRIN_COMPANION_EXPORT QString GetAttachmentsFolder();
/// The setting as it stands; "" while it is not set.
QString GetAttachmentsFolderSetting();

/// The last component of the path.
QString GetFileNameOnly(const QString& path);
bool HasDriveName(const QString& path);
/// `FileName` has no drive part.
bool IsRelativeAttachment(tvTableRow& row);
/// `FileName` names an image by the host's rule.
TAVRIN_COMPANION_EXPORT bool IsImageAttachment(tvTableRow& row);

/// Full path of the stored file. Raises what finding the base folder raises.
TAVRIN_COMPANION_EXPORT QString GetAttachmentPath(tvTableRow& row);
/// The name on the disk of the person who added the file; the stored one for a row without it.
TAVRIN_COMPANION_EXPORT QString GetAttachmentDisplayName(tvTableRow& row);
/// The row's thumbnail, fitted into a box of this size in twips. A null picture when the row is no image or
/// none can be had, for whatever reason. Blocks while the thumbnail is fetched.
TAVRIN_COMPANION_EXPORT QImage GetAttachmentThumbnail(tvTableRow& row, Twips width, Twips height);

/// Deletes the temporary file that a downloader has given, and its folder below the platform's place for
/// temporary files once nothing else is in that, also when the file has been moved away. What cannot be
/// deleted stays, and is no failure.
TAVRIN_COMPANION_EXPORT void RemoveTemporaryCopy(const QString& path);

} // namespace tavrin::modAttachments
