#include "frame/Timer.h"

#include "base/failure/Guard.h"

namespace tavrin {

Timer::Timer()
{
    m_timer.setTimerType(Qt::PreciseTimer);
    connectGuarded(&m_timer, &QTimer::timeout, &m_timer, "Timer_Elapsed", [this] {
        if (!isRunning())
            m_live.reset();
        Elapsed.raise();
    });
}

void Timer::Start()
{
    m_timer.start();
    m_live.emplace();
}

void Timer::Stop()
{
    m_timer.stop();
    m_live.reset();
}

} // namespace tavrin
