#pragma once

#include "base/export/Export.h"
#include "frame/host_contracts/Records.h"

#include <QList>
#include <QString>

#include <memory>

namespace tavrin {

/// A column that the rows of a collection in memory have.
struct MemoryColumn
{
    /// Names compare without case.
    QString Name;
    /// Part of the row's key.
    bool IsKey = false;
    /// In UTF-16 units; 0 where no length is set.
    qint32 MaxLength = 0;
    /// Links the row to the record above it.
    bool IsLink = false;
};

/// One row in memory.
class TAVRIN_EXPORT MemoryRow : public tvTableRow
{
public:
    /// A row of these fields, which it shares with whoever gave them.
    explicit MemoryRow(const QList<tvFieldPtr>& fields, bool isNew = true);
    /// A row of empty fields.
    explicit MemoryRow(const QList<MemoryColumn>& columns, bool isNew = true);
    ~MemoryRow() override;

    HostObjectPtr Item(const QString& name) override;
    tvFieldPtr Item(int index) override;
    int FieldCount() const override;
    /// What its fields tell of themselves, in their order. A row made of these columns has fields like them.
    QList<MemoryColumn> Columns() const;
    bool IsNew() const override;
    /// A row that is not new counts as saved.
    void SetNew(bool isNew);

    /// The record that holds the row, itself or in one of its collections; nullptr when none does. A removed
    /// row is the record's until the save that deletes it.
    tvBusinessObjectPtr Owner() const;
    /// The row does not keep its owner alive. Records and collections in memory call this themselves.
    void SetOwner(const std::weak_ptr<tvBusinessObject>& owner);

    /// The row has been saved: it is new no longer, and links have become values.
    void MarkSaved();

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace tavrin
