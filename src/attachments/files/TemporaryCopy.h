#pragma once

#include <QString>

namespace tavrin {

/// Gives a downloaded file the name that the person knows it by, or a like one that the disk takes, in the
/// folder where it lies, and returns its new path. A copy that bears the name already goes, also a read-only
/// one. Nobody may execute the file. Raises what the file system says when that fails.
QString renameTemporaryCopy(const QString& copy, const QString& name);

} // namespace tavrin
