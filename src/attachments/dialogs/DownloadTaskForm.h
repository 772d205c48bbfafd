#pragma once

#include "base/failure/Event.h"
#include "frame/host_contracts/Caches.h"
#include "widgets/panels/Form.h"

#include <functional>
#include <memory>
#include <vector>

class QProgressBar;

namespace tavrin {

class Error;
class Label;
class TextLink;

/// What the two dialogs of a download share: a line of status, a bar, a link that cancels, and how the work
/// of a dialog begins, ends and fails.
///
/// The work runs inside the form's first `Activate` and lets the person act while it waits for the store.
/// Whatever would close the form meanwhile cancels: a form never closes in the middle of its work. It may
/// still die with the window it stands above; so it is made on the heap, and whoever has made it looks
/// whether it lives before reading it. Work whose form has died ends at its next event.
class DownloadTaskForm : public Form
{
    Q_OBJECT

public:
    ~DownloadTaskForm() override;

    /// A download has ended cancelled, or the form was left before its work was done.
    bool Canceled() const { return m_canceled; }

protected:
    DownloadTaskForm(const QString& name, const QString& caption);

    /// Shows the form above the window of `owner` and returns when its work is done. `check` raises what
    /// speaks against a start. Raises what went wrong; a form that has died raises nothing.
    void run(QWidget* owner, const std::function<void()>& check);

    /// What the form is for; its failure is kept for `run` to raise.
    virtual void work() = 0;
    /// Hides the form, which ends the wait of `run`.
    void end();
    void fail(const Error& error);
    bool hasEnded() const { return m_ended; }
    /// Once true it stays true.
    void noteCanceled(bool canceled) { m_canceled = m_canceled || canceled; }

    /// Lets the person act. Raises when that has destroyed the form; nothing of it may then be touched.
    void pump();

    /// A new downloader, whose events come to this form. The caller holds it for as long as it works, since
    /// the form may die in its middle.
    std::shared_ptr<Downloader> newDownloader();
    void cancelDownload();
    static int percentOf(qint64 part, qint64 whole);

    virtual void m_downloader_DownloadStarted() {}
    virtual void m_downloader_DownloadProgress(qint64 nBytesRead, qint64 nBytesTotal) = 0;
    virtual void m_downloader_DownloadComplete(bool bCanceled) = 0;
    virtual void lnkCancel_Click();
    bool isCancelRequested() const { return m_cancelRequested; }

    void Form_Activate() override;
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

    Label* lblStatus;
    QProgressBar* ProgressBar;
    TextLink* lnkCancel;

private:
    void build();
    void cancelInstead();

    std::shared_ptr<Downloader> m_downloader;
    std::vector<Subscription> m_downloaderEvents;
    Subscription m_cancelClick;
    QString m_error;
    bool m_canceled = false;
    bool m_cancelRequested = false;
    bool m_activated = false;
    bool m_ended = false;
};

} // namespace tavrin
