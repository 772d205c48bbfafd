#include "support/TestCase.h"
#include "testing/Unhandled.h"
#include "widgets/search_box/SearchStage.h"

#include <QApplication>
#include <QClipboard>

using namespace Qt::StringLiterals;
using tavrin::Error;
using tavrin::XmlNode;
using tavrin::test::command;
using tavrin::test::compose;
using tavrin::test::drop;
using tavrin::test::Unhandled;
using Stage = tavrin::test::SearchStage<>;

/// How an item is chosen, by the person and by code, and what the handlers may do.
class tst_SearchBoxChoice : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // By the person

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

    void afterAForgottenChoiceThePersonsEmptyingClearsOnce_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<int>("key");
        QTest::newRow("a letter taken back") << u"x"_s << int(Qt::Key_Backspace);
        QTest::newRow("Backspace in the empty box") << QString() << int(Qt::Key_Backspace);
        QTest::newRow("Delete in the empty box") << QString() << int(Qt::Key_Delete);
    }
    void afterAForgottenChoiceThePersonsEmptyingClearsOnce()
    {
        QFETCH(QString, typed);
        QFETCH(int, key);
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(3);
        stage.key(key); // nothing was forgotten yet
        stage.box->SelectItem(stage.items[1]);
        stage.take();
        stage.box->ForgetSelection();
        QVERIFY(stage.box->SelectedItem().isNull());
        QCOMPARE(stage.box->Text(), QString());
        QCOMPARE(stage.take(), QStringList());
        stage.type(u"item"_s);
        stage.after->setFocus();
        QCOMPARE(stage.box->Text(), QString()); // the item's text does not come back
        stage.box->setFocus();
        stage.type(typed);
        QCOMPARE(stage.take().filter(u"chosen"_s), QStringList());
        stage.key(key);
        QCOMPARE(stage.take().filter(u"chosen"_s), QStringList{u"chosen none"_s});
        stage.key(key);
        QCOMPARE(stage.take().filter(u"chosen"_s), QStringList());
    }

    void aChoiceEndsWhatAForgottenOneLeft()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(3);
        stage.box->ForgetSelection();
        stage.box->ClearSelection();
        stage.take();
        stage.key(Qt::Key_Delete);
        QCOMPARE(stage.take(), QStringList());
    }

    void aForgottenChoiceClosesTheList()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(3);
        stage.key(Qt::Key_Down); // opens it for the empty text, which stays
        QVERIFY(stage.box->ListIsOpen());
        stage.box->ForgetSelection();
        QVERIFY(!stage.box->ListIsOpen());
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

TAVRIN_TEST_MAIN(tst_SearchBoxChoice)
#include "tst_SearchBoxChoice.moc"
