#pragma once

#include "base/export/Export.h"

#include <QString>

/// Steps on files and folders of this machine that never replace anything and never follow a symbolic link.
///
/// Each raises an `Error` that names the path and tells the system's reason.
namespace tavrin::LocalFiles {

/// Bytes that a file system takes for a name.
inline constexpr qsizetype LongestFileName = 255;

/// Moves a regular file, also to another file system. Nothing may bear the name `to` yet; what stands there
/// in the end is the whole file, and nobody may execute it. When it fails, nothing stands there and the
/// file is where it was.
///
/// Between file systems the file is copied under a temporary name of the target's folder, flushed to the
/// disk and renamed, and the folder is flushed. The original is then removed; that it cannot be is no
/// failure.
TAVRIN_COMPANION_EXPORT void moveFile(const QString& from, const QString& to);

/// Takes from a regular file what would let anybody execute it.
TAVRIN_COMPANION_EXPORT void makeUnexecutable(const QString& path);

/// Renames a folder in one step. Nothing may bear the name `to` yet.
TAVRIN_COMPANION_EXPORT void moveFolder(const QString& from, const QString& to);

/// A folder itself; a link to one is none.
TAVRIN_COMPANION_EXPORT bool isFolder(const QString& path);

/// Makes one folder below a folder that is there. Raises also when something bears its name already.
TAVRIN_COMPANION_EXPORT void makeFolder(const QString& path);

/// Removes a folder with all that is in it, read-only files and folders included. A link in it goes, what
/// it leads to stays. What can be removed is removed, also when something else cannot.
TAVRIN_COMPANION_EXPORT void removeFolder(const QString& path);

/// Removes from a folder the temporary files that a killed program has left there.
TAVRIN_COMPANION_EXPORT void sweepTemporaries(const QString& folder);

/// The name itself where a file can bear it, else one that is like it: a separator or a control character
/// becomes '_', and so do the dots of "." and ".."; an empty name becomes "_", and the base of a name is cut
/// until its UTF-8 form has `longest` bytes at most. Blanks at its ends, and the names that other platforms
/// keep for their devices, are names like any other.
TAVRIN_COMPANION_EXPORT QString usableFileName(const QString& name, qsizetype longest = LongestFileName);

} // namespace tavrin::LocalFiles
