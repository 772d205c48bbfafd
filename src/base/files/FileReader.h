#pragma once

#include "base/export/Export.h"
#include "base/files/Descriptor.h"

#include <QByteArray>
#include <QString>

namespace tavrin {

/// The whole content of a regular file, read in one go.
///
/// Raises an `Error` that names the file when it is missing, cannot be read, is no regular file, or is longer
/// than `longest` bytes. It never waits for a writer, as opening a pipe would.
TAVRIN_COMPANION_EXPORT QByteArray readFile(const QString& path, qint64 longest);

/// The content of an open file from its beginning. Raises a `SystemError`; EFBIG when it is longer than
/// `longest` bytes, EINVAL when it is no regular file.
TAVRIN_COMPANION_EXPORT QByteArray readContent(const Descriptor& file, qint64 longest);

} // namespace tavrin
