#include "host/HostCase.h"
#include "spell/SpellingStage.h"
#include "spell/TavrinSpellcheck.h"
#include "spell/modInstanceCounter.h"
#include "testing/FakeDesktop.h"

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

/// The spell-check control with its real engine on the reference host and a real database.
class tst_SpellingOnHost : public HostCase
{
    Q_OBJECT

    QString customFile() const { return path("station/custom.dic"); }
    QStringList wordsInDatabase()
    {
        QStringList words;
        Statement select(*m_database, u"SELECT word FROM custom_word ORDER BY word"_s);
        select.run();
        while (select.next())
            words.append(select.text(0));
        return words;
    }

private Q_SLOTS:
    void init() override
    {
        HostCase::init();
        modInstanceCounter::InstanceCount = 0;
    }

    void anAddedWordIsInTheDatabaseWhileTheDialogIsOpenAndUndoTakesItOut()
    {
        const HostInstallation installation(*m_host);
        const FakeMessageBoxes boxes;
        QLineEdit box(u"Qxzville teh"_s);
        TavrinSpellcheck control;
        QList<QStringList> seen;
        const auto clickAndLook = [&](const char* button) {
            return [this, &seen, button](const Dialog& dialog) {
                dialog.click(button);
                seen << wordsInDatabase();
                return true;
            };
        };
        const Person person({clickAndLook("cmdAdd"), clickAndLook("cmdUndo"), clickAndLook("cmdAdd"),
                             clickAndLook("cmdIgnore")});
        QVERIFY(control.CheckSpellingWithResult(&box));
        QVERIFY(person.isDone());
        const QStringList added{u"Qxzville"_s};
        QCOMPARE(seen, QList<QStringList>({added, {}, added, added}));
        QCOMPARE(contentOf(customFile()), QByteArray("Qxzville\n"));
        QCOMPARE(boxes.texts(), QStringList());
    }

    void aWordOfTheWholeListStaysWhenItsAddingHereIsTakenBack()
    {
        const HostInstallation installation(*m_host);
        const FakeMessageBoxes boxes;
        QLineEdit box(u"Qxzville teh"_s);
        TavrinSpellcheck control;
        const Person person({[&](const Dialog& dialog) {
                                 m_host->newCustomDictionary()->AddWord(u"Qxzville"_s); // another workstation
                                 dialog.click("cmdAdd");
                                 return true;
                             },
                             Person::click("cmdUndo"), Person::click("cmdIgnore"),
                             Person::click("cmdIgnore")});
        QVERIFY(control.CheckSpellingWithResult(&box));
        QVERIFY(person.isDone());
        QCOMPARE(wordsInDatabase(), QStringList(u"Qxzville"_s));
    }

    void aSecondProgramThatSynchronisesDuringTheDialogCostsNoWord()
    {
        const HostInstallation installation(*m_host);
        const FakeMessageBoxes boxes;
        const auto otherDatabase = Database::open(path("records.db"), OpenMode::ExistingOnly, impatient());
        ReferenceHost other(*otherDatabase, {u"clerk"_s, path("station"), {}});
        QLineEdit box(u"Qxzville teh"_s);
        TavrinSpellcheck control;
        const Person person({Person::click("cmdAdd"), [&](const Dialog& dialog) {
                                 other.hostServices().SyncCustomDictionaryFile();
                                 dialog.click("cmdIgnore");
                                 return true;
                             }});
        QVERIFY(control.CheckSpellingWithResult(&box));
        QVERIFY(person.isDone());
        QCOMPARE(contentOf(customFile()), QByteArray("Qxzville\n"));
        QCOMPARE(wordsInDatabase(), QStringList(u"Qxzville"_s));
    }

    void aDatabaseThatIsGoneWhileAWordIsAddedIsToldAndTheWordIsInTheFile()
    {
        const HostInstallation installation(*m_host);
        const FakeMessageBoxes boxes;
        QLineEdit box(u"Qxzville teh"_s);
        TavrinSpellcheck control;
        {
            const Person person({[&](const Dialog& dialog) {
                                     if (!QFile::rename(path("records.db"), path("moved.db")))
                                         return false;
                                     dialog.click("cmdAdd");
                                     return true;
                                 },
                                 Person::click("cmdIgnore")});
            QVERIFY(control.CheckSpellingWithResult(&box));
            QVERIFY(person.isDone());
        }
        QVERIFY(QFile::rename(path("moved.db"), path("records.db")));
        QCOMPARE(boxes.shown().size(), 1);
        const ShownBox told = boxes.shown().first();
        QVERIFY2(told.text.startsWith(u"Error adding word to database: "_s), qPrintable(told.text));
        QVERIFY2(told.text.contains(path("records.db")), qPrintable(told.text));
        QCOMPARE(told.icon, BoxIcon::Critical);
        QCOMPARE(told.title, u"Error"_s);
        QCOMPARE(told.buttons, BoxButtons::OkCancel);
        QCOMPARE(contentOf(customFile()), QByteArray("Qxzville\n"));
        QCOMPARE(wordsInDatabase(), QStringList());
        // The control stays usable, and the word is known.
        const Person next({Person::click("cmdIgnore")});
        QVERIFY(control.CheckSpellingWithResult(&box));
        QVERIFY(next.isDone());
    }

    void aWorkstationWithoutAnythingGetsItsFilesAtTheFirstCheck()
    {
        const HostInstallation installation(*m_host);
        const FakeMessageBoxes boxes;
        m_host->newCustomDictionary()->AddWord(u"Qxzville"_s);
        QVERIFY(!QDir(path("station")).exists());
        QLineEdit box(u"Qxzville is teh end"_s);
        TavrinSpellcheck control;
        const Person person({Person::click("cmdIgnore")});
        QVERIFY(control.CheckSpellingWithResult(&box));
        QVERIFY(person.isDone());
        QCOMPARE(boxes.texts(), QStringList());
        QCOMPARE(filesIn(path("station")), QStringList({u"custom.dic"_s, u"vssp_ae.dct"_s}));
    }
};

TAVRIN_TEST_MAIN(tst_SpellingOnHost)
#include "tst_SpellingOnHost.moc"
