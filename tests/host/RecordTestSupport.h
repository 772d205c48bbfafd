#pragma once

#include "HostTestSupport.h"
#include "host/RecordStore.h"

#include <QSqlRecord>

// What the tests of the records' store share.

namespace tavrin::test {

inline const QString Offenses = QStringLiteral("Offenses");
inline const QString Suspects = QStringLiteral("Suspects");
inline const QString Witnesses = QStringLiteral("Witnesses");

inline void put(const RecordPtr& record, const char* field, const QVariant& value)
{
    record->mainRow()->cell(QString::fromLatin1(field)).setValue(value);
}

inline QString get(const RecordPtr& record, const char* field)
{
    return ToText(record->mainRow()->cell(QString::fromLatin1(field)).value());
}

inline void putLast(const RecordPtr& record, const QString& rows, const char* field, const QVariant& value)
{
    record->collection(rows)->rows().back()->cell(QString::fromLatin1(field)).setValue(value);
}

/// Everything that a record holds, as one text.
inline QString stateOf(const Record& record)
{
    QStringList state{QString::number(record.isNew()), QString::number(record.isChanged()),
                      QString::number(record.rowVersion())};
    const auto addRow = [&state](const RecordRow& row) {
        state << (row.IsNew() ? QStringLiteral("new") : QStringLiteral("saved"));
        for (const FieldCell* cell : row.cells())
            state << cell->column().Name + QLatin1Char('=') + cell->value().toString();
    };
    addRow(*record.mainRow());
    for (const auto& rows : record.collections()) {
        state << rows->name() << QString::number(rows->Position()) << QString::number(rows->PrimaryIndex())
              << QString::number(rows->removedRows().size());
        for (const auto& row : rows->rows())
            addRow(*row);
    }
    return state.join(QLatin1Char('\n'));
}

/// The rows of all tables of the records, as one text.
inline QString contentOfTables(Database& database)
{
    QStringList lines;
    for (const char* table : {"incident", "IncdOffense", "IncdSuspect", "IncdVictim", "IncdWitness",
                              "IncdOther", "key_sequence"}) {
        QSqlQuery read(QStringLiteral("SELECT * FROM %1 ORDER BY 1, 2").arg(QString::fromLatin1(table)),
                       database.connection());
        while (read.next()) {
            for (int column = 0; column < read.record().count(); ++column)
                lines << read.value(column).toString();
        }
        lines << QString::fromLatin1(table);
    }
    return lines.join(QLatin1Char('\n'));
}

} // namespace tavrin::test
