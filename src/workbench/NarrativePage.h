#pragma once

#include "RecordPage.h"

namespace tavrin::workbench {

/// The report in plain words.
class NarrativePage final : public RecordPage
{
    Q_OBJECT

public:
    NarrativePage();
};

} // namespace tavrin::workbench
