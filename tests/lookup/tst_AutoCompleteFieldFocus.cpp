#include "base/values/Variant.h"
#include "lookup/AutoCompleteForm.h"
#include "support/Keys.h"
#include "support/TestCase.h"

#include <functional>

using namespace Qt::StringLiterals;
using namespace tavrin;
using tavrin::test::AutoCompleteForm;
using tavrin::test::typeInto;

namespace {

/// A form whose box has found two entries, with the focus in the list and the first one marked.
struct ListForm : AutoCompleteForm
{
    bool isInList()
    {
        if (!isReady() || !search(u"gun"_s))
            return false;
        key(Qt::Key_Down);
        return list->hasFocus() && list->IsOpen() && list->ListIndex() == 0;
    }
    /// Where the window system sends it.
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(window.windowHandle(), key, modifiers);
    }
    void pressOn(QWidget& widget, const QPoint& place) const
    {
        QTest::mousePress(widget.windowHandle(), Qt::LeftButton, {}, place);
        QTest::mouseRelease(widget.windowHandle(), Qt::LeftButton, {}, place);
    }
    /// Another window takes the keyboard, and gives it back.
    bool leaveAndComeBack()
    {
        QWidget another;
        another.show();
        another.activateWindow();
        if (!QTest::qWaitForWindowActive(&another) || list->IsOpen())
            return false;
        another.hide();
        window.activateWindow();
        return QTest::qWaitForWindowActive(&window);
    }
};

using Act = std::function<void(ListForm&)>;

} // namespace

/// Where the keyboard is when the list of `AutoCompleteField` closes, and for whom it opens.
class tst_AutoCompleteFieldFocus : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aListThatClosesOtherThanByAChoiceGivesTheKeyboardBackToTheBox_data()
    {
        QTest::addColumn<Act>("close");
        QTest::newRow("press on bare form area") << Act([](ListForm& form) {
            form.pressOn(form.window, {390, 290});
        });
        QTest::newRow("another window in front")
            << Act([](ListForm& form) { QVERIFY(form.leaveAndComeBack()); });
        QTest::newRow("form hidden and shown again") << Act([](ListForm& form) {
            form.window.hide();
            QTRY_VERIFY(!form.window.isActiveWindow());
            form.window.show();
            QApplication::setActiveWindow(&form.window); // the offscreen platform does not
        });
        QTest::newRow("a late search finds nothing") << Act([](ListForm& form) {
            form.box->setFocus();
            form.list->Open();
            QTest::keyClicks(form.box, u"x"_s);
            QTest::keyClick(form.box, Qt::Key_Down); // before the search, which finds nothing
            QVERIFY(form.list->hasFocus());
            QTRY_VERIFY(!form.list->IsOpen());
            form.key(Qt::Key_Backspace);
            QTRY_COMPARE(form.searched, u"gun"_s);
            form.list->Close();
        });
        QTest::newRow("closed by code") << Act([](ListForm& form) { form.list->Close(); });
    }
    void aListThatClosesOtherThanByAChoiceGivesTheKeyboardBackToTheBox()
    {
        QFETCH(Act, close);
        ListForm form;
        QVERIFY(form.isInList());
        const QSignalSpy changes(form.field, &UserControl::PropertyChanged);
        close(form);
        QVERIFY(!form.list->IsOpen());
        QTRY_VERIFY(form.box->hasFocus());
        QCOMPARE(form.box->Text(), u"gun"_s);
        QVERIFY(!test::keysOf(changes).contains(u"Text"_s));
        form.key(Qt::Key_End);
        typeInto(form.window.windowHandle(), u"1"_s);
        QCOMPARE(form.box->Text(), u"gun1"_s);
        QVERIFY(AutoCompleteForm::letPendingSearchesRun());
        QVERIFY(IsNull(form.field->Value()));
        QCOMPARE(form.box->Text(), u"gun1"_s);
    }

    void theSelectionOfTheTextIsThereAgainWithTheKeyboard()
    {
        ListForm form;
        QVERIFY(form.isReady());
        QVERIFY(form.search(u"gun"_s));
        form.box->SetSelection(1, 1);
        form.key(Qt::Key_Down);
        form.pressOn(form.window, {390, 290});
        QCOMPARE(form.box->selectedText(), u"u"_s);
    }

    void aFocusThatWasMovedElsewhereStaysThere_data()
    {
        QTest::addColumn<Act>("move");
        QTest::newRow("Tab") << Act([](ListForm& form) { form.key(Qt::Key_Tab); });
        QTest::newRow("click into another box")
            << Act([](ListForm& form) { form.pressOn(form.window, form.other->geometry().center()); });
        QTest::newRow("code") << Act([](ListForm& form) { form.other->setFocus(); });
    }
    void aFocusThatWasMovedElsewhereStaysThere()
    {
        QFETCH(Act, move);
        ListForm form;
        QVERIFY(form.isInList());
        move(form);
        QVERIFY(form.other->hasFocus());
        QVERIFY(!form.list->IsOpen());
        QVERIFY(IsNull(form.field->Value()));
        typeInto(form.window.windowHandle(), u"1"_s);
        QCOMPARE(form.other->text(), u"1"_s);
    }

    void aFocusThatIsInTheBoxStaysThereWithItsSelection()
    {
        ListForm form;
        QVERIFY(form.isReady());
        QVERIFY(form.search(u"gun"_s));
        form.box->SetSelection(0, 2);
        form.pressOn(form.window, {390, 290});
        QVERIFY(!form.list->IsOpen());
        QVERIFY(form.box->hasFocus());
        QCOMPARE(form.box->selectedText(), u"gu"_s);
    }

    void aClosedListCommitsNothingWhateverKeysItGets_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<QString>("character");
        QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
        const auto add = [](const char* name, int key, const QString& character = {},
                            Qt::KeyboardModifiers modifiers = {}) {
            QTest::newRow(name) << key << character << modifiers;
        };
        add("digit", Qt::Key_1, u"1"_s);
        add("digit of the number block", Qt::Key_1, u"1"_s, Qt::KeypadModifier);
        add("letter", Qt::Key_S, u"s"_s);
        add("hyphen", Qt::Key_Minus, u"-"_s);
        add("e acute", Qt::Key_Eacute, u"\u00e9"_s);
        add("Down", Qt::Key_Down);
        add("Shift+Down", Qt::Key_Down, {}, Qt::ShiftModifier);
        add("Up", Qt::Key_Up);
        add("Page Down", Qt::Key_PageDown);
        add("End", Qt::Key_End);
        add("Home of the number block", Qt::Key_Home, {}, Qt::KeypadModifier);
        add("Enter", Qt::Key_Return, u"\r"_s);
        add("Enter of the number block", Qt::Key_Enter, u"\r"_s, Qt::KeypadModifier);
        add("Escape", Qt::Key_Escape, u"\u001b"_s);
    }
    void aClosedListCommitsNothingWhateverKeysItGets()
    {
        QFETCH(int, key);
        QFETCH(QString, character);
        QFETCH(Qt::KeyboardModifiers, modifiers);
        ListForm form;
        form.host.setTable(test::SampleTableNo,
                           {test::entry("12", "Handgun", 12), test::entry("-", "Gun", 13),
                            test::entry("\u00e9", "Gunner", 14)});
        form.field->ReloadList();
        QVERIFY(form.isInList());
        form.list->Close();
        form.list->setFocus(); // by code alone
        QVERIFY(form.list->hasFocus());
        const QSignalSpy changes(form.field, &UserControl::PropertyChanged);
        QTest::sendKeyEvent(QTest::Click, form.list, static_cast<Qt::Key>(key), character, modifiers);
        QVERIFY(AutoCompleteForm::letPendingSearchesRun());
        QCOMPARE(changes.size(), 0);
        QVERIFY(IsNull(form.field->Value()));
        QCOMPARE(form.box->Text(), u"gun"_s);
        QCOMPARE(form.list->ListIndex(), 0);
        QVERIFY(form.box->hasFocus()); // the next key is not lost
    }

    void enterInTheBoxTakesNoEntryOfAListThatWasClosed_data()
    {
        QTest::addColumn<Act>("close");
        QTest::newRow("press on bare form area") << Act([](ListForm& form) {
            form.pressOn(form.window, {390, 290});
        });
        QTest::newRow("Escape") << Act([](ListForm& form) { form.key(Qt::Key_Escape); });
    }
    void enterInTheBoxTakesNoEntryOfAListThatWasClosed()
    {
        QFETCH(Act, close);
        ListForm form;
        QVERIFY(form.isInList());
        close(form);
        QVERIFY(form.box->hasFocus());
        form.key(Qt::Key_Return);
        QVERIFY(IsNull(form.field->Value()));
        QCOMPARE(form.box->Text(), u"gun"_s);
        QVERIFY(form.search(u"n"_s)); // and the list comes again with the next search
        QVERIFY(!form.list->IsOpen());
        form.searched.reset();
        form.key(Qt::Key_Backspace);
        QTRY_COMPARE(form.searched, std::optional(u"gun"_s));
        QVERIFY(form.list->IsOpen());
        form.key(Qt::Key_Down);
        form.key(Qt::Key_Return);
        QCOMPARE(form.field->Value(), QVariant(12));
    }

    // A search that answers late. The keys go to the widgets at once, so that none of the 20 milliseconds
    // pass.

    void aSearchThatAnswersAfterTheFocusHasLeftFillsTheEntriesAndDoesNotOpen_data()
    {
        QTest::addColumn<Act>("leave");
        QTest::newRow("Tab") << Act([](ListForm& form) { QTest::keyClick(form.box, Qt::Key_Tab); });
        QTest::newRow("click into another box")
            << Act([](ListForm& form) { QTest::mouseClick(form.other, Qt::LeftButton); });
        QTest::newRow("code") << Act([](ListForm& form) { form.other->setFocus(); });
        QTest::newRow("the focus is nowhere") << Act([](ListForm& form) { form.box->clearFocus(); });
    }
    void aSearchThatAnswersAfterTheFocusHasLeftFillsTheEntriesAndDoesNotOpen()
    {
        QFETCH(Act, leave);
        ListForm form;
        QVERIFY(form.isReady());
        form.searched.reset();
        QTest::keyClicks(form.box, u"gun"_s);
        leave(form);
        QVERIFY(!form.box->hasFocus());
        QVERIFY(!form.searched);
        QTRY_COMPARE(form.searched, std::optional(u"gun"_s));
        QVERIFY(!form.list->IsOpen());
        QCOMPARE(form.entries(), QStringList({u"12 - Handgun"_s, u"14 - Shotgun"_s}));
        QCOMPARE(form.list->ListIndex(), -1);
        form.other->setFocus();
        typeInto(form.window.windowHandle(), u"1"_s);
        QCOMPARE(form.other->text(), u"1"_s);
        QVERIFY(AutoCompleteForm::letPendingSearchesRun());
        QVERIFY(!form.list->IsOpen());
        QVERIFY(IsNull(form.field->Value()));
    }

    void aSearchThatAnswersBehindAnotherWindowDoesNotOpen()
    {
        ListForm form;
        QVERIFY(form.isReady());
        QWidget another;
        another.show();
        QVERIFY(form.box->hasFocus());
        form.searched.reset();
        QTest::keyClicks(form.box, u"gun"_s);
        QApplication::setActiveWindow(&another);
        QVERIFY(!form.searched);
        QTRY_COMPARE(form.searched, std::optional(u"gun"_s));
        QVERIFY(!form.list->IsOpen());
        QCOMPARE(form.list->ListCount(), 2);
    }

    void aSearchThatAnswersAfterTheFocusCameBackOpens()
    {
        ListForm form;
        QVERIFY(form.isReady());
        form.searched.reset();
        QTest::keyClicks(form.box, u"gun"_s);
        QTest::keyClick(form.box, Qt::Key_Tab);
        QTest::keyClick(form.other, Qt::Key_Backtab, Qt::ShiftModifier);
        QVERIFY(form.box->hasFocus());
        QVERIFY(!form.searched);
        QTRY_COMPARE(form.searched, std::optional(u"gun"_s));
        QVERIFY(form.list->IsOpen());
        form.list->Close();
    }
};

TAVRIN_TEST_MAIN(tst_AutoCompleteFieldFocus)
#include "tst_AutoCompleteFieldFocus.moc"
