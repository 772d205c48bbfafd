#include "support/TestCase.h"
#include "widgets/search_box/SearchStage.h"

#include <QApplication>
#include <QFrame>
#include <QLabel>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>

using namespace Qt::StringLiterals;
using tavrin::test::OpenStage;
using Stage = tavrin::test::SearchStage<>;

namespace {

constexpr int PageRows = 10;

/// A frame around the box, below which its list opens. The box goes back to the window in the end.
class Anchor : public QFrame
{
public:
    explicit Anchor(Stage& stage)
        : QFrame(stage.window)
        , m_stage(stage)
    {
        setGeometry(20, 40, 300, 60);
        stage.box->setParent(this);
        stage.box->move(50, 10);
        show();
        stage.box->show();
        stage.box->setFocus();
        stage.box->SetListAnchor(this);
    }
    ~Anchor() override { m_stage.box->setParent(m_stage.window); }

private:
    Stage& m_stage;
};

} // namespace

/// Where the list stands, what closes it, and whose it is.
class tst_SearchBoxPlace : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init() override
    {
        failOnUnexpectedWarnings();
        QCursor::setPos(5, 5); // out of the way
    }

    // Place

    void theListOpensBelowTheBoxAndIsAsWideAsIt()
    {
        OpenStage stage(40);
        QVERIFY(stage.isOpen());
        const QRect list = stage.popup()->geometry();
        QCOMPARE(list.topLeft(), stage.boxOnScreen().bottomLeft() + QPoint(0, 1));
        QCOMPARE(list.width(), stage.boxOnScreen().width());
        QCOMPARE(stage.view()->viewport()->height(), PageRows * stage.view()->rowHeight());
        QCOMPARE(stage.view()->pageRows(), PageRows);
        QVERIFY(stage.view()->verticalScrollBar()->isVisible());
    }

    void theListIsAsHighAsItsRows()
    {
        OpenStage stage(4);
        QVERIFY(stage.isOpen());
        QCOMPARE(stage.view()->viewport()->height(), 4 * stage.view()->rowHeight());
        QVERIFY(!stage.view()->verticalScrollBar()->isVisible());
    }

    void theListIsAsWideAsItIsToldOrAsItsRowsNeed()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(3);
        stage.box->SetListWidth(tavrin::toTwips(320));
        stage.key(Qt::Key_F4);
        QCOMPARE(stage.popup()->width(), 320);
        stage.box->SetListWidth(tavrin::toTwips(50));
        stage.fill({QString(60, u'W')});
        stage.box->ShowSuggestions(QString());
        QVERIFY(stage.popup()->width() > 60 * stage.view()->fontMetrics().horizontalAdvance(u'W'));
        stage.box->ShowSuggestions(u"x"_s); // and narrow again
        QCOMPARE(stage.popup()->width(), 50);
    }

    void theListStaysOnTheScreen_data()
    {
        QTest::addColumn<QPoint>("window");
        QTest::addColumn<bool>("upward");
        const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
        QTest::newRow("top") << QPoint(100, 0) << false;
        QTest::newRow("bottom") << QPoint(100, screen.bottom() - 100) << true;
        QTest::newRow("right") << QPoint(screen.right() - 150, 100) << false;
        QTest::newRow("left") << QPoint(-60, 100) << false;
    }
    void theListStaysOnTheScreen()
    {
        QFETCH(QPoint, window);
        QFETCH(bool, upward);
        OpenStage stage(40, window);
        QVERIFY(stage.isOpen());
        const QRect list = stage.popup()->geometry();
        const QRect box = stage.boxOnScreen();
        QVERIFY(stage.box->screen()->availableGeometry().contains(list));
        QVERIFY(!list.intersects(box));
        if (upward)
            QCOMPARE(list.bottom() + 1, box.top());
        else
            QCOMPARE(list.top(), box.bottom() + 1);
        QCOMPARE(stage.view()->pageRows(), PageRows);
    }

    void aListWithoutRoomForItsRowsScrolls()
    {
        const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
        Stage stage({100, 0});
        QVERIFY(stage.isReady());
        stage.fill({u"a"_s});
        const auto font = std::make_shared<tavrin::Font>();
        font->SetSize(60); // few rows on a screen
        stage.box->SetFont(font);
        stage.fill(8);
        stage.key(Qt::Key_F4);
        QVERIFY(screen.contains(stage.popup()->geometry()));
        QVERIFY(stage.view()->pageRows() < 8);
        stage.view()->setHighlightedRow(7);
        QVERIFY(stage.view()->viewport()->rect().contains(stage.view()->rowRect(7)));
    }

    void theListOpensBelowItsAnchor()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        const Anchor anchor(stage);
        stage.fill(3);
        stage.key(Qt::Key_F4);
        QCOMPARE(stage.popup()->pos(), anchor.mapToGlobal(QPoint(0, 60)));
        QCOMPARE(stage.popup()->width(), 300);
    }

    void theListTakesNeitherFocusNorKeyboard()
    {
        OpenStage stage(40);
        QVERIFY(stage.isOpen());
        const auto isUndisturbed = [&] {
            return QApplication::activeWindow() == stage.window && stage.box->hasFocus() &&
                   !QApplication::activePopupWidget() && !QApplication::activeModalWidget();
        };
        QVERIFY(isUndisturbed());
        QVERIFY(stage.popup()->isWindow());
        QCOMPARE(stage.popup()->focusPolicy(), Qt::NoFocus);
        QTest::mouseClick(stage.popup()->windowHandle(), Qt::RightButton, {}, {20, 20});
        QTest::mouseClick(stage.popup()->windowHandle(), Qt::LeftButton, {},
                          {stage.popup()->width() - 8, 60}); // the scroll bar
        QVERIFY(isUndisturbed());
        QVERIFY(stage.box->ListIsOpen());
    }

    // Closing

    void theListCloses_data()
    {
        using Act = std::function<void(Stage&)>;
        QTest::addColumn<Act>("act");
        const auto row = [](const char* name, const Act& act) { QTest::newRow(name) << act; };
        const auto press = [](Stage& stage, const QPoint& place) {
            QTest::mouseClick(stage.window->windowHandle(), Qt::LeftButton, {}, place);
        };
        row("the window moves", [](Stage& stage) { stage.window->move(120, 130); });
        row("the window grows", [](Stage& stage) { stage.window->resize(450, 350); });
        row("the window hides", [](Stage& stage) { stage.window->hide(); });
        row("the window closes", [](Stage& stage) { stage.window->close(); });
        row("the window is iconified", [](Stage& stage) { stage.window->showMinimized(); });
        row("the box moves", [](Stage& stage) { stage.box->move(30, 60); });
        row("the box grows", [](Stage& stage) { stage.box->resize(230, 26); });
        row("the box hides", [](Stage& stage) { stage.box->hide(); });
        row("the box is disabled", [](Stage& stage) { stage.box->setEnabled(false); });
        row("the window is disabled", [](Stage& stage) { stage.window->setEnabled(false); });
        row("the box goes elsewhere", [](Stage& stage) { stage.box->setParent(stage.standard); });
        row("another box gets the focus", [](Stage& stage) { stage.after->setFocus(); });
        row("the box gives the focus away", [](Stage& stage) { stage.box->clearFocus(); });
        row("press on the window", [=](Stage& stage) { press(stage, {380, 10}); });
        row("press on another box", [=](Stage& stage) { press(stage, stage.before->geometry().center()); });
        row("press on a disabled box", [=](Stage& stage) {
            stage.before->setEnabled(false);
            press(stage, stage.before->geometry().center());
        });
        row("code", [](Stage& stage) { stage.box->CloseList(); });
    }
    void theListCloses()
    {
        QFETCH(std::function<void(Stage&)>, act);
        OpenStage stage;
        QVERIFY(stage.isOpen());
        QFrame* popup = stage.popup();
        act(stage);
        QTRY_VERIFY(!stage.box->ListIsOpen());
        QVERIFY(!popup->isVisible());
        QVERIFY(!stage.told.contains(u"search ''"_s));
    }

    void theListClosesWhenAnotherWindowIsActivated()
    {
        OpenStage stage;
        QVERIFY(stage.isOpen());
        QWidget other;
        other.setGeometry(550, 100, 100, 100);
        other.show();
        other.activateWindow();
        QTRY_VERIFY(!stage.box->ListIsOpen());
    }

    void theListClosesWhenItsPageScrolls()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(3);
        QScrollArea area(stage.window);
        area.setGeometry(0, 0, 300, 200);
        auto* page = new QWidget;
        page->resize(280, 1000);
        stage.box->setParent(page);
        area.setWidget(page);
        area.show();
        stage.box->show();
        stage.box->setFocus();
        stage.key(Qt::Key_F4);
        QVERIFY(stage.box->ListIsOpen());
        area.verticalScrollBar()->setValue(20);
        QVERIFY(!stage.box->ListIsOpen());
        stage.box->setParent(stage.window);
    }

    void aPressInTheBoxOrInItsAnchorKeepsTheList()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        Anchor anchor(stage);
        auto* label = new QLabel(u"label"_s, &anchor); // which takes no press
        label->setGeometry(0, 0, 40, 20);
        label->show();
        stage.fill(3);
        stage.key(Qt::Key_F4);
        for (const QPoint& place :
             {stage.box->mapTo(stage.window, QPoint(20, 10)), QPoint(30, 50), QPoint(25, 95)}) {
            QTest::mouseClick(stage.window->windowHandle(), Qt::LeftButton, {}, place);
            QTest::mouseDClick(stage.window->windowHandle(), Qt::LeftButton, {}, place);
            QVERIFY(stage.box->ListIsOpen());
        }
        QTest::mouseClick(stage.popup()->windowHandle(), Qt::LeftButton, {}, {0, 1}); // its edge
        QVERIFY(stage.box->ListIsOpen());
        QTest::mouseClick(stage.window->windowHandle(), Qt::LeftButton, {}, {10, 50}); // beside the anchor
        QVERIFY(!stage.box->ListIsOpen());
    }

    void aBoxThatCannotBeUsedOpensNoList_data()
    {
        QTest::addColumn<bool>("hidden");
        QTest::newRow("hidden") << true;
        QTest::newRow("disabled") << false;
    }
    void aBoxThatCannotBeUsedOpensNoList()
    {
        QFETCH(bool, hidden);
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(3);
        stage.box->setVisible(!hidden);
        stage.box->setEnabled(hidden);
        stage.box->ShowSuggestions(QString());
        QVERIFY(!stage.box->ListIsOpen());
    }

    void aHandlerThatHidesOrDisablesTheBoxWhileItSearchesGetsNoList()
    {
        for (const bool hide : {false, true}) {
            OpenStage stage;
            QVERIFY(stage.isOpen());
            stage.onEvent = [&](const QString&) {
                if (hide)
                    stage.box->hide();
                else
                    stage.box->setEnabled(false);
            };
            stage.type(u"i"_s);
            QVERIFY(!stage.box->ListIsOpen());
        }
    }

    // Its window

    void theListGoesWithTheBoxIntoAnotherWindow()
    {
        OpenStage stage;
        QVERIFY(stage.isOpen());
        QWidget other;
        other.setGeometry(550, 100, 230, 100);
        stage.box->setParent(&other);
        QVERIFY(!stage.box->ListIsOpen());
        other.show();
        stage.box->show();
        other.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&other));
        stage.box->ShowSuggestions(QString());
        QVERIFY(stage.box->ListIsOpen());
        QVERIFY(!stage.popup());
        QVERIFY(other.findChild<QFrame*>(u"suggestionList"_s));
        stage.box->setParent(stage.window);
    }

    void theOwnerOfTheListIsNamedByItsHandle()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(3);
        auto owner = std::make_unique<QWidget>();
        owner->setGeometry(550, 100, 100, 100);
        stage.box->SetOwnerWindow(static_cast<qint32>(owner->winId()));
        stage.key(Qt::Key_F4);
        QVERIFY(stage.box->ListIsOpen());
        QVERIFY(owner->findChild<QFrame*>(u"suggestionList"_s));
        QVERIFY(!stage.popup());
        owner.reset(); // the owner, and the open list with it, may die before the box
        QVERIFY(!stage.box->ListIsOpen());
        stage.key(Qt::Key_F4);
        QVERIFY(stage.box->ListIsOpen());
        QVERIFY(stage.popup()); // that of the box's own window
    }

    void aHandleThatNamesNoWindowLeavesTheListWithTheBoxsOwn_data()
    {
        QTest::addColumn<int>("handle");
        QTest::newRow("none") << 0;
        QTest::newRow("unknown") << 12345678;
        QTest::newRow("negative") << -1;
    }
    void aHandleThatNamesNoWindowLeavesTheListWithTheBoxsOwn()
    {
        QFETCH(int, handle);
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(3);
        stage.box->SetOwnerWindow(handle);
        stage.key(Qt::Key_F4);
        QCOMPARE(stage.rows(), 3);
        QCOMPARE(stage.popup()->parentWidget(), stage.window);
    }

    void aBoxThatDiesTakesItsListWithIt()
    {
        OpenStage stage;
        QVERIFY(stage.isOpen());
        const QPointer<QWidget> popup = stage.popup();
        delete stage.box;
        QVERIFY(!popup);
        stage.key(Qt::Key_Down); // and nothing of it listens any more
        QTest::mouseClick(stage.window->windowHandle(), Qt::LeftButton, {}, {380, 10});
    }
};

TAVRIN_TEST_MAIN(tst_SearchBoxPlace)
#include "tst_SearchBoxPlace.moc"
