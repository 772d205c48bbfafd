#pragma once

#include "frame/host_contracts/Caches.h"
#include "host/store/StoreFile.h"
#include "host/store/ThumbnailProcess.h"

#include <QSet>

#include <functional>
#include <memory>
#include <optional>

namespace tavrin {

/// The folder of the thumbnails in a base folder.
inline constexpr char ThumbnailFolder[] = ".thumbnails";

/// The thumbnails of the pictures in the store.
///
/// A thumbnail is made when it is first asked for and kept in the folder ".thumbnails" of the base folder of
/// its picture, where every workstation finds it. Its name tells the picture's name, length and time, so a
/// picture that has changed gets a new one and loses the old. Whoever may not read the picture may not read
/// it.
class Thumbnails
{
public:
    using Opener = std::function<std::optional<StoreFile>(const QString& path)>;
    static constexpr int TimeLimitMs = 10'000;

    /// `opener` opens the files of the store. `program` makes the thumbnail of a picture in a process of its
    /// own; while there is none, pictures are decoded in this one.
    Thumbnails(Opener opener, QString program, int timeLimitMs = TimeLimitMs);

    /// The path of the thumbnail in the store; "" when there is none, for whatever reason. A picture of which
    /// none is to be had is not tried again until it has changed; what failed otherwise is tried at the next
    /// call. A kept thumbnail that is damaged is made anew.
    QString pathFor(const QString& path);

private:
    ThumbnailAnswer make(QFile& picture) const;
    void remember(const QString& name);

    Opener m_opener;
    QString m_program;
    int m_timeLimitMs;
    QSet<QString> m_failed; // names of thumbnails that are not to be had; some of them
};

/// `thumbnails` must outlive it.
std::unique_ptr<ThumbnailService> makeThumbnailService(Thumbnails& thumbnails);

} // namespace tavrin
