#include "host/store/ThumbnailProcess.h"

#include "pictures/ThumbnailMaker.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QProcess>

#include <sys/resource.h>
#include <unistd.h>

namespace tavrin {

namespace {

constexpr rlim_t MemoryLimit = 1024UL * 1024 * 1024;
constexpr rlim_t OpenFilesLimit = 64;

void limit(__rlimit_resource_t what, rlim_t most)
{
    const rlimit bound = {most, most};
    ::setrlimit(what, &bound);
}

/// Runs between fork and exec: nothing but system calls.
void confine(int picture, rlim_t seconds)
{
    ::dup2(picture, STDIN_FILENO);
    limit(RLIMIT_CPU, seconds);
    limit(RLIMIT_CORE, 0);
    limit(RLIMIT_FSIZE, 0);
    limit(RLIMIT_NOFILE, OpenFilesLimit);
#ifndef __SANITIZE_ADDRESS__ // whose shadow takes more than any machine has
    limit(RLIMIT_AS, MemoryLimit);
#endif
}

} // namespace

ThumbnailAnswer makeThumbnailApart(const QString& program, const QFile& file, int timeLimitMs)
{
    const int picture = file.handle();
    if (::lseek(picture, 0, SEEK_SET) != 0)
        return {};
    const auto seconds = static_cast<rlim_t>(timeLimitMs) / 1000 + 1;
    QProcess process;
    process.setProgram(program);
    process.setStandardErrorFile(QProcess::nullDevice());
    process.setChildProcessModifier([picture, seconds] { confine(picture, seconds); });
    process.start(QIODevice::ReadOnly);

    const QDeadlineTimer deadline(timeLimitMs);
    QByteArray bytes;
    do {
        process.waitForReadyRead(static_cast<int>(deadline.remainingTime()));
        bytes += process.readAllStandardOutput();
    } while (process.state() != QProcess::NotRunning && !deadline.hasExpired() &&
             bytes.size() <= ThumbnailMaker::MaxLength);
    if (process.state() != QProcess::NotRunning) {
        process.kill();
        process.waitForFinished();
        return {};
    }
    if (process.error() == QProcess::FailedToStart || process.exitStatus() != QProcess::NormalExit)
        return {};
    constexpr int saysNo = 1;
    if (process.exitCode() != 0)
        return {{}, process.exitCode() == saysNo};
    return {bytes, false};
}

} // namespace tavrin
