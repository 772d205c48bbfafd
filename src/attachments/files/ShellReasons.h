#pragma once

#include <QString>

namespace tavrin {

/// Number of the error of `ShellOpenFile`.
inline constexpr int ShellOpenFileErrorNumber = -1550908416;

/// Why the desktop did not open a file, by its answer; "" above 32, where it did.
QString shellReason(qint16 result);

/// Opens a file or folder with the program that the desktop has for it. Raises `ShellOpenFileErrorNumber`
/// with the reason when it does not, and error 6 for an answer that no 16 bits hold.
void ShellOpenFile(const QString& path);

} // namespace tavrin
