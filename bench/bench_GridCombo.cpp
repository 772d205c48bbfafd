// Filling and opening a grid combo, and taking used values out of its rows.
// The rival of the first is a QComboBox with a QTableView on the same rows in a QStandardItemModel; the rival
// of the second asks the array for each value and deletes row by row.

#include "Ratios.h"
#include "base/values/Variant.h"
#include "frame/modUtils.h"
#include "support/Fakes.h"
#include "testing/FakeGridCombo.h"
#include "widgets/grid_combo/GridComboBox.h"

#include <QApplication>
#include <QComboBox>
#include <QHeaderView>
#include <QStandardItemModel>
#include <QTableView>

using namespace tavrin;

namespace {

QString shortText(int i)
{
    return QStringLiteral("C%1").arg(i, 6, 10, QLatin1Char('0'));
}

QString longText(int i)
{
    return QStringLiteral("Code table value number %1").arg(i);
}

void fill(GridArray& array, int count)
{
    array.AppendRow({QString(), QString(), Null(), Null()});
    for (int i = 1; i < count; ++i)
        array.AppendRow({shortText(i), longText(i), i, QStringLiteral("1")});
}

/// Every tenth value or so, the last ones first.
QVariantList usedValues(int rows, int count)
{
    QVariantList used;
    for (int i = 0; i < count; ++i)
        used << rows - 1 - i * (rows / count);
    return used;
}

void FillAndOpen(benchmark::State& state)
{
    QWidget window;
    GridComboBox combo(&window);
    combo.Columns(2).SetVisible(false);
    combo.Columns(3).SetVisible(false);
    window.resize(400, 100);
    window.show();
    QApplication::processEvents();
    const int rows = static_cast<int>(state.range(0));
    for (auto _ : state) {
        combo.ResetArray();
        fill(combo.Array(), rows);
        combo.Rebind();
        combo.SetBookmark(rows / 2);
        combo.OpenList();
        QApplication::processEvents(); // the list is painted
        combo.CloseList();
    }
}

void FillAndOpen_Rival(benchmark::State& state)
{
    QWidget window;
    QComboBox combo(&window);
    auto* view = new QTableView;
    combo.setView(view);
    view->verticalHeader()->hide();
    window.resize(400, 100);
    window.show();
    QApplication::processEvents();
    const int rows = static_cast<int>(state.range(0));
    for (auto _ : state) {
        auto* model = new QStandardItemModel(&combo);
        for (int i = 0; i < rows; ++i)
            model->appendRow({new QStandardItem(shortText(i)), new QStandardItem(longText(i)),
                              new QStandardItem(QString::number(i)), new QStandardItem(QStringLiteral("1"))});
        combo.setModel(model); // deletes the one before
        view->setColumnHidden(2, true);
        view->setColumnHidden(3, true);
        combo.setCurrentIndex(rows / 2);
        combo.showPopup();
        QApplication::processEvents();
        combo.hidePopup();
    }
}

template <typename Remove>
void removeUsed(benchmark::State& state, Remove remove)
{
    const int rows = static_cast<int>(state.range(0));
    const QVariantList used = usedValues(rows, static_cast<int>(state.range(1)));
    tavrin::test::FakeGridCombo whole;
    fill(whole.Array(), rows);
    int left = 0;
    for (auto _ : state) {
        state.PauseTiming();
        tavrin::test::FakeGridCombo combo;
        combo.Array() = whole.Array();
        state.ResumeTiming();
        remove(combo, used);
        state.PauseTiming();
        left = combo.Array().UpperBound();
        combo.ResetArray();
        state.ResumeTiming();
    }
    state.counters["left"] = left;
}

void RemoveUsed(benchmark::State& state)
{
    removeUsed(state, [](GridCombo& combo, const QVariantList& used) {
        modUtils::RemoveUsedGridValues(combo, used, Null());
    });
}

void RemoveUsed_Rival(benchmark::State& state)
{
    removeUsed(state, [](GridCombo& combo, const QVariantList& used) {
        for (const QVariant& value : used) {
            if (const int row = combo.Array().Find(2, 2, value); row != 0)
                combo.Array().DeleteRow(row);
        }
        combo.Rebind();
    });
}

} // namespace

BENCHMARK(FillAndOpen)->Arg(100)->Arg(10000)->ArgName("rows")->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(FillAndOpen_Rival)
    ->Arg(100)
    ->Arg(10000)
    ->ArgName("rows")
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK(RemoveUsed)
    ->ArgsProduct({{10000}, {100, 1000}})
    ->ArgNames({"rows", "used"})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(RemoveUsed_Rival)
    ->ArgsProduct({{10000}, {100, 1000}})
    ->ArgNames({"rows", "used"})
    ->Unit(benchmark::kMillisecond);

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    return tavrin::bench::run(argc, argv);
}
