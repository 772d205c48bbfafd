#include "base/LiveObject.h"
#include "frame/Timer.h"
#include "support/ProbeControl.h"
#include "support/TestCase.h"
#include "widgets/lists/PopupFrame.h"
#include "widgets/panels/Form.h"

#include <QFrame>

#include <memory>

using tavrin::Form;
using tavrin::LiveObject;
using tavrin::Timer;
using tavrin::test::ProbeControl;

/// What counts as living of the library.
class tst_LiveControls : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init() override
    {
        failOnUnexpectedWarnings();
        m_before = LiveObject::count();
    }

    void aControlLivesUntilItsParentDeletesIt()
    {
        auto parent = std::make_unique<QWidget>();
        new ProbeControl(parent.get());
        QCOMPARE(living(), 1);
        parent.reset();
        QCOMPARE(living(), 0);
    }

    void aControlThatIsDeletedLaterLivesUntilThen()
    {
        auto* control = new ProbeControl(nullptr);
        control->deleteLater();
        QCOMPARE(living(), 1);
        QCoreApplication::sendPostedEvents(control, QEvent::DeferredDelete);
        QCOMPARE(living(), 0);
    }

    void aDialogLivesAlsoWhileItIsHidden()
    {
        auto form = std::make_unique<Form>();
        QCOMPARE(living(), 1);
        form.reset();
        QCOMPARE(living(), 0);
    }

    void aPopupThatOutlivesItsOwnerLivesUntilItIsGone()
    {
        QWidget owner;
        QFrame* popup = tavrin::newPopupFrame(&owner);
        QCOMPARE(living(), 1);
        tavrin::endPopup(popup, true);
        QCOMPARE(living(), 1);
        QCoreApplication::sendPostedEvents(popup, QEvent::DeferredDelete);
        QCOMPARE(living(), 0);
    }

    void aTimerLivesWhileItRuns()
    {
        Timer timer;
        timer.SetInterval(60000);
        QCOMPARE(living(), 0);
        timer.Start();
        timer.Start();
        QCOMPARE(living(), 1);
        timer.Stop();
        timer.Stop();
        QCOMPARE(living(), 0);
    }

    void aTimerThatIsDestroyedWhileItRunsLivesNoMore()
    {
        auto timer = std::make_unique<Timer>();
        timer->SetInterval(60000);
        timer->Start();
        QCOMPARE(living(), 1);
        timer.reset();
        QCOMPARE(living(), 0);
    }

    void aOneShotTimerLivesUntilItHasElapsed()
    {
        Timer timer;
        timer.SetOneShot(true);
        timer.SetInterval(1);
        int inside = -1;
        const auto kept = timer.Elapsed.subscribe([&] { inside = living(); });
        timer.Start();
        QCOMPARE(living(), 1);
        QTRY_COMPARE(inside, 0);
    }

    void aRepeatingTimerLivesOnBehindItsFirstTime()
    {
        Timer timer;
        timer.SetInterval(1);
        int times = 0;
        const auto kept = timer.Elapsed.subscribe([&] { ++times; });
        timer.Start();
        QTRY_VERIFY(times > 0);
        QCOMPARE(living(), 1);
    }

private:
    int living() const { return LiveObject::count() - m_before; }

    int m_before = 0;
};

TAVRIN_TEST_MAIN(tst_LiveControls)
#include "tst_LiveControls.moc"
