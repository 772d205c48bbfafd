#pragma once

#include "base/export/Export.h"
#include "host/records/RecordField.h"

#include <vector>

namespace tavrin {

/// One row of a record in memory.
class TAVRIN_COMPANION_EXPORT RecordRow : public tvTableRow
{
public:
    explicit RecordRow(const TableSchema& table);

    HostObjectPtr Item(const QString& name) override;
    tvFieldPtr Item(int index) override;
    int FieldCount() const override;
    bool IsNew() const override { return m_isNew; }

    const TableSchema& table() const { return m_table; }
    /// The cell of a column; raises an `Error` that names a column which the table does not have.
    FieldCell& cell(const QString& column) const;
    const std::vector<FieldCell*>& cells() const { return m_cells; }
    /// Value of the column that tells the rows of one record apart; Null when there is none.
    QVariant keyValue() const;
    /// Raises an `Error` that names table, field, row and lengths when a text is longer than its column.
    /// `position` is the row's place in its collection, 0 for the main row.
    void checkLengths(int position) const;

    bool isChanged() const;
    /// One of the key columns differs from what was saved.
    bool isKeyChanged() const;
    void markSaved();

    void setOwner(const std::weak_ptr<ChangeSink>& sink, std::weak_ptr<tvBusinessObject> record);
    /// The record that the row belongs to; nullptr when it stands alone.
    tvBusinessObjectPtr record() const { return m_record.lock(); }
    /// The row stands in a collection.
    bool isPlaced() const { return m_isPlaced; }
    void setPlaced(bool placed) { m_isPlaced = placed; }

private:
    TableSchema m_table;
    std::vector<tvFieldPtr> m_fields;
    std::vector<FieldCell*> m_cells; // of m_fields
    std::weak_ptr<tvBusinessObject> m_record;
    bool m_isNew = true;
    bool m_isPlaced = false;
};

using RecordRowPtr = std::shared_ptr<RecordRow>;

} // namespace tavrin
