#pragma once

#include "base/export/Export.h"

#include <QString>

/// The Windows-shaped paths that rows and settings hold, worked on alike on every platform.
///
/// Nothing here looks at a file system.
namespace tavrin::StorePath {

/// The drive part: a letter and a colon (`C:`) or the head of a network path (`\\server\share`); "" if none.
TAVRIN_EXPORT QString drivePart(const QString& path);

/// True when the path has a drive part.
TAVRIN_EXPORT bool hasDrive(const QString& path);

/// `folder` and `name` with exactly one separator between them. An empty folder gives the name alone, an
/// empty name the folder as it is. A drive alone is followed by a separator too: `C:` and `a` give `C:\a`.
TAVRIN_EXPORT QString join(const QString& folder, const QString& name);

/// The last component; separators at the end do not count. A drive part alone gives "".
TAVRIN_EXPORT QString lastComponent(const QString& path);

/// Everything before the last component, without separators at its end unless it is the root of a drive.
TAVRIN_EXPORT QString parentFolder(const QString& path);

/// True for a backslash and for a slash: rows of other platforms hold slashes.
TAVRIN_EXPORT bool isSeparator(QChar character);

} // namespace tavrin::StorePath
