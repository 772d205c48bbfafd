#pragma once

#include "base/export/Export.h"
#include "host/records/Record.h"

namespace tavrin {

/// One row of a record's collection as a record of its own: its child collections are those rows of the
/// record that belong to it.
///
/// So "SuspectBO" is the suspect at the current position of an incident's suspects, and its "SuspectVictims"
/// are the links from this suspect to victims.
class TAVRIN_COMPANION_EXPORT PartOfRecord final : public tvBusinessObject
{
public:
    PartOfRecord(RecordPtr record, QString collection, RecordRowPtr row);

    /// A child collection of this row, or one of its fields; nullptr when there is neither. Controls
    /// build names with a plain "s", so "SuspectWitnesss" is "SuspectWitnesses".
    HostObjectPtr Item(const QString& name) override;

    const RecordPtr& record() const { return m_record; }
    const RecordRowPtr& row() const { return m_row; }

private:
    RecordPtr m_record;
    QString m_collection;
    RecordRowPtr m_row;
};

} // namespace tavrin
