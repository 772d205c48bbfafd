#pragma once

#include "base/export/Export.h"

#include <QString>
#include <QStringList>
#include <QWidget>

#include <memory>

namespace tavrin {

/// Makes a form that Qt Designer has saved, as `QUiLoader` does, and needs no plugin for the library's
/// controls.
///
/// `problems` gets one sentence for each thing of a control that cannot be made or put, naming the file and
/// the control; all else stands, and an empty widget stands where a control would be. A property that the
/// control does not have is a problem when its name begins with a capital; others are the form's own. A file
/// that is no form gives nullptr and one sentence. The form belongs to the caller, or to `parent` where there
/// is one.
TAVRIN_EXPORT QWidget* loadUiForm(const QString& fileName, QWidget* parent, QStringList& problems);

} // namespace tavrin
