#include "base/values/Variant.h"
#include "host/HostTestSupport.h"
#include "host/records/RecordStore.h"
#include "host/samples/SampleData.h"

#include <QDirIterator>

using namespace tavrin;
using namespace tavrin::test;

class tst_SampleData : public TestCase
{
    Q_OBJECT

private:
    std::optional<QTemporaryDir> m_folder;
    std::unique_ptr<Database> m_database;

    int count(const QString& table)
    {
        return firstOf(*m_database, QStringLiteral("SELECT COUNT(*) FROM ") + table).toInt();
    }

    /// A copy of the built-in files that a test may change.
    QString copyOfFiles() const
    {
        const QString target = m_folder->filePath(QStringLiteral("data"));
        DataFiles builtIn; // makes the files known
        QDirIterator files(QStringLiteral(":/data"), QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            const QString source = files.next();
            writeFile(target + source.mid(6), contentOf(source));
        }
        return target;
    }

private Q_SLOTS:
    void init() override
    {
        TestCase::init();
        m_folder.emplace();
        m_database = Database::open(m_folder->filePath(QStringLiteral("records.db")));
    }
    void cleanup() override
    {
        m_database.reset();
        TestCase::cleanup();
    }

    void theBuiltInFilesFillANewDatabase()
    {
        QVERIFY(SampleData().fillOnce(*m_database));
        QCOMPARE(count(QStringLiteral("code_table")), 22);
        QCOMPARE(count(QStringLiteral("employee")), 60);
        QVERIFY(count(QStringLiteral("code_value")) > 400);
        QVERIFY(count(QStringLiteral("user_account")) >= 30);
        QVERIFY(count(QStringLiteral("offense_code")) >= 80);
        QCOMPARE(count(QStringLiteral("setting")), 3);
        QCOMPARE(count(QStringLiteral("required_field")), 4);
        QVERIFY(count(QStringLiteral("user_right")) > 10);
        QVERIFY(count(QStringLiteral("incident")) > 5);
        QVERIFY(IsNull(firstOf(*m_database, QStringLiteral("PRAGMA foreign_key_check"))));
    }

    void accentsQuotesAndLeadingZerosArrive()
    {
        SampleData().fillOnce(*m_database);
        QCOMPARE(
            firstOf(*m_database, QStringLiteral("SELECT name FROM employee WHERE officer_no = 4")).toString(),
            QStringLiteral("Núñez-Larkspur, Alicia"));
        QCOMPARE(
            firstOf(*m_database, QStringLiteral("SELECT display_text FROM code_value WHERE table_no = 310 "
                                                "AND value_no = 1"))
                .toString(),
            QStringLiteral("\"Crack\" Cocaine"));
        QCOMPARE(firstOf(*m_database, QStringLiteral("SELECT id FROM code_value WHERE table_no = 301 AND "
                                                     "value_no = 1"))
                     .toString(),
                 QStringLiteral("01"));
    }

    void incidentsCanBeLoadedAndSavedAgain()
    {
        SampleData().fillOnce(*m_database);
        RecordStore store(*m_database);
        const auto found = store.list(QStringLiteral("2026-000026"));
        QCOMPARE(found.size(), 1);
        const RecordPtr record = store.load(found.first().IncidentNo);
        QCOMPARE(record->collection(QStringLiteral("Victims"))->Count(), 1);
        QCOMPARE(record->collection(QStringLiteral("Offenses"))
                     ->rows()
                     .front()
                     ->cell(QStringLiteral("OffenseNo"))
                     .value(),
                 QVariant(30));
        record->mainRow()->cell(QStringLiteral("Status")).setValue(QStringLiteral("Closed"));
        store.save(*record);
    }

    void theIncidentsShowAFewOfEachStateOfALocation_data()
    {
        QTest::addColumn<QString>("condition");
        const auto add = [](const char* name, const char* condition) {
            QTest::newRow(name) << QString::fromLatin1(condition);
        };
        add("no choice", "GeocodeOnSave IS NULL AND GeocodeStatus IS NULL");
        add("typed", "GeocodeOnSave = 0 AND Latitude IS NOT NULL AND GeocodeStatus IS NULL");
        add("typed, still empty", "GeocodeOnSave = 0 AND Latitude IS NULL");
        add("exact", "GeocodeStatus = 0 AND GeocodeAccuracy = 1 AND Latitude IS NOT NULL");
        add("good intersection", "GeocodeAccuracyType = 'intersection' AND GeocodeAccuracy >= 0.9");
        add("poor intersection", "GeocodeAccuracyType = 'intersection' AND GeocodeAccuracy < 0.9");
        add("nearest, nearly good", "GeocodeAccuracyType = 'street' AND GeocodeAccuracy BETWEEN 0.9 AND 0.99 "
                                    "AND GeocodeOutputAddress <> GeocodeInputAddress");
        add("nearest", "GeocodeAccuracyType = 'street' AND GeocodeAccuracy < 0.9 "
                       "AND GeocodeOutputAddress <> GeocodeInputAddress");
        add("not found", "GeocodeStatus = 1 AND GeocodeAccuracy IS NULL");
        add("error", "GeocodeStatus = 4 AND GeocodeError <> ''");
    }
    void theIncidentsShowAFewOfEachStateOfALocation()
    {
        QFETCH(QString, condition);
        SampleData().fillOnce(*m_database);
        QVERIFY(count(QStringLiteral("incident WHERE ") + condition) > 0);
    }

    void theOfficersOfAnIncidentWereThereWhenItOccurred()
    {
        SampleData().fillOnce(*m_database);
        const QString officers =
            QStringLiteral("incident JOIN employee ON officer_no = ReportingOfficerNo WHERE ");
        const QString handlers = QStringLiteral("incident JOIN employee ON officer_no = K9HandlerNo WHERE ");
        const QString there =
            QStringLiteral("substr(OccurredAt, 1, 10) BETWEEN hired AND COALESCE(left_on, '9999')");
        QCOMPARE(count(officers + there), count(QStringLiteral("incident")));
        QVERIFY(count(handlers + there) > 2);
        QCOMPARE(count(handlers + there + QStringLiteral(" AND k9_handler = 1")),
                 count(QStringLiteral("incident WHERE K9HandlerNo IS NOT NULL")));
    }

    void someEmployeesLeftBeforeAnIncidentAndSomeAfterTheirs()
    {
        SampleData().fillOnce(*m_database);
        QVERIFY(count(QStringLiteral("incident JOIN employee ON officer_no = ReportingOfficerNo "
                                     "WHERE active = 0 AND left_on > OccurredAt")) > 0);
        QVERIFY(count(QStringLiteral("incident JOIN employee ON left_on < OccurredAt WHERE active = 0")) > 0);
        QVERIFY(count(QStringLiteral("employee WHERE dept_team_no IS NOT NULL")) > 40);
        QVERIFY(count(QStringLiteral("employee WHERE dept_team_no IS NULL")) > 0);
    }

    void mostIncidentsAreAssignedToUsersOrTeamsAndOneToThree()
    {
        SampleData().fillOnce(*m_database);
        const auto ofKind = [this](const char* kind) {
            return count(
                QStringLiteral("IncdAssignment WHERE AssignedTo LIKE '%1:%'").arg(QString::fromLatin1(kind)));
        };
        QVERIFY(ofKind("user") > 10);
        QVERIFY(ofKind("team") > 10);
        QCOMPARE(ofKind("user") + ofKind("team"), count(QStringLiteral("IncdAssignment")));
        const QString incidents = QStringLiteral(
            "(SELECT COUNT(*) AS people FROM IncdAssignment GROUP BY IncidentNo) WHERE people >= %1");
        QVERIFY(count(incidents.arg(1)) > count(QStringLiteral("incident")) / 2);
        QCOMPARE(count(incidents.arg(3)), 1);
    }

    void aDatabaseThatHoldsSomethingIsNotFilledAgain()
    {
        QVERIFY(SampleData().fillOnce(*m_database));
        const int before = count(QStringLiteral("incident"));
        QVERIFY(!SampleData().fillOnce(*m_database));
        QCOMPARE(count(QStringLiteral("incident")), before);
    }

    void aFolderTakesThePlaceOfTheBuiltInFiles()
    {
        const QString folder = copyOfFiles();
        QFile employees(folder + QStringLiteral("/sample/employees.csv"));
        QVERIFY(employees.open(QIODevice::Append));
        employees.write("900,ZZ900,\"Quote\"\"d, Person\",9,1,0,,,\n");
        employees.close();
        SampleData(folder).fillOnce(*m_database);
        QCOMPARE(firstOf(*m_database, QStringLiteral("SELECT name FROM employee WHERE officer_no = 900"))
                     .toString(),
                 QStringLiteral("Quote\"d, Person"));
    }

    void badInputIsNamedByFileAndLineAndNothingIsWritten_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QByteArray>("from");
        QTest::addColumn<QByteArray>("to");
        QTest::addColumn<QString>("expected");
        const QString employees = QStringLiteral("sample/employees.csv");
        const QString incidents = QStringLiteral("sample/incidents.json");
        QTest::newRow("missing column") << employees << QByteArray("K9Handler") << QByteArray("Dog")
                                        << QStringLiteral("line 1: the column K9Handler is missing");
        QTest::newRow("bad number") << employees << QByteArray("\n2,MC1014") << QByteArray("\ntwo,MC1014")
                                    << QStringLiteral("line 3: OfficerNo is not a number: \"two\"");
        QTest::newRow("bad flag") << employees << QByteArray("333,1,0") << QByteArray("333,yes,0")
                                  << QStringLiteral("line 2: Active is neither 1 nor 0");
        QTest::newRow("bad date") << employees << QByteArray("2017-05-01") << QByteArray("2017-05-41")
                                  << QStringLiteral("line 2: Hired is not a date");
        QTest::newRow("key twice") << employees << QByteArray("\n2,MC1014") << QByteArray("\n1,MC1014")
                                   << QStringLiteral("line 3: OfficerNo stands twice");
        QTest::newRow("cell too many") << employees << QByteArray("2017-05-01,") << QByteArray("2017-05-01,,")
                                       << QStringLiteral("line 2: the row has 10 cells, the header has 9");
        QTest::newRow("quote not closed")
            << employees << QByteArray("Jack\"") << QByteArray("Jack") << QStringLiteral("line 2: ");
        QTest::newRow("quote inside a cell") << employees << QByteArray("MC1007") << QByteArray("MC\"1007")
                                             << QStringLiteral("line 2: there is a quote");
        QTest::newRow("not UTF-8") << employees << QByteArray("MC1007") << QByteArray("MC\xFF")
                                   << QStringLiteral("is not UTF-8");
        QTest::newRow("unknown officer")
            << QStringLiteral("sample/users.csv") << QByteArray("MC1007,333") << QByteArray("MC0000,333")
            << QStringLiteral("line 4: there is no employee");
        QTest::newRow("unknown user")
            << QStringLiteral("sample/rights.csv") << QByteArray("admin,_Global")
            << QByteArray("nobody,_Global") << QStringLiteral("line 4: there is no user nobody");
        QTest::newRow("unknown reporting code")
            << QStringLiteral("sample/offenses.csv") << QByteArray("Homicide,09A")
            << QByteArray("Homicide,XXX") << QStringLiteral("line 2: table 319 has no code XXX");
        QTest::newRow("code table without a file")
            << QStringLiteral("code_tables/tables.csv") << QByteArray("228,Team") << QByteArray("229,Team")
            << QStringLiteral("line 3: there must be one file for table 229");
        QTest::newRow("code out of range")
            << QStringLiteral("code_tables/228-team.csv") << QByteArray("\n1,PA") << QByteArray("\n40000,PA")
            << QStringLiteral("line 2: Value must be");
        QTest::newRow("not JSON") << incidents << QByteArray("\"CaseNo\": \"2026-000026\"")
                                  << QByteArray("\"CaseNo\" \"2026-000026\"") << QStringLiteral("line 3: ");
        QTest::newRow("unknown offense")
            << incidents << QByteArray("\"OffenseNo\": 23,") << QByteArray("\"OffenseNo\": 9999,")
            << QStringLiteral("line 57: OffenseNo has no row 9999");
        QTest::newRow("unknown code")
            << incidents << QByteArray("\"LocationTypeNo\": 20") << QByteArray("\"LocationTypeNo\": 999")
            << QStringLiteral("line 2: LocationTypeNo has no row 999");
        QTest::newRow("unknown team of an employee")
            << employees << QByteArray("2017-05-01,,1") << QByteArray("2017-05-01,,99")
            << QStringLiteral("line 2: table 228 has no value 99");
        QTest::newRow("unknown reporting officer")
            << incidents << QByteArray("\"ReportingOfficerNo\": 17")
            << QByteArray("\"ReportingOfficerNo\": 999")
            << QStringLiteral("line 2: ReportingOfficerNo has no row 999");
        QTest::newRow("unknown dog handler")
            << incidents << QByteArray("\"K9HandlerNo\": null") << QByteArray("\"K9HandlerNo\": 999")
            << QStringLiteral("line 2: K9HandlerNo has no row 999");
        QTest::newRow("dog handler without a dog")
            << incidents << QByteArray("\"K9HandlerNo\": null") << QByteArray("\"K9HandlerNo\": 1")
            << QStringLiteral("line 2: K9HandlerNo refers to the employee 1, who handles no dog");
        const QByteArray user("\"user:hwinterbourne\"");
        QTest::newRow("assigned to an unknown user")
            << incidents << user << QByteArray("\"user:nobody\"")
            << QStringLiteral("line 2: AssignedTo has no user \"nobody\" to refer to");
        QTest::newRow("assigned to an unknown team")
            << incidents << user << QByteArray("\"team:99\"")
            << QStringLiteral("line 2: AssignedTo has no team \"99\" to refer to");
        QTest::newRow("assigned to a team that is no number")
            << incidents << user << QByteArray("\"team:07\"")
            << QStringLiteral("line 2: AssignedTo has no team \"07\" to refer to");
        QTest::newRow("assigned to something else")
            << incidents << user << QByteArray("\"dog:7\"")
            << QStringLiteral("line 2: AssignedTo takes \"user:\" with a UserId or \"team:\" with a value of "
                              "table 228, not \"dog:7\"");
        QTest::newRow("text for a number")
            << incidents << QByteArray("\"LocationTypeNo\": 20") << QByteArray("\"LocationTypeNo\": \"home\"")
            << QStringLiteral("line 2: The field LocationTypeNo takes a whole number");
        QTest::newRow("missing member") << incidents << QByteArray("\"Status\"") << QByteArray("\"Stand\"")
                                        << QStringLiteral("line 2: Status is missing");
        QTest::newRow("missing location")
            << incidents << QByteArray("\"LocationName\"") << QByteArray("\"Place\"")
            << QStringLiteral("line 2: LocationName is missing");
        QTest::newRow("missing choice of a location")
            << incidents << QByteArray("\"GeocodeOnSave\"") << QByteArray("\"Save\"")
            << QStringLiteral("line 2: GeocodeOnSave is missing");
        QTest::newRow("missing rows") << incidents << QByteArray("\"Witnesses\"") << QByteArray("\"Seers\"")
                                      << QStringLiteral("line 2: Witnesses is missing");
    }
    void badInputIsNamedByFileAndLineAndNothingIsWritten()
    {
        QFETCH(QString, file);
        QFETCH(QByteArray, from);
        QFETCH(QByteArray, to);
        QFETCH(QString, expected);
        const QString folder = copyOfFiles();
        const QString path = folder + QLatin1Char('/') + file;
        QByteArray content = contentOf(path);
        const qsizetype at = content.indexOf(from);
        QVERIFY(at >= 0);
        writeFile(path, content.replace(at, from.size(), to));

        const QString text = errorOf([&] { SampleData(folder).fillOnce(*m_database); });
        QVERIFY2(text.contains(expected), qPrintable(text));
        QVERIFY2(text.startsWith(path), qPrintable(text));
        for (const char* table :
             {"code_table", "code_value", "employee", "user_account", "incident", "setting"})
            QCOMPARE(count(QString::fromLatin1(table)), 0);
        QVERIFY(SampleData().fillOnce(*m_database));
    }

    void aFolderWithoutTheFilesIsNamedWithWhatItMustHold_data()
    {
        QTest::addColumn<bool>("exists");
        QTest::addColumn<QString>("problem");
        QTest::newRow("no folder") << false << QStringLiteral(" does not exist");
        QTest::newRow("other files") << true << QStringLiteral(" holds no code_tables/tables.csv");
    }
    void aFolderWithoutTheFilesIsNamedWithWhatItMustHold()
    {
        QFETCH(bool, exists);
        QFETCH(QString, problem);
        const QString folder = m_folder->filePath(QStringLiteral("other"));
        if (exists)
            writeFile(folder + QStringLiteral("/code_tables/tables.txt"), "x");
        const QString text = errorOf([&] { SampleData(folder).fillOnce(*m_database); });
        QVERIFY2(text.contains(folder + problem), qPrintable(text));
        for (const char* part : {"code_tables/tables.csv", "sample/employees.csv", "sample/incidents.json"})
            QVERIFY2(text.contains(QString::fromLatin1(part)), qPrintable(text));
        QVERIFY(SampleData().fillOnce(*m_database));
    }

    void aMissingFileIsNamed()
    {
        const QString folder = copyOfFiles();
        QFile::remove(folder + QStringLiteral("/sample/users.csv"));
        const QString text = errorOf([&] { SampleData(folder).fillOnce(*m_database); });
        QVERIFY2(text.contains(QStringLiteral("sample/users.csv: the file cannot be read")),
                 qPrintable(text));
    }

    void cellsMayHoldLineEndsAndCarriageReturnsEndRows()
    {
        writeFile(m_folder->filePath(QStringLiteral("t.csv")),
                  "A,B\r\n\"two\nlines\",2\r\nlast,\r\nx,bad\r\n");
        const CsvTable table(DataFiles(m_folder->path()), QStringLiteral("t.csv"), {QStringLiteral("A")});
        QCOMPARE(table.rowCount(), 3);
        QCOMPARE(table.text(0, QStringLiteral("A")), QStringLiteral("two\nlines"));
        QCOMPARE(table.text(1, QStringLiteral("B")), QString());
        QVERIFY(errorOf([&] { table.number(2, QStringLiteral("B")); }).contains(QStringLiteral("line 5:")));
    }
};

TAVRIN_TEST_MAIN(tst_SampleData)
#include "tst_SampleData.moc"
