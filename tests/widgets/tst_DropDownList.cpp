#include "base/Error.h"
#include "base/Guard.h"
#include "support/Keys.h"
#include "support/TestCase.h"
#include "widgets/DropDownList.h"
#include "widgets/KeyCodes.h"

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
using tavrin::test::typeInto;
namespace KeyCode = tavrin::KeyCode;

namespace {

/// A window with a line edit, a list below it and a button, and what the list told.
class Stage
{
public:
    explicit Stage(const QPoint& place = {100, 100})
        : window(new QWidget)
    {
        window->setGeometry(QRect(place, QSize(300, 200)));
        edit = new QLineEdit(window.get());
        edit->setGeometry(10, 10, 150, 24);
        list = new DropDownList(window.get());
        list->setGeometry(10, 40, 150, 24);
        other = new QLineEdit(window.get());
        other->setGeometry(10, 120, 150, 24);
        m_keep.push_back(
            list->Click.subscribe([this] { told << u"click %1%2"_s.arg(list->ListIndex()).arg(state()); }));
        window->show();
        window->activateWindow();
        edit->setFocus();
    }

    bool isReady() { return QTest::qWaitForWindowActive(window.get()) && edit->hasFocus(); }
    void fill(int count)
    {
        for (int i = 0; i < count; ++i)
            list->AddItem(u"entry %1"_s.arg(i), 100 + i);
    }
    QString state() const { return list->IsOpen() ? u" open"_s : QString(); }
    QStringList take() { return std::exchange(told, {}); }

    QFrame* popup() const { return window->findChild<QFrame*>(u"dropDown"_s); }
    QListView* view() const { return popup()->findChild<QListView*>(u"entries"_s); }
    QRect listOnScreen() const { return {list->mapToGlobal(QPoint(0, 0)), list->size()}; }
    QPoint middleOfRow(int row) const { return view()->visualRect(view()->model()->index(row, 0)).center(); }
    void clickRow(int row, Qt::MouseButton button = Qt::LeftButton) const
    {
        QTest::mouseClick(view()->viewport(), button, {}, middleOfRow(row));
    }

    std::unique_ptr<QWidget> window;
    QLineEdit* edit;
    DropDownList* list;
    QLineEdit* other;
    QStringList told;

private:
    std::vector<Subscription> m_keep;
};

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
        row("page down", 3, Qt::Key_PageDown, 14);
        row("page down near the end", 35, Qt::Key_PageDown, 39);
        row("page up", 20, Qt::Key_PageUp, 9);
        row("page up near the start", 4, Qt::Key_PageUp, 0);
        row("home", 20, Qt::Key_Home, 0);
        row("end", 20, Qt::Key_End, 39);
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
        for (const Qt::Key key : {Qt::Key_Down, Qt::Key_End, Qt::Key_A})
            QTest::keyClick(stage.window->windowHandle(), key);
        QCOMPARE(stage.list->ListIndex(), -1);
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
        stage.list->Open();
        stage.list->Close();
        QWidget second;
        second.setGeometry(300, 300, 200, 100);
        stage.list->setParent(&second);
        stage.list->show();
        second.show();
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
        stage.list->Open();
        stage.list->Close();
        QWidget second;
        second.setGeometry(300, 300, 200, 100);
        stage.list->setParent(&second);
        stage.list->show();
        second.show();
        stage.list->Open();
        QVERIFY(stage.list->IsOpen());
        QVERIFY(!stage.popup());
        QVERIFY(second.findChild<QFrame*>(u"dropDown"_s)->isVisible());
        stage.list->Close();
    }
};

TAVRIN_TEST_MAIN(tst_DropDownList)
#include "tst_DropDownList.moc"
