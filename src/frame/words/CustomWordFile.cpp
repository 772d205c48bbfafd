#include "frame/words/CustomWordFile.h"

#include "base/files/FileReader.h"
#include "base/files/FileWriter.h"
#include "frame/words/CustomWords.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QFileInfo>
#include <QThread>

#include <cerrno>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tavrin {

namespace {

/// Another program holds the file for as long as it takes to write a line, or to read the list.
constexpr int PatienceMs = 2000;
constexpr unsigned long PauseMs = 20;

[[noreturn]] void raiseNotWritten(const QString& path, const SystemError& error)
{
    const QString reason = error.Code == EINVAL    ? QStringLiteral("it is no regular file")
                           : error.Code == ETXTBSY ? QStringLiteral("another program is using it")
                                                   : error.Description;
    throw Error(QStringLiteral("The file %1 could not be written: %2").arg(path, reason));
}

/// What a link leads to, which is the file that is to be replaced.
QString targetOf(const QString& path)
{
    const QString target = QFileInfo(path).canonicalFilePath();
    return target.isEmpty() ? path : target;
}

bool isStillAt(const Descriptor& file, const QByteArray& path)
{
    struct stat own = {};
    struct stat named = {};
    return ::fstat(file.number(), &own) == 0 && ::stat(path.constData(), &named) == 0 &&
           own.st_dev == named.st_dev && own.st_ino == named.st_ino;
}

/// The file, locked. A program that replaced it meanwhile makes it another file, which is then opened anew.
Descriptor openLocked(const QString& path, int flags)
{
    const QByteArray name = QFile::encodeName(path);
    const QDeadlineTimer deadline(PatienceMs);
    do {
        Descriptor file = openAt(AT_FDCWD, name, flags | O_NONBLOCK | O_NOCTTY);
        if (::flock(file.number(), LOCK_EX | LOCK_NB) != 0) {
            if (errno != EWOULDBLOCK && errno != EINTR)
                return file; // this file system has no locks
        } else if (isStillAt(file, name)) {
            return file;
        }
        QThread::msleep(PauseMs);
    } while (!deadline.hasExpired());
    throw SystemError(ETXTBSY);
}

/// A file that is to be replaced need not be open to writing itself; what cannot be locked at all is told by
/// the attempt to replace it.
Descriptor lockToReplace(const QString& path)
{
    for (const int flags : {O_RDWR, O_RDONLY}) {
        try {
            return openLocked(path, flags);
        } catch (const SystemError& error) {
            if (error.Code == ETXTBSY)
                throw;
        }
    }
    return {};
}

} // namespace

CustomWordFile::CustomWordFile(const QString& path)
    : m_path(path)
    , m_target(targetOf(path))
{
    try {
        m_file = openLocked(m_target, O_RDWR | O_APPEND);
    } catch (const SystemError& error) {
        raiseNotWritten(m_path, error);
    }
}

QByteArray CustomWordFile::content() const
{
    try {
        QByteArray content = readContent(m_file, CustomWords::LongestFile);
        CustomWords::requireText(m_path, content);
        return content;
    } catch (const SystemError& error) {
        raiseNotWritten(m_path, error);
    }
}

void CustomWordFile::append(const QByteArray& lines)
{
    try {
        struct stat before = {};
        if (::fstat(m_file.number(), &before) != 0)
            throw SystemError::last();
        try {
            writeAll(m_file, lines.constData(), lines.size());
            flush(m_file);
        } catch (const SystemError&) {
            // Half a line would join the next word that is added.
            if (::ftruncate(m_file.number(), before.st_size) != 0)
                throw SystemError::last();
            throw;
        }
    } catch (const SystemError& error) {
        raiseNotWritten(m_path, error);
    }
}

void CustomWordFile::replace(const QByteArray& content)
{
    replaceFile(m_target, content);
}

void rewriteCustomWordFile(const QString& path, const std::function<QByteArray()>& content)
{
    const QString target = targetOf(path);
    Descriptor lock;
    try {
        lock = lockToReplace(target);
    } catch (const SystemError& error) {
        raiseNotWritten(path, error);
    }
    replaceFile(target, content());
}

} // namespace tavrin
