#include "workbench/bindings/PickerBinding.h"

#include "base/failure/Guard.h"
#include "workbench/bindings/SearchTyping.h"

namespace tavrin::workbench {

PickerBinding::PickerBinding(SearchPicker* picker, const QString& fieldName, const QString& label)
    : PickedBinding(*picker, *picker, fieldName, label)
    , m_picker(picker)
{
    connectGuarded(picker, &SearchPicker::Change, picker, "PickerBinding_Edited", [this] { changed(); });
    followTyping(*picker, [this] {
        if (!isLoading())
            Edited.raise();
    });
}

bool PickerBinding::differs(tvTableRow& row) const
{
    return PickedBinding::differs(row) || !m_picker->TypedText().isEmpty();
}

QString PickerBinding::problem() const
{
    const QString typed = m_picker->TypedText();
    return typed.isEmpty() ? QString() : notChosenText(typed, plainLabel());
}

bool PickerBinding::isRequired() const
{
    return m_picker->property("Required").toBool(); // which only the flat pickers have
}

} // namespace tavrin::workbench
