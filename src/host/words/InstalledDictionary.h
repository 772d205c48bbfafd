#pragma once

#include <QString>

namespace tavrin {

/// Brings a support file of the spelling engine up to date with a dictionary that is installed on the
/// workstation: `source` is the path of its two files without ".aff" and ".dic".
///
/// The file is written, whole or not at all, when it is missing, damaged, made from another dictionary, or
/// older than the installed one. The times compared are those of each of the two installed files, then and
/// now, so the workstation's clock does not matter; of two with the same time the lengths are compared.
/// Raises an `Error` that names the file at fault when the installed dictionary is missing or damaged, or the
/// file cannot be written; it then stands as it was.
void refreshSpellingDictionary(const QString& file, const QString& source);

} // namespace tavrin
