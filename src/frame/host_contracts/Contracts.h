#pragma once

#include "base/export/Export.h"
#include "frame/host_contracts/Records.h"

#include <QVariant>
#include <QVariantList>

namespace tavrin {

/// Number of a code table.
using TableNumber = qint32;

/// The numbers of code tables that the library itself uses.
namespace Tables {
inline constexpr TableNumber None = -1;                ///< no table
inline constexpr TableNumber SuspectRelationship = 84; ///< of a suspect to a party: `SuspRelList`
inline constexpr TableNumber Team = 228;               ///< `FlatUserPicker`
inline constexpr TableNumber Agency = 997;             ///< `AgencyPicker`
} // namespace Tables

/// Values that sibling fields of one list hold. Shared by reference: the control sees what the host adds
/// later.
using UsedValues = std::shared_ptr<QVariantList>;

/// Contract of a single-value field.
class TAVRIN_EXPORT TavrinControl
{
public:
    virtual ~TavrinControl() = default;

    /// The field's current value, exactly as the control's `Value`; Null when nothing is chosen.
    QVariant GetValue() const { return TavrinControl_GetValue(); }

    /// Loads a record's value into the field. The control keeps `usedValues`, which sibling fields of the
    /// same list already hold (nullptr counts as none), and keeps `value` apart as the one that stays
    /// selectable although inactive.
    void SetValue(const QVariant& value, const UsedValues& usedValues)
    {
        TavrinControl_SetValue(value, usedValues);
    }

private:
    virtual QVariant TavrinControl_GetValue() const = 0;
    virtual void TavrinControl_SetValue(const QVariant& value, const UsedValues& usedValues) = 0;
};

/// Which field of each row a `BoundControl` reads, and the code table of its values.
struct BoundBinding
{
    /// The row's field that holds the code.
    QString FieldName;
    /// Where the codes' descriptions come from.
    TableNumber TableNo = Tables::None;
};

/// Contract of a field that maps to several child rows. Both calls do nothing when `binding` or `rows` is
/// nullptr; the middle argument is not used.
class TAVRIN_EXPORT BoundControl
{
public:
    virtual ~BoundControl() = default;

    /// Loads: reads one field of each row.
    void FillControl(const BoundBinding* binding, const QVariant& ignored, const tvTableCollectionPtr& rows)
    {
        BoundControl_FillControl(binding, ignored, rows);
    }
    /// Saves: writes the control's values back to the rows.
    void SetValue(const BoundBinding* binding, const QVariant& ignored, const tvTableCollectionPtr& rows)
    {
        BoundControl_SetValue(binding, ignored, rows);
    }

private:
    virtual void BoundControl_FillControl(const BoundBinding* binding, const QVariant& ignored,
                                          const tvTableCollectionPtr& rows) = 0;
    virtual void BoundControl_SetValue(const BoundBinding* binding, const QVariant& ignored,
                                       const tvTableCollectionPtr& rows) = 0;
};

/// Contract of a whole section of a form that maps to a record.
class TAVRIN_EXPORT BoundSection
{
public:
    virtual ~BoundSection() = default;

    /// Loads the section from the record, which the section may keep.
    void ReadData(const tvBusinessObjectPtr& record) { BoundSection_ReadData(record); }
    /// Saves the section into the record. Raises an `Error` to refuse the save.
    void WriteData(const tvBusinessObjectPtr& record) { BoundSection_WriteData(record); }

private:
    virtual void BoundSection_ReadData(const tvBusinessObjectPtr& record) = 0;
    virtual void BoundSection_WriteData(const tvBusinessObjectPtr& record) = 0;
};

} // namespace tavrin
