#include "base/values/Variant.h"
#include "host/records/RecordTestSupport.h"

#include <QVariantList>

using namespace tavrin;
using namespace tavrin::test;

namespace {

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

/// The rows of a record: their keys, the current one and the primary one, and the events of a removal.
class tst_RecordCollection : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
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

TAVRIN_TEST_MAIN(tst_RecordCollection)
#include "tst_RecordCollection.moc"
