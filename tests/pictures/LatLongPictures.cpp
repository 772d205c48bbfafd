// Writes a picture of each state of the coordinates into the folder that is named on the command line; with
// QT_SCALE_FACTOR=2 one large picture.

#include "base/values/Variant.h"
#include "frame/memory_records/MemoryField.h"
#include "frame/memory_records/MemoryRow.h"
#include "geocode/LatLong.h"
#include "pictures/Pictures.h"
#include "support/TestCase.h"
#include "testing/FakeRecords.h"
#include "workbench/application/Theme.h"

#include <QLineEdit>

#include <functional>
#include <string_view>

using namespace tavrin;

namespace {

using Values = QList<std::pair<const char*, QVariant>>;

tvBusinessObjectPtr recordWith(const Values& values, bool isNew = false)
{
    QList<tvFieldPtr> fields;
    for (const char* name :
         {"Latitude", "Longitude", "GeocodeOnSave", "GeocodeStatus", "GeocodeAccuracy", "GeocodeAccuracyType",
          "GeocodeError", "GeocodeInputAddress", "GeocodeOutputAddress"}) {
        auto field = std::make_shared<MemoryField>(QString::fromLatin1(name));
        for (const auto& [key, value] : values) {
            if (std::string_view(key) == name)
                field->SetValue(value);
        }
        fields << field;
    }
    auto record = std::make_shared<test::FakeRecord>();
    record->SetItem(QStringLiteral("LocationName"), std::make_shared<MemoryRow>(fields, isNew));
    return record;
}

tvBusinessObjectPtr geocoded(int status, const QVariant& accuracy)
{
    return recordWith({{"Latitude", QStringLiteral("45.85492")},
                       {"Longitude", QStringLiteral("-128.39033")},
                       {"GeocodeOnSave", true},
                       {"GeocodeStatus", status},
                       {"GeocodeAccuracy", accuracy}});
}

tvBusinessObjectPtr typed()
{
    return recordWith({{"Latitude", QStringLiteral("45.71236")},
                       {"Longitude", QStringLiteral("-128.70418")},
                       {"GeocodeOnSave", false}});
}

/// A form with the coordinates and somewhere else for the focus to go.
struct Form
{
    explicit Form(bool dark)
    {
        workbench::applyTheme(dark);
        window.resize(260, 180);
        other = new QLineEdit(&window);
        other->setGeometry(-100, -100, 10, 10);
        control = new LatLong(&window);
        control->move(20, 16);
        window.show();
        window.activateWindow();
        if (!QTest::qWaitForWindowActive(&window))
            throw Error(QStringLiteral("the form did not come up"));
        other->setFocus();
    }
    void read(const tvBusinessObjectPtr& record) const
    {
        static_cast<BoundSection*>(control)->ReadData(record);
    }
    void focus(const char* name) const
    {
        auto* widget = control->findChild<QWidget*>(QString::fromLatin1(name));
        widget->setFocus(Qt::TabFocusReason);
        QTest::keyClick(widget, Qt::Key_Shift); // so that the style knows of a keyboard
    }

    QWidget window;
    QLineEdit* other;
    LatLong* control;
};

struct State
{
    const char* name;
    bool dark;
    std::function<void(Form&)> bring;
};

const State States[] = {
    {"new", false, [](Form& form) { form.read(recordWith({}, true)); }},
    {"manual", false, [](Form& form) { form.read(typed()); }},
    {"manual-dark", true, [](Form& form) { form.read(typed()); }},
    {"manual-focused", false,
     [](Form& form) {
         form.read(typed());
         form.focus("txtLat");
     }},
    {"good", false, [](Form& form) { form.read(geocoded(0, 1.0)); }},
    {"good-dark", true, [](Form& form) { form.read(geocoded(0, 1.0)); }},
    {"option-focused", false,
     [](Form& form) {
         form.read(geocoded(0, 1.0));
         form.focus("optGeocodeOnSave1");
     }},
    {"poor", false, [](Form& form) { form.read(geocoded(0, 0.75)); }},
    {"poor-dark", true, [](Form& form) { form.read(geocoded(0, 0.75)); }},
    {"poor-focused", false,
     [](Form& form) {
         form.read(geocoded(0, 0.75));
         form.focus("lnkViewDetails");
     }},
    {"menu", false,
     [](Form& form) {
         form.read(geocoded(0, 1.0));
         form.focus("optGeocodeOnSave1");
         QTest::keyClick(form.window.windowHandle(), Qt::Key_Menu);
     }},
    {"notfound", false,
     [](Form& form) {
         form.read(recordWith({{"GeocodeOnSave", true}, {"GeocodeStatus", 1}}));
     }},
    {"error", false, [](Form& form) { form.read(geocoded(4, Null())); }},
    {"error-dark", true, [](Form& form) { form.read(geocoded(4, Null())); }},
};

} // namespace

TAVRIN_PICTURES(LatLong)(int argc, char** argv)
{
    return test::writePictures(argc, argv, [](const QString& folder, bool isLarge) {
        for (const State& state : States) {
            if (isLarge && state.name != std::string_view("poor")) // one picture is enough
                continue;
            Form form(state.dark);
            state.bring(form);
            test::writePicture(form.window, folder,
                               QStringLiteral("LatLong/%1%2")
                                   .arg(QLatin1String(state.name), QLatin1String(isLarge ? "-200" : "")));
        }
    });
}
