#include "base/values/Variant.h"
#include "host/records/RecordTestSupport.h"

using namespace tavrin;
using namespace tavrin::test;

class tst_RecordKeys : public RecordStoreCase
{
    Q_OBJECT

private:
    /// A saved incident with the witnesses W1, W2 and W3.
    RecordPtr incidentWithWitnesses()
    {
        const RecordPtr record = newIncident(QStringLiteral("2026-1"));
        for (int i = 1; i <= 3; ++i) {
            record->collection(Witnesses)->AddNew();
            putLast(record, Witnesses, "WitnessName", QStringLiteral("W%1").arg(i));
        }
        m_store->save(*record);
        return record;
    }

    static RecordRow& witness(const RecordPtr& record, int index)
    {
        return *record->collection(Witnesses)->rows().at(static_cast<std::size_t>(index));
    }

    static void putKey(const RecordPtr& record, int index, int key)
    {
        witness(record, index).cell(SeqNo).setValue(key);
    }

    /// The witnesses that the database holds for an incident.
    QString witnessesIn(qint64 incidentNo)
    {
        Statement find(*m_database, QStringLiteral("SELECT SeqNo, WitnessName FROM IncdWitness "
                                                   "WHERE IncidentNo = ? ORDER BY SeqNo"));
        find.bind(incidentNo).run();
        QStringList rows;
        while (find.next())
            rows << find.text(0) + QLatin1Char(' ') + find.text(1);
        return rows.join(QStringLiteral(", "));
    }

private Q_SLOTS:
    void aSavedRowMayChangeItsKey()
    {
        const RecordPtr record = m_store->load(incidentWithWitnesses()->key());
        putKey(record, 0, 9);
        witness(record, 0).cell(QStringLiteral("WitnessName")).setValue(QStringLiteral("B"));
        m_store->save(*record);
        QVERIFY(!record->isChanged());
        QCOMPARE(witnessesIn(record->key()), QStringLiteral("2 W2, 3 W3, 9 B"));
        witness(record, 0).cell(QStringLiteral("WitnessName")).setValue(QStringLiteral("C"));
        m_store->save(*record);
        QCOMPARE(witnessesIn(record->key()), QStringLiteral("2 W2, 3 W3, 9 C"));
    }

    void savedRowsMayPassTheirKeysOn_data()
    {
        QTest::addColumn<QList<int>>("keys");
        QTest::addColumn<QString>("expected");
        QTest::newRow("up") << QList<int>{2, 3, 4} << QStringLiteral("2 W1, 3 W2, 4 W3");
        QTest::newRow("down") << QList<int>{0, 1, 2} << QStringLiteral("0 W1, 1 W2, 2 W3");
        QTest::newRow("round") << QList<int>{2, 3, 1} << QStringLiteral("1 W3, 2 W1, 3 W2");
    }
    void savedRowsMayPassTheirKeysOn()
    {
        QFETCH(QList<int>, keys);
        const RecordPtr record = incidentWithWitnesses();
        for (int i = 0; i < keys.size(); ++i)
            putKey(record, i, keys.at(i));
        m_store->save(*record);
        QTEST(witnessesIn(record->key()), "expected");
    }

    void aNewRowMayTakeTheKeyThatASavedOneGaveUp()
    {
        const RecordPtr record = incidentWithWitnesses();
        const auto rows = record->collection(Witnesses);
        putKey(record, 0, 9);
        rows->SetPosition(2);
        rows->RemoveCurrent(false);
        for (const int key : {1, 2}) {
            rows->AddNew();
            putLast(record, Witnesses, "SeqNo", key);
        }
        m_store->save(*record);
        QCOMPARE(witnessesIn(record->key()), QStringLiteral("1 , 2 , 3 W3, 9 W1"));
    }

    void aRowWhoseKeyWasChangedIsRemovedAsItWasSaved_data()
    {
        QTest::addColumn<bool>("immediately");
        QTest::newRow("with the save") << false;
        QTest::newRow("immediately") << true;
    }
    void aRowWhoseKeyWasChangedIsRemovedAsItWasSaved()
    {
        QFETCH(bool, immediately);
        const RecordPtr record = incidentWithWitnesses();
        putKey(record, 0, 9);
        record->collection(Witnesses)->SetPosition(1);
        record->collection(Witnesses)->RemoveCurrent(immediately);
        m_store->save(*record);
        QCOMPARE(witnessesIn(record->key()), QStringLiteral("2 W2, 3 W3"));
    }

    void thePrimaryRowsImmediateRemovalForgetsTheKeyItWasSavedUnder()
    {
        const RecordPtr record = savedIncident();
        const auto rows = record->collection(Offenses);
        putLast(record, Offenses, "SeqNo", 9);
        rows->SetPrimaryValue(9);
        rows->SetPosition(2);
        rows->RemoveCurrent(true);
        QCOMPARE(get(m_store->load(record->key()), "PrimaryOffenseSeqNo"), QString());
        QVERIFY(!record->isChanged());
    }

    void rowsOfOneKeyAreRefusedByName()
    {
        const RecordPtr record = incidentWithWitnesses();
        putKey(record, 2, 1);
        put(record, "Summary", QStringLiteral("changed"));
        const QString content = contentOfTables(*m_database);
        const QString text = errorOf([&] { m_store->save(*record); });
        for (const char* part : {"IncdWitness", "rows 1 and 3", "SeqNo 1"})
            QVERIFY2(text.contains(QString::fromLatin1(part)), qPrintable(text));
        QCOMPARE(contentOfTables(*m_database), content);
        QVERIFY(record->isChanged());
        putKey(record, 2, 3);
        m_store->save(*record);
    }

    void aRowWithoutAKeyIsRefusedByName()
    {
        const RecordPtr record = incidentWithWitnesses();
        witness(record, 1).cell(SeqNo).setValue(Null());
        const QString text = errorOf([&] { m_store->save(*record); });
        QVERIFY2(text.contains(QStringLiteral("IncdWitness, row 2: the row has no SeqNo")), qPrintable(text));
        QCOMPARE(witnessesIn(record->key()), QStringLiteral("1 W1, 2 W2, 3 W3"));
    }

    void aRowThatIsNotThereAnyMoreStopsTheSaveAsAWhole_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("removed");
        QTest::newRow("changed") << 1 << QStringLiteral("B") << false;
        QTest::newRow("changed key") << 9 << QStringLiteral("W1") << false;
        QTest::newRow("removed") << 1 << QStringLiteral("W1") << true;
    }
    void aRowThatIsNotThereAnyMoreStopsTheSaveAsAWhole()
    {
        QFETCH(int, key);
        QFETCH(QString, name);
        QFETCH(bool, removed);
        const RecordPtr record = incidentWithWitnesses();
        m_other->execute(QStringLiteral("DELETE FROM IncdWitness WHERE SeqNo = 1"));
        put(record, "Summary", QStringLiteral("changed"));
        putKey(record, 0, key);
        witness(record, 0).cell(QStringLiteral("WitnessName")).setValue(name);
        record->collection(Witnesses)->SetPosition(1);
        if (removed)
            record->collection(Witnesses)->RemoveCurrent(false);
        const QString before = stateOf(*record);
        const QString content = contentOfTables(*m_database);
        const QString text = errorOf([&] { m_store->save(*record); });
        for (const char* part : {"IncdWitness", "IncidentNo 1", "SeqNo 1"})
            QVERIFY2(text.contains(QString::fromLatin1(part)), qPrintable(text));
        QCOMPARE(contentOfTables(*m_database), content);
        QCOMPARE(stateOf(*record), before);
    }

    void anImmediateRemovalOfARowThatIsNotThereAnyMoreIsRefused()
    {
        const RecordPtr record = incidentWithWitnesses();
        m_other->execute(QStringLiteral("DELETE FROM IncdWitness WHERE SeqNo = 1"));
        record->collection(Witnesses)->SetPosition(1);
        const QString before = stateOf(*record);
        const QString content = contentOfTables(*m_database);
        QVERIFY(errorOf([&] {
                    record->collection(Witnesses)->RemoveCurrent(true);
                }).contains(QStringLiteral("IncdWitness")));
        QCOMPARE(contentOfTables(*m_database), content);
        QCOMPARE(stateOf(*record), before);
    }

    void aSavedIncidentKeepsItsNumber()
    {
        const RecordPtr other = savedIncident(QStringLiteral("2026-2"));
        const RecordPtr record = savedIncident(QStringLiteral("2026-1"));
        put(record, "IncidentNo", other->key());
        put(record, "Summary", QStringLiteral("changed"));
        const QString content = contentOfTables(*m_database);
        const auto refused = [](const QString& text) {
            return text.contains(QStringLiteral("IncidentNo of the case 2026-1")) &&
                   text.contains(QStringLiteral("from 2 to 1"));
        };
        QVERIFY(refused(errorOf([&] { m_store->save(*record); })));
        QVERIFY(refused(errorOf([&] { record->collection(Suspects)->RemoveCurrent(true); })));
        QCOMPARE(contentOfTables(*m_database), content);
        put(record, "IncidentNo", 2);
        m_store->save(*record);
    }

    void aRowOfAnotherIncidentIsNotSaved()
    {
        const RecordPtr other = savedIncident(QStringLiteral("2026-2"));
        const RecordPtr record = incidentWithWitnesses();
        witness(record, 1).cell(QStringLiteral("IncidentNo")).setValue(other->key());
        const QString content = contentOfTables(*m_database);
        const QString text = errorOf([&] { m_store->save(*record); });
        for (const char* part : {"IncdWitness, row 2", "IncidentNo 2"})
            QVERIFY2(text.contains(QString::fromLatin1(part)), qPrintable(text));
        QCOMPARE(contentOfTables(*m_database), content);
    }

    void aLinkThatDoesNotConvertStopsTheSaveAndNamesBothFields_data()
    {
        QTest::addColumn<bool>("isNew");
        QTest::newRow("new record") << true;
        QTest::newRow("saved record") << false;
    }
    void aLinkThatDoesNotConvertStopsTheSaveAndNamesBothFields()
    {
        QFETCH(bool, isNew);
        const RecordPtr record = isNew ? newIncident(QStringLiteral("2026-1")) : savedIncident();
        put(record, "Summary", 7);
        put(record, "WeaponNo",
            FieldReference::toVariant(fieldOf(*record->mainRow(), QStringLiteral("Summary"))));
        if (!isNew)
            m_store->save(*record);
        put(record, "WeaponNo",
            FieldReference::toVariant(fieldOf(*record->mainRow(), QStringLiteral("Summary"))));
        put(record, "Summary", QStringLiteral("abc"));
        const QString content = contentOfTables(*m_database);
        QVERIFY(record->isChanged());
        const QString text = errorOf([&] { m_store->save(*record); });
        for (const char* part : {"WeaponNo", "Summary", "a whole number", "abc"})
            QVERIFY2(text.contains(QString::fromLatin1(part)), qPrintable(text));
        QCOMPARE(contentOfTables(*m_database), content);
        QCOMPARE(record->isNew(), isNew);
        put(record, "WeaponNo", 5);
        m_store->save(*record);
        QCOMPARE(get(m_store->load(record->key()), "WeaponNo"), QStringLiteral("5"));
    }

    void anImmediateRemovalTellsOnceThatTheRecordWasSaved()
    {
        const RecordPtr record = savedIncident();
        const auto rows = record->collection(Suspects);
        QStringList log;
        const Subscription keep = m_store->Saved.subscribe([&](qint64 key) {
            log << QStringLiteral("%1: %2 suspects, version %3, %4 in the database")
                       .arg(key)
                       .arg(rows->Count())
                       .arg(record->rowVersion())
                       .arg(firstOf(*m_other, QStringLiteral("SELECT COUNT(*) FROM IncdSuspect")).toInt());
        });
        const int version = record->rowVersion();
        rows->RemoveCurrent(true);
        QCOMPARE(log, QStringList{
                          QStringLiteral("1: 1 suspects, version %1, 1 in the database").arg(version + 1)});
        rows->RemoveCurrent(false);
        rows->AddNew();
        rows->RemoveCurrent(true);
        QCOMPARE(log.size(), 1);
    }

    void anImmediateRemovalThatFailsTellsNothing()
    {
        const RecordPtr record = savedIncident();
        bool saved = false;
        const Subscription keep = m_store->Saved.subscribe([&saved](qint64) { saved = true; });
        m_other->execute(QStringLiteral(
            "CREATE TRIGGER fault BEFORE DELETE ON IncdSuspect BEGIN SELECT RAISE(ABORT, 'a fault'); END"));
        QVERIFY(!errorOf([&] { record->collection(Suspects)->RemoveCurrent(true); }).isEmpty());
        QVERIFY(!saved);
    }

    void aRowTakesTheNumberOfTheRecordItIsAddedTo()
    {
        const RecordPtr first = incidentWithWitnesses();
        const RecordPtr second = newIncident(QStringLiteral("2026-9"));
        second->collection(Witnesses)->AddNew();
        const auto row = first->collection(Witnesses)->NewItem();
        second->collection(Witnesses)->Add(row);
        m_store->save(*second);
        QCOMPARE(witnessesIn(first->key()), QStringLiteral("1 W1, 2 W2, 3 W3"));
        QCOMPARE(second->collection(Witnesses)->Count(), 2);
        QCOMPARE(m_store->load(second->key())->collection(Witnesses)->Count(), 2);
    }
};

TAVRIN_TEST_MAIN(tst_RecordKeys)
#include "tst_RecordKeys.moc"
