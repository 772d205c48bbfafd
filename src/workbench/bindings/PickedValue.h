#pragma once

#include "frame/host_contracts/Contracts.h"

class QWidget;

namespace tavrin::workbench {

/// A stored value in a picker or another control for one value: loaded and read back by its contract.
///
/// A picker shows nothing for a value that its list does not know. Such a value is no change, and no save
/// loses it, for as long as the person leaves the picker alone.
class PickedValue
{
public:
    /// The picker must outlive this; `widget` is the same object.
    PickedValue(TavrinControl& picker, QWidget& widget)
        : m_picker(picker)
        , m_widget(widget)
    {
    }

    /// `usedValues` are those of the picker's siblings; nullptr for none.
    void load(const QVariant& stored, const UsedValues& usedValues);
    QVariant value() const { return m_picker.GetValue(); }
    /// The person has chosen or cleared.
    void touched();
    /// The value that the record holds.
    const QVariant& loaded() const { return m_loaded; }
    /// The picker holds something else than this field.
    bool differs(const tvField& field) const;
    void store(tvField& field) const;

private:
    /// Tells in the picker's tool tip of a value that is stored and cannot be shown.
    void refreshToolTip();

    TavrinControl& m_picker;
    QWidget& m_widget;
    mutable QVariant m_loaded;
    bool m_isTouched = false;
};

} // namespace tavrin::workbench
