#pragma once

#include "RecordPage.h"

class QGridLayout;

namespace tavrin::workbench {

/// What an incident is: its own fields, and the coded fields of the form file "general.json".
class GeneralPage final : public RecordPage
{
    Q_OBJECT

public:
    /// `problems` gets one sentence for each thing of the form file that could not be made.
    GeneralPage(const QString& formsFolder, QStringList& problems);

private:
    void addSection(const QString& title, const QString& hint = {});
    /// A field over the whole width, or in the left (0) or right (1) half.
    void addField(FieldBinding& binding, int half = -1);
    void addCodedFields(const QString& formsFolder, QStringList& problems);

    QGridLayout* m_grid;
    int m_row = 0;
};

} // namespace tavrin::workbench
