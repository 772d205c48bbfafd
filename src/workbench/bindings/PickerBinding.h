#pragma once

#include "lookup/SearchPicker.h"
#include "workbench/bindings/PickedBinding.h"

namespace tavrin::workbench {

/// A search picker over a field that holds one value. A text that is typed and not chosen is a change too.
class PickerBinding final : public PickedBinding
{
public:
    /// The picker belongs to its parent.
    PickerBinding(SearchPicker* picker, const QString& fieldName, const QString& label);

    bool differs(tvTableRow& row) const override;
    /// A text that was typed and not chosen stands for no value.
    QString problem() const override;
    /// The picker's form marks it so.
    bool isRequired() const override;

private:
    SearchPicker* m_picker;
};

} // namespace tavrin::workbench
