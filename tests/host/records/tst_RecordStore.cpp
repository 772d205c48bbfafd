#include "base/values/Variant.h"
#include "host/lists/HostRows.h"
#include "host/records/RecordTestSupport.h"

using namespace tavrin;
using namespace tavrin::test;

class tst_RecordStore : public RecordStoreCase
{
    Q_OBJECT

private:
    /// The employees 1 and 2.
    void addEmployees()
    {
        QList<EmployeeRow> employees(2);
        int number = 0;
        for (EmployeeRow& employee : employees) {
            employee.OfficerNo = ++number;
            employee.OfficerId = QStringLiteral("A%1").arg(number);
            employee.Name = QStringLiteral("Officer, %1").arg(number);
        }
        insertRows(*m_database, employees);
    }

    /// Changes of every kind: main row, new row, changed row, removed row, primary row.
    static void changeAll(const RecordPtr& record)
    {
        put(record, "Summary", QStringLiteral("changed"));
        record->collection(Witnesses)->AddNew();
        putLast(record, Witnesses, "WitnessName", QStringLiteral("Seen, All"));
        putLast(record, Offenses, "Completed", false);
        record->collection(Suspects)->SetPosition(1);
        record->collection(Suspects)->RemoveCurrent(false);
        record->collection(Offenses)->SetPrimaryValue(1);
    }

    /// A save fails with `expected`, changes neither the file's content nor the record, and works once
    /// `repair` has run.
    template <typename Repair>
    void failsAndCanBeSavedAfter(const RecordPtr& record, const QString& expected, Repair repair)
    {
        const QString before = stateOf(*record);
        const QString content = contentOfTables(*m_database);
        bool saved = false;
        const Subscription keep = m_store->Saved.subscribe([&saved](qint64) { saved = true; });
        const QString text = errorOf([&] { m_store->save(*record); });
        QVERIFY2(text.contains(expected), qPrintable(text));
        QVERIFY(!saved);
        QCOMPARE(stateOf(*record), before);
        repair();
        QCOMPARE(contentOfTables(*m_database), content);
        m_store->save(*record);
        QVERIFY(saved);
        QVERIFY(!record->isNew() && !record->isChanged());
        const RecordPtr again = m_store->load(record->key());
        QCOMPARE(get(again, "Summary"), get(record, "Summary"));
        for (const auto& rows : record->collections())
            QCOMPARE(again->collection(rows->name())->Count(), rows->Count());
    }

private Q_SLOTS:
    void aSavedIncidentLoadsAsItWas()
    {
        const RecordPtr saved = savedIncident();
        QCOMPARE(saved->key(), 1);
        QVERIFY(!saved->isNew() && !saved->isChanged());
        const RecordPtr loaded = m_store->load(1);
        for (const RecordCollectionPtr& rows : saved->collections()) // loading starts at the first row
            rows->SetPosition(rows->Count() > 0 ? 1 : 0);
        QCOMPARE(stateOf(*loaded), stateOf(*saved));
        QVERIFY(!loaded->isNew() && !loaded->isChanged());
        QCOMPARE(loaded->collection(Offenses)->PrimaryIndex(), 2);
        QCOMPARE(loaded->collection(Offenses)->Position(), qint16(1));
        QCOMPARE(loaded->mainRow()->cell(QStringLiteral("ReportedAt")).value(),
                 QVariant(QDateTime(QDate(2026, 1, 2), QTime(3, 4, 5))));
        QCOMPARE(loaded->collection(Suspects)->rows().at(1)->cell(QStringLiteral("DateOfBirth")).value(),
                 QVariant(QDate(1990, 5, 6)));
    }

    void theOfficersAndAssignmentsOfAnIncidentLoadAsTheyWereSaved()
    {
        addEmployees();
        const RecordPtr saved = newIncident(QStringLiteral("2026-1"));
        put(saved, "ReportingOfficerNo", 1);
        put(saved, "K9HandlerNo", 2);
        for (const char* assignedTo : {"user:jobrien", "team:8"}) {
            saved->collection(Assignments)->AddNew();
            putLast(saved, Assignments, "AssignedTo", QString::fromLatin1(assignedTo));
        }
        m_store->save(*saved);
        saved->collection(Assignments)->SetPosition(1); // loading starts at the first row
        const RecordPtr loaded = m_store->load(saved->key());
        QCOMPARE(stateOf(*loaded), stateOf(*saved));
        QCOMPARE(loaded->mainRow()->cell(QStringLiteral("ReportingOfficerNo")).value(), QVariant(1));
        QCOMPARE(loaded->mainRow()->cell(QStringLiteral("K9HandlerNo")).value(), QVariant(2));
        const auto rows = loaded->collection(Assignments)->rows();
        QCOMPARE(rows.back()->cell(QStringLiteral("AssignedTo")).value(), QVariant(QStringLiteral("team:8")));
        QCOMPARE(rows.back()->table().RowClass, QStringLiteral("Incident.IncdAssignment"));
    }

    void changesOfOfficersAndAssignmentsAreNoticedAndSaved()
    {
        addEmployees();
        const RecordPtr record = savedIncident();
        put(record, "K9HandlerNo", 2);
        QVERIFY(record->isChanged());
        put(record, "K9HandlerNo", Null());
        QVERIFY(!record->isChanged());
        put(record, "ReportingOfficerNo", 2);
        record->collection(Assignments)->AddNew();
        putLast(record, Assignments, "AssignedTo", QStringLiteral("team:8"));
        m_store->save(*record);
        putLast(record, Assignments, "AssignedTo", QStringLiteral("team:9"));
        QVERIFY(record->isChanged());
        put(record, "ReportingOfficerNo", Null());
        m_store->save(*record);
        const RecordPtr loaded = m_store->load(record->key());
        QVERIFY(IsNull(loaded->mainRow()->cell(QStringLiteral("ReportingOfficerNo")).value()));
        QCOMPARE(loaded->collection(Assignments)->rows().front()->cell(QStringLiteral("AssignedTo")).value(),
                 QVariant(QStringLiteral("team:9")));
        loaded->collection(Assignments)->RemoveCurrent(true);
        QCOMPARE(m_store->load(record->key())->collection(Assignments)->Count(), 0);
    }

    void aReportingOfficerWhoIsNoEmployeeIsRefused()
    {
        const RecordPtr record = newIncident(QStringLiteral("2026-1"));
        put(record, "ReportingOfficerNo", 1);
        failsAndCanBeSavedAfter(record, QStringLiteral("does not accept the data"),
                                [this] { addEmployees(); });
    }

    void theNumberGivenAtSaveReachesTheRows()
    {
        const RecordPtr record = newIncident(QStringLiteral("a"));
        const auto row = record->collection(Suspects)->AddNew();
        QVERIFY(IsNull(fieldOf(*row, QStringLiteral("IncidentNo"))->Value()));
        m_store->save(*record);
        QCOMPARE(fieldOf(*row, QStringLiteral("IncidentNo"))->Value(), QVariant(1));
        QVERIFY(!row->IsNew());
    }

    void everyKindOfChangeIsSaved()
    {
        const RecordPtr record = savedIncident();
        changeAll(record);
        m_store->save(*record);
        const RecordPtr loaded = m_store->load(record->key());
        QCOMPARE(get(loaded, "Summary"), QStringLiteral("changed"));
        QCOMPARE(loaded->collection(Witnesses)->Count(), 1);
        QCOMPARE(loaded->collection(Suspects)->Count(), 1);
        QCOMPARE(loaded->collection(Suspects)->rows().front()->keyValue(), QVariant(2));
        QCOMPARE(loaded->collection(Offenses)->rows().back()->cell(QStringLiteral("Completed")).value(),
                 QVariant(false));
        QCOMPARE(loaded->collection(Offenses)->PrimaryIndex(), 1);
        QCOMPARE(loaded->rowVersion(), record->rowVersion());
    }

    void anUnchangedRecordIsNotWritten()
    {
        const RecordPtr record = savedIncident();
        const int version = record->rowVersion();
        int saved = 0;
        const Subscription keep = m_store->Saved.subscribe([&saved](qint64) { ++saved; });
        m_store->save(*record);
        QCOMPARE(saved, 0);
        QCOMPARE(m_store->load(record->key())->rowVersion(), version);
    }

    void aNewRecordIsSavedEvenWhenEmpty()
    {
        const RecordPtr record = m_store->create();
        QList<qint64> saved;
        const Subscription keep = m_store->Saved.subscribe([&saved](qint64 key) { saved << key; });
        m_store->save(*record);
        QCOMPARE(saved, QList<qint64>{1});
        QCOMPARE(m_store->list().size(), 1);
    }

    void aChildAloneCountsTheVersionUp()
    {
        const RecordPtr record = savedIncident();
        const int version = record->rowVersion();
        putLast(record, Suspects, "SuspectName", QStringLiteral("Other, Name"));
        m_store->save(*record);
        QCOMPARE(record->rowVersion(), version + 1);
    }

    void aRecordThatIsNotThereCannotBeLoaded()
    {
        QVERIFY(errorOf([this] { m_store->load(77); }).contains(QStringLiteral("77")));
    }

    void aTextThatIsTooLongIsRefusedBeforeAnythingIsWritten()
    {
        const RecordPtr record = newIncident(QString(21, QLatin1Char('1')));
        const QString before = stateOf(*record);
        QVERIFY(errorOf([&] { m_store->save(*record); }).contains(QStringLiteral("CaseNo")));
        QCOMPARE(stateOf(*record), before);
        QVERIFY(m_store->list().isEmpty());
    }

    void aCaseNumberInUseIsRefused()
    {
        savedIncident(QStringLiteral("2026-1"));
        const RecordPtr record = newIncident(QStringLiteral("2026-1"));
        const QString text = errorOf([&] { m_store->save(*record); });
        QVERIFY2(text.contains(QStringLiteral("2026-1 is already in use")), qPrintable(text));
        QVERIFY(record->isNew());
        put(record, "CaseNo", QStringLiteral("2026-2"));
        m_store->save(*record);
    }

    void aLaterSaveOfAnOldVersionIsRefusedAndOverwritesNothing()
    {
        savedIncident();
        RecordStore otherStore(*m_other);
        const RecordPtr mine = m_store->load(1);
        const RecordPtr theirs = otherStore.load(1);
        put(theirs, "Summary", QStringLiteral("theirs"));
        otherStore.save(*theirs);

        changeAll(mine);
        put(mine, "Summary", QStringLiteral("mine"));
        const QString before = stateOf(*mine);
        const QString text = errorOf([&] { m_store->save(*mine); });
        QVERIFY2(text.contains(QStringLiteral("Somebody else has saved the case 2026-1")), qPrintable(text));
        QCOMPARE(stateOf(*mine), before);
        const RecordPtr now = m_store->load(1);
        QCOMPARE(get(now, "Summary"), QStringLiteral("theirs"));
        QCOMPARE(now->collection(Suspects)->Count(), 2);
        QCOMPARE(now->collection(Witnesses)->Count(), 0);
    }

    void aSaveOfADeletedRecordIsRefused()
    {
        const RecordPtr record = newIncident(QStringLiteral("2026-1"));
        m_store->save(*record);
        m_other->execute(QStringLiteral("DELETE FROM incident"));
        put(record, "Summary", QStringLiteral("late"));
        const QString text = errorOf([&] { m_store->save(*record); });
        QVERIFY2(text.contains(QStringLiteral("deleted by somebody else")), qPrintable(text));
        QVERIFY(m_store->list().isEmpty());
        QVERIFY(record->isChanged());
    }

    void aFullDiskStopsTheSaveAsAWhole_data()
    {
        QTest::addColumn<bool>("isNew");
        QTest::newRow("new record") << true;
        QTest::newRow("changed record") << false;
    }
    void aFullDiskStopsTheSaveAsAWhole()
    {
        QFETCH(bool, isNew);
        const RecordPtr record = isNew ? newIncident(QStringLiteral("2026-2")) : savedIncident();
        if (!isNew)
            changeAll(record);
        record->collection(Witnesses)->AddNew();
        put(record, "Narrative", QString(90000, QLatin1Char('n')));
        const int pages = firstOf(*m_database, QStringLiteral("PRAGMA page_count")).toInt();
        firstOf(*m_database, QStringLiteral("PRAGMA max_page_count = %1").arg(pages));
        failsAndCanBeSavedAfter(record, QStringLiteral("The disk is full"), [this] {
            firstOf(*m_database, QStringLiteral("PRAGMA max_page_count = 1000000"));
        });
    }

    void aLockOfAnotherProgramStopsTheSaveAsAWhole()
    {
        const RecordPtr record = newIncident(QStringLiteral("2026-2"));
        record->collection(Suspects)->AddNew();
        std::optional<Transaction> lock(std::in_place, *m_other);
        failsAndCanBeSavedAfter(record, QStringLiteral("locked by another program"),
                                [&lock] { lock.reset(); });
    }

    void aReaderThatHoldsTheFileStopsTheCommitAsAWhole()
    {
        const RecordPtr record = savedIncident();
        changeAll(record);
        std::optional<Transaction> reader(std::in_place, *m_other, Transaction::Kind::Read);
        firstOf(*m_other, QStringLiteral("SELECT COUNT(*) FROM incident"));
        failsAndCanBeSavedAfter(record, QStringLiteral("locked by another program"),
                                [&reader] { reader.reset(); });
    }

    void aFailureAtAnyStatementStopsTheSaveAsAWhole_data()
    {
        QTest::addColumn<bool>("isNew");
        QTest::addColumn<QString>("occasion");
        QTest::newRow("key") << true << QStringLiteral("BEFORE UPDATE ON key_sequence");
        QTest::newRow("insert of the incident") << true << QStringLiteral("BEFORE INSERT ON incident");
        QTest::newRow("after the insert of the incident")
            << true << QStringLiteral("AFTER INSERT ON incident");
        QTest::newRow("insert of a row in a new one")
            << true << QStringLiteral("BEFORE INSERT ON IncdWitness");
        QTest::newRow("version") << false << QStringLiteral("BEFORE UPDATE OF RowVersion ON incident");
        QTest::newRow("update of the incident")
            << false << QStringLiteral("BEFORE UPDATE OF Summary ON incident");
        QTest::newRow("update of a row") << false << QStringLiteral("BEFORE UPDATE ON IncdOffense");
        QTest::newRow("delete of a row") << false << QStringLiteral("AFTER DELETE ON IncdSuspect");
        QTest::newRow("insert of a row") << false << QStringLiteral("AFTER INSERT ON IncdWitness");
    }
    void aFailureAtAnyStatementStopsTheSaveAsAWhole()
    {
        QFETCH(bool, isNew);
        QFETCH(QString, occasion);
        const RecordPtr record = isNew ? newIncident(QStringLiteral("2026-2")) : savedIncident();
        if (isNew)
            record->collection(Witnesses)->AddNew();
        else
            changeAll(record);
        m_other->execute(QStringLiteral("CREATE TRIGGER fault %1 BEGIN SELECT RAISE(ABORT, 'a fault'); END")
                             .arg(occasion));
        failsAndCanBeSavedAfter(record, QStringLiteral("a fault"),
                                [this] { m_other->execute(QStringLiteral("DROP TRIGGER fault")); });
    }

    void aRowThatRefersToNothingIsRefused()
    {
        const RecordPtr record = newIncident(QStringLiteral("2026-2"));
        record->collection(Offenses)->AddNew();
        putLast(record, Offenses, "OffenseNo", 999);
        failsAndCanBeSavedAfter(record, QStringLiteral("does not accept the data"), [&] {
            m_other->execute(
                QStringLiteral("INSERT INTO offense_code VALUES (999, 'PC 999', 'x', '90Z', 1)"));
        });
    }

    void aLostConnectionStopsTheSave()
    {
        const RecordPtr record = newIncident(QStringLiteral("2026-2"));
        const QString before = stateOf(*record);
        m_database->connection().close();
        QVERIFY(errorOf([&] { m_store->save(*record); }).contains(QStringLiteral("connection was lost")));
        QCOMPARE(stateOf(*record), before);
    }

    void aRowRemovedImmediatelyIsGoneBeforeTheSave()
    {
        const RecordPtr record = savedIncident();
        put(record, "Summary", QStringLiteral("not saved yet"));
        record->collection(Offenses)->SetPosition(2);
        record->collection(Offenses)->RemoveCurrent(true);
        const RecordPtr now = m_store->load(record->key());
        QCOMPARE(now->collection(Offenses)->Count(), 1);
        QCOMPARE(now->collection(Offenses)->PrimaryIndex(), 0);
        QCOMPARE(get(now, "PrimaryOffenseSeqNo"), QString());
        QVERIFY(get(now, "Summary") != QStringLiteral("not saved yet"));
        m_store->save(*record);
        QCOMPARE(get(m_store->load(record->key()), "Summary"), QStringLiteral("not saved yet"));
    }

    void aRowWhoseImmediateRemovalFailsStays()
    {
        const RecordPtr record = savedIncident();
        const RecordPtr copy = m_store->load(record->key());
        put(copy, "Summary", QStringLiteral("later"));
        m_store->save(*copy);
        const QString before = stateOf(*record);
        QVERIFY(errorOf([&] {
                    record->collection(Suspects)->RemoveCurrent(true);
                }).contains(QStringLiteral("Somebody else")));
        QCOMPARE(stateOf(*record), before);
        QCOMPARE(m_store->load(record->key())->collection(Suspects)->Count(), 2);
    }

    void aRemovedRowCanBeAddedAgainBeforeTheSave()
    {
        const RecordPtr record = savedIncident();
        const auto rows = record->collection(Suspects);
        const auto row = rows->Item(1);
        rows->SetPosition(1);
        rows->RemoveCurrent(false);
        rows->Add(row);
        m_store->save(*record);
        QCOMPARE(m_store->load(record->key())->collection(Suspects)->Count(), 2);
    }

    void aRecordOutlivesItsStore()
    {
        const RecordPtr record = savedIncident();
        m_store.reset();
        QVERIFY(!errorOf([&] { record->collection(Suspects)->RemoveCurrent(true); }).isEmpty());
        QCOMPARE(record->collection(Suspects)->Count(), 2);
    }
};

TAVRIN_TEST_MAIN(tst_RecordStore)
#include "tst_RecordStore.moc"
