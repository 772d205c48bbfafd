#include "host/RecordSql.h"

namespace tavrin {

namespace {

QString keyCondition(const RecordRow& row)
{
    QStringList parts;
    for (const FieldCell* cell : row.cells()) {
        if (cell->column().IsKey)
            parts << cell->column().Name + QStringLiteral(" = ?");
    }
    return parts.join(QStringLiteral(" AND "));
}

void bindKeys(Statement& statement, const RecordRow& row)
{
    for (const FieldCell* cell : row.cells()) {
        if (cell->column().IsKey)
            statement.bind(cell->value());
    }
}

} // namespace

QString columnList(const TableSchema& table)
{
    QStringList names;
    for (const ColumnSchema& column : table.Columns)
        names << column.Name;
    return names.join(QStringLiteral(", "));
}

void insertRow(Database& database, const RecordRow& row, const QList<std::pair<QString, QVariant>>& extra)
{
    QStringList names{columnList(row.table())};
    QStringList marks(row.FieldCount(), QStringLiteral("?"));
    for (const auto& column : extra) {
        names << column.first;
        marks << QStringLiteral("?");
    }
    Statement insert(database, QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                                   .arg(row.table().Table, names.join(QStringLiteral(", ")),
                                        marks.join(QStringLiteral(", "))));
    for (const FieldCell* cell : row.cells())
        insert.bind(cell->value());
    for (const auto& column : extra)
        insert.bind(column.second);
    insert.run();
}

int updateRow(Database& database, const RecordRow& row)
{
    QStringList parts;
    for (const FieldCell* cell : row.cells()) {
        if (!cell->column().IsKey)
            parts << cell->column().Name + QStringLiteral(" = ?");
    }
    Statement update(database,
                     QStringLiteral("UPDATE %1 SET %2 WHERE %3")
                         .arg(row.table().Table, parts.join(QStringLiteral(", ")), keyCondition(row)));
    for (const FieldCell* cell : row.cells()) {
        if (!cell->column().IsKey)
            update.bind(cell->value());
    }
    bindKeys(update, row);
    update.run();
    return update.affectedRows();
}

void deleteRow(Database& database, const RecordRow& row)
{
    Statement remove(database,
                     QStringLiteral("DELETE FROM %1 WHERE %2").arg(row.table().Table, keyCondition(row)));
    bindKeys(remove, row);
    remove.run();
}

void loadCells(const Statement& statement, RecordRow& row)
{
    int column = 0;
    for (FieldCell* cell : row.cells())
        cell->load(statement.value(column++));
}

} // namespace tavrin
