#include "pictures/ThumbnailMaker.h"

#include "base/pictures/PictureReading.h"

#include <QBuffer>
#include <QColorSpace>
#include <QImageReader>
#include <QPainter>

namespace tavrin::ThumbnailMaker {

namespace {

constexpr int Quality = 90;

QImage onLightGround(QImage picture)
{
    const QColorSpace screen(QColorSpace::SRgb);
    if (picture.colorSpace().isValid() && picture.colorSpace() != screen)
        picture.convertToColorSpace(screen);
    QImage ground(picture.size(), QImage::Format_RGB32);
    ground.fill(Qt::white);
    picture.setDevicePixelRatio(1);
    QPainter(&ground).drawImage(0, 0, picture);
    return ground;
}

} // namespace

QByteArray make(QIODevice& file, const QString& path)
{
    const QImage picture = onLightGround(PictureReading::read(file, path, LongestSide));
    QByteArray bytes;
    QBuffer buffer(&bytes);
    if (!buffer.open(QIODevice::WriteOnly) || !picture.save(&buffer, "jpeg", Quality))
        PictureReading::refuse(path, QStringLiteral("no thumbnail can be made of it"));
    return bytes;
}

bool isThumbnail(const QByteArray& bytes)
{
    if (bytes.isEmpty() || bytes.size() > MaxLength)
        return false;
    QBuffer buffer;
    buffer.setData(bytes);
    if (!buffer.open(QIODevice::ReadOnly))
        return false;
    QImageReader reader(&buffer, "jpeg");
    if (!reader.canRead())
        return false;
    const QSize size = reader.size();
    return !size.isEmpty() && size.width() <= LongestSide && size.height() <= LongestSide;
}

} // namespace tavrin::ThumbnailMaker
