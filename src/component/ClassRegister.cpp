#include "component/ClassRegister.h"

#include "attachments/section/Attachments.h"
#include "attachments/section/CoverImage.h"
#include "geocode/LatLong.h"
#include "lookup/AgencyPicker.h"
#include "lookup/AutoCompleteField.h"
#include "lookup/EmployeePicker.h"
#include "lookup/FlatEmployeePicker.h"
#include "lookup/FlatUserPicker.h"
#include "lookup/NibrsOffensePicker.h"
#include "lookup/OffensePicker.h"
#include "lookup/TavrinDropdown.h"
#include "sections/MultiValue.h"
#include "sections/SuspRelList.h"
#include "spell/TavrinSpellcheck.h"

namespace tavrin {

const ControlRegister& publicControls()
{
    static const ControlRegister controls = [] {
        ControlRegister classes;
        classes.add<AgencyPicker>(QStringLiteral("TVBoundControls.AgencyPicker"));
        classes.add<Attachments>(QStringLiteral("TVBoundControls.Attachments"));
        classes.add<AutoCompleteField>(QStringLiteral("TVBoundControls.AutoCompleteField"));
        classes.add<CoverImage>(QStringLiteral("TVBoundControls.CoverImage"));
        classes.add<EmployeePicker>(QStringLiteral("TVBoundControls.EmployeePicker"));
        classes.add<FlatEmployeePicker>(QStringLiteral("TVBoundControls.FlatEmployeePicker"));
        classes.add<FlatUserPicker>(QStringLiteral("TVBoundControls.FlatUserPicker"));
        classes.add<MultiValue>(QStringLiteral("TVBoundControls.MultiValue"));
        classes.add<LatLong>(QStringLiteral("TVBoundControls.LatLong"));
        classes.add<OffensePicker>(QStringLiteral("TVBoundControls.OffensePicker"));
        classes.add<NibrsOffensePicker>(QStringLiteral("TVBoundControls.NibrsOffensePicker"));
        classes.add<TavrinDropdown>(QStringLiteral("TVBoundControls.TavrinDropdown"));
        classes.add<SuspRelList>(QStringLiteral("TVBoundControls.SuspRelList"));
        classes.add<TavrinSpellcheck>(QStringLiteral("TVBoundControls.TavrinSpellcheck"));
        return classes;
    }();
    return controls;
}

} // namespace tavrin
