#include "host/store/LocalCopies.h"

#include "base/files/FileWriter.h"
#include "base/files/LocalFiles.h"
#include "host/store/AttachmentStore.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <ctime>
#include <sys/file.h>
#include <unistd.h>

namespace tavrin {

namespace {

const QString FolderPrefix = QStringLiteral("tavrin-download-");
constexpr int Attempts = 100;
constexpr time_t DayInSeconds = time_t(24) * 60 * 60;

/// Whether the lock is had now; a file system without locks has nobody waiting for one.
bool lockOf(const Descriptor& folder)
{
    int result = 0;
    do
        result = ::flock(folder.number(), LOCK_EX | LOCK_NB);
    while (result != 0 && errno == EINTR);
    return result == 0;
}

struct stat statusOf(const Descriptor& file)
{
    struct stat status = {};
    if (::fstat(file.number(), &status) != 0)
        throw SystemError::last();
    return status;
}

bool statusOf(const Descriptor& folder, const QByteArray& name, struct stat& status)
{
    return ::fstatat(folder.number(), name.constData(), &status, AT_SYMLINK_NOFOLLOW) == 0;
}

QList<QByteArray> namesIn(const QByteArray& path)
{
    QList<QByteArray> names;
    const auto all = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;
    for (const QString& name : QDir(QFile::decodeName(path)).entryList(all))
        names << QFile::encodeName(name);
    return names;
}

/// A download is written under such a name until it is whole.
QByteArray nameMeanwhile()
{
    return TemporaryPrefix + QByteArray::number(QRandomGenerator::system()->generate64(), 16);
}

bool isDayOld(const Descriptor& folder, const QList<QByteArray>& names)
{
    time_t last = statusOf(folder).st_mtim.tv_sec;
    for (const QByteArray& name : names) {
        struct stat status = {};
        if (statusOf(folder, name, status))
            last = std::max(last, status.st_mtim.tv_sec);
    }
    return std::time(nullptr) - last >= DayInSeconds;
}

void sweepFolder(const QString& path)
{
    const QByteArray name = QFile::encodeName(path);
    const Descriptor folder = openAt(AT_FDCWD, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW);
    if (statusOf(folder).st_uid != ::geteuid())
        return;
    const bool isLocked = lockOf(folder);
    if (!isLocked && errno == EWOULDBLOCK)
        return; // its program runs
    const QList<QByteArray> names = namesIn(name);
    if (isDayOld(folder, names)) {
        LocalFiles::removeFolder(path);
        return;
    }
    if (!isLocked)
        return;
    for (const QByteArray& entry : names) {
        if (entry.startsWith(TemporaryPrefix))
            ::unlinkat(folder.number(), entry.constData(), 0);
    }
    ::rmdir(name.constData()); // not while it holds a copy that was handed out
}

} // namespace

QString folderOfLocalCopies()
{
    return QDir::tempPath();
}

LocalCopies::~LocalCopies()
{
    if (!m_folder.isOpen())
        return;
    for (const QByteArray& name : namesIn(m_path)) {
        if (isAsHandedOut(name))
            ::unlinkat(m_folder.number(), name.constData(), 0);
    }
    ::rmdir(m_path.constData());
}

QString LocalCopies::path() const
{
    return QFile::decodeName(m_path);
}

Descriptor LocalCopies::create(QByteArray& name)
{
    for (int attempt = 0;; ++attempt) {
        if (!m_folder.isOpen())
            open();
        try {
            name = nameMeanwhile();
            return openAt(m_folder.number(), name, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, 0600);
        } catch (const SystemError& error) {
            const bool isGone = error.Code == ENOENT; // with the last copy that was in it
            if (attempt == Attempts || (!isGone && error.Code != EEXIST)) {
                removeWhenEmpty();
                throw;
            }
            if (isGone)
                m_folder = {};
        }
    }
}

void LocalCopies::open()
{
    if (folderOfLocalCopies().isEmpty()) // a copy in the working folder would be nobody's
        throw StoreProblem(
            QStringLiteral("the folder for temporary files, which TMPDIR names, is not there"));
    m_handedOut.clear();
    // Somebody who sweeps may be quicker than the lock.
    for (int attempt = 0; !openNew(); ++attempt) {
        if (attempt == Attempts)
            throw SystemError(ENOENT);
    }
}

/// Returns false when the new folder is gone, or is being taken away.
bool LocalCopies::openNew()
{
    const QString parent = folderOfLocalCopies();
    m_path = QFile::encodeName(parent + u'/' + FolderPrefix + QStringLiteral("XXXXXX"));
    if (!::mkdtemp(m_path.data())) { // for the person alone
        const SystemError error = SystemError::last();
        throw StoreProblem(
            QStringLiteral("no folder can be made in '%1': %2").arg(parent, error.Description));
    }
    try {
        Descriptor folder = openAt(AT_FDCWD, m_path, O_RDONLY | O_DIRECTORY | O_NOFOLLOW);
        if ((!lockOf(folder) && errno == EWOULDBLOCK) || statusOf(folder).st_nlink == 0)
            return false;
        m_folder = std::move(folder);
        return true;
    } catch (const SystemError& error) {
        if (error.Code == ENOENT)
            return false;
        ::rmdir(m_path.constData());
        throw;
    }
}

void LocalCopies::rename(const QByteArray& name, const QByteArray& other) const
{
    if (::renameat(m_folder.number(), name.constData(), m_folder.number(), other.constData()) != 0)
        throw SystemError::last();
}

QString LocalCopies::handOut(const QByteArray& name)
{
    struct stat status = {};
    if (statusOf(m_folder, name, status))
        m_handedOut.insert(status.st_ino, {status.st_mtim, status.st_size});
    return QFile::decodeName(m_path + '/' + name);
}

bool LocalCopies::isAsHandedOut(const QByteArray& name) const
{
    struct stat status = {};
    if (!statusOf(m_folder, name, status))
        return false;
    const auto state = m_handedOut.constFind(status.st_ino);
    return state != m_handedOut.constEnd() && state->Size == status.st_size &&
           state->Written.tv_sec == status.st_mtim.tv_sec && state->Written.tv_nsec == status.st_mtim.tv_nsec;
}

void LocalCopies::remove(const QByteArray& name)
{
    ::unlinkat(m_folder.number(), name.constData(), 0);
    removeWhenEmpty();
}

void LocalCopies::removeWhenEmpty()
{
    if (::rmdir(m_path.constData()) == 0 || errno == ENOENT)
        m_folder = {};
}

void sweepLocalCopies(const QString& temporaryFolder)
{
    if (temporaryFolder.isEmpty())
        return;
    const QDir folder(temporaryFolder);
    for (const QString& name :
         folder.entryList({FolderPrefix + u'*'}, QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot)) {
        try {
            sweepFolder(folder.filePath(name));
        } catch (const Error&) {
            continue; // not ours to remove, or gone meanwhile
        }
    }
}

} // namespace tavrin
