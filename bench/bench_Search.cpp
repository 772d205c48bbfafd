// One keystroke in a list of employees: the expression built as the pickers build it, and the nodes in a
// collection.
// The rivals are a QCompleter in contains mode over the names alone, ignoring case, memmem over the bytes of
// the three columns in upper case, and the XPath engine's own evaluation.

#include "Costs.h"
#include "Employees.h"
#include "Ratios.h"
#include "Typing.h"
#include "base/xml/XmlDocument.h"
#include "lookup/EmployeeList.h"

#include <QApplication>
#include <QCompleter>
#include <QStringListModel>

#include <cstring>
#include <memory>
#include <string>

using namespace tavrin;
using namespace tavrin::bench;

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

/// `count` employees: 20 hold "needle" in their name and 2,000 "thread", evenly spread, and each holds
/// "person".
struct Employees
{
    explicit Employees(int count)
        : number(count)
    {
        const double before = residentMegabytes();
        const XmlNode root = newEmployeeList(document);
        for (int i = 0; i < count; ++i)
            appendEmployee(root, i + 1, at(i));
        treeMegabytes = residentMegabytes() - before;
    }

    Employee at(int i) const
    {
        const QString extra = i % (number / 20) == 0     ? QStringLiteral(" Needle")
                              : i % (number / 2000) == 1 ? QStringLiteral(" Thread")
                                                         : QString();
        return employeeAt(i, number, extra);
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
        names << employees.at(i).Name;
    QStringListModel model(names);
    QCompleter completer(&model);
    findAnywhere(completer);
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

Comparison comparison(const std::string& subject, const std::string& rival)
{
    return {"Ratio of " + subject + " to " + rival + " (below 1: faster)", subject, rival};
}

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
    const RatioReporter reporter({comparison("Search", "Completer"), comparison("Search", "Memmem"),
                                  comparison("Search", "Engine"), comparison("TypedOn", "Memmem"),
                                  comparison("FirstSearch", "Engine")},
                                 3);
    return run(argc, argv, reporter);
}
