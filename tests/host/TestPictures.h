#pragma once

#include <QBuffer>
#include <QByteArray>
#include <QColor>
#include <QImage>
#include <QPainter>
#include <QtEndian>

// Pictures that tests make, and how to know them again.

namespace tavrin::test {

inline QByteArray encoded(const QImage& image, const char* format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, format))
        qFatal("cannot encode");
    return bytes;
}

inline QImage plain(const QSize& size, const QColor& color)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

/// Left half red, right half blue.
inline QImage halves(const QSize& size)
{
    QImage image = plain(size, Qt::red);
    QPainter(&image).fillRect(QRect(size.width() / 2, 0, size.width(), size.height()), Qt::blue);
    return image;
}

/// A PNG that says it has this many pixels, and holds one.
inline QByteArray hollowPng(quint32 width, quint32 height)
{
    QByteArray bytes = encoded(plain({1, 1}, Qt::red), "png");
    qToBigEndian(width, bytes.data() + 16);
    qToBigEndian(height, bytes.data() + 20);
    quint32 crc = 0xFFFFFFFFU; // CRC-32 of the header chunk: its type and content
    for (int i = 12; i < 29; ++i) {
        crc ^= static_cast<quint8>(bytes.at(i));
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc & 1U) ? (crc >> 1) ^ 0xEDB88320U : crc >> 1;
    }
    qToBigEndian(~crc, bytes.data() + 29);
    return bytes;
}

inline bool isNear(const QColor& a, const QColor& b)
{
    constexpr int Tolerance = 12; // JPEG keeps colours nearly
    return qAbs(a.red() - b.red()) <= Tolerance && qAbs(a.green() - b.green()) <= Tolerance &&
           qAbs(a.blue() - b.blue()) <= Tolerance;
}

} // namespace tavrin::test
