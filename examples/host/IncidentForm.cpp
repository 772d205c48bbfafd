#include "IncidentForm.h"

#include "OfficeHost.h"

#include <QFormLayout>
#include <QLabel>
#include <QPushButton>
#include <QScopedValueRollback>

#include <TVBoundControls/AgencyPicker.h>
#include <TVBoundControls/Error.h>
#include <TVBoundControls/Guard.h>
#include <TVBoundControls/HostObjects.h>
#include <TVBoundControls/MultiValue.h>
#include <TVBoundControls/SuspRelList.h>
#include <TVBoundControls/Variant.h>

using namespace Qt::StringLiterals;
using namespace tavrin;

namespace {

tvFieldPtr agencyField(MemoryRecord& incident)
{
    return fieldOf(*childOf<tvTableRow>(incident, u"Incident"_s), u"AgencyNo"_s);
}

} // namespace

//! [form]
IncidentForm::IncidentForm(QWidget* parent)
    : QWidget(parent)
    , m_agency(new AgencyPicker(this))
    , m_weapons(new MultiValue(this))
    , m_relations(new SuspRelList(this))
    , m_message(new QLabel(this))
    , m_weaponBinding{u"WeaponNo"_s, WeaponTable}
{
    m_relations->SetOtherCollectionTag(u"Victims"_s);   // whom the suspect is related to
    m_relations->SetOtherItemName(u"Victim"_s);         // fields "VictimName", links "SuspectVictims"
    m_relations->SetOtherItemSeqName(u"VictimSeqNo"_s); // the link's field

    auto* saveButton = new QPushButton(u"&Save"_s, this);
    auto* layout = new QFormLayout(this);
    layout->addRow(u"&Agency"_s, m_agency);
    layout->addRow(u"&Weapons"_s, m_weapons);
    layout->addRow(u"&Related to"_s, m_relations);
    layout->addRow(m_message);
    layout->addRow(saveButton);
    m_message->setWordWrap(true);
    setWindowTitle(u"Incident[*]"_s);
    // No exception may pass through Qt: what save() does not catch goes to the handler of unhandled errors.
    connectGuarded(saveButton, &QPushButton::clicked, this, "saveButton_clicked", [this] { save(); });
    //! [/form]

    //! [edited]
    // A section has no event: what was edited in it is found out when it is written.
    connect(m_agency, &AgencyPicker::Change, this, &IncidentForm::fieldEdited);
    connect(m_weapons, &MultiValue::ValueAdded, this, &IncidentForm::fieldEdited);
    connect(m_weapons, &MultiValue::ValueRemoved, this, &IncidentForm::fieldEdited);
    //! [/edited]
}

//! [field-edited]
void IncidentForm::fieldEdited()
{
    if (!m_isOpening) // a value that comes from the record is no edit
        setWindowModified(true);
}
//! [/field-edited]

//! [open]
void IncidentForm::open(const std::shared_ptr<MemoryRecord>& incident)
{
    const QScopedValueRollback opening(m_isOpening, true);
    m_agency->SetValue(agencyField(*incident)->Value(), nullptr);
    m_shownAgency = m_agency->GetValue(); // Null for an agency that the list does not know
    m_weapons->FillControl(&m_weaponBinding, {}, childOf<tvTableCollection>(*incident, u"Weapons"_s));
    m_relations->ReadData(incident);
    m_incident = incident;
    tell({});
    setWindowModified(false);
}
//! [/open]

//! [save]
bool IncidentForm::save()
{
    try {
        m_relations->WriteData(m_incident); // first: it may refuse, and nothing else is written yet
        m_weapons->SetValue(&m_weaponBinding, {}, childOf<tvTableCollection>(*m_incident, u"Weapons"_s));
        if (!SameValue(m_agency->GetValue(), m_shownAgency)) // else the record keeps what it has
            agencyField(*m_incident)->SetValue(m_agency->GetValue());
    } catch (const Error& error) {
        tell(error.Description);
        return false;
    }
    m_shownAgency = m_agency->GetValue();
    m_incident->MarkSaved(); // here a host writes its database
    setWindowModified(false);
    tell(u"Saved"_s);
    return true;
}
//! [/save]

QString IncidentForm::reason() const
{
    return m_message->text();
}

void IncidentForm::tell(const QString& text)
{
    m_message->setText(text);
}
