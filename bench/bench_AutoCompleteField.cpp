// Loading a table into AutoCompleteField, and one search: from the key to the list on the screen.
// The rival is a QCompleter in contains mode, ignoring case, over the same texts in a QStringListModel.

#include "Ratios.h"
#include "Typing.h"
#include "base/values/Variant.h"
#include "lookup/AutoCompleteField.h"
#include "support/Fakes.h"
#include "testing/FakeHost.h"
#include "widgets/boxes/TextBox.h"
#include "widgets/lists/DropDownList.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCompleter>
#include <QStringListModel>
#include <QTest>

#include <chrono>

using namespace tavrin;

namespace {

constexpr TableNumber Table = 1;
constexpr double SearchDelay = 0.020; // seconds that the field waits for the next key, by design

/// `count` values, of which 20 hold "needle", evenly spread, and each holds "value".
QList<TableValue> tableOf(int count)
{
    QList<TableValue> values;
    values.reserve(count);
    for (int i = 0; i < count; ++i) {
        const bool hit = i % (count / 20) == 0;
        values.append({QStringLiteral("C%1").arg(i, 6, 10, QLatin1Char('0')),
                       QStringLiteral("Code table value number %1%2")
                           .arg(i)
                           .arg(hit ? QStringLiteral(" needle") : QString()),
                       i});
    }
    return values;
}

QStringList textsOf(const QList<TableValue>& values)
{
    QStringList texts;
    for (const TableValue& value : values)
        texts << value.ID + QStringLiteral(" - ") + value.DisplayText;
    return texts;
}

/// What the person types; the last key is the one that is measured.
QString queryOf(const benchmark::State& state)
{
    return state.range(1) == 0   ? QStringLiteral("zzzz")
           : state.range(1) == 1 ? QStringLiteral("needle")
                                 : QStringLiteral("value");
}

template <typename Work>
double seconds(Work&& work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

struct Field
{
    explicit Field(int count)
        : installation(host)
    {
        host.setTable(Table, tableOf(count));
        field.resize(400, 30);
        field.SetTableNo(Table);
        bench::activate(field, field);
        QObject::connect(&field, &UserControl::PropertyChanged, &field, [this](const QString& key) {
            searched = searched || key == QLatin1String("Value");
        });
    }
    tavrin::test::FakeHost host;
    HostInstallation installation;
    AutoCompleteField field;
    TextBox* box = field.findChild<TextBox*>();
    DropDownList* list = field.findChild<DropDownList*>();
    bool searched = false;
};

void Search(benchmark::State& state)
{
    Field form(static_cast<int>(state.range(0)));
    const QString query = queryOf(state);
    for (auto _ : state) {
        form.list->Close();
        form.field.SetText(query.chopped(1));
        form.searched = false;
        const double time = seconds([&] {
            QTest::keyClicks(form.box, query.right(1));
            while (!form.searched)
                QApplication::processEvents(QEventLoop::WaitForMoreEvents);
            QApplication::processEvents(); // the list is painted
        });
        state.SetIterationTime(std::max(time - SearchDelay, 0.0));
    }
    state.counters["matches"] = form.list->ListCount();
}

void Search_Rival(benchmark::State& state)
{
    const QStringList texts = textsOf(tableOf(static_cast<int>(state.range(0))));
    QStringListModel model(texts);
    bench::CompletedEdit rival(model);
    const QString query = queryOf(state);
    for (auto _ : state) {
        rival.completer->popup()->hide();
        rival.edit.setText(query.chopped(1));
        model.setStringList(texts); // the completer keeps results; this makes it search again
        QApplication::processEvents();
        state.SetIterationTime(seconds([&] { rival.typeLast(query); }));
    }
    state.counters["matches"] = rival.completer->completionCount();
}

void Load(benchmark::State& state)
{
    Field form(static_cast<int>(state.range(0)));
    for (auto _ : state)
        form.field.ReloadList();
}

void Load_Rival(benchmark::State& state)
{
    const QList<TableValue> values = tableOf(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        QStringListModel model(textsOf(values));
        QCompleter completer(&model);
        bench::findAnywhere(completer);
        benchmark::DoNotOptimize(completer.completionCount());
    }
}

const std::vector<std::vector<int64_t>> Cases{{1000, 10000, 100000}, {0, 1, 2}};

} // namespace

BENCHMARK(Search)
    ->ArgsProduct(Cases)
    ->ArgNames({"values", "matching"})
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(Search_Rival)
    ->ArgsProduct(Cases)
    ->ArgNames({"values", "matching"})
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(Load)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(Load_Rival)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    return tavrin::bench::run(argc, argv);
}
