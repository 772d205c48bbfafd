#include "host/HostImages.h"

#include "base/Error.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>

namespace tavrin {

namespace {

const QStringList& knownEndings()
{
    static const QStringList endings{QStringLiteral("png"), QStringLiteral("jpg"), QStringLiteral("jpeg"),
                                     QStringLiteral("gif"), QStringLiteral("bmp")};
    return endings;
}

[[noreturn]] void refuse(const QString& path, const QString& why)
{
    throw Error(
        QStringLiteral("The picture %1 cannot be shown: %2").arg(QDir::toNativeSeparators(path), why));
}

void checkBeforeDecoding(QImageReader& reader, const QString& path)
{
    const QByteArray format = reader.format(); // by content
    if (format.isEmpty() || !knownEndings().contains(QString::fromLatin1(format)))
        refuse(path, QStringLiteral("it is no picture of a known format"));
    const QSize size = reader.size();
    if (!size.isValid() || size.isEmpty())
        refuse(path, QStringLiteral("it is damaged"));
    if (static_cast<qint64>(size.width()) * size.height() > HostImages::MaxPixels)
        refuse(path,
               QStringLiteral("it is too large (%1 by %2 pixels)").arg(size.width()).arg(size.height()));
}

} // namespace

bool HostImages::IsImageFile(const QString& fileName)
{
    return knownEndings().contains(QFileInfo(fileName).suffix().toLower());
}

QImage HostImages::LoadPicture(const QString& path)
{
    const QFileInfo info(path);
    if (!info.isFile())
        refuse(path, QStringLiteral("the file is not there"));
    if (info.size() > MaxFileLength)
        refuse(path, QStringLiteral("the file is too long"));
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        refuse(path, file.errorString());
    QImageReader reader(&file);
    reader.setDecideFormatFromContent(true);
    checkBeforeDecoding(reader, path);
    reader.setAutoTransform(true);
    QImage image = reader.read();
    if (image.isNull())
        refuse(path, QStringLiteral("it is damaged"));
    return image;
}

} // namespace tavrin
