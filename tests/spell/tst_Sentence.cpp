#include "spell/Sentence.h"
#include "support/TestCase.h"

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

class tst_Sentence : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void theSentenceAroundAWord_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("word");
        QTest::addColumn<QString>("sentence");
        const QString filler = QString(u"word "_s).repeated(40);
        const QString smile = QString::fromUcs4(U"\U0001F600");
        QTest::newRow("alone") << u"teh"_s << u"teh"_s << u"teh"_s;
        QTest::newRow("of three") << u"One. Two teh two! Three."_s << u"teh"_s << u"Two teh two!"_s;
        QTest::newRow("of a paragraph") << u"First\u2029teh line\u2029last"_s << u"teh"_s << u"teh line"_s;
        QTest::newRow("of a line") << u"First\nsecond teh\nlast"_s << u"teh"_s << u"second teh"_s;
        QTest::newRow("long in front") << filler + u"teh end"_s << u"teh"_s
                                       << u"\u2026"_s + QString(u"word "_s).repeated(24) + u"teh end"_s;
        QTest::newRow("long behind") << u"A teh "_s + filler << u"teh"_s
                                     << u"A teh"_s + QString(u" word"_s).repeated(24) + u"\u2026"_s;
        QTest::newRow("without a blank") << QString(u'(').repeated(200) + u"teh"_s << u"teh"_s
                                         << u"\u2026"_s + QString(120, u'(') + u"teh"_s;
        QTest::newRow("a word as long as is shown")
            << u"A "_s + QString(200, u'q') + u" end"_s << QString(200, u'q')
            << u"A "_s + QString(200, u'q') + u" end"_s;
        QTest::newRow("no half character")
            << smile.repeated(100) + u" teh"_s << u"teh"_s << u"\u2026"_s + smile.repeated(59) + u" teh"_s;
    }
    void theSentenceAroundAWord()
    {
        QFETCH(QString, text);
        QFETCH(QString, word);
        QFETCH(QString, sentence);
        const Sentence shown = sentenceAround(text, {text.indexOf(word), word.size()});
        QCOMPARE(shown.Text, sentence);
        QCOMPARE(shown.Text.mid(shown.Word.Offset, shown.Word.Length), word);
    }

    void aWordThatIsTooLongShowsItsBeginningAndItsEnd_data()
    {
        QTest::addColumn<qsizetype>("length");
        for (const qsizetype length : {qsizetype(201), qsizetype(10'000), qsizetype(3'000'000)})
            QTest::addRow("%lld", static_cast<long long>(length)) << length;
    }
    void aWordThatIsTooLongShowsItsBeginningAndItsEnd()
    {
        QFETCH(qsizetype, length);
        const QString word = u"b"_s + QString(length - 2, u'q') + u"e"_s;
        const Sentence shown = sentenceAround(u"One. A "_s + word + u" end. Two."_s, {7, length});
        const QString cut = u"b"_s + QString(99, u'q') + QChar(0x2026) + QString(29, u'q') + u"e"_s;
        QCOMPARE(shown.Text, u"A "_s + cut + u" end."_s);
        QCOMPARE(shown.Text.mid(shown.Word.Offset, shown.Word.Length), cut);
        QCOMPARE(shownWord(word), cut);
    }

    void aLongWordIsNotCutWithinACharacter()
    {
        const QString letters = QString::fromUcs4(U"\U0001D400").repeated(150);
        const QString odd = shownWord(u"a"_s + letters + u"z"_s);
        QCOMPARE(odd, u"a"_s + letters.first(98) + QChar(0x2026) + letters.last(28) + u"z"_s);
    }
};

TAVRIN_TEST_MAIN(tst_Sentence)
#include "tst_Sentence.moc"
