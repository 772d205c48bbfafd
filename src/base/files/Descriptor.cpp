#include "base/files/Descriptor.h"

#include <QString>

#include <cerrno>
#include <cstring>
#include <unistd.h>

namespace tavrin {

namespace {

/// Repeats a call for as long as signals interrupt it.
template <typename Call>
auto uninterrupted(Call call)
{
    for (;;) {
        const auto result = call();
        if (result >= 0)
            return result;
        if (errno != EINTR)
            throw SystemError::last();
    }
}

template <typename Read>
qint64 readUntilFull(char* buffer, qint64 size, Read read)
{
    qint64 done = 0;
    while (done < size) {
        const ssize_t got =
            uninterrupted([&] { return read(buffer + done, static_cast<size_t>(size - done), done); });
        if (got == 0)
            break;
        done += got;
    }
    return done;
}

} // namespace

SystemError::SystemError(int code)
    : Error(QString::fromLocal8Bit(std::strerror(code)))
    , Code(code)
{
}

SystemError SystemError::last()
{
    return SystemError(errno);
}

Descriptor::~Descriptor()
{
    if (m_number >= 0)
        ::close(m_number);
}

Descriptor openAt(int folder, const QByteArray& name, int flags, mode_t mode)
{
    return Descriptor(
        uninterrupted([&] { return ::openat(folder, name.constData(), flags | O_CLOEXEC, mode); }));
}

Descriptor openFolder(const QByteArray& path)
{
    return openAt(AT_FDCWD, path, O_RDONLY | O_DIRECTORY);
}

void writeAll(const Descriptor& file, const char* data, qint64 length)
{
    while (length > 0) {
        const ssize_t written =
            uninterrupted([&] { return ::write(file.number(), data, static_cast<size_t>(length)); });
        if (written == 0)
            throw SystemError(ENOSPC);
        data += written;
        length -= written;
    }
}

qint64 readFull(const Descriptor& file, char* buffer, qint64 size)
{
    return readUntilFull(buffer, size,
                         [&](char* to, size_t count, qint64) { return ::read(file.number(), to, count); });
}

qint64 readFullAt(const Descriptor& file, char* buffer, qint64 size, qint64 offset)
{
    return readUntilFull(buffer, size, [&](char* to, size_t count, qint64 done) {
        return ::pread(file.number(), to, count, offset + done);
    });
}

void flush(const Descriptor& file)
{
    uninterrupted([&] { return ::fsync(file.number()); });
}

} // namespace tavrin
