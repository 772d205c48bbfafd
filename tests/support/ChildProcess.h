#pragma once

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QString>
#include <QThread>

#include <cerrno>
#include <functional>
#include <sys/wait.h>
#include <unistd.h>

// What a test lets a copy of its process do: die, give up rights, or have a disk of its own.

namespace tavrin::test {

/// Waits until a thread that has done its work is gone too: one that allocates while this process forks
/// leaves the child with a lock that nobody gives back.
inline void waitForThreadsToEnd()
{
    constexpr int own = 2; // this one, and the one that watches the time of the tests
    const QDir threads(QStringLiteral("/proc/self/task"));
    const QDeadlineTimer patience(1000); // not longer: a test may want a thread that hangs
    while (threads.entryList(QDir::Dirs | QDir::NoDotAndDotDot).size() > own && !patience.hasExpired())
        QThread::yieldCurrentThread();
}

/// Runs `body` in a child process and returns what it returns: a small number; 128 and the signal when it was
/// killed.
inline int inChild(const std::function<int()>& body)
{
    waitForThreadsToEnd();
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(body());
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

/// Gives up the rights of the superuser, to whom file modes mean nothing. For children only.
inline bool dropRights()
{
    constexpr int nobody = 65534;
    return ::getuid() != 0 || (::setgid(nobody) == 0 && ::setuid(nobody) == 0);
}

/// Runs `action` in a child process as somebody whom file modes bind, and returns its text.
template <typename Action>
QString asNobody(Action action)
{
    int ends[2];
    if (::pipe(ends) != 0)
        qFatal("no pipe");
    const int end = inChild([&] {
        if (!dropRights())
            return 1;
        ::close(ends[0]);
        const QByteArray text = action().toUtf8();
        return ::write(ends[1], text.constData(), static_cast<size_t>(text.size())) == text.size() ? 0 : 1;
    });
    ::close(ends[1]);
    QFile answer;
    QByteArray text;
    if (answer.open(ends[0], QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
        text = answer.readAll();
    return end == 0 ? QString::fromUtf8(text) : QStringLiteral("the child failed");
}

} // namespace tavrin::test
