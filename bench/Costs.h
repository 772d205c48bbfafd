#pragma once

#include <QFile>

#include <ctime>
#include <malloc.h>
#include <unistd.h>

// What a piece of work takes.

namespace tavrin::bench {

/// Seconds of the processor, all on this thread: what else the machine does counts for nothing.
template <typename Work>
double seconds(Work&& work)
{
    const auto now = [] {
        timespec time = {};
        clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
    };
    const double start = now();
    work();
    return now() - start;
}

/// What this process holds in memory now.
inline double residentMegabytes()
{
    malloc_trim(0);
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return file.readAll().split(' ').at(1).toDouble() * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1e6;
}

} // namespace tavrin::bench
