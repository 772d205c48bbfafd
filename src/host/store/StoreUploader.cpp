#include "host/store/StoreUploader.h"

#include "base/files/FileWriter.h"
#include "base/files/OpenBeneath.h"
#include "host/store/SourceFile.h"

#include <QFile>

#include <cerrno>
#include <sys/stat.h>

namespace tavrin {

namespace {

constexpr qint64 BufferSize = 1 << 20;
constexpr mode_t StoredMode = 0666; // less the mask of the process; never executable

SourceFile openSource(const QString& path)
{
    if (path.contains(QChar(u'\0'))) // the system would read the name up to there
        throw SystemError(ENOENT);
    const QByteArray name = QFile::encodeName(path);
    return SourceFile(openRegularFile([&name](int flags) { return openAt(AT_FDCWD, name, flags); }));
}

[[noreturn]] void raiseTaken()
{
    throw StoreProblem(QStringLiteral("a file of that name is there already"));
}

/// The folder in which the file is to stand, made where it is missing.
Descriptor openDestination(const AttachmentStore::Place& place)
{
    const Descriptor base = AttachmentStore::openBase(place, AttachmentStore::Missing::MakeOwn);
    const QList<QByteArray> folders = place.Names.first(place.Names.size() - 1);
    try {
        return makeFoldersBeneath(base, folders);
    } catch (const SystemError& error) {
        throw StoreProblem(QStringLiteral("the folder '%1/%2' cannot be opened or made: %3")
                               .arg(place.Folder, QFile::decodeName(folders.join('/')), error.Description));
    }
}

void checkName(const Descriptor& folder, const QByteArray& name)
{
    if (name.startsWith(TemporaryPrefix))
        throw StoreProblem(QStringLiteral("its name is kept for temporary files"));
    struct stat status = {};
    if (::fstatat(folder.number(), name.constData(), &status, AT_SYMLINK_NOFOLLOW) == 0)
        raiseTaken();
    if (errno != ENOENT)
        throw SystemError::last();
}

/// Somebody may have moved the folders while the file was copied; it must stand where its row will look.
void checkPlace(const AttachmentStore::Place& place, const Descriptor& own)
{
    struct stat written = {};
    struct stat found = {};
    try {
        const Descriptor file = openBeneath(AttachmentStore::openBase(place), place.Names, O_PATH);
        if (::fstat(own.number(), &written) == 0 && ::fstat(file.number(), &found) == 0 &&
            written.st_dev == found.st_dev && written.st_ino == found.st_ino)
            return;
    } catch (const Error&) {
        // told below
    }
    throw StoreProblem(QStringLiteral("its folder was moved or replaced meanwhile"));
}

void finish(NewFile& file, const AttachmentStore::Place& place)
{
    file.verify();
    try {
        file.commit(NewFile::Existing::Keep);
    } catch (const SystemError& error) {
        if (error.Code == EEXIST)
            raiseTaken();
        throw;
    }
    try {
        checkPlace(place, file.descriptor());
    } catch (...) {
        file.takeBack();
        throw;
    }
}

} // namespace

StoreUploader::StoreUploader(AttachmentStorePtr store)
    : m_store(std::move(store))
{
}

void StoreUploader::Upload(const QString& source, const QString& destination, const QVariant& options)
{
    Q_UNUSED(options)
    const auto run = m_runs.begin();
    naming(source, QStringLiteral("to"), [&] {
        const SourceFile from = openSource(source);
        const AttachmentStore::Place place = m_store->placeOf(destination);
        const Descriptor folder = openDestination(place);
        checkName(folder, place.Names.last());
        checkFreeSpace(folder, from.size());
        NewFile file(folder, place.Names.last(), StoredMode);
        from.copyTo(BufferSize, [&](const char* data, qint64 length, qint64 done) {
            file.write(data, length);
            UploadProgress.raise(source, done, from.size());
            run->checkOwner();
            return true;
        });
        finish(file, place);
    });
    UploadComplete.raise(source, false);
}

} // namespace tavrin
