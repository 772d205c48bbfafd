#include "host/HostTestSupport.h"
#include "host/records/RecordStore.h"

using namespace tavrin;
using namespace tavrin::test;

namespace {

void put(const RecordPtr& record, const char* field, const QVariant& value)
{
    record->mainRow()->cell(QString::fromLatin1(field)).setValue(value);
}

} // namespace

class tst_RecordSearch : public TestCase
{
    Q_OBJECT

private:
    std::optional<QTemporaryDir> m_folder;
    std::unique_ptr<Database> m_database;
    std::unique_ptr<RecordStore> m_store;

    RecordPtr newIncident(const QString& caseNo)
    {
        const RecordPtr record = m_store->create();
        put(record, "CaseNo", caseNo);
        put(record, "Summary", QStringLiteral("Summary of ") + caseNo);
        put(record, "ReportedAt", QDateTime(QDate(2026, 1, 2), QTime(3, 4, 5)));
        return record;
    }
    RecordPtr savedIncident(const QString& caseNo)
    {
        const RecordPtr record = newIncident(caseNo);
        m_store->save(*record);
        return record;
    }

private Q_SLOTS:
    void init() override
    {
        TestCase::init();
        m_folder.emplace();
        m_database = Database::open(m_folder->filePath(QStringLiteral("records.db")));
        m_store = std::make_unique<RecordStore>(*m_database);
    }
    void cleanup() override
    {
        m_store.reset();
        m_database.reset();
        TestCase::cleanup();
    }

    void theListIsNewestFirst()
    {
        for (int day : {2, 9, 5}) {
            const RecordPtr record = newIncident(QStringLiteral("day %1").arg(day));
            put(record, "ReportedAt", QDate(2026, 3, day));
            m_store->save(*record);
        }
        const RecordPtr undated = newIncident(QStringLiteral("undated"));
        put(undated, "ReportedAt", Null());
        m_store->save(*undated);
        QStringList cases;
        for (const IncidentSummary& line : m_store->list())
            cases << line.CaseNo;
        QCOMPARE(cases, (QStringList{QStringLiteral("day 9"), QStringLiteral("day 5"),
                                     QStringLiteral("day 2"), QStringLiteral("undated")}));
        QCOMPARE(m_store->list({}, 2).size(), 2);
        QCOMPARE(m_store->list().first().ReportedAt, QDateTime(QDate(2026, 3, 9), QTime(0, 0)));
    }

    void ofOneMomentTheLastOneIsFirst_data()
    {
        QTest::addColumn<QVariant>("reportedAt");
        QTest::newRow("a moment") << QVariant(QDateTime(QDate(2026, 1, 2), QTime(3, 4, 5)));
        QTest::newRow("none") << Null();
    }
    void ofOneMomentTheLastOneIsFirst()
    {
        QFETCH(QVariant, reportedAt);
        for (const char* caseNo : {"b", "d", "a", "c"}) { // no order of their names
            const RecordPtr record = newIncident(QString::fromLatin1(caseNo));
            put(record, "ReportedAt", reportedAt);
            m_store->save(*record);
        }
        const auto cases = [this](const QString& search, int limit) {
            QString names;
            for (const IncidentSummary& line : m_store->list(search, limit))
                names += line.CaseNo;
            return names;
        };
        QCOMPARE(cases({}, 0), QStringLiteral("cadb"));
        QCOMPARE(cases({}, 2), QStringLiteral("ca"));
        QCOMPARE(cases({}, 1), QStringLiteral("c"));
        QCOMPARE(cases(QStringLiteral("summary"), 0), QStringLiteral("cadb"));
        QCOMPARE(cases(QStringLiteral("summary"), 3), QStringLiteral("cad"));
    }

    void theSearchTakesItsTextAsItStands_data()
    {
        QTest::addColumn<QString>("search");
        QTest::addColumn<int>("found");
        QTest::newRow("nothing asked") << QString() << 4;
        QTest::newRow("blanks") << QStringLiteral("  ") << 4;
        QTest::newRow("case number") << QStringLiteral("c-1") << 1;
        QTest::newRow("summary") << QStringLiteral("NOISE") << 1;
        QTest::newRow("address") << QStringLiteral("mill lane") << 1;
        QTest::newRow("accents in other case") << QStringLiteral("NÚÑEZ") << 1;
        QTest::newRow("percent") << QStringLiteral("100%") << 1;
        QTest::newRow("percent alone") << QStringLiteral("%") << 1;
        QTest::newRow("underscore") << QStringLiteral("a_b") << 1;
        QTest::newRow("underscore is no wildcard") << QStringLiteral("c_1") << 0;
        QTest::newRow("backslash") << QStringLiteral("\\") << 1;
        QTest::newRow("quote") << QStringLiteral("o'b") << 1;
        QTest::newRow("double quote") << QStringLiteral("\"") << 1;
        QTest::newRow("an attack") << QStringLiteral("'; DROP TABLE incident; --") << 0;
        QTest::newRow("across fields") << QStringLiteral("c-1noise") << 0;
        QTest::newRow("control character") << QStringLiteral("\u001f") << 0;
        QTest::newRow("control character inside") << QStringLiteral("c-1\u001fn") << 0;
        QTest::newRow("NUL") << QStringLiteral("c") + QChar(0) + QStringLiteral("x") << 0;
        QTest::newRow("very long") << QString(200000, QLatin1Char('%')) << 0;
    }
    void theSearchTakesItsTextAsItStands()
    {
        QFETCH(QString, search);
        QFETCH(int, found);
        const QList<QStringList> rows{
            {QStringLiteral("C-1"), QStringLiteral("Noise at 100% volume"), QStringLiteral("1 Mill Lane")},
            {QStringLiteral("C-2"), QStringLiteral("Officer O'Brien said \"stop\""), QString()},
            {QStringLiteral("C-3"), QStringLiteral("Share a_b, path C:\\temp"), QString()},
            {QStringLiteral("C-4"), QStringLiteral("Núñez"), QString()},
        };
        for (const QStringList& row : rows) {
            const RecordPtr record = newIncident(row.at(0));
            put(record, "Summary", row.at(1));
            put(record, "Address", row.at(2));
            m_store->save(*record);
        }
        QCOMPARE(m_store->list(search).size(), found);
        QCOMPARE(m_store->list().size(), rows.size());
    }

    void theSearchFollowsAChange()
    {
        const RecordPtr record = savedIncident(QStringLiteral("2026-1"));
        put(record, "Summary", QStringLiteral("zebra"));
        m_store->save(*record);
        QCOMPARE(m_store->list(QStringLiteral("ZEBRA")).size(), 1);
        QCOMPARE(m_store->list(QStringLiteral("Summary of")).size(), 0);
    }
};

TAVRIN_TEST_MAIN(tst_RecordSearch)
#include "tst_RecordSearch.moc"
