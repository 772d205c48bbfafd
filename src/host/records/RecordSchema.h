#pragma once

#include "base/export/Export.h"

#include <QList>
#include <QString>

namespace tavrin {

enum class ColumnType
{
    Integer,
    Real,
    Text,
    Boolean,
    Date,
    DateTime,
};

/// One column of a record's table.
struct ColumnSchema
{
    QString Name;
    ColumnType Type = ColumnType::Text;
    /// In UTF-16 units; 0 for no limit.
    qint32 MaxLength = 0;
    bool IsKey = false;
    /// The column holds the key of the record above.
    bool IsLink = false;
    /// The column holds the key of a row of this other collection of the record; "" for none. When that row
    /// goes, so does this one.
    QString Parent = {};
};

/// One table, and the class name of its rows.
struct TAVRIN_COMPANION_EXPORT TableSchema
{
    QString Module;
    QString Table;
    QString RowClass;
    QList<ColumnSchema> Columns;

    /// Index of a column, its name compared without case; -1 for none.
    int indexOf(const QString& column) const;
    /// The key that tells the rows of one record apart; "" for none.
    QString keyColumn() const;
};

/// A child collection of a record.
struct CollectionSchema
{
    QString Name;
    TableSchema Table;
    /// Column of the main table that holds the key of the primary row; "" where there is no primary row.
    QString PrimaryColumn;
};

/// A part of a record: further columns of the main table that make up a row of their own.
struct PartSchema
{
    QString Name;
    /// Of the main table; its only key is the link.
    TableSchema Table;
};

/// A record: its main row, the parts beside it and its child collections.
struct RecordSchema
{
    /// What `tvBusinessObject::ClassName` gives.
    QString ClassName;
    TableSchema Main;
    QList<PartSchema> Parts;
    QList<CollectionSchema> Collections;
};

TAVRIN_COMPANION_EXPORT const RecordSchema& incidentSchema();

/// Every table of the host that forms may ask about: those of the records and those of the lists.
TAVRIN_COMPANION_EXPORT const QList<TableSchema>& allTables();

/// The table whose rows have this class name; nullptr when there is none.
TAVRIN_COMPANION_EXPORT const TableSchema* tableOfRowClass(const QString& rowClass);

} // namespace tavrin
