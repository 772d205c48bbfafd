#pragma once

#include <QEvent>
#include <QObject>

#include <functional>
#include <utility>

namespace tavrin::test {

/// Acts at each event of a kind, before the object gets it.
class EventWatch : public QObject
{
public:
    EventWatch(QObject& watched, QEvent::Type type, std::function<void()> act)
        : m_type(type)
        , m_act(std::move(act))
    {
        watched.installEventFilter(this);
    }

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == m_type)
            m_act();
        return false;
    }

private:
    QEvent::Type m_type;
    std::function<void()> m_act;
};

} // namespace tavrin::test
