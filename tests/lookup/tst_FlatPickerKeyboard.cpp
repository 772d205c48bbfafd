#include "base/values/Variant.h"
#include "lookup/FlatPickerForm.h"
#include "support/Keys.h"
#include "support/TestCase.h"

#include <QAccessible>
#include <QClipboard>
#include <QPointer>

using namespace tavrin;
using namespace Qt::StringLiterals;
using tavrin::test::EmployeeForm;
using tavrin::test::Journal;
using tavrin::test::PeopleSite;
using tavrin::test::UserForm;

namespace {

const QVariant Ann = u"user:asmith"_s;

QString accessibleName(QWidget* widget)
{
    return QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name);
}

QString accessibleDescription(QWidget* widget)
{
    return QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Description);
}

} // namespace

/// Focus and keys of the flat pickers, and what screen readers tell of them.
class tst_FlatPickerKeyboard : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // One tab stop

    void anEmptyPickerIsOneTabStopWhichIsItsTextBox()
    {
        UserForm form;
        QVERIFY(form.isReady());
        form.press(Qt::Key_Tab);
        QVERIFY(form.box->hasFocus());
        form.press(Qt::Key_Tab);
        QVERIFY(form.after->hasFocus());
        form.press(Qt::Key_Backtab, Qt::ShiftModifier);
        QVERIFY(form.box->hasFocus());
        form.press(Qt::Key_Backtab, Qt::ShiftModifier);
        QVERIFY(form.before->hasFocus());
    }

    void aTagIsOneTabStopWhichIsTheControlItself()
    {
        UserForm form;
        QVERIFY(form.isReady());
        form.picker->SetValue(Ann);
        form.press(Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), form.picker);
        form.press(Qt::Key_Tab);
        QVERIFY(form.after->hasFocus());
        form.press(Qt::Key_Backtab, Qt::ShiftModifier);
        QCOMPARE(QApplication::focusWidget(), form.picker);
        form.press(Qt::Key_Backtab, Qt::ShiftModifier);
        QVERIFY(form.before->hasFocus());
    }

    void anEmployeesTextBoxIsTheTabStopAlsoBesideATag()
    {
        EmployeeForm form;
        QVERIFY(form.isReady());
        form.picker->SetValue(12);
        form.press(Qt::Key_Tab);
        QVERIFY(form.box->hasFocus());
        form.press(Qt::Key_Tab);
        QVERIFY(form.after->hasFocus());
        form.press(Qt::Key_Backtab, Qt::ShiftModifier);
        form.press(Qt::Key_Backtab, Qt::ShiftModifier);
        QVERIFY(form.before->hasFocus());
    }

    void aTabStopIsOneAlsoAfterAValueHasComeAndGone()
    {
        UserForm form;
        QVERIFY(form.isReady());
        form.picker->SetValue(Ann);
        form.picker->SetValue(Null());
        form.press(Qt::Key_Tab);
        QVERIFY(form.box->hasFocus());
        form.press(Qt::Key_Tab);
        QVERIFY(form.after->hasFocus());
        form.press(Qt::Key_Backtab, Qt::ShiftModifier);
        QVERIFY(form.box->hasFocus());
        form.press(Qt::Key_Backtab, Qt::ShiftModifier);
        QVERIFY(form.before->hasFocus());
    }

    void aDisabledPickerIsNoTabStop()
    {
        UserForm form;
        QVERIFY(form.isReady());
        form.picker->SetEnabled(false);
        form.press(Qt::Key_Tab);
        QVERIFY(form.after->hasFocus());
    }

    // Entering

    void theFocusThatEntersWithoutATagGoesIntoTheTextBox()
    {
        UserForm form;
        QVERIFY(form.isReady());
        form.picker->setFocus();
        QVERIFY(form.box->hasFocus());
        form.picker->SetShowName(false);
        form.picker->SetValue(Ann);
        form.after->setFocus();
        form.picker->setFocus();
        QVERIFY(form.box->hasFocus()); // nor does a value without a name keep it away
    }

    void aClickOnTheTagGivesTheControlTheFocus()
    {
        UserForm form;
        QVERIFY(form.isReady());
        form.picker->SetValue(Ann);
        QTest::mouseClick(form.window.windowHandle(), Qt::LeftButton, Qt::NoModifier,
                          form.tag->mapTo(&form.window, QPoint(20, 5)));
        QCOMPARE(QApplication::focusWidget(), form.picker);
    }

    void theAccessKeyOfTheCaptionEntersThePicker()
    {
        UserForm form;
        QVERIFY(form.isReady());
        form.picker->SetCaption(u"&Officer"_s);
        form.press(Qt::Key_O, Qt::AltModifier);
        QVERIFY(form.box->hasFocus());
        form.before->setFocus();
        form.picker->SetValue(Ann);
        form.press(Qt::Key_O, Qt::AltModifier);
        QCOMPARE(QApplication::focusWidget(), form.picker);
    }

    void aPickerThatTheHostSendsTheFocusBackToKeepsItAndTheOtherNeverHasIt()
    {
        PeopleSite site;
        QWidget window;
        QLineEdit other(&window);
        FlatEmployeePicker* first = nullptr;
        FlatEmployeePicker* second = nullptr;
        int sentBack = 0;
        QObject host;
        // The host listens before there are pickers, and so is told before them: the first is required.
        connect(qApp, &QApplication::focusChanged, &host, [&](const QWidget*, const QWidget* now) {
            if (first && second && now && second->isAncestorOf(now) && IsNull(first->Value())) {
                ++sentBack;
                first->setFocus();
            }
        });
        first = new FlatEmployeePicker(&window);
        second = new FlatEmployeePicker(&window);
        second->move(0, 100);
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        const auto colorOf = [](QWidget* picker) { return picker->findChild<BoxShape*>()->BackColor(); };
        const Color normal = tavrin::test::colorSet(10).BackColor;
        const Color focused = tavrin::test::colorSet(30).BackColor;

        first->setFocus();
        second->setFocus();
        QCOMPARE(sentBack, 1);
        auto* firstBox = first->findChild<AutoCompleteTextBox*>();
        QVERIFY(firstBox->hasFocus());
        QCOMPARE(colorOf(first), focused);
        QCOMPARE(colorOf(second), normal);
        tavrin::test::typeInto(window.windowHandle(), u"smith"_s);
        QCOMPARE(first->TypedText(), u"smith"_s);
        QTest::keyClick(window.windowHandle(), Qt::Key_Return);
        QCOMPARE(first->Value(), QVariant(12.0));
        second->setFocus(); // now it may
        QCOMPARE(sentBack, 1);
        QVERIFY(second->findChild<AutoCompleteTextBox*>()->hasFocus());
        QCOMPARE(colorOf(first), normal);
        QCOMPARE(colorOf(second), focused);
        first = nullptr;
    }

    // Choosing

    void aChoiceByEnterMovesTheFocusToTheControlItselfAndTabMovesOn()
    {
        UserForm form;
        QVERIFY(form.isReady());
        form.type(u"smith"_s);
        form.press(Qt::Key_Return);
        QCOMPARE(form.picker->Value(), Ann);
        QCOMPARE(QApplication::focusWidget(), form.picker);
        QCOMPARE(form.shape->BackColor(), tavrin::test::colorSet(30).BackColor);
        form.press(Qt::Key_Tab);
        QVERIFY(form.after->hasFocus());
        QCOMPARE(form.shape->BackColor(), tavrin::test::colorSet(10).BackColor);
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

    // Clearing

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
        QCOMPARE(form.shape->BackColor(), tavrin::test::colorSet(30).BackColor);
        form.choose(u"traf"_s); // and the person goes on typing
        QCOMPARE(form.picker->Value(), QVariant(u"team:3"_s));
    }

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
                QCOMPARE(form.shape->BackColor(), tavrin::test::colorSet(30).BackColor);
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

    // The control holds the focus itself only while it hands it on

    void theFocusThatComesBackToTheControlGoesIntoTheTextBoxAgain_data()
    {
        QTest::addColumn<QString>("after");
        QTest::newRow("a choice and its clearing") << u"choice"_s;
        QTest::newRow("Tab and back") << u"tab"_s;
    }
    void theFocusThatComesBackToTheControlGoesIntoTheTextBoxAgain()
    {
        QFETCH(QString, after);
        UserForm form;
        QVERIFY(form.isReady());
        form.type(u"smith"_s);
        if (after == u"choice") {
            form.press(Qt::Key_Return);
            form.press(Qt::Key_Delete);
        } else {
            form.press(Qt::Key_Escape);
            form.press(Qt::Key_Tab);
            QVERIFY(form.after->hasFocus());
            form.press(Qt::Key_Backtab, Qt::ShiftModifier);
        }
        QVERIFY(form.box->hasFocus());
        form.picker->setFocus(); // as a form does for the first field at fault
        QVERIFY(form.box->hasFocus());
        form.press(Qt::Key_J);
        QCOMPARE(form.box->Text(), u"j"_s);
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

    // Enabled

    void disablingWhileTheFocusIsInsideLetsItGo()
    {
        UserForm form;
        QVERIFY(form.isReady());
        form.type(u"o"_s);
        form.picker->SetEnabled(false);
        QVERIFY(!form.box->ListIsOpen());
        QVERIFY(!form.picker->isAncestorOf(QApplication::focusWidget()));
        form.picker->SetEnabled(true);
        QCOMPARE(form.shape->BackColor(), tavrin::test::colorSet(10).BackColor);
    }

    // Screen readers

    void screenReadersTellTheCaptionAsTheNameWithoutItsMarks_data()
    {
        QTest::addColumn<QString>("caption");
        QTest::addColumn<QString>("name");
        QTest::newRow("plain") << u"Officer"_s << u"Officer"_s;
        QTest::newRow("access key") << u"&Officer"_s << u"Officer"_s;
        QTest::newRow("an ampersand") << u"R&&D of&ficer"_s << u"R&D officer"_s;
    }
    void screenReadersTellTheCaptionAsTheNameWithoutItsMarks()
    {
        QFETCH(QString, caption);
        QFETCH(QString, name);
        UserForm form;
        form.picker->SetCaption(caption);
        form.picker->SetRequired(true);
        QCOMPARE(accessibleName(form.picker), name);
        QCOMPARE(accessibleName(form.box), name);
    }

    void aCaptionThatIsTakenAwayIsNoLongerTold()
    {
        UserForm form;
        form.picker->SetCaption(u"Officer"_s);
        form.picker->SetCaption(QString());
        QVERIFY(!accessibleName(form.picker).contains(u"Officer"_s));
        QVERIFY(!accessibleName(form.box).contains(u"Officer"_s));
    }

    void aNameThatTheHostGaveStaysWithoutACaption()
    {
        UserForm form;
        form.picker->setAccessibleName(u"Given"_s);
        form.picker->SetRequired(true);
        form.picker->SetValue(Ann);
        QCOMPARE(accessibleName(form.picker), u"Given"_s);
    }

    void screenReadersTellTheWholeNameThatTheTagShows()
    {
        UserForm form;
        form.host.state().userNames.insert(u"asmith"_s, QString(60, u'n'));
        form.picker->SetCaption(u"Officer"_s);
        form.picker->SetValue(Ann);
        QCOMPARE(accessibleDescription(form.picker), QString(60, u'n') + u" (user)"_s);
        QCOMPARE(accessibleName(form.tag), form.tag->Caption());
        form.picker->SetValue(Null());
        QCOMPARE(accessibleDescription(form.picker), QString());
    }

    void screenReadersTellWhatTheLinkDoes()
    {
        UserForm form;
        QCOMPARE(accessibleName(form.link), u"Open the list"_s);
        form.picker->SetValue(Ann);
        QCOMPARE(accessibleName(form.link), u"Clear"_s);
        QAccessible::queryAccessibleInterface(form.link)->actionInterface()->doAction(
            QAccessibleActionInterface::pressAction()); // which shows the button down for a while
        QTRY_VERIFY(IsNull(form.picker->Value()));
    }
};

TAVRIN_TEST_MAIN(tst_FlatPickerKeyboard)
#include "tst_FlatPickerKeyboard.moc"
