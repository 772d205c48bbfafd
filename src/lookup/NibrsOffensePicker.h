#pragma once

#include "base/export/Export.h"
#include "frame/control_frame/UserControl.h"
#include "frame/host_contracts/Contracts.h"

#include <memory>

namespace tavrin {

/// A plain drop-down over the offense codes of NIBRS (National Incident-Based Reporting System), with
/// "(None)" as its first entry.
///
/// The codes come from the host's component "NIBRS.Singletons". Without it the control cannot be used, and
/// making it raises the host's error.
///
///     auto* code = new NibrsOffensePicker(form);
///     code->SetValue(QStringLiteral("13A"));
///     ...
///     fieldOf(*row, QStringLiteral("NibrsCode"))->SetValue(code->Value()); // the code as text, or Null
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
    Q_PROPERTY(QVariant Value READ tellValue WRITE putValue)
    Q_PROPERTY(QString Text READ Text STORED false)
    Q_PROPERTY(bool ValueIsNull READ tellValueIsNull STORED false)
    Q_PROPERTY(tavrin::FontPtr Font READ Font WRITE SetFont)
    Q_PROPERTY(tavrin::Color ForeColor READ ForeColor WRITE SetForeColor)
    Q_PROPERTY(tavrin::Color BackColor READ BackColor WRITE SetBackColor)

public:
    /// Builds the list, "(None)" selected. Raises what the host raises at that; the designer does without a
    /// list.
    explicit NibrsOffensePicker(QWidget* parent = nullptr, const ControlSite& site = {});
    ~NibrsOffensePicker() override;

    /// Its own state, whatever that of the form is; true by default. Not saved.
    bool Enabled() const { return isEnabledTo(parentWidget()); }
    void SetEnabled(bool enabled);

    /// The code, as text; Null, the default, for "(None)". A code that the dictionary lacks selects "(None)".
    /// In the designer any value is kept. Each reading asks the host's module, whose failure reaches the
    /// caller; a put that failed leaves the code as it was, but "(None)" where the host loads a record.
    QVariant Value() const;
    void SetValue(const QVariant& value);
    using TavrinControl::SetValue;

    /// What the box shows: "code - description".
    QString Text() const;
    /// Whether `Value` is Null; asks the host's module as `Value` does, and raises what it raises.
    bool ValueIsNull() const;

    /// The box's font, shared by reference; a change inside it shows at the next resize. By default the
    /// container's in a new picker, and the application's in one that was restored without a saved font.
    FontPtr Font() const;
    void SetFont(const FontPtr& font);
    /// The box's colours; by default the system's for windows and their text.
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
    /// Loads a record's value as `SetValue` with one argument does. The used values are not heeded.
    void TavrinControl_SetValue(const QVariant& value, const UsedValues& usedValues) override;

    // The ways in by a property's name.
    QVariant tellValue() const;
    void putValue(const QVariant& value);
    bool tellValueIsNull() const;

    class Q_DECL_HIDDEN Private;
    std::unique_ptr<Private> d;
};

} // namespace tavrin
