#pragma once

#include "base/export/Export.h"

#include <QImage>
#include <QString>

class QIODevice;

/// Pictures from files that nobody vouches for.
namespace tavrin::PictureReading {

/// Longest file that is read.
inline constexpr qint64 MaxFileLength = 64LL * 1024 * 1024;
/// Most pixels that are decoded.
inline constexpr qint64 MaxPixels = 50'000'000;

/// The endings of the formats that are read: png, jpg, jpeg, gif and bmp.
TAVRIN_COMPANION_EXPORT const QStringList& knownEndings();

/// The picture, turned as its camera was held. Raises an `Error` that names it by `path` when it is too long,
/// of no known format by its content, too large in pixels, or damaged; all but the last is found before
/// anything is decoded. With `longestSide` above 0 it is made smaller where it is larger, never larger.
TAVRIN_COMPANION_EXPORT QImage read(QIODevice& file, const QString& path, int longestSide = 0);

/// Raises the `Error` of a picture that cannot be shown.
[[noreturn]] TAVRIN_COMPANION_EXPORT void refuse(const QString& path, const QString& why);

} // namespace tavrin::PictureReading
