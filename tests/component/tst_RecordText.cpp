#include "component/ComponentClient.h"
#include "component/RecordText.h"
#include "frame/host_contracts/HostObjects.h"
#include "frame/memory_records/MemoryCollection.h"
#include "frame/memory_records/MemoryRecord.h"
#include "support/RaisedError.h"
#include "support/TestCase.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <limits>

using namespace Qt::StringLiterals;
using namespace tavrin::test;

namespace {

QJsonValue parsed(const QString& json)
{
    return QJsonDocument::fromJson(json.toUtf8()).object();
}

/// The text of a row with one field.
QString rowWith(const QVariant& value)
{
    const auto row = std::make_shared<tavrin::MemoryRow>(QList<tavrin::MemoryColumn>{{u"A"_s}});
    fieldOf(*row, u"A"_s)->SetValue(value);
    return tavrin::textOfRecord(row);
}

QVariant fieldOfText(const QString& json)
{
    const auto row = std::dynamic_pointer_cast<tavrin::tvTableRow>(tavrin::recordFromText(json));
    return fieldOf(*row, u"A"_s)->Value();
}

} // namespace

/// Records as texts: what they hold comes back.
class tst_RecordText : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aRecordComesBackAsItWent()
    {
        const auto text = R"({"className":"tvIncidentBO","children":{"Rows":{"key":"SeqNo","columns":[
            {"name":"SeqNo","isKey":true,"maxLength":0,"isLink":false},
            {"name":"Name","isKey":false,"maxLength":20,"isLink":false},
            {"name":"Parent","isKey":false,"maxLength":0,"isLink":true}],
            "rows":[{"isNew":false,"fields":{"SeqNo":7,"Name":"a 'b'","Parent":null}},
                    {"isNew":true,"fields":{"SeqNo":8,"Name":null,"Parent":1.5}}],"position":2,"primary":7}}})";
        TvRecord record = 0;
        QCOMPARE(library().NewRecord(text, &record), TV_S_OK);
        Answer back;
        QCOMPARE(library().RecordText(record, back.out()), TV_S_OK);
        QCOMPARE(parsed(back.text()), parsed(QString::fromUtf8(text)));
        QCOMPARE(library().ReleaseRecord(record), TV_S_OK);
    }

    void whatARecordHoldsIsKeptAsItIs_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::newRow("key that is marked on another column") << R"({"key":"B","columns":[
            {"name":"A","isKey":true,"maxLength":0,"isLink":false},
            {"name":"B","isKey":false,"maxLength":0,"isLink":false}],
            "rows":[{"isNew":false,"fields":{"A":1,"B":2}}],"position":1,"primary":2})"_ba;
        QTest::newRow("new rows without keys or of one key") << R"({"key":"A","columns":[
            {"name":"A","isKey":true,"maxLength":0,"isLink":false}],
            "rows":[{"isNew":true,"fields":{"A":3}},{"isNew":true,"fields":{"A":3}},
                    {"isNew":true,"fields":{"A":null}}],"position":3,"primary":null})"_ba;
        QTest::newRow("row with a link of some length") << R"({"columns":[
            {"name":"Z","isKey":true,"maxLength":9,"isLink":true},
            {"name":"A","isKey":false,"maxLength":3,"isLink":false}],
            "isNew":true,"fields":{"A":"x","Z":"y"}})"_ba;
        QTest::newRow("parent, and children in it") << R"({"className":"a","children":{},"parent":{
            "className":"b","children":{"One":{"className":"","children":{}},"tWO":{"className":"c",
            "children":{}}}}})"_ba;
    }
    void whatARecordHoldsIsKeptAsItIs()
    {
        QFETCH(QByteArray, json);
        TvRecord record = 0;
        QCOMPARE(library().NewRecord(json, &record), TV_S_OK);
        Answer back;
        QCOMPARE(library().RecordText(record, back.out()), TV_S_OK);
        QCOMPARE(parsed(back.text()), parsed(QString::fromUtf8(json)));
        QCOMPARE(library().ReleaseRecord(record), TV_S_OK);
    }

    void aPrimaryThatNoRowHasIsNone()
    {
        TvRecord record = 0;
        QCOMPARE(library().NewRecord(R"({"rows": [{"fields": {"A": 1}}], "primary": 9})", &record), TV_S_OK);
        Answer back;
        QCOMPARE(library().RecordText(record, back.out()), TV_S_OK);
        QVERIFY(parsed(back.text())[u"primary"].isNull());
        QCOMPARE(library().ReleaseRecord(record), TV_S_OK);
    }

    void aTextThatIsNoRecordIsRefused_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QString>("why");
        QTest::newRow("no JSON") << "{"_ba << u"byte 1: unterminated object"_s;
        QTest::newRow("list") << "[]"_ba << u"its top: no object"_s;
        QTest::newRow("children") << R"({"children": []})"_ba << u".children: no object"_s;
        QTest::newRow("rows") << R"({"children": {"A": {"rows": 1}}})"_ba << u".children.A.rows: no list"_s;
        QTest::newRow("key") << R"({"key": "B", "columns": ["A"], "rows": []})"_ba
                             << u".key: no such column"_s;
        QTest::newRow("field") << R"({"columns": ["A"], "fields": {"B": 1}})"_ba
                               << u".fields.B: no such column"_s;
        QTest::newRow("value") << R"({"fields": {"B": []}})"_ba << u".fields.B: no value of a field"_s;
        QTest::newRow("column") << R"({"columns": [1], "fields": {}})"_ba
                                << u".columns: a column without a name"_s;
        QTest::newRow("position") << R"({"rows": [], "position": 2})"_ba
                                  << u"its top: The collection has no row 2"_s;
        QTest::newRow("position in a part") << R"({"children": {"A": {"rows": [], "position": 65537}}})"_ba
                                            << u".children.A: The collection has no row 65537"_s;
        QTest::newRow("children of one name")
            << R"({"children": {"A": {}, "a": {}}})"_ba << u".children.a: another child has this name"_s;
        QTest::newRow("too many rows")
            << R"({"rows": [)" + QByteArray(R"({"fields": {}},)").repeated(32767) + R"({"fields": {}}]})"
            << u".rows: more rows than a collection has positions for"_s;
        QTest::newRow("deep") << QByteArray("{\"children\": {\"A\": ").repeated(40) + "{}" +
                                     QByteArray("}}").repeated(40)
                              << u"records too deep in one another"_s;
    }
    void aTextThatIsNoRecordIsRefused()
    {
        QFETCH(QByteArray, json);
        QFETCH(QString, why);
        TvRecord record = 7;
        QCOMPARE(library().NewRecord(json, &record), TV_E_INVALIDARG);
        QCOMPARE(record, TvRecord(0));
        QVERIFY2(lastDescription().startsWith(u"The record's text is wrong at "_s) &&
                     lastDescription().endsWith(why),
                 qPrintable(lastDescription()));
    }

    void nullPointersOfRecordsAreRefused()
    {
        TvRecord record = 0;
        QCOMPARE(library().NewRecord(nullptr, &record), TV_E_POINTER);
        QCOMPARE(library().NewRecord("{}", nullptr), TV_E_POINTER);
        QCOMPARE(library().RecordText(1, nullptr), TV_E_POINTER);
    }

    void aValueOfAFieldIsKeptWhole_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::newRow("moment") << QVariant(QDateTime(QDate(2024, 1, 31), QTime(10, 15)));
        QTest::newRow("moment with milliseconds")
            << QVariant(QDateTime(QDate(2024, 1, 31), QTime(10, 15, 0, 250)));
        QTest::newRow("moment of the world's time")
            << QVariant(QDateTime(QDate(2024, 1, 31), QTime(10, 15, 59, 1), Qt::UTC));
        QTest::newRow("integer") << QVariant(7);
        QTest::newRow("integer beyond a double") << QVariant(Q_INT64_C(9007199254740993));
        QTest::newRow("negative integer beyond a double") << QVariant(Q_INT64_C(-9007199254740993));
        QTest::newRow("last integer") << QVariant(std::numeric_limits<qint64>::max());
        QTest::newRow("fraction") << QVariant(0.1);
        QTest::newRow("large fraction") << QVariant(1e300);
    }
    void aValueOfAFieldIsKeptWhole()
    {
        QFETCH(QVariant, value);
        const QVariant back = fieldOfText(rowWith(value));
        QCOMPARE(back, value);
        QCOMPARE(back.typeId(), value.typeId());
    }

    void aMomentWithoutMillisecondsHasAShortText()
    {
        QVERIFY(rowWith(QDateTime(QDate(2024, 1, 31), QTime(10, 15)))
                    .contains(u"{\"date\":\"2024-01-31T10:15:00\"}"_s));
    }

    void anIntegerThatNoTextCanHoldIsRefused()
    {
        QCOMPARE(raisedBy([] { rowWith(std::numeric_limits<quint64>::max()); }).Description,
                 u"A field holds a value that no text can hold"_s);
    }

    void aPartHasTheRecordThatHoldsItAsItsParent()
    {
        const auto record = std::dynamic_pointer_cast<tavrin::tvBusinessObject>(tavrin::recordFromText(
            uR"({"className": "tvIncidentBO", "children": {"SuspectBO": {"className": "tvSuspectBO"},
                 "Suspects": {"rows": [{"fields": {"SeqNo": 1}}]},
                 "Other": {"parent": {"className": "told"}}}})"_s));
        const auto suspect = tavrin::childOf<tavrin::tvBusinessObject>(*record, u"SuspectBO"_s);
        QCOMPARE(tavrin::parentOfRecord(suspect), record);
        const auto rows = tavrin::childOf<tavrin::tvTableCollection>(*record, u"Suspects"_s);
        QCOMPARE(tavrin::parentOfRecord(rows->Item(1)), record);
        const auto other = tavrin::childOf<tavrin::tvBusinessObject>(*record, u"Other"_s);
        QCOMPARE(tavrin::parentOfRecord(other)->ClassName(), u"told"_s); // before the one that holds it
        QVERIFY(!tavrin::parentOfRecord(record));
        QVERIFY(!parsed(tavrin::textOfRecord(suspect)).toObject().contains(u"parent"_s));
    }
};

TAVRIN_TEST_MAIN(tst_RecordText)
#include "tst_RecordText.moc"
