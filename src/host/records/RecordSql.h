#pragma once

#include "host/database/Statement.h"
#include "host/records/RecordRow.h"

// Statements over the tables of a record schema. Names come from the schema, values are always bound.

namespace tavrin {

/// "A, B, C", the columns of a table in their order.
QString columnList(const TableSchema& table);

/// Inserts the row; `extra` are further columns with their values.
void insertRow(Database& database, const RecordRow& row,
               const QList<std::pair<QString, QVariant>>& extra = {});

/// Updates all but the key columns of the row that the saved keys name. Raises an `Error` that names table
/// and keys when there is no such row.
void updateRow(Database& database, const RecordRow& row);

/// Deletes the row that the saved keys name. Raises an `Error` that names table and keys when there is none.
void deleteRow(Database& database, const RecordRow& row);

/// Reads the cells from the columns of the statement's current row, in the order of `columnList`.
void loadCells(const Statement& statement, RecordRow& row);

} // namespace tavrin
