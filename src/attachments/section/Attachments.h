#pragma once

#include "attachments/files/UploadedFile.h"
#include "base/export/Export.h"
#include "frame/Timer.h"
#include "frame/control_frame/UserControl.h"
#include "frame/host_contracts/Contracts.h"

#include <QHash>
#include <QIcon>
#include <QPointer>

#include <memory>
#include <vector>

class QLabel;

namespace tavrin {

class BoxShape;
class CheckBox;
class GroupBox;
class Label;
class ListView;
class MenuItem;
class PopupMenu;
class RemovedRow;
class TextArea;
class TextBox;
class TextLink;
class UndoLine;

/// The files that are attached to a record: a list, the details of the current one, and what a person does
/// with them.
///
///     auto* attachments = new Attachments(page);
///     attachments->ReadData(record);  // record.Item("Attachments") holds the rows
///     ...
///     attachments->WriteData(record); // brings the two text boxes home; all else is in the rows already
///
/// A file is in the store as soon as it is added; its row reaches the database with the record. Removing a
/// row leaves the file in the store. What the person has removed can be put back until `ReadData` brings
/// another collection.
///
/// The host may move the collection's position and change its rows while the section shows them: what the
/// person types, ticks, opens and removes is the row that the pane shows, as long as it is in the collection.
/// Rows that the host itself adds, removes or renames come into sight with the next `ReadData`.
class TAVRIN_EXPORT Attachments final : public UserControl, public BoundSection
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
    void lvwFiles_ItemClick(const QString& line);
    /// Shows the row at `index` after the texts of the one before are saved.
    void takeLine(qint32 index);
    /// Index of the row that a line shows, counted from 1. Raises when the host has taken it away.
    qint32 rowOfLine(const QString& line);

    // The details pane: AttachmentsDetails.cpp
    /// Makes what stands in `fraDetails`, in tab order, at its place, with its names and events.
    void buildDetails();
    void nameDetails();
    void placeDetails();
    /// The row that the pane shows, wherever the host has moved the position; nullptr without one, when it
    /// has left the collection, and after one that could not be shown.
    tvTableRowPtr shownRow() const;
    /// Its index, counted from 1; 0 where there is none.
    qint32 shownIndex() const;
    void ShowDetails();
    void fillTexts(const tvTableRowPtr& row);
    void fitFilename();
    void showThumbnail(tvTableRow& row);
    void SaveDetails();
    void EnableDetails(bool enabled);
    void ShowPreview(bool visible);
    void ShowFileKind(tvTableRow& row);
    static void ScrollTextToTop(TextArea& box);
    void txtDescription_Change();
    void chkDefault_Click();

    // The menu, and what the person does in the list: AttachmentsMenu.cpp
    /// Makes the menu, and follows the mouse, the keys, the link and the timer.
    void buildActions();
    void followActions();
    void UpdateMenus();
    void ShowContextMenu();
    void lvwFiles_MouseDown(int button, int shift, Twips x, Twips y);
    void lvwFiles_DblClick();
    void lvwFiles_KeyDown(int& keyCode, int shift);
    void lvwFiles_OLEDragDrop(const QStringList& files, int& effect);
    void m_contextMenuTimer_Elapsed();
    void mnuOpen_Click();
    void mnuRemove_Click();

    // What has been removed: AttachmentsUndo.cpp
    void buildUndo();
    void placeUndo();
    /// Says what was removed last, and hides the line when there is nothing.
    void showRemoved();
    void forgetRemoved();
    void keepRemoved(RemovedRow removed);
    void noteChosenCover();
    void undoRemove();
    void putLastBack();

    // What is done with files: AttachmentsActions.cpp
    void AddFiles(const QStringList& files);
    void uploadAndAdd(const QStringList& paths);
    static void AddUploadedFile(tvTableCollection& attachments, const UploadedFile& uploaded);
    static void addMissing(tvTableCollection& attachments, const QList<UploadedFile>& files);
    void showAdded();
    void tellUploadedFor(const QString& record, const QList<UploadedFile>& files);
    void ShowUpdating(bool busy);
    void OpenCurrentFile();
    /// The path of the copy, which bears the file's own name.
    QString DownloadToTemp(const QString& source, const QString& name);
    void mnuDownloadAll_Click();
    void downloadAll();
    /// The name that the person has chosen; "" when cancelled.
    QString PromptFolderName(const QString& suggested);

    ListView* lvwFiles = nullptr;
    GroupBox* picUpdating = nullptr;
    Label* lblUpdating = nullptr;
    GroupBox* picToolbar = nullptr;
    TextLink* lnkAddAttachments = nullptr;
    Label* Label4 = nullptr;
    UndoLine* picUndo = nullptr;
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
    CheckBox* chkDefault = nullptr;
    Label* Label1 = nullptr;
    TextBox* txtDescription = nullptr;
    Label* Label2 = nullptr;
    TextArea* txtComment = nullptr;
    PopupMenu* mnuAttachments = nullptr;
    MenuItem* mnuOpen = nullptr;
    MenuItem* mnuAdd = nullptr;
    MenuItem* mnuRemove = nullptr;
    MenuItem* mnuDownloadAll = nullptr;

    /// Pictures of the kinds of files, by key: in any size, and in the cells of the list.
    QHash<QString, QIcon> imglIcons;
    QHash<QString, QIcon> ImageList;

    std::weak_ptr<tvBusinessObject> m_record; // that the rows belong to; it is the host's
    tvTableCollectionPtr m_attachments;       // never nullptr
    tvTableRowPtr m_shownRow;                 // whose texts stand in both boxes; nullptr for those of none
    quint64 m_detailsTurn = 0;         // how often collection or row have changed: the newest preview stays
    std::vector<RemovedRow> m_removed; // by the person, from these attachments
    Timer m_contextMenuTimer;
    Twips m_menuLeft = 0; // where the menu opens, inside the list
    Twips m_menuTop = 0;
    QPointer<QWidget> m_focusBeforeUpdating;
    bool m_canAdd = true;
    bool m_canDelete = true;
    Subscription m_itemRemoved;
    std::vector<Subscription> m_subscriptions;
    int m_listWidth = 0; // in pixels: all columns show whole
};

} // namespace tavrin
