#include "base/files/FileReader.h"

#include <QFile>

#include <cerrno>
#include <sys/stat.h>

namespace tavrin {

QByteArray readContent(const Descriptor& file, qint64 longest)
{
    struct stat status = {};
    if (::fstat(file.number(), &status) != 0)
        throw SystemError::last();
    if (!S_ISREG(status.st_mode))
        throw SystemError(EINVAL);
    if (status.st_size > longest)
        throw SystemError(EFBIG);
    QByteArray content(status.st_size, Qt::Uninitialized);
    content.truncate(readFullAt(file, content.data(), content.size(), 0));
    return content;
}

QByteArray readFile(const QString& path, qint64 longest)
{
    try {
        return readContent(openAt(AT_FDCWD, QFile::encodeName(path), O_RDONLY | O_NONBLOCK | O_NOCTTY),
                           longest);
    } catch (const SystemError& error) {
        const QString reason =
            error.Code == EINVAL ? QStringLiteral("it is no regular file") : error.Description;
        throw Error(QStringLiteral("The file %1 could not be read: %2").arg(path, reason));
    }
}

} // namespace tavrin
