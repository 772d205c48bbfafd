#pragma once

#include <QStringList>

namespace tavrin {

/// The files of a file dialog's answer: one full path, or a folder and the names of files in it, separated by
/// characters with the code 0. In the order of the answer; none for "".
QStringList ParseSelectedFiles(const QString& text);

/// The answer of a file dialog that names these files, which lie in one folder.
QString selectedFilesText(const QStringList& paths);

} // namespace tavrin
