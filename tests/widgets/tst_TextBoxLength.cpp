#include "support/Keys.h"
#include "support/TestCase.h"
#include "widgets/TextBox.h"

#include <QApplication>
#include <QClipboard>
#include <QInputMethodEvent>

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

private Q_SLOTS:
    void withoutALimitAnyLengthIsTaken()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        QCOMPARE(stage.box->MaxLength(), 0);
        stage.box->SetMaxLength(0);
        const QString longest(40000, u'x');
        stage.box->SetText(longest);
        QCOMPARE(stage.box->Text(), longest);
        stage.type(u"y"_s);
        QCOMPARE(stage.box->Text().size(), 40001);
    }

    void aTextOfARecordStandsWholeBeforeThereIsALimit()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        const QString longest(40000, u'x');
        stage.box->SetText(longest);
        QCOMPARE(stage.box->Text(), longest);
        QCOMPARE(stage.told, QStringList{longest});
        stage.box->SetMaxLength(5);
        QCOMPARE(stage.box->Text(), longest);
        QCOMPARE(stage.told.size(), 1);
    }

    void typingStopsAtTheLimit()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.box->SetMaxLength(5);
        stage.type(u"abcdefg"_s);
        QCOMPARE(stage.box->Text(), u"abcde"_s);
    }

    void aPastedTextIsCutAtTheLimit()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.box->SetMaxLength(5);
        stage.type(u"ab"_s);
        stage.paste(u"cdefg"_s);
        QCOMPARE(stage.box->Text(), u"abcde"_s);
    }

    void aLongerTextStandsWholeAndTellsOnce()
    {
        Stage stage;
        stage.box->SetText(LongText);
        stage.box->SetMaxLength(10);
        QCOMPARE(stage.box->Text(), LongText);
        stage.box->SetText(LongText + u'g'); // a limit that was set before cuts nothing either
        QCOMPARE(stage.box->Text(), LongText + u'g');
        QCOMPARE(stage.told, QStringList({LongText, LongText + u'g'}));
        QCOMPARE(stage.box->MaxLength(), 10);
    }

    void aLongerTextTakesNothingInUntilItIsShorterThanTheLimit()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.box->SetText(LongText);
        stage.box->SetMaxLength(10);
        stage.type(u"X"_s);
        stage.paste(u"XY"_s);
        QCOMPARE(stage.box->Text(), LongText);
        stage.press(Qt::Key_Backspace);
        stage.type(u"X"_s); // not even what was taken away
        QCOMPARE(stage.box->Text(), LongText.left(15));
        for (int i = 0; i < 7; ++i)
            stage.press(Qt::Key_Backspace);
        stage.type(u"XYZ"_s);
        QCOMPARE(stage.box->Text(), u"01234567XY"_s);
    }

    void anInputMethodAddsNothingToALongerText()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.box->SetText(LongText);
        stage.box->SetMaxLength(10);
        QInputMethodEvent commit;
        commit.setCommitString(u"\u6587"_s);
        QApplication::sendEvent(stage.box, &commit);
        QCOMPARE(stage.box->Text(), LongText);
    }

    void whatWasTakenFromALongerTextComesBackByUndoing()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.box->SetText(LongText);
        stage.box->SetMaxLength(10);
        stage.press(QKeySequence::SelectAll);
        stage.press(Qt::Key_Delete);
        QCOMPARE(stage.box->Text(), QString());
        stage.type(u"new"_s);
        while (stage.box->isUndoAvailable())
            stage.press(QKeySequence::Undo);
        QCOMPARE(stage.box->Text(), LongText);
        stage.press(Qt::Key_End); // away from the selection, which came back too
        stage.type(u"X"_s);
        QCOMPARE(stage.box->Text(), LongText);
    }

    void theNextTextHasTheLimitAgain()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.box->SetMaxLength(10);
        stage.box->SetText(LongText);
        stage.box->SetText(u"01234567"_s);
        stage.type(u"XYZ"_s);
        QCOMPARE(stage.box->Text(), u"01234567XY"_s);
        stage.box->SetMaxLength(12);
        stage.type(u"XYZ"_s);
        QCOMPARE(stage.box->Text(), u"01234567XYXY"_s);
    }
};

TAVRIN_TEST_MAIN(tst_TextBoxLength)
#include "tst_TextBoxLength.moc"
