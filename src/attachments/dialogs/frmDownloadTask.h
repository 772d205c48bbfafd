#pragma once

#include "attachments/dialogs/DownloadTaskForm.h"

namespace tavrin {

/// The dialog that brings one file of the store to a temporary local file. It serves one download.
///
///     const QPointer<frmDownloadTask> task = new frmDownloadTask; // dies with the owner's window
///     const auto unload = qScopeGuard([&] { delete task; });
///     task->SetFilename(modAttachments::GetAttachmentPath(*row));
///     task->Start(this);
///     if (task && !task->Canceled())
///         open(task->DownloadedFilename());
///
/// Nothing here removes the temporary file.
class frmDownloadTask final : public DownloadTaskForm
{
    Q_OBJECT

public:
    frmDownloadTask();
    ~frmDownloadTask() override;

    /// The path in the store.
    QString Filename() const { return m_filename; }
    void SetFilename(const QString& path) { m_filename = path; }

    /// The temporary local file; "" until the download has ended, and without meaning after one that was
    /// cancelled.
    QString DownloadedFilename() const { return m_downloadedFilename; }

    /// Fetches the file; returns when it is there, or when the download was cancelled. Raises error 5 when
    /// there is no `Filename`, and with the description of whatever made the download fail.
    void Start(QWidget* owner);

protected:
    void work() override;
    void m_downloader_DownloadProgress(qint64 nBytesRead, qint64 nBytesTotal) override;
    void m_downloader_DownloadComplete(bool bCanceled) override;
    void lnkCancel_Click() override;

private:
    QString m_filename;
    QString m_downloadedFilename;
};

} // namespace tavrin
