#include "support/Keys.h"
#include "support/TestCase.h"
#include "widgets/boxes/TextBox.h"

#include <QApplication>
#include <QClipboard>
#include <QInputMethodEvent>

#include <optional>

using namespace Qt::StringLiterals;
using tavrin::Subscription;
using tavrin::TextBox;
using tavrin::test::typeInto;

namespace {

/// A window with a text box that has the focus, and the texts that it told.
class Stage
{
public:
    Stage()
    {
        box->resize(300, 24);
        window.resize(300, 60);
        m_keep = box->Change.subscribe([this] { told << box->Text(); });
        window.show();
        window.activateWindow();
        box->setFocus();
    }
    bool isReady() { return QTest::qWaitForWindowActive(&window) && box->hasFocus(); }
    void press(QKeySequence::StandardKey keys)
    {
        QTest::keySequence(window.windowHandle(), QKeySequence(keys));
    }
    void press(Qt::Key key) { QTest::keyClick(window.windowHandle(), key); }
    void type(const QString& text) { typeInto(window.windowHandle(), text); }
    void paste(const QString& text)
    {
        QApplication::clipboard()->setText(text);
        press(QKeySequence::Paste);
    }

    QWidget window;
    TextBox* box = new TextBox(&window);
    QStringList told;

private:
    Subscription m_keep;
};

const QString LongText = u"0123456789abcdef"_s; // of 16 units

} // namespace

/// The length of a `TextBox`.
class tst_TextBoxLength : public tavrin::test::TestCase
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
    void withoutALimitAnyLengthIsTaken()
    {
        QCOMPARE(m_stage->box->MaxLength(), 0);
        m_stage->box->SetMaxLength(0);
        const QString longest(40000, u'x');
        m_stage->box->SetText(longest);
        QCOMPARE(m_stage->box->Text(), longest);
        m_stage->type(u"y"_s);
        QCOMPARE(m_stage->box->Text().size(), 40001);
    }

    void aTextOfARecordStandsWholeBeforeThereIsALimit()
    {
        const QString longest(40000, u'x');
        m_stage->box->SetText(longest);
        QCOMPARE(m_stage->box->Text(), longest);
        QCOMPARE(m_stage->told, QStringList{longest});
        m_stage->box->SetMaxLength(5);
        QCOMPARE(m_stage->box->Text(), longest);
        QCOMPARE(m_stage->told.size(), 1);
    }

    void typingStopsAtTheLimit()
    {
        m_stage->box->SetMaxLength(5);
        m_stage->type(u"abcdefg"_s);
        QCOMPARE(m_stage->box->Text(), u"abcde"_s);
    }

    void aPastedTextIsCutAtTheLimit()
    {
        m_stage->box->SetMaxLength(5);
        m_stage->type(u"ab"_s);
        m_stage->paste(u"cdefg"_s);
        QCOMPARE(m_stage->box->Text(), u"abcde"_s);
    }

    void aLongerTextStandsWholeAndTellsOnce()
    {
        m_stage->box->SetText(LongText);
        m_stage->box->SetMaxLength(10);
        QCOMPARE(m_stage->box->Text(), LongText);
        m_stage->box->SetText(LongText + u'g'); // a limit that was set before cuts nothing either
        QCOMPARE(m_stage->box->Text(), LongText + u'g');
        QCOMPARE(m_stage->told, QStringList({LongText, LongText + u'g'}));
        QCOMPARE(m_stage->box->MaxLength(), 10);
    }

    void aLongerTextTakesNothingInUntilItIsShorterThanTheLimit()
    {
        m_stage->box->SetText(LongText);
        m_stage->box->SetMaxLength(10);
        m_stage->type(u"X"_s);
        m_stage->paste(u"XY"_s);
        QCOMPARE(m_stage->box->Text(), LongText);
        m_stage->press(Qt::Key_Backspace);
        m_stage->type(u"X"_s); // not even what was taken away
        QCOMPARE(m_stage->box->Text(), LongText.left(15));
        for (int i = 0; i < 7; ++i)
            m_stage->press(Qt::Key_Backspace);
        m_stage->type(u"XYZ"_s);
        QCOMPARE(m_stage->box->Text(), u"01234567XY"_s);
    }

    void anInputMethodAddsNothingToALongerText()
    {
        m_stage->box->SetText(LongText);
        m_stage->box->SetMaxLength(10);
        QInputMethodEvent commit;
        commit.setCommitString(u"\u6587"_s);
        QApplication::sendEvent(m_stage->box, &commit);
        QCOMPARE(m_stage->box->Text(), LongText);
    }

    void whatWasTakenFromALongerTextComesBackByUndoing()
    {
        m_stage->box->SetText(LongText);
        m_stage->box->SetMaxLength(10);
        m_stage->press(QKeySequence::SelectAll);
        m_stage->press(Qt::Key_Delete);
        QCOMPARE(m_stage->box->Text(), QString());
        m_stage->type(u"new"_s);
        while (m_stage->box->isUndoAvailable())
            m_stage->press(QKeySequence::Undo);
        QCOMPARE(m_stage->box->Text(), LongText);
        m_stage->press(Qt::Key_End); // away from the selection, which came back too
        m_stage->type(u"X"_s);
        QCOMPARE(m_stage->box->Text(), LongText);
    }

    void theNextTextHasTheLimitAgain()
    {
        m_stage->box->SetMaxLength(10);
        m_stage->box->SetText(LongText);
        m_stage->box->SetText(u"01234567"_s);
        m_stage->type(u"XYZ"_s);
        QCOMPARE(m_stage->box->Text(), u"01234567XY"_s);
        m_stage->box->SetMaxLength(12);
        m_stage->type(u"XYZ"_s);
        QCOMPARE(m_stage->box->Text(), u"01234567XYXY"_s);
    }
};

TAVRIN_TEST_MAIN(tst_TextBoxLength)
#include "tst_TextBoxLength.moc"
