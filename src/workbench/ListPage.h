#pragma once

#include "RecordPage.h"

class QTreeWidget;

namespace tavrin::workbench {

/// The people in an incident who are not suspects, to read.
class ListPage final : public RecordPage
{
    Q_OBJECT

public:
    ListPage();

    void load(Record& record) override;

private:
    QTreeWidget* m_list;
};

} // namespace tavrin::workbench
