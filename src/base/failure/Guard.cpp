#include "base/failure/Guard.h"

#include <QtDebug>

namespace tavrin {

namespace {

UnhandledErrorHandler& installedHandler()
{
    thread_local UnhandledErrorHandler handler;
    return handler;
}

} // namespace

UnhandledErrorHandler setUnhandledErrorHandler(UnhandledErrorHandler handler)
{
    return std::exchange(installedHandler(), std::move(handler));
}

void reportUnhandledError(const QString& where) noexcept
{
    try {
        const Error error = Error::fromCurrentException();
        // A copy: the handler may install another one.
        const UnhandledErrorHandler handler = installedHandler();
        if (handler)
            handler(error, where);
        else
            qWarning("Unhandled error in %s: %s", qPrintable(where), qPrintable(error.Description));
    } catch (...) {
        qWarning("The handler of unhandled errors failed");
    }
}

} // namespace tavrin
