#pragma once

#include "lookup/FlatPicker.h"
#include "lookup/SearchPickerPrivate.h"
#include "widgets/search_box/AutoCompleteTextBox.h"

namespace tavrin {

class BoxShape;
class GroupBox;
class Label;
class Link;
class Tag;

class FlatPicker::Private : public SearchPicker::Private
{
public:
    // What the two pickers do in their own ways.
    virtual QVariant valueOf(const XmlNode& item) = 0;
    virtual QString longText(const XmlNode& item) = 0;
    /// Characters that the tag shows.
    virtual int tagLength() const = 0;
    /// Places the tag at this margin.
    virtual void placeTag(Tag& tag, Twips margin) = 0;
    /// The search box has its place beside the tag, or alone in the box.
    virtual void showBesideTag() = 0;
    virtual void showAlone() = 0;

    void applyFont() final;
    void selectionChanged() final;
    void selectionForgotten() final;

    void RefreshAppearance();
    void LayoutControls();
    FontPtr CloneFont(const tavrin::Font& font) const;
    Twips MeasureTextWidth(const QString& text) const;
    Twips MeasureTextHeight(const tavrin::Font& font) const;
    Twips captionHeight() const;
    bool showsTag() const;
    Twips BoxMargin() const;
    Twips boxHeight() const;
    Twips standardWidth() const;
    void applyFonts();
    void applyColors();
    void refreshLink();
    void refreshCaption();
    void resizeToContent();
    void placeLink(Twips caption, Twips box);
    void placeTextBox(Twips caption, Twips box, Twips innerWidth);
    void lnkDropDown_Click();
    void clearByLink();

    SavedProperty captionProperty();
    SavedProperty requiredProperty();

    AutoCompleteTextBox* acTextBox;
    GroupBox* grpDropDownButton;
    Link* lnkDropDown;
    Label* lblCaption;
    Tag* tagName;
    BoxShape* shpBorder;

    QString m_caption;
    bool m_required = false;
    bool m_hasFocus = false;
    bool m_inLayout = false;
    bool m_isRefreshing = false;
    QString m_fullText; // of the chosen item

protected:
    explicit Private(FlatPicker& picker);
};

} // namespace tavrin
