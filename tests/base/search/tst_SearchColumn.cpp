#include "base/search/SearchColumn.h"
#include "base/search/SearchPlan.h"
#include "support/TestCase.h"

#include <QRandomGenerator>

#include <random>

using namespace Qt::StringLiterals;
using namespace tavrin;

namespace {

using Texts = std::vector<std::string>;
using Rows = QList<int>;

SearchColumn columnOf(const Texts& texts, const TextFold& fold = {})
{
    SearchColumn column;
    for (const std::string& text : texts) {
        column.append(text, fold);
        column.endRow(true);
    }
    column.finish();
    return column;
}

/// A row without text, one with two further ones, one with an empty text.
SearchColumn columnOfOddRows()
{
    SearchColumn column;
    column.endRow(false);
    column.append("1", {});
    column.addFurther("x");
    column.addFurther(" 2 ");
    column.endRow(true);
    column.endRow(true);
    column.finish();
    return column;
}

Rows listed(const RowSet& rows)
{
    Rows list;
    rows.forEach([&](std::size_t row) { list << static_cast<int>(row); });
    return list;
}

RowSet setOf(std::size_t size, const Rows& rows)
{
    RowSet set(size);
    for (const int row : rows)
        set.add(static_cast<std::size_t>(row));
    return set;
}

RowSet all(const SearchColumn& column)
{
    return RowSet(column.rows(), true);
}

} // namespace

class tst_SearchColumn : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // Sets of rows

    void aSetOfAllRowsHoldsNoneBehindTheEnd_data()
    {
        QTest::addColumn<int>("rows");
        for (const int rows : {0, 1, 63, 64, 65, 128, 130})
            QTest::newRow(qPrintable(QString::number(rows))) << rows;
    }
    void aSetOfAllRowsHoldsNoneBehindTheEnd()
    {
        QFETCH(int, rows);
        const RowSet set(static_cast<std::size_t>(rows), true);
        QCOMPARE(set.count(), static_cast<std::size_t>(rows));
        QCOMPARE(listed(set).size(), rows);
        RowSet none = set;
        none -= set;
        QVERIFY(none == RowSet(static_cast<std::size_t>(rows)));
    }

    void setsAreJoinedMetAndSubtracted()
    {
        const RowSet one = setOf(100, {1, 5, 64, 99});
        const RowSet other = setOf(100, {5, 63, 99});
        RowSet rows = one;
        QCOMPARE(listed(rows |= other), Rows({1, 5, 63, 64, 99}));
        rows = one;
        QCOMPARE(listed(rows &= other), Rows({5, 99}));
        rows = one;
        QCOMPARE(listed(rows -= other), Rows({1, 64}));
        QVERIFY(one.has(64) && !one.has(63));
    }

    // Folds

    void aFoldReplacesAndDropsBytesAsTranslateDoes_data()
    {
        QTest::addColumn<QString>("from");
        QTest::addColumn<QString>("to");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("folded");
        QTest::newRow("replaces") << u"ab"_s << u"AB"_s << u"abc"_s << u"ABc"_s;
        QTest::newRow("drops") << u"abc"_s << u"A"_s << u"abcd"_s << u"Ad"_s;
        QTest::newRow("the first place counts") << u"aa"_s << u"12"_s << u"a"_s << u"1"_s;
        QTest::newRow("a dropped twin") << u"aba"_s << u"12"_s << u"ab"_s << u"12"_s;
        QTest::newRow("the rest of `to` is idle") << u"a"_s << u"123"_s << u"abc"_s << u"1bc"_s;
        QTest::newRow("nothing") << u""_s << u"123"_s << u"abc"_s << u"abc"_s;
        QTest::newRow("drops all") << u"abc"_s << u""_s << u"abc"_s << u""_s;
        QTest::newRow("other letters stay") << u"e"_s << u"E"_s << u"e\u00e9\u65e5"_s << u"E\u00e9\u65e5"_s;
    }
    void aFoldReplacesAndDropsBytesAsTranslateDoes()
    {
        QFETCH(QString, from);
        QFETCH(QString, to);
        QFETCH(QString, text);
        const auto fold = TextFold::translating(from.toStdString(), to.toStdString());
        QVERIFY(fold);
        QTEST(QString::fromStdString(fold->of(text.toStdString())), "folded");
    }

    void alphabetsThatAreNotAsciiMakeNoFold()
    {
        QVERIFY(!TextFold::translating("\xC3\xA9", "e"));
        QVERIFY(!TextFold::translating("e", "\xC3\xA9"));
        QVERIFY(TextFold::translating("e", "E"));
    }

    void foldsFollowEachOther()
    {
        const auto upper = *TextFold::translating("ab", "AB");
        const auto drop = *TextFold::translating("Ax", "");
        QCOMPARE(upper.then(drop).of("abx"), std::string("B"));
        QCOMPARE(drop.then(upper).of("aAbx"), std::string("AB"));
        QVERIFY(TextFold().then(TextFold()).leavesAll());
    }

    // Searching

    void aWordIsFoundInItsRowOnly_data()
    {
        QTest::addColumn<QString>("word");
        QTest::addColumn<Rows>("holding");
        QTest::addColumn<Rows>("beginning");
        QTest::newRow("one letter") << u"a"_s << Rows{0, 1, 3, 5} << Rows{0, 3};
        QTest::newRow("two") << u"ab"_s << Rows{0, 1} << Rows{0};
        QTest::newRow("across rows") << u"cb"_s << Rows{} << Rows{};
        QTest::newRow("a whole row") << u"abc"_s << Rows{0} << Rows{0};
        QTest::newRow("longer than any row")
            << u"abcdefghijklmnopqrstuvwxyzabcdefghijklmnopqrstuvwxyz"_s << Rows{} << Rows{};
        QTest::newRow("twice in a row") << u"xa"_s << Rows{5} << Rows{5};
        QTest::newRow("a letter that is nowhere") << u"q"_s << Rows{} << Rows{};
        QTest::newRow("other letters") << u"\u00e9"_s << Rows{4} << Rows{4};
        QTest::newRow("nothing is everywhere") << u""_s << Rows{0, 1, 2, 3, 4, 5} << Rows{0, 1, 2, 3, 4, 5};
    }
    void aWordIsFoundInItsRowOnly()
    {
        QFETCH(QString, word);
        QFETCH(Rows, holding);
        QFETCH(Rows, beginning);
        const SearchColumn column = columnOf({"abc", "bab", "", "a", "\xC3\xA9", "xaxaxa"});
        const std::string bytes = word.toStdString();
        QCOMPARE(listed(column.containing(bytes, all(column))), holding);
        QCOMPARE(listed(column.beginningWith(bytes, all(column))), beginning);
    }

    void anEmptyColumnHoldsNothing()
    {
        const SearchColumn column = columnOf({});
        for (const char* word : {"", "a"}) {
            QCOMPARE(listed(column.containing(word, all(column))), Rows());
            QCOMPARE(listed(column.beginningWith(word, all(column))), Rows());
            QCOMPARE(listed(column.anyEqual(word, true, all(column))), Rows());
        }
    }

    void onlyTheRowsAskedForAreFound()
    {
        Texts texts;
        for (int i = 0; i < 100; ++i)
            texts.push_back("text " + std::to_string(i));
        const SearchColumn column = columnOf(texts);
        for (const Rows& among :
             {Rows{}, Rows{7}, Rows{7, 99},
              Rows{0, 17, 27, 37, 47, 57, 67, 71, 72, 73, 74, 75, 76, 77, 78, 79, 80, 81, 82, 83, 84, 85}}) {
            Rows expected;
            for (const int row : among) {
                if (QString::number(row).contains(u'7'))
                    expected << row;
            }
            const RowSet rows = setOf(100, among);
            QCOMPARE(listed(column.containing("7", rows)), expected);
            QCOMPARE(listed(column.beginningWith("text", rows)), among);
            QCOMPARE(listed(column.equal("text 7", true, rows)), among.contains(7) ? Rows{7} : Rows{});
        }
    }

    // Against the plain way, with texts and words of few letters so that there are many near misses.
    void everyWordIsFoundAsByLookingRowByRow()
    {
        const quint32 seed = QRandomGenerator::global()->generate();
        std::mt19937 random(seed);
        const auto wordOf = [&](std::size_t most) {
            std::string word(random() % (most + 1), ' ');
            for (char& letter : word)
                letter = "abc\xC3"[random() % 4];
            return word;
        };
        for (int round = 0; round < 300; ++round) {
            Texts texts(random() % 200);
            for (std::string& text : texts)
                text = wordOf(random() % 30 == 0 ? 300 : 12);
            const SearchColumn column = columnOf(texts);
            RowSet among(texts.size());
            for (std::size_t row = 0; row < texts.size(); ++row) {
                if (random() % 4 != 0)
                    among.add(row);
            }
            const std::string word = wordOf(random() % 10 == 0 ? 40 : 5);
            RowSet holding(texts.size());
            RowSet beginning(texts.size());
            among.forEach([&](std::size_t row) {
                if (texts[row].find(word) != std::string::npos)
                    holding.add(row);
                if (texts[row].compare(0, word.size(), word) == 0)
                    beginning.add(row);
            });
            const QByteArray what =
                "seed " + QByteArray::number(seed) + ", word " + QByteArray::fromStdString(word);
            QVERIFY2(column.containing(word, among) == holding, what.constData());
            QVERIFY2(column.beginningWith(word, among) == beginning, what.constData());
        }
    }

    // Comparing

    void aRowWithoutTextReadsAsAnEmptyOneAndIsNoneOfItsTexts()
    {
        const SearchColumn column = columnOfOddRows();
        const RowSet rows = all(column);
        QCOMPARE(listed(column.having(rows)), Rows({1, 2}));
        QCOMPARE(listed(column.equal("", true, rows)), Rows({0, 2}));
        QCOMPARE(listed(column.equal("", false, rows)), Rows({1}));
        QCOMPARE(listed(column.anyEqual("", true, rows)), Rows({2}));
        QCOMPARE(listed(column.anyEqual("", false, rows)), Rows({1}));
        QCOMPARE(listed(column.anyEqual("y", false, rows)), Rows({1, 2}));
    }

    void furtherTextsCountOneByOneAndAreNotSearched()
    {
        const SearchColumn column = columnOfOddRows();
        const RowSet rows = all(column);
        QCOMPARE(listed(column.anyEqual("x", true, rows)), Rows{1});
        QCOMPARE(listed(column.anyEqual("1", false, rows)), Rows({1, 2}));
        QCOMPARE(listed(column.anyEqual("x", true, setOf(3, {0, 2}))), Rows());
        QCOMPARE(listed(column.containing("x", rows)), Rows());
        QCOMPARE(
            listed(column.anyEqual(2, true, rows, [](const std::string& text) { return xpathNumber(text); })),
            Rows{1});
    }

    void numbersAreComparedAsNumbersAndWhatIsNoneDiffers()
    {
        const SearchColumn column = columnOf({"1", " 1 ", "1.0", "", "x", "2"});
        const RowSet rows = all(column);
        QCOMPARE(listed(column.equal(1, true, rows, xpathNumberOf)), Rows({0, 1, 2}));
        QCOMPARE(listed(column.equal(1, false, rows, xpathNumberOf)), Rows({3, 4, 5}));
        QCOMPARE(listed(column.anyEqual(1, false, setOf(6, {0, 3}), xpathNumberOf)), Rows{3});
    }

    void fewAndManyDifferentTextsAreComparedAlike_data()
    {
        QTest::addColumn<int>("different");
        for (const int different : {1, 2, 255, 256, 257, 2000})
            QTest::newRow(qPrintable(QString::number(different))) << different;
    }
    void fewAndManyDifferentTextsAreComparedAlike()
    {
        QFETCH(int, different);
        Texts texts;
        for (int i = 0; i < 2000; ++i)
            texts.push_back(i % different == 0 ? std::string() : std::to_string(i % different));
        const SearchColumn column = columnOf(texts);
        RowSet odd(texts.size());
        for (std::size_t row = 1; row < texts.size(); row += 2)
            odd.add(row);
        for (const std::string& text : {std::string(), std::string("1"), std::string("255"),
                                        std::string("1999"), std::string("a text longer than a word")}) {
            for (const bool wanted : {true, false}) {
                RowSet same(texts.size());
                RowSet sameNumber(texts.size());
                odd.forEach([&](std::size_t row) {
                    if ((texts[row] == text) == wanted)
                        same.add(row);
                    if ((xpathNumber(texts[row]) == xpathNumber(text)) == wanted)
                        sameNumber.add(row);
                });
                QVERIFY(column.equal(text, wanted, odd) == same);
                QVERIFY(column.equal(xpathNumber(text), wanted, odd, xpathNumberOf) == sameNumber);
            }
        }
    }

    void memoryIsLittleMoreThanTheTexts()
    {
        const SearchColumn column = columnOf(Texts(10000, std::string(100, 'a')));
        QVERIFY(column.memory() >= 1000000);
        QVERIFY(column.memory() <= 1150000);
    }

private:
    static double xpathNumberOf(const std::string& text) { return xpathNumber(text); }
};

TAVRIN_TEST_MAIN(tst_SearchColumn)
#include "tst_SearchColumn.moc"
