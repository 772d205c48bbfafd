#pragma once

#include "base/export/Export.h"
#include "base/files/Descriptor.h"
#include "base/files/Sha256.h"

#include <QByteArray>
#include <QString>

#include <memory>

namespace tavrin {

/// Replaces a file that must not be lost. Whoever opens it sees either the old content or the new one, also
/// after a crash or on a full disk.
///
/// The content goes through a `NewFile`. A symbolic link at `path` is replaced, not followed. Raises an
/// `Error` that names the file; the old file then stands as it was, and the temporary one is gone. Only when
/// the last step fails, the flush of the folder, does the new content stand there, and may be lost in a power
/// cut.
TAVRIN_COMPANION_EXPORT void replaceFile(const QString& path, const QByteArray& content);

/// Temporary files of a program that was killed bear names of this beginning; `removeAbandoned` removes them.
inline constexpr char TemporaryPrefix[] = ".tavrin-tmp-";

/// A file that comes to stand under its name whole, or not at all.
///
/// It is written under a temporary name of the same folder, opened exclusively, and is locked for as long as
/// it is being written, by which `removeAbandoned` knows that its program lives. Each operation raises a
/// `SystemError`.
///
///     NewFile file(folder, "a.pdf", 0666);
///     file.write(data, length); // as often as need be
///     file.verify();
///     file.commit(NewFile::Existing::Keep);
class TAVRIN_COMPANION_EXPORT NewFile
{
public:
    /// What becomes of a file that stands under the name already.
    enum class Existing
    {
        Keep, ///< `commit` raises with EEXIST
        Replace,
    };

    /// The folder must stay open for as long as this object lives. The process's file mode mask holds.
    NewFile(const Descriptor& folder, QByteArray name, mode_t mode);
    /// Removes the temporary file unless it was committed.
    ~NewFile();
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    /// Whatever the mask says.
    void setMode(mode_t mode);
    void write(const char* data, qint64 length);
    /// Brings the file to the disk, reads it back and compares length and SHA-256 with what was written. A
    /// difference raises with EIO. The reading is answered from memory where the system keeps what was
    /// written: it sees what another program or a share made of the file, not what a disk did behind a flush
    /// that it said went well.
    void verify();
    /// Gives the file its name and flushes the folder. With `Existing::Keep` nothing stands under the name
    /// when that fails; with `Existing::Replace` the new content does when only the flush fails.
    void commit(Existing existing);
    /// Takes a committed file away again.
    void takeBack();
    /// What `write` got so far, in bytes.
    qint64 length() const { return m_length; }
    const Descriptor& descriptor() const { return m_file; }

private:
    class ReadBack;
    bool makeTemporary(mode_t mode);
    void giveNameKeeping();
    bool standsUnderName() const;

    const Descriptor& m_folder;
    QByteArray m_name;
    QByteArray m_temporary; // "" once committed
    Descriptor m_file;
    Sha256 m_hash;
    qint64 m_length = 0;
    qint64 m_started = 0;                 // bytes whose writing to the disk was begun
    std::unique_ptr<ReadBack> m_readBack; // nullptr until there is enough to read
};

/// Removes a temporary file of a `NewFile` whose program is gone; returns whether it did.
///
/// The program is gone when its lock on the file is. Since a lock may not reach other workstations on a
/// mounted share, and some file systems have none, a file of another workstation, or one that cannot be
/// locked, must also be a day old by the file system's own clock.
TAVRIN_COMPANION_EXPORT bool removeAbandoned(const Descriptor& folder, const QByteArray& name);

} // namespace tavrin
