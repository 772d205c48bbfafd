#pragma once

#include <QVariant>

namespace tavrin {
class UserControl;
}

namespace tavrin::designer {

/// The value that a new control of this class, on the place where this one stands, begins with.
QVariant startValue(UserControl& control, const QString& property);

/// Whether a form must hold the property although the control has its start value. A control that is restored
/// from a form of its own puts every property; one that Qt loads puts those that the form holds, and some
/// setters do more than to store: they load a list, or the restored default is another than the start value.
bool isAlwaysSaved(const UserControl& control, const QString& property);

/// Whether no form holds the property, since a new control takes it from elsewhere in any case: the flat
/// pickers' colours are the theme's from the first time they show.
bool isNeverSaved(const UserControl& control, const QString& property);

} // namespace tavrin::designer
