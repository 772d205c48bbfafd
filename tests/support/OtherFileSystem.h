#pragma once

#include <QDir>
#include <QFile>
#include <QString>

#include <sys/stat.h>
#include <unistd.h>

namespace tavrin::test {

/// The template of a folder in memory, which is another file system than that of temporary files; "" where
/// there is none.
inline QString otherFileSystem()
{
    struct stat here = {};
    struct stat there = {};
    const bool isOther = ::stat(QFile::encodeName(QDir::tempPath()).constData(), &here) == 0 &&
                         ::stat("/dev/shm", &there) == 0 && here.st_dev != there.st_dev &&
                         ::access("/dev/shm", W_OK) == 0;
    return isOther ? QStringLiteral("/dev/shm/tavrin-test-XXXXXX") : QString();
}

} // namespace tavrin::test
