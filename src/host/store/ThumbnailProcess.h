#pragma once

#include <QByteArray>
#include <QString>

class QFile;

namespace tavrin {

/// What came of the making of a thumbnail.
struct ThumbnailAnswer
{
    QByteArray Bytes;  ///< empty when there is none
    bool IsNo = false; ///< there is none to be had of this picture; else another try may give one
};

/// What `program`, which reads a picture and writes its thumbnail, makes of the file. None when it fails,
/// takes longer than that, or wants more memory than a picture of the largest size that is read. Its exit
/// code 1 alone is its own word that there is none to be had.
ThumbnailAnswer makeThumbnailApart(const QString& program, const QFile& file, int timeLimitMs);

} // namespace tavrin
