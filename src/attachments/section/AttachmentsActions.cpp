#include "attachments/dialogs/frmDownloadAllTask.h"
#include "attachments/dialogs/frmDownloadFolderPrompt.h"
#include "attachments/dialogs/frmDownloadTask.h"
#include "attachments/dialogs/frmUploadTask.h"
#include "attachments/files/ModuleKey.h"
#include "attachments/files/SelectedFiles.h"
#include "attachments/files/ShellReasons.h"
#include "attachments/files/TemporaryCopy.h"
#include "attachments/files/modAttachments.h"
#include "attachments/section/AttachmentsPrivate.h"
#include "attachments/section/PrimaryRule.h"
#include "base/failure/Error.h"
#include "base/files/LocalFiles.h"
#include "base/values/Variant.h"
#include "frame/control_frame/FailurePolicy.h"
#include "frame/desktop/Desktop.h"
#include "frame/host_contracts/Host.h"
#include "frame/modUtils.h"
#include "widgets/lists/ListView.h"
#include "widgets/panels/GroupBox.h"

#include <QDir>
#include <QFileInfo>
#include <QPointer>
#include <QScopeGuard>
#include <QSet>

namespace tavrin {

namespace {

/// The person has cancelled a download; nobody is told.
constexpr int DownloadCanceledNumber = -2147220480;

const QString Title = QStringLiteral("Attachments");

Error downloadCanceled()
{
    return Error(QStringLiteral("Download was canceled."), DownloadCanceledNumber);
}

/// The paths of a dialog whose files may lie in several folders.
QStringList selectedFiles(const QStringList& chosen)
{
    QStringList files;
    for (qsizetype first = 0; first < chosen.size();) {
        const QString folder = QFileInfo(chosen.at(first)).path();
        qsizetype end = first + 1;
        while (end < chosen.size() && QFileInfo(chosen.at(end)).path() == folder)
            ++end;
        files << ParseSelectedFiles(selectedFilesText(chosen.mid(first, end - first)));
        first = end;
    }
    return files;
}

QString captionOf(const QWidget& form)
{
    // The place where a platform marks unsaved changes is no part of the caption.
    return form.windowTitle().remove(QStringLiteral("[*]"));
}

} // namespace

// Adding

void Attachments::AddAttachments()
{
    reportInBox(this, QString(), Title, [this] {
        const QPointer<Attachments> self(this); // a form may go while its dialog is open
        const QStringList chosen = desktop().fileDialogs->openFiles(
            this, QStringLiteral("Select Files"), QString(), QStringLiteral("All files (*)"), true);
        if (self && !chosen.isEmpty())
            d->AddFiles(selectedFiles(chosen));
    });
}

void Attachments::Private::AddFiles(const QStringList& files)
{
    if (!m_canAdd)
        throw Error(QStringLiteral("You don't have permission to add attachments in this module."));
    const QPointer<Attachments> self(&q);
    try {
        uploadAndAdd(files);
    } catch (...) {
        if (self)
            ShowUpdating(false);
        throw;
    }
}

void Attachments::Private::uploadAndAdd(const QStringList& paths)
{
    modAttachments::GetAttachmentsFolder(); // fails without the setting, before there is a dialog
    const QPointer<Attachments> self(&q);   // a form may go while the dialog is open
    SaveDetails();
    if (!self)
        return;
    // The files are this record's, whatever the host binds while they are uploaded.
    const tvTableCollectionPtr attachments = m_attachments;
    const tvBusinessObjectPtr record = m_record.lock();
    const QString caption = captionOf(*q.window());
    const auto isBound = [&] {
        return self && (attachments == m_attachments || isSameRecord(record, m_record.lock()));
    };
    auto* dialog = new frmUploadTask;
    const QPointer<frmUploadTask> alive = dialog;
    const auto unload = qScopeGuard([&alive] { delete alive.data(); });
    dialog->SetFiles(paths);
    dialog->Start(&q);
    // cppcheck-suppress identicalConditionAfterEarlyExit; the dialog has run meanwhile
    if (!self || !alive)
        return;
    ShowUpdating(true);
    const QList<UploadedFile> files = dialog->UploadedFiles(); // a follower of the rows may close the form
    for (const UploadedFile& uploaded : files) {
        currentHost().hostServices().NotifyFileUploaded();
        const tvTableCollectionPtr rows = isBound() ? m_attachments : attachments; // as it has been read last
        AddUploadedFile(*rows, uploaded);
    }
    if (isBound() && attachments != m_attachments)
        addMissing(*tvTableCollectionPtr(m_attachments), files);
    delete alive.data();
    if (isBound())
        showAdded();
    if (!self)
        return;
    ShowUpdating(false);
    if (!isBound() && !files.isEmpty())
        tellUploadedFor(caption, files);
}

/// Adds those files that reached the record before it was read anew, and that it therefore does not list.
void Attachments::Private::addMissing(tvTableCollection& attachments, const QList<UploadedFile>& files)
{
    QSet<QString> listed;
    for (const tvTableRowPtr& row : attachments)
        listed << ToText(fieldOf(*row, QStringLiteral("FileName"))->Value());
    for (const UploadedFile& uploaded : files) {
        if (!listed.contains(uploaded.Filename))
            AddUploadedFile(attachments, uploaded);
    }
}

/// Nobody sees whether the record that has been left keeps its new rows.
void Attachments::Private::tellUploadedFor(const QString& record, const QList<UploadedFile>& files)
{
    QStringList names;
    for (const UploadedFile& uploaded : files)
        names << uploaded.OriginalFilename;
    desktop().messageBoxes->tell(
        &q,
        QStringLiteral("Another record was opened here while files were uploaded for \"%1\". They are in the "
                       "attachments folder. Open \"%1\" again and add those that it does not list:"
                       "\r\n\r\n%2")
            .arg(record, names.join(QStringLiteral("\r\n"))),
        BoxIcon::Exclamation, Title);
}

void Attachments::Private::showAdded()
{
    RefreshList();
    if (lvwFiles->Count() > 0 && lvwFiles->SelectedItem() == lvwFiles->Key(0))
        lvwFiles->SetSelectedItem(std::nullopt);
    SelectRow(m_attachments->Count());
}

void Attachments::Private::AddUploadedFile(tvTableCollection& attachments, const UploadedFile& uploaded)
{
    const tvTableRowPtr row = attachments.NewItem();
    fieldOf(*row, QStringLiteral("FileName"))->SetValue(uploaded.Filename);
    fieldOf(*row, QStringLiteral("OriginalFileName"))->SetValue(uploaded.OriginalFilename);
    fieldOf(*row, QStringLiteral("UserId"))->SetValue(currentHost().session().CurrentUserId());
    fieldOf(*row, QStringLiteral("UserDate"))->SetValue(desktop().clock->now());
    attachments.Add(row);
    PrimaryRule::added(attachments, *row);
}

void Attachments::Private::ShowUpdating(bool busy)
{
    QWidget* focused = q.window()->focusWidget();
    if (busy && focused && q.isAncestorOf(focused))
        m_focusBeforeUpdating = focused; // a control that is disabled gives its focus away
    q.setEnabled(!busy);
    picUpdating->setVisible(busy);
    if (busy) {
        picUpdating->raise();
        q.setCursor(Qt::WaitCursor);
        picUpdating->repaint(); // the event loop has no turn before the end
        return;
    }
    q.unsetCursor();
    if (m_focusBeforeUpdating)
        m_focusBeforeUpdating->setFocus();
    m_focusBeforeUpdating = nullptr;
}

// Opening

void Attachments::Private::OpenCurrentFile()
{
    try {
        const tvTableRowPtr row = shownRow();
        if (!row) // another record may have been bound while the menu was open
            return;
        const QString source = modAttachments::GetAttachmentPath(*row);
        const QString name = modAttachments::GetAttachmentDisplayName(*row);
        ShellOpenFile(DownloadToTemp(source, name));
    } catch (const Error& error) {
        if (error.Number != DownloadCanceledNumber)
            throw;
    }
}

QString Attachments::Private::DownloadToTemp(const QString& source, const QString& name)
{
    const QPointer<Attachments> self(&q); // a form may go while the dialog is open, and the dialog with it
    auto* dialog = new frmDownloadTask;
    const QPointer<frmDownloadTask> alive = dialog;
    const auto unload = qScopeGuard([&alive] { delete alive.data(); });
    try {
        dialog->SetFilename(source);
        dialog->Start(&q);
        if (self && alive && !dialog->Canceled())
            return renameTemporaryCopy(dialog->DownloadedFilename(), name);
    } catch (...) {
        if (self)
            throw Error(QStringLiteral("Error downloading file '") + source + QStringLiteral("': ") +
                        Error::fromCurrentException().Description);
    }
    throw downloadCanceled();
}

// Downloading all

void Attachments::Private::mnuDownloadAll_Click()
{
    reportInBox(&q, QStringLiteral("Attachments were not downloaded: "), Title, [this] { downloadAll(); });
}

/// A folder of this name, or of a like one that the disk takes, that is not there yet.
static QString newFolder(const QString& downloads, const QString& name)
{
    return modUtils::UniqueFileName(QDir(downloads).filePath(LocalFiles::usableFileName(name)));
}

void Attachments::Private::downloadAll()
{
    const QPointer<Attachments> self(&q); // a form may go while a dialog is open
    const QString folderName = PromptFolderName(captionOf(*q.window()));
    if (!self || folderName.isEmpty())
        return;
    const QString downloads = currentHost().environment().GetDownloadsFolder();
    const QString path = newFolder(downloads, folderName);
    auto* dialog = new frmDownloadAllTask;
    const QPointer<frmDownloadAllTask> alive = dialog;
    const auto unload = qScopeGuard([&alive] { delete alive.data(); });
    dialog->SetDownloadPath(path);
    dialog->SetAttachments(m_attachments);
    try {
        dialog->Start(&q);
    } catch (...) {
        if (self)
            throw;
    }
    if (!self || !alive || dialog->Canceled())
        return;
    const BoxAnswer answer = desktop().messageBoxes->show(
        &q,
        QStringLiteral("All attachments for this record were downloaded to ") + path +
            QStringLiteral(".\r\n\r\nDo you want to open this folder now?"),
        BoxIcon::Question, QStringLiteral("Download Complete"), BoxButtons::YesNo);
    if (answer == BoxAnswer::Yes)
        ShellOpenFile(path);
}

QString Attachments::Private::PromptFolderName(const QString& suggested)
{
    auto* dialog = new frmDownloadFolderPrompt;
    const QPointer<frmDownloadFolderPrompt> alive = dialog;
    const auto unload = qScopeGuard([&alive] { delete alive.data(); });
    dialog->SetFolderName(suggested);
    dialog->ShowModal(&q);
    return alive ? dialog->FolderName() : QString();
}

} // namespace tavrin
