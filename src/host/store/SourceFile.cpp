#include "host/store/SourceFile.h"

#include "host/store/AttachmentStore.h"

#include <QLocale>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <sys/statvfs.h>

namespace tavrin {

namespace {

struct stat statusOf(const Descriptor& file)
{
    struct stat status = {};
    if (::fstat(file.number(), &status) != 0)
        throw SystemError::last();
    return status;
}

QString sizeText(qint64 bytes)
{
    return QLocale::c().formattedDataSize(bytes, 1, QLocale::DataSizeTraditionalFormat);
}

void checkRegular(const Descriptor& file)
{
    if (!S_ISREG(statusOf(file).st_mode))
        throw StoreProblem(QStringLiteral("it is not a file"));
}

} // namespace

Descriptor openRegularFile(const std::function<Descriptor(int flags)>& open)
{
    // A pipe would wait for ever for somebody to write.
    constexpr int withoutWaiting = O_RDONLY | O_NONBLOCK | O_NOCTTY;
    try {
        Descriptor file = open(withoutWaiting);
        checkRegular(file);
        return file;
    } catch (const SystemError& error) {
        if (error.Code != EAGAIN)
            throw;
    }
    // Somebody has a lease on it. What was looked at is opened again, whatever bears its name by now.
    const Descriptor seen = open(O_PATH);
    checkRegular(seen);
    return openAt(AT_FDCWD, "/proc/self/fd/" + QByteArray::number(seen.number()), O_RDONLY | O_NOCTTY);
}

SourceFile::SourceFile(Descriptor file)
    : m_file(std::move(file))
    , m_before(statusOf(m_file))
{
    ::posix_fadvise(m_file.number(), 0, 0, POSIX_FADV_SEQUENTIAL); // a hint
}

void SourceFile::checkUnchanged(qint64 done, bool atEnd) const
{
    const struct stat now = statusOf(m_file);
    const bool written = now.st_mtim.tv_sec != m_before.st_mtim.tv_sec ||
                         now.st_mtim.tv_nsec != m_before.st_mtim.tv_nsec || now.st_size != m_before.st_size;
    if (written || (atEnd ? done != size() : done > size()))
        throw StoreProblem(QStringLiteral("it was changed by another program meanwhile; try again"));
}

bool SourceFile::copyTo(qint64 bufferSize, const Sink& sink) const
{
    // One byte more than is expected, so that one read tells the end of a short file.
    const qint64 capacity = std::max<qint64>(1, std::min(bufferSize, size() + 1));
    const auto buffer = std::make_unique<char[]>(static_cast<size_t>(capacity));
    qint64 done = 0;
    while (const qint64 length = readFull(m_file, buffer.get(), capacity)) {
        done += length;
        if (done > size())
            checkUnchanged(done, false);
        if (!sink(buffer.get(), length, done))
            return false;
    }
    checkUnchanged(done, true);
    return true;
}

void checkFreeSpace(const Descriptor& folder, qint64 needed)
{
    struct statvfs system = {};
    if (::fstatvfs(folder.number(), &system) != 0 || system.f_blocks == 0)
        return; // it does not tell
    const auto free = static_cast<double>(system.f_bavail) * static_cast<double>(system.f_frsize);
    if (free < static_cast<double>(needed))
        throw StoreProblem(QStringLiteral("there is not enough free space: %1 are needed, %2 are free")
                               .arg(sizeText(needed), sizeText(static_cast<qint64>(free))));
}

} // namespace tavrin
