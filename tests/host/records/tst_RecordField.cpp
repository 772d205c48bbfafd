#include "base/values/Variant.h"
#include "host/records/RecordTestSupport.h"

using namespace tavrin;
using namespace tavrin::test;

namespace {

const QString Summary = QStringLiteral("Summary");

} // namespace

/// What a record hands out by name, the values that its fields take, and how it knows of changes.
class tst_RecordField : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void itemFindsChildrenWithoutRegardToCase_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("kind");
        QTest::newRow("main row") << QStringLiteral("Incident") << QStringLiteral("row");
        QTest::newRow("main row in capitals") << QStringLiteral("INCIDENT") << QStringLiteral("row");
        for (const char* name :
             {"Offenses", "Suspects", "Victims", "Witnesses", "Others", "Assignments", "oTHERS"})
            QTest::newRow(name) << QString::fromLatin1(name) << QStringLiteral("rows");
        QTest::newRow("unknown") << QStringLiteral("Vehicles") << QStringLiteral("none");
        QTest::newRow("empty") << QString() << QStringLiteral("none");
    }
    void itemFindsChildrenWithoutRegardToCase()
    {
        QFETCH(QString, name);
        QFETCH(QString, kind);
        const RecordPtr record = newRecord();
        const HostObjectPtr item = record->Item(name);
        QCOMPARE(std::dynamic_pointer_cast<tvTableRow>(item) != nullptr, kind == QStringLiteral("row"));
        QCOMPARE(std::dynamic_pointer_cast<tvTableCollection>(item) != nullptr,
                 kind == QStringLiteral("rows"));
        QCOMPARE(item == nullptr, kind == QStringLiteral("none"));
    }

    void fieldsTellOfTheirColumns()
    {
        const RecordPtr record = newRecord();
        tvTableRow& main = *record->mainRow();
        QCOMPARE(main.FieldCount(), 17);
        QCOMPARE(main.Item(1)->Name(), QStringLiteral("IncidentNo"));
        QVERIFY(main.Item(1)->IsKey());
        QVERIFY(!main.Item(0) && !main.Item(18));
        QCOMPARE(fieldOf(main, QStringLiteral("caseno"))->MaxLength(), 20);
        QVERIFY(IsNull(fieldOf(main, Summary)->Value()));
        QVERIFY(main.IsNew());

        const auto row = rowsOf(record, Suspects)->AddNew();
        QVERIFY(std::dynamic_pointer_cast<tvLinkField>(row->Item(QStringLiteral("IncidentNo"))));
        QVERIFY(!std::dynamic_pointer_cast<tvLinkField>(row->Item(SeqNo)));
    }

    void valuesAreConvertedToTheColumnsType_data()
    {
        QTest::addColumn<QString>("field");
        QTest::addColumn<QVariant>("given");
        QTest::addColumn<QVariant>("kept");
        const QString number = QStringLiteral("WeaponNo");
        const QString time = QStringLiteral("ReportedAt");
        const QDateTime moment(QDate(2026, 2, 3), QTime(4, 5, 6));
        QTest::newRow("number") << number << QVariant(7) << QVariant(7);
        QTest::newRow("number as text") << number << QVariant(QStringLiteral("7")) << QVariant(7);
        QTest::newRow("number as double") << number << QVariant(7.0) << QVariant(7);
        QTest::newRow("empty text in a number") << number << QVariant(QString()) << Null();
        QTest::newRow("Null") << number << Null() << Null();
        QTest::newRow("Empty") << number << QVariant() << Null();
        QTest::newRow("number in a text") << Summary << QVariant(12) << QVariant(QStringLiteral("12"));
        QTest::newRow("empty text") << Summary << QVariant(QStringLiteral("")) << Null();
        QTest::newRow("date and time") << time << QVariant(moment) << QVariant(moment);
        QTest::newRow("date and time as text")
            << time << QVariant(QStringLiteral("2026-02-03T04:05:06")) << QVariant(moment);
        QTest::newRow("parts of a second") << time << QVariant(moment.addMSecs(700)) << QVariant(moment);
        QTest::newRow("date alone") << time << QVariant(QDate(2026, 2, 3))
                                    << QVariant(QDateTime(QDate(2026, 2, 3), QTime(0, 0)));
    }
    void valuesAreConvertedToTheColumnsType()
    {
        QFETCH(QString, field);
        QFETCH(QVariant, given);
        QFETCH(QVariant, kept);
        const RecordPtr record = newRecord();
        const tvFieldPtr target = fieldOf(*record->mainRow(), field);
        target->SetValue(given);
        QCOMPARE(target->Value().typeId(), kept.typeId());
        QVERIFY(SameValue(target->Value(), kept));
    }

    void aValueOfTheWrongTypeIsRefusedAndTheOldOneStays_data()
    {
        QTest::addColumn<QString>("field");
        QTest::addColumn<QVariant>("wrong");
        QTest::newRow("text in a number") << QStringLiteral("WeaponNo") << QVariant(QStringLiteral("knife"));
        QTest::newRow("number too large") << QStringLiteral("WeaponNo") << QVariant(1e12);
        QTest::newRow("text in a date")
            << QStringLiteral("ReportedAt") << QVariant(QStringLiteral("yesterday"));
        QTest::newRow("number in a date") << QStringLiteral("ReportedAt") << QVariant(7);
        QTest::newRow("an object") << Summary << QVariant::fromValue(HostObjectPtr(newRecord()));
    }
    void aValueOfTheWrongTypeIsRefusedAndTheOldOneStays()
    {
        QFETCH(QString, field);
        QFETCH(QVariant, wrong);
        const RecordPtr record = newRecord();
        const tvFieldPtr target = fieldOf(*record->mainRow(), field);
        const QString text = errorOf([&] { target->SetValue(wrong); });
        QVERIFY2(text.contains(field), qPrintable(text));
        QVERIFY(IsNull(target->Value()));
        QVERIFY(!record->isChanged());
    }

    void aReferenceGivesTheOtherFieldsValueWheneverItComes()
    {
        const RecordPtr record = newRecord();
        const auto row = rowsOf(record, Suspects)->AddNew();
        const tvFieldPtr source = fieldOf(*record->mainRow(), QStringLiteral("WeaponNo"));
        const tvFieldPtr target = fieldOf(*row, QStringLiteral("RaceNo"));
        target->SetValue(FieldReference::toVariant(source));
        QVERIFY(IsNull(target->Value()));
        source->SetValue(5);
        QCOMPARE(target->Value(), QVariant(5));
        target->SetValue(6);
        source->SetValue(7);
        QCOMPARE(target->Value(), QVariant(6));
    }

    void referencesThatLeadInACircleAreRefused()
    {
        const RecordPtr record = newRecord();
        const tvFieldPtr a = fieldOf(*record->mainRow(), QStringLiteral("WeaponNo"));
        const tvFieldPtr b = fieldOf(*record->mainRow(), QStringLiteral("BiasNo"));
        QVERIFY(!errorOf([&] { a->SetValue(FieldReference::toVariant(a)); }).isEmpty());
        a->SetValue(FieldReference::toVariant(b));
        QVERIFY(!errorOf([&] { b->SetValue(FieldReference::toVariant(a)); }).isEmpty());
        QVERIFY(!errorOf([] { FieldReference::toVariant(nullptr); }).isEmpty());
    }

    void aLinkedFieldThatDoesNotConvertTakesANewValue()
    {
        const RecordPtr record = newRecord();
        const tvFieldPtr source = fieldOf(*record->mainRow(), Summary);
        const tvFieldPtr target = fieldOf(*record->mainRow(), QStringLiteral("WeaponNo"));
        const auto breakLink = [&] {
            source->SetValue(Null());
            target->SetValue(FieldReference::toVariant(source));
            source->SetValue(QStringLiteral("abc"));
        };
        int raised = 0;
        const Subscription keep = record->Changed.subscribe([&raised] { ++raised; });

        breakLink();
        const QString text = errorOf([&] { target->Value(); });
        for (const char* part : {"WeaponNo", "Summary", "a whole number", "abc"})
            QVERIFY2(text.contains(QString::fromLatin1(part)), qPrintable(text));
        QVERIFY(record->mainRow()->isChanged());

        raised = 0;
        target->SetValue(5);
        QCOMPARE(target->Value(), QVariant(5));
        QCOMPARE(raised, 1);

        breakLink();
        target->SetValue(Null());
        QVERIFY(IsNull(target->Value()));

        breakLink();
        const tvFieldPtr bias = fieldOf(*record->mainRow(), QStringLiteral("BiasNo"));
        bias->SetValue(3);
        target->SetValue(FieldReference::toVariant(bias));
        QCOMPARE(target->Value(), QVariant(3));

        breakLink();
        QVERIFY(!errorOf([&] { target->SetValue(QStringLiteral("knife")); }).isEmpty());
        source->SetValue(4);
        QCOMPARE(target->Value(), QVariant(4));
    }

    void changesAreNoticedAndTakenBack()
    {
        const RecordPtr record = newRecord();
        int raised = 0;
        const Subscription keep = record->Changed.subscribe([&raised] { ++raised; });
        QVERIFY(!record->isChanged());
        const tvFieldPtr field = fieldOf(*record->mainRow(), Summary);
        field->SetValue(QStringLiteral("a"));
        QVERIFY(record->isChanged());
        QCOMPARE(raised, 1);
        field->SetValue(QStringLiteral("a"));
        QCOMPARE(raised, 1);
        field->SetValue(Null());
        QCOMPARE(raised, 2);
        QVERIFY(!record->isChanged());

        const auto rows = rowsOf(record, Suspects);
        const auto row = rows->AddNew();
        QCOMPARE(raised, 3);
        QVERIFY(record->isChanged());
        fieldOf(*row, QStringLiteral("SuspectName"))->SetValue(QStringLiteral("b"));
        QCOMPARE(raised, 4);
        rows->RemoveCurrent(false);
        QCOMPARE(raised, 5);
        QVERIFY(!record->isChanged());
    }

    void textsThatAreTooLongAreNamedByTableRowAndField()
    {
        const RecordPtr record = newRecord();
        const auto rows = rowsOf(record, Suspects);
        rows->AddNew();
        const tvFieldPtr field = fieldOf(*rows->AddNew(), QStringLiteral("SuspectName"));
        field->SetValue(QString(80, QLatin1Char('x')));
        record->checkLengths();
        field->SetValue(QString(81, QLatin1Char('x')));
        const QString text = errorOf([&] { record->checkLengths(); });
        for (const char* part : {"IncdSuspect", "row 2", "SuspectName", "80", "81"})
            QVERIFY2(text.contains(QString::fromLatin1(part)), qPrintable(text));
    }
};

TAVRIN_TEST_MAIN(tst_RecordField)
#include "tst_RecordField.moc"
