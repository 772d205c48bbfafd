#include "host/store/Thumbnails.h"

#include "base/failure/Error.h"
#include "base/files/FileWriter.h"
#include "base/pictures/PictureReading.h"
#include "base/values/StorePath.h"
#include "host/store/ThumbnailProcess.h"
#include "pictures/ThumbnailMaker.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>

#include <sys/stat.h>

namespace tavrin {

namespace {

const QString HiddenFolder = QLatin1String(ThumbnailFolder);
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
    place.Folder = file.Base.Folder + u'/' + HiddenFolder + u'/' + bucket;
    place.Stem = digits + u'-';
    place.Name = place.Stem + QStringLiteral("%1-%2.%3.jpg")
                                  .arg(status.st_size)
                                  .arg(status.st_mtim.tv_sec)
                                  .arg(status.st_mtim.tv_nsec);
    place.StorePath = StorePath::join(file.Base.Given, HiddenFolder + u'\\' + bucket + u'\\' + place.Name);
    return place;
}

/// Whether a whole thumbnail stands there: a program that is killed leaves none, a disk or a share may.
bool isKept(const Place& place)
{
    const QFileInfo info(place.path());
    if (!info.isFile() || info.isSymLink() || info.size() == 0 || info.size() > ThumbnailMaker::MaxLength)
        return false;
    QFile file(place.path());
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray bytes = file.read(ThumbnailMaker::MaxLength);
    return bytes.size() == info.size() && bytes.endsWith("\xFF\xD9") && ThumbnailMaker::isThumbnail(bytes);
}

/// Gives the thumbnail its name. Whoever may not read the picture may not read it.
void keepThumbnail(const Place& place, const QFile& picture, const QByteArray& bytes)
{
    constexpr mode_t withoutRunning = 0666;
    struct stat status = {};
    if (::fstat(picture.handle(), &status) != 0)
        throw SystemError::last();
    const Descriptor folder =
        openAt(AT_FDCWD, QFile::encodeName(place.Folder), O_RDONLY | O_DIRECTORY | O_NOFOLLOW);
    NewFile file(folder, QFile::encodeName(place.Name), 0600);
    file.setMode((status.st_mode & withoutRunning) | S_IRUSR);
    file.write(bytes.constData(), bytes.size());
    file.verify();
    file.commit(NewFile::Existing::Replace);
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
    return makeFolder(base + u'/' + HiddenFolder, base) && makeFolder(place.Folder, base) &&
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
    const Descriptor opened = openFolder(QFile::encodeName(place.Folder));
    for (const QString& left : folder.entryList({temporary}, QDir::Files | QDir::Hidden))
        removeAbandoned(opened, QFile::encodeName(left));
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
        if (!file || file->Name.startsWith(HiddenFolder + u'/'))
            return {};
        const Place place = placeOf(*file);
        if (isKept(place))
            return place.StorePath;
        if (m_failed.contains(place.path()) || !makeFolders(place, file->Base.Folder))
            return {};
        const ThumbnailAnswer made = make(*file->File);
        if (placeOf(*file).Name != place.Name) // written to meanwhile
            return {};
        if (made.IsNo)
            remember(place.path());
        if (made.Bytes.isEmpty())
            return {};
        keepThumbnail(place, *file->File, made.Bytes);
        sweep(place);
        return place.StorePath;
    } catch (...) {
        return {}; // a thumbnail that cannot be had is no failure
    }
}

void Thumbnails::remember(const QString& name)
{
    constexpr qsizetype mostRemembered = 1000; // what is forgotten costs another try
    if (m_failed.size() >= mostRemembered)
        m_failed.clear();
    m_failed.insert(name);
}

ThumbnailAnswer Thumbnails::make(QFile& picture) const
{
    if (picture.size() == 0 || picture.size() > PictureReading::MaxFileLength)
        return {{}, true};
    if (QFileInfo(m_program).isExecutable()) {
        ThumbnailAnswer made = makeThumbnailApart(m_program, picture, m_timeLimitMs);
        if (!ThumbnailMaker::isThumbnail(made.Bytes))
            made.Bytes.clear();
        return made;
    }
    try {
        return {ThumbnailMaker::make(picture, picture.fileName()), false};
    } catch (const Error&) {
        return {{}, picture.error() == QFileDevice::NoError}; // one that cannot be read may be read later
    }
}

std::unique_ptr<ThumbnailService> makeThumbnailService(Thumbnails& thumbnails)
{
    return std::make_unique<StoreThumbnailService>(thumbnails);
}

} // namespace tavrin
