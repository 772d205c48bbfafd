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

namespace {

/// Shows a second window with the list, which has been open in its first.
void moveListTo(QWidget& second, Stage& stage)
{
    stage.list->Open();
    stage.list->Close();
    second.setGeometry(300, 300, 200, 100);
    stage.list->setParent(&second);
    stage.list->show();
    second.show();
}

} // namespace

class tst_DropDownList : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void entriesAreKeptWithTheirData()
    {
        DropDownList list;
        QCOMPARE(list.ListCount(), 0);
        QCOMPARE(list.ListIndex(), -1);
        list.AddItem(u"a"_s, 7);
        list.AddItem(u"b"_s, -8);
        QCOMPARE(list.ListCount(), 2);
        QCOMPARE(list.List(1), u"b"_s);
        QCOMPARE(list.ItemData(1), -8);
        for (const int outside : {-1, 2}) {
            QCOMPARE(list.List(outside), QString());
            QCOMPARE(list.ItemData(outside), 0);
        }
        list.SetListIndex(1);
        QCOMPARE(list.Text(), u"b"_s);
        list.Clear();
        QCOMPARE(list.ListCount(), 0);
        QCOMPARE(list.ListIndex(), -1);
        QCOMPARE(list.Text(), QString());
    }

    void aSelectionByCodeRaisesClickOnceAndTheSameIndexNone()
    {
        Stage stage;
        stage.fill(3);
        QCOMPARE(stage.take(), QStringList());
        stage.list->SetListIndex(1);
        QCOMPARE(stage.take(), QStringList({u"click 1"_s}));
        stage.list->SetListIndex(1);
        QCOMPARE(stage.take(), QStringList());
        stage.list->SetListIndex(99); // outside selects nothing
        QCOMPARE(stage.take(), QStringList({u"click -1"_s}));
        stage.list->SetListIndex(-5);
        QCOMPARE(stage.take(), QStringList());
    }

    void aClickHandlersFailureReachesWhoeverSelectedByCode()
    {
        DropDownList list;
        list.AddItem(u"a"_s, 1);
        const Subscription failing = list.Click.subscribe([] { throw Error(u"refused"_s); });
        QVERIFY_EXCEPTION_THROWN(list.SetListIndex(0), Error);
        QCOMPARE(list.ListIndex(), 0);
    }

    void itOpensBelowItsPlaceAtLeastAsWide()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(3);
        stage.list->Open();
        QVERIFY(stage.list->IsOpen());
        QVERIFY(stage.popup()->isVisible());
        QCOMPARE(stage.popup()->geometry().topLeft(), stage.listOnScreen().bottomLeft() + QPoint(0, 1));
        QVERIFY(stage.popup()->width() >= stage.list->width());
        QVERIFY(stage.view()->viewport()->rect().contains(stage.middleOfRow(2)));
        stage.list->Close();
        QVERIFY(!stage.list->IsOpen());
        QVERIFY(!stage.popup()->isVisible());
        QCOMPARE(stage.take(), QStringList());
    }

    void anEntryWiderThanTheBoxWidensTheList()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.list->AddItem(QString(60, u'W'), 1);
        stage.list->Open();
        QVERIFY(stage.popup()->width() >
                QFontMetrics(stage.list->font()).horizontalAdvance(QString(60, u'W')));
        stage.list->Close();
    }

    void itOpensWithoutTakingTheFocusOrTheKeyboard()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(5);
        typeInto(stage.window->windowHandle(), u"be"_s);
        stage.list->Open();
        QVERIFY(stage.list->IsOpen());
        // The text that arrived is the proof: keys go where the window system sends them.
        typeInto(QGuiApplication::focusWindow(), u"fore"_s);
        QCOMPARE(stage.edit->text(), u"before"_s);
        QCOMPARE(QGuiApplication::focusWindow(), stage.window->windowHandle());
        QVERIFY(stage.edit->hasFocus());
        QVERIFY(stage.window->isActiveWindow());
        QVERIFY(stage.list->IsOpen());
        QTest::keyClick(QGuiApplication::focusWindow(), Qt::Key_Backspace);
        QCOMPARE(stage.edit->text(), u"befor"_s);
        stage.list->Close();
        typeInto(QGuiApplication::focusWindow(), u"e"_s);
        QCOMPARE(stage.edit->text(), u"before"_s);
    }

    void hiddenOrDisabledItDoesNotOpen()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(3);
        stage.list->setEnabled(false);
        stage.list->Open();
        QVERIFY(!stage.list->IsOpen());
        stage.list->setEnabled(true);
        stage.list->hide();
        stage.list->Open();
        QVERIFY(!stage.list->IsOpen());
        DropDownList alone;
        alone.Open();
        QVERIFY(!alone.IsOpen());
        alone.Close();
    }

    void whatEndsTheOpenList_data()
    {
        QTest::addColumn<std::function<void(Stage&)>>("act");
        using Act = std::function<void(Stage&)>;
        QTest::newRow("click on the window") << Act([](Stage& stage) {
            QTest::mousePress(stage.window.get(), Qt::LeftButton, {}, {280, 180});
        });
        QTest::newRow("click into another box")
            << Act([](Stage& stage) { QTest::mouseClick(stage.other, Qt::LeftButton); });
        QTest::newRow("right click outside") << Act([](Stage& stage) {
            QTest::mousePress(stage.window.get(), Qt::RightButton, {}, {280, 180});
        });
        QTest::newRow("double click outside") << Act([](Stage& stage) {
            QTest::mouseDClick(stage.window.get(), Qt::LeftButton, {}, {280, 180});
        });
        QTest::newRow("hidden") << Act([](Stage& stage) { stage.list->hide(); });
        QTest::newRow("window hidden") << Act([](Stage& stage) { stage.window->hide(); });
        QTest::newRow("disabled") << Act([](Stage& stage) { stage.list->setEnabled(false); });
        QTest::newRow("window disabled") << Act([](Stage& stage) { stage.window->setEnabled(false); });
        QTest::newRow("focus lost") << Act([](Stage& stage) {
            stage.list->setFocus();
            QVERIFY(stage.list->hasFocus());
            QVERIFY(stage.list->IsOpen());
            stage.edit->setFocus();
        });
        QTest::newRow("escape") << Act([](Stage& stage) {
            stage.list->setFocus();
            QTest::keyClick(stage.window->windowHandle(), Qt::Key_Escape);
        });
    }
    void whatEndsTheOpenList()
    {
        QFETCH(std::function<void(Stage&)>, act);
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(3);
        stage.list->Open();
        QVERIFY(stage.list->IsOpen());
        act(stage);
        QVERIFY(!stage.list->IsOpen());
        QCOMPARE(stage.list->ListIndex(), -1);
        QCOMPARE(stage.take(), QStringList());
    }

    void itClosesWhenItsWindowIsLeft()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(3);
        stage.list->Open();
        QVERIFY(stage.list->IsOpen());
        QWidget another;
        another.show();
        another.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&another));
        QTRY_VERIFY(!stage.list->IsOpen());
    }

    void clicksInsideTheListThatHitNoRowLeaveItOpen()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.list->Open(); // no entries
        QVERIFY(stage.list->IsOpen());
        QTest::mouseClick(stage.view()->viewport(), Qt::LeftButton);
        QVERIFY(stage.list->IsOpen());
        QCOMPARE(stage.take(), QStringList());
        stage.list->Close();
    }

    void itFollowsItsWindow()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(3);
        stage.list->Open();
        const QPoint before = stage.popup()->pos();
        stage.window->move(stage.window->pos() + QPoint(40, 30));
        QTRY_COMPARE(stage.popup()->pos(), before + QPoint(40, 30));
        QCOMPARE(stage.popup()->pos(), stage.listOnScreen().bottomLeft() + QPoint(0, 1));
        stage.list->move(20, 50);
        QTRY_COMPARE(stage.popup()->pos(), before + QPoint(50, 40));
        QVERIFY(stage.list->IsOpen());
        stage.list->Close();
    }

    void itIsAsHighAsItsRows()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(1);
        stage.list->Open();
        const int rowHeight = stage.view()->visualRect(stage.view()->model()->index(0, 0)).height();
        const int frame = stage.popup()->height() - rowHeight;
        QVERIFY2(frame >= 0 && frame < rowHeight, qPrintable(QString::number(frame)));
        for (const int count : {2, 3, 12, 13, 40}) {
            stage.list->Clear();
            stage.fill(count);
            QTRY_COMPARE(stage.popup()->height(), std::min(count, 12) * rowHeight + frame);
        }
        stage.list->Close();
    }

    void itOpensUpwardAtTheBottomOfTheScreen_data()
    {
        QTest::addColumn<int>("count");
        QTest::newRow("one entry") << 1;
        QTest::newRow("three entries") << 3;
        QTest::newRow("twelve entries") << 12;
        QTest::newRow("hundred entries") << 100;
    }
    void itOpensUpwardAtTheBottomOfTheScreen()
    {
        QFETCH(int, count);
        const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
        Stage stage(QPoint(100, screen.bottom() - 70));
        QVERIFY(stage.isReady());
        stage.fill(count);
        stage.list->Open();
        const QRect popup = stage.popup()->geometry();
        QCOMPARE(popup.bottom(), stage.listOnScreen().top() - 1); // covers no part of the box
        QVERIFY(screen.contains(popup));
        stage.list->Close();
    }

    void itStaysOnTheScreenAtItsRightEdge()
    {
        const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
        Stage stage(QPoint(screen.right() - 200, 100));
        QVERIFY(stage.isReady());
        stage.list->AddItem(QString(30, u'W'), 1);
        stage.list->Open();
        QVERIFY(screen.contains(stage.popup()->geometry()));
        stage.list->Close();
    }

    void theTabKeyGoesPastIt()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        QTest::keyClick(stage.window->windowHandle(), Qt::Key_Tab);
        QVERIFY(stage.other->hasFocus());
    }

    void anOpenListShowsEntriesThatAreAddedAndTakenAway()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(2);
        stage.list->Open();
        const int before = stage.popup()->height();
        stage.fill(4);
        QTRY_COMPARE(stage.view()->model()->rowCount(), 6);
        QTRY_VERIFY(stage.popup()->height() > before);
        stage.list->Clear();
        stage.list->AddItem(u"only"_s, 1);
        QTRY_VERIFY(stage.popup()->height() < before);
        QCOMPARE(stage.view()->model()->index(0, 0).data().toString(), u"only"_s);
        QVERIFY(stage.list->IsOpen());
        stage.list->Close();
    }

    void aHundredThousandEntriesOpenAndScroll()
    {
        constexpr int Count = 100000;
        Stage stage;
        QVERIFY(stage.isReady());
        QElapsedTimer clock;
        clock.start();
        stage.fill(Count);
        stage.list->Open();
        QCOMPARE(stage.view()->model()->rowCount(), Count);
        stage.list->setFocus();
        QTest::keyClick(stage.window->windowHandle(), Qt::Key_End);
        QCOMPARE(stage.list->ListIndex(), Count - 1);
        QCOMPARE(stage.list->ItemData(Count - 1), 100 + Count - 1);
        QVERIFY(stage.view()->viewport()->rect().contains(stage.middleOfRow(Count - 1)));
        stage.clickRow(Count - 2);
        QCOMPARE(stage.take(), QStringList({u"click 99999 open"_s, u"click 99998"_s}));
        stage.list->Clear();
        QVERIFY2(clock.elapsed() < 10000, qPrintable(QString::number(clock.elapsed())));
    }

    void destroyedWhileOpen_data()
    {
        QTest::addColumn<std::function<void(Stage&)>>("destroy");
        using Destroy = std::function<void(Stage&)>;
        QTest::newRow("the list first") << Destroy([](Stage& stage) { delete stage.list; });
        QTest::newRow("its window first") << Destroy([](Stage& stage) { stage.window.reset(); });
        QTest::newRow("its window first, the list in front of its siblings") << Destroy([](Stage& stage) {
            stage.list->raise(); // now behind the popup in the window's children
            stage.window.reset();
        });
        QTest::newRow("the popup first") << Destroy([](Stage& stage) {
            delete stage.popup();
            QVERIFY(!stage.list->IsOpen());
            stage.list->Close();
            stage.list->Open();
            QVERIFY(stage.list->IsOpen());
            delete stage.list;
        });
        QTest::newRow("with news under way") << Destroy([](Stage& stage) {
            stage.fill(3);
            delete stage.popup();
            QCoreApplication::processEvents();
            stage.window.reset();
        });
    }
    void destroyedWhileOpen()
    {
        QFETCH(std::function<void(Stage&)>, destroy);
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(3);
        stage.list->Open();
        QVERIFY(stage.list->IsOpen());
        destroy(stage);
        QCoreApplication::processEvents();
        QWidget after; // the mouse still works for everybody else
        after.show();
        QTest::mouseClick(&after, Qt::LeftButton);
    }

    void aClickHandlerMayDestroyTheList()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(3);
        bool called = false;
        const Subscription keep = stage.list->Click.subscribe([&] {
            called = true; // after the handler of the stage, which still sees the list
            delete std::exchange(stage.list, nullptr);
        });
        stage.told.clear();
        stage.list->Open();
        stage.clickRow(1);
        QVERIFY(called);
        QCOMPARE(stage.take(), QStringList({u"click 1"_s}));
    }

    void aListThatWentToAnotherWindowOutlivesTheFirst()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(3);
        QWidget second;
        moveListTo(second, stage);
        DropDownList* list = stage.list;
        stage.window.reset(); // and its popup with it
        QVERIFY(!list->IsOpen());
        list->Open();
        QVERIFY(list->IsOpen());
        QVERIFY(second.findChild<QFrame*>(u"dropDown"_s)->isVisible());
        list->Close();
    }

    void aListThatWentToAnotherWindowOpensThere()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(3);
        QWidget second;
        moveListTo(second, stage);
        stage.list->Open();
        QVERIFY(stage.list->IsOpen());
        QVERIFY(!stage.popup());
        QVERIFY(second.findChild<QFrame*>(u"dropDown"_s)->isVisible());
        stage.list->Close();
    }
};

TAVRIN_TEST_MAIN(tst_DropDownList)
#include "tst_DropDownList.moc"
