#pragma once

#include "base/files/LocalFiles.h"
#include "widgets/panels/Form.h"

class QLabel;
class QPushButton;

namespace tavrin {

class TextBox;

/// The dialog that asks for the name of the new folder in which all files of a record will stand.
///
///     const QPointer<frmDownloadFolderPrompt> prompt = new frmDownloadFolderPrompt; // dies with the window
///     const auto unload = qScopeGuard([&] { delete prompt; });
///     prompt->SetFolderName(suggested);
///     prompt->ShowModal(this);
///     const QString name = prompt ? prompt->FolderName() : QString();
///
/// It looks at the name only, its length on the disk included; whether the disk takes it shows when the
/// folder is made.
class frmDownloadFolderPrompt final : public Form
{
    Q_OBJECT

public:
    /// Bytes of the longest name in its UTF-8 form. It leaves room for " (1)" up to " (2147483647)", for a
    /// name that is there already, and for "_TEMP", under which the folder is filled.
    static constexpr qsizetype LongestOnDisk = LocalFiles::LongestFileName - 13 - 5;

    explicit frmDownloadFolderPrompt(QWidget* parent = nullptr);
    ~frmDownloadFolderPrompt() override;

    /// The name as it stands in the box, blanks included; "" when the person has cancelled. The box takes
    /// 255 UTF-16 units.
    QString FolderName() const;
    void SetFolderName(const QString& name);

    /// The person has clicked "Cancel", pressed Escape or closed the window.
    bool Canceled() const { return m_canceled; }

    void reject() override;

protected:
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void build();
    void arrange();
    void applyErrorColor();
    void showError(const QString& text);
    void Validate();
    void cmdDownload_Click();
    void cmdCancel_Click();

    QLabel* lblMessage;
    QLabel* lblFolderName;
    TextBox* txtFolderName;
    QLabel* lblError;
    QPushButton* cmdDownload;
    QPushButton* cmdCancel;
    bool m_canceled = false;
};

} // namespace tavrin
