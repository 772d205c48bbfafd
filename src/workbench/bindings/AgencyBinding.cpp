#include "workbench/bindings/AgencyBinding.h"

#include "base/failure/Guard.h"
#include "lookup/AgencyPicker.h"

#include <QScopedValueRollback>

namespace tavrin::workbench {

AgencyBinding::AgencyBinding(AgencyPicker* picker, const QString& fieldName, const QString& label)
    : FieldBinding(fieldName, label)
    , m_picker(picker)
    , m_value(*picker, *picker)
{
    connectGuarded(picker, &AgencyPicker::Change, picker, "AgencyBinding_Edited", [this] {
        if (m_loading)
            return;
        m_value.touched();
        Edited.raise();
    });
}

QWidget* AgencyBinding::widget() const
{
    return m_picker;
}

void AgencyBinding::load(tvTableRow& row)
{
    const QScopedValueRollback loading(m_loading, true);
    m_value.load(field(row).Value(), nullptr);
}

bool AgencyBinding::differs(tvTableRow& row) const
{
    return m_value.differs(field(row));
}

void AgencyBinding::store(tvTableRow& row) const
{
    m_value.store(field(row));
}

} // namespace tavrin::workbench
