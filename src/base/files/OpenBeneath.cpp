#include "base/files/OpenBeneath.h"

#include <QString>

#include <algorithm>
#include <cerrno>
#include <linux/openat2.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace tavrin {

namespace {

constexpr int StepFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW;

void check(const QList<QByteArray>& names)
{
    const bool leadsElsewhere = std::any_of(names.begin(), names.end(), [](const QByteArray& name) {
        return name.isEmpty() || name == "." || name == ".." || name.contains('/') || name.contains('\0');
    });
    if (leadsElsewhere)
        throw SystemError(EINVAL);
}

/// A symbolic link in the place of a folder is told as ENOTDIR; say what it is.
[[noreturn]] void raiseAt(int folder, const QByteArray& name, const SystemError& error)
{
    struct stat status = {};
    if (error.Code == ENOTDIR && ::fstatat(folder, name.constData(), &status, AT_SYMLINK_NOFOLLOW) == 0 &&
        S_ISLNK(status.st_mode))
        throw SystemError(ELOOP);
    throw error;
}

Descriptor openStep(int folder, const QByteArray& name, int flags)
{
    try {
        return openAt(folder, name, flags | O_NOFOLLOW);
    } catch (const SystemError& error) {
        raiseAt(folder, name, error);
    }
}

Descriptor openStepByStep(const Descriptor& folder, const QList<QByteArray>& names, int flags)
{
    Descriptor reached;
    for (qsizetype i = 0; i < names.size(); ++i) {
        const int from = reached.isOpen() ? reached.number() : folder.number();
        reached = openStep(from, names.at(i), i + 1 == names.size() ? flags : StepFlags);
    }
    return reached;
}

mode_t modeOf(const Descriptor& folder)
{
    struct stat status = {};
    if (::fstat(folder.number(), &status) != 0)
        throw SystemError::last();
    return status.st_mode & 07777;
}

} // namespace

Descriptor openBeneath(const Descriptor& folder, const QList<QByteArray>& names, int flags, Walk walk)
{
    check(names);
    if (names.isEmpty())
        return openAt(folder.number(), ".", flags);
    if (walk == Walk::StepByStep)
        return openStepByStep(folder, names, flags);
    open_how how = {};
    how.flags = static_cast<quint64>(flags | O_NOFOLLOW | O_CLOEXEC);
    how.resolve = RESOLVE_BENEATH | RESOLVE_NO_SYMLINKS | RESOLVE_NO_MAGICLINKS;
    const QByteArray path = names.join('/');
    long number = -1;
    do
        number = ::syscall(SYS_openat2, folder.number(), path.constData(), &how, sizeof how);
    while (number < 0 && errno == EINTR);
    if (number >= 0)
        return Descriptor(static_cast<int>(number));
    // Kernels before 5.6 do not have the call, and some sandboxes forbid it.
    if (errno == ENOSYS || errno == EPERM || errno == EAGAIN)
        return openStepByStep(folder, names, flags);
    throw SystemError::last();
}

Descriptor makeFoldersBeneath(const Descriptor& folder, const QList<QByteArray>& names)
{
    check(names);
    const mode_t mode = modeOf(folder);
    Descriptor reached = openAt(folder.number(), ".", O_RDONLY | O_DIRECTORY);
    for (const QByteArray& name : names) {
        const bool made = ::mkdirat(reached.number(), name.constData(), 0777) == 0;
        if (!made && errno != EEXIST && errno != EROFS && errno != EACCES)
            throw SystemError::last();
        const int code = errno;
        try {
            Descriptor next = openStep(reached.number(), name, StepFlags);
            if (made) {
                ::fchmod(next.number(), mode); // a share that keeps no modes refuses, and needs none
                flush(reached);
            }
            reached = std::move(next);
        } catch (const SystemError& error) {
            if (made) // or the next caller takes it for one that is on the disk
                ::unlinkat(reached.number(), name.constData(), AT_REMOVEDIR);
            // What is missing could not be made, and that is the reason to tell.
            throw SystemError(!made && error.Code == ENOENT ? code : error.Code);
        }
    }
    return reached;
}

} // namespace tavrin
