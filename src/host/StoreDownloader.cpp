#include "host/StoreDownloader.h"

#include "host/SourceFile.h"

#include <QDir>
#include <QFile>

#include <optional>
#include <sys/stat.h>
#include <unistd.h>

namespace tavrin {

namespace {

QString temporaryFolder()
{
    const QString folder = QDir::tempPath();
    if (folder.isEmpty()) // it is not there; a copy in the working folder would be nobody's
        throw StoreProblem(
            QStringLiteral("the folder for temporary files, which TMPDIR names, is not there"));
    return folder;
}

/// The copy and its folder, which go again unless they are kept.
class LocalCopy
{
public:
    LocalCopy()
        : m_folder(QFile::encodeName(temporaryFolder() + QStringLiteral("/tavrin-download-XXXXXX")))
    {
        if (!::mkdtemp(m_folder.data())) { // for the person alone
            const SystemError error = SystemError::last();
            throw StoreProblem(QStringLiteral("no folder can be made in '%1': %2")
                                   .arg(temporaryFolder(), error.Description));
        }
        m_isToBeRemoved = true;
        try {
            m_file = openAt(AT_FDCWD, path(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, 0600);
        } catch (...) {
            ::rmdir(m_folder.constData());
            throw;
        }
    }
    ~LocalCopy()
    {
        if (!m_isToBeRemoved)
            return;
        ::unlink(path().constData());
        ::rmdir(m_folder.constData());
    }
    LocalCopy(const LocalCopy&) = delete;
    LocalCopy& operator=(const LocalCopy&) = delete;

    QByteArray path() const { return m_folder + "/attachment.tmp"; }
    const Descriptor& file() const { return m_file; }
    void checkLength(qint64 expected) const
    {
        struct stat status = {};
        if (::fstat(m_file.number(), &status) != 0)
            throw SystemError::last();
        if (status.st_size != expected)
            throw StoreProblem(
                QStringLiteral("the copy in '%1' has not its length").arg(QFile::decodeName(m_folder)));
    }
    void keep() { m_isToBeRemoved = false; }

private:
    QByteArray m_folder;
    Descriptor m_file;
    bool m_isToBeRemoved = false;
};

/// Runs a part of the download, and names the file in what it raises; what a handler raises stays as it is.
template <typename Part>
auto naming(const QString& path, Part part)
{
    const auto fail = [&path](const QString& reason) {
        throw Error(QStringLiteral("The file '%1' could not be copied from the attachments folder: %2.")
                        .arg(path, reason));
    };
    try {
        return part();
    } catch (const SystemError& error) {
        fail(error.Description);
        throw;
    } catch (const StoreProblem& problem) {
        fail(problem.Description);
        throw;
    }
}

} // namespace

StoreDownloader::StoreDownloader(AttachmentStorePtr store)
    : m_store(std::move(store))
{
}

void StoreDownloader::SetBufferSize(qint32 bytes)
{
    if (bytes < 1)
        throw Error(QStringLiteral("A download needs a buffer of at least one byte, not %1.").arg(bytes));
    m_bufferSize = bytes;
}

void StoreDownloader::Cancel()
{
    m_runs.cancel();
}

QString StoreDownloader::Download(const QString& path)
{
    const auto run = m_runs.begin();
    DownloadStarted.raise(path);
    run->checkOwner();

    std::optional<LocalCopy> copy;
    if (!run->IsCancelled) {
        naming(path, [&] {
            const SourceFile from(m_store->openFile(path));
            copy.emplace();
            checkFreeSpace(copy->file(), from.size());
            const auto take = [&](const char* data, qint64 length, qint64 done) {
                writeAll(copy->file(), data, length);
                DownloadProgress.raise(path, done, from.size());
                run->checkOwner();
                return !run->IsCancelled;
            };
            if (from.copyTo(m_bufferSize, take))
                copy->checkLength(from.size());
        });
    }
    if (run->IsCancelled) {
        copy.reset();
        DownloadComplete.raise(path, true);
        return {};
    }
    DownloadComplete.raise(path, false);
    copy->keep();
    return QFile::decodeName(copy->path());
}

} // namespace tavrin
