#include "base/values/Variant.h"
#include "lookup/ComboPickerForm.h"
#include "lookup/EmployeePicker.h"
#include "support/TestCase.h"
#include "widgets/labels/Link.h"

#include <QVariantList>

using namespace tavrin;
using namespace Qt::StringLiterals;
using tavrin::test::bagOf;
using tavrin::test::comboEmployees;
using tavrin::test::FakeHost;
using tavrin::test::fontOf;
using tavrin::test::keysOf;
using tavrin::test::listOf;
using tavrin::test::RecordParts;
using Form = tavrin::test::ComboPickerForm<EmployeePicker>;

namespace {

struct Site
{
    Site()
        : installation(host)
    {
        host.state().employees = comboEmployees();
    }
    FakeHost host;
    HostInstallation installation;
};

/// The saved properties in their order.
const QStringList SavedKeys{u"Enabled"_s,   u"ShowName"_s,       u"RemoveUsedValues"_s,
                            u"Font"_s,      u"K9HandlersOnly"_s, u"ListAllEmployees"_s,
                            u"BackColor"_s, u"ForeColor"_s};

} // namespace

/// Members, value, choosing, saved properties and life of `EmployeePicker`. Its searches are tested in
/// tst_EmployeePickerSearch, its layout and rows in tst_EmployeePickerLayout.
class tst_EmployeePicker : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // Members

    void theMembersStandInThePublishedOrder()
    {
        const QMetaObject& meta = EmployeePicker::staticMetaObject;
        QCOMPARE(tavrin::test::ownProperties(meta),
                 QStringList({u"hWnd"_s, u"BackColor"_s, u"ForeColor"_s, u"Font"_s, u"Value"_s, u"Enabled"_s,
                              u"ShowName"_s, u"K9HandlersOnly"_s, u"ListAllEmployees"_s,
                              u"RemoveUsedValues"_s, u"FullText"_s, u"ShortText"_s}));
        for (const char* name : {"hWnd", "FullText", "ShortText"})
            QVERIFY(!meta.property(meta.indexOfProperty(name)).isWritable());
        QCOMPARE(tavrin::test::ownSignals(SearchPicker::staticMetaObject) + tavrin::test::ownSignals(meta),
                 QStringList({u"Change()"_s, u"ItemSelect()"_s, u"Filter(int,bool&)"_s}));
        QCOMPARE(meta.classInfo(meta.indexOfClassInfo("ClassName")).value(),
                 "TVBoundControls.EmployeePicker");
    }

    void everySetterReportsItsKeyOnceAlsoForTheSameValue()
    {
        const Site site;
        EmployeePicker picker;
        const QSignalSpy changes(&picker, &UserControl::PropertyChanged);
        for (int round = 0; round < 2; ++round) {
            picker.SetBackColor(Color::rgb(1, 1, 1));
            picker.SetForeColor(Color::rgb(1, 1, 1));
            picker.SetFont(picker.Font());
            picker.SetValue(11);
            picker.SetEnabled(false);
            picker.SetShowName(false);
            picker.SetK9HandlersOnly(true);
            picker.SetListAllEmployees(true);
            picker.SetRemoveUsedValues(true);
        }
        const QStringList keys{u"BackColor"_s,      u"ForeColor"_s,        u"Font"_s,
                               u"Value"_s,          u"Enabled"_s,          u"ShowName"_s,
                               u"K9HandlersOnly"_s, u"ListAllEmployees"_s, u"RemoveUsedValues"_s};
        QCOMPARE(keysOf(changes), keys + keys);
        QVERIFY(picker.K9HandlersOnly() && picker.ListAllEmployees() && picker.RemoveUsedValues());
        QVERIFY(!picker.ShowName() && !picker.Enabled());
    }

    void theOptionsChangeNothingButWhatTheNextSearchHeeds()
    {
        Form form;
        form.picker->SetValue(11);
        form.follow();
        form.picker->SetK9HandlersOnly(true);
        form.picker->SetListAllEmployees(true);
        form.picker->SetRemoveUsedValues(true);
        QCOMPARE(form.take(),
                 QStringList({u"K9HandlersOnly 11"_s, u"ListAllEmployees 11"_s, u"RemoveUsedValues 11"_s}));
        QCOMPARE(form.box->Text(), u"A11"_s);
    }

    void coloursGoToTheBoxAndTheBoxIsReadForThem()
    {
        Form form;
        form.picker->SetBackColor(Color::rgb(1, 2, 3));
        form.picker->SetForeColor(Color::rgb(4, 5, 6));
        QCOMPARE(form.box->BackColor(), Color::rgb(1, 2, 3));
        QCOMPARE(form.box->ForeColor(), Color::rgb(4, 5, 6));
        form.box->SetBackColor(Color::rgb(7, 8, 9));
        form.box->SetForeColor(Color::rgb(9, 8, 7));
        QCOMPARE(form.picker->BackColor(), Color::rgb(7, 8, 9));
        QCOMPARE(form.picker->ForeColor(), Color::rgb(9, 8, 7));
    }

    void theFontIsOneObjectForLabelAndBoxAndAChangeInsideItShowsInBoth()
    {
        Form form;
        const FontPtr font = fontOf(12);
        form.picker->SetFont(font);
        QCOMPARE(form.picker->Font(), font);
        QCOMPARE(form.label->Font(), font);
        QCOMPARE(form.box->Font(), font);
        const QSignalSpy changes(form.picker, &UserControl::PropertyChanged);
        font->SetItalic(true);
        QVERIFY(form.label->font().italic());
        QVERIFY(form.box->font().italic());
        QCOMPARE(changes.size(), 0);
    }

    void aFontThatWasReplacedIsFollowedNoLonger()
    {
        Form form;
        const FontPtr former = fontOf(12);
        form.picker->SetFont(former);
        form.picker->SetFont(fontOf(10));
        const int height = form.picker->height();
        former->SetSize(40);
        QCOMPARE(form.picker->height(), height);
        QCOMPARE(form.box->font().pointSizeF(), 10.0);
    }

    void theDisabledBoxHasNoPlaceholderAndTakesNoKeys()
    {
        Form form;
        QVERIFY(form.isReady());
        QCOMPARE(form.box->Placeholder(), u"Type to search"_s);
        form.picker->SetEnabled(false);
        QVERIFY(!form.picker->Enabled());
        QVERIFY(!form.box->isEnabled());
        QCOMPARE(form.box->Placeholder(), QString());
        form.type(u"a"_s);
        QCOMPARE(form.box->Text(), QString());
        QVERIFY(!form.box->ListIsOpen());
        form.picker->SetEnabled(true);
        QVERIFY(form.box->isEnabled());
        QCOMPARE(form.box->Placeholder(), u"Type to search"_s);
    }

    void aFormThatIsDisabledForAWhileDoesNotDisableTheControlForGood()
    {
        Form form;
        form.window.setEnabled(false);
        QVERIFY(form.picker->Enabled());
        tavrin::PropertyBag bag;
        form.picker->WriteProperties(bag);
        QVERIFY(!bag.contains(u"Enabled"_s));
        form.picker->SetEnabled(false);
        form.window.setEnabled(true);
        QVERIFY(!form.picker->Enabled());
    }

    void theTextsAreTheHostsAndEmptyForNullWithoutAskingIt()
    {
        Form form;
        auto& state = form.host.state();
        state.employeeShortTexts.insert(u"11"_s, u"Adams"_s);
        state.employeeFullTexts.insert(u"11"_s, u"Ann Adams, A11"_s);
        QCOMPARE(form.picker->FullText(), QString());
        QCOMPARE(form.picker->ShortText(), QString());
        QCOMPARE(form.host.calls(), 0);
        form.picker->SetValue(11);
        QCOMPARE(form.picker->FullText(), u"Ann Adams, A11"_s);
        QCOMPARE(form.picker->ShortText(), u"Adams"_s);
        state.employeeFullTexts.insert(u"11"_s, u"another"_s);
        QCOMPARE(form.picker->FullText(), u"another"_s); // nothing is kept
    }

    void theWindowHandleIsTheOneOfTheWindowItStandsOn()
    {
        Form form;
        QVERIFY(form.isReady());
        QCOMPARE(form.picker->hWnd(), static_cast<qint32>(form.window.winId()));
        QVERIFY(!form.picker->internalWinId());
    }

    // Value

    void aValueShowsIdAndNameAndRaisesChangeBeforeItIsReported()
    {
        Form form;
        form.follow();
        form.picker->SetValue(11);
        QCOMPARE(form.take(), QStringList({u"Change 11"_s, u"Value 11"_s}));
        QCOMPARE(form.picker->Value().typeId(), int(QMetaType::Double));
        QCOMPARE(form.picker->Value(), QVariant(11.0));
        QCOMPARE(form.box->Text(), u"A11"_s);
        QCOMPARE(form.label->Caption(), u"Adams, Ann"_s);
        QVERIFY(!form.box->ListIsOpen());
    }

    void theSameValueAgainIsPutAgain()
    {
        Form form;
        form.follow();
        form.picker->SetValue(11);
        form.picker->SetValue(11);
        QCOMPARE(form.take(), QStringList({u"Change 11"_s, u"Value 11"_s, u"Change 11"_s, u"Value 11"_s}));
    }

    void anythingWithAnEmptyTextClearsAndRaisesChangeAlsoOnAnEmptyPicker_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::newRow("Null") << Null();
        QTest::newRow("Empty") << QVariant();
        QTest::newRow("empty text") << QVariant(QString());
    }
    void anythingWithAnEmptyTextClearsAndRaisesChangeAlsoOnAnEmptyPicker()
    {
        QFETCH(QVariant, value);
        Form form;
        form.picker->SetValue(11);
        const int calls = form.host.calls();
        form.follow();
        for (int round = 0; round < 2; ++round) {
            form.picker->SetValue(value);
            QCOMPARE(form.take(), QStringList({u"Change Null"_s, u"Value Null"_s}));
            QVERIFY(IsNull(form.picker->Value()));
            QCOMPARE(form.box->Text(), QString());
            QCOMPARE(form.label->Caption(), QString());
        }
        QCOMPARE(form.host.calls(), calls);
    }

    void clearingTakesATypedTextAwayToo()
    {
        Form form;
        QVERIFY(form.isReady());
        form.type(u"ada"_s);
        form.picker->SetValue(Null());
        QCOMPARE(form.box->Text(), QString());
        QVERIFY(!form.box->ListIsOpen());
    }

    void aValueMissingFromTheListEndsUpNullAndTheHostReadsNull()
    {
        Form form;
        form.picker->SetValue(11);
        form.follow();
        form.hold(99);
        QCOMPARE(form.take(), QStringList({u"Change Null"_s, u"Value Null"_s}));
        QVERIFY(IsNull(static_cast<TavrinControl*>(form.picker)->GetValue()));
        QCOMPARE(form.box->Text(), QString());
        QCOMPARE(form.label->Caption(), QString());
    }

    void anInactiveEmployeeIsShownAsAValue()
    {
        Form form;
        form.picker->SetK9HandlersOnly(true);
        form.picker->SetValue(12);
        QCOMPARE(form.picker->Value(), QVariant(12.0));
        QCOMPARE(form.label->Caption(), u"Baker, Bob"_s);
    }

    void ofTwoRecordsOfOneNumberTheFirstIsShown()
    {
        Form form;
        form.host.state().employees = listOf("L", "Employee",
                                             {tavrin::test::employee(5, "first", "One", "", true),
                                              tavrin::test::employee(5, "second", "Two", "", true)});
        form.picker->SetValue(5);
        QCOMPARE(form.box->Text(), u"first"_s);
    }

    void aValueThatMakesNoExpressionReachesTheCallerAndThePickerStaysUsable()
    {
        Form form;
        QVERIFY(form.isReady());
        form.hold(12);
        form.follow();
        QVERIFY_EXCEPTION_THROWN(form.picker->SetValue(u"1 2"_s), Error);
        QVERIFY_EXCEPTION_THROWN(form.hold(u"]"_s), Error);
        QCOMPARE(form.picker->Value(), QVariant(u"]"_s)); // it was stored first
        QCOMPARE(form.take(), QStringList());
        QCOMPARE(form.found(u"baker"_s), QStringList{u"B12"_s}); // the host's value is still the one before
        form.emptyBox();
        form.type(u"cole"_s);
        QTest::keyClick(form.box, Qt::Key_Return);
        QCOMPARE(form.picker->Value(), QVariant(13.0));
        form.picker->SetValue(11);
        QCOMPARE(form.box->Text(), u"A11"_s);
    }

    void aPutThatFailedShowsNothingOfTheValueBefore_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<bool>("isListAway");
        QTest::newRow("no expression") << QVariant(u"1 2"_s) << false;
        QTest::newRow("an object") << QVariant::fromValue(QPoint(1, 2)) << false;
        QTest::newRow("no list") << QVariant(11.0) << true;
    }
    void aPutThatFailedShowsNothingOfTheValueBefore()
    {
        QFETCH(QVariant, value);
        QFETCH(bool, isListAway);
        for (const bool byContract : {false, true}) {
            Form form;
            QVERIFY(form.isReady());
            if (isListAway) {
                // The list fails at its first need, later it is the clone: what the picker holds is not its
                // own.
                form.host.failWith(Error(u"no list"_s));
                form.box->SelectItem(
                    comboEmployees().documentElement().selectSingleNode(u"Employee[OfficerNo=12]"_s));
            } else {
                form.hold(12);
            }
            QCOMPARE(form.picker->Value(), QVariant(12.0));
            QCOMPARE(form.box->Text(), u"B12"_s);
            QCOMPARE(form.label->Caption(), u"Baker, Bob"_s);
            form.follow();
            if (byContract)
                QVERIFY_EXCEPTION_THROWN(form.hold(value), Error);
            else
                QVERIFY_EXCEPTION_THROWN(form.picker->SetValue(value), Error);
            form.host.failWith({});
            QCOMPARE(form.picker->Value(), value); // stored first, and so it goes back as it came
            QCOMPARE(form.box->Text(), QString());
            QCOMPARE(form.label->Caption(), QString());
            QVERIFY(form.box->SelectedItem().isNull());
            QCOMPARE(form.journal, QStringList());
            form.type(u"x"_s);
            form.other->setFocus();
            QCOMPARE(form.box->Text(), QString()); // nor does a name come back when the focus leaves
            QCOMPARE(form.picker->Value(), value);
            QCOMPARE(form.journal, QStringList());
            form.picker->setFocus();
            form.type(u"cole"_s);
            QTest::keyClick(form.box, Qt::Key_Return);
            QCOMPARE(form.take(), QStringList({u"Change 13"_s, u"ItemSelect 13"_s}));
        }
    }

    void aPutThatFailedClosesTheList_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::newRow("of a typed text") << u"ada"_s;
        QTest::newRow("of the empty box") << QString();
    }
    void aPutThatFailedClosesTheList()
    {
        QFETCH(QString, typed);
        Form form;
        QVERIFY(form.isReady());
        form.type(typed);
        if (typed.isEmpty())
            QTest::keyClick(form.box, Qt::Key_Down);
        QVERIFY(form.box->ListIsOpen());
        QVERIFY_EXCEPTION_THROWN(form.picker->SetValue(u"1 2"_s), Error);
        QVERIFY(!form.box->ListIsOpen());
        QTest::keyClick(form.box, Qt::Key_Return);
        QCOMPARE(form.picker->Value(), QVariant(u"1 2"_s)); // no row of it was taken
    }

    void thePersonCanClearAValueThatShowsNoName_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<int>("key");
        QTest::newRow("a typed letter taken back") << u"x"_s << int(Qt::Key_Backspace);
        QTest::newRow("Backspace in the empty box") << QString() << int(Qt::Key_Backspace);
        QTest::newRow("Delete in the empty box") << QString() << int(Qt::Key_Delete);
    }
    void thePersonCanClearAValueThatShowsNoName()
    {
        QFETCH(QString, typed);
        QFETCH(int, key);
        Form form;
        QVERIFY(form.isReady());
        form.hold(12);
        QVERIFY_EXCEPTION_THROWN(form.hold(u"1 2"_s), Error);
        form.follow();
        form.type(typed);
        QCOMPARE(form.picker->Value(), QVariant(u"1 2"_s));
        QTest::keyClick(form.box, static_cast<Qt::Key>(key));
        QVERIFY(IsNull(form.picker->Value()));
        QCOMPARE(form.box->Text(), QString());
        QCOMPARE(form.take(), QStringList{u"Change Null"_s});
        form.type(u"x"_s);
        form.emptyBox();
        QTest::keyClick(form.box, static_cast<Qt::Key>(key));
        QCOMPARE(form.take(), QStringList()); // there is nothing left to clear
    }

    void aFollowerOfSuchAClearingMayDeleteThePicker()
    {
        Form form;
        QVERIFY(form.isReady());
        QVERIFY_EXCEPTION_THROWN(form.hold(u"1 2"_s), Error);
        connect(form.picker, &EmployeePicker::Change, &form.window, [&] { delete form.picker; });
        const QPointer<EmployeePicker> picker(form.picker);
        QTest::keyClick(form.box, Qt::Key_Delete);
        QVERIFY(picker.isNull());
    }

    void anObjectAsValueIsATypeMismatch()
    {
        Form form;
        try {
            form.picker->SetValue(QVariant::fromValue(QPoint(1, 2)));
            QFAIL("nothing raised");
        } catch (const Error& error) {
            QCOMPARE(error.Number, Error::TypeMismatchNumber);
        }
    }

    void aHostThatFailsReachesWhoeverSetsTheValueAndIsAskedAgain()
    {
        Form form;
        form.host.failWith(Error(u"no list"_s));
        QVERIFY_EXCEPTION_THROWN(form.picker->SetValue(11), Error);
        form.host.failWith({});
        form.picker->SetValue(11);
        QCOMPARE(form.box->Text(), u"A11"_s);
    }

    void aFollowerThatPutsAnotherValueHasTheLastWord()
    {
        Form form;
        connect(form.picker, &EmployeePicker::Change, this, [&] {
            if (form.picker->Value() == QVariant(11.0))
                form.picker->SetValue(13);
        });
        form.picker->SetValue(11);
        QCOMPARE(form.picker->Value(), QVariant(13.0));
        QCOMPARE(form.box->Text(), u"C13"_s);
        QCOMPARE(form.label->Caption(), u"Cole, Carl"_s);
    }

    void aFollowerMayDeleteThePicker_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::newRow("a value") << QVariant(11);
        QTest::newRow("nothing") << Null();
    }
    void aFollowerMayDeleteThePicker()
    {
        QFETCH(QVariant, value);
        Form form;
        connect(form.picker, &EmployeePicker::Change, &form.window, [&] { delete form.picker; });
        const QPointer<EmployeePicker> picker(form.picker);
        form.hold(value);
        QVERIFY(picker.isNull());
    }

    void aFollowerOfAChoiceMayDeleteThePicker()
    {
        Form form;
        QVERIFY(form.isReady());
        form.type(u"cole"_s);
        connect(form.picker, &EmployeePicker::Change, &form.window, [&] { delete form.picker; });
        const QPointer<EmployeePicker> picker(form.picker);
        QTest::keyClick(form.box, Qt::Key_Return);
        QVERIFY(picker.isNull());
    }

    // Contract

    void theContractKeepsTheUsedValuesThenPutsTheValueThenKeepsIt()
    {
        Form form;
        form.picker->SetRemoveUsedValues(true);
        form.hold(12, {11});
        QStringList offered;
        connect(form.picker, &EmployeePicker::Change, this, [&] { offered = form.found(); });
        form.hold(15, {13});
        QCOMPARE(offered, QStringList({u"A11"_s, u"B12"_s, u"D14"_s, u"F16"_s}));
        QCOMPARE(form.found(), QStringList({u"A11"_s, u"D14"_s, u"E15"_s, u"F16"_s}));
        QCOMPARE(static_cast<TavrinControl*>(form.picker)->GetValue(), QVariant(15.0));
    }

    void theUsedValuesAreSharedSoThatWhatTheHostAddsLaterCounts()
    {
        Form form;
        form.picker->SetRemoveUsedValues(true);
        const auto used = std::make_shared<QVariantList>(QVariantList{11});
        static_cast<TavrinControl*>(form.picker)->SetValue(Null(), used);
        used->append(13);
        QCOMPARE(form.found(), QStringList({u"D14"_s, u"F16"_s}));
        static_cast<TavrinControl*>(form.picker)->SetValue(Null(), nullptr);
        QCOMPARE(form.found(), QStringList({u"A11"_s, u"C13"_s, u"D14"_s, u"F16"_s}));
    }

    void aValueThatCodePutsIsNotTheHosts()
    {
        Form form;
        form.hold(12);
        form.picker->SetValue(15);
        QCOMPARE(form.found(), QStringList({u"A11"_s, u"B12"_s, u"C13"_s, u"D14"_s, u"F16"_s}));
    }

    // Choosing

    void aChoiceRaisesChangeThenItemSelectAndReportsNoProperty_data()
    {
        QTest::addColumn<int>("key");
        QTest::newRow("Enter") << int(Qt::Key_Return);
        QTest::newRow("Tab") << int(Qt::Key_Tab);
        QTest::newRow("mouse") << 0;
    }
    void aChoiceRaisesChangeThenItemSelectAndReportsNoProperty()
    {
        QFETCH(int, key);
        Form form;
        QVERIFY(form.isReady());
        form.follow();
        form.type(u"cole"_s);
        QCOMPARE(form.take(), QStringList());
        if (key == 0)
            form.clickRow(0);
        else
            QTest::keyClick(form.box, static_cast<Qt::Key>(key));
        QCOMPARE(form.take(), QStringList({u"Change 13"_s, u"ItemSelect 13"_s}));
        QCOMPARE(form.picker->Value().typeId(), int(QMetaType::Double));
        QCOMPARE(form.box->Text(), u"C13"_s);
        QCOMPARE(form.label->Caption(), u"Cole, Carl"_s);
    }

    void takingTheSameEntryAgainIsAChoiceLikeAnyOther()
    {
        Form form;
        QVERIFY(form.isReady());
        form.picker->SetValue(13);
        form.follow();
        form.box->selectAll();
        form.type(u"cole"_s);
        QTest::keyClick(form.box, Qt::Key_Return);
        QCOMPARE(form.take(), QStringList({u"Change 13"_s, u"ItemSelect 13"_s}));
    }

    void emptyingTheBoxTakesTheValueAwayWithoutItemSelect()
    {
        Form form;
        QVERIFY(form.isReady());
        form.picker->SetValue(13);
        form.follow();
        form.emptyBox();
        QCOMPARE(form.take(), QStringList{u"Change Null"_s});
        QCOMPARE(form.label->Caption(), QString());
        form.box->CloseList();
    }

    void theClearButtonTakesTheValueAway()
    {
        Form form;
        QVERIFY(form.isReady());
        form.picker->SetValue(13);
        form.follow();
        auto* button = form.box->findChild<Link*>(u"lnkButton"_s);
        QCOMPARE(button->ToolTipText(), u"Clear"_s);
        QTest::mouseClick(button, Qt::LeftButton);
        QCOMPARE(form.take(), QStringList{u"Change Null"_s});
        QCOMPARE(form.box->Text(), QString());
        QCOMPARE(form.label->Caption(), QString());
    }

    void aTypedTextThatWasNotChosenGivesWayWhenTheFocusLeaves()
    {
        Form form;
        QVERIFY(form.isReady());
        form.picker->SetValue(13);
        form.follow();
        form.box->selectAll();
        form.type(u"adam"_s);
        form.other->setFocus();
        QCOMPARE(form.box->Text(), u"C13"_s);
        QCOMPARE(form.picker->Value(), QVariant(13.0));
        QCOMPARE(form.take(), QStringList());
    }

    void aRecordWithoutChildElementsShowsEmptyTextsInTheirPlaces()
    {
        Form form;
        QVERIFY(form.isReady());
        form.host.state().employees =
            listOf("L", "Employee",
                   {RecordParts{{"OfficerNo", u"1"_s}}, RecordParts{{"Name", u"Only"_s}}, RecordParts{}});
        form.picker->SetListAllEmployees(true);
        form.picker->SetValue(1);
        QCOMPARE(form.picker->Value(), QVariant(1.0));
        QCOMPARE(form.box->Text(), QString());
        QCOMPARE(form.label->Caption(), QString());
        form.picker->SetValue(Null());
        QTest::keyClick(form.box, Qt::Key_Down);
        QCOMPARE(form.rows(), QStringList({u":"_s, u": Only"_s, u":"_s}));
        form.clickRow(1);
        QVERIFY(IsNull(form.picker->Value())); // there is no number to be had
        QCOMPARE(form.label->Caption(), u"Only"_s);
    }

    void aCaptionShowsItsSignsAsTheyAre()
    {
        Form form;
        form.host.state().employees =
            listOf("L", "Employee", {tavrin::test::employee(1, "<b>", "<i>Smith & Sons</i>", "", true)});
        form.picker->SetValue(1);
        QCOMPARE(form.box->Text(), u"<b>"_s);
        QCOMPARE(form.label->Caption(), u"<i>Smith & Sons</i>"_s);
        QCOMPARE(form.label->textFormat(), Qt::PlainText);
    }

    // Saved properties and life

    void aNewPickerHasItsStartValuesAndAsksTheHostForNothing()
    {
        const Site site;
        QWidget container;
        QFont font = container.font();
        font.setPointSizeF(13);
        container.setFont(font);
        EmployeePicker picker(&container);
        QVERIFY(IsNull(picker.Value()));
        QVERIFY(picker.Enabled());
        QVERIFY(picker.ShowName());
        QVERIFY(!picker.RemoveUsedValues() && !picker.K9HandlersOnly() && !picker.ListAllEmployees());
        QCOMPARE(picker.Font()->Size(), 13.0);
        QCOMPARE(picker.BackColor().value(), 0x80000005U);
        QCOMPARE(picker.ForeColor().value(), 0x80000008U);
        const auto* box = picker.findChild<AutoCompleteComboBox*>();
        QCOMPARE(box->Text(), QString());
        QCOMPARE(box->MinQueryLength(), 0);
        QVERIFY(box->ShowClearButton());
        QCOMPARE(site.host.calls(), 0);
    }

    void restoringGoesThroughTheSettersInOrderButForTheTwoOptionsThatGoStraightIn()
    {
        const Site site;
        EmployeePicker picker;
        const QSignalSpy changes(&picker, &UserControl::PropertyChanged);
        picker.ReadProperties(
            bagOf({{"K9HandlersOnly", true}, {"ListAllEmployees", true}, {"enabled", false}}));
        QCOMPARE(keysOf(changes), QStringList({u"Enabled"_s, u"ShowName"_s, u"RemoveUsedValues"_s, u"Font"_s,
                                               u"BackColor"_s, u"ForeColor"_s}));
        QVERIFY(picker.K9HandlersOnly() && picker.ListAllEmployees());
        QVERIFY(!picker.Enabled());
        QCOMPARE(picker.findChild<AutoCompleteComboBox*>()->Placeholder(), QString());
    }

    void theBagIsWrittenInOrderAndComesBackWhole()
    {
        const Site site;
        QWidget container;
        EmployeePicker picker(&container);
        picker.SetEnabled(false);
        picker.SetShowName(false);
        picker.SetRemoveUsedValues(true);
        picker.SetFont(fontOf(17));
        picker.SetK9HandlersOnly(true);
        picker.SetListAllEmployees(true);
        picker.SetBackColor(Color::rgb(1, 1, 1));
        picker.SetForeColor(Color::rgb(2, 2, 2));
        picker.SetValue(11); // which is not saved
        PropertyBag bag;
        picker.WriteProperties(bag);
        QCOMPARE(keysOf(bag), SavedKeys);
        QStringList problems;
        const PropertyBag saved = PropertyBag::fromJson(bag.toJson(), &problems);
        QCOMPARE(problems, QStringList());
        EmployeePicker restored(&container, {QString(), &saved});
        QVERIFY(!restored.Enabled() && !restored.ShowName() && restored.RemoveUsedValues());
        QVERIFY(restored.K9HandlersOnly() && restored.ListAllEmployees());
        QCOMPARE(restored.Font()->Size(), 17.0);
        QCOMPARE(restored.BackColor(), Color::rgb(1, 1, 1));
        QCOMPARE(restored.ForeColor(), Color::rgb(2, 2, 2));
        QVERIFY(IsNull(restored.Value()));
    }

    void defaultsAreNotWrittenAndAnEmptyBagGivesThem()
    {
        const Site site;
        const PropertyBag empty;
        QWidget container;
        EmployeePicker picker(&container, {QString(), &empty});
        QVERIFY(picker.Enabled() && picker.ShowName());
        QVERIFY(!picker.RemoveUsedValues() && !picker.K9HandlersOnly() && !picker.ListAllEmployees());
        QCOMPARE(picker.BackColor().value(), 0x80000005U);
        QCOMPARE(picker.ForeColor().value(), 0x80000008U);
        QCOMPARE(picker.Font()->toQFont(), container.font());
        PropertyBag bag;
        picker.WriteProperties(bag);
        QCOMPARE(keysOf(bag), QStringList());
    }

    void wrongTypesInTheBagGiveTheDefaultsAndTheOthersAreRestored()
    {
        const Site site;
        const PropertyBag bag = bagOf({{"Enabled", u"perhaps"_s},
                                       {"ShowName", Null()},
                                       {"RemoveUsedValues", u"true"_s},
                                       {"Font", 12},
                                       {"K9HandlersOnly", u"x"_s},
                                       {"ListAllEmployees", 1},
                                       {"BackColor", u"blue"_s},
                                       {"ForeColor", QVariant::fromValue(Color::rgb(3, 3, 3))}});
        EmployeePicker picker(nullptr, {QString(), &bag});
        QVERIFY(picker.Enabled() && picker.ShowName() && picker.RemoveUsedValues());
        QVERIFY(!picker.K9HandlersOnly() && picker.ListAllEmployees());
        QCOMPARE(picker.BackColor(), SystemColor::WindowBackground);
        QCOMPARE(picker.ForeColor(), Color::rgb(3, 3, 3));
    }

    void theDesignerShowsTheInstancesNameAndRunTimeDoesNot_data()
    {
        QTest::addColumn<bool>("designer");
        QTest::addColumn<bool>("saved");
        QTest::newRow("new in the designer") << true << false;
        QTest::newRow("restored in the designer") << true << true;
        QTest::newRow("new at run time") << false << false;
        QTest::newRow("restored at run time") << false << true;
    }
    void theDesignerShowsTheInstancesNameAndRunTimeDoesNot()
    {
        QFETCH(bool, designer);
        QFETCH(bool, saved);
        const Site site;
        std::optional<DesignTime> scope;
        if (designer)
            scope.emplace();
        const PropertyBag bag;
        EmployeePicker picker(nullptr, {u"Handler"_s, saved ? &bag : nullptr});
        scope.reset();
        const auto* box = picker.findChild<AutoCompleteComboBox*>();
        QCOMPARE(box->Text(), designer ? u"Handler"_s : QString());
        picker.setObjectName(u"Owner"_s);
        QCOMPARE(box->Text(), designer ? u"Owner"_s : QString());
        QCOMPARE(site.host.calls(), 0);
    }

    void otherAmbientValuesThanTheNameLeaveTheDesignersTextAlone()
    {
        const Site site;
        const DesignTime designer;
        QWidget container;
        EmployeePicker picker(&container, {u"Handler"_s});
        auto* box = picker.findChild<AutoCompleteComboBox*>();
        box->SetText(u"typed"_s);
        container.setProperty("BackColor", QVariant::fromValue(Color::rgb(1, 2, 3)));
        container.setProperty("ScaleUnits", u"Pixel"_s);
        QCOMPARE(box->Text(), u"typed"_s);
    }

    void showingAndHidingChangesNothing()
    {
        Form form;
        QVERIFY(form.isReady());
        form.picker->SetValue(11);
        form.follow();
        form.picker->hide();
        form.picker->show();
        QCOMPARE(form.take(), QStringList());
        QCOMPARE(form.box->Text(), u"A11"_s);
    }

    void thePickerMayDieWithItsListOpen()
    {
        Form form;
        QVERIFY(form.isReady());
        form.type(u"a"_s);
        QVERIFY(form.box->ListIsOpen());
        delete form.picker;
        for (const QWidget* window : QApplication::topLevelWidgets())
            QVERIFY(window == &form.window || !window->isVisible());
    }
};

TAVRIN_TEST_MAIN(tst_EmployeePicker)
#include "tst_EmployeePicker.moc"
