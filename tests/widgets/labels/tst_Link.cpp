#include "base/values/Color.h"
#include "base/values/Font.h"
#include "support/Looks.h"
#include "support/TestCase.h"
#include "widgets/drawing/IconGlyphs.h"
#include "widgets/labels/Link.h"
#include "widgets/labels/LinkStage.h"

#include <QAccessible>
#include <QFontMetrics>

using namespace Qt::StringLiterals;
using namespace tavrin::test;
using tavrin::Color;
using tavrin::Link;

/// The sign of a link; its looks and its clicks stand in tst_LinkButtonLooks and tst_LinkButton.
class tst_Link : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void itIsAsWideAsTheLineIsHighAndALittleHigherWhenItsFontChanges()
    {
        Link link;
        const int plain = QFontMetrics(link.Font()->toQFont()).height();
        QCOMPARE(link.size(), QSize(plain, plain + 4));
        link.resize(3, 90);
        link.Font()->SetSize(link.Font()->Size() * 2);
        const int large = QFontMetrics(link.Font()->toQFont()).height();
        QVERIFY(large > plain);
        QCOMPARE(link.size(), QSize(large, large + 4));
    }

    void theNameIsTheToolTipElseTheSigns()
    {
        Link link;
        QAccessibleInterface* told = QAccessible::queryAccessibleInterface(&link);
        QVERIFY(told);
        link.SetSymbol(tavrin::DropDownGlyph);
        QCOMPARE(link.Symbol(), tavrin::DropDownGlyph);
        QCOMPARE(told->text(QAccessible::Name), u"Open the list"_s);
        link.SetSymbol('?');
        QCOMPARE(told->text(QAccessible::Name), u"?"_s);
        link.SetToolTipText(u"Help"_s);
        link.SetSymbol('!');
        QCOMPARE(told->text(QAccessible::Name), u"Help"_s);
    }

    void aSignIsPaintedAsLargeAsTheFontInTheMiddleOfItsPlace()
    {
        Link link;
        link.SetSymbol(tavrin::ClearGlyph);
        const QRect own = inkOf(imageOf(link));
        QVERIFY(!own.isEmpty());
        link.resize(link.width() + 20, link.height() + 40);
        QCOMPARE(inkOf(imageOf(link)), own.translated(10, 20));
    }

    void anyOtherCodeIsACharacterOfTheFont()
    {
        Link link;
        QVERIFY(inkOf(imageOf(link)).isEmpty());
        link.SetSymbol('H');
        link.SetForeColor(Color::rgb(200, 0, 0));
        const QImage letter = imageOf(link);
        QVERIFY(!inkOf(letter).isEmpty());
        QCOMPARE(strongestOf(letter).red(), 200);
        link.SetSymbol('I');
        QVERIFY(imageOf(link) != letter);
        for (const int none : {0, -1, 0xD800, 0x110000}) {
            link.SetSymbol(none);
            QVERIFY(inkOf(imageOf(link)).isEmpty());
        }
    }

    void aDisabledSignIsFainter()
    {
        LinkStage stage(LinkKind::Sign);
        QVERIFY(stage.isReady());
        stage.hover(true); // which tints none that is disabled
        stage.link->setEnabled(false);
        const QImage image = imageOf(*stage.link);
        QVERIFY(strongestOf(image).alpha() < 180);
        QVERIFY(strongestOf(image).alpha() > 80);
    }
};

TAVRIN_TEST_MAIN(tst_Link)
#include "tst_Link.moc"
