#pragma once

#include "base/export/Export.h"
#include "frame/control_frame/UserControl.h"
#include "frame/host_contracts/Caches.h"

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

/// The relationships that one suspect has to the parties of one other kind, one row each. The person adds and
/// removes rows through a context menu; nothing reaches the record before the host saves.
///
///     auto* victims = new SuspRelList(page);
///     victims->SetOtherCollectionTag("IncidentBO.Victims"); // where the parties live
///     victims->SetOtherItemName("Victim");                  // fields "VictimName", rows "SuspectVictims"
///     victims->SetOtherItemSeqName("VictimSeqNo");          // the link row's field
///     victims->ReadData(record);                            // record.Item("SuspectBO") is the suspect
///     ...
///     victims->WriteData(record); // raises CompletenessErrorNumber while required ones are missing
///
/// Links are written before completeness is checked; a refused save leaves those that are complete written.
/// A party's removal leaves its row on the screen until the next read, which does no harm. Before the first
/// read, and behind one that has failed, the section is empty and a write raises an `Error` before it changes
/// anything. A read closes the menu and the dialog: both are about the record before.
class TAVRIN_EXPORT SuspRelList final : public UserControl, public BoundSection
{
    Q_OBJECT
    Q_CLASSINFO("ClassName", "TVBoundControls.SuspRelList")
    Q_CLASSINFO("DefaultInterface", "_SuspRelList")
    Q_PROPERTY(qint32 hWnd READ hWnd STORED false)
    Q_PROPERTY(QString OtherCollectionTag READ OtherCollectionTag WRITE SetOtherCollectionTag)
    Q_PROPERTY(QString OtherItemName READ OtherItemName WRITE SetOtherItemName)
    Q_PROPERTY(QString OtherItemSeqName READ OtherItemSeqName WRITE SetOtherItemSeqName)
    Q_PROPERTY(bool Enabled READ Enabled WRITE SetEnabled)

public:
    /// Number of the error by which a write refuses an incomplete section.
    static constexpr int CompletenessErrorNumber = -1550907422;

    /// Raises what the host raises when it makes the table cache, which the designer does without.
    explicit SuspRelList(QWidget* parent = nullptr, const ControlSite& site = {});
    ~SuspRelList() override;

    /// Path to the parties' collection: its name in the record, or the name of a child record, a point, and
    /// its name there; "" by default. Resolved at each read and write, where a wrong one shows a message and
    /// leaves an empty section. Behind a read with a wrong one a write with a good one raises an `Error`: the
    /// section has no rows of its parties.
    QString OtherCollectionTag() const { return m_otherCollectionTag; }
    void SetOtherCollectionTag(const QString& tag);
    /// The word for one party, its first letter in upper case, since it builds the names of records and
    /// fields; "" by default.
    QString OtherItemName() const { return m_otherItemName; }
    void SetOtherItemName(const QString& name);
    /// The link row's field that holds the party's "SeqNo"; "" by default.
    QString OtherItemSeqName() const { return m_otherItemSeqName; }
    void SetOtherItemSeqName(const QString& name);
    /// The control's own state, whatever its container's; True by default.
    bool Enabled() const;
    void SetEnabled(bool enabled);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    SavedProperties savedProperties() override;
    bool trapsPropertyErrors() const override { return false; }
    void UserControl_Resize() override;
    void changeEvent(QEvent* event) override;

private:
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

    void BoundSection_ReadData(const tvBusinessObjectPtr& record) override;
    void BoundSection_WriteData(const tvBusinessObjectPtr& record) override;

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
