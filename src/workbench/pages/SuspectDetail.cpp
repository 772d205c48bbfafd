#include "workbench/pages/SuspectDetail.h"

#include "base/failure/Error.h"
#include "base/failure/Guard.h"
#include "component/ClassRegister.h"
#include "frame/control_frame/UserControl.h"
#include "frame/host_contracts/Caches.h"
#include "sections/SuspRelList.h"
#include "widgets/lists/ListView.h"
#include "workbench/bindings/PlainBindings.h"
#include "workbench/pages/RecordPage.h"

#include <QAbstractItemModel>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QScopedValueRollback>
#include <QShowEvent>

#include <algorithm>

namespace tavrin::workbench {

namespace {

const QString Suspects = QStringLiteral("Suspects");

/// Calls `write`; lets an incomplete section pass.
template <typename Write>
void writeAsFarAsItGoes(Write write)
{
    try {
        write();
    } catch (const Error& error) {
        if (error.Number != SuspRelList::CompletenessErrorNumber)
            throw;
    }
}

} // namespace

QStringList SuspectDetail::Section::rows() const
{
    QStringList rows;
    for (int i = 0; i < list->Count(); ++i) {
        const QString key = list->Key(i);
        rows << key << list->SubItem(key, QStringLiteral("relationship_value"));
    }
    return rows;
}

SuspectDetail::SuspectDetail(const LoadedForm& form, QStringList& problems, QWidget* parent)
    : QWidget(parent)
    , m_grid(new QGridLayout(this))
{
    m_grid->setContentsMargins(0, 0, 0, 0);
    m_grid->setHorizontalSpacing(12);
    m_grid->setVerticalSpacing(8);
    m_grid->setColumnStretch(1, 1);
    m_grid->setColumnStretch(3, 1);
    auto name = std::make_unique<LineBinding>(QStringLiteral("SuspectName"), tr("&Name"));
    auto* label = new QLabel(name->label(), this);
    label->setBuddy(name->widget());
    name->widget()->setAccessibleName(name->plainLabel());
    m_grid->addWidget(label, m_row, 0);
    m_grid->addWidget(name->widget(), m_row++, 1, 1, 3);
    // The sections' dialog reads the name from the record.
    connectGuarded(qobject_cast<QLineEdit*>(name->widget()), &QLineEdit::editingFinished, this,
                   "SuspectDetail_Name", [this] { storeName(); });
    addBinding(std::move(name));

    const TableSchema& table =
        std::find_if(incidentSchema().Collections.begin(), incidentSchema().Collections.end(),
                     [](const auto& collection) { return collection.Name == Suspects; })
            ->Table;
    const auto controls = form.form.createControls(publicControls(), this, form.path, problems);
    for (std::size_t i = 0; i < controls.size(); ++i) {
        if (!controls[i])
            continue;
        const FormFile::Control& entry = form.form.controls[i];
        const QString field = entry.host.value(QLatin1String("field")).toString();
        QString problem;
        if (!qobject_cast<TavrinDropdown*>(controls[i]) && !qobject_cast<SuspRelList*>(controls[i]))
            problem = tr("The page of the suspects has no place for it.");
        else if (qobject_cast<TavrinDropdown*>(controls[i]) && table.indexOf(field) < 0)
            problem = tr("The table %1 has no field %2.").arg(table.Table, field);
        if (problem.isEmpty()) {
            addControl(controls[i], entry);
        } else {
            problems << tr("%1: control \"%2\": %3").arg(form.path, entry.name, problem);
            delete controls[i];
        }
    }
}

// Layout

void SuspectDetail::addControl(UserControl* control, const FormFile::Control& form)
{
    const auto host = [&form](const char* key) { return form.host.value(QLatin1String(key)).toString(); };
    const QString label = form.host.contains(QLatin1String("label")) ? host("label") : form.name;
    if (auto* dropdown = qobject_cast<TavrinDropdown*>(control))
        addCode(std::make_unique<CodeBinding>(dropdown, host("field"), label));
    else if (auto* section = qobject_cast<SuspRelList*>(control))
        addSection(section, section, label);
}

void SuspectDetail::addCode(std::unique_ptr<CodeBinding> binding)
{
    auto* label = new QLabel(binding->label(), this);
    label->setBuddy(binding->widget());
    binding->widget()->setAccessibleName(binding->plainLabel());
    if (QWidget* box = binding->widget()->focusProxy()) // it has the keyboard
        box->setAccessibleName(binding->plainLabel());
    m_grid->addWidget(label, m_row, 2 * m_half);
    m_grid->addWidget(binding->widget(), m_row, 2 * m_half + 1);
    m_row += m_half;
    m_half = 1 - m_half;
    CodeBinding* code = binding.get();
    addBinding(std::move(binding));
    // The page keeps the binding as long as it lives.
    // cppcheck-suppress danglingLifetime
    m_codes.push_back(code);
}

void SuspectDetail::addSection(UserControl* control, BoundSection* bound, const QString& label)
{
    m_row += std::exchange(m_half, 0);
    auto* heading = new QLabel(label, this);
    QFont font = heading->font();
    font.setBold(true);
    heading->setFont(font);
    heading->setBuddy(control);
    m_grid->setRowMinimumHeight(m_row++, 4);
    m_grid->addWidget(heading, m_row++, 0, 1, 4);
    m_grid->setRowStretch(m_row, 1);
    m_grid->addWidget(control, m_row++, 0, 1, 4);
    auto* list = control->findChild<ListView*>();
    list->setAccessibleName(QString(label).remove(u'&'));
    m_sections.push_back({bound, control, list, {}});
    // A section tells nobody of what the person does; its rows do.
    const auto follow = [&](auto signal) {
        connectGuarded(list->model(), signal, this, "SuspectDetail_Rows", [this] { edited(); });
    };
    follow(&QAbstractItemModel::rowsInserted);
    follow(&QAbstractItemModel::rowsRemoved);
    follow(&QAbstractItemModel::dataChanged);
}

void SuspectDetail::addBinding(std::unique_ptr<FieldBinding> binding)
{
    m_subscriptions.push_back(binding->Edited.subscribe([this] { edited(); }));
    m_bindings.push_back(std::move(binding));
}

void SuspectDetail::edited()
{
    if (!m_loading)
        Edited.raise();
}

void SuspectDetail::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event); // the controls were shown before, and their lists are there
    guard("SuspectDetail_Show", [this] {
        for (CodeBinding* code : m_codes)
            code->listIsThere();
    });
}

// The record

QString SuspectDetail::name() const
{
    return qobject_cast<QLineEdit*>(nameField())->text();
}

tvTableRow& SuspectDetail::suspect(Record& record)
{
    const RecordCollectionPtr suspects = record.collection(Suspects);
    return *suspects->Item(suspects->Position());
}

void SuspectDetail::storeName()
{
    FieldBinding& name = *m_bindings.front();
    if (m_suspect && name.differs(*m_suspect))
        name.store(*m_suspect);
}

void SuspectDetail::load(Record& record)
{
    const RecordCollectionPtr suspects = record.collection(Suspects);
    m_suspect = suspects->Item(suspects->Position());
    const QScopedValueRollback loading(m_loading, true);
    for (const auto& binding : m_bindings)
        binding->load(suspect(record));
    for (Section& section : m_sections) {
        section.bound->ReadData(record.shared_from_this());
        section.loaded = section.rows();
    }
}

bool SuspectDetail::differs(Record& record) const
{
    return std::any_of(m_bindings.begin(), m_bindings.end(),
                       [&](const auto& binding) { return binding->differs(suspect(record)); }) ||
           std::any_of(m_sections.begin(), m_sections.end(),
                       [](const Section& section) { return section.rows() != section.loaded; });
}

void SuspectDetail::store(Record& record)
{
    for (const auto& binding : m_bindings) {
        if (binding->differs(suspect(record)))
            binding->store(suspect(record));
    }
    for (Section& section : m_sections) {
        writeAsFarAsItGoes([&] { section.bound->WriteData(record.shared_from_this()); });
        section.loaded = section.rows();
    }
}

void SuspectDetail::check(Record& record) const
{
    for (const Section& section : m_sections) {
        try {
            section.bound->WriteData(record.shared_from_this());
        } catch (const Error& error) {
            if (error.Number != SuspRelList::CompletenessErrorNumber)
                throw;
            throw SectionRefusal(error, section.control);
        }
    }
}

} // namespace tavrin::workbench
