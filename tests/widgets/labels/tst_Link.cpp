#include "support/Looks.h"
#include "support/TestCase.h"
#include "widgets/drawing/IconGlyphs.h"
#include "widgets/labels/Link.h"

#include <QAccessible>
#include <QPushButton>

using namespace Qt::StringLiterals;
using namespace tavrin::test;
using tavrin::Color;
using tavrin::Link;
namespace SystemColor = tavrin::SystemColor;

namespace {

/// A window with a button that has the focus, and a link.
class Stage
{
public:
    Stage()
    {
        window.resize(200, 100);
        other = new QPushButton(&window);
        other->setGeometry(100, 50, 80, 30);
        link = new Link(&window);
        link->SetSymbol(tavrin::ClearGlyph);
        link->move(20, 20);
        window.show();
        window.activateWindow();
        other->setFocus();
    }
    bool isReady() { return QTest::qWaitForWindowActive(&window) && other->hasFocus(); }

    QWidget window;
    QPushButton* other;
    Link* link;
};

} // namespace

/// The sign of a link and its looks; what a click does stands in tst_LinkButton.
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
        QCOMPARE(link.sizeHint(), link.size());
        const auto small = std::make_shared<tavrin::Font>();
        small->SetSize(6);
        link.SetFont(small);
        QCOMPARE(link.Font(), small);
        QVERIFY(link.width() < plain);
    }

    void eachLinkHasAFontOfItsOwnAtFirst()
    {
        const Link one;
        const Link two;
        QVERIFY(one.Font() != two.Font());
        one.Font()->SetSize(30);
        QVERIFY(one.width() > two.width());
    }

    void theNameIsTheToolTipElseTheSigns()
    {
        Link link;
        QAccessibleInterface* told = QAccessible::queryAccessibleInterface(&link);
        QVERIFY(told);
        QCOMPARE(told->role(), QAccessible::Button);
        link.SetSymbol(tavrin::DropDownGlyph);
        QCOMPARE(link.Symbol(), tavrin::DropDownGlyph);
        QCOMPARE(told->text(QAccessible::Name), u"Open the list"_s);
        link.SetToolTipText(u"Clear <b>all</b>"_s);
        QCOMPARE(link.ToolTipText(), u"Clear <b>all</b>"_s);
        QCOMPARE(told->text(QAccessible::Name), u"Clear <b>all</b>"_s);
        link.SetToolTipText(QString());
        QCOMPARE(told->text(QAccessible::Name), u"Open the list"_s);
        link.SetSymbol('?');
        QCOMPARE(told->text(QAccessible::Name), u"?"_s);
    }

    void theToolTipIsReadAsItStands()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.link->SetToolTipText(u"Clear <b>all</b> & go"_s);
        QCOMPARE(toolTipRead(*stage.link), u"Clear <b>all</b> & go"_s);
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

    void belowTheMouseItIsTintedUntilTheMouseLeaves()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        QTest::mouseMove(stage.window.windowHandle(), QPoint(150, 5));
        QCOMPARE(stage.link->cursor().shape(), Qt::PointingHandCursor);
        const QImage calm = imageOf(*stage.link);
        const QPoint edge(stage.link->width() / 2, 1); // beside the sign
        QCOMPARE(calm.pixelColor(edge).alpha(), 0);
        PaintCount count(*stage.link);
        QTest::mouseMove(stage.window.windowHandle(), stage.link->geometry().center());
        QTRY_VERIFY(count.paints > 0);
        const int tint = imageOf(*stage.link).pixelColor(edge).alpha();
        QVERIFY(tint > 0 && tint < 60);
        QTest::mousePress(stage.window.windowHandle(), Qt::LeftButton, {}, stage.link->geometry().center());
        QVERIFY(imageOf(*stage.link).pixelColor(edge).alpha() > tint);
        QTest::mouseRelease(stage.window.windowHandle(), Qt::LeftButton, {}, stage.link->geometry().center());
        count.paints = 0;
        QTest::mouseMove(stage.window.windowHandle(), QPoint(150, 5));
        QTRY_VERIFY(count.paints > 0);
        QCOMPARE(imageOf(*stage.link), calm);
    }

    void aDisabledLinkIsFainterAndNotTinted()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        QTest::mouseMove(stage.window.windowHandle(), stage.link->geometry().center());
        stage.link->setEnabled(false);
        const QImage image = imageOf(*stage.link);
        QVERIFY(strongestOf(image).alpha() < 180);
        QVERIFY(strongestOf(image).alpha() > 80);
        QCOMPARE(image.pixelColor(stage.link->width() / 2, 1).alpha(), 0);
    }

    void aRingShowsTheFocus()
    {
        Theme theme;
        theme.change(QPalette::Highlight, QColor(1, 99, 7));
        Stage stage;
        QVERIFY(stage.isReady());
        const QPoint edge(stage.link->width() / 2, 0);
        QCOMPARE(imageOf(*stage.link).pixelColor(edge).alpha(), 0);
        stage.link->setFocus();
        QTRY_COMPARE(imageOf(*stage.link).pixelColor(edge), QColor(1, 99, 7));
        stage.other->setFocus();
        QTRY_COMPARE(imageOf(*stage.link).pixelColor(edge).alpha(), 0);
    }

    void aSystemColourFollowsTheThemeAtOnceAndAPlainOneStays()
    {
        Theme theme;
        Stage stage;
        QVERIFY(stage.isReady());
        QCOMPARE(stage.link->ForeColor(), SystemColor::ButtonText);
        PaintCount count(*stage.link);
        theme.change(QPalette::WindowText, QColor(1, 99, 7));
        QTRY_VERIFY(count.paints > 0);
        QCOMPARE(strongestOf(imageOf(*stage.link)), QColor(1, 99, 7));
        stage.link->SetForeColor(Color::rgb(50, 60, 70));
        theme.change(QPalette::WindowText, QColor(200, 99, 7));
        QCOMPARE(strongestOf(imageOf(*stage.link)), QColor(50, 60, 70));
    }
};

TAVRIN_TEST_MAIN(tst_Link)
#include "tst_Link.moc"
