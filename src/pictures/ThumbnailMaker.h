#pragma once

#include <QByteArray>
#include <QString>

class QIODevice;

namespace tavrin::ThumbnailMaker {

/// Longest side of a thumbnail in pixels: enough for a cover on a dense screen.
inline constexpr int LongestSide = 640;
/// Longest thumbnail in bytes.
inline constexpr qsizetype MaxLength = qsizetype(4) * 1024 * 1024;

/// The bytes of a JPEG: the picture turned as its camera was held, on a light ground where it is transparent,
/// in the colours of a common screen, and without what else the file tells, such as the place. A picture is
/// never enlarged. Raises an `Error` that names the file by `path` when there is none to be had.
QByteArray make(QIODevice& file, const QString& path);

/// Whether these are the bytes of a thumbnail.
bool isThumbnail(const QByteArray& bytes);

} // namespace tavrin::ThumbnailMaker
