#include "host/records/PartOfRecord.h"

#include "host/records/ChildRows.h"

namespace tavrin {

namespace {

/// The name of a collection by the word for one of its rows and an "s" may be no plural: "SuspectWitnesss".
QString pluralOf(const QString& name)
{
    return name.endsWith(QLatin1String("sss")) ? name.chopped(1) + QStringLiteral("es") : name;
}

} // namespace

PartOfRecord::PartOfRecord(RecordPtr record, QString collection, RecordRowPtr row)
    : m_record(std::move(record))
    , m_collection(std::move(collection))
    , m_row(std::move(row))
{
}

HostObjectPtr PartOfRecord::Item(const QString& name)
{
    const RecordCollectionPtr rows = m_record->collection(pluralOf(name));
    if (!rows)
        return m_row->Item(name);
    for (const ColumnSchema& column : rows->schema().Table.Columns) {
        if (column.Parent == m_collection)
            return std::make_shared<ChildRows>(rows, column.Name, m_row);
    }
    return nullptr;
}

} // namespace tavrin
