#include "AutoCompleteForm.h"
#include "base/Error.h"
#include "base/Guard.h"
#include "base/Variant.h"
#include "support/TestCase.h"

#include <QPointer>
#include <QTimer>

#include <utility>

using namespace tavrin;
using tavrin::test::AutoCompleteForm;
using tavrin::test::entry;
using tavrin::test::keysOf;
using tavrin::test::SampleTableNo;

namespace {

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

} // namespace

/// Searching, choosing and closing. Properties and life are tested in tst_AutoCompleteFieldProperties.
class tst_AutoCompleteField : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // Searching

    void twoTypedCharactersListNothingAndCloseAnOpenList()
    {
        AutoCompleteForm form;
        QVERIFY(form.isReady());
        QVERIFY(form.search(text("ha")));
        QVERIFY(!form.list->IsOpen());
        QCOMPARE(form.list->ListCount(), 0);
        QVERIFY(form.search(text("n")));
        QVERIFY(form.list->IsOpen());
        form.searched.reset();
        QTest::keyClick(form.box, Qt::Key_Backspace);
        QTRY_COMPARE(form.searched, std::optional(text("ha")));
        QVERIFY(!form.list->IsOpen());
        QCOMPARE(form.list->ListCount(), 0);
    }

    void threeCharactersSearchInTheOrderOfTheTableAndTheBoxKeepsTheKeyboard()
    {
        AutoCompleteForm form;
        QVERIFY(form.isReady());
        QVERIFY(form.search(text("gun")));
        QVERIFY(form.list->IsOpen());
        QCOMPARE(form.entries(), QStringList({text("12 - Handgun"), text("14 - Shotgun")}));
        QCOMPARE(form.list->ItemData(0), 12);
        QCOMPARE(form.list->ItemData(1), 14);
        QCOMPARE(form.list->ListIndex(), -1);
        QTest::keyClicks(form.box, text("ner"));
        QCOMPARE(form.box->Text(), text("gunner"));
    }

    void upperAndLowerCaseAndTheCodeFindTheSameEntries_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QStringList>("entries");
        const QStringList guns{text("12 - Handgun"), text("14 - Shotgun")};
        const QStringList place{text("O1 - O'Hara's \"Place\"")};
        QTest::newRow("lower") << text("gun") << guns;
        QTest::newRow("upper") << text("GUN") << guns;
        QTest::newRow("mixed") << text("gUn") << guns;
        QTest::newRow("the code") << text("ND9") << QStringList{text("HND9 - Nine Millimeter")};
        QTest::newRow("an entry whose code equals its text") << text("unk") << QStringList{text("Unknown")};
        QTest::newRow("an apostrophe") << text("o'h") << place;
        QTest::newRow("a double quote") << text("\"pl") << place;
        QTest::newRow("both quotes") << text("'s \"p") << place;
        QTest::newRow("XPath is a text like any other") << text("') or true() or ('") << QStringList();
    }
    void upperAndLowerCaseAndTheCodeFindTheSameEntries()
    {
        QFETCH(QString, typed);
        QFETCH(QStringList, entries);
        AutoCompleteForm form;
        QVERIFY(form.isReady());
        QVERIFY(form.search(typed));
        QCOMPARE(form.entries(), entries);
        QCOMPARE(form.list->IsOpen(), !entries.isEmpty());
        form.list->Close();
    }

    void aTableEntryWhoseCodeEqualsItsTextShowsJustThatTextWithoutDash()
    {
        AutoCompleteForm form;
        QVERIFY(form.isReady());
        QVERIFY(form.search(text("unk")));
        QCOMPARE(form.entries(), QStringList{text("Unknown")});
    }

    void ampersandAndParenthesisStartNoSearchAndTheNextKeySearchesWithTheWholeText_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("silent");
        QTest::addColumn<QString>("after");
        QTest::addColumn<QString>("found");
        QTest::newRow("ampersand") << text("r") << text("&") << text("d") << text("R&D - Lab (north)");
        QTest::newRow("parenthesis") << text("lab ") << text("(") << text("n") << text("R&D - Lab (north)");
    }
    void ampersandAndParenthesisStartNoSearchAndTheNextKeySearchesWithTheWholeText()
    {
        QFETCH(QString, before);
        QFETCH(QString, silent);
        QFETCH(QString, after);
        QFETCH(QString, found);
        AutoCompleteForm form;
        QVERIFY(form.isReady());
        QVERIFY(form.search(before));
        form.searched.reset();
        QTest::keyClicks(form.box, silent);
        QVERIFY(AutoCompleteForm::letPendingSearchesRun());
        QVERIFY(!form.searched);
        QCOMPARE(form.box->Text(), before + silent);
        QVERIFY(form.search(after));
        QCOMPARE(form.entries(), QStringList{found});
        QVERIFY(form.list->IsOpen());
    }

    void onlyBackspaceAndCharactersFrom32To128Search_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<QString>("character");
        QTest::addColumn<bool>("searches");
        QTest::newRow("Delete") << int(Qt::Key_Delete) << text("\x7f") << false;
        QTest::newRow("Left") << int(Qt::Key_Left) << QString() << false;
        QTest::newRow("e acute (233)") << int(Qt::Key_Eacute) << text("\u00e9") << false;
        QTest::newRow("U+0081") << int(Qt::Key_unknown) << text("\u0081") << false;
        QTest::newRow("U+0080") << int(Qt::Key_unknown) << text("\u0080") << true;
        QTest::newRow("Backspace") << int(Qt::Key_Backspace) << text("\b") << true;
        QTest::newRow("blank") << int(Qt::Key_Space) << text(" ") << true;
        QTest::newRow("tilde") << int(Qt::Key_AsciiTilde) << text("~") << true;
    }
    void onlyBackspaceAndCharactersFrom32To128Search()
    {
        QFETCH(int, key);
        QFETCH(QString, character);
        QFETCH(bool, searches);
        AutoCompleteForm form;
        QVERIFY(form.isReady());
        form.field->SetText(text("abcd"));
        form.searched.reset();
        QTest::sendKeyEvent(QTest::Click, form.box, static_cast<Qt::Key>(key), character, Qt::NoModifier);
        QVERIFY(AutoCompleteForm::letPendingSearchesRun());
        QCOMPARE(form.searched.has_value(), searches);
    }

    void aSearchWithoutAMatchClosesTheListAndEnterThenKeepsValueNull()
    {
        AutoCompleteForm form;
        QVERIFY(form.isReady());
        QVERIFY(form.search(text("gun")));
        QVERIFY(form.list->IsOpen());
        QVERIFY(form.search(text("x")));
        QVERIFY(!form.list->IsOpen());
        QCOMPARE(form.list->ListCount(), 2); // the entries of the last match stay, and this is meant
        QTest::keyClick(form.box, Qt::Key_Return);
        QVERIFY(IsNull(form.field->Value()));
        QCOMPARE(form.box->Text(), text("gunx"));
    }

    void anEntryMarkedForAnOlderTextIsNotTakenByEnterAfterFastTyping()
    {
        AutoCompleteForm form;
        QVERIFY(form.isReady());
        QVERIFY(form.search(text("gun")));
        QTest::keyClick(form.box, Qt::Key_Down);
        QCOMPARE(form.list->ListIndex(), 0);
        QTest::keyClick(form.list, Qt::Key_Escape);
        QTest::keyClick(form.box, Qt::Key_End);
        QTest::keyClicks(form.box, text("x"));
        QTest::keyClick(form.box, Qt::Key_Return); // faster than the search
        QVERIFY(IsNull(form.field->Value()));
        QCOMPARE(form.box->Text(), text("gunx"));
    }

    void anEntryMarkedForTheRecordBeforeIsNotTakenByEnter()
    {
        AutoCompleteForm form;
        QVERIFY(form.isReady());
        QVERIFY(form.search(text("gun")));
        QTest::keyClick(form.box, Qt::Key_Down);
        QTest::keyClick(form.list, Qt::Key_Return);
        QCOMPARE(form.field->Value(), QVariant(12));
        form.field->SetText(text("13 - Rifle"));
        form.field->SetValue(13);
        QTest::keyClick(form.box, Qt::Key_Return);
        QCOMPARE(form.field->Value(), QVariant(13));
        QCOMPARE(form.box->Text(), text("13 - Rifle"));
    }

    void typingAfterAChoiceTakesTheChoiceAndTheColoringAway()
    {
        AutoCompleteForm form;
        QVERIFY(form.isReady());
        form.field->SetText(text("12 - Handgun"));
        form.field->SetValue(12);
        QTest::keyClick(form.box, Qt::Key_End);
        QVERIFY(form.search(text("s")));
        QVERIFY(IsNull(form.field->Value()));
        QCOMPARE(form.box->BackColor(), SystemColor::WindowBackground);
        QCOMPARE(form.box->ForeColor(), SystemColor::WindowText);
    }

    void aSearchThatWasPendingWhenTheFieldWasDisabledRunsAsUsual()
    {
        AutoCompleteForm form;
        QVERIFY(form.isReady());
        form.field->SetValue(12);
        form.searched.reset();
        QTest::keyClicks(form.box, text("gun"));
        form.field->SetEnabled(false);
        QTRY_COMPARE(form.searched, std::optional(text("gun")));
        QVERIFY(IsNull(form.field->Value()));
        QCOMPARE(form.list->ListCount(), 2);
    }

    void anInactiveValueIsFoundOnlyWhenAskedFor()
    {
        AutoCompleteForm form;
        QVERIFY(form.isReady());
        form.host.state().inactive[SampleTableNo] = {14};
        form.field->ReloadList();
        QVERIFY(form.search(text("gun")));
        QCOMPARE(form.entries(), QStringList{text("12 - Handgun")});
        form.field->SetIncludeInactiveValues(true);
        form.box->selectAll();
        QVERIFY(form.search(text("gun")));
        QCOMPARE(form.entries().size(), 2);
    }

    void aValueThatIsNoIntegerFailsTheSearchInTheConversionsWords()
    {
        AutoCompleteForm form;
        QVERIFY(form.isReady());
        form.host.setTable(SampleTableNo, {entry("A", "Alpha", QStringLiteral("first"))});
        form.field->ReloadList();
        std::optional<Error> failure;
        auto before = setUnhandledErrorHandler([&](const Error& error, const QString&) { failure = error; });
        QVERIFY(form.search(text("alp")));
        QTRY_VERIFY(failure);
        setUnhandledErrorHandler(before);
        QCOMPARE(failure->Number, Error::TypeMismatchNumber);
        QVERIFY(!form.list->IsOpen());
        QCOMPARE(form.box->Text(), text("alp"));
    }

    void keystrokesTouchOnlyThePrivateDocument()
    {
        AutoCompleteForm form;
        QVERIFY(form.isReady());
        const int calls = form.host.calls();
        QVERIFY(form.search(text("handgun")));
        QCOMPARE(form.host.calls(), calls);
    }

    void aCommandWithControlIsNoTyping()
    {
        AutoCompleteForm form;
        QVERIFY(form.isReady());
        form.field->SetText(text("12 - Handgun"));
        form.field->SetValue(12);
        QTest::sendKeyEvent(QTest::Click, form.box, Qt::Key_0, text("0"), Qt::ControlModifier);
        QVERIFY(AutoCompleteForm::letPendingSearchesRun());
        QCOMPARE(form.field->Value(), QVariant(12));
        QCOMPARE(form.box->Text(), text("12 - Handgun"));
    }

    void theSearchWaits20MillisecondsAndEachKeyRestartsThem()
    {
        AutoCompleteForm form;
        QVERIFY(form.isReady());
        form.searched.reset();
        QTest::keyClicks(form.box, text("gu"));
        // Timers fire in the order of their ends: these run before the search, whatever the machine is doing.
        bool searchedBefore = true;
        QTimer second;
        QObject::connect(&second, &QTimer::timeout, &second,
                         [&] { searchedBefore = form.searched.has_value(); });
        second.setTimerType(Qt::PreciseTimer);
        second.setSingleShot(true);
        QTimer first;
        QObject::connect(&first, &QTimer::timeout, &first, [&] {
            QTest::keyClicks(form.box, text("n"));
            second.start(15);
        });
        first.setTimerType(Qt::PreciseTimer);
        first.setSingleShot(true);
        first.start(10);
        QTRY_COMPARE(form.searched, std::optional(text("gun")));
        QVERIFY(!searchedBefore);
        form.list->Close();
    }

    void deselectingAnEntryForANewTextLeavesTheTextUnselected()
    {
        AutoCompleteForm form;
        QVERIFY(form.isReady());
        QVERIFY(form.search(text("gun")));
        QTest::keyClick(form.box, Qt::Key_Down);
        QTest::keyClick(form.list, Qt::Key_Escape); // the list is closed now
        QTest::keyClick(form.box, Qt::Key_End);
        QTest::keyClicks(form.box, text("n"));
        QCOMPARE(form.list->ListIndex(), -1);
        QVERIFY(!form.box->hasSelectedText());
        QVERIFY(form.search(text("er")));
        QCOMPARE(form.box->Text(), text("gunner"));
    }

    // Choosing

    void enterThatAnswersTheListIsSwallowedAndAnyOtherIsTheForms()
    {
        AutoCompleteForm form;
        QVERIFY(form.isReady());
        const auto isTheForms = [&form](QWidget* widget, Qt::Key key) {
            QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, QStringLiteral("\r"));
            QApplication::sendEvent(widget, &press);
            return !press.isAccepted();
        };
        QVERIFY(isTheForms(form.box, Qt::Key_Return));
        QVERIFY(form.search(text("gun")));
        QVERIFY(!isTheForms(form.box, Qt::Key_Return));
        QVERIFY(isTheForms(form.box, Qt::Key_Return));
        form.list->Open();
        QVERIFY(!isTheForms(form.box, Qt::Key_Down)); // nor does it scroll the page
        QVERIFY(!isTheForms(form.list, Qt::Key_Escape));
        form.list->setFocus();
        QVERIFY(!isTheForms(form.list, Qt::Key_Return));
    }

    void downWithAnOpenButEmptyListLeavesTheFocus()
    {
        AutoCompleteForm form;
        QVERIFY(form.isReady());
        QVERIFY(form.search(text("gun")));
        form.list->Clear();
        QTest::keyClick(form.box, Qt::Key_Down);
        QVERIFY(form.box->hasFocus());
        form.list->Close();
    }

    void aSearchThatWasPendingDoesNotUndoAChoice()
    {
        AutoCompleteForm form;
        QVERIFY(form.isReady());
        QVERIFY(form.search(text("gun")));
        QTest::keyClick(form.box, Qt::Key_Backspace);
        QTest::keyClick(form.box, Qt::Key_Down);
        QTest::keyClick(form.list, Qt::Key_Return);
        QVERIFY(AutoCompleteForm::letPendingSearchesRun());
        QCOMPARE(form.field->Value(), QVariant(12));
        QCOMPARE(form.box->Text(), text("12 - Handgun"));
    }

    void aFollowerMayDeleteTheFieldAtAChoice_data()
    {
        QTest::addColumn<int>("way");
        QTest::newRow("Enter in the box") << 0;
        QTest::newRow("Enter in the list") << 1;
        QTest::newRow("click") << 2;
        QTest::newRow("search") << 3;
    }
    void aFollowerMayDeleteTheFieldAtAChoice()
    {
        QFETCH(int, way);
        AutoCompleteForm form;
        QVERIFY(form.isReady());
        QVERIFY(form.search(text("gun")));
        if (way == 0)
            form.list->SetListIndex(1); // marked while the box keeps the focus
        if (way == 1)
            QTest::keyClick(form.box, Qt::Key_Down);
        const QPointer<AutoCompleteField> field = form.field;
        QObject::connect(form.field, &UserControl::PropertyChanged, &form.window,
                         [&form] { delete std::exchange(form.field, nullptr); });
        if (way == 0)
            QTest::keyClick(form.box, Qt::Key_Return);
        else if (way == 1)
            QTest::keyClick(form.list, Qt::Key_Return);
        else if (way == 2)
            form.clickRow(0);
        else
            QTest::keyClicks(form.box, text("s"));
        QTRY_VERIFY(!field);
    }

    void enterWithTheListOpenButNothingMarkedClosesItAndLeavesValueAndText()
    {
        AutoCompleteForm form;
        QVERIFY(form.isReady());
        QVERIFY(form.search(text("gun")));
        QTest::keyClick(form.box, Qt::Key_Return);
        QVERIFY(!form.list->IsOpen());
        QVERIFY(IsNull(form.field->Value()));
        QCOMPARE(form.box->Text(), text("gun"));
    }

    void enterWithoutEntriesDoesNothingAtAll()
    {
        AutoCompleteForm form;
        QVERIFY(form.isReady());
        form.field->SetText(text("12 - Handgun"));
        form.field->SetValue(12);
        const QSignalSpy changes(form.field, &UserControl::PropertyChanged);
        QTest::keyClick(form.box, Qt::Key_Return);
        QCOMPARE(changes.size(), 0);
    }

    void downGoesIntoTheListAndEnterThereChoosesAndSelectsTheText()
    {
        AutoCompleteForm form;
        QVERIFY(form.isReady());
        QVERIFY(form.search(text("gun")));
        QTest::keyClick(form.box, Qt::Key_Down);
        QVERIFY(form.list->hasFocus());
        QCOMPARE(form.list->ListIndex(), 0);
        QTest::keyClick(form.list, Qt::Key_Down);
        QCOMPARE(form.list->ListIndex(), 1);
        QVERIFY(form.list->IsOpen()); // marking is not choosing
        QVERIFY(IsNull(form.field->Value()));

        const QSignalSpy changes(form.field, &UserControl::PropertyChanged);
        QTest::keyClick(form.list, Qt::Key_Return);
        QCOMPARE(keysOf(changes), QStringList({text("Value"), text("Text")}));
        QCOMPARE(form.field->Value(), QVariant(14));
        QCOMPARE(form.field->Text(), QVariant(text("14 - Shotgun")));
        QVERIFY(!form.list->IsOpen());
        QVERIFY(form.box->hasFocus());
        QCOMPARE(form.box->selectedText(), text("14 - Shotgun"));
        QVERIFY(AutoCompleteForm::letPendingSearchesRun());
        QCOMPARE(form.field->Value(), QVariant(14));
    }

    void downInTheBoxMarksTheNextEntryButNotBeyondTheLast()
    {
        AutoCompleteForm form;
        QVERIFY(form.isReady());
        QVERIFY(form.search(text("gun")));
        for (const int expected : {0, 1, 1}) {
            form.box->setFocus();
            form.list->Open();
            QTest::keyClick(form.box, Qt::Key_Down);
            QVERIFY(form.list->hasFocus());
            QCOMPARE(form.list->ListIndex(), expected);
        }
    }

    void downWithAClosedListAndOtherKeysDoNothing_data()
    {
        QTest::addColumn<bool>("open");
        QTest::addColumn<int>("key");
        QTest::newRow("Down, closed") << false << int(Qt::Key_Down);
        QTest::newRow("Up, open") << true << int(Qt::Key_Up);
        QTest::newRow("Escape, open") << true << int(Qt::Key_Escape);
        QTest::newRow("Page Down, open") << true << int(Qt::Key_PageDown);
    }
    void downWithAClosedListAndOtherKeysDoNothing()
    {
        QFETCH(bool, open);
        QFETCH(int, key);
        AutoCompleteForm form;
        QVERIFY(form.isReady());
        QVERIFY(form.search(text("gun")));
        if (!open)
            form.list->Close();
        QTest::keyClick(form.box, static_cast<Qt::Key>(key));
        QVERIFY(form.box->hasFocus());
        QCOMPARE(form.list->IsOpen(), open);
        QCOMPARE(form.list->ListIndex(), -1);
        QCOMPARE(form.box->Text(), text("gun"));
        form.list->Close();
    }

    void escapeInTheListGoesBackToTheBoxAndLeavesTheTextSelection()
    {
        AutoCompleteForm form;
        QVERIFY(form.isReady());
        QVERIFY(form.search(text("gun")));
        form.box->SetSelection(1, 1);
        QTest::keyClick(form.box, Qt::Key_Down);
        QTest::keyClick(form.list, Qt::Key_Escape);
        QVERIFY(form.box->hasFocus());
        QCOMPARE(form.box->selectedText(), text("u"));
        QVERIFY(!form.list->IsOpen());
        QVERIFY(IsNull(form.field->Value()));
    }

    void aClickInTheListClosesItThenChoosesAndSelectsTheText()
    {
        AutoCompleteForm form;
        QVERIFY(form.isReady());
        QVERIFY(form.search(text("gun")));
        form.clickRow(1);
        QCOMPARE(form.field->Value(), QVariant(14));
        QVERIFY(!form.list->IsOpen());
        QVERIFY(form.box->hasFocus());
        QCOMPARE(form.box->selectedText(), text("14 - Shotgun"));
    }

    void aSelectionInTheClosedListChoosesAtOnce()
    {
        AutoCompleteForm form;
        QVERIFY(form.isReady());
        QVERIFY(form.search(text("gun")));
        form.list->Close();
        form.list->SetListIndex(1);
        QCOMPARE(form.field->Value(), QVariant(14));
    }

    void emptyingTheBoxClearsValueImmediately()
    {
        AutoCompleteForm form;
        QVERIFY(form.isReady());
        form.field->SetText(text("x"));
        form.field->SetValue(12);
        QTest::keyClick(form.box, Qt::Key_Home);
        QTest::keyClick(form.box, Qt::Key_Delete); // which starts no search
        QVERIFY(IsNull(form.field->Value()));
        form.field->SetText(text("x"));
        form.field->SetValue(12);
        form.field->SetText(Null());
        QVERIFY(IsNull(form.field->Value()));
    }

    // Closing

    void theListClosesWhenTheFocusLeavesTheField()
    {
        AutoCompleteForm form;
        QVERIFY(form.isReady());
        QVERIFY(form.search(text("gun")));
        QTest::keyClick(form.box, Qt::Key_Tab);
        QVERIFY(form.other->hasFocus());
        QVERIFY(!form.list->IsOpen());
        QVERIFY(IsNull(form.field->Value()));
        QCOMPARE(form.box->Text(), text("gun"));
    }

    void theListClosesWhenTheLeftButtonGoesUpOverTheBareSurface_data()
    {
        QTest::addColumn<Qt::MouseButton>("button");
        QTest::addColumn<bool>("closes");
        QTest::newRow("left") << Qt::LeftButton << true;
        QTest::newRow("right") << Qt::RightButton << false;
    }
    void theListClosesWhenTheLeftButtonGoesUpOverTheBareSurface()
    {
        QFETCH(Qt::MouseButton, button);
        QFETCH(bool, closes);
        AutoCompleteForm form;
        QVERIFY(form.isReady());
        form.field->setFixedHeight(form.box->height() + 40);
        QTRY_COMPARE(form.field->height(), form.box->height() + 40);
        QVERIFY(form.search(text("gun")));
        QTest::mouseRelease(form.field, button, Qt::NoModifier, QPoint(5, form.field->height() - 5));
        QCOMPARE(form.list->IsOpen(), !closes);
        form.list->Close();
    }

    void tabThroughAFieldWhereNothingWasTypedChangesNothing()
    {
        AutoCompleteForm form;
        QVERIFY(form.isReady());
        form.field->SetText(text("12 - Handgun"));
        form.field->SetValue(12);
        form.other->setFocus();
        const QSignalSpy changes(form.field, &UserControl::PropertyChanged);
        QTest::keyClick(form.other, Qt::Key_Backtab, Qt::ShiftModifier);
        QVERIFY(form.box->hasFocus());
        QTest::keyClick(form.box, Qt::Key_Tab);
        QVERIFY(form.other->hasFocus());
        QVERIFY(AutoCompleteForm::letPendingSearchesRun());
        QCOMPARE(changes.size(), 0);
        QCOMPARE(form.field->Value(), QVariant(12));
    }

    void withEnabledFalseTheListClosesAndBothConstituentsRefuseInput()
    {
        AutoCompleteForm form;
        QVERIFY(form.isReady());
        QVERIFY(form.search(text("gun")));
        const QSignalSpy changes(form.field, &UserControl::PropertyChanged);
        form.field->SetEnabled(false);
        QCOMPARE(keysOf(changes), QStringList{text("Enabled")});
        QVERIFY(!form.list->IsOpen());
        QVERIFY(!form.box->isEnabled());
        QVERIFY(!form.list->isEnabled());
        QTest::keyClicks(&form.window, text("abc"));
        QCOMPARE(form.box->Text(), text("gun"));
        form.list->Open();
        QVERIFY(!form.list->IsOpen());
        form.field->SetEnabled(true);
        QVERIFY(form.box->isEnabled() && form.list->isEnabled());
    }
};

TAVRIN_TEST_MAIN(tst_AutoCompleteField)
#include "tst_AutoCompleteField.moc"
