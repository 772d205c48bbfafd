#include "PickedValue.h"

#include "base/Error.h"
#include "base/Variant.h"

#include <QCoreApplication>

namespace tavrin::workbench {

void PickedValue::load(const QVariant& stored, const UsedValues& usedValues)
{
    m_loaded = stored;
    try {
        m_picker.SetValue(stored, usedValues);
    } catch (const Error&) { // no value of this kind of picker: unknown, like one that is not in its list
        m_picker.SetValue(Null(), usedValues);
    }
    m_shown = value();
    refreshToolTip();
}

bool PickedValue::differs(const tvField& field) const
{
    const QVariant stored = field.Value();
    return !SameValue(value(), SameValue(stored, m_loaded) ? m_shown : stored);
}

void PickedValue::store(tvField& field) const
{
    if (differs(field))
        field.SetValue(value());
}

void PickedValue::refreshToolTip()
{
    const bool isHidden = !SameValue(m_loaded, m_shown) && SameValue(value(), m_shown);
    m_picker.setToolTip(
        isHidden ? QCoreApplication::translate("PickedValue",
                                               "The record holds %1, which is not in the list. It stays "
                                               "until you choose an entry.")
                       .arg(ToText(m_loaded).toHtmlEscaped())
                 : QString());
}

} // namespace tavrin::workbench
