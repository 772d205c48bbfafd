#pragma once

#include "base/export/Export.h"
#include "host/records/RecordRow.h"

#include <functional>

namespace tavrin {

/// An ordered collection of rows of one table.
class TAVRIN_COMPANION_EXPORT RecordCollection : public tvTableCollection,
                                                 public std::enable_shared_from_this<RecordCollection>
{
public:
    /// A collection of no record, whose `ItemClass` is still to be set.
    RecordCollection();
    /// A collection of a record. `link` is the key field of the record, to which the rows' link column
    /// refers; `primary` the main row's cell that holds the primary key, nullptr where there is none.
    RecordCollection(const CollectionSchema& schema, tvFieldPtr link, std::shared_ptr<FieldCell> primary);
    ~RecordCollection() override;
    RecordCollection(const RecordCollection&) = delete;
    RecordCollection& operator=(const RecordCollection&) = delete;

    QString KeyColumn() const override;
    /// Its key is assigned, and not used again while the record is open. Raises an `Error` when no class is
    /// set or the class is not known.
    tvTableRowPtr NewItem() override;
    tvTableRowPtr AddNew() override;
    /// The row belongs to this collection from then on, and gets another key when its own is taken. Raises an
    /// `Error` for a row of another class, one that is in this or another collection already, and nullptr.
    void Add(const tvTableRowPtr& row) override;
    /// Raises an `Error` when there is no current row, and when the database refuses an immediate removal;
    /// the row then stays.
    void RemoveCurrent(bool immediately) override;
    qint32 Count() const override;
    tvTableRowPtr Item(qint32 index) override;
    /// Raises an `Error` when the collection has rows of another class.
    void SetItemClass(const QString& name) override;
    qint16 Position() const override { return m_position; }
    /// Raises an `Error` outside the collection.
    void SetPosition(qint16 position) override;
    bool CurrentIsPrimary() const override;
    /// Raises an `Error` when no row has this key, and in a collection without a primary row.
    void SetPrimaryValue(const QVariant& key) override;
    qint32 PrimaryIndex() const override;

    /// The collection's name in its record; "" outside a record.
    const QString& name() const { return m_schema.Name; }
    const CollectionSchema& schema() const { return m_schema; }
    const std::vector<RecordRowPtr>& rows() const { return m_rows; }
    /// Saved rows that the next save deletes.
    const std::vector<RecordRowPtr>& removedRows() const { return m_removed; }
    bool isChanged() const;
    bool hasKey(const QVariant& key) const { return indexOfKey(key) > 0; }
    /// Removes the rows whose column has this value; the next save deletes them.
    void removeWhere(const QString& column, const QVariant& value);

    /// For the store: a row as the database holds it.
    RecordRowPtr appendLoadedRow();
    void finishLoading();
    void markSaved();
    void setOwner(std::weak_ptr<ChangeSink> sink, std::weak_ptr<tvBusinessObject> record);
    /// Takes a saved row out of the database at once; raises an `Error` when that fails.
    using RowRemover = std::function<void(const RecordCollection&, const RecordRow&)>;
    /// `removed` is called when the row has left the collection too.
    void setRowRemover(RowRemover remover, std::function<void()> removed)
    {
        m_removeNow = std::move(remover);
        m_noteRemoved = std::move(removed);
    }

private:
    RecordRowPtr makeRow();
    /// Counted from 1; 0 when no row has the key.
    qint32 indexOfKey(const QVariant& key) const;
    void noteKey(const QVariant& key);
    /// A key that no row has and that was not given out before.
    qint32 nextKey();
    void checkAddable(const RecordRowPtr& row) const;
    void adopt(RecordRow& row);
    void append(const RecordRowPtr& row, bool makeCurrent);
    void takeOut(const RecordRowPtr& row);
    void notifyChanged();

    CollectionSchema m_schema;
    tvFieldPtr m_link;
    std::shared_ptr<FieldCell> m_primary; // key of the primary row; nullptr where there is none
    std::vector<RecordRowPtr> m_rows;
    std::vector<RecordRowPtr> m_removed;
    std::weak_ptr<ChangeSink> m_sink;
    std::weak_ptr<tvBusinessObject> m_record;
    RowRemover m_removeNow;
    std::function<void()> m_noteRemoved;
    qint32 m_lastKey = 0;
    qint16 m_position = 0;
};

using RecordCollectionPtr = std::shared_ptr<RecordCollection>;

} // namespace tavrin
