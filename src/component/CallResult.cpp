#include "component/CallResult.h"

#include <QByteArray>
#include <QObject>
#include <QPointer>
#include <QThread>

#include <new>
#include <optional>
#include <vector>

namespace tavrin {

namespace {

struct Failure
{
    TvResult result = TV_S_OK;
    int number = 0;
    QByteArray source;
    QByteArray description;
};

struct ThreadState
{
    Failure last;
    std::optional<Error> raised;
    int calls = 0;
    int callbacks = 0;
    std::vector<QPointer<QObject>> ended;
};

ThreadState& state()
{
    thread_local ThreadState state;
    return state;
}

void note(TvResult result, const Error& error)
{
    state().last = {result, error.Number, error.Source.toUtf8(), error.Description.toUtf8()};
}

TvResult noteCurrent()
{
    try {
        throw;
    } catch (const CallError& error) {
        note(error.Result, error);
        return error.Result;
    } catch (const std::bad_alloc&) {
        note(TV_E_OUTOFMEMORY, Error(QStringLiteral("Out of memory")));
        return TV_E_OUTOFMEMORY;
    } catch (...) {
        note(TV_E_FAIL, Error::fromCurrentException());
        return TV_E_FAIL;
    }
}

} // namespace

TvResult noteFailure() noexcept
{
    try {
        return noteCurrent();
    } catch (...) {
        return TV_E_OUTOFMEMORY; // there was none for the text either
    }
}

TvError lastFailure()
{
    const Failure& last = state().last;
    return {last.result, last.number, last.source.constData(), last.description.constData()};
}

void noteRaised(int number, const QString& source, const QString& description)
{
    state().raised.emplace(description, number, source);
}

void forgetRaised()
{
    state().raised.reset();
}

void throwRaised(TvResult result, const QString& what)
{
    if (const auto raised = std::exchange(state().raised, std::nullopt))
        throw CallError(result, raised->Description, raised->Number, raised->Source);
    throw CallError(result, QStringLiteral("%1 has failed with 0x%2")
                                .arg(what)
                                .arg(static_cast<quint32>(result), 8, 16, QLatin1Char('0')));
}

CallScope::CallScope()
{
    ++state().calls;
}

CallScope::~CallScope()
{
    ThreadState& now = state();
    // Where a loop runs, it does this, behind the event.
    if (--now.calls == 0 && now.callbacks == 0 && !now.ended.empty() &&
        QThread::currentThread()->loopLevel() == 0) {
        for (const QPointer<QObject>& object : std::exchange(now.ended, {}))
            delete object;
    }
}

CallbackScope::CallbackScope()
{
    ++state().callbacks;
}

CallbackScope::~CallbackScope()
{
    --state().callbacks;
}

bool CallbackScope::isActive()
{
    return state().callbacks > 0;
}

void destroyLater(QObject* object)
{
    // The list alone would not do: the event may come from a loop that the library does not run. Nor would
    // the posted event: there may be no loop.
    std::erase_if(state().ended, [](const auto& gone) { return gone.isNull(); });
    state().ended.emplace_back(object);
    object->deleteLater();
}

} // namespace tavrin
