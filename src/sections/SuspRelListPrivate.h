#pragma once

#include "base/failure/Event.h"
#include "frame/host_contracts/Caches.h"
#include "sections/SuspRelList.h"

#include <QList>
#include <QPointer>

#include <memory>
#include <optional>
#include <vector>

namespace tavrin {

class ListView;
class MenuItem;
class PopupMenu;
class SuspectLinks;
class TipPanel;
class frmSuspRel;

/// The constituents of the section, what it knows of the record that was read last, and its handlers.
class SuspRelList::Private
{
public:
    enum class ReadState
    {
        Never,
        Failed,
        WithoutParties, // the tag led nowhere
        Done
    };
    struct Relation
    {
        tvTableRowPtr Party;
        std::optional<QString> Code; // none for a party without a row
    };

    explicit Private(SuspRelList& control);
    Private(const Private&) = delete;
    Private& operator=(const Private&) = delete;

    void build();
    tvTableCollectionPtr ParseOtherCollectionTag(const tvBusinessObjectPtr& record, bool& resolved);
    void followOtherCollection(tvTableCollectionPtr collection);
    void m_otherCollection_ItemRemoved(const QVariant& keyValue);
    SuspectLinks linksOf(const tvBusinessObjectPtr& suspect) const;
    std::vector<Relation> relationsTo(tvTableCollection& parties) const;
    void forgetRecord();
    tvTableRowPtr openSuspect() const;

    /// Returns the key of the row.
    QString AddListRow(tvTableRow& party, const QVariant& relationNo);
    bool HasListRow(tvTableRow& party) const;
    QString nameIn(const QString& listRow) const;
    void showTip(bool show);
    void showTipWhenEmpty();

    // The menu: SuspRelListMenu.cpp
    void buildMenu();
    void tellInformation(const QString& text, const QString& title);
    void lvwRows_MouseDown(int button, int shift, Twips x, Twips y);
    void mnuAddRelationship_Click();
    void askForRelation(const QList<tvTableRowPtr>& choices);
    void mnuRemoveRelationship_Click();

    SuspRelList& q;
    ListView* lvwRows;
    TipPanel* picEmpty;
    PopupMenu* mnuEdit;
    MenuItem* mnuAddRelationship = nullptr;
    MenuItem* mnuRemoveRelationship = nullptr;

    std::unique_ptr<TableCodeCache> m_tableCache;
    tvTableCollectionPtr m_suspects;
    tvTableCollectionPtr m_otherCollection;
    QString m_otherCollectionTag;
    QString m_otherItemName;
    QString m_otherItemSeqName;
    ReadState m_readState = ReadState::Never;
    int m_readings = 0;
    QPointer<frmSuspRel> m_dialog; // while it is open
    Subscription m_itemRemoved;
    std::vector<Subscription> m_subscriptions;
};

} // namespace tavrin
