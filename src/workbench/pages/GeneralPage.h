#pragma once

#include "workbench/pages/FormPage.h"

#include <QDate>

#include <optional>

namespace tavrin::workbench {

class DateTimeBinding;

/// What an incident is: its own fields, and the coded fields of the form file "general.json".
class GeneralPage final : public FormPage
{
    Q_OBJECT

public:
    /// `problems` gets one sentence for each thing of the form file that could not be made.
    GeneralPage(const QString& formsFolder, QStringList& problems);

    /// The day of the incident as the page has it at this moment, saved or not: when it occurred, or was
    /// reported where that is missing.
    std::optional<QDate> incidentDay() const;

private:
    DateTimeBinding* m_reported;
    DateTimeBinding* m_occurred;
};

} // namespace tavrin::workbench
