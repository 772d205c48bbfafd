#include "base/LiveObject.h"
#include "support/TestCase.h"

#include <optional>
#include <thread>

using tavrin::LiveObject;

class tst_LiveObject : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void countsThoseThatExist()
    {
        const int before = LiveObject::count();
        std::optional<LiveObject> one;
        one.emplace();
        {
            const LiveObject other;
            QCOMPARE(LiveObject::count(), before + 2);
        }
        QCOMPARE(LiveObject::count(), before + 1);
        one.emplace(); // in place of the first
        QCOMPARE(LiveObject::count(), before + 1);
        one.reset();
        QCOMPARE(LiveObject::count(), before);
    }

    void countsThoseOfAllThreads()
    {
        const int before = LiveObject::count();
        const LiveObject mine;
        int seen = 0;
        std::thread([&] {
            const LiveObject theirs;
            seen = LiveObject::count();
        }).join();
        QCOMPARE(seen, before + 2);
        QCOMPARE(LiveObject::count(), before + 1);
    }
};

TAVRIN_TEST_MAIN(tst_LiveObject)
#include "tst_LiveObject.moc"
