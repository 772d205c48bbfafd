#include "FileWriter.h"

#include "Error.h"
#include "FileDescriptor.h"

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tavrin {

namespace {

[[noreturn]] void raise(const QString& path, int code)
{
    throw Error(QStringLiteral("The file %1 could not be written: %2")
                    .arg(path, QString::fromLocal8Bit(strerror(code))));
}

void writeAll(const FileDescriptor& file, const QByteArray& content, const QString& path)
{
    const char* rest = content.constData();
    for (qsizetype left = content.size(); left > 0;) {
        const ssize_t written = ::write(file.number(), rest, static_cast<size_t>(left));
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            raise(path, written < 0 ? errno : ENOSPC);
        rest += written;
        left -= written;
    }
}

void flush(const FileDescriptor& file, const QString& path)
{
    while (::fsync(file.number()) != 0) {
        if (errno != EINTR)
            raise(path, errno);
    }
}

/// Fills the temporary file, or raises with whatever stopped it.
void writeTemporary(FileDescriptor& file, const QString& temporary, const QByteArray& content,
                    const QString& path)
{
    // The mode of the file that is replaced; a new one is everybody's to read.
    struct stat before = {};
    const bool replaces = ::stat(QFile::encodeName(path).constData(), &before) == 0;
    if (::fchmod(file.number(), replaces ? before.st_mode & 07777 : 0644) != 0)
        raise(path, errno);
    writeAll(file, content, path);
    flush(file, path);
    if (!file.close())
        raise(path, errno);
    QFile written(temporary);
    if (!written.open(QIODevice::ReadOnly))
        raise(path, EIO);
    QCryptographicHash hash(QCryptographicHash::Sha256);
    if (written.size() != content.size() || !hash.addData(&written) ||
        hash.result() != QCryptographicHash::hash(content, QCryptographicHash::Sha256))
        raise(path, EIO);
}

} // namespace

void replaceFile(const QString& path, const QByteArray& content)
{
    const QString folder = QFileInfo(path).absolutePath();
    QByteArray temporary = QFile::encodeName(folder + u'/') + TemporaryPrefix + "XXXXXX";
    FileDescriptor file(::mkostemp(temporary.data(), O_CLOEXEC));
    if (file.number() < 0)
        raise(path, errno);
    const FileDescriptor directory(
        ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    try {
        if (directory.number() < 0)
            raise(path, errno);
        writeTemporary(file, QFile::decodeName(temporary), content, path);
        if (::rename(temporary.constData(), QFile::encodeName(path).constData()) != 0)
            raise(path, errno);
    } catch (...) {
        ::unlink(temporary.constData());
        throw;
    }
    flush(directory, path);
}

} // namespace tavrin
