#include "base/failure/Guard.h"
#include "base/values/Variant.h"
#include "support/ProbeControl.h"
#include "support/TestCase.h"
#include "support/Unhandled.h"

#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QWindow>

using namespace Qt::StringLiterals;
using tavrin::Color;
using tavrin::DesignTime;
using tavrin::Error;
using tavrin::PropertyBag;
using tavrin::test::ProbeControl;
using tavrin::test::Unhandled;

namespace {

/// A window with two probes, each with a line edit in it, and a box that belongs to neither.
struct FocusStage
{
    FocusStage()
        : a(new ProbeControl(&window, {u"a"_s}, &journal))
        , b(new ProbeControl(&window, {u"b"_s}, &journal))
        , outside(new QLineEdit(&window))
        , editA(new QLineEdit(a))
        , secondA(new QLineEdit(a))
        , editB(new QLineEdit(b))
    {
        window.resize(300, 200);
        a->setGeometry(0, 0, 100, 60);
        b->setGeometry(0, 70, 100, 60);
        outside->setGeometry(0, 140, 100, 24);
        secondA->move(0, 30);
        window.show();
        window.activateWindow();
        outside->setFocus();
    }
    bool isReady()
    {
        const bool ready = QTest::qWaitForWindowActive(&window) && outside->hasFocus();
        journal.clear();
        return ready;
    }

    QStringList journal;
    QWidget window;
    ProbeControl* a;
    ProbeControl* b;
    QLineEdit* outside;
    QLineEdit* editA;
    QLineEdit* secondA;
    QLineEdit* editB;
};

/// Three probes that note the focus in journals of their own, and a box that belongs to none of them.
struct FocusRound
{
    static constexpr int Places = 4; ///< the three probes, and the box outside

    FocusRound()
    {
        window.resize(300, 300);
        for (int i = 0; i < Places; ++i) {
            QWidget* parent = &window;
            if (i < Places - 1) {
                probes << new ProbeControl(&window);
                probes.last()->setGeometry(0, i * 60, 100, 50);
                parent = probes.last();
            }
            edits << new QLineEdit(parent);
        }
        edits.last()->move(0, 200);
        window.show();
        window.activateWindow();
    }
    bool isReady() { return QTest::qWaitForWindowActive(&window); }
    /// The focus is there, and nobody has noted anything.
    void start(int place)
    {
        for (ProbeControl* probe : probes)
            probe->during = nullptr;
        edits.at(place)->setFocus();
        for (ProbeControl* probe : probes)
            probe->take();
    }
    QStringList focusEvents(int probe)
    {
        static const QRegularExpression focus(u"^(Enter|Exit)Focus$"_s);
        return probes.at(probe)->journal().filter(focus);
    }
    /// Enter and exit alternate, beginning with the one that is due, and the last says where the focus is.
    bool alternates(int probe, bool wasInside)
    {
        bool inside = wasInside;
        for (const QString& event : focusEvents(probe)) {
            if ((event == u"EnterFocus"_s) == inside)
                return false;
            inside = !inside;
        }
        return inside == edits.at(probe)->hasFocus();
    }

    QWidget window;
    QList<ProbeControl*> probes;
    QList<QLineEdit*> edits;
};

} // namespace

class tst_UserControl : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
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
        QCOMPARE(control->third, tavrin::SystemColor::WindowText);
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

    void theFrameHasABackgroundOfItsOwn()
    {
        QWidget window;
        ProbeControl control(&window);
        QCOMPARE(control.FrameBackColor(), tavrin::SystemColor::ButtonFace);
        control.SetFrameBackColor(Color::rgb(10, 200, 30));
        control.resize(20, 20);
        QCOMPARE(control.grab().toImage().pixelColor(5, 5), QColor(10, 200, 30));
        QCOMPARE(control.ContainerBackColor(), control.ambient().BackColor());
        window.setProperty("BackColor", QVariant::fromValue(Color::rgb(1, 2, 3)));
        QCOMPARE(control.ContainerBackColor(), Color::rgb(1, 2, 3));
    }

    void hidingOrDisablingAControlThatHasTheFocusIsLeavingIt_data()
    {
        QTest::addColumn<bool>("hide");
        QTest::newRow("hide") << true;
        QTest::newRow("disable") << false;
    }
    void hidingOrDisablingAControlThatHasTheFocusIsLeavingIt()
    {
        QFETCH(bool, hide);
        QWidget window;
        auto* control = new ProbeControl(&window);
        auto* box = new QLineEdit(control);
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        box->setFocus();
        QTRY_VERIFY(box->hasFocus());
        control->take();
        hide ? control->hide() : control->setEnabled(false);
        QCOMPARE(control->take().filter(u"ExitFocus"_s).size(), 1);
        hide ? control->show() : control->setEnabled(true);
        box->setFocus();
        QTRY_VERIFY(box->hasFocus());
        QCOMPARE(control->take().filter(u"EnterFocus"_s).size(), 1);
    }

    void anotherContainerTellsItsAmbientValuesAndTheControlsOwnFontTellsNone()
    {
        QWidget one;
        QWidget other;
        auto* control = new ProbeControl(&one);
        control->take();
        control->setFont(QFont(u"Tavrin Sans"_s, 31));
        control->setPalette(QPalette(QColor(1, 2, 3)));
        QCOMPARE(control->take().filter(u"AmbientChanged"_s), QStringList());
        control->setParent(&other);
        QCOMPARE(control->take().filter(u"AmbientChanged"_s),
                 QStringList({u"AmbientChanged Font"_s, u"AmbientChanged BackColor"_s,
                              u"AmbientChanged ScaleUnits"_s}));
    }

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
        QCOMPARE(ProbeControl::ScaleX(1500, tavrin::ScaleMode::Twips, tavrin::ScaleMode::Pixels), 100.0F);
        QCOMPARE(ProbeControl::ScaleX(2, tavrin::ScaleMode::Characters, tavrin::ScaleMode::Twips), 240.0F);
        QCOMPARE(ProbeControl::ScaleY(2, tavrin::ScaleMode::Characters, tavrin::ScaleMode::Twips), 480.0F);
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

    void ambientChangedNamesWhatChanged_data()
    {
        QTest::addColumn<std::function<void(QWidget&, ProbeControl&)>>("change");
        QTest::addColumn<QString>("name");
        using Change = std::function<void(QWidget&, ProbeControl&)>;
        QTest::newRow("name of the instance")
            << Change([](QWidget&, ProbeControl& control) { control.setObjectName(u"other"_s); })
            << u"DisplayName"_s;
        QTest::newRow("font of the container")
            << Change([](QWidget& window, ProbeControl&) { window.setFont(QFont(u"Tavrin Sans"_s, 31)); })
            << u"Font"_s;
        QTest::newRow("colour of the container") << Change([](QWidget& window, ProbeControl&) {
            window.setProperty("BackColor", QVariant::fromValue(Color(5)));
        }) << u"BackColor"_s;
        QTest::newRow("palette of the container")
            << Change([](QWidget& window, ProbeControl&) { window.setPalette(QPalette(QColor(1, 2, 3))); })
            << u"BackColor"_s;
        QTest::newRow("unit of the container")
            << Change([](QWidget& window, ProbeControl&) { window.setProperty("ScaleUnits", u"Pixel"_s); })
            << u"ScaleUnits"_s;
    }
    void ambientChangedNamesWhatChanged()
    {
        QFETCH(std::function<void(QWidget&, ProbeControl&)>, change);
        QFETCH(QString, name);
        QWidget window;
        auto* control = new ProbeControl(&window, {u"name"_s});
        window.show();
        control->take();
        change(window, *control);
        QCOMPARE(control->take().filter(u"AmbientChanged"_s), QStringList(u"AmbientChanged "_s + name));
        window.setProperty("Unrelated", 5);
        QCOMPARE(control->take(), QStringList());
    }

    void theColourIsFollowedWhereverItComesFrom()
    {
        QWidget window;
        QWidget other;
        auto* outer = new QWidget(&window);
        auto* container = new QWidget(outer);
        auto* control = new ProbeControl(container);
        window.show();
        control->take();
        const auto told = [control] { return control->take().filter(u"AmbientChanged"_s); };
        const QStringList once{u"AmbientChanged BackColor"_s};
        const auto windowOf = [](const QColor& color) {
            QPalette palette;
            palette.setColor(QPalette::Window, color);
            return palette;
        };

        window.setPalette(windowOf(Qt::red));
        QCOMPARE(told(), once);
        QCOMPARE(control->ambient().BackColor(), Color::rgb(255, 0, 0));
        window.setPalette(windowOf(Qt::red));
        QCOMPARE(told(), QStringList()); // it is the same
        container->setPalette(windowOf(Qt::green));
        QCOMPARE(told(), QStringList()); // it is looked through
        window.setPalette(windowOf(Qt::blue));
        QCOMPARE(told(), once);
        outer->setProperty("BackColor", QColor(1, 2, 3));
        QCOMPARE(told(), once);
        QCOMPARE(control->ambient().BackColor(), Color::rgb(1, 2, 3));
        container->setProperty("BackColor", 0x30201);
        QCOMPARE(told(), once);
        outer->setProperty("BackColor", QColor(7, 8, 9));
        QCOMPARE(told(), QStringList());
        container->setProperty("BackColor", QVariant());
        QCOMPARE(told(), once);
        QCOMPARE(control->ambient().BackColor(), Color::rgb(7, 8, 9));

        other.setPalette(windowOf(Qt::yellow));
        container->setParent(&other);
        QCOMPARE(told(), once);
        QCOMPARE(control->ambient().BackColor(), Color::rgb(255, 255, 0));
        window.setPalette(windowOf(Qt::cyan));
        outer->setProperty("BackColor", QColor(4, 5, 6));
        QCOMPARE(told(), QStringList()); // it stands there no more
        other.setPalette(windowOf(Qt::magenta));
        QCOMPARE(told(), once);
    }

    void anotherThemeTellsItsColourAlthoughItIsStillTheSystems()
    {
        const QPalette before = QApplication::palette();
        const auto restore = qScopeGuard([&before] { QApplication::setPalette(before); });
        QWidget window;
        auto* control = new ProbeControl(&window);
        window.show();
        control->take();
        QApplication::setPalette(QPalette(QColor(40, 50, 60)));
        QTRY_COMPARE(control->journal().filter(u"AmbientChanged"_s),
                     QStringList({u"AmbientChanged BackColor"_s}));
        QCOMPARE(control->ambient().BackColor(), tavrin::SystemColor::ButtonFace);
    }

    void aFollowerOfAnAmbientValueMayDeleteTheControl_data()
    {
        QTest::addColumn<int>("cause");
        QTest::newRow("colour") << 0;
        QTest::newRow("font") << 1;
        QTest::newRow("colour further down") << 2;
        QTest::newRow("another place of the container") << 3;
    }
    void aFollowerOfAnAmbientValueMayDeleteTheControl()
    {
        QFETCH(int, cause);
        QWidget window;
        QWidget other;
        other.setProperty("BackColor", QColor(7, 8, 9));
        auto* container = new QWidget(&window);
        QPointer<ProbeControl> control(new ProbeControl(container));
        auto* second = new ProbeControl(container);
        control->during = [&control](const QString& what) {
            if (what.startsWith(u"AmbientChanged"_s))
                delete control;
        };
        if (cause == 0)
            container->setProperty("BackColor", QColor(1, 2, 3));
        else if (cause == 1)
            container->setFont(QFont(u"Tavrin Sans"_s, 31));
        else if (cause == 2)
            window.setProperty("BackColor", QColor(1, 2, 3));
        else
            container->setParent(&other);
        QVERIFY(!control);
        QCOMPARE(second->take().filter(u"AmbientChanged"_s).size(), 1);
    }

    void aFrameThatTakesTheContainersColourLetsItBeSeen()
    {
        QWidget window;
        window.resize(60, 40);
        auto* container = new QWidget(&window);
        container->resize(60, 40);
        auto* control = new ProbeControl(container);
        control->resize(20, 20);
        const auto seen = [&window] { return window.grab().toImage().pixelColor(5, 5); };
        const auto windowOf = [](const QColor& color) {
            QPalette palette;
            palette.setColor(QPalette::Window, color);
            return palette;
        };
        window.setPalette(windowOf(Qt::red));
        container->setPalette(windowOf(Qt::green));
        control->TakeContainerBackColor();
        QCOMPARE(control->FrameBackColor(), Color::rgb(255, 0, 0));
        QCOMPARE(seen(), QColor(Qt::red));
        container->setAutoFillBackground(true); // of which Qt tells nobody
        QCOMPARE(seen(), QColor(Qt::green));
        container->setProperty("BackColor", QColor(1, 2, 3)); // what is offered is taken at its word
        control->TakeContainerBackColor();
        QCOMPARE(control->FrameBackColor(), Color::rgb(1, 2, 3));
        QCOMPARE(seen(), QColor(1, 2, 3));
        container->setProperty("BackColor", QVariant());
        control->TakeContainerBackColor();
        QCOMPARE(seen(), QColor(Qt::green));
    }

    void ambientChangedFollowsTheControlToAnotherContainer()
    {
        QWidget first;
        QWidget second;
        auto* control = new ProbeControl(&first);
        control->setParent(&second);
        control->take();
        first.setProperty("ScaleUnits", u"Pixel"_s);
        QCOMPARE(control->take(), QStringList());
        second.setProperty("ScaleUnits", u"Pixel"_s);
        QCOMPARE(control->take(), QStringList({u"AmbientChanged ScaleUnits"_s}));
    }

    void theInstanceHasItsNameFromTheStartWithoutAnEvent()
    {
        ProbeControl control(nullptr, {u"Weapon"_s});
        QCOMPARE(control.ambient().DisplayName(), u"Weapon"_s);
        QCOMPARE(control.take(), QStringList({u"Initialize"_s, u"InitProperties"_s}));
    }

    void focusEntersAndLeavesEachControlOnceWhicheverConstituentHasIt()
    {
        FocusStage stage;
        QVERIFY(stage.isReady());
        stage.editA->setFocus();
        QCOMPARE(std::exchange(stage.journal, {}), QStringList({u"EnterFocus"_s}));
        stage.secondA->setFocus(); // from one constituent to the other
        QCOMPARE(std::exchange(stage.journal, {}), QStringList());
        stage.a->setFocus(); // to the frame itself
        QCOMPARE(std::exchange(stage.journal, {}), QStringList());
        stage.editA->setFocus();
        QCOMPARE(std::exchange(stage.journal, {}), QStringList({u"LostFocus"_s})); // the frame's own
        stage.outside->setFocus();
        QCOMPARE(std::exchange(stage.journal, {}), QStringList({u"ExitFocus"_s}));
    }

    void theFocusLeavesOneControlBeforeItEntersTheOther_data()
    {
        QTest::addColumn<bool>("fromTheFirst");
        QTest::newRow("to the one made later") << true;
        QTest::newRow("to the one made earlier") << false;
    }
    void theFocusLeavesOneControlBeforeItEntersTheOther()
    {
        QFETCH(bool, fromTheFirst);
        FocusStage stage;
        QVERIFY(stage.isReady());
        QLineEdit* from = fromTheFirst ? stage.editA : stage.editB;
        QLineEdit* to = fromTheFirst ? stage.editB : stage.editA;
        from->setFocus();
        stage.journal.clear();
        to->setFocus();
        QCOMPARE(std::exchange(stage.journal, {}), QStringList({u"ExitFocus"_s, u"EnterFocus"_s}));
    }

    void aFocusThatAFollowerHasSentBackBeforeTheControlsHeardOfItIsNoFocus()
    {
        FocusRound* round = nullptr;
        int sentBack = 0;
        QObject host;
        // Before the controls, and so told before them.
        connect(qApp, &QApplication::focusChanged, &host, [&](const QWidget*, const QWidget* now) {
            if (round && now == round->edits.at(1)) {
                ++sentBack;
                round->edits.at(0)->setFocus();
            }
        });
        FocusRound stage;
        QVERIFY(stage.isReady());
        stage.start(0);
        round = &stage;
        stage.edits.at(1)->setFocus();
        QCOMPARE(sentBack, 1);
        QVERIFY(stage.edits.at(0)->hasFocus());
        QCOMPARE(stage.focusEvents(0), QStringList()); // it never left
        QCOMPARE(stage.focusEvents(1), QStringList()); // it never came
        stage.edits.at(3)->setFocus();
        QCOMPARE(stage.focusEvents(0), QStringList({u"ExitFocus"_s}));
        stage.edits.at(1)->setFocus(); // sent on to the first once more, from outside
        QCOMPARE(stage.focusEvents(0), QStringList({u"ExitFocus"_s, u"EnterFocus"_s}));
        QCOMPARE(stage.focusEvents(1), QStringList());
        round = nullptr;
    }

    void anExitThatTakesTheFocusBackLetsItEnterNobodyElse_data()
    {
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("to");
        QTest::newRow("from the one made first") << 0 << 1;
        QTest::newRow("from the one made later") << 1 << 0;
    }
    void anExitThatTakesTheFocusBackLetsItEnterNobodyElse()
    {
        QFETCH(int, from);
        QFETCH(int, to);
        FocusRound stage;
        QVERIFY(stage.isReady());
        stage.start(from);
        stage.probes.at(from)->during = [&](const QString& event) {
            if (event == u"ExitFocus"_s)
                stage.edits.at(from)->setFocus();
        };
        stage.edits.at(to)->setFocus();
        QVERIFY(stage.edits.at(from)->hasFocus());
        QCOMPARE(stage.focusEvents(from), QStringList({u"ExitFocus"_s, u"EnterFocus"_s}));
        QCOMPARE(stage.focusEvents(to), QStringList());
        stage.probes.at(from)->during = nullptr;
    }

    void anExitThatSendsTheFocusRoundAndOnEntersOnce()
    {
        FocusRound stage;
        QVERIFY(stage.isReady());
        stage.start(1);
        stage.probes.at(1)->during = [&](const QString& event) {
            if (event == u"ExitFocus"_s) {
                stage.edits.at(3)->setFocus();
                stage.edits.at(0)->setFocus();
            }
        };
        stage.edits.at(0)->setFocus();
        QVERIFY(stage.edits.at(0)->hasFocus());
        QCOMPARE(stage.focusEvents(0), QStringList({u"EnterFocus"_s}));
        QCOMPARE(stage.focusEvents(1), QStringList({u"ExitFocus"_s}));
        stage.probes.at(1)->during = nullptr;
    }

    void aControlInAControlIsEnteredAndLeftForItself()
    {
        FocusRound stage;
        QVERIFY(stage.isReady());
        stage.start(3);
        ProbeControl* outer = stage.probes.at(0);
        auto* inner = new ProbeControl(outer);
        auto* first = new QLineEdit(inner);
        auto* second = new QLineEdit(inner);
        inner->show();
        inner->take();
        first->setFocus();
        second->setFocus(); // within both
        QCOMPARE(stage.focusEvents(0), QStringList({u"EnterFocus"_s}));
        QCOMPARE(inner->take().filter(u"Focus"_s), QStringList({u"EnterFocus"_s}));
        stage.edits.at(0)->setFocus(); // within the outer one
        QCOMPARE(stage.focusEvents(0), QStringList({u"EnterFocus"_s}));
        QCOMPARE(inner->take().filter(u"Focus"_s), QStringList({u"ExitFocus"_s}));
        stage.edits.at(1)->setFocus();
        QCOMPARE(stage.focusEvents(0), QStringList({u"EnterFocus"_s, u"ExitFocus"_s}));
        QCOMPARE(inner->take().filter(u"Focus"_s), QStringList());
    }

    void enterAndExitAlternateWhoeverSendsTheFocusOn()
    {
        FocusRound stage;
        QVERIFY(stage.isReady());
        constexpr int Places = FocusRound::Places;
        constexpr int Turns = 2 * (Places - 1) * Places * Places * Places;
        for (int turn = 0; turn < Turns; ++turn) {
            const int from = turn % Places;
            const int to = turn / Places % Places;
            const int target = turn / (Places * Places) % Places;
            const int sender = turn / (Places * Places * Places) % (Places - 1);
            const QString event = turn < Turns / 2 ? u"EnterFocus"_s : u"ExitFocus"_s;
            stage.start(from);
            stage.probes.at(sender)->during = [&, sent = false](const QString& told) mutable {
                if (told == event && !std::exchange(sent, true))
                    stage.edits.at(target)->setFocus();
            };
            stage.edits.at(to)->setFocus();
            for (int probe = 0; probe < stage.probes.size(); ++probe) {
                const QString told = stage.focusEvents(probe).join(u", "_s);
                QVERIFY2(
                    stage.alternates(probe, probe == from),
                    qPrintable(u"from %1 to %2, %3 of %4 sends it to %5: %6 hears %7"_s.arg(from).arg(to).arg(
                        event, QString::number(sender), QString::number(target), QString::number(probe),
                        told)));
            }
        }
        stage.start(3);
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

    void aFailingExitDoesNotKeepTheOtherControlFromTheFocus()
    {
        Unhandled unhandled;
        FocusStage stage;
        QVERIFY(stage.isReady());
        stage.editB->setFocus();
        stage.b->failing = {u"ExitFocus"_s};
        stage.journal.clear();
        stage.editA->setFocus();
        QCOMPARE(stage.journal, QStringList({u"ExitFocus"_s, u"EnterFocus"_s}));
        QCOMPARE(unhandled.texts, QStringList({u"UserControl_Focus: ExitFocus failed"_s}));
        stage.outside->setFocus();
        QCOMPARE(stage.journal, QStringList({u"ExitFocus"_s, u"EnterFocus"_s, u"ExitFocus"_s}));
    }

    void aDialogThatHasTheFocusForAWhileDoesNotCountAsLeaving()
    {
        FocusStage stage;
        QVERIFY(stage.isReady());
        stage.editA->setFocus();
        stage.journal.clear();
        QDialog dialog(&stage.window);
        auto* edit = new QLineEdit(&dialog);
        dialog.show();
        dialog.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        edit->setFocus();
        QTRY_VERIFY(edit->hasFocus());
        dialog.close();
        stage.window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&stage.window));
        QTRY_VERIFY(stage.editA->hasFocus());
        QCOMPARE(stage.journal, QStringList());
    }

    void aWindowThatIsLeftAndCameBackDoesNotCountAsLeaving()
    {
        FocusStage stage;
        QVERIFY(stage.isReady());
        stage.editA->setFocus();
        stage.journal.clear();
        {
            QWidget other;
            other.show();
            other.activateWindow();
            QVERIFY(QTest::qWaitForWindowActive(&other));
            QVERIFY(!stage.editA->hasFocus());
        }
        stage.window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&stage.window));
        QTRY_VERIFY(stage.editA->hasFocus());
        QCOMPARE(stage.journal, QStringList());
        stage.outside->setFocus();
        QCOMPARE(stage.journal, QStringList({u"ExitFocus"_s}));
    }

    void aControlThatIsDestroyedWithTheFocusTellsNothingMore()
    {
        FocusStage stage;
        QVERIFY(stage.isReady());
        stage.editA->setFocus();
        stage.journal.clear();
        delete stage.a;
        stage.editB->setFocus();
        QCOMPARE(stage.journal, QStringList({u"Terminate"_s, u"EnterFocus"_s}));
    }

    void keyDownIsForTheFrameItselfOnly()
    {
        FocusStage stage;
        QVERIFY(stage.isReady());
        stage.a->setFocus();
        QTest::keyClick(stage.window.windowHandle(), Qt::Key_Down, Qt::ShiftModifier);
        QCOMPARE(std::exchange(stage.journal, {}).filter(u"KeyDown"_s), QStringList({u"KeyDown 40 1"_s}));
        stage.editA->setFocus();
        QTest::keyClick(stage.window.windowHandle(), Qt::Key_A);    // the constituent takes it
        QTest::keyClick(stage.window.windowHandle(), Qt::Key_Down); // the constituent leaves it alone
        QCOMPARE(stage.journal.filter(u"KeyDown"_s), QStringList());
    }

    void keyDownIsNotForAConstituentThatStandsInForTheFrame()
    {
        FocusStage stage;
        QVERIFY(stage.isReady());
        stage.a->setFocusProxy(stage.editA);
        stage.a->setFocus();
        QVERIFY(stage.editA->hasFocus());
        QTest::keyClick(stage.window.windowHandle(), Qt::Key_Down);
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

    void theModeIsFixedWhenTheControlIsMade()
    {
        const ProbeControl before;
        QVERIFY(before.ambient().UserMode());
        {
            const DesignTime designing;
            const ProbeControl control;
            QVERIFY(!control.ambient().UserMode());
            QVERIFY(before.ambient().UserMode());
            {
                const DesignTime nested;
            }
            QVERIFY(DesignTime::isActive());
        }
        QVERIFY(!DesignTime::isActive());
        QVERIFY(ProbeControl().ambient().UserMode());
    }
};

TAVRIN_TEST_MAIN(tst_UserControl)
#include "tst_UserControl.moc"
