#pragma once

#include "frame/control_frame/FormFile.h"

namespace tavrin::workbench {

/// A form, and the file that it came from.
struct LoadedForm
{
    FormFile form;
    QString path;
};

/// The form file of the folder when there is one and it holds controls, else the built-in one. `problems`
/// gets one sentence for each thing of the file that cannot be read.
LoadedForm loadForm(const QString& formName, const QString& formsFolder, QStringList& problems);

} // namespace tavrin::workbench
