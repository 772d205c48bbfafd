#include "spell/WalkStage.h"

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

using Stage = WalkStage;

} // namespace

class tst_SpellingWalkDecisions : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
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
        QCOMPARE(stage.walk()->word(), u"teh"_s); // the next check asks again
    }

    void anAddedWordStandsInTheFileAndIsRightAtOnce()
    {
        const Stage stage;
        stage.setText(u"Qxzville lies here, Qxzville"_s);
        const auto walk = stage.walk();
        walk->add();
        QVERIFY(!walk->isAtWord());
        QCOMPARE(stage.folder.customWords(), QByteArray("Qxzville\n"));
    }

    void theAddingOfAWordIsToldWhileTheWordIsStillAtIssue()
    {
        const Stage stage;
        stage.setText(u"teh Qxzville sayd"_s);
        const auto walk = stage.walk();
        QStringList told;
        const Subscription added = walk->WordAdded.subscribe([&] {
            told << u"%1 in %2"_s.arg(walk->word(), walk->text());
            QCOMPARE(stage.folder.customWords(), QByteArray("Qxzville\n"));
        });
        walk->change(u"these"_s);
        walk->add();
        QCOMPARE(told, QStringList(u"Qxzville in these Qxzville sayd"_s));
        walk->change(u"said so"_s);
        QCOMPARE(told.size(), 1);
    }

    void theTakingBackOfAnAddedWordIsToldAlsoInAnotherText()
    {
        const Stage stage;
        stage.setText(u"teh Qxzville sayd"_s);
        const auto walk = stage.walk();
        QStringList told;
        const Subscription takenBack =
            walk->WordTakenBack.subscribe([&](const QString& word) { told << word; });
        walk->ignore();
        walk->add();
        stage.setText(u"Another text sayd"_s);
        QCOMPARE(failureOf([&] { walk->ignore(); }), TextChanged);
        QCOMPARE(told, QStringList());
        walk->undo();
        QCOMPARE(told, QStringList(u"Qxzville"_s));
        QCOMPARE(stage.folder.customWords(), QByteArray());
    }

    void aTextThatChangesWhileTheAddingIsToldIsNotTouchedAtOldOffsets()
    {
        const Stage stage;
        stage.setText(u"A Qxzville sayd"_s);
        const auto walk = stage.walk();
        const Subscription added = walk->WordAdded.subscribe([&] { stage.setText(u"Now it is teh end"_s); });
        QCOMPARE(failureOf([&] { walk->add(); }), TextChanged);
        QCOMPARE(walk->word(), u"teh"_s);
        QCOMPARE(stage.selected(), u"teh"_s);
    }

    void aWordThatCannotBeAddedStaysWrong()
    {
        const Stage stage;
        stage.setText(u"Qxzville"_s);
        const auto walk = stage.walk();
        QVERIFY(QFile::remove(stage.folder.custom()));
        QVERIFY(failureOf([&] { walk->add(); }).contains(u"custom.dic"_s));
        QCOMPARE(walk->word(), u"Qxzville"_s);
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
        QCOMPARE(stage.folder.customWords(), QByteArray("Qxzville\n")); // an added word stays
    }
};

TAVRIN_TEST_MAIN(tst_SpellingWalkDecisions)
#include "tst_SpellingWalkDecisions.moc"
