#include "base/files/LocalFiles.h"

#include "base/failure/Error.h"
#include "base/files/Descriptor.h"
#include "base/files/FileWriter.h"

#include <QFile>
#include <QList>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tavrin::LocalFiles {

namespace {

constexpr mode_t ReadAndWrite = 0666;
constexpr mode_t OwnersAll = 0700;
constexpr qsizetype CopiedAtOnce = 1048576;

QString reason(int code)
{
    return QString::fromLocal8Bit(strerror(code));
}

[[noreturn]] void raiseMove(const QString& from, const QString& to, const QString& why)
{
    throw Error(QStringLiteral("%1 could not be moved to %2: %3").arg(from, to, why));
}

/// The path as the system takes it. A NUL would end it early, and name something else.
QByteArray encoded(const QString& path)
{
    QByteArray bytes = QFile::encodeName(path);
    if (bytes.isEmpty() || bytes.contains('\0'))
        throw Error(QStringLiteral("\"%1\" is no path of a file").arg(path));
    return bytes;
}

/// A regular file that nobody may execute any more.
struct OpenedFile
{
    Descriptor File;
    mode_t Mode = 0; ///< for reading and writing only
};

/// Raises an `Error` that says why.
OpenedFile openUnexecutable(const QByteArray& path)
{
    // A pipe must not block, and what a link leads to is not the file that was meant.
    OpenedFile opened{Descriptor(::open(path.constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC))};
    struct stat state = {};
    if (!opened.File.isOpen() || ::fstat(opened.File.number(), &state) != 0)
        throw SystemError::last();
    if (!S_ISREG(state.st_mode))
        throw Error(QStringLiteral("it is not a file"));
    opened.Mode = state.st_mode & ReadAndWrite;
    if (opened.Mode != (state.st_mode & 07777) && ::fchmod(opened.File.number(), opened.Mode) != 0)
        throw SystemError::last();
    return opened;
}

QByteArray folderOf(const QByteArray& path)
{
    return path.left(path.lastIndexOf('/') + 1); // with its separator
}

bool areOneFile(const QByteArray& one, const QByteArray& other)
{
    struct stat first = {};
    struct stat second = {};
    return ::lstat(one.constData(), &first) == 0 && ::lstat(other.constData(), &second) == 0 &&
           first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

/// Gives a file a second name and takes the first one away, which replaces nothing on any file system that
/// knows second names. Returns 0, or why not.
int linkToFreeName(const QByteArray& from, const QByteArray& to)
{
    if (::link(from.constData(), to.constData()) != 0) {
        // A file server whose reply got lost says at the repetition that the name is taken: by this very
        // file.
        const int code = errno;
        if (code != EEXIST || !areOneFile(from, to))
            return code;
    }
    if (::unlink(from.constData()) == 0)
        return 0;
    const int code = errno;
    ::unlink(to.constData()); // the file is where it was
    return code;
}

/// Renames a folder where the file system cannot promise to replace nothing. What comes in between the look
/// and the step is replaced only if it is an empty folder. Returns 0, or why not.
int renameFolderPlainly(const QByteArray& from, const QByteArray& to)
{
    struct stat there = {};
    if (::lstat(to.constData(), &there) == 0)
        return EEXIST;
    if (errno != ENOENT)
        return errno;
    return ::rename(from.constData(), to.constData()) == 0 ? 0 : errno;
}

enum class Kind
{
    File,
    Folder,
};

/// Renames to a name that nothing bears. Returns 0, or why not.
int renameToFreeName(const QByteArray& from, const QByteArray& to, Kind kind)
{
    if (::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE) == 0)
        return 0;
    if (errno != EINVAL && errno != ENOSYS && errno != EOPNOTSUPP)
        return errno;
    return kind == Kind::File ? linkToFreeName(from, to) : renameFolderPlainly(from, to);
}

/// Brings the folder's entries to the disk. Raises a `SystemError`.
void flushFolder(const QByteArray& folder)
{
    flush(openAt(AT_FDCWD, folder.isEmpty() ? QByteArray(".") : folder, O_RDONLY | O_DIRECTORY));
}

void copyContent(const Descriptor& from, const Descriptor& to)
{
    QByteArray buffer(CopiedAtOnce, Qt::Uninitialized);
    for (;;) {
        const qint64 got = readFull(from, buffer.data(), buffer.size());
        writeAll(to, buffer.constData(), got);
        if (got < buffer.size())
            return;
    }
}

/// Fills the temporary file. Raises a `SystemError`.
void fillCopy(const Descriptor& source, mode_t mode, const Descriptor& copy)
{
    copyContent(source, copy);
    flush(copy);
    struct stat read = {};
    struct stat written = {};
    if (::fchmod(copy.number(), mode) != 0 || ::fstat(source.number(), &read) != 0 ||
        ::fstat(copy.number(), &written) != 0)
        throw SystemError::last();
    if (read.st_size != written.st_size)
        throw SystemError(EIO);
}

/// The copy is on the disk under its name when this returns 0; else it returns why not, and there is none.
int copyToFreeName(const Descriptor& source, mode_t mode, const QByteArray& target)
{
    QByteArray temporary = folderOf(target) + TemporaryPrefix + "XXXXXX";
    const Descriptor copy(::mkostemp(temporary.data(), O_CLOEXEC));
    if (!copy.isOpen())
        return errno;
    QByteArray name = temporary;
    try {
        fillCopy(source, mode, copy);
        if (const int failure = renameToFreeName(temporary, target, Kind::File))
            throw SystemError(failure);
        name = target;
        flushFolder(folderOf(target)); // the caller removes the original next
        return 0;
    } catch (const SystemError& error) {
        ::unlink(name.constData());
        return error.Code;
    }
}

/// Opens a folder itself, never one that a link leads to.
int openFolder(int parent, const char* name)
{
    constexpr int flags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
    const int folder = ::openat(parent, name, flags);
    if (folder >= 0 || errno != EACCES || ::fchmodat(parent, name, OwnersAll, AT_SYMLINK_NOFOLLOW) != 0)
        return folder;
    return ::openat(parent, name, flags);
}

QList<QByteArray> entriesOf(const Descriptor& folder)
{
    QList<QByteArray> names;
    const int copy = ::fcntl(folder.number(), F_DUPFD_CLOEXEC, 0); // fdopendir takes it over
    DIR* entries = copy < 0 ? nullptr : ::fdopendir(copy);
    if (!entries) {
        if (copy >= 0)
            ::close(copy);
        return names; // the folder then cannot be removed, which tells why
    }
    while (const dirent* entry = ::readdir(entries)) { // NOLINT(concurrency-mt-unsafe): a stream of our own
        const QByteArray name(static_cast<const char*>(entry->d_name));
        if (name != "." && name != "..")
            names << name;
    }
    ::closedir(entries);
    return names;
}

void removeEntry(int parent, const char* name);

void emptyFolder(int parent, const char* name)
{
    const Descriptor folder(openFolder(parent, name));
    if (!folder.isOpen())
        return;
    ::fchmod(folder.number(), OwnersAll); // nothing can be taken out of a read-only folder
    for (const QByteArray& entry : entriesOf(folder))
        removeEntry(folder.number(), entry.constData());
}

/// One that stays is told by the folder above it, which then cannot be removed.
void removeEntry(int parent, const char* name)
{
    struct stat entry = {};
    if (::fstatat(parent, name, &entry, AT_SYMLINK_NOFOLLOW) != 0)
        return;
    if (!S_ISDIR(entry.st_mode)) {
        ::unlinkat(parent, name, 0);
        return;
    }
    emptyFolder(parent, name);
    ::unlinkat(parent, name, AT_REMOVEDIR);
}

} // namespace

void moveFile(const QString& from, const QString& to)
{
    const QByteArray source = encoded(from);
    const QByteArray target = encoded(to);
    OpenedFile file;
    try {
        file = openUnexecutable(source);
    } catch (const Error& error) {
        raiseMove(from, to, error.Description);
    }
    int failure = renameToFreeName(source, target, Kind::File);
    if (failure == EXDEV) {
        failure = copyToFreeName(file.File, file.Mode, target);
        if (failure == 0)
            ::unlink(source.constData());
    }
    if (failure != 0)
        raiseMove(from, to, reason(failure));
}

void makeUnexecutable(const QString& path)
{
    try {
        openUnexecutable(encoded(path));
    } catch (const Error& error) {
        throw Error(
            QStringLiteral("%1 could not be kept from being executed: %2").arg(path, error.Description));
    }
}

void moveFolder(const QString& from, const QString& to)
{
    if (!isFolder(from))
        throw Error(QStringLiteral("%1 could not be moved to %2: it is not a folder").arg(from, to));
    if (const int failure = renameToFreeName(encoded(from), encoded(to), Kind::Folder))
        raiseMove(from, to, reason(failure));
}

bool isFolder(const QString& path)
{
    struct stat state = {};
    return ::lstat(encoded(path).constData(), &state) == 0 && S_ISDIR(state.st_mode);
}

void makeFolder(const QString& path)
{
    constexpr mode_t whatTheMaskLeaves = 0777;
    if (::mkdir(encoded(path).constData(), whatTheMaskLeaves) != 0)
        throw Error(QStringLiteral("The folder %1 could not be created: %2").arg(path, reason(errno)));
}

void removeFolder(const QString& path)
{
    const QByteArray name = encoded(path);
    emptyFolder(AT_FDCWD, name.constData());
    if (::unlinkat(AT_FDCWD, name.constData(), AT_REMOVEDIR) != 0)
        throw Error(QStringLiteral("The folder %1 could not be removed: %2").arg(path, reason(errno)));
}

void sweepTemporaries(const QString& folder)
{
    const Descriptor opened(openFolder(AT_FDCWD, encoded(folder).constData()));
    if (!opened.isOpen())
        return;
    for (const QByteArray& entry : entriesOf(opened)) {
        if (entry.startsWith(TemporaryPrefix))
            ::unlinkat(opened.number(), entry.constData(), 0);
    }
}

QString usableFileName(const QString& name, qsizetype longest)
{
    QString usable = name;
    const bool isFolderItself = name == QLatin1String(".") || name == QLatin1String("..");
    for (QChar& character : usable) {
        if (character == u'/' || character.category() == QChar::Other_Control || isFolderItself)
            character = u'_';
    }
    if (usable.isEmpty())
        return QStringLiteral("_");
    const auto isTooLong = [&](const QString& text) { return QFile::encodeName(text).size() > longest; };
    if (!isTooLong(usable))
        return usable;
    constexpr qsizetype longestEnding = 16; // what is longer is no ending, but a sentence with a dot
    const qsizetype dot = usable.lastIndexOf(u'.');
    const bool hasEnding = dot > 0 && usable.size() - dot <= longestEnding;
    const QString ending = hasEnding ? usable.mid(dot) : QString();
    QString base = hasEnding ? usable.left(dot) : usable;
    while (!base.isEmpty() && isTooLong(base + ending))
        base.chop(base.size() > 1 && base.back().isLowSurrogate() ? 2 : 1);
    return base + ending;
}

} // namespace tavrin::LocalFiles
