#include "base/failure/Error.h"
#include "support/Looks.h"
#include "support/TestCase.h"
#include "testing/Unhandled.h"
#include "widgets/boxes/FlatOptionButton.h"

#include <QAccessible>
#include <QPointer>
#include <QPushButton>

using namespace Qt::StringLiterals;
using namespace tavrin::test;
using tavrin::FlatOptionButton;
using tavrin::Subscription;

namespace {

/// A window with a button that has the focus and three options, whose clicks are noted.
class Stage
{
public:
    Stage()
    {
        window.resize(300, 150);
        other = new QPushButton(&window);
        other->setGeometry(200, 100, 80, 30);
        for (int i = 0; i < 3; ++i) {
            options[i] = new FlatOptionButton(&window);
            options[i]->SetCaption(u"Option %1"_s.arg(i));
            options[i]->setGeometry(0, i * 30, 150, 20);
            m_keep[i] = options[i]->Click.subscribe([this, i] { clicks << i; });
        }
        window.show();
        window.activateWindow();
        other->setFocus();
    }
    bool isReady() { return QTest::qWaitForWindowActive(&window) && other->hasFocus(); }
    void click(int option)
    {
        QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {},
                          options[option]->geometry().topLeft() + QPoint(8, 10));
    }
    void press(Qt::Key key) { QTest::keyClick(window.windowHandle(), key); }
    QList<int> on() const
    {
        QList<int> numbers;
        for (int i = 0; i < 3; ++i) {
            if (options[i] && options[i]->Value())
                numbers << i;
        }
        return numbers;
    }

    QWidget window;
    QPushButton* other;
    QPointer<FlatOptionButton> options[3];
    QList<int> clicks;

private:
    Subscription m_keep[3];
};

using TurnOn = std::function<void(Stage&, int)>;

} // namespace

Q_DECLARE_METATYPE(TurnOn)

class tst_FlatOptionButton : public tavrin::test::TestCase
{
    Q_OBJECT

private:
    static void addWays()
    {
        QTest::addColumn<TurnOn>("turnOn");
        QTest::newRow("mouse") << TurnOn([](Stage& stage, int option) { stage.click(option); });
        QTest::newRow("Space") << TurnOn([](Stage& stage, int option) {
            stage.options[option]->setFocus();
            stage.press(Qt::Key_Space);
        });
        QTest::newRow("screen reader") << TurnOn([](Stage& stage, int option) {
            QAccessible::queryAccessibleInterface(stage.options[option])
                ->actionInterface()
                ->doAction(QAccessibleActionInterface::toggleAction());
        });
        QTest::newRow("code") << TurnOn(
            [](Stage& stage, int option) { stage.options[option]->SetValue(true); });
        QTest::newRow("code of Qt") << TurnOn(
            [](Stage& stage, int option) { stage.options[option]->setChecked(true); });
    }

private Q_SLOTS:
    void noneIsOnAtFirst()
    {
        Stage stage;
        QCOMPARE(stage.on(), QList<int>());
        QCOMPARE(stage.clicks, QList<int>());
    }

    void turningOnRaisesClickOnceAndTurnsTheOthersOffSilently_data() { addWays(); }
    void turningOnRaisesClickOnceAndTurnsTheOthersOffSilently()
    {
        QFETCH(TurnOn, turnOn);
        Stage stage;
        QVERIFY(stage.isReady());
        turnOn(stage, 1);
        QTRY_COMPARE(stage.clicks, QList<int>({1}));
        QCOMPARE(stage.on(), QList<int>({1}));
        turnOn(stage, 2);
        QTRY_COMPARE(stage.clicks, QList<int>({1, 2}));
        QCOMPARE(stage.on(), QList<int>({2}));
    }

    void theOneThatIsOnRaisesNothingAgain_data() { addWays(); }
    void theOneThatIsOnRaisesNothingAgain()
    {
        QFETCH(TurnOn, turnOn);
        Stage stage;
        QVERIFY(stage.isReady());
        turnOn(stage, 1);
        QTRY_COMPARE(stage.clicks, QList<int>({1}));
        turnOn(stage, 1);
        QCoreApplication::processEvents(); // a click that is queued would come now
        QCOMPARE(stage.clicks, QList<int>({1}));
        QCOMPARE(stage.on(), QList<int>({1}));
    }

    void theOthersAreOffWhenClickIsRaised_data() { addWays(); }
    void theOthersAreOffWhenClickIsRaised()
    {
        QFETCH(TurnOn, turnOn);
        Stage stage;
        QVERIFY(stage.isReady());
        stage.options[0]->SetValue(true);
        QList<int> seen;
        const Subscription looking = stage.options[1]->Click.subscribe([&] { seen = stage.on(); });
        turnOn(stage, 1);
        QTRY_COMPARE(seen, QList<int>({1}));
    }

    void aHandlerMayDeleteTheButton_data() { addWays(); }
    void aHandlerMayDeleteTheButton()
    {
        QFETCH(TurnOn, turnOn);
        Stage stage;
        QVERIFY(stage.isReady());
        const Subscription deleting =
            stage.options[1]->Click.subscribe([&] { delete stage.options[1].data(); });
        turnOn(stage, 1);
        QTRY_VERIFY(!stage.options[1]);
        QCOMPARE(stage.clicks, QList<int>({1}));
    }

    void codeThatTurnsTheOneThatIsOnOffLeavesNoneOnAndRaisesNothing()
    {
        Stage stage;
        stage.options[1]->SetValue(true);
        stage.clicks.clear();
        stage.options[1]->SetValue(false);
        QCOMPARE(stage.on(), QList<int>());
        stage.options[0]->SetValue(false); // is off
        QCOMPARE(stage.clicks, QList<int>());
        stage.options[1]->SetValue(true); // still of the group
        stage.options[2]->SetValue(true);
        QCOMPARE(stage.on(), QList<int>({2}));
        QCOMPARE(stage.clicks, QList<int>({1, 2}));
    }

    void aHandlersFailureReachesTheCodeThatTurnsItOn()
    {
        const Unhandled unhandled;
        Stage stage;
        const Subscription failing =
            stage.options[1]->Click.subscribe([] { throw tavrin::Error(u"no such row"_s); });
        QVERIFY_THROWS_EXCEPTION(tavrin::Error, stage.options[1]->SetValue(true));
        QCOMPARE(stage.on(), QList<int>({1}));
        QCOMPARE(unhandled.texts, QStringList());
    }

    void aHandlersFailureStaysWithTheGuardWhenThePersonClicks()
    {
        const Unhandled unhandled;
        Stage stage;
        QVERIFY(stage.isReady());
        const Subscription failing =
            stage.options[1]->Click.subscribe([] { throw tavrin::Error(u"no such row"_s); });
        stage.click(1);
        QTRY_COMPARE(unhandled.texts, QStringList({u"FlatOptionButton_Click: no such row"_s}));
    }

    void arrowKeysWalkTheGroupAndTurnOn_data()
    {
        QTest::addColumn<Qt::Key>("key");
        QTest::addColumn<int>("next");
        QTest::newRow("down") << Qt::Key_Down << 2;
        QTest::newRow("up") << Qt::Key_Up << 0;
    }
    void arrowKeysWalkTheGroupAndTurnOn()
    {
        QFETCH(Qt::Key, key);
        QFETCH(int, next);
        Stage stage;
        QVERIFY(stage.isReady());
        stage.options[1]->SetValue(true);
        stage.options[1]->setFocus();
        stage.press(key);
        QTRY_COMPARE(stage.on(), QList<int>({next}));
        QCOMPARE(stage.clicks, QList<int>({1, next}));
        QVERIFY(stage.options[next]->hasFocus());
    }

    void itShowsTheFocusHoweverThatCame()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        const QImage calm = imageOf(*stage.options[1]);
        stage.options[1]->setFocus(Qt::OtherFocusReason);
        QTRY_VERIFY(imageOf(*stage.options[1]) != calm);
        stage.other->setFocus();
        QTRY_COMPARE(imageOf(*stage.options[1]), calm);
    }

    void tabReachesTheOneThatIsOnAlone()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.press(Qt::Key_Tab);
        QVERIFY(stage.options[0]->hasFocus()); // none is on
        stage.options[2]->SetValue(true);
        stage.other->setFocus();
        stage.press(Qt::Key_Tab);
        QVERIFY(stage.options[2]->hasFocus());
        stage.press(Qt::Key_Tab);
        QVERIFY(stage.other->hasFocus());
        stage.options[2]->SetValue(false);
        stage.press(Qt::Key_Tab);
        QVERIFY(stage.options[0]->hasFocus());
    }

    void aDisabledButtonIsTurnedOnByCodeOnly()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.options[1]->setEnabled(false);
        stage.click(1);
        QCOMPARE(stage.on(), QList<int>());
        stage.options[1]->SetValue(true);
        QCOMPARE(stage.clicks, QList<int>({1}));
    }

    void captionAndFontShowAndScreenReadersKnowThem()
    {
        FlatOptionButton option;
        const FlatOptionButton another;
        QVERIFY(option.Font() != another.Font());
        option.SetCaption(u"Enter it"_s);
        QCOMPARE(option.Caption(), u"Enter it"_s);
        QAccessibleInterface* told = QAccessible::queryAccessibleInterface(&option);
        QCOMPARE(told->role(), QAccessible::RadioButton);
        QCOMPARE(told->text(QAccessible::Name), u"Enter it"_s);
        const int before = option.sizeHint().width();
        option.Font()->SetSize(option.Font()->Size() * 2);
        QVERIFY(option.sizeHint().width() > before);
        option.SetFont(nullptr);
        const auto small = std::make_shared<tavrin::Font>();
        small->SetSize(5);
        option.SetFont(small);
        QCOMPARE(option.Font(), small);
        QVERIFY(option.sizeHint().width() < before);
    }
};

TAVRIN_TEST_MAIN(tst_FlatOptionButton)
#include "tst_FlatOptionButton.moc"
