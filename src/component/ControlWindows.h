#pragma once

#include "component/CallResult.h"
#include "component/ClassRegister.h"

#include <QString>

namespace tavrin {

// The application object and the windows of programs that have no Qt of their own.

/// Makes the application object where there is none; false when there is one. Raises TV_E_UNEXPECTED for one
/// that cannot show windows and TV_E_FAIL where there is no display.
bool startApplication();
/// Destroys what `startApplication` has made, and the controls before it; false when it has made nothing.
/// Raises TV_E_UNEXPECTED inside its loop and inside a callback.
bool endApplication();
/// Runs the application's loop. Raises TV_E_UNEXPECTED inside itself.
void runApplication();
/// Handles events, waiting for them for at most so long.
void processEvents(int milliseconds);

/// A control of the class on the parent that the site tells.
UserControl* createControl(const PublicClass& controlClass, const TvSite& site);
/// Now, or behind the callback that is under way.
void destroyControl(UserControl& control);

void showControl(UserControl& control, bool visible);
void moveControl(UserControl& control, const QRect& place);
/// Raises TV_E_UNEXPECTED for a control in a window of the program's own.
void setWindowTitle(UserControl& control, const QString& title);

} // namespace tavrin
