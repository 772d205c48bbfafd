#include "frame/words/SpellingDictionary.h"
#include "support/TestCase.h"
#include "support/TestFiles.h"

#include <QTemporaryDir>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

const QByteArray Rules = "SET UTF-8\n"
                         "# a comment\n"
                         "TRY esia\n"
                         "SFX S Y 2\n"
                         "SFX S 0 s [^s]\n"
                         "SFX S 0 es s\n"
                         "REP 1\n"
                         "REP f ph\n";
const QByteArray Words = "3\nhouse/S\ncaf\xC3\xA9\nword/S\n";

SpellingDictionary small()
{
    return {u"en_US"_s, QDateTime(QDate(2026, 3, 4), QTime(5, 6, 7, 8), Qt::UTC), Rules, Words,
            QDateTime(QDate(2026, 3, 5), QTime(6, 7, 8, 9), Qt::UTC)};
}

QString flawOf(const QByteArray& rules, const QByteArray& words)
{
    return failureOf([&] { checkSpellingDictionary({u"x"_s, {}, rules, words}); });
}

} // namespace

class tst_SpellingDictionary : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void theFormOfTheFileStays()
    {
        const QByteArray content = packSpellingDictionary(small());
        QVERIFY(content.startsWith("TVBoundControls spelling dictionary 2\n"
                                   "name en_US\n"
                                   "rules-changed 2026-03-04T05:06:07.008Z\n"
                                   "words-changed 2026-03-05T06:07:08.009Z\n"
                                   "affix 84\n"
                                   "words 23\n"
                                   "sha256 "));
        QVERIFY(content.endsWith("\n\n" + Rules + Words));
    }

    void whatIsPackedComesBack()
    {
        const SpellingDictionary back = unpackSpellingDictionary(packSpellingDictionary(small()));
        QCOMPARE(back.Name, u"en_US"_s);
        QCOMPARE(back.RulesChanged, small().RulesChanged);
        QCOMPARE(back.WordsChanged, small().WordsChanged);
        QCOMPARE(back.AffixRules, Rules);
        QCOMPARE(back.WordList, Words);
    }

    void aFileCutAnywhereIsRefused()
    {
        const QByteArray content = packSpellingDictionary(small());
        for (qsizetype length = 0; length < content.size(); ++length) {
            const QString flaw = failureOf([&] { unpackSpellingDictionary(content.left(length)); });
            QVERIFY2(!flaw.isEmpty(), QByteArray::number(length).constData());
        }
        QCOMPARE(failureOf([] { unpackSpellingDictionary({}); }), u"it is empty"_s);
        QCOMPARE(failureOf([&] { unpackSpellingDictionary(content.chopped(1)); }), u"its end is missing"_s);
    }

    void aFileWithAnyBitChangedIsRefused()
    {
        const QByteArray content = packSpellingDictionary(small());
        for (qsizetype bit = 0; bit < 8 * content.size(); ++bit) {
            QByteArray damaged = content;
            damaged[bit / 8] = static_cast<char>(damaged.at(bit / 8) ^ (1 << bit % 8));
            const QString flaw = failureOf([&] { unpackSpellingDictionary(damaged); });
            QVERIFY2(!flaw.isEmpty(), QByteArray::number(bit).constData());
        }
    }

    void whatIsNoSupportFileIsRefused_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("flaw");
        const QByteArray content = packSpellingDictionary(small());
        QTest::newRow("word list") << Words << u"it is no spelling dictionary"_s;
        QTest::newRow("program") << QByteArray("\x7F"
                                               "ELF\0\0\0",
                                               7)
                                 << u"it is no spelling dictionary"_s;
        QTest::newRow("something behind its end") << content + "x" << u"it is damaged"_s;
        QByteArray huge = content;
        huge.replace("words 23", "words 9223372036854775807");
        QTest::newRow("length beyond all memory") << huge << u"it is damaged"_s;
        QByteArray negative = content;
        negative.replace("words 23", "words -7");
        QTest::newRow("negative length") << negative << u"it is damaged"_s;
        QByteArray later = content;
        later.replace("2026-03-04", "2027-03-04");
        QTest::newRow("other date") << later << u"it is damaged"_s;
    }
    void whatIsNoSupportFileIsRefused()
    {
        QFETCH(QByteArray, content);
        QTEST(failureOf([&] { unpackSpellingDictionary(content); }), "flaw");
    }

    void whatHunspellWouldTakeSilentlyIsRefused_data()
    {
        QTest::addColumn<QByteArray>("rules");
        QTest::addColumn<QByteArray>("words");
        QTest::addColumn<QString>("flaw");
        const auto row = [](const char* name, const QByteArray& rules, const QByteArray& words,
                            const QString& flaw) { QTest::newRow(name) << rules << words << flaw; };
        row("as they should be", Rules, Words, {});
        row("no rules", {}, Words, u"the affix rules are empty"_s);
        row("no words", Rules, {}, u"the words are empty"_s);
        row("binary rules", Rules + '\0', Words, u"the affix rules are no text"_s);
        row("binary words", Rules, "2\na\x01\nb\n", u"the words are no text"_s);
        row("rules cut in a line", Rules.chopped(1), Words, u"the affix rules end in the middle of a line"_s);
        row("words cut in a line", Rules, Words.chopped(1), u"the words end in the middle of a line"_s);
        row("rules cut in a table", Rules.left(Rules.indexOf("SFX S 0 es")), Words,
            u"the affix rules lack lines of the table SFX"_s);
        row("table ended by another", QByteArray(Rules).replace("SFX S 0 es s\n", ""), Words,
            u"the affix rules lack lines of the table SFX"_s);
        row("table without a count", QByteArray(Rules).replace("REP 1", "REP"), Words,
            u"the affix rules have a table REP without a count"_s);
        row("words cut between lines", Rules, "3\nhouse/S\nword/S\n",
            u"the words are 3 by their count and 2 by their lines"_s);
        row("count that asks for all memory", Rules, "2000000000\nhouse\n",
            u"the words are 2000000000 by their count and 1 by their lines"_s);
        row("count much too small", Rules, "1\na\nb\nc\nd\n",
            u"the words are 1 by their count and 4 by their lines"_s);
        row("no count", Rules, "house/S\nword\n", u"the words do not begin with their count"_s);
        row("count of nothing", Rules, "0\n", u"the words do not begin with their count"_s);
        row("not in the encoding that they state", Rules, "1\ncaf\xE9\n",
            u"the words are not in the encoding that they state"_s);
        row("encoding by default", QByteArray(Rules).replace("SET UTF-8\n", ""), "1\ncaf\xE9\n", {});
        row("other encoding", QByteArray(Rules).replace("UTF-8", "KOI8-R"), Words,
            u"the encoding KOI8-R is none of UTF-8 and ISO8859-1"_s);
    }
    void whatHunspellWouldTakeSilentlyIsRefused()
    {
        QFETCH(QByteArray, rules);
        QFETCH(QByteArray, words);
        QTEST(flawOf(rules, words), "flaw");
    }

    void theInstalledDictionaryIsFineButNotWhenCut()
    {
        const QByteArray rules = bytesOf(u"/usr/share/hunspell/en_US.aff"_s);
        const QByteArray words = bytesOf(u"/usr/share/hunspell/en_US.dic"_s);
        QCOMPARE(flawOf(rules, words), QString());
        for (qsizetype length = 0; length < words.size(); length += words.size() / 50) {
            const QString flaw = flawOf(rules, words.left(length));
            QVERIFY2(!flaw.isEmpty(), QByteArray::number(length).constData());
        }
    }

    void aFileOnTheDiskIsNamedInItsFailure()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"vssp_ae.dct"_s);
        QCOMPARE(failureOf([&] { readSpellingDictionary(path); }),
                 u"The file %1 could not be read: No such file or directory"_s.arg(path));
        putFile(path, "x");
        QCOMPARE(failureOf([&] { readSpellingDictionary(path); }),
                 u"The spelling dictionary %1 cannot be used: it is no spelling dictionary"_s.arg(path));
        SpellingDictionary useless = small();
        useless.WordList = "9\nword\n";
        putFile(path, packSpellingDictionary(useless));
        QCOMPARE(failureOf([&] { readSpellingDictionary(path); }),
                 u"The spelling dictionary %1 cannot be used: the words are 9 by their count and 1 by their "
                 "lines"_s.arg(path));
        putFile(path, packSpellingDictionary(small()));
        QCOMPARE(readSpellingDictionary(path).WordList, Words);
    }
};

TAVRIN_TEST_MAIN(tst_SpellingDictionary)
#include "tst_SpellingDictionary.moc"
