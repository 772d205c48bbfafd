#include "attachments/files/TemporaryCopy.h"

#include "base/failure/Error.h"
#include "base/files/LocalFiles.h"

#include <QDir>
#include <QFileInfo>

namespace tavrin {

namespace {

void removeForced(const QFileInfo& copy)
{
    QFile file(copy.filePath());
    if (!copy.isSymLink()) // what a link leads to stays as it is
        file.setPermissions(file.permissions() | QFile::WriteOwner);
    if (!file.remove())
        throw Error(file.errorString());
}

} // namespace

QString renameTemporaryCopy(const QString& copy, const QString& name)
{
    const QFileInfo source(copy);
    const QFileInfo target(source.dir().filePath(LocalFiles::usableFileName(name)));
    if (target.exists() && source == target) {
        LocalFiles::makeUnexecutable(target.filePath());
        return target.filePath();
    }
    if (target.isFile() || target.isSymLink())
        removeForced(target);
    LocalFiles::moveFile(copy, target.filePath());
    return target.filePath();
}

} // namespace tavrin
