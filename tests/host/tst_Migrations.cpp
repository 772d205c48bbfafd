#include "HostTestSupport.h"
#include "host/Migrations.h"

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
        QVERIFY(expected >= 2);
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
