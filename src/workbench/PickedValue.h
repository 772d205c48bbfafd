#pragma once

#include "frame/host_contracts/Records.h"
#include "lookup/SearchPicker.h"

namespace tavrin::workbench {

/// A stored value in a picker: loaded and read back by the picker's contract.
///
/// A picker shows nothing for a value that its list does not know. Such a value is no change, and no save
/// loses it, for as long as the person leaves the picker alone.
class PickedValue
{
public:
    /// The picker must outlive this.
    explicit PickedValue(SearchPicker& picker)
        : m_picker(picker)
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

    SearchPicker& m_picker;
    mutable QVariant m_loaded;
    bool m_isTouched = false;
};

} // namespace tavrin::workbench
