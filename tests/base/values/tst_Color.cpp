#include "base/values/Color.h"
#include "support/TestCase.h"

using tavrin::Color;
namespace SystemColor = tavrin::SystemColor;

namespace {

/// A palette in which each role of each group has a colour of its own.
QPalette distinctPalette(int seed)
{
    QPalette palette;
    for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        for (int role = 0; role < QPalette::NColorRoles; ++role)
            palette.setColor(group, static_cast<QPalette::ColorRole>(role), QColor(role, group, seed));
    }
    return palette;
}

} // namespace

class tst_Color : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aPlainColourHasBlueInItsHighByte()
    {
        constexpr Color color(0x00FCE77EU);
        QVERIFY(!color.isSystem());
        QCOMPARE(color.resolve(QPalette()), QColor(0x7E, 0xE7, 0xFC));
        QCOMPARE(color.role(), QPalette::NoRole);
        QCOMPARE(Color::rgb(0x7E, 0xE7, 0xFC), color);
        QCOMPARE(Color().value(), 0U);
        QCOMPARE(Color().resolve(QPalette()), QColor(Qt::black));
        QVERIFY(Color(1) != Color(2));
    }

    void aSystemIndexResolvesThroughThePalette_data()
    {
        QTest::addColumn<quint32>("value");
        QTest::addColumn<QPalette::ColorRole>("role");
        QTest::newRow("window background") << 0x80000005U << QPalette::Base;
        QTest::newRow("window text") << 0x80000008U << QPalette::Text;
        QTest::newRow("highlight") << 0x8000000DU << QPalette::Highlight;
        QTest::newRow("highlight text") << 0x8000000EU << QPalette::HighlightedText;
        QTest::newRow("button face") << 0x8000000FU << QPalette::Window;
        QTest::newRow("button text") << 0x80000012U << QPalette::WindowText;
        QTest::newRow("light") << 0x80000016U << QPalette::Midlight;
        QTest::newRow("tooltip text") << 0x80000017U << QPalette::ToolTipText;
        QTest::newRow("tooltip background") << 0x80000018U << QPalette::ToolTipBase;
        QTest::newRow("unknown index") << 0x8000007FU << QPalette::WindowText;
        QTest::newRow("unknown index above a byte") << 0x80000105U << QPalette::WindowText;
    }
    void aSystemIndexResolvesThroughThePalette()
    {
        QFETCH(quint32, value);
        QFETCH(QPalette::ColorRole, role);
        const Color color(value);
        QVERIFY(color.isSystem());
        QCOMPARE(color.role(), role);
        QPalette palette = distinctPalette(1);
        palette.setCurrentColorGroup(QPalette::Active);
        QCOMPARE(color.resolve(palette), QColor(role, QPalette::Active, 1));
        palette.setCurrentColorGroup(QPalette::Inactive);
        QCOMPARE(color.resolve(palette), QColor(role, QPalette::Inactive, 1));
        // The same colour object shows another theme at once.
        QCOMPARE(color.resolve(distinctPalette(2)).blue(), 2);
    }

    void greyTextIsTheTextOfDisabledThings()
    {
        QPalette palette = distinctPalette(1);
        palette.setCurrentColorGroup(QPalette::Active);
        QCOMPARE(SystemColor::GreyText.value(), 0x80000011U);
        QCOMPARE(SystemColor::GreyText.resolve(palette), QColor(QPalette::Text, QPalette::Disabled, 1));
    }

    void aColourTravelsInAVariant()
    {
        const QVariant value = QVariant::fromValue(SystemColor::ButtonFace);
        QVERIFY(value.canConvert<Color>());
        QCOMPARE(value.value<Color>(), SystemColor::ButtonFace);
        QVERIFY(!QVariant(5).canConvert<Color>());
    }
};

TAVRIN_TEST_MAIN(tst_Color)
#include "tst_Color.moc"
