#include "spell/HunspellSpeller.h"
#include "spell/SpellTestSupport.h"
#include "support/TestCase.h"

#include <QElapsedTimer>
#include <QTemporaryDir>

#include <optional>
#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

constexpr qint64 NoPersonWaitsLonger = 60'000; // ms; only tells a hang from a busy machine

int openFiles()
{
    return static_cast<int>(QDir(u"/proc/self/fd"_s).entryList(QDir::AllEntries | QDir::System).size());
}

} // namespace

class tst_HunspellSpeller : public TestCase
{
    Q_OBJECT

    std::optional<QTemporaryDir> m_folder;
    QString m_mainPath;
    QString m_customPath;
    std::unique_ptr<HunspellSpeller> m_loaded = std::make_unique<HunspellSpeller>();

    /// The speller of most tests: loading takes the longest.
    HunspellSpeller& speller() { return *m_loaded; }

private Q_SLOTS:
    void init() override
    {
        TestCase::init();
        m_folder.emplace();
        const QString folder = m_folder->filePath(u"Wörterbücher von José"_s);
        QVERIFY(QDir().mkdir(folder));
        m_mainPath = folder + u"/vssp_ae.dct"_s;
        m_customPath = folder + u"/custom.dic"_s;
        putFile(m_mainPath, supportFile());
        putFile(m_customPath, {});
        if (!speller().hasMainDictionary())
            speller().setMainDictionary(m_mainPath);
        speller().setCustomDictionary(m_customPath);
        speller().forgetIgnored();
    }

    void cleanupTestCase() { m_loaded.reset(); }

    void wordsAreRightOrWrong_data()
    {
        QTest::addColumn<QString>("word");
        QTest::addColumn<bool>("right");
        QTest::newRow("right") << u"robbery"_s << true;
        QTest::newRow("with an ending") << u"robberies"_s << true;
        QTest::newRow("wrong") << u"robery"_s << false;
        QTest::newRow("first letter large") << u"Robbery"_s << true;
        QTest::newRow("capitals") << u"ROBBERY"_s << true;
        QTest::newRow("wrong in capitals") << u"ROBERY"_s << false;
        QTest::newRow("name") << u"Boston"_s << true;
        QTest::newRow("name without its capital") << u"boston"_s << false;
        QTest::newRow("apostrophe") << u"don't"_s << true;
        QTest::newRow("curly apostrophe") << u"don\u2019t"_s << true;
        QTest::newRow("wrong with an apostrophe") << u"dosn't"_s << false;
        QTest::newRow("hyphen") << u"well-known"_s << true;
        QTest::newRow("Unicode hyphen") << u"well\u2011known"_s << true;
        QTest::newRow("wrong behind a hyphen") << u"well-knwon"_s << false;
        QTest::newRow("soft hyphen") << u"robb\u00ADery"_s << true;
        QTest::newRow("ordinal") << u"22nd"_s << true;
        QTest::newRow("wrong ordinal") << u"22st"_s << false;
        QTest::newRow("other script") << u"привет"_s << false;
        QTest::newRow("surrogate pairs") << u"\U0001D400\U0001D401"_s << false;
        QTest::newRow("half a surrogate pair") << QString(QChar(0xD835)) + u"a"_s << false;
        QTest::newRow("NUL") << u"a"_s + QChar(0) + u"bx"_s << false;
        QTest::newRow("empty") << QString() << true;
        QTest::newRow("100 letters") << QString(100, u'x') << false;
        QTest::newRow("101 letters") << QString(101, u'x') << false;
    }
    void wordsAreRightOrWrong()
    {
        QFETCH(QString, word);
        QTEST(speller().isCorrect(word), "right");
        QTEST(speller().isCorrect(word), "right"); // remembered
    }

    void suggestionsBeginWithTheLikeliest_data()
    {
        QTest::addColumn<QString>("word");
        QTest::addColumn<QString>("first");
        QTest::newRow("left out") << u"robery"_s << u"robbery"_s;
        QTest::newRow("changed about") << u"recieve"_s << u"receive"_s;
        QTest::newRow("capitals") << u"ROBERY"_s << u"ROBBERY"_s;
        QTest::newRow("hyphen") << u"well-knwon"_s << u"well-known"_s;
        QTest::newRow("apostrophe") << u"shoudn't"_s << u"shouldn't"_s;
        QTest::newRow("curly apostrophe stays curly") << u"shoudn\u2019t"_s << u"shouldn\u2019t"_s;
    }
    void suggestionsBeginWithTheLikeliest()
    {
        QFETCH(QString, word);
        const QStringList suggestions = speller().suggestions(word);
        QVERIFY2(!suggestions.isEmpty(), qPrintable(word));
        QTEST(suggestions.first(), "first");
    }

    void wordsWithoutSuggestions_data()
    {
        QTest::addColumn<QString>("word");
        QTest::newRow("nothing like it") << u"xqzvkjwqxz"_s;
        QTest::newRow("101 letters") << QString(101, u'e');
        QTest::newRow("surrogate pairs") << u"\U0001D400\U0001D401"_s;
    }
    void wordsWithoutSuggestions()
    {
        QFETCH(QString, word);
        QCOMPARE(speller().suggestions(word), QStringList());
    }

    void hostileWordsEndInGoodTime_data()
    {
        QTest::addColumn<QString>("word");
        QTest::newRow("10,000 letters") << QString(10'000, u'a');
        QTest::newRow("10 million letters") << QString(10'000'000, u'a');
        QTest::newRow("100 letters") << QString(100, u'a');
        QTest::newRow("hyphens") << u"a-"_s.repeated(49) + u"bx"_s;
        QTest::newRow("apostrophes") << u"a'"_s.repeated(49) + u"bx"_s;
        QTest::newRow("words run together") << u"policeofficer"_s.repeated(7);
        QTest::newRow("capitals") << QString(100, u'A');
        QTest::newRow("marks") << u"a"_s + QString(99, QChar(0x0323));
    }
    void hostileWordsEndInGoodTime()
    {
        QFETCH(QString, word);
        QElapsedTimer timer;
        timer.start();
        QVERIFY(!speller().isCorrect(word));
        speller().suggestions(word);
        QVERIFY2(timer.elapsed() < NoPersonWaitsLonger, QByteArray::number(timer.elapsed()).constData());
    }

    void anAddedWordIsRightAtOnceAndWhenTheFileIsReadAgain()
    {
        QVERIFY(!speller().isCorrect(u"Tavrinesque"_s));
        speller().add(u"Tavrinesque"_s);
        QVERIFY(speller().isCorrect(u"Tavrinesque"_s));
        QCOMPARE(bytesOf(m_customPath), QByteArray("Tavrinesque\n"));
        speller().setCustomDictionary({});
        QVERIFY(!speller().isCorrect(u"Tavrinesque"_s));
        speller().setCustomDictionary(m_customPath);
        QVERIFY(speller().isCorrect(u"Tavrinesque"_s));
    }

    void anAddedWordServesInEveryForm()
    {
        speller().add(u"Tavrinesque"_s);
        for (const QString& word : {u"TAVRINESQUE"_s, u"Tavrinesque's"_s, u"Tavrinesque\u2019s"_s,
                                    u"TAVRINESQUE'S"_s, u"Tavrinesque-like"_s})
            QVERIFY2(speller().isCorrect(word), qPrintable(word));
        for (const QString& word : {u"tavrinesque"_s, u"Tavrinesques"_s, u"Tavrinesque-lkie"_s})
            QVERIFY2(!speller().isCorrect(word), qPrintable(word));
        QCOMPARE(speller().suggestions(u"Tavrinesqe"_s).value(0), u"Tavrinesque"_s);
    }

    void addedWordsMayHaveWhatTheDictionaryCannotHold()
    {
        for (const QString& word :
             {u"\U0001D400\U0001D401"_s, u"привет"_s, u"O\u2019Brienish"_s, u"K9er"_s}) {
            QVERIFY2(!speller().isCorrect(word), qPrintable(word));
            speller().add(word);
            QVERIFY2(speller().isCorrect(word), qPrintable(word));
        }
        QVERIFY(bytesOf(m_customPath).contains("O'Brienish\n"));
    }

    void aWordAddedByMistakeIsTakenOutAgain()
    {
        speller().add(u"McTavrinn"_s);
        speller().add(u"robery"_s);
        QVERIFY(speller().isCorrect(u"ROBERY"_s));
        speller().removeAdded(u"robery"_s);
        QVERIFY(!speller().isCorrect(u"robery"_s));
        QVERIFY(!speller().isCorrect(u"ROBERY"_s));
        QVERIFY(speller().isCorrect(u"McTavrinn"_s));
        QVERIFY(!speller().suggestions(u"roberry"_s).contains(u"robery"_s));
        QCOMPARE(bytesOf(m_customPath), QByteArray("McTavrinn\n"));
        speller().add(u"robery"_s);
        QVERIFY(speller().isCorrect(u"robery"_s));
    }

    void aMainDictionarysWordStaysRightWhenItIsAddedAndRemoved()
    {
        speller().add(u"house"_s);
        speller().removeAdded(u"house"_s);
        QVERIFY(speller().isCorrect(u"house"_s));
        QVERIFY(speller().isCorrect(u"houses"_s));
        QCOMPARE(bytesOf(m_customPath), QByteArray());
    }

    void aWordThatCannotBeAddedStaysWrong()
    {
        QCOMPARE(failureOf([&] { speller().add(u"rob/ery"_s); }),
                 u"The word \"rob/ery\" cannot be added to the custom dictionary: it holds a slash."_s);
        QVERIFY(QFile::remove(m_customPath));
        QCOMPARE(failureOf([&] { speller().add(u"robery"_s); }),
                 u"The file %1 could not be written: No such file or directory"_s.arg(m_customPath));
        QVERIFY(!speller().isCorrect(u"robery"_s));
        speller().setCustomDictionary({});
        QCOMPARE(failureOf([&] { speller().add(u"robery"_s); }), u"No custom dictionary is open"_s);
        QCOMPARE(failureOf([&] { speller().removeAdded(u"robery"_s); }), u"No custom dictionary is open"_s);
    }

    void ignoredWordsAreRightUntilTheyAreForgottenAndAreNeverWritten()
    {
        const QString longWord(10'000, u'x');
        speller().ignoreAll(u"robery"_s);
        speller().ignoreAll(u"dosn\u2019t"_s);
        speller().ignoreAll(longWord);
        QVERIFY(speller().isCorrect(u"robery"_s));
        QVERIFY(speller().isCorrect(u"dosn't"_s));
        QVERIFY(speller().isCorrect(longWord));
        QVERIFY(!speller().isCorrect(u"Robery"_s));
        QCOMPARE(bytesOf(m_customPath), QByteArray());
        speller().forgetIgnored();
        QVERIFY(!speller().isCorrect(u"robery"_s));
        QVERIFY(!speller().isCorrect(u"dosn't"_s));
        QVERIFY(!speller().isCorrect(longWord));
    }

    void aCustomDictionaryOfAnyContentDoesNoHarm()
    {
        putFile(m_customPath, "\xEF\xBB\xBF"
                              "perpwalk\r\nhouse/XYZ\nwith blank\nfi\x01ve\n" +
                                  QByteArray(10'000, 'x') + "\n\xFF\xFE\nperpwalk\n*house\nlastword");
        speller().setCustomDictionary(m_customPath);
        QVERIFY(speller().isCorrect(u"perpwalk"_s));
        QVERIFY(speller().isCorrect(u"lastword"_s));
        QVERIFY(speller().isCorrect(u"house"_s));
        QVERIFY(!speller().isCorrect(u"blank5"_s));
        QVERIFY(!speller().isCorrect(QString(10'000, u'x')));
    }

    void aCustomDictionaryMayComeBeforeTheMainOne()
    {
        putFile(m_customPath, "perpwalk\n");
        HunspellSpeller fresh;
        fresh.setCustomDictionary(m_customPath);
        QCOMPARE(failureOf([&] { fresh.isCorrect(u"perpwalk"_s); }), u"No spelling dictionary is loaded"_s);
        QCOMPARE(failureOf([&] { fresh.suggestions(u"a"_s); }), u"No spelling dictionary is loaded"_s);
        fresh.setMainDictionary(m_mainPath);
        QVERIFY(fresh.isCorrect(u"perpwalk"_s));
        QVERIFY(fresh.suggestions(u"perpwalkk"_s).contains(u"perpwalk"_s));
    }

    void aCustomDictionaryThatCannotBeReadLeavesNone()
    {
        speller().add(u"perpwalk"_s);
        const QString none = m_customPath + u".none"_s;
        QVERIFY(QDir().mkdir(none));
        QVERIFY(failureOf([&] { speller().setCustomDictionary(none); }).contains(none));
        QVERIFY(!speller().isCorrect(u"perpwalk"_s));
        QCOMPARE(failureOf([&] { speller().add(u"perpwalk"_s); }), u"No custom dictionary is open"_s);
    }

    void theCustomDictionarysFileIsNotHeldOpen()
    {
        const int before = openFiles();
        speller().add(u"perpwalk"_s);
        speller().removeAdded(u"perpwalk"_s);
        QCOMPARE(openFiles(), before);
    }

    void aMainDictionaryThatCannotBeUsedIsNamedAndLeavesNone_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("reason");
        QTest::newRow("empty") << QByteArray() << u"it is empty"_s;
        QTest::newRow("cut") << supportFile().left(500'000) << u"its end is missing"_s;
        QTest::newRow("text") << QByteArray("hello\n") << u"it is no spelling dictionary"_s;
        QByteArray flipped = supportFile();
        flipped[400'000] = static_cast<char>(flipped.at(400'000) ^ 4);
        QTest::newRow("one bit changed") << flipped << u"it is damaged"_s;
        SpellingDictionary other = installedDictionary();
        other.AffixRules += "NEEDAFFIX M\n";
        other.WordList = "3\nhouse/M\nword/M\ntree/M\n";
        QTest::newRow("does not know its words")
            << packSpellingDictionary(other) << u"it does not know its own words"_s;
        other = installedDictionary();
        other.WordList = "3\nhouse\nxqzvkjwqxz\ntree\n";
        QTest::newRow("anything is a word")
            << packSpellingDictionary(other) << u"it takes anything for a word"_s;
    }
    void aMainDictionaryThatCannotBeUsedIsNamedAndLeavesNone()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, reason);
        const int before = openFiles();
        const QString path = m_folder->filePath(u"bad one.dct"_s);
        putFile(path, content);
        HunspellSpeller bad;
        QCOMPARE(failureOf([&] { bad.setMainDictionary(path); }),
                 u"The spelling dictionary %1 cannot be used: %2"_s.arg(path, reason));
        QVERIFY(!bad.hasMainDictionary());
        QCOMPARE(openFiles(), before);
    }

    void aReadOnlyFolderIsEnoughToCheckInButNotToAddIn()
    {
        const QString folder = QFileInfo(m_mainPath).path();
        QCOMPARE(::chmod(QFile::encodeName(m_folder->path()).constData(), 0755), 0);
        QCOMPARE(::chmod(QFile::encodeName(m_mainPath).constData(), 0444), 0);
        QCOMPARE(::chmod(QFile::encodeName(m_customPath).constData(), 0444), 0);
        QCOMPARE(::chmod(QFile::encodeName(folder).constData(), 0555), 0);
        HunspellSpeller fresh;
        const auto check = [&] {
            return failureOf([&] {
                fresh.setMainDictionary(m_mainPath);
                fresh.setCustomDictionary(m_customPath);
                if (!fresh.isCorrect(u"robbery"_s) || fresh.isCorrect(u"robery"_s))
                    throw Error(u"wrong answer"_s);
            });
        };
        QCOMPARE(asNobody(check), QString());
        QCOMPARE(asNobody([&] {
                     return failureOf([&] {
                         fresh.setCustomDictionary(m_customPath);
                         fresh.add(u"robery"_s);
                     });
                 }),
                 u"The file %1 could not be written: Permission denied"_s.arg(m_customPath));
        QCOMPARE(::chmod(QFile::encodeName(m_mainPath).constData(), 0), 0);
        QCOMPARE(asNobody(check), u"The file %1 could not be read: Permission denied"_s.arg(m_mainPath));
        QCOMPARE(::chmod(QFile::encodeName(folder).constData(), 0755), 0);
    }

    void aBadMainDictionaryTakesThePlaceOfAGoodOne()
    {
        HunspellSpeller once;
        once.setMainDictionary(m_mainPath);
        const QString none = m_mainPath + u".none"_s;
        QCOMPARE(failureOf([&] { once.setMainDictionary(none); }),
                 u"The file %1 could not be read: No such file or directory"_s.arg(none));
        QVERIFY(!once.hasMainDictionary());
        once.setMainDictionary(m_mainPath);
        QVERIFY(once.isCorrect(u"robbery"_s));
    }

    void loadingLeavesNothingOnTheDiskAndNoFileOpen()
    {
        const int before = openFiles();
        {
            HunspellSpeller fresh;
            fresh.setMainDictionary(m_mainPath);
            QCOMPARE(namesIn(QFileInfo(m_mainPath).path()), QStringList({u"custom.dic"_s, u"vssp_ae.dct"_s}));
            QVERIFY(QFile::remove(m_mainPath)); // it lives in memory
            fresh.setCustomDictionary(m_customPath);
            fresh.add(u"perpwalk"_s);
            fresh.removeAdded(u"perpwalk"_s); // loads anew
            QVERIFY(fresh.isCorrect(u"robbery"_s));
        }
        QCOMPARE(openFiles(), before);
    }

    void accentsWorkInBothEncodings_data()
    {
        QTest::addColumn<QByteArray>("rules");
        QTest::addColumn<QByteArray>("words");
        const QByteArray rest = "\nTRY esianrtolcdugmphbyfvkwz\n";
        QTest::newRow("UTF-8") << "SET UTF-8" + rest << QByteArray("2\ncaf\xC3\xA9\nhouse\n");
        QTest::newRow("ISO8859-1") << "SET ISO8859-1" + rest << QByteArray("2\ncaf\xE9\nhouse\n");
    }
    void accentsWorkInBothEncodings()
    {
        QFETCH(QByteArray, rules);
        QFETCH(QByteArray, words);
        putFile(m_mainPath,
                packSpellingDictionary({u"small"_s, installedDictionary().RulesChanged, rules, words}));
        HunspellSpeller fresh;
        fresh.setMainDictionary(m_mainPath);
        fresh.setCustomDictionary(m_customPath);
        QVERIFY(fresh.isCorrect(u"café"_s));
        QVERIFY(fresh.isCorrect(u"cafe\u0301"_s));
        QVERIFY(!fresh.isCorrect(u"cafe"_s));
        QVERIFY(!fresh.isCorrect(u"привет"_s));
        QCOMPARE(fresh.suggestions(u"caféé"_s), QStringList(u"café"_s));
        fresh.add(u"привет"_s);
        QVERIFY(fresh.isCorrect(u"привет"_s));
    }
};

TAVRIN_TEST_MAIN(tst_HunspellSpeller)
#include "tst_HunspellSpeller.moc"
