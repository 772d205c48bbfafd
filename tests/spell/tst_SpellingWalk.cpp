#include "spell/WalkStage.h"

#include <QRegularExpressionValidator>
#include <QScrollArea>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

using Stage = WalkStage;

/// Takes "teh" for wrong, fails at "broken", and notes how the mouse shows while it is asked.
class NotingSpeller final : public Speller
{
public:
    bool isCorrect(const QString& word) override
    {
        const QCursor* shown = QApplication::overrideCursor();
        asked << (shown && shown->shape() == Qt::WaitCursor);
        if (word == u"broken"_s)
            throw Error(u"no dictionary"_s);
        return word != u"teh"_s;
    }
    QStringList suggestions(const QString&) override { return {}; }
    void ignoreAll(const QString&) override {}
    void forgetIgnored() override {}
    bool add(const QString&) override { return true; }
    void removeAdded(const QString&) override {}

    QList<bool> asked;
};

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

    void whileItSearchesTheMouseShowsThatTheProgramWorks()
    {
        const Stage stage;
        stage.setText(u"One teh two teh three"_s);
        bool handlerWaits = false;
        QObject::connect(stage.line(), &QLineEdit::selectionChanged, stage.line(),
                         [&] { handlerWaits = handlerWaits || QApplication::overrideCursor(); });
        const auto speller = std::make_shared<NotingSpeller>();
        SpellingWalk walk(stage.box, speller);
        QCOMPARE(speller->asked, QList<bool>({true, true}));
        walk.ignore();
        QCOMPARE(walk.place().Offset, 12);
        QCOMPARE(speller->asked, QList<bool>(4, true));
        QVERIFY(!QApplication::overrideCursor());
        QVERIFY(!handlerWaits); // it may ask the person something
        walk.ignore();
        QVERIFY(!walk.isAtWord());
        QVERIFY(!QApplication::overrideCursor());
    }

    void whileAllAreChangedTheMouseShowsThatTheProgramWorks()
    {
        const Stage stage(u"area"_s);
        stage.setText(u"One teh two teh three"_s);
        bool waits = false;
        bool handlerWaits = false;
        QObject::connect(stage.area()->document(), &QTextDocument::undoAvailable, stage.area(), [&] {
            waits = QApplication::overrideCursor(); // inside of the change
        });
        QObject::connect(stage.area(), &QPlainTextEdit::textChanged, stage.area(),
                         [&] { handlerWaits = handlerWaits || QApplication::overrideCursor(); });
        const auto walk = stage.walk();
        walk->changeAll(u"these"_s);
        QCOMPARE(stage.text(), u"One these two these three"_s);
        QVERIFY(waits);
        QVERIFY(!handlerWaits); // it may ask the person something
        QVERIFY(!QApplication::overrideCursor());
    }

    void aDictionaryThatFailsLeavesTheMouseAsItWas()
    {
        const Stage stage;
        stage.setText(u"One broken word"_s);
        const auto speller = std::make_shared<NotingSpeller>();
        QCOMPARE(failureOf([&] { SpellingWalk(stage.box, speller); }), u"no dictionary"_s);
        QCOMPARE(speller->asked, QList<bool>({true, true}));
        QVERIFY(!QApplication::overrideCursor());
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
        QVERIFY(stage.show());
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
        QVERIFY(stage.show());
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
};

TAVRIN_TEST_MAIN(tst_SpellingWalk)
#include "tst_SpellingWalk.moc"
