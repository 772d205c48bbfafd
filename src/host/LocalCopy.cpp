#include "host/LocalCopy.h"

#include "base/LocalFiles.h"
#include "host/AttachmentStore.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <ctime>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace tavrin {

namespace {

const QString FolderPrefix = QStringLiteral("tavrin-download-");
constexpr char NameMeanwhile[] = "attachment.part";
constexpr char NameWhenWhole[] = "attachment.tmp";
constexpr time_t DayInSeconds = 24 * 60 * 60;

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

bool isDayOld(const Descriptor& folder, const QStringList& names)
{
    time_t last = statusOf(folder).st_mtim.tv_sec;
    for (const QString& name : names) {
        struct stat status = {};
        if (::fstatat(folder.number(), QFile::encodeName(name).constData(), &status, AT_SYMLINK_NOFOLLOW) ==
            0)
            last = std::max(last, status.st_mtim.tv_sec);
    }
    return std::time(nullptr) - last >= DayInSeconds;
}

void sweepFolder(const QString& path)
{
    const Descriptor folder = openAt(AT_FDCWD, QFile::encodeName(path), O_RDONLY | O_DIRECTORY | O_NOFOLLOW);
    if (statusOf(folder).st_uid != ::geteuid())
        return;
    const bool isLocked = lockOf(folder);
    if (!isLocked && errno == EWOULDBLOCK)
        return; // a download is at work
    const QStringList names =
        QDir(path).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    const bool isUnfinished = std::all_of(
        names.begin(), names.end(), [](const QString& name) { return name == QLatin1String(NameMeanwhile); });
    if ((isLocked && isUnfinished) || isDayOld(folder, names))
        LocalFiles::removeFolder(path);
}

} // namespace

QString folderOfLocalCopies()
{
    return QDir::tempPath();
}

LocalCopy::LocalCopy()
    : m_name(NameMeanwhile)
{
    if (folderOfLocalCopies().isEmpty()) // a copy in the working folder would be nobody's
        throw StoreProblem(
            QStringLiteral("the folder for temporary files, which TMPDIR names, is not there"));
    constexpr int attempts = 100;
    for (int attempt = 0; !m_file.isOpen(); ++attempt) {
        makeFolder();
        try {
            // Somebody who sweeps may have been quicker than the lock.
            if (lockFolder())
                m_file =
                    openAt(m_folder.number(), NameMeanwhile, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, 0600);
            else if (attempt == attempts)
                throw SystemError(ENOENT);
        } catch (...) {
            ::rmdir(m_path.constData());
            throw;
        }
    }
}

void LocalCopy::makeFolder()
{
    const QString parent = folderOfLocalCopies();
    m_path = QFile::encodeName(parent + u'/' + FolderPrefix + QStringLiteral("XXXXXX"));
    if (!::mkdtemp(m_path.data())) { // for the person alone
        const SystemError error = SystemError::last();
        throw StoreProblem(
            QStringLiteral("no folder can be made in '%1': %2").arg(parent, error.Description));
    }
}

/// Returns false when the folder is gone, or is being taken away.
bool LocalCopy::lockFolder()
{
    try {
        m_folder = openAt(AT_FDCWD, m_path, O_RDONLY | O_DIRECTORY | O_NOFOLLOW);
    } catch (const SystemError& error) {
        if (error.Code == ENOENT)
            return false;
        throw;
    }
    if (!lockOf(m_folder) && errno == EWOULDBLOCK)
        return false;
    return statusOf(m_folder).st_nlink > 0;
}

LocalCopy::~LocalCopy()
{
    if (m_path.isEmpty())
        return;
    ::unlinkat(m_folder.number(), m_name, 0);
    ::rmdir(m_path.constData());
}

void LocalCopy::finish(qint64 expectedLength)
{
    if (statusOf(m_file).st_size != expectedLength)
        throw StoreProblem(
            QStringLiteral("the copy in '%1' has not its length").arg(QFile::decodeName(m_path)));
    if (::renameat(m_folder.number(), m_name, m_folder.number(), NameWhenWhole) != 0)
        throw SystemError::last();
    m_name = NameWhenWhole;
}

QString LocalCopy::keep()
{
    return QFile::decodeName(std::exchange(m_path, QByteArray()) + '/' + m_name);
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
