#pragma once

class QDesignerFormEditorInterface;

namespace tavrin::designer {

/// Brings the controls' property sheets and menus into a form designer.
void installExtensions(QDesignerFormEditorInterface& designer);

} // namespace tavrin::designer
