#pragma once

#include <QApplication>
#include <QPointer>
#include <QTimer>
#include <QWidget>

#include <functional>

namespace tavrin::test {

/// Acts on the next modal window: waits until it really is the active modal one, then calls `act` with it,
/// once. Made before the call that shows the window; `came` tells afterwards that it did come. A window that
/// `act` leaves open is closed, so that no test waits for a person.
class NextModal
{
public:
    explicit NextModal(std::function<void(QWidget&)> act)
        : m_act(std::move(act))
    {
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { look(); });
        m_timer.start(1);
    }

    bool came() const { return m_came; }

private:
    void look()
    {
        const QPointer<QWidget> modal = QApplication::activeModalWidget();
        if (!modal || !modal->isVisible())
            return;
        if (m_came) {
            modal->close();
            return;
        }
        m_came = true;
        m_act(*modal);
    }

    std::function<void(QWidget&)> m_act;
    QTimer m_timer;
    bool m_came = false;
};

} // namespace tavrin::test
