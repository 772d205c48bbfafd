#pragma once

#include "host/store/AttachmentStore.h"
#include "host/store/LocalCopies.h"
#include "host/store/TransferRun.h"

namespace tavrin {

/// Fetches files of the attachments folders.
///
/// The copies of a host lie beside one another in a folder of its own below the platform's place for
/// temporary files, and nobody but the person may read them. A copy is the caller's to rename and to remove;
/// one that stays goes at the end of the host, unless somebody has changed it. No progress is told of an
/// empty file.
class StoreDownloader final : public Downloader
{
public:
    static constexpr qint32 DefaultBufferSize = 1 << 20;

    StoreDownloader(AttachmentStorePtr store, std::shared_ptr<LocalCopies> copies);

    /// Raises an `Error` for less than one byte.
    void SetBufferSize(qint32 bytes) override;
    /// `path` is one as `AttachmentStore` describes it. A cancelled download gives "" and leaves no copy.
    /// Raises an `Error` that names the file and says why; no copy is left then, nor when a handler raises.
    QString Download(const QString& path) override;
    /// Counts until the last progress has been told.
    void Cancel() override;

private:
    AttachmentStorePtr m_store;
    std::shared_ptr<LocalCopies> m_copies;
    TransferRuns m_runs;
    qint32 m_bufferSize = DefaultBufferSize;
};

} // namespace tavrin
