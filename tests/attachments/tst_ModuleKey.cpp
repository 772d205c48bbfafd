#include "attachments/ModuleKey.h"
#include "base/Error.h"
#include "support/FakeRecords.h"
#include "support/TestCase.h"

using namespace Qt::StringLiterals;
using namespace tavrin;
using tavrin::test::FakeRecord;

class tst_ModuleKey : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void theKeyOfAModuleIsTheNameOfItsRecordsClassWithoutWhatIsAroundIt_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("key"); // none for a name that is refused
        QTest::newRow("a record") << u"tvIncidentBO"_s << u"Incident"_s;
        QTest::newRow("an index") << u"tvMIWarrant"_s << u"MIWarrant"_s;
        QTest::newRow("by both rules") << u"tvMIRecordBO"_s << u"MIRecord"_s;
        QTest::newRow("nothing but what is around it") << u"tvBO"_s << u""_s;
        QTest::newRow("nothing but an index") << u"tvMI"_s << u"MI"_s;
        QTest::newRow("neither start nor end") << u"Incident"_s << QString();
        QTest::newRow("no end") << u"tvIncident"_s << QString();
        QTest::newRow("no start") << u"IncidentBO"_s << QString();
        QTest::newRow("start in another case") << u"TVIncidentBO"_s << QString();
        QTest::newRow("end in another case") << u"tvIncidentBo"_s << QString();
        QTest::newRow("index in another case") << u"tvmiWarrant"_s << QString();
        QTest::newRow("too short") << u"tvB"_s << QString();
        QTest::newRow("nameless") << u""_s << QString();
    }
    void theKeyOfAModuleIsTheNameOfItsRecordsClassWithoutWhatIsAroundIt()
    {
        QFETCH(QString, name);
        QFETCH(QString, key);
        const auto record = std::make_shared<FakeRecord>();
        record->className = name;
        if (!key.isNull()) {
            QCOMPARE(GetModuleKeyFromBO(record), key);
            return;
        }
        try {
            GetModuleKeyFromBO(record);
            QFAIL("it was taken");
        } catch (const Error& error) {
            QCOMPARE(error.Number, 5);
            QCOMPARE(error.Source, u"GetModuleKeyFromBO"_s);
            QCOMPARE(error.Description,
                     u"Unexpected business object type '"_s + name +
                         u"' passed to function. Business object type name must start with 'tv' and end "
                         "with 'BO', or start with 'tvMI'."_s);
        }
    }

    void withoutARecordThereIsNoKey()
    {
        try {
            GetModuleKeyFromBO(nullptr);
            QFAIL("it was taken");
        } catch (const Error& error) {
            QCOMPARE(error.Number, 91);
        }
    }
};

TAVRIN_TEST_MAIN(tst_ModuleKey)
#include "tst_ModuleKey.moc"
