#pragma once

#include "support/TestCase.h"

#include <QCoreApplication>
#include <QProcess>
#include <QStringList>

// Programs whose calls of the system strace lets fail or hang.

namespace tavrin::test {

inline bool traceWorks()
{
    return QProcess::execute(QStringLiteral("strace"), {QStringLiteral("-o"), QStringLiteral("/dev/null"),
                                                        QStringLiteral("true")}) == 0;
}

/// Starts the running unit as a program of its own, with these arguments, under strace with these options.
/// Returns its answer; 128 when it was killed, -1 when it did not end.
inline int runTraced(const QStringList& options, const QStringList& arguments)
{
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    // The search for leaks traces the program too, which only one can do at a time.
    environment.insert(QStringLiteral("ASAN_OPTIONS"), QStringLiteral("detect_leaks=0"));
    program.setProcessEnvironment(environment);
    program.setProcessChannelMode(QProcess::ForwardedChannels);
    const QStringList quiet{QStringLiteral("-f"), QStringLiteral("-qq"), QStringLiteral("-o"),
                            QStringLiteral("/dev/null")};
    const QStringList self{QCoreApplication::applicationFilePath(), TestUnit::running()};
    program.start(QStringLiteral("strace"), quiet + options + self + arguments);
    if (!program.waitForFinished(120'000))
        return -1;
    return program.exitStatus() == QProcess::NormalExit ? program.exitCode() : 128;
}

/// strace's options for calls that fail as `faults` tell.
inline QStringList injected(const QStringList& faults)
{
    QStringList options;
    for (const QString& fault : faults)
        options << QStringLiteral("-e") << QStringLiteral("inject=") + fault;
    return options;
}

} // namespace tavrin::test
