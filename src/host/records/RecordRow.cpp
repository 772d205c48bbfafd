#include "host/records/RecordRow.h"

#include "base/failure/Error.h"
#include "base/values/Variant.h"

#include <algorithm>

namespace tavrin {

namespace {

QString lengthText(const FieldCell& cell, const QString& table, int position, qsizetype length)
{
    const QString where = position > 0 ? QStringLiteral(", row %1").arg(position) : QString();
    return QStringLiteral("%1%2: the field %3 takes %4 characters, but the text has %5. Shorten it and save "
                          "again.")
        .arg(table, where, cell.column().Name)
        .arg(cell.column().MaxLength)
        .arg(length);
}

} // namespace

RecordRow::RecordRow(const TableSchema& table)
    : m_table(table)
{
    for (const ColumnSchema& column : m_table.Columns) {
        if (column.IsLink || !column.Parent.isEmpty()) {
            const auto field = std::make_shared<RecordLinkField>(column);
            m_cells.push_back(field.get());
            m_fields.push_back(field);
        } else {
            const auto field = std::make_shared<RecordField>(column);
            m_cells.push_back(field.get());
            m_fields.push_back(field);
        }
    }
}

HostObjectPtr RecordRow::Item(const QString& name)
{
    const int index = m_table.indexOf(name);
    return index < 0 ? nullptr : m_fields[static_cast<std::size_t>(index)];
}

tvFieldPtr RecordRow::Item(int index)
{
    return index < 1 || index > FieldCount() ? nullptr : m_fields[static_cast<std::size_t>(index - 1)];
}

int RecordRow::FieldCount() const
{
    return static_cast<int>(m_fields.size());
}

FieldCell& RecordRow::cell(const QString& column) const
{
    const int index = m_table.indexOf(column);
    if (index < 0)
        throw Error(QStringLiteral("The table %1 has no column %2").arg(m_table.Table, column));
    return *m_cells[static_cast<std::size_t>(index)];
}

QVariant RecordRow::keyValue() const
{
    const QString column = m_table.keyColumn();
    return column.isEmpty() ? Null() : cell(column).value();
}

void RecordRow::checkLengths(int position) const
{
    for (const FieldCell* cell : m_cells) {
        if (cell->column().MaxLength <= 0)
            continue;
        const qsizetype length = ToText(cell->value()).size();
        if (length > cell->column().MaxLength)
            throw Error(lengthText(*cell, m_table.Table, position, length));
    }
}

bool RecordRow::isKeyChanged() const
{
    return std::any_of(m_cells.begin(), m_cells.end(),
                       [](const FieldCell* cell) { return cell->column().IsKey && cell->isChanged(); });
}

bool RecordRow::isChanged() const
{
    return std::any_of(m_cells.begin(), m_cells.end(),
                       [](const FieldCell* cell) { return cell->isChanged(); });
}

void RecordRow::markSaved()
{
    for (FieldCell* cell : m_cells)
        cell->markSaved();
    m_isNew = false;
}

void RecordRow::setOwner(const std::weak_ptr<ChangeSink>& sink, std::weak_ptr<tvBusinessObject> record)
{
    for (FieldCell* cell : m_cells)
        cell->setSink(sink);
    m_record = std::move(record);
}

} // namespace tavrin
