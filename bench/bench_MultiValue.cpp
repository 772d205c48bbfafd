// Filling MultiValue from child rows, and saving it into as many. The rows are the reference host's.
// The rival is a plain loop over the same rows: to fill, it reads the field of each, asks for the description
// and adds that to a QListWidget; to save, it writes the field of each.

#include "Ratios.h"
#include "host/records/RecordCollection.h"
#include "sections/MultiValue.h"
#include "support/Fakes.h"
#include "testing/FakeHost.h"

#include <QApplication>
#include <QListWidget>

using namespace tavrin;

namespace {

constexpr TableNumber Table = 302;
const BoundBinding Binding{QStringLiteral("WeaponNo"), Table};

tvTableCollectionPtr rowsOf(int count)
{
    CollectionSchema schema;
    schema.Name = QStringLiteral("Weapons");
    schema.Table.RowClass = QStringLiteral("Weapon");
    schema.Table.Columns = {{QStringLiteral("SeqNo"), ColumnType::Integer, 0, true},
                            {QStringLiteral("WeaponNo"), ColumnType::Integer},
                            {QStringLiteral("Remark")},
                            {QStringLiteral("LastUpdated"), ColumnType::DateTime}};
    auto rows = std::make_shared<RecordCollection>(schema, nullptr, nullptr);
    for (int i = 0; i < count; ++i) {
        const RecordRowPtr row = rows->appendLoadedRow();
        row->cell(QStringLiteral("SeqNo")).load(i + 1);
        row->cell(Binding.FieldName).load(11 + i % 20);
    }
    rows->finishLoading();
    return rows;
}

struct Form
{
    explicit Form(const benchmark::State& state)
        : installation(host)
        , rows(rowsOf(static_cast<int>(state.range(0))))
    {
        QList<TableValue> values;
        for (int i = 0; i < 20; ++i)
            values.append({QString::number(i), QStringLiteral("Weapon number %1").arg(i), 11 + i});
        host.setTable(Table, values);
        window.resize(300, 200);
    }
    void show()
    {
        window.show();
        QApplication::processEvents();
    }
    /// The fake host notes its calls; the notes are no part of what is measured.
    void forgetCalls(benchmark::State& state)
    {
        state.PauseTiming();
        host.state().log.clear();
        state.ResumeTiming();
    }

    test::FakeHost host;
    HostInstallation installation;
    QWidget window;
    tvTableCollectionPtr rows;
};

void Fill(benchmark::State& state)
{
    Form form(state);
    MultiValue control(&form.window);
    form.show();
    BoundControl& contract = control;
    for (auto _ : state) {
        contract.FillControl(&Binding, {}, form.rows);
        QApplication::processEvents(); // the list is painted
        form.forgetCalls(state);
    }
}

void Fill_Rival(benchmark::State& state)
{
    Form form(state);
    QListWidget list(&form.window);
    list.setUniformItemSizes(true);
    form.show();
    for (auto _ : state) {
        list.clear();
        const auto descriptions = currentHost().newTableCodeCache();
        for (const tvTableRowPtr& row : *form.rows) {
            const QVariant value = fieldOf(*row, Binding.FieldName)->Value();
            list.addItem(descriptions->GetDescription(Table, value));
        }
        QApplication::processEvents();
        form.forgetCalls(state);
    }
}

void Save(benchmark::State& state)
{
    Form form(state);
    MultiValue control(&form.window);
    BoundControl& contract = control;
    contract.FillControl(&Binding, {}, form.rows);
    for (auto _ : state)
        contract.SetValue(&Binding, {}, form.rows);
}

void Save_Rival(benchmark::State& state)
{
    Form form(state);
    for (auto _ : state) {
        int i = 0;
        for (const tvTableRowPtr& row : *form.rows)
            fieldOf(*row, Binding.FieldName)->SetValue(11 + i++ % 20);
    }
}

/// Saving no values: every row goes, from the last to the first.
void SaveNone(benchmark::State& state)
{
    Form form(state);
    MultiValue control(&form.window);
    BoundControl& contract = control;
    for (auto _ : state) {
        state.PauseTiming();
        form.rows = rowsOf(static_cast<int>(state.range(0)));
        state.ResumeTiming();
        contract.SetValue(&Binding, {}, form.rows);
    }
}

void SaveNone_Rival(benchmark::State& state)
{
    Form form(state);
    for (auto _ : state) {
        state.PauseTiming();
        form.rows = rowsOf(static_cast<int>(state.range(0)));
        state.ResumeTiming();
        while (form.rows->Count() > 0) {
            form.rows->SetPosition(static_cast<qint16>(form.rows->Count()));
            form.rows->RemoveCurrent(false);
        }
    }
}

} // namespace

BENCHMARK(Fill)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(Fill_Rival)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(Save)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(Save_Rival)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(SaveNone)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(SaveNone_Rival)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    return tavrin::bench::run(argc, argv);
}
