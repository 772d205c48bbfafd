#pragma once

#include "base/LiveObject.h"
#include "base/failure/Error.h"

#define TV_NO_LOADER
#include "component/TVBoundControls.h"

#include <QObject>
#include <QString>

#include <utility>

namespace tavrin {

/// A failure that has a code of its own at the border of the library.
class CallError : public Error
{
public:
    CallError(TvResult result, QString description, int number = OrdinaryNumber, QString source = {})
        : Error(std::move(description), number, std::move(source))
        , Result(result)
    {
    }

    TvResult Result;
};

/// Notes the exception that is being handled as the thread's last failure and returns its code.
TvResult noteFailure() noexcept;

/// The last failure on this thread; its texts stay valid until the next one.
TvError lastFailure();

/// What a callback of the program has said of its failure by `RaiseError`.
void noteRaised(int number, const QString& source, const QString& description);
/// Forgets what a callback before may have said.
void forgetRaised();
/// Raises what the callback that has returned `result` said, or, when it said nothing, that `what` has
/// failed.
[[noreturn]] void throwRaised(TvResult result, const QString& what);

/// Counts the calls of the library that are under way on this thread. The end of the outermost one ends what
/// was destroyed inside a callback.
class CallScope
{
public:
    CallScope();
    ~CallScope();
    CallScope(const CallScope&) = delete;
    CallScope& operator=(const CallScope&) = delete;

private:
    LiveObject m_live;
};

/// While such an object lives, the thread is inside a callback of the program.
class CallbackScope
{
public:
    CallbackScope();
    ~CallbackScope();
    CallbackScope(const CallbackScope&) = delete;
    CallbackScope& operator=(const CallbackScope&) = delete;
    static bool isActive();
};

/// Destroys the object behind the event that is being handled.
void destroyLater(QObject* object);

/// Runs the body of a function at the border: nothing leaves it but a code.
template <typename Body>
TvResult borderCall(Body&& body) noexcept
{
    try {
        const CallScope scope;
        return std::forward<Body>(body)();
    } catch (...) {
        return noteFailure();
    }
}

/// Runs what is the controls' or the host's own. What that raises, also with a code of the host's, gets the
/// code TV_E_EXCEPTION.
template <typename Body>
auto raisingException(Body&& body)
{
    try {
        return std::forward<Body>(body)();
    } catch (...) {
        const Error error = Error::fromCurrentException();
        throw CallError(TV_E_EXCEPTION, error.Description, error.Number, error.Source);
    }
}

/// Raises TV_E_POINTER, naming what is missing, when one is null.
template <typename... Pointers>
void wantPointers(Pointers... pointers)
{
    if ((!pointers || ...))
        throw CallError(TV_E_POINTER, QStringLiteral("A pointer is null"));
}

} // namespace tavrin
