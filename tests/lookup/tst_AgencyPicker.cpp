#include "base/failure/Error.h"
#include "lookup/AgencyForm.h"
#include "pictures/ForwardingHost.h"
#include "support/TestCase.h"

#include <QApplication>
#include <QClipboard>
#include <QDialog>
#include <QPushButton>

using namespace Qt::StringLiterals;
using namespace tavrin;
using tavrin::test::AgencyForm;

namespace {

/// A host whose lists are filled as a test says.
class OddLists final : public tavrin::test::ForwardingHost, private ListFilling
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

} // namespace

/// Values, choosing, used values and the list of `AgencyPicker`.
class tst_AgencyPicker : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aPutLoadsTheListWithTheValueAndSelectsIt()
    {
        AgencyForm form;
        form.picker->SetValue(30);
        QCOMPARE(form.host.state().log, QStringList({u"FillTableGrid 997 False 30 False"_s}));
        QCOMPARE(form.picker->Value(), QVariant(30));
        QCOMPARE(form.picker->ShortText(), u"CS"_s);
        QCOMPARE(form.picker->FullText(), u"County Sheriff"_s);
        QCOMPARE(form.combo->Text(), u"CS"_s);
        QCOMPARE(form.label->Caption(), u"County Sheriff"_s);
        QCOMPARE(form.take(), QStringList({u"Change 30 County Sheriff"_s}));
        QCOMPARE(form.reported, QStringList()); // a value is no design-time property
        QCOMPARE(form.contract().GetValue(), QVariant(30));
    }

    void aPutOfAnAgencyMissingFromTheListSelectsRowOneAndStoresThatRowsValue()
    {
        AgencyForm form;
        form.picker->SetValue(30);
        form.take();
        form.picker->SetValue(99);
        QVERIFY(IsNull(form.picker->Value()));
        QCOMPARE(form.combo->Bookmark(), QVariant(1));
        QCOMPARE(form.take(), QStringList({u"Change  "_s}));
        QCOMPARE(form.picker->FullText(), QString());
        QCOMPARE(form.picker->ShortText(), QString());
    }

    void anInactiveAgencyThatTheRecordHoldsStaysInTheList()
    {
        AgencyForm form;
        form.picker->SetValue(20);
        QCOMPARE(form.picker->Value(), QVariant(20));
        QCOMPARE(form.values(), QVariantList({Null(), 10, 20, 30, 40}));
        form.picker->SetValue(10);
        QCOMPARE(form.values(), QVariantList({Null(), 10, 30, 40}));
    }

    void aPersonsChoiceRaisesItemSelectThenChange_data()
    {
        QTest::addColumn<QString>("by");
        for (const char* by : {"key", "letter", "list", "click"})
            QTest::newRow(by) << QString::fromLatin1(by);
    }
    void aPersonsChoiceRaisesItemSelectThenChange()
    {
        QFETCH(QString, by);
        AgencyForm form;
        QVERIFY(form.isReady());
        if (by == u"key") {
            QTest::keyClick(form.combo, Qt::Key_Down);
        } else if (by == u"letter") {
            QTest::keyClick(form.combo, Qt::Key_A);
        } else {
            QTest::keyClick(form.combo, Qt::Key_F4);
            auto* table = form.window->findChild<GridTable*>();
            QTest::keyClick(form.combo, Qt::Key_Down);
            QCOMPARE(form.take(), QStringList());
            if (by == u"list")
                QTest::keyClick(form.combo, Qt::Key_Return);
            else
                QTest::mouseClick(table->viewport(), Qt::LeftButton, {},
                                  {10, table->rowViewportPosition(1) + 3});
        }
        QCOMPARE(form.take(), QStringList({u"ItemSelect 10 Aston Police"_s, u"Change 10 Aston Police"_s}));
        QCOMPARE(form.picker->Value(), QVariant(10));
    }

    void setValueRaisesChangeAloneAndTheRowChangeClearsTheFlag()
    {
        AgencyForm form;
        QVERIFY(form.isReady());
        form.contract().SetValue(10, AgencyForm::used({}));
        QCOMPARE(form.take(), QStringList({u"Change 10 Aston Police"_s}));
        QTest::keyClick(form.combo, Qt::Key_Down);
        QCOMPARE(form.take(),
                 QStringList({u"ItemSelect 30 County Sheriff"_s, u"Change 30 County Sheriff"_s}));
        form.contract().SetValue(40, AgencyForm::used({}));
        QCOMPARE(form.take(), QStringList({u"Change 40 Dale Patrol"_s}));
    }

    void afterTheSameRowAgainThePersonsNextRowChangeRaisesNoItemSelectAndThisIsMeant()
    {
        AgencyForm form;
        QVERIFY(form.isReady());
        form.picker->SetValue(10);
        form.take();
        form.picker->SetValue(10);
        QCOMPARE(form.take(), QStringList());
        QCOMPARE(form.picker->Value(), QVariant(10));
        QTest::keyClick(form.combo, Qt::Key_Down);
        QCOMPARE(form.take(), QStringList({u"Change 30 County Sheriff"_s}));
        QTest::keyClick(form.combo, Qt::Key_Down);
        QCOMPARE(form.take(), QStringList({u"ItemSelect 40 Dale Patrol"_s, u"Change 40 Dale Patrol"_s}));
    }

    void nullOverNullIsTheSameRowAgain()
    {
        AgencyForm form;
        QVERIFY(form.isReady());
        form.picker->SetValue(Null());
        QCOMPARE(form.take(), QStringList());
        QTest::keyClick(form.combo, Qt::Key_Down);
        QCOMPARE(form.take(), QStringList({u"Change 10 Aston Police"_s}));
    }

    void anotherAgencyInTheSameRowIsAnotherRow()
    {
        AgencyForm form;
        form.picker->SetValue(20); // the third row, since the inactive one is listed
        form.take();
        form.picker->SetValue(30); // the third row without it
        QCOMPARE(form.combo->Bookmark(), QVariant(3));
        QCOMPARE(form.take(), QStringList({u"Change 30 County Sheriff"_s}));
    }

    void theFirstRowChangeAfterCreationCountsForNothing()
    {
        AgencyForm form;
        QStringList told;
        AgencyPicker fresh; // never restored, so without a list
        connect(&fresh, &AgencyPicker::Change, this, [&] { told << u"Change"_s; });
        connect(&fresh, &AgencyPicker::ItemSelect, this, [&] { told << u"ItemSelect"_s; });
        fresh.SetValue(Null());
        QCOMPARE(told, QStringList());
        fresh.SetValue(30);
        QCOMPARE(told, QStringList({u"Change"_s}));
    }

    void usedValuesAreTakenOutOnlyWhenThatIsWantedAndNeverTheValueItself()
    {
        AgencyForm form;
        form.contract().SetValue(30, AgencyForm::used({10, 30}));
        QCOMPARE(form.values(), QVariantList({Null(), 10, 30, 40}));
        form.picker->SetRemoveUsedValues(true);
        QCOMPARE(form.values(), QVariantList({Null(), 10, 30, 40})); // acts at SetValue
        form.contract().SetValue(30, AgencyForm::used({10, 30, Null()}));
        QCOMPARE(form.values(), QVariantList({Null(), 30, 40}));
        QCOMPARE(form.picker->Value(), QVariant(30));
        form.contract().SetValue(30, nullptr);
        QCOMPARE(form.values(), QVariantList({Null(), 10, 30, 40}));
        form.contract().SetValue(30, AgencyForm::used({10}));
        form.picker->SetValue(30); // a put removes nothing
        QCOMPARE(form.values(), QVariantList({Null(), 10, 30, 40}));
    }

    void changingListAllAgenciesReloadsTheListAtOnceAndKeepsTheValue()
    {
        AgencyForm form;
        form.picker->SetValue(30);
        form.take();
        form.host.state().log.clear();
        form.picker->SetListAllAgencies(true);
        QCOMPARE(form.host.state().log, QStringList({u"FillTableGrid 997 True 30 False"_s}));
        QCOMPARE(form.values(), QVariantList({Null(), 10, 20, 30, 40}));
        QCOMPARE(form.picker->Value(), QVariant(30));
        QCOMPARE(form.combo->Bookmark(), QVariant(4));
        QCOMPARE(form.combo->Text(), u"CS"_s);
        QCOMPARE(form.reported, QStringList({u"ListAllAgencies"_s}));
        QCOMPARE(form.take(), QStringList());
        form.picker->SetListAllAgencies(false);
        QCOMPARE(form.values(), QVariantList({Null(), 10, 30, 40}));
    }

    void inactiveAgenciesAreGreyInTheListAndOthersAreNot()
    {
        AgencyForm form;
        form.picker->SetListAllAgencies(true);
        const auto styleOf = [&](int row) {
            GridRowStyle style;
            form.combo->FetchRowStyle.raise(row, style);
            return style.ForeColor;
        };
        QCOMPARE(styleOf(2), SystemColor::WindowText);
        QCOMPARE(styleOf(3).value(), 0x80000011U);
        QCOMPARE(styleOf(4), SystemColor::WindowText);
    }

    void theListHasTwoColumnsUnderTheirWords()
    {
        AgencyForm form;
        const QStringList words{u"Officer Id"_s, u"Name"_s, u"OfficerNo"_s, u"ActiveFlag"_s};
        for (int i = 0; i < 4; ++i) {
            QCOMPARE(form.combo->Columns(i).Caption(), words.at(i));
            QCOMPARE(form.combo->Columns(i).Visible(), i < 2);
        }
    }

    void withTheListOpenEnterAndEscapeCloseItAndAreSwallowed()
    {
        AgencyForm form;
        QVERIFY(form.isReady());
        int keys = 0;
        struct Filter : QObject
        {
            int* keys;
            bool eventFilter(QObject*, QEvent* event) override
            {
                *keys += event->type() == QEvent::KeyPress ? 1 : 0;
                return false;
            }
        } filter;
        filter.keys = &keys;
        form.window->installEventFilter(&filter);
        for (const auto key : {Qt::Key_Escape, Qt::Key_Return}) {
            QTest::keyClick(form.combo, Qt::Key_F4);
            QVERIFY(form.combo->ListIsOpen());
            QTest::keyClick(form.combo, key);
            QVERIFY(!form.combo->ListIsOpen());
        }
        QCOMPARE(keys, 0);
        // With the list closed, they keep their key codes.
        QTest::keyClick(form.combo, Qt::Key_Escape);
        QTest::keyClick(form.combo, Qt::Key_Return);
        QCOMPARE(keys, 2);
        QCOMPARE(form.take(), QStringList());
    }

    void withoutADataArrayARowChangeMakesTheValueNull()
    {
        AgencyForm form;
        form.picker->SetValue(30);
        form.take();
        form.combo->RemoveArray();
        QVERIFY(IsNull(form.picker->Value()));
        QCOMPARE(form.take(), QStringList({u"ItemSelect  "_s, u"Change  "_s}));
    }

    void aRowChangeToNoRowLeavesTheValue()
    {
        AgencyForm form;
        form.picker->SetValue(30);
        form.take();
        form.combo->SetBookmark(Null());
        QCOMPARE(form.take(), QStringList({u"ItemSelect 30 "_s, u"Change 30 "_s}));
        QCOMPARE(form.picker->FullText(), QString());
    }

    void aFailureOfTheListServicePassesToTheCaller()
    {
        AgencyForm form;
        form.picker->SetValue(30);
        form.take();
        form.host.failWith(Error(u"no list"_s, 17));
        const auto fails = [](const auto& call) {
            try {
                call();
            } catch (const Error& error) {
                return error.Number == 17 && error.Description == u"no list";
            }
            return false;
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
        QCOMPARE(form.take(), QStringList({u"ItemSelect 10 Aston Police"_s, u"Change 10 Aston Police"_s}));
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
        QCOMPARE(form.take(), QStringList({u"ItemSelect 10 Aston Police"_s, u"Change 10 Aston Police"_s}));
    }

    void aFirstPutThatFailedLeavesAPickerThatTakesTheNextOne()
    {
        tavrin::test::FakeHost host;
        const HostInstallation installed(host);
        AgencyPicker fresh; // never restored, so without a list
        host.failWith(Error(u"no list"_s));
        QVERIFY_EXCEPTION_THROWN(fresh.SetValue(30), Error);
        QVERIFY(IsNull(fresh.Value()));
        host.failWith({});
        tavrin::test::setAgencies(host);
        QStringList told;
        connect(&fresh, &AgencyPicker::Change, this, [&] { told << u"Change"_s; });
        connect(&fresh, &AgencyPicker::ItemSelect, this, [&] { told << u"ItemSelect"_s; });
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
        QCOMPARE(form.take(), QStringList({u"ItemSelect 40 Dale Patrol"_s, u"Change 40 Dale Patrol"_s}));
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

    void aListThatBreaksOffHalfwayLeavesTheOneBefore()
    {
        AgencyForm form;
        QVERIFY(form.isReady());
        form.picker->SetValue(30);
        form.take();
        OddLists odd([](GridCombo& combo) {
            combo.Array().AppendRow({u"ZZ"_s, u"Half a list"_s, 99, u"1"_s});
            combo.Rebind();
            throw Error(u"the rest is away"_s);
        });
        {
            const HostInstallation installed(odd);
            QVERIFY_EXCEPTION_THROWN(form.picker->SetValue(10), Error);
        }
        QVERIFY(IsNull(form.picker->Value()));
        QCOMPARE(form.values(), QVariantList({Null(), 10, 30, 40}));
        QCOMPARE(form.combo->Text(), QString());
        QCOMPARE(form.take(), QStringList({u"Change  "_s}));
    }

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
        OddLists odd([](GridCombo& combo) { combo.Rebind(); });
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
        QCOMPARE(form.take(), QStringList({u"ItemSelect 40 Dale Patrol"_s, u"Change 40 Dale Patrol"_s}));
    }

    void aListWithoutRowsUnderAnotherOptionLeavesTheValueAndItsRowIsFoundAgainWithoutAWord()
    {
        AgencyForm form;
        form.picker->SetValue(30);
        form.take();
        OddLists odd([](GridCombo& combo) { combo.Rebind(); });
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
        connect(&fresh, &AgencyPicker::Change, this, [&] { told << u"Change"_s; });
        connect(&fresh, &AgencyPicker::ItemSelect, this, [&] { told << u"ItemSelect"_s; });
        OddLists odd([](GridCombo& combo) {
            combo.Array().AppendRow({u"ZZ"_s, u"Half a list"_s, 99, u"1"_s});
            combo.Rebind();
            throw Error(u"the rest is away"_s);
        });
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

    void withTheListOpenNoEnterPressesTheDefaultButton()
    {
        AgencyForm form;
        QDialog dialog;
        QPushButton standard(&dialog);
        standard.setDefault(true);
        int presses = 0;
        connect(&standard, &QPushButton::clicked, this, [&] { ++presses; });
        connect(&dialog, &QDialog::rejected, this, [&] { ++presses; });
        form.picker->setParent(&dialog);
        form.picker->setGeometry(10, 40, 350, form.picker->height());
        dialog.show();
        form.picker->show();
        dialog.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        form.picker->setFocus();
        for (const Qt::KeyboardModifiers state : {Qt::ShiftModifier, Qt::ControlModifier}) {
            for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Return, Qt::Key_Enter}) {
                form.combo->OpenList();
                const auto keypad = key == Qt::Key_Enter ? Qt::KeypadModifier : Qt::NoModifier;
                QTest::keyClick(form.combo, key, state | keypad);
                QVERIFY(!form.combo->ListIsOpen());
                QVERIFY(dialog.isVisible());
                QCOMPARE(presses, 0);
            }
        }
        QTest::keyClick(form.combo, Qt::Key_Enter, Qt::ShiftModifier | Qt::KeypadModifier);
        QCOMPARE(presses, 1); // with the list closed it is the form's
    }

    void theCopyKeyCopiesTheTextInTheBox()
    {
        AgencyForm form;
        QVERIFY(form.isReady());
        QApplication::clipboard()->setText(u"before"_s);
        QTest::keyClick(form.combo, Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QApplication::clipboard()->text(), u"before"_s); // nothing is chosen
        form.picker->SetValue(30);
        form.take();
        QTest::keyClick(form.combo, Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QApplication::clipboard()->text(), u"CS"_s);
        QCOMPARE(form.take(), QStringList());
    }

    void enterInTheOpenListTakesTheMarkedRowAndEscapeDoesNot()
    {
        AgencyForm form;
        QVERIFY(form.isReady());
        form.picker->SetValue(10);
        form.take();
        for (const auto key : {Qt::Key_Escape, Qt::Key_Return, Qt::Key_Enter}) {
            const QVariant before = form.picker->Value();
            QTest::keyClick(form.combo, Qt::Key_F4);
            QTest::keyClick(form.combo, Qt::Key_Down);
            QCOMPARE(form.picker->Value(), before); // only marked so far
            QCOMPARE(form.take(), QStringList());
            QTest::keyClick(form.combo, key);
            QVERIFY(!form.combo->ListIsOpen());
            if (key == Qt::Key_Escape) {
                QCOMPARE(form.picker->Value(), before);
                QCOMPARE(form.take(), QStringList());
            } else {
                const QString now = key == Qt::Key_Return ? u"30 County Sheriff"_s : u"40 Dale Patrol"_s;
                QCOMPARE(form.take(), QStringList({u"ItemSelect "_s + now, u"Change "_s + now}));
            }
        }
    }

    void aFollowerMayEndTheWholeFormByAClickInTheOpenList()
    {
        AgencyForm form;
        QVERIFY(form.isReady());
        connect(form.picker, &AgencyPicker::Change, form.picker, [&] { form.window.reset(); });
        form.chooseInList(3, true);
        QVERIFY(!form.window);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        for (const QWidget* window : QApplication::topLevelWidgets())
            QVERIFY(window->objectName() != u"gridList"_s); // nothing stays behind
    }

    void aFollowerMayDeleteTheControl_data()
    {
        QTest::addColumn<QString>("event");
        QTest::addColumn<QString>("by");
        for (const char* event : {"Change", "ItemSelect"})
            QTest::addRow("%s by a key", event) << QString::fromLatin1(event) << u"key"_s;
        QTest::newRow("Change by Enter in the open list") << u"Change"_s << u"enter"_s;
        for (const char* event : {"Change", "ItemSelect"})
            QTest::addRow("%s by a click in the open list", event)
                << QString::fromLatin1(event) << u"click"_s;
        QTest::newRow("Change by a put") << u"Change"_s << u"put"_s;
        QTest::newRow("Change by SetValue") << u"Change"_s << u"contract"_s;
        QTest::newRow("PropertyChanged") << u"PropertyChanged"_s << u"setter"_s;
    }
    void aFollowerMayDeleteTheControl()
    {
        QFETCH(QString, event);
        QFETCH(QString, by);
        AgencyForm form;
        QVERIFY(form.isReady());
        const QPointer<AgencyPicker> picker(form.picker);
        form.picker->disconnect(form.window.get());
        const auto destroy = [&] { delete form.picker; };
        if (event == u"Change")
            connect(form.picker, &AgencyPicker::Change, form.window.get(), destroy);
        else if (event == u"ItemSelect")
            connect(form.picker, &AgencyPicker::ItemSelect, form.window.get(), destroy);
        else
            connect(form.picker, &UserControl::PropertyChanged, form.window.get(), destroy);
        if (by == u"key")
            QTest::keyClick(form.combo, Qt::Key_Down);
        else if (by == u"enter" || by == u"click")
            form.chooseInList(3, by == u"click");
        else if (by == u"put")
            form.picker->SetValue(30);
        else if (by == u"contract")
            form.contract().SetValue(30, nullptr);
        else
            form.picker->SetListAllAgencies(true);
        QVERIFY(picker.isNull());
    }
};

TAVRIN_TEST_MAIN(tst_AgencyPicker)
#include "tst_AgencyPicker.moc"
