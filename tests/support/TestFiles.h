#pragma once

#include "base/failure/Error.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QString>

#include <sys/wait.h>
#include <unistd.h>

// Files, failures and file modes in tests that need no host.

namespace tavrin::test {

/// The text of the `Error` that `action` raises; "" when it raises none.
template <typename Action>
QString failureOf(Action action)
{
    try {
        action();
    } catch (const Error& error) {
        return error.Description;
    }
    return {};
}

inline QByteArray bytesOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<cannot be read>");
}

inline void putFile(const QString& path, const QByteArray& content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write %s", qPrintable(path));
}

/// All that lies in a folder, hidden files too.
inline QStringList namesIn(const QString& folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                                  QDir::Name);
}

/// Runs `action` in a child process as somebody whom file modes bind, and returns its text.
template <typename Action>
QString asNobody(Action action)
{
    constexpr uid_t nobody = 65534;
    int ends[2];
    if (::pipe(ends) != 0)
        qFatal("no pipe");
    const pid_t child = ::fork();
    if (child == 0) {
        if (::geteuid() == 0 && ::setuid(nobody) != 0)
            ::_exit(1);
        const QByteArray text = action().toUtf8();
        const bool written =
            ::write(ends[1], text.constData(), static_cast<size_t>(text.size())) == text.size();
        ::_exit(written ? 0 : 1);
    }
    ::close(ends[1]);
    QFile answer;
    QByteArray text;
    if (answer.open(ends[0], QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
        text = answer.readAll();
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? QString::fromUtf8(text)
                                                         : QStringLiteral("the child failed");
}

} // namespace tavrin::test
