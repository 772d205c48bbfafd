#pragma once

#include "base/files/Descriptor.h"

#include <QByteArray>
#include <QHash>
#include <QString>

#include <sys/stat.h>

namespace tavrin {

/// The platform's place for temporary files; "" when the folder that TMPDIR names is not there.
QString folderOfLocalCopies();

/// The folder below the platform's place for temporary files in which a host keeps its copies of stored
/// files, all beside one another and for the person alone.
///
/// It is made for the first copy, goes whenever a download leaves nothing in it, and may be taken away by
/// whoever has removed the last copy. While it stands it is locked, by which `sweepLocalCopies` knows that
/// its program runs. At the end of this object the copies go, but for what somebody has written to meanwhile
/// or put beside them.
class LocalCopies
{
public:
    LocalCopies() = default;
    ~LocalCopies();
    LocalCopies(const LocalCopies&) = delete;
    LocalCopies& operator=(const LocalCopies&) = delete;

    /// A new empty file for writing, under a name that nobody else uses. Raises a `StoreProblem` or a
    /// `SystemError`.
    Descriptor create(QByteArray& name);
    /// Gives a file another name, which nothing bears.
    void rename(const QByteArray& name, const QByteArray& other) const;
    /// Gives a copy, which is not written to any more, to the person. Returns its path.
    QString handOut(const QByteArray& name);
    /// Removes a file, and the folder when nothing else is in it.
    void remove(const QByteArray& name);
    /// The path of the folder.
    QString path() const;

private:
    struct State
    {
        timespec Written = {};
        off_t Size = 0;
    };

    void open();
    bool openNew();
    void removeWhenEmpty();
    bool isAsHandedOut(const QByteArray& name) const;

    QByteArray m_path;
    Descriptor m_folder;               // closed while there is none
    QHash<quint64, State> m_handedOut; // by the number of the file, which keeps it under any name
};

/// Removes what this person's programs have left in a folder for temporary files: at once what a killed
/// download has left, and after a day the copies that were handed out, which somebody may be looking at or
/// have changed. The folder of a program that runs stays.
void sweepLocalCopies(const QString& temporaryFolder);

} // namespace tavrin
