#include "support/TestCase.h"
#include "testing/Unhandled.h"
#include "widgets/search_box/SearchStage.h"

#include <QApplication>
#include <QClipboard>

using namespace Qt::StringLiterals;
using tavrin::Error;
using tavrin::test::command;
using tavrin::test::compose;
using tavrin::test::drop;
using tavrin::test::Unhandled;
using Stage = tavrin::test::SearchStage<>;

/// What is searched for, and when.
class tst_SearchBox : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // Searching

    void eachTypedOrDeletedCharacterSearchesOnce()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill({u"Smith"_s, u"Snow"_s, u"Meyer"_s});
        stage.type(u"sn"_s);
        QCOMPARE(stage.take(), QStringList({u"search 's'"_s, u"search 'sn'"_s}));
        QCOMPARE(stage.rows(), 1);
        QCOMPARE(stage.box->Query(), u"sn"_s);
        stage.key(Qt::Key_Backspace);
        QCOMPARE(stage.take(), QStringList({u"search 's'"_s}));
        QCOMPARE(stage.rows(), 2);
        QCoreApplication::processEvents(); // and no second search comes behind
        QCOMPARE(stage.take(), QStringList());
    }

    void everyEditByThePersonSearchesOnce_data()
    {
        using Edit = std::function<void(Stage&)>;
        QTest::addColumn<Edit>("edit");
        QTest::addColumn<QString>("result");
        const auto row = [](const char* name, const QString& result, const Edit& edit) {
            QTest::newRow(name) << edit << result;
        };
        const auto clipboard = [](const QString& text) { QApplication::clipboard()->setText(text); };
        row("paste", u"abXY"_s, [=](Stage& stage) {
            clipboard(u"XY"_s);
            stage.key(Qt::Key_V, Qt::ControlModifier);
        });
        row("cut", QString(), [](Stage& stage) {
            stage.box->selectAll();
            stage.key(Qt::Key_X, Qt::ControlModifier);
        });
        row("undo", QString(), [](Stage& stage) { stage.key(Qt::Key_Z, Qt::ControlModifier); });
        row("delete", u"b"_s, [](Stage& stage) {
            stage.box->setCursorPosition(0);
            stage.key(Qt::Key_Delete);
        });
        row("drop", u"abXY"_s, [](Stage& stage) { drop(stage, u"XY"_s); });
        row("paste by the menu", u"abXY"_s, [=](Stage& stage) {
            clipboard(u"XY"_s);
            command(stage, u"Paste"_s);
        });
        row("delete by the menu", QString(), [](Stage& stage) {
            stage.box->selectAll();
            command(stage, u"Delete"_s);
        });
        row("undo by the menu", QString(), [](Stage& stage) { command(stage, u"Undo"_s); });
    }
    void everyEditByThePersonSearchesOnce()
    {
        QFETCH(std::function<void(Stage&)>, edit);
        QFETCH(QString, result);
        Stage stage;
        QVERIFY(stage.isReady());
        stage.type(u"ab"_s);
        stage.take();
        edit(stage);
        QCoreApplication::processEvents();
        QCOMPARE(stage.box->Text(), result);
        QCOMPARE(stage.take(), QStringList({u"search '%1'"_s.arg(result)}));
        QVERIFY(stage.box->ListIsOpen());
    }

    void aTextDroppedOnABoxWithoutFocusTakesTheFocusThere()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(3);
        stage.after->setFocus();
        drop(stage, u"item"_s);
        QVERIFY(stage.box->hasFocus());
        QCOMPARE(stage.rows(), 3);
    }

    void keysThatChangeNothingSearchForNothing()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.type(u"ab"_s);
        stage.take();
        for (const int key : {Qt::Key_Left, Qt::Key_Home, Qt::Key_Backspace, Qt::Key_End, Qt::Key_Delete})
            stage.key(key);
        stage.key(Qt::Key_Home, Qt::ShiftModifier);
        stage.key(Qt::Key_C, Qt::ControlModifier);
        QCoreApplication::processEvents();
        QCOMPARE(stage.take(), QStringList());
        QVERIFY(stage.box->ListIsOpen()); // and the list stays
    }

    void searchesStartAtTheMinimumLength_data()
    {
        QTest::addColumn<int>("minimum");
        QTest::addColumn<QStringList>("told");
        QTest::newRow("0") << 0
                           << QStringList(
                                  {u"search 'a'"_s, u"search 'ab'"_s, u"search 'a'"_s, u"search ''"_s});
        QTest::newRow("1") << 1 << QStringList({u"search 'a'"_s, u"search 'ab'"_s, u"search 'a'"_s});
        QTest::newRow("2") << 2 << QStringList({u"search 'ab'"_s});
        QTest::newRow("3") << 3 << QStringList();
    }
    void searchesStartAtTheMinimumLength()
    {
        QFETCH(int, minimum);
        QFETCH(QStringList, told);
        Stage stage;
        QVERIFY(stage.isReady());
        QCOMPARE(stage.box->MinQueryLength(), 0);
        stage.box->SetMinQueryLength(minimum);
        stage.type(u"ab"_s);
        QCOMPARE(stage.box->ListIsOpen(), minimum <= 2);
        stage.key(Qt::Key_Backspace);
        QCOMPARE(stage.box->ListIsOpen(), minimum <= 1);
        stage.key(Qt::Key_Backspace);
        QCOMPARE(stage.box->ListIsOpen(), minimum == 0);
        QCOMPARE(stage.take(), told);
    }

    void aPastedTextIsSearchedForWhole()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        const QString text(100'000, u'x');
        QApplication::clipboard()->setText(text);
        stage.key(Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(stage.take(), QStringList({u"search '%1'"_s.arg(text)}));
    }

    void textSetByCodeSearchesForNothingAndClosesAListOfAnotherText()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(3);
        stage.type(u"it"_s);
        stage.take();
        stage.box->SetText(u"it"_s);
        QCOMPARE(stage.rows(), 3); // the list is the one of this text
        stage.box->SetText(u"item"_s);
        QVERIFY(!stage.box->ListIsOpen());
        QCoreApplication::processEvents();
        QVERIFY(!stage.box->ListIsOpen());
        QCOMPARE(stage.take(), QStringList());
    }

    void aHandlerThatSetsTheTextWhileItSearchesGetsNoListOfTheOldText()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(1);
        stage.onEvent = [&](const QString& event) {
            if (event == u"search"_s)
                stage.box->SetText(u"other"_s);
        };
        stage.type(u"i"_s);
        QVERIFY(!stage.box->ListIsOpen());
        stage.key(Qt::Key_Return);
        QCOMPARE(stage.take(), QStringList({u"search 'i'"_s, u"form's enter"_s}));
    }

    void aHandlerMayChooseWhileItSearches()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(3);
        stage.onEvent = [&](const QString& event) {
            if (event == u"search"_s)
                stage.box->SelectItem(stage.items[1]);
        };
        stage.type(u"i"_s);
        QVERIFY(!stage.box->ListIsOpen());
        QCOMPARE(stage.box->Text(), u"item 1"_s);
        QCOMPARE(stage.take(), QStringList({u"search 'i'"_s, u"chosen item 1"_s}));
    }

    // Input methods

    void whatIsBeingComposedIsNeitherSearchedForNorTaken()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill({u"ab one"_s});
        stage.type(u"ab"_s); // the single match is highlighted
        stage.take();
        compose(stage, u"x"_s);
        compose(stage, u"xy"_s);
        QCOMPARE(stage.take(), QStringList());
        stage.key(Qt::Key_Down);
        stage.key(Qt::Key_Return); // ends the composition
        QVERIFY(stage.box->SelectedItem().isNull());
        QVERIFY(!stage.told.contains(u"form's enter"_s));
        QVERIFY(!stage.told.join(u' ').contains(u"picked"_s));
        compose(stage, QString(), u"c"_s);
        QCOMPARE(stage.box->Text(), u"abc"_s);
        QCoreApplication::processEvents();
        QCOMPARE(stage.take(), QStringList({u"search 'abc'"_s}));
    }

    void tabWhileComposingTakesNothing()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill({u"ab one"_s});
        stage.type(u"ab"_s);
        QCOMPARE(stage.highlighted(), 0);
        compose(stage, u"x"_s);
        stage.take();
        stage.key(Qt::Key_Tab);
        QVERIFY(stage.box->SelectedItem().isNull());
        QVERIFY(!stage.told.join(u' ').contains(u"picked"_s));
        QVERIFY(stage.after->hasFocus());
    }

    void aPartCommittedWhileMoreIsComposedWaits()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        compose(stage, u"x"_s, u"ab"_s);
        QCoreApplication::processEvents();
        QCOMPARE(stage.take(), QStringList());
        compose(stage, QString(), u"c"_s);
        QCOMPARE(stage.take(), QStringList({u"search 'abc'"_s}));
    }

    void anAbandonedCompositionSearchesOnlyForWhatItHasRemoved()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.type(u"ab"_s);
        stage.take();
        compose(stage, u"x"_s);
        compose(stage, QString());
        QCOMPARE(stage.take(), QStringList());
        stage.box->SetSelection(0, 1);
        compose(stage, u"x"_s); // which removes what was selected
        QCOMPARE(stage.take(), QStringList());
        compose(stage, QString());
        QCOMPARE(stage.take(), QStringList({u"search 'b'"_s}));
    }

    // Failures

    void anErrorOfASearchClosesTheListAndTheNextKeyWorks()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(3);
        stage.type(u"i"_s);
        stage.key(Qt::Key_Down);
        stage.take();
        const Unhandled unhandled;
        stage.onEvent = [](const QString&) { throw Error(u"no"_s); };
        stage.type(u"t"_s);
        QCOMPARE(unhandled.texts, QStringList({u"SearchBox_Edited: no"_s}));
        QCOMPARE(stage.box->Text(), u"it"_s);
        QVERIFY(!stage.box->ListIsOpen());
        stage.onEvent = nullptr;
        stage.type(u"e"_s);
        QCOMPARE(stage.take(), QStringList({u"search 'it'"_s, u"search 'ite'"_s}));
        QCOMPARE(stage.rows(), 3);
        QCOMPARE(unhandled.texts.size(), 1);
    }

    void anErrorOfASearchByAKeyIsReportedOnce()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(3);
        const Unhandled unhandled;
        stage.onEvent = [](const QString&) { throw Error(u"no"_s); };
        stage.key(Qt::Key_Down);
        QCOMPARE(unhandled.texts, QStringList({u"SearchBox_KeyPress: no"_s}));
        QVERIFY(!stage.box->ListIsOpen());
        stage.onEvent = nullptr;
        stage.key(Qt::Key_Down);
        QCOMPARE(stage.rows(), 3);
    }

    void showSuggestionsTakesTheFocusAndItsErrorReachesTheCaller()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(3);
        stage.after->setFocus();
        stage.box->ShowSuggestions(u"item 1"_s);
        QVERIFY(stage.box->hasFocus());
        QCOMPARE(stage.rows(), 1);
        QCOMPARE(stage.box->Query(), u"item 1"_s);
        QCOMPARE(stage.box->Text(), QString());
        QCOMPARE(stage.take(), QStringList({u"search 'item 1'"_s}));
        const Unhandled unhandled;
        stage.onEvent = [](const QString&) { throw Error(u"no"_s); };
        QVERIFY_EXCEPTION_THROWN(stage.box->ShowSuggestions(u"x"_s), Error);
        QVERIFY(!stage.box->ListIsOpen());
        QCOMPARE(unhandled.texts, QStringList());
        stage.onEvent = nullptr;
        stage.box->ShowSuggestions(QString());
        QCOMPARE(stage.rows(), 3);
    }
};

TAVRIN_TEST_MAIN(tst_SearchBox)
#include "tst_SearchBox.moc"
