#pragma once

#include <QtGlobal>

#include <algorithm>
#include <csignal>
#include <sys/resource.h>

namespace tavrin::test {

/// While it lives, a write that would make a file longer than so many bytes fails, as on a disk that is full.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        std::signal(SIGXFSZ, SIG_IGN); // which ends the process else
        if (::getrlimit(RLIMIT_FSIZE, &m_before) != 0)
            qFatal("no limit is known");
        set({std::min(bytes, m_before.rlim_max), m_before.rlim_max});
    }
    ~FileSizeLimit() { set(m_before); }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    static void set(const rlimit& limit)
    {
        if (::setrlimit(RLIMIT_FSIZE, &limit) != 0)
            qFatal("the size of files cannot be limited");
    }

    rlimit m_before = {};
};

} // namespace tavrin::test
