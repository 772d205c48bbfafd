#include "geocode/LatLongStage.h"
#include "testing/Unhandled.h"

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

/// The warning of a poor match, and its details.
class tst_LatLongWarning : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // The warning

    void theWarningFollowsTheTableOfStates_data()
    {
        QTest::addColumn<bool>("isNew");
        QTest::addColumn<QVariant>("onSave");
        QTest::addColumn<QVariant>("status");
        QTest::addColumn<QVariant>("accuracy");
        QTest::addColumn<QVariant>("type");
        QTest::addColumn<QString>("expected");
        const QVariant crossing = u"intersection"_s;
        const QVariant street = u"street"_s;
        struct Status
        {
            const char* name;
            QVariant value;
            QString text;
        };
        const Status statuses[] = {{"error", 4, Failed},
                                   {"error as text", u"4"_s, Failed},
                                   {"not found", 1, NotFound},
                                   {"found", 0, PoorMatch},
                                   {"another", 7, PoorMatch}};
        struct Match
        {
            const char* name;
            QVariant accuracy;
            QVariant type;
            bool warns;
        };
        const Match matches[] = {{"Null", Null(), street, true},
                                 {"Null at an intersection", Null(), crossing, true},
                                 {"0", 0.0, street, true},
                                 {"0.9", 0.9, street, true},
                                 {"0.99", 0.99, Null(), true},
                                 {"1", 1.0, street, false},
                                 {"1 as text", u"1"_s, Null(), false},
                                 {"2", 2.0, street, false},
                                 {"0.89 at an intersection", 0.89, crossing, true},
                                 {"0.9 at an intersection", 0.9, crossing, false},
                                 {"0.95 at an intersection", 0.95, crossing, false},
                                 {"1 at an intersection", 1.0, crossing, false},
                                 {"0.95 at an INTERSECTION", 0.95, u"Intersection"_s, true},
                                 {"0.95 at an intersection with a blank", 0.95, u"intersection "_s, true}};
        for (const Match& match : matches) {
            for (const Status& status : statuses) {
                QTest::addRow("%s, %s", status.name, match.name)
                    << false << QVariant(true) << status.value << match.accuracy << match.type
                    << (match.warns ? status.text : QString());
                QTest::addRow("new, %s, %s", status.name, match.name)
                    << true << QVariant(true) << status.value << match.accuracy << match.type << QString();
                QTest::addRow("manual, %s, %s", status.name, match.name)
                    << false << QVariant(false) << status.value << match.accuracy << match.type << QString();
                QTest::addRow("no choice, %s, %s", status.name, match.name)
                    << false << Null() << status.value << match.accuracy << match.type << QString();
            }
            QTest::addRow("never geocoded, %s", match.name)
                << false << QVariant(true) << Null() << match.accuracy << match.type << QString();
        }
    }
    void theWarningFollowsTheTableOfStates()
    {
        QFETCH(bool, isNew);
        QFETCH(QVariant, onSave);
        QFETCH(QVariant, status);
        QFETCH(QVariant, accuracy);
        QFETCH(QVariant, type);
        QFETCH(QString, expected);
        LatLongStage stage;
        LocationRecord location(isNew);
        location.put("GeocodeOnSave", onSave);
        location.put("GeocodeStatus", status);
        location.put("GeocodeAccuracy", accuracy);
        location.put("GeocodeAccuracyType", type);
        LocationRecord poor; // each state is reached from one with a warning and from one without
        poor.putGeocoded(0);
        LocationRecord calm;
        for (const LocationRecord* before : {&poor, &calm}) {
            stage.read(*before);
            QCOMPARE(stage.warning(), before == &poor ? PoorMatch : QString());
            stage.read(location);
            QCOMPARE(stage.warning(), expected);
        }
        QVERIFY(stage.boxes.shown().isEmpty());
    }

    void nothingIsWarnedOfBeforeTheFirstRecord()
    {
        LatLongStage stage;
        QCOMPARE(stage.warning(), QString());
        QVERIFY(stage.child<GroupBox>("grpGeocoding")->isVisible());
        QVERIFY(!stage.option(0)->Value() && !stage.option(1)->Value());
    }

    void theWarningGoesWithARefusedOptionOfTypedCoordinatesToo()
    {
        LatLongStage stage;
        QVERIFY(stage.isReady());
        LocationRecord location;
        location.putGeocoded(1);
        stage.read(location);
        QCOMPARE(stage.warning(), NotFound);
        location.failing = u"GeocodeOnSave"_s;
        stage.click(stage.option(0));
        QCOMPARE(stage.boxes.take().size(), 1);
        QCOMPARE(stage.mode(), ManualMode);
        QCOMPARE(stage.warning(), QString());
    }

    void aWarningThatCannotBeWorkedOutLeavesNoneOfTheRecordBeforeAndTheCoordinatesAreShown_data()
    {
        QTest::addColumn<QString>("field");
        for (const char* name : {"GeocodeStatus", "GeocodeAccuracyType", "GeocodeAccuracy"})
            QTest::newRow(name) << QString::fromLatin1(name);
    }
    void aWarningThatCannotBeWorkedOutLeavesNoneOfTheRecordBeforeAndTheCoordinatesAreShown()
    {
        QFETCH(QString, field);
        LatLongStage stage;
        LocationRecord poor;
        poor.putGeocoded(0);
        stage.read(poor);
        QCOMPARE(stage.warning(), PoorMatch);
        LocationRecord location;
        location.putGeocoded(1);
        location.put("Latitude", u"55"_s);
        location.failing = field;
        stage.read(location);
        stage.checkFailure(u"BoundSection_ReadData"_s, u"no "_s + field);
        QCOMPARE(stage.warning(), QString());
        QCOMPARE(stage.mode(), OnSaveMode);
        QCOMPARE(stage.lat()->Text(), u"55"_s);
        stage.write(location);
        QCOMPARE(location.written, QStringList{u"GeocodeOnSave=True"_s});
        QVERIFY(stage.boxes.shown().isEmpty());
    }

    // The details

    void aDetailsClickBeforeTheFirstReadDataDoesNothing()
    {
        LatLongStage stage;
        stage.details()->Click.raise();
        QVERIFY(stage.boxes.shown().isEmpty());
    }

    void theDetailsTellWhatTheLastGeocodingFound_data()
    {
        QTest::addColumn<QVariant>("status");
        QTest::addColumn<QVariant>("accuracy");
        QTest::addColumn<QString>("expected");
        const QString incomplete =
            u"An incomplete or unknown address was entered. Complete all address fields to get more accurate coordinates, or manually enter the correct coordinates instead."_s;
        const QString closest =
            u"We couldn't an exact match for this location:\r\n\r\n  \u2022 1 Main, Town\r\n\r\nThe coordinates shown are for the closest match:\r\n\r\n  \u2022 3 Main, Town\r\n\r\nCheck to make sure you entered the address correctly in this Location record. \r\n\r\nIf the address you entered is correct, manually enter the coordinates for this location instead to ensure accuracy."_s;
        const QString error = u"A geocoding error occurred: no answer"_s;
        QTest::newRow("error") << QVariant(4) << Null() << error;
        QTest::newRow("error with an accuracy") << QVariant(4) << QVariant(0.5) << error;
        QTest::newRow("not found") << QVariant(1) << Null() << incomplete;
        QTest::newRow("not found, with an accuracy") << QVariant(1) << QVariant(0.5) << closest;
        QTest::newRow("found without accuracy") << QVariant(0) << Null() << incomplete;
        QTest::newRow("closest") << QVariant(0) << QVariant(0.5) << closest;
    }
    void theDetailsTellWhatTheLastGeocodingFound()
    {
        QFETCH(QVariant, status);
        QFETCH(QVariant, accuracy);
        QFETCH(QString, expected);
        LatLongStage stage;
        QVERIFY(stage.isReady());
        LocationRecord location;
        location.putGeocoded(status);
        location.put("GeocodeAccuracy", accuracy);
        location.put("GeocodeError", u"no answer"_s);
        location.put("GeocodeInputAddress", u"1 Main, Town"_s);
        location.put("GeocodeOutputAddress", u"3 Main, Town"_s);
        stage.read(location);
        QVERIFY(!stage.warning().isEmpty());
        stage.click(stage.details());
        QTRY_COMPARE(stage.boxes.shown().size(), 1);
        const ShownBox box = stage.boxes.shown().first();
        QCOMPARE(box.text, expected);
        QCOMPARE(box.icon, BoxIcon::Information);
        QCOMPARE(box.title, u"Location Geocoding"_s);
        QCOMPARE(box.buttons, BoxButtons::Ok);
        QCOMPARE(box.parent, stage.control.data());
        QCOMPARE(location.written, QStringList());
    }

    void theDetailsTakeNullTextsAsEmpty()
    {
        LatLongStage stage;
        LocationRecord location;
        location.putGeocoded(4);
        stage.read(location);
        stage.details()->Click.raise();
        QCOMPARE(stage.boxes.texts(), QStringList({u"A geocoding error occurred: "_s}));
    }

    void aFailureOfTheDetailsClickIsTold()
    {
        const Unhandled unhandled;
        LatLongStage stage;
        QVERIFY(stage.isReady());
        LocationRecord location;
        location.putGeocoded(4);
        stage.read(location);
        location.failing = u"GeocodeError"_s;
        stage.click(stage.details());
        stage.checkFailure(u"lnkViewDetails_Click"_s, u"no GeocodeError"_s);
        QCOMPARE(unhandled.texts, QStringList());
    }
};

TAVRIN_TEST_MAIN(tst_LatLongWarning)
#include "tst_LatLongWarning.moc"
