#include "workbench/bindings/PickedValue.h"

#include "base/failure/Error.h"
#include "base/values/Variant.h"

#include <QCoreApplication>
#include <QWidget>

namespace tavrin::workbench {

void PickedValue::load(const QVariant& stored, const UsedValues& usedValues)
{
    m_loaded = stored;
    try {
        m_picker.SetValue(stored, usedValues);
    } catch (const Error&) { // no value of this kind of picker: unknown, like one that is not in its list
        m_picker.SetValue(Null(), usedValues);
    }
    m_isTouched = false;
    refreshToolTip();
}

void PickedValue::touched()
{
    m_isTouched = true;
    refreshToolTip();
}

bool PickedValue::differs(const tvField& field) const
{
    return m_isTouched && !SameValue(value(), field.Value());
}

void PickedValue::store(tvField& field) const
{
    if (!differs(field))
        return;
    field.SetValue(value());
    m_loaded = value();
}

void PickedValue::refreshToolTip()
{
    const bool isHidden = !m_isTouched && !SameValue(m_loaded, value());
    m_widget.setToolTip(
        isHidden ? QCoreApplication::translate("PickedValue",
                                               "The record holds %1, which is not in the list. It stays "
                                               "until you choose an entry.")
                       .arg(ToText(m_loaded).toHtmlEscaped())
                 : QString());
}

} // namespace tavrin::workbench
