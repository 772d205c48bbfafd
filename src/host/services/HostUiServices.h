#pragma once

#include "frame/host_contracts/Services.h"
#include "host/services/ReferenceHost.h"

namespace tavrin {

/// Colours and units.
class HostUiServices : public UiServices
{
public:
    /// System colours are shaded as the application's palette shows them. A factor of 0 or less gives the
    /// darkest shade, in which texts can still be read; above 1, a factor of 2 lies half-way to white.
    Color ShadeColor(Color color, double factor) override;
    /// "User", "Twip", "Point", "Pixel", "Character", "Inch", "Millimeter", "Centimeter", in any case and
    /// also in the plural. Raises an `Error` for any other name.
    ScaleMode ScaleModeFromUnits(const QString& units) override;
    tavrin::TextBoxColors TextBoxColors() override;

    Theme theme() const { return m_theme; }
    void setTheme(Theme theme) { m_theme = theme; }

private:
    Theme m_theme = Theme::Light;
};

} // namespace tavrin
