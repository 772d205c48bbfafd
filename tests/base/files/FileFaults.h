#pragma once

#include "base/files/Descriptor.h"

#include <cerrno>
#include <functional>
#include <sys/wait.h>
#include <unistd.h>

// What the tests of files share that cannot be read or written.

namespace tavrin::test {

/// Runs `body` in a child process, whose limits and rights are its own, and returns what it returns: a small
/// number; 128 and the signal when it was killed.
inline int inChild(const std::function<int()>& body)
{
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(body());
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

/// The system's code of the `SystemError` that `action` raises; 0 when it raises none.
inline int codeOf(const std::function<void()>& action)
{
    try {
        action();
    } catch (const SystemError& error) {
        return error.Code;
    }
    return 0;
}

} // namespace tavrin::test
