#pragma once

#include "workbench/bindings/FieldBinding.h"
#include "workbench/bindings/PickedValue.h"

namespace tavrin::workbench {

/// A picker over a field that holds one value.
class PickedBinding : public FieldBinding
{
public:
    QWidget* widget() const override { return &m_widget; }
    void load(tvTableRow& row) override;
    bool differs(tvTableRow& row) const override;
    void store(tvTableRow& row) const override;
    /// The value that the record held when it was loaded.
    const QVariant& loaded() const { return m_value.loaded(); }

protected:
    /// The picker belongs to its parent; `widget` is the same object.
    PickedBinding(TavrinControl& picker, QWidget& widget, const QString& fieldName, const QString& label);

    /// The picker's value is another one.
    void changed();
    bool isLoading() const { return m_loading; }

private:
    QWidget& m_widget;
    PickedValue m_value;
    bool m_loading = false;
};

} // namespace tavrin::workbench
