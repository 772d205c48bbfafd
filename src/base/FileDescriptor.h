#pragma once

#include <unistd.h>
#include <utility>

namespace tavrin {

/// A file descriptor that closes itself, and whose close can be checked.
class FileDescriptor
{
public:
    /// Takes the descriptor over; a negative number is none.
    explicit FileDescriptor(int number)
        : m_number(number)
    {
    }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor()
    {
        if (m_number >= 0)
            ::close(m_number);
    }

    int number() const { return m_number; }
    bool close() { return ::close(std::exchange(m_number, -1)) == 0; }

private:
    int m_number;
};

} // namespace tavrin
