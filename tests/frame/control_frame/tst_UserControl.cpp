#include "frame/control_frame/FocusStage.h"
#include "support/ProbeControl.h"
#include "support/TestCase.h"
#include "testing/Unhandled.h"

#include <QLineEdit>
#include <QWindow>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

/// A control's life, its size, its keys and its mouse.
class tst_UserControl : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // Life

    void aNewControlsLifeHasItsOrder()
    {
        QStringList journal;
        {
            QWidget window;
            auto* control = new ProbeControl(&window, {}, &journal);
            QCOMPARE(journal, QStringList({u"Initialize"_s, u"InitProperties"_s}));
            control->resize(120, 30);
            window.show();
            QCOMPARE(journal, QStringList({u"Initialize"_s, u"InitProperties"_s, u"Resize"_s, u"Show"_s}));
            journal.clear();
            control->resize(130, 30);
            QCOMPARE(journal, QStringList({u"Resize"_s}));
            window.hide();
        }
        QCOMPARE(journal, QStringList({u"Resize"_s, u"Hide"_s, u"Terminate"_s}));
    }

    void aSavedControlsLifeHasReadPropertiesInPlaceOfInitProperties()
    {
        QStringList journal;
        PropertyBag bag;
        bag.WriteProperty(u"first"_s, 5, 0);
        QWidget window;
        const auto* control = new ProbeControl(&window, {u"n"_s, &bag}, &journal);
        window.show();
        QCOMPARE(journal, QStringList({u"Initialize"_s, u"ReadProperties"_s, u"put First"_s, u"put Second"_s,
                                       u"put Third"_s, u"Resize"_s, u"Show"_s}));
        QCOMPARE(control->first, 5);
        QCOMPARE(control->second, u"two"_s); // the default, put by the setter
        QCOMPARE(control->third, SystemColor::WindowText);
    }

    void hideAndShowComeAtEachTurn()
    {
        QWidget window;
        auto* control = new ProbeControl(&window);
        window.show();
        control->take();
        control->hide();
        QCOMPARE(control->take(), QStringList({u"Hide"_s}));
        control->show();
        QCOMPARE(control->take(), QStringList({u"Show"_s}));
        window.hide();
        QCOMPARE(control->take(), QStringList({u"Hide"_s}));
    }

    void minimisingAndRestoringTheWindowHidesAndShowsNoControl()
    {
        QWidget window;
        auto* control = new ProbeControl(&window);
        auto* edit = new QLineEdit(control);
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        edit->setFocus();
        struct : QObject
        {
            int hides = 0;
            int shows = 0;
            bool eventFilter(QObject*, QEvent* event) override
            {
                hides += event->type() == QEvent::Hide && event->spontaneous();
                shows += event->type() == QEvent::Show && event->spontaneous();
                return false;
            }
        } platform;
        control->installEventFilter(&platform);
        control->take();
        window.showMinimized();
        QTRY_COMPARE(platform.hides, 1); // the window system's hide, not the form's
        window.showNormal();
        QTRY_COMPARE(platform.shows, 1);
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        QTRY_VERIFY(edit->hasFocus());
        QCOMPARE(control->take(), QStringList());
    }

    void noFailureOfAHandlerLeavesThroughQt()
    {
        Unhandled unhandled;
        QWidget window;
        window.resize(200, 100);
        auto* control = new ProbeControl(&window, {u"n"_s});
        control->failing = {u"Resize"_s,
                            u"Show"_s,
                            u"Hide"_s,
                            u"AmbientChanged ScaleUnits"_s,
                            u"LostFocus"_s,
                            u"EnterFocus"_s,
                            u"ExitFocus"_s,
                            u"KeyDown 40 0"_s,
                            u"MouseUp 1 0 450 600"_s,
                            u"AmbientChanged DisplayName"_s};
        control->resize(100, 50);
        auto* outside = new QLineEdit(&window);
        outside->move(0, 60);
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        outside->setFocus();
        control->setFocus();
        QTest::keyClick(window.windowHandle(), Qt::Key_Down);
        QTest::mouseClick(control, Qt::LeftButton, {}, {30, 40});
        outside->setFocus();
        window.setProperty("ScaleUnits", u"Pixel"_s);
        control->setObjectName(u"m"_s);
        control->hide();
        QCOMPARE(unhandled.texts,
                 QStringList({u"UserControl_Resize: Resize failed"_s, u"UserControl_Show: Show failed"_s,
                              u"UserControl_Focus: EnterFocus failed"_s,
                              u"UserControl_KeyDown: KeyDown 40 0 failed"_s,
                              u"UserControl_MouseUp: MouseUp 1 0 450 600 failed"_s,
                              u"UserControl_LostFocus: LostFocus failed"_s,
                              u"UserControl_Focus: ExitFocus failed"_s,
                              u"UserControl_AmbientChanged: AmbientChanged ScaleUnits failed"_s,
                              u"UserControl_AmbientChanged: AmbientChanged DisplayName failed"_s,
                              u"UserControl_Hide: Hide failed"_s}));
    }

    void aResizeThatFailsReachesNobodyButTheHandlerOfUnhandledErrors()
    {
        Unhandled unhandled;
        QWidget window;
        auto* control = new ProbeControl(&window);
        control->failing = {u"Resize"_s};
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QCOMPARE(unhandled.texts.filter(u"Resize"_s).size(), 1);
    }

    // Size and parts

    void sizesAreTwips()
    {
        QWidget window;
        ProbeControl control(&window);
        control.Size(1500, 300);
        QCOMPARE(control.size(), QSize(100, 20));
        control.SetWidth(1508); // to the nearest pixel
        QCOMPARE(control.width(), 101);
        QCOMPARE(control.height(), 20);
        control.SetHeight(322);
        QCOMPARE(control.size(), QSize(101, 21));
        QCOMPARE(control.Width(), 1515.0F);
        QCOMPARE(control.Height(), 315.0F);
        control.setContentsMargins(2, 3, 4, 5);
        QCOMPARE(control.ScaleWidth(), 1425.0F);
        QCOMPARE(control.ScaleHeight(), 195.0F);
        QCOMPARE(ProbeControl::ScaleX(1500, ScaleMode::Twips, ScaleMode::Pixels), 100.0F);
        QCOMPARE(ProbeControl::ScaleX(2, ScaleMode::Characters, ScaleMode::Twips), 240.0F);
        QCOMPARE(ProbeControl::ScaleY(2, ScaleMode::Characters, ScaleMode::Twips), 480.0F);
    }

    void theConstituentsAreItsDirectChildren()
    {
        ProbeControl control;
        auto* first = new QWidget(&control);
        auto* second = new QLineEdit(&control);
        new QWidget(first);
        QCOMPARE(control.Controls(), QList<QWidget*>({first, second}));
    }

    void theHandleIsThatOfItsWindowAndMakesNoNativeRelatives()
    {
        QWidget window;
        ProbeControl control(&window);
        auto* sibling = new QWidget(&window);
        window.show();
        QCOMPARE(control.hWnd(), static_cast<qint32>(window.winId()));
        QVERIFY(!control.testAttribute(Qt::WA_NativeWindow));
        QVERIFY(!sibling->testAttribute(Qt::WA_NativeWindow));
    }

    void theTypeNameIsTheClassNameWithoutNamespace()
    {
        const ProbeControl control;
        QCOMPARE(control.typeName(), u"ProbeControl"_s);
    }

    // Keys and mouse

    void keyDownIsForTheFrameItselfOnly()
    {
        FocusStage stage;
        QVERIFY(stage.isReady());
        stage.a->setFocus();
        stage.press(Qt::Key_Down, Qt::ShiftModifier);
        QCOMPARE(stage.take().filter(u"KeyDown"_s), QStringList({u"KeyDown 40 1"_s}));
        stage.editA->setFocus();
        stage.press(Qt::Key_A);    // the constituent takes it
        stage.press(Qt::Key_Down); // the constituent leaves it alone
        QCOMPARE(stage.journal.filter(u"KeyDown"_s), QStringList());
    }

    void keyDownIsNotForAConstituentThatStandsInForTheFrame()
    {
        FocusStage stage;
        QVERIFY(stage.isReady());
        stage.a->setFocusProxy(stage.editA);
        stage.a->setFocus();
        QVERIFY(stage.editA->hasFocus());
        stage.press(Qt::Key_Down);
        QCOMPARE(stage.journal.filter(u"KeyDown"_s), QStringList());
    }

    void aKeyThatTheFrameSwallowsGoesNoFurther()
    {
        class Window : public QWidget
        {
        public:
            QList<int> keys;

        protected:
            void keyPressEvent(QKeyEvent* event) override { keys << event->key(); }
        } window;
        auto* control = new ProbeControl(&window);
        control->swallowedKey = 40;
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        control->setFocus();
        QTest::keyClick(control, Qt::Key_Down);
        QTest::keyClick(control, Qt::Key_Up);
        QCOMPARE(control->take().filter(u"KeyDown"_s), QStringList({u"KeyDown 40 0"_s, u"KeyDown 38 0"_s}));
        QCOMPARE(window.keys, QList<int>({Qt::Key_Up}));
    }

    void mouseUpIsForTheBareSurfaceOnlyAndItsPlaceIsInTwips()
    {
        QWidget window;
        window.resize(200, 100);
        auto* control = new ProbeControl(&window);
        control->resize(100, 50);
        auto* constituent = new QWidget(control); // leaves the mouse alone
        constituent->setGeometry(0, 0, 20, 20);
        window.show();
        control->take();
        QTest::mouseClick(control, Qt::LeftButton, Qt::ControlModifier, {30, 40});
        QCOMPARE(control->take(), QStringList({u"MouseUp 1 2 450 600"_s}));
        QTest::mouseClick(control, Qt::RightButton, {}, {99, 1});
        QTest::mouseClick(control, Qt::MiddleButton, Qt::ShiftModifier, {30, 40});
        QCOMPARE(control->take(), QStringList({u"MouseUp 2 0 1485 15"_s, u"MouseUp 4 1 450 600"_s}));
        QTest::mouseClick(constituent, Qt::LeftButton, {}, {5, 5});
        QCOMPARE(control->take(), QStringList());
        QTest::mousePress(control, Qt::LeftButton, {}, {30, 40});
        QCOMPARE(control->take(), QStringList()); // not before the button is up
        QTest::mouseRelease(control, Qt::LeftButton, {}, {30, 40});
        QCOMPARE(control->take(), QStringList({u"MouseUp 1 0 450 600"_s}));
    }
};

TAVRIN_TEST_MAIN(tst_UserControl)
#include "tst_UserControl.moc"
