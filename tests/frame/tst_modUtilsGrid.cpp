#include "base/values/Variant.h"
#include "frame/modUtils.h"
#include "support/TestCase.h"
#include "testing/FakeGridCombo.h"
#include "testing/FakeHost.h"

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

constexpr TableNumber Agencies = Tables::Agency;

/// Appends a row for each of the values.
void append(FakeGridCombo& combo, const QVariantList& values)
{
    for (const QVariant& value : values)
        combo.Array().AppendRow({QVariant(), QVariant(), value, true});
}

} // namespace

/// The rows of drop-downs with columns: filled, selected, and removed when they are used.
class tst_modUtilsGrid : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void initGridComboGivesAnEmptyArrayRowOneAndNoText()
    {
        FakeGridCombo combo;
        combo.Array().AppendRow({u"a"_s, u"b"_s, 3, true});
        modUtils::InitGridCombo(combo);
        QCOMPARE(combo.log, QStringList({u"reset"_s, u"rebind 0"_s, u"bookmark 1"_s, u"text \"\""_s}));
        QCOMPARE(combo.Array().UpperBound(), 0);
    }

    void fillGridComboInitsThenLetsTheHostFill()
    {
        FakeHost host;
        host.setTable(Agencies, {{u"A"_s, u"Agency A"_s, 1}, {u"B"_s, u"Agency B"_s, 2}});
        host.state().inactive[Agencies] = {2};
        const HostInstallation installed(host);
        FakeGridCombo combo;
        modUtils::FillGridCombo(combo, Agencies, 2, false);
        QCOMPARE(host.state().log, QStringList({u"FillTableGrid 997 False 2 False"_s}));
        QCOMPARE(combo.values(), QVariantList({Null(), 1, 2}));
        QCOMPARE(combo.log.mid(0, 4),
                 QStringList({u"reset"_s, u"rebind 0"_s, u"bookmark 1"_s, u"text \"\""_s}));
        modUtils::FillGridCombo(combo, Agencies, Null(), true);
        QCOMPARE(host.state().log.last(), u"FillTableGrid 997 True  False"_s);
        QCOMPARE(combo.values(), QVariantList({Null(), 1, 2})); // filled anew, not twice
    }

    void selectGridComboValue_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<int>("row");
        QTest::addColumn<QVariant>("result");
        QTest::newRow("Null selects row 1") << Null() << 1 << Null();
        QTest::newRow("found") << QVariant(20) << 3 << QVariant(20);
        QTest::newRow("found as text") << QVariant(u"20"_s) << 3 << QVariant(20);
        QTest::newRow("found as double") << QVariant(20.0) << 3 << QVariant(20);
        QTest::newRow("first of two") << QVariant(30) << 4 << QVariant(30);
        QTest::newRow("not there selects row 1 and gives its value") << QVariant(99) << 1 << QVariant(7);
    }
    void selectGridComboValue()
    {
        QFETCH(QVariant, value);
        QFETCH(int, row);
        QFETCH(QVariant, result);
        FakeGridCombo combo;
        append(combo, {7, 10, 20, 30, 30});
        const QVariant selected = modUtils::SelectGridComboValue(combo, value);
        QCOMPARE(combo.Bookmark(), QVariant(row));
        QCOMPARE(selected, result);
        QCOMPARE(IsNull(selected), IsNull(result));
        QCOMPARE(combo.log.size(), 1);
    }

    void removeUsedGridValues_data()
    {
        QTest::addColumn<QVariantList>("used");
        QTest::addColumn<QVariant>("current");
        QTest::addColumn<QVariantList>("left");
        const QVariant null = Null();
        QTest::newRow("none") << QVariantList() << null << QVariantList({null, 10, 20, 20, 30});
        QTest::newRow("one") << QVariantList({10}) << null << QVariantList({null, 20, 20, 30});
        QTest::newRow("only the first row of a value")
            << QVariantList({20}) << null << QVariantList({null, 10, 20, 30});
        QTest::newRow("both rows of a value that is used twice")
            << QVariantList({20, 20}) << null << QVariantList({null, 10, 30});
        QTest::newRow("Null stays") << QVariantList({null}) << null << QVariantList({null, 10, 20, 20, 30});
        QTest::newRow("the current value stays")
            << QVariantList({10, 30}) << QVariant(30) << QVariantList({null, 20, 20, 30});
        QTest::newRow("the current value as another type stays")
            << QVariantList({30}) << QVariant(30.0) << QVariantList({null, 10, 20, 20, 30});
        QTest::newRow("the current value as a text stays")
            << QVariantList({10, 30}) << QVariant(u"30"_s) << QVariantList({null, 20, 20, 30});
        QTest::newRow("the current value stays though it is used as a text")
            << QVariantList({u"10"_s, u"30"_s}) << QVariant(30) << QVariantList({null, 20, 20, 30});
        QTest::newRow("a text that is not the current number goes")
            << QVariantList({u"3"_s, u"30"_s}) << QVariant(3) << QVariantList({null, 10, 20, 20});
        QTest::newRow("text") << QVariantList({u"30"_s}) << null << QVariantList({null, 10, 20, 20});
        QTest::newRow("not there") << QVariantList({99}) << null << QVariantList({null, 10, 20, 20, 30});
        QTest::newRow("all") << QVariantList({30, 20, 10, 20}) << null << QVariantList({null});
    }
    void removeUsedGridValues()
    {
        QFETCH(QVariantList, used);
        QFETCH(QVariant, current);
        QFETCH(QVariantList, left);
        FakeGridCombo combo;
        append(combo, {Null(), 10, 20, 20, 30});
        modUtils::RemoveUsedGridValues(combo, used, current);
        QCOMPARE(combo.values(), left);
        QCOMPARE(combo.log, QStringList({u"rebind %1"_s.arg(left.size())})); // once, at the end
    }

    void theFirstRowIsNeverRemovedWhateverItHolds()
    {
        FakeGridCombo combo;
        append(combo, {10, 20});
        modUtils::RemoveUsedGridValues(combo, {10}, Null());
        QCOMPARE(combo.values(), QVariantList({10, 20}));
    }
};

TAVRIN_TEST_MAIN(tst_modUtilsGrid)
#include "tst_modUtilsGrid.moc"
