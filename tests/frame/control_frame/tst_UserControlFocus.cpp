#include "frame/control_frame/FocusStage.h"
#include "support/ProbeControl.h"
#include "support/TestCase.h"
#include "testing/Unhandled.h"

#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QRegularExpression>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

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

/// Entering and leaving a control, whoever sends the focus on.
class tst_UserControlFocus : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // Entering and leaving

    void focusEntersAndLeavesEachControlOnceWhicheverConstituentHasIt()
    {
        FocusStage stage;
        QVERIFY(stage.isReady());
        stage.editA->setFocus();
        QCOMPARE(stage.take(), QStringList({u"EnterFocus"_s}));
        stage.secondA->setFocus(); // from one constituent to the other
        QCOMPARE(stage.take(), QStringList());
        stage.a->setFocus(); // to the frame itself
        QCOMPARE(stage.take(), QStringList());
        stage.editA->setFocus();
        QCOMPARE(stage.take(), QStringList({u"LostFocus"_s})); // the frame's own
        stage.outside->setFocus();
        QCOMPARE(stage.take(), QStringList({u"ExitFocus"_s}));
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
        QCOMPARE(stage.take(), QStringList({u"ExitFocus"_s, u"EnterFocus"_s}));
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

    // Other windows

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

    // Followers that send the focus on

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
};

TAVRIN_TEST_MAIN(tst_UserControlFocus)
#include "tst_UserControlFocus.moc"
