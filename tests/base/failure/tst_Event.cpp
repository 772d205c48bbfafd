#include "base/failure/Error.h"
#include "base/failure/Event.h"
#include "support/TestCase.h"

#include <memory>
#include <optional>

using namespace Qt::StringLiterals;
using tavrin::Error;
using tavrin::Event;
using tavrin::Subscription;

namespace {

/// Notes the names of the handlers that were called.
class Calls
{
public:
    std::function<void()> as(const QString& name)
    {
        return [this, name] { m_names << name; };
    }
    QStringList take() { return std::exchange(m_names, {}); }

private:
    QStringList m_names;
};

} // namespace

class tst_Event : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void handlersAreCalledInTheOrderOfTheirSubscription()
    {
        Calls calls;
        Event<> event;
        QVERIFY(!event.hasHandlers());
        event.raise();
        const Subscription first = event.subscribe(calls.as(u"first"_s));
        const Subscription second = event.subscribe(calls.as(u"second"_s));
        const Subscription third = event.subscribe(calls.as(u"third"_s));
        QVERIFY(event.hasHandlers());
        event.raise();
        QCOMPARE(calls.take(), QStringList({u"first"_s, u"second"_s, u"third"_s}));
    }

    void anAnswerByReferenceReachesTheNextHandlerAndTheRaiser()
    {
        Event<const QString&, int&> event;
        QList<int> seen;
        const Subscription first = event.subscribe([&](const QString& name, int& answer) {
            seen << answer;
            answer = static_cast<int>(name.size());
        });
        const Subscription second = event.subscribe([&](const QString&, int& answer) {
            seen << answer;
            answer *= 10;
        });
        int answer = 1;
        event.raise(u"abc"_s, answer);
        QCOMPARE(seen, QList<int>({1, 3}));
        QCOMPARE(answer, 30);
    }

    void anArgumentByValueIsEachHandlersOwn()
    {
        Event<QString> event;
        QStringList seen;
        const auto spoil = [&](QString text) {
            seen << text;
            text += u'!';
        };
        const Subscription first = event.subscribe(spoil);
        const Subscription second = event.subscribe(spoil);
        event.raise(u"a"_s);
        QCOMPARE(seen, QStringList({u"a"_s, u"a"_s}));
    }

    void anExceptionReachesTheRaiserAndTheHandlersBehindAreNotCalled()
    {
        Calls calls;
        Event<> event;
        const Subscription first = event.subscribe(calls.as(u"first"_s));
        std::optional<Subscription> failing =
            event.subscribe([] { throw Error(u"refused"_s, Error::OverflowNumber); });
        const Subscription third = event.subscribe(calls.as(u"third"_s));
        try {
            event.raise();
            QFAIL("no error");
        } catch (const Error& error) {
            QCOMPARE(error.Description, u"refused"_s);
            QCOMPARE(error.Number, Error::OverflowNumber);
        }
        QCOMPARE(calls.take(), QStringList({u"first"_s}));
        failing.reset(); // the event is as good as before
        event.raise();
        QCOMPARE(calls.take(), QStringList({u"first"_s, u"third"_s}));
    }

    void aHandlerMayUnsubscribeItselfWhileItRuns()
    {
        Calls calls;
        Event<> event;
        std::optional<Subscription> once;
        const auto alive = std::make_shared<int>(7);
        once = event.subscribe([&, alive] {
            once.reset();
            calls.as(u"once %1"_s.arg(*alive))(); // what the handler holds is still there
        });
        const Subscription behind = event.subscribe(calls.as(u"behind"_s));
        event.raise();
        QCOMPARE(calls.take(), QStringList({u"once 7"_s, u"behind"_s}));
        event.raise();
        QCOMPARE(calls.take(), QStringList({u"behind"_s}));
    }

    void aHandlerThatAnotherOneUnsubscribesIsNotCalledAnyMoreInThisRaise()
    {
        Calls calls;
        Event<> event;
        Subscription last;
        const Subscription first = event.subscribe([&] {
            calls.as(u"first"_s)();
            last.cancel();
        });
        const Subscription middle = event.subscribe(calls.as(u"middle"_s));
        last = event.subscribe(calls.as(u"last"_s));
        QVERIFY(last.isActive());
        event.raise();
        QCOMPARE(calls.take(), QStringList({u"first"_s, u"middle"_s}));
        QVERIFY(!last.isActive());
    }

    void aHandlerThatIsSubscribedWhileRaisedIsCalledFromTheNextRaiseOn()
    {
        Calls calls;
        Event<> event;
        std::vector<Subscription> more;
        const Subscription first = event.subscribe([&] {
            calls.as(u"first"_s)();
            if (more.empty()) {
                for (int i = 0; i < 100; ++i) // enough to move the list in memory
                    more.push_back(event.subscribe(calls.as(u"more"_s)));
            }
        });
        const Subscription second = event.subscribe(calls.as(u"second"_s));
        event.raise();
        QCOMPARE(calls.take(), QStringList({u"first"_s, u"second"_s}));
        more.resize(1);
        event.raise();
        QCOMPARE(calls.take(), QStringList({u"first"_s, u"second"_s, u"more"_s}));
    }

    void theSenderMayBeDestroyedWhileRaisedAndTheHandlersBehindAreNotCalled()
    {
        Calls calls;
        auto sender = std::make_unique<Event<const QString&>>();
        const Subscription first = sender->subscribe([&](const QString& argument) {
            sender.reset();
            calls.as(argument)();
        });
        const Subscription behind = sender->subscribe([&](const QString&) { calls.as(u"behind"_s)(); });
        sender->raise(u"first"_s);
        QCOMPARE(calls.take(), QStringList({u"first"_s}));
        QVERIFY(!sender);
        QVERIFY(!first.isActive());
        QVERIFY(!behind.isActive());
    }

    void aHandlerMayRaiseAgain()
    {
        Event<int> event;
        QStringList seen;
        const Subscription first = event.subscribe([&](int depth) {
            seen << u"first %1"_s.arg(depth);
            if (depth < 2)
                event.raise(depth + 1);
        });
        const Subscription second = event.subscribe([&](int depth) { seen << u"second %1"_s.arg(depth); });
        event.raise(0);
        QCOMPARE(seen, QStringList({u"first 0"_s, u"first 1"_s, u"first 2"_s, u"second 2"_s, u"second 1"_s,
                                    u"second 0"_s}));
    }

    void aSubscriptionMayOutliveItsEvent()
    {
        Calls calls;
        Subscription kept;
        {
            Event<> event;
            kept = event.subscribe(calls.as(u"kept"_s));
            QVERIFY(kept.isActive());
        }
        QVERIFY(!kept.isActive());
        kept.cancel();
        QCOMPARE(calls.take(), QStringList());
    }

    void anEventMayOutliveItsSubscription()
    {
        Calls calls;
        Event<> event;
        {
            const Subscription brief = event.subscribe(calls.as(u"brief"_s));
        }
        QVERIFY(!event.hasHandlers());
        event.raise();
        QCOMPARE(calls.take(), QStringList());
    }

    void aMovedSubscriptionKeepsItsHandlerAndAnAssignedOneDropsTheOneBefore()
    {
        Calls calls;
        Event<> event;
        Subscription a = event.subscribe(calls.as(u"a"_s));
        Subscription b = event.subscribe(calls.as(u"b"_s));
        Subscription moved(std::move(a));
        event.raise();
        QCOMPARE(calls.take(), QStringList({u"a"_s, u"b"_s}));
        moved = std::move(b);
        event.raise();
        QCOMPARE(calls.take(), QStringList({u"b"_s}));
        Subscription& same = moved;
        moved = std::move(same);
        event.raise();
        QCOMPARE(calls.take(), QStringList({u"b"_s}));
        moved = Subscription();
        event.raise();
        QCOMPARE(calls.take(), QStringList());
    }

    void whatACancelledHandlerHoldsIsReleasedByTheNextSubscription()
    {
        Event<> event;
        const auto held = std::make_shared<int>(0);
        Subscription keep = event.subscribe([held] {});
        QCOMPARE(held.use_count(), 2L);
        keep.cancel();
        keep = event.subscribe([] {});
        QCOMPARE(held.use_count(), 1L);
    }
};

TAVRIN_TEST_MAIN(tst_Event)
#include "tst_Event.moc"
