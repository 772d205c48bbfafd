#include "frame/words/CustomWords.h"
#include "support/TestCase.h"
#include "support/TestFiles.h"

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

const QString LongWord = QString(10'000, u'x');

} // namespace

class tst_CustomWords : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void oneWordHasOneForm_data()
    {
        QTest::addColumn<QString>("written");
        QTest::addColumn<QString>("normal");
        QTest::newRow("plain") << u"Tavrin"_s << u"Tavrin"_s;
        QTest::newRow("curly apostrophe") << u"O\u2019Brien"_s << u"O'Brien"_s;
        QTest::newRow("combining accent") << u"Cafe\u0301"_s << u"Caf\u00E9"_s;
        QTest::newRow("Unicode hyphens") << u"a\u2010b\u2011c"_s << u"a-b-c"_s;
        QTest::newRow("soft hyphen") << u"Hand\u00ADbuch"_s << u"Handbuch"_s;
        QTest::newRow("blanks at the ends") << u" word\t\r"_s << u"word"_s;
        QTest::newRow("surrogate pairs") << u"\U0001D400x"_s << u"\U0001D400x"_s;
    }
    void oneWordHasOneForm()
    {
        QFETCH(QString, written);
        QTEST(CustomWords::normalForm(written), "normal");
    }

    void wordsThatCannotBeAddedAreRefusedWithTheReason_data()
    {
        QTest::addColumn<QString>("word");
        QTest::addColumn<QString>("shown");
        QTest::addColumn<QString>("reason");
        const auto row = [](const char* name, const QString& word, const QString& reason) {
            QTest::newRow(name) << word << word << reason;
        };
        row("empty", {}, u"it is empty"_s);
        row("blank inside", u"two words"_s, u"it holds a blank"_s);
        row("blank without break", u"two\u00A0words"_s, u"it holds a blank"_s);
        row("affix slash", u"walk/GDS"_s, u"it holds a slash"_s);
        row("control character", u"a\u0007b"_s, u"it holds a character that no word has"_s);
        row("line end", u"a\nb"_s, u"it holds a character that no word has"_s);
        row("writing direction", u"a\u202Eb"_s, u"it holds a character that no word has"_s);
        row("number", u"1984"_s, u"it holds no letter"_s);
        row("101 letters", QString(101, u'y'), {});
        QTest::newRow("10,000 letters")
            << LongWord << QString(40, u'x') + QChar(0x2026) << u"it has more than 100 characters"_s;
        QTest::newRow("half a surrogate pair")
            << u"a"_s + QChar(0xD800) << u"a"_s + QChar(0xD800) << u"it holds a character that no word has"_s;
    }
    void wordsThatCannotBeAddedAreRefusedWithTheReason()
    {
        QFETCH(QString, word);
        QFETCH(QString, shown);
        QFETCH(QString, reason);
        if (reason.isEmpty()) {
            shown = word.left(40) + QChar(0x2026);
            reason = u"it has more than 100 characters"_s;
        }
        QCOMPARE(failureOf([&] { CustomWords::requireWord(word); }),
                 u"The word \"%1\" cannot be added to the custom dictionary: %2."_s.arg(shown, reason));
    }

    void wordsThatCanBeAddedComeBackInNormalForm()
    {
        QCOMPARE(CustomWords::requireWord(u" O\u2019Brien "_s), u"O'Brien"_s);
        QCOMPARE(CustomWords::requireWord(QString(100, u'x')), QString(100, u'x'));
        QCOMPARE(CustomWords::requireWord(u"K9"_s), u"K9"_s);
        QCOMPARE(CustomWords::requireWord(u"می\u200Cخواهم"_s), u"می\u200Cخواهم"_s);
    }

    void badLinesOfAFileArePassedOverAndTheOthersCount_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QStringList>("words");
        const QStringList both = {u"one"_s, u"two"_s};
        QTest::newRow("plain") << QByteArray("one\ntwo\n") << both;
        QTest::newRow("no end of line at the end") << QByteArray("one\ntwo") << both;
        QTest::newRow("CR LF") << QByteArray("one\r\ntwo\r\n") << both;
        QTest::newRow("byte order mark") << QByteArray("\xEF\xBB\xBFone\ntwo\n") << both;
        QTest::newRow("empty lines") << QByteArray("\n\none\n\n  \ntwo\n\n") << both;
        QTest::newRow("duplicates") << QByteArray("one\ntwo\none\n two \n") << both;
        QTest::newRow("affix slash") << QByteArray("one\nwalk/GDS\ntwo\n") << both;
        QTest::newRow("blank") << QByteArray("one\nthree four\ntwo\n") << both;
        QTest::newRow("control character") << QByteArray("one\nfi\x07ve\ntwo\n") << both;
        QTest::newRow("NUL") << QByteArray("one\n\0six\ntwo\n", 13) << both;
        QTest::newRow("10,000 letters") << "one\n" + LongWord.toUtf8() + "\ntwo\n" << both;
        QTest::newRow("no UTF-8") << QByteArray("one\ncaf\xE9\ntwo\n") << both;
        QTest::newRow("empty") << QByteArray() << QStringList();
        QTest::newRow("binary") << QByteArray("\x7F\x45\x4C\x46\x02\x01\0\0\xFF\xFE", 10) << QStringList();
        QTest::newRow("accents") << QByteArray("caf\xC3\xA9\ncafe\xCC\x81\n") << QStringList(u"café"_s);
        QTest::newRow("case tells words apart")
            << QByteArray("Smith\nsmith\n") << QStringList({u"Smith"_s, u"smith"_s});
    }
    void badLinesOfAFileArePassedOverAndTheOthersCount()
    {
        QFETCH(QByteArray, content);
        QTEST(CustomWords::parse(content), "words");
    }

    void whatIsWrittenIsReadAgain()
    {
        const QStringList words = {u"O'Brien"_s, u"café"_s, u"K9"_s};
        QCOMPARE(CustomWords::format(words), QByteArray("O'Brien\ncaf\xC3\xA9\nK9\n"));
        QCOMPARE(CustomWords::parse(CustomWords::format(words)), words);
    }
};

TAVRIN_TEST_MAIN(tst_CustomWords)
#include "tst_CustomWords.moc"
