#include "ClassRegister.h"

#include "lookup/AutoCompleteField.h"

namespace tavrin {

const ControlRegister& publicControls()
{
    static const ControlRegister controls = [] {
        ControlRegister classes;
        classes.add<AutoCompleteField>(QStringLiteral("TVBoundControls.AutoCompleteField"));
        return classes;
    }();
    return controls;
}

} // namespace tavrin
