#include "workbench/pages/FormPage.h"

#include "base/failure/Guard.h"
#include "base/values/Variant.h"
#include "component/ClassRegister.h"
#include "frame/control_frame/FormFile.h"
#include "lookup/AgencyPicker.h"
#include "lookup/AutoCompleteField.h"
#include "lookup/EmployeePicker.h"
#include "lookup/FlatEmployeePicker.h"
#include "workbench/application/Theme.h"
#include "workbench/bindings/AgencyBinding.h"
#include "workbench/bindings/AutoCompleteBinding.h"
#include "workbench/bindings/PickerBinding.h"
#include "workbench/pages/FormLoading.h"
#include "workbench/pages/PickerRows.h"
#include "workbench/pages/RowDetails.h"

#include <QGridLayout>
#include <QLabel>

#include <algorithm>

namespace tavrin::workbench {

struct FormPage::Entry
{
    const FormFile::Control& form;

    QString host(const char* key) const { return form.host.value(QLatin1String(key)).toString(); }
    QString label() const { return form.host.contains(QLatin1String("label")) ? host("label") : form.name; }
};

FormPage::FormPage(const QString& title)
    : RecordPage(title)
    , m_grid(new QGridLayout(this))
{
    m_grid->setContentsMargins(24, 16, 24, 16);
    m_grid->setHorizontalSpacing(12);
    m_grid->setVerticalSpacing(8);
    m_grid->setColumnStretch(1, 1);
    m_grid->setColumnStretch(3, 1);
}

// The record

void FormPage::load(Record& record)
{
    RecordPage::load(record);
    for (PickerRows* rows : m_rows)
        rows->load(record);
}

bool FormPage::differs(Record& record) const
{
    return RecordPage::differs(record) ||
           std::any_of(m_rows.begin(), m_rows.end(),
                       [&](const PickerRows* rows) { return rows->differs(record); });
}

void FormPage::storeRows(Record& record)
{
    for (PickerRows* rows : m_rows)
        rows->store(record);
}

std::optional<FieldProblem> FormPage::firstProblem() const
{
    auto problem = RecordPage::firstProblem();
    for (auto rows = m_rows.begin(); !problem && rows != m_rows.end(); ++rows)
        problem = (*rows)->firstProblem();
    return problem;
}

// Layout

QLabel* FormPage::addSection(const QString& title, const QString& hint)
{
    auto* heading = new QLabel(title, this);
    QFont font = heading->font();
    font.setBold(true);
    heading->setFont(font);
    if (m_row > 0)
        m_grid->setRowMinimumHeight(m_row++, 12);
    m_grid->addWidget(heading, m_row, 0);
    if (!hint.isEmpty()) {
        auto* quiet = new QLabel(hint, this);
        QPalette palette = quiet->palette();
        palette.setColor(QPalette::WindowText, quietText(palette));
        quiet->setPalette(palette);
        m_grid->addWidget(quiet, m_row, 1, 1, 3);
    }
    ++m_row;
    return heading;
}

void FormPage::addField(FieldBinding& binding, int half)
{
    auto* name = new QLabel(binding.label(), this);
    name->setBuddy(binding.widget());
    binding.widget()->setAccessibleName(binding.plainLabel());
    if (QWidget* box = binding.widget()->focusProxy()) // it has the keyboard
        box->setAccessibleName(binding.plainLabel());
    const int column = half == 1 ? 2 : 0;
    m_grid->addWidget(name, m_row, column);
    m_grid->addWidget(binding.widget(), m_row, column + 1, 1, half < 0 ? 3 : 1);
    if (half != 0)
        ++m_row;
}

// The form file

void FormPage::addForm(const QString& formName, const QString& formsFolder, QStringList& problems,
                       const QString& hint)
{
    const auto [form, path] = loadForm(formName, formsFolder, problems);
    if (!form.title.isEmpty() || !hint.isEmpty())
        addSection(form.title, hint);
    const auto controls = form.createControls(publicControls(), this, path, problems);
    for (std::size_t i = 0; i < controls.size(); ++i) {
        if (!controls[i])
            continue;
        const Entry entry{form.controls[i]};
        QString problem = placeProblem(entry);
        if (problem.isEmpty() && !addControl(controls[i], entry))
            problem = tr("It cannot be repeated.");
        if (!problem.isEmpty()) {
            problems << tr("%1: control \"%2\": %3").arg(path, form.controls[i].name, problem);
            delete controls[i];
        }
    }
    m_grid->setRowStretch(m_row, 1);
}

QString FormPage::placeProblem(const Entry& entry)
{
    const RecordSchema& schema = incidentSchema();
    const TableSchema* table = &schema.Main;
    if (const QString name = entry.host("collection"); !name.isEmpty()) {
        const auto found = std::find_if(schema.Collections.begin(), schema.Collections.end(),
                                        [&name](const CollectionSchema& c) { return c.Name == name; });
        if (found == schema.Collections.end())
            return tr("The record has no collection %1.").arg(name);
        table = &found->Table;
    }
    for (const char* key : {"field", "flag", "code"}) {
        const QString name = entry.host(key);
        if (!name.isEmpty() && table->indexOf(name) < 0)
            return tr("The table %1 has no field %2.").arg(table->Table, name);
    }
    return RowDetails::problem(entry.form.host);
}

bool FormPage::addControl(UserControl* control, const Entry& entry)
{
    auto* picker = qobject_cast<SearchPicker*>(control);
    const bool repeats = !entry.host("collection").isEmpty();
    if (repeats && !picker)
        return false;
    if (repeats) {
        delete control; // which has shown that the template is good
        addRows(entry);
    } else if (picker) {
        addPicker(picker, entry);
    } else if (auto* code = qobject_cast<AutoCompleteField*>(control)) {
        addField(bind<AutoCompleteBinding>(code, entry.host("field"), entry.label()));
    } else if (auto* agency = qobject_cast<AgencyPicker*>(control)) {
        addField(bind<AgencyBinding>(agency, entry.host("field"), entry.label()));
    }
    return true;
}

void FormPage::addPicker(SearchPicker* picker, const Entry& entry)
{
    auto& binding = bind<PickerBinding>(picker, entry.host("field"), entry.label());
    if (qobject_cast<FlatPicker*>(picker)) // which bears its own label
        m_grid->addWidget(picker, m_row++, 0, 1, 4, Qt::AlignLeft);
    else
        addField(binding);
    if (entry.host("filter") == QLatin1String("hadLeft"))
        applyFilter(picker, binding);
}

void FormPage::addRows(const Entry& entry)
{
    QLabel* heading = addSection(entry.label(), entry.host("hint"));
    auto* rows = new PickerRows(entry.form, heading, this);
    m_grid->addWidget(rows, m_row++, 0, 1, 4);
    m_rows.push_back(rows);
    m_rowSubscriptions.push_back(rows->Edited.subscribe([this] { Edited.raise(); }));
}

void FormPage::applyFilter(SearchPicker* picker, const PickerBinding& binding)
{
    const auto filter = [this, &binding](qint32 officerNo, bool& exclude) {
        exclude = exclude || (m_hadLeft && !SameValue(binding.loaded(), officerNo) && m_hadLeft(officerNo));
    };
    if (auto* flat = qobject_cast<FlatEmployeePicker*>(picker))
        connectGuarded(flat, &FlatEmployeePicker::Filter, this, "FormPage_Filter", filter);
    else if (auto* combo = qobject_cast<EmployeePicker*>(picker))
        connectGuarded(combo, &EmployeePicker::Filter, this, "FormPage_Filter", filter);
}

} // namespace tavrin::workbench
