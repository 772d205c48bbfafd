#include "base/values/Variant.h"
#include "host/HostTestSupport.h"
#include "host/records/Record.h"

#include <QVariantList>

using namespace tavrin;
using namespace tavrin::test;

namespace {

const QString Offenses = QStringLiteral("Offenses");
const QString Suspects = QStringLiteral("Suspects");
const QString Witnesses = QStringLiteral("Witnesses");
const QString SeqNo = QStringLiteral("SeqNo");
const QString Summary = QStringLiteral("Summary");

RecordPtr newRecord()
{
    return Record::create(incidentSchema());
}

tvTableCollectionPtr rowsOf(const RecordPtr& record, const QString& name)
{
    return std::dynamic_pointer_cast<tvTableCollection>(record->Item(name));
}

QVariant keyOf(const tvTableRowPtr& row)
{
    return fieldOf(*row, SeqNo)->Value();
}

/// Notes the events of a collection in the order in which they come.
struct Listener
{
    explicit Listener(tvTableCollection& rows)
        : removed(rows.ItemRemoved.subscribe(
              [this](const QVariant& key) { log << QStringLiteral("ItemRemoved ") + key.toString(); }))
        , removedEx(rows.ItemRemovedEx.subscribe([this](qint32 index, const tvTableRowPtr& row) {
            log << QStringLiteral("ItemRemovedEx %1 %2").arg(index).arg(keyOf(row).toString());
        }))
        , primary(rows.PrimaryStatusChanged.subscribe([this](const QVariant& key) {
            log << QStringLiteral("Primary ") + (IsNull(key) ? QStringLiteral("Null") : key.toString());
        }))
    {
    }
    QStringList log;
    Subscription removed;
    Subscription removedEx;
    Subscription primary;
};

} // namespace

class tst_Records : public TestCase
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

    void addNewAppendsAndMakesCurrent()
    {
        const RecordPtr record = newRecord();
        const auto rows = rowsOf(record, Suspects);
        QCOMPARE(rows->Position(), qint16(0));
        QCOMPARE(rows->KeyColumn(), SeqNo);
        rows->AddNew();
        const auto second = rows->AddNew();
        QCOMPARE(rows->Count(), 2);
        QCOMPARE(rows->Position(), qint16(2));
        QCOMPARE(rows->Item(2), second);
        QVERIFY(second->IsNew());
        QVERIFY(!errorOf([&] { rows->Item(3); }).isEmpty());
        QVERIFY(!errorOf([&] { rows->Item(0); }).isEmpty());
    }

    void newItemIsNotAddedUntilAddAndThenDoesNotMoveTheCurrentRow()
    {
        const RecordPtr record = newRecord();
        const auto rows = rowsOf(record, Suspects);
        const auto row = rows->NewItem();
        QCOMPARE(rows->Count(), 0);
        QVERIFY(!record->isChanged());
        rows->Add(row);
        QCOMPARE(rows->Position(), qint16(1));
        rows->Add(rows->NewItem());
        QCOMPARE(rows->Position(), qint16(1));
        QVERIFY(!errorOf([&] { rows->Add(row); }).isEmpty());
        QVERIFY(!errorOf([&] { rows->Add(nullptr); }).isEmpty());
        QVERIFY(!errorOf([&] { rows->Add(rowsOf(record, Witnesses)->NewItem()); }).isEmpty());
        QCOMPARE(rows->Count(), 2);
    }

    void aRowStandsInOneCollectionOnly()
    {
        const RecordPtr record = newRecord();
        const RecordPtr other = newRecord();
        const auto a = rowsOf(record, Witnesses);
        const auto b = rowsOf(other, Witnesses);
        const auto added = a->AddNew();
        QVERIFY(errorOf([&] { b->Add(added); }).contains(QStringLiteral("another collection")));
        const auto made = a->NewItem();
        b->Add(made);
        QVERIFY(errorOf([&] { a->Add(made); }).contains(QStringLiteral("another collection")));
        QCOMPARE(a->Count(), 1);
        QCOMPARE(b->Count(), 1);

        RecordCollection free;
        free.SetItemClass(QStringLiteral("Incident.IncdWitness"));
        const auto freeRow = free.AddNew();
        QVERIFY(!errorOf([&] { free.Add(added); }).isEmpty());
        QVERIFY(!errorOf([&] { a->Add(freeRow); }).isEmpty());
    }

    void aRowOfAnotherCollectionBelongsWhereItIsAdded()
    {
        const RecordPtr record = newRecord();
        const RecordPtr other = newRecord();
        const auto rows = rowsOf(other, Witnesses);
        rows->AddNew();
        const auto row = rowsOf(record, Witnesses)->NewItem();
        QCOMPARE(keyOf(row), QVariant(1));
        rows->Add(row);
        QCOMPARE(keyOf(row), QVariant(2));
        fieldOf(*record->mainRow(), QStringLiteral("IncidentNo"))->SetValue(7);
        fieldOf(*other->mainRow(), QStringLiteral("IncidentNo"))->SetValue(8);
        QCOMPARE(fieldOf(*row, QStringLiteral("IncidentNo"))->Value(), QVariant(8));
        QCOMPARE(std::dynamic_pointer_cast<RecordRow>(row)->record(), other);
        int raised = 0;
        int raisedElsewhere = 0;
        const Subscription here = other->Changed.subscribe([&raised] { ++raised; });
        const Subscription there = record->Changed.subscribe([&raisedElsewhere] { ++raisedElsewhere; });
        fieldOf(*row, QStringLiteral("WitnessName"))->SetValue(QStringLiteral("a"));
        QCOMPARE(raised, 1);
        QCOMPARE(raisedElsewhere, 0);
    }

    void aNewRowThatWasTakenOutMayBeAddedElsewhere()
    {
        const RecordPtr record = newRecord();
        const auto rows = rowsOf(record, Witnesses);
        const auto row = rowsOf(newRecord(), Witnesses)->AddNew(); // its record is gone
        rows->Add(row);
        rows->RemoveCurrent(false);
        const RecordPtr other = newRecord();
        rowsOf(other, Witnesses)->Add(row);
        QCOMPARE(rowsOf(other, Witnesses)->Count(), 1);
    }

    void aNewRowsKeyIsFreeAlsoAfterKeysWereAssigned()
    {
        const RecordPtr record = newRecord();
        const auto rows = rowsOf(record, Witnesses);
        fieldOf(*rows->AddNew(), SeqNo)->SetValue(2);
        QCOMPARE(keyOf(rows->AddNew()), QVariant(3));
        const auto made = rows->NewItem();
        fieldOf(*rows->Item(1), SeqNo)->SetValue(keyOf(made));
        rows->Add(made);
        QCOMPARE(keyOf(made), QVariant(5));
    }

    void aForEachLoopWalksAllRows()
    {
        const RecordPtr record = newRecord();
        const auto rows = rowsOf(record, Suspects);
        for (int i = 0; i < 3; ++i)
            rows->AddNew();
        QVariantList keys;
        for (const tvTableRowPtr& row : *rows)
            keys << keyOf(row);
        QCOMPARE(keys, (QVariantList{1, 2, 3}));
    }

    void sequenceNumbersAreUniqueAndNotUsedAgain()
    {
        const RecordPtr record = newRecord();
        const auto rows = rowsOf(record, Suspects);
        const auto made = rows->NewItem();
        rows->AddNew();
        rows->AddNew();
        rows->RemoveCurrent(false);
        rows->Add(made);
        QVariantList keys;
        for (const tvTableRowPtr& row : *rows)
            keys << keyOf(row);
        keys << keyOf(rows->AddNew());
        QCOMPARE(keys, (QVariantList{2, 1, 4}));
    }

    void thePositionStaysOnTheRowThatMovedUpOrTheLast()
    {
        const RecordPtr record = newRecord();
        const auto rows = rowsOf(record, Suspects);
        for (int i = 0; i < 4; ++i)
            rows->AddNew();
        rows->SetPosition(2);
        rows->RemoveCurrent(false);
        QCOMPARE(rows->Position(), qint16(2));
        QCOMPARE(keyOf(rows->Item(2)), QVariant(3));
        rows->SetPosition(3);
        rows->RemoveCurrent(false);
        QCOMPARE(rows->Position(), qint16(2));
        rows->RemoveCurrent(false);
        rows->RemoveCurrent(false);
        QCOMPARE(rows->Position(), qint16(0));
        QVERIFY(!errorOf([&] { rows->RemoveCurrent(false); }).isEmpty());
    }

    void aPositionOutsideIsRefused()
    {
        const RecordPtr record = newRecord();
        const auto rows = rowsOf(record, Suspects);
        rows->SetPosition(0);
        QVERIFY(!errorOf([&] { rows->SetPosition(1); }).isEmpty());
        rows->AddNew();
        for (const qint16 wrong : {-1, 0, 2})
            QVERIFY(!errorOf([&] { rows->SetPosition(wrong); }).isEmpty());
        QCOMPARE(rows->Position(), qint16(1));
    }

    void removingRaisesTheEventsInOrder()
    {
        const RecordPtr record = newRecord();
        const auto rows = rowsOf(record, Offenses);
        for (int i = 0; i < 3; ++i)
            rows->AddNew();
        rows->SetPosition(2);
        rows->SetPrimaryValue(2);
        Listener listener(*rows);
        rows->RemoveCurrent(false);
        QCOMPARE(listener.log,
                 (QStringList{QStringLiteral("ItemRemoved 2"), QStringLiteral("ItemRemovedEx 2 2"),
                              QStringLiteral("Primary Null")}));
        QCOMPARE(rows->PrimaryIndex(), 0);
        listener.log.clear();
        rows->RemoveCurrent(false);
        QCOMPARE(listener.log,
                 (QStringList{QStringLiteral("ItemRemoved 3"), QStringLiteral("ItemRemovedEx 2 3")}));
    }

    void aHandlerMayChooseAnotherPrimaryRow()
    {
        const RecordPtr record = newRecord();
        const auto rows = rowsOf(record, Offenses);
        rows->AddNew();
        rows->AddNew();
        rows->SetPrimaryValue(2);
        const Subscription choose =
            rows->ItemRemoved.subscribe([&rows](const QVariant&) { rows->SetPrimaryValue(1); });
        Listener listener(*rows);
        rows->RemoveCurrent(false);
        QCOMPARE(listener.log.last(), QStringLiteral("ItemRemovedEx 2 2"));
        QVERIFY(!listener.log.contains(QStringLiteral("Primary Null")));
        QCOMPARE(rows->PrimaryIndex(), 1);
    }

    void aHandlersExceptionArrivesAndTheCollectionIsConsistent()
    {
        const RecordPtr record = newRecord();
        const auto rows = rowsOf(record, Offenses);
        rows->AddNew();
        rows->AddNew();
        rows->SetPrimaryValue(2);
        const Subscription keep = rows->ItemRemoved.subscribe(
            [](const QVariant&) { throw Error(QStringLiteral("the handler objects")); });
        QCOMPARE(errorOf([&] { rows->RemoveCurrent(false); }), QStringLiteral("the handler objects"));
        QCOMPARE(rows->Count(), 1);
        QCOMPARE(rows->Position(), qint16(1));
        QCOMPARE(rows->PrimaryIndex(), 0);
    }

    void aHandlerMayDropTheCollection()
    {
        tvTableCollectionPtr rows = std::make_shared<RecordCollection>();
        rows->SetItemClass(QStringLiteral("Incident.IncdWitness"));
        rows->AddNew();
        tvTableCollection* raw = rows.get();
        const Subscription keep = rows->ItemRemoved.subscribe([&rows](const QVariant&) { rows.reset(); });
        raw->RemoveCurrent(false);
        QVERIFY(!rows);
    }

    void thePrimaryRowFollowsItsKey()
    {
        const RecordPtr record = newRecord();
        const auto rows = rowsOf(record, Offenses);
        for (int i = 0; i < 3; ++i)
            rows->AddNew();
        Listener listener(*rows);
        rows->SetPrimaryValue(3);
        QCOMPARE(rows->PrimaryIndex(), 3);
        QVERIFY(rows->CurrentIsPrimary());
        rows->SetPosition(1);
        QVERIFY(!rows->CurrentIsPrimary());
        rows->RemoveCurrent(false);
        QCOMPARE(rows->PrimaryIndex(), 2);
        rows->SetPrimaryValue(Null());
        QCOMPARE(rows->PrimaryIndex(), 0);
        QCOMPARE(listener.log.first(), QStringLiteral("Primary 3"));
        QCOMPARE(listener.log.last(), QStringLiteral("Primary Null"));
    }

    void aPrimaryRowThatIsNotThereIsRefused()
    {
        const RecordPtr record = newRecord();
        rowsOf(record, Offenses)->AddNew();
        QVERIFY(!errorOf([&] { rowsOf(record, Offenses)->SetPrimaryValue(9); }).isEmpty());
        rowsOf(record, Suspects)->AddNew();
        QVERIFY(errorOf([&] { rowsOf(record, Suspects)->SetPrimaryValue(1); }).contains(Suspects));
        QVERIFY(!rowsOf(record, Suspects)->CurrentIsPrimary());
    }

    void aFreeCollectionNeedsAClassItKnows()
    {
        RecordCollection rows;
        QCOMPARE(rows.Count(), 0);
        QVERIFY(!errorOf([&] { rows.AddNew(); }).isEmpty());
        rows.SetItemClass(QStringLiteral("Of.Nobody"));
        QVERIFY(errorOf([&] { rows.AddNew(); }).contains(QStringLiteral("class")));
        rows.SetItemClass(QStringLiteral("incident.incdwitness"));
        rows.AddNew();
        rows.SetPrimaryValue(1);
        QVERIFY(rows.CurrentIsPrimary());
        QVERIFY(!errorOf([&] { rows.SetItemClass(QStringLiteral("Incident.IncdOther")); }).isEmpty());
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

    void rowsOutliveTheirRecord()
    {
        RecordPtr record = newRecord();
        const auto rows = rowsOf(record, Offenses);
        const auto row = rows->AddNew();
        record.reset();
        fieldOf(*row, QStringLiteral("OffenseNo"))->SetValue(3);
        rows->SetPrimaryValue(1);
        rows->RemoveCurrent(true);
        QCOMPARE(rows->Count(), 0);
    }
};

TAVRIN_TEST_MAIN(tst_Records)
#include "tst_Records.moc"
