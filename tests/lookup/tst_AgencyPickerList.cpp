#include "lookup/AgencyForm.h"
#include "support/TestCase.h"

#include <QApplication>
#include <QClipboard>
#include <QDialog>
#include <QPushButton>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

/// The list of `AgencyPicker`: what stands in it, and its keys while it is open.
class tst_AgencyPickerList : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // What stands in it

    void anInactiveAgencyThatTheRecordHoldsStaysInTheList()
    {
        AgencyForm form;
        form.picker->SetValue(20);
        QCOMPARE(form.picker->Value(), QVariant(20));
        QCOMPARE(form.values(), QVariantList({Null(), 10, 20, 30, 40}));
        form.picker->SetValue(10);
        QCOMPARE(form.values(), QVariantList({Null(), 10, 30, 40}));
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

    // Keys

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
                QCOMPARE(form.take(), chosen(now));
            }
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
};

TAVRIN_TEST_MAIN(tst_AgencyPickerList)
#include "tst_AgencyPickerList.moc"
