#include "StoredName.h"

#include "base/Error.h"
#include "base/StorePath.h"
#include "frame/desktop/Desktop.h"
#include "modAttachments.h"

#include <QFileInfo>

#include <filesystem>
#include <system_error>

namespace tavrin {

namespace {

/// Qt says that a file does not exist, but not why it cannot be seen.
void requireFile(const QString& path)
{
    std::error_code problem;
    const std::filesystem::path native(path.toStdU16String());
    static_cast<void>(std::filesystem::last_write_time(native, problem));
    if (problem)
        throw Error(QString::fromLocal8Bit(problem.message()));
}

} // namespace

QString storedName(const QDateTime& created, const QDateTime& now, const QString& fileName)
{
    const QString folder = created.toString(QStringLiteral("yyyy\\MM"));
    const QString stamp = now.toString(QStringLiteral("yyyyMMddHHmmss"));
    return StorePath::join(folder, stamp + u'_' + fileName);
}

QDateTime creationDateOf(const QString& path)
{
    requireFile(path);
    const QFileInfo file(path);
    const QDateTime birth = file.birthTime();
    return birth.isValid() ? birth : file.lastModified();
}

QString MakeStoredName(const QString& path)
{
    const QDateTime created = creationDateOf(path);
    if (QFileInfo(path).isDir())
        throw Error(QStringLiteral("This is a folder. Only files can be attached."));
    return storedName(created, desktop().clock->now(), modAttachments::GetFileNameOnly(path));
}

} // namespace tavrin
