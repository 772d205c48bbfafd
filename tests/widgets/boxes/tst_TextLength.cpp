#include "base/failure/Event.h"
#include "support/TestCase.h"
#include "widgets/boxes/TextArea.h"
#include "widgets/boxes/TextBox.h"
#include "widgets/boxes/TextStage.h"

#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QTextDocument>

#include <optional>

using namespace Qt::StringLiterals;
using tavrin::Subscription;
using tavrin::TextArea;
using tavrin::TextBox;
using tavrin::test::TextStage;

namespace {

/// A stage for a box of one line or of several, and the texts that it told.
class Stage : public TextStage
{
public:
    explicit Stage(TextBox* shown)
        : TextStage(shown)
        , m_line(shown)
        , m_keep(shown->Change.subscribe([this] { told << text(); }))
    {
    }
    explicit Stage(TextArea* shown)
        : TextStage(shown)
        , m_area(shown)
    {
        QObject::connect(shown, &TextArea::textChanged, shown, [this] { told << text(); });
    }

    QWidget* box() const { return m_line ? static_cast<QWidget*>(m_line) : m_area; }
    QString text() const { return m_line ? m_line->Text() : m_area->Text(); }
    void setText(const QString& text)
    {
        if (m_line)
            m_line->SetText(text);
        else
            m_area->SetText(text);
    }
    int maxLength() const { return m_line ? m_line->MaxLength() : m_area->MaxLength(); }
    void setMaxLength(int length)
    {
        if (m_line)
            m_line->SetMaxLength(length);
        else
            m_area->SetMaxLength(length);
    }
    bool canUndo() const
    {
        return m_line ? m_line->isUndoAvailable() : m_area->document()->isUndoAvailable();
    }

    QStringList told;

private:
    TextBox* m_line = nullptr;
    TextArea* m_area = nullptr;
    Subscription m_keep;
};

const QString LongText = u"0123456789abcdef"_s; // of 16 units

} // namespace

/// The limit of a text's length, which `TextBox` and `TextArea` keep alike.
class tst_TextLength : public tavrin::test::TestCase
{
    Q_OBJECT

private:
    std::optional<Stage> m_stage;

protected:
    void init() override
    {
        failOnUnexpectedWarnings();
        QFETCH_GLOBAL(bool, hasLines);
        if (hasLines)
            m_stage.emplace(new TextArea);
        else
            m_stage.emplace(new TextBox);
        QVERIFY(m_stage->isReady());
    }
    void cleanup() override
    {
        m_stage.reset();
        TestCase::cleanup();
    }

private Q_SLOTS:
    void initTestCase_data()
    {
        QTest::addColumn<bool>("hasLines");
        QTest::newRow("TextBox") << false;
        QTest::newRow("TextArea") << true;
    }

    void withoutALimitAnyLengthIsTaken()
    {
        QCOMPARE(m_stage->maxLength(), 0);
        m_stage->setMaxLength(0);
        const QString longest(40000, u'x');
        m_stage->setText(longest);
        QCOMPARE(m_stage->text(), longest);
        m_stage->type(u"y"_s);
        QCOMPARE(m_stage->text().size(), 40001);
        m_stage->setText(QString());
        m_stage->setMaxLength(2);
        m_stage->setMaxLength(0);
        m_stage->paste(longest);
        m_stage->type(u"y"_s);
        QCOMPARE(m_stage->text().size(), 40001);
    }

    void aTextOfARecordStandsWholeBeforeThereIsALimit()
    {
        const QString longest(40000, u'x');
        m_stage->setText(longest);
        QCOMPARE(m_stage->text(), longest);
        QCOMPARE(m_stage->told, QStringList{longest});
        m_stage->setMaxLength(5);
        QCOMPARE(m_stage->text(), longest);
        QCOMPARE(m_stage->told.size(), 1);
    }

    void typingStopsAtTheLimit()
    {
        m_stage->setMaxLength(5);
        m_stage->type(u"abcdefg"_s);
        QCOMPARE(m_stage->text(), u"abcde"_s);
        m_stage->press(Qt::Key_Backspace);
        m_stage->type(u"XY"_s);
        QCOMPARE(m_stage->text(), u"abcdX"_s);
    }

    void aSelectionMakesRoomForWhatReplacesIt()
    {
        m_stage->setMaxLength(5);
        m_stage->type(u"abcde"_s);
        m_stage->press(Qt::Key_Left, Qt::ShiftModifier);
        m_stage->press(Qt::Key_Left, Qt::ShiftModifier);
        m_stage->type(u"X"_s);
        QCOMPARE(m_stage->text(), u"abcX"_s);
        m_stage->press(QKeySequence::SelectAll);
        m_stage->paste(u"123456"_s);
        QCOMPARE(m_stage->text(), u"12345"_s);
    }

    void aPastedTextIsCutAtTheLimit_data()
    {
        QTest::addColumn<QString>("pasted");
        QTest::newRow("fits") << u"cde"_s;
        QTest::newRow("too long") << u"cdefg"_s;
    }
    void aPastedTextIsCutAtTheLimit()
    {
        QFETCH(QString, pasted);
        m_stage->setMaxLength(5);
        m_stage->type(u"ab"_s);
        m_stage->paste(pasted);
        QCOMPARE(m_stage->text(), u"abcde"_s);
        m_stage->press(QKeySequence::Undo);
        QCOMPARE(m_stage->text(), u"ab"_s);
    }

    void aDroppedTextIsCutAtTheLimit()
    {
        m_stage->setMaxLength(5);
        m_stage->drop(u"abcdefg"_s);
        QCOMPARE(m_stage->text(), u"abcde"_s);
    }

    void aTextOfAnInputMethodIsCutAtTheLimit()
    {
        m_stage->setMaxLength(3);
        m_stage->commit(u"\u6587\u5B57"_s);
        m_stage->commit(u"\u6587\u5B57"_s);
        QCOMPARE(m_stage->text(), u"\u6587\u5B57\u6587"_s);
        m_stage->commit(u"\u6587"_s);
        QCOMPARE(m_stage->text(), u"\u6587\u5B57\u6587"_s);
    }

    void whatAnInputMethodReplacesMakesRoom()
    {
        m_stage->setMaxLength(3);
        m_stage->type(u"abc"_s);
        m_stage->commit(u"XYZ"_s, 2);
        QCOMPARE(m_stage->text(), u"aXY"_s);
    }

    void aCharacterOfTheThirdLevelIsTextAndNoCommand()
    {
        m_stage->setMaxLength(1);
        const auto press = [&] {
            QKeyEvent key(QEvent::KeyPress, Qt::Key_At, Qt::ControlModifier | Qt::AltModifier, u"@"_s);
            QApplication::sendEvent(m_stage->box(), &key);
        };
        press();
        QCOMPARE(m_stage->text(), u"@"_s);
        press();
        QCOMPARE(m_stage->text(), u"@"_s);
    }

    void aLongerTextStandsWholeAndTellsOnce()
    {
        m_stage->setText(LongText);
        m_stage->setMaxLength(10);
        QCOMPARE(m_stage->text(), LongText);
        m_stage->setText(LongText + u'g'); // a limit that was set before cuts nothing either
        QCOMPARE(m_stage->text(), LongText + u'g');
        QCOMPARE(m_stage->told, QStringList({LongText, LongText + u'g'}));
        QCOMPARE(m_stage->maxLength(), 10);
    }

    void aLongerTextStandsWholeAndCanOnlyBecomeShorter()
    {
        m_stage->setMaxLength(5);
        m_stage->setText(u"abcdefgh"_s);
        QCOMPARE(m_stage->text(), u"abcdefgh"_s);
        m_stage->press(Qt::Key_Home);
        m_stage->type(u"x"_s);
        m_stage->paste(u"xy"_s);
        m_stage->commit(u"x"_s);
        m_stage->press(Qt::Key_Return);
        QCOMPARE(m_stage->text(), u"abcdefgh"_s);
        m_stage->press(Qt::Key_Delete);
        m_stage->type(u"x"_s);
        QCOMPARE(m_stage->text(), u"bcdefgh"_s);
        m_stage->press(QKeySequence::Undo);
        QCOMPARE(m_stage->text(), u"abcdefgh"_s);
    }

    void aLongerTextTakesNothingInUntilItIsShorterThanTheLimit()
    {
        m_stage->setText(LongText);
        m_stage->setMaxLength(10);
        m_stage->press(Qt::Key_End);
        m_stage->type(u"X"_s);
        m_stage->paste(u"XY"_s);
        QCOMPARE(m_stage->text(), LongText);
        m_stage->press(Qt::Key_Backspace);
        m_stage->type(u"X"_s); // not even what was taken away
        QCOMPARE(m_stage->text(), LongText.left(15));
        for (int i = 0; i < 7; ++i)
            m_stage->press(Qt::Key_Backspace);
        m_stage->type(u"XYZ"_s);
        QCOMPARE(m_stage->text(), u"01234567XY"_s);
    }

    void anInputMethodAddsNothingToALongerText()
    {
        m_stage->setText(LongText);
        m_stage->setMaxLength(10);
        m_stage->commit(u"\u6587"_s);
        QCOMPARE(m_stage->text(), LongText);
    }

    void whatWasTakenFromALongerTextComesBackByUndoing()
    {
        m_stage->setText(LongText);
        m_stage->setMaxLength(10);
        m_stage->press(QKeySequence::SelectAll);
        m_stage->press(Qt::Key_Delete);
        QCOMPARE(m_stage->text(), QString());
        m_stage->type(u"new"_s);
        while (m_stage->canUndo())
            m_stage->press(QKeySequence::Undo);
        QCOMPARE(m_stage->text(), LongText);
        m_stage->press(Qt::Key_End); // away from the selection, which came back too
        m_stage->type(u"X"_s);
        QCOMPARE(m_stage->text(), LongText);
    }

    void theNextTextHasTheLimitAgain()
    {
        m_stage->setMaxLength(10);
        m_stage->setText(LongText);
        m_stage->setText(u"01234567"_s);
        m_stage->press(Qt::Key_End);
        m_stage->type(u"XYZ"_s);
        QCOMPARE(m_stage->text(), u"01234567XY"_s);
        m_stage->setMaxLength(12);
        m_stage->type(u"XYZ"_s);
        QCOMPARE(m_stage->text(), u"01234567XYXY"_s);
    }

    void aPutTextGoesOnAtItsEndInOneLineAndAtItsStartInSeveralWhateverTheLimit()
    {
        QFETCH_GLOBAL(bool, hasLines);
        m_stage->setMaxLength(10);
        m_stage->setText(u"0123"_s);
        m_stage->setMaxLength(12);
        m_stage->type(u"x"_s);
        QCOMPARE(m_stage->text(), hasLines ? u"x0123"_s : u"0123x"_s);
        m_stage->setText(LongText); // longer than the limit
        m_stage->press(Qt::Key_Delete);
        m_stage->press(Qt::Key_Backspace);
        QCOMPARE(m_stage->text(), hasLines ? LongText.mid(1) : LongText.chopped(1));
    }

    void commandsWorkAtTheLimit()
    {
        m_stage->setMaxLength(3);
        m_stage->type(u"abc"_s);
        m_stage->press(QKeySequence::SelectAll);
        m_stage->press(QKeySequence::Copy);
        QCOMPARE(QApplication::clipboard()->text(), u"abc"_s);
        m_stage->press(QKeySequence::Cut);
        QCOMPARE(m_stage->text(), QString());
    }
};

TAVRIN_TEST_MAIN(tst_TextLength)
#include "tst_TextLength.moc"
