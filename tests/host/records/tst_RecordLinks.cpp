#include "base/failure/Error.h"
#include "host/HostCase.h"
#include "host/records/ChildRows.h"
#include "host/records/PartOfRecord.h"
#include "host/records/RecordTestSupport.h"

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

/// An incident with two suspects and two victims; its current suspect is the first.
RecordPtr makeIncident(RecordStore& store)
{
    const RecordPtr record = store.create();
    put(record, "CaseNo", u"2099-1"_s);
    for (const auto& name : {u"First"_s, u"Second"_s}) {
        record->collection(u"Suspects"_s)->AddNew();
        putLast(record, u"Suspects"_s, "SuspectName", name);
        record->collection(u"Victims"_s)->AddNew();
        putLast(record, u"Victims"_s, "VictimName", name);
    }
    record->collection(u"Suspects"_s)->SetPosition(1);
    return record;
}

tvBusinessObjectPtr suspectOf(const RecordPtr& record)
{
    return std::dynamic_pointer_cast<tvBusinessObject>(record->Item(u"SuspectBO"_s));
}

tvTableCollectionPtr linksOf(const RecordPtr& record)
{
    return std::dynamic_pointer_cast<tvTableCollection>(suspectOf(record)->Item(u"SuspectVictims"_s));
}

/// Links the current suspect to a victim, counted from 1, as a control does.
void link(Host& host, const RecordPtr& record, int victim, int relation)
{
    const auto links = linksOf(record);
    const auto row = links->AddNew();
    const auto reference = [&](const QString& collection, int index) {
        return host.session().MakeFieldReference(
            fieldOf(*record->collection(collection)->Item(index), u"SeqNo"_s));
    };
    fieldOf(*row, u"VictimSeqNo"_s)->SetValue(reference(u"Victims"_s, victim));
    fieldOf(*row, u"SeqNo"_s)
        ->SetValue(reference(u"Suspects"_s, record->collection(u"Suspects"_s)->Position()));
    fieldOf(*row, u"RelationNo"_s)->SetValue(QString::number(relation));
}

QStringList contentOf(tvTableCollection& rows, const QStringList& fields)
{
    QStringList lines;
    for (const tvTableRowPtr& row : rows) {
        QStringList values;
        for (const QString& field : fields)
            values << ToText(fieldOf(*row, field)->Value());
        lines << values.join(u' ');
    }
    return lines;
}

const QStringList LinkFields{u"SeqNo"_s, u"VictimSeqNo"_s, u"RelationNo"_s};

} // namespace

/// Rows that belong to rows of other collections of the record.
class tst_RecordLinks : public HostCase
{
    Q_OBJECT

private Q_SLOTS:
    void theSuspectAtThePositionIsARecordOfItsOwn()
    {
        RecordStore store(*m_database);
        const RecordPtr record = makeIncident(store);
        QCOMPARE(
            ToText(std::dynamic_pointer_cast<tvField>(suspectOf(record)->Item(u"SuspectName"_s))->Value()),
            u"First"_s);
        record->collection(u"Suspects"_s)->SetPosition(2);
        QCOMPARE(
            ToText(std::dynamic_pointer_cast<tvField>(suspectOf(record)->Item(u"SuspectName"_s))->Value()),
            u"Second"_s);
        QCOMPARE(m_host->hostServices().GetParentObject(suspectOf(record)), record);
        QVERIFY(!suspectOf(record)->Item(u"Assignments"_s)); // they belong to no suspect
        QVERIFY(!suspectOf(record)->Item(u"Nothing"_s));
    }

    void withoutASuspectThereIsNoSuspectRecord()
    {
        RecordStore store(*m_database);
        QVERIFY(!store.create()->Item(u"SuspectBO"_s));
    }

    void aCollectionIsFoundByThePluralThatAControlBuilds()
    {
        RecordStore store(*m_database);
        const tvBusinessObjectPtr suspect = suspectOf(makeIncident(store));
        for (const QString& name : {u"SuspectWitnesses"_s, u"SuspectWitnesss"_s}) {
            const auto links = std::dynamic_pointer_cast<tvTableCollection>(suspect->Item(name));
            QVERIFY2(links, qPrintable(name));
            QVERIFY(std::dynamic_pointer_cast<tvField>(links->NewItem()->Item(u"WitnessSeqNo"_s)));
        }
        QVERIFY(!suspect->Item(u"SuspectWitness"_s));
    }

    void linksBetweenNewRowsHaveTheirKeysAfterTheSave()
    {
        RecordStore store(*m_database);
        const RecordPtr record = makeIncident(store);
        link(*m_host, record, 2, 5);
        store.save(*record);
        const RecordPtr loaded = store.load(record->key());
        QCOMPARE(contentOf(*linksOf(loaded), LinkFields), QStringList{u"1 2 5"_s});
        loaded->collection(u"Suspects"_s)->SetPosition(2);
        QCOMPARE(linksOf(loaded)->Count(), 0);
    }

    void eachSuspectHasItsOwnLinks()
    {
        RecordStore store(*m_database);
        const RecordPtr record = makeIncident(store);
        link(*m_host, record, 1, 5);
        record->collection(u"Suspects"_s)->SetPosition(2);
        link(*m_host, record, 1, 6);
        link(*m_host, record, 2, 7);
        QCOMPARE(contentOf(*linksOf(record), LinkFields), QStringList({u"2 1 6"_s, u"2 2 7"_s}));
        const auto links = linksOf(record);
        links->SetPosition(1);
        links->RemoveCurrent(false);
        QCOMPARE(contentOf(*links, LinkFields), QStringList{u"2 2 7"_s});
        QCOMPARE(links->Position(), 1);
        store.save(*record);
        const RecordPtr loaded = store.load(record->key());
        QCOMPARE(contentOf(*loaded->collection(u"SuspectVictims"_s), LinkFields),
                 QStringList({u"1 1 5"_s, u"2 2 7"_s}));
    }

    void aPartyThatGoesTakesItsLinksAlong_data()
    {
        QTest::addColumn<QString>("collection");
        QTest::addColumn<QStringList>("left");
        QTest::newRow("suspect") << u"Suspects"_s << QStringList{u"2 2 6"_s};
        QTest::newRow("victim") << u"Victims"_s << QStringList{u"2 2 6"_s};
        QTest::newRow("another kind") << u"Others"_s << QStringList({u"1 1 5"_s, u"2 2 6"_s});
    }
    void aPartyThatGoesTakesItsLinksAlong()
    {
        QFETCH(QString, collection);
        QFETCH(QStringList, left);
        RecordStore store(*m_database);
        RecordPtr record = makeIncident(store);
        record->collection(u"Others"_s)->AddNew();
        link(*m_host, record, 1, 5);
        record->collection(u"Suspects"_s)->SetPosition(2);
        link(*m_host, record, 2, 6);
        store.save(*record);
        record = store.load(record->key());
        record->collection(collection)->SetPosition(1);
        record->collection(collection)->RemoveCurrent(false);
        QCOMPARE(contentOf(*record->collection(u"SuspectVictims"_s), LinkFields), left);
        store.save(*record);
        QCOMPARE(contentOf(*store.load(record->key())->collection(u"SuspectVictims"_s), LinkFields), left);
    }

    void theCodesOfAnOffenseAreRowsThatCountAsEmptyWithoutACode()
    {
        RecordStore store(*m_database);
        const RecordPtr record = makeIncident(store);
        record->collection(Offenses)->AddNew();
        const auto offense = record->collection(Offenses)->rows().front();
        ChildRows weapons(record->collection(u"OffenseWeapons"_s), u"OffenseSeqNo"_s, offense);
        const auto row = weapons.AddNew();
        int plainFields = 0;
        for (int i = 1; i <= row->FieldCount(); ++i) {
            const tvFieldPtr field = row->Item(i);
            if (!field->IsKey() && !std::dynamic_pointer_cast<tvLinkField>(field))
                ++plainFields;
        }
        QCOMPARE(plainFields, 1); // the code alone decides whether the row is empty
        fieldOf(*row, u"WeaponNo"_s)->SetValue(12);
        store.save(*record);
        const RecordPtr loaded = store.load(record->key());
        QCOMPARE(contentOf(*loaded->collection(u"OffenseWeapons"_s), {u"OffenseSeqNo"_s, u"WeaponNo"_s}),
                 QStringList{u"1 12"_s});
    }

    void rowsThatAreAddedAndRemovedTellAndTheirErrorsReachTheCaller()
    {
        RecordStore store(*m_database);
        const RecordPtr record = makeIncident(store);
        const auto links = linksOf(record);
        QCOMPARE(links->Position(), 0);
        QVERIFY_EXCEPTION_THROWN(links->RemoveCurrent(false), Error);
        QVERIFY_EXCEPTION_THROWN(links->SetPosition(1), Error);
        QVERIFY_EXCEPTION_THROWN(links->SetPrimaryValue(1), Error);
        QVERIFY_EXCEPTION_THROWN(Q_UNUSED(links->Item(1)), Error);
        link(*m_host, record, 1, 5);
        const auto again = linksOf(record);
        QVariant removed;
        const Subscription keep = again->ItemRemoved.subscribe([&](const QVariant& key) { removed = key; });
        const QVariant key = fieldOf(*again->Item(1), u"LinkNo"_s)->Value();
        again->RemoveCurrent(false);
        QCOMPARE(removed, key);
        const Subscription refuse =
            again->ItemRemoved.subscribe([](const QVariant&) { throw Error(u"no"_s); });
        again->AddNew();
        QVERIFY_EXCEPTION_THROWN(again->RemoveCurrent(false), Error);
    }
};

TAVRIN_TEST_MAIN(tst_RecordLinks)
#include "tst_RecordLinks.moc"
