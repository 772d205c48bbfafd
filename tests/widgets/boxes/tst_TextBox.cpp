#include "base/failure/Error.h"
#include "base/failure/Guard.h"
#include "support/Keys.h"
#include "support/TestCase.h"
#include "widgets/boxes/KeyCodes.h"
#include "widgets/boxes/TextBox.h"

#include <QApplication>
#include <QInputMethodEvent>
#include <QPointer>
#include <QVBoxLayout>
#include <QWheelEvent>

using namespace Qt::StringLiterals;
using tavrin::Color;
using tavrin::Error;
using tavrin::Subscription;
using tavrin::TextBox;
using tavrin::test::typeInto;
namespace KeyCode = tavrin::KeyCode;
namespace SystemColor = tavrin::SystemColor;

namespace {

/// A window with a text box that has the focus, and what the box told.
class Stage
{
public:
    Stage()
    {
        box = new TextBox(&window);
        auto* layout = new QVBoxLayout(&window);
        layout->addWidget(box);
        m_keep.push_back(box->KeyDown.subscribe([this](int& key, int shift) {
            if (key == 0) // the modifier's own key
                return;
            told << u"down %1 %2"_s.arg(key).arg(shift);
            if (key == swallowedKey)
                key = 0;
        }));
        m_keep.push_back(box->KeyPress.subscribe([this](int& character) {
            told << u"press %1"_s.arg(character);
            if (character == swallowedCharacter)
                character = 0;
        }));
        m_keep.push_back(box->Change.subscribe([this] { told << u"change "_s + box->Text(); }));
        window.show();
        window.activateWindow();
        box->setFocus();
    }
    bool isReady() { return QTest::qWaitForWindowActive(&window) && box->hasFocus(); }
    QStringList take() { return std::exchange(told, {}); }

    QWidget window;
    TextBox* box;
    QStringList told;
    int swallowedKey = -1;
    int swallowedCharacter = -1;

private:
    std::vector<Subscription> m_keep;
};

} // namespace

class tst_TextBox : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aKeyTellsKeyDownThenKeyPressThenChange()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        QTest::keyClick(stage.window.windowHandle(), Qt::Key_A);
        QCOMPARE(stage.take(), QStringList({u"down 65 0"_s, u"press 97"_s, u"change a"_s}));
        QTest::keyClick(stage.window.windowHandle(), 'B', Qt::ShiftModifier);
        QCOMPARE(stage.take(), QStringList({u"down 66 1"_s, u"press 66"_s, u"change aB"_s}));
    }

    void theBoxHasTheOldTextUntilItTookTheKey()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.box->SetText(u"x"_s);
        QStringList texts;
        const Subscription down =
            stage.box->KeyDown.subscribe([&](int&, int) { texts << stage.box->Text(); });
        const Subscription press = stage.box->KeyPress.subscribe([&](int&) { texts << stage.box->Text(); });
        QTest::keyClick(stage.window.windowHandle(), Qt::Key_Y);
        QCOMPARE(texts, QStringList({u"x"_s, u"x"_s}));
        QCOMPARE(stage.box->Text(), u"xy"_s);
    }

    void keysWithoutTextAndThoseThatChangeNothing_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
        QTest::addColumn<QStringList>("told");
        const auto row = [](const char* name, Qt::Key key, Qt::KeyboardModifiers modifiers,
                            const QStringList& told) {
            QTest::newRow(name) << static_cast<int>(key) << modifiers << told;
        };
        row("left", Qt::Key_Left, Qt::NoModifier, {u"down 37 0"_s});
        row("home with shift", Qt::Key_Home, Qt::ShiftModifier, {u"down 36 1"_s});
        row("delete gives no KeyPress", Qt::Key_Delete, Qt::NoModifier, {u"down 46 0"_s, u"change bc"_s});
        row("backspace at the start", Qt::Key_Backspace, Qt::NoModifier, {u"down 8 0"_s, u"press 8"_s});
        row("enter", Qt::Key_Return, Qt::NoModifier, {u"down 13 0"_s, u"press 13"_s});
        row("enter of the number block", Qt::Key_Enter, Qt::KeypadModifier, {u"down 13 0"_s, u"press 13"_s});
        row("escape", Qt::Key_Escape, Qt::NoModifier, {u"down 27 0"_s, u"press 27"_s});
        row("function key", Qt::Key_F4, Qt::NoModifier, {u"down 115 0"_s});
        row("control and page down", Qt::Key_PageDown, Qt::ControlModifier, {u"down 34 2"_s});
        row("alt and down", Qt::Key_Down, Qt::AltModifier, {u"down 40 4"_s});
    }
    void keysWithoutTextAndThoseThatChangeNothing()
    {
        QFETCH(int, key);
        QFETCH(Qt::KeyboardModifiers, modifiers);
        Stage stage;
        QVERIFY(stage.isReady());
        stage.box->SetText(u"abc"_s);
        stage.box->SetSelection(0, 0);
        stage.take();
        QTest::keyClick(stage.window.windowHandle(), static_cast<Qt::Key>(key), modifiers);
        QTEST(stage.told, "told");
    }

    void aKeyThatKeyDownSwallowsComesNoFurther()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.swallowedKey = 'A';
        typeInto(stage.window.windowHandle(), u"xay"_s);
        QCOMPARE(stage.box->Text(), u"xy"_s);
        QCOMPARE(stage.take(), QStringList({u"down 88 0"_s, u"press 120"_s, u"change x"_s, u"down 65 0"_s,
                                            u"down 89 0"_s, u"press 121"_s, u"change xy"_s}));
        stage.box->SetSelection(0, 0);
        stage.swallowedKey = KeyCode::Delete;
        QTest::keyClick(stage.window.windowHandle(), Qt::Key_Delete);
        QCOMPARE(stage.box->Text(), u"xy"_s);
    }

    void aKeyThatKeyPressSwallowsChangesNothing()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.swallowedCharacter = 'a';
        typeInto(stage.window.windowHandle(), u"xay"_s);
        QCOMPARE(stage.box->Text(), u"xy"_s);
        QCOMPARE(stage.take(), QStringList({u"down 88 0"_s, u"press 120"_s, u"change x"_s, u"down 65 0"_s,
                                            u"press 97"_s, u"down 89 0"_s, u"press 121"_s, u"change xy"_s}));
    }

    void aSwallowedKeyDoesNotReachTheParentAndAnIgnoredOneDoes()
    {
        class Parent : public QWidget
        {
        public:
            QList<int> keys;

        protected:
            void keyPressEvent(QKeyEvent* event) override { keys << event->key(); }
        } parent;
        auto* box = new TextBox(&parent);
        parent.show();
        box->setFocus();
        QVERIFY(QTest::qWaitForWindowActive(&parent));
        QTest::keyClick(box, Qt::Key_Escape);
        QCOMPARE(parent.keys, QList<int>({Qt::Key_Escape}));
        const Subscription keep = box->KeyDown.subscribe([](int& key, int) { key = 0; });
        QTest::keyClick(box, Qt::Key_Escape);
        QCOMPARE(parent.keys, QList<int>({Qt::Key_Escape}));
    }

    void aKeyHandlersFailureEndsInTheGuardAndTheKeyIsStillTyped()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        QStringList unhandled;
        const auto before = tavrin::setUnhandledErrorHandler(
            [&](const Error& error, const QString& where) { unhandled << where + u' ' + error.Description; });
        const auto restore = qScopeGuard([&] { tavrin::setUnhandledErrorHandler(before); });
        const Subscription failing = stage.box->KeyPress.subscribe([](int&) { throw Error(u"no"_s); });
        QTest::keyClick(stage.window.windowHandle(), Qt::Key_A);
        QCOMPARE(unhandled, QStringList({u"TextBox_KeyPress no"_s}));
        QCOMPARE(stage.box->Text(), u"a"_s);
    }

    void aChangeHandlersFailureAtAKeyEndsInTheGuard()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        QStringList unhandled;
        const auto before = tavrin::setUnhandledErrorHandler(
            [&](const Error& error, const QString& where) { unhandled << where + u' ' + error.Description; });
        const auto restore = qScopeGuard([&] { tavrin::setUnhandledErrorHandler(before); });
        const Subscription failing = stage.box->Change.subscribe([] { throw Error(u"no"_s); });
        QTest::keyClick(stage.window.windowHandle(), Qt::Key_A);
        QCOMPARE(unhandled, QStringList({u"TextBox_Change no"_s}));
        QCOMPARE(stage.box->Text(), u"a"_s);
    }

    void aChangeHandlerMayDeleteTheBox_data()
    {
        QTest::addColumn<int>("way");
        QTest::newRow("a character") << 0;
        QTest::newRow("Backspace") << 1;
        QTest::newRow("an input method") << 2;
        QTest::newRow("code") << 3;
    }
    void aChangeHandlerMayDeleteTheBox()
    {
        QFETCH(int, way);
        QWidget window;
        QPointer<TextBox> box(new TextBox(&window));
        box->SetText(u"abc"_s);
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        box->setFocus();
        const Subscription change = box->Change.subscribe([&box] { delete box.data(); });
        if (way == 0)
            QTest::keyClick(box, Qt::Key_X);
        else if (way == 1)
            QTest::keyClick(box, Qt::Key_Backspace);
        else if (way == 2) {
            QInputMethodEvent commit;
            commit.setCommitString(u"x"_s);
            QApplication::sendEvent(box, &commit);
        } else
            box->SetText(QString());
        QVERIFY(!box);
    }

    void setTextRaisesChangeOnceBeforeItReturns()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.box->SetText(u"abc"_s);
        QCOMPARE(stage.take(), QStringList({u"change abc"_s}));
        stage.box->SetText(u"abc"_s);
        QCOMPARE(stage.take(), QStringList());
        stage.box->SetText(QString());
        QCOMPARE(stage.take(), QStringList({u"change "_s}));
        stage.box->SetText(u""_s);
        QCOMPARE(stage.take(), QStringList());
    }

    void aChangeHandlersFailureReachesTheCallerOfSetText()
    {
        TextBox box;
        const Subscription failing = box.Change.subscribe([] { throw Error(u"refused"_s); });
        try {
            box.SetText(u"a"_s);
            QFAIL("no error");
        } catch (const Error& error) {
            QCOMPARE(error.Description, u"refused"_s);
        }
        QCOMPARE(box.Text(), u"a"_s);
    }

    void aChangeHandlerMaySetTheTextItself()
    {
        TextBox box;
        QStringList seen;
        const Subscription keep = box.Change.subscribe([&] {
            seen << box.Text();
            box.SetText(box.Text().toUpper());
        });
        box.SetText(u"ab"_s);
        QCOMPARE(box.Text(), u"AB"_s);
        QCOMPARE(seen, QStringList({u"ab"_s, u"AB"_s}));
    }

    void setSelectionCountsFromZero()
    {
        TextBox box;
        box.SetText(u"abcdef"_s);
        box.SetSelection(1, 3);
        QCOMPARE(box.selectedText(), u"bcd"_s);
        QCOMPARE(box.selectionStart(), 1);
    }

    void whatAnInputMethodCommitsComesAsKeyPressForEachUnitThenChange()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        QInputMethodEvent composing(u"xyz"_s, {});
        QCoreApplication::sendEvent(stage.box, &composing);
        QCOMPARE(stage.take(), QStringList()); // a composition under way is nobody's business
        QInputMethodEvent commit;
        commit.setCommitString(u"\u00E9\U0001F600"_s);
        QCoreApplication::sendEvent(stage.box, &commit);
        QCOMPARE(stage.take(), QStringList({u"press 233"_s, u"press 55357"_s, u"press 56832"_s,
                                            u"change \u00E9\U0001F600"_s}));
    }

    void aUnitThatIsSwallowedLeavesTheCommit()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.swallowedCharacter = 'b';
        QInputMethodEvent commit;
        commit.setCommitString(u"abc"_s);
        QCoreApplication::sendEvent(stage.box, &commit);
        QCOMPARE(stage.box->Text(), u"ac"_s);
        QCOMPARE(stage.take(), QStringList({u"press 97"_s, u"press 98"_s, u"press 99"_s, u"change ac"_s}));
    }

    void aFailingKeyPressHandlerLosesNothingOfTheCommit()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        int failures = 0;
        const auto before =
            tavrin::setUnhandledErrorHandler([&](const Error&, const QString&) { ++failures; });
        const auto restore = qScopeGuard([&] { tavrin::setUnhandledErrorHandler(before); });
        const Subscription failing = stage.box->KeyPress.subscribe([](int& character) {
            if (character == 'b')
                throw Error(u"no"_s);
        });
        QInputMethodEvent commit;
        commit.setCommitString(u"abc"_s);
        QCoreApplication::sendEvent(stage.box, &commit);
        QCOMPARE(stage.box->Text(), u"abc"_s);
        QCOMPARE(failures, 1);
    }

    void plainColoursShowAndAreReadBack()
    {
        TextBox box;
        QCOMPARE(box.BackColor(), SystemColor::WindowBackground);
        QCOMPARE(box.ForeColor(), SystemColor::WindowText);
        box.SetBackColor(Color::rgb(255, 255, 128));
        box.SetForeColor(Color::rgb(200, 0, 0));
        QCOMPARE(box.BackColor(), Color::rgb(255, 255, 128));
        QCOMPARE(box.palette().color(QPalette::Active, QPalette::Base), QColor(255, 255, 128));
        QCOMPARE(box.palette().color(QPalette::Inactive, QPalette::Text), QColor(200, 0, 0));
        // Disabled, the text is paler than enabled and still another colour than the background.
        QCOMPARE(box.palette().color(QPalette::Disabled, QPalette::Text), QColor(222, 102, 51));
        box.SetBackColor(SystemColor::WindowBackground);
        box.SetForeColor(SystemColor::WindowText);
        const QPalette system = QApplication::palette(&box);
        for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
            QCOMPARE(box.palette().color(group, QPalette::Base), system.color(group, QPalette::Base));
            QCOMPARE(box.palette().color(group, QPalette::Text), system.color(group, QPalette::Text));
        }
    }

    void systemColoursFollowTheApplicationsPaletteAndPlainOnesStay()
    {
        const QPalette before = QApplication::palette();
        const auto restore = qScopeGuard([&] { QApplication::setPalette(before); });
        QWidget window;
        auto* plain = new TextBox(&window);
        auto* system = new TextBox(&window);
        auto* untouched = new TextBox(&window);
        plain->SetBackColor(Color::rgb(1, 2, 3));
        system->SetBackColor(SystemColor::ButtonFace);
        system->SetForeColor(SystemColor::Highlight);
        window.show();
        QPalette dark = before;
        dark.setColor(QPalette::Base, QColor(10, 10, 10));
        dark.setColor(QPalette::Text, QColor(240, 240, 240));
        dark.setColor(QPalette::Window, QColor(30, 30, 30));
        dark.setColor(QPalette::Highlight, QColor(0, 90, 180));
        QApplication::setPalette(dark);
        QTRY_COMPARE(system->palette().color(QPalette::Base), QColor(30, 30, 30));
        QCOMPARE(system->palette().color(QPalette::Text), QColor(0, 90, 180));
        QCOMPARE(plain->palette().color(QPalette::Base), QColor(1, 2, 3));
        QCOMPARE(plain->palette().color(QPalette::Text), QColor(240, 240, 240));
        QCOMPARE(untouched->palette().color(QPalette::Base), QColor(10, 10, 10));
        QCOMPARE(untouched->palette().color(QPalette::Text), QColor(240, 240, 240));
    }

    void theWheelPassesTheBoxAndChangesNothing()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.box->SetText(u"5"_s);
        stage.take();
        QWheelEvent wheel(QPointF(5, 5), stage.box->mapToGlobal(QPointF(5, 5)), QPoint(), QPoint(0, 120),
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(stage.box, &wheel);
        QVERIFY(!wheel.isAccepted());
        QCOMPARE(stage.box->Text(), u"5"_s);
        QCOMPARE(stage.take(), QStringList());
    }

    void aDisabledBoxRefusesInput()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.box->setEnabled(false);
        typeInto(stage.window.windowHandle(), u"abc"_s);
        QKeyEvent direct(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, u"a"_s);
        QCoreApplication::sendEvent(stage.box, &direct);
        QCOMPARE(stage.box->Text(), QString());
        QCOMPARE(stage.take(), QStringList());
        stage.box->SetText(u"set by code"_s);
        QCOMPARE(stage.take(), QStringList({u"change set by code"_s}));
    }
};

TAVRIN_TEST_MAIN(tst_TextBox)
#include "tst_TextBox.moc"
