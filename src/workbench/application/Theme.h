#pragma once

#include <QFontMetrics>
#include <QPalette>

namespace tavrin::workbench {

enum class ThemeChoice
{
    System,
    Light,
    Dark
};

/// True when the choice, or for `System` the desktop, is dark.
bool isDark(ThemeChoice choice);

/// Gives the application its style and colours.
void applyTheme(bool dark);

/// Height of a text box, of the buttons beside it, and of a row in a list.
int lineHeight(const QFontMetrics& metrics);

/// Colour of a quiet text beside a label.
QColor quietText(const QPalette& palette);

} // namespace tavrin::workbench
