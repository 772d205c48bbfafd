#include "workbench/pages/GeneralPage.h"

#include "frame/host_contracts/Host.h"
#include "workbench/bindings/PlainBindings.h"

#include <QDateTime>

namespace tavrin::workbench {

GeneralPage::GeneralPage(const QString& formsFolder, QStringList& problems)
    : FormPage(tr("General"))
{
    const QString dates = currentHost().hostServices().DateDisplayFormat();
    const QStringList states{tr("Open"), tr("Under review"), tr("Closed")};
    m_reported = &bind<DateTimeBinding>(QStringLiteral("ReportedAt"), tr("&Reported"), dates);
    m_occurred = &bind<DateTimeBinding>(QStringLiteral("OccurredAt"), tr("&Occurred"), dates);
    addSection(tr("Incident"));
    addField(bind<LineBinding>(QStringLiteral("CaseNo"), tr("&Case number")), 0);
    addField(bind<ChoiceBinding>(QStringLiteral("Status"), tr("S&tatus"), states), 1);
    addField(*m_reported, 0);
    addField(*m_occurred, 1);
    addField(bind<LineBinding>(QStringLiteral("Summary"), tr("S&ummary")));
    addField(bind<LineBinding>(QStringLiteral("Address"), tr("&Address")), 0);
    addField(bind<LineBinding>(QStringLiteral("City"), tr("C&ity")), 1);
    addForm(QStringLiteral("general.json"), formsFolder, problems,
            tr("Type at least three characters of code or text; choose from the list."));
}

std::optional<QDate> GeneralPage::incidentDay() const
{
    for (const DateTimeBinding* binding : {m_occurred, m_reported}) {
        if (const QDateTime moment = binding->moment(); moment.isValid())
            return moment.date();
    }
    return std::nullopt;
}

} // namespace tavrin::workbench
