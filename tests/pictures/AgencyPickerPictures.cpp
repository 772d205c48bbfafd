// Writes a picture of each state of AgencyPicker into the folder that is named on the command line; with
// QT_SCALE_FACTOR=2 one large picture.

#include "base/values/Variant.h"
#include "lookup/AgencyPicker.h"
#include "pictures/Pictures.h"
#include "support/Fakes.h"
#include "testing/FakeHost.h"
#include "widgets/grid_combo/GridComboBox.h"
#include "workbench/application/Theme.h"

#include <QLineEdit>
#include <QTest>

#include <functional>
#include <string_view>

using namespace tavrin;

namespace {

/// A form with one picker and somewhere else for the focus to go.
struct Form
{
    explicit Form(bool dark)
        : installation(host)
    {
        workbench::applyTheme(dark);
        host.setTable(Tables::Agency,
                      {{QStringLiteral("ASPD"), QStringLiteral("Aston Police Department"), 1},
                       {QStringLiteral("BCFD"), QStringLiteral("Bell County Fire"), 2},
                       {QStringLiteral("HP"), QStringLiteral("Highway Patrol, District 4"), 3},
                       {QStringLiteral("MCSO"), QStringLiteral("Marlow County Sheriff"), 4},
                       {QStringLiteral("SFM"), QStringLiteral("State Fire Marshal"), 5},
                       {QStringLiteral("WPD"), QStringLiteral("Wrenfield Police"), 6}});
        host.state().inactive[Tables::Agency] = {2, 5};
        window.resize(420, 310);
        other = new QLineEdit(&window);
        other->setGeometry(-100, -100, 10, 10);
        PropertyBag bag;
        bag.WriteProperty(QStringLiteral("ListAllAgencies"), true, false);
        picker = new AgencyPicker(&window, {QStringLiteral("agency"), &bag});
        picker->setGeometry(20, 16, 380, picker->height());
        combo = picker->findChild<GridComboBox*>();
        window.show();
        window.activateWindow();
        if (!QTest::qWaitForWindowActive(&window))
            throw Error(QStringLiteral("the form did not come up"));
        other->setFocus();
    }
    void open(Qt::Key key = Qt::Key_F4, int more = 0) const
    {
        picker->SetValue(4);
        picker->setFocus();
        QTest::keyClick(combo, key);
        for (int i = 0; i < more; ++i)
            QTest::keyClick(combo, Qt::Key_Down);
    }

    test::FakeHost host;
    HostInstallation installation;
    QWidget window;
    QLineEdit* other;
    AgencyPicker* picker;
    GridComboBox* combo;
};

struct State
{
    const char* name;
    bool dark;
    std::function<void(Form&)> bring;
};

const State States[] = {
    {"empty", false, [](Form&) {}},
    {"focused", false, [](Form& form) { form.picker->setFocus(); }},
    {"open", false, [](Form& form) { form.open(); }},
    {"open-dark", true, [](Form& form) { form.open(); }},
    {"open-inactive", false, [](Form& form) { form.open(Qt::Key_F4, 1); }},
    {"open-inactive-dark", true, [](Form& form) { form.open(Qt::Key_F4, 1); }},
    {"chosen", false, [](Form& form) { form.picker->SetValue(4); }},
    {"chosen-dark", true, [](Form& form) { form.picker->SetValue(4); }},
    {"chosen-focused", false,
     [](Form& form) {
         form.picker->SetValue(4);
         form.picker->setFocus();
     }},
    {"without-name", false,
     [](Form& form) {
         form.picker->SetValue(4);
         form.picker->SetShowName(false);
     }},
    {"disabled", false,
     [](Form& form) {
         form.picker->SetValue(4);
         form.picker->SetEnabled(false);
     }},
    {"disabled-dark", true,
     [](Form& form) {
         form.picker->SetValue(4);
         form.picker->SetEnabled(false);
     }},
    {"nothing", false,
     [](Form& form) {
         form.combo->ResetArray();
         form.combo->Rebind();
         form.picker->setFocus();
         QTest::keyClick(form.combo, Qt::Key_F4);
     }},
    {"long", false,
     [](Form& form) {
         QList<TableValue> many;
         for (int i = 1; i <= 10000; ++i)
             many.append({QStringLiteral("AG%1").arg(i), QStringLiteral("Agency number %1").arg(i), i});
         form.host.setTable(Tables::Agency, many);
         form.picker->SetValue(5000);
         form.picker->setFocus();
         QTest::keyClick(form.combo, Qt::Key_F4);
     }},
};

} // namespace

TAVRIN_PICTURES(AgencyPicker)(int argc, char** argv)
{
    return test::writePictures(argc, argv, [](const QString& folder, bool isLarge) {
        for (const State& state : States) {
            if (isLarge && state.name != std::string_view("open")) // one picture is enough
                continue;
            Form form(state.dark);
            state.bring(form);
            test::writePicture(form.window, folder,
                               QStringLiteral("AgencyPicker/%1%2")
                                   .arg(QLatin1String(state.name), QLatin1String(isLarge ? "-200" : "")));
        }
    });
}
