#pragma once

#include "workbench/bindings/FieldBinding.h"
#include "workbench/bindings/PickedValue.h"

namespace tavrin {
class AgencyPicker;
}

namespace tavrin::workbench {

/// An agency picker over a field that holds one agency's number.
class AgencyBinding final : public FieldBinding
{
public:
    /// The picker belongs to its parent.
    AgencyBinding(AgencyPicker* picker, const QString& fieldName, const QString& label);

    QWidget* widget() const override;
    void load(tvTableRow& row) override;
    bool differs(tvTableRow& row) const override;
    void store(tvTableRow& row) const override;

private:
    AgencyPicker* m_picker;
    PickedValue m_value;
    bool m_loading = false;
};

} // namespace tavrin::workbench
