#include "base/failure/Error.h"
#include "base/failure/Event.h"
#include "support/TestCase.h"
#include "testing/Unhandled.h"
#include "widgets/labels/LinkStage.h"

#include <QAccessible>
#include <QKeyEvent>

#include <functional>
#include <utility>

using namespace Qt::StringLiterals;
using namespace tavrin::test;
using tavrin::Subscription;

namespace {

/// A stage on which the link's clicks are counted.
class ClickStage : public LinkStage
{
public:
    explicit ClickStage(LinkKind kind)
        : LinkStage(kind)
        , m_keep(link->Click.subscribe([this] { ++clicks; }))
    {
    }

    int clicks = 0;

private:
    Subscription m_keep;
};

using Raise = std::function<void(ClickStage&)>;

} // namespace

Q_DECLARE_METATYPE(Raise)

/// A click of a link, whatever it shows; its looks stand in tst_LinkButtonLooks.
class tst_LinkButton : public tavrin::test::TestCase
{
    Q_OBJECT

private:
    static void addWaysToClick()
    {
        QTest::addColumn<LinkKind>("kind");
        QTest::addColumn<Raise>("raise");
        for (const auto& [name, kind] : LinkKinds) {
            const auto add = [name = name, kind = kind](const char* way, const Raise& raise) {
                QTest::addRow("%s by %s", name, way) << kind << raise;
            };
            add("mouse", [](ClickStage& stage) { stage.click(Qt::LeftButton); });
            for (const auto& [way, key] :
                 {std::pair("Space", Qt::Key_Space), std::pair("Return", Qt::Key_Return),
                  std::pair("Enter of the number block", Qt::Key_Enter)}) {
                add(way, [code = key](ClickStage& stage) {
                    stage.link->setFocus();
                    stage.press(code);
                });
            }
            add("screen reader", [](ClickStage& stage) {
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
        QFETCH(LinkKind, kind);
        QFETCH(Raise, raise);
        ClickStage stage(kind);
        QVERIFY(stage.isReady());
        raise(stage);
        QTRY_COMPARE(stage.clicks, 1);
        raise(stage);
        QTRY_COMPARE(stage.clicks, 2);
    }

    void aDisabledLinkRaisesNothing_data() { addWaysToClick(); }
    void aDisabledLinkRaisesNothing()
    {
        QFETCH(LinkKind, kind);
        QFETCH(Raise, raise);
        ClickStage stage(kind);
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
        QFETCH(LinkKind, kind);
        QFETCH(Raise, raise);
        ClickStage stage(kind);
        QVERIFY(stage.isReady());
        const Subscription deleting = stage.link->Click.subscribe([&] { delete stage.link.data(); });
        raise(stage);
        QTRY_VERIFY(!stage.link);
        QCOMPARE(stage.clicks, 1);
    }

    void aHandlersFailureStaysWithTheGuard_data() { addWaysToClick(); }
    void aHandlersFailureStaysWithTheGuard()
    {
        QFETCH(LinkKind, kind);
        QFETCH(Raise, raise);
        const Unhandled unhandled;
        ClickStage stage(kind);
        QVERIFY(stage.isReady());
        const Subscription failing =
            stage.link->Click.subscribe([] { throw tavrin::Error(u"no such list"_s); });
        raise(stage);
        QTRY_COMPARE(unhandled.texts, QStringList({u"Link_Click: no such list"_s}));
    }

    void otherButtonsAndKeysRaiseNothing_data() { addLinkKinds(); }
    void otherButtonsAndKeysRaiseNothing()
    {
        QFETCH(LinkKind, kind);
        ClickStage stage(kind);
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

    void enterThatIsHeldDownRaisesOnce_data() { addLinkKinds(); }
    void enterThatIsHeldDownRaisesOnce()
    {
        QFETCH(LinkKind, kind);
        ClickStage stage(kind);
        QVERIFY(stage.isReady());
        stage.link->setFocus();
        for (const bool repeats : {false, true, true}) {
            QKeyEvent press(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, u"\r"_s, repeats);
            QCoreApplication::sendEvent(stage.link, &press);
            QVERIFY(press.isAccepted());
        }
        QCOMPARE(stage.clicks, 1);
    }

    void aClickLeavesTheFocusWhereItIsAndTabReachesTextsAlone_data() { addLinkKinds(); }
    void aClickLeavesTheFocusWhereItIsAndTabReachesTextsAlone()
    {
        QFETCH(LinkKind, kind);
        ClickStage stage(kind);
        QVERIFY(stage.isReady());
        stage.click(Qt::LeftButton);
        QCOMPARE(stage.clicks, 1);
        QVERIFY(stage.other->hasFocus());
        stage.press(Qt::Key_Tab);
        QCOMPARE(stage.link->hasFocus(), kind == LinkKind::Text);
        QCOMPARE(stage.other->hasFocus(), kind == LinkKind::Sign);
    }
};

TAVRIN_TEST_MAIN(tst_LinkButton)
#include "tst_LinkButton.moc"
