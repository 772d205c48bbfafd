#pragma once

#include "attachments/files/UploadedFile.h"
#include "attachments/section/Attachments.h"
#include "attachments/section/RemovedRow.h"
#include "frame/Timer.h"

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
class TextArea;
class TextBox;
class TextLink;
class UndoLine;

/// The constituents and the state of the section, and what it does with them.
class Attachments::Private
{
public:
    explicit Private(Attachments& control)
        : q(control)
    {
    }

    // The frame: Attachments.cpp
    void build();
    void nameConstituents();
    void placeConstituents();
    /// Arranges what depends on the section's size.
    void layOut();
    void readFrom(const tvBusinessObjectPtr& record);
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

    Attachments& q;

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
