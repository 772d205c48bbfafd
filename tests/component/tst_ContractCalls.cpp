#include "component/ComponentClient.h"
#include "component/SetterRow.h"
#include "support/TestCase.h"
#include "testing/FakeDesktop.h"
#include "widgets/boxes/TextBox.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <memory>

using namespace Qt::StringLiterals;
using namespace tavrin::test;

namespace {

const auto Location = R"({"className": "tvLocationBO", "children": {"LocationName": {"fields": {
    "Latitude": 41.5, "Longitude": -72.25, "GeocodeOnSave": false, "GeocodeStatus": null, "GeocodeAccuracy": null,
    "GeocodeAccuracyType": null, "GeocodeError": null, "GeocodeInputAddress": null,
    "GeocodeOutputAddress": null, "UserDate": {"date": "2024-01-31T10:15:00"}}}}})";

const auto WeaponRows = R"({"key": "SeqNo", "columns": [{"name": "SeqNo", "isKey": true}, "WeaponNo"],
    "rows": [{"fields": {"SeqNo": 1, "WeaponNo": 11}}, {"fields": {"SeqNo": 2, "WeaponNo": 13}}]})";

const auto Binding = R"({"FieldName": "WeaponNo", "TableNo": 302})";

QJsonValue parsed(const QString& json)
{
    return QJsonDocument::fromJson(json.toUtf8()).object();
}

} // namespace

/// The contracts by name, with records as texts.
class tst_ContractCalls : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init() override
    {
        failOnUnexpectedWarnings();
        m_boxes = std::make_unique<FakeMessageBoxes>();
        m_host = std::make_unique<FakeHost>();
        fillHost(*m_host);
        m_installation = std::make_unique<tavrin::HostInstallation>(*m_host);
    }
    void cleanup() override
    {
        m_installation.reset();
        m_host.reset();
        QCOMPARE(m_boxes->texts(), QStringList());
        m_boxes.reset();
        TestCase::cleanup();
    }

    void aFieldTakesAndGivesItsValue()
    {
        const Made made("FlatUserPicker");
        const TvVariant value = of("user:asmith");
        QCOMPARE(call(made, "setvalue", {value}), TV_S_OK);
        Answer answer;
        QCOMPARE(call(made, "GetValue", {}, &answer), TV_S_OK);
        QCOMPARE(answer.text(), u"user:asmith"_s);
    }

    void aFieldGetsTheUsedValues()
    {
        const Made made("AgencyPicker");
        TvVariant remove = of(true);
        QCOMPARE(made.functions.Put(made.handle, "RemoveUsedValues", &remove), TV_S_OK);
        TvVariant item = of(1);
        TvList list{1, &item};
        TvVariant used{};
        used.type = TV_LIST;
        used.value.list = &list;
        QCOMPARE(call(made, "SetValue", {null(), used}), TV_S_OK);
        QCOMPARE(call(made, "SetValue", {null(), of(1)}), TV_E_TYPEMISMATCH);
        QCOMPARE(call(made, "SetValue", {null(), null()}), TV_S_OK);
    }

    void severalCodesAreReadFromRowsAndWrittenBack()
    {
        const Made made("MultiValue");
        QCOMPARE(call(made, "FillControl", {of(Binding), empty(), of(WeaponRows)}), TV_S_OK);
        Answer count;
        QCOMPARE(made.functions.Get(made.handle, "Count", count.out()), TV_S_OK);
        QCOMPARE(count.number(), 2);
        Answer rows;
        QCOMPARE(call(made, "SetValue",
                      {of(Binding), empty(), of(R"({"key": "SeqNo", "columns": ["SeqNo", "WeaponNo"],
                                                                      "rows": []})")},
                      &rows),
                 TV_S_OK);
        const QJsonArray written = parsed(rows.text())[u"rows"].toArray();
        QCOMPARE(written.size(), 2);
        QCOMPARE(written.at(0)[u"fields"][u"WeaponNo"].toInt(), 11);
        QCOMPARE(written.at(1)[u"fields"][u"WeaponNo"].toInt(), 13);
        QCOMPARE(written.at(1)[u"fields"][u"SeqNo"].toInt(), 2);
        QVERIFY(written.at(1)[u"isNew"].toBool());
    }

    void noBindingAndNoRowsAreNothingToDo()
    {
        const Made made("MultiValue");
        QCOMPARE(call(made, "FillControl", {null(), null(), null()}), TV_S_OK);
        QCOMPARE(call(made, "FillControl", {of(Binding), null(), objectOf(0)}), TV_S_OK);
    }

    void aSectionReadsARecordAndWritesItBack()
    {
        const Made made("LatLong");
        QCOMPARE(call(made, "ReadData", {of(Location)}), TV_S_OK);
        auto* box = made.object()->findChild<tavrin::TextBox*>(u"txtLat"_s);
        QCOMPARE(box->Text(), u"41.5"_s);
        box->SetText(u"42.125"_s);
        Answer written;
        QVERIFY2(call(made, "WriteData", {}, &written) == TV_S_OK, qPrintable(lastDescription()));
        const QJsonValue fields = parsed(written.text())[u"children"][u"LocationName"][u"fields"];
        QCOMPARE(fields[u"Latitude"].toVariant().toString(), u"42.125"_s);
        QCOMPARE(fields[u"UserDate"][u"date"].toString(), u"2024-01-31T10:15:00"_s);
    }

    void controlsShareARecordByItsHandle()
    {
        TvRecord record = 0;
        QCOMPARE(library().NewRecord(Location, &record), TV_S_OK);
        const Made made("LatLong");
        QCOMPARE(call(made, "ReadData", {objectOf(record)}), TV_S_OK);
        made.object()->findChild<tavrin::TextBox*>(u"txtLat"_s)->SetText(u"43.5"_s);
        QCOMPARE(call(made, "WriteData", {objectOf(record)}), TV_S_OK);
        Answer text;
        QCOMPARE(library().RecordText(record, text.out()), TV_S_OK);
        QCOMPARE(
            parsed(text.text())[u"children"][u"LocationName"][u"fields"][u"Latitude"].toVariant().toString(),
            u"43.5"_s);
        QCOMPARE(library().ReleaseRecord(record), TV_S_OK);
        QCOMPARE(library().ReleaseRecord(record), TV_E_HANDLE);
        Answer none;
        QCOMPARE(library().RecordText(record, none.out()), TV_E_HANDLE);
        QCOMPARE(call(made, "WriteData", {objectOf(record)}), TV_E_HANDLE);
        QCOMPARE(call(made, "WriteData", {}), TV_S_OK); // the control keeps it
    }

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

    void aSaveIsRefusedWithTheControlsText()
    {
        const Made made("SuspRelList");
        QCOMPARE(call(made, "WriteData", {of(R"({"className": "tvSuspectBO"})")}), TV_E_EXCEPTION);
        QVERIFY(!lastDescription().isEmpty());
    }

    void wrongCallsAreRefused()
    {
        const Made field("AgencyPicker");
        QCOMPARE(call(field, "ReadData", {null()}), TV_E_MEMBERNOTFOUND);
        QCOMPARE(lastDescription(), u"The contract TavrinControl has no operation \"ReadData\""_s);
        QCOMPARE(call(field, "SetValue", {}), TV_E_BADPARAMCOUNT);
        QCOMPARE(call(field, "GetValue", {null()}), TV_E_BADPARAMCOUNT);
        const Made rows("MultiValue");
        QCOMPARE(call(rows, "FillControl", {of(Binding), null()}), TV_E_BADPARAMCOUNT);
        QCOMPARE(call(rows, "FillControl", {of("no JSON"), null(), of(WeaponRows)}), TV_E_TYPEMISMATCH);
        QCOMPARE(call(rows, "FillControl", {of(Binding), null(), of(Location)}), TV_E_TYPEMISMATCH);
        QCOMPARE(call(rows, "FillControl", {of(Binding), null(), of("no JSON")}), TV_E_INVALIDARG);
        QCOMPARE(call(rows, "FillControl", {of(Binding), null(), of(1)}), TV_E_TYPEMISMATCH);
        QCOMPARE(call(rows, "GetValue", {}), TV_E_MEMBERNOTFOUND);
        const Made section("LatLong");
        QCOMPARE(call(section, "ReadData", {}), TV_E_BADPARAMCOUNT);
        QCOMPARE(call(section, "ReadData", {of(WeaponRows)}), TV_E_TYPEMISMATCH);
        QCOMPARE(call(section, "ReadData", {objectOf(section.handle)}), TV_E_TYPEMISMATCH);
        QCOMPARE(call(section, "Save", {}), TV_E_MEMBERNOTFOUND);
        const Made without("AutoCompleteField");
        QCOMPARE(call(without, "GetValue", {}), TV_E_NOINTERFACE);
        QCOMPARE(lastDescription(), u"AutoCompleteField has no contract"_s);
    }

private:
    static TvResult call(const Made& made, const char* operation, const std::vector<TvVariant>& arguments,
                         Answer* answer = nullptr)
    {
        return made.functions.Contract(made.handle, operation, arguments.data(),
                                       static_cast<int32_t>(arguments.size()),
                                       answer ? answer->out() : nullptr);
    }

    std::unique_ptr<FakeMessageBoxes> m_boxes;
    std::unique_ptr<FakeHost> m_host;
    std::unique_ptr<tavrin::HostInstallation> m_installation;
};

TAVRIN_TEST_MAIN(tst_ContractCalls)
#include "tst_ContractCalls.moc"
