#pragma once

#include "base/LiveObject.h"
#include "base/failure/Event.h"

#include <QTimer>

#include <optional>

namespace tavrin {

/// One-shot or repeating; `Elapsed` comes on the thread that started it. A repeating timer fires until it
/// is stopped. Stopped until started; the interval starts at 0.
class Timer
{
public:
    Timer();
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;

    /// Stop after the first `Elapsed`.
    void SetOneShot(bool oneShot) { m_timer.setSingleShot(oneShot); }
    /// Milliseconds.
    void SetInterval(qint32 milliseconds) { m_timer.setInterval(milliseconds); }
    /// On a running timer this starts the interval anew.
    void Start();
    void Stop();
    bool isRunning() const { return m_timer.isActive(); }

    Event<> Elapsed;

private:
    QTimer m_timer;
    std::optional<LiveObject> m_live; // while it runs
};

} // namespace tavrin
