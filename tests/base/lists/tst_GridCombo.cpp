#include "base/failure/Error.h"
#include "base/lists/GridCombo.h"
#include "base/values/Variant.h"
#include "support/TestCase.h"

using namespace Qt::StringLiterals;
using tavrin::Error;
using tavrin::GridArray;

namespace {

GridArray::Row row(const QVariant& value)
{
    return {u"s"_s, u"l"_s, value, true};
}

GridArray arrayOf(const QVariantList& values)
{
    GridArray array;
    for (const QVariant& value : values)
        array.AppendRow(row(value));
    return array;
}

} // namespace

class tst_GridCombo : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void anArrayThatIsMovedFromIsEmptyAndInUse()
    {
        GridArray from = arrayOf({1, 2});
        GridArray to = std::move(from);
        QCOMPARE(to.UpperBound(), 2);
        QCOMPARE(from.UpperBound(), 0); // NOLINT: a use behind the move is what is tested
        from.AppendRow({3});
        QCOMPARE(from.Value(1, 0), QVariant(3));
        to = std::move(from);
        QCOMPARE(to.UpperBound(), 1);
        QCOMPARE(from.UpperBound(), 0); // NOLINT
    }

    void aCopyStandsAlone()
    {
        GridArray array = arrayOf({1, 2});
        GridArray copy = array;
        copy.DeleteRow(1);
        QCOMPARE(array.UpperBound(), 2);
        array = copy;
        copy.AppendRow({5});
        QCOMPARE(array.UpperBound(), 1);
    }

    void rowsCountFromOneAndColumnsFromZero()
    {
        GridArray array;
        QCOMPARE(array.UpperBound(), 0);
        array.AppendRow({u"a"_s, u"b"_s, 3, false});
        array.AppendRow({u"c"_s, u"d"_s, 6, true});
        QCOMPARE(array.UpperBound(), 2);
        QCOMPARE(array.Value(1, 0), QVariant(u"a"_s));
        QCOMPARE(array.Value(2, 3), QVariant(true));
    }

    void outsideTheArrayItRaises_data()
    {
        QTest::addColumn<int>("row");
        QTest::addColumn<int>("column");
        QTest::newRow("row 0") << 0 << 2;
        QTest::newRow("row behind the last") << 3 << 2;
        QTest::newRow("negative row") << -1 << 2;
        QTest::newRow("negative column") << 1 << -1;
        QTest::newRow("column behind the last") << 1 << 4;
    }
    void outsideTheArrayItRaises()
    {
        QFETCH(int, row);
        QFETCH(int, column);
        GridArray array = arrayOf({1, 2});
        QVERIFY_EXCEPTION_THROWN(array.Value(row, column), Error);
        if (row < 1 || row > 2) {
            QVERIFY_EXCEPTION_THROWN(array.DeleteRow(row), Error);
        }
        QCOMPARE(array.UpperBound(), 2);
    }

    void deletingARowMovesThoseBehindItUp()
    {
        GridArray array = arrayOf({1, 2, 3});
        array.DeleteRow(2);
        QCOMPARE(array.UpperBound(), 2);
        QCOMPARE(array.Value(1, 2), QVariant(1));
        QCOMPARE(array.Value(2, 2), QVariant(3));
        array.DeleteRow(2);
        array.DeleteRow(1);
        QCOMPARE(array.UpperBound(), 0);
    }

    void findGivesTheFirstRowFromTheOneGivenOn_data()
    {
        QTest::addColumn<int>("from");
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<int>("row");
        QTest::newRow("first of two") << 1 << QVariant(7) << 2;
        QTest::newRow("from the row itself") << 2 << QVariant(7) << 2;
        QTest::newRow("second of two") << 3 << QVariant(7) << 5;
        QTest::newRow("behind the last") << 7 << QVariant(7) << 0;
        QTest::newRow("from before the first") << -4 << QVariant(7) << 2;
        QTest::newRow("not there") << 1 << QVariant(8) << 0;
        QTest::newRow("double for an integer") << 1 << QVariant(7.0) << 2;
        QTest::newRow("text for an integer") << 1 << QVariant(u"7"_s) << 2;
        QTest::newRow("integer for a text") << 1 << QVariant(12) << 3;
        QTest::newRow("text") << 1 << QVariant(u"x"_s) << 4;
        QTest::newRow("text of another case") << 1 << QVariant(u"X"_s) << 0;
        QTest::newRow("Null finds Null") << 1 << tavrin::Null() << 1;
        QTest::newRow("Null does not find an empty text") << 2 << tavrin::Null() << 0;
        QTest::newRow("empty text does not find Null") << 1 << QVariant(u""_s) << 6;
    }
    void findGivesTheFirstRowFromTheOneGivenOn()
    {
        QFETCH(int, from);
        QFETCH(QVariant, value);
        const GridArray array = arrayOf({tavrin::Null(), 7, u"12"_s, u"x"_s, 7, u""_s});
        QTEST(array.Find(from, 2, value), "row");
    }

    void deletingTheFirstOfEachDoesWhatFindAndDeleteDoOneByOne_data()
    {
        QTest::addColumn<QVariantList>("cells");
        QTest::addColumn<QVariantList>("values");
        const QVariantList cells{tavrin::Null(), 7,       u"12"_s, u"x"_s, 7, u""_s, 12, 7.0,
                                 u"07"_s,        u"-0"_s, 0,       -3};
        const auto add = [&](const char* name, const QVariantList& values) {
            QTest::newRow(name) << cells << values;
        };
        add("nothing", {});
        add("one of three", {7});
        add("two of three", {7, 7});
        add("more than there are", {7, 7.0, u"7"_s, 7});
        add("text and number are one key", {12, u"12"_s, 12});
        add("texts that only look like the number", {u"07"_s, u"+7"_s, u"-0"_s, 0, 0});
        add("empty text", {u""_s, u""_s});
        add("another case", {u"X"_s, u"x"_s});
        add("zero", {0, 0, 0});
        add("not there", {99, u"y"_s});
        // What has no plain key is looked for one by one.
        add("Null", {tavrin::Null(), 7});
        add("Empty", {QVariant(), 7});
        add("boolean", {true, 7});
        add("fraction", {7.5, 7});
        add("negative zero", {-0.0, 7});
        QTest::newRow("plain cells") << QVariantList({tavrin::Null(), u"x"_s, u"12"_s, 12, u""_s, 0, 12.0,
                                                      u"0"_s, -3, u"-3"_s})
                                     << QVariantList({12, 0, 0, 0, u"-3"_s, u"x"_s, 12.0, -3, u""_s, 99});
        QTest::newRow("huge numbers")
            << QVariantList({1e15, qint64(1000000000000000), 5}) << QVariantList({1e15, 5});
        QTest::newRow("a fraction in a cell") << QVariantList({1, 7.5, 7}) << QVariantList({u"7.5"_s, 7});
        QTest::newRow("Empty in a cell") << QVariantList({1, QVariant(), 0}) << QVariantList({0, u""_s});
        QTest::newRow("a null of a database in a cell")
            << QVariantList({1, QVariant(QMetaType::fromType<int>()), 0, 0}) << QVariantList({0});
    }
    void deletingTheFirstOfEachDoesWhatFindAndDeleteDoOneByOne()
    {
        QFETCH(QVariantList, cells);
        QFETCH(QVariantList, values);
        for (int from = -1; from <= cells.size() + 1; ++from) {
            GridArray expected = arrayOf(cells);
            for (const QVariant& value : values) {
                if (const int found = expected.Find(from, 2, value); found != 0)
                    expected.DeleteRow(found);
            }
            GridArray array = arrayOf(cells);
            array.DeleteFirstOfEach(from, 2, values);
            QCOMPARE(array.UpperBound(), expected.UpperBound());
            for (int i = 1; i <= array.UpperBound(); ++i) {
                QCOMPARE(array.Value(i, 2), expected.Value(i, 2));
                QCOMPARE(array.Value(i, 2).typeId(), expected.Value(i, 2).typeId());
            }
        }
    }

    void deletingInAColumnThatIsNotThereRaises()
    {
        GridArray array = arrayOf({1, 2});
        QVERIFY_EXCEPTION_THROWN(array.DeleteFirstOfEach(1, 4, {1}), Error);
        QCOMPARE(array.UpperBound(), 2);
    }
};

TAVRIN_TEST_MAIN(tst_GridCombo)
#include "tst_GridCombo.moc"
