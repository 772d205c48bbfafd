#include "base/failure/Error.h"
#include "support/TestCase.h"
#include "support/Unhandled.h"
#include "widgets/drawing/IconGlyphs.h"
#include "widgets/labels/Link.h"
#include "widgets/labels/TextLink.h"

#include <QAccessible>
#include <QPointer>
#include <QPushButton>

using namespace Qt::StringLiterals;
using namespace tavrin::test;
using tavrin::Link;
using tavrin::LinkButton;
using tavrin::Subscription;
using tavrin::TextLink;

namespace {

enum class Kind
{
    Sign,
    Text
};

/// A window with a button that has the focus, and a link behind it whose clicks are counted.
class Stage
{
public:
    explicit Stage(Kind kind)
    {
        window.resize(200, 100);
        other = new QPushButton(&window);
        other->setGeometry(100, 50, 80, 30);
        if (kind == Kind::Sign) {
            auto* sign = new Link(&window);
            sign->SetSymbol(tavrin::ClearGlyph);
            link = sign;
        } else {
            auto* text = new TextLink(&window);
            text->SetCaption(u"Done"_s);
            link = text;
        }
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
    QPointer<LinkButton> link;
    int clicks = 0;

private:
    Subscription m_keep;
};

using Raise = std::function<void(Stage&)>;

} // namespace

Q_DECLARE_METATYPE(Kind)
Q_DECLARE_METATYPE(Raise)

/// What links share, whatever they show.
class tst_LinkButton : public tavrin::test::TestCase
{
    Q_OBJECT

private:
    static constexpr std::pair<const char*, Kind> Kinds[] = {{"sign", Kind::Sign}, {"text", Kind::Text}};

    static void addKinds()
    {
        QTest::addColumn<Kind>("kind");
        for (const auto& [name, kind] : Kinds)
            QTest::newRow(name) << kind;
    }

    static void addWaysToClick()
    {
        QTest::addColumn<Kind>("kind");
        QTest::addColumn<Raise>("raise");
        for (const auto& [name, kind] : Kinds) {
            const auto add = [name = name, kind = kind](const char* way, const Raise& raise) {
                QTest::addRow("%s by %s", name, way) << kind << raise;
            };
            add("mouse", [](Stage& stage) { stage.click(Qt::LeftButton); });
            for (const auto& [way, key] :
                 {std::pair("Space", Qt::Key_Space), std::pair("Return", Qt::Key_Return),
                  std::pair("Enter of the number block", Qt::Key_Enter)}) {
                add(way, [code = key](Stage& stage) {
                    stage.link->setFocus();
                    stage.press(code);
                });
            }
            add("screen reader", [](Stage& stage) {
                QAccessible::queryAccessibleInterface(stage.link)
                    ->actionInterface()
                    ->doAction(QAccessibleActionInterface::pressAction());
            });
        }
    }

private Q_SLOTS:
    void clickIsRaisedOnce_data() { addWaysToClick(); }
    void clickIsRaisedOnce()
    {
        QFETCH(Kind, kind);
        QFETCH(Raise, raise);
        Stage stage(kind);
        QVERIFY(stage.isReady());
        raise(stage);
        QTRY_COMPARE(stage.clicks, 1);
        raise(stage);
        QTRY_COMPARE(stage.clicks, 2);
    }

    void aDisabledLinkRaisesNothing_data() { addWaysToClick(); }
    void aDisabledLinkRaisesNothing()
    {
        QFETCH(Kind, kind);
        QFETCH(Raise, raise);
        Stage stage(kind);
        QVERIFY(stage.isReady());
        stage.link->setEnabled(false);
        raise(stage);
        QCoreApplication::processEvents(); // a click that is queued would come now
        QCOMPARE(stage.clicks, 0);
        stage.link->setEnabled(true); // it was the link's state and nothing else
        raise(stage);
        QTRY_COMPARE(stage.clicks, 1);
    }

    void aHandlerMayDeleteTheLink_data() { addWaysToClick(); }
    void aHandlerMayDeleteTheLink()
    {
        QFETCH(Kind, kind);
        QFETCH(Raise, raise);
        Stage stage(kind);
        QVERIFY(stage.isReady());
        const Subscription deleting = stage.link->Click.subscribe([&] { delete stage.link.data(); });
        raise(stage);
        QTRY_VERIFY(!stage.link);
        QCOMPARE(stage.clicks, 1);
    }

    void aHandlersFailureStaysWithTheGuard_data() { addWaysToClick(); }
    void aHandlersFailureStaysWithTheGuard()
    {
        QFETCH(Kind, kind);
        QFETCH(Raise, raise);
        const Unhandled unhandled;
        Stage stage(kind);
        QVERIFY(stage.isReady());
        const Subscription failing =
            stage.link->Click.subscribe([] { throw tavrin::Error(u"no such list"_s); });
        raise(stage);
        QTRY_COMPARE(unhandled.texts, QStringList({u"Link_Click: no such list"_s}));
    }

    void otherButtonsAndKeysRaiseNothing_data() { addKinds(); }
    void otherButtonsAndKeysRaiseNothing()
    {
        QFETCH(Kind, kind);
        Stage stage(kind);
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

    void enterThatIsHeldDownRaisesOnce_data() { addKinds(); }
    void enterThatIsHeldDownRaisesOnce()
    {
        QFETCH(Kind, kind);
        Stage stage(kind);
        QVERIFY(stage.isReady());
        stage.link->setFocus();
        for (const bool repeats : {false, true, true}) {
            QKeyEvent press(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, u"\r"_s, repeats);
            QCoreApplication::sendEvent(stage.link, &press);
            QVERIFY(press.isAccepted());
        }
        QCOMPARE(stage.clicks, 1);
    }

    void aClickLeavesTheFocusWhereItIsAndTabReachesTextsAlone_data() { addKinds(); }
    void aClickLeavesTheFocusWhereItIsAndTabReachesTextsAlone()
    {
        QFETCH(Kind, kind);
        Stage stage(kind);
        QVERIFY(stage.isReady());
        stage.click(Qt::LeftButton);
        QCOMPARE(stage.clicks, 1);
        QVERIFY(stage.other->hasFocus());
        stage.press(Qt::Key_Tab);
        QCOMPARE(stage.link->hasFocus(), kind == Kind::Text);
        QCOMPARE(stage.other->hasFocus(), kind == Kind::Sign);
    }
};

TAVRIN_TEST_MAIN(tst_LinkButton)
#include "tst_LinkButton.moc"
