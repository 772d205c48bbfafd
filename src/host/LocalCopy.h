#pragma once

#include "base/Descriptor.h"

#include <QByteArray>
#include <QString>

namespace tavrin {

/// The platform's place for temporary files; "" when the folder that TMPDIR names is not there.
QString folderOfLocalCopies();

/// The copy of a stored file that a download writes: alone in a folder of its own, both for the person alone.
/// The copy and its folder go again unless they are kept.
///
/// It is locked and bears another name until then, by which `sweepLocalCopies` knows it from a copy that is
/// whole.
class LocalCopy
{
public:
    /// Raises a `StoreProblem` or a `SystemError`.
    LocalCopy();
    ~LocalCopy();
    LocalCopy(const LocalCopy&) = delete;
    LocalCopy& operator=(const LocalCopy&) = delete;

    const Descriptor& file() const { return m_file; }
    /// Gives the copy its name. Raises a `StoreProblem` when it is of another length, or a `SystemError`.
    void finish(qint64 expectedLength);
    /// Gives the copy and its folder to the caller. Returns its path.
    QString keep();

private:
    void makeFolder();
    bool lockFolder();

    QByteArray m_path; // of the folder; "" once it is not this object's any more
    Descriptor m_folder;
    Descriptor m_file;
    const char* m_name;
};

/// Removes what this person's programs have left in a folder for temporary files: at once what a killed
/// download has left, and after a day a copy that was handed out, which somebody may be looking at. What a
/// download is writing stays.
void sweepLocalCopies(const QString& temporaryFolder);

} // namespace tavrin
