#include "base/failure/Error.h"
#include "base/failure/Guard.h"
#include "frame/Timer.h"
#include "support/TestCase.h"

#include <QElapsedTimer>
#include <QThread>

using namespace Qt::StringLiterals;
using tavrin::Subscription;
using tavrin::Timer;

namespace {

/// Counts what a timer tells.
class Counter
{
public:
    explicit Counter(Timer& timer)
        : m_keep(timer.Elapsed.subscribe([this] { ++count; }))
    {
    }
    int count = 0;

private:
    Subscription m_keep;
};

/// Lets a whole interval of a timer that was started after all others pass.
bool letPass(int milliseconds)
{
    Timer later;
    later.SetOneShot(true);
    later.SetInterval(milliseconds);
    const Counter counter(later);
    later.Start();
    return QTest::qWaitFor([&] { return counter.count == 1; });
}

} // namespace

class tst_Timer : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aTimerIsStoppedUntilItIsStarted()
    {
        Timer timer;
        const Counter counter(timer);
        timer.SetInterval(1);
        QVERIFY(!timer.isRunning());
        QVERIFY(letPass(20));
        QCOMPARE(counter.count, 0);
    }

    void aOneShotTimerElapsesOnceAndCanBeStartedAgain()
    {
        Timer timer;
        const Counter counter(timer);
        timer.SetOneShot(true);
        timer.SetInterval(5);
        timer.Start();
        QVERIFY(timer.isRunning());
        QCOMPARE(counter.count, 0); // never from within Start
        QTRY_COMPARE(counter.count, 1);
        QVERIFY(!timer.isRunning());
        QVERIFY(letPass(30));
        QCOMPARE(counter.count, 1);
        timer.Start();
        QTRY_COMPARE(counter.count, 2);
    }

    void aRepeatingTimerElapsesUntilItIsStopped()
    {
        Timer timer;
        const Counter counter(timer);
        timer.SetInterval(3);
        timer.Start();
        QTRY_VERIFY(counter.count >= 4);
        QVERIFY(timer.isRunning());
        timer.Stop();
        QVERIFY(!timer.isRunning());
        const int stoppedAt = counter.count;
        QVERIFY(letPass(30));
        QCOMPARE(counter.count, stoppedAt);
    }

    void startOnARunningTimerRestartsTheInterval()
    {
        Timer timer;
        const Counter counter(timer);
        timer.SetOneShot(true);
        timer.SetInterval(60);
        timer.Start();
        // Each time well before the end of the interval; together far more than one.
        QElapsedTimer clock;
        clock.start();
        Timer restarts;
        restarts.SetInterval(5);
        const Subscription keep = restarts.Elapsed.subscribe([&] { timer.Start(); });
        restarts.Start();
        QVERIFY(QTest::qWaitFor([&] { return clock.hasExpired(300); }));
        QCOMPARE(counter.count, 0);
        restarts.Stop();
        QTRY_COMPARE(counter.count, 1);
    }

    void aTimerMayBeStoppedByItsOwnEvent()
    {
        Timer timer;
        const Counter counter(timer);
        timer.SetInterval(1);
        const Subscription stop = timer.Elapsed.subscribe([&] { timer.Stop(); });
        timer.Start();
        QTRY_COMPARE(counter.count, 1);
        QVERIFY(letPass(20));
        QCOMPARE(counter.count, 1);
    }

    void aTimerMayBeDestroyedByItsOwnEventAndWhileItRuns()
    {
        auto timer = std::make_unique<Timer>();
        timer->SetInterval(1);
        bool elapsed = false;
        const Subscription keep = timer->Elapsed.subscribe([&] {
            timer.reset();
            elapsed = true;
        });
        timer->Start();
        QTRY_VERIFY(elapsed);
        int calls = 0;
        Subscription unused;
        {
            Timer brief;
            brief.SetInterval(1);
            unused = brief.Elapsed.subscribe([&] { ++calls; });
            brief.Start();
        }
        QVERIFY(letPass(20));
        QCOMPARE(calls, 0);
    }

    void aHandlersFailureEndsInTheGuardAndTheTimerGoesOn()
    {
        QStringList unhandled;
        const auto before =
            tavrin::setUnhandledErrorHandler([&](const tavrin::Error& error, const QString& where) {
                unhandled << where + u' ' + error.Description;
            });
        const auto restore = qScopeGuard([&] { tavrin::setUnhandledErrorHandler(before); });
        Timer timer;
        timer.SetInterval(1);
        const Subscription keep = timer.Elapsed.subscribe([] { throw tavrin::Error(u"no"_s); });
        timer.Start();
        QTRY_VERIFY(unhandled.size() >= 2);
        QCOMPARE(unhandled.first(), u"Timer_Elapsed no"_s);
    }

    void theEventComesOnTheThreadThatStartedTheTimer()
    {
        Timer timer;
        timer.SetOneShot(true);
        QThread* seen = nullptr;
        const Subscription keep = timer.Elapsed.subscribe([&] { seen = QThread::currentThread(); });
        timer.Start();
        QTRY_COMPARE(seen, QThread::currentThread());
    }
};

TAVRIN_TEST_MAIN(tst_Timer)
#include "tst_Timer.moc"
