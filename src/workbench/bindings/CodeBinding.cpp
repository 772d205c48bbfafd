#include "workbench/bindings/CodeBinding.h"

#include "base/failure/Guard.h"
#include "base/values/Variant.h"

#include <QScopedValueRollback>

namespace tavrin::workbench {

CodeBinding::CodeBinding(TavrinDropdown* dropdown, const QString& fieldName, const QString& label)
    : FieldBinding(fieldName, label)
    , m_dropdown(dropdown)
    , m_loaded(Null())
{
    connectGuarded(dropdown, &TavrinDropdown::Change, dropdown, "CodeBinding_Change", [this] { changed(); });
}

void CodeBinding::changed()
{
    if (m_isLoading || !m_isListThere)
        return;
    m_isTouched = true;
    Edited.raise();
}

void CodeBinding::listIsThere()
{
    m_isListThere = true;
    if (!m_isTouched)
        show();
}

void CodeBinding::show()
{
    const QScopedValueRollback loading(m_isLoading, true);
    m_dropdown->SetValue(m_loaded);
}

void CodeBinding::load(tvTableRow& row)
{
    m_loaded = field(row).Value();
    m_isTouched = false;
    show();
}

QVariant CodeBinding::value() const
{
    return m_isTouched ? m_dropdown->Value() : m_loaded;
}

bool CodeBinding::differs(tvTableRow& row) const
{
    const QVariant stored = field(row).Value();
    const QVariant held = value();
    return IsNull(stored) || IsNull(held) ? IsNull(stored) != IsNull(held) : !SameValue(stored, held);
}

void CodeBinding::store(tvTableRow& row) const
{
    if (differs(row))
        field(row).SetValue(value());
}

} // namespace tavrin::workbench
