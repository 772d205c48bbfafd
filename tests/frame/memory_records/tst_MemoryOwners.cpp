#include "frame/memory_records/MemoryCollection.h"
#include "frame/memory_records/MemoryRecord.h"
#include "frame/memory_records/Weapons.h"
#include "support/RaisedError.h"
#include "support/TestCase.h"

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

tvBusinessObjectPtr ownerOf(const tvBusinessObjectPtr& part)
{
    return MemoryRecord::OwnerOf(part);
}

} // namespace

/// Which record a part belongs to, while it does and when it does no longer.
class tst_MemoryOwners : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void partsKnowTheirOwnerAndDoNotKeepItAlive()
    {
        auto record = std::make_shared<MemoryRecord>();
        const auto part = std::make_shared<MemoryRecord>();
        const auto row = std::make_shared<MemoryRow>(QList<MemoryColumn>());
        const auto rows = weaponRows({11});
        record->SetItem(u"SuspectBO"_s, part);
        record->SetItem(u"Incident"_s, row);
        record->SetItem(u"Weapons"_s, rows);
        const QList<tvBusinessObjectPtr> parts{part, row, rows->Item(1), rows->AddNew()};
        for (const tvBusinessObjectPtr& each : parts)
            QCOMPARE(ownerOf(each), tvBusinessObjectPtr(record));
        QVERIFY(!ownerOf(record));
        QVERIFY(!ownerOf(nullptr));
        record.reset();
        for (const tvBusinessObjectPtr& each : parts)
            QVERIFY(!ownerOf(each));
    }

    void whatIsTakenAwayHasNoOwner_data()
    {
        QTest::addColumn<bool>("replaced");
        QTest::newRow("taken away") << false;
        QTest::newRow("replaced") << true;
    }
    void whatIsTakenAwayHasNoOwner()
    {
        QFETCH(bool, replaced);
        const auto record = std::make_shared<MemoryRecord>();
        const auto part = std::make_shared<MemoryRecord>();
        const auto row = std::make_shared<MemoryRow>(QList<MemoryColumn>());
        const auto rows = weaponRows({11});
        record->SetItem(u"SuspectBO"_s, part);
        record->SetItem(u"Incident"_s, row);
        record->SetItem(u"Weapons"_s, rows);
        for (const QString& name : {u"suspectbo"_s, u"INCIDENT"_s, u"Weapons"_s})
            record->SetItem(name, replaced ? std::make_shared<MemoryRecord>() : nullptr);
        for (const tvBusinessObjectPtr& each :
             QList<tvBusinessObjectPtr>{part, row, rows->Item(1), rows->AddNew()})
            QVERIFY(!ownerOf(each));
    }

    void aPartThatStandsUnderAnotherNameTooKeepsItsOwner()
    {
        const auto record = std::make_shared<MemoryRecord>();
        const auto part = std::make_shared<MemoryRecord>();
        record->SetItem(u"First"_s, part);
        record->SetItem(u"Second"_s, part);
        record->SetItem(u"Second"_s, part);
        record->SetItem(u"First"_s, nullptr);
        QCOMPARE(ownerOf(part), tvBusinessObjectPtr(record));
        record->SetItem(u"Second"_s, nullptr);
        QVERIFY(!ownerOf(part));
    }

    void aPartThatAnotherRecordHasTakenStaysThatOnes()
    {
        const auto before = std::make_shared<MemoryRecord>();
        const auto now = std::make_shared<MemoryRecord>();
        const auto part = std::make_shared<MemoryRecord>();
        const auto rows = weaponRows({11});
        for (const auto& record : {before, now}) {
            record->SetItem(u"Part"_s, part);
            record->SetItem(u"Weapons"_s, rows);
        }
        before->SetItem(u"Part"_s, nullptr);
        before->SetItem(u"Weapons"_s, nullptr);
        QCOMPARE(ownerOf(part), tvBusinessObjectPtr(now));
        QCOMPARE(ownerOf(rows->Item(1)), tvBusinessObjectPtr(now));
    }

    void aRowThatIsRemovedAtOnceHasNoOwner()
    {
        const auto record = std::make_shared<MemoryRecord>();
        const auto rows = weaponRows({11, 12});
        record->SetItem(u"Weapons"_s, rows);
        const tvTableRowPtr row = rows->Item(1);
        tvBusinessObjectPtr ownerInEvent = record;
        const Subscription look = rows->ItemRemovedEx.subscribe(
            [&](qint32, const tvTableRowPtr& removed) { ownerInEvent = ownerOf(removed); });
        removeRowAt(*rows, 1, true);
        QVERIFY(!ownerOf(row));
        QVERIFY(!ownerInEvent);
        rows->Add(row);
        QCOMPARE(ownerOf(row), tvBusinessObjectPtr(record));
    }

    void aRowThatGoesWithTheNextSaveHasItsOwnerUntilThen()
    {
        const auto record = std::make_shared<MemoryRecord>();
        const auto rows = weaponRows({11, 12});
        record->SetItem(u"Weapons"_s, rows);
        const tvTableRowPtr row = rows->Item(1);
        removeRowAt(*rows, 1);
        QCOMPARE(ownerOf(row), tvBusinessObjectPtr(record));
        record->MarkSaved();
        QVERIFY(!ownerOf(row));
        QCOMPARE(ownerOf(rows->Item(1)), tvBusinessObjectPtr(record));
    }

    void aRemovedRowGoesWithItsCollection()
    {
        const auto record = std::make_shared<MemoryRecord>();
        const auto rows = weaponRows({11, 12});
        record->SetItem(u"Weapons"_s, rows);
        const tvTableRowPtr row = rows->Item(1);
        removeRowAt(*rows, 1);
        record->SetItem(u"Weapons"_s, nullptr);
        QVERIFY(!ownerOf(row));
    }

    void aRemovedRowThatAnotherCollectionHasTakenStaysThatOnes()
    {
        const auto before = std::make_shared<MemoryRecord>();
        const auto now = std::make_shared<MemoryRecord>();
        const auto rows = weaponRows({11, 12});
        const auto others = weaponRows();
        before->SetItem(u"Weapons"_s, rows);
        now->SetItem(u"Weapons"_s, others);
        const tvTableRowPtr row = rows->Item(1);
        removeRowAt(*rows, 1);
        others->Add(row);
        before->MarkSaved();
        QCOMPARE(ownerOf(row), tvBusinessObjectPtr(now));
        before->SetItem(u"Weapons"_s, nullptr);
        QCOMPARE(ownerOf(row), tvBusinessObjectPtr(now));
    }
};

TAVRIN_TEST_MAIN(tst_MemoryOwners)
#include "tst_MemoryOwners.moc"
