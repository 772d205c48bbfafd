#include "base/failure/Error.h"
#include "frame/host_contracts/Services.h"

#include <QColor>
#include <QGuiApplication>
#include <QHash>
#include <QPalette>

#include <algorithm>
#include <cmath>

namespace tavrin {

namespace {

/// The darkest shade. Texts in the theme's colours, grey ones too, stand readable on each shade of a surface.
constexpr double Darkest = 0.75;

int shaded(int channel, double factor)
{
    const double shade = factor <= 1 ? channel * (Darkest + (1 - Darkest) * std::max(factor, 0.0))
                                     : channel + (255 - channel) * (1 - 1 / factor);
    return static_cast<int>(std::lround(std::clamp(shade, 0.0, 255.0)));
}

constexpr Color SelectionBack = SystemColor::Highlight;
constexpr Color SelectionFore = SystemColor::HighlightText;

constexpr int DarkestLight = 128; // lightness from which on a window counts as light

} // namespace

UiServices::~UiServices() = default;

Color UiServices::ShadeColor(Color color, double factor)
{
    if (std::isnan(factor))
        throw Error(QStringLiteral("A colour cannot be shaded by a factor that is no number"));
    const QColor base = color.resolve(QGuiApplication::palette());
    return Color::rgb(shaded(base.red(), factor), shaded(base.green(), factor), shaded(base.blue(), factor));
}

ScaleMode UiServices::ScaleModeFromUnits(const QString& units)
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

TextBoxColors UiServices::darkColors()
{
    constexpr Color tagBack = Color::rgb(62, 70, 80);
    constexpr Color tagFore = Color::rgb(228, 231, 235);
    tavrin::TextBoxColors colors;
    colors.Normal = {Color::rgb(41, 45, 50),
                     Color::rgb(228, 231, 235),
                     Color::rgb(94, 101, 110),
                     SelectionBack,
                     SelectionFore,
                     tagBack,
                     tagFore};
    colors.Disabled = {
        Color::rgb(32, 35, 39), Color::rgb(163, 173, 184), Color::rgb(74, 81, 90),   SelectionBack,
        SelectionFore,          Color::rgb(48, 53, 60),    Color::rgb(163, 173, 184)};
    colors.Focused = {Color::rgb(41, 45, 50),
                      Color::rgb(255, 255, 255),
                      Color::rgb(99, 161, 228),
                      SelectionBack,
                      SelectionFore,
                      tagBack,
                      tagFore};
    return colors;
}

TextBoxColors UiServices::lightColors()
{
    constexpr Color tagBack = Color::rgb(226, 233, 241);
    constexpr Color tagFore = Color::rgb(29, 35, 41);
    tavrin::TextBoxColors colors;
    colors.Normal = {SystemColor::WindowBackground,
                     SystemColor::WindowText,
                     Color::rgb(165, 172, 181),
                     SelectionBack,
                     SelectionFore,
                     tagBack,
                     tagFore};
    colors.Disabled = {SystemColor::ButtonFace, SystemColor::GreyText, Color::rgb(197, 203, 211),
                       SelectionBack,           SelectionFore,         Color::rgb(236, 238, 241),
                       SystemColor::GreyText};
    colors.Focused = {SystemColor::WindowBackground,
                      SystemColor::WindowText,
                      Color::rgb(43, 108, 176),
                      SelectionBack,
                      SelectionFore,
                      tagBack,
                      tagFore};
    return colors;
}

TextBoxColors UiServices::TextBoxColors()
{
    const QColor window = QGuiApplication::palette().color(QPalette::Window);
    return window.lightness() < DarkestLight ? darkColors() : lightColors();
}

} // namespace tavrin
