#pragma once

#include "base/export/Export.h"
#include "frame/control_frame/UserControl.h"
#include "frame/host_contracts/Contracts.h"

#include <vector>

namespace tavrin {

class FlatDropdown;

/// A plain drop-down over the offense codes of NIBRS (National Incident-Based Reporting System), with
/// "(None)" as its first entry.
///
/// The codes come from the host's component "NIBRS.Singletons". Without it the control cannot be used, and
/// making it raises the host's error.
///
///     auto* code = new NibrsOffensePicker(form);
///     code->SetValue(QStringLiteral("13A"));
///     ...
///     record.setValue("NibrsCode", code->Value()); // the code as text, or Null for "(None)"
///
/// The list is built when the control is made, and not again.
class TAVRIN_EXPORT NibrsOffensePicker final : public UserControl, public TavrinControl
{
    Q_OBJECT
    Q_CLASSINFO("ClassName", "TVBoundControls.NibrsOffensePicker")
    Q_CLASSINFO("DefaultInterface", "_NibrsOffensePicker")
    Q_CLASSINFO("EventInterface", "__NibrsOffensePicker")
    Q_PROPERTY(qint32 hWnd READ hWnd STORED false)
    Q_PROPERTY(bool Enabled READ Enabled WRITE SetEnabled STORED false)
    Q_PROPERTY(QVariant Value READ Value WRITE SetValue)
    Q_PROPERTY(QString Text READ Text STORED false)
    Q_PROPERTY(bool ValueIsNull READ ValueIsNull STORED false)
    Q_PROPERTY(tavrin::FontPtr Font READ Font WRITE SetFont)
    Q_PROPERTY(tavrin::Color ForeColor READ ForeColor WRITE SetForeColor)
    Q_PROPERTY(tavrin::Color BackColor READ BackColor WRITE SetBackColor)

public:
    explicit NibrsOffensePicker(QWidget* parent = nullptr, const ControlSite& site = {});
    ~NibrsOffensePicker() override;

    /// Not saved.
    bool Enabled() const { return isEnabledTo(parentWidget()); }
    void SetEnabled(bool enabled);

    /// The code, as text; Null for "(None)". A code that the dictionary lacks selects "(None)". In the
    /// designer any value is kept. Each reading asks the host's module, whose failure reaches the caller; a
    /// put that failed leaves the code as it was, but "(None)" where the host loads a record.
    QVariant Value() const;
    void SetValue(const QVariant& value);
    using TavrinControl::SetValue;

    /// What the box shows: "code - description".
    QString Text() const;
    bool ValueIsNull() const;

    /// Shared by reference. A change inside it shows at the next resize.
    FontPtr Font() const { return m_font; }
    void SetFont(const FontPtr& font);
    Color ForeColor() const;
    void SetForeColor(Color color);
    Color BackColor() const;
    void SetBackColor(Color color);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// An entry was selected, by the person or by code.
    void Change();

protected:
    SavedProperties savedProperties() override;
    bool trapsPropertyErrors() const override { return false; }
    void UserControl_InitProperties() override;
    void UserControl_ReadProperties(const PropertyBag& bag) override;
    void UserControl_Resize() override;
    void UserControl_AmbientChanged(const QString& propertyName) override;

private:
    QVariant TavrinControl_GetValue() const override { return Value(); }
    /// The used values are not heeded.
    void TavrinControl_SetValue(const QVariant& value, const UsedValues& usedValues) override;

    void FillList();
    /// The entry of a code; 0, "(None)", for one that the dictionary lacks.
    int entryOf(const QVariant& value) const;
    void put(const QVariant& value, int entry);
    void LayoutControls();

    FlatDropdown* cboNibrsCode;
    QVariant m_designValue;
    FontPtr m_font;
    bool m_inLayout = false;
    std::vector<Subscription> m_subscriptions;
};

} // namespace tavrin
