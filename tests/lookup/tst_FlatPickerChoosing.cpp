#include "base/values/Variant.h"
#include "lookup/FlatPickerForm.h"
#include "support/TestCase.h"

#include <QApplication>
#include <QClipboard>
#include <QPointer>

using namespace tavrin;
using namespace tavrin::test;
using namespace Qt::StringLiterals;

namespace {

const QVariant Ann = u"user:asmith"_s;

} // namespace

/// Choosing, clearing and copying in the flat pickers, and where the focus is meanwhile.
class tst_FlatPickerChoosing : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // Choosing

    void aChoiceByEnterMovesTheFocusToTheControlItselfAndTabMovesOn()
    {
        UserForm form;
        QVERIFY(form.isReady());
        form.type(u"smith"_s);
        form.press(Qt::Key_Return);
        QCOMPARE(form.picker->Value(), Ann);
        QCOMPARE(QApplication::focusWidget(), form.picker);
        QCOMPARE(form.shape->BackColor(), colorSet(30).BackColor);
        form.press(Qt::Key_Tab);
        QVERIFY(form.after->hasFocus());
        QCOMPARE(form.shape->BackColor(), colorSet(10).BackColor);
    }

    void aChoiceByTabTakesTheRowAndMovesOn()
    {
        UserForm form;
        QVERIFY(form.isReady());
        Journal journal(form.picker);
        form.type(u"smith"_s);
        form.press(Qt::Key_Tab);
        QCOMPARE(form.picker->Value(), Ann);
        QVERIFY(form.after->hasFocus());
        QCOMPARE(journal.entries, QStringList({u"Change"_s, u"ItemSelect"_s}));
        QVERIFY(form.tag->isVisible());
    }

    void aRowIsChosenByTheArrows()
    {
        UserForm form;
        QVERIFY(form.isReady());
        form.press(Qt::Key_Tab);
        form.press(Qt::Key_Down); // opens
        form.press(Qt::Key_Down);
        form.press(Qt::Key_Down);
        form.press(Qt::Key_Return);
        QCOMPARE(form.picker->Value(), Ann); // the second
    }

    void aChoiceInTheEmployeesPickerLeavesTheFocusInTheTextBoxAndTheNextKeyIsAnotherSearch()
    {
        EmployeeForm form;
        QVERIFY(form.isReady());
        form.choose(u"smith"_s);
        QCOMPARE(form.picker->Value(), QVariant(12.0));
        QVERIFY(form.box->hasFocus());
        QCOMPARE(form.box->Text(), u"A1"_s);
        form.press(Qt::Key_Z);
        form.press(Qt::Key_E);
        QCOMPARE(form.box->Text(), u"ze"_s);
        form.press(Qt::Key_Return);
        QCOMPARE(form.picker->Value(), QVariant(14.0));
    }

    void aValueThatCodePutsWhileThePersonTypesMovesTheFocusToTheControl()
    {
        UserForm form;
        QVERIFY(form.isReady());
        form.type(u"o"_s);
        form.picker->SetValue(Ann);
        QCOMPARE(QApplication::focusWidget(), form.picker);
        QVERIFY(!form.box->ListIsOpen());
    }

    void aValueThatCodePutsFromElsewhereLeavesTheFocusThere()
    {
        UserForm form;
        QVERIFY(form.isReady());
        form.picker->SetValue(Ann);
        QVERIFY(form.before->hasFocus());
        form.picker->SetValue(Null());
        QVERIFY(form.before->hasFocus());
    }

    void typedTextThatWasNotChosenGivesWayWhenTheFocusLeaves()
    {
        UserForm form;
        QVERIFY(form.isReady());
        Journal journal(form.picker);
        form.type(u"o"_s);
        form.press(Qt::Key_Escape);
        form.press(Qt::Key_Tab);
        QCOMPARE(form.box->Text(), QString());
        QVERIFY(IsNull(form.picker->Value()));
        QCOMPARE(journal.entries, QStringList());
    }

    // Clearing by keys

    void deleteOrBackspaceOnATagClearsAndGivesTheFocusBackToTheTextBox_data()
    {
        QTest::addColumn<Qt::Key>("key");
        QTest::newRow("Delete") << Qt::Key_Delete;
        QTest::newRow("Backspace") << Qt::Key_Backspace;
    }
    void deleteOrBackspaceOnATagClearsAndGivesTheFocusBackToTheTextBox()
    {
        QFETCH(Qt::Key, key);
        UserForm form;
        QVERIFY(form.isReady());
        form.choose(u"smith"_s);
        Journal journal(form.picker);
        form.press(key);
        QVERIFY(IsNull(form.picker->Value()));
        QVERIFY(form.box->hasFocus());
        QVERIFY(!form.tag->isVisible());
        QCOMPARE(journal.entries, QStringList{u"Change"_s});
        QCOMPARE(form.shape->BackColor(), colorSet(30).BackColor);
        form.choose(u"traf"_s); // and the person goes on typing
        QCOMPARE(form.picker->Value(), QVariant(u"team:3"_s));
    }

    void deleteWithAShiftKeyDoesNotClear()
    {
        UserForm form;
        QVERIFY(form.isReady());
        form.choose(u"smith"_s);
        form.press(Qt::Key_Delete, Qt::ControlModifier);
        form.press(Qt::Key_A);
        form.press(Qt::Key_Down);
        QCOMPARE(form.picker->Value(), Ann);
        QVERIFY(!form.box->ListIsOpen());
    }

    void deleteInAnEmptyTextBoxDoesNothing()
    {
        UserForm form;
        QVERIFY(form.isReady());
        Journal journal(form.picker);
        form.press(Qt::Key_Tab);
        form.press(Qt::Key_Delete);
        form.press(Qt::Key_Backspace);
        QCOMPARE(journal.entries, QStringList());
    }

    void emptyingTheTextBoxClearsWhereNoNameIsShown()
    {
        UserForm form;
        QVERIFY(form.isReady());
        form.picker->SetShowName(false);
        form.choose(u"smith"_s);
        QVERIFY(form.box->hasFocus());
        Journal journal(form.picker);
        form.press(Qt::Key_Backspace); // the whole text is selected
        QVERIFY(IsNull(form.picker->Value()));
        QCOMPARE(journal.entries, QStringList{u"Change"_s});
    }

    void emptyingTheEmployeesTextBoxClears()
    {
        EmployeeForm form;
        QVERIFY(form.isReady());
        form.choose(u"smith"_s);
        form.press(Qt::Key_Delete);
        QVERIFY(IsNull(form.picker->Value()));
        QVERIFY(!form.tag->isVisible());
        QVERIFY(form.box->hasFocus());
    }

    // The clear sign

    void theLinkClearsAndGivesTheFocusBackToTheTextBox()
    {
        UserForm form;
        QVERIFY(form.isReady());
        form.choose(u"smith"_s);
        form.clickLink();
        QVERIFY(IsNull(form.picker->Value()));
        QVERIFY(form.box->hasFocus());
    }

    void theClearSignTakesTheFocusIntoTheTextBoxWhereverItWas_data()
    {
        QTest::addColumn<bool>("showsName");
        QTest::newRow("with a tag") << true;
        QTest::newRow("without") << false;
    }
    void theClearSignTakesTheFocusIntoTheTextBoxWhereverItWas()
    {
        QFETCH(bool, showsName);
        const auto check = [&](auto& form, const QVariant& value, const QString& typed) {
            QVERIFY(form.isReady());
            form.picker->SetShowName(showsName);
            for (QLineEdit* elsewhere : {form.before, form.after}) {
                form.picker->SetValue(value);
                elsewhere->setFocus();
                Journal journal(form.picker);
                QTest::mouseClick(form.window.windowHandle(), Qt::LeftButton, Qt::NoModifier,
                                  form.link->mapTo(&form.window, form.link->rect().center()));
                QVERIFY(IsNull(form.picker->Value()));
                QVERIFY(form.box->isVisible());
                QVERIFY(form.box->hasFocus());
                QVERIFY(!form.box->ListIsOpen());
                QCOMPARE(form.shape->BackColor(), colorSet(30).BackColor);
                QCOMPARE(journal.entries, QStringList{u"Change"_s});
                for (const QChar letter : typed)
                    form.press(Qt::Key(letter.toUpper().unicode()));
                form.press(Qt::Key_Return); // and the person goes on typing
                QCOMPARE(form.picker->Value(), value);
            }
        };
        UserForm users;
        check(users, Ann, u"smith"_s);
        users.window.hide();
        EmployeeForm employees;
        check(employees, 12.0, u"smith"_s);
    }

    void theClearSignLeavesTheFocusWithATagThatAFollowerPuts()
    {
        UserForm form;
        QVERIFY(form.isReady());
        form.picker->SetValue(Ann);
        connect(form.picker, &SearchPicker::Change, this, [&] {
            if (IsNull(form.picker->Value()))
                form.picker->SetValue(u"team:3"_s);
        });
        form.clickLink();
        QCOMPARE(form.picker->Value(), QVariant(u"team:3"_s));
        QCOMPARE(form.tag->Caption(), u"TRAF (team)"_s);
        QCOMPARE(QApplication::focusWidget(), form.picker);
    }

    void aFollowerOfTheClearSignMayDeleteThePicker()
    {
        UserForm form;
        QVERIFY(form.isReady());
        form.picker->SetValue(Ann);
        QPointer<FlatUserPicker> picker(form.picker);
        connect(form.picker, &SearchPicker::Change, this, [&] { delete picker.data(); });
        form.clickLink();
        QVERIFY(!picker);
    }

    void whoeverLosesTheFocusToTheClearSignMayClearThePickerItself()
    {
        UserForm form;
        QVERIFY(form.isReady());
        form.picker->SetValue(Ann);
        Journal journal(form.picker);
        connect(form.before, &QLineEdit::editingFinished, this, [&] { form.picker->SetValue(Null()); });
        form.press(Qt::Key_A);
        form.clickLink();
        QVERIFY(IsNull(form.picker->Value()));
        QVERIFY(form.box->hasFocus());
        QCOMPARE(journal.entries, QStringList({u"Change"_s, u"Value"_s})); // and nothing is cleared twice
    }

    // Copying

    void controlCCopiesTheChosenNameWhole_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("short") << u"Ann Smith"_s;
        QTest::newRow("cut in the tag") << QString(60, u'n');
    }
    void controlCCopiesTheChosenNameWhole()
    {
        QFETCH(QString, name);
        UserForm form;
        QVERIFY(form.isReady());
        form.host.state().userNames.insert(u"asmith"_s, name);
        form.choose(u"smith"_s);
        QGuiApplication::clipboard()->setText(u"before"_s);
        form.press(Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QGuiApplication::clipboard()->text(), name + u" (user)"_s);
        QCOMPARE(form.picker->Value(), Ann);
    }
};

TAVRIN_TEST_MAIN(tst_FlatPickerChoosing)
#include "tst_FlatPickerChoosing.moc"
