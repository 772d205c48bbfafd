#pragma once

#include <QDateTime>
#include <QString>

/// The name that a new file gets in the store: `2014\03\20160201130507_Report.pdf`.
namespace tavrin {

/// The name, below the base folder, of a file that was created at `created`, however long ago, and is
/// uploaded at `now`. `fileName` is without folder and stays as it is.
QString storedName(const QDateTime& created, const QDateTime& now, const QString& fileName);

/// The name, without folder, that a file of this workstation has in the store and in a row. It is the file's
/// own by the rules of this platform; what a stored path would take for a separator or for a drive is '_' in
/// it, so that nothing before it gets lost: `AC\DC.mp3` gives `AC_DC.mp3`, `C:x.pdf` gives `C_x.pdf`.
QString uploadedFileName(const QString& path);

/// The date that decides the folder, by what the file system tells: the birth, else the last change, else the
/// epoch, which Qt takes for no date at all.
QDateTime creationDate(const QDateTime& birth, const QDateTime& changed);

/// The moment at which a file of this workstation came into being; its last change where the file system does
/// not tell. Raises an `Error` with the system's own words when there is no such file, and with words of its
/// own for a path that no file system can hold.
QDateTime creationDateOf(const QString& path);

/// The stored name of a file of this workstation that is uploaded now, by the workstation's clock. Raises an
/// `Error` for a file that does not exist or cannot be looked at, for a folder, and for a name of more than
/// 240 bytes, which leaves no room for the stamp.
QString MakeStoredName(const QString& path);

/// Keeps in mind that a file of this process has arrived at a full path in the store.
void rememberStored(const QString& destination);

/// Whether a file of this process arrived there in the second that the last one arrived in. Capitals do not
/// count, as they do not in every store.
bool wasStored(const QString& destination);

/// Returns when the workstation's clock has come to another second; after 1.2 seconds whatever the clock
/// says.
void awaitNextSecond();

} // namespace tavrin
