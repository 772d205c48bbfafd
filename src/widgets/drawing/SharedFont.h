#pragma once

#include "base/values/Font.h"

#include <functional>

namespace tavrin {

/// A widget's reference to a font object that others may change: follows it.
class SharedFont
{
public:
    /// `changed` runs at each change inside the font and at each replacement of it.
    explicit SharedFont(std::function<void()> changed)
        : m_changed(std::move(changed))
        , m_font(std::make_shared<Font>())
    {
        follow();
    }

    const FontPtr& get() const { return m_font; }
    /// nullptr is ignored.
    void set(const FontPtr& font)
    {
        if (!font)
            return;
        m_font = font;
        follow();
        m_changed();
    }

private:
    void follow()
    {
        m_subscription = m_font->FontChanged.subscribe([this](const QString&) { m_changed(); });
    }

    std::function<void()> m_changed;
    FontPtr m_font;
    Subscription m_subscription;
};

} // namespace tavrin
