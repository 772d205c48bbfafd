#include "base/files/Descriptor.h"
#include "frame/host_contracts/RemovableWord.h"
#include "frame/words/CustomWords.h"
#include "host/HostCase.h"
#include "host/database/DatabaseOptions.h"
#include "support/TestFiles.h"

#include <sys/file.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

class tst_CustomWordTable : public HostCase
{
    Q_OBJECT

    QString fileOfWords() const { return path("station/custom.dic"); }
    void add(const QString& word) { m_host->newCustomDictionary()->AddWord(word); }
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
    void anAddedWordIsInTheDatabaseAndInTheFileAfterASync()
    {
        add(u"perpwalk"_s);
        add(u"O\u2019Brienish"_s);
        QVERIFY(!QFile::exists(fileOfWords()));
        m_host->hostServices().SyncCustomDictionaryFile();
        QCOMPARE(contentOf(fileOfWords()), QByteArray("O'Brienish\nperpwalk\n"));
    }

    void aSyncRewritesTheFileFromTheDatabase()
    {
        add(u"perpwalk"_s);
        writeFile(fileOfWords(), "local\n");
        m_host->hostServices().SyncCustomDictionaryFile();
        QCOMPARE(contentOf(fileOfWords()), QByteArray("perpwalk\n"));
        execute("DELETE FROM custom_word");
        m_host->hostServices().SyncCustomDictionaryFile();
        QCOMPARE(contentOf(fileOfWords()), QByteArray());
        QCOMPARE(filesIn(path("station")), QStringList(u"custom.dic"_s));
    }

    void aSyncWaitsForTheProgramThatAppends()
    {
        add(u"perpwalk"_s);
        writeFile(fileOfWords(), "local\n");
        const Descriptor adder = openAt(AT_FDCWD, QFile::encodeName(fileOfWords()), O_RDWR | O_APPEND);
        QCOMPARE(::flock(adder.number(), LOCK_EX), 0); // as the engine does before it appends
        QCOMPARE(errorOf([this] { m_host->hostServices().SyncCustomDictionaryFile(); }),
                 u"The file %1 could not be written: another program is using it"_s.arg(fileOfWords()));
        QCOMPARE(contentOf(fileOfWords()), QByteArray("local\n"));
        QCOMPARE(::flock(adder.number(), LOCK_UN), 0);
        m_host->hostServices().SyncCustomDictionaryFile();
        QCOMPARE(contentOf(fileOfWords()), QByteArray("perpwalk\n"));
    }

    void aSyncReplacesTheFileAndNeverWritesItOver()
    {
        writeFile(fileOfWords(), "local\n");
        QFile reader(fileOfWords());
        QVERIFY(reader.open(QIODevice::ReadOnly | QIODevice::Unbuffered));
        add(u"perpwalk"_s);
        m_host->hostServices().SyncCustomDictionaryFile();
        QCOMPARE(contentOf(fileOfWords()), QByteArray("perpwalk\n"));
        QCOMPARE(reader.readAll(), QByteArray("local\n")); // who has the old one open still sees it whole
    }

    void aSyncFollowsALinkAndLeavesIt()
    {
        const QString shared = path("shared.dic");
        writeFile(shared, "local\n");
        QVERIFY(QDir().mkpath(path("station")));
        QVERIFY(QFile::link(shared, fileOfWords()));
        add(u"perpwalk"_s);
        m_host->hostServices().SyncCustomDictionaryFile();
        QVERIFY(QFileInfo(fileOfWords()).isSymLink());
        QCOMPARE(contentOf(shared), QByteArray("perpwalk\n"));
    }

    void rowsThatAreNoWordsStayOutOfTheFile()
    {
        execute("INSERT INTO custom_word (word) VALUES ('one' || char(10) || 'two'), ('bad/word'), (''), "
                "('cafe' || char(769)), ('good')");
        add(u"café"_s);
        m_host->hostServices().SyncCustomDictionaryFile();
        QCOMPARE(contentOf(fileOfWords()), QByteArray("caf\xC3\xA9\ngood\n"));
    }

    void aWordThatWasAddedByMistakeIsTakenBack()
    {
        add(u"perpwalk"_s);
        const auto mistake = m_host->newCustomDictionary();
        mistake->AddWord(u"mistaek"_s);
        auto* removable = dynamic_cast<RemovableWord*>(mistake.get());
        QVERIFY(removable);
        removable->TakeBack();
        QCOMPARE(wordsInDatabase(), QStringList(u"perpwalk"_s));
        removable->TakeBack(); // there is nothing more to take back
        QCOMPARE(wordsInDatabase(), QStringList(u"perpwalk"_s));
    }

    void aWordThatTheListHeldBeforeIsNotTakenBack()
    {
        add(u"perpwalk"_s);
        const auto again = m_host->newCustomDictionary();
        again->AddWord(u"perpwalk"_s);
        dynamic_cast<RemovableWord&>(*again).TakeBack();
        QCOMPARE(wordsInDatabase(), QStringList(u"perpwalk"_s));
    }

    void aTakingBackThatFailsIsToldAndCanBeTriedAgain()
    {
        const auto mistake = m_host->newCustomDictionary();
        mistake->AddWord(u"mistaek"_s);
        auto& removable = dynamic_cast<RemovableWord&>(*mistake);
        QVERIFY(QFile::rename(path("records.db"), path("moved.db")));
        const QString text = errorOf([&] { removable.TakeBack(); });
        QVERIFY2(text.contains(path("records.db")), qPrintable(text));
        QVERIFY(QFile::rename(path("moved.db"), path("records.db")));
        removable.TakeBack();
        QCOMPARE(wordsInDatabase(), QStringList());
    }

    void theListOutlivesTheProgram()
    {
        add(u"perpwalk"_s);
        m_host.reset();
        m_database.reset();
        m_database = Database::open(path("records.db"), OpenMode::ExistingOnly, impatient());
        signOn(u"clerk"_s);
        m_host->hostServices().SyncCustomDictionaryFile();
        QCOMPARE(contentOf(fileOfWords()), QByteArray("perpwalk\n"));
    }

    void twoWorkstationsThatAddTheSameWordAddItOnce()
    {
        const auto otherDatabase = Database::open(path("records.db"), OpenMode::ExistingOnly, impatient());
        ReferenceHost other(*otherDatabase, {u"clerk"_s, path("other station"), {}});
        add(u"café"_s);
        other.newCustomDictionary()->AddWord(u"cafe\u0301"_s);
        add(u"café"_s);
        other.newCustomDictionary()->AddWord(u"second"_s);
        QCOMPARE(wordsInDatabase(), QStringList({u"café"_s, u"second"_s}));
        m_host->hostServices().SyncCustomDictionaryFile();
        other.hostServices().SyncCustomDictionaryFile();
        QCOMPARE(contentOf(fileOfWords()), QByteArray("caf\xC3\xA9\nsecond\n"));
        QCOMPARE(contentOf(path("other station/custom.dic")), contentOf(fileOfWords()));
    }

    void programsThatAddTheSameWordsAtTheSameTimeAddThemOnce()
    {
        m_host.reset();
        m_database.reset();
        QList<pid_t> children;
        for (int child = 0; child < 3; ++child) {
            const pid_t pid = ::fork();
            if (pid == 0) {
                const QString failure = errorOf([&] {
                    DatabaseOptions patient;
                    patient.BusyTimeoutMs = 60'000; // on a busy machine
                    const auto database = Database::open(path("records.db"), OpenMode::ExistingOnly, patient);
                    ReferenceHost host(*database, {u"admin"_s, path("station"), {}});
                    for (int i = 1; i <= 10; ++i)
                        host.newCustomDictionary()->AddWord(QString(i, u'w'));
                });
                ::_exit(failure.isEmpty() ? 0 : 1);
            }
            children.append(pid);
        }
        for (const pid_t pid : children) {
            int status = 0;
            QCOMPARE(::waitpid(pid, &status, 0), pid);
            QCOMPARE(status, 0);
        }
        m_database = Database::open(path("records.db"), OpenMode::ExistingOnly, impatient());
        QCOMPARE(wordsInDatabase().size(), 10);
    }

    void caseTellsWordsApart()
    {
        add(u"Perp"_s);
        add(u"perp"_s);
        QCOMPARE(wordsInDatabase(), QStringList({u"Perp"_s, u"perp"_s}));
    }

    void whatIsNoWordIsRefused()
    {
        QCOMPARE(errorOf([this] { add(u"walk/GDS"_s); }),
                 u"The word \"walk/GDS\" cannot be added to the custom dictionary: it holds a slash."_s);
        QCOMPARE(errorOf([this] { add({}); }),
                 u"The word \"\" cannot be added to the custom dictionary: it is empty."_s);
        QVERIFY(!errorOf([this] { add(u"a'); DROP TABLE custom_word; --"_s); }).isEmpty());
        QCOMPARE(wordsInDatabase(), QStringList());
    }

    void aWordFromAPersonIsAValueAndNoSql()
    {
        add(u"x');DROP--"_s);
        QCOMPARE(wordsInDatabase(), QStringList(u"x');DROP--"_s));
    }

    void aDatabaseThatIsGoneWhileAddingIsNamed()
    {
        QVERIFY(QFile::rename(path("records.db"), path("moved.db")));
        const QString text = errorOf([this] { add(u"perpwalk"_s); });
        QVERIFY2(text.contains(path("records.db")), qPrintable(text));
        QVERIFY(QFile::rename(path("moved.db"), path("records.db")));
        QCOMPARE(wordsInDatabase(), QStringList());
        add(u"perpwalk"_s);
        QCOMPARE(wordsInDatabase(), QStringList(u"perpwalk"_s));
    }

    void aDatabaseThatAnotherProgramLocksIsNamed()
    {
        const auto other = Database::open(path("records.db"), OpenMode::ExistingOnly, impatient());
        Transaction transaction(*other);
        const QString text = errorOf([this] { add(u"perpwalk"_s); });
        QVERIFY2(text.contains(path("records.db")), qPrintable(text));
        transaction.rollback();
        add(u"perpwalk"_s);
        QCOMPARE(wordsInDatabase(), QStringList(u"perpwalk"_s));
    }

    void aFileThatCannotBeWrittenIsNamedAndStays()
    {
        add(u"perpwalk"_s);
        writeFile(fileOfWords(), "local\n");
        QCOMPARE(::chmod(QFile::encodeName(m_folder->path()).constData(), 0755), 0);
        QCOMPARE(::chmod(QFile::encodeName(path("records.db")).constData(), 0444), 0);
        QCOMPARE(::chmod(QFile::encodeName(path("station")).constData(), 0555), 0);
        QCOMPARE(asNobody([this] {
                     return errorOf([this] { m_host->hostServices().SyncCustomDictionaryFile(); });
                 }),
                 u"The file %1 could not be written: Permission denied"_s.arg(fileOfWords()));
        QCOMPARE(contentOf(fileOfWords()), QByteArray("local\n"));
        QCOMPARE(::chmod(QFile::encodeName(path("station")).constData(), 0755), 0);
    }

    void aListThatCannotBeReadLeavesTheFile()
    {
        writeFile(fileOfWords(), "local\n");
        execute("DROP TABLE custom_word");
        QVERIFY(!errorOf([this] { m_host->hostServices().SyncCustomDictionaryFile(); }).isEmpty());
        QCOMPARE(contentOf(fileOfWords()), QByteArray("local\n"));
    }
};

TAVRIN_TEST_MAIN(tst_CustomWordTable)
#include "tst_CustomWordTable.moc"
