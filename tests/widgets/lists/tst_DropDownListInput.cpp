#include "base/failure/Error.h"
#include "base/failure/Guard.h"
#include "support/Keys.h"
#include "support/TestCase.h"
#include "widgets/boxes/KeyCodes.h"
#include "widgets/lists/DropDownList.h"
#include "widgets/lists/DropDownStage.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFrame>
#include <QLineEdit>
#include <QListView>
#include <QScreen>
#include <QWindow>

using namespace Qt::StringLiterals;
using tavrin::DropDownList;
using tavrin::Error;
using tavrin::Subscription;
using Stage = tavrin::test::Stage;
using tavrin::test::typeInto;
namespace KeyCode = tavrin::KeyCode;

/// Choosing an entry with the mouse and with keys.
class tst_DropDownListInput : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aClickOnARowClosesFirstThenSelectsAndRaisesClick()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(5);
        stage.list->Open();
        stage.clickRow(3);
        QCOMPARE(stage.take(), QStringList({u"click 3"_s})); // not "open"
        QVERIFY(!stage.list->IsOpen());
        QVERIFY(stage.edit->hasFocus());
        stage.list->Open();
        QCOMPARE(stage.view()->currentIndex().row(), 3);
        stage.clickRow(3); // also on the selected row
        QCOMPARE(stage.take(), QStringList({u"click 3"_s}));
        QVERIFY(!stage.list->IsOpen());
    }

    void onlyTheLeftButtonChooses_data()
    {
        QTest::addColumn<Qt::MouseButton>("button");
        QTest::newRow("right") << Qt::RightButton;
        QTest::newRow("middle") << Qt::MiddleButton;
    }
    void onlyTheLeftButtonChooses()
    {
        QFETCH(Qt::MouseButton, button);
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(5);
        stage.list->Open();
        stage.clickRow(3, button);
        QCOMPARE(stage.take(), QStringList());
        QCOMPARE(stage.list->ListIndex(), -1);
        stage.list->Close();
    }

    void aClickOnARowThatWasTakenAwayMeanwhileChoosesNothing()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(5);
        stage.list->Open();
        const QPoint third = stage.middleOfRow(3);
        stage.list->Clear(); // the view has not heard of it yet
        QTest::mouseClick(stage.view()->viewport(), Qt::LeftButton, {}, third);
        QCOMPARE(stage.take(), QStringList());
        QCOMPARE(stage.list->ListIndex(), -1);
        stage.list->Close();
    }

    void aFailingClickHandlerEndsInTheGuardWhenTheMouseChose()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(3);
        QStringList unhandled;
        const auto before = tavrin::setUnhandledErrorHandler(
            [&](const Error& error, const QString& where) { unhandled << where + u' ' + error.Description; });
        const auto restore = qScopeGuard([&] { tavrin::setUnhandledErrorHandler(before); });
        const Subscription failing = stage.list->Click.subscribe([] { throw Error(u"no"_s); });
        stage.list->Open();
        stage.clickRow(1);
        QCOMPARE(unhandled, QStringList({u"DropDownList_Click no"_s}));
        QVERIFY(!stage.list->IsOpen());
        QCOMPARE(stage.list->ListIndex(), 1);
    }

    void theHoveringMouseSelectsNothing()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(6);
        stage.list->SetListIndex(2);
        stage.take();
        stage.list->Open();
        for (const int row : {0, 4, 5})
            QTest::mouseMove(stage.view()->viewport(), stage.middleOfRow(row));
        QCoreApplication::processEvents();
        QCOMPARE(stage.list->ListIndex(), 2);
        QCOMPARE(stage.view()->currentIndex().row(), 2);
        QCOMPARE(stage.view()->selectionModel()->selectedIndexes().size(), 1);
        QCOMPARE(stage.take(), QStringList());
        // The keys go on from the selection, not from the mouse.
        stage.list->setFocus();
        QTest::keyClick(stage.window->windowHandle(), Qt::Key_Down);
        QCOMPARE(stage.take(), QStringList({u"click 3 open"_s}));
        stage.list->Close();
    }

    void keysSelect_data()
    {
        QTest::addColumn<int>("start");
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("result");
        const auto row = [](const char* name, int start, Qt::Key key, int result) {
            QTest::newRow(name) << start << static_cast<int>(key) << result;
        };
        row("down from none", -1, Qt::Key_Down, 0);
        row("up from none", -1, Qt::Key_Up, 0);
        row("down", 3, Qt::Key_Down, 4);
        row("up", 3, Qt::Key_Up, 2);
        row("down at the end", 39, Qt::Key_Down, 39);
        row("up at the start", 0, Qt::Key_Up, 0);
        row("page down from none", -1, Qt::Key_PageDown, 10);
        row("page up from none", -1, Qt::Key_PageUp, 0);
        row("page down", 3, Qt::Key_PageDown, 14);
        row("page down near the end", 35, Qt::Key_PageDown, 39);
        row("page down at the end", 39, Qt::Key_PageDown, 39);
        row("page up", 20, Qt::Key_PageUp, 9);
        row("page up near the start", 4, Qt::Key_PageUp, 0);
        row("page up at the start", 0, Qt::Key_PageUp, 0);
        row("home from none", -1, Qt::Key_Home, 0);
        row("end from none", -1, Qt::Key_End, 39);
        row("home", 20, Qt::Key_Home, 0);
        row("home at the start", 0, Qt::Key_Home, 0);
        row("end", 20, Qt::Key_End, 39);
        row("end at the end", 39, Qt::Key_End, 39);
    }
    void keysSelect()
    {
        QFETCH(int, start);
        QFETCH(int, key);
        QFETCH(int, result);
        for (const bool open : {false, true}) {
            Stage stage;
            QVERIFY(stage.isReady());
            stage.fill(40);
            stage.list->SetListIndex(start);
            stage.list->setFocus();
            if (open)
                stage.list->Open();
            stage.take();
            QTest::keyClick(stage.window->windowHandle(), static_cast<Qt::Key>(key));
            QCOMPARE(stage.list->ListIndex(), result);
            const QString click = u"click %1%2"_s.arg(result).arg(open ? u" open"_s : QString());
            QCOMPARE(stage.take(), start == result ? QStringList() : QStringList(click));
            QCOMPARE(stage.list->IsOpen(), open);
            if (open) {
                QCOMPARE(stage.view()->currentIndex().row(), result);
                QVERIFY(stage.view()->viewport()->rect().contains(stage.middleOfRow(result)));
            }
            stage.list->Close();
        }
    }

    void keysOnAnEmptyListSelectNothing()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.list->setFocus();
        for (const bool open : {false, true}) {
            if (open)
                stage.list->Open();
            for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Up, Qt::Key_PageDown, Qt::Key_PageUp,
                                      Qt::Key_Home, Qt::Key_End, Qt::Key_A}) {
                QTest::keyClick(stage.window->windowHandle(), key);
                QCOMPARE(stage.list->ListIndex(), -1);
            }
            QCOMPARE(stage.take(), QStringList());
            QCOMPARE(stage.list->IsOpen(), open);
        }
        stage.list->Close();
    }

    void theCodeThatKeyDownLeavesSelects()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(40);
        stage.list->setFocus();
        int code = KeyCode::PageDown;
        const Subscription keep = stage.list->KeyDown.subscribe([&](int& key, int) { key = code; });
        QTest::keyClick(stage.window->windowHandle(), Qt::Key_F5);
        QCOMPARE(stage.take(), QStringList({u"click 10"_s}));
        code = KeyCode::End;
        QTest::keyClick(stage.window->windowHandle(), Qt::Key_Home);
        QCOMPARE(stage.take(), QStringList({u"click 39"_s}));
        code = KeyCode::F1;
        QTest::keyClick(stage.window->windowHandle(), Qt::Key_Home);
        code = Qt::Key_Home; // Qt's own is no code
        QTest::keyClick(stage.window->windowHandle(), Qt::Key_F5);
        QCOMPARE(stage.take(), QStringList());
    }

    void charactersWhoseNumberIsAKeyCodeMoveNothing()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(40);
        stage.list->SetListIndex(20);
        stage.take();
        stage.list->setFocus();
        for (const char character : {'!', '"', '#', '$', '&', '('}) // 33 to 40, as the keys that move
            QTest::keyClick(stage.window->windowHandle(), character);
        QCOMPARE(stage.list->ListIndex(), 20);
        QCOMPARE(stage.take(), QStringList());
    }

    void aLetterSelectsTheNextEntryThatBeginsWithIt()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        for (const QString& text : {u"Arson"_s, u"Burglary"_s, u"assault"_s, u"Bribery"_s, u"1 other"_s})
            stage.list->AddItem(text, 0);
        stage.list->setFocus();
        const auto type = [&](const QString& keys) {
            typeInto(stage.window->windowHandle(), keys);
            return stage.list->ListIndex();
        };
        QCOMPARE(type(u"a"_s), 0);
        QCOMPARE(type(u"a"_s), 2); // in any case
        QCOMPARE(type(u"A"_s), 0); // round and round
        QCOMPARE(type(u"b"_s), 1);
        QCOMPARE(type(u"1"_s), 4);
        stage.take();
        QCOMPARE(type(u"1"_s), 4); // the only one stays, and nothing is told
        QCOMPARE(type(u"x"_s), 4);
        QCOMPARE(stage.take(), QStringList());
    }

    void keyDownComesBeforeTheSelectionAndMaySwallowTheKey()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(3);
        stage.list->setFocus();
        bool swallow = false;
        const Subscription keep = stage.list->KeyDown.subscribe([&](int& key, int shift) {
            if (key == 0) // the modifier's own key
                return;
            stage.told << u"down %1 %2 at %3"_s.arg(key).arg(shift).arg(stage.list->ListIndex());
            if (swallow)
                key = 0;
        });
        QTest::keyClick(stage.window->windowHandle(), Qt::Key_Down);
        QCOMPARE(stage.take(), QStringList({u"down 40 0 at -1"_s, u"click 0"_s}));
        swallow = true;
        QTest::keyClick(stage.window->windowHandle(), Qt::Key_Down, Qt::ShiftModifier);
        QTest::keyClick(stage.window->windowHandle(), Qt::Key_E);
        QCOMPARE(stage.take(), QStringList({u"down 40 1 at 0"_s, u"down 69 0 at 0"_s}));
        stage.list->Open();
        QTest::keyClick(stage.window->windowHandle(), Qt::Key_Escape);
        QVERIFY(stage.list->IsOpen()); // a swallowed Escape does not close
        stage.list->Close();
    }
};

TAVRIN_TEST_MAIN(tst_DropDownListInput)
#include "tst_DropDownListInput.moc"
