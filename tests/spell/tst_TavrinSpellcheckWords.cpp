#include "spell/SpellcheckStage.h"

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

using Stage = SpellcheckStage;

} // namespace

/// Words that a person adds, with the real engine.
class tst_TavrinSpellcheckWords : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void withoutTheRightThereIsNoWayToAddAWord()
    {
        Stage stage;
        QVERIFY(stage.show());
        stage.host.state().permissions.clear();
        const auto control = stage.newControl();
        stage.line->SetText(u"Qxzville"_s);
        bool offered = true;
        const Person person({[&](const Dialog& dialog) {
                                 offered = dialog.button("cmdAdd")->isVisible();
                                 return true;
                             },
                             Person::click("cmdIgnore")});
        QVERIFY(control->CheckSpellingWithResult(stage.line));
        QVERIFY(person.isDone());
        QVERIFY(!offered);
        QVERIFY(stage.host.state().addedWords.isEmpty());
    }

    void addedWordsReachTheDatabaseDuringTheDialogAndThoseTakenBackLeaveIt_data()
    {
        QTest::addColumn<QByteArray>("last");
        QTest::newRow("finished") << QByteArray("cmdIgnore");
        QTest::newRow("cancelled") << QByteArray("cmdCancel");
    }
    void addedWordsReachTheDatabaseDuringTheDialogAndThoseTakenBackLeaveIt()
    {
        QFETCH(QByteArray, last);
        Stage stage;
        QVERIFY(stage.show());
        const auto control = stage.newControl();
        stage.area->SetText(u"teh Qxzville and Bqvton sayd"_s);
        QStringList told;
        const Person person({Person::click("cmdChange"), Person::click("cmdAdd"), Person::click("cmdAdd"),
                             Person::click("cmdUndo"), Person::click("cmdIgnore"), [&](const Dialog& dialog) {
                                 told = stage.host.state().addedWords;
                                 dialog.click(last);
                                 return true;
                             }});
        control->CheckSpellingWithResult(stage.area);
        QVERIFY(person.isDone());
        QCOMPARE(told, QStringList(u"Qxzville"_s));
        QCOMPARE(stage.host.state().addedWords, QStringList(u"Qxzville"_s));
        QCOMPARE(stage.folder.customWords(), QByteArray("Qxzville\n"));
    }

    void anAddedWordIsKnownAtOnceOnThisWorkstation()
    {
        Stage stage;
        QVERIFY(stage.show());
        const auto control = stage.newControl();
        stage.line->SetText(u"Qxzville"_s);
        {
            const Person person({Person::click("cmdAdd")});
            QVERIFY(control->CheckSpellingWithResult(stage.line));
        }
        const Person nobody({});
        QVERIFY(control->CheckSpellingWithResult(stage.line));
        const auto other = stage.newControl();
        QVERIFY(other->CheckSpellingWithResult(stage.line));
        QVERIFY(!nobody.came());
    }

    void anAddThatTheDatabaseRefusesIsInTheLocalFileOnly()
    {
        Stage stage;
        QVERIFY(stage.show());
        const auto control = stage.newControl();
        stage.line->SetText(u"Qxzville Bqvton"_s);
        stage.host.state().failures.emplace(u"AddWord"_s, Error(u"no database"_s));
        const Person person({Person::click("cmdAdd"), Person::click("cmdAdd")});
        QVERIFY(control->CheckSpellingWithResult(stage.line));
        QVERIFY(person.isDone());
        QCOMPARE(stage.boxes.texts(), QStringList({u"Error adding word to database: no database"_s,
                                                   u"Error adding word to database: no database"_s}));
        QCOMPARE(stage.folder.customWords(), QByteArray("Qxzville\nBqvton\n"));
    }

    void aWordAtOffset0IsTakenFromTheFirstCharacter()
    {
        Stage stage;
        QVERIFY(stage.show());
        const auto control = stage.newControl();
        stage.line->SetText(u"Qxzville it is"_s);
        const Person person({Person::click("cmdAdd")});
        QVERIFY(control->CheckSpellingWithResult(stage.line));
        QVERIFY(person.isDone());
        QCOMPARE(stage.host.state().addedWords, QStringList(u"Qxzville"_s));
        QCOMPARE(stage.folder.customWords(), QByteArray("Qxzville\n"));
    }

    void aWordOf10000LettersCannotBeAddedAndTheDialogSaysWhy()
    {
        Stage stage;
        QVERIFY(stage.show());
        const auto control = stage.newControl();
        stage.line->SetText(QString(10'000, u'q'));
        QString told;
        const Person person({[&](const Dialog& dialog) {
                                 dialog.click("cmdAdd");
                                 told = dialog.message();
                                 return true;
                             },
                             Person::click("cmdIgnore")});
        QVERIFY(control->CheckSpellingWithResult(stage.line));
        QVERIFY(person.isDone());
        QCOMPARE(told,
                 u"The word \"%1\u2026\" cannot be added to the custom dictionary: it has more than 100 "
                 "characters."_s.arg(QString(40, u'q')));
        QCOMPARE(stage.folder.customWords(), QByteArray());
        QVERIFY(stage.host.state().addedWords.isEmpty());
        QVERIFY(stage.boxes.shown().isEmpty());
    }

    void whatNoWordHasNeverReachesTheDictionary_data()
    {
        QTest::addColumn<QString>("between");
        QTest::newRow("affix slash") << u"/"_s;
        QTest::newRow("blank") << u" "_s;
        QTest::newRow("no-break blank") << QString(QChar(0xA0));
        QTest::newRow("control character") << QString(QChar(1));
        QTest::newRow("tab") << u"\t"_s;
        QTest::newRow("line end") << u"\n"_s;
    }
    void whatNoWordHasNeverReachesTheDictionary()
    {
        QFETCH(QString, between);
        Stage stage;
        QVERIFY(stage.show());
        const auto control = stage.newControl();
        stage.area->SetText(u"Qxzville"_s + between + u"Bqvton"_s);
        const Person person({Person::click("cmdAdd"), Person::click("cmdCancel")});
        QVERIFY(!control->CheckSpellingWithResult(stage.area));
        QVERIFY(person.isDone());
        QCOMPARE(stage.folder.customWords(), QByteArray("Qxzville\n"));
        QCOMPARE(stage.host.state().addedWords, QStringList(u"Qxzville"_s));
    }
};

TAVRIN_TEST_MAIN(tst_TavrinSpellcheckWords)
#include "tst_TavrinSpellcheckWords.moc"
