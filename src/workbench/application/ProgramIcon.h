#pragma once

#include <QIcon>

namespace tavrin::workbench {

/// The program's icon in all its sizes, for its windows; where a desktop wants none of these, it finds the
/// installed one by the name of the desktop file.
QIcon programIcon();

} // namespace tavrin::workbench
