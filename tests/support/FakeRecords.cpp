#include "support/FakeRecords.h"

#include "base/failure/Error.h"
#include "base/values/Variant.h"

#include <algorithm>

namespace tavrin::test {

FakeField::FakeField(QString name, QVariant value, bool isKey, qint32 maxLength)
    : m_name(std::move(name))
    , m_value(std::move(value))
    , m_isKey(isKey)
    , m_maxLength(maxLength)
{
}

QVariant FakeField::Value() const
{
    return m_linked ? m_linked->Value() : m_value;
}

void FakeField::SetValue(const QVariant& value)
{
    m_linked = value.canConvert<HostObjectPtr>()
                   ? std::dynamic_pointer_cast<tvField>(value.value<HostObjectPtr>())
                   : nullptr;
    if (!m_linked)
        m_value = value;
}

HostObjectPtr FakeRow::Item(const QString& name)
{
    const auto field = std::find_if(m_fields.begin(), m_fields.end(), [&](const tvFieldPtr& candidate) {
        return candidate->Name().compare(name, Qt::CaseInsensitive) == 0;
    });
    return field == m_fields.end() ? nullptr : *field;
}

tvFieldPtr FakeRow::Item(int index)
{
    return m_fields.value(index - 1);
}

tvTableRowPtr FakeCollection::NewItem()
{
    QList<tvFieldPtr> fields;
    for (const QString& column : m_columns)
        fields << std::make_shared<FakeField>(column, Null(), fields.isEmpty());
    if (numbersRows)
        fields.first()->SetValue(++m_lastNumber);
    return std::make_shared<FakeRow>(fields);
}

tvTableRowPtr FakeCollection::AddNew()
{
    Add(NewItem());
    m_position = static_cast<qint16>(Count());
    return given(m_rows.last());
}

tvTableRowPtr FakeCollection::given(const tvTableRowPtr& row) const
{
    return makesRowsAnew ? std::make_shared<FakeRowView>(row) : row;
}

void FakeCollection::Add(const tvTableRowPtr& row)
{
    const auto view = std::dynamic_pointer_cast<FakeRowView>(row);
    m_rows << (view ? view->row() : row);
    if (m_position == 0)
        m_position = 1;
}

tvTableRowPtr FakeCollection::Item(qint32 index)
{
    ++reads;
    if (index < 1 || index > Count())
        throw Error(QStringLiteral("The collection has no row %1").arg(index));
    return given(m_rows.at(index - 1));
}

QVariant FakeCollection::keyOf(const tvTableRowPtr& row) const
{
    return fieldOf(*row, KeyColumn())->Value();
}

void FakeCollection::RemoveCurrent(bool immediately)
{
    const qint32 index = m_position;
    const tvTableRowPtr row = Item(index);
    removedImmediately << immediately;
    const bool wasPrimary = CurrentIsPrimary();
    m_rows.removeAt(index - 1);
    m_position = static_cast<qint16>(std::min<qint32>(index, Count()));
    ItemRemoved.raise(keyOf(row));
    ItemRemovedEx.raise(index, row);
    if (wasPrimary)
        SetPrimaryValue(Null());
}

void FakeCollection::SetPrimaryValue(const QVariant& key)
{
    m_primary = key;
    PrimaryStatusChanged.raise(key);
}

qint32 FakeCollection::PrimaryIndex() const
{
    for (qsizetype i = 0; i < m_rows.size() && !IsNull(m_primary); ++i) {
        if (SameValue(keyOf(m_rows.at(i)), m_primary))
            return static_cast<qint32>(i + 1);
    }
    return 0;
}

} // namespace tavrin::test
