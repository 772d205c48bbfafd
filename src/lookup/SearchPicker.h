#pragma once

#include "base/export/Export.h"
#include "frame/control_frame/UserControl.h"
#include "frame/host_contracts/Contracts.h"
#include "lookup/NumberedList.h"
#include "widgets/search_box/SearchBox.h"

#include <QMetaMethod>
#include <QPointer>

#include <functional>

namespace tavrin {

/// What the four search pickers have in common: a search box, the value, and the host's contract.
class TAVRIN_EXPORT SearchPicker : public UserControl, public TavrinControl
{
    Q_OBJECT

public:
    /// The box's colours.
    Color BackColor() const { return m_box.BackColor(); }
    void SetBackColor(Color color);
    Color ForeColor() const { return m_box.ForeColor(); }
    void SetForeColor(Color color);

    /// Shared by reference; a change inside it shows at once. By default the container's.
    FontPtr Font() const { return m_font.get(); }
    void SetFont(const FontPtr& font);

    QVariant Value() const { return m_value; }
    virtual void SetValue(const QVariant& value) = 0;
    using TavrinControl::SetValue;

    virtual bool Enabled() const = 0;
    virtual void SetEnabled(bool enabled) = 0;

    bool ShowName() const { return m_showName; }
    virtual void SetShowName(bool show) = 0;

    /// What the person has typed and not chosen yet; "" for nothing. It stands for no value, and gives way to
    /// the chosen entry when the focus leaves the picker.
    QString TypedText() const;

    /// Whether values that sibling fields hold are left out of the list; read at the next search.
    bool RemoveUsedValues() const { return m_removeUsedValues; }
    void SetRemoveUsedValues(bool remove);

Q_SIGNALS:
    /// The value is another one: by the person, by code, or by the host.
    void Change();
    /// The person has taken an entry of the list; behind `Change`.
    void ItemSelect();

protected:
    /// `box` belongs to the control.
    SearchPicker(QWidget* parent, const ControlSite& site, SearchBox& box);

    /// The defaults of a new instance.
    void InitDefaults();
    /// The value of a picker over a numbered list: stored first, then looked up. Where that fails the value
    /// stands, and no entry shows: that of the value before would be a wrong name.
    void putNumber(const QVariant& value, NumberedList& list);
    /// What a search heeds; `listAll` is the picker's own option.
    SearchOptions searchOptions(bool listAll) const;

    /// Asks the followers of a signal such as `Filter` whether to leave a number out; nothing where there are
    /// none.
    template <typename Picker>
    std::function<void(qint32, bool&)> followersOf(void (Picker::*signal)(qint32, bool&))
    {
        if (!isSignalConnected(QMetaMethod::fromSignal(signal)))
            return {};
        return [self = QPointer(static_cast<Picker*>(this)), signal](qint32 number, bool& exclude) {
            if (self) // a follower may delete the control
                Q_EMIT std::invoke(signal, *self, number, exclude);
        };
    }

    virtual void search(const QString& query, Suggestions& results) = 0;
    virtual void drawRow(PictureSurface& picture, const XmlNode& item, const QString& query,
                         bool selected) = 0;
    virtual QString boxText(const XmlNode& item) = 0;
    virtual void selectionChanged() = 0;
    /// The box shows no entry any more, whatever the value is.
    virtual void selectionForgotten() {}
    /// The host's value could not be put; what is left belongs to the record before.
    virtual void loadFailed(const QVariant&) {}
    /// The font is another one, or has changed.
    virtual void applyFont() = 0;

    SavedProperty enabledProperty();
    SavedProperty showNameProperty();
    SavedProperty removeUsedValuesProperty();
    SavedProperty fontProperty();
    SavedProperty backColorProperty();
    SavedProperty foreColorProperty();
    /// A yes or no that goes straight into its field.
    static SavedProperty flagProperty(const QString& key, bool& field);

    void UserControl_InitProperties() override;
    void UserControl_ReadProperties(const PropertyBag& bag) override;

    void showDisplayName();

    QVariant m_value;
    QVariant m_hostValue;
    bool m_showName = true;
    bool m_removeUsedValues = false;

private:
    QVariant TavrinControl_GetValue() const final { return Value(); }
    void TavrinControl_SetValue(const QVariant& value, const UsedValues& usedValues) final;

    SearchBox& m_box;
    SharedFont m_font;
    UsedValues m_usedValues;
    int m_contractPuts = 0;
    std::vector<Subscription> m_subscriptions;
};

} // namespace tavrin
