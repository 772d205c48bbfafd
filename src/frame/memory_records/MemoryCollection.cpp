#include "frame/memory_records/MemoryCollection.h"

#include "base/failure/Error.h"
#include "base/values/Variant.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace tavrin {

namespace {

constexpr qint32 LastKey = std::numeric_limits<qint32>::max();
constexpr qint32 MostRows = std::numeric_limits<qint16>::max();

QList<MemoryColumn> columnsOf(const QStringList& names)
{
    QList<MemoryColumn> columns;
    for (const QString& name : names)
        columns.append({name, columns.isEmpty()});
    return columns;
}

void setNew(const tvTableRowPtr& row, bool isNew)
{
    if (const auto own = std::dynamic_pointer_cast<MemoryRow>(row))
        own->SetNew(isNew);
}

} // namespace

struct MemoryCollection::Private
{
    QList<MemoryColumn> columns;
    QString keyColumn;
    QString itemClass;
    QList<tvTableRowPtr> rows;
    /// What was removed since the last save.
    QList<tvTableRowPtr> removed;
    qint16 position = 0;
    bool numbersRows = true;
    qint32 lastKey = 0;
    QVariant primary = Null();
    std::weak_ptr<tvBusinessObject> owner;

    QVariant keyOf(const tvTableRowPtr& row) const
    {
        return keyColumn.isEmpty() ? Null() : fieldOf(*row, keyColumn)->Value();
    }
    /// Another record may have taken the row by now.
    void setOwnerOfRemoved(const tvTableRowPtr& row, const std::weak_ptr<tvBusinessObject>& next) const
    {
        if (const auto own = std::dynamic_pointer_cast<MemoryRow>(row); own && own->Owner() == owner.lock())
            own->SetOwner(next);
    }
    void letGo(const tvTableRowPtr& row) const { setOwnerOfRemoved(row, {}); }
    qint32 indexOfKey(const QVariant& key) const
    {
        for (qsizetype i = 0; i < rows.size() && !IsNull(key); ++i) {
            if (SameValue(keyOf(rows.at(i)), key))
                return static_cast<qint32>(i) + 1;
        }
        return 0;
    }
};

MemoryCollection::MemoryCollection(const QList<MemoryColumn>& columns)
    : d(std::make_unique<Private>())
{
    d->columns = columns;
    const auto key =
        std::find_if(columns.begin(), columns.end(), [](const auto& column) { return column.IsKey; });
    if (key != columns.end())
        d->keyColumn = key->Name;
}

MemoryCollection::MemoryCollection(const QList<MemoryColumn>& columns, const QString& keyColumn)
    : MemoryCollection(columns)
{
    const auto key = std::find_if(columns.begin(), columns.end(), [&](const auto& column) {
        return column.Name.compare(keyColumn, Qt::CaseInsensitive) == 0;
    });
    if (key == columns.end())
        throw Error(QStringLiteral("The collection has no column %1 for its key").arg(keyColumn));
    d->keyColumn = key->Name;
}

MemoryCollection::MemoryCollection(const QStringList& columns)
    : MemoryCollection(columnsOf(columns))
{
}

MemoryCollection::~MemoryCollection() = default;

QString MemoryCollection::KeyColumn() const
{
    return d->keyColumn;
}

QVariant MemoryCollection::nextKey()
{
    if (!d->numbersRows)
        return Null();
    // Somebody may have given rows their keys.
    for (const tvTableRowPtr& row : d->rows) {
        const QVariant key = d->keyOf(row);
        bool isNumber = false;
        const double number = IsNull(key) ? 0 : key.toDouble(&isNumber);
        if (isNumber && number > d->lastKey)
            d->lastKey = number < LastKey ? static_cast<qint32>(number) : LastKey;
    }
    if (d->lastKey == LastKey)
        throw Error(QStringLiteral("The rows have used up the numbers of %1").arg(d->keyColumn));
    return ++d->lastKey;
}

tvTableRowPtr MemoryCollection::NewItem()
{
    if (d->columns.isEmpty())
        throw Error(QStringLiteral("The collection has no columns"));
    auto row = std::make_shared<MemoryRow>(d->columns);
    row->SetOwner(d->owner);
    if (!d->keyColumn.isEmpty())
        fieldOf(*row, d->keyColumn)->SetValue(nextKey());
    return row;
}

tvTableRowPtr MemoryCollection::AddNew()
{
    if (Count() >= MostRows)
        throw Error(QStringLiteral("A collection has positions for %1 rows").arg(MostRows));
    tvTableRowPtr row = NewItem();
    append(row);
    d->position = static_cast<qint16>(Count());
    return row;
}

void MemoryCollection::giveKey(tvTableRow& row)
{
    if (d->keyColumn.isEmpty())
        return;
    const tvFieldPtr key = fieldOf(row, d->keyColumn);
    if (d->indexOfKey(key->Value()) > 0 || (d->numbersRows && IsNull(key->Value())))
        key->SetValue(nextKey());
}

void MemoryCollection::Add(const tvTableRowPtr& row)
{
    if (!row)
        throw Error(QStringLiteral("There is no row to add"));
    if (d->rows.contains(row))
        throw Error(QStringLiteral("The row is in the collection already"));
    if (d->removed.contains(row) || (d->numbersRows && row->IsNew()))
        giveKey(*row);
    d->removed.removeOne(row);
    append(row);
}

void MemoryCollection::append(const tvTableRowPtr& row)
{
    if (const auto own = std::dynamic_pointer_cast<MemoryRow>(row))
        own->SetOwner(d->owner);
    d->rows << row;
    if (d->position == 0)
        d->position = 1;
}

void MemoryCollection::RemoveCurrent(bool immediately)
{
    if (d->position == 0)
        throw Error(QStringLiteral("The collection has no current row to remove"));
    const auto keepAlive = weak_from_this().lock();
    const qint32 index = d->position;
    const tvTableRowPtr handedOut = Item(index);
    const tvTableRowPtr row = d->rows.takeAt(index - 1);
    const QVariant key = d->keyOf(row);
    const bool wasPrimary = !IsNull(key) && SameValue(key, d->primary);
    if (wasPrimary)
        d->primary = Null();
    if (immediately)
        d->letGo(row);
    else
        d->removed << row;
    d->position = static_cast<qint16>(std::min<qint32>(index, Count()));
    ItemRemoved.raise(key);
    ItemRemovedEx.raise(index, handedOut);
    if (immediately && !d->rows.contains(row))
        setNew(row, true); // it is deleted: whoever puts it back makes a new one
    // A handler may have chosen another primary row by now, and everybody has been told of that one.
    if (wasPrimary && PrimaryIndex() == 0)
        PrimaryStatusChanged.raise(Null());
}

qint32 MemoryCollection::Count() const
{
    return static_cast<qint32>(d->rows.size());
}

tvTableRowPtr MemoryCollection::Item(qint32 index)
{
    if (index < 1 || index > Count())
        throw Error(QStringLiteral("The collection has %1 rows, and none at %2").arg(Count()).arg(index));
    return d->rows.at(index - 1);
}

void MemoryCollection::SetItemClass(const QString& name)
{
    d->itemClass = name;
}

QList<MemoryColumn> MemoryCollection::Columns() const
{
    return d->columns;
}

QString MemoryCollection::ItemClass() const
{
    return d->itemClass;
}

qint16 MemoryCollection::Position() const
{
    return d->position;
}

void MemoryCollection::SetPosition(qint16 position)
{
    const bool fits = Count() == 0 ? position == 0 : position >= 1 && position <= Count();
    if (!fits)
        throw Error(QStringLiteral("The collection has %1 rows, and none at %2").arg(Count()).arg(position));
    d->position = position;
}

bool MemoryCollection::CurrentIsPrimary() const
{
    return d->position != 0 && d->position == PrimaryIndex();
}

void MemoryCollection::SetPrimaryValue(const QVariant& key)
{
    const QVariant wanted = IsEmpty(key) ? Null() : key;
    if (!IsNull(wanted) && d->indexOfKey(wanted) == 0)
        throw Error(QStringLiteral("The collection has no row with the key %1").arg(ToText(wanted)));
    const auto keepAlive = weak_from_this().lock();
    d->primary = wanted;
    PrimaryStatusChanged.raise(wanted);
}

qint32 MemoryCollection::PrimaryIndex() const
{
    return d->indexOfKey(d->primary);
}

bool MemoryCollection::NumbersRows() const
{
    return d->numbersRows;
}

void MemoryCollection::SetNumbersRows(bool numbers)
{
    d->numbersRows = numbers;
}

void MemoryCollection::MarkSaved()
{
    for (const tvTableRowPtr& row : d->rows) {
        if (const auto own = std::dynamic_pointer_cast<MemoryRow>(row))
            own->MarkSaved();
    }
    for (const tvTableRowPtr& row : std::exchange(d->removed, {})) {
        setNew(row, true); // it is deleted: whoever puts it back makes a new one
        d->letGo(row);
    }
}

tvBusinessObjectPtr MemoryCollection::Owner() const
{
    return d->owner.lock();
}

void MemoryCollection::SetOwner(const std::weak_ptr<tvBusinessObject>& owner)
{
    for (const tvTableRowPtr& row : d->removed)
        d->setOwnerOfRemoved(row, owner);
    d->owner = owner;
    for (const tvTableRowPtr& row : d->rows) {
        if (const auto own = std::dynamic_pointer_cast<MemoryRow>(row))
            own->SetOwner(owner);
    }
}

} // namespace tavrin
