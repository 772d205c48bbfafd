#include "base/values/Variant.h"
#include "frame/memory_records/MemoryCollection.h"
#include "frame/memory_records/MemoryField.h"
#include "frame/memory_records/MemoryRecord.h"
#include "frame/memory_records/Weapons.h"
#include "support/RaisedError.h"
#include "support/TestCase.h"

#include <QVariantList>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

tvFieldPtr fieldInMemory(const QString& name, const QVariant& value, bool isLink)
{
    if (isLink)
        return std::make_shared<MemoryLinkField>(name, value);
    return std::make_shared<MemoryField>(name, value);
}

QVariantList column(tvTableCollection& rows, const QString& name)
{
    QVariantList values;
    for (const tvTableRowPtr& row : rows)
        values << fieldOf(*row, name)->Value();
    return values;
}

QStringList told(const QList<MemoryColumn>& columns)
{
    QStringList list;
    for (const MemoryColumn& each : columns)
        list << u"%1 key %2 length %3 link %4"_s.arg(each.Name)
                    .arg(each.IsKey)
                    .arg(each.MaxLength)
                    .arg(each.IsLink);
    return list;
}

/// What a collection tells, in order.
struct Told
{
    explicit Told(tvTableCollection& rows)
        : removed(
              rows.ItemRemoved.subscribe([this](const QVariant& key) { log << u"removed "_s + ToText(key); }))
        , removedEx(rows.ItemRemovedEx.subscribe([this](qint32 index, const tvTableRowPtr& row) {
            log << u"row %1 of key %2"_s.arg(index).arg(ToText(fieldOf(*row, u"SeqNo"_s)->Value()));
        }))
        , primary(rows.PrimaryStatusChanged.subscribe([this](const QVariant& key) {
            log << (IsNull(key) ? u"no primary"_s : u"primary "_s + ToText(key));
        }))
    {
    }

    QStringList log;
    Subscription removed;
    Subscription removedEx;
    Subscription primary;
};

} // namespace

class tst_MemoryRecords : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // Fields

    void anEmptyFieldIsNull_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::newRow("Empty") << QVariant();
        QTest::newRow("Null") << Null();
    }
    void anEmptyFieldIsNull()
    {
        QFETCH(QVariant, value);
        MemoryField field(u"Notes"_s, u"text"_s);
        QCOMPARE(field.Value(), QVariant(u"text"_s));
        field.SetValue(value);
        QVERIFY(IsNull(field.Value()));
    }

    void aTextIsKeptAsItCameAlsoBeyondTheLengthOfItsField()
    {
        MemoryField field(u"Notes"_s, {}, false, 3);
        QCOMPARE(field.MaxLength(), 3);
        field.SetValue(u"abcd"_s);
        QCOMPARE(field.Value(), QVariant(u"abcd"_s));
        field.SetValue(u""_s);
        QVERIFY(!IsNull(field.Value()));
        QCOMPARE(field.Value().typeId(), int(QMetaType::QString));
    }

    void aLinkedFieldTakesANumberThatComesWithTheSave()
    {
        const auto number = std::make_shared<MemoryField>(u"SeqNo"_s);
        const auto linked = std::make_shared<MemoryField>(u"VictimSeqNo"_s, 9);
        linked->SetValue(MemoryField::ReferenceTo(number));
        QVERIFY(IsNull(linked->Value()));
        linked->MarkSaved(); // nothing has come yet
        number->SetValue(5);
        QCOMPARE(linked->Value(), QVariant(5));
        linked->MarkSaved();
        number->SetValue(6);
        QCOMPARE(linked->Value(), QVariant(5));
        linked->SetValue(MemoryField::ReferenceTo(number));
        linked->SetValue(7); // a value ends the link
        number->SetValue(8);
        QCOMPARE(linked->Value(), QVariant(7));
    }

    void aLinkThatLeadsBackIsRefused_data()
    {
        QTest::addColumn<bool>("oneIsLinkColumn");
        QTest::addColumn<bool>("otherIsLinkColumn");
        QTest::newRow("fields") << false << false;
        QTest::newRow("a field by a link column") << false << true;
        QTest::newRow("a link column by a field") << true << false;
        QTest::newRow("link columns") << true << true;
    }
    void aLinkThatLeadsBackIsRefused()
    {
        QFETCH(bool, oneIsLinkColumn);
        QFETCH(bool, otherIsLinkColumn);
        const tvFieldPtr one = fieldInMemory(u"One"_s, 1, oneIsLinkColumn);
        const tvFieldPtr other = fieldInMemory(u"Other"_s, 2, otherIsLinkColumn);
        other->SetValue(MemoryField::ReferenceTo(one));
        for (const auto& target : {one, other}) {
            QCOMPARE(raisedBy([&] { one->SetValue(MemoryField::ReferenceTo(target)); }).Description,
                     u"The field One cannot refer to itself"_s);
        }
        QCOMPARE(one->Value(), QVariant(1));
        QCOMPARE(other->Value(), QVariant(1));
        QVERIFY(raisedBy([] { MemoryField::ReferenceTo(nullptr); }).Number != 0);
    }

    void anObjectThatIsNoFieldIsRefused()
    {
        MemoryField field(u"Notes"_s);
        const auto record = std::make_shared<MemoryRecord>();
        QCOMPARE(raisedBy([&] { field.SetValue(QVariant::fromValue<HostObjectPtr>(record)); }).Number,
                 Error::TypeMismatchNumber);
    }

    // Rows

    void columnsAreFoundByNameWithoutCaseAndByNumber()
    {
        MemoryRow row(QList<MemoryColumn>{
            {u"SeqNo"_s, true}, {u"Notes"_s, false, 40}, {u"IncidentNo"_s, true, 0, true}});
        QCOMPARE(row.FieldCount(), 3);
        QCOMPARE(row.Item(u"nOTES"_s), row.Item(2));
        QVERIFY(!row.Item(u"Nothing"_s));
        QVERIFY(!row.Item(0));
        QVERIFY(!row.Item(4));
        QVERIFY(row.Item(1)->IsKey());
        QCOMPARE(row.Item(2)->MaxLength(), 40);
        QVERIFY(!row.Item(2)->IsKey());
        const auto link = std::dynamic_pointer_cast<tvLinkField>(row.Item(3));
        QVERIFY(link && link->IsKey());
        link->SetValue(4);
        QCOMPARE(link->Value(), QVariant(4));
        QVERIFY(row.IsNew());
        row.MarkSaved();
        QVERIFY(!row.IsNew());
    }

    void aRowListsItsColumns()
    {
        const QList<MemoryColumn> columns{
            {u"SeqNo"_s, true}, {u"Notes"_s, false, 40}, {u"IncidentNo"_s, true, 12, true}};
        QCOMPARE(told(MemoryRow(columns).Columns()), told(columns));
        const MemoryRow ofFields(QList<tvFieldPtr>{std::make_shared<MemoryField>(u"Name"_s, u"x"_s, false, 7),
                                                   std::make_shared<MemoryLinkField>(u"No"_s)});
        QCOMPARE(told(ofFields.Columns()), told({{u"Name"_s, false, 7}, {u"No"_s, false, 0, true}}));
    }

    // Collections

    void aCollectionListsTheColumnsOfItsNewRows()
    {
        const QList<MemoryColumn> columns{{u"No"_s, true, 0, true}, {u"Notes"_s, false, 40}};
        QCOMPARE(told(MemoryCollection(columns).Columns()), told(columns));
        QCOMPARE(told(weaponRows()->Columns()), told({{u"SeqNo"_s, true}, {u"WeaponNo"_s}}));
    }

    void theKeyColumnMayBeAnyColumn()
    {
        const QList<MemoryColumn> columns{{u"IncidentNo"_s, true}, {u"SeqNo"_s}};
        MemoryCollection rows(columns, u"sEQnO"_s);
        QCOMPARE(rows.KeyColumn(), u"SeqNo"_s);
        rows.AddNew();
        const tvTableRowPtr second = rows.AddNew();
        QCOMPARE(column(rows, u"SeqNo"_s), QVariantList({1, 2}));
        QVERIFY(!fieldOf(*second, u"SeqNo"_s)->IsKey());
        QVERIFY(raisedBy([&] { MemoryCollection(columns, u"Nothing"_s); }).Number != 0);
    }

    void anEmptyCollectionHasNoPosition()
    {
        MemoryCollection rows(QStringList{u"SeqNo"_s});
        QCOMPARE(rows.KeyColumn(), u"SeqNo"_s);
        QCOMPARE(rows.Count(), 0);
        QCOMPARE(rows.Position(), qint16(0));
        QCOMPARE(rows.PrimaryIndex(), 0);
        QVERIFY(!rows.CurrentIsPrimary());
        for (const int index : {0, 1})
            QVERIFY(raisedBy([&] { rows.Item(index); }).Number != 0);
        QVERIFY(raisedBy([&] { rows.RemoveCurrent(false); }).Number != 0);
        QVERIFY(raisedBy([&] { rows.SetPosition(1); }).Number != 0);
        QVERIFY(raisedBy([] { MemoryCollection(QStringList()).NewItem(); }).Number != 0);
    }

    void aNewRowIsAppendedMadeCurrentAndNumbered()
    {
        const auto rows = weaponRows({11, 12});
        QCOMPARE(rows->Position(), qint16(2));
        const tvTableRowPtr item = rows->NewItem();
        QCOMPARE(rows->Count(), 2);
        QVERIFY(item->IsNew());
        rows->SetPosition(1);
        rows->Add(item);
        QCOMPARE(rows->Position(), qint16(1));
        QCOMPARE(rows->Item(3), item);
        const tvTableRowPtr added = rows->AddNew();
        QCOMPARE(rows->Position(), qint16(4));
        QCOMPARE(rows->Item(4), added);
        QCOMPARE(column(*rows, u"SeqNo"_s), QVariantList({1, 2, 3, 4}));
        fieldOf(*added, u"SeqNo"_s)->SetValue(70);
        QCOMPARE(fieldOf(*rows->AddNew(), u"SeqNo"_s)->Value(), QVariant(71));
        rows->SetNumbersRows(false);
        QVERIFY(IsNull(fieldOf(*rows->AddNew(), u"SeqNo"_s)->Value()));
    }

    void aRowIsNotAddedTwice()
    {
        const auto rows = weaponRows({11});
        QVERIFY(raisedBy([&] { rows->Add(rows->Item(1)); }).Number != 0);
        QVERIFY(raisedBy([&] { rows->Add(nullptr); }).Number != 0);
        QCOMPARE(rows->Count(), 1);
    }

    void noRowIsMadeCurrentBeyondWhatAPositionCounts()
    {
        MemoryCollection rows(QStringList{u"SeqNo"_s});
        rows.SetNumbersRows(false);
        for (int i = 0; i < 32767; ++i)
            rows.AddNew();
        QCOMPARE(rows.Position(), qint16(32767));
        QVERIFY(raisedBy([&] { rows.AddNew(); }).Number != 0);
        QCOMPARE(rows.Count(), 32767);
        rows.Add(rows.NewItem());
        QCOMPARE(rows.Count(), 32768);
        QCOMPARE(rows.Position(), qint16(32767));
    }

    void noKeyIsGivenBehindTheLastNumber_data()
    {
        QTest::addColumn<QVariant>("highest");
        QTest::newRow("the last") << QVariant(2147483647);
        QTest::newRow("behind it") << QVariant(Q_INT64_C(3000000000));
        QTest::newRow("behind it as a text") << QVariant(u"3000000000"_s);
    }
    void noKeyIsGivenBehindTheLastNumber()
    {
        QFETCH(QVariant, highest);
        const auto rows = weaponRows({11, 12});
        const tvTableRowPtr removed = rows->Item(1);
        removeRowAt(*rows, 1);
        fieldOf(*rows->Item(1), u"SeqNo"_s)->SetValue(highest);
        const QString text = u"The rows have used up the numbers of SeqNo"_s;
        QCOMPARE(raisedBy([&] { rows->AddNew(); }).Description, text);
        QCOMPARE(raisedBy([&] { rows->NewItem(); }).Description, text);
        fieldOf(*removed, u"SeqNo"_s)->SetValue(Null());
        QCOMPARE(raisedBy([&] { rows->Add(removed); }).Description, text);
        QCOMPARE(rows->Count(), 1);
        rows->MarkSaved();
        QVERIFY(removed->IsNew()); // it was still among those that a save deletes
    }

    void removingTellsTheKeyThenTheRowThenThatThereIsNoPrimary()
    {
        const auto rows = weaponRows({11, 12, 13});
        rows->SetPrimaryValue(2);
        Told told(*rows);
        removeRowAt(*rows, 2);
        QCOMPARE(told.log, QStringList({u"removed 2"_s, u"row 2 of key 2"_s, u"no primary"_s}));
        QCOMPARE(rows->Position(), qint16(2));
        told.log.clear();
        removeRowAt(*rows, 2);
        QCOMPARE(told.log, QStringList({u"removed 3"_s, u"row 2 of key 3"_s}));
        QCOMPARE(rows->Position(), qint16(1));
    }

    void whoeverChoosesAnotherPrimaryInAHandlerIsNotOverridden()
    {
        const auto rows = weaponRows({11, 12});
        rows->SetPrimaryValue(1);
        const Subscription choose =
            rows->ItemRemoved.subscribe([&](const QVariant&) { rows->SetPrimaryValue(2); });
        Told told(*rows);
        removeRowAt(*rows, 1);
        QCOMPARE(told.log, QStringList({u"primary 2"_s, u"removed 1"_s, u"row 1 of key 1"_s}));
        QCOMPARE(rows->PrimaryIndex(), 1);
    }

    void theFailureOfAHandlerReachesWhoeverRemoves()
    {
        const auto rows = weaponRows({11, 12});
        const Subscription fail =
            rows->ItemRemoved.subscribe([](const QVariant&) { throw Error(u"no"_s, 77); });
        QCOMPARE(raisedBy([&] { removeRowAt(*rows, 1); }).Number, 77);
        QCOMPARE(rows->Count(), 1);
    }

    void aHandlerMayLetTheCollectionGo()
    {
        auto rows = weaponRows({11, 12});
        MemoryCollection& collection = *rows;
        const Subscription drop = rows->ItemRemoved.subscribe([&](const QVariant&) { rows.reset(); });
        collection.SetPosition(1);
        collection.RemoveCurrent(false);
        QVERIFY(!rows);
    }

    void aRemovedRowPutBackIsTheSavedOneUntilASaveHasDeletedIt_data()
    {
        QTest::addColumn<bool>("immediately");
        QTest::addColumn<bool>("saved");
        QTest::addColumn<bool>("isNew");
        QTest::newRow("before the save") << false << false << false;
        QTest::newRow("after the save") << false << true << true;
        QTest::newRow("removed at once") << true << false << true;
    }
    void aRemovedRowPutBackIsTheSavedOneUntilASaveHasDeletedIt()
    {
        QFETCH(bool, immediately);
        QFETCH(bool, saved);
        const auto rows = weaponRows({11, 12});
        const tvTableRowPtr row = rows->Item(1);
        removeRowAt(*rows, 1, immediately);
        QCOMPARE(fieldOf(*row, u"WeaponNo"_s)->Value(), QVariant(11));
        if (saved)
            rows->MarkSaved();
        rows->Add(row);
        QTEST(row->IsNew(), "isNew");
        QCOMPARE(column(*rows, u"SeqNo"_s), QVariantList({2, 1}));
    }

    void aRowPutBackGetsAnotherKeyWhereItsOwnIsTaken()
    {
        const auto rows = weaponRows({11, 12});
        const tvTableRowPtr row = rows->Item(1);
        removeRowAt(*rows, 1);
        fieldOf(*rows->AddNew(), u"SeqNo"_s)->SetValue(1);
        rows->Add(row);
        QCOMPARE(column(*rows, u"SeqNo"_s), QVariantList({2, 1, 4}));
    }

    void thePrimaryRowGoesByItsKey()
    {
        const auto rows = weaponRows({11, 12, 13});
        Told told(*rows);
        rows->SetPrimaryValue(3);
        QCOMPARE(rows->PrimaryIndex(), 3);
        QVERIFY(rows->CurrentIsPrimary());
        removeRowAt(*rows, 1);
        QCOMPARE(rows->PrimaryIndex(), 2);
        QVERIFY(!rows->CurrentIsPrimary());
        QVERIFY(raisedBy([&] { rows->SetPrimaryValue(9); }).Number != 0);
        QCOMPARE(rows->PrimaryIndex(), 2);
        rows->SetPrimaryValue(QVariant());
        QCOMPARE(rows->PrimaryIndex(), 0);
        QCOMPARE(told.log,
                 QStringList({u"primary 3"_s, u"removed 1"_s, u"row 1 of key 1"_s, u"no primary"_s}));
    }

    void theItemClassIsKept()
    {
        MemoryCollection rows(QStringList{u"SeqNo"_s});
        rows.SetItemClass(u"TVEvent.tvAttachmentIndex"_s);
        QCOMPARE(rows.ItemClass(), u"TVEvent.tvAttachmentIndex"_s);
    }

    // Records

    void childrenAreFoundByNameWithoutCase()
    {
        MemoryRecord record(u"tvIncidentBO"_s);
        const auto rows = weaponRows();
        record.SetItem(u"Weapons"_s, rows);
        QCOMPARE(record.Item(u"wEAPONS"_s), HostObjectPtr(rows));
        QVERIFY(!record.Item(u"Suspects"_s));
        record.SetItem(u"WEAPONS"_s, nullptr);
        QVERIFY(!record.Item(u"Weapons"_s));
        QCOMPARE(record.ClassName(), u"tvIncidentBO"_s);
    }

    void childrenAreListedByTheNamesThatTheyWereGiven()
    {
        MemoryRecord record;
        QCOMPARE(record.ChildNames(), QStringList());
        for (const QString& name : {u"suspects"_s, u"Weapons"_s, u"Incident"_s})
            record.SetItem(name, weaponRows());
        QCOMPARE(record.ChildNames(), QStringList({u"Incident"_s, u"suspects"_s, u"Weapons"_s}));
        record.SetItem(u"Suspects"_s, weaponRows());
        record.SetItem(u"WEAPONS"_s, nullptr);
        QCOMPARE(record.ChildNames(), QStringList({u"Incident"_s, u"Suspects"_s}));
    }

    void aSaveReachesEverythingInTheRecord()
    {
        const auto record = std::make_shared<MemoryRecord>();
        const auto part = std::make_shared<MemoryRecord>();
        const auto row = std::make_shared<MemoryRow>(QList<MemoryColumn>());
        const auto rows = weaponRows();
        rows->AddNew();
        record->SetItem(u"SuspectBO"_s, part);
        record->SetItem(u"Incident"_s, row);
        part->SetItem(u"Weapons"_s, rows);
        record->MarkSaved();
        QVERIFY(!row->IsNew());
        QVERIFY(!rows->Item(1)->IsNew());
    }
};

TAVRIN_TEST_MAIN(tst_MemoryRecords)
#include "tst_MemoryRecords.moc"
