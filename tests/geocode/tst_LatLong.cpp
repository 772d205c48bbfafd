#include "geocode/LatLongStage.h"

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

/// What reading shows, what a choice does, and what is written.
class tst_LatLong : public tavrin::test::TestCase
{
    Q_OBJECT

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
            location.putCoordinates(u"44.05"_s, -121.25);
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
        location.putGeocoded(1);
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
        location.putCoordinates(u"44"_s, u"-121"_s);
        stage.read(location);
        location.follower = [&] { location.put("GeocodeOnSave", kept); };
        stage.write(location);
        QCOMPARE(location.written, written);
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
