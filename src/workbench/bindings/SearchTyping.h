#pragma once

#include "base/failure/Guard.h"
#include "lookup/SearchPicker.h"

#include <QLineEdit>

namespace tavrin::workbench {

/// Calls `changed` whenever the text of the picker's box is another one: what was typed and not chosen
/// belongs to the unsaved changes of a window, until it gives way to the choice.
template <typename Changed>
void followTyping(SearchPicker& picker, Changed changed)
{
    connectGuarded(picker.findChild<QLineEdit*>(), &QLineEdit::textChanged, &picker, "SearchPicker_Typed",
                   std::move(changed));
}

} // namespace tavrin::workbench
