#include "spell/DialogStage.h"

#include <QAccessible>
#include <QScreen>
#include <QSet>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

class tst_frmSpellingInput : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // The keyboard

    void enterChangesAndEscapeCancels()
    {
        DialogStage stage(u"sayyd teh end"_s);
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
        DialogStage stage(u"teh sayd hte end"_s);
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
        DialogStage stage(u"teh end"_s);
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
        DialogStage stage(u"teh end"_s);
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
        DialogStage stage(u"teh end"_s);
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
        DialogStage stage(u"teh sayd teh"_s);
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
        DialogStage stage(u"teh sayd"_s);
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
        DialogStage stage(u"teh sayd"_s);
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
        DialogStage stage(u"teh end"_s);
        QVERIFY(stage.open());
        for (QWidget* widget : stage.form->findChildren<QWidget*>()) {
            if (widget->focusPolicy() != Qt::NoFocus && widget->parentWidget() == stage.form.get())
                QVERIFY2(!QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name).isEmpty(),
                         qPrintable(widget->objectName()));
        }
    }

    void eachWordAndEachRefusalCanBeReadByScreenReaders()
    {
        DialogStage stage(u"teh sayd"_s);
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
        DialogStage stage(u"One line with nothing.\nteh second line\nthird line sayd\nend"_s);
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

    void overTheWordItGoesRightBelowItWhereThereIsRoomAndElseRightAbove_data()
    {
        QTest::addColumn<bool>("below");
        QTest::newRow("room below") << true;
        QTest::newRow("none below") << false;
    }
    void overTheWordItGoesRightBelowItWhereThereIsRoomAndElseRightAbove()
    {
        QFETCH(bool, below);
        constexpr int distance = 12; // from the word, all around
        DialogStage stage(u"teh second line\nthird line sayd\nend"_s);
        const QRect screen = stage.window.screen()->availableGeometry();
        stage.window.move(screen.left() + 60, below ? screen.top() + 40 : screen.bottom() - 160);
        QVERIFY(stage.open());
        const int left = screen.left() + 30;
        stage.form->move(left, stage.walk->shownAt().top() - 20);
        stage.dialog().click("cmdIgnore");
        QCOMPARE(stage.walk->word(), u"sayd"_s);
        const QRect word = stage.walk->shownAt();
        const QRect frame = stage.form->frameGeometry();
        QVERIFY(word.left() > left && word.right() < left + frame.width()); // it was over the word
        QCOMPARE(frame.left(), left);
        if (below)
            QCOMPARE(frame.top(), word.bottom() + 1 + distance);
        else
            QCOMPARE(frame.bottom(), word.top() - 1 - distance);
    }

    void itStaysWhereItIsWhileItCoversNothing()
    {
        DialogStage stage(u"teh sayd end"_s);
        QVERIFY(stage.open());
        stage.form->move(300, 320);
        stage.dialog().click("cmdIgnore");
        QCOMPARE(stage.form->pos(), QPoint(300, 320));
    }
};

TAVRIN_TEST_MAIN(tst_frmSpellingInput)
#include "tst_frmSpellingInput.moc"
