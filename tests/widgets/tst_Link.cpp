#include "base/Error.h"
#include "support/TestCase.h"
#include "support/Unhandled.h"
#include "widgets/IconGlyphs.h"
#include "widgets/Link.h"
#include "widgets/Looks.h"

#include <QAccessible>
#include <QPointer>
#include <QPushButton>

using namespace Qt::StringLiterals;
using namespace tavrin::test;
using tavrin::Color;
using tavrin::Link;
using tavrin::Subscription;
namespace SystemColor = tavrin::SystemColor;

namespace {

/// A window with a button that has the focus, and a link whose clicks are counted.
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
        m_keep = link->Click.subscribe([this] { ++clicks; });
        window.show();
        window.activateWindow();
        other->setFocus();
    }
    bool isReady() { return QTest::qWaitForWindowActive(&window) && other->hasFocus(); }
    /// A click where the window system would give one.
    void click(Qt::MouseButton button)
    {
        QTest::mouseClick(window.windowHandle(), button, {}, link->geometry().center());
    }
    void press(Qt::Key key) { QTest::keyClick(window.windowHandle(), key); }

    QWidget window;
    QPushButton* other;
    QPointer<Link> link;
    int clicks = 0;

private:
    Subscription m_keep;
};

using Raise = std::function<void(Stage&)>;

} // namespace

Q_DECLARE_METATYPE(Raise)

class tst_Link : public tavrin::test::TestCase
{
    Q_OBJECT

private:
    static void addWaysToClick()
    {
        QTest::addColumn<Raise>("raise");
        QTest::newRow("mouse") << Raise([](Stage& stage) { stage.click(Qt::LeftButton); });
        for (const auto& [name, key] :
             {std::pair("Space", Qt::Key_Space), std::pair("Return", Qt::Key_Return),
              std::pair("Enter of the number block", Qt::Key_Enter)}) {
            QTest::newRow(name) << Raise([code = key](Stage& stage) {
                stage.link->setFocus();
                stage.press(code);
            });
        }
        QTest::newRow("screen reader") << Raise([](Stage& stage) {
            QAccessible::queryAccessibleInterface(stage.link)
                ->actionInterface()
                ->doAction(QAccessibleActionInterface::pressAction());
        });
    }

private Q_SLOTS:
    void clickIsRaisedOnce_data() { addWaysToClick(); }
    void clickIsRaisedOnce()
    {
        QFETCH(Raise, raise);
        Stage stage;
        QVERIFY(stage.isReady());
        raise(stage);
        QTRY_COMPARE(stage.clicks, 1);
        raise(stage);
        QTRY_COMPARE(stage.clicks, 2);
    }

    void aDisabledLinkRaisesNothing_data() { addWaysToClick(); }
    void aDisabledLinkRaisesNothing()
    {
        QFETCH(Raise, raise);
        Stage stage;
        QVERIFY(stage.isReady());
        stage.link->setEnabled(false);
        raise(stage);
        QCoreApplication::processEvents(); // a click that is queued would come now
        QCOMPARE(stage.clicks, 0);
    }

    void aHandlerMayDeleteTheLink_data() { addWaysToClick(); }
    void aHandlerMayDeleteTheLink()
    {
        QFETCH(Raise, raise);
        Stage stage;
        QVERIFY(stage.isReady());
        const Subscription deleting = stage.link->Click.subscribe([&] { delete stage.link.data(); });
        raise(stage);
        QTRY_VERIFY(!stage.link);
        QCOMPARE(stage.clicks, 1);
    }

    void aHandlersFailureStaysWithTheGuard_data() { addWaysToClick(); }
    void aHandlersFailureStaysWithTheGuard()
    {
        QFETCH(Raise, raise);
        const Unhandled unhandled;
        Stage stage;
        QVERIFY(stage.isReady());
        const Subscription failing =
            stage.link->Click.subscribe([] { throw tavrin::Error(u"no such list"_s); });
        raise(stage);
        QTRY_COMPARE(unhandled.texts, QStringList({u"Link_Click: no such list"_s}));
    }

    void otherButtonsAndKeysRaiseNothing()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.click(Qt::RightButton);
        stage.click(Qt::MiddleButton);
        stage.link->setFocus();
        stage.press(Qt::Key_A);
        stage.press(Qt::Key_Escape);
        QCOMPARE(stage.clicks, 0);
        QWindow* window = stage.window.windowHandle();
        const QPoint place = stage.link->geometry().center();
        QTest::mousePress(window, Qt::LeftButton, {}, place);
        QTest::mouseRelease(window, Qt::LeftButton, {}, QPoint(90, 90)); // a change of mind
        QCOMPARE(stage.clicks, 0);
        stage.click(Qt::LeftButton);
        QCOMPARE(stage.clicks, 1);
    }

    void enterThatIsHeldDownRaisesOnce()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.link->setFocus();
        for (const bool repeats : {false, true, true}) {
            QKeyEvent press(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, u"\r"_s, repeats);
            QCoreApplication::sendEvent(stage.link, &press);
            QVERIFY(press.isAccepted());
        }
        QCOMPARE(stage.clicks, 1);
    }

    void aClickLeavesTheFocusWhereItIs()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.click(Qt::LeftButton);
        QCOMPARE(stage.clicks, 1);
        QVERIFY(stage.other->hasFocus());
        stage.press(Qt::Key_Tab);
        QVERIFY(!stage.link->hasFocus());
    }

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
