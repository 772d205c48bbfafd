#pragma once

#include "support/TestCase.h"

#include <QCoreApplication>
#include <QProcess>
#include <QTest>

namespace tavrin::test {

/// Whether the running test passes in a program of its own on a screen that has this many pixels for one.
inline bool passesAtDensity(const QString& density)
{
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_SCALE_FACTOR"), density);
    program.setProcessEnvironment(environment);
    program.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    program.start(QCoreApplication::applicationFilePath(),
                  {TestUnit::running(), QString::fromLatin1(QTest::currentTestFunction())});
    constexpr int patience = 120'000;
    const bool hasEnded = program.waitForFinished(patience) && program.exitStatus() == QProcess::NormalExit;
    if (hasEnded && program.exitCode() == 0)
        return true;
    qInfo("%s", program.readAllStandardOutput().constData());
    return false;
}

} // namespace tavrin::test
