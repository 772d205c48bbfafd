#include "support/TestCase.h"
#include "widgets/boxes/TextArea.h"
#include "widgets/boxes/TextStage.h"

#include <QApplication>
#include <QClipboard>
#include <QImage>
#include <QMimeData>

#include <optional>

using namespace Qt::StringLiterals;
using tavrin::TextArea;
using tavrin::test::TextStage;

namespace {

/// A stage for a text area.
class Stage : public TextStage
{
public:
    explicit Stage(TextArea* shown)
        : TextStage(shown)
        , area(shown)
    {
    }

    TextArea* const area;
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
        m_stage.emplace(new TextArea);
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

    // The limit; what it does alike in a box of one line stands in tst_TextLength

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

    void aPastedTextIsCutAtTheLimit_data()
    {
        QTest::addColumn<QString>("pasted");
        QTest::addColumn<QString>("expected");
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

    void aSelectionStaysWhenNothingOfWhatIsPastedFits()
    {
        m_stage->area->SetMaxLength(3);
        m_stage->type(u"abc"_s);
        m_stage->press(Qt::Key_Left, Qt::ShiftModifier);
        m_stage->paste(u"\U0001F4CE"_s);
        QCOMPARE(m_stage->area->Text(), u"abc"_s);
        QCOMPARE(m_stage->area->textCursor().selectedText(), u"c"_s);
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
};

TAVRIN_TEST_MAIN(tst_TextArea)
#include "tst_TextArea.moc"
