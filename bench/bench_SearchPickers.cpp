// Searching in EmployeePicker: from the key to the painted list.
// The rivals are a QCompleter in contains mode over the names alone, and a QSortFilterProxyModel over name,
// officer id and badge, shown in a QTableView; both ignore case.

#include "Ratios.h"
#include "base/xml/XmlDocument.h"
#include "lookup/EmployeePicker.h"
#include "support/FakeHost.h"
#include "widgets/search_box/AutoCompleteComboBox.h"
#include "widgets/search_box/SuggestionView.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCompleter>
#include <QFile>
#include <QHeaderView>
#include <QLineEdit>
#include <QSortFilterProxyModel>
#include <QStringListModel>
#include <QTableView>
#include <QTest>
#include <QVBoxLayout>

#include <ctime>
#include <malloc.h>
#include <unistd.h>

using namespace tavrin;

namespace {

struct Employee
{
    QString Name;
    QString OfficerId;
    QString BadgeNo;
};

/// `count` employees, of whom 20 hold "needle" in their name, evenly spread, and each holds "person".
QList<Employee> employeesOf(int count)
{
    QList<Employee> employees;
    employees.reserve(count);
    for (int i = 0; i < count; ++i) {
        const bool hit = i % (count / 20) == 0;
        employees.append(
            {QStringLiteral("Person%1, Number%2").arg(i).arg(hit ? QStringLiteral(" Needle") : QString()),
             QStringLiteral("A%1").arg(i, 6, 10, QLatin1Char('0')), QString::number(count - i)});
    }
    return employees;
}

XmlDocument listOf(const QList<Employee>& employees)
{
    XmlDocument document;
    const XmlNode list = document.appendChild(document.createElement(QStringLiteral("Employees")));
    int number = 0;
    for (const Employee& employee : employees) {
        const XmlNode record = list.appendElement(QStringLiteral("Employee"));
        record.appendElement(QStringLiteral("OfficerNo"), QString::number(++number));
        record.appendElement(QStringLiteral("OfficerId"), employee.OfficerId);
        record.appendElement(QStringLiteral("Name"), employee.Name);
        record.appendElement(QStringLiteral("BadgeNo"), employee.BadgeNo);
        record.appendElement(QStringLiteral("ActiveFlag"), QStringLiteral("True"));
        record.appendElement(QStringLiteral("IsK9Handler"));
    }
    return document;
}

enum Matching
{
    Nobody,
    Twenty,
    Everybody,
};

/// What the person types; the last key is the one that is measured.
QString queryOf(int64_t matching)
{
    return matching == Nobody   ? QStringLiteral("zzzz")
           : matching == Twenty ? QStringLiteral("needle")
                                : QStringLiteral("person");
}

/// Of the processor, all on this thread: what else the machine does counts for nothing.
double now()
{
    timespec time = {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

template <typename Work>
double seconds(Work&& work)
{
    const double start = now();
    work();
    return now() - start;
}

void activate(QWidget& window, QWidget& focus)
{
    window.show();
    window.activateWindow();
    focus.setFocus();
    const bool active = QTest::qWaitForWindowActive(&window);
    Q_UNUSED(active)
}

/// A window with pickers over one list.
struct Form
{
    explicit Form(int count, int pickers = 1)
        : installation(host)
    {
        host.state().employees = listOf(employeesOf(count));
        addPickers(pickers);
    }
    void addPickers(int pickers)
    {
        for (int i = 0; i < pickers; ++i) {
            picker = new EmployeePicker(&window);
            picker->setGeometry(10, 10 + 30 * i, 400, 24);
            picker->show();
        }
        box = picker->findChild<AutoCompleteComboBox*>();
        window.resize(500, 500);
        activate(window, *picker);
    }
    /// The last key of a query, until the list is painted.
    double search(const QString& query) const
    {
        box->CloseList();
        box->SetText(query.chopped(1));
        QApplication::processEvents();
        return seconds([&] {
            QTest::keyClicks(box, query.right(1));
            QApplication::processEvents();
        });
    }
    int matches() const { return window.findChild<SuggestionView*>()->rowCount(); }

    tavrin::test::FakeHost host;
    HostInstallation installation;
    QWidget window;
    EmployeePicker* picker = nullptr;
    AutoCompleteComboBox* box = nullptr;
};

void Search(benchmark::State& state)
{
    const Form form(static_cast<int>(state.range(0)));
    const QString query = queryOf(state.range(1));
    form.search(query); // which fetches the list
    for (auto _ : state)
        state.SetIterationTime(form.search(query));
    state.counters["matches"] = form.matches();
}

void Completer(benchmark::State& state)
{
    QStringList names;
    for (const Employee& employee : employeesOf(static_cast<int>(state.range(0))))
        names << employee.Name;
    QStringListModel model(names);
    QLineEdit edit;
    auto* completer = new QCompleter(&model, &edit);
    completer->setFilterMode(Qt::MatchContains);
    completer->setCaseSensitivity(Qt::CaseInsensitive);
    edit.setCompleter(completer);
    edit.resize(400, 30);
    activate(edit, edit);
    const QString query = queryOf(state.range(1));
    for (auto _ : state) {
        completer->popup()->hide();
        edit.setText(query.chopped(1));
        // The completer keeps its results: this leaves it with those of another text only.
        completer->setCompletionPrefix(QStringLiteral("~"));
        model.setStringList(names);
        QApplication::processEvents();
        state.SetIterationTime(seconds([&] {
            QTest::keyClicks(&edit, query.right(1));
            QApplication::processEvents();
        }));
    }
    state.counters["matches"] = completer->completionCount();
}

/// Takes a row when any of its columns holds the text.
class EmployeeFilter final : public QSortFilterProxyModel
{
public:
    void setText(const QString& text)
    {
        m_text = text;
        invalidateFilter();
    }

protected:
    bool filterAcceptsRow(int row, const QModelIndex& parent) const override
    {
        for (int column = 0; column < sourceModel()->columnCount(parent); ++column) {
            const QString text = sourceModel()->index(row, column, parent).data().toString();
            if (text.contains(m_text, Qt::CaseInsensitive))
                return true;
        }
        return false;
    }

private:
    QString m_text;
};

/// A table in memory without further ado, so that the rival's model costs as little as one can.
class EmployeeTable final : public QAbstractTableModel
{
public:
    explicit EmployeeTable(int count)
        : m_employees(employeesOf(count))
    {
    }
    int rowCount(const QModelIndex& parent = {}) const override
    {
        return parent.isValid() ? 0 : static_cast<int>(m_employees.size());
    }
    int columnCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : 3; }
    QVariant data(const QModelIndex& index, int role) const override
    {
        if (role != Qt::DisplayRole)
            return {};
        const Employee& employee = m_employees.at(index.row());
        return index.column() == 0   ? employee.Name
               : index.column() == 1 ? employee.OfficerId
                                     : employee.BadgeNo;
    }

private:
    QList<Employee> m_employees;
};

void Proxy(benchmark::State& state)
{
    EmployeeTable table(static_cast<int>(state.range(0)));
    EmployeeFilter filter;
    filter.setSourceModel(&table);
    QWidget window;
    auto* layout = new QVBoxLayout(&window);
    auto* edit = new QLineEdit(&window);
    auto* view = new QTableView(&window);
    layout->addWidget(edit);
    layout->addWidget(view);
    view->setModel(&filter);
    view->verticalHeader()->hide();
    QObject::connect(edit, &QLineEdit::textEdited, &filter,
                     [&](const QString& text) { filter.setText(text); });
    window.resize(500, 300);
    activate(window, *edit);
    const QString query = queryOf(state.range(1));
    for (auto _ : state) {
        edit->setText(query.chopped(1));
        filter.setText(QStringLiteral("~")); // an empty table, as the picker's list is closed
        QApplication::processEvents();
        state.SetIterationTime(seconds([&] {
            QTest::keyClicks(edit, query.right(1));
            QApplication::processEvents();
        }));
    }
    state.counters["matches"] = filter.rowCount();
}

/// A search with a follower of `Filter` that does nothing; its rival has no follower.
void Filter(benchmark::State& state)
{
    const Form form(static_cast<int>(state.range(0)));
    QObject::connect(form.picker, &EmployeePicker::Filter, &form.window,
                     [](qint32, bool& exclude) { benchmark::DoNotOptimize(exclude); });
    form.search(queryOf(Everybody));
    for (auto _ : state)
        state.SetIterationTime(form.search(queryOf(Everybody)));
}

void Filter_None(benchmark::State& state)
{
    const Form form(static_cast<int>(state.range(0)));
    form.search(queryOf(Everybody));
    for (auto _ : state)
        state.SetIterationTime(form.search(queryOf(Everybody)));
}

double residentMegabytes()
{
    malloc_trim(0);
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return file.readAll().split(' ').at(1).toDouble() * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1e6;
}

/// What the pickers of one form take beyond the host's list, each after a search with every row matching and
/// its list open or closed; the time is the one to make them and search once in each.
void Memory(benchmark::State& state)
{
    const auto pickers = static_cast<int>(state.range(1));
    for (auto _ : state) {
        const double before = residentMegabytes();
        Form form(static_cast<int>(state.range(0)));
        const double withList = residentMegabytes();
        state.SetIterationTime(seconds([&] {
            form.search(queryOf(Everybody));
            for (int i = 1; i < pickers; ++i) {
                form.addPickers(1);
                form.search(queryOf(Everybody));
            }
        }));
        state.counters["list_MB"] = withList - before;
        state.counters["open_MB"] = residentMegabytes() - withList;
        form.box->CloseList();
        state.counters["closed_MB"] = residentMegabytes() - withList;
    }
}

const std::vector<std::vector<int64_t>> Cases{{1000, 10000, 100000}, {Nobody, Twenty, Everybody}};

/// Prints ratios between benchmarks of different names.
class Reporter final : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(const std::vector<Run>& runs) override
    {
        for (const Run& run : runs) {
            if (!run.error_occurred)
                m_times[run.benchmark_name()] = run.GetAdjustedRealTime();
        }
        ConsoleReporter::ReportRuns(runs);
    }

    void Finalize() override
    {
        for (const char* rival : {"Completer", "Proxy"}) {
            std::printf("\nTime from the key to the painted list, as a ratio to %s (below 1: faster)\n",
                        rival);
            for (const auto& [name, time] : m_times) {
                if (name.rfind("Search/", 0) == 0)
                    printRatio(name, rival + name.substr(6));
            }
        }
        std::printf("\nTime with a follower of Filter that does nothing, as a ratio to none\n");
        for (const auto& [name, time] : m_times) {
            if (name.rfind("Filter/", 0) == 0)
                printRatio(name, "Filter_None" + name.substr(6));
        }
    }

private:
    void printRatio(const std::string& name, const std::string& rival) const
    {
        if (const auto found = m_times.find(rival); found != m_times.end())
            std::printf("  %-56s %8.2f\n", name.c_str(), m_times.at(name) / found->second);
    }

    std::map<std::string, double> m_times;
};

void timeSearches(benchmark::internal::Benchmark* search)
{
    search->ArgsProduct(Cases)->ArgNames({"employees", "matching"})->Unit(benchmark::kMillisecond);
}

} // namespace

// The memory first, while the heap is still small.
BENCHMARK(Memory)
    ->Args({100000, 1})
    ->Args({100000, 12})
    ->ArgNames({"employees", "pickers"})
    ->UseManualTime()
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(Search)->Apply(timeSearches)->UseManualTime();
BENCHMARK(Completer)->Apply(timeSearches)->UseManualTime();
BENCHMARK(Proxy)->Apply(timeSearches)->UseManualTime();
BENCHMARK(Filter)->Arg(100000)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(Filter_None)->Arg(100000)->UseManualTime()->Unit(benchmark::kMillisecond);

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    Reporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return 0;
}
