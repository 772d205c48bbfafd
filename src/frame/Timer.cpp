#include "frame/Timer.h"

#include "base/failure/Guard.h"

namespace tavrin {

Timer::Timer()
{
    m_timer.setTimerType(Qt::PreciseTimer);
    connectGuarded(&m_timer, &QTimer::timeout, &m_timer, "Timer_Elapsed", [this] { Elapsed.raise(); });
}

} // namespace tavrin
