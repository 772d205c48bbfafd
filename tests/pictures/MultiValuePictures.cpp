// Writes a picture of each state of the multi-value list and its dialog into the folder that is named on the
// command line; with QT_SCALE_FACTOR=2 one large picture of each.

#include "pictures/ForwardingHost.h"
#include "pictures/Pictures.h"
#include "sections/MultiValue.h"
#include "sections/frmMultiValueSelect.h"
#include "testing/FakeHost.h"
#include "widgets/labels/TextLink.h"
#include "widgets/lists/ListBox.h"
#include "workbench/application/Theme.h"

#include <QLineEdit>
#include <QTest>

#include <functional>

using namespace tavrin;

namespace {

constexpr TableNumber Weapons = 302;

/// The fake host's lists with the reference host's shades.
class PictureHost final : public test::ForwardingHost
{
public:
    UiServices& uiServices() override { return m_ui; }

private:
    UiServices m_ui;
};

QList<TableValue> weapons()
{
    QList<TableValue> values;
    for (const char* text :
         {"Handgun", "Rifle", "Shotgun", "Knife or cutting instrument, blade longer than four inches",
          "Blunt object", "Motor vehicle", "Personal weapons (hands, feet, teeth)", "Poison", "Explosives",
          "Fire or incendiary device", "Narcotics, drugs or sleeping pills", "Asphyxiation", "Other",
          "Unknown"})
        values.append({QString(), QString::fromUtf8(text), 11 + values.size()});
    return values;
}

struct Stage
{
    explicit Stage(bool dark)
        : installation(host)
    {
        workbench::applyTheme(dark);
        host.fake.setTable(Weapons, weapons());
        window.resize(240, 180);
        other.setParent(&window);
        other.setGeometry(-100, -100, 10, 10);
        control = new MultiValue(&window);
        control->move(20, 16);
        control->resize(200, 144);
        window.show();
        window.activateWindow();
        if (!QTest::qWaitForWindowActive(&window))
            throw Error(QStringLiteral("the form did not come up"));
        other.setFocus();
    }

    void fill(const QVariantList& values) const
    {
        const auto rows = std::make_shared<test::FakeCollection>(
            QStringList{QStringLiteral("SeqNo"), QStringLiteral("WeaponNo")});
        for (const QVariant& value : values)
            fieldOf(*rows->AddNew(), QStringLiteral("WeaponNo"))->SetValue(value);
        const BoundBinding binding{QStringLiteral("WeaponNo"), Weapons};
        static_cast<BoundControl*>(control)->FillControl(&binding, {}, rows);
    }
    ListBox* list() const { return control->findChild<ListBox*>(); }

    PictureHost host;
    HostInstallation installation;
    QWidget window;
    QLineEdit other;
    MultiValue* control = nullptr;
};

const QVariantList Three{11, 14, 16};

struct State
{
    const char* name;
    bool dark;
    std::function<void(Stage&)> bring;
};

void select(Stage& form)
{
    form.fill(Three);
    form.list()->SetListIndex(1);
    form.control->setFocus();
}

void disable(Stage& form)
{
    form.fill(Three);
    form.list()->SetListIndex(1);
    form.control->SetEnabled(false);
}

const State States[] = {
    {"empty", false, [](Stage& form) { form.fill({}); }},
    {"empty-focused", false,
     [](Stage& form) {
         form.fill({});
         form.control->setFocus();
     }},
    {"filled", false, [](Stage& form) { form.fill(Three); }},
    {"filled-dark", true, [](Stage& form) { form.fill(Three); }},
    {"selected", false, select},
    {"selected-dark", true, select},
    {"many", false,
     [](Stage& form) {
         form.fill({11, 12, 13, 14, 15, 16, 17, 18, 19});
     }},
    {"link-focused", false,
     [](Stage& form) {
         select(form);
         form.control->findChild<TextLink*>(QStringLiteral("lnkAdd"))->setFocus(Qt::TabFocusReason);
     }},
    {"minus-focused", false,
     [](Stage& form) {
         select(form);
         form.control->findChild<TextLink*>(QStringLiteral("lnkDelete"))->setFocus(Qt::TabFocusReason);
     }},
    {"disabled", false, disable},
    {"disabled-dark", true, disable},
};

void writeDialog(bool dark, const QString& folder, const QString& name, bool onLink)
{
    Stage form(dark);
    frmMultiValueSelect dialog(&form.window);
    dialog.LoadValues(Weapons, Three);
    dialog.show();
    dialog.activateWindow();
    if (!QTest::qWaitForWindowActive(&dialog))
        throw Error(QStringLiteral("the dialog did not come up"));
    auto* link = dialog.findChild<TextLink*>();
    auto* list = dialog.findChild<ListBox*>();
    list->setFocus();
    list->SetSelected(2, true);
    if (onLink) {
        link->setFocus(Qt::TabFocusReason);
        QTest::mouseMove(dialog.windowHandle(), link->geometry().center());
    }
    QApplication::processEvents();
    test::writePicture(dialog.grab(), folder, name);
}

} // namespace

TAVRIN_PICTURES(MultiValue)(int argc, char** argv)
{
    return test::writePictures(argc, argv, [](const QString& folder, bool isLarge) {
        const QString ending = isLarge ? QStringLiteral("-200") : QString();
        for (const State& state : States) {
            if (isLarge && !QLatin1String(state.name).startsWith(QLatin1String("selected")))
                continue;
            Stage form(state.dark);
            state.bring(form);
            test::writePicture(form.window, folder,
                               QStringLiteral("MultiValue/%1%2").arg(QLatin1String(state.name), ending));
        }
        writeDialog(false, folder, QStringLiteral("MultiValue/dialog") + ending, false);
        writeDialog(true, folder, QStringLiteral("MultiValue/dialog-dark") + ending, true);
        if (!isLarge)
            writeDialog(false, folder, QStringLiteral("MultiValue/dialog-link"), true);
    });
}
