// Opening an incident: loading it from SQLite and showing its window with all pages and code fields.
// The rival is a plain Qt form of as many line edits and combo boxes, filled by the same queries' results.

#include "Ratios.h"
#include "workbench/application/Theme.h"
#include "workbench/application/Workspace.h"
#include "workbench/windows/RecordWindow.h"

#include <QApplication>
#include <QComboBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeWidget>

using namespace tavrin;
using namespace tavrin::workbench;

namespace {

Workspace& workspace()
{
    static QTemporaryDir folder;
    static Workspace space([] {
        Options options;
        options.database = folder.filePath(QStringLiteral("bench.sqlite"));
        return options;
    }());
    return space;
}

void show(QWidget& window)
{
    window.show();
    while (!QTest::qWaitForWindowExposed(&window)) {
    }
    QApplication::processEvents();
}

void Open(benchmark::State& state)
{
    const qint64 incidentNo = workspace().store().list().constFirst().IncidentNo;
    for (auto _ : state) {
        RecordWindow window(workspace(), workspace().store().load(incidentNo));
        window.setAttribute(Qt::WA_DeleteOnClose, false);
        show(window);
    }
}

void Open_Rival(benchmark::State& state)
{
    const qint64 incidentNo = workspace().store().list().constFirst().IncidentNo;
    for (auto _ : state) {
        const RecordPtr record = workspace().store().load(incidentNo);
        QWidget window;
        auto* form = new QFormLayout(&window);
        tvTableRow& row = *record->mainRow();
        for (int i = 1; i <= row.FieldCount(); ++i)
            form->addRow(row.Item(i)->Name(), new QLineEdit(row.Item(i)->Value().toString()));
        for (const TableNumber table : {301, 302, 303}) {
            auto* combo = new QComboBox;
            for (const TableValue& value :
                 workspace().host().hostServices().GetTableValues(table, false).Items)
                combo->addItem(value.ID + QStringLiteral(" - ") + value.DisplayText, value.Value);
            form->addRow(QString::number(table), combo);
        }
        form->addRow(new QPlainTextEdit);
        form->addRow(new QTreeWidget);
        window.resize(960, 640);
        show(window);
    }
}

} // namespace

BENCHMARK(Open)->Unit(benchmark::kMillisecond);
BENCHMARK(Open_Rival)->Unit(benchmark::kMillisecond);

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    applyTheme(false);
    return tavrin::bench::run(argc, argv);
}
