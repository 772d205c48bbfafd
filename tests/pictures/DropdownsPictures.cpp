// Writes a picture of each state of the plain drop-downs into the folder that is named on the command line.

#include "frame/modUtils.h"
#include "lookup/NibrsOffensePicker.h"
#include "lookup/TavrinDropdown.h"
#include "pictures/Pictures.h"
#include "support/Fakes.h"
#include "testing/FakeHost.h"
#include "widgets/lists/FlatDropdown.h"
#include "workbench/application/Theme.h"

#include <QLineEdit>
#include <QTest>

#include <functional>
#include <string_view>

using namespace tavrin;

namespace {

QImage shield()
{
    QImage icon(32, 32, QImage::Format_ARGB32_Premultiplied);
    icon.fill(Qt::transparent);
    QPainter painter(&icon);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(43, 108, 176));
    painter.drawPolygon(QPolygonF({{4, 4}, {28, 4}, {28, 16}, {16, 30}, {4, 16}}));
    return icon;
}

/// A form with one drop-down and somewhere else for the focus to go.
struct Form
{
    Form(bool dark, const QString& kind)
        : installation(host)
    {
        workbench::applyTheme(dark);
        modUtils::ReleaseNibrsModule();
        host.setTable(312, {{QStringLiteral("A"), QStringLiteral("Asian"), 1},
                            {QStringLiteral("B"), QStringLiteral("Black or African American"), 2},
                            {QStringLiteral("W"), QStringLiteral("White"), 3},
                            {QStringLiteral("U"), QStringLiteral("Unknown"), 4}});
        host.state().nibrsCodes = {
            {QStringLiteral("09A"), QStringLiteral("Murder and Nonnegligent Manslaughter")},
            {QStringLiteral("13A"), QStringLiteral("Aggravated Assault")},
            {QStringLiteral("13B"), QStringLiteral("Simple Assault")},
            {QStringLiteral("220"), QStringLiteral("Burglary/Breaking & Entering")}};
        window.resize(360, 170);
        other = new QLineEdit(&window);
        other->setGeometry(-100, -100, 10, 10);
        if (kind == QLatin1String("TavrinDropdown")) {
            dropdown = new TavrinDropdown(&window);
            dropdown->SetTableNumber(312);
            control = dropdown;
        } else {
            nibrs = new NibrsOffensePicker(&window);
            control = nibrs;
        }
        control->setGeometry(20, 16, 300, control->height());
        window.show();
        window.activateWindow();
        if (!QTest::qWaitForWindowActive(&window))
            throw Error(QStringLiteral("the form did not come up"));
        other->setFocus();
    }
    void choose() const
    {
        if (dropdown)
            dropdown->SetValue(3);
        else
            nibrs->SetValue(QStringLiteral("13A"));
    }

    test::FakeHost host;
    HostInstallation installation;
    QWidget window;
    QLineEdit* other;
    UserControl* control = nullptr;
    TavrinDropdown* dropdown = nullptr;
    NibrsOffensePicker* nibrs = nullptr;
};

void open(Form& form)
{
    form.choose();
    form.control->setFocus();
    form.control->findChild<FlatDropdown*>()->Open();
}

struct State
{
    const char* name;
    bool dark;
    std::function<void(Form&)> bring;
};

const State States[] = {
    {"empty", false, [](Form&) {}},
    {"focused", false, [](Form& form) { form.control->setFocus(); }},
    {"open", false, open},
    {"open-dark", true, open},
    {"chosen", false, [](Form& form) { form.choose(); }},
    {"icon", false,
     [](Form& form) {
         form.choose();
         form.dropdown->SetIcon(shield());
     }},
    {"disabled", false,
     [](Form& form) {
         form.choose();
         form.control->setEnabled(false);
     }},
    {"disabled-dark", true,
     [](Form& form) {
         form.choose();
         form.control->setEnabled(false);
     }},
};

} // namespace

TAVRIN_PICTURES(Dropdowns)(int argc, char** argv)
{
    return test::writePictures(argc, argv, [](const QString& folder, bool) {
        for (const auto& kind : {QStringLiteral("TavrinDropdown"), QStringLiteral("NibrsOffensePicker")}) {
            for (const State& state : States) {
                Form form(state.dark, kind);
                if (!form.dropdown && state.name == std::string_view("icon"))
                    continue;
                state.bring(form);
                test::writePicture(form.window, folder, kind + QLatin1Char('/') + QLatin1String(state.name));
            }
        }
    });
}
