#include "base/values/Variant.h"
#include "lookup/ComboPickerForm.h"
#include "lookup/EmployeePicker.h"
#include "support/RaisedError.h"
#include "support/TestCase.h"

#include <QPointer>
#include <QVariantList>

using namespace tavrin;
using namespace tavrin::test;
using namespace Qt::StringLiterals;
using Form = ComboPickerForm<EmployeePicker>;

/// The value of `EmployeePicker`, put by code or by the host, and puts that fail.
class tst_EmployeePickerValue : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
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
        form.host.state().employees = listOf(
            "L", "Employee", {employee(5, "first", "One", "", true), employee(5, "second", "Two", "", true)});
        form.picker->SetValue(5);
        QCOMPARE(form.box->Text(), u"first"_s);
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

    // Puts that fail

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
        const Error error = raisedBy([&] { form.picker->SetValue(QVariant::fromValue(QPoint(1, 2))); });
        QCOMPARE(error.Number, Error::TypeMismatchNumber);
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

    // Followers

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
};

TAVRIN_TEST_MAIN(tst_EmployeePickerValue)
#include "tst_EmployeePickerValue.moc"
