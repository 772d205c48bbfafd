#include "frame/control_frame/FailurePolicy.h"
#include "support/RaisedError.h"
#include "support/TestCase.h"
#include "testing/FakeDesktop.h"

#include <QWidget>

#include <stdexcept>

using namespace Qt::StringLiterals;
using tavrin::BoxButtons;
using tavrin::BoxIcon;
using tavrin::Error;
using tavrin::test::FakeMessageBoxes;
using tavrin::test::raisedBy;

namespace {

#ifdef TAVRIN_TRACE
QStringList* traced = nullptr;
QtMessageHandler handlerBefore = nullptr;

void recordTrace(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    if (traced && qstrcmp(context.category, "tavrin.trace") == 0)
        *traced << text;
    else
        handlerBefore(type, context, text);
}
#endif

} // namespace

class tst_FailurePolicy : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void continueOnErrorSkipsTheFailingStatementsAndRunsTheOthersInOrder()
    {
        const FakeMessageBoxes boxes;
        QStringList ran;
        const auto run = [&](const QString& name) { return [&ran, name] { ran << name; }; };
        tavrin::continueOnError(
            run(u"first"_s), [] { throw Error(u"no"_s); }, run(u"second"_s), [] { throw 42; },
            [] { throw std::runtime_error("x"); }, run(u"third"_s));
        QCOMPARE(ran, QStringList({u"first"_s, u"second"_s, u"third"_s}));
        QCOMPARE(boxes.texts(), QStringList());
    }

    void trapAndGoOnRunsTheOthersInOrderAndShowsNothing()
    {
        const FakeMessageBoxes boxes;
        QStringList ran;
        const auto run = [&](const QString& name) { return [&ran, name] { ran << name; }; };
        tavrin::trapAndGoOn(
            u"Picker"_s, u"ReadProperties"_s, run(u"first"_s), [] { throw Error(u"no"_s); }, run(u"second"_s),
            [] { throw 42; }, run(u"third"_s));
        QCOMPARE(ran, QStringList({u"first"_s, u"second"_s, u"third"_s}));
        QCOMPARE(boxes.texts(), QStringList());
    }

#ifdef TAVRIN_TRACE
    void whatIsTrappedGoesToTheDevelopersTrace()
    {
        QStringList lines;
        traced = &lines;
        handlerBefore = qInstallMessageHandler(recordTrace);
        const auto restore = qScopeGuard([] {
            qInstallMessageHandler(handlerBefore);
            traced = nullptr;
        });
        tavrin::trapAndGoOn(u"Picker"_s, u"InitProperties"_s, [] { throw Error(u"no"_s, 6, u"here"_s); });
        QCOMPARE(lines, QStringList({u"Unexpected error in Picker.InitProperties: 6, here, no"_s}));
    }
#endif

    void theTrapTextNamesTypeRoutineNumberSourceAndDescription_data()
    {
        QTest::addColumn<QString>("routine");
        QTest::addColumn<QString>("text");
        for (const QString& routine : {u"InitProperties"_s, u"ReadProperties"_s, u"WriteProperties"_s}) {
            QTest::newRow(qPrintable(routine))
                << routine
                << u"Unexpected error in AgencyPicker."_s + routine + u": 13, a %1 b, %2 mismatch"_s;
        }
    }
    void theTrapTextNamesTypeRoutineNumberSourceAndDescription()
    {
        QFETCH(QString, routine);
        QTEST(tavrin::trapText(u"AgencyPicker"_s, routine, Error(u"%2 mismatch"_s, 13, u"a %1 b"_s)), "text");
    }

    void addContextKeepsTheNumberAndExtendsSourceAndDescription_data()
    {
        QTest::addColumn<QString>("routine");
        QTest::addColumn<QString>("prefix");
        QTest::addColumn<QString>("oldSource");
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("description");
        QTest::newRow("fill") << u"BoundControl_FillControl"_s << u"Could not populate control: "_s
                              << u"host"_s << u"host -> MultiValue.BoundControl_FillControl [line 1020]"_s
                              << u"Could not populate control: disk full"_s;
        QTest::newRow("save") << u"BoundControl_SetControl"_s << u"Could not persist control values: "_s
                              << u"host"_s << u"host -> MultiValue.BoundControl_SetControl [line 1020]"_s
                              << u"Could not persist control values: disk full"_s;
        QTest::newRow("no source") << u"A"_s << u""_s << u""_s << u" -> MultiValue.A [line 1020]"_s
                                   << u"disk full"_s;
        QTest::newRow("place markers in the source")
            << u"A"_s << u"%1: "_s << u"50%1 of %4"_s << u"50%1 of %4 -> MultiValue.A [line 1020]"_s
            << u"%1: disk full"_s;
    }
    void addContextKeepsTheNumberAndExtendsSourceAndDescription()
    {
        QFETCH(QString, routine);
        QFETCH(QString, prefix);
        QFETCH(QString, oldSource);
        QStringList ran;
        const Error error = raisedBy([&] {
            tavrin::addContext(u"MultiValue"_s, routine, prefix, [&](int& line) {
                line = 1000;
                ran << u"first"_s;
                line = 1020;
                throw Error(u"disk full"_s, 61, oldSource);
            });
        });
        QCOMPARE(error.Number, 61);
        QTEST(error.Source, "source");
        QTEST(error.Description, "description");
        QCOMPARE(ran, QStringList({u"first"_s}));
    }

    void addContextMakesErrorsOfExceptionsOfOtherKinds()
    {
        const Error error = raisedBy([&] {
            tavrin::addContext(u"T"_s, u"R"_s, u"P: "_s, [](int&) { throw std::runtime_error("other"); });
        });
        QCOMPARE(error.Number, Error::OrdinaryNumber);
        QCOMPARE(error.Source, u" -> T.R [line 0]"_s);
        QCOMPARE(error.Description, u"P: other"_s);
    }

    void contextCanBeAddedTwice()
    {
        const Error error = raisedBy([&] {
            tavrin::addContext(u"Outer"_s, u"R"_s, u"a: "_s, [](int& line) {
                line = 10;
                tavrin::addContext(u"Inner"_s, u"S"_s, u"b: "_s, [](int& inner) {
                    inner = 20;
                    throw Error(u"c"_s, 7, u"d"_s);
                });
            });
        });
        QCOMPARE(error.Number, 7);
        QCOMPARE(error.Source, u"d -> Inner.S [line 20] -> Outer.R [line 10]"_s);
        QCOMPARE(error.Description, u"a: b: c"_s);
    }

    void aBodyThatSucceedsIsNotTouched()
    {
        FakeMessageBoxes boxes;
        int runs = 0;
        tavrin::addContext(u"T"_s, u"R"_s, u"P: "_s, [&](int&) { ++runs; });
        QVERIFY(tavrin::reportInBox(nullptr, u"P: "_s, u"Error"_s, [&] { ++runs; }));
        QCOMPARE(runs, 2);
        QCOMPARE(boxes.shown().size(), 0);
    }

    void reportInBoxShowsPrefixAndDescriptionWithTheCriticalIconAndReturns_data()
    {
        QTest::addColumn<std::function<void()>>("body");
        QTest::addColumn<QString>("text");
        using Body = std::function<void()>;
        const QString prefix = u"An unexpected error occurred in LatLong in BoundSection_ReadData: "_s;
        QTest::newRow("ours") << Body([] { throw Error(u"no %1"_s, 61); }) << prefix + u"no %1"_s;
        QTest::newRow("standard") << Body([] { throw std::runtime_error("other"); }) << prefix + u"other"_s;
        QTest::newRow("number") << Body([] { throw 1; }) << prefix + u"Unknown error"_s;
    }
    void reportInBoxShowsPrefixAndDescriptionWithTheCriticalIconAndReturns()
    {
        QFETCH(std::function<void()>, body);
        QFETCH(QString, text);
        FakeMessageBoxes boxes;
        QWidget parent;
        QVERIFY(!tavrin::reportInBox(&parent,
                                     u"An unexpected error occurred in LatLong in BoundSection_ReadData: "_s,
                                     u"Error"_s, body));
        QCOMPARE(boxes.texts(), QStringList(text));
        const auto box = boxes.take().first();
        QCOMPARE(box.icon, BoxIcon::Critical);
        QCOMPARE(box.title, u"Error"_s);
        QCOMPARE(box.buttons, BoxButtons::Ok);
        QCOMPARE(box.parent, &parent);
    }
};

TAVRIN_TEST_MAIN(tst_FailurePolicy)
#include "tst_FailurePolicy.moc"
