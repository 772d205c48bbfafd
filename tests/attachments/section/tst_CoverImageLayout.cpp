#include "attachments/section/CoverStage.h"
#include "support/OtherDensity.h"
#include "widgets/labels/Label.h"

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

/// Where the parts of the cover image stand, and the picture at each size.
class tst_CoverImageLayout : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // The parts

    void theConstituentsStandWhereTheyWereDesigned()
    {
        CoverStage stage;
        QCOMPARE(stage.border().geometry(), QRect(0, 0, 25, 25));
        QCOMPARE(stage.noImage().geometry(), QRect(36, 44, 95, 97));
        QCOMPARE(stage.control->findChild<QWidget*>(u"imgIcon"_s)->geometry(), QRect(24, 8, 48, 48));
        auto* label = stage.control->findChild<Label*>(u"Label1"_s);
        QCOMPARE(label->geometry(), QRect(0, 60, 95, 17));
        QCOMPARE(label->Caption(), u"No cover image"_s);
        QVERIFY(label->alignment().testFlag(Qt::AlignHCenter));
    }

    void aResizeBeforeTheFirstRecordWorksAndShowsNoCover()
    {
        CoverStage stage;
        stage.show();
        stage.control->resize(200, 220);
        stage.verifyNoCover();
        QCOMPARE(stage.noImage().pos(), QPoint(100 - 47, 110 - 48));
    }

    void theBorderGoesAroundTheWholeControlAndTheSignKeepsItsSizeInTheMiddle()
    {
        CoverStage stage;
        stage.show();
        stage.control->resize(201, 221);
        QCOMPARE(stage.border().geometry(), QRect(0, 0, 201, 221));
        QCOMPARE(stage.noImage().geometry(), QRect(53, 62, 95, 97));
        stage.control->resize(41, 41); // smaller than the sign
        QCOMPARE(stage.noImage().geometry(), QRect(-27, -28, 95, 97));
    }

    void aFailureInTheMiddleOfAResizeLeavesTheRestOfTheLayoutAppliedAndIsNotSeen()
    {
        CoverStage stage;
        stage.openWithRedCover();
        stage.host.failWith(Error(u"no host"_s));
        stage.control->resize(201, 221);
        stage.host.failWith({});
        QCOMPARE(stage.border().geometry(), QRect(0, 0, 201, 221));
        QCOMPARE(stage.noImage().geometry(), QRect(53, 62, 95, 97));
        stage.verifyNoMessage();
    }

    // The picture

    void thePictureFillsTheControlInsideOfItsBorder()
    {
        CoverStage stage;
        stage.openWithRedCover();
        const QImage seen = stage.control->grab().toImage();
        for (const QPoint& place : {QPoint(2, 75), QPoint(117, 75), QPoint(60, 2), QPoint(60, 147)})
            QCOMPARE(seen.pixelColor(place), Red);
        QVERIFY(seen.pixelColor(0, 75) != Red); // the border is in front
        QVERIFY(seen.pixelColor(119, 75) != Red);
        QVERIFY(seen.pixelColor(0, 0) != Red); // round corners
    }

    void eachResizeFetchesAndFitsThePictureAnew()
    {
        CoverStage stage;
        stage.openWithRedCover();
        const int before = stage.downloads();
        stage.host.state().given.clear();
        stage.control->resize(80, 90);
        stage.control->resize(81, 90);
        QCOMPARE(stage.downloads(), before + 2);
        QCOMPARE(stage.host.state().given.filter(u"FitPicture"_s).last(),
                 u"FitPicture height 90 width 81 mode 1 flag -1 colour 80000016 reserved 0"_s);
        QVERIFY(!stage.noImage().isVisible());
    }

    void aPictureOfAnotherSizeKeepsItsShapeUntilTheNextOneIsThere_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QPoint>("outside");
        QTest::newRow("higher") << QSize(120, 290) << QPoint(60, 35);
        QTest::newRow("wider") << QSize(280, 150) << QPoint(40, 75);
    }
    void aPictureOfAnotherSizeKeepsItsShapeUntilTheNextOneIsThere()
    {
        QFETCH(QSize, size);
        QFETCH(QPoint, outside);
        CoverStage stage;
        stage.openWithRedCover();
        QImage seen;
        stage.meanwhile([&] { seen = stage.control->grab().toImage(); });
        stage.control->resize(size);
        QCOMPARE(seen.size(), size);
        const QPoint middle(size.width() / 2, size.height() / 2);
        for (const QPoint& corner : {QPoint(-55, -70), QPoint(55, 70)})
            QCOMPARE(seen.pixelColor(middle + corner), Red);
        QVERIFY(seen.pixelColor(outside) != Red);
        QCOMPARE(stage.control->grab().toImage().pixelColor(outside), Red); // the next one fills it
    }

    void onADenseScreenThePictureHasThePixelsOfTheScreen()
    {
        if (!qEnvironmentVariableIsSet("QT_SCALE_FACTOR")) {
            QVERIFY(passesAtDensity(u"1.5"_s));
            return;
        }
        CoverStage stage;
        stage.addRedCover();
        stage.show();
        QCOMPARE(stage.control->devicePixelRatioF(), 1.5);
        stage.host.state().given.clear();
        stage.read();
        QCOMPARE(stage.host.state().given.filter(u"FitPicture"_s),
                 QStringList{u"FitPicture height 225 width 180 mode 1 flag -1 colour 80000016 reserved 0"_s});
        // All of it shows, and nothing but it.
        const QImage seen = stage.control->grab().toImage();
        QCOMPARE(seen.size(), QSize(180, 225));
        for (const QPoint& place : {QPoint(4, 112), QPoint(175, 112), QPoint(90, 4), QPoint(90, 220)})
            QCOMPARE(seen.pixelColor(place), Red);
    }
};

TAVRIN_TEST_MAIN(tst_CoverImageLayout)
#include "tst_CoverImageLayout.moc"
