#pragma once

#include "base/export/Export.h"
#include "frame/host_contracts/Records.h"
#include "frame/memory_records/MemoryRow.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <memory>

namespace tavrin {

/// A collection of rows in memory.
///
///     const auto weapons = std::make_shared<MemoryCollection>(QStringList{u"SeqNo"_s, u"WeaponNo"_s});
///     fieldOf(*weapons->AddNew(), u"WeaponNo"_s)->SetValue(11);
///     weapons->MarkSaved(); // as if it had been loaded
///
/// It hands out one object for a row, always the same.
class TAVRIN_EXPORT MemoryCollection : public tvTableCollection,
                                       public std::enable_shared_from_this<MemoryCollection>
{
public:
    /// New rows have these columns, of which the first key is the key column.
    explicit MemoryCollection(const QList<MemoryColumn>& columns);
    /// New rows have these columns, and the one named `keyColumn` is the key column, also where its fields
    /// are no key. Raises an `Error` when there is none of this name.
    MemoryCollection(const QList<MemoryColumn>& columns, const QString& keyColumn);
    /// New rows have these columns, of which the first is the key.
    explicit MemoryCollection(const QStringList& columns);
    ~MemoryCollection() override;

    QString KeyColumn() const override;
    /// Raises an `Error` when the collection has no columns, and behind the key 2147483647, which is the
    /// last.
    tvTableRowPtr NewItem() override;
    /// Raises an `Error` beyond 32,767 rows, the last that a position counts, and as `NewItem`.
    tvTableRowPtr AddNew() override;
    /// Takes rows of other makers too, and any number. Raises an `Error` for nullptr, for a row that is
    /// there already, and for one that needs a key when the last is used up. A removed row that a save has
    /// deleted becomes a new one.
    void Add(const tvTableRowPtr& row) override;
    /// Raises an `Error` when there is no current row.
    void RemoveCurrent(bool immediately) override;
    qint32 Count() const override;
    tvTableRowPtr Item(qint32 index) override;
    void SetItemClass(const QString& name) override;
    qint16 Position() const override;
    /// Raises an `Error` outside the collection.
    void SetPosition(qint16 position) override;
    bool CurrentIsPrimary() const override;
    /// Raises an `Error` when no row has this key.
    void SetPrimaryValue(const QVariant& key) override;
    qint32 PrimaryIndex() const override;

    /// The columns of new rows.
    QList<MemoryColumn> Columns() const;
    /// What `SetItemClass` was given last; "" at first.
    QString ItemClass() const;
    /// Whether a new row has a key, the number above the highest one so far; true at first. Otherwise the key
    /// of a new row is Null.
    bool NumbersRows() const;
    void SetNumbersRows(bool numbers);

    /// Everything has been saved: no row is new, and what was removed is deleted.
    void MarkSaved();
    /// The record that holds the collection; nullptr when none does.
    tvBusinessObjectPtr Owner() const;
    /// The record that holds the rows. The collection does not keep it alive. `MemoryRecord` calls this
    /// itself.
    void SetOwner(const std::weak_ptr<tvBusinessObject>& owner);

private:
    QVariant nextKey();
    void giveKey(tvTableRow& row);
    void append(const tvTableRowPtr& row);

    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace tavrin
