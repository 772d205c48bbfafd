#include "geocode/LatLongStage.h"
#include "testing/Unhandled.h"

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

/// A choice that the record refuses.
class tst_LatLongRefusedOption : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aFailureOfAnOptionClickIsToldAndDoesNotReachTheClicker()
    {
        const Unhandled unhandled;
        LatLongStage stage;
        QVERIFY(stage.isReady());
        LocationRecord location;
        stage.read(location);
        location.failing = u"GeocodeOnSave"_s;
        stage.click(stage.option(1));
        stage.checkFailure(u"optGeocodeOnSave_Click"_s, u"no GeocodeOnSave"_s);
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
        stage.checkFailure(u"optGeocodeOnSave_Click"_s, u"no GeocodeOnSave"_s);
        QCOMPARE(stage.mode(), onSave ? ManualMode : OnSaveMode); // with the boxes open in manual mode only
        QCOMPARE(stage.lat()->Text(), onSave ? QString() : u"45"_s);
        QCOMPARE(location.written, QStringList());
        stage.write(location); // refused once more
        stage.checkFailure(u"BoundSection_WriteData"_s, u"no GeocodeOnSave"_s);
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
        stage.checkFailure(u"optGeocodeOnSave_Click"_s, u"no Latitude"_s);
        QCOMPARE(location.written, QStringList{u"GeocodeOnSave=True"_s});
        QCOMPARE(stage.mode(), OnSaveMode);
        location.failing = u"GeocodeOnSave"_s;
        stage.click(stage.option(0));
        stage.checkFailure(u"optGeocodeOnSave_Click"_s, u"no GeocodeOnSave"_s);
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
        stage.checkNothingIsRead();
    }
};

TAVRIN_TEST_MAIN(tst_LatLongRefusedOption)
#include "tst_LatLongRefusedOption.moc"
