#include "base/failure/Error.h"
#include "base/failure/Guard.h"
#include "base/values/Variant.h"
#include "lookup/AutoCompleteForm.h"
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

/// Searching. Choosing is tested in tst_AutoCompleteFieldChoice, properties and life in
/// tst_AutoCompleteFieldProperties.
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
};

TAVRIN_TEST_MAIN(tst_AutoCompleteField)
#include "tst_AutoCompleteField.moc"
