#include "host/records/RecordSql.h"

#include "base/failure/Error.h"
#include "base/values/Variant.h"

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

void bindSavedKeys(Statement& statement, const RecordRow& row)
{
    for (const FieldCell* cell : row.cells()) {
        if (cell->column().IsKey)
            statement.bind(cell->savedValue());
    }
}

/// "IncidentNo 1, SeqNo 2", as the database knows the row.
QString savedKeyText(const RecordRow& row)
{
    QStringList parts;
    for (const FieldCell* cell : row.cells()) {
        if (cell->column().IsKey)
            parts << cell->column().Name + QLatin1Char(' ') + ToText(cell->savedValue());
    }
    return parts.join(QStringLiteral(", "));
}

void checkOneRow(const Statement& statement, const RecordRow& row)
{
    if (statement.affectedRows() != 1)
        throw Error(QStringLiteral("%1: the row with %2 is not in the database any more. Nothing was changed "
                                   "there: note your changes and open the record again.")
                        .arg(row.table().Table, savedKeyText(row)));
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

void updateRow(Database& database, const RecordRow& row)
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
    bindSavedKeys(update, row);
    update.run();
    checkOneRow(update, row);
}

void deleteRow(Database& database, const RecordRow& row)
{
    Statement remove(database,
                     QStringLiteral("DELETE FROM %1 WHERE %2").arg(row.table().Table, keyCondition(row)));
    bindSavedKeys(remove, row);
    remove.run();
    checkOneRow(remove, row);
}

void loadCells(const Statement& statement, RecordRow& row)
{
    int column = 0;
    for (FieldCell* cell : row.cells())
        cell->load(statement.value(column++));
}

} // namespace tavrin
