#pragma once

#include "UploadedFile.h"
#include "frame/Timer.h"
#include "frame/control_frame/UserControl.h"
#include "frame/host_contracts/Contracts.h"

#include <QHash>
#include <QIcon>

#include <vector>

class QCheckBox;
class QLabel;
class QPlainTextEdit;

namespace tavrin {

class BoxShape;
class GroupBox;
class Label;
class ListView;
class MenuItem;
class PopupMenu;
class TextBox;
class TextLink;

/// The files that are attached to a record: a list, the details of the current one, and what a person does
/// with them.
///
///     auto* attachments = new Attachments(page);
///     attachments->ReadData(record);  // record.Item("Attachments") holds the rows
///     ...
///     attachments->WriteData(record); // brings the two text boxes home; all else is in the rows already
///
/// A file is in the store as soon as it is added; its row reaches the database with the record. Removing a
/// row leaves the file in the store.
class Attachments final : public UserControl, public BoundSection
{
    Q_OBJECT
    Q_CLASSINFO("ClassName", "TVBoundControls.Attachments")
    Q_CLASSINFO("DefaultInterface", "_Attachments")
    Q_PROPERTY(qint32 hWnd READ hWnd STORED false)
    Q_PROPERTY(QObject* CommentsTextBox READ CommentsTextBox STORED false)

public:
    /// Raises what the host raises when it makes a collection, which the designer does without.
    explicit Attachments(QWidget* parent = nullptr, const ControlSite& site = {});
    ~Attachments() override;

    /// The box of the comment, for a spell checker.
    QObject* CommentsTextBox() const;
    /// Asks for files and adds those that the person picks. Tells what fails in a box of its own.
    Q_INVOKABLE void AddAttachments();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void UserControl_Resize() override;

private:
    void BoundSection_ReadData(const tvBusinessObjectPtr& record) override;
    void BoundSection_WriteData(const tvBusinessObjectPtr& record) override;

    // The frame: Attachments.cpp
    void build();
    void nameConstituents();
    void placeConstituents();
    void follow(tvTableCollectionPtr attachments);
    void m_attachments_ItemRemovedEx(qint32 nRemovedIndex, const tvTableRowPtr& objItem);
    /// The first image of a record becomes its cover.
    void applyPrimaryRuleForAdded(tvTableRow& row);
    tvTableRowPtr currentRow() const;

    // The list: AttachmentsList.cpp
    void SetupList();
    void CopyImageList();
    static QString IconKeyForFile(const QString& name);
    void RefreshList();
    bool hasLinesInOrder(const QStringList& keys) const;
    void UpdateRow(tvTableRow& row);
    void SelectRow(qint32 index);
    void ResizeLastColumn();
    void UpdateCount();
    void LayoutCountLabels();
    void lvwFiles_ItemClick(qint32 index);

    // The details pane: AttachmentsDetails.cpp
    /// Makes what stands in `fraDetails`, in tab order, at its place, with its names and events.
    void buildDetails();
    void ShowDetails();
    void SaveDetails();
    void EnableDetails(bool enabled);
    void ShowPreview(bool visible);
    void ShowFileKind(tvTableRow& row);
    void ScrollTextToTop(QPlainTextEdit& box);
    void txtDescription_Change();
    void chkDefault_Click();

    // What a person does: AttachmentsActions.cpp
    /// Makes the menu, and follows the mouse, the keys, the link and the timer.
    void buildActions();
    QStringList ParseSelectedFiles(const QString& text) const;
    void AddFiles(const QStringList& files);
    void AddUploadedFile(const UploadedFile& uploaded);
    void ShowUpdating(bool busy);
    void UpdateMenus();
    void ShowContextMenu();
    void OpenCurrentFile();
    QString DownloadToTemp(const QString& source, const QString& name);
    static void ShellOpenFile(const QString& path);
    QString PromptFolderName(const QString& suggested);
    void lvwFiles_MouseDown(int button, int shift, Twips x, Twips y);
    void lvwFiles_DblClick();
    /// Returns the effect: 1 when files were taken, 0 when there were none.
    int lvwFiles_OLEDragDrop(const QStringList& files);
    void m_contextMenuTimer_Elapsed();
    void mnuOpen_Click();
    void mnuRemove_Click();
    void mnuDownloadAll_Click();

    ListView* lvwFiles = nullptr;
    GroupBox* picUpdating = nullptr;
    Label* lblUpdating = nullptr;
    GroupBox* picToolbar = nullptr;
    TextLink* lnkAddAttachments = nullptr;
    Label* Label4 = nullptr;
    Label* lblFilename = nullptr;
    Label* lblCountLabel = nullptr;
    Label* lblCount = nullptr;
    GroupBox* fraDetails = nullptr;
    Label* Label3 = nullptr;
    QLabel* imgThumbnail = nullptr;
    BoxShape* shpThumbnailBorder = nullptr;
    GroupBox* picNoThumbnail = nullptr;
    QLabel* imgFileIcon = nullptr;
    Label* lblFileType = nullptr;
    QCheckBox* chkDefault = nullptr;
    Label* Label1 = nullptr;
    TextBox* txtDescription = nullptr;
    Label* Label2 = nullptr;
    QPlainTextEdit* txtComment = nullptr;
    PopupMenu* mnuAttachments = nullptr;
    MenuItem* mnuOpen = nullptr;
    MenuItem* mnuAdd = nullptr;
    MenuItem* mnuRemove = nullptr;
    MenuItem* mnuDownloadAll = nullptr;

    /// Pictures of the kinds of files, by key: in any size, and in the cells of the list.
    QHash<QString, QIcon> imglIcons;
    QHash<QString, QIcon> ImageList;

    tvTableCollectionPtr m_attachments; // never nullptr
    Timer m_contextMenuTimer;
    bool m_canAdd = true;
    bool m_canDelete = true;
    Subscription m_itemRemoved;
    std::vector<Subscription> m_subscriptions;
    int m_listWidth = 0; // in pixels: all columns show whole
};

} // namespace tavrin
