#pragma once

#include "frame/desktop/Desktop.h"

#include <QDateTime>

#include <utility>

namespace tavrin::test {

/// A clock that goes on by a tenth of a second at each look, however fast the test is; it begins at 13:05:07
/// of 1 February 2016.
class TickingClock
{
public:
    TickingClock()
        : m_before(std::exchange(desktop().clock, std::make_shared<Script>()))
    {
    }
    TickingClock(const TickingClock&) = delete;
    TickingClock& operator=(const TickingClock&) = delete;
    ~TickingClock() { desktop().clock = m_before; }

private:
    struct Script final : Clock
    {
        QDateTime now() override { return std::exchange(time, time.addMSecs(100)); }

        QDateTime time = QDateTime(QDate(2016, 2, 1), QTime(13, 5, 7));
    };

    std::shared_ptr<Clock> m_before;
};

} // namespace tavrin::test
