#include "base/failure/Error.h"
#include "base/failure/Guard.h"
#include "base/values/Variant.h"
#include "lookup/AutoCompleteForm.h"
#include "support/TestCase.h"

#include <QKeyEvent>
#include <QPointer>
#include <QShortcut>
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

/// Choosing an entry of `AutoCompleteField`, and closing its list.
class tst_AutoCompleteFieldChoice : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
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
        QTest::newRow("a key that empties the box") << 4;
        QTest::newRow("a text set empty") << 5;
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
        if (way >= 4) {
            form.field->SetText(text("x"));
            form.field->SetValue(12);
            QTest::keyClick(form.box, Qt::Key_Home);
        }
        const QPointer<AutoCompleteField> field = form.field;
        QObject::connect(form.field, &UserControl::PropertyChanged, &form.window,
                         [&form] { delete std::exchange(form.field, nullptr); });
        if (way == 0)
            QTest::keyClick(form.box, Qt::Key_Return);
        else if (way == 1)
            QTest::keyClick(form.list, Qt::Key_Return);
        else if (way == 2)
            form.clickRow(0);
        else if (way == 3)
            QTest::keyClicks(form.box, text("s"));
        else if (way == 4)
            QTest::keyClick(form.box, Qt::Key_Delete);
        else
            form.field->SetText(QString());
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

    void enterBehindAChoicePutsItOnceMoreAndIsTheFormsToo()
    {
        AutoCompleteForm form;
        QVERIFY(form.isReady());
        QVERIFY(form.search(text("gun")));
        QTest::keyClick(form.box, Qt::Key_Down);
        QTest::keyClick(form.list, Qt::Key_Return);
        QVERIFY(!form.list->IsOpen());
        form.field->SetValue(99); // the form's own; its text is still the entry's
        QStringList reports;
        QObject::connect(form.field, &UserControl::PropertyChanged, &form.window,
                         [&reports](const QString& key) { reports << key; });
        QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, text("\r"));
        QApplication::sendEvent(form.box, &enter);
        QVERIFY(!enter.isAccepted()); // no list was open that it could have answered
        QCOMPARE(form.field->Value(), QVariant(12));
        QCOMPARE(form.box->Text(), text("12 - Handgun"));
        QCOMPARE(reports, QStringList({text("Value"), text("Text")}));
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

    void escapeInTheBoxClosesTheListAndLeavesTextAndValue()
    {
        AutoCompleteForm form;
        QVERIFY(form.isReady());
        QVERIFY(form.search(text("gun")));
        const QSignalSpy changes(form.field, &UserControl::PropertyChanged);
        QTest::keyClick(form.box, Qt::Key_Escape);
        QVERIFY(!form.list->IsOpen());
        QVERIFY(form.box->hasFocus());
        QCOMPARE(form.box->Text(), text("gun"));
        QVERIFY(AutoCompleteForm::letPendingSearchesRun());
        QVERIFY(!form.list->IsOpen());
        QCOMPARE(changes.size(), 0);
    }

    void aSearchThatIsPendingWhenTheListIsClosedByAKeyOpensNone_data()
    {
        QTest::addColumn<int>("key");
        QTest::newRow("Escape") << int(Qt::Key_Escape);
        QTest::newRow("Enter with nothing marked") << int(Qt::Key_Return);
    }
    void aSearchThatIsPendingWhenTheListIsClosedByAKeyOpensNone()
    {
        QFETCH(int, key);
        AutoCompleteForm form;
        QVERIFY(form.isReady());
        QVERIFY(form.search(text("gun")));
        form.searched.reset();
        QTest::keyClick(form.box, Qt::Key_Backspace);
        QTest::keyClicks(form.box, text("n"));
        QVERIFY(!form.searched);
        QTest::keyClick(form.box, Qt::Key(key));
        QVERIFY(!form.list->IsOpen());
        QTRY_COMPARE(form.searched, std::optional(text("gun")));
        QVERIFY(!form.list->IsOpen());
        form.searched.reset();
        QTest::keyClick(form.box, Qt::Key_Space); // the next key wants it again
        QTest::keyClick(form.box, Qt::Key_Backspace);
        QTRY_COMPARE(form.searched, std::optional(text("gun")));
        QVERIFY(form.list->IsOpen());
        form.list->Close();
    }

    void keysThatNeitherBoxNorListAnswersStayShortcutsOfTheWindow_data()
    {
        QTest::addColumn<int>("key");
        for (const Qt::Key key : {Qt::Key_Up, Qt::Key_PageUp, Qt::Key_PageDown})
            QTest::newRow(qPrintable(QKeySequence(key).toString())) << int(key);
    }
    void keysThatNeitherBoxNorListAnswersStayShortcutsOfTheWindow()
    {
        QFETCH(int, key);
        AutoCompleteForm form;
        QVERIFY(form.isReady());
        QVERIFY(form.search(text("gun")));
        int fired = 0;
        const QShortcut shortcut(QKeySequence(key), &form.window);
        QObject::connect(&shortcut, &QShortcut::activated, &form.window, [&fired] { ++fired; });
        QTest::keyClick(form.window.windowHandle(), Qt::Key(key));
        QCOMPARE(fired, 1);
        QVERIFY(form.list->IsOpen());
        QCOMPARE(form.list->ListIndex(), -1);
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

TAVRIN_TEST_MAIN(tst_AutoCompleteFieldChoice)
#include "tst_AutoCompleteFieldChoice.moc"
