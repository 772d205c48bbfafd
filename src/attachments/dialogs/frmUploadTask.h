#pragma once

#include "attachments/files/UploadedFile.h"
#include "base/failure/Event.h"
#include "widgets/panels/Form.h"

#include <QList>
#include <QStringList>

#include <vector>

class QPushButton;

namespace tavrin {

class FileUpload;
class FlowPanel;
class GroupBox;
class ScrollPanel;
class WrapLabel;

/// The dialog that brings files into the store, one after the other, with a line for each. It closes itself
/// when all are there. What fails stays on show, and the person tries it again or goes on without it.
///
/// The dialog becomes a child of the owner's window, which may die while it works: hence the pointer.
///
///     const QPointer<frmUploadTask> dialog = new frmUploadTask;
///     dialog->SetFiles(paths);
///     dialog->Start(control);
///     if (dialog)
///         add(dialog->UploadedFiles());
///     delete dialog;
class frmUploadTask final : public Form
{
    Q_OBJECT

public:
    /// Raises what making the host's uploader raises.
    explicit frmUploadTask(QWidget* parent = nullptr);
    ~frmUploadTask() override;

    /// The paths on the workstation that are to be uploaded.
    void SetFiles(const QStringList& files) { m_files = files; }
    /// Shows the dialog above the window of `Owner` and returns when it is hidden again; at once when there
    /// are no files. While it works it cannot be closed. A dialog works once.
    void Start(QWidget* Owner);
    /// What has reached the store, in the order in which it did, whatever failed beside it.
    const QList<UploadedFile>& UploadedFiles() const { return m_uploaded; }

    /// Closing the dialog goes on without what failed.
    void reject() override;

protected:
    void Form_Activate() override;
    void Form_Resize() override;

private:
    /// A line and what the form hears of it.
    struct Line
    {
        FileUpload* upload;
        Subscription complete;
        Subscription failed;
    };

    void build();
    void layOutStrip();
    void work();
    void UploadFiles();
    void showRetry(Twips rowHeight);
    void endWork();
    FileUpload& addLine(const QString& path);
    void unloadLines();
    void arrange();
    void setFormHeight(Twips inner);
    void placeOverOwner();
    void keepOnScreen();
    Twips tallestRetryPanel() const;
    void cmdRetry_Click();
    void cmdSkip_Click();

    QStringList m_files;
    QList<UploadedFile> m_uploaded;
    bool m_activated = false;

    ScrollPanel* scrollPanel;
    FlowPanel* flowPanel;
    FileUpload* m_template; // hidden; says where the lines stand and how high they are
    std::vector<Line> m_lines;
    GroupBox* picRetry;
    WrapLabel* lblRetry;
    QPushButton* cmdRetry;
    QPushButton* cmdSkip;
};

} // namespace tavrin
