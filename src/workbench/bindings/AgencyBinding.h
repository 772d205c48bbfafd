#pragma once

#include "workbench/bindings/PickedBinding.h"

namespace tavrin {
class AgencyPicker;
}

namespace tavrin::workbench {

/// An agency picker over a field that holds one agency's number.
class AgencyBinding final : public PickedBinding
{
public:
    /// The picker belongs to its parent.
    AgencyBinding(AgencyPicker* picker, const QString& fieldName, const QString& label);
};

} // namespace tavrin::workbench
