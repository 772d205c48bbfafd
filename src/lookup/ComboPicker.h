#pragma once

#include "base/export/Export.h"
#include "lookup/SearchPicker.h"
#include "widgets/search_box/AutoCompleteComboBox.h"

namespace tavrin {

class Label;

/// The frame of `EmployeePicker` and `OffensePicker`: a combo box over a numbered list, and a label beside it
/// with the chosen entry's long text.
class TAVRIN_EXPORT ComboPicker : public SearchPicker
{
    Q_OBJECT

public:
    /// A number as a double, or Null for nothing. A number that is not in the list becomes Null; an inactive
    /// one is found. A value that makes no valid expression raises an `Error`.
    void SetValue(const QVariant& value) override;
    using SearchPicker::SetValue;

    bool Enabled() const override;
    void SetEnabled(bool enabled) override;

    /// Whether the label shows the chosen entry's long text; without it the combo box fills the control.
    void SetShowName(bool show) override;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    /// `list` lives in the derived control, and may be made behind this.
    ComboPicker(QWidget* parent, const ControlSite& site, NumberedList& list);

    QString boxText(const XmlNode& item) override;
    void selectionChanged() override;
    void selectionForgotten() override;
    void applyFont() override;
    /// The fixed font of the rows, in bold, whatever `Font` says.
    static void applyRowFont(PictureSurface& picture);

    void UserControl_AmbientChanged(const QString& propertyName) override;
    void UserControl_Resize() override;
    /// Width of the combo box, and of its list.
    virtual Twips comboWidth() const = 0;
    virtual Twips listWidth() const = 0;
    /// Places the label beside the combo box.
    virtual void placeLabel() = 0;

    Twips labelLeft() const;

    AutoCompleteComboBox* acComboBox;
    Label* lblDescription;

private:
    NumberedList& m_list;
    bool m_inResize = false;
};

} // namespace tavrin
