#include "base/Error.h"
#include "spell/Sentence.h"
#include "spell/SpellingStage.h"
#include "spell/SpellingWalk.h"
#include "widgets/TextArea.h"

#include <QAccessible>
#include <QLineEdit>
#include <QScreen>
#include <QSet>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

/// A box with a wrong text, and the dialog over it.
struct Stage
{
    explicit Stage(const QString& text, bool allowAdd = true)
    {
        window.setGeometry(40, 40, 300, 120);
        area = new TextArea(&window);
        area->setGeometry(10, 10, 280, 100);
        area->SetText(text);
        window.show();
        allows = allowAdd;
    }
    ~Stage()
    {
        if (form)
            form->hide();
    }

    bool open()
    {
        walk = std::make_shared<SpellingWalk>(area, spellerOf(folder));
        form = std::make_unique<frmSpelling>(walk, allows);
        form->show();
        form->activateWindow();
        return QTest::qWaitForWindowActive(form.get());
    }
    Dialog dialog() const { return Dialog(*form); }
    QString text() const { return area->toPlainText(); }

    SpellingFolder folder;
    QWidget window;
    QPointer<TextArea> area;
    std::shared_ptr<SpellingWalk> walk;
    std::unique_ptr<frmSpelling> form;
    bool allows = true;
};

} // namespace

class tst_frmSpelling : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // What it shows

    void itShowsTheWordInItsSentenceWithSuggestions()
    {
        Stage stage(u"All was calm. Teh driver left. Nobody came."_s);
        QVERIFY(stage.open());
        const Dialog dialog = stage.dialog();
        QCOMPARE(stage.form->windowTitle(), u"Spelling"_s);
        QCOMPARE(dialog.part<QLabel>("lblSentence")->text(), u"Not in the dictionary:"_s);
        QCOMPARE(dialog.sentence(), u"Teh driver left."_s);
        QCOMPARE(dialog.marked(), u"Teh"_s);
        QVERIFY(dialog.list()->count() > 1);
        QCOMPARE(dialog.list()->currentRow(), 0);
        QCOMPARE(dialog.changeTo()->Text(), dialog.list()->item(0)->text());
        QVERIFY(dialog.list()->hasFocus());
        QCOMPARE(dialog.message(), QString());
        QVERIFY(!dialog.button("cmdUndo")->isEnabled());
    }

    void theWordIsMarkedByMoreThanItsColour()
    {
        Stage stage(u"Teh end"_s);
        QVERIFY(stage.open());
        const auto* shown = stage.dialog().part<QTextEdit>("txtSentence");
        QTextCursor cursor(shown->document());
        cursor.setPosition(1);
        const QTextCharFormat mark = cursor.charFormat();
        QVERIFY(mark.fontUnderline());
        const QColor ground = shown->palette().color(QPalette::Base);
        QVERIFY(std::abs(mark.foreground().color().lightness() - ground.lightness()) > 100);
        cursor.setPosition(5);
        QVERIFY(!cursor.charFormat().fontUnderline());
    }

    void theMarkAndTheMessageCanBeReadOnADarkTheme()
    {
        Stage stage(u"Teh end"_s);
        QVERIFY(stage.open());
        QPalette dark = stage.form->palette();
        dark.setColor(QPalette::Window, QColor(31, 34, 38));
        dark.setColor(QPalette::Base, QColor(24, 26, 29));
        stage.form->setPalette(dark);
        QTextCursor cursor(stage.dialog().part<QTextEdit>("txtSentence")->document());
        cursor.setPosition(1);
        const int mark = cursor.charFormat().foreground().color().lightness();
        const int message =
            stage.dialog().part<QLabel>("lblMessage")->palette().color(QPalette::WindowText).lightness();
        QVERIFY(mark > 128);
        QVERIFY(message > 128);
    }

    void withoutSuggestionsTheWordItselfWaitsToBeEdited()
    {
        const QString word(60, u'q');
        Stage stage(word + u" end"_s);
        QVERIFY(stage.open());
        const Dialog dialog = stage.dialog();
        QCOMPARE(dialog.list()->count(), 1);
        QCOMPARE(dialog.list()->item(0)->text(), u"(no suggestions)"_s);
        QVERIFY(!dialog.list()->isEnabled());
        QCOMPARE(dialog.changeTo()->Text(), word);
        QCOMPARE(dialog.changeTo()->selectedText(), word);
        QVERIFY(dialog.changeTo()->hasFocus());
        QVERIFY(!dialog.button("cmdChange")->isEnabled()); // there is no change yet
        QVERIFY(!dialog.button("cmdChangeAll")->isEnabled());
        dialog.press(Qt::Key_Return);
        QCOMPARE(stage.text(), word + u" end"_s);
        dialog.press(Qt::Key_X);
        QVERIFY(dialog.button("cmdChange")->isEnabled());
        dialog.press(Qt::Key_Return);
        QCOMPARE(stage.text(), u"x end"_s);
    }

    void anEmptyReplacementIsNoChange_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("nothing") << QString();
        QTest::newRow("blanks") << u"  "_s;
        QTest::newRow("the word itself") << u"Teh"_s;
    }
    void anEmptyReplacementIsNoChange()
    {
        QFETCH(QString, text);
        Stage stage(u"Teh end"_s);
        QVERIFY(stage.open());
        const Dialog dialog = stage.dialog();
        dialog.changeTo()->SetText(text);
        QVERIFY(!dialog.button("cmdChange")->isEnabled());
        QVERIFY(!dialog.button("cmdChangeAll")->isEnabled());
        dialog.press(Qt::Key_Return);
        QCOMPARE(stage.text(), u"Teh end"_s);
        QVERIFY(stage.form->isVisible());
    }

    void wordsAreAddedOnlyWithTheRight()
    {
        Stage stage(u"Qxzville end"_s, false);
        QVERIFY(stage.open());
        const Dialog dialog = stage.dialog();
        QVERIFY(!dialog.button("cmdAdd")->isVisible());
        QVERIFY(!dialog.button("cmdAdd")->isEnabled());
        dialog.press(Qt::Key_A, Qt::AltModifier);
        QTest::qWait(0);
        QVERIFY(stage.form->isVisible());
        QCOMPARE(stage.folder.customWords(), QByteArray());
    }

    void aTextThatIsNotOpenIsShownWithoutAWayToChangeIt()
    {
        Stage stage(u"Teh sayd"_s);
        stage.area->setReadOnly(true);
        QVERIFY(stage.open());
        const Dialog dialog = stage.dialog();
        QCOMPARE(dialog.message(), u"The text of this box cannot be changed."_s);
        for (const char* name : {"cmdChange", "cmdChangeAll"})
            QVERIFY(!dialog.button(name)->isEnabled());
        QVERIFY(!dialog.changeTo()->isEnabled());
        dialog.press(Qt::Key_Return); // on Ignore, which has the focus
        QCOMPARE(dialog.marked(), u"sayd"_s);
        QCOMPARE(dialog.message(), u"The text of this box cannot be changed."_s);
        QCOMPARE(stage.text(), u"Teh sayd"_s);
        dialog.click("cmdIgnore");
        QVERIFY(!stage.form->isVisible());
    }

    // What the person decides

    void whatEachButtonDoes_data()
    {
        QTest::addColumn<QByteArray>("button");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("next"); // the word at issue then; "" when the dialog is gone
        QTest::addColumn<QByteArray>("added");
        QTest::newRow("Change") << QByteArray("cmdChange") << u"the sayd teh"_s << u"sayd"_s << QByteArray();
        QTest::newRow("Change All") << QByteArray("cmdChangeAll") << u"the sayd the"_s << u"sayd"_s
                                    << QByteArray();
        QTest::newRow("Ignore") << QByteArray("cmdIgnore") << u"teh sayd teh"_s << u"sayd"_s << QByteArray();
        QTest::newRow("Ignore All") << QByteArray("cmdIgnoreAll") << u"teh sayd teh"_s << u"sayd"_s
                                    << QByteArray();
        QTest::newRow("Add") << QByteArray("cmdAdd") << u"teh sayd teh"_s << u"sayd"_s << QByteArray("teh\n");
        QTest::newRow("Cancel") << QByteArray("cmdCancel") << u"teh sayd teh"_s << QString() << QByteArray();
    }
    void whatEachButtonDoes()
    {
        QFETCH(QByteArray, button);
        QFETCH(QString, text);
        QFETCH(QString, next);
        QFETCH(QByteArray, added);
        Stage stage(u"teh sayd teh"_s);
        QVERIFY(stage.open());
        const Dialog dialog = stage.dialog();
        dialog.changeTo()->SetText(u"the"_s);
        dialog.click(button);
        QCOMPARE(stage.text(), text);
        QCOMPARE(stage.folder.customWords(), added);
        QCOMPARE(stage.form->isVisible(), !next.isEmpty());
        QCOMPARE(stage.form->Canceled(), next.isEmpty());
        if (!next.isEmpty()) {
            QCOMPARE(dialog.marked(), next);
            QCOMPARE(stage.area->textCursor().selectedText(), next);
            QVERIFY(dialog.list()->hasFocus());
            QVERIFY(dialog.button("cmdUndo")->isEnabled());
        }
    }

    void whichWordsAreAskedAboutAgain_data()
    {
        QTest::addColumn<QByteArray>("button");
        QTest::addColumn<bool>("again");
        QTest::newRow("Ignore") << QByteArray("cmdIgnore") << true;
        QTest::newRow("Ignore All") << QByteArray("cmdIgnoreAll") << false;
        QTest::newRow("Add") << QByteArray("cmdAdd") << false;
    }
    void whichWordsAreAskedAboutAgain()
    {
        QFETCH(QByteArray, button);
        QFETCH(bool, again);
        Stage stage(u"teh cat, teh end"_s);
        QVERIFY(stage.open());
        stage.dialog().click(button);
        QCOMPARE(stage.form->isVisible(), again);
        if (again)
            QCOMPARE(stage.walk->place().Offset, 9);
    }

    void theDialogGoesWithTheLastWord()
    {
        Stage stage(u"teh sayd"_s);
        QVERIFY(stage.open());
        stage.dialog().click("cmdIgnore");
        QVERIFY(stage.form->isVisible());
        stage.dialog().click("cmdIgnore");
        QVERIFY(!stage.form->isVisible());
        QVERIFY(!stage.form->Canceled());
    }

    void undoLastBringsBackTheWordAndItsText()
    {
        Stage stage(u"teh sayd hte"_s);
        QVERIFY(stage.open());
        const Dialog dialog = stage.dialog();
        dialog.changeTo()->SetText(u"the"_s);
        dialog.click("cmdChange");
        dialog.click("cmdIgnore");
        dialog.click("cmdUndo");
        QCOMPARE(dialog.marked(), u"sayd"_s);
        QCOMPARE(stage.text(), u"the sayd hte"_s);
        dialog.click("cmdUndo");
        QCOMPARE(dialog.marked(), u"teh"_s);
        QCOMPARE(stage.text(), u"teh sayd hte"_s);
        QVERIFY(!dialog.button("cmdUndo")->isEnabled());
    }

    void undoLastTakesAnAddedWordOutAgain()
    {
        Stage stage(u"Qxzville sayd"_s);
        QVERIFY(stage.open());
        const Dialog dialog = stage.dialog();
        dialog.click("cmdAdd");
        QCOMPARE(stage.folder.customWords(), QByteArray("Qxzville\n"));
        QCOMPARE(dialog.marked(), u"sayd"_s);
        dialog.click("cmdUndo");
        QCOMPARE(stage.folder.customWords(), QByteArray());
        QCOMPARE(dialog.marked(), u"Qxzville"_s);
        QVERIFY(stage.walk->addedWords().isEmpty());
    }

    void aRefusedChangeIsToldAndWhatWasTypedStays()
    {
        Stage stage(u"teh sayd"_s);
        stage.area->SetMaxLength(10);
        QVERIFY(stage.open());
        const Dialog dialog = stage.dialog();
        const QSize size = stage.form->size();
        dialog.changeTo()->SetText(u"theatre"_s);
        dialog.click("cmdChange");
        QCOMPARE(dialog.message(),
                 u"There is no room for this change: the text can have 10 characters at most."_s);
        QCOMPARE(dialog.changeTo()->Text(), u"theatre"_s);
        QCOMPARE(stage.text(), u"teh sayd"_s);
        QCOMPARE(dialog.marked(), u"teh"_s);
        QCOMPARE(stage.form->size(), size); // nothing moves below the mouse
        dialog.changeTo()->SetText(u"the"_s);
        dialog.click("cmdChange");
        QCOMPARE(dialog.message(), QString());
        QCOMPARE(stage.text(), u"the sayd"_s);
    }

    void aWordThatCannotBeAddedIsToldAndTheDialogStays()
    {
        Stage stage(u"Qxzville end"_s);
        QVERIFY(stage.open());
        QVERIFY(QFile::remove(stage.folder.custom()));
        stage.dialog().click("cmdAdd");
        QVERIFY(stage.form->isVisible());
        QVERIFY(stage.dialog().message().contains(u"custom.dic"_s));
        QCOMPARE(stage.dialog().marked(), u"Qxzville"_s);
    }

    void aTextThatAProgramHasChangedIsShownAnew()
    {
        Stage stage(u"teh end"_s);
        QVERIFY(stage.open());
        stage.area->SetText(u"A sayd thing"_s);
        stage.dialog().click("cmdChange");
        QCOMPARE(stage.text(), u"A sayd thing"_s);
        QCOMPARE(stage.dialog().marked(), u"sayd"_s);
        QCOMPARE(stage.dialog().message(),
                 u"The text was changed meanwhile. The check goes on in the new text."_s);
    }

    void aBoxThatDiesTakesTheDialogWithIt()
    {
        Stage stage(u"teh end"_s);
        QVERIFY(stage.open());
        delete stage.area;
        QVERIFY(!stage.form->isVisible());
    }

    // The keyboard

    void enterChangesAndEscapeCancels()
    {
        Stage stage(u"sayyd teh end"_s);
        QVERIFY(stage.open());
        const Dialog dialog = stage.dialog();
        const QString first = dialog.list()->item(0)->text();
        dialog.press(Qt::Key_Return);
        QCOMPARE(stage.text(), first + u" teh end"_s);
        QCOMPARE(dialog.marked(), u"teh"_s);
        dialog.press(Qt::Key_Escape);
        QVERIFY(!stage.form->isVisible());
        QVERIFY(stage.form->Canceled());
        QCOMPARE(stage.text(), first + u" teh end"_s); // what was changed stays
    }

    void anEnterThatIsHeldDownChangesOneWord()
    {
        Stage stage(u"teh sayd hte end"_s);
        QVERIFY(stage.open());
        stage.dialog().press(Qt::Key_Return);
        QCOMPARE(stage.dialog().marked(), u"sayd"_s);
        const QString text = stage.text();
        for (int i = 0; i < 3; ++i) {
            QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, u"\r"_s, true);
            QApplication::sendEvent(QApplication::focusWidget(), &held);
        }
        QCOMPARE(stage.text(), text);
        QCOMPARE(stage.dialog().marked(), u"sayd"_s);
    }

    void arrowsChooseASuggestionFromTheListAndFromTheBox()
    {
        Stage stage(u"teh end"_s);
        QVERIFY(stage.open());
        const Dialog dialog = stage.dialog();
        dialog.press(Qt::Key_Down);
        QCOMPARE(dialog.list()->currentRow(), 1);
        QCOMPARE(dialog.changeTo()->Text(), dialog.list()->item(1)->text());
        dialog.changeTo()->setFocus();
        dialog.press(Qt::Key_Up);
        QCOMPARE(dialog.list()->currentRow(), 0);
        QCOMPARE(dialog.changeTo()->Text(), dialog.list()->item(0)->text());
        QVERIFY(dialog.changeTo()->hasFocus());
        dialog.press(Qt::Key_Down);
        const QString chosen = dialog.list()->item(1)->text();
        dialog.press(Qt::Key_Return);
        QCOMPARE(stage.text(), chosen + u" end"_s);
    }

    void aDoubleClickTakesASuggestion()
    {
        Stage stage(u"teh end"_s);
        QVERIFY(stage.open());
        QListWidget* list = stage.dialog().list();
        const QString chosen = list->item(1)->text();
        const QPoint place = list->visualItemRect(list->item(1)).center();
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, place);
        QCOMPARE(stage.dialog().changeTo()->Text(), chosen);
        QCOMPARE(stage.text(), u"teh end"_s);
        QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, place);
        QCOMPARE(stage.text(), chosen + u" end"_s);
    }

    void eachButtonHasALetterOfItsOwnForAlt()
    {
        Stage stage(u"teh end"_s);
        QVERIFY(stage.open());
        QSet<QString> letters;
        QStringList captions;
        for (const auto* button : stage.form->findChildren<QPushButton*>())
            captions << button->text();
        for (const char* name : {"lblChangeTo", "lblSuggestions"})
            captions << stage.dialog().part<QLabel>(name)->text();
        for (const QString& caption : captions) {
            const QString letter = QKeySequence::mnemonic(caption).toString();
            QVERIFY2(!letter.isEmpty(), qPrintable(caption));
            QVERIFY2(!letters.contains(letter), qPrintable(caption));
            letters << letter;
        }
        QCOMPARE(letters.size(), 9);
    }

    void altAndALetterPressTheButton_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("next");
        QTest::newRow("Ignore") << int(Qt::Key_I) << u"teh sayd teh"_s << u"sayd@4"_s;
        QTest::newRow("Change") << int(Qt::Key_C) << u"the sayd teh"_s << u"sayd@4"_s;
        QTest::newRow("Change All") << int(Qt::Key_L) << u"the sayd the"_s << u"sayd@4"_s;
        QTest::newRow("Ignore All") << int(Qt::Key_G) << u"teh sayd teh"_s << u"sayd@4"_s;
        QTest::newRow("Add") << int(Qt::Key_A) << u"teh sayd teh"_s << u"sayd@4"_s;
        QTest::newRow("Cancel") << int(Qt::Key_N) << u"teh sayd teh"_s << QString();
    }
    void altAndALetterPressTheButton()
    {
        QFETCH(int, key);
        QFETCH(QString, text);
        QFETCH(QString, next);
        Stage stage(u"teh sayd teh"_s);
        QVERIFY(stage.open());
        stage.dialog().changeTo()->SetText(u"the"_s);
        stage.dialog().press(Qt::Key(key), Qt::AltModifier);
        const auto where = [&] {
            return stage.form->isVisible()
                       ? stage.walk->word() + u'@' + QString::number(stage.walk->place().Offset)
                       : QString();
        };
        QTRY_COMPARE(where(), next);
        QCOMPARE(stage.text(), text);
    }

    void theTabKeyGoesThroughAllParts()
    {
        Stage stage(u"teh sayd"_s);
        QVERIFY(stage.open());
        const Dialog dialog = stage.dialog();
        dialog.click("cmdIgnore"); // so that there is something to undo
        QVERIFY(dialog.list()->hasFocus());
        for (const char* name : {"cmdIgnore", "cmdIgnoreAll", "cmdAdd", "cmdChange", "cmdChangeAll",
                                 "cmdUndo", "cmdCancel", "txtChangeTo", "lstSuggestions"}) {
            dialog.press(Qt::Key_Tab);
            QCOMPARE(QApplication::focusWidget()->objectName(), QString::fromLatin1(name));
        }
    }

    void enterOnAnotherButtonPressesThatButton()
    {
        Stage stage(u"teh sayd"_s);
        QVERIFY(stage.open());
        stage.dialog().button("cmdIgnore")->setFocus(Qt::TabFocusReason);
        stage.dialog().press(Qt::Key_Return);
        QCOMPARE(stage.text(), u"teh sayd"_s);
        QCOMPARE(stage.dialog().marked(), u"sayd"_s);
        QVERIFY(stage.dialog().list()->hasFocus());
        stage.dialog().press(Qt::Key_Return); // which is Change again
        QVERIFY(stage.text() != u"teh sayd"_s);
    }

    // Screen readers

    void everythingThatTakesTheFocusHasAName()
    {
        Stage stage(u"teh end"_s);
        QVERIFY(stage.open());
        for (QWidget* widget : stage.form->findChildren<QWidget*>()) {
            if (widget->focusPolicy() != Qt::NoFocus && widget->parentWidget() == stage.form.get())
                QVERIFY2(!QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name).isEmpty(),
                         qPrintable(widget->objectName()));
        }
    }

    void eachWordAndEachRefusalCanBeReadByScreenReaders()
    {
        Stage stage(u"teh sayd"_s);
        stage.area->SetMaxLength(10);
        QVERIFY(stage.open());
        const auto name = [&](const char* label) {
            QAccessibleInterface* told =
                QAccessible::queryAccessibleInterface(stage.dialog().part<QLabel>(label));
            return told->text(QAccessible::Name);
        };
        QCOMPARE(name("lblSentence"), u"Not in the dictionary: teh"_s);
        stage.dialog().changeTo()->SetText(u"theatre"_s);
        stage.dialog().click("cmdChange");
        QCOMPARE(name("lblMessage"),
                 u"There is no room for this change: the text can have 10 characters at most."_s);
        stage.dialog().click("cmdIgnore");
        QCOMPARE(name("lblSentence"), u"Not in the dictionary: sayd"_s);
        QCOMPARE(stage.dialog().list()->accessibleDescription(), u"Not in the dictionary: sayd. teh sayd"_s);
    }

    // The place

    void itNeverCoversTheWord()
    {
        Stage stage(u"One line with nothing.\nteh second line\nthird line sayd\nend"_s);
        const QRect screen = stage.window.screen()->availableGeometry();
        for (const QPoint& corner : {screen.topLeft(), screen.center() - QPoint(150, 60),
                                     QPoint(screen.left(), screen.bottom() - 130),
                                     QPoint(screen.right() - 310, screen.bottom() - 130)}) {
            stage.window.move(corner);
            QVERIFY(stage.open());
            QVERIFY(!stage.form->frameGeometry().intersects(stage.walk->shownAt()));
            QVERIFY(screen.contains(stage.form->frameGeometry().center()));
            stage.form->move(stage.walk->shownAt().topLeft() - QPoint(20, 20)); // over the word
            stage.dialog().click("cmdIgnore");
            QVERIFY(!stage.form->frameGeometry().intersects(stage.walk->shownAt()));
            stage.form->hide();
        }
    }

    void itStaysWhereItIsWhileItCoversNothing()
    {
        Stage stage(u"teh sayd end"_s);
        QVERIFY(stage.open());
        stage.form->move(300, 320);
        stage.dialog().click("cmdIgnore");
        QCOMPARE(stage.form->pos(), QPoint(300, 320));
    }

    // The sentence

    void theSentenceAroundAWord_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("word");
        QTest::addColumn<QString>("sentence");
        const QString filler = QString(u"word "_s).repeated(40);
        const QString smile = QString::fromUcs4(U"\U0001F600");
        QTest::newRow("alone") << u"teh"_s << u"teh"_s << u"teh"_s;
        QTest::newRow("of three") << u"One. Two teh two! Three."_s << u"teh"_s << u"Two teh two!"_s;
        QTest::newRow("of a paragraph") << u"First\u2029teh line\u2029last"_s << u"teh"_s << u"teh line"_s;
        QTest::newRow("of a line") << u"First\nsecond teh\nlast"_s << u"teh"_s << u"second teh"_s;
        QTest::newRow("long in front") << filler + u"teh end"_s << u"teh"_s
                                       << u"\u2026"_s + QString(u"word "_s).repeated(24) + u"teh end"_s;
        QTest::newRow("long behind") << u"A teh "_s + filler << u"teh"_s
                                     << u"A teh"_s + QString(u" word"_s).repeated(24) + u"\u2026"_s;
        QTest::newRow("without a blank") << QString(u'(').repeated(200) + u"teh"_s << u"teh"_s
                                         << u"\u2026"_s + QString(120, u'(') + u"teh"_s;
        QTest::newRow("no half character")
            << smile.repeated(100) + u" teh"_s << u"teh"_s << u"\u2026"_s + smile.repeated(59) + u" teh"_s;
    }
    void theSentenceAroundAWord()
    {
        QFETCH(QString, text);
        QFETCH(QString, word);
        QFETCH(QString, sentence);
        const Sentence shown = sentenceAround(text, {text.indexOf(word), word.size()});
        QCOMPARE(shown.Text, sentence);
        QCOMPARE(shown.Text.mid(shown.Word.Offset, shown.Word.Length), word);
    }
};

TAVRIN_TEST_MAIN(tst_frmSpelling)
#include "tst_frmSpelling.moc"
