#include "attachments/files/ModuleKey.h"
#include "base/failure/Error.h"
#include "base/values/Variant.h"
#include "frame/memory_records/MemoryField.h"
#include "frame/memory_records/MemoryRow.h"
#include "support/TestCase.h"
#include "testing/FakeRecords.h"

#include <QVariantList>

using namespace Qt::StringLiterals;
using namespace tavrin;
using tavrin::MemoryField;
using tavrin::test::FakeRecord;

namespace {

/// A record whose main row has a plain column and these key columns; none without a key.
tvBusinessObjectPtr recordWith(const QString& className, const QVariantList& key)
{
    const auto record = std::make_shared<FakeRecord>();
    record->SetClassName(className);
    QList<tvFieldPtr> fields{std::make_shared<MemoryField>(u"Summary"_s, className)};
    for (const QVariant& part : key)
        fields << std::make_shared<MemoryField>(u"Key%1"_s.arg(fields.size()), part, true);
    if (!key.isEmpty())
        record->SetItem(GetModuleKeyFromBO(record), std::make_shared<tavrin::MemoryRow>(fields));
    return record;
}

} // namespace

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
        record->SetClassName(name);
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

    void recordsAreTheSameByTheirObjectOrByClassAndKey_data()
    {
        QTest::addColumn<QString>("otherClass");
        QTest::addColumn<QVariantList>("key"); // no main row without one
        QTest::addColumn<QVariantList>("otherKey");
        QTest::addColumn<bool>("same");
        const QString incident = u"tvIncidentBO"_s;
        const auto row = [](const char* name, const QString& otherClass, const QVariantList& key,
                            const QVariantList& otherKey,
                            bool same) { QTest::newRow(name) << otherClass << key << otherKey << same; };
        row("one key", incident, {7}, {7}, true);
        row("one key in another type", incident, {7}, {7.0}, true);
        row("another key", incident, {7}, {8}, false);
        row("another class", u"tvWarrantBO"_s, {7}, {7}, false);
        row("no main rows", incident, {}, {}, false);
        row("one without a main row", incident, {7}, {}, false);
        row("no keys yet", incident, {Null()}, {Null()}, false);
        row("one without a key", incident, {7}, {Null()}, false);
        row("two parts", incident, {7, u"a"_s}, {7, u"a"_s}, true);
        row("another second part", incident, {7, u"a"_s}, {7, u"b"_s}, false);
        row("a second part that is missing", incident, {7, u"a"_s}, {7}, false);
        row("half a key", incident, {7, Null()}, {7, Null()}, false);
    }
    void recordsAreTheSameByTheirObjectOrByClassAndKey()
    {
        QFETCH(QString, otherClass);
        QFETCH(QVariantList, key);
        QFETCH(QVariantList, otherKey);
        QFETCH(bool, same);
        const auto one = recordWith(u"tvIncidentBO"_s, key);
        const auto other = recordWith(otherClass, otherKey);
        QCOMPARE(isSameRecord(one, other), same);
        QCOMPARE(isSameRecord(other, one), same);
        QVERIFY(isSameRecord(one, one));
        QVERIFY(!isSameRecord(one, nullptr));
        QVERIFY(!isSameRecord(nullptr, one));
        QVERIFY(!isSameRecord(nullptr, nullptr));
    }
};

TAVRIN_TEST_MAIN(tst_ModuleKey)
#include "tst_ModuleKey.moc"
