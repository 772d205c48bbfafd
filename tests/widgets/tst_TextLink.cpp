#include "base/Error.h"
#include "support/TestCase.h"
#include "support/Unhandled.h"
#include "widgets/Looks.h"
#include "widgets/TextLink.h"

#include <QAccessible>
#include <QPointer>
#include <QPushButton>

using namespace Qt::StringLiterals;
using namespace tavrin::test;
using tavrin::Color;
using tavrin::Subscription;
using tavrin::TextLink;
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
        link = new TextLink(&window);
        link->SetCaption(u"More"_s);
        link->resize(link->sizeHint());
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
    QPointer<TextLink> link;
    int clicks = 0;

private:
    Subscription m_keep;
};

using Raise = std::function<void(Stage&)>;

} // namespace

Q_DECLARE_METATYPE(Raise)

class tst_TextLink : public tavrin::test::TestCase
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
        QTest::qWait(0);
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
        QTRY_COMPARE(unhandled.texts, QStringList({u"TextLink_Click: no such list"_s}));
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

    void tabReachesIt()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.press(Qt::Key_Tab);
        QVERIFY(stage.link->hasFocus());
        stage.press(Qt::Key_Space);
        QTRY_COMPARE(stage.clicks, 1);
    }

    void theCaptionIsShownAsItStandsAndIsItsName()
    {
        TextLink link;
        link.SetCaption(u"A & B"_s);
        QCOMPARE(link.Caption(), u"A & B"_s);
        QAccessibleInterface* told = QAccessible::queryAccessibleInterface(&link);
        QVERIFY(told);
        QCOMPARE(told->text(QAccessible::Name), u"A & B"_s);
        link.resize(100, 20);
        const int plain = inkOf(imageOf(link)).right();
        link.SetCaption(u"A && B"_s);
        QVERIFY(inkOf(imageOf(link)).right() > plain);
    }

    void theSizeFollowsTheFont()
    {
        TextLink link;
        link.SetCaption(u"More details"_s);
        const QSize before = link.sizeHint();
        link.Font()->SetSize(link.Font()->Size() * 2);
        QVERIFY(link.sizeHint().width() > before.width());
        link.SetFont(nullptr);
        const auto small = std::make_shared<tavrin::Font>();
        small->SetSize(5);
        link.SetFont(small);
        QCOMPARE(link.Font(), small);
        QVERIFY(link.sizeHint().width() < before.width());
    }

    void belowTheMouseItIsUnderlinedInItsHighlightColour()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.link->Font()->SetSize(20); // whose strokes cover whole pixels
        stage.link->SetCaption(u"HHH"_s);
        stage.link->resize(stage.link->sizeHint());
        stage.link->SetForeColor(Color::rgb(0, 0, 200));
        stage.link->SetHighlightColor(Color::rgb(200, 0, 0));
        QTest::mouseMove(stage.window.windowHandle(), QPoint(150, 5));
        const QImage calm = imageOf(*stage.link);
        QCOMPARE(strongestOf(calm), QColor(0, 0, 200));
        QCOMPARE(stage.link->cursor().shape(), Qt::PointingHandCursor);
        PaintCount count(*stage.link);
        QTest::mouseMove(stage.window.windowHandle(), stage.link->geometry().center());
        QTRY_VERIFY(count.paints > 0);
        const QImage hovered = imageOf(*stage.link);
        QCOMPARE(strongestOf(hovered), QColor(200, 0, 0));
        QVERIFY(inkOf(hovered).bottom() > inkOf(calm).bottom());
        QTest::mouseMove(stage.window.windowHandle(), QPoint(150, 5));
        QTRY_COMPARE(imageOf(*stage.link), calm);
    }

    void aDisabledLinkHasItsOwnColourAndNoUnderline()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.link->SetDisabledColor(Color::rgb(90, 91, 92));
        stage.link->SetForeColor(Color::rgb(0, 0, 200));
        const QRect calm = inkOf(imageOf(*stage.link));
        QTest::mouseMove(stage.window.windowHandle(), stage.link->geometry().center());
        stage.link->setEnabled(false);
        QCOMPARE(inkOf(imageOf(*stage.link)), calm);
        QCOMPARE(strongestOf(imageOf(*stage.link)), QColor(90, 91, 92));
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

    void itHasTheThemesHighlightAtFirst()
    {
        Theme theme;
        Stage stage;
        QVERIFY(stage.isReady());
        QCOMPARE(stage.link->ForeColor(), SystemColor::Highlight);
        QCOMPARE(stage.link->HighlightColor(), SystemColor::Highlight);
        QCOMPARE(stage.link->DisabledColor(), SystemColor::GreyText);
        theme.change(QPalette::Highlight, QColor(1, 99, 7));
        QCOMPARE(strongestOf(imageOf(*stage.link)), QColor(1, 99, 7));
    }
};

TAVRIN_TEST_MAIN(tst_TextLink)
#include "tst_TextLink.moc"
