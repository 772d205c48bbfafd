#pragma once

#include <QByteArray>
#include <QString>

namespace tavrin {

/// Replaces a file that must not be lost. Whoever opens it sees either the old content or the new one, also
/// after a crash or on a full disk.
///
/// The content goes into a temporary file of the same folder, whose name begins with `TemporaryPrefix`; it
/// is flushed to the disk, read back and compared, and renamed onto `path`, and the folder is flushed. A
/// symbolic link at `path` is replaced, not followed. Raises an `Error` that names the file; the old file
/// then stands as it was, and the temporary one is gone. Only when the last step fails, the flush of the
/// folder, does the new content stand there, and may be lost in a power cut.
void replaceFile(const QString& path, const QByteArray& content);

/// Temporary files of a program that was killed bear names of this beginning; a start may remove them.
inline constexpr char TemporaryPrefix[] = ".tavrin-tmp-";

} // namespace tavrin
