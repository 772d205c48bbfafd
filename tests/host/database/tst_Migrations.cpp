#include "host/HostTestSupport.h"
#include "host/database/DatabaseOptions.h"
#include "host/database/Migrations.h"
#include "host/lists/HostLists.h"
#include "host/records/RecordStore.h"

using namespace tavrin;
using namespace tavrin::test;

namespace {

const Migration First{1, QStringLiteral("first"), QStringLiteral("CREATE TABLE a (x INTEGER);\n")};
const Migration Second{2, QStringLiteral("second"),
                       QStringLiteral("CREATE TABLE b (x INTEGER);\nINSERT INTO b VALUES (1);\n")};
const Migration Broken{3, QStringLiteral("broken"),
                       QStringLiteral("CREATE TABLE c (x INTEGER);\nINSERT INTO nowhere VALUES (1);\n")};
const Migration Mended{3, QStringLiteral("mended"), QStringLiteral("CREATE TABLE c (x INTEGER);\n")};

DatabaseOptions optionsWith(const QList<Migration>& migrations)
{
    DatabaseOptions options = impatient();
    options.Migrations = migrations;
    return options;
}

} // namespace

class tst_Migrations : public TestCase
{
    Q_OBJECT

private:
    std::optional<QTemporaryDir> m_folder;
    QString m_path;

    std::unique_ptr<Database> open(const QList<Migration>& migrations)
    {
        return Database::open(m_path, OpenMode::CreateWhenMissing, optionsWith(migrations));
    }

private Q_SLOTS:
    void init() override
    {
        TestCase::init();
        m_folder.emplace();
        m_path = m_folder->filePath(QStringLiteral("records.db"));
    }

    void theProgramsOwnStepsCountUpFromOne()
    {
        int expected = 0;
        for (const Migration& migration : knownMigrations()) {
            QCOMPARE(migration.Number, ++expected);
            QVERIFY(!migration.Name.isEmpty());
            QVERIFY(!splitScript(migration.Sql).isEmpty());
        }
        QVERIFY(expected >= 4);
    }

    void anOlderDatabaseKeepsItsRowsAndGetsTheColumnsForPeopleAndPlaces()
    {
        {
            const auto old = open(knownMigrations().first(2));
            QCOMPARE(old->schemaNumber(), 2);
            for (const char* sql :
                 {"INSERT INTO employee VALUES (1, 'A1', 'Officer, One', '17', 0, 1, '2019-01-02', "
                  "'2025-03-04')",
                  "INSERT INTO offense_code VALUES (5, 'PC 5', 'Offense', '90Z', 1)",
                  "INSERT INTO incident VALUES (1, '2026-1', '2026-01-02T03:04:05', NULL, 'Old summary', "
                  "'1 Road', 'Town', 'Open', 20, 13, NULL, 'Text', 1, 4, 'search')",
                  "INSERT INTO IncdOffense VALUES (1, 1, 5, 1)",
                  "INSERT INTO IncdWitness VALUES (1, 1, 'Seen, All')",
                  "UPDATE key_sequence SET last = 1 WHERE name = 'incident'"})
                old->execute(QString::fromLatin1(sql));
        }
        const auto database = open(knownMigrations());
        QCOMPARE(database->schemaNumber(), knownMigrations().last().Number);
        QCOMPARE(HostLists::read(*database)->employee(1)->LeftOn, QDate(2025, 3, 4));
        QVERIFY(!HostLists::read(*database)->employee(1)->DeptTeamNo);
        RecordStore store(*database);
        const RecordPtr record = store.load(1);
        const auto value = [&record](const char* column) {
            return record->mainRow()->cell(QString::fromLatin1(column)).value();
        };
        QCOMPARE(record->rowVersion(), 4);
        QCOMPARE(value("Summary"), QVariant(QStringLiteral("Old summary")));
        QCOMPARE(value("WeaponNo"), QVariant(13));
        QCOMPARE(record->collection(QStringLiteral("Offenses"))->PrimaryIndex(), 1);
        QCOMPARE(record->collection(QStringLiteral("Witnesses"))->Count(), 1);
        QVERIFY(IsNull(value("ReportingOfficerNo")) && IsNull(value("K9HandlerNo")));
        QCOMPARE(record->collection(QStringLiteral("Assignments"))->Count(), 0);
        QCOMPARE(record->collection(QStringLiteral("Attachments"))->Count(), 0);
        QCOMPARE(record->collection(QStringLiteral("Attachments"))->PrimaryIndex(), 0);

        const RecordRowPtr location = record->part(QStringLiteral("LocationName"));
        QVERIFY(!location->IsNew() && !record->isChanged());
        for (const FieldCell* cell : location->cells())
            QVERIFY2(cell->column().IsLink || IsNull(cell->value()), qPrintable(cell->column().Name));

        location->cell(QStringLiteral("Latitude")).setValue(QStringLiteral("45.5"));
        record->mainRow()->cell(QStringLiteral("ReportingOfficerNo")).setValue(1);
        record->collection(QStringLiteral("Assignments"))->AddNew();
        store.save(*record);
        QCOMPARE(store.load(1)->collection(QStringLiteral("Assignments"))->Count(), 1);
        QCOMPARE(
            store.load(1)->part(QStringLiteral("LocationName"))->cell(QStringLiteral("Latitude")).value(),
            QVariant(QStringLiteral("45.5")));
    }

    void eachStepRunsOnceAndIsNoted()
    {
        open({First});
        const auto database = open({First, Second});
        QCOMPARE(database->schemaNumber(), 2);
        QCOMPARE(firstOf(*database, QStringLiteral("SELECT COUNT(*) FROM b")).toInt(), 1);
        QCOMPARE(firstOf(*database, QStringLiteral("SELECT name FROM schema_migration WHERE number = 2"))
                     .toString(),
                 QStringLiteral("second"));
        migrate(*database, {First, Second});
        QCOMPARE(firstOf(*database, QStringLiteral("SELECT COUNT(*) FROM b")).toInt(), 1);
    }

    void aStepThatFailsLeavesTheLastGoodNumber()
    {
        const QString text = errorOf([this] { open({First, Second, Broken}); });
        QVERIFY2(text.contains(QStringLiteral("schema step 3 (broken)")), qPrintable(text));
        QVERIFY2(text.contains(QStringLiteral("nowhere")), qPrintable(text));
        const auto database = open({First, Second});
        QCOMPARE(database->schemaNumber(), 2);
        QCOMPARE(
            firstOf(*database, QStringLiteral("SELECT COUNT(*) FROM sqlite_master WHERE name = 'c'")).toInt(),
            0);
    }

    void aMendedStepRunsAfterAFailure()
    {
        QVERIFY(!errorOf([this] { open({First, Second, Broken}); }).isEmpty());
        QCOMPARE(open({First, Second, Mended})->schemaNumber(), 3);
    }

    void aStepThatFindsTheFileLockedSaysSo()
    {
        const auto other = open({First});
        Transaction lock(*other);
        const QString text = errorOf([this] { open({First, Second}); });
        QVERIFY2(text.contains(QStringLiteral("locked by another program")), qPrintable(text));
    }

    void scriptsAreCutIntoStatements_data()
    {
        QTest::addColumn<QString>("script");
        QTest::addColumn<QStringList>("statements");
        QTest::newRow("nothing") << QString() << QStringList();
        QTest::newRow("comments alone") << QStringLiteral("-- a;\n\n-- b\n") << QStringList();
        QTest::newRow("two") << QStringLiteral("A;\nB\nC;\n")
                             << QStringList{QStringLiteral("A"), QStringLiteral("B\nC")};
        QTest::newRow("no end") << QStringLiteral("A;\nB")
                                << QStringList{QStringLiteral("A"), QStringLiteral("B")};
        QTest::newRow("semicolon inside a line")
            << QStringLiteral("INSERT ';' x;\n") << QStringList{QStringLiteral("INSERT ';' x")};
    }
    void scriptsAreCutIntoStatements()
    {
        QFETCH(QString, script);
        QFETCH(QStringList, statements);
        QCOMPARE(splitScript(script), statements);
    }
};

TAVRIN_TEST_MAIN(tst_Migrations)
#include "tst_Migrations.moc"
