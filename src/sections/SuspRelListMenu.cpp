#include "frame/desktop/Desktop.h"
#include "frame/host_contracts/HostObjects.h"
#include "sections/SuspRelListPrivate.h"
#include "sections/frmSuspRel.h"
#include "widgets/lists/ListView.h"
#include "widgets/panels/PopupMenu.h"

#include <QScopeGuard>

namespace tavrin {

namespace {

const QString RemoveCaption = QStringLiteral("Remove Relationship");
constexpr int RightButton = 2;

} // namespace

void SuspRelList::Private::buildMenu()
{
    mnuAddRelationship = mnuEdit->AddItem(QStringLiteral("Add Relationship"), u'A');
    mnuRemoveRelationship = mnuEdit->AddItem(RemoveCaption, u'R');
    mnuEdit->setObjectName(QStringLiteral("mnuEdit"));
    mnuAddRelationship->setObjectName(QStringLiteral("mnuAddRelationship"));
    mnuRemoveRelationship->setObjectName(QStringLiteral("mnuRemoveRelationship"));
    m_subscriptions.push_back(lvwRows->MouseDown.subscribe(
        [this](int button, int shift, Twips x, Twips y) { lvwRows_MouseDown(button, shift, x, y); }));
    m_subscriptions.push_back(mnuAddRelationship->Click.subscribe([this] { mnuAddRelationship_Click(); }));
    m_subscriptions.push_back(
        mnuRemoveRelationship->Click.subscribe([this] { mnuRemoveRelationship_Click(); }));
}

void SuspRelList::Private::lvwRows_MouseDown(int button, int, Twips x, Twips y)
{
    if ((button & RightButton) == 0)
        return;
    mnuRemoveRelationship->setEnabled(lvwRows->Count() > 0);
    QString caption = RemoveCaption;
    if (const auto selected = lvwRows->SelectedItem())
        caption += QStringLiteral(" to '") + nameIn(*selected) + u'\'';
    mnuRemoveRelationship->SetCaption(caption);
    mnuEdit->PopUp(*lvwRows, x, y);
}

void SuspRelList::Private::tellInformation(const QString& text, const QString& title)
{
    desktop().messageBoxes->tell(&q, text, BoxIcon::Information, title);
}

void SuspRelList::Private::mnuAddRelationship_Click()
{
    const tvTableCollectionPtr parties = m_otherCollection;
    const QString word = m_otherItemName.toLower();
    if (required(parties, QStringLiteral("collection of parties")).Count() == 0) {
        tellInformation(QStringLiteral("There are no ") + word +
                            QStringLiteral("s attached to this record. Add at least one ") + word +
                            QStringLiteral(" first."),
                        QStringLiteral("No ") + m_otherItemName + QStringLiteral("s Present"));
        return;
    }
    QList<tvTableRowPtr> choices;
    for (const tvTableRowPtr& party : *parties) {
        if (!HasListRow(*party))
            choices << party;
    }
    if (choices.isEmpty()) {
        tellInformation(QStringLiteral("You've already added a relationship for each ") + word +
                            QStringLiteral(" to this suspect."),
                        QStringLiteral("No Relationships to Add"));
        return;
    }
    askForRelation(choices);
}

void SuspRelList::Private::askForRelation(const QList<tvTableRowPtr>& choices)
{
    if (m_dialog)
        return;
    // The dialog is a child of the window, which may die while the dialog is open, and the control with it.
    const QPointer<SuspRelList> self(&q);
    auto* dialog = new frmSuspRel;
    const QPointer<frmSuspRel> alive = dialog;
    const auto unload = qScopeGuard([&alive] { delete alive.data(); });
    dialog->SetupForm(m_otherItemName, choices, openSuspect());
    m_dialog = dialog;
    dialog->ShowModal(&q);
    if (!self)
        return;
    m_dialog = nullptr;
    if (!alive || !alive->Success())
        return;
    const tvTableRowPtr party = alive->SelectedItem();
    const QString row = AddListRow(*party, alive->SelectedRelation());
    lvwRows->SetSelectedItem(row); // in view, and ready to be taken back
}

void SuspRelList::Private::mnuRemoveRelationship_Click()
{
    if (lvwRows->Count() == 0)
        return;
    const std::optional<QString> selected = lvwRows->SelectedItem();
    if (!selected)
        throw Error(QStringLiteral("There is no selected row"), MissingObjectNumber);
    lvwRows->Remove(*selected);
    showTipWhenEmpty();
}

} // namespace tavrin
