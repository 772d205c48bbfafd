#pragma once

#include "base/export/Export.h"
#include "frame/host_contracts/Services.h"
#include "lookup/SearchPicker.h"
#include "widgets/search_box/AutoCompleteTextBox.h"

namespace tavrin {

class BoxShape;
class GroupBox;
class Label;
class Link;
class Tag;

/// The frame of both flat pickers: a caption, and below it a box that changes its colours with its state. In
/// the box are the search box, a tag with the chosen name, and one link: the drop-down sign while nothing is
/// chosen, the clear sign otherwise. Either takes the focus into the search box.
///
/// From the keyboard: Down or Alt+Down opens the list. Where the tag has taken the search box's place,
/// Delete or Backspace clears, and Ctrl+C copies the chosen name.
class TAVRIN_EXPORT FlatPicker : public SearchPicker
{
    Q_OBJECT

public:
    /// The line above the box; "" for none. An '&' marks an access key.
    QString Caption() const { return m_caption; }
    void SetCaption(const QString& caption);

    /// Marks the caption with "*". The picker itself refuses nothing.
    bool Required() const { return m_required; }
    void SetRequired(bool required);

    /// Its own state; in a disabled form it looks disabled all the same.
    bool Enabled() const final { return isEnabledTo(parentWidget()); }
    void SetEnabled(bool enabled) final;

    /// Whether a tag shows the chosen name.
    void SetShowName(bool show) final;

    /// What the host's employee list says of the value; "" for Null.
    QString FullText() const;
    QString ShortText() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    FlatPicker(QWidget* parent, const ControlSite& site);

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

    void RefreshAppearance();
    void LayoutControls();
    FontPtr CloneFont(const tavrin::Font& font) const;
    Twips MeasureTextWidth(const QString& text) const;
    Twips MeasureTextHeight(const tavrin::Font& font) const;
    Twips captionHeight() const;
    bool hasFocusInside() const { return m_hasFocus; }

    void UserControl_InitProperties() override;
    void UserControl_Show() override;
    void UserControl_Resize() override;
    void UserControl_EnterFocus() override;
    void UserControl_ExitFocus() override;
    void UserControl_AmbientChanged(const QString& propertyName) override;
    void UserControl_KeyDown(int& keyCode, int shift) override;
    void applyFont() final;
    void selectionChanged() final;
    void selectionForgotten() final;
    void changeEvent(QEvent* event) override;

    SavedProperty captionProperty();
    SavedProperty requiredProperty();

    AutoCompleteTextBox* acTextBox;

private:
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
    std::vector<Subscription> m_subscriptions;
};

} // namespace tavrin
