#include "attachments/dialogs/frmDownloadAllTask.h"

#include "attachments/files/modAttachments.h"
#include "base/failure/Error.h"
#include "base/files/LocalFiles.h"
#include "frame/control_frame/FailurePolicy.h"
#include "frame/modUtils.h"
#include "widgets/drawing/Placement.h"
#include "widgets/labels/Label.h"

#include <QFile>
#include <QPointer>
#include <QProgressBar>
#include <QScopeGuard>

namespace tavrin {

namespace {

constexpr Twips BehindStatus = 60;
constexpr int Whole = 100; // per cent

const QString CanceledText = QStringLiteral("Download was canceled.");

/// The folder that is there already, or a new one. Anything else of that name is not ours to use or remove.
void useFolder(const QString& folder)
{
    if (LocalFiles::isFolder(folder))
        LocalFiles::sweepTemporaries(folder);
    else
        LocalFiles::makeFolder(folder);
}

/// A path in the folder that names nothing yet, for a file of this name.
QString freePath(const QString& folder, const QString& name)
{
    const QString inFolder = folder + u'/';
    const auto freeFor = [&](qsizetype longest) {
        return modUtils::UniqueFileName(inFolder + LocalFiles::usableFileName(name, longest));
    };
    const QString path = freeFor(LocalFiles::LongestFileName);
    constexpr qsizetype roomForNumber = 16;
    const bool isTooLong = QFile::encodeName(path.mid(inFolder.size())).size() > LocalFiles::LongestFileName;
    return isTooLong ? freeFor(LocalFiles::LongestFileName - roomForNumber) : path;
}

} // namespace

frmDownloadAllTask::frmDownloadAllTask()
    : DownloadTaskForm(QStringLiteral("frmDownloadAllTask"), QStringLiteral("Downloading attachments..."))
    , lblFilePercent(new Label(this))
{
    lblFilePercent->setObjectName(QStringLiteral("lblFilePercent"));
    lblFilePercent->SetForeColor(SystemColor::WindowText);
    lblFilePercent->SetCaption(QStringLiteral("(0%)"));
    moveTo(*lblFilePercent, 1620, 480);
}

frmDownloadAllTask::~frmDownloadAllTask() = default;

void frmDownloadAllTask::Start(QWidget* owner)
{
    const QPointer<frmDownloadAllTask> self(this);
    run(owner, [this] {
        if (m_downloadPath.trimmed().isEmpty())
            throw Error(QStringLiteral("DownloadPath not set."));
        if (!m_attachments)
            throw Error(QStringLiteral("Call SetAttachments to set attachments."));
        if (m_attachments->Count() == 0)
            throw Error(QStringLiteral("No attachments to download."));
    });
    if (self && Canceled()) // left before its work began
        throw Error(CanceledText);
}

void frmDownloadAllTask::work()
{
    const QPointer<frmDownloadAllTask> self(this);
    QString tempFolder;
    try {
        downloadAll(tempFolder);
    } catch (...) {
        const Error error = Error::fromCurrentException();
        if (self)
            fail(error);
        // What cannot be removed is used again by the next run; the first failure is the one to tell.
        continueOnError([&] {
            if (!tempFolder.isEmpty() && LocalFiles::isFolder(tempFolder))
                LocalFiles::removeFolder(tempFolder);
        });
    }
}

void frmDownloadAllTask::downloadAll(QString& tempFolder)
{
    pump();
    const QString finalFolder = m_downloadPath;
    const QString folder = finalFolder + QStringLiteral("_TEMP");
    useFolder(folder);
    tempFolder = folder;
    // A copy of the list: a handler of the host may change the collection while the person is let act.
    QList<tvTableRowPtr> rows;
    for (const tvTableRowPtr& row : *m_attachments)
        rows << row;
    qsizetype number = 0;
    for (const tvTableRowPtr& row : rows) {
        showFile(++number, rows.size());
        pump();
        DownloadOne(*row, folder);
    }
    if (isCancelRequested()) { // behind the last event of the last file
        noteCanceled(true);
        throw Error(CanceledText);
    }
    lblStatus->SetCaption(QStringLiteral("Download complete"));
    end();
    LocalFiles::moveFolder(folder, finalFolder);
}

void frmDownloadAllTask::showFile(qsizetype number, qsizetype count)
{
    lblStatus->SetCaption(QStringLiteral("Downloading file %1 of %2").arg(number).arg(count));
    lblFilePercent->SetCaption(QString());
    moveTo(*lblFilePercent, leftOf(*lblStatus) + widthOf(*lblStatus) + BehindStatus, toTwips(lblStatus->y()));
    // The file that is being fetched counts as done: this is meant.
    ProgressBar->setValue(static_cast<int>(number * Whole / count));
}

void frmDownloadAllTask::DownloadOne(tvTableRow& row, const QString& folder)
{
    const QPointer<frmDownloadAllTask> self(this);
    QString name;
    try {
        name = modAttachments::GetAttachmentDisplayName(row);
        const auto downloader = newDownloader();
        const QString temp = downloader->Download(modAttachments::GetAttachmentPath(row));
        // One that was not moved, and the folder that was made for it.
        const auto removeCopy = qScopeGuard([&temp] { modAttachments::RemoveTemporaryCopy(temp); });
        if (self && !Canceled()) {
            LocalFiles::moveFile(temp, freePath(folder, name));
            return;
        }
    } catch (...) {
        throw Error(QStringLiteral("Error downloading file %1: %2")
                        .arg(name, Error::fromCurrentException().Description));
    }
    throw Error(CanceledText);
}

void frmDownloadAllTask::m_downloader_DownloadStarted()
{
    if (isCancelRequested())
        cancelDownload();
}

void frmDownloadAllTask::m_downloader_DownloadProgress(qint64 nBytesRead, qint64 nBytesTotal)
{
    const int percent = percentOf(nBytesRead, nBytesTotal);
    if (percent < Whole) {
        lblFilePercent->SetCaption(QStringLiteral("(%1%)").arg(percent));
        lblFilePercent->repaint();
    }
    if (isCancelRequested())
        cancelDownload();
    pump();
}

void frmDownloadAllTask::m_downloader_DownloadComplete(bool bCanceled)
{
    noteCanceled(bCanceled);
}

} // namespace tavrin
