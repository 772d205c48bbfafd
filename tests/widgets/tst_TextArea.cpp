#include "support/Keys.h"
#include "support/TestCase.h"
#include "widgets/TextArea.h"

#include <QApplication>
#include <QClipboard>
#include <QDropEvent>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QMimeData>

using namespace Qt::StringLiterals;
using tavrin::TextArea;
using tavrin::test::typeInto;

namespace {

/// A window with a text area that has the focus, above a line edit.
class Stage
{
public:
    Stage()
    {
        window.resize(300, 200);
        area->setGeometry(0, 0, 300, 150);
        other->setGeometry(0, 160, 300, 30);
        window.show();
        window.activateWindow();
        area->setFocus();
    }
    bool isReady() { return QTest::qWaitForWindowActive(&window) && area->hasFocus(); }
    void press(QKeySequence::StandardKey keys)
    {
        QTest::keySequence(window.windowHandle(), QKeySequence(keys));
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(window.windowHandle(), key, modifiers);
    }
    void type(const QString& text) { typeInto(window.windowHandle(), text); }
    void paste(const QString& text)
    {
        QApplication::clipboard()->setText(text);
        press(QKeySequence::Paste);
    }
    void commit(const QString& text)
    {
        QInputMethodEvent event;
        event.setCommitString(text);
        QApplication::sendEvent(area, &event);
    }
    void drop(const QString& text)
    {
        QMimeData data;
        data.setText(text);
        const QPointF place(5, 5);
        QDragEnterEvent enter(place.toPoint(), Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(area->viewport(), &enter);
        QDropEvent event(place, Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(area->viewport(), &event);
    }

    QWidget window;
    TextArea* area = new TextArea(&window);
    QLineEdit* other = new QLineEdit(&window);
};

} // namespace

/// `TextArea`.
class tst_TextArea : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // What it holds

    void anUnchangedTextComesBackAsItCame_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("empty") << QString();
        QTest::newRow("one line") << u"seen at noon"_s;
        QTest::newRow("\\r\\n") << u"one\r\ntwo\r\n"_s;
        QTest::newRow("\\n") << u"one\ntwo"_s;
        QTest::newRow("\\r") << u"one\rtwo"_s;
        QTest::newRow("mixed") << u"one\r\ntwo\nthree\rfour"_s;
        QTest::newRow("blanks") << u"  one\u00A0two\t "_s;
        QTest::newRow("separators") << u"one\u2028two\u2029three"_s;
    }
    void anUnchangedTextComesBackAsItCame()
    {
        QFETCH(QString, text);
        Stage stage;
        stage.area->SetText(text);
        QCOMPARE(stage.area->Text(), text);
    }

    void aChangedTextHasOneKindOfLineEndsAndKeepsItsBlanks()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.area->SetText(u"one\ntwo\u00A02\r\nthree"_s);
        stage.press(QKeySequence::MoveToEndOfDocument);
        stage.press(Qt::Key_Return);
        stage.press(Qt::Key_Return, Qt::ShiftModifier);
        stage.type(u"x"_s);
        QCOMPARE(stage.area->Text(), u"one\r\ntwo\u00A02\r\nthree\r\n\r\nx"_s);
    }

    void undoingAllChangesBringsTheVeryTextBack()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.area->SetText(u"one\ntwo"_s);
        stage.type(u"abc"_s);
        QCOMPARE(stage.area->Text(), u"abcone\r\ntwo"_s);
        stage.press(QKeySequence::Undo);
        QCOMPARE(stage.area->Text(), u"one\ntwo"_s);
    }

    void theTextBeforeCannotBeUndoneInto()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.area->SetText(u"of another row"_s);
        stage.type(u"x"_s);
        stage.area->SetText(u"of this row"_s);
        stage.press(QKeySequence::Undo);
        QCOMPARE(stage.area->Text(), u"of this row"_s);
    }

    void tabLeavesTheBox()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.press(Qt::Key_Tab);
        QVERIFY(stage.other->hasFocus());
        QCOMPARE(stage.area->Text(), QString());
    }

    // The limit

    void typingStopsAtTheLimit()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.area->SetMaxLength(5);
        stage.type(u"abcdefg"_s);
        QCOMPARE(stage.area->Text(), u"abcde"_s);
        stage.press(Qt::Key_Backspace);
        stage.type(u"XY"_s);
        QCOMPARE(stage.area->Text(), u"abcdX"_s);
    }

    void aLineEndCountsAsTheTwoUnitsThatAreKept()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.area->SetMaxLength(4);
        stage.type(u"abc"_s);
        stage.press(Qt::Key_Return); // one unit is left
        QCOMPARE(stage.area->Text(), u"abc"_s);
        stage.press(Qt::Key_Backspace);
        stage.press(Qt::Key_Return);
        QCOMPARE(stage.area->Text(), u"ab\r\n"_s);
        stage.type(u"x"_s);
        QCOMPARE(stage.area->Text(), u"ab\r\n"_s);
    }

    void aSelectionMakesRoomForWhatReplacesIt()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.area->SetMaxLength(5);
        stage.type(u"abcde"_s);
        stage.press(Qt::Key_Left, Qt::ShiftModifier);
        stage.press(Qt::Key_Left, Qt::ShiftModifier);
        stage.type(u"X"_s);
        QCOMPARE(stage.area->Text(), u"abcX"_s);
        stage.press(QKeySequence::SelectAll);
        stage.paste(u"123456"_s);
        QCOMPARE(stage.area->Text(), u"12345"_s);
    }

    void aPastedTextIsCutAtTheLimit_data()
    {
        QTest::addColumn<QString>("pasted");
        QTest::addColumn<QString>("expected");
        QTest::newRow("fits") << u"cde"_s << u"abcde"_s;
        QTest::newRow("too long") << u"cdefg"_s << u"abcde"_s;
        QTest::newRow("no half line end") << u"cd\nx"_s << u"abcd"_s;
        QTest::newRow("line ends of any kind") << u"\rx"_s << u"ab\r\nx"_s;
        QTest::newRow("no half character") << u"cd\U0001F4CE"_s << u"abcd"_s;
    }
    void aPastedTextIsCutAtTheLimit()
    {
        QFETCH(QString, pasted);
        QFETCH(QString, expected);
        Stage stage;
        QVERIFY(stage.isReady());
        stage.area->SetMaxLength(5);
        stage.type(u"ab"_s);
        stage.paste(pasted);
        QCOMPARE(stage.area->Text(), expected);
        stage.press(QKeySequence::Undo);
        QCOMPARE(stage.area->Text(), u"ab"_s);
    }

    void aDroppedTextIsCutAtTheLimit()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.area->SetMaxLength(5);
        stage.drop(u"abcdefg"_s);
        QCOMPARE(stage.area->Text(), u"abcde"_s);
    }

    void aTextOfAnInputMethodIsCutAtTheLimit()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.area->SetMaxLength(3);
        stage.commit(u"\u6587\u5B57"_s);
        stage.commit(u"\u6587\u5B57"_s);
        QCOMPARE(stage.area->Text(), u"\u6587\u5B57\u6587"_s);
        stage.commit(u"\u6587"_s);
        QCOMPARE(stage.area->Text(), u"\u6587\u5B57\u6587"_s);
    }

    void aLongerTextStandsWholeAndCanOnlyBecomeShorter()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.area->SetMaxLength(5);
        stage.area->SetText(u"abcdefgh"_s);
        QCOMPARE(stage.area->Text(), u"abcdefgh"_s);
        stage.type(u"x"_s);
        stage.paste(u"xy"_s);
        stage.commit(u"x"_s);
        stage.press(Qt::Key_Return);
        QCOMPARE(stage.area->Text(), u"abcdefgh"_s);
        stage.press(Qt::Key_Delete);
        stage.type(u"x"_s);
        QCOMPARE(stage.area->Text(), u"bcdefgh"_s);
        stage.press(QKeySequence::Undo);
        QCOMPARE(stage.area->Text(), u"abcdefgh"_s);
    }

    void commandsWorkAtTheLimit()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.area->SetMaxLength(3);
        stage.type(u"abc"_s);
        stage.press(QKeySequence::SelectAll);
        stage.press(QKeySequence::Copy);
        QCOMPARE(QApplication::clipboard()->text(), u"abc"_s);
        stage.press(QKeySequence::Cut);
        QCOMPARE(stage.area->Text(), QString());
    }
};

TAVRIN_TEST_MAIN(tst_TextArea)
#include "tst_TextArea.moc"
