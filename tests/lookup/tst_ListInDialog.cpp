#include "frame/modUtils.h"
#include "lookup/AgencyPicker.h"
#include "lookup/AutoCompleteForm.h"
#include "lookup/EmployeePicker.h"
#include "lookup/FlatPickerForm.h"
#include "lookup/NibrsOffensePicker.h"
#include "lookup/OffensePicker.h"
#include "lookup/TavrinDropdown.h"
#include "support/Keys.h"
#include "support/TestCase.h"
#include "widgets/grid_combo/GridComboBox.h"
#include "widgets/search_box/AutoCompleteComboBox.h"

#include <QApplication>
#include <QDialog>
#include <QPushButton>
#include <QShortcut>

#include <functional>

using namespace Qt::StringLiterals;
using namespace tavrin;
using tavrin::test::typeInto;

namespace {

constexpr tavrin::TableNumber Weapons = 302;

/// A dialog with a default button, for one field over lists of a few entries.
struct Stage
{
    Stage()
        : installation(host)
    {
        tavrin::test::fillPeople(host);
        host.setTable(Weapons, tavrin::test::sampleTable());
        host.setTable(Tables::Agency, {{u"AP"_s, u"Aston Police"_s, 10}, {u"BF"_s, u"Bell Fire"_s, 20}});
        host.state().nibrsCodes = {{u"13A"_s, u"Aggravated Assault"_s}, {u"09A"_s, u"Murder"_s}};
        host.state().offenses = tavrin::test::xmlOf(
            u"<Offenses><Offense><OffenseNo>31</OffenseNo><OffenseId>13A</OffenseId>"
            "<Description>Assault</Description><RptCode>X1</RptCode><ActiveFlag>1</ActiveFlag></Offense>"
            "<Offense><OffenseNo>33</OffenseNo><OffenseId>220</OffenseId><Description>Burglary</Description>"
            "<RptCode>Y2</RptCode><ActiveFlag>1</ActiveFlag></Offense></Offenses>"_s);
        modUtils::ReleaseNibrsModule();
        dialog.resize(600, 400);
        standard.setGeometry(500, 360, 80, 26);
        standard.setDefault(true);
        QObject::connect(&standard, &QPushButton::clicked, &dialog, [this] { ++defaultPresses; });
    }
    ~Stage() { modUtils::ReleaseNibrsModule(); }
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;

    template <typename Control>
    Control* place()
    {
        auto* control = new Control(&dialog);
        control->setGeometry(10, 10, 300, 30);
        field = control;
        return control;
    }
    bool show()
    {
        dialog.show();
        dialog.activateWindow();
        field->setFocus();
        return QTest::qWaitForWindowActive(&dialog) && hasFocus();
    }
    bool hasFocus() const { return field->isAncestorOf(QApplication::focusWidget()); }
    template <typename Widget>
    Widget* part() const
    {
        return field->findChild<Widget*>();
    }
    /// Where the window system sends it: a shortcut of the dialog may come first.
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(dialog.windowHandle(), key, modifiers);
    }
    static bool listIsOpen()
    {
        const QWidgetList windows = QApplication::topLevelWidgets();
        return std::any_of(windows.begin(), windows.end(), [](const QWidget* window) {
            return window->isVisible() && window->windowType() == Qt::ToolTip;
        });
    }
    /// As they stand in the boxes of all the fields.
    QStringList texts() const
    {
        QStringList all;
        for (const QLineEdit* box : field->findChildren<QLineEdit*>())
            all << box->text();
        return all;
    }

    tavrin::test::FakeHost host;
    HostInstallation installation;
    QDialog dialog;
    QPushButton standard{&dialog};
    UserControl* field = nullptr;
    int defaultPresses = 0;
};

using Act = std::function<void(Stage&)>;

const Act WithF4 = [](Stage& stage) { stage.key(Qt::Key_F4); };
const Act Typing = [](Stage& stage) { typeInto(stage.dialog.windowHandle(), u"gun"_s); };

template <typename Control>
void placeField(Stage& stage)
{
    stage.place<Control>();
}

template <typename Control>
void placeTableField(Stage& stage)
{
    if constexpr (std::is_same_v<Control, TavrinDropdown>)
        stage.place<Control>()->SetTableNumber(Weapons);
    else
        stage.place<Control>()->SetTableNo(Weapons);
}

/// Each field that opens a list, and each way to open it.
void addFields()
{
    QTest::addColumn<Act>("place");
    QTest::addColumn<Act>("open");
    const auto add = [](const char* name, Act place, Act open) { QTest::newRow(name) << place << open; };
    add("AutoCompleteField", placeTableField<AutoCompleteField>, Typing);
    add("AutoCompleteField, in its list", placeTableField<AutoCompleteField>, [](Stage& stage) {
        Typing(stage);
        QTRY_VERIFY(Stage::listIsOpen());
        stage.key(Qt::Key_Down);
        QVERIFY(stage.part<DropDownList>()->hasFocus());
    });
    add("TavrinDropdown", placeTableField<TavrinDropdown>, WithF4);
    add("TavrinDropdown, by the mouse", placeTableField<TavrinDropdown>,
        [](Stage& stage) { QTest::mouseClick(stage.part<DropDownList>(), Qt::LeftButton); });
    add("NibrsOffensePicker", placeField<NibrsOffensePicker>, WithF4);
    add("AgencyPicker", placeField<AgencyPicker>, WithF4);
    add("AgencyPicker, by the mouse", placeField<AgencyPicker>,
        [](Stage& stage) { QTest::mouseClick(stage.part<GridComboBox>(), Qt::LeftButton); });
    add("EmployeePicker", placeField<EmployeePicker>, WithF4);
    add("EmployeePicker, by its button", placeField<EmployeePicker>, [](Stage& stage) {
        QTest::mouseClick(stage.field->findChild<Link*>(u"lnkButton"_s), Qt::LeftButton);
    });
    add("OffensePicker", placeField<OffensePicker>,
        [](Stage& stage) { typeInto(stage.dialog.windowHandle(), u"13"_s); });
    add("FlatEmployeePicker", placeField<FlatEmployeePicker>, WithF4);
    add("FlatEmployeePicker, by its sign", placeField<FlatEmployeePicker>, [](Stage& stage) {
        QTest::mouseClick(stage.field->findChild<Link*>(u"lnkDropDown"_s), Qt::LeftButton);
    });
    add("FlatUserPicker", placeField<FlatUserPicker>, WithF4);
    add("FlatUserPicker, by its sign", placeField<FlatUserPicker>, [](Stage& stage) {
        QTest::mouseClick(stage.field->findChild<Link*>(u"lnkDropDown"_s), Qt::LeftButton);
    });
}

} // namespace

/// The keys of a list that is open over a dialog: Escape and Enter mean the list first.
class tst_ListInDialog : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void theFirstEscapeClosesTheListAndTheNextOneTheDialog_data() { addFields(); }
    void theFirstEscapeClosesTheListAndTheNextOneTheDialog()
    {
        QFETCH(Act, place);
        QFETCH(Act, open);
        for (const Qt::KeyboardModifiers modifiers :
             {Qt::KeyboardModifiers(), Qt::KeyboardModifiers(Qt::KeypadModifier)}) {
            Stage stage;
            place(stage);
            QVERIFY(stage.show());
            open(stage);
            QTRY_VERIFY(Stage::listIsOpen());
            const QStringList texts = stage.texts();
            stage.key(Qt::Key_Escape, modifiers);
            QVERIFY(!Stage::listIsOpen());
            QVERIFY(stage.dialog.isVisible());
            QCOMPARE(stage.texts(), texts);
            QVERIFY(stage.hasFocus());
            stage.key(Qt::Key_Escape, modifiers);
            QVERIFY(!stage.dialog.isVisible());
            QCOMPARE(stage.dialog.result(), int(QDialog::Rejected));
        }
    }

    void anEscapeOfTheWindowWaitsForTheOpenList_data() { addFields(); }
    void anEscapeOfTheWindowWaitsForTheOpenList()
    {
        QFETCH(Act, place);
        QFETCH(Act, open);
        Stage stage;
        int windowsEscapes = 0;
        const QShortcut shortcut(QKeySequence(Qt::Key_Escape), &stage.dialog);
        QObject::connect(&shortcut, &QShortcut::activated, &stage.dialog, [&] { ++windowsEscapes; });
        place(stage);
        QVERIFY(stage.show());
        open(stage);
        QTRY_VERIFY(Stage::listIsOpen());
        stage.key(Qt::Key_Escape);
        QVERIFY(!Stage::listIsOpen());
        QCOMPARE(windowsEscapes, 0);
        stage.key(Qt::Key_Escape);
        QCOMPARE(windowsEscapes, 1);
    }

    void anyEnterIsTheOpenListsAndNotTheDefaultButtons_data() { addFields(); }
    void anyEnterIsTheOpenListsAndNotTheDefaultButtons()
    {
        QFETCH(Act, place);
        QFETCH(Act, open);
        for (const bool isMarked : {true, false}) {
            QStringList byReturn; // what plain Return makes of the texts
            bool staysOpen = false;
            for (const Qt::KeyboardModifiers shift :
                 {Qt::NoModifier, Qt::ShiftModifier, Qt::ControlModifier}) {
                for (const Qt::Key enter : {Qt::Key_Return, Qt::Key_Enter}) {
                    Stage stage;
                    place(stage);
                    QVERIFY(stage.show());
                    open(stage);
                    QTRY_VERIFY(Stage::listIsOpen());
                    if (isMarked)
                        stage.key(Qt::Key_Down);
                    // The dialog counts Enter of the number block as its own whatever the shift state.
                    stage.key(enter, enter == Qt::Key_Enter ? shift | Qt::KeypadModifier : shift);
                    QVERIFY(stage.dialog.isVisible());
                    QCOMPARE(stage.defaultPresses, 0);
                    QVERIFY(stage.hasFocus());
                    if (!shift && enter == Qt::Key_Return) {
                        byReturn = stage.texts();
                        staysOpen = Stage::listIsOpen();
                        QVERIFY(!isMarked || !staysOpen); // it is taken
                    }
                    QCOMPARE(stage.texts(), byReturn);
                    QCOMPARE(Stage::listIsOpen(), staysOpen);
                }
            }
        }
    }

    void escapeWithAnyShiftStateClosesTheOpenList_data() { addFields(); }
    void escapeWithAnyShiftStateClosesTheOpenList()
    {
        QFETCH(Act, place);
        QFETCH(Act, open);
        for (const Qt::KeyboardModifiers shift : {Qt::ShiftModifier, Qt::ControlModifier}) {
            Stage stage;
            place(stage);
            QVERIFY(stage.show());
            open(stage);
            QTRY_VERIFY(Stage::listIsOpen());
            stage.key(Qt::Key_Escape, shift);
            QVERIFY(!Stage::listIsOpen());
            QVERIFY(stage.dialog.isVisible());
        }
    }
};

TAVRIN_TEST_MAIN(tst_ListInDialog)
#include "tst_ListInDialog.moc"
