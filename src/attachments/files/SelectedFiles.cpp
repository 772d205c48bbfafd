#include "attachments/files/SelectedFiles.h"

#include <QFileInfo>

namespace tavrin {

namespace {

constexpr QChar Separator = u'\0';

} // namespace

QStringList ParseSelectedFiles(const QString& text)
{
    if (text.isEmpty())
        return {};
    QStringList parts = text.split(Separator);
    if (parts.size() == 1)
        return parts;
    QString folder = parts.takeFirst();
    if (!folder.endsWith(u'/'))
        folder += u'/';
    for (QString& name : parts)
        name.prepend(folder);
    return parts;
}

QString selectedFilesText(const QStringList& paths)
{
    if (paths.size() < 2)
        return paths.join(QString());
    QStringList parts{QFileInfo(paths.first()).path()};
    for (const QString& path : paths)
        parts << QFileInfo(path).fileName();
    return parts.join(Separator);
}

} // namespace tavrin
