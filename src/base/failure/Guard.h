#pragma once

#include "base/export/Export.h"
#include "base/failure/Error.h"

#include <QObject>

#include <functional>
#include <type_traits>
#include <utility>

namespace tavrin {

/// Takes a failure that nobody caught. `where` names the place at which Qt called us.
using UnhandledErrorHandler = std::function<void(const Error& error, const QString& where)>;

/// Installs this thread's handler of unhandled errors and returns the one before; an empty one at first.
/// Without one, the failure is printed as a warning. What the handler itself raises is dropped with a
/// warning.
TAVRIN_EXPORT UnhandledErrorHandler setUnhandledErrorHandler(UnhandledErrorHandler handler);

/// Hands the exception that is being handled to the installed handler. Never throws.
TAVRIN_EXPORT void reportUnhandledError(const QString& where) noexcept;

/// Runs `body` at a place where Qt calls us. No exception leaves it: what `body` raises goes to the handler
/// of unhandled errors, with `where`.
template <typename Body>
void guard(const char* where, Body&& body) noexcept
{
    try {
        std::forward<Body>(body)();
    } catch (...) {
        reportUnhandledError(QString::fromLatin1(where));
    }
}

/// Calls a handler that takes the arguments or none.
template <typename Handler, typename... Args>
void callWith(Handler& handler, Args&... args)
{
    if constexpr (std::is_invocable_v<Handler&, Args&...>)
        handler(args...);
    else
        handler();
}

/// Connects a Qt signal with a handler that may raise; what it raises goes to the handler of unhandled
/// errors, with `where`, a text that must live as long as the connection. The handler takes the signal's
/// arguments or none. The connection ends with `sender` or `context`, whichever dies first.
template <typename Sender, typename Signal, typename Handler>
QMetaObject::Connection connectGuarded(const Sender* sender, Signal signal, const QObject* context,
                                       const char* where, Handler handler)
{
    return QObject::connect(sender, signal, context,
                            [where, handler = std::move(handler)](auto&&... args) mutable -> void {
                                guard(where, [&] { callWith(handler, args...); });
                            });
}

} // namespace tavrin
