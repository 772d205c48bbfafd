#include "frame/memory_records/MemoryField.h"
#include "frame/memory_records/MemoryRow.h"
#include "geocode/LatLongStage.h"
#include "support/FailingRecords.h"

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

/// Failures of a read or a write: they are told, and no values of one record reach another.
class tst_LatLongFailures : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
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
        stage.checkFailure(u"BoundSection_ReadData"_s, u"no "_s + field);
        location.failing.clear();
        stage.read(location); // and goes on
        QVERIFY(stage.boxes.shown().isEmpty());
        QCOMPARE(stage.mode(), OnSaveMode);
    }

    void aRecordWithoutLocationOrFieldIsTold()
    {
        LatLongStage stage;
        stage.section().ReadData(std::make_shared<FakeRecord>());
        stage.checkFailure(u"BoundSection_ReadData"_s, u"The record has no row LocationName"_s);
        stage.section().WriteData(std::make_shared<FakeRecord>());
        stage.checkFailure(u"BoundSection_WriteData"_s, u"The record has no row LocationName"_s);
        stage.details()->Click.raise(); // the record was stored nevertheless
        stage.checkFailure(u"lnkViewDetails_Click"_s, u"The record has no row LocationName"_s);
        const auto bare = std::make_shared<FakeRecord>();
        bare->SetItem(u"LocationName"_s, std::make_shared<MemoryRow>(QList<tvFieldPtr>(), false));
        stage.section().ReadData(bare);
        stage.checkFailure(u"BoundSection_ReadData"_s, u"The row has no field Latitude"_s);
    }

    void noRecordIsTold()
    {
        LatLongStage stage;
        stage.section().ReadData(nullptr);
        stage.checkFailure(u"BoundSection_ReadData"_s, u"There is no record"_s);
        stage.section().WriteData(nullptr);
        stage.checkFailure(u"BoundSection_WriteData"_s, u"There is no record"_s);
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
        stage.checkFailure(u"BoundSection_WriteData"_s, u"no Longitude"_s);
        QCOMPARE(location.written, QStringList({u"GeocodeOnSave=False"_s, u"Latitude="_s}));
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
        stage.checkNothingIsRead();
        QCOMPARE(location.written, QStringList());
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
        before.putCoordinates(u"44"_s, u"-121"_s);
        stage.read(before);
        LocationRecord location(isNew);
        location.putCoordinates(u"55"_s, u"-5"_s);
        location.failing = field;
        stage.read(location);
        stage.checkFailure(u"BoundSection_ReadData"_s, u"no "_s + field);
        for (TextBox* box : {stage.lat(), stage.lon()}) {
            QCOMPARE(box->Text(), QString());
            QVERIFY(!box->isEnabled());
            QCOMPARE(box->BackColor(), Color(0x8000000FU));
        }
        QVERIFY(!stage.option(0)->Value() && !stage.option(1)->Value());
        QCOMPARE(stage.warning(), QString());
        location.failing.clear();
        stage.write(location);
        stage.checkNothingIsRead();
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
            before.putCoordinates(u"44"_s, u"-121"_s);
            stage.read(before);
            LocationRecord location(isNew);
            location.put("GeocodeOnSave", onSave);
            location.put("GeocodeStatus", 1);
            location.putCoordinates(u"55"_s, u"-5"_s);
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
};

TAVRIN_TEST_MAIN(tst_LatLongFailures)
#include "tst_LatLongFailures.moc"
