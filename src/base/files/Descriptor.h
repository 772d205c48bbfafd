#pragma once

#include "base/export/Export.h"
#include "base/failure/Error.h"

#include <QByteArray>

#include <fcntl.h>
#include <sys/types.h>
#include <utility>

namespace tavrin {

/// A call of the system that failed; the description is the system's own word for it.
class TAVRIN_COMPANION_EXPORT SystemError : public Error
{
public:
    explicit SystemError(int code);
    /// Of the call that has just failed, by `errno`.
    static SystemError last();

    int Code;
};

/// A file descriptor that closes itself.
class TAVRIN_COMPANION_EXPORT Descriptor
{
public:
    Descriptor() = default;
    explicit Descriptor(int number)
        : m_number(number)
    {
    }
    Descriptor(Descriptor&& other) noexcept
        : m_number(std::exchange(other.m_number, -1))
    {
    }
    Descriptor& operator=(Descriptor&& other) noexcept
    {
        std::swap(m_number, other.m_number);
        return *this;
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor();

    bool isOpen() const { return m_number >= 0; }
    int number() const { return m_number; }

private:
    int m_number = -1;
};

// Each of these goes on when a signal interrupts it, and raises a `SystemError`.

/// Opens a file or folder of the folder; never one that a program started later would inherit. The folder
/// `AT_FDCWD` is the working folder.
TAVRIN_COMPANION_EXPORT Descriptor openAt(int folder, const QByteArray& name, int flags, mode_t mode = 0);
TAVRIN_COMPANION_EXPORT Descriptor openFolder(const QByteArray& path);
/// Writes all of it; a write that takes only a part is no end.
TAVRIN_COMPANION_EXPORT void writeAll(const Descriptor& file, const char* data, qint64 length);
/// Reads until the buffer is full or the file ends; returns the bytes read.
TAVRIN_COMPANION_EXPORT qint64 readFull(const Descriptor& file, char* buffer, qint64 size);
/// The same from a place in the file, leaving the file's position alone.
TAVRIN_COMPANION_EXPORT qint64 readFullAt(const Descriptor& file, char* buffer, qint64 size, qint64 offset);
/// Brings it to the disk.
TAVRIN_COMPANION_EXPORT void flush(const Descriptor& file);

} // namespace tavrin
