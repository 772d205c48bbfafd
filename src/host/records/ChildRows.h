#pragma once

#include "host/records/RecordCollection.h"

namespace tavrin {

/// The rows of a record's collection that belong to one row of another collection, such as the weapons of one
/// offense: a collection of its own over the same rows.
///
/// It holds the rows that belong there when it is made, and those that are added and removed through it. A
/// row that is added refers to the parent's key, also while that is still to change.
class ChildRows final : public tvTableCollection, public std::enable_shared_from_this<ChildRows>
{
public:
    /// `column` of `all` holds the key of `parent`. Raises an `Error` when `all` has no such column.
    ChildRows(RecordCollectionPtr all, QString column, const RecordRowPtr& parent);

    QString KeyColumn() const override { return m_all->KeyColumn(); }
    tvTableRowPtr NewItem() override;
    tvTableRowPtr AddNew() override;
    void Add(const tvTableRowPtr& row) override;
    void RemoveCurrent(bool immediately) override;
    qint32 Count() const override { return static_cast<qint32>(m_rows.size()); }
    tvTableRowPtr Item(qint32 index) override;
    /// The class is that of the whole collection. Raises an `Error` for another.
    void SetItemClass(const QString& name) override { m_all->SetItemClass(name); }
    qint16 Position() const override { return m_position; }
    void SetPosition(qint16 position) override;
    bool CurrentIsPrimary() const override { return false; }
    /// These collections have no primary row: raises an `Error`.
    void SetPrimaryValue(const QVariant& key) override;
    qint32 PrimaryIndex() const override { return 0; }

private:
    RecordCollectionPtr m_all;
    QString m_column;
    tvFieldPtr m_parentKey;
    std::vector<RecordRowPtr> m_rows;
    qint16 m_position = 0;
};

} // namespace tavrin
