#include "ClassRegister.h"

#include "lookup/AgencyPicker.h"
#include "lookup/AutoCompleteField.h"
#include "lookup/EmployeePicker.h"
#include "lookup/FlatEmployeePicker.h"
#include "lookup/FlatUserPicker.h"
#include "lookup/OffensePicker.h"

namespace tavrin {

const ControlRegister& publicControls()
{
    static const ControlRegister controls = [] {
        ControlRegister classes;
        classes.add<AgencyPicker>(QStringLiteral("TVBoundControls.AgencyPicker"));
        classes.add<AutoCompleteField>(QStringLiteral("TVBoundControls.AutoCompleteField"));
        classes.add<EmployeePicker>(QStringLiteral("TVBoundControls.EmployeePicker"));
        classes.add<FlatEmployeePicker>(QStringLiteral("TVBoundControls.FlatEmployeePicker"));
        classes.add<FlatUserPicker>(QStringLiteral("TVBoundControls.FlatUserPicker"));
        classes.add<OffensePicker>(QStringLiteral("TVBoundControls.OffensePicker"));
        return classes;
    }();
    return controls;
}

} // namespace tavrin
