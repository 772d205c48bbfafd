#pragma once

#include "RecordPage.h"

class QTreeWidget;

namespace tavrin::workbench {

/// The offenses of an incident and the people in it, to read.
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
