#include "host/services/HostImages.h"

#include "pictures/PictureReading.h"

#include <QFile>
#include <QFileInfo>

namespace tavrin {

bool HostImages::IsImageFile(const QString& fileName)
{
    return PictureReading::knownEndings().contains(QFileInfo(fileName).suffix().toLower());
}

QImage HostImages::LoadPicture(const QString& path)
{
    if (!QFileInfo(path).isFile())
        PictureReading::refuse(path, QStringLiteral("the file is not there"));
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        PictureReading::refuse(path, file.errorString());
    return PictureReading::read(file, path);
}

} // namespace tavrin
