#pragma once

#include <QIcon>
#include <QString>

namespace tavrin::designer {

/// The palette's icon of a control, by its class name without namespace; null for one that is not known. It
/// is drawn at each size anew, in the colours of the palette of the moment.
QIcon controlIcon(const QString& control);

} // namespace tavrin::designer
