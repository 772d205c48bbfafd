#include "host/records/Record.h"

#include "base/values/Variant.h"
#include "host/records/PartOfRecord.h"

#include <algorithm>

namespace tavrin {

namespace {

bool sameName(const QString& a, const QString& b)
{
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

} // namespace

std::shared_ptr<Record> Record::create(const RecordSchema& schema)
{
    std::shared_ptr<Record> record(new Record(schema));
    record->adoptChildren();
    return record;
}

Record::Record(const RecordSchema& schema)
    : m_schema(schema)
    , m_main(std::make_shared<RecordRow>(schema.Main))
{
    const auto key = std::dynamic_pointer_cast<tvField>(m_main->Item(schema.Main.keyColumn()));
    for (const PartSchema& part : schema.Parts) {
        m_parts.push_back(std::make_shared<RecordRow>(part.Table));
        for (FieldCell* cell : m_parts.back()->cells()) {
            if (cell->column().IsLink)
                cell->setValue(FieldReference::toVariant(key));
        }
    }
    for (const CollectionSchema& child : schema.Collections) {
        std::shared_ptr<FieldCell> primary;
        if (!child.PrimaryColumn.isEmpty())
            primary = {m_main, &m_main->cell(child.PrimaryColumn)}; // keeps the row alive
        m_collections.push_back(std::make_shared<RecordCollection>(child, key, std::move(primary)));
    }
}

void Record::adoptChildren()
{
    m_main->setOwner(weak_from_this(), weak_from_this());
    for (const RecordRowPtr& row : m_parts)
        row->setOwner(weak_from_this(), weak_from_this());
    for (const RecordCollectionPtr& rows : m_collections) {
        rows->setOwner(weak_from_this(), weak_from_this());
        m_subscriptions.push_back(rows->ItemRemoved.subscribe(
            [this, name = rows->name()](const QVariant& key) { removeChildrenOf(name, key); }));
    }
}

void Record::removeChildrenOf(const QString& collection, const QVariant& key)
{
    for (const RecordCollectionPtr& rows : m_collections) {
        for (const ColumnSchema& column : rows->schema().Table.Columns) {
            if (column.Parent == collection)
                rows->removeWhere(column.Name, key);
        }
    }
}

HostObjectPtr Record::currentPart(const QString& collectionName)
{
    const RecordCollectionPtr rows = collection(collectionName);
    if (!rows || rows->Position() < 1)
        return nullptr;
    const auto row = rows->rows()[static_cast<std::size_t>(rows->Position() - 1)];
    return std::make_shared<PartOfRecord>(shared_from_this(), rows->name(), row);
}

HostObjectPtr Record::Item(const QString& name)
{
    if (sameName(name, m_schema.Main.Table))
        return m_main;
    if (const RecordRowPtr row = part(name))
        return row;
    if (sameName(name, QStringLiteral("SuspectBO")))
        return currentPart(QStringLiteral("Suspects"));
    return collection(name);
}

RecordRowPtr Record::part(const QString& name) const
{
    for (qsizetype i = 0; i < m_schema.Parts.size(); ++i) {
        if (sameName(m_schema.Parts.at(i).Name, name))
            return m_parts[static_cast<std::size_t>(i)];
    }
    return nullptr;
}

RecordCollectionPtr Record::collection(const QString& name) const
{
    const auto found = std::find_if(m_collections.begin(), m_collections.end(),
                                    [&name](const auto& rows) { return sameName(rows->name(), name); });
    return found == m_collections.end() ? nullptr : *found;
}

qint64 Record::key() const
{
    const QVariant key = m_main->keyValue();
    return IsNull(key) ? 0 : key.toLongLong();
}

bool Record::isChanged() const
{
    const auto isChanged = [](const auto& part) { return part->isChanged(); };
    return m_main->isChanged() || std::any_of(m_parts.begin(), m_parts.end(), isChanged) ||
           std::any_of(m_collections.begin(), m_collections.end(), isChanged);
}

void Record::checkLengths() const
{
    m_main->checkLengths(0);
    for (const RecordRowPtr& row : m_parts)
        row->checkLengths(0);
    for (const RecordCollectionPtr& rows : m_collections) {
        int position = 0;
        for (const RecordRowPtr& row : rows->rows())
            row->checkLengths(++position);
    }
}

void Record::markSaved(int rowVersion)
{
    m_main->markSaved();
    for (const RecordRowPtr& row : m_parts)
        row->markSaved();
    for (const RecordCollectionPtr& rows : m_collections)
        rows->markSaved();
    m_rowVersion = rowVersion;
}

} // namespace tavrin
