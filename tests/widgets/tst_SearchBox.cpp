#include "SearchStage.h"
#include "support/TestCase.h"
#include "support/Unhandled.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QDropEvent>
#include <QInputMethodEvent>
#include <QMenu>
#include <QMimeData>

using namespace Qt::StringLiterals;
using tavrin::Error;
using tavrin::Subscription;
using tavrin::XmlNode;
using tavrin::test::Unhandled;
using Stage = tavrin::test::SearchStage<>;

namespace {

/// What an input method tells: `preedit` is being composed, `commit` is done.
void compose(Stage& stage, const QString& preedit, const QString& commit = {})
{
    QInputMethodEvent event(preedit, {});
    event.setCommitString(commit);
    QCoreApplication::sendEvent(stage.box, &event);
}

void drop(Stage& stage, const QString& text)
{
    QMimeData data;
    data.setText(text);
    const QPoint place(stage.box->width() - 5, 10);
    QDragEnterEvent enter(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(stage.box, &enter);
    QVERIFY(enter.isAccepted());
    QDropEvent event(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(stage.box, &event);
}

/// Chooses a command of the box's own context menu.
void command(Stage& stage, const QString& name)
{
    const std::unique_ptr<QMenu> menu(stage.box->createStandardContextMenu());
    for (QAction* action : menu->actions()) {
        if (action->text().remove(u'&').startsWith(name)) {
            QVERIFY(action->isEnabled());
            action->trigger();
            return;
        }
    }
    QFAIL(qPrintable(name));
}

} // namespace

/// What is searched for, and how an item is chosen.
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

    // Choosing

    void theHighlightedRowIsTaken_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
        QTest::addColumn<int>("focus"); // by how many widgets it moves
        const auto row = [](const char* name, Qt::Key key, Qt::KeyboardModifiers modifiers, int focus) {
            QTest::newRow(name) << static_cast<int>(key) << modifiers << focus;
        };
        row("enter", Qt::Key_Return, {}, 0);
        row("enter of the number block", Qt::Key_Enter, Qt::KeypadModifier, 0);
        row("tab", Qt::Key_Tab, {}, 1);
        row("shift and tab", Qt::Key_Backtab, Qt::ShiftModifier, -1);
        row("click", Qt::Key_unknown, {}, 0);
    }
    void theHighlightedRowIsTaken()
    {
        QFETCH(int, key);
        QFETCH(Qt::KeyboardModifiers, modifiers);
        QFETCH(int, focus);
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(3);
        stage.type(u"i"_s);
        stage.key(Qt::Key_Down);
        stage.key(Qt::Key_Down);
        stage.take();
        stage.onEvent = [&](const QString& event) {
            stage.told << u"%1: %2 %3"_s.arg(event, stage.box->Text(),
                                             stage.box->ListIsOpen() ? u"open"_s : u"closed"_s);
        };
        if (key == Qt::Key_unknown)
            stage.clickRow(1);
        else
            stage.key(key, modifiers);
        QCOMPARE(stage.take(), QStringList({u"chosen item 1"_s, u"chosen: item 1 closed"_s,
                                            u"picked item 1"_s, u"picked: item 1 closed"_s}));
        QCOMPARE(stage.box->SelectedItem(), stage.items[1]);
        QCOMPARE(stage.box->Text(), u"item 1"_s);
        const QWidget* expected = focus == 0 ? stage.box.data() : focus > 0 ? stage.after : stage.before;
        QCOMPARE(QApplication::focusWidget(), expected);
        if (focus == 0)
            QCOMPARE(stage.box->selectedText(), u"item 1"_s); // what is typed next is another search
    }

    void onlyARowFoundForTheTextThatIsThereIsTaken_data()
    {
        QTest::addColumn<int>("key");
        QTest::newRow("enter") << static_cast<int>(Qt::Key_Return);
        QTest::newRow("tab") << static_cast<int>(Qt::Key_Tab);
    }
    void onlyARowFoundForTheTextThatIsThereIsTaken()
    {
        QFETCH(int, key);
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill({u"ab one"_s});
        stage.type(u"ab"_s);
        QCOMPARE(stage.highlighted(), 0);
        stage.take();
        QApplication::clipboard()->setText(u"x"_s);
        command(stage, u"Paste"_s); // its search has not come yet
        QVERIFY(stage.box->ListIsOpen());
        stage.key(key);
        QVERIFY(stage.box->SelectedItem().isNull());
        QVERIFY(!stage.told.contains(u"picked ab one"_s));
        QVERIFY(!stage.told.contains(u"form's enter"_s));
    }

    void aSingleMatchOfATextIsHighlightedByItself()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill({u"ab"_s, u"abc"_s});
        stage.type(u"ab"_s);
        QCOMPARE(stage.highlighted(), -1); // two
        stage.type(u"c"_s);
        QCOMPARE(stage.highlighted(), 0);
        stage.fill({u"ab"_s});
        stage.box->SetText(QString());
        stage.key(Qt::Key_F4);
        QCOMPARE(stage.rows(), 1);
        QCOMPARE(stage.highlighted(), -1); // nothing was asked for
    }

    void enterWithAnOpenListIsNeverTheForms()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(3);
        stage.type(u"i"_s);
        stage.take();
        stage.key(Qt::Key_Return);
        QCOMPARE(stage.take(), QStringList()); // nothing is highlighted
        QCOMPARE(stage.rows(), 3);
        stage.box->CloseList();
        stage.key(Qt::Key_Return);
        QCOMPARE(stage.take(), QStringList({u"form's enter"_s}));
    }

    void tabThroughABoxWhereNothingWasTypedChangesNothing_data()
    {
        QTest::addColumn<bool>("choose");
        QTest::addColumn<QString>("text");
        QTest::newRow("empty") << false << QString();
        QTest::newRow("text set by code") << false << u"by code"_s;
        QTest::newRow("chosen") << true << u"item 1"_s;
        QTest::newRow("chosen, and another text set by code") << true << u"by code"_s;
    }
    void tabThroughABoxWhereNothingWasTypedChangesNothing()
    {
        QFETCH(bool, choose);
        QFETCH(QString, text);
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(3);
        stage.before->setFocus();
        if (choose)
            stage.box->SelectItem(stage.items[1]);
        stage.box->SetText(text);
        stage.take();
        stage.key(Qt::Key_Tab);
        QVERIFY(stage.box->hasFocus());
        stage.key(Qt::Key_Tab);
        QVERIFY(stage.after->hasFocus());
        QCOMPARE(stage.take(), QStringList());
        QCOMPARE(stage.box->Text(), text);
        QCOMPARE(stage.box->SelectedItem().isNull(), !choose);
    }

    void theChosenTextCanBeCopied()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(3);
        stage.box->SelectItem(stage.items[2]);
        QApplication::clipboard()->setText(QString());
        stage.key(Qt::Key_A, Qt::ControlModifier);
        stage.key(Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QApplication::clipboard()->text(), u"item 2"_s);
        QCOMPARE(stage.box->SelectedItem(), stage.items[2]);
    }

    void emptyingTheTextDropsTheChosenItemOnce()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill({u"ab"_s});
        stage.box->SelectItem(stage.items[0]);
        stage.take();
        stage.key(Qt::Key_Backspace);
        QCOMPARE(stage.take(), QStringList({u"search 'a'"_s})); // a shorter text drops nothing
        QCOMPARE(stage.box->SelectedItem(), stage.items[0]);
        stage.key(Qt::Key_Backspace);
        QCOMPARE(stage.take(), QStringList({u"chosen none"_s, u"search ''"_s}));
        QVERIFY(stage.box->SelectedItem().isNull());
        stage.type(u"x"_s);
        stage.key(Qt::Key_Backspace);
        QCOMPARE(stage.take(), QStringList({u"search 'x'"_s, u"search ''"_s}));
    }

    void aTypedTextThatWasNotChosenGivesWay_data()
    {
        QTest::addColumn<bool>("choose");
        QTest::addColumn<bool>("byMouse");
        QTest::newRow("to nothing, tab") << false << false;
        QTest::newRow("to nothing, mouse") << false << true;
        QTest::newRow("to the chosen, tab") << true << false;
        QTest::newRow("to the chosen, mouse") << true << true;
    }
    void aTypedTextThatWasNotChosenGivesWay()
    {
        QFETCH(bool, choose);
        QFETCH(bool, byMouse);
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(3);
        if (choose)
            stage.box->SelectItem(stage.items[1]);
        stage.type(u"x"_s);
        stage.take();
        if (byMouse)
            QTest::mouseClick(stage.window->windowHandle(), Qt::LeftButton, {},
                              stage.after->geometry().center());
        else
            stage.key(Qt::Key_Tab);
        QVERIFY(stage.after->hasFocus());
        QCOMPARE(stage.box->Text(), choose ? u"item 1"_s : QString());
        QCOMPARE(stage.take(), QStringList());
        QVERIFY(!stage.box->ListIsOpen());
    }

    void aTypedTextStaysWhileAnotherWindowHasTheFocus()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.type(u"x"_s);
        QWidget other;
        other.setGeometry(550, 100, 100, 100);
        other.show();
        other.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&other));
        QCOMPARE(stage.box->Text(), u"x"_s);
        other.close();
        stage.window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(stage.window));
        QCOMPARE(stage.box->Text(), u"x"_s);
    }

    void aTypedTextStaysWhileTheContextMenuIsOpen()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.type(u"x"_s);
        QContextMenuEvent event(QContextMenuEvent::Keyboard, {5, 5}, stage.box->mapToGlobal(QPoint(5, 5)));
        QCoreApplication::sendEvent(stage.box, &event);
        QTRY_VERIFY(QApplication::activePopupWidget());
        QCOMPARE(stage.box->Text(), u"x"_s);
        QVERIFY(!stage.box->ListIsOpen());
        QApplication::activePopupWidget()->close();
        QTRY_VERIFY(!QApplication::activePopupWidget());
        QCOMPARE(stage.box->Text(), u"x"_s);
        QVERIFY(stage.box->hasFocus());
    }

    // By code

    void codeThatChoosesRaisesSelectionChangedOnly()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(3);
        stage.type(u"i"_s);
        stage.take();
        stage.box->SelectItem(stage.items[2]);
        QCOMPARE(stage.take(), QStringList({u"chosen item 2"_s}));
        QCOMPARE(stage.box->Text(), u"item 2"_s);
        QVERIFY(!stage.box->ListIsOpen());
        stage.box->SelectItem(stage.items[2]); // the same again
        QCOMPARE(stage.take(), QStringList({u"chosen item 2"_s}));
        stage.box->ClearSelection();
        QCOMPARE(stage.take(), QStringList({u"chosen none"_s}));
        QVERIFY(stage.box->SelectedItem().isNull());
        QCOMPARE(stage.box->Text(), u"item 2"_s); // left to the handler
        stage.box->ClearSelection();              // nothing is chosen
        QCOMPARE(stage.take(), QStringList({u"chosen none"_s}));
        stage.box->SelectItem(XmlNode());
        QCOMPARE(stage.take(), QStringList({u"chosen none"_s}));
    }

    void anErrorInAHandlerReachesTheCodeThatChose()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(3);
        const Unhandled unhandled;
        stage.onEvent = [](const QString&) { throw Error(u"no"_s); };
        QVERIFY_EXCEPTION_THROWN(stage.box->SelectItem(stage.items[1]), Error);
        QCOMPARE(stage.box->SelectedItem(), stage.items[1]);
        QVERIFY_EXCEPTION_THROWN(stage.box->ClearSelection(), Error);
        QCOMPARE(stage.take(), QStringList({u"chosen item 1"_s, u"chosen none"_s}));
        QCOMPARE(unhandled.texts, QStringList());
    }

    void anErrorOfAPersonsChoiceIsReportedOnceAndNothingIsPicked_data()
    {
        QTest::addColumn<int>("key");
        QTest::newRow("enter") << static_cast<int>(Qt::Key_Return);
        QTest::newRow("tab") << static_cast<int>(Qt::Key_Tab);
        QTest::newRow("click") << static_cast<int>(Qt::Key_unknown);
    }
    void anErrorOfAPersonsChoiceIsReportedOnceAndNothingIsPicked()
    {
        QFETCH(int, key);
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(3);
        stage.type(u"i"_s);
        stage.key(Qt::Key_Down);
        stage.take();
        const Unhandled unhandled;
        stage.onEvent = [](const QString&) { throw Error(u"no"_s); };
        if (key == Qt::Key_unknown)
            stage.clickRow(0);
        else
            stage.key(key);
        QCOMPARE(stage.take(), QStringList({u"chosen item 0"_s}));
        QCOMPARE(unhandled.texts.size(), 1);
        QVERIFY(unhandled.texts.first().endsWith(u": no"_s));
        QCOMPARE(stage.box->Text(), u"item 0"_s);
        QVERIFY(!stage.box->ListIsOpen());
        QCOMPARE(stage.after->hasFocus(), key == Qt::Key_Tab);
    }

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

    // Handlers that delete

    void aHandlerMayDeleteTheBoxOrTheForm_data()
    {
        using Act = std::function<void(Stage&)>;
        QTest::addColumn<QString>("event");
        QTest::addColumn<Act>("act");
        QTest::addColumn<bool>("withForm");
        for (const bool withForm : {false, true}) {
            const auto row = [&](const QString& name, const QString& event, const Act& act) {
                QTest::addRow("%s, %s", qPrintable(name), withForm ? "form" : "box")
                    << event << act << withForm;
            };
            row(u"search by typing"_s, u"search"_s, [](Stage& stage) { stage.type(u"i"_s); });
            row(u"search by Down"_s, u"search"_s, [](Stage& stage) { stage.key(Qt::Key_Down); });
            row(u"search by F4"_s, u"search"_s, [](Stage& stage) { stage.key(Qt::Key_F4); });
            row(u"search by a paste"_s, u"search"_s, [](Stage& stage) {
                QApplication::clipboard()->setText(u"i"_s);
                stage.key(Qt::Key_V, Qt::ControlModifier);
            });
            row(u"search by the menu"_s, u"search"_s, [](Stage& stage) {
                QApplication::clipboard()->setText(u"i"_s);
                command(stage, u"Paste"_s);
                QCoreApplication::processEvents();
            });
            row(u"search by a drop"_s, u"search"_s, [](Stage& stage) { drop(stage, u"i"_s); });
            row(u"search by an input method"_s, u"search"_s,
                [](Stage& stage) { compose(stage, QString(), u"i"_s); });
            row(u"search by code"_s, u"search"_s, [](Stage& stage) { stage.box->ShowSuggestions(u"i"_s); });
            row(u"chosen by code"_s, u"chosen"_s,
                [](Stage& stage) { stage.box->SelectItem(stage.items[0]); });
            row(u"dropped by code"_s, u"chosen"_s, [](Stage& stage) { stage.box->ClearSelection(); });
            row(u"dropped by emptying"_s, u"chosen none"_s, [](Stage& stage) {
                stage.box->SelectItem(stage.items[0]);
                stage.box->selectAll();
                stage.key(Qt::Key_Delete);
            });
            for (const QString& event : {u"chosen"_s, u"picked"_s}) {
                const auto open = [](Stage& stage) {
                    stage.type(u"i"_s);
                    stage.key(Qt::Key_Down);
                };
                row(event + u" by Enter"_s, event, [=](Stage& stage) {
                    open(stage);
                    stage.key(Qt::Key_Return);
                });
                row(event + u" by Tab"_s, event, [=](Stage& stage) {
                    open(stage);
                    stage.key(Qt::Key_Tab);
                });
                row(event + u" by a click"_s, event, [=](Stage& stage) {
                    open(stage);
                    stage.clickRow(1);
                });
            }
        }
    }
    void aHandlerMayDeleteTheBoxOrTheForm()
    {
        QFETCH(QString, event);
        QFETCH(std::function<void(Stage&)>, act);
        QFETCH(bool, withForm);
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(3);
        const Unhandled unhandled;
        stage.onEvent = [&](const QString&) {
            if (!stage.told.last().startsWith(event))
                return;
            if (withForm)
                delete stage.window.data();
            else
                delete stage.box.data();
        };
        act(stage);
        QVERIFY(!stage.box);
        QVERIFY(stage.told.last().startsWith(event)); // and no event of a dead box came behind
        QCOMPARE(unhandled.texts, QStringList());
        QCOMPARE(stage.window.isNull(), withForm);
        if (stage.window)
            QVERIFY(!stage.popup());
    }
};

TAVRIN_TEST_MAIN(tst_SearchBox)
#include "tst_SearchBox.moc"
