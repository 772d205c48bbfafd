#pragma once

#include "testing/FakeHost.h"

namespace tavrin::testing {

using StatePtr = std::shared_ptr<FakeHostState>;

/// What every service of the fake host has.
class Recorder
{
public:
    explicit Recorder(StatePtr state)
        : m_state(std::move(state))
    {
    }

protected:
    FakeHostState& asked(const QString& operation) const
    {
        m_state->called(operation);
        return *m_state;
    }
    /// Notes what the operation was given as well.
    FakeHostState& asked(const QString& operation, const QString& given) const
    {
        m_state->given << operation + u' ' + given;
        return asked(operation);
    }
    const StatePtr& state() const { return m_state; }

private:
    StatePtr m_state;
};

} // namespace tavrin::testing
