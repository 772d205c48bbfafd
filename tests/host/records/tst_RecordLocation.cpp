#include "host/records/RecordTestSupport.h"

using namespace tavrin;
using namespace tavrin::test;

namespace {

const QString Location = QStringLiteral("LocationName");

void putAt(const RecordPtr& record, const char* field, const QVariant& value)
{
    record->part(Location)->cell(QString::fromLatin1(field)).setValue(value);
}

QVariant at(const RecordPtr& record, const char* field)
{
    return record->part(Location)->cell(QString::fromLatin1(field)).value();
}

/// What geocoding fills in, as one text.
QString found(const RecordPtr& record)
{
    QStringList texts;
    for (const char* field :
         {"Latitude", "Longitude", "GeocodeStatus", "GeocodeAccuracy", "GeocodeAccuracyType", "GeocodeError",
          "GeocodeInputAddress", "GeocodeOutputAddress"})
        texts << (IsNull(at(record, field)) ? QStringLiteral("-") : ToText(at(record, field)));
    return texts.join(QLatin1Char('|'));
}

} // namespace

/// The location of an incident, and the geocoding of its address.
class tst_RecordLocation : public RecordStoreCase
{
    Q_OBJECT

private:
    std::optional<Geocoder> m_geocoder;

    RecordPtr newAt(const char* address, const QVariant& onSave = true)
    {
        const RecordPtr record = newIncident(QStringLiteral("2026-1"));
        put(record, "Address", QString::fromUtf8(address));
        put(record, "City", QStringLiteral("Town"));
        putAt(record, "GeocodeOnSave", onSave);
        return record;
    }

private Q_SLOTS:
    void init() override
    {
        RecordStoreCase::init();
        writeFile(m_folder->filePath(QStringLiteral("geocode/addresses.csv")),
                  "Address,City,Latitude,Longitude,Result,Accuracy,Match,Error\n"
                  "1 Main,Town,45.5,-128.25,exact,,,\n"
                  "Main & Oak,Town,45.6,-128.5,intersection,,,\n"
                  "2 Main,Town,45.80,-128.5,nearest,0.75,4 Main,\n"
                  "3 Main,Town,,,error,,,No answer\n");
        m_geocoder.emplace(DataFiles(m_folder->path()));
        m_store = std::make_unique<RecordStore>(*m_database, *m_geocoder);
    }

    void theLocationIsARowOfTheRecord()
    {
        const RecordPtr record = m_store->create();
        const auto row = std::dynamic_pointer_cast<tvTableRow>(record->Item(QStringLiteral("locationname")));
        QVERIFY(row);
        QVERIFY(row->IsNew());
        QCOMPARE(row, std::dynamic_pointer_cast<tvTableRow>(record->Item(Location)));
        for (const char* name :
             {"Latitude", "Longitude", "GeocodeOnSave", "GeocodeStatus", "GeocodeAccuracy",
              "GeocodeAccuracyType", "GeocodeError", "GeocodeInputAddress", "GeocodeOutputAddress"})
            QVERIFY2(IsNull(fieldOf(*row, QString::fromLatin1(name))->Value()), name);
        QVERIFY(!record->isChanged());
        m_store->save(*newAt("1 Main"));
        QVERIFY(!m_store->load(1)->part(Location)->IsNew());
    }

    void aChangeOfItIsAChangeOfTheRecord()
    {
        m_store->save(*newAt("1 Main", false));
        const RecordPtr record = m_store->load(1);
        QVERIFY(!record->isChanged());
        int changes = 0;
        const Subscription keep = record->Changed.subscribe([&changes] { ++changes; });
        putAt(record, "Latitude", QStringLiteral("12.5"));
        QCOMPARE(changes, 1);
        QVERIFY(record->isChanged());
        putAt(record, "Latitude", Null());
        QVERIFY(!record->isChanged());
    }

    void itLoadsAsItWasSavedAndCountsAsASaveOfTheRecord()
    {
        const RecordPtr record = newAt("1 Main", false);
        putAt(record, "Latitude", 12.25);
        putAt(record, "Longitude", QStringLiteral("7E"));
        putAt(record, "GeocodeAccuracy", 0.125);
        putAt(record, "GeocodeStatus", 7);
        m_store->save(*record);
        QVERIFY(!record->isChanged());
        RecordPtr again = m_store->load(1);
        QCOMPARE(stateOf(*again), stateOf(*record));
        QCOMPARE(at(again, "Latitude"), QVariant(QStringLiteral("12.25"))); // a text
        QCOMPARE(at(again, "GeocodeAccuracy"), QVariant(0.125));
        QCOMPARE(at(again, "GeocodeOnSave"), QVariant(false));
        const int version = again->rowVersion();
        putAt(again, "Longitude", QStringLiteral("8E")); // nothing else
        m_store->save(*again);
        QCOMPARE(again->rowVersion(), version + 1);
        again = m_store->load(1);
        QCOMPARE(at(again, "Longitude"), QVariant(QStringLiteral("8E")));
        QCOMPARE(at(again, "Latitude"), QVariant(QStringLiteral("12.25")));
        QCOMPARE(get(again, "Address"), QStringLiteral("1 Main"));
    }

    void somebodyElsesSaveIsNotOverwritten()
    {
        m_store->save(*newAt("1 Main", false));
        RecordStore otherStore(*m_other, *m_geocoder);
        const RecordPtr mine = m_store->load(1);
        const RecordPtr theirs = otherStore.load(1);
        putAt(theirs, "Latitude", QStringLiteral("1"));
        otherStore.save(*theirs);
        putAt(mine, "Latitude", QStringLiteral("2"));
        QVERIFY(errorOf([&] { m_store->save(*mine); }).contains(QStringLiteral("Somebody else")));
        QCOMPARE(at(m_store->load(1), "Latitude"), QVariant(QStringLiteral("1")));
    }

    void itsTextsHaveALengthAndItsNumbersAreNumbers()
    {
        const RecordPtr record = newAt("1 Main", false);
        putAt(record, "Latitude", QString(41, QLatin1Char('1')));
        QVERIFY(errorOf([&] {
                    m_store->save(*record);
                }).contains(QStringLiteral("the field Latitude takes 40 characters")));
        QVERIFY(errorOf([&] {
                    putAt(record, "GeocodeAccuracy", QStringLiteral("good"));
                }).contains(QStringLiteral("GeocodeAccuracy takes a number")));
    }

    void itCannotMoveToAnotherIncident()
    {
        m_store->save(*newAt("1 Main", false));
        const RecordPtr record = m_store->load(1);
        const QString content = contentOfTables(*m_database);
        putAt(record, "IncidentNo", 2);
        QVERIFY(errorOf([&] { m_store->save(*record); }).contains(QStringLiteral("cannot move")));
        QCOMPARE(contentOfTables(*m_database), content);
    }

    // Geocoding

    void aSaveFillsInWhatGeocodingFound_data()
    {
        QTest::addColumn<QString>("address");
        QTest::addColumn<QString>("expected");
        QTest::newRow("exact") << QStringLiteral(" 1 MAIN")
                               << QStringLiteral("45.5|-128.25|0|1|address|-|1 MAIN, Town|1 Main, Town");
        QTest::newRow("intersection")
            << QStringLiteral("Oak/Main")
            << QStringLiteral("45.6|-128.5|0|0.95|intersection|-|Oak/Main, Town|Main & Oak, Town");
        QTest::newRow("nearest") << QStringLiteral("2 Main")
                                 << QStringLiteral("45.80|-128.5|0|0.75|street|-|2 Main, Town|4 Main");
        QTest::newRow("error") << QStringLiteral("3 Main")
                               << QStringLiteral("-|-|4|-|-|No answer|3 Main, Town|-");
        QTest::newRow("not found") << QStringLiteral("9 Main")
                                   << QStringLiteral("-|-|1|-|-|-|9 Main, Town|-");
        QTest::newRow("no address") << QString() << QStringLiteral("-|-|1|-|-|-|Town|-");
    }
    void aSaveFillsInWhatGeocodingFound()
    {
        QFETCH(QString, address);
        QFETCH(QString, expected);
        for (const char* before : {"1 Main", "3 Main", "9 Main"}) { // whatever stood there before
            const RecordPtr record = newAt(before);
            put(record, "CaseNo", QString::fromUtf8(before));
            m_store->save(*record);
            put(record, "Address", address);
            put(record, "Summary", QString::fromUtf8(before) + QStringLiteral(" left"));
            m_store->save(*record);
            QCOMPARE(found(record), expected);
            QVERIFY(!record->isChanged());
            QCOMPARE(found(m_store->load(record->key())), expected);
        }
    }

    void aSavePartOfAnotherTransactionGeocodesToo()
    {
        const RecordPtr record = newAt("1 Main");
        Transaction transaction(*m_database);
        m_store->saveWithin(*record);
        transaction.commit();
        QCOMPARE(at(m_store->load(record->key()), "GeocodeAccuracy"), QVariant(1.0));
    }

    void coordinatesThatWereTypedStayAndNothingIsFilledIn_data()
    {
        QTest::addColumn<QVariant>("onSave");
        QTest::newRow("false") << QVariant(false);
        QTest::newRow("Null") << Null();
    }
    void coordinatesThatWereTypedStayAndNothingIsFilledIn()
    {
        QFETCH(QVariant, onSave);
        const RecordPtr record = newAt("1 Main", onSave);
        putAt(record, "Latitude", QStringLiteral("10"));
        m_store->save(*record);
        QCOMPARE(found(m_store->load(1)), QStringLiteral("10|-|-|-|-|-|-|-"));
    }

    void whatWasFoundForTheSameAddressIsNotLookedUpAgain_data()
    {
        QTest::addColumn<QString>("change");
        QTest::addColumn<bool>("isLookedUp");
        QTest::newRow("nothing of the location") << QStringLiteral("summary") << false;
        QTest::newRow("another address") << QStringLiteral("address") << true;
        QTest::newRow("another city") << QStringLiteral("city") << true;
        QTest::newRow("coordinates") << QStringLiteral("coordinates") << true;
        QTest::newRow("manual and back") << QStringLiteral("back") << true;
    }
    void whatWasFoundForTheSameAddressIsNotLookedUpAgain()
    {
        QFETCH(QString, change);
        QFETCH(bool, isLookedUp);
        m_store->save(*newAt("1 Main"));
        const QString before = QStringLiteral("45.5|-128.25|0|1|address|-|1 Main, Town|1 Main, Town");
        QCOMPARE(found(m_store->load(1)), before);
        // A table that knows no address tells whether it was asked.
        writeFile(m_folder->filePath(QStringLiteral("geocode/addresses.csv")),
                  "Address,City,Latitude,Longitude,Result,Accuracy,Match,Error\n");
        const Geocoder other{DataFiles(m_folder->path())};
        RecordStore store(*m_database, other);
        const RecordPtr record = store.load(1);
        put(record, "Summary", QStringLiteral("changed"));
        if (change == QStringLiteral("address"))
            put(record, "Address", QStringLiteral("2 Main"));
        else if (change == QStringLiteral("city"))
            put(record, "City", QStringLiteral("Village"));
        else if (change == QStringLiteral("coordinates"))
            putAt(record, "Latitude", QStringLiteral("1"));
        if (change == QStringLiteral("back")) {
            putAt(record, "GeocodeOnSave", false);
            putAt(record, "Longitude", QStringLiteral("2"));
            store.save(*record);
            putAt(record, "GeocodeOnSave", true);
        }
        store.save(*record);
        QCOMPARE(get(store.load(1), "Summary"), QStringLiteral("changed"));
        QCOMPARE(found(store.load(1)) == before, !isLookedUp);
        if (isLookedUp)
            QCOMPARE(at(store.load(1), "GeocodeStatus"), QVariant(1));
    }

    void anAddressThatWasNotFoundIsLookedUpAtEachSave()
    {
        m_store->save(*newAt("9 Main"));
        writeFile(m_folder->filePath(QStringLiteral("geocode/addresses.csv")),
                  "Address,City,Latitude,Longitude,Result,Accuracy,Match,Error\n"
                  "9 Main,Town,45.9,-128.9,exact,,,\n");
        const Geocoder later{DataFiles(m_folder->path())};
        RecordStore store(*m_database, later);
        const RecordPtr record = store.load(1);
        put(record, "Summary", QStringLiteral("changed"));
        store.save(*record);
        QCOMPARE(found(store.load(1)), QStringLiteral("45.9|-128.9|0|1|address|-|9 Main, Town|9 Main, Town"));
    }

    void anErrorKeepsTheCoordinatesOfTheSameAddressAlone()
    {
        const RecordPtr record = newAt("3 Main");
        m_store->save(*record);
        putAt(record, "Latitude", QStringLiteral("45")); // of an earlier, better day
        m_store->save(*record);
        QCOMPARE(found(record), QStringLiteral("45|-|4|-|-|No answer|3 Main, Town|-"));
        putAt(record, "GeocodeInputAddress", QStringLiteral("1 Main, Town"));
        m_store->save(*record);
        QCOMPARE(found(record), QStringLiteral("-|-|4|-|-|No answer|3 Main, Town|-"));
    }

    void aSaveThatFailsTakesBackWhatWasFilledIn()
    {
        m_store->save(*newIncident(QStringLiteral("2026-7")));
        const RecordPtr record = newAt("1 Main");
        put(record, "CaseNo", QStringLiteral("2026-7"));
        const QString before = stateOf(*record);
        QVERIFY(errorOf([&] { m_store->save(*record); }).contains(QStringLiteral("already in use")));
        QCOMPARE(stateOf(*record), before);
        QCOMPARE(found(record), QStringLiteral("-|-|-|-|-|-|-|-"));
        put(record, "CaseNo", QStringLiteral("2026-8"));
        m_store->save(*record);
        QCOMPARE(at(record, "GeocodeStatus"), QVariant(0));
    }

    void nobodyIsToldOfAChangeWhileTheSaveIsUnderWay()
    {
        const RecordPtr record = newAt("1 Main");
        QStringList told;
        const Subscription changed = record->Changed.subscribe([&] { told << QStringLiteral("changed"); });
        const Subscription saved = m_store->Saved.subscribe(
            [&](qint64) { told << QStringLiteral("saved ") + ToText(at(record, "GeocodeStatus")); });
        m_store->save(*record);
        QCOMPARE(told, QStringList({QStringLiteral("saved 0")}));
    }

    void aMissingFieldLeavesTheSaveGoingOn_data()
    {
        QTest::addColumn<QString>("missing");
        for (const char* field :
             {"Latitude", "Longitude", "GeocodeOnSave", "GeocodeStatus", "GeocodeAccuracy",
              "GeocodeAccuracyType", "GeocodeError", "GeocodeInputAddress", "GeocodeOutputAddress"})
            QTest::newRow(field) << QString::fromLatin1(field);
        QTest::newRow("the whole part") << Location;
    }
    void aMissingFieldLeavesTheSaveGoingOn()
    {
        QFETCH(QString, missing);
        RecordSchema schema = incidentSchema();
        if (missing == Location)
            schema.Parts.clear();
        else
            schema.Parts.first().Table.Columns.removeAt(schema.Parts.first().Table.indexOf(missing));
        const RecordPtr record = Record::create(schema);
        put(record, "Address", QStringLiteral("1 Main"));
        put(record, "City", QStringLiteral("Town"));
        const bool geocodes = missing != Location && missing != QStringLiteral("GeocodeOnSave");
        if (geocodes)
            putAt(record, "GeocodeOnSave", true);
        m_store->save(*record);
        QVERIFY(record->key() > 0);
        QVERIFY(!record->isChanged());
        if (geocodes && missing != QStringLiteral("GeocodeStatus"))
            QCOMPARE(at(record, "GeocodeStatus"), QVariant(0));
        if (geocodes && missing == QStringLiteral("GeocodeStatus"))
            QCOMPARE(at(record, "GeocodeAccuracy"), QVariant(1.0));
    }
};

TAVRIN_TEST_MAIN(tst_RecordLocation)
#include "tst_RecordLocation.moc"
