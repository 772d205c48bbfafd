#include "attachments/section/CoverStage.h"

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

/// The cover image follows its record, also while it fetches a thumbnail.
class tst_CoverImageChanges : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // Following the primary row

    void aChangeOfThePrimaryRowShowsTheNewCover()
    {
        CoverStage stage;
        stage.add(1, u"a.png"_s, Red);
        stage.add(2, u"b.png"_s, Blue);
        stage.show();
        stage.read();
        stage.verifyNoCover();
        stage.rows->SetPrimaryValue(1);
        stage.verifyCover(Red);
        stage.rows->SetPrimaryValue(2);
        stage.verifyCover(Blue);
    }

    void aPrimaryRowOfNullShowsNoCoverAtOnceWithoutReadingTheCollection()
    {
        CoverStage stage;
        stage.openWithRedCover();
        stage.takeLog();
        const qint64 reads = stage.rows->reads;
        stage.rows->PrimaryStatusChanged.raise(Null()); // although the collection still has a primary row
        stage.verifyNoCover();
        QCOMPARE(stage.rows->reads, reads);
        QCOMPARE(stage.takeLog(), QStringList());
    }

    void theValueOfTheEventIsNotUsedTheCollectionIsRead()
    {
        CoverStage stage;
        stage.add(1, u"a.png"_s, Red);
        stage.add(2, u"b.png"_s, Blue);
        stage.rows->SetPrimaryValue(1);
        stage.show();
        stage.read();
        stage.rows->PrimaryStatusChanged.raise(2);
        stage.verifyCover(Red);
        stage.rows->PrimaryStatusChanged.raise(QVariant()); // Empty is not Null
        stage.verifyCover(Red);
    }

    void removingTheLastImageShowsNoCover()
    {
        CoverStage stage;
        stage.openWithRedCover();
        stage.rows->RemoveCurrent(false); // the collection tells that no row is primary any more
        stage.verifyNoCover();
    }

    void theRecordBeforeIsFollowedNoLonger()
    {
        CoverStage stage;
        stage.add(1, u"a.png"_s, Red);
        stage.show();
        stage.read();
        const auto before = stage.rows;
        stage.replaceRows();
        stage.read();
        stage.takeLog();
        before->SetPrimaryValue(1);
        stage.verifyNoCover();
        QCOMPARE(stage.takeLog(), QStringList());
    }

    void aFailureOfTheCollectionReachesWhoeverMovedThePrimaryRow()
    {
        CoverStage stage;
        stage.show();
        stage.read();
        const tvTableRowPtr row = stage.rows->AddNew();
        put(*row, {{"SeqNo", 1}, {"FileName", u"a.png"_s}});
        stage.host.failWith(Error(u"no rule"_s)); // whether a row is an image is asked aloud
        QString raised;
        try {
            stage.rows->SetPrimaryValue(1);
        } catch (const Error& error) {
            raised = error.Description;
        }
        QCOMPARE(raised, u"no rule"_s);
        stage.host.failWith({});
    }

    // While a thumbnail is fetched

    void aRecordThatIsReadMeanwhileStays_data()
    {
        QTest::addColumn<bool>("hasCover");
        QTest::newRow("with a cover") << true;
        QTest::newRow("without a cover") << false;
    }
    void aRecordThatIsReadMeanwhileStays()
    {
        QFETCH(bool, hasCover);
        CoverStage stage;
        stage.addRedCover();
        stage.show();
        stage.meanwhile([&] {
            stage.replaceRows();
            stage.add(2, u"b.png"_s, Blue);
            if (hasCover)
                stage.rows->SetPrimaryValue(2);
            stage.read();
        });
        stage.read();
        if (hasCover)
            stage.verifyCover(Blue);
        else
            stage.verifyNoCover();
        QCOMPARE(stage.control->accessibleDescription(), hasCover ? u"b.png"_s : u"No cover image"_s);
    }

    void aPrimaryRowThatIsChosenMeanwhileStays_data()
    {
        QTest::addColumn<QVariant>("primary");
        QTest::newRow("another image") << QVariant(2);
        QTest::newRow("none") << Null();
    }
    void aPrimaryRowThatIsChosenMeanwhileStays()
    {
        QFETCH(QVariant, primary);
        CoverStage stage;
        stage.add(1, u"a.png"_s, Red);
        stage.add(2, u"b.png"_s, Blue);
        stage.rows->SetPrimaryValue(1);
        stage.show();
        stage.meanwhile([&] { stage.rows->SetPrimaryValue(primary); });
        stage.read();
        if (IsNull(primary))
            stage.verifyNoCover();
        else
            stage.verifyCover(Blue);
    }

    void theSizeThatItGetsMeanwhileStays()
    {
        CoverStage stage;
        stage.addRedCover();
        stage.show();
        stage.host.state().fitPicture = [](const QImage&, int height, int width, Color) {
            QImage fitted(width, height, QImage::Format_RGB32);
            fitted.fill(width == 110 ? Blue : Red);
            return fitted;
        };
        stage.read();
        stage.verifyCover(Red);
        stage.meanwhile([&] { stage.control->resize(110, 150); });
        stage.control->resize(130, 150);
        QCOMPARE(stage.control->size(), QSize(110, 150));
        stage.verifyCover(Blue);
    }

    // Life

    void theCollectionMayOutliveTheControl()
    {
        CoverStage stage;
        stage.add(1, u"a.png"_s, Red);
        stage.read();
        delete stage.control;
        stage.takeLog();
        stage.rows->SetPrimaryValue(1);
        QCOMPARE(stage.takeLog(), QStringList());
    }

    void theControlMayOutliveTheRecord()
    {
        CoverStage stage;
        stage.openWithRedCover();
        stage.record.reset();
        stage.rows.reset();
        stage.control->resize(130, 160);
        QVERIFY(!stage.noImage().isVisible());
    }

    void theControlMayDieWhileTheThumbnailIsFetched()
    {
        CoverStage stage;
        stage.addRedCover();
        stage.show();
        bool raised = false;
        auto* section = static_cast<BoundSection*>(stage.control);
        stage.host.state().duringTransfer = [&](const QString&, qint64, qint64) {
            delete std::exchange(stage.control, nullptr);
        };
        try {
            section->ReadData(stage.record);
        } catch (const Error&) {
            raised = true;
        }
        QVERIFY(!raised);
        QVERIFY(!stage.control);
    }

    void theControlMayDieInAResizeWhileTheThumbnailIsFetched()
    {
        CoverStage stage;
        stage.openWithRedCover();
        int steps = 0;
        stage.host.state().duringTransfer = [&](const QString&, qint64, qint64) {
            if (++steps == 1)
                stage.control->deleteLater(); // as a form that closes itself
        };
        stage.control->resize(81, 90);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(steps > 0);
        QCOMPARE(stage.unhandled.texts, QStringList());
    }
};

TAVRIN_TEST_MAIN(tst_CoverImageChanges)
#include "tst_CoverImageChanges.moc"
