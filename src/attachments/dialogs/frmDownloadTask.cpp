#include "attachments/dialogs/frmDownloadTask.h"

#include "base/failure/Error.h"
#include "widgets/labels/Label.h"

#include <QPointer>
#include <QProgressBar>

namespace tavrin {

frmDownloadTask::frmDownloadTask()
    : DownloadTaskForm(QStringLiteral("frmDownloadTask"), QStringLiteral("Downloading attachment..."))
{
}

frmDownloadTask::~frmDownloadTask() = default;

void frmDownloadTask::Start(QWidget* owner)
{
    run(owner, [this] {
        if (m_filename.trimmed().isEmpty())
            throw Error(QStringLiteral("Filename not set."));
    });
}

void frmDownloadTask::work()
{
    const QPointer<frmDownloadTask> self(this);
    pump();
    if (isCancelRequested()) { // before there was anything to cancel
        m_downloader_DownloadComplete(true);
        return;
    }
    const auto downloader = newDownloader();
    const QString downloaded = downloader->Download(m_filename);
    if (!self)
        return;
    m_downloadedFilename = downloaded;
    // A download ends by its event. One that has returned without it raises none any more, and must not keep
    // the person waiting.
    if (!hasEnded())
        m_downloader_DownloadComplete(isCancelRequested());
}

void frmDownloadTask::m_downloader_DownloadProgress(qint64 nBytesRead, qint64 nBytesTotal)
{
    const int percent = percentOf(nBytesRead, nBytesTotal);
    lblStatus->SetCaption(QStringLiteral("Downloading... (%1% complete)").arg(percent));
    ProgressBar->setValue(percent);
    pump();
}

void frmDownloadTask::m_downloader_DownloadComplete(bool bCanceled)
{
    end();
    noteCanceled(bCanceled);
}

void frmDownloadTask::lnkCancel_Click()
{
    DownloadTaskForm::lnkCancel_Click();
    cancelDownload();
}

} // namespace tavrin
