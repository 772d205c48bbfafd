#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace tavrin {

/// Keeps one handler subscribed for as long as it lives. It may outlive the event.
class Subscription
{
public:
    Subscription() = default;
    Subscription(Subscription&&) noexcept = default;
    Subscription& operator=(Subscription&& other) noexcept
    {
        if (this != &other) {
            cancel();
            m_alive = std::move(other.m_alive);
        }
        return *this;
    }
    Subscription(const Subscription&) = delete;
    Subscription& operator=(const Subscription&) = delete;
    ~Subscription() { cancel(); }

    /// Ends the subscription; the handler is not called again, not even by a raise that is under way.
    void cancel()
    {
        if (const auto alive = std::exchange(m_alive, nullptr))
            *alive = false;
    }

    /// False after `cancel`, when the event has died, and for a default-constructed one.
    bool isActive() const { return m_alive && *m_alive; }

private:
    template <typename...>
    friend class Event;
    explicit Subscription(std::shared_ptr<bool> alive)
        : m_alive(std::move(alive))
    {
    }

    std::shared_ptr<bool> m_alive;
};

/// A synchronous event with any number of handlers.
///
/// `raise` calls the handlers in the order of their subscription. Arguments of reference type go to the
/// handlers by reference, so that a handler can answer through them. An exception of a handler reaches
/// whoever raised the event; the handlers behind it are then not called.
///
/// While the event is raised a handler may subscribe (the new handler is called from the next raise on),
/// unsubscribe itself or others, raise again, or destroy the sender (the handlers behind it are then not
/// called). An event and its subscriptions belong to one thread.
///
///     Event<const QString&, bool&> Closing;
///     Subscription keep = Closing.subscribe(
///         [](const QString& name, bool& cancel) { cancel = name.isEmpty(); });
template <typename... Args>
class Event
{
public:
    /// What is called; it may raise.
    using Handler = std::function<void(Args...)>;

    Event() = default;
    Event(const Event&) = delete;
    Event& operator=(const Event&) = delete;
    ~Event()
    {
        for (const auto& slot : m_slots)
            *slot->alive = false;
    }

    /// Calls `handler` at each raise until the returned object dies.
    [[nodiscard]] Subscription subscribe(Handler handler)
    {
        sweep();
        auto alive = std::make_shared<bool>(true);
        m_slots.push_back(std::make_shared<Slot>(Slot{std::move(handler), alive}));
        return Subscription(std::move(alive));
    }

    /// Calls the handlers and returns when the last of them has.
    void raise(Args... args)
    {
        // The copy of the list keeps the slots alive if a handler destroys the sender.
        const auto handlers = m_slots;
        for (const auto& slot : handlers) {
            if (*slot->alive)
                slot->handler(args...);
        }
    }

    /// Whether a raise would call anybody.
    bool hasHandlers() const
    {
        return std::any_of(m_slots.begin(), m_slots.end(), [](const auto& slot) { return *slot->alive; });
    }

private:
    struct Slot
    {
        Handler handler;
        std::shared_ptr<bool> alive;
    };

    void sweep()
    {
        std::erase_if(m_slots, [](const auto& slot) { return !*slot->alive; });
    }

    std::vector<std::shared_ptr<Slot>> m_slots;
};

} // namespace tavrin
