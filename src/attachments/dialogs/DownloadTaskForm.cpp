#include "attachments/dialogs/DownloadTaskForm.h"

#include "base/failure/Error.h"
#include "base/failure/Guard.h"
#include "frame/host_contracts/Host.h"
#include "widgets/drawing/Placement.h"
#include "widgets/labels/Label.h"
#include "widgets/labels/TextLink.h"

#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QPointer>
#include <QProgressBar>

#include <algorithm>
#include <utility>

namespace tavrin {

namespace {

constexpr Twips FormWidth = 4515;
constexpr Twips FormHeight = 1800;
constexpr qint32 BufferSize = 1048576;
constexpr int Whole = 100; // per cent

} // namespace

DownloadTaskForm::DownloadTaskForm(const QString& name, const QString& caption)
    : lblStatus(new Label(this))
    , ProgressBar(new QProgressBar(this))
    , lnkCancel(new TextLink(this))
{
    setObjectName(name);
    setWindowTitle(caption);
    build();
    m_cancelClick = lnkCancel->Click.subscribe([this] { lnkCancel_Click(); });
}

DownloadTaskForm::~DownloadTaskForm() = default;

void DownloadTaskForm::build()
{
    lblStatus->setObjectName(QStringLiteral("lblStatus"));
    lblStatus->SetForeColor(SystemColor::WindowText);
    lblStatus->SetCaption(QStringLiteral("Downloading..."));
    moveTo(*lblStatus, 300, 480);

    ProgressBar->setObjectName(QStringLiteral("ProgressBar"));
    ProgressBar->setAccessibleName(QStringLiteral("Progress"));
    ProgressBar->setRange(0, Whole);
    ProgressBar->setValue(0);
    ProgressBar->setTextVisible(false);
    moveTo(*ProgressBar, 300, 780, 3915, 135);

    lnkCancel->setObjectName(QStringLiteral("lnkCancel"));
    lnkCancel->SetForeColor(SystemColor::Highlight);
    lnkCancel->SetHoverUnderline(true);
    lnkCancel->SetCaption(QStringLiteral("Cancel"));
    const QSize own = lnkCancel->sizeHint();
    moveTo(*lnkCancel, 2040, 1320, 540, 225);
    lnkCancel->resize(lnkCancel->size().expandedTo(own));

    SetInnerSize(FormWidth, FormHeight);
    setFixedSize(size());
    // The form has the keyboard, not its link: the second Enter of somebody in haste must not cancel.
    setFocusPolicy(Qt::StrongFocus);
    setFocus();
}

void DownloadTaskForm::run(QWidget* owner, const std::function<void()>& check)
{
    const QPointer<DownloadTaskForm> self(this);
    try {
        if (m_activated)
            throw Error(QStringLiteral("The download was started before."));
        check();
        SetBusy(true); // from before it shows: a key must not leave the work undone
        ShowModal(owner);
    } catch (...) {
        throw Error(QStringLiteral("Error starting download task: ") +
                    Error::fromCurrentException().Description);
    }
    if (!self)
        return;
    if (!m_ended) { // the program is about to end
        noteCanceled(true);
        end();
    }
    if (!m_error.isEmpty())
        throw Error(m_error);
}

void DownloadTaskForm::Form_Activate()
{
    if (std::exchange(m_activated, true))
        return;
    SetBusy(true);
    const QPointer<DownloadTaskForm> self(this);
    try {
        work();
    } catch (...) {
        if (self)
            fail(Error::fromCurrentException());
    }
}

void DownloadTaskForm::end()
{
    m_ended = true;
    SetBusy(false);
    hide();
}

void DownloadTaskForm::fail(const Error& error)
{
    // A failure without words is still none that may pass for success.
    m_error = error.Description.isEmpty() ? QStringLiteral("The download failed.") : error.Description;
    end();
}

void DownloadTaskForm::pump()
{
    const QPointer<DownloadTaskForm> self(this);
    QApplication::processEvents();
    if (!self)
        throw Error(QStringLiteral("Download was canceled."));
}

std::shared_ptr<Downloader> DownloadTaskForm::newDownloader()
{
    m_downloader = currentHost().newDownloader();
    m_downloader->SetBufferSize(BufferSize);
    m_downloaderEvents.clear();
    m_downloaderEvents.push_back(
        m_downloader->DownloadStarted.subscribe([this](const QString&) { m_downloader_DownloadStarted(); }));
    m_downloaderEvents.push_back(m_downloader->DownloadProgress.subscribe(
        [this](const QString&, qint64 nBytesRead, qint64 nBytesTotal) {
            m_downloader_DownloadProgress(nBytesRead, nBytesTotal);
        }));
    m_downloaderEvents.push_back(m_downloader->DownloadComplete.subscribe(
        [this](const QString&, bool bCanceled) { m_downloader_DownloadComplete(bCanceled); }));
    return m_downloader;
}

void DownloadTaskForm::cancelDownload()
{
    if (const auto downloader = m_downloader)
        downloader->Cancel();
}

int DownloadTaskForm::percentOf(qint64 part, qint64 whole)
{
    // An empty file is fetched as soon as it is begun; a file that grows meanwhile stays below the end.
    return whole <= 0 ? Whole : static_cast<int>(std::clamp<qint64>(part * Whole / whole, 0, Whole));
}

void DownloadTaskForm::lnkCancel_Click()
{
    lnkCancel->SetCaption(QStringLiteral("Canceling..."));
    lnkCancel->setEnabled(false);
    m_cancelRequested = true;
}

void DownloadTaskForm::cancelInstead()
{
    guard("lnkCancel_Click", [this] {
        if (lnkCancel->isEnabled())
            lnkCancel_Click();
    });
}

void DownloadTaskForm::closeEvent(QCloseEvent* event)
{
    if (isBusy())
        cancelInstead();
    Form::closeEvent(event); // which refuses a busy form
}

void DownloadTaskForm::keyPressEvent(QKeyEvent* event)
{
    if (isBusy() && event->matches(QKeySequence::Cancel))
        cancelInstead();
    Form::keyPressEvent(event);
}

} // namespace tavrin
