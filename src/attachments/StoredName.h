#pragma once

#include <QDateTime>
#include <QString>

/// The name that a new file gets in the store: `2014\03\20160201130507_Report.pdf`.
namespace tavrin {

/// The name, below the base folder, of a file that was created at `created`, however long ago, and is
/// uploaded at `now`. `fileName` is without folder and stays as it is.
QString storedName(const QDateTime& created, const QDateTime& now, const QString& fileName);

/// The moment at which a file of this workstation came into being; its last change where the file system does
/// not tell. Raises an `Error` with the system's own words when there is no such file.
QDateTime creationDateOf(const QString& path);

/// The stored name of a file of this workstation that is uploaded now, by the workstation's clock. Raises an
/// `Error` for a file that does not exist or cannot be looked at, and for a folder.
QString MakeStoredName(const QString& path);

} // namespace tavrin
