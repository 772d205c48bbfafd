#include "base/files/FileWriter.h"

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QSysInfo>

#include <algorithm>
#include <cerrno>
#include <condition_variable>
#include <cstdio>
#include <future>
#include <mutex>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tavrin {

namespace {

/// Bytes after which the disk is set to work, so that the last flush finds little to do.
constexpr qint64 WritingStep = 8 << 20;
constexpr qint64 ReadingStep = 1 << 20;
constexpr qint64 DayInSeconds = qint64(24) * 60 * 60;

/// Tells the workstations that share a folder apart.
const QByteArray& ownMark()
{
    static const QByteArray mark =
        QCryptographicHash::hash(QSysInfo::machineUniqueId() + QSysInfo::machineHostName().toUtf8(),
                                 QCryptographicHash::Sha256)
            .toHex()
            .left(12);
    return mark;
}

struct stat statusOf(const Descriptor& file)
{
    struct stat status = {};
    if (::fstat(file.number(), &status) != 0)
        throw SystemError::last();
    return status;
}

enum class Lock
{
    Taken,
    HeldByAnother,
    NotOffered, // by this file system
};

Lock lock(const Descriptor& file)
{
    int result = 0;
    do
        result = ::flock(file.number(), LOCK_EX | LOCK_NB);
    while (result != 0 && errno == EINTR);
    if (result == 0)
        return Lock::Taken;
    return errno == EWOULDBLOCK || errno == EACCES ? Lock::HeldByAnother : Lock::NotOffered;
}

/// By the clock that dates the files of this folder: those of workstations differ.
time_t nowIn(const Descriptor& folder)
{
    const NewFile probe(folder, {}, 0600);
    return statusOf(probe.descriptor()).st_mtim.tv_sec;
}

/// For writing, since some file systems lock nothing else, or as far as its owner lets others open it:
/// whoever may write to the folder may remove it all the same.
Descriptor openLeft(const Descriptor& folder, const QByteArray& name)
{
    constexpr int flags = O_NOFOLLOW | O_NONBLOCK | O_NOCTTY;
    try {
        return openAt(folder.number(), name, O_RDWR | flags);
    } catch (const SystemError& error) {
        if (error.Code != EACCES && error.Code != EPERM)
            throw;
        return openAt(folder.number(), name, O_RDONLY | flags);
    }
}

} // namespace

/// Reads what has been written back, and hashes it.
///
/// A long file is read in a thread of its own beside the writing and the flush: hashing is the processor's
/// work, theirs the disk's. A short one is read when its hash is asked for.
class NewFile::ReadBack
{
public:
    ReadBack(const Descriptor& file, std::launch how)
        : m_file(file)
        , m_hash(std::async(how, [this] { return run(); }))
    {
    }
    ~ReadBack()
    {
        tell(0, true); // the thread ends; the future waits for it
    }
    ReadBack(const ReadBack&) = delete;
    ReadBack& operator=(const ReadBack&) = delete;

    /// So many bytes of the file may be read.
    void advance(qint64 length) { tell(length, false); }
    /// Of all these bytes. To be called once.
    QByteArray hash()
    {
        tell(m_length, true);
        return m_hash.get();
    }

private:
    void tell(qint64 length, bool isLast)
    {
        {
            const std::lock_guard guard(m_mutex);
            m_length = length;
            m_isLast = isLast;
        }
        m_told.notify_one();
    }
    /// Waits until more than that may be read; returns how much, or less when there will not be more.
    qint64 lengthBeyond(qint64 done)
    {
        std::unique_lock guard(m_mutex);
        m_told.wait(guard, [&] { return m_length > done || m_isLast; });
        return m_length;
    }
    QByteArray run()
    {
        Sha256 hash;
        const auto buffer = std::make_unique<char[]>(static_cast<size_t>(ReadingStep));
        qint64 done = 0;
        for (qint64 length = lengthBeyond(done); length > done; length = lengthBeyond(done)) {
            const qint64 got = readFullAt(m_file, buffer.get(), std::min(length - done, ReadingStep), done);
            if (got == 0)
                break; // shorter than what was written: the hashes will differ
            hash.add(buffer.get(), got);
            done += got;
        }
        return hash.result();
    }

    const Descriptor& m_file;
    std::mutex m_mutex;
    std::condition_variable m_told;
    qint64 m_length = 0;
    bool m_isLast = false;
    std::future<QByteArray> m_hash; // last, since its thread uses all the others
};

NewFile::NewFile(const Descriptor& folder, QByteArray name, mode_t mode)
    : m_folder(folder)
    , m_name(std::move(name))
{
    constexpr int attempts = 100;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        if (makeTemporary(mode))
            return;
    }
    throw SystemError(EEXIST);
}

bool NewFile::makeTemporary(mode_t mode)
{
    const QByteArray random = QByteArray::number(QRandomGenerator::system()->generate64(), 16);
    const QByteArray name = TemporaryPrefix + ownMark() + '-' + random;
    try {
        m_file = openAt(m_folder.number(), name, O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW, mode);
    } catch (const SystemError& error) {
        if (error.Code == EEXIST)
            return false;
        throw;
    }
    // Somebody who sweeps may have been quicker than this lock.
    const Lock taken = lock(m_file);
    if (taken == Lock::HeldByAnother || (taken == Lock::Taken && statusOf(m_file).st_nlink == 0)) {
        ::unlinkat(m_folder.number(), name.constData(), 0);
        m_file = {};
        return false;
    }
    m_temporary = name;
    return true;
}

NewFile::~NewFile()
{
    if (!m_temporary.isEmpty())
        ::unlinkat(m_folder.number(), m_temporary.constData(), 0);
}

void NewFile::setMode(mode_t mode)
{
    if (::fchmod(m_file.number(), mode) != 0)
        throw SystemError::last();
}

void NewFile::write(const char* data, qint64 length)
{
    writeAll(m_file, data, length);
    m_length += length;
    m_hash.add(data, length);
    if (m_length - m_started >= WritingStep) {
        // Only a hint: whether the content arrives is seen at the flush.
        ::sync_file_range(m_file.number(), m_started, m_length - m_started, SYNC_FILE_RANGE_WRITE);
        m_started = m_length;
        if (!m_readBack)
            m_readBack = std::make_unique<ReadBack>(m_file, std::launch::async);
        m_readBack->advance(m_length);
    }
}

void NewFile::verify()
{
    if (!m_readBack)
        m_readBack = std::make_unique<ReadBack>(m_file, std::launch::deferred);
    m_readBack->advance(m_length);
    flush(m_file);
    if (m_readBack->hash() != m_hash.result() || statusOf(m_file).st_size != m_length)
        throw SystemError(EIO);
}

bool NewFile::standsUnderName() const
{
    const struct stat own = statusOf(m_file);
    struct stat named = {};
    return ::fstatat(m_folder.number(), m_name.constData(), &named, AT_SYMLINK_NOFOLLOW) == 0 &&
           named.st_dev == own.st_dev && named.st_ino == own.st_ino;
}

/// Not every file system can rename without overwriting; a second name, and the first one taken away, does
/// the same.
void NewFile::giveNameKeeping()
{
    const int folder = m_folder.number();
    if (::renameat2(folder, m_temporary.constData(), folder, m_name.constData(), RENAME_NOREPLACE) == 0)
        return;
    if (errno != EINVAL && errno != ENOSYS && errno != ENOTSUP)
        throw SystemError::last();
    // A file server whose reply got lost says at the repetition that the name is taken: by this very file.
    if (::linkat(folder, m_temporary.constData(), folder, m_name.constData(), 0) != 0) {
        const int code = errno;
        if (code != EEXIST || !standsUnderName())
            throw SystemError(code);
    }
    ::unlinkat(folder, m_temporary.constData(), 0); // what stays is a second name that a sweep removes
}

void NewFile::commit(Existing existing)
{
    if (existing == Existing::Keep) {
        giveNameKeeping();
    } else if (::renameat(m_folder.number(), m_temporary.constData(), m_folder.number(),
                          m_name.constData()) != 0) {
        throw SystemError::last();
    }
    m_temporary.clear();
    try {
        flush(m_folder);
    } catch (...) {
        if (existing == Existing::Keep)
            takeBack();
        throw;
    }
}

void NewFile::takeBack()
{
    if (m_temporary.isEmpty() && standsUnderName())
        ::unlinkat(m_folder.number(), m_name.constData(), 0);
}

bool removeAbandoned(const Descriptor& folder, const QByteArray& name)
{
    if (!name.startsWith(TemporaryPrefix))
        return false;
    try {
        const Descriptor file = openLeft(folder, name);
        const struct stat status = statusOf(file);
        if (!S_ISREG(status.st_mode))
            return false;
        const Lock taken = lock(file);
        const bool isOwn = name.startsWith(TemporaryPrefix + ownMark());
        if (taken == Lock::HeldByAnother)
            return false;
        if (!(isOwn && taken == Lock::Taken) && nowIn(folder) - status.st_mtim.tv_sec < DayInSeconds)
            return false;
        return ::unlinkat(folder.number(), name.constData(), 0) == 0;
    } catch (const SystemError&) {
        return false; // not ours to remove, or gone meanwhile
    }
}

void replaceFile(const QString& path, const QByteArray& content)
{
    const QFileInfo info(path);
    try {
        const Descriptor folder = openFolder(QFile::encodeName(info.absolutePath()));
        NewFile file(folder, QFile::encodeName(info.fileName()), 0600);
        // The mode of the file that is replaced; a new one is everybody's to read.
        struct stat before = {};
        const bool replaces = ::stat(QFile::encodeName(path).constData(), &before) == 0;
        file.setMode(replaces ? before.st_mode & 07777 : 0644);
        file.write(content.constData(), content.size());
        file.verify();
        file.commit(NewFile::Existing::Replace);
    } catch (const SystemError& error) {
        throw Error(QStringLiteral("The file %1 could not be written: %2").arg(path, error.Description));
    }
}

} // namespace tavrin
