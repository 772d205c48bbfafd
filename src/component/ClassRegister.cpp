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

#include <QMetaClassInfo>

#include <algorithm>
#include <type_traits>

namespace tavrin {

namespace {

template <typename Control>
QString contractOf()
{
    if constexpr (std::is_base_of_v<TavrinControl, Control>)
        return QStringLiteral("TavrinControl");
    else if constexpr (std::is_base_of_v<BoundControl, Control>)
        return QStringLiteral("BoundControl");
    else if constexpr (std::is_base_of_v<BoundSection, Control>)
        return QStringLiteral("BoundSection");
    else
        return {};
}

QString classInfo(const QMetaObject& meta, const char* name)
{
    return QString::fromLatin1(meta.classInfo(meta.indexOfClassInfo(name)).value());
}

/// Both ways to look at the public controls, which come to stand here one by one.
struct Register
{
    ControlRegister controls;
    std::vector<PublicClass> classes;

    template <typename Control>
    void add()
    {
        const QMetaObject& meta = Control::staticMetaObject;
        const QString name = classInfo(meta, "ClassName");
        controls.add<Control>(name);
        classes.push_back({name, &meta, contractOf<Control>(), classInfo(meta, "DefaultInterface"),
                           classInfo(meta, "EventInterface")});
    }
};

Register makeRegister()
{
    Register all;
    all.add<AgencyPicker>();
    all.add<Attachments>();
    all.add<AutoCompleteField>();
    all.add<CoverImage>();
    all.add<EmployeePicker>();
    all.add<FlatEmployeePicker>();
    all.add<FlatUserPicker>();
    all.add<LatLong>();
    all.add<MultiValue>();
    all.add<NibrsOffensePicker>();
    all.add<OffensePicker>();
    all.add<SuspRelList>();
    all.add<TavrinDropdown>();
    all.add<TavrinSpellcheck>();
    std::sort(all.classes.begin(), all.classes.end(),
              [](const PublicClass& a, const PublicClass& b) { return a.name < b.name; });
    return all;
}

const Register& theRegister()
{
    static const Register all = makeRegister();
    return all;
}

} // namespace

const std::vector<PublicClass>& publicClasses()
{
    return theRegister().classes;
}

const PublicClass* findPublicClass(const QString& name)
{
    const auto& all = publicClasses();
    const auto found =
        std::find_if(all.begin(), all.end(), [&](const PublicClass& one) { return one.name == name; });
    return found == all.end() ? nullptr : &*found;
}

const ControlRegister& publicControls()
{
    return theRegister().controls;
}

} // namespace tavrin
