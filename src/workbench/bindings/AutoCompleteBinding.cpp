#include "workbench/bindings/AutoCompleteBinding.h"

#include "base/failure/Guard.h"
#include "base/values/Variant.h"
#include "frame/host_contracts/Host.h"
#include "lookup/AutoCompleteField.h"

#include <QLineEdit>
#include <QScopedValueRollback>

namespace tavrin::workbench {

AutoCompleteBinding::AutoCompleteBinding(AutoCompleteField* control, const QString& fieldName,
                                         const QString& label)
    : FieldBinding(fieldName, label)
    , m_control(control)
{
    connectGuarded(control, &UserControl::PropertyChanged, control, "AutoCompleteBinding_Edited",
                   [this](const QString& key) {
                       if (key == QLatin1String("Text"))
                           m_setText = ToText(m_control->Text());
                       if (!m_loading && (key == QLatin1String("Value") || key == QLatin1String("Text")))
                           Edited.raise();
                   });
    // Keys that start no search are told of by the box alone.
    connectGuarded(qobject_cast<QLineEdit*>(control->focusProxy()), &QLineEdit::textEdited, control,
                   "AutoCompleteBinding_Typed", [this] { Edited.raise(); });
}

QWidget* AutoCompleteBinding::widget() const
{
    return m_control;
}

QString AutoCompleteBinding::textOf(const QVariant& code) const
{
    if (IsNull(code))
        return {};
    const TableValues values = currentHost().hostServices().GetTableValues(m_control->TableNo(), true);
    for (const TableValue& value : values.Items) {
        if (SameValue(value.Value, code)) {
            return value.ID == value.DisplayText ? value.DisplayText
                                                 : value.ID + QStringLiteral(" - ") + value.DisplayText;
        }
    }
    return ToText(code);
}

void AutoCompleteBinding::load(tvTableRow& row)
{
    const QScopedValueRollback loading(m_loading, true);
    const QVariant code = field(row).Value();
    m_control->SetText(textOf(code));
    m_control->SetValue(code);
}

bool AutoCompleteBinding::differs(tvTableRow& row) const
{
    return !SameValue(m_control->Value(), field(row).Value()) || !problem().isEmpty();
}

void AutoCompleteBinding::store(tvTableRow& row) const
{
    if (!SameValue(m_control->Value(), field(row).Value()))
        field(row).SetValue(m_control->Value());
}

QString AutoCompleteBinding::problem() const
{
    const QString text = ToText(m_control->Text());
    const bool isTyped = IsNull(m_control->Value()) || text != m_setText;
    return isTyped && !text.isEmpty() ? notChosenText(text, plainLabel()) : QString();
}

} // namespace tavrin::workbench
