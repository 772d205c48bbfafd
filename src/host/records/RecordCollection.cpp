#include "host/records/RecordCollection.h"

#include "base/failure/Error.h"
#include "base/values/Variant.h"

#include <algorithm>
#include <limits>

namespace tavrin {

RecordCollection::RecordCollection()
    : m_primary(std::make_shared<FieldCell>(ColumnSchema{QStringLiteral("Primary"), ColumnType::Integer}))
{
}

RecordCollection::RecordCollection(const CollectionSchema& schema, tvFieldPtr link,
                                   std::shared_ptr<FieldCell> primary)
    : m_schema(schema)
    , m_link(std::move(link))
    , m_primary(std::move(primary))
{
}

RecordCollection::~RecordCollection()
{
    for (const RecordRowPtr& row : m_rows)
        row->setPlaced(false);
}

QString RecordCollection::KeyColumn() const
{
    return m_schema.Table.keyColumn();
}

RecordRowPtr RecordCollection::makeRow()
{
    if (m_schema.Table.Columns.isEmpty())
        throw Error(QStringLiteral("The collection has no item class that this host knows"));
    return std::make_shared<RecordRow>(m_schema.Table);
}

void RecordCollection::adopt(RecordRow& row)
{
    // The cells learn of their record last: a row that is being prepared is no change of the record.
    row.setOwner({}, {});
    for (FieldCell* cell : row.cells()) {
        if (cell->column().IsLink && m_link)
            cell->setValue(FieldReference::toVariant(m_link));
    }
    row.setOwner(m_sink, m_record);
}

tvTableRowPtr RecordCollection::NewItem()
{
    const RecordRowPtr row = makeRow();
    row->cell(KeyColumn()).assignKey(nextKey());
    adopt(*row);
    return row;
}

qint32 RecordCollection::nextKey()
{
    do {
        if (m_lastKey == std::numeric_limits<qint32>::max())
            throw Error(
                QStringLiteral("The collection %1 has no free %2 any more").arg(m_schema.Name, KeyColumn()));
        ++m_lastKey;
    } while (indexOfKey(m_lastKey) > 0); // somebody may have assigned it to a row
    return m_lastKey;
}

tvTableRowPtr RecordCollection::AddNew()
{
    tvTableRowPtr row = NewItem();
    append(std::dynamic_pointer_cast<RecordRow>(row), true);
    return row;
}

void RecordCollection::checkAddable(const RecordRowPtr& row) const
{
    if (!row || row->table().RowClass != m_schema.Table.RowClass)
        throw Error(
            QStringLiteral("The row is not of the collection's class %1").arg(m_schema.Table.RowClass));
    if (std::find(m_rows.begin(), m_rows.end(), row) != m_rows.end())
        throw Error(QStringLiteral("The row is in the collection already"));
    if (row->isPlaced())
        throw Error(QStringLiteral("The row is in another collection already"));
    if (!row->IsNew() && std::find(m_removed.begin(), m_removed.end(), row) == m_removed.end())
        throw Error(QStringLiteral("The row belongs to another record"));
    if (Count() >= std::numeric_limits<qint16>::max())
        throw Error(QStringLiteral("A collection takes %1 rows").arg(std::numeric_limits<qint16>::max()));
}

void RecordCollection::Add(const tvTableRowPtr& row)
{
    append(std::dynamic_pointer_cast<RecordRow>(row), false);
}

void RecordCollection::append(const RecordRowPtr& row, bool makeCurrent)
{
    checkAddable(row);
    FieldCell& key = row->cell(KeyColumn());
    if (IsNull(key.value()) || indexOfKey(key.value()) > 0)
        key.assignKey(nextKey());
    noteKey(key.value());
    std::erase(m_removed, row);
    adopt(*row);
    m_rows.push_back(row);
    row->setPlaced(true);
    if (makeCurrent || m_position == 0)
        m_position = static_cast<qint16>(Count());
    notifyChanged();
}

void RecordCollection::RemoveCurrent(bool immediately)
{
    if (m_position < 1)
        throw Error(QStringLiteral("The collection has no current row to remove"));
    const auto keepAlive = weak_from_this().lock();
    const qint32 index = m_position;
    const tvTableRowPtr row = Item(index);
    const auto removed = m_rows[static_cast<std::size_t>(index - 1)];
    const QVariant key = removed->keyValue();
    const bool wasPrimary = PrimaryIndex() == index;

    const bool removesNow = !removed->IsNew() && immediately && m_removeNow;
    if (removesNow) {
        m_removeNow(*this, *removed);
        if (m_primary && SameValue(m_primary->savedValue(), removed->cell(KeyColumn()).savedValue()))
            m_primary->noteSaved(Null());
    } else if (!removed->IsNew()) {
        m_removed.push_back(removed);
    }
    takeOut(removed);

    if (removesNow && m_noteRemoved)
        m_noteRemoved();
    notifyChanged();
    ItemRemoved.raise(key);
    ItemRemovedEx.raise(index, row);
    // A handler may have chosen another primary row by now, and everybody has been told of that one.
    if (wasPrimary && PrimaryIndex() == 0)
        PrimaryStatusChanged.raise(Null());
}

void RecordCollection::removeWhere(const QString& column, const QVariant& value)
{
    const auto keepAlive = weak_from_this().lock();
    for (qint32 index = Count(); index >= 1; --index) {
        if (index > Count() || // a handler may have removed others
            !SameValue(m_rows[static_cast<std::size_t>(index - 1)]->cell(column).value(), value))
            continue;
        const qint16 position = m_position;
        m_position = static_cast<qint16>(index);
        RemoveCurrent(false);
        m_position =
            static_cast<qint16>(std::min<qint32>(position > index ? position - 1 : position, Count()));
    }
}

void RecordCollection::takeOut(const RecordRowPtr& row)
{
    if (m_primary && SameValue(m_primary->value(), row->keyValue()))
        m_primary->assignKey(Null());
    std::erase(m_rows, row);
    row->setPlaced(false);
    m_position = static_cast<qint16>(std::min<qint32>(m_position, Count()));
}

qint32 RecordCollection::Count() const
{
    return static_cast<qint32>(m_rows.size());
}

tvTableRowPtr RecordCollection::Item(qint32 index)
{
    if (index < 1 || index > Count())
        throw Error(QStringLiteral("The collection has %1 rows, and none at %2").arg(Count()).arg(index));
    return m_rows[static_cast<std::size_t>(index - 1)];
}

void RecordCollection::SetItemClass(const QString& name)
{
    if (!m_rows.empty() && name.compare(m_schema.Table.RowClass, Qt::CaseInsensitive) != 0)
        throw Error(QStringLiteral("The collection holds rows of another class"));
    const TableSchema* table = tableOfRowClass(name);
    m_schema.Table = table ? *table : TableSchema{};
    m_schema.Table.RowClass = name;
}

void RecordCollection::SetPosition(qint16 position)
{
    const bool fits = Count() == 0 ? position == 0 : position >= 1 && position <= Count();
    if (!fits)
        throw Error(QStringLiteral("The collection has %1 rows, and none at %2").arg(Count()).arg(position));
    m_position = position;
}

qint32 RecordCollection::indexOfKey(const QVariant& key) const
{
    if (IsNull(key))
        return 0;
    const auto found = std::find_if(m_rows.begin(), m_rows.end(), [&key](const RecordRowPtr& row) {
        return SameValue(row->keyValue(), key);
    });
    return found == m_rows.end() ? 0 : static_cast<qint32>(found - m_rows.begin()) + 1;
}

qint32 RecordCollection::PrimaryIndex() const
{
    return m_primary ? indexOfKey(m_primary->value()) : 0;
}

bool RecordCollection::CurrentIsPrimary() const
{
    return m_position > 0 && PrimaryIndex() == m_position;
}

void RecordCollection::SetPrimaryValue(const QVariant& key)
{
    if (!m_primary)
        throw Error(QStringLiteral("The collection %1 has no primary row").arg(m_schema.Name));
    const QVariant wanted = IsEmpty(key) ? Null() : key;
    if (!IsNull(wanted) && indexOfKey(wanted) == 0)
        throw Error(QStringLiteral("The collection has no row with the key %1").arg(wanted.toString()));
    const auto keepAlive = weak_from_this().lock();
    m_primary->setValue(wanted);
    PrimaryStatusChanged.raise(m_primary->value());
}

bool RecordCollection::isChanged() const
{
    return !m_removed.empty() || std::any_of(m_rows.begin(), m_rows.end(), [](const RecordRowPtr& row) {
        return row->IsNew() || row->isChanged();
    });
}

RecordRowPtr RecordCollection::appendLoadedRow()
{
    m_rows.push_back(makeRow());
    m_rows.back()->setPlaced(true);
    return m_rows.back();
}

void RecordCollection::finishLoading()
{
    for (const RecordRowPtr& row : m_rows) {
        row->markSaved();
        row->setOwner(m_sink, m_record);
        noteKey(row->keyValue());
    }
    m_position = m_rows.empty() ? 0 : 1;
}

void RecordCollection::markSaved()
{
    for (const RecordRowPtr& row : m_rows)
        row->markSaved();
    m_removed.clear();
}

void RecordCollection::setOwner(std::weak_ptr<ChangeSink> sink, std::weak_ptr<tvBusinessObject> record)
{
    m_sink = std::move(sink);
    m_record = std::move(record);
}

void RecordCollection::noteKey(const QVariant& key)
{
    m_lastKey = std::max(m_lastKey, ToLong(key));
}

void RecordCollection::notifyChanged()
{
    if (const auto sink = m_sink.lock())
        sink->recordChanged();
}

} // namespace tavrin
