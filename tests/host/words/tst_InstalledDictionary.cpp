#include "frame/words/SpellingDictionary.h"
#include "host/HostCase.h"
#include "host/words/InstalledDictionary.h"
#include "support/TestFiles.h"

#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

const QString RealRules = u"/usr/share/hunspell/en_US.aff"_s;
const QString RealWords = u"/usr/share/hunspell/en_US.dic"_s;

void setChanged(const QString& path, const QDateTime& when)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.setFileTime(when, QFileDevice::FileModificationTime));
}

const QDateTime Monday(QDate(2026, 3, 2), QTime(8, 0), Qt::UTC);
const QDateTime Tuesday(QDate(2026, 3, 3), QTime(8, 0), Qt::UTC);
/// Long before the file is written, as the files of a package are.
const QDateTime LongAgo(QDate(2020, 1, 1), QTime(8, 0), Qt::UTC);

} // namespace

class tst_InstalledDictionary : public HostCase
{
    Q_OBJECT

    QString m_source;
    QString m_file;

    void install(const QByteArray& words, const QDateTime& changed, const QByteArray& rules = "SET UTF-8\n")
    {
        writeFile(m_source + u".aff"_s, rules);
        writeFile(m_source + u".dic"_s, words);
        setChanged(m_source + u".aff"_s, LongAgo);
        setChanged(m_source + u".dic"_s, changed);
    }
    void refresh() { refreshSpellingDictionary(m_file, m_source); }
    QByteArray wordsInFile() { return readSpellingDictionary(m_file).WordList; }

private Q_SLOTS:
    void init() override
    {
        HostCase::init();
        m_source = m_folder->filePath(u"Wörter Bücher/en_XX"_s);
        m_file = m_folder->filePath(u"Platz des Büros/vssp_ae.dct"_s);
        QVERIFY(QDir().mkpath(QFileInfo(m_file).path()));
    }

    void theHostMakesTheFileOfTheRealDictionary()
    {
        Environment& environment = m_host->environment();
        environment.RefreshSupportFile(u"vssp_ae.dct"_s);
        const QString file = environment.GetDictionaryFolder() + u"/vssp_ae.dct"_s;
        const SpellingDictionary dictionary = readSpellingDictionary(file);
        QCOMPARE(dictionary.Name, u"en_US"_s);
        QCOMPARE(dictionary.AffixRules, contentOf(RealRules));
        QCOMPARE(dictionary.WordList, contentOf(RealWords));
        QCOMPARE(filesIn(environment.GetDictionaryFolder()), QStringList(u"vssp_ae.dct"_s));
    }

    void theHostTakesAnotherDictionaryWhenItIsToldTo()
    {
        install("1\nhouse\n", Monday);
        ReferenceHostOptions options{u"admin"_s, path("station"), {}};
        options.InstalledDictionary = m_source;
        ReferenceHost host(*m_database, options);
        host.environment().RefreshSupportFile(u"vssp_ae.dct"_s);
        QCOMPARE(readSpellingDictionary(path("station/vssp_ae.dct")).WordList, QByteArray("1\nhouse\n"));
    }

    void aSupportFileThatTheHostDoesNotKnowRaises_data()
    {
        QTest::addColumn<QString>("name");
        for (const char* name : {"other.dct", "VSSP_AE.DCT", "", "../vssp_ae.dct"})
            QTest::newRow(name) << QString::fromLatin1(name);
    }
    void aSupportFileThatTheHostDoesNotKnowRaises()
    {
        QFETCH(QString, name);
        const auto call = [&] { m_host->environment().RefreshSupportFile(name); };
        QCOMPARE(errorOf(call), u"This host does not offer the support file %1"_s.arg(name));
        QCOMPARE(errorNumberOf(call), Error::NoSuchComponentNumber + 0);
    }

    void aMissingFileIsMade()
    {
        install("1\nhouse\n", LongAgo);
        refresh();
        QCOMPARE(wordsInFile(), QByteArray("1\nhouse\n"));
        QCOMPARE(filesIn(QFileInfo(m_file).path()), QStringList(u"vssp_ae.dct"_s));
    }

    void aFileThatIsUpToDateIsLeftAlone()
    {
        install("1\nhouse\n", Monday);
        refresh();
        struct stat before = {};
        QCOMPARE(::stat(QFile::encodeName(m_file).constData(), &before), 0);
        refresh();
        struct stat after = {};
        QCOMPARE(::stat(QFile::encodeName(m_file).constData(), &after), 0);
        QCOMPARE(after.st_ino, before.st_ino);
    }

    void aNewerInstalledDictionaryIsTakenHoweverOldItsFilesAre()
    {
        install("1\nhouse\n", Monday);
        refresh();
        install("1\ntree\n", Tuesday);
        refresh();
        QCOMPARE(wordsInFile(), QByteArray("1\ntree\n"));
    }

    void newerRulesAloneCountToo()
    {
        install("1\nhouse\n", Monday);
        refresh();
        install("1\nhouse\n", Monday, "SET UTF-8\nTRY a\n");
        setChanged(m_source + u".aff"_s, Tuesday);
        refresh();
        QCOMPARE(readSpellingDictionary(m_file).AffixRules, QByteArray("SET UTF-8\nTRY a\n"));
    }

    /// A package that is being installed puts one file there before the other.
    void wordsThatChangeLaterButNotBeyondTheRulesAreTaken()
    {
        install("1\nhouse\n", Monday);
        setChanged(m_source + u".aff"_s, Tuesday);
        refresh();
        QCOMPARE(wordsInFile(), QByteArray("1\nhouse\n"));
        install("1\ntrees\n", Tuesday);
        setChanged(m_source + u".aff"_s, Tuesday);
        refresh();
        QCOMPARE(wordsInFile(), QByteArray("1\ntrees\n"));
    }

    void wordsOfAnotherLengthAreTakenThoughTheirTimeIsTheSame()
    {
        install("1\nhouse\n", Monday);
        refresh();
        install("1\nhouses\n", Monday);
        refresh();
        QCOMPARE(wordsInFile(), QByteArray("1\nhouses\n"));
    }

    void aRefreshedFileIsReplacedAndNeverWrittenOver()
    {
        install("1\nhouse\n", Monday);
        refresh();
        QFile reader(m_file);
        QVERIFY(reader.open(QIODevice::ReadOnly | QIODevice::Unbuffered));
        const QByteArray before = contentOf(m_file);
        install("1\ntree\n", Tuesday);
        refresh();
        QCOMPARE(wordsInFile(), QByteArray("1\ntree\n"));
        QCOMPARE(reader.readAll(), before); // who has the old one open still sees it whole
    }

    void anOlderInstalledDictionaryIsNotTaken()
    {
        install("1\nhouse\n", Tuesday);
        refresh();
        install("1\ntree\n", Monday);
        refresh();
        QCOMPARE(wordsInFile(), QByteArray("1\nhouse\n"));
    }

    void anotherDictionaryIsTakenAlsoWhenItIsOlder()
    {
        install("1\nhouse\n", Tuesday);
        refresh();
        m_source = m_folder->filePath(u"Wörter Bücher/en_YY"_s);
        install("1\ntree\n", Monday);
        refresh();
        QCOMPARE(wordsInFile(), QByteArray("1\ntree\n"));
    }

    void aDamagedFileIsMadeAnew()
    {
        install("1\nhouse\n", Monday);
        refresh();
        const QByteArray good = contentOf(m_file);
        for (qsizetype i = 0; i < good.size(); i += 7) {
            QByteArray damaged = good;
            damaged[i] = static_cast<char>(damaged.at(i) ^ 0x10);
            for (const QByteArray& content : {damaged, good.left(i)}) {
                writeFile(m_file, content);
                refresh();
                QCOMPARE(contentOf(m_file), good);
            }
        }
    }

    void aDamagedInstalledDictionaryIsNamedAndTheFileStays_data()
    {
        QTest::addColumn<QByteArray>("words");
        QTest::addColumn<QString>("reason");
        QTest::newRow("empty") << QByteArray() << u"the words are empty"_s;
        QTest::newRow("cut") << QByteArray("2\nhouse\n")
                             << u"the words are 2 by their count and 1 by their lines"_s;
        QTest::newRow("binary") << QByteArray("1\nho\x01use\n") << u"the words are no text"_s;
    }
    void aDamagedInstalledDictionaryIsNamedAndTheFileStays()
    {
        QFETCH(QByteArray, words);
        QFETCH(QString, reason);
        install("1\nhouse\n", Monday);
        refresh();
        install(words, Tuesday);
        QCOMPARE(errorOf([this] { refresh(); }),
                 u"The installed spelling dictionary %1 cannot be used: %2"_s.arg(m_source, reason));
        QCOMPARE(wordsInFile(), QByteArray("1\nhouse\n"));
    }

    void aMissingInstalledDictionaryIsNamedAndTheFileStays()
    {
        install("1\nhouse\n", Monday);
        refresh();
        QVERIFY(QFile::remove(m_source + u".dic"_s));
        QCOMPARE(errorOf([this] { refresh(); }),
                 u"The installed spelling dictionary %1.dic is missing"_s.arg(m_source));
        QCOMPARE(wordsInFile(), QByteArray("1\nhouse\n"));
    }

    void aReadOnlyFolderIsNamedAndTheFileStays()
    {
        install("1\nhouse\n", Monday);
        refresh();
        const QByteArray before = contentOf(m_file);
        install("1\ntree\n", Tuesday);
        const QString folder = QFileInfo(m_file).path();
        QCOMPARE(::chmod(QFile::encodeName(m_folder->path()).constData(), 0755), 0);
        QCOMPARE(::chmod(QFile::encodeName(folder).constData(), 0555), 0);
        QCOMPARE(asNobody([this] { return errorOf([this] { refresh(); }); }),
                 u"The file %1 could not be written: Permission denied"_s.arg(m_file));
        QCOMPARE(contentOf(m_file), before);
        QCOMPARE(filesIn(folder), QStringList(u"vssp_ae.dct"_s));
        QCOMPARE(::chmod(QFile::encodeName(folder).constData(), 0755), 0);
    }
};

TAVRIN_TEST_MAIN(tst_InstalledDictionary)
#include "tst_InstalledDictionary.moc"
