#pragma once

#include "base/export/Export.h"

#include <QString>
#include <QStringList>
#include <QWidget>

#include <memory>

namespace tavrin {

/// Makes a form that Qt Designer has saved, as `QUiLoader` does, and needs no plugin for the library's
/// controls. Pictures are named from the folder of the file.
///
/// `problems` gets one sentence for each control that cannot be made, each property of a control that cannot
/// be put, each picture that cannot be read and each widget of a class that does not exist, naming the file
/// and the widget; all else stands, the property keeps what it had, and in the place of a widget stands what
/// the form says that it extends, or an empty one. Failures go there and not to the application's handler of
/// unhandled errors. A property that the control does not have is a problem when its name begins with a
/// capital; others are the form's own. A file that is no form gives nullptr and one sentence. The form
/// belongs to the caller, or to `parent` where there is one.
TAVRIN_EXPORT QWidget* loadUiForm(const QString& fileName, QWidget* parent, QStringList& problems);

} // namespace tavrin
