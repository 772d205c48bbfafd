#pragma once

#include "base/export/Export.h"
#include "lookup/SearchPicker.h"

namespace tavrin {

/// The frame of `EmployeePicker` and `OffensePicker`: a combo box over a numbered list, and a label beside it
/// with the chosen entry's long text.
class TAVRIN_EXPORT ComboPicker : public SearchPicker
{
    Q_OBJECT

public:
    /// A number as a double, or Null for nothing. A number that is not in the list becomes Null; an inactive
    /// one is found. A value that makes no valid expression raises an `Error`, and so does a failure of the
    /// host; the value then stands, and shows no name.
    void SetValue(const QVariant& value) override;
    using SearchPicker::SetValue;

    bool Enabled() const override;
    void SetEnabled(bool enabled) override;

    /// Whether the label shows the chosen entry's long text; true by default. Without it the combo box fills
    /// the control.
    void SetShowName(bool show) override;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    // For `EmployeePicker` and `OffensePicker`.
    ComboPicker(QWidget* parent, const ControlSite& site);

    void UserControl_AmbientChanged(const QString& propertyName) override;
    void UserControl_Resize() override;

    class Q_DECL_HIDDEN Private;

private:
    Private& own() const;
};

} // namespace tavrin
