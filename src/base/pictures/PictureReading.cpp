#include "base/pictures/PictureReading.h"

#include "base/failure/Error.h"

#include <QDir>
#include <QImageReader>

#include <algorithm>

namespace tavrin::PictureReading {

namespace {

/// The size with which the longest side is no longer than that, the proportions kept.
QSize reduced(const QSize& size, int longestSide)
{
    if (longestSide <= 0 || std::max(size.width(), size.height()) <= longestSide)
        return size;
    // A very long and thin picture would lose its short side.
    return size.scaled(longestSide, longestSide, Qt::KeepAspectRatio).expandedTo(QSize(1, 1));
}

void checkBeforeDecoding(QImageReader& reader, const QString& path)
{
    const QByteArray format = reader.format(); // by content
    if (format.isEmpty() || !knownEndings().contains(QString::fromLatin1(format)))
        refuse(path, QStringLiteral("it is no picture of a known format"));
    const QSize size = reader.size();
    if (!size.isValid() || size.isEmpty())
        refuse(path, QStringLiteral("it is damaged"));
    if (static_cast<qint64>(size.width()) * size.height() > MaxPixels)
        refuse(path,
               QStringLiteral("it is too large (%1 by %2 pixels)").arg(size.width()).arg(size.height()));
}

} // namespace

const QStringList& knownEndings()
{
    static const QStringList endings{QStringLiteral("png"), QStringLiteral("jpg"), QStringLiteral("jpeg"),
                                     QStringLiteral("gif"), QStringLiteral("bmp")};
    return endings;
}

void refuse(const QString& path, const QString& why)
{
    throw Error(
        QStringLiteral("The picture %1 cannot be shown: %2").arg(QDir::toNativeSeparators(path), why));
}

QImage read(QIODevice& file, const QString& path, int longestSide)
{
    if (file.size() > MaxFileLength)
        refuse(path, QStringLiteral("the file is too long"));
    QImageReader reader(&file);
    reader.setDecideFormatFromContent(true);
    checkBeforeDecoding(reader, path);
    reader.setAutoTransform(true);
    // The decoder of JPEG leaves out what is not needed; others would decode beyond the limit of memory.
    if (reader.format() == "jpeg")
        reader.setScaledSize(reduced(reader.size(), longestSide));
    const QImage image = reader.read();
    if (image.isNull())
        refuse(path, QStringLiteral("it is damaged"));
    const QSize wanted = reduced(image.size(), longestSide);
    return wanted == image.size() ? image
                                  : image.scaled(wanted, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

} // namespace tavrin::PictureReading
