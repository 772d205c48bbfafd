#pragma once

#include "lookup/SearchPicker.h"
#include "workbench/bindings/FieldBinding.h"
#include "workbench/bindings/PickedValue.h"

namespace tavrin::workbench {

/// A search picker over a field that holds one value.
class PickerBinding final : public FieldBinding
{
public:
    /// The picker belongs to its parent.
    PickerBinding(SearchPicker* picker, const QString& fieldName, const QString& label);

    QWidget* widget() const override { return m_picker; }
    void load(tvTableRow& row) override;
    bool differs(tvTableRow& row) const override;
    void store(tvTableRow& row) const override;
    /// A text that was typed and not chosen stands for no value.
    QString problem() const override;
    /// The picker's form marks it so.
    bool isRequired() const override;
    /// The value that the record held when it was loaded.
    const QVariant& loaded() const { return m_value.loaded(); }

private:
    SearchPicker* m_picker;
    PickedValue m_value;
    bool m_loading = false;
};

} // namespace tavrin::workbench
