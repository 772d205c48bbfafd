#pragma once

#include "base/values/Color.h"

#include <QColor>
#include <QPalette>

namespace tavrin::test {

/// A palette whose windows have this colour.
inline QPalette windowOf(const QColor& color)
{
    QPalette palette;
    palette.setColor(QPalette::Window, color);
    return palette;
}

/// The colour as a control tells it.
inline Color plain(const QColor& color)
{
    return Color::rgb(color.red(), color.green(), color.blue());
}

} // namespace tavrin::test
