#include "geocode/LatLongStage.h"
#include "support/FailingRecords.h"
#include "support/Unhandled.h"

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

const QString ManualMode = u"manual"_s;
const QString OnSaveMode = u"on save"_s;
const QString PoorMatch = u"Lat/long may be incorrect."_s;
const QString NotFound = u"Address not found."_s;
const QString Failed = u"A geocoding error occurred."_s;

} // namespace

class tst_LatLong : public tavrin::test::TestCase
{
    Q_OBJECT

private:
    static void checkFailure(LatLongStage& stage, const QString& member, const QString& description)
    {
        const QList<ShownBox> shown = stage.boxes.take();
        QCOMPARE(shown.size(), 1);
        QCOMPARE(shown.first().text,
                 u"An unexpected error occurred in LatLong in %1: %2"_s.arg(member, description));
        QCOMPARE(shown.first().title, u"Error"_s);
        QCOMPARE(shown.first().icon, BoxIcon::Critical);
        QCOMPARE(shown.first().buttons, BoxButtons::Ok);
    }

private Q_SLOTS:
    // Reading

    void aNewRecordStartsInUpdateOnSaveWithDisabledGreyBoxesAndNoWarning()
    {
        LatLongStage stage;
        LocationRecord location(true);
        location.put("GeocodeStatus", 4);
        stage.read(location);
        QCOMPARE(stage.mode(), OnSaveMode);
        QVERIFY(!stage.lat()->isEnabled());
        QCOMPARE(stage.lat()->BackColor(), Color(0x8000000FU));
        QCOMPARE(stage.warning(), QString());
        QCOMPARE(location.written, QStringList({u"GeocodeOnSave=True"_s}));
    }

    void aNewRecordIsSetToUpdateOnSaveWhateverItHeld()
    {
        LatLongStage stage;
        LocationRecord location(true);
        location.put("GeocodeOnSave", false);
        stage.read(location);
        QCOMPARE(location.get("GeocodeOnSave"), QVariant(true));
        QCOMPARE(stage.mode(), OnSaveMode);
    }

    void aSavedRowWithoutChoiceOpensInManualModeAndReadDataDoesNotChangeItAndWriteDataWritesFalse()
    {
        LatLongStage stage;
        LocationRecord geocoded; // so that an option is turned on by the second reading
        geocoded.put("GeocodeOnSave", true);
        stage.read(geocoded);
        LocationRecord location;
        stage.read(location);
        QCOMPARE(stage.mode(), ManualMode);
        QVERIFY(IsNull(location.get("GeocodeOnSave")));
        QCOMPARE(location.written, QStringList());
        QCOMPARE(geocoded.written, QStringList());
        stage.write(location);
        QCOMPARE(location.get("GeocodeOnSave"), QVariant(false));
    }

    void readingShowsTheRowAndWritesNothing_data()
    {
        QTest::addColumn<QVariant>("onSave");
        QTest::addColumn<QString>("mode");
        QTest::newRow("true") << QVariant(true) << OnSaveMode;
        QTest::newRow("a number") << QVariant(-1) << OnSaveMode;
        QTest::newRow("false") << QVariant(false) << ManualMode;
        QTest::newRow("Null") << Null() << ManualMode;
    }
    void readingShowsTheRowAndWritesNothing()
    {
        QFETCH(QVariant, onSave);
        QFETCH(QString, mode);
        LatLongStage stage;
        for (const bool before : {true, false}) { // whatever stood there before
            LocationRecord other;
            other.put("GeocodeOnSave", before);
            stage.read(other);
            LocationRecord location;
            location.put("GeocodeOnSave", onSave);
            location.put("Latitude", u"44.05"_s);
            location.put("Longitude", -121.25);
            stage.read(location);
            QCOMPARE(stage.mode(), mode);
            QCOMPARE(stage.lat()->Text(), u"44.05"_s);
            QCOMPARE(stage.lon()->Text(), u"-121.25"_s);
            QCOMPARE(location.written, QStringList());
            QCOMPARE(other.written, QStringList());
        }
        QVERIFY(stage.boxes.shown().isEmpty());
    }

    void nullCoordinatesShowAsEmpty()
    {
        LatLongStage stage;
        LocationRecord location;
        location.put("Latitude", 1.5);
        stage.read(location);
        location.put("Latitude", Null());
        stage.read(location);
        QCOMPARE(stage.lat()->Text(), QString());
        QCOMPARE(stage.lon()->Text(), QString());
    }

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
        poor.put("GeocodeOnSave", true);
        poor.put("GeocodeStatus", 0);
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

    void aHiddenGroupIsShownAgain()
    {
        LatLongStage stage;
        stage.child<GroupBox>("grpGeocoding")->hide();
        stage.read(LocationRecord());
        QVERIFY(stage.child<GroupBox>("grpGeocoding")->isVisible());
    }

    // The options

    void anOptionClickBeforeTheFirstReadDataDoesNothing()
    {
        LatLongStage stage;
        QVERIFY(stage.isReady());
        QTest::keyClicks(stage.lat(), u"12"_s);
        stage.click(stage.option(1));
        QVERIFY(stage.lat()->isEnabled());
        QCOMPARE(stage.lat()->Text(), u"12"_s);
        stage.click(stage.option(0));
        QVERIFY(stage.boxes.shown().isEmpty());
    }

    void aClickOfAnOptionIsWrittenAtOnceAndShown()
    {
        LatLongStage stage;
        QVERIFY(stage.isReady());
        LocationRecord location;
        location.put("GeocodeOnSave", true);
        location.put("GeocodeStatus", 1);
        stage.read(location);
        QCOMPARE(stage.warning(), NotFound);
        stage.click(stage.option(0));
        QCOMPARE(location.written, QStringList({u"GeocodeOnSave=False"_s}));
        QCOMPARE(stage.mode(), ManualMode);
        QCOMPARE(stage.warning(), QString());
        stage.click(stage.option(1));
        QCOMPARE(location.written, QStringList({u"GeocodeOnSave=False"_s, u"GeocodeOnSave=True"_s}));
        QCOMPARE(stage.mode(), OnSaveMode);
        QCOMPARE(stage.warning(), NotFound);
        QVERIFY(stage.boxes.shown().isEmpty());
    }

    void anOptionThatCodeTurnsOnIsWrittenToo()
    {
        LatLongStage stage;
        LocationRecord location;
        stage.read(location);
        stage.option(1)->SetValue(true);
        QCOMPARE(location.written, QStringList({u"GeocodeOnSave=True"_s}));
        QCOMPARE(stage.mode(), OnSaveMode);
    }

    void textTypedAndNotSavedIsLostByASwitchAndBackAsMeant()
    {
        LatLongStage stage;
        QVERIFY(stage.isReady());
        LocationRecord location;
        location.put("Latitude", u"44"_s);
        stage.read(location);
        stage.lat()->selectAll();
        QTest::keyClicks(stage.lat(), u"45.5"_s);
        QTest::keyClicks(stage.lon(), u"-120"_s);
        stage.click(stage.option(1));
        QCOMPARE(stage.lat()->Text(), u"44"_s);
        stage.click(stage.option(0));
        QCOMPARE(stage.lat()->Text(), u"44"_s);
        QCOMPARE(stage.lon()->Text(), QString());
    }

    void aClickOfTheOptionThatIsOnKeepsWhatWasTyped()
    {
        LatLongStage stage;
        QVERIFY(stage.isReady());
        LocationRecord location;
        stage.read(location);
        QTest::keyClicks(stage.lat(), u"45.5"_s);
        stage.click(stage.option(0));
        QCOMPARE(stage.lat()->Text(), u"45.5"_s);
        QCOMPARE(location.written, QStringList());
    }

    void theBoxesTakeKeysInManualModeOnly()
    {
        LatLongStage stage;
        QVERIFY(stage.isReady());
        LocationRecord location(true);
        stage.read(location);
        stage.click(stage.lat());
        stage.press(Qt::Key_7);
        QCOMPARE(stage.lat()->Text(), QString());
        stage.click(stage.option(0));
        stage.click(stage.lat());
        stage.press(Qt::Key_7);
        QCOMPARE(stage.lat()->Text(), u"7"_s);
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
        location.put("GeocodeOnSave", true);
        location.put("GeocodeStatus", status);
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
        location.put("GeocodeOnSave", true);
        location.put("GeocodeStatus", 4);
        stage.read(location);
        stage.details()->Click.raise();
        QCOMPARE(stage.boxes.texts(), QStringList({u"A geocoding error occurred: "_s}));
    }

    // Writing

    void writingInManualModeWritesTheTextsAlsoWhenEmpty()
    {
        LatLongStage stage;
        QVERIFY(stage.isReady());
        LocationRecord location;
        location.put("Longitude", -121.5);
        stage.read(location);
        QTest::keyClicks(stage.lat(), u" 44.5N"_s);
        stage.lon()->selectAll();
        QTest::keyClick(stage.lon(), Qt::Key_Delete);
        stage.write(location);
        QCOMPARE(location.written,
                 QStringList({u"GeocodeOnSave=False"_s, u"Latitude= 44.5N"_s, u"Longitude="_s}));
        QCOMPARE(location.get("Latitude").typeId(), int(QMetaType::QString));
        QCOMPARE(location.get("Longitude").typeId(), int(QMetaType::QString));
    }

    void writingInGeocodingModeLeavesTheCoordinates()
    {
        LatLongStage stage;
        LocationRecord location;
        location.put("GeocodeOnSave", true);
        location.put("Latitude", 44.5);
        stage.read(location);
        stage.write(location);
        QCOMPARE(location.written, QStringList({u"GeocodeOnSave=True"_s}));
        QCOMPARE(location.get("Latitude"), QVariant(44.5));
    }

    void writingWorksOnTheRecordThatItIsGiven()
    {
        LatLongStage stage;
        LocationRecord shown;
        shown.put("Latitude", u"44"_s);
        stage.read(shown);
        LocationRecord other;
        other.put("GeocodeOnSave", true);
        stage.write(other);
        QCOMPARE(shown.written, QStringList());
        QCOMPARE(other.written, QStringList({u"GeocodeOnSave=False"_s, u"Latitude=44"_s, u"Longitude="_s}));
        stage.option(1)->SetValue(true); // the one that was read stays the one that is shown
        QCOMPARE(shown.written, QStringList({u"GeocodeOnSave=True"_s}));
    }

    void whetherTheCoordinatesAreWrittenIsReadFromTheRowBehindTheWrite_data()
    {
        QTest::addColumn<bool>("onSave");
        QTest::addColumn<QVariant>("kept");
        QTest::addColumn<QStringList>("written");
        const QStringList coordinates{u"Latitude=44"_s, u"Longitude=-121"_s};
        QTest::newRow("a record that insists on geocoding")
            << false << QVariant(true) << QStringList{u"GeocodeOnSave=False"_s};
        QTest::newRow("a record that refuses geocoding")
            << true << QVariant(false) << QStringList{u"GeocodeOnSave=True"_s} + coordinates;
        QTest::newRow("a record that forgets it")
            << true << Null() << QStringList{u"GeocodeOnSave=True"_s} + coordinates;
    }
    void whetherTheCoordinatesAreWrittenIsReadFromTheRowBehindTheWrite()
    {
        QFETCH(bool, onSave);
        QFETCH(QVariant, kept);
        QFETCH(QStringList, written);
        LatLongStage stage;
        LocationRecord location;
        location.put("GeocodeOnSave", onSave);
        location.put("Latitude", u"44"_s);
        location.put("Longitude", u"-121"_s);
        stage.read(location);
        location.follower = [&] { location.put("GeocodeOnSave", kept); };
        stage.write(location);
        QCOMPARE(location.written, written);
    }

    // Failures

    void aFailureOfReadDataIsTold_data()
    {
        QTest::addColumn<bool>("isNew");
        QTest::addColumn<QString>("field");
        QTest::newRow("new row") << true << u"GeocodeOnSave"_s;
        QTest::newRow("coordinate") << false << u"Longitude"_s;
        QTest::newRow("status") << false << u"GeocodeStatus"_s;
    }
    void aFailureOfReadDataIsTold()
    {
        QFETCH(bool, isNew);
        QFETCH(QString, field);
        LatLongStage stage;
        LocationRecord location(isNew);
        location.put("GeocodeOnSave", true);
        location.failing = field;
        stage.read(location);
        checkFailure(stage, u"BoundSection_ReadData"_s, u"no "_s + field);
        location.failing.clear();
        stage.read(location); // and goes on
        QVERIFY(stage.boxes.shown().isEmpty());
        QCOMPARE(stage.mode(), OnSaveMode);
    }

    void aRecordWithoutLocationOrFieldIsTold()
    {
        LatLongStage stage;
        stage.section().ReadData(std::make_shared<FakeRecord>());
        checkFailure(stage, u"BoundSection_ReadData"_s, u"The record has no row LocationName"_s);
        stage.section().WriteData(std::make_shared<FakeRecord>());
        checkFailure(stage, u"BoundSection_WriteData"_s, u"The record has no row LocationName"_s);
        stage.details()->Click.raise(); // the record was stored nevertheless
        checkFailure(stage, u"lnkViewDetails_Click"_s, u"The record has no row LocationName"_s);
        const auto bare = std::make_shared<FakeRecord>();
        bare->setItem(u"LocationName"_s, std::make_shared<FakeRow>(QList<tvFieldPtr>(), false));
        stage.section().ReadData(bare);
        checkFailure(stage, u"BoundSection_ReadData"_s, u"The row has no field Latitude"_s);
    }

    void noRecordIsTold()
    {
        LatLongStage stage;
        stage.section().ReadData(nullptr);
        checkFailure(stage, u"BoundSection_ReadData"_s, u"There is no record"_s);
        stage.section().WriteData(nullptr);
        checkFailure(stage, u"BoundSection_WriteData"_s, u"There is no record"_s);
        stage.details()->Click.raise();
        QVERIFY(stage.boxes.shown().isEmpty());
    }

    void aFailureOfWriteDataIsToldAndNothingIsRolledBack()
    {
        LatLongStage stage;
        LocationRecord location;
        stage.read(location);
        location.failing = u"Longitude"_s;
        stage.write(location); // the save goes on
        checkFailure(stage, u"BoundSection_WriteData"_s, u"no Longitude"_s);
        QCOMPARE(location.written, QStringList({u"GeocodeOnSave=False"_s, u"Latitude="_s}));
    }

    void aFailureOfAnOptionClickIsToldAndDoesNotReachTheClicker()
    {
        const Unhandled unhandled;
        LatLongStage stage;
        QVERIFY(stage.isReady());
        LocationRecord location;
        stage.read(location);
        location.failing = u"GeocodeOnSave"_s;
        stage.click(stage.option(1));
        checkFailure(stage, u"optGeocodeOnSave_Click"_s, u"no GeocodeOnSave"_s);
        QCOMPARE(unhandled.texts, QStringList());
        QCOMPARE(location.written, QStringList());
    }

    void anOptionThatWasRefusedStaysAsClickedAndTheNextSaveTriesItAgain_data()
    {
        QTest::addColumn<bool>("onSave");
        QTest::addColumn<bool>("byKey");
        QTest::newRow("to manual, mouse") << true << false;
        QTest::newRow("to on save, mouse") << false << false;
        QTest::newRow("to manual, arrow key") << true << true;
        QTest::newRow("to on save, arrow key") << false << true;
    }
    void anOptionThatWasRefusedStaysAsClickedAndTheNextSaveTriesItAgain()
    {
        QFETCH(bool, onSave);
        QFETCH(bool, byKey);
        LatLongStage stage;
        QVERIFY(stage.isReady());
        LocationRecord location;
        location.put("GeocodeOnSave", onSave);
        stage.read(location);
        if (!onSave)
            QTest::keyClicks(stage.lat(), u"45"_s);
        location.failing = u"GeocodeOnSave"_s;
        const int other = onSave ? 0 : 1;
        if (byKey) {
            stage.option(1 - other)->setFocus();
            stage.press(onSave ? Qt::Key_Down : Qt::Key_Up);
        } else {
            stage.click(stage.option(other));
        }
        QTRY_COMPARE(stage.boxes.shown().size(), 1);
        checkFailure(stage, u"optGeocodeOnSave_Click"_s, u"no GeocodeOnSave"_s);
        QCOMPARE(stage.mode(), onSave ? ManualMode : OnSaveMode); // with the boxes open in manual mode only
        QCOMPARE(stage.lat()->Text(), onSave ? QString() : u"45"_s);
        QCOMPARE(location.written, QStringList());
        stage.write(location); // refused once more
        checkFailure(stage, u"BoundSection_WriteData"_s, u"no GeocodeOnSave"_s);
        QCOMPARE(stage.mode(), onSave ? ManualMode : OnSaveMode);
        QCOMPARE(location.written, QStringList());
        if (onSave) {
            stage.click(stage.lat());
            stage.press(Qt::Key_7);
        }
        location.failing.clear();
        stage.write(location);
        QCOMPARE(location.written,
                 onSave ? QStringList({u"GeocodeOnSave=False"_s, u"Latitude=7"_s, u"Longitude="_s})
                        : QStringList({u"GeocodeOnSave=True"_s}));
        QVERIFY(stage.boxes.shown().isEmpty());
    }

    void theWarningGoesWithARefusedOptionOfTypedCoordinatesToo()
    {
        LatLongStage stage;
        QVERIFY(stage.isReady());
        LocationRecord location;
        location.put("GeocodeOnSave", true);
        location.put("GeocodeStatus", 1);
        stage.read(location);
        QCOMPARE(stage.warning(), u"Address not found."_s);
        location.failing = u"GeocodeOnSave"_s;
        stage.click(stage.option(0));
        QCOMPARE(stage.boxes.take().size(), 1);
        QCOMPARE(stage.mode(), ManualMode);
        QCOMPARE(stage.warning(), QString());
    }

    void aRefusedOptionIsTriedAgainByAClickOfTheOtherAndBack()
    {
        LatLongStage stage;
        QVERIFY(stage.isReady());
        LocationRecord location;
        location.put("GeocodeOnSave", true);
        stage.read(location);
        location.failing = u"GeocodeOnSave"_s;
        stage.click(stage.option(0));
        stage.boxes.take();
        location.failing.clear();
        stage.click(stage.option(0)); // it is on, so this is no click of it
        QCOMPARE(location.written, QStringList());
        stage.click(stage.option(1));
        stage.click(stage.option(0));
        QCOMPARE(location.written, QStringList({u"GeocodeOnSave=True"_s, u"GeocodeOnSave=False"_s}));
        QCOMPARE(stage.mode(), ManualMode);
    }

    void anOptionThatWasWrittenAndCouldNotBeShownStaysAsClickedToo()
    {
        LatLongStage stage;
        QVERIFY(stage.isReady());
        LocationRecord location;
        location.put("Latitude", u"44"_s);
        stage.read(location);
        location.failing = u"Latitude"_s; // it is read behind the write
        stage.click(stage.option(1));
        checkFailure(stage, u"optGeocodeOnSave_Click"_s, u"no Latitude"_s);
        QCOMPARE(location.written, QStringList{u"GeocodeOnSave=True"_s});
        QCOMPARE(stage.mode(), OnSaveMode);
        location.failing = u"GeocodeOnSave"_s;
        stage.click(stage.option(0));
        checkFailure(stage, u"optGeocodeOnSave_Click"_s, u"no GeocodeOnSave"_s);
        QCOMPARE(stage.mode(), ManualMode);
        QCOMPARE(stage.lat()->Text(), u"44"_s);
    }

    void behindAReadThatFailedARefusedOptionOpensNothing()
    {
        LatLongStage stage;
        QVERIFY(stage.isReady());
        LocationRecord location;
        location.failing = u"GeocodeOnSave"_s;
        stage.read(location);
        stage.click(stage.option(0));
        QCOMPARE(stage.boxes.take().size(), 2);
        QVERIFY(stage.option(0)->Value());
        QVERIFY(!stage.lat()->isEnabled() && !stage.lon()->isEnabled());
        stage.write(location); // nothing has been read yet
        checkFailure(stage, u"BoundSection_WriteData"_s,
                     u"No coordinates have been read, so none are written."_s);
    }

    // One record's values never reach another

    void aReadThatFailsShowsNothingAndNothingIsWrittenUntilARecordCanBeRead_data()
    {
        QTest::addColumn<bool>("isNew");
        QTest::addColumn<bool>("onSaveBefore");
        QTest::addColumn<QString>("field");
        for (const bool before : {true, false}) {
            const char* name = before ? "on save" : "manual";
            QTest::addRow("first coordinate, %s", name) << false << before << u"Latitude"_s;
            QTest::addRow("second coordinate, %s", name) << false << before << u"Longitude"_s;
            QTest::addRow("choice, %s", name) << false << before << u"GeocodeOnSave"_s;
            QTest::addRow("choice of a new row, %s", name) << true << before << u"GeocodeOnSave"_s;
        }
    }
    void aReadThatFailsShowsNothingAndNothingIsWrittenUntilARecordCanBeRead()
    {
        QFETCH(bool, isNew);
        QFETCH(bool, onSaveBefore);
        QFETCH(QString, field);
        LatLongStage stage;
        LocationRecord before;
        before.put("GeocodeOnSave", onSaveBefore);
        before.put("GeocodeStatus", 1);
        before.put("Latitude", u"44"_s);
        before.put("Longitude", u"-121"_s);
        stage.read(before);
        LocationRecord location(isNew);
        location.put("Latitude", u"55"_s);
        location.put("Longitude", u"-5"_s);
        location.failing = field;
        stage.read(location);
        checkFailure(stage, u"BoundSection_ReadData"_s, u"no "_s + field);
        for (TextBox* box : {stage.lat(), stage.lon()}) {
            QCOMPARE(box->Text(), QString());
            QVERIFY(!box->isEnabled());
            QCOMPARE(box->BackColor(), Color(0x8000000FU));
        }
        QVERIFY(!stage.option(0)->Value() && !stage.option(1)->Value());
        QCOMPARE(stage.warning(), QString());
        location.failing.clear();
        stage.write(location);
        checkFailure(stage, u"BoundSection_WriteData"_s,
                     u"No coordinates have been read, so none are written."_s);
        QCOMPARE(location.written, QStringList());
        QCOMPARE(before.written, QStringList());
        QCOMPARE(location.get("Latitude"), QVariant(u"55"_s));
        stage.option(0)->SetValue(true); // a choice reads again
        QCOMPARE(stage.mode(), ManualMode);
        QCOMPARE(stage.lat()->Text(), u"55"_s);
        stage.write(location);
        QCOMPARE(location.written, QStringList({u"GeocodeOnSave=False"_s, u"GeocodeOnSave=False"_s,
                                                u"Latitude=55"_s, u"Longitude=-5"_s}));
        QVERIFY(stage.boxes.shown().isEmpty());
    }

    void whicheverCallOfTheRecordFailsInAReadNothingOfAnotherRecordIsShownOrWritten_data()
    {
        QTest::addColumn<bool>("onSave");
        QTest::addColumn<bool>("isNew");
        QTest::newRow("on save") << true << false;
        QTest::newRow("manual") << false << false;
        QTest::newRow("new") << true << true;
    }
    void whicheverCallOfTheRecordFailsInAReadNothingOfAnotherRecordIsShownOrWritten()
    {
        QFETCH(bool, onSave);
        QFETCH(bool, isNew);
        int failures = 0;
        int withoutWarning = 0;
        for (bool failed = true; failed; ++failures) {
            LatLongStage stage;
            LocationRecord before;
            before.put("GeocodeOnSave", !onSave);
            before.put("Latitude", u"44"_s);
            before.put("Longitude", u"-121"_s);
            stage.read(before);
            LocationRecord location(isNew);
            location.put("GeocodeOnSave", onSave);
            location.put("GeocodeStatus", 1);
            location.put("Latitude", u"55"_s);
            location.put("Longitude", u"-5"_s);
            RecordCalls calls;
            const auto record = std::make_shared<FailingRecord>(location.record, calls);
            calls.failing = failures + 1;
            stage.section().ReadData(record);
            failed = calls.hasFailed();
            calls.heal();
            QCOMPARE(stage.boxes.take().size(), failed ? 1 : 0);
            location.written.clear();
            const QStringList shown{stage.lat()->Text(), stage.lon()->Text(), stage.mode()};
            stage.section().WriteData(record);
            if (failed && shown.first().isEmpty()) {
                QCOMPARE(shown, QStringList({QString(), QString(), u"both options or none"_s}));
                QVERIFY(!stage.lat()->isEnabled() && !stage.lon()->isEnabled());
                QCOMPARE(stage.boxes.take().size(), 1);
                QCOMPARE(location.written, QStringList());
            } else {
                // Nothing but the warning could not be worked out: the coordinates are this record's.
                withoutWarning += failed ? 1 : 0;
                QCOMPARE(shown, QStringList({u"55"_s, u"-5"_s, onSave ? OnSaveMode : ManualMode}));
                QCOMPARE(stage.boxes.take().size(), 0);
                QCOMPARE(location.written, onSave ? QStringList{u"GeocodeOnSave=True"_s}
                                                  : QStringList({u"GeocodeOnSave=False"_s, u"Latitude=55"_s,
                                                                 u"Longitude=-5"_s}));
            }
            QCOMPARE(stage.warning().isEmpty(), failed || isNew || !onSave);
            QCOMPARE(before.written, QStringList());
        }
        QVERIFY2(failures > 8, qPrintable(QString::number(failures)));
        QCOMPARE(withoutWarning > 0, onSave);
    }

    void aRecordThatCannotBeFoundLeavesNothingOfTheOneBefore()
    {
        LatLongStage stage;
        LocationRecord before;
        before.put("Latitude", u"44"_s);
        stage.read(before);
        stage.section().ReadData(std::make_shared<FakeRecord>());
        stage.boxes.take();
        QCOMPARE(stage.lat()->Text(), QString());
        stage.write(before); // whichever record it is asked to write
        QCOMPARE(before.written, QStringList());
        QCOMPARE(stage.boxes.take().size(), 1);
    }

    void writingBeforeAnyReadWritesNothingAndTellsSo()
    {
        LatLongStage stage;
        QVERIFY(stage.isReady());
        LocationRecord location;
        location.put("GeocodeOnSave", true);
        location.put("Latitude", u"44"_s);
        QTest::keyClicks(stage.lat(), u"12"_s);
        stage.write(location);
        checkFailure(stage, u"BoundSection_WriteData"_s,
                     u"No coordinates have been read, so none are written."_s);
        QCOMPARE(location.written, QStringList());
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
        poor.put("GeocodeOnSave", true);
        poor.put("GeocodeStatus", 0);
        stage.read(poor);
        QCOMPARE(stage.warning(), PoorMatch);
        LocationRecord location;
        location.put("GeocodeOnSave", true);
        location.put("GeocodeStatus", 1);
        location.put("Latitude", u"55"_s);
        location.failing = field;
        stage.read(location);
        checkFailure(stage, u"BoundSection_ReadData"_s, u"no "_s + field);
        QCOMPARE(stage.warning(), QString());
        QCOMPARE(stage.mode(), OnSaveMode);
        QCOMPARE(stage.lat()->Text(), u"55"_s);
        stage.write(location);
        QCOMPARE(location.written, QStringList{u"GeocodeOnSave=True"_s});
        QVERIFY(stage.boxes.shown().isEmpty());
    }

    void aFailureOfTheDetailsClickIsTold()
    {
        const Unhandled unhandled;
        LatLongStage stage;
        QVERIFY(stage.isReady());
        LocationRecord location;
        location.put("GeocodeOnSave", true);
        location.put("GeocodeStatus", 4);
        stage.read(location);
        location.failing = u"GeocodeError"_s;
        stage.click(stage.details());
        checkFailure(stage, u"lnkViewDetails_Click"_s, u"no GeocodeError"_s);
        QCOMPARE(unhandled.texts, QStringList());
    }

    // Followers

    void aFollowerOfTheRecordMayDeleteTheControl_data()
    {
        QTest::addColumn<std::function<void(LatLongStage&, LocationRecord&)>>("act");
        using Act = std::function<void(LatLongStage&, LocationRecord&)>;
        QTest::newRow("reading") << Act(
            [](LatLongStage& stage, LocationRecord& location) { stage.read(location); });
        QTest::newRow("writing") << Act([](LatLongStage& stage, LocationRecord& location) {
            location.follower = {};
            stage.read(location);
            location.follower = [&stage] { delete stage.control.data(); };
            stage.write(location);
        });
        const auto clicking = [](LatLongStage& stage, LocationRecord& location) {
            location.follower = {};
            stage.read(location);
            location.follower = [&stage] { delete stage.control.data(); };
            stage.click(stage.option(0));
        };
        QTest::newRow("clicking") << Act(clicking);
    }
    void aFollowerOfTheRecordMayDeleteTheControl()
    {
        QFETCH(std::function<void(LatLongStage&, LocationRecord&)>, act);
        LatLongStage stage;
        QVERIFY(stage.isReady());
        LocationRecord location(true);
        location.follower = [&stage] { delete stage.control.data(); };
        act(stage, location);
        QVERIFY(!stage.control);
        QVERIFY(stage.boxes.shown().isEmpty());
    }
};

TAVRIN_TEST_MAIN(tst_LatLong)
#include "tst_LatLong.moc"
