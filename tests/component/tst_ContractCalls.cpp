#include "component/HostedTest.h"
#include "component/Program.h"
#include "sections/SuspRelList.h"
#include "testing/FakeDesktop.h"
#include "widgets/boxes/TextBox.h"
#include "widgets/grid_combo/GridComboBox.h"

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

const auto SuspectPage = R"({"className": "tvIncidentBO", "children": {
    "SuspectBO": {"children": {"SuspectVictims": {"columns": ["LinkNo", "VictimSeqNo", "SeqNo", "RelationNo"],
        "rows": []}}},
    "Suspects": {"rows": [{"fields": {"SeqNo": 7, "SuspectName": "Moss, Ada"}}]},
    "IncidentBO": {"children": {"Victims": {"rows": [{"fields": {"SeqNo": 1, "VictimName": "Ash, Ann"}},
        {"fields": {"SeqNo": 2, "VictimName": "Birch, Ben"}}]}}}}})";

QJsonValue parsed(const QString& json)
{
    return QJsonDocument::fromJson(json.toUtf8()).object();
}

} // namespace

/// The contracts by name, with records as texts.
class tst_ContractCalls : public tavrin::test::HostedTest
{
    Q_OBJECT

private Q_SLOTS:
    void init() override
    {
        m_boxes = std::make_unique<FakeMessageBoxes>();
        HostedTest::init();
    }
    void cleanup() override
    {
        QCOMPARE(m_boxes->texts(), QStringList());
        HostedTest::cleanup();
        m_boxes.reset();
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
        TvVariant item = of(10);
        TvList list{1, &item};
        TvVariant used{};
        used.type = TV_LIST;
        used.value.list = &list;
        QCOMPARE(call(made, "SetValue", {of(30), used}), TV_S_OK);
        QCOMPARE(listedIn(made), QVariantList({tavrin::Null(), 30, 40}));
        QCOMPARE(call(made, "SetValue", {of(30), of(1)}), TV_E_TYPEMISMATCH);
        QCOMPARE(call(made, "SetValue", {of(30), null()}), TV_S_OK);
        QCOMPARE(listedIn(made), QVariantList({tavrin::Null(), 10, 30, 40}));
    }

    void anArgumentMayTakeTheResult()
    {
        const Made made("FlatUserPicker");
        TvVariant both = of("user:asmith");
        QCOMPARE(made.functions.Contract(made.handle, "SetValue", &both, 1, &both), TV_S_OK);
        QCOMPARE(both.type, int(TV_EMPTY));
        Answer answer;
        QCOMPARE(call(made, "GetValue", {}, &answer), TV_S_OK);
        QCOMPARE(answer.text(), u"user:asmith"_s);
        both = of("a text");
        QCOMPARE(made.functions.Contract(made.handle, nullptr, &both, 1, &both), TV_E_POINTER);
        QCOMPARE(both.type, int(TV_EMPTY));
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

    void aSaveIsRefusedWithTheControlsText()
    {
        Program program;
        program.answers[u"Session.IsFieldRequired/4"_s] = [](const TvVariant*, TvVariant* result) {
            *result = of(true);
            return TV_S_OK;
        };
        const Made made("SuspRelList");
        for (const auto& [property, text] :
             {std::pair("OtherItemName", "Victim"), std::pair("OtherItemSeqName", "VictimSeqNo"),
              std::pair("OtherCollectionTag", "IncidentBO.Victims")}) {
            const TvVariant value = of(text);
            QCOMPARE(made.functions.Put(made.handle, property, &value), TV_S_OK);
        }
        // The suspect's incident is the record that holds it.
        QVERIFY2(call(made, "ReadData", {of(SuspectPage)}) == TV_S_OK, qPrintable(lastDescription()));
        program.asked.clear();
        QCOMPARE(call(made, "WriteData", {}), TV_E_EXCEPTION);
        QCOMPARE(program.asked, QStringList({u"Session.IsFieldRequired/4"_s}));
        QCOMPARE(program.told, QStringList({u"text \"Incident\""_s, u"text \"IncdSuspVictim\""_s,
                                            u"text \"RelationNo\""_s, u"text \"\""_s}));
        QCOMPARE(lastDescription(),
                 u"You must specify the relationship this suspect has to each victim before continuing."
                 "\r\n\r\nYou need to add 2 more relationships to complete this section."_s);
        QCOMPARE(lastNumber(), tavrin::SuspRelList::CompletenessErrorNumber);
    }

    void aBindingOfWrongTypesIsRefused_data()
    {
        QTest::addColumn<QByteArray>("binding");
        QTest::addColumn<QString>("wanted");
        QTest::newRow("text for the table") << R"({"FieldName": "WeaponNo", "TableNo": "302"})"_ba
                                            << u"a whole number as the binding's TableNo"_s;
        QTest::newRow("fraction for the table") << R"({"FieldName": "WeaponNo", "TableNo": 302.5})"_ba
                                                << u"a whole number as the binding's TableNo"_s;
        QTest::newRow("number for the field")
            << R"({"FieldName": 1, "TableNo": 302})"_ba << u"a text as the binding's FieldName"_s;
        QTest::newRow("list") << R"(["WeaponNo", 302])"_ba
                              << u"a binding as the JSON {\"FieldName\": ..., \"TableNo\": ...}"_s;
    }
    void aBindingOfWrongTypesIsRefused()
    {
        QFETCH(QByteArray, binding);
        QFETCH(QString, wanted);
        const Made made("MultiValue");
        for (const char* operation : {"FillControl", "SetValue"}) {
            QCOMPARE(call(made, operation, {of(binding.constData()), empty(), of(WeaponRows)}),
                     TV_E_TYPEMISMATCH);
            QCOMPARE(lastDescription(), u"\"%1\" wants %2"_s.arg(QString::fromLatin1(operation), wanted));
            QCOMPARE(lastNumber(), tavrin::Error::TypeMismatchNumber);
        }
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
    /// The codes in the picker's list.
    static QVariantList listedIn(const Made& made)
    {
        const auto* combo = made.object()->findChild<tavrin::GridComboBox*>(u"tdbcValues"_s);
        QVariantList codes;
        for (int row = 1; row <= combo->Array().UpperBound(); ++row)
            codes << combo->Array().Value(row, 2);
        return codes;
    }

    static TvResult call(const Made& made, const char* operation, const std::vector<TvVariant>& arguments,
                         Answer* answer = nullptr)
    {
        return made.functions.Contract(made.handle, operation, arguments.data(),
                                       static_cast<int32_t>(arguments.size()),
                                       answer ? answer->out() : nullptr);
    }

    std::unique_ptr<FakeMessageBoxes> m_boxes;
};

TAVRIN_TEST_MAIN(tst_ContractCalls)
#include "tst_ContractCalls.moc"
