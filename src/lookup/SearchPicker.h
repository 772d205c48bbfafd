#pragma once

#include "base/export/Export.h"
#include "frame/control_frame/UserControl.h"
#include "frame/host_contracts/Contracts.h"

#include <memory>

namespace tavrin {

/// What the four search pickers have in common: a search box, the value, and the host's contract. Nobody else
/// derives from it.
class TAVRIN_EXPORT SearchPicker : public UserControl, public TavrinControl
{
    Q_OBJECT

public:
    ~SearchPicker() override;

    /// The box's colours; by default the system's for windows and their text.
    Color BackColor() const;
    void SetBackColor(Color color);
    Color ForeColor() const;
    void SetForeColor(Color color);

    /// The font of the whole control, shared by reference; a change inside it shows at once. By default the
    /// container's. A flat picker asks the host's theme for its colours at that; a failure of it reaches the
    /// caller, and the font is the new one then.
    FontPtr Font() const;
    void SetFont(const FontPtr& font);

    /// What is chosen; Null, the default, for nothing. What a value is, each picker says.
    QVariant Value() const;
    virtual void SetValue(const QVariant& value) = 0;
    using TavrinControl::SetValue;

    /// Whether the person can search and choose; true by default.
    virtual bool Enabled() const = 0;
    virtual void SetEnabled(bool enabled) = 0;

    /// Whether the chosen entry's name shows beside the box; true by default.
    bool ShowName() const;
    virtual void SetShowName(bool show) = 0;

    /// What the person has typed and not chosen yet; "" for nothing. It stands for no value, and gives way to
    /// the chosen entry when the focus leaves the picker.
    QString TypedText() const;

    /// Whether values that sibling fields hold are left out of the list; false by default. Read at the next
    /// search.
    bool RemoveUsedValues() const;
    void SetRemoveUsedValues(bool remove);

    /// What the host's list says of the value; "" for Null. A failure of the host reaches the caller.
    virtual QString FullText() const = 0;
    virtual QString ShortText() const = 0;

Q_SIGNALS:
    /// The value is another one: by the person, by code, or by the host.
    void Change();
    /// The person has taken an entry of the list; behind `Change`.
    void ItemSelect();

protected:
    // The derived control sets `d` in its constructor, before `begin`.
    SearchPicker(QWidget* parent, const ControlSite& site);

    void UserControl_InitProperties() override;
    void UserControl_ReadProperties(const PropertyBag& bag) override;

    // The ways in by a property's name.
    void putValue(const QVariant& value);
    QString tellFullText() const;
    QString tellShortText() const;

    class Q_DECL_HIDDEN Private;
    std::unique_ptr<Private> d;

private:
    QVariant TavrinControl_GetValue() const final { return Value(); }
    /// Loads a record's value as `SetValue` with one argument does, and keeps it as the host's, which stays
    /// listed though inactive. The values of the sibling fields count from the next search on.
    void TavrinControl_SetValue(const QVariant& value, const UsedValues& usedValues) final;
};

} // namespace tavrin
