#include "component/Records.h"

#include "base/failure/Error.h"
#include "base/values/Variant.h"

#include <algorithm>
#include <limits>

namespace tavrin::component {

namespace {

tvFieldPtr makeField(const Column& column)
{
    if (column.isLink)
        return std::make_shared<Field<tvLinkField>>(column);
    return std::make_shared<Field<tvField>>(column);
}

} // namespace

Row::Row(const Columns& columns, bool isNew)
    : m_columns(columns)
    , m_isNew(isNew)
{
    for (const Column& column : columns)
        m_fields << makeField(column);
}

HostObjectPtr Row::Item(const QString& name)
{
    const auto found = std::find_if(m_fields.begin(), m_fields.end(), [&](const tvFieldPtr& field) {
        return field->Name().compare(name, Qt::CaseInsensitive) == 0;
    });
    return found == m_fields.end() ? nullptr : *found;
}

QVariant Collection::keyOf(const tvTableRowPtr& row) const
{
    return fieldOf(*row, m_key)->Value();
}

qint32 Collection::highestKey() const
{
    qint32 highest = 0;
    for (const tvTableRowPtr& row : m_rows) {
        const QVariant key = keyOf(row);
        bool isNumber = false;
        const int number = key.toInt(&isNumber);
        if (isNumber)
            highest = std::max(highest, number);
    }
    return highest;
}

tvTableRowPtr Collection::NewItem()
{
    auto row = std::make_shared<Row>(m_columns, true);
    m_lastNumber = std::max(m_lastNumber, highestKey()) + 1;
    if (const auto key = std::dynamic_pointer_cast<tvField>(row->Item(m_key)))
        key->SetValue(m_lastNumber);
    return row;
}

tvTableRowPtr Collection::AddNew()
{
    const tvTableRowPtr row = NewItem();
    Add(row);
    m_position = static_cast<qint16>(Count());
    return row;
}

void Collection::Add(const tvTableRowPtr& row)
{
    if (Count() == std::numeric_limits<qint16>::max())
        throw Error(QStringLiteral("The collection is full"));
    m_rows << row;
    if (m_position == 0)
        m_position = 1;
}

tvTableRowPtr Collection::Item(qint32 index)
{
    if (index < 1 || index > Count())
        throw Error(QStringLiteral("The collection has no row %1").arg(index));
    return m_rows.at(index - 1);
}

void Collection::SetPosition(qint16 position)
{
    if (position < (m_rows.isEmpty() ? 0 : 1) || position > Count())
        throw Error(QStringLiteral("The collection has no row %1").arg(position));
    m_position = position;
}

void Collection::RemoveCurrent(bool)
{
    const qint32 index = m_position;
    const tvTableRowPtr row = Item(index);
    const bool wasPrimary = CurrentIsPrimary();
    m_rows.removeAt(index - 1);
    m_position = static_cast<qint16>(std::min<qint32>(index, Count()));
    ItemRemoved.raise(keyOf(row));
    ItemRemovedEx.raise(index, row);
    if (wasPrimary)
        SetPrimaryValue(Null());
}

void Collection::SetPrimaryValue(const QVariant& key)
{
    m_primary = key;
    PrimaryStatusChanged.raise(key);
}

qint32 Collection::PrimaryIndex() const
{
    if (IsNull(m_primary) || IsEmpty(m_primary))
        return 0;
    for (qsizetype i = 0; i < m_rows.size(); ++i) {
        if (SameValue(keyOf(m_rows.at(i)), m_primary))
            return static_cast<qint32>(i) + 1;
    }
    return 0;
}

HostObjectPtr Record::Item(const QString& name)
{
    const auto found = std::find_if(children.begin(), children.end(), [&](const auto& child) {
        return child.first.compare(name, Qt::CaseInsensitive) == 0;
    });
    return found == children.end() ? nullptr : found->second;
}

} // namespace tavrin::component
