#pragma once

#include "attachments/dialogs/DownloadTaskForm.h"
#include "frame/host_contracts/Records.h"

namespace tavrin {

/// The dialog that brings all files of a record into a new folder. It serves one run.
///
///     const QPointer<frmDownloadAllTask> task = new frmDownloadAllTask; // dies with the owner's window
///     const auto unload = qScopeGuard([&] { delete task; });
///     task->SetDownloadPath(modUtils::UniqueFileName(folder));
///     task->SetAttachments(attachments);
///     task->Start(this); // raises also when the person has cancelled
///
/// The files go into a folder beside the final one, whose name ends in "_TEMP", and that folder is renamed
/// in one step when all are there: whatever happens, nothing incomplete stands under the final name. A
/// "_TEMP" that a killed program has left is used again, and its whole files come along; those that were
/// half written are removed first. When the run fails or is cancelled, "_TEMP" goes with all that is in it.
///
/// A file gets the name that the attachment shows. A name that no file can bear is changed as
/// `LocalFiles::usableFileName` tells, so that one odd name does not cost all other files.
class frmDownloadAllTask final : public DownloadTaskForm
{
    Q_OBJECT

public:
    frmDownloadAllTask();
    ~frmDownloadAllTask() override;

    /// The final folder, a path of this machine. It must not exist yet, but the folder above it must.
    QString DownloadPath() const { return m_downloadPath; }
    void SetDownloadPath(const QString& path) { m_downloadPath = path; }

    /// The rows whose files are fetched, in their order.
    void SetAttachments(const tvTableCollectionPtr& attachments) { m_attachments = attachments; }

    /// Fetches the files; returns when all stand in `DownloadPath`. Raises error 5 when there is no path or
    /// no row, with the description of what made a file fail, and when the download was cancelled.
    void Start(QWidget* owner);

protected:
    void work() override;
    void m_downloader_DownloadStarted() override;
    void m_downloader_DownloadProgress(qint64 nBytesRead, qint64 nBytesTotal) override;
    void m_downloader_DownloadComplete(bool bCanceled) override;

private:
    /// Sets `tempFolder` as soon as that folder is this run's to remove.
    void downloadAll(QString& tempFolder);
    void showFile(qsizetype number, qsizetype count);
    void DownloadOne(tvTableRow& row, const QString& folder);

    QString m_downloadPath;
    tvTableCollectionPtr m_attachments;
    Label* lblFilePercent;
};

} // namespace tavrin
