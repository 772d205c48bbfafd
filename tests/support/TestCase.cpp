#include "support/TestCase.h"

#include <QApplication>
#include <QMap>
#include <QRegularExpression>

#include <cstdio>

namespace tavrin::test {

namespace {

QMap<QString, TestUnit::Main>& units()
{
    static QMap<QString, TestUnit::Main> units;
    return units;
}

QString runningUnit;

} // namespace

void TestCase::failOnUnexpectedWarnings()
{
    // The offscreen platform tells that it cannot raise a window; that is no fault of the program.
    QTest::failOnWarning(QRegularExpression(QStringLiteral("^(?!This plugin does not support )")));
}

void TestCase::init()
{
    failOnUnexpectedWarnings();
}

void TestCase::cleanup()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    for (const QWidget* window : QApplication::topLevelWidgets())
        QVERIFY2(!window->isVisible(), qPrintable(QStringLiteral("left open: ") +
                                                  QString::fromLatin1(window->metaObject()->className())));
}

int run(TestCase& testCase, int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QApplication::setStyle(QStringLiteral("Fusion"));
    return QTest::qExec(&testCase, argc, argv);
}

TestUnit::TestUnit(const char* testCase, Main main)
{
    const QString name = QString::fromLatin1(testCase).mid(static_cast<qsizetype>(qstrlen("tst_")));
    if (units().contains(name))
        qFatal("two units of this program are called %s", qPrintable(name));
    units().insert(name, main);
}

int TestUnit::runNamed(int argc, char** argv)
{
    runningUnit = QString::fromLocal8Bit(argc > 1 ? argv[1] : "");
    const Main main = units().value(runningUnit);
    if (!main) {
        std::fprintf(stderr, "usage: %s UNIT [TEST...], with one of these units:\n  %s\n", argv[0],
                     qPrintable(units().keys().join(QStringLiteral("\n  "))));
        return 2;
    }
    argv[1] = argv[0];
    return main(argc - 1, argv + 1);
}

QString TestUnit::running()
{
    return runningUnit;
}

} // namespace tavrin::test
