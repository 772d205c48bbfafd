#include "spell/WordFinder.h"
#include "support/TestCase.h"

#include <QElapsedTimer>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

QStringList wordsOf(const QString& text, qsizetype from = 0)
{
    QStringList words;
    WordFinder finder(text, from);
    while (const auto word = finder.next())
        words.append(text.mid(word->Offset, word->Length));
    return words;
}

qsizetype countOf(const QString& text)
{
    WordFinder finder(text);
    qsizetype count = 0;
    while (finder.next())
        ++count;
    return count;
}

} // namespace

class tst_WordFinder : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void theWordsOfATextAreFound_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("words");
        const auto row = [](const char* name, const QString& text, const QStringList& words) {
            QTest::newRow(name) << text << words;
        };
        row("nothing", {}, {});
        row("blanks", u" \t\n\u00A0 "_s, {});
        row("sentence", u"He ran, then hid."_s, {u"He"_s, u"ran"_s, u"then"_s, u"hid"_s});
        row("one letter", u"a"_s, {u"a"_s});
        row("lines", u"one\ntwo\r\nthree\u2029four\u2028five"_s,
            {u"one"_s, u"two"_s, u"three"_s, u"four"_s, u"five"_s});
        row("full stop without a blank", u"gone.Then"_s, {u"gone"_s, u"Then"_s});
        row("slash and underscore", u"and/or suspect_vehicle"_s,
            {u"and"_s, u"or"_s, u"suspect"_s, u"vehicle"_s});

        row("apostrophe", u"don't O'Brien's"_s, {u"don't"_s, u"O'Brien's"_s});
        row("curly apostrophe", u"don\u2019t"_s, {u"don\u2019t"_s});
        row("quotes", u"'word' \u2018word\u2019 \"word\""_s, {u"word"_s, u"word"_s, u"word"_s});
        row("plural genitive", u"the dogs' tails"_s, {u"the"_s, u"dogs"_s, u"tails"_s});
        row("two apostrophes", u"rock''n''roll"_s, {u"rock"_s, u"n"_s, u"roll"_s});

        row("hyphen", u"well-known"_s, {u"well-known"_s});
        row("Unicode hyphens", u"well\u2010known un\u2011done"_s, {u"well\u2010known"_s, u"un\u2011done"_s});
        row("dashes", u"here--there \u2013 every\u2014where -so-"_s,
            {u"here"_s, u"there"_s, u"every"_s, u"where"_s, u"so"_s});
        row("hyphen at the end of a line", u"robbe-\nry"_s, {u"robbe"_s, u"ry"_s});

        row("accents", u"Café naïve Zoë"_s, {u"Café"_s, u"naïve"_s, u"Zoë"_s});
        row("combining marks", u"Cafe\u0301 e\u0323\u0302t"_s, {u"Cafe\u0301"_s, u"e\u0323\u0302t"_s});
        row("mark without a letter", u" \u0301x"_s, {u"x"_s});
        row("soft hyphen", u"robb\u00ADery"_s, {u"robb\u00ADery"_s});
        row("blank without width", u"one\u200Btwo"_s, {u"one"_s, u"two"_s});
        row("surrogate pairs", u"\U0001D400\U0001D401 \U0001F600word\U0001F600"_s,
            {u"\U0001D400\U0001D401"_s, u"word"_s});
        row("half a surrogate pair", u"on"_s + QChar(0xD835) + u"e"_s, {u"on"_s, u"e"_s});
        row("other scripts", u"привет κόσμε"_s, {u"привет"_s, u"κόσμε"_s});
        row("script without blanks", u"漢字"_s, {u"漢"_s, u"字"_s});

        row("numbers", u"3 3.14 1,000 12:30 6'2 50% 1990's"_s, {});
        row("numbers with an ending", u"1990s the 80s' 1970s's 10K 12b"_s, {u"the"_s});
        row("numbers with a unit", u"9mm 10pm 50lbs 3.5mm 35mph 4x4 2X4 12yo .22cal 4wd"_s, {});
        row("Roman ordinals", u"XVIIth IInd Vth"_s, {});
        row("numbers with other letters", u"22th 9mmx 50lsb th IIIx 1a1a"_s,
            {u"22th"_s, u"9mmx"_s, u"50lsb"_s, u"th"_s, u"IIIx"_s, u"1a1a"_s});
        row("ordinals", u"1st 22nd"_s, {u"1st"_s, u"22nd"_s});
        row("capitals with digits", u"ABC123 9MM F-150 26-004711 K9 K9's"_s, {u"F"_s});
        row("capitals without digits", u"ROBERY DUI"_s, {u"ROBERY"_s, u"DUI"_s});
        row("small letters with digits", u"abc123"_s, {u"abc123"_s});
        row("hyphen to capitals with digits", u"K9-unit 12-year-old pre-A1-post"_s,
            {u"unit"_s, u"year-old"_s, u"pre"_s, u"post"_s});

        row("web address", u"see http://exampel.com/pagge?x=y, then"_s, {u"see"_s, u"then"_s});
        row("other scheme", u"(ftp://servr/fiel)"_s, {});
        row("web address behind a word", u"Site:https://exampel.com"_s, {u"Site"_s});
        row("www", u"www.exampel.com/pagge WWW.X.COM"_s, {});
        row("domain", u"Marlowe.gov/recrods and shreiff.marlow.gov, or Ask.command"_s,
            {u"and"_s, u"or"_s, u"Ask"_s, u"command"_s});
        row("mail address", u"Mail:jon.o_x+y@exampel.co.uk, please"_s, {u"Mail"_s, u"please"_s});
        row("two mail addresses", u"a@bb.cc,dd@ee.ff"_s, {});
        row("mail address with accents", u"to josé.ñu@exampel.com."_s, {u"to"_s});
        row("mail address with an apostrophe", u"o'brien@exampel.com O\u2019Brien@exampel.com"_s, {});
        row("mail address in quotes", u"'jonn@exampel.com' sayd"_s, {u"sayd"_s});
        row("mail address that owns", u"Jonn@marlow.gov's exampel.com\u2019s"_s, {});
        row("scheme of mail", u"see mailto:jonn@exampel.com"_s, {u"see"_s});
        row("domain of a mail address", u"jonn.smiht.com@exampel.com"_s, {});
        row("domains of countries", u"exampel.co.uk marlow.us www2.ci.marlow.ca.us"_s, {});
        row("domain with a path", u"sherif.info/recrods shreiff.it/pagge"_s, {});
        row("domain with a port, a question, a place",
            u"exampel.com:8080/pagge exampel.com?qx=zz exampel.com#toop"_s, {});
        row("domain at the end of a sentence", u"at exampel.com. Then; (exampel.org)"_s,
            {u"at"_s, u"Then"_s});
        row("domain before a word", u"exampel.com:sayd exampel.com?sayd"_s, {u"sayd"_s, u"sayd"_s});
        row("full stops that are none of a domain",
            u"fledd.it Fledd.No ran.He tolld.So St.Louis e.g. U.S.A."_s,
            {u"fledd"_s, u"it"_s, u"Fledd"_s, u"No"_s, u"ran"_s, u"He"_s, u"tolld"_s, u"So"_s, u"St"_s,
             u"Louis"_s, u"e"_s, u"g"_s, u"U"_s, u"S"_s, u"A"_s});
        row("sign alone", u"@ hom @home me@ x@@y"_s, {u"hom"_s, u"home"_s, u"me"_s, u"x"_s, u"y"_s});
    }
    void theWordsOfATextAreFound()
    {
        QFETCH(QString, text);
        QTEST(wordsOf(text), "words");
    }

    void offsetsAndLengthsAreUtf16CodeUnits()
    {
        WordFinder finder(u"\U0001F600 e\u0301t\U0001D400 x");
        QCOMPARE(finder.next(), std::optional(FoundWord{3, 5}));
        QCOMPARE(finder.next(), std::optional(FoundWord{9, 1}));
        QVERIFY(!finder.next());
        QVERIFY(!finder.next());
    }

    void aWalkCanBeginInTheMiddle_data()
    {
        QTest::addColumn<qsizetype>("from");
        QTest::addColumn<QStringList>("words");
        const QStringList all = {u"one"_s, u"two"_s, u"three-four"_s};
        QTest::newRow("before the text") << qsizetype(-1) << all;
        QTest::newRow("beginning") << qsizetype(0) << all;
        QTest::newRow("in a word, which is left out") << qsizetype(1) << all.mid(1);
        QTest::newRow("at a word") << qsizetype(4) << all.mid(1);
        QTest::newRow("in a mail address, whose end is no word") << qsizetype(11) << all.mid(2);
        QTest::newRow("behind a hyphen") << qsizetype(29) << QStringList();
        QTest::newRow("end") << qsizetype(35) << QStringList();
        QTest::newRow("behind the text") << qsizetype(1000) << QStringList();
    }
    void aWalkCanBeginInTheMiddle()
    {
        QFETCH(qsizetype, from);
        QTEST(wordsOf(u"one two someone@home.org three-four"_s, from), "words");
    }

    /// What grows with the square of the length takes hours here; the bound only tells it from a busy
    /// machine.
    void tenMillionCharactersTakeNoLongerThanTheirNumber_data()
    {
        QTest::addColumn<QString>("piece");
        QTest::addColumn<qsizetype>("words");
        constexpr qsizetype total = 10'000'000;
        QTest::newRow("sentences") << u"The suspect left. "_s << total / 18 * 3;
        QTest::newRow("one word") << u"x"_s << qsizetype(1);
        QTest::newRow("hyphens") << u"a-"_s << qsizetype(1);
        QTest::newRow("hyphens and plates") << u"a-A1-"_s << total / 5;
        QTest::newRow("apostrophes") << u"a'"_s << qsizetype(1);
        QTest::newRow("dots") << u"a."_s << total / 2;
        QTest::newRow("signs") << u"a@.@"_s << total / 4;
        QTest::newRow("domains") << u".com"_s << qsizetype(-1);
        QTest::newRow("parts of a name") << u"ab.us."_s << qsizetype(-1);
        QTest::newRow("names that end") << u"a.com,"_s << qsizetype(0);
        QTest::newRow("colons") << u"a:/"_s << total / 3;
        QTest::newRow("marks") << u"\u0301"_s << qsizetype(0);
        QTest::newRow("soft hyphens") << u"\u00AD"_s << qsizetype(0);
        QTest::newRow("script without blanks") << u"漢"_s << total;
        QTest::newRow("blanks") << u" "_s << qsizetype(0);
    }
    void tenMillionCharactersTakeNoLongerThanTheirNumber()
    {
        QFETCH(QString, piece);
        QFETCH(qsizetype, words);
        const QString text = piece.repeated(10'000'000 / piece.size());
        QElapsedTimer timer;
        timer.start();
        const qsizetype found = countOf(text);
        QVERIFY2(timer.elapsed() < 60'000, QByteArray::number(timer.elapsed()).constData());
        if (words >= 0)
            QCOMPARE(found, words);
    }

    void aWordOfTenThousandLettersIsOneWord()
    {
        const QString text = u"a "_s + QString(10'000, u'x') + u" b"_s;
        WordFinder finder(text);
        QCOMPARE(finder.next(), std::optional(FoundWord{0, 1}));
        QCOMPARE(finder.next(), std::optional(FoundWord{2, 10'000}));
        QCOMPARE(finder.next(), std::optional(FoundWord{10'003, 1}));
    }
};

TAVRIN_TEST_MAIN(tst_WordFinder)
#include "tst_WordFinder.moc"
