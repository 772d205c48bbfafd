#include "workbench/bindings/PickerBinding.h"

#include "base/failure/Guard.h"
#include "workbench/bindings/SearchTyping.h"

#include <QScopedValueRollback>

namespace tavrin::workbench {

PickerBinding::PickerBinding(SearchPicker* picker, const QString& fieldName, const QString& label)
    : FieldBinding(fieldName, label)
    , m_picker(picker)
    , m_value(*picker, *picker)
{
    connectGuarded(picker, &SearchPicker::Change, picker, "PickerBinding_Edited", [this] {
        if (m_loading)
            return;
        m_value.touched();
        Edited.raise();
    });
    followTyping(*picker, [this] {
        if (!m_loading)
            Edited.raise();
    });
}

void PickerBinding::load(tvTableRow& row)
{
    const QScopedValueRollback loading(m_loading, true);
    m_value.load(field(row).Value(), nullptr);
}

bool PickerBinding::differs(tvTableRow& row) const
{
    return m_value.differs(field(row)) || !m_picker->TypedText().isEmpty();
}

void PickerBinding::store(tvTableRow& row) const
{
    m_value.store(field(row));
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
