#include "attachments/section/AttachmentsPrivate.h"
#include "attachments/section/RemovedRow.h"
#include "attachments/section/UndoLine.h"
#include "base/values/Variant.h"
#include "frame/control_frame/FailurePolicy.h"
#include "widgets/boxes/CheckBox.h"
#include "widgets/boxes/KeyCodes.h"
#include "widgets/boxes/TextArea.h"
#include "widgets/boxes/TextBox.h"
#include "widgets/labels/Label.h"
#include "widgets/labels/TextLink.h"
#include "widgets/lists/ListView.h"
#include "widgets/panels/PopupMenu.h"

#include <QPointer>

namespace tavrin {

namespace {

constexpr int RightButton = 2;
constexpr int EffectCopy = 1;
constexpr int EffectNone = 0;

const QString Title = QStringLiteral("Attachments");

} // namespace

void Attachments::Private::buildActions()
{
    mnuAttachments = new PopupMenu(QStringLiteral("Attachments"), &q);
    mnuOpen = mnuAttachments->AddItem(QStringLiteral("Open"), u'O');
    QAction* mnuSeparator = mnuAttachments->addSeparator();
    mnuAdd = mnuAttachments->AddItem(QStringLiteral("Add Attachment(s)..."), u'A');
    mnuRemove = mnuAttachments->AddItem(QStringLiteral("Remove Attachment"), u'R');
    QAction* mnuSeparator2 = mnuAttachments->addSeparator();
    mnuDownloadAll = mnuAttachments->AddItem(QStringLiteral("Download All Attachments..."), u'D');
    mnuAttachments->setDefaultAction(mnuOpen);
    const std::pair<QObject*, const char*> names[] = {
        {mnuAttachments, "mnuAttachments"}, {mnuOpen, "mnuOpen"},
        {mnuSeparator, "mnuSeparator"},     {mnuAdd, "mnuAdd"},
        {mnuRemove, "mnuRemove"},           {mnuSeparator2, "mnuSeparator2"},
        {mnuDownloadAll, "mnuDownloadAll"}};
    for (const auto& [object, name] : names)
        object->setObjectName(QString::fromLatin1(name));

    const QList<QWidget*> stops = {lvwFiles,   lnkAddAttachments, picUndo->link(),
                                   chkDefault, txtDescription,    txtComment};
    for (qsizetype i = 1; i < stops.size(); ++i)
        QWidget::setTabOrder(stops.at(i - 1), stops.at(i));
    followActions();
}

void Attachments::Private::followActions()
{
    const auto follow = [this](auto& event, auto handler) {
        m_subscriptions.push_back(event.subscribe(std::move(handler)));
    };
    follow(lvwFiles->MouseDown,
           [this](int button, int shift, Twips x, Twips y) { lvwFiles_MouseDown(button, shift, x, y); });
    follow(lvwFiles->DblClick, [this] { lvwFiles_DblClick(); });
    follow(lvwFiles->KeyDown, [this](int& keyCode, int shift) { lvwFiles_KeyDown(keyCode, shift); });
    follow(lvwFiles->OLEDragDrop,
           [this](const QStringList& files, int& effect) { lvwFiles_OLEDragDrop(files, effect); });
    follow(lnkAddAttachments->Click, [this] { q.AddAttachments(); });
    follow(m_contextMenuTimer.Elapsed, [this] { m_contextMenuTimer_Elapsed(); });
    follow(mnuOpen->Click, [this] { mnuOpen_Click(); });
    follow(mnuAdd->Click, [this] { q.AddAttachments(); });
    follow(mnuRemove->Click, [this] { mnuRemove_Click(); });
    follow(mnuDownloadAll->Click, [this] { mnuDownloadAll_Click(); });
}

// The menu

void Attachments::Private::UpdateMenus()
{
    // A line that is marked may be one of the record before, when the current row could not be shown.
    const tvTableRowPtr row = lvwFiles->DropHighlight() ? shownRow() : nullptr;
    mnuOpen->setEnabled(row != nullptr);
    mnuAdd->setEnabled(m_canAdd);
    mnuRemove->setEnabled(row && (m_canDelete || row->IsNew()));
    mnuDownloadAll->setEnabled(m_attachments->Count() >= 1);
}

void Attachments::Private::lvwFiles_MouseDown(int button, int, Twips x, Twips y)
{
    if (button != RightButton)
        return;
    m_menuLeft = x;
    m_menuTop = y;
    const QPointer<Attachments> self(&q);
    const auto hit = lvwFiles->HitTest(x, y);
    // A comment that was typed into the line before is not saved, and gone; it is meant.
    if (hit && hit != lvwFiles->SelectedItem())
        SelectRow(rowOfLine(*hit));
    if (self)
        m_contextMenuTimer.Start();
}

void Attachments::Private::m_contextMenuTimer_Elapsed()
{
    m_contextMenuTimer.Stop();
    ShowContextMenu();
}

void Attachments::Private::ShowContextMenu()
{
    UpdateMenus();
    mnuAttachments->PopUp(*lvwFiles, m_menuLeft, m_menuTop);
}

void Attachments::Private::mnuOpen_Click()
{
    reportInBox(&q, QStringLiteral("Unexpected error opening attachment: "), Title,
                [this] { OpenCurrentFile(); });
}

void Attachments::Private::mnuRemove_Click()
{
    const QPointer<Attachments> self(&q); // a follower of the rows may delete the control
    reportInBox(&q, QStringLiteral("Unexpected error removing attachment: "), Title, [&] {
        const qint32 index = shownIndex();
        if (index == 0)
            return;                                             // nobody removes what does not show
        const tvTableCollectionPtr attachments = m_attachments; // a follower may bind another record
        const auto isBound = [&] { return self && attachments == m_attachments; };
        const RemovedRow removed(*attachments, index, lblFilename->Caption(), txtComment->Text());
        try {
            if (index != attachments->Position()) // the host may have moved it
                attachments->SetPosition(ToInteger(index));
            attachments->RemoveCurrent(false);
            if (isBound())
                RefreshList();
        } catch (...) {
            // The row may be gone although a follower failed. One that stays keeps the texts typed for it.
            if (isBound() && removed.indexIn(*attachments) == 0)
                continueOnError([&] { keepRemoved(removed); }, [&] { RefreshList(); },
                                [&] { SelectRow(m_attachments->Position()); });
            throw;
        }
        if (!isBound())
            return;
        keepRemoved(removed);
        SelectRow(m_attachments->Position());
    });
}

// The list

void Attachments::Private::lvwFiles_DblClick()
{
    reportInBox(&q, QString(), Title, [this] {
        if (lvwFiles->DropHighlight())
            OpenCurrentFile();
    });
}

void Attachments::Private::lvwFiles_KeyDown(int& keyCode, int shift)
{
    if (shift != 0)
        return;
    if (keyCode == KeyCode::Enter) {
        keyCode = 0;
        lvwFiles_DblClick();
    } else if (keyCode == KeyCode::Delete) {
        keyCode = 0;
        UpdateMenus();
        if (mnuRemove->isEnabled())
            mnuRemove_Click();
    }
}

void Attachments::Private::lvwFiles_OLEDragDrop(const QStringList& files, int& effect)
{
    effect = files.isEmpty() ? EffectNone : EffectCopy;
    if (files.isEmpty())
        return;
    reportInBox(&q, QStringLiteral("Error will dropping file(s): "), QStringLiteral("Error"),
                [this, copy = files] { AddFiles(copy); });
}

} // namespace tavrin
