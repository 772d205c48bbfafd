// Searching in EmployeePicker: from the key to the painted list.
// The rivals are a QCompleter in contains mode over the names alone, and a QSortFilterProxyModel over name,
// officer id and badge, shown in a QTableView; both ignore case.

#include "Costs.h"
#include "Employees.h"
#include "Ratios.h"
#include "Typing.h"
#include "base/xml/XmlDocument.h"
#include "lookup/EmployeePicker.h"
#include "support/Fakes.h"
#include "testing/FakeHost.h"
#include "widgets/search_box/AutoCompleteComboBox.h"
#include "widgets/search_box/SuggestionView.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCompleter>
#include <QHeaderView>
#include <QLineEdit>
#include <QSortFilterProxyModel>
#include <QStringListModel>
#include <QTableView>
#include <QTest>
#include <QVBoxLayout>

#include <string>

using namespace tavrin;
using namespace tavrin::bench;

namespace {

/// `count` employees, of whom 20 hold "needle" in their name, evenly spread, and each holds "person".
QList<Employee> employeesOf(int count)
{
    QList<Employee> employees;
    employees.reserve(count);
    for (int i = 0; i < count; ++i) {
        const bool hit = i % (count / 20) == 0;
        employees.append(employeeAt(i, count, hit ? QStringLiteral(" Needle") : QString()));
    }
    return employees;
}

XmlDocument listOf(const QList<Employee>& employees)
{
    XmlDocument document;
    const XmlNode list = newEmployeeList(document);
    int number = 0;
    for (const Employee& employee : employees)
        appendEmployee(list, ++number, employee);
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
    CompletedEdit rival(model);
    const QString query = queryOf(state.range(1));
    for (auto _ : state) {
        rival.completer->popup()->hide();
        rival.edit.setText(query.chopped(1));
        // The completer keeps its results: this leaves it with those of another text only.
        rival.completer->setCompletionPrefix(QStringLiteral("~"));
        model.setStringList(names);
        QApplication::processEvents();
        state.SetIterationTime(seconds([&] { rival.typeLast(query); }));
    }
    state.counters["matches"] = rival.completer->completionCount();
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
    const std::string searching = "Time from the key to the painted list, as a ratio to ";
    const RatioReporter reporter(
        {{searching + "Completer (below 1: faster)", "Search", "Completer"},
         {searching + "Proxy (below 1: faster)", "Search", "Proxy"},
         {"Time with a follower of Filter that does nothing, as a ratio to none", "Filter", "Filter_None"}},
        2);
    return run(argc, argv, reporter);
}
