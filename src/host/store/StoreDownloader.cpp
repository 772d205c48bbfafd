#include "host/store/StoreDownloader.h"

#include "host/store/LocalCopy.h"
#include "host/store/SourceFile.h"

#include <optional>

namespace tavrin {

StoreDownloader::StoreDownloader(AttachmentStorePtr store, std::shared_ptr<LocalCopies> copies)
    : m_store(std::move(store))
    , m_copies(std::move(copies))
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
        naming(path, QStringLiteral("from"), [&] {
            const SourceFile from(m_store->openFile(path));
            copy.emplace(m_copies);
            checkFreeSpace(copy->file(), from.size());
            const auto take = [&](const char* data, qint64 length, qint64 done) {
                writeAll(copy->file(), data, length);
                DownloadProgress.raise(path, done, from.size());
                run->checkOwner();
                return !run->IsCancelled;
            };
            if (from.copyTo(m_bufferSize, take))
                copy->finish(from.size());
        });
    }
    if (run->IsCancelled) {
        copy.reset();
        DownloadComplete.raise(path, true);
        return {};
    }
    DownloadComplete.raise(path, false);
    return copy->keep();
}

} // namespace tavrin
