#pragma once

#include "workbench/bindings/FieldBinding.h"

#include <QPointer>

namespace tavrin {
class AutoCompleteField;
}

namespace tavrin::workbench {

/// An `AutoCompleteField` over a field that holds the numeric value of a code.
class AutoCompleteBinding final : public FieldBinding
{
public:
    /// The control belongs to its parent.
    AutoCompleteBinding(AutoCompleteField* control, const QString& fieldName, const QString& label);

    QWidget* widget() const override;
    /// A code that the table does not know shows as its number, so that it is neither hidden nor lost.
    void load(tvTableRow& row) override;
    bool differs(tvTableRow& row) const override;
    void store(tvTableRow& row) const override;
    /// A text that is not the chosen entry's was typed and not chosen. It stands for no code: saving would
    /// lose it, or write a code that the person does not see.
    QString problem() const override;

private:
    QString textOf(const QVariant& code) const;

    AutoCompleteField* m_control;
    QString m_setText; // by a choice, or by code; what the person has typed differs
    bool m_loading = false;
};

} // namespace tavrin::workbench
