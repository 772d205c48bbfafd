#pragma once

#include "workbench/pages/RecordPage.h"

namespace tavrin::workbench {

/// The report in plain words.
class NarrativePage final : public RecordPage
{
    Q_OBJECT

public:
    NarrativePage();

    QWidget* spelledText() const override { return m_text; }

private:
    QWidget* m_text;
};

} // namespace tavrin::workbench
