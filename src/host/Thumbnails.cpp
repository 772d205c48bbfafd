#include "host/Thumbnails.h"

#include "base/Error.h"
#include "base/FileWriter.h"
#include "base/StorePath.h"
#include "host/ThumbnailProcess.h"
#include "pictures/PictureReading.h"
#include "pictures/ThumbnailMaker.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>

#include <sys/stat.h>

namespace tavrin {

namespace {

const QString ThumbnailFolder = QStringLiteral(".thumbnails");
constexpr int DigitsOfName = 32;

/// Where the thumbnail of a file stands.
struct Place
{
    QString Folder; // on this platform
    QString Stem;   // of all thumbnails of this file
    QString Name;
    QString StorePath; // as the store is asked for it

    QString path() const { return Folder + u'/' + Name; }
};

Place placeOf(const StoreFile& file)
{
    struct stat status = {};
    if (::fstat(file.File->handle(), &status) != 0)
        throw Error(QStringLiteral("The file %1 cannot be looked at").arg(file.Name));
    const QString digits = QString::fromLatin1(
        QCryptographicHash::hash(file.Name.toUtf8(), QCryptographicHash::Sha256).toHex().left(DigitsOfName));
    const QString bucket = digits.left(2); // no folder grows too large to be searched
    Place place;
    place.Folder = file.Base.Folder + u'/' + ThumbnailFolder + u'/' + bucket;
    place.Stem = digits + u'-';
    place.Name = place.Stem + QStringLiteral("%1-%2.%3.jpg")
                                  .arg(status.st_size)
                                  .arg(status.st_mtim.tv_sec)
                                  .arg(status.st_mtim.tv_nsec);
    place.StorePath = StorePath::join(file.Base.Given, ThumbnailFolder + u'\\' + bucket + u'\\' + place.Name);
    return place;
}

bool isKept(const Place& place)
{
    const QFileInfo info(place.path());
    return info.isFile() && !info.isSymLink() && info.size() > 0;
}

/// A folder that whoever may write to the base folder may write to.
bool makeFolder(const QString& path, const QString& base)
{
    const QByteArray name = QFile::encodeName(path);
    struct stat above = {};
    if (::stat(QFile::encodeName(base).constData(), &above) != 0)
        return false;
    if (::mkdir(name.constData(), 0777) == 0)
        ::chmod(name.constData(), above.st_mode & 07777);
    const QFileInfo folder(path);
    return folder.isDir() && !folder.isSymLink();
}

bool makeFolders(const Place& place, const QString& base)
{
    return makeFolder(base + u'/' + ThumbnailFolder, base) && makeFolder(place.Folder, base) &&
           QFileInfo(place.Folder).isWritable();
}

/// Removes what the thumbnail takes the place of, and what a killed program has left.
void sweep(const Place& place)
{
    QDir folder(place.Folder);
    for (const QFileInfo& old : folder.entryInfoList({place.Stem + u'*'}, QDir::Files | QDir::System)) {
        if (old.fileName() != place.Name)
            folder.remove(old.fileName());
    }
    const QString temporary = QString::fromLatin1(TemporaryPrefix) + u'*';
    const QDateTime yesterday = QDateTime::currentDateTimeUtc().addDays(-1);
    for (const QFileInfo& left : folder.entryInfoList({temporary}, QDir::Files | QDir::Hidden)) {
        if (left.lastModified() < yesterday)
            folder.remove(left.fileName());
    }
}

class StoreThumbnailService : public ThumbnailService
{
public:
    explicit StoreThumbnailService(Thumbnails& thumbnails)
        : m_thumbnails(thumbnails)
    {
    }
    QVariant GetThumbnailPath(const QString& path) override { return m_thumbnails.pathFor(path); }

private:
    Thumbnails& m_thumbnails;
};

} // namespace

Thumbnails::Thumbnails(Opener opener, QString program, int timeLimitMs)
    : m_opener(std::move(opener))
    , m_program(std::move(program))
    , m_timeLimitMs(timeLimitMs)
{
}

QString Thumbnails::pathFor(const QString& path)
{
    try {
        const std::optional<StoreFile> file = m_opener(path);
        if (!file || file->Name.startsWith(ThumbnailFolder + u'/'))
            return {};
        const Place place = placeOf(*file);
        if (isKept(place))
            return place.StorePath;
        if (m_failed.contains(place.path()) || !makeFolders(place, file->Base.Folder))
            return {};
        const QByteArray bytes = make(*file->File);
        if (placeOf(*file).Name != place.Name) // written to meanwhile
            return {};
        if (bytes.isEmpty()) {
            m_failed.insert(place.path());
            return {};
        }
        replaceFile(place.path(), bytes);
        sweep(place);
        return place.StorePath;
    } catch (...) {
        return {}; // a thumbnail that cannot be had is no failure
    }
}

QByteArray Thumbnails::make(QFile& picture) const
{
    if (picture.size() == 0 || picture.size() > PictureReading::MaxFileLength)
        return {};
    if (QFileInfo(m_program).isExecutable()) {
        const QByteArray bytes = makeThumbnailApart(m_program, picture, m_timeLimitMs);
        return ThumbnailMaker::isThumbnail(bytes) ? bytes : QByteArray();
    }
    try {
        return ThumbnailMaker::make(picture, picture.fileName());
    } catch (const Error&) {
        return {};
    }
}

std::unique_ptr<ThumbnailService> makeThumbnailService(Thumbnails& thumbnails)
{
    return std::make_unique<StoreThumbnailService>(thumbnails);
}

} // namespace tavrin
