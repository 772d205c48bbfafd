#include "spell/FormStage.h"

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

const QStringList TheWord{u"Qxzville"_s};
const QByteArray TheLine("Qxzville\n");
const QString AddFailed = u"Error adding word to database: no database"_s;

} // namespace

/// Words that a person adds: when the database hears of them, and what becomes of them when something fails.
class tst_SpellingAddedWords : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void theDatabaseHasAnAddedWordWhileTheDialogIsStillOpen()
    {
        FormStage stage;
        QVERIFY(stage.show());
        QStringList told;
        const Person person({Person::click("cmdAdd"), [&](const Dialog& dialog) {
                                 told = stage.addedWords();
                                 dialog.click("cmdIgnore");
                                 return true;
                             }});
        QVERIFY(stage.check());
        QVERIFY(person.isDone());
        QCOMPARE(told, TheWord);
        QCOMPARE(stage.addedWords(), TheWord); // and is told once
        QCOMPARE(stage.folder.customWords(), TheLine);
    }

    void anAddedWordStaysAddedWhenTheCheckIsCancelled()
    {
        FormStage stage;
        QVERIFY(stage.show());
        const Person person({Person::click("cmdAdd"), Person::click("cmdCancel")});
        QVERIFY(!stage.check());
        QVERIFY(person.isDone());
        QCOMPARE(stage.addedWords(), TheWord);
        QCOMPARE(stage.folder.customWords(), TheLine);
    }

    void anAddedWordIsInTheDatabaseThoughTheControlDiesBeforeTheCheckEnds_data() { addEnds(); }
    void anAddedWordIsInTheDatabaseThoughTheControlDiesBeforeTheCheckEnds()
    {
        QFETCH(bool, wholeForm);
        FormStage stage;
        QVERIFY(stage.show());
        const Person person({Person::click("cmdAdd"), [&](const Dialog&) {
                                 stage.end(wholeForm);
                                 return true;
                             }});
        QVERIFY(!stage.check());
        QVERIFY(person.isDone());
        QCOMPARE(stage.addedWords(), TheWord);
        QCOMPARE(stage.folder.customWords(), TheLine);
    }

    void aRefusalOfTheDatabaseIsToldInTheDialogWhichGoesOn()
    {
        FormStage stage;
        QVERIFY(stage.show());
        stage.host.state().failures.emplace(u"AddWord"_s, Error(u"no database"_s));
        bool wasOpen = false;
        stage.boxes.during([&] {
            const QWidget* dialog = QApplication::activeModalWidget();
            wasOpen = qobject_cast<const frmSpelling*>(dialog) && dialog->isVisible();
        });
        QString next;
        const Person person({Person::click("cmdAdd"), [&](const Dialog& dialog) {
                                 next = dialog.marked();
                                 dialog.click("cmdIgnore");
                                 return true;
                             }});
        QVERIFY(stage.check());
        QVERIFY(person.isDone());
        QVERIFY(wasOpen);
        QCOMPARE(next, u"teh"_s);
        QCOMPARE(stage.boxes.texts(), QStringList(AddFailed));
        QCOMPARE(stage.addedWords(), QStringList());
        QCOMPARE(stage.folder.customWords(), TheLine); // the word is in the local file only
    }

    void theControlMayDieInTheBoxOfARefusal_data() { addEnds(); }
    void theControlMayDieInTheBoxOfARefusal()
    {
        QFETCH(bool, wholeForm);
        FormStage stage;
        QVERIFY(stage.show());
        stage.host.state().failures.emplace(u"AddWord"_s, Error(u"no database"_s));
        stage.boxes.during([&] { stage.end(wholeForm); });
        const Person person({Person::click("cmdAdd")});
        QVERIFY(!stage.check());
        QVERIFY(person.isDone());
        QVERIFY(!stage.control);
        QCOMPARE(stage.boxes.texts(), QStringList(AddFailed));
        QCOMPARE(stage.folder.customWords(), TheLine);
    }

    void aSynchronisationBeforeTheDatabaseHasTheWordDoesNotCostItsLine()
    {
        FormStage stage;
        QVERIFY(stage.show());
        stage.host.state().failures.emplace(u"AddWord"_s, Error(u"no database"_s));
        // What another program does while the person reads the box.
        stage.boxes.during([&] { putFile(stage.folder.custom(), "perpwalk\n"); });
        const Person person({Person::click("cmdAdd"), Person::click("cmdIgnore")});
        QVERIFY(stage.check());
        QVERIFY(person.isDone());
        QCOMPARE(stage.folder.customWords(), "perpwalk\n" + TheLine);
    }

    void undoLastTakesAnAddedWordOutOfTheFileAndOfTheDatabase()
    {
        FormStage stage;
        QVERIFY(stage.show());
        stage.line->setText(u"Bqvton Qxzville teh"_s);
        QString again;
        const Person person({Person::click("cmdAdd"), Person::click("cmdAdd"), Person::click("cmdUndo"),
                             [&](const Dialog& dialog) {
                                 again = dialog.marked();
                                 dialog.click("cmdIgnore");
                                 return true;
                             },
                             Person::click("cmdIgnore")});
        QVERIFY(stage.check());
        QVERIFY(person.isDone());
        QCOMPARE(again, u"Qxzville"_s);
        QCOMPARE(stage.addedWords(), QStringList(u"Bqvton"_s));
        QCOMPARE(stage.folder.customWords(), QByteArray("Bqvton\n"));
        QCOMPARE(stage.boxes.texts(), QStringList());
    }

    void aWordThatTheDatabaseDidNotTakeIsNotTakenBackThere()
    {
        FormStage stage;
        QVERIFY(stage.show());
        stage.host.state().failures.emplace(u"AddWord"_s, Error(u"no database"_s));
        const Person person({Person::click("cmdAdd"), Person::click("cmdUndo"), Person::click("cmdIgnore"),
                             Person::click("cmdIgnore")});
        QVERIFY(stage.check());
        QVERIFY(person.isDone());
        QVERIFY(!stage.log().contains(u"TakeBack"_s));
        QCOMPARE(stage.folder.customWords(), QByteArray());
    }

    void aDatabaseThatDoesNotGiveTheWordBackIsTold()
    {
        FormStage stage;
        QVERIFY(stage.show());
        stage.host.state().failures.emplace(u"TakeBack"_s, Error(u"no database"_s));
        const Person person({Person::click("cmdAdd"), Person::click("cmdUndo"), Person::click("cmdIgnore"),
                             Person::click("cmdIgnore")});
        QVERIFY(stage.check());
        QVERIFY(person.isDone());
        QCOMPARE(stage.boxes.texts(), QStringList(u"Error removing word from database: no database"_s));
        QCOMPARE(stage.addedWords(), TheWord);
        QCOMPARE(stage.folder.customWords(), QByteArray());
    }

    void aWordThatSomebodyElseHadWrittenStaysWhenItsAddingIsTakenBack()
    {
        FormStage stage;
        QVERIFY(stage.show());
        QString note;
        QString next;
        const Person person({[&](const Dialog& dialog) {
                                 putFile(stage.folder.custom(), TheLine); // another program adds it meanwhile
                                 dialog.click("cmdAdd");
                                 return true;
                             },
                             Person::click("cmdUndo"),
                             [&](const Dialog& dialog) {
                                 note = dialog.message();
                                 next = dialog.marked();
                                 dialog.click("cmdIgnore");
                                 return true;
                             }});
        QVERIFY(stage.check());
        QVERIFY(person.isDone());
        QCOMPARE(stage.folder.customWords(), TheLine);
        QCOMPARE(stage.addedWords(), TheWord);
        QCOMPARE(next, u"teh"_s);
        QCOMPARE(note, u"\"Qxzville\" stays in the custom dictionary: it is there from elsewhere."_s);
    }
};

TAVRIN_TEST_MAIN(tst_SpellingAddedWords)
#include "tst_SpellingAddedWords.moc"
