#include "base/failure/Error.h"
#include "lookup/AgencyForm.h"
#include "pictures/ForwardingHost.h"
#include "support/RaisedError.h"
#include "support/TestCase.h"

#include <QPointer>

#include <functional>
#include <utility>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

/// A host whose lists are filled as a test says.
class OddLists final : public ForwardingHost, private ListFilling
{
public:
    explicit OddLists(std::function<void(GridCombo&)> fill)
        : m_fill(std::move(fill))
    {
    }
    ListFilling& listFilling() override { return *this; }

private:
    void FillTableCombo(TableNumber, DropdownTarget&, bool, const QVariant&, bool) override {}
    void FillTableGrid(TableNumber, GridCombo& combo, bool, const QVariant&, bool) override { m_fill(combo); }
    QImage FitPicture(const QImage&, int, int, int, bool, Color, bool) override { return {}; }

    std::function<void(GridCombo&)> m_fill;
};

void fillHalfwayAndFail(GridCombo& combo)
{
    combo.Array().AppendRow({u"ZZ"_s, u"Half a list"_s, 99, u"1"_s});
    combo.Rebind();
    throw Error(u"the rest is away"_s);
}

void fillNothing(GridCombo& combo)
{
    combo.Rebind();
}

} // namespace

/// Puts of `AgencyPicker` that fail, and lists that break off or hold nothing.
class tst_AgencyPickerFailures : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // Puts that fail

    void aFailureOfTheListServicePassesToTheCaller()
    {
        AgencyForm form;
        form.picker->SetValue(30);
        form.take();
        form.host.failWith(Error(u"no list"_s, 17));
        const auto fails = [](const auto& call) {
            const Error error = raisedBy(call);
            return error.Number == 17 && error.Description == u"no list";
        };
        QVERIFY(fails([&] { form.picker->SetListAllAgencies(true); }));
        QCOMPARE(form.take(), QStringList());
        QVERIFY(fails([&] { form.picker->SetValue(10); }));
        QVERIFY(fails([&] { form.contract().SetValue(10, nullptr); }));
        QCOMPARE(form.take(), QStringList({u"Change  "_s}));
        form.host.failWith({});
        form.picker->SetValue(10);
        QCOMPARE(form.take(), QStringList({u"Change 10 Aston Police"_s}));
    }

    void aPutThatFailedLeavesNothingToSaveAndTheNextChoiceRaisesItemSelect_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<bool>("isListAway");
        QTest::addColumn<bool>("byContract");
        for (const bool byContract : {false, true}) {
            const char* how = byContract ? "SetValue" : "Value";
            QTest::addRow("%s without the list", how) << QVariant(10) << true << byContract;
            QTest::addRow("%s of the value before without the list", how)
                << QVariant(30) << true << byContract;
            QTest::addRow("%s of no number", how) << QVariant(u"x"_s) << false << byContract;
        }
    }
    void aPutThatFailedLeavesNothingToSaveAndTheNextChoiceRaisesItemSelect()
    {
        QFETCH(QVariant, value);
        QFETCH(bool, isListAway);
        QFETCH(bool, byContract);
        AgencyForm form;
        QVERIFY(form.isReady());
        form.picker->SetValue(30);
        form.picker->SetValue(30); // and the flag of a put waits
        form.take();
        if (isListAway)
            form.host.failWith(Error(u"no list"_s));
        if (byContract)
            QVERIFY_EXCEPTION_THROWN(form.contract().SetValue(value, nullptr), Error);
        else
            QVERIFY_EXCEPTION_THROWN(form.picker->SetValue(value), Error);
        form.host.failWith({});
        QVERIFY(IsNull(form.contract().GetValue()));
        QCOMPARE(form.combo->Text(), QString());
        QCOMPARE(form.label->Caption(), QString());
        QCOMPARE(form.picker->FullText(), QString());
        QCOMPARE(form.picker->ShortText(), QString());
        QCOMPARE(form.take(), QStringList({u"Change  "_s}));
        QTest::keyClick(form.combo, Qt::Key_Down);
        QCOMPARE(form.take(), chosen(u"10 Aston Police"_s));
        form.picker->SetValue(30);
        QCOMPARE(form.take(), QStringList({u"Change 30 County Sheriff"_s}));
    }

    void aPutThatFailedOverNothingRaisesNothingAndTheNextChoiceRaisesItemSelect()
    {
        AgencyForm form;
        QVERIFY(form.isReady());
        QVERIFY_EXCEPTION_THROWN(form.picker->SetValue(u"x"_s), Error);
        QVERIFY(IsNull(form.picker->Value()));
        QCOMPARE(form.take(), QStringList());
        QTest::keyClick(form.combo, Qt::Key_Down);
        QCOMPARE(form.take(), chosen(u"10 Aston Police"_s));
    }

    void aFirstPutThatFailedLeavesAPickerThatTakesTheNextOne()
    {
        FakeHost host;
        const HostInstallation installed(host);
        AgencyPicker fresh; // never restored, so without a list
        host.failWith(Error(u"no list"_s));
        QVERIFY_EXCEPTION_THROWN(fresh.SetValue(30), Error);
        QVERIFY(IsNull(fresh.Value()));
        host.failWith({});
        setAgencies(host);
        QStringList told;
        follow(fresh, told);
        fresh.SetValue(30);
        QCOMPARE(fresh.FullText(), u"County Sheriff"_s);
        QCOMPARE(told, QStringList{u"Change"_s});
    }

    void aListThatCannotBeLoadedAnewLeavesTheOneBeforeAndTheChoice()
    {
        AgencyForm form;
        QVERIFY(form.isReady());
        form.picker->SetValue(30);
        form.take();
        form.host.failWith(Error(u"no list"_s));
        QVERIFY_EXCEPTION_THROWN(form.picker->SetListAllAgencies(true), Error);
        form.host.failWith({});
        QVERIFY(form.picker->ListAllAgencies()); // which acts at the next load
        QCOMPARE(form.picker->Value(), QVariant(30));
        QCOMPARE(form.combo->Text(), u"CS"_s);
        QCOMPARE(form.picker->FullText(), u"County Sheriff"_s);
        QCOMPARE(form.values(), QVariantList({Null(), 10, 30, 40}));
        QCOMPARE(form.take(), QStringList());
        QTest::keyClick(form.combo, Qt::Key_Down);
        QCOMPARE(form.take(), chosen(u"40 Dale Patrol"_s));
        form.picker->SetValue(30);
        QCOMPARE(form.values(), QVariantList({Null(), 10, 20, 30, 40}));
    }

    void aFollowerOfAPutThatFailedMayDeleteTheControlOrPutAnotherValue()
    {
        for (const bool deletes : {true, false}) {
            AgencyForm form;
            const QPointer<AgencyPicker> picker(form.picker);
            picker->SetValue(30);
            picker->disconnect(form.window.get());
            connect(picker, &AgencyPicker::Change, form.window.get(), [&] {
                form.host.failWith({});
                if (deletes)
                    delete picker.data();
                else if (IsNull(picker->Value()))
                    picker->SetValue(40);
            });
            form.host.failWith(Error(u"no list"_s));
            QVERIFY_EXCEPTION_THROWN(picker->SetValue(10), Error);
            QCOMPARE(picker.isNull(), deletes);
            if (!deletes)
                QCOMPARE(picker->Value(), QVariant(40));
        }
    }

    // Lists that break off

    void aListThatBreaksOffHalfwayLeavesTheOneBefore()
    {
        AgencyForm form;
        QVERIFY(form.isReady());
        form.picker->SetValue(30);
        form.take();
        OddLists odd(fillHalfwayAndFail);
        {
            const HostInstallation installed(odd);
            QVERIFY_EXCEPTION_THROWN(form.picker->SetValue(10), Error);
        }
        QVERIFY(IsNull(form.picker->Value()));
        QCOMPARE(form.values(), QVariantList({Null(), 10, 30, 40}));
        QCOMPARE(form.combo->Text(), QString());
        QCOMPARE(form.take(), QStringList({u"Change  "_s}));
    }

    void aFirstListThatBreaksOffHalfwayTellsNothingAndTheNextOneIsLoaded_data()
    {
        QTest::addColumn<bool>("byRestoring");
        QTest::newRow("by a put") << false;
        QTest::newRow("while the form is restored") << true;
    }
    void aFirstListThatBreaksOffHalfwayTellsNothingAndTheNextOneIsLoaded()
    {
        QFETCH(bool, byRestoring);
        AgencyForm form;
        QVERIFY(form.isReady());
        AgencyPicker fresh(form.window.get()); // never restored, so without a list
        fresh.show();
        QStringList told;
        follow(fresh, told);
        OddLists odd(fillHalfwayAndFail);
        auto* combo = fresh.findChild<GridComboBox*>();
        {
            const HostInstallation installed(odd);
            if (byRestoring)
                fresh.ReadProperties({}); // which passes over a list that fails
            else
                QVERIFY_EXCEPTION_THROWN(fresh.SetValue(99), Error);
        }
        QVERIFY(IsNull(fresh.Value()));
        QVERIFY(!combo->HasArray());
        QCOMPARE(combo->Text(), QString());
        QCOMPARE(told, QStringList());
        fresh.ReadProperties({});
        QVERIFY(combo->HasArray());
        QCOMPARE(combo->Array().UpperBound(), 4);
        QVERIFY(IsNull(fresh.Value()));
        QCOMPARE(told, QStringList());
        fresh.setFocus();
        QTest::keyClick(combo, Qt::Key_Down);
        QCOMPARE(fresh.Value(), QVariant(10));
        QCOMPARE(told, QStringList({u"ItemSelect"_s, u"Change"_s}));
    }

    // Lists without rows

    void aListWithoutRowsLeavesNoNameAndTellsThatTheChoiceIsGone_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::newRow("a put of the value before, which fails") << QVariant(30);
        QTest::newRow("a put of Null, which needs no row") << Null();
    }
    void aListWithoutRowsLeavesNoNameAndTellsThatTheChoiceIsGone()
    {
        QFETCH(QVariant, value);
        AgencyForm form;
        QVERIFY(form.isReady());
        form.picker->SetValue(30);
        form.take();
        OddLists odd(fillNothing);
        {
            const HostInstallation installed(odd);
            if (IsNull(value))
                form.picker->SetValue(value);
            else
                QVERIFY_EXCEPTION_THROWN(form.picker->SetValue(value),
                                         Error); // there is no first row to take
            QVERIFY(IsNull(form.picker->Value()));
            QCOMPARE(form.combo->Text(), QString());
            QCOMPARE(form.label->Caption(), QString());
            QCOMPARE(form.take(), QStringList{u"Change  "_s});
            form.picker->SetValue(Null());
            QCOMPARE(form.take(), QStringList()); // nor was there a choice any more
        }
        form.picker->SetValue(30);
        QCOMPARE(form.picker->FullText(), u"County Sheriff"_s);
        QCOMPARE(form.take(), QStringList{u"Change 30 County Sheriff"_s});
        QTest::keyClick(form.combo, Qt::Key_Down);
        QCOMPARE(form.take(), chosen(u"40 Dale Patrol"_s));
    }

    void aListWithoutRowsUnderAnotherOptionLeavesTheValueAndItsRowIsFoundAgainWithoutAWord()
    {
        AgencyForm form;
        form.picker->SetValue(30);
        form.take();
        OddLists odd(fillNothing);
        {
            const HostInstallation installed(odd);
            QVERIFY_EXCEPTION_THROWN(form.picker->SetListAllAgencies(true), Error);
        }
        QCOMPARE(form.picker->Value(), QVariant(30));
        form.picker->SetListAllAgencies(true);
        QCOMPARE(form.picker->FullText(), u"County Sheriff"_s);
        QCOMPARE(form.take(), QStringList());
    }

    void aFollowerOfAListWithoutRowsMayDeleteTheControlOrPutAnotherValue()
    {
        for (const bool deletes : {true, false}) {
            AgencyForm form;
            const QPointer<AgencyPicker> picker(form.picker);
            picker->SetValue(30);
            picker->disconnect(form.window.get());
            bool hasRows = false;
            OddLists odd([&](GridCombo& combo) {
                if (hasRows)
                    combo.Array().AppendRow({u"XX"_s, u"Found again"_s, 77, u"1"_s});
                combo.Rebind();
            });
            const HostInstallation installed(odd);
            connect(picker, &AgencyPicker::Change, form.window.get(), [&] {
                if (deletes) {
                    delete picker.data();
                } else if (!std::exchange(hasRows, true)) {
                    picker->SetValue(77);
                }
            });
            picker->SetValue(Null());
            QCOMPARE(picker.isNull(), deletes);
            if (!deletes)
                QCOMPARE(picker->Value(), QVariant(77));
        }
    }
};

TAVRIN_TEST_MAIN(tst_AgencyPickerFailures)
#include "tst_AgencyPickerFailures.moc"
