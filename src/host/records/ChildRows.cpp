#include "host/records/ChildRows.h"

#include "base/failure/Error.h"
#include "base/values/Variant.h"

#include <algorithm>

namespace tavrin {

ChildRows::ChildRows(RecordCollectionPtr all, QString column, const RecordRowPtr& parent)
    : m_all(std::move(all))
    , m_column(std::move(column))
    , m_parentKey(fieldOf(*parent, parent->table().keyColumn()))
{
    const QVariant key = m_parentKey->Value();
    for (const RecordRowPtr& row : m_all->rows()) {
        if (SameValue(row->cell(m_column).value(), key))
            m_rows.push_back(row);
    }
    m_position = m_rows.empty() ? 0 : 1;
}

tvTableRowPtr ChildRows::NewItem()
{
    tvTableRowPtr row = m_all->NewItem();
    fieldOf(*row, m_column)->SetValue(FieldReference::toVariant(m_parentKey));
    return row;
}

tvTableRowPtr ChildRows::AddNew()
{
    tvTableRowPtr row = NewItem();
    Add(row);
    m_position = static_cast<qint16>(Count());
    return row;
}

void ChildRows::Add(const tvTableRowPtr& row)
{
    m_all->Add(row);
    m_rows.push_back(std::dynamic_pointer_cast<RecordRow>(row));
    if (m_position == 0)
        m_position = 1;
}

void ChildRows::RemoveCurrent(bool immediately)
{
    if (m_position < 1)
        throw Error(QStringLiteral("The collection has no current row to remove"));
    const auto keepAlive = weak_from_this().lock(); // a handler may let go of the collection
    const qint32 index = m_position;
    const RecordRowPtr row = m_rows[static_cast<std::size_t>(index - 1)];
    const QVariant key = row->keyValue();
    const auto& all = m_all->rows();
    const auto found = std::find(all.begin(), all.end(), row);
    if (found != all.end()) { // somebody may have removed it from the whole collection
        m_all->SetPosition(static_cast<qint16>(found - all.begin() + 1));
        m_all->RemoveCurrent(immediately);
    }
    std::erase(m_rows, row);
    m_position = static_cast<qint16>(std::min<qint32>(m_position, Count()));
    ItemRemoved.raise(key);
    ItemRemovedEx.raise(index, row);
}

tvTableRowPtr ChildRows::Item(qint32 index)
{
    if (index < 1 || index > Count())
        throw Error(QStringLiteral("The collection has %1 rows, and none at %2").arg(Count()).arg(index));
    return m_rows[static_cast<std::size_t>(index - 1)];
}

void ChildRows::SetPosition(qint16 position)
{
    const bool fits = Count() == 0 ? position == 0 : position >= 1 && position <= Count();
    if (!fits)
        throw Error(QStringLiteral("The collection has %1 rows, and none at %2").arg(Count()).arg(position));
    m_position = position;
}

void ChildRows::SetPrimaryValue(const QVariant&)
{
    throw Error(QStringLiteral("The collection %1 has no primary row").arg(m_all->name()));
}

} // namespace tavrin
