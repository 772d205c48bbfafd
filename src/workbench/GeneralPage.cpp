#include "GeneralPage.h"

#include "AutoCompleteBinding.h"
#include "PlainBindings.h"
#include "Theme.h"
#include "component/ClassRegister.h"
#include "frame/control_frame/FormFile.h"
#include "frame/host_contracts/Host.h"
#include "lookup/AutoCompleteField.h"

#include <QDir>
#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>

// The resource lies in a static library, which nothing else makes the linker take in.
static void takeInResources()
{
    Q_INIT_RESOURCE(workbench);
}

namespace tavrin::workbench {

namespace {

const QString FormName = QStringLiteral("general.json");

/// The form file of the given folder when there is one, else the built-in one.
QString formPath(const QString& folder)
{
    const QString own = QDir(folder).filePath(FormName);
    return !folder.isEmpty() && QFileInfo::exists(own) ? own
                                                       : QStringLiteral(":/workbench/forms/") + FormName;
}

} // namespace

GeneralPage::GeneralPage(const QString& formsFolder, QStringList& problems)
    : RecordPage(QStringLiteral("General"))
    , m_grid(new QGridLayout(this))
{
    m_grid->setContentsMargins(24, 16, 24, 16);
    m_grid->setHorizontalSpacing(12);
    m_grid->setVerticalSpacing(8);
    m_grid->setColumnStretch(1, 1);
    m_grid->setColumnStretch(3, 1);
    const QString dates = currentHost().hostServices().DateDisplayFormat();

    const QStringList states{tr("Open"), tr("Under review"), tr("Closed")};
    addSection(tr("Incident"));
    addField(bind<LineBinding>(QStringLiteral("CaseNo"), tr("&Case number")), 0);
    addField(bind<ChoiceBinding>(QStringLiteral("Status"), tr("S&tatus"), states), 1);
    addField(bind<DateTimeBinding>(QStringLiteral("ReportedAt"), tr("&Reported"), dates), 0);
    addField(bind<DateTimeBinding>(QStringLiteral("OccurredAt"), tr("&Occurred"), dates), 1);
    addField(bind<LineBinding>(QStringLiteral("Summary"), tr("S&ummary")));
    addField(bind<LineBinding>(QStringLiteral("Address"), tr("&Address")), 0);
    addField(bind<LineBinding>(QStringLiteral("City"), tr("C&ity")), 1);
    addCodedFields(formsFolder, problems);
    m_grid->setRowStretch(m_row, 1);
}

void GeneralPage::addSection(const QString& title, const QString& hint)
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
}

void GeneralPage::addField(FieldBinding& binding, int half)
{
    auto* name = new QLabel(binding.label(), this);
    name->setBuddy(binding.widget());
    binding.widget()->setAccessibleName(binding.plainLabel());
    const int column = half == 1 ? 2 : 0;
    m_grid->addWidget(name, m_row, column);
    m_grid->addWidget(binding.widget(), m_row, column + 1, 1, half < 0 ? 3 : 1);
    if (half != 0)
        ++m_row;
}

void GeneralPage::addCodedFields(const QString& formsFolder, QStringList& problems)
{
    takeInResources();
    QString path = formPath(formsFolder);
    QStringList ownProblems;
    FormFile form = FormFile::load(path, ownProblems);
    problems << ownProblems;
    if (form.controls.empty() && !path.startsWith(u':')) {
        if (ownProblems.isEmpty())
            problems << tr("%1: The form has no controls.").arg(path);
        problems << tr("The built-in form is shown instead.");
        path = formPath(QString());
        form = FormFile::load(path, problems);
    }
    addSection(form.title, tr("Type at least three letters, or the code, and choose from the list."));
    const auto controls = form.createControls(publicControls(), this, path, problems);
    for (std::size_t i = 0; i < controls.size(); ++i) {
        const FormFile::Control& entry = form.controls[i];
        const QString label = entry.host.value(QStringLiteral("label")).toString(entry.name);
        const QString fieldName = entry.host.value(QStringLiteral("field")).toString();
        if (auto* control = qobject_cast<AutoCompleteField*>(controls[i]))
            addField(bind<AutoCompleteBinding>(control, fieldName, label));
    }
}

} // namespace tavrin::workbench
