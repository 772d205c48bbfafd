// Writes a picture of each state of the search pickers into the folder that is named on the command line;
// with QT_SCALE_FACTOR=2 one large picture of each picker.

#include "host/services/HostUiServices.h"
#include "lookup/EmployeePicker.h"
#include "lookup/FlatEmployeePicker.h"
#include "lookup/FlatUserPicker.h"
#include "lookup/OffensePicker.h"
#include "pictures/Pictures.h"
#include "support/Fakes.h"
#include "testing/FakeHost.h"
#include "widgets/search_box/SearchBox.h"
#include "workbench/application/Theme.h"

#include <QTest>

#include <functional>
#include <string_view>

using namespace tavrin;

namespace {

XmlDocument parsed(const char* xml)
{
    XmlDocument document;
    document.loadXML(QString::fromUtf8(xml));
    return document;
}

const char Employees[] =
    "<Employees>"
    "<Employee><OfficerNo>1</OfficerNo><OfficerId>MC1007</OfficerId><Name>O'Brien, Jack</Name>"
    "<BadgeNo>333</BadgeNo><ActiveFlag>True</ActiveFlag><IsK9Handler>False</IsK9Handler></Employee>"
    "<Employee><OfficerNo>2</OfficerNo><OfficerId>MC1014</OfficerId><Name>Thistlewood, Marian</Name>"
    "<BadgeNo>388</BadgeNo><ActiveFlag>True</ActiveFlag><IsK9Handler>True</IsK9Handler></Employee>"
    "<Employee><OfficerNo>3</OfficerNo><OfficerId>MC1021</OfficerId><Name>Kettlewell, Rufus</Name>"
    "<BadgeNo>340</BadgeNo><ActiveFlag>True</ActiveFlag><IsK9Handler>True</IsK9Handler></Employee>"
    "<Employee><OfficerNo>4</OfficerNo><OfficerId>MC1190</OfficerId><Name>Wellbeloved, Constance Ann</Name>"
    "<BadgeNo> </BadgeNo><ActiveFlag>False</ActiveFlag><IsK9Handler>False</IsK9Handler></Employee>"
    "</Employees>";

const char Users[] =
    "<Users>"
    "<UserAccount><UserId>jobrien</UserId><IsActive>True</IsActive><FirstName>Jack</FirstName>"
    "<LastName>O'Brien</LastName><OfficerId>MC1007</OfficerId><BadgeNo>333</BadgeNo></UserAccount>"
    "<UserAccount><UserId>mthistlewood</UserId><IsActive>True</IsActive><FirstName>Marian</FirstName>"
    "<LastName>Thistlewood</LastName><OfficerId>MC1014</OfficerId><BadgeNo>388</BadgeNo></UserAccount>"
    "<UserAccount><UserId>rkettlewell</UserId><IsActive>True</IsActive><FirstName>Rufus</FirstName>"
    "<LastName>Kettlewell</LastName><OfficerId>MC1021</OfficerId><BadgeNo>340</BadgeNo></UserAccount>"
    "<UserAccount><UserId>cwell</UserId><IsActive>False</IsActive><FirstName>Constance Ann</FirstName>"
    "<LastName>Wellbeloved-Smythe</LastName><OfficerId/><BadgeNo/></UserAccount>"
    "</Users>";

const char Offenses[] =
    "<Offenses>"
    "<Offense><OffenseNo>1</OffenseNo><OffenseId>PC 120.10</OffenseId>"
    "<Description>Aggravated Assault with a Weapon</Description><RptCode>13A</RptCode>"
    "<ActiveFlag>1</ActiveFlag></Offense>"
    "<Offense><OffenseNo>2</OffenseNo><OffenseId>PC 120.15</OffenseId>"
    "<Description>Aggravated Assault Causing Serious Injury</Description><RptCode>13A</RptCode>"
    "<ActiveFlag>1</ActiveFlag></Offense>"
    "<Offense><OffenseNo>3</OffenseNo><OffenseId>PC 120.30</OffenseId>"
    "<Description>Simple Assault</Description><RptCode>13B</RptCode><ActiveFlag>0</ActiveFlag></Offense>"
    "</Offenses>";

/// A form with one picker and somewhere else for the focus to go.
struct Form
{
    explicit Form(bool dark)
        : installation(host)
    {
        workbench::applyTheme(dark);
        test::FakeHostState& state = host.state();
        state.employees = parsed(Employees);
        state.users = parsed(Users);
        state.offenses = parsed(Offenses);
        for (const auto& [id, name] :
             {std::pair("jobrien", "Jack O'Brien"), std::pair("mthistlewood", "Marian Thistlewood"),
              std::pair("rkettlewell", "Rufus Kettlewell"),
              std::pair("cwell", "Constance Ann Wellbeloved-Smythe")})
            state.userNames.insert(QString::fromUtf8(id), QString::fromUtf8(name));
        host.setTable(Tables::Team, {{QStringLiteral("Patrol A"), QStringLiteral("Patrol, early shift"), 1},
                                     {QStringLiteral("Well-being"), QStringLiteral("Peer support"), 2}});
        HostUiServices services;
        services.setTheme(dark ? Theme::Dark : Theme::Light);
        state.textBoxColors = services.TextBoxColors();
        window.resize(420, 250);
        other = new QLineEdit(&window);
        other->setGeometry(-100, -100, 10, 10);
    }

    void show(SearchPicker* made)
    {
        picker = made;
        picker->move(20, 16);
        window.show();
        window.activateWindow();
        if (!QTest::qWaitForWindowActive(&window))
            throw Error(QStringLiteral("the form did not come up"));
        other->setFocus();
    }
    SearchBox* box() const { return picker->findChild<SearchBox*>(); }
    void search(const char* text) const
    {
        picker->setFocus();
        QTest::keyClicks(box(), QString::fromUtf8(text));
        QTest::keyClick(box(), Qt::Key_Down);
    }

    test::FakeHost host;
    HostInstallation installation;
    QWidget window;
    QLineEdit* other;
    SearchPicker* picker = nullptr;
};

struct Kind
{
    const char* name;
    std::function<SearchPicker*(QWidget*)> make;
    const char* query;
    QVariant value;
    QVariant inactive;
};

template <typename Picker>
SearchPicker* flat(QWidget* parent, const char* caption)
{
    auto* picker = new Picker(parent);
    picker->SetCaption(QString::fromUtf8(caption));
    return picker;
}

template <typename Picker>
SearchPicker* combo(QWidget* parent)
{
    auto* picker = new Picker(parent);
    picker->resize(380, picker->height());
    return picker;
}

const Kind Kinds[] = {
    {"FlatUserPicker", [](QWidget* parent) { return flat<FlatUserPicker>(parent, "Assigned to"); }, "well",
     QStringLiteral("user:jobrien"), QStringLiteral("user:cwell")},
    {"FlatEmployeePicker",
     [](QWidget* parent) { return flat<FlatEmployeePicker>(parent, "Reporting officer"); }, "mc", 1, 4},
    {"EmployeePicker", combo<EmployeePicker>, "mc", 2, 4},
    {"OffensePicker", combo<OffensePicker>, "assault", 1, 3},
};

struct State
{
    const char* name;
    bool dark;
    std::function<void(Form&, const Kind&)> bring;
};

void choose(Form& form, const Kind& kind)
{
    form.picker->SetValue(kind.value);
}

const State States[] = {
    {"empty", false, [](Form&, const Kind&) {}},
    {"focused", false, [](Form& form, const Kind&) { form.picker->setFocus(); }},
    {"open", false, [](Form& form, const Kind& kind) { form.search(kind.query); }},
    {"open-dark", true, [](Form& form, const Kind& kind) { form.search(kind.query); }},
    {"nothing", false, [](Form& form, const Kind&) { form.search("zzzz"); }},
    {"chosen", false, choose},
    {"chosen-dark", true, choose},
    {"chosen-focused", false,
     [](Form& form, const Kind& kind) {
         choose(form, kind);
         form.picker->setFocus();
     }},
    {"disabled", false,
     [](Form& form, const Kind& kind) {
         choose(form, kind);
         form.picker->SetEnabled(false);
     }},
    {"disabled-dark", true,
     [](Form& form, const Kind& kind) {
         choose(form, kind);
         form.picker->SetEnabled(false);
     }},
    {"inactive", false,
     [](Form& form, const Kind& kind) {
         form.picker->SetValue(kind.inactive, nullptr);
         form.picker->setFocus();
     }},
    {"required", false,
     [](Form& form, const Kind&) {
         if (auto* picker = qobject_cast<FlatPicker*>(form.picker))
             picker->SetRequired(true);
     }},
};

} // namespace

TAVRIN_PICTURES(Pickers)(int argc, char** argv)
{
    return test::writePictures(argc, argv, [](const QString& folder, bool isLarge) {
        for (const Kind& kind : Kinds) {
            for (const State& state : States) {
                if (isLarge && state.name != std::string_view("open")) // one picture of each picker is enough
                    continue;
                Form form(state.dark);
                form.show(kind.make(&form.window));
                state.bring(form, kind);
                test::writePicture(form.window, folder,
                                   QStringLiteral("%1/%2%3").arg(QLatin1String(kind.name),
                                                                 QLatin1String(state.name),
                                                                 QLatin1String(isLarge ? "-200" : "")));
            }
        }
    });
}
