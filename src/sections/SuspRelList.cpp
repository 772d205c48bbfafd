#include "sections/SuspRelList.h"

#include "base/failure/Guard.h"
#include "base/values/Variant.h"
#include "frame/control_frame/FailurePolicy.h"
#include "frame/host_contracts/Host.h"
#include "frame/host_contracts/HostObjects.h"
#include "sections/CollectionTag.h"
#include "sections/Completeness.h"
#include "sections/SuspectLinks.h"
#include "sections/frmSuspRel.h"
#include "widgets/drawing/Placement.h"
#include "widgets/lists/ListView.h"
#include "widgets/panels/PopupMenu.h"
#include "widgets/panels/TipPanel.h"

#include <QEvent>
#include <QFontMetrics>
#include <QScopeGuard>
#include <QVariantList>

namespace tavrin {

namespace {

const QString KeyColumn = QStringLiteral("key");
const QString ValueColumn = QStringLiteral("relationship_value");
const QString NameColumn = QStringLiteral("name");
const QString RelationColumn = QStringLiteral("relationship");

const QString SeqNoField = QStringLiteral("SeqNo");
const QString RelationNoField = QStringLiteral("RelationNo");
const QString SuspectsName = QStringLiteral("collection of suspects");

constexpr double NameShare = 0.6;
constexpr double RelationShare = 0.4;

/// The key of a row, or a longer one, of its parts.
QString rowKey(const QVariantList& parts)
{
    QStringList texts;
    for (const QVariant& part : parts)
        texts << ToText(part);
    return QStringLiteral("key_") + texts.join(u':');
}

QVariant seqNoOf(tvTableRow& row)
{
    return fieldOf(row, SeqNoField)->Value();
}

QString rowKey(tvTableRow& party)
{
    return rowKey({seqNoOf(party)});
}

} // namespace

SuspRelList::SuspRelList(QWidget* parent, const ControlSite& site)
    : UserControl(parent, site)
    , lvwRows(new ListView(this))
    , picEmpty(new TipPanel(QStringLiteral("Right-click here to add a new relationship."), this))
    , mnuEdit(new PopupMenu(QStringLiteral("Edit"), this))
{
    if (ambient().UserMode())
        m_tableCache = currentHost().newTableCodeCache();
    build();
    begin();
}

SuspRelList::~SuspRelList()
{
    if (m_dialog)
        m_dialog->reject();
}

void SuspRelList::build()
{
    lvwRows->setObjectName(QStringLiteral("lvwRows"));
    lvwRows->setAccessibleName(QStringLiteral("Relationship to Suspect"));
    picEmpty->setObjectName(QStringLiteral("picEmpty"));

    lvwRows->ClearColumnHeaders();
    lvwRows->AddColumnHeader(KeyColumn, QString(), 0);
    lvwRows->AddColumnHeader(ValueColumn, QString(), 0);
    lvwRows->AddColumnHeader(NameColumn, QStringLiteral("Name"), TwipsPerInch);
    lvwRows->AddColumnHeader(RelationColumn, QStringLiteral("Relationship to Suspect"), TwipsPerInch);
    lvwRows->SetSortKey(KeyColumn);
    lvwRows->SetAllowColumnReorder(false);
    showTipWhenEmpty();

    setFocusPolicy(Qt::StrongFocus);
    setFocusProxy(lvwRows);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    resize(sizeHint());

    buildMenu();
}

// Properties

void SuspRelList::SetOtherCollectionTag(const QString& tag)
{
    m_otherCollectionTag = tag;
    Q_EMIT PropertyChanged(QStringLiteral("OtherCollectionTag"));
}

void SuspRelList::SetOtherItemName(const QString& name)
{
    m_otherItemName = name;
    Q_EMIT PropertyChanged(QStringLiteral("OtherItemName"));
}

void SuspRelList::SetOtherItemSeqName(const QString& name)
{
    m_otherItemSeqName = name;
    Q_EMIT PropertyChanged(QStringLiteral("OtherItemSeqName"));
}

bool SuspRelList::Enabled() const
{
    return !testAttribute(Qt::WA_ForceDisabled);
}

void SuspRelList::SetEnabled(bool enabled)
{
    setEnabled(enabled);
    Q_EMIT PropertyChanged(QStringLiteral("Enabled"));
}

SavedProperties SuspRelList::savedProperties()
{
    return {booleanProperty(
                QStringLiteral("Enabled"), true, [this] { return Enabled(); },
                [this](bool enabled) { SetEnabled(enabled); }),
            {QStringLiteral("OtherCollectionTag"), PropertyKind::Text, QString(),
             [this] { return OtherCollectionTag(); },
             [this](const QVariant& value) { SetOtherCollectionTag(value.toString()); }},
            {QStringLiteral("OtherItemName"), PropertyKind::Text, QString(),
             [this] { return OtherItemName(); },
             [this](const QVariant& value) { SetOtherItemName(value.toString()); }},
            {QStringLiteral("OtherItemSeqName"), PropertyKind::Text, QString(),
             [this] { return OtherItemSeqName(); },
             [this](const QVariant& value) { SetOtherItemSeqName(value.toString()); }}};
}

// The parties' collection

tvTableCollectionPtr SuspRelList::ParseOtherCollectionTag(const tvBusinessObjectPtr& record, bool& resolved)
{
    tvTableCollectionPtr collection;
    resolved = reportInBox(this, QStringLiteral("Error in ") + ambient().DisplayName() + QStringLiteral(": "),
                           QStringLiteral("Error"),
                           [&] { collection = resolveCollectionTag(m_otherCollectionTag, record); });
    return resolved ? collection : currentHost().newTableCollection();
}

void SuspRelList::followOtherCollection(tvTableCollectionPtr collection)
{
    m_otherCollection = std::move(collection);
    m_itemRemoved = m_otherCollection->ItemRemoved.subscribe(
        [this](const QVariant& keyValue) { m_otherCollection_ItemRemoved(keyValue); });
}

void SuspRelList::m_otherCollection_ItemRemoved(const QVariant& keyValue)
{
    // Rows have keys of one part, so this finds none and the row stays; it is meant.
    QVariant seqNo;
    QString key;
    continueOnError([&] { seqNo = seqNoOf(*openSuspect()); },
                    [&] {
                        key = rowKey({seqNo, keyValue});
                    },
                    [&] { lvwRows->Remove(key); }, [&] { showTipWhenEmpty(); });
}

// The link rows

SuspectLinks SuspRelList::linksOf(const tvBusinessObjectPtr& suspect) const
{
    return {suspect, QStringLiteral("Suspect") + m_otherItemName + u's', m_otherItemSeqName};
}

tvTableRowPtr SuspRelList::openSuspect() const
{
    tvTableCollection& suspects = required(m_suspects, SuspectsName);
    return suspects.Item(suspects.Position());
}

std::vector<SuspRelList::Relation> SuspRelList::relationsTo(tvTableCollection& parties) const
{
    std::vector<Relation> relations;
    for (const tvTableRowPtr& party : parties) {
        const QString key = rowKey(*party);
        relations.push_back({party, lvwRows->Contains(key) ? std::optional(lvwRows->SubItem(key, ValueColumn))
                                                           : std::nullopt});
    }
    return relations;
}

// The host's contract

void SuspRelList::BoundSection_ReadData(const tvBusinessObjectPtr& record)
{
    // Both are about the record before.
    mnuEdit->Dismiss();
    if (m_dialog)
        m_dialog->reject();
    const QPointer<SuspRelList> self(this);
    const int reading = ++m_readings;
    m_readState = ReadState::Failed;
    const auto forget = qScopeGuard([&self] {
        if (self && self->m_readState == ReadState::Failed)
            self->forgetRecord();
    });
    const auto suspect =
        childOf<tvBusinessObject>(required(record, QStringLiteral("record")), QStringLiteral("SuspectBO"));
    const auto incident = currentHost().hostServices().GetParentObject(suspect);
    m_suspects = childOf<tvTableCollection>(required(incident, QStringLiteral("incident of the suspect")),
                                            QStringLiteral("Suspects"));
    bool hasParties = false;
    const tvTableCollectionPtr parties = ParseOtherCollectionTag(record, hasParties);
    if (!self || m_readings != reading) // the form was closed, or another record read, below the message
        return;
    followOtherCollection(parties);
    lvwRows->Clear();
    SuspectLinks links = linksOf(suspect);
    for (const tvTableRowPtr& party : *parties) {
        const tvTableRowPtr link = links.find(seqNoOf(*party));
        // Parties that were never saved have no number yet, and share one row.
        if (link && !HasListRow(*party))
            AddListRow(*party, fieldOf(*link, RelationNoField)->Value());
    }
    if (lvwRows->Count() == 0)
        showTip(true);
    else
        lvwRows->SetSelectedItem(lvwRows->Key(0));
    m_readState = hasParties ? ReadState::Done : ReadState::WithoutParties;
}

void SuspRelList::forgetRecord()
{
    // Rows of another record, or some of this one's only, must not be taken for its relationships.
    m_suspects = nullptr;
    m_otherCollection = nullptr;
    m_itemRemoved = {};
    continueOnError([this] { lvwRows->Clear(); }, [this] { showTip(true); });
}

void SuspRelList::BoundSection_WriteData(const tvBusinessObjectPtr& record)
{
    const Error notRead(
        QStringLiteral("The relationships of the record could not be read, so none are written."));
    if (m_readState == ReadState::Failed)
        throw notRead;
    required(m_suspects, SuspectsName); // before it touches the record
    const auto suspect =
        childOf<tvBusinessObject>(required(record, QStringLiteral("record")), QStringLiteral("SuspectBO"));
    const QPointer<SuspRelList> self(this);
    const int reading = m_readings;
    bool hasParties = false;
    const tvTableCollectionPtr parties = ParseOtherCollectionTag(record, hasParties);
    if (!self)
        return;
    // Each of the parties would count as removed. Below the message the host may have read another record,
    // whose rows these are now.
    if (m_readings != reading || (hasParties && m_readState != ReadState::Done))
        throw notRead;
    followOtherCollection(parties);
    // With copies: a follower of the links may change the list, or close the form.
    const tvTableCollectionPtr suspects = m_suspects;
    const QString word = m_otherItemName;
    SuspectLinks links = linksOf(suspect);
    qint32 found = 0;
    for (const Relation& relation : relationsTo(*parties)) {
        if (relation.Code) {
            ++found;
            links.relate(*relation.Party, suspects, *relation.Code);
        } else {
            links.remove(seqNoOf(*relation.Party));
        }
    }
    Relations relations;
    relations.Suspects = suspects->Count();
    relations.Parties = parties->Count();
    relations.Found = found;
    relations.IsRequired = currentHost().session().IsFieldRequired(
        QStringLiteral("Incident"), QStringLiteral("IncdSusp") + word, RelationNoField, QString());
    checkCompleteness(relations, word);
}

// The list

QString SuspRelList::AddListRow(tvTableRow& party, const QVariant& relationNo)
{
    // All texts before the row: a failure leaves none that lacks something.
    QString key = rowKey(party);
    const QString code = ToText(relationNo);
    const QString name = ToText(fieldOf(party, m_otherItemName + QStringLiteral("Name"))->Value());
    if (!m_tableCache)
        m_tableCache = currentHost().newTableCodeCache();
    const QString description = m_tableCache->GetDescription(Tables::SuspectRelationship, relationNo);
    showTip(false);
    lvwRows->AddItem(key, key);
    lvwRows->SetSubItem(key, ValueColumn, code);
    lvwRows->SetSubItem(key, NameColumn, name);
    lvwRows->SetSubItem(key, RelationColumn, description);
    return key;
}

QString SuspRelList::nameIn(const QString& listRow) const
{
    return lvwRows->SubItem(listRow, NameColumn);
}

bool SuspRelList::HasListRow(tvTableRow& party) const
{
    return lvwRows->Contains(rowKey(party));
}

void SuspRelList::showTip(bool show)
{
    picEmpty->setVisible(show);
    lvwRows->setAccessibleDescription(show ? picEmpty->Sentence() : QString());
}

void SuspRelList::showTipWhenEmpty()
{
    showTip(lvwRows->Count() == 0);
}

// Layout

void SuspRelList::UserControl_Resize()
{
    // Continue on error.
    const Twips line = toTwips(QFontMetrics(font()).height()); // stands for the height of the header
    continueOnError(
        [&] { moveTo(*lvwRows, 0, 0, ScaleWidth(), ScaleHeight()); },
        [&] { lvwRows->SetColumnWidth(NameColumn, static_cast<Twips>(NameShare * widthOf(*lvwRows))); },
        [&] {
            lvwRows->SetColumnWidth(RelationColumn, static_cast<Twips>(RelationShare * widthOf(*lvwRows)));
        },
        [&] {
            moveTo(*picEmpty, ScaleWidth() / 2 - widthOf(*picEmpty) / 2,
                   (ScaleHeight() - line) / 2 + line - heightOf(*picEmpty) / 2);
        });
}

void SuspRelList::changeEvent(QEvent* event)
{
    UserControl::changeEvent(event);
    if (event->type() == QEvent::EnabledChange) {
        picEmpty->SetFaded(!isEnabled());
        if (!isEnabled())
            mnuEdit->Dismiss(); // it would take neither key nor mouse any more
    }
    if (event->type() == QEvent::FontChange)
        guard("UserControl_Resize", [this] { UserControl_Resize(); });
}

QSize SuspRelList::sizeHint() const
{
    return lvwRows->sizeHint();
}

QSize SuspRelList::minimumSizeHint() const
{
    const int line = fontMetrics().height();
    return {12 * line, 5 * line};
}

} // namespace tavrin
