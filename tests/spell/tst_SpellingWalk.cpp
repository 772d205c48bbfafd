#include "spell/SpellingStage.h"
#include "spell/SpellingWalk.h"
#include "widgets/TextArea.h"

#include <QLineEdit>
#include <QRegularExpressionValidator>
#include <QScrollArea>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

const QString TextChanged = u"The text was changed meanwhile. The check goes on in the new text."_s;

/// A window with a text box of one kind.
struct Stage
{
    explicit Stage(const QString& kind = u"line"_s)
    {
        if (kind == u"line"_s)
            box = new TextBox(&window);
        else if (kind == u"area"_s)
            box = new TextArea(&window);
        else
            box = new QTextEdit(&window);
        box->resize(200, 80);
    }

    TextBox* line() const { return qobject_cast<TextBox*>(box.data()); }
    TextArea* area() const { return qobject_cast<TextArea*>(box.data()); }
    QTextEdit* rich() const { return qobject_cast<QTextEdit*>(box.data()); }
    void setText(const QString& text) const
    {
        if (line())
            line()->SetText(text);
        else if (area())
            area()->SetText(text);
        else
            rich()->setPlainText(text);
    }
    QString text() const
    {
        if (line())
            return line()->text();
        return area() ? area()->toPlainText() : rich()->toPlainText();
    }
    QString selected() const
    {
        if (line())
            return line()->selectedText();
        return area() ? area()->textCursor().selectedText() : rich()->textCursor().selectedText();
    }
    bool canUndo() const
    {
        if (line())
            return line()->isUndoAvailable();
        return area() ? area()->document()->isUndoAvailable() : rich()->document()->isUndoAvailable();
    }
    std::unique_ptr<SpellingWalk> walk() const
    {
        return std::make_unique<SpellingWalk>(box, spellerOf(folder));
    }

    SpellingFolder folder;
    QWidget window;
    QPointer<QWidget> box;
};

void addKinds()
{
    QTest::addColumn<QString>("kind");
    for (const char* kind : {"line", "area", "rich"})
        QTest::newRow(kind) << QString::fromLatin1(kind);
}

/// Goes through to the end: each word with its offset.
QString wordsOf(SpellingWalk& walk)
{
    QStringList words;
    for (; walk.isAtWord(); walk.ignore())
        words << u"%1@%2"_s.arg(walk.word()).arg(walk.place().Offset);
    return words.join(u' ');
}

} // namespace

class tst_SpellingWalk : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // Finding

    void itStopsAtEachWrongWordInOrderAndMarksItInTheBox_data() { addKinds(); }
    void itStopsAtEachWrongWordInOrderAndMarksItInTheBox()
    {
        QFETCH(QString, kind);
        const Stage stage(kind);
        stage.setText(u"Teh driver sayd that he was qxz tired"_s);
        const auto walk = stage.walk();
        QStringList seen;
        for (; walk->isAtWord(); walk->ignore()) {
            QCOMPARE(stage.selected(), walk->word());
            seen << walk->word();
        }
        QCOMPARE(seen, QStringList({u"Teh"_s, u"sayd"_s, u"qxz"_s}));
        QCOMPARE(stage.text(), u"Teh driver sayd that he was qxz tired"_s);
    }

    void aRightTextHasNoWordToStopAt_data() { addKinds(); }
    void aRightTextHasNoWordToStopAt()
    {
        QFETCH(QString, kind);
        const Stage stage(kind);
        for (const QString& text : {QString(), u"   "_s, u"The driver was tired."_s, u"12 45"_s}) {
            stage.setText(text);
            QVERIFY2(!stage.walk()->isAtWord(), qPrintable(text));
        }
    }

    void offsetsCountAsTheBoxDoesAcrossParagraphs_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::newRow("area") << u"area"_s;
        QTest::newRow("rich") << u"rich"_s;
    }
    void offsetsCountAsTheBoxDoesAcrossParagraphs()
    {
        QFETCH(QString, kind);
        const Stage stage(kind);
        stage.setText(u"One teh\ntwo\nsayd\n"_s);
        const auto walk = stage.walk();
        QCOMPARE(wordsOf(*walk), u"teh@4 sayd@12"_s);
        QCOMPARE(stage.selected(), u"sayd"_s);
    }

    void offsetsCountUtf16Units_data() { addKinds(); }
    void offsetsCountUtf16Units()
    {
        QFETCH(QString, kind);
        const Stage stage(kind);
        const QString smile = QString::fromUcs4(U"\U0001F600");
        putFile(stage.folder.custom(), "fianc\xC3\xA9\n");
        stage.setText(smile + u" teh fianc\u00e9 "_s + smile + u" sayd"_s);
        const auto walk = stage.walk();
        QCOMPARE(walk->place(), (FoundWord{3, 3}));
        QCOMPARE(stage.selected(), u"teh"_s);
        walk->change(u"the"_s);
        QCOMPARE(walk->word(), u"sayd"_s);
        walk->change(u"said"_s);
        QCOMPARE(stage.text(), smile + u" the fianc\u00e9 "_s + smile + u" said"_s);
    }

    void aBoxThatHidesItsTextOrGivesItAFormHasNothingToSpell()
    {
        const Stage stage;
        stage.setText(u"teh"_s);
        QVERIFY(stage.walk()->isAtWord());
        stage.line()->setEchoMode(QLineEdit::Password);
        QVERIFY(!stage.walk()->isAtWord());
        stage.line()->setEchoMode(QLineEdit::Normal);
        stage.line()->setInputMask(u"aaaaaa"_s);
        QVERIFY(!stage.walk()->isAtWord());
    }

    void aWidgetWithoutATextIsRefused()
    {
        const SpellingFolder folder;
        QPushButton button(u"teh"_s);
        QCOMPARE(failureOf([&] { SpellingWalk(&button, spellerOf(folder)); }),
                 u"Only the text of a text box can be checked"_s);
    }

    void theWordIsBroughtIntoView()
    {
        QScrollArea area;
        auto* content = new QWidget;
        content->resize(180, 3000);
        auto* box = new QPlainTextEdit(content);
        box->setGeometry(0, 2000, 150, 60);
        area.setWidget(content);
        area.resize(200, 150);
        box->setPlainText(QString(u"fine\n"_s).repeated(200) + u"teh"_s);
        area.show();
        QVERIFY(QTest::qWaitForWindowExposed(&area));
        const SpellingFolder folder;
        const SpellingWalk walk(box, spellerOf(folder));
        QVERIFY(walk.isAtWord());
        QVERIFY(box->viewport()->rect().contains(box->cursorRect().center()));
        const QRect seen(area.viewport()->mapToGlobal(QPoint()), area.viewport()->size());
        QVERIFY(seen.contains(walk.shownAt().center()));
        QVERIFY(walk.shownAt().width() < 100); // the word, not the box
    }

    // Changing

    void changesReachTheBoxAndTheWalkGoesOnBehindThem_data() { addKinds(); }
    void changesReachTheBoxAndTheWalkGoesOnBehindThem()
    {
        QFETCH(QString, kind);
        const Stage stage(kind);
        stage.setText(u"Teh driver sayd so"_s);
        const auto walk = stage.walk();
        walk->change(u"qxz"_s); // wrong as well: the person's own choice is not asked about again
        QCOMPARE(walk->word(), u"sayd"_s);
        QCOMPARE(stage.selected(), u"sayd"_s);
        walk->change(u"told us"_s);
        QVERIFY(!walk->isAtWord());
        QCOMPARE(stage.text(), u"qxz driver told us so"_s);
    }

    void ctrlZTakesEachChangeBackByItself_data() { addKinds(); }
    void ctrlZTakesEachChangeBackByItself()
    {
        QFETCH(QString, kind);
        Stage stage(kind);
        stage.window.show();
        stage.window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&stage.window));
        stage.box->setFocus();
        QTest::keyClicks(stage.box, u"Teh man sayd teh"_s);
        const auto walk = stage.walk();
        walk->change(u"The"_s);
        walk->change(u"said"_s);
        walk->change(u"the"_s);
        QVERIFY(!walk->isAtWord());
        QCOMPARE(stage.text(), u"The man said the"_s);
        for (const QString& expected :
             {u"The man said teh"_s, u"The man sayd teh"_s, u"Teh man sayd teh"_s}) {
            QTest::keyClick(stage.box, Qt::Key_Z, Qt::ControlModifier);
            QCOMPARE(stage.text(), expected);
        }
    }

    void changeAllTakesAllFromHereOnInTheSameCaseInOneStepOfUndo_data() { addKinds(); }
    void changeAllTakesAllFromHereOnInTheSameCaseInOneStepOfUndo()
    {
        QFETCH(QString, kind);
        Stage stage(kind);
        stage.window.show();
        stage.window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&stage.window));
        stage.box->setFocus();
        const QString text = u"teh cat, teh dog, Teh end, qteh, teh"_s;
        stage.setText(text);
        const auto walk = stage.walk();
        walk->ignore(); // the first one
        walk->changeAll(u"these"_s);
        QCOMPARE(stage.text(), u"teh cat, these dog, Teh end, qteh, these"_s);
        QCOMPARE(walk->word(), u"Teh"_s);
        QTest::keyClick(stage.box, Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(stage.text(), text);
        QVERIFY(!stage.canUndo());
    }

    void aWrongReplacementOfAllIsNotAskedAboutAgain()
    {
        const Stage stage;
        stage.setText(u"teh teh qxz teh"_s);
        const auto walk = stage.walk();
        walk->changeAll(u"qxz"_s);
        QVERIFY(!walk->isAtWord());
        walk->undo();
        QCOMPARE(walk->word(), u"teh"_s);
        walk->changeAll(u"the"_s);
        QCOMPARE(walk->word(), u"qxz"_s); // which is wrong again
    }

    void richTextKeepsItsFormats()
    {
        const Stage stage(u"rich"_s);
        stage.rich()->setHtml(u"<p>He <b>sa<i>yyd</i></b> so. <u>Teh</u> end</p>"_s);
        const auto formatAt = [&](int position) {
            QTextCursor cursor(stage.rich()->document());
            cursor.setPosition(position + 1);
            return cursor.charFormat();
        };
        const auto walk = stage.walk();
        QCOMPARE(walk->word(), u"sayyd"_s);
        walk->change(u"said"_s);
        QCOMPARE(walk->word(), u"Teh"_s);
        walk->change(u"These"_s);
        QCOMPARE(stage.text(), u"He said so. These end"_s);
        QVERIFY(formatAt(2).fontWeight() < QFont::Bold);
        for (int i = 3; i < 7; ++i)
            QCOMPARE(formatAt(i).fontWeight(), static_cast<int>(QFont::Bold));
        QVERIFY(!formatAt(4).fontItalic());
        QVERIFY(formatAt(5).fontItalic());
        QVERIFY(formatAt(6).fontItalic());
        QVERIFY(formatAt(7).fontWeight() < QFont::Bold);
        for (int i = 12; i < 17; ++i)
            QVERIFY(formatAt(i).fontUnderline());
        QVERIFY(!formatAt(17).fontUnderline());
    }

    void aChangeThatDoesNotFitIsRefusedWithAWord_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("limit"); // one more than there is
        QTest::newRow("line") << u"line"_s << u"Teh sayd"_s << 9;
        QTest::newRow("area, whose line ends count two") << u"area"_s << u"Teh\nsayd"_s << 10;
    }
    void aChangeThatDoesNotFitIsRefusedWithAWord()
    {
        QFETCH(QString, kind);
        QFETCH(QString, text);
        QFETCH(int, limit);
        const Stage stage(kind);
        stage.setText(text);
        if (stage.line())
            stage.line()->SetMaxLength(limit);
        else
            stage.area()->SetMaxLength(limit);
        const auto walk = stage.walk();
        QCOMPARE(failureOf([&] { walk->change(u"Those"_s); }),
                 u"There is no room for this change: the text can have %1 characters at most."_s.arg(limit));
        QCOMPARE(stage.text(), text);
        QCOMPARE(walk->word(), u"Teh"_s);
        QVERIFY(!walk->canUndo());
        walk->change(u"Then"_s);
        QCOMPARE(stage.text().left(4), u"Then"_s);
        QCOMPARE(walk->word(), u"sayd"_s);
    }

    void changeAllThatDoesNotFitChangesNothing()
    {
        const Stage stage;
        stage.setText(u"teh teh teh"_s);
        stage.line()->SetMaxLength(12);
        const auto walk = stage.walk();
        QCOMPARE(failureOf([&] { walk->changeAll(u"then"_s); }),
                 u"There is no room for this change: the text can have 12 characters at most."_s);
        QCOMPARE(stage.text(), u"teh teh teh"_s);
        QVERIFY(!stage.canUndo());
    }

    void aTextThatIsLongerThanItsLimitMayBecomeShorter()
    {
        const Stage stage;
        stage.line()->SetMaxLength(5);
        stage.setText(u"sayyyd it twice"_s);
        const auto walk = stage.walk();
        QCOMPARE(failureOf([&] { walk->change(u"remarked"_s); }),
                 u"There is no room for this change: the text can have 5 characters at most."_s);
        walk->change(u"said"_s);
        QCOMPARE(stage.text(), u"said it twice"_s);
        walk->undo();
        QCOMPARE(stage.text(), u"sayyyd it twice"_s);
    }

    void aTextThatTheBoxDoesNotTakeIsRefused()
    {
        const Stage stage;
        stage.setText(u"teh"_s);
        const QRegularExpressionValidator letters(QRegularExpression(u"[a-z]*"_s));
        stage.line()->setValidator(&letters);
        const auto walk = stage.walk();
        QCOMPARE(failureOf([&] { walk->change(u"THE"_s); }), u"The box does not take this text."_s);
        QCOMPARE(stage.text(), u"teh"_s);
        QCOMPARE(walk->word(), u"teh"_s);
        QCOMPARE(stage.selected(), u"teh"_s);
        walk->change(u"the"_s);
        QCOMPARE(stage.text(), u"the"_s);
    }

    void aBoxThatIsNotOpenIsCheckedButNotChanged_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<bool>("disabled");
        for (const char* kind : {"line", "area", "rich"}) {
            QTest::addRow("%s, read-only", kind) << QString::fromLatin1(kind) << false;
            QTest::addRow("%s, disabled", kind) << QString::fromLatin1(kind) << true;
        }
    }
    void aBoxThatIsNotOpenIsCheckedButNotChanged()
    {
        QFETCH(QString, kind);
        QFETCH(bool, disabled);
        const Stage stage(kind);
        stage.setText(u"teh sayd"_s);
        if (disabled)
            stage.box->setEnabled(false);
        else
            stage.box->setProperty("readOnly", true);
        const auto walk = stage.walk();
        QCOMPARE(walk->word(), u"teh"_s);
        QCOMPARE(stage.selected(), u"teh"_s);
        QVERIFY(!walk->canChange());
        QCOMPARE(failureOf([&] { walk->change(u"the"_s); }), u"The text of this box cannot be changed."_s);
        QCOMPARE(stage.text(), u"teh sayd"_s);
        walk->ignore();
        QCOMPARE(walk->word(), u"sayd"_s);
    }

    // Passing over and adding

    void ignoreAllPassesOverTheWordInItsCaseAndWritesNothing()
    {
        const Stage stage;
        stage.setText(u"teh Teh teh"_s);
        const auto walk = stage.walk();
        walk->ignoreAll();
        QCOMPARE(walk->word(), u"Teh"_s);
        walk->ignore();
        QVERIFY(!walk->isAtWord());
        QCOMPARE(stage.folder.customWords(), QByteArray());
        QVERIFY(walk->addedWords().isEmpty());
        QCOMPARE(stage.walk()->word(), u"teh"_s); // the next check asks again
    }

    void anAddedWordStandsInTheFileAndIsRightAtOnce()
    {
        const Stage stage;
        const QString text = u"Qxzville lies here, Qxzville"_s;
        stage.setText(text);
        const auto walk = stage.walk();
        walk->add();
        QVERIFY(!walk->isAtWord());
        QCOMPARE(stage.folder.customWords(), QByteArray("Qxzville\n"));
        const auto added = walk->addedWords();
        QCOMPARE(added.size(), 1);
        QCOMPARE(added[0].text, text);
        QCOMPARE(added[0].place, (FoundWord{0, 8}));
    }

    void anAddedWordKeepsItsPlaceWhileTheTextBehindItChanges()
    {
        const Stage stage;
        stage.setText(u"teh Qxzville sayd"_s);
        const auto walk = stage.walk();
        walk->change(u"these"_s);
        walk->add();
        walk->change(u"said so"_s);
        QCOMPARE(stage.text(), u"these Qxzville said so"_s);
        const auto added = walk->addedWords();
        QCOMPARE(added.size(), 1);
        QCOMPARE(added[0].text, stage.text());
        QCOMPARE(added[0].place, (FoundWord{6, 8}));
    }

    void anAddedWordIsToldAlsoWhenAProgramHasTakenItsTextAway()
    {
        const Stage stage;
        stage.setText(u"teh Qxzville sayd"_s);
        const auto walk = stage.walk();
        walk->ignore();
        walk->add();
        stage.setText(u"Another text sayd"_s);
        QCOMPARE(failureOf([&] { walk->ignore(); }), TextChanged);
        const auto added = walk->addedWords();
        QCOMPARE(added.size(), 1);
        QCOMPARE(added[0].text, u"Qxzville"_s);
        QCOMPARE(added[0].place, (FoundWord{0, 8}));
    }

    void aWordThatCannotBeAddedStaysWrong()
    {
        const Stage stage;
        stage.setText(u"Qxzville"_s);
        const auto walk = stage.walk();
        QVERIFY(QFile::remove(stage.folder.custom()));
        QVERIFY(failureOf([&] { walk->add(); }).contains(u"custom.dic"_s));
        QCOMPARE(walk->word(), u"Qxzville"_s);
        QVERIFY(walk->addedWords().isEmpty());
        QVERIFY(!walk->canUndo());
    }

    // Taking back

    void undoTakesBackEachDecisionTheLastFirst_data() { addKinds(); }
    void undoTakesBackEachDecisionTheLastFirst()
    {
        QFETCH(QString, kind);
        const Stage stage(kind);
        const QString text = u"teh Qxzville sayd teh sayd hte wrnog"_s;
        stage.setText(text);
        const auto walk = stage.walk();
        QVERIFY(!walk->canUndo());
        walk->changeAll(u"these"_s);
        walk->add();
        walk->ignoreAll();
        walk->ignore();
        walk->change(u"wrong"_s);
        QVERIFY(!walk->isAtWord());
        QCOMPARE(stage.text(), u"these Qxzville sayd these sayd hte wrong"_s);
        QStringList words;
        while (walk->canUndo()) {
            walk->undo();
            words << walk->word();
            QCOMPARE(stage.selected(), walk->word());
        }
        QCOMPARE(words, QStringList({u"wrnog"_s, u"hte"_s, u"sayd"_s, u"Qxzville"_s, u"teh"_s}));
        QCOMPARE(stage.text(), text);
        QCOMPARE(stage.folder.customWords(), QByteArray());
        QVERIFY(walk->addedWords().isEmpty());
        QCOMPARE(wordsOf(*walk).count(u'@'), 7); // all are wrong again
    }

    void undoOfAChangeLeavesNoTraceInTheUndoOfTheBox_data() { addKinds(); }
    void undoOfAChangeLeavesNoTraceInTheUndoOfTheBox()
    {
        QFETCH(QString, kind);
        const Stage stage(kind);
        stage.setText(u"teh"_s);
        const auto walk = stage.walk();
        walk->change(u"the"_s);
        QVERIFY(stage.canUndo());
        walk->undo();
        QCOMPARE(stage.text(), u"teh"_s);
        QVERIFY(!stage.canUndo());
    }

    void aBoxWithoutUndoGetsItsTextBackAllTheSame()
    {
        const Stage stage(u"area"_s);
        stage.area()->setUndoRedoEnabled(false);
        stage.setText(u"teh cat teh"_s);
        const auto walk = stage.walk();
        walk->changeAll(u"these"_s);
        QCOMPARE(stage.text(), u"these cat these"_s);
        walk->undo();
        QCOMPARE(stage.text(), u"teh cat teh"_s);
        QCOMPARE(walk->word(), u"teh"_s);
    }

    void anAddedWordThatCannotBeTakenOutStaysAdded()
    {
        const Stage stage;
        stage.setText(u"Qxzville sayd"_s);
        const auto walk = stage.walk();
        walk->add();
        QVERIFY(QFile::remove(stage.folder.custom()));
        QVERIFY(QDir().mkdir(stage.folder.custom())); // in its place
        QVERIFY(failureOf([&] { walk->undo(); }).contains(u"custom.dic"_s));
        QCOMPARE(walk->addedWords().size(), 1);
        QCOMPARE(walk->word(), u"sayd"_s);
        QVERIFY(walk->canUndo());
    }

    // The world around it

    void aTextThatAProgramChangesIsNotTouchedAtOldOffsets_data() { addKinds(); }
    void aTextThatAProgramChangesIsNotTouchedAtOldOffsets()
    {
        QFETCH(QString, kind);
        const Stage stage(kind);
        stage.setText(u"teh cat sayd"_s);
        const auto walk = stage.walk();
        walk->change(u"the"_s);
        QCOMPARE(walk->word(), u"sayd"_s);
        stage.setText(u"A new text sayd hte end"_s);
        QCOMPARE(failureOf([&] { walk->change(u"said"_s); }), TextChanged);
        QCOMPARE(stage.text(), u"A new text sayd hte end"_s);
        QCOMPARE(walk->word(), u"sayd"_s);
        QVERIFY(!walk->canUndo()); // of a text that is gone
        walk->change(u"said"_s);
        QCOMPARE(stage.text(), u"A new text said hte end"_s);
        QCOMPARE(walk->word(), u"hte"_s);
    }

    void aTextThatBecomesEmptyEndsTheWalk()
    {
        const Stage stage;
        stage.setText(u"The cat sayd"_s);
        const auto walk = stage.walk();
        stage.setText(QString());
        QCOMPARE(failureOf([&] { walk->ignore(); }), TextChanged);
        QVERIFY(!walk->isAtWord());
    }

    void aHandlerThatMakesYetAnotherTextIsFollowed()
    {
        const Stage stage;
        stage.setText(u"teh cat sayd"_s);
        TextBox* line = stage.line();
        const Subscription louder = line->Change.subscribe([line] { line->SetText(line->Text().toUpper()); });
        const auto walk = stage.walk();
        walk->change(u"the"_s);
        QCOMPARE(stage.text(), u"THE CAT SAYD"_s);
        QCOMPARE(walk->word(), u"SAYD"_s);
        QCOMPARE(stage.selected(), u"SAYD"_s);
        QVERIFY(!walk->canUndo());
    }

    void aBoxThatDiesEndsTheWalk_data() { addKinds(); }
    void aBoxThatDiesEndsTheWalk()
    {
        QFETCH(QString, kind);
        const Stage stage(kind);
        stage.setText(u"Qxzville teh sayd"_s);
        const auto walk = stage.walk();
        walk->add();
        delete stage.box;
        QVERIFY(!walk->isAtWord());
        QVERIFY(!walk->canUndo());
        QVERIFY(!walk->canChange());
        QCOMPARE(walk->shownAt(), QRect());
        walk->change(u"the"_s);
        walk->changeAll(u"the"_s);
        walk->ignore();
        walk->ignoreAll();
        walk->add();
        walk->undo();
        QVERIFY(!walk->textBox());
        QCOMPARE(walk->addedWords().size(), 1); // it stands in the dictionary
        QCOMPARE(stage.folder.customWords(), QByteArray("Qxzville\n"));
    }
};

TAVRIN_TEST_MAIN(tst_SpellingWalk)
#include "tst_SpellingWalk.moc"
