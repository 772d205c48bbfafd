#include "spell/WalkStage.h"

#include <QRegularExpressionValidator>

using namespace tavrin;
using namespace tavrin::test;

/// Taking decisions back in boxes that have changed meanwhile.
class tst_SpellingWalkUndo : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aBoxThatMayNotBeChangedAnyMoreKeepsItsText_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<bool>("isDisabled");
        for (const char* kind : {"line", "area", "rich"}) {
            QTest::addRow("%s, read-only", kind) << QString::fromLatin1(kind) << false;
            QTest::addRow("%s, disabled", kind) << QString::fromLatin1(kind) << true;
        }
    }
    void aBoxThatMayNotBeChangedAnyMoreKeepsItsText()
    {
        QFETCH(QString, kind);
        QFETCH(bool, isDisabled);
        const WalkStage stage(kind);
        stage.setText(u"teh sayd"_s);
        const auto walk = stage.walk();
        walk->change(u"the"_s);
        if (isDisabled)
            stage.box->setEnabled(false);
        else
            stage.box->setProperty("readOnly", true);
        QCOMPARE(failureOf([&] { walk->undo(); }), u"The text of this box cannot be changed."_s);
        QCOMPARE(stage.text(), u"the sayd"_s);
        QCOMPARE(walk->word(), u"sayd"_s);
        QVERIFY(walk->canUndo());
        stage.box->setEnabled(true);
        stage.box->setProperty("readOnly", false);
        walk->undo();
        QCOMPARE(stage.text(), u"teh sayd"_s);
        QCOMPARE(walk->word(), u"teh"_s);
    }

    void otherDecisionsAreTakenBackThoughTheBoxMayNotBeChanged()
    {
        const WalkStage stage(u"area"_s);
        stage.setText(u"Qxzville teh sayd"_s);
        const auto walk = stage.walk();
        walk->add();
        walk->ignore();
        stage.area()->setReadOnly(true);
        walk->undo();
        QCOMPARE(walk->word(), u"teh"_s);
        walk->undo();
        QCOMPARE(walk->word(), u"Qxzville"_s);
        QCOMPARE(stage.folder.customWords(), QByteArray());
    }

    void aTextThatTheBoxDoesNotTakeBackIsToldAndTheDecisionStays()
    {
        const WalkStage stage;
        stage.setText(u"TEH sayd"_s);
        const auto walk = stage.walk();
        walk->change(u"the"_s);
        stage.line()->setText(u"the sayd"_s); // by which the box forgets what it could take back itself
        const QRegularExpressionValidator small(QRegularExpression(u"[a-z ]*"_s));
        stage.line()->setValidator(&small);
        QCOMPARE(failureOf([&] { walk->undo(); }), u"The box does not take this text."_s);
        QCOMPARE(stage.text(), u"the sayd"_s);
        QCOMPARE(stage.selected(), u"sayd"_s);
        QVERIFY(walk->canUndo());
        stage.line()->setValidator(nullptr);
        walk->undo();
        QCOMPARE(stage.text(), u"TEH sayd"_s);
    }

    /// What the box takes back by itself may be something else than the last change of the walk.
    void onlyTheDecisionIsTakenBackWhenTheBoxRemembersSomethingElse()
    {
        const WalkStage stage(u"area"_s);
        stage.setText(u"teh sayd"_s);
        const auto walk = stage.walk();
        walk->change(u"the"_s);
        QTextCursor cursor(stage.area()->document());
        cursor.movePosition(QTextCursor::End);
        cursor.insertText(u"x"_s);
        cursor.deletePreviousChar();
        QCOMPARE(stage.text(), u"the sayd"_s);
        walk->undo();
        QCOMPARE(stage.text(), u"teh sayd"_s);
        QCOMPARE(walk->word(), u"teh"_s);
    }

    void noDecisionIsCarriedOutInATextThatAProgramHasChanged_data()
    {
        QTest::addColumn<QString>("decision");
        for (const char* decision : {"add", "ignore", "ignoreAll", "change", "changeAll", "undo"})
            QTest::newRow(decision) << QString::fromLatin1(decision);
    }
    void noDecisionIsCarriedOutInATextThatAProgramHasChanged()
    {
        QFETCH(QString, decision);
        const WalkStage stage(u"area"_s);
        stage.setText(u"hte Qxzville"_s);
        const auto walk = stage.walk();
        walk->change(u"the"_s);
        stage.setText(u"Now Bqvton Bqvton"_s);
        const QHash<QString, std::function<void()>> decisions{
            {u"add"_s, [&] { walk->add(); }},
            {u"ignore"_s, [&] { walk->ignore(); }},
            {u"ignoreAll"_s, [&] { walk->ignoreAll(); }},
            {u"change"_s, [&] { walk->change(u"so"_s); }},
            {u"changeAll"_s, [&] { walk->changeAll(u"so"_s); }},
            {u"undo"_s, [&] { walk->undo(); }},
        };
        QCOMPARE(failureOf(decisions.value(decision)), TextChanged);
        QCOMPARE(stage.text(), u"Now Bqvton Bqvton"_s);
        QCOMPARE(walk->word(), u"Bqvton"_s);
        QCOMPARE(walk->place().Offset, 4);
        QCOMPARE(stage.selected(), u"Bqvton"_s);
        QCOMPARE(stage.folder.customWords(), QByteArray());
        QVERIFY(!walk->canUndo());
        walk->ignore();
        QCOMPARE(walk->word(), u"Bqvton"_s); // the word was not taken for right
    }
};

TAVRIN_TEST_MAIN(tst_SpellingWalkUndo)
#include "tst_SpellingWalkUndo.moc"
