#pragma once

#include "frame/host_contracts/Caches.h"
#include "host/StoreFile.h"

#include <QSet>

#include <functional>
#include <memory>

namespace tavrin {

/// The thumbnails of the pictures in the store.
///
/// A thumbnail is made when it is first asked for and kept in the folder ".thumbnails" of the base folder of
/// its picture, where every workstation finds it. Its name tells the picture's name, length and time, so a
/// picture that has changed gets a new one and loses the old.
class Thumbnails
{
public:
    using Opener = std::function<std::optional<StoreFile>(const QString& path)>;
    static constexpr int TimeLimitMs = 10'000;

    /// `opener` opens the files of the store. `program` makes the thumbnail of a picture in a process of its
    /// own; while there is none, pictures are decoded in this one.
    Thumbnails(Opener opener, QString program, int timeLimitMs = TimeLimitMs);

    /// The path of the thumbnail in the store; "" when there is none, for whatever reason. A picture of which
    /// none could be made is not tried again until it has changed.
    QString pathFor(const QString& path);

private:
    QByteArray make(QFile& picture) const;

    Opener m_opener;
    QString m_program;
    int m_timeLimitMs;
    QSet<QString> m_failed; // names of thumbnails
};

/// `thumbnails` must outlive it.
std::unique_ptr<ThumbnailService> makeThumbnailService(Thumbnails& thumbnails);

} // namespace tavrin
