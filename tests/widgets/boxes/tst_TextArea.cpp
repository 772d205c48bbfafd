#include "support/Keys.h"
#include "support/TestCase.h"
#include "widgets/boxes/TextArea.h"

#include <QApplication>
#include <QClipboard>
#include <QDropEvent>
#include <QImage>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QMimeData>

#include <optional>

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
    void paste(const QMimeData& data)
    {
        auto* copy = new QMimeData; // which the clipboard takes
        for (const QString& format : data.formats())
            copy->setData(format, data.data(format));
        if (data.hasImage())
            copy->setImageData(data.imageData());
        QApplication::clipboard()->setMimeData(copy);
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

private:
    std::optional<Stage> m_stage;

protected:
    void init() override
    {
        failOnUnexpectedWarnings();
        m_stage.emplace();
        QVERIFY(m_stage->isReady());
    }
    void cleanup() override
    {
        m_stage.reset();
        TestCase::cleanup();
    }

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
        m_stage->area->SetText(text);
        QCOMPARE(m_stage->area->Text(), text);
    }

    void aChangedTextHasOneKindOfLineEndsAndKeepsItsBlanks()
    {
        m_stage->area->SetText(u"one\ntwo\u00A02\r\nthree"_s);
        m_stage->press(QKeySequence::MoveToEndOfDocument);
        m_stage->press(Qt::Key_Return);
        m_stage->press(Qt::Key_Return, Qt::ShiftModifier);
        m_stage->type(u"x"_s);
        QCOMPARE(m_stage->area->Text(), u"one\r\ntwo\u00A02\r\nthree\r\n\r\nx"_s);
    }

    void undoingAllChangesBringsTheVeryTextBack()
    {
        m_stage->area->SetText(u"one\ntwo"_s);
        m_stage->type(u"abc"_s);
        QCOMPARE(m_stage->area->Text(), u"abcone\r\ntwo"_s);
        m_stage->press(QKeySequence::Undo);
        QCOMPARE(m_stage->area->Text(), u"one\ntwo"_s);
    }

    void theTextBeforeCannotBeUndoneInto()
    {
        m_stage->area->SetText(u"of another row"_s);
        m_stage->type(u"x"_s);
        m_stage->area->SetText(u"of this row"_s);
        m_stage->press(QKeySequence::Undo);
        QCOMPARE(m_stage->area->Text(), u"of this row"_s);
    }

    void whatWasUndoneCanBeRedone()
    {
        m_stage->area->SetText(u"one\ntwo"_s);
        m_stage->type(u"x"_s);
        m_stage->press(QKeySequence::Undo);
        m_stage->press(QKeySequence::Redo);
        QCOMPARE(m_stage->area->Text(), u"xone\r\ntwo"_s);
    }

    void theCaretStandsAtTheStartOfANewText()
    {
        m_stage->area->SetText(u"one\ntwo"_s);
        m_stage->press(QKeySequence::MoveToEndOfDocument);
        m_stage->area->SetText(u"one\ntwo"_s);
        m_stage->type(u"x"_s);
        QCOMPARE(m_stage->area->Text(), u"xone\r\ntwo"_s);
    }

    void whatIsNoTextIsNotTakenIn()
    {
        QMimeData picture;
        picture.setImageData(QImage(4, 4, QImage::Format_RGB32));
        m_stage->area->SetText(u"one"_s);
        m_stage->press(QKeySequence::SelectAll);
        m_stage->paste(picture);
        QCOMPARE(m_stage->area->Text(), u"one"_s);
    }

    void aPastedTextComesWithoutItsFormat()
    {
        QMimeData formatted;
        formatted.setHtml(u"<b>bold</b>"_s);
        formatted.setText(u"bold"_s);
        m_stage->paste(formatted);
        QCOMPARE(m_stage->area->Text(), u"bold"_s);
        QVERIFY(!m_stage->area->textCursor().charFormat().font().bold());
    }

    void tabLeavesTheBox()
    {
        m_stage->press(Qt::Key_Tab);
        QVERIFY(m_stage->other->hasFocus());
        QCOMPARE(m_stage->area->Text(), QString());
    }

    // The limit

    void typingStopsAtTheLimit()
    {
        m_stage->area->SetMaxLength(5);
        m_stage->type(u"abcdefg"_s);
        QCOMPARE(m_stage->area->Text(), u"abcde"_s);
        m_stage->press(Qt::Key_Backspace);
        m_stage->type(u"XY"_s);
        QCOMPARE(m_stage->area->Text(), u"abcdX"_s);
    }

    void aLineEndCountsAsTheTwoUnitsThatAreKept()
    {
        m_stage->area->SetMaxLength(4);
        m_stage->type(u"abc"_s);
        m_stage->press(Qt::Key_Return); // one unit is left
        QCOMPARE(m_stage->area->Text(), u"abc"_s);
        m_stage->press(Qt::Key_Backspace);
        m_stage->press(Qt::Key_Return);
        QCOMPARE(m_stage->area->Text(), u"ab\r\n"_s);
        m_stage->type(u"x"_s);
        QCOMPARE(m_stage->area->Text(), u"ab\r\n"_s);
    }

    void aSelectionMakesRoomForWhatReplacesIt()
    {
        m_stage->area->SetMaxLength(5);
        m_stage->type(u"abcde"_s);
        m_stage->press(Qt::Key_Left, Qt::ShiftModifier);
        m_stage->press(Qt::Key_Left, Qt::ShiftModifier);
        m_stage->type(u"X"_s);
        QCOMPARE(m_stage->area->Text(), u"abcX"_s);
        m_stage->press(QKeySequence::SelectAll);
        m_stage->paste(u"123456"_s);
        QCOMPARE(m_stage->area->Text(), u"12345"_s);
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
        m_stage->area->SetMaxLength(5);
        m_stage->type(u"ab"_s);
        m_stage->paste(pasted);
        QCOMPARE(m_stage->area->Text(), expected);
        m_stage->press(QKeySequence::Undo);
        QCOMPARE(m_stage->area->Text(), u"ab"_s);
    }

    void aDroppedTextIsCutAtTheLimit()
    {
        m_stage->area->SetMaxLength(5);
        m_stage->drop(u"abcdefg"_s);
        QCOMPARE(m_stage->area->Text(), u"abcde"_s);
    }

    void aTextOfAnInputMethodIsCutAtTheLimit()
    {
        m_stage->area->SetMaxLength(3);
        m_stage->commit(u"\u6587\u5B57"_s);
        m_stage->commit(u"\u6587\u5B57"_s);
        QCOMPARE(m_stage->area->Text(), u"\u6587\u5B57\u6587"_s);
        m_stage->commit(u"\u6587"_s);
        QCOMPARE(m_stage->area->Text(), u"\u6587\u5B57\u6587"_s);
    }

    void whatAnInputMethodReplacesMakesRoom()
    {
        m_stage->area->SetMaxLength(3);
        m_stage->type(u"abc"_s);
        QInputMethodEvent event;
        event.setCommitString(u"XYZ"_s, -2, 2);
        QApplication::sendEvent(m_stage->area, &event);
        QCOMPARE(m_stage->area->Text(), u"aXY"_s);
    }

    void withoutALimitAnyLengthIsTaken()
    {
        QCOMPARE(m_stage->area->MaxLength(), 0);
        m_stage->area->SetMaxLength(2);
        m_stage->area->SetMaxLength(0);
        m_stage->paste(QString(40000, u'x'));
        m_stage->type(u"y"_s);
        QCOMPARE(m_stage->area->Text().size(), 40001);
    }

    void aSelectionStaysWhenNothingOfWhatIsPastedFits()
    {
        m_stage->area->SetMaxLength(3);
        m_stage->type(u"abc"_s);
        m_stage->press(Qt::Key_Left, Qt::ShiftModifier);
        m_stage->paste(u"\U0001F4CE"_s);
        QCOMPARE(m_stage->area->Text(), u"abc"_s);
        QCOMPARE(m_stage->area->textCursor().selectedText(), u"c"_s);
    }

    void aCharacterOfTheThirdLevelIsTextAndNoCommand()
    {
        m_stage->area->SetMaxLength(1);
        const auto press = [&] {
            QKeyEvent key(QEvent::KeyPress, Qt::Key_At, Qt::ControlModifier | Qt::AltModifier, u"@"_s);
            QApplication::sendEvent(m_stage->area, &key);
        };
        press();
        QCOMPARE(m_stage->area->Text(), u"@"_s);
        press();
        QCOMPARE(m_stage->area->Text(), u"@"_s);
    }

    void aTextThatIsReadOnlyCanBeCopiedButNotChanged()
    {
        m_stage->area->SetText(u"abc"_s);
        m_stage->area->setReadOnly(true);
        m_stage->type(u"x"_s);
        m_stage->press(Qt::Key_Return);
        m_stage->press(Qt::Key_Delete);
        m_stage->drop(u"x"_s);
        m_stage->press(QKeySequence::SelectAll);
        m_stage->press(QKeySequence::Copy);
        QCOMPARE(m_stage->area->Text(), u"abc"_s);
        QCOMPARE(QApplication::clipboard()->text(), u"abc"_s);
    }

    void aLongerTextStandsWholeAndCanOnlyBecomeShorter()
    {
        m_stage->area->SetMaxLength(5);
        m_stage->area->SetText(u"abcdefgh"_s);
        QCOMPARE(m_stage->area->Text(), u"abcdefgh"_s);
        m_stage->type(u"x"_s);
        m_stage->paste(u"xy"_s);
        m_stage->commit(u"x"_s);
        m_stage->press(Qt::Key_Return);
        QCOMPARE(m_stage->area->Text(), u"abcdefgh"_s);
        m_stage->press(Qt::Key_Delete);
        m_stage->type(u"x"_s);
        QCOMPARE(m_stage->area->Text(), u"bcdefgh"_s);
        m_stage->press(QKeySequence::Undo);
        QCOMPARE(m_stage->area->Text(), u"abcdefgh"_s);
    }

    void commandsWorkAtTheLimit()
    {
        m_stage->area->SetMaxLength(3);
        m_stage->type(u"abc"_s);
        m_stage->press(QKeySequence::SelectAll);
        m_stage->press(QKeySequence::Copy);
        QCOMPARE(QApplication::clipboard()->text(), u"abc"_s);
        m_stage->press(QKeySequence::Cut);
        QCOMPARE(m_stage->area->Text(), QString());
    }
};

TAVRIN_TEST_MAIN(tst_TextArea)
#include "tst_TextArea.moc"
