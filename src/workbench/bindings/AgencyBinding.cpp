#include "workbench/bindings/AgencyBinding.h"

#include "base/failure/Guard.h"
#include "lookup/AgencyPicker.h"

namespace tavrin::workbench {

AgencyBinding::AgencyBinding(AgencyPicker* picker, const QString& fieldName, const QString& label)
    : PickedBinding(*picker, *picker, fieldName, label)
{
    connectGuarded(picker, &AgencyPicker::Change, picker, "AgencyBinding_Edited", [this] { changed(); });
}

} // namespace tavrin::workbench
