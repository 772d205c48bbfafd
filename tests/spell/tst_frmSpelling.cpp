#include "spell/DialogStage.h"

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

class tst_frmSpelling : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // What it shows

    void itShowsTheWordInItsSentenceWithSuggestions()
    {
        DialogStage stage(u"All was calm. Teh driver left. Nobody came."_s);
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
        DialogStage stage(u"Teh end"_s);
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
        DialogStage stage(u"Teh end"_s);
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
        DialogStage stage(word + u" end"_s);
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
        DialogStage stage(u"Teh end"_s);
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
        DialogStage stage(u"Qxzville end"_s, false);
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
        DialogStage stage(u"Teh sayd"_s);
        stage.area->setReadOnly(true);
        QVERIFY(stage.open());
        const Dialog dialog = stage.dialog();
        QCOMPARE(dialog.message(), u"The text of this box cannot be changed."_s);
        for (const char* name : {"cmdChange", "cmdChangeAll"})
            QVERIFY(!dialog.button(name)->isEnabled());
        QVERIFY(!dialog.changeTo()->isEnabled());
        QVERIFY(dialog.list()->count() > 1 && dialog.list()->selectedItems().isEmpty());
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
        DialogStage stage(u"teh sayd teh"_s);
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
        DialogStage stage(u"teh cat, teh end"_s);
        QVERIFY(stage.open());
        stage.dialog().click(button);
        QCOMPARE(stage.form->isVisible(), again);
        if (again)
            QCOMPARE(stage.walk->place().Offset, 9);
    }

    void theDialogGoesWithTheLastWord()
    {
        DialogStage stage(u"teh sayd"_s);
        QVERIFY(stage.open());
        stage.dialog().click("cmdIgnore");
        QVERIFY(stage.form->isVisible());
        stage.dialog().click("cmdIgnore");
        QVERIFY(!stage.form->isVisible());
        QVERIFY(!stage.form->Canceled());
    }

    void undoLastBringsBackTheWordAndItsText()
    {
        DialogStage stage(u"teh sayd hte"_s);
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
        DialogStage stage(u"Qxzville sayd"_s);
        QVERIFY(stage.open());
        const Dialog dialog = stage.dialog();
        dialog.click("cmdAdd");
        QCOMPARE(stage.folder.customWords(), QByteArray("Qxzville\n"));
        QCOMPARE(dialog.marked(), u"sayd"_s);
        dialog.click("cmdUndo");
        QCOMPARE(stage.folder.customWords(), QByteArray());
        QCOMPARE(dialog.marked(), u"Qxzville"_s);
    }

    void aRefusedChangeIsToldAndWhatWasTypedStays()
    {
        DialogStage stage(u"teh sayd"_s);
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
        DialogStage stage(u"Qxzville end"_s);
        QVERIFY(stage.open());
        QVERIFY(QFile::remove(stage.folder.custom()));
        stage.dialog().click("cmdAdd");
        QVERIFY(stage.form->isVisible());
        QVERIFY(stage.dialog().message().contains(u"custom.dic"_s));
        QCOMPARE(stage.dialog().marked(), u"Qxzville"_s);
    }

    void aTextThatAProgramHasChangedIsShownAnew()
    {
        DialogStage stage(u"teh end"_s);
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
        DialogStage stage(u"teh end"_s);
        QVERIFY(stage.open());
        delete stage.area;
        QVERIFY(!stage.form->isVisible());
    }
};

TAVRIN_TEST_MAIN(tst_frmSpelling)
#include "tst_frmSpelling.moc"
