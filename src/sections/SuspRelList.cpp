#include "sections/SuspRelList.h"

#include "base/failure/Guard.h"
#include "base/values/Variant.h"
#include "frame/control_frame/FailurePolicy.h"
#include "frame/host_contracts/Host.h"
#include "frame/host_contracts/HostObjects.h"
#include "sections/CollectionTag.h"
#include "sections/Completeness.h"
#include "sections/SuspRelListPrivate.h"
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

SuspRelList::Private::Private(SuspRelList& control)
    : q(control)
    , lvwRows(new ListView(&control))
    , picEmpty(new TipPanel(QStringLiteral("Right-click here to add a new relationship."), &control))
    , mnuEdit(new PopupMenu(QStringLiteral("Edit"), &control))
{
}

void SuspRelList::Private::build()
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

    q.setFocusPolicy(Qt::StrongFocus);
    q.setFocusProxy(lvwRows);
    q.setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    q.resize(q.sizeHint());

    buildMenu();
}

SuspRelList::SuspRelList(QWidget* parent, const ControlSite& site)
    : UserControl(parent, site)
    , d(std::make_unique<Private>(*this))
{
    if (ambient().UserMode())
        d->m_tableCache = currentHost().newTableCodeCache();
    d->build();
    begin();
}

SuspRelList::~SuspRelList()
{
    if (d->m_dialog)
        d->m_dialog->reject();
}

// Properties

QString SuspRelList::OtherCollectionTag() const
{
    return d->m_otherCollectionTag;
}

void SuspRelList::SetOtherCollectionTag(const QString& tag)
{
    d->m_otherCollectionTag = tag;
    Q_EMIT PropertyChanged(QStringLiteral("OtherCollectionTag"));
}

QString SuspRelList::OtherItemName() const
{
    return d->m_otherItemName;
}

void SuspRelList::SetOtherItemName(const QString& name)
{
    d->m_otherItemName = name;
    Q_EMIT PropertyChanged(QStringLiteral("OtherItemName"));
}

QString SuspRelList::OtherItemSeqName() const
{
    return d->m_otherItemSeqName;
}

void SuspRelList::SetOtherItemSeqName(const QString& name)
{
    d->m_otherItemSeqName = name;
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

bool SuspRelList::trapsPropertyErrors() const
{
    return false;
}

// The parties' collection

tvTableCollectionPtr SuspRelList::Private::ParseOtherCollectionTag(const tvBusinessObjectPtr& record,
                                                                   bool& resolved)
{
    tvTableCollectionPtr collection;
    resolved = reportInBox(&q, QStringLiteral("Error in ") + q.ambient().DisplayName() + QStringLiteral(": "),
                           QStringLiteral("Error"),
                           [&] { collection = resolveCollectionTag(m_otherCollectionTag, record); });
    return resolved ? collection : currentHost().newTableCollection();
}

void SuspRelList::Private::followOtherCollection(tvTableCollectionPtr collection)
{
    m_otherCollection = std::move(collection);
    m_itemRemoved = m_otherCollection->ItemRemoved.subscribe(
        [this](const QVariant& keyValue) { m_otherCollection_ItemRemoved(keyValue); });
}

void SuspRelList::Private::m_otherCollection_ItemRemoved(const QVariant& keyValue)
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

SuspectLinks SuspRelList::Private::linksOf(const tvBusinessObjectPtr& suspect) const
{
    return {suspect, QStringLiteral("Suspect") + m_otherItemName + u's', m_otherItemSeqName};
}

tvTableRowPtr SuspRelList::Private::openSuspect() const
{
    tvTableCollection& suspects = required(m_suspects, SuspectsName);
    return suspects.Item(suspects.Position());
}

std::vector<SuspRelList::Private::Relation>
SuspRelList::Private::relationsTo(tvTableCollection& parties) const
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
    d->mnuEdit->Dismiss();
    if (d->m_dialog)
        d->m_dialog->reject();
    const QPointer<SuspRelList> self(this);
    const int reading = ++d->m_readings;
    d->m_readState = Private::ReadState::Failed;
    const auto forget = qScopeGuard([&self] {
        if (self && self->d->m_readState == Private::ReadState::Failed)
            self->d->forgetRecord();
    });
    const auto suspect =
        childOf<tvBusinessObject>(required(record, QStringLiteral("record")), QStringLiteral("SuspectBO"));
    const auto incident = currentHost().hostServices().GetParentObject(suspect);
    d->m_suspects = childOf<tvTableCollection>(required(incident, QStringLiteral("incident of the suspect")),
                                               QStringLiteral("Suspects"));
    bool hasParties = false;
    const tvTableCollectionPtr parties = d->ParseOtherCollectionTag(record, hasParties);
    if (!self || d->m_readings != reading) // the form was closed, or another record read, below the message
        return;
    d->followOtherCollection(parties);
    d->lvwRows->Clear();
    SuspectLinks links = d->linksOf(suspect);
    for (const tvTableRowPtr& party : *parties) {
        const tvTableRowPtr link = links.find(seqNoOf(*party));
        // Parties that were never saved have no number yet, and share one row.
        if (link && !d->HasListRow(*party))
            d->AddListRow(*party, fieldOf(*link, RelationNoField)->Value());
    }
    if (d->lvwRows->Count() == 0)
        d->showTip(true);
    else
        d->lvwRows->SetSelectedItem(d->lvwRows->Key(0));
    d->m_readState = hasParties ? Private::ReadState::Done : Private::ReadState::WithoutParties;
}

void SuspRelList::Private::forgetRecord()
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
    if (d->m_readState == Private::ReadState::Failed)
        throw notRead;
    required(d->m_suspects, SuspectsName); // before it touches the record
    const auto suspect =
        childOf<tvBusinessObject>(required(record, QStringLiteral("record")), QStringLiteral("SuspectBO"));
    const QPointer<SuspRelList> self(this);
    const int reading = d->m_readings;
    bool hasParties = false;
    const tvTableCollectionPtr parties = d->ParseOtherCollectionTag(record, hasParties);
    if (!self)
        return;
    // Each of the parties would count as removed. Below the message the host may have read another record,
    // whose rows these are now.
    if (d->m_readings != reading || (hasParties && d->m_readState != Private::ReadState::Done))
        throw notRead;
    d->followOtherCollection(parties);
    // With copies: a follower of the links may change the list, or close the form.
    const tvTableCollectionPtr suspects = d->m_suspects;
    const QString word = d->m_otherItemName;
    SuspectLinks links = d->linksOf(suspect);
    qint32 found = 0;
    for (const Private::Relation& relation : d->relationsTo(*parties)) {
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

QString SuspRelList::Private::AddListRow(tvTableRow& party, const QVariant& relationNo)
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

QString SuspRelList::Private::nameIn(const QString& listRow) const
{
    return lvwRows->SubItem(listRow, NameColumn);
}

bool SuspRelList::Private::HasListRow(tvTableRow& party) const
{
    return lvwRows->Contains(rowKey(party));
}

void SuspRelList::Private::showTip(bool show)
{
    picEmpty->setVisible(show);
    lvwRows->setAccessibleDescription(show ? picEmpty->Sentence() : QString());
}

void SuspRelList::Private::showTipWhenEmpty()
{
    showTip(lvwRows->Count() == 0);
}

// Layout

void SuspRelList::UserControl_Resize()
{
    // Continue on error.
    const Twips line = toTwips(QFontMetrics(font()).height()); // stands for the height of the header
    continueOnError(
        [&] { moveTo(*d->lvwRows, 0, 0, ScaleWidth(), ScaleHeight()); },
        [&] { d->lvwRows->SetColumnWidth(NameColumn, static_cast<Twips>(NameShare * widthOf(*d->lvwRows))); },
        [&] {
            d->lvwRows->SetColumnWidth(RelationColumn,
                                       static_cast<Twips>(RelationShare * widthOf(*d->lvwRows)));
        },
        [&] {
            moveTo(*d->picEmpty, ScaleWidth() / 2 - widthOf(*d->picEmpty) / 2,
                   (ScaleHeight() - line) / 2 + line - heightOf(*d->picEmpty) / 2);
        });
}

void SuspRelList::changeEvent(QEvent* event)
{
    UserControl::changeEvent(event);
    if (event->type() == QEvent::EnabledChange) {
        d->picEmpty->SetFaded(!isEnabled());
        if (!isEnabled())
            d->mnuEdit->Dismiss(); // it would take neither key nor mouse any more
    }
    if (event->type() == QEvent::FontChange)
        guard("UserControl_Resize", [this] { UserControl_Resize(); });
}

QSize SuspRelList::sizeHint() const
{
    return d->lvwRows->sizeHint();
}

QSize SuspRelList::minimumSizeHint() const
{
    const int line = fontMetrics().height();
    return {12 * line, 5 * line};
}

} // namespace tavrin
