#pragma once

#include "base/export/Export.h"
#include "frame/control_frame/UserControl.h"
#include "frame/host_contracts/Contracts.h"

#include <memory>

namespace tavrin {

/// A grid combo for one agency of code table 997, with its long text beside it.
///
/// The person picks from a list of short and long texts; there is no search. The host fills the list.
///
///     auto* agency = new AgencyPicker(form);
///     agency->SetRemoveUsedValues(true);
///     connectGuarded(agency, &AgencyPicker::Change, form, "Form_AgencyChange",
///                    [=] { summary->setText(agency->FullText()); });
///     agency->SetValue(fieldOf(*row, QStringLiteral("AgencyNo"))->Value(), agenciesOfTheOtherRows);
///     ...
///     fieldOf(*row, QStringLiteral("AgencyNo"))->SetValue(agency->Value()); // the code's number, or Null
///
/// The list is loaded at run time when the control is restored from a form, and anew at each value that is
/// set.
class TAVRIN_EXPORT AgencyPicker final : public UserControl, public TavrinControl
{
    Q_OBJECT
    Q_CLASSINFO("ClassName", "TVBoundControls.AgencyPicker")
    Q_CLASSINFO("DefaultInterface", "_AgencyPicker")
    Q_CLASSINFO("EventInterface", "__AgencyPicker")
    Q_PROPERTY(qint32 hWnd READ hWnd STORED false)
    Q_PROPERTY(tavrin::Color BackColor READ BackColor WRITE SetBackColor)
    Q_PROPERTY(tavrin::Color ForeColor READ ForeColor WRITE SetForeColor)
    Q_PROPERTY(tavrin::FontPtr Font READ Font WRITE SetFont)
    Q_PROPERTY(QVariant Value READ Value WRITE putValue)
    Q_PROPERTY(bool Enabled READ Enabled WRITE SetEnabled)
    Q_PROPERTY(bool ShowName READ ShowName WRITE SetShowName)
    Q_PROPERTY(bool ListAllAgencies READ ListAllAgencies WRITE putListAllAgencies)
    Q_PROPERTY(bool RemoveUsedValues READ RemoveUsedValues WRITE SetRemoveUsedValues)
    Q_PROPERTY(QString FullText READ tellFullText STORED false)
    Q_PROPERTY(QString ShortText READ tellShortText STORED false)

public:
    /// Nothing is chosen, and a new picker has no list yet. With saved properties the list is loaded at run
    /// time; a failure of the host at that is passed over.
    explicit AgencyPicker(QWidget* parent = nullptr, const ControlSite& site = {});
    ~AgencyPicker() override;

    /// The combo's colours; by default the system's for windows and their text.
    Color BackColor() const;
    void SetBackColor(Color color);
    Color ForeColor() const;
    void SetForeColor(Color color);

    /// The font of combo, list and label, shared by reference; a change inside it shows at once. By default
    /// the container's.
    FontPtr Font() const;
    void SetFont(const FontPtr& font);

    /// The code's number in the chosen row, or Null, the default. Setting it loads the list anew, with
    /// nothing removed from it. A number that is not in the list becomes the value of the first row, the
    /// empty one; an inactive one is found. What is no number raises an `Error`, and so does a failure of the
    /// host's list service; the value is Null then, and the list the one before if none was loaded.
    QVariant Value() const;
    void SetValue(const QVariant& value);
    using TavrinControl::SetValue;

    /// Whether the person can choose; true by default.
    bool Enabled() const;
    void SetEnabled(bool enabled);

    /// Whether the label shows the chosen agency's long text; true by default. Without it the combo fills the
    /// control.
    bool ShowName() const;
    void SetShowName(bool show);

    /// Whether agencies that are no longer in use are listed; false by default. The value that is set stays
    /// listed in any case. Setting it loads the list anew at once; a failure of the host's list service
    /// reaches the caller and leaves list and value as they were, and the new option, which acts at the next
    /// load. In the designer no list is loaded.
    bool ListAllAgencies() const;
    void SetListAllAgencies(bool listAll);

    /// Whether the agencies that sibling fields hold are taken out of the list when the host sets a value;
    /// false by default.
    bool RemoveUsedValues() const;
    void SetRemoveUsedValues(bool remove);

    /// The chosen row's long text; "" for Null. Raises an `Error` where the list holds no text there.
    QString FullText() const;
    /// The chosen row's short text; "" for Null. Raises an `Error` where the list holds no text there.
    QString ShortText() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// Another row is the current one: by the person, by code, or by the host.
    void Change();
    /// Another row was chosen, and not by setting a value; before `Change`. The first choice after a value
    /// was set that was the current one already raises none.
    void ItemSelect();

protected:
    SavedProperties savedProperties() override;
    void UserControl_InitProperties() override;
    void UserControl_ReadProperties(const PropertyBag& bag) override;
    void UserControl_Resize() override;

private:
    QVariant TavrinControl_GetValue() const override { return Value(); }
    /// Loads a record's value as `SetValue` with one argument does. While `RemoveUsedValues` is true the
    /// values of the sibling fields are taken out of the list, but for `value` itself, which stays listed
    /// though inactive.
    void TavrinControl_SetValue(const QVariant& value, const UsedValues& usedValues) override;

    // The ways in by a property's name.
    void putValue(const QVariant& value);
    void putListAllAgencies(bool listAll);
    QString tellFullText() const;
    QString tellShortText() const;

    class Q_DECL_HIDDEN Private;
    std::unique_ptr<Private> d;
};

} // namespace tavrin
