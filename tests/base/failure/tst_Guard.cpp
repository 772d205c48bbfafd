#include "base/failure/Guard.h"
#include "support/TestCase.h"

#include <QTimer>

#include <stdexcept>

using namespace Qt::StringLiterals;
using tavrin::connectGuarded;
using tavrin::Error;
using tavrin::guard;
using tavrin::setUnhandledErrorHandler;
using tavrin::UnhandledErrorHandler;

namespace {

/// Notes what arrives at the handler of unhandled errors, and puts back the one before.
class Unhandled
{
public:
    Unhandled()
        : m_before(setUnhandledErrorHandler([this](const Error& error, const QString& where) {
            texts << u"%1: %2 %3"_s.arg(where).arg(error.Number).arg(error.Description);
        }))
    {
    }
    explicit Unhandled(UnhandledErrorHandler handler)
        : m_before(setUnhandledErrorHandler(std::move(handler)))
    {
    }
    Unhandled(const Unhandled&) = delete;
    Unhandled& operator=(const Unhandled&) = delete;
    ~Unhandled() { setUnhandledErrorHandler(m_before); }

    QStringList texts;

private:
    UnhandledErrorHandler m_before;
};

class Sender : public QObject
{
    Q_OBJECT

Q_SIGNALS:
    void told(const QString& text, int number);
};

} // namespace

class tst_Guard : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void exceptionsOfEveryKindEndInTheHandler()
    {
        Unhandled unhandled;
        guard("ours", [] { throw Error(u"full"_s, Error::OverflowNumber); });
        guard("standard", [] { throw std::runtime_error("caf\xC3\xA9"); });
        guard("number", [] { throw 42; });
        guard("text", [] { throw "abc"; });
        QCOMPARE(unhandled.texts, QStringList({u"ours: 6 full"_s, u"standard: 5 caf\u00E9"_s,
                                               u"number: 5 Unknown error"_s, u"text: 5 Unknown error"_s}));
    }

    void aBodyThatSucceedsRunsOnceAndTellsNothing()
    {
        Unhandled unhandled;
        int runs = 0;
        guard("place", [&] { ++runs; });
        QCOMPARE(runs, 1);
        QCOMPARE(unhandled.texts, QStringList());
    }

    void withoutAHandlerTheFailureIsPrintedAsAWarning()
    {
        const Unhandled none{UnhandledErrorHandler()};
        QTest::ignoreMessage(QtWarningMsg, "Unhandled error in place: full");
        guard("place", [] { throw Error(u"full"_s); });
    }

    void aHandlerThatThrowsDoesNoHarm()
    {
        const Unhandled failing([](const Error&, const QString&) { throw Error(u"worse"_s); });
        QTest::ignoreMessage(QtWarningMsg, "The handler of unhandled errors failed");
        guard("place", [] { throw Error(u"bad"_s); });
        bool reached = false;
        guard("place", [&] { reached = true; });
        QVERIFY(reached);
    }

    void aHandlerMayInstallAnotherOneWhileItRuns()
    {
        Unhandled second;
        const auto recording = setUnhandledErrorHandler({});
        const auto captured = std::make_shared<QString>(u"still there"_s);
        QString seen;
        setUnhandledErrorHandler([&seen, recording, captured](const Error&, const QString&) {
            setUnhandledErrorHandler(recording);
            seen = *captured;
        });
        guard("one", [] { throw Error(u"a"_s); });
        guard("two", [] { throw Error(u"b"_s); });
        QCOMPARE(seen, u"still there"_s);
        QCOMPARE(second.texts, QStringList({u"two: 5 b"_s}));
    }

    void setUnhandledErrorHandlerReturnsTheOneBefore()
    {
        const Unhandled restored;
        int calls = 0;
        setUnhandledErrorHandler([&](const Error&, const QString&) { ++calls; });
        const UnhandledErrorHandler before = setUnhandledErrorHandler({});
        QVERIFY(before != nullptr);
        before(Error(u"a"_s), u"b"_s);
        QCOMPARE(calls, 1);
    }

    void aGuardedConnectionKeepsExceptionsOutOfQt()
    {
        Unhandled unhandled;
        Sender sender;
        QObject context;
        QStringList called;
        connectGuarded(&sender, &Sender::told, &context, "all", [&](const QString& text, int number) {
            called << u"%1 %2"_s.arg(text).arg(number);
            throw Error(text);
        });
        connectGuarded(&sender, &Sender::told, &context, "none", [&] {
            called << u"none"_s;
            throw std::runtime_error("x");
        });
        Q_EMIT sender.told(u"t"_s, 3); // returns: a failure does not keep the slots behind from running
        QCOMPARE(called, QStringList({u"t 3"_s, u"none"_s}));
        QCOMPARE(unhandled.texts, QStringList({u"all: 5 t"_s, u"none: 5 x"_s}));
    }

    void aGuardedConnectionEndsWithItsContext()
    {
        Sender sender;
        int calls = 0;
        {
            QObject context;
            connectGuarded(&sender, &Sender::told, &context, "place", [&] { ++calls; });
            Q_EMIT sender.told({}, 0);
        }
        Q_EMIT sender.told({}, 0);
        QCOMPARE(calls, 1);
    }
};

TAVRIN_TEST_MAIN(tst_Guard)
#include "tst_Guard.moc"
