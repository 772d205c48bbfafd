// One keystroke in a list of employees: the expression built as the pickers build it, and the nodes in a
// collection.
// The rivals are a QCompleter in contains mode over the names alone, ignoring case, memmem over the bytes of
// the three columns in upper case, and the XPath engine's own evaluation.

#include "base/xml/XmlDocument.h"
#include "lookup/EmployeeList.h"

#include <QApplication>
#include <QCompleter>
#include <QFile>
#include <QStringListModel>
#include <benchmark/benchmark.h>

#include <cstring>
#include <ctime>
#include <malloc.h>
#include <map>
#include <memory>
#include <unistd.h>

using namespace tavrin;

namespace {

enum Matching
{
    Nobody,
    Twenty,
    TwoThousand,
    Everybody,
};

/// What the person has typed.
QString queryOf(int64_t matching)
{
    return matching == Nobody        ? QStringLiteral("nerson") // of letters that the texts hold
           : matching == Twenty      ? QStringLiteral("needle")
           : matching == TwoThousand ? QStringLiteral("thread")
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

double residentMegabytes()
{
    malloc_trim(0);
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return file.readAll().split(' ').at(1).toDouble() * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1e6;
}

/// `count` employees: 20 hold "needle" in their name and 2,000 "thread", evenly spread, and each holds
/// "person".
struct Employees
{
    explicit Employees(int count)
        : number(count)
    {
        const double before = residentMegabytes();
        XmlNode list = document.appendChild(document.createElement(QStringLiteral("Employees")));
        for (int i = 0; i < count; ++i) {
            const QString name = nameOf(i);
            const QString officerId = QStringLiteral("A%1").arg(i, 6, 10, QLatin1Char('0'));
            const QString badgeNo = QString::number(count - i);
            XmlNode record = list.appendElement(QStringLiteral("Employee"));
            record.appendElement(QStringLiteral("OfficerNo"), QString::number(i + 1));
            record.appendElement(QStringLiteral("OfficerId"), officerId);
            record.appendElement(QStringLiteral("Name"), name);
            record.appendElement(QStringLiteral("BadgeNo"), badgeNo);
            record.appendElement(QStringLiteral("ActiveFlag"), QStringLiteral("True"));
            record.appendElement(QStringLiteral("IsK9Handler"));
        }
        treeMegabytes = residentMegabytes() - before;
    }

    QString nameOf(int i) const
    {
        const QString extra = i % (number / 20) == 0     ? QStringLiteral(" Needle")
                              : i % (number / 2000) == 1 ? QStringLiteral(" Thread")
                                                         : QString();
        return QStringLiteral("Person%1, Number%2").arg(i).arg(extra);
    }

    /// The search of the pickers.
    XmlNodes search(const QString& query) const
    {
        return list.terms(query, {}).select(document, QStringLiteral("Employee"));
    }
    /// The same by the engine: no plan knows parentheses around the whole.
    std::size_t searchByEngine(const QString& query) const
    {
        const QString expression = list.terms(query, {}).expression(QStringLiteral("Employee"));
        return document.documentElement()
            .selectNodes(QLatin1Char('(') + expression + QLatin1Char(')'))
            .size();
    }
    void change() { document.documentElement().childNodes().at(0).appendElement(QStringLiteral("Change")); }

    int number;
    XmlDocument document;
    EmployeeList list;
    double treeMegabytes = 0;
};

/// The list of the last size asked for: that of a million takes a gigabyte.
Employees& employeesOf(int64_t count)
{
    static std::unique_ptr<Employees> employees;
    if (!employees || employees->number != count) {
        employees.reset();
        employees = std::make_unique<Employees>(static_cast<int>(count));
    }
    return *employees;
}

/// With no result to go on from.
void Search(benchmark::State& state)
{
    Employees& employees = employeesOf(state.range(0));
    const QString query = queryOf(state.range(1));
    XmlNodes found = employees.search(query);
    for (auto _ : state) {
        employees.search(QStringLiteral("~"));
        state.SetIterationTime(seconds([&] { found = employees.search(query); }));
    }
    state.counters["matches"] = static_cast<double>(found.size());
    state.counters["tree_MB"] = employees.treeMegabytes;
    state.counters["columns_MB"] = static_cast<double>(employees.document.searchMemory()) / 1e6;
}

/// One key after another: the text without its last character was searched for just before.
void TypedOn(benchmark::State& state)
{
    Employees& employees = employeesOf(state.range(0));
    const QString query = queryOf(state.range(1));
    XmlNodes found = employees.search(query);
    for (auto _ : state) {
        employees.search(query.chopped(1));
        state.SetIterationTime(seconds([&] { found = employees.search(query); }));
    }
    state.counters["matches"] = static_cast<double>(found.size());
}

/// The first one after a change of the list.
void FirstSearch(benchmark::State& state)
{
    Employees& employees = employeesOf(state.range(0));
    const QString query = queryOf(state.range(1));
    for (auto _ : state) {
        employees.change();
        state.SetIterationTime(seconds([&] { benchmark::DoNotOptimize(employees.search(query).size()); }));
    }
}

void Engine(benchmark::State& state)
{
    Employees& employees = employeesOf(state.range(0));
    const QString query = queryOf(state.range(1));
    std::size_t matches = 0;
    for (auto _ : state)
        state.SetIterationTime(seconds([&] { matches = employees.searchByEngine(query); }));
    state.counters["matches"] = static_cast<double>(matches);
}

void Memmem(benchmark::State& state)
{
    QByteArray bytes;
    for (const XmlNode& employee : employeesOf(state.range(0)).document.documentElement().childNodes()) {
        for (const char* part : {"Name", "OfficerId", "BadgeNo"})
            bytes += employee.childElement(QLatin1String(part)).text().toUpper().toUtf8() + '\0';
    }
    const QByteArray word = queryOf(state.range(1)).toUpper().toUtf8();
    std::size_t matches = 0;
    for (auto _ : state) {
        matches = 0;
        state.SetIterationTime(seconds([&] {
            const char* place = bytes.constData();
            const char* const end = place + bytes.size();
            const auto length = static_cast<std::size_t>(word.size());
            const auto next = [&](const char* from) {
                return memmem(from, static_cast<std::size_t>(end - from), word.constData(), length);
            };
            for (const void* hit = next(place); hit != nullptr; hit = next(place)) {
                ++matches;
                place = static_cast<const char*>(hit) + length;
            }
        }));
    }
    state.counters["matches"] = static_cast<double>(matches);
    state.counters["bytes"] = static_cast<double>(bytes.size());
}

void Completer(benchmark::State& state)
{
    QStringList names;
    const Employees& employees = employeesOf(state.range(0));
    for (int i = 0; i < employees.number; ++i)
        names << employees.nameOf(i);
    QStringListModel model(names);
    QCompleter completer(&model);
    completer.setFilterMode(Qt::MatchContains);
    completer.setCaseSensitivity(Qt::CaseInsensitive);
    const QString query = queryOf(state.range(1));
    int matches = 0;
    for (auto _ : state) {
        // The completer keeps its results: this leaves it with those of another text only.
        completer.setCompletionPrefix(QStringLiteral("~"));
        model.setStringList(names);
        state.SetIterationTime(seconds([&] {
            completer.setCompletionPrefix(query);
            matches = completer.completionCount();
        }));
    }
    state.counters["matches"] = matches;
}

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
        for (const auto& [subject, rival] : {std::pair{"Search", "Completer"},
                                             {"Search", "Memmem"},
                                             {"Search", "Engine"},
                                             {"TypedOn", "Memmem"},
                                             {"FirstSearch", "Engine"}}) {
            std::printf("\nRatio of %s to %s (below 1: faster)\n", subject, rival);
            for (const auto& [name, time] : m_times) {
                const std::size_t slash = name.find('/');
                const auto found = m_times.find(rival + name.substr(slash));
                if (name.substr(0, slash) == subject && found != m_times.end())
                    std::printf("  %-56s %8.3f\n", name.c_str(), time / found->second);
            }
        }
    }

private:
    std::map<std::string, double> m_times;
};

void every(benchmark::internal::Benchmark* search)
{
    search->ArgNames({"employees", "matching"})->UseManualTime()->Unit(benchmark::kMillisecond);
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    for (const int64_t employees : {100000, 1000000}) {
        for (const int64_t matching : {Nobody, Twenty, TwoThousand, Everybody}) {
            for (const auto& [name, run] : {std::pair{"Search", &Search},
                                            {"TypedOn", &TypedOn},
                                            {"FirstSearch", &FirstSearch},
                                            {"Engine", &Engine},
                                            {"Memmem", &Memmem},
                                            {"Completer", &Completer}})
                benchmark::RegisterBenchmark(name, *run)->Args({employees, matching})->Apply(every);
        }
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    Reporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return 0;
}
