#pragma once

#include "frame/host_contracts/Services.h"
#include "host/services/ReferenceHost.h"

namespace tavrin {

/// The colours of the theme that the person has chosen.
class HostUiServices : public UiServices
{
public:
    tavrin::TextBoxColors TextBoxColors() override;

    Theme theme() const { return m_theme; }
    void setTheme(Theme theme) { m_theme = theme; }

private:
    Theme m_theme = Theme::Light;
};

} // namespace tavrin
