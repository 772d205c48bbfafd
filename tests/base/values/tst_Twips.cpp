#include "base/values/Twips.h"
#include "support/TestCase.h"

using tavrin::ScaleMode;
using tavrin::Twips;

class tst_Twips : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aPixelIsFifteenTwipsAndTheRoundingIsToTheNearest_data()
    {
        QTest::addColumn<float>("twips");
        QTest::addColumn<int>("pixels");
        QTest::newRow("nothing") << 0.0F << 0;
        QTest::newRow("whole") << 1500.0F << 100;
        QTest::newRow("below the half") << 22.4F << 1;
        QTest::newRow("half") << 22.5F << 2;
        QTest::newRow("above the half") << 23.0F << 2;
        QTest::newRow("negative") << -30.0F << -2;
        QTest::newRow("negative half") << -22.5F << -2;
    }
    void aPixelIsFifteenTwipsAndTheRoundingIsToTheNearest()
    {
        QFETCH(float, twips);
        QTEST(tavrin::toPixels(twips), "pixels");
    }

    void pixelsSurviveTheWayToTwipsAndBack()
    {
        for (int pixels = -4000; pixels <= 4000; ++pixels)
            QCOMPARE(tavrin::toPixels(tavrin::toTwips(pixels)), pixels);
    }

    void unitsOfAContainer_data()
    {
        QTest::addColumn<ScaleMode>("mode");
        QTest::addColumn<float>("x");
        QTest::addColumn<float>("y");
        QTest::newRow("user") << ScaleMode::User << 1.0F << 1.0F;
        QTest::newRow("twips") << ScaleMode::Twips << 1.0F << 1.0F;
        QTest::newRow("points") << ScaleMode::Points << 20.0F << 20.0F;
        QTest::newRow("pixels") << ScaleMode::Pixels << 15.0F << 15.0F;
        QTest::newRow("characters") << ScaleMode::Characters << 120.0F << 240.0F;
        QTest::newRow("inches") << ScaleMode::Inches << 1440.0F << 1440.0F;
        QTest::newRow("millimeters") << ScaleMode::Millimeters << 56.6929F << 56.6929F;
        QTest::newRow("centimeters") << ScaleMode::Centimeters << 566.929F << 566.929F;
    }
    void unitsOfAContainer()
    {
        QFETCH(ScaleMode, mode);
        QFETCH(float, x);
        QFETCH(float, y);
        QCOMPARE(tavrin::twipsPerUnitX(mode), x);
        QCOMPARE(tavrin::twipsPerUnitY(mode), y);
    }

    void theNumbersOfTheScaleModesAreTheHosts()
    {
        QCOMPARE(static_cast<int>(ScaleMode::Twips), 1);
        QCOMPARE(static_cast<int>(ScaleMode::Pixels), 3);
        QCOMPARE(static_cast<int>(ScaleMode::Centimeters), 7);
    }
};

TAVRIN_TEST_MAIN(tst_Twips)
#include "tst_Twips.moc"
