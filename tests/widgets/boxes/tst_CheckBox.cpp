#include "base/failure/Error.h"
#include "support/TestCase.h"
#include "testing/Unhandled.h"
#include "widgets/boxes/CheckBox.h"

#include <QAccessible>
#include <QPointer>
#include <QPushButton>

using namespace Qt::StringLiterals;
using namespace tavrin::test;
using tavrin::CheckBox;
using tavrin::Error;
using tavrin::Subscription;

namespace {

/// A window with a button that has the focus and a check box, whose clicks are noted with its value.
class Stage
{
public:
    Stage()
    {
        window.resize(300, 100);
        box->SetCaption(u"Cover image"_s);
        box->setGeometry(10, 10, 150, 20);
        other->setGeometry(200, 60, 80, 30);
        m_keep = box->Click.subscribe([this] { clicks << box->Value(); });
        window.show();
        window.activateWindow();
        other->setFocus();
    }
    bool isReady() { return QTest::qWaitForWindowActive(&window) && other->hasFocus(); }

    QWidget window;
    QPointer<CheckBox> box = new CheckBox(&window);
    QPushButton* other = new QPushButton(&window);
    QList<int> clicks;

private:
    Subscription m_keep;
};

using Change = std::function<void(Stage&)>;

} // namespace

Q_DECLARE_METATYPE(Change)

/// `CheckBox`.
class tst_CheckBox : public TestCase
{
    Q_OBJECT

    static void addWays()
    {
        QTest::addColumn<Change>("change");
        QTest::newRow("mouse") << Change([](Stage& stage) {
            QTest::mouseClick(stage.window.windowHandle(), Qt::LeftButton, {}, QPoint(18, 20));
        });
        QTest::newRow("space") << Change([](Stage& stage) {
            stage.box->setFocus();
            QTest::keyClick(stage.window.windowHandle(), Qt::Key_Space);
        });
        QTest::newRow("screen reader") << Change([](Stage& stage) {
            QAccessible::queryAccessibleInterface(stage.box)->actionInterface()->doAction(
                QAccessibleActionInterface::toggleAction());
        });
        QTest::newRow("code") << Change([](Stage& stage) { stage.box->SetValue(1 - stage.box->Value()); });
        QTest::newRow("code of Qt") << Change([](Stage& stage) { stage.box->toggle(); });
    }

private Q_SLOTS:
    void itIsUncheckedAtFirst()
    {
        Stage stage;
        QCOMPARE(stage.box->Value(), 0);
        QCOMPARE(stage.clicks, QList<int>());
        QCOMPARE(stage.box->Caption(), u"Cover image"_s);
    }

    void eachChangeRaisesClickOnceWithTheNewValue_data() { addWays(); }
    void eachChangeRaisesClickOnceWithTheNewValue()
    {
        QFETCH(Change, change);
        Stage stage;
        QVERIFY(stage.isReady());
        change(stage);
        QTRY_COMPARE(stage.clicks, QList<int>({1}));
        change(stage);
        QTRY_COMPARE(stage.clicks, QList<int>({1, 0}));
        QCoreApplication::processEvents(); // a click that is queued would come now
        QCOMPARE(stage.clicks, QList<int>({1, 0}));
    }

    void theSameValueRaisesNothing()
    {
        Stage stage;
        stage.box->SetValue(0);
        stage.box->SetValue(1);
        stage.box->SetValue(1);
        QCOMPARE(stage.clicks, QList<int>({1}));
    }

    void aFailureOfAHandlerReachesTheCodeThatSetsTheValue()
    {
        Stage stage;
        const Subscription failing = stage.box->Click.subscribe([] { throw Error(u"no cover"_s); });
        QString text;
        try {
            stage.box->SetValue(1);
        } catch (const Error& error) {
            text = error.Description;
        }
        QCOMPARE(text, u"no cover"_s);
    }

    void aFailureAtAClickDoesNotCrossQt()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        const Unhandled unhandled;
        const Subscription failing = stage.box->Click.subscribe([] { throw Error(u"no cover"_s); });
        QTest::mouseClick(stage.window.windowHandle(), Qt::LeftButton, {}, QPoint(18, 20));
        QCOMPARE(unhandled.texts, QStringList{u"CheckBox_Click: no cover"_s});
    }

    void aHandlerMayDeleteTheBox_data() { addWays(); }
    void aHandlerMayDeleteTheBox()
    {
        QFETCH(Change, change);
        Stage stage;
        QVERIFY(stage.isReady());
        const Subscription deleting = stage.box->Click.subscribe([&] { delete stage.box.data(); });
        change(stage);
        QTRY_VERIFY(stage.box.isNull());
    }
};

TAVRIN_TEST_MAIN(tst_CheckBox)
#include "tst_CheckBox.moc"
