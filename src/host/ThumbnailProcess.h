#pragma once

#include <QByteArray>
#include <QString>

class QFile;

namespace tavrin {

/// What `program`, which reads a picture and writes its thumbnail, makes of the file. Empty when it fails,
/// takes longer than that, or wants more memory than a picture of the largest size that is read.
QByteArray makeThumbnailApart(const QString& program, const QFile& file, int timeLimitMs);

} // namespace tavrin
