#pragma once

#include "host/HostTestSupport.h"
#include "host/records/RecordStore.h"

#include <QSqlRecord>

// What the tests of records and their store share.

namespace tavrin::test {

inline const QString Offenses = QStringLiteral("Offenses");
inline const QString Suspects = QStringLiteral("Suspects");
inline const QString Witnesses = QStringLiteral("Witnesses");
inline const QString Assignments = QStringLiteral("Assignments");
inline const QString SeqNo = QStringLiteral("SeqNo");

/// An incident that no store knows.
inline RecordPtr newRecord()
{
    return Record::create(incidentSchema());
}

inline tvTableCollectionPtr rowsOf(const RecordPtr& record, const QString& name)
{
    return std::dynamic_pointer_cast<tvTableCollection>(record->Item(name));
}

inline QVariant keyOf(const tvTableRowPtr& row)
{
    return fieldOf(*row, SeqNo)->Value();
}

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
    for (const auto& part : record.parts())
        addRow(*part);
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
    for (const char* table :
         {"incident", "IncdOffense", "IncdSuspect", "IncdVictim", "IncdWitness", "IncdOther",
          "IncdAssignment", "IncdSuspVictim", "IncdSuspWitness", "IncdSuspOther", "IncdOffWeapon",
          "IncdOffBias", "IncdAttachment", "key_sequence"}) {
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

/// A store of incidents on a new database, which a second program has open too.
class RecordStoreCase : public TestCase
{
protected:
    std::optional<QTemporaryDir> m_folder;
    std::unique_ptr<Database> m_database;
    std::unique_ptr<Database> m_other; // another workstation's program
    std::unique_ptr<RecordStore> m_store;

    RecordPtr newIncident(const QString& caseNo)
    {
        const RecordPtr record = m_store->create();
        put(record, "CaseNo", caseNo);
        put(record, "Summary", QStringLiteral("Summary of ") + caseNo);
        put(record, "ReportedAt", QDateTime(QDate(2026, 1, 2), QTime(3, 4, 5)));
        return record;
    }

    /// A saved incident with two offenses, of which the second is primary, and two suspects.
    RecordPtr savedIncident(const QString& caseNo = QStringLiteral("2026-1"))
    {
        const RecordPtr record = newIncident(caseNo);
        for (int i = 1; i <= 2; ++i) {
            record->collection(Offenses)->AddNew();
            putLast(record, Offenses, "OffenseNo", i);
            putLast(record, Offenses, "Completed", true);
            record->collection(Suspects)->AddNew();
            putLast(record, Suspects, "SuspectName", QStringLiteral("Suspect %1").arg(i));
        }
        putLast(record, Suspects, "DateOfBirth", QDate(1990, 5, 6));
        record->collection(Offenses)->SetPrimaryValue(2);
        m_store->save(*record);
        return record;
    }

    void init() override
    {
        TestCase::init();
        m_folder.emplace();
        const QString path = m_folder->filePath(QStringLiteral("records.db"));
        m_database = Database::open(path, OpenMode::CreateWhenMissing, impatient());
        m_other = Database::open(path, OpenMode::CreateWhenMissing, impatient());
        m_store = std::make_unique<RecordStore>(*m_database);
        for (int i = 1; i <= 3; ++i)
            m_database->execute(
                QStringLiteral("INSERT INTO offense_code VALUES (%1, 'PC %1', 'Offense %1', '90Z', 1)")
                    .arg(i));
    }
    void cleanup() override
    {
        m_store.reset();
        m_other.reset();
        m_database.reset();
        TestCase::cleanup();
    }
};

} // namespace tavrin::test
