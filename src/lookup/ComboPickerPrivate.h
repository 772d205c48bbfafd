#pragma once

#include "lookup/ComboPicker.h"
#include "lookup/SearchPickerPrivate.h"
#include "widgets/search_box/AutoCompleteComboBox.h"

namespace tavrin {

class Label;

class ComboPicker::Private : public SearchPicker::Private
{
public:
    QString boxText(const XmlNode& item) override;
    void selectionChanged() override;
    void selectionForgotten() override;
    void applyFont() override;
    /// The fixed font of the rows, in bold, whatever `Font` says.
    static void applyRowFont(PictureSurface& picture);

    /// Width of the combo box, and of its list.
    virtual Twips comboWidth() const = 0;
    virtual Twips listWidth() const = 0;
    /// Places the label beside the combo box.
    virtual void placeLabel() = 0;

    Twips labelLeft() const;
    void LayoutControls();

    NumberedList& m_numberedList;
    AutoCompleteComboBox* acComboBox;
    Label* lblDescription;
    bool m_inResize = false;

protected:
    /// `list` lives in the derived one, and may be made behind this.
    Private(ComboPicker& picker, NumberedList& list);
};

} // namespace tavrin
