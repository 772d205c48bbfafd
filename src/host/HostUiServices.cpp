#include "host/HostUiServices.h"

#include "base/Error.h"

#include <QGuiApplication>
#include <QPalette>

#include <algorithm>
#include <cmath>

namespace tavrin {

namespace {

int shaded(int channel, double factor)
{
    const double shade =
        factor <= 1 ? channel * std::max(factor, 0.0) : channel + (255 - channel) * (1 - 1 / factor);
    return static_cast<int>(std::lround(std::clamp(shade, 0.0, 255.0)));
}

TextBoxColors darkColors()
{
    TextBoxColors colors;
    colors.Normal = {Color::rgb(43, 43, 46), Color::rgb(232, 232, 232), Color::rgb(94, 94, 99)};
    colors.Disabled = {Color::rgb(54, 54, 57), Color::rgb(150, 150, 150), Color::rgb(74, 74, 78)};
    colors.Focused = {Color::rgb(30, 30, 33), Color::rgb(255, 255, 255), Color::rgb(90, 160, 230)};
    return colors;
}

TextBoxColors lightColors()
{
    TextBoxColors colors;
    colors.Normal = {SystemColor::WindowBackground, SystemColor::WindowText, Color::rgb(171, 173, 179)};
    colors.Disabled = {SystemColor::ButtonFace, SystemColor::GreyText, Color::rgb(204, 204, 204)};
    colors.Focused = {SystemColor::WindowBackground, SystemColor::WindowText, Color::rgb(0, 102, 184)};
    return colors;
}

} // namespace

Color HostUiServices::ShadeColor(Color color, double factor)
{
    if (std::isnan(factor))
        throw Error(QStringLiteral("A colour cannot be shaded by a factor that is no number"));
    const QColor base = color.resolve(QGuiApplication::palette());
    return Color::rgb(shaded(base.red(), factor), shaded(base.green(), factor), shaded(base.blue(), factor));
}

ScaleMode HostUiServices::ScaleModeFromUnits(const QString& units)
{
    static const QHash<QString, ScaleMode> modes{{QStringLiteral("user"), ScaleMode::User},
                                                 {QStringLiteral("twip"), ScaleMode::Twips},
                                                 {QStringLiteral("point"), ScaleMode::Points},
                                                 {QStringLiteral("pixel"), ScaleMode::Pixels},
                                                 {QStringLiteral("character"), ScaleMode::Characters},
                                                 {QStringLiteral("inch"), ScaleMode::Inches},
                                                 {QStringLiteral("inche"), ScaleMode::Inches},
                                                 {QStringLiteral("millimeter"), ScaleMode::Millimeters},
                                                 {QStringLiteral("centimeter"), ScaleMode::Centimeters}};
    QString name = units.trimmed().toLower();
    if (name.endsWith(QLatin1Char('s')))
        name.chop(1);
    const auto found = modes.find(name);
    if (found == modes.end())
        throw Error(QStringLiteral("There is no scale unit \"%1\"").arg(units));
    return found.value();
}

TextBoxColors HostUiServices::GetTextBoxColors()
{
    return m_theme == Theme::Dark ? darkColors() : lightColors();
}

} // namespace tavrin
