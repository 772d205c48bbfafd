#pragma once

#include "lookup/TavrinDropdown.h"
#include "workbench/bindings/FieldBinding.h"

namespace tavrin::workbench {

/// A field whose code is one of a short table. A drop-down takes no value before its list is there, so the
/// binding keeps the record's value until then; and a code that is not in the list stays, as long as the
/// person leaves it.
class CodeBinding final : public FieldBinding
{
public:
    CodeBinding(TavrinDropdown* dropdown, const QString& fieldName, const QString& label);

    QWidget* widget() const override { return m_dropdown; }
    void load(tvTableRow& row) override;
    bool differs(tvTableRow& row) const override;
    void store(tvTableRow& row) const override;

    /// The drop-down has been shown, and so has its list.
    void listIsThere();

private:
    QVariant value() const;
    void show();
    void changed();

    TavrinDropdown* m_dropdown; // owned by its parent
    QVariant m_loaded;
    bool m_isListThere = false;
    bool m_isTouched = false;
    bool m_isLoading = false;
};

} // namespace tavrin::workbench
