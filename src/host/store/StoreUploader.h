#pragma once

#include "host/store/AttachmentStore.h"
#include "host/store/TransferRun.h"

namespace tavrin {

/// Brings files into the attachments folders.
///
/// A file comes to stand under its name complete, compared with its source and on the disk, or not at all;
/// one that stands there already is never written over. Missing folders on the way are made, the base folder
/// only when it lies in the data folder: another may be a share that is not mounted.
///
/// No progress is told of an empty file. What a handler of `UploadProgress` raises ends the upload; what one
/// of `UploadComplete` raises passes on, and the file stays.
class StoreUploader final : public Uploader
{
public:
    explicit StoreUploader(AttachmentStorePtr store);

    /// `destination` is a path as `AttachmentStore` describes it. Raises an `Error` that names the source and
    /// says why.
    void Upload(const QString& source, const QString& destination, const QVariant& options) override;

private:
    AttachmentStorePtr m_store;
    TransferRuns m_runs;
};

} // namespace tavrin
