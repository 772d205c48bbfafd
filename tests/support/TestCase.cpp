#include "support/TestCase.h"

#include <QApplication>
#include <QRegularExpression>

namespace tavrin::test {

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

} // namespace tavrin::test
