#include "workbench/bindings/PickedBinding.h"

#include <QScopedValueRollback>

namespace tavrin::workbench {

PickedBinding::PickedBinding(TavrinControl& picker, QWidget& widget, const QString& fieldName,
                             const QString& label)
    : FieldBinding(fieldName, label)
    , m_widget(widget)
    , m_value(picker, widget)
{
}

void PickedBinding::changed()
{
    if (m_loading)
        return;
    m_value.touched();
    Edited.raise();
}

void PickedBinding::load(tvTableRow& row)
{
    const QScopedValueRollback loading(m_loading, true);
    m_value.load(field(row).Value(), nullptr);
}

bool PickedBinding::differs(tvTableRow& row) const
{
    return m_value.differs(field(row));
}

void PickedBinding::store(tvTableRow& row) const
{
    m_value.store(field(row));
}

} // namespace tavrin::workbench
