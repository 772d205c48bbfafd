#pragma once

#include <QString>

namespace tavrin::designer {

/// What the palette says of a control.
struct ControlTexts
{
    QString toolTip;
    QString whatsThis;
};

/// `control` is the class name without namespace; one that is not known has empty texts.
ControlTexts textsOf(const QString& control);

} // namespace tavrin::designer
