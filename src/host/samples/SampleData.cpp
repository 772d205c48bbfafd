#include "host/samples/SampleData.h"

#include "base/failure/Error.h"
#include "frame/host_contracts/Contracts.h"
#include "host/database/DataFiles.h"
#include "host/database/Statement.h"
#include "host/lists/HostRows.h"
#include "host/samples/SampleIncidents.h"

#include <QFileInfo>
#include <QSet>

namespace tavrin {

namespace {

QString words(const char* text)
{
    return QString::fromLatin1(text);
}

QStringList columns(const char* names)
{
    return words(names).split(QLatin1Char(','));
}

/// Refuses the second row with the same key.
template <typename Key>
class Unique
{
public:
    void add(const CsvTable& table, int row, const char* column, const Key& key)
    {
        if (m_keys.contains(key))
            table.fail(
                row,
                QStringLiteral("%1 stands twice: %2").arg(words(column), table.text(row, words(column))));
        m_keys.insert(key);
    }
    bool contains(const Key& key) const { return m_keys.contains(key); }

private:
    QSet<Key> m_keys;
};

class Filler
{
public:
    Filler(Database& database, const DataFiles& files)
        : m_database(database)
        , m_files(files)
    {
    }

    void fill()
    {
        checkFolder();
        fillCodeTables();
        fillEmployees();
        fillUsers();
        fillOffenses();
        fillSettings();
        fillRights();
        fillRequiredFields();
        insertSampleIncidents(m_database, m_files, m_known);
    }

private:
    void checkFolder() const;
    void fillCodeTables();
    QList<CodeValueRow> readCodeTable(int tableNo, const QString& fileName);
    QString codeTableFile(const CsvTable& tables, int row, int tableNo) const;
    void fillEmployees();
    void fillUsers();
    void fillOffenses();
    void fillSettings();
    void fillRights();
    void fillRequiredFields();

    Database& m_database;
    const DataFiles& m_files;
    KnownCodes m_known;
    Unique<QString> m_officerIds;
    Unique<QString> m_userIds;
    QSet<QString> m_reportingCodes;
};

void Filler::checkFolder() const
{
    const QString folder = m_files.folder();
    const QString start = words("code_tables/tables.csv");
    QString problem;
    if (!QFileInfo(folder).isDir())
        problem = words("does not exist");
    else if (!QFileInfo(m_files.path(start)).isFile())
        problem = words("holds no ") + start;
    else
        return;
    throw Error(
        QStringLiteral("The data folder %1 %2. It must hold code_tables/tables.csv with one file for "
                       "each table in that list beside it, and sample/employees.csv, sample/users.csv, "
                       "sample/offenses.csv, sample/settings.csv, sample/rights.csv, "
                       "sample/required_fields.csv and sample/incidents.json.")
            .arg(folder, problem));
}

void Filler::fillCodeTables()
{
    const CsvTable tables(m_files, words("code_tables/tables.csv"), columns("TableNo,Name,Source"));
    QList<CodeTableRow> rows;
    QList<CodeValueRow> values;
    Unique<int> numbers;
    for (int row = 0; row < tables.rowCount(); ++row) {
        const int tableNo = tables.number(row, words("TableNo"));
        numbers.add(tables, row, "TableNo", tableNo);
        rows << CodeTableRow{tableNo, tables.requiredText(row, words("Name")),
                             tables.text(row, words("Source"))};
        values << readCodeTable(tableNo, codeTableFile(tables, row, tableNo));
    }
    insertRows(m_database, rows);
    insertRows(m_database, values);
}

QString Filler::codeTableFile(const CsvTable& tables, int row, int tableNo) const
{
    const QStringList found = m_files.find(words("code_tables"), QStringLiteral("%1-*.csv").arg(tableNo));
    if (found.size() != 1)
        tables.fail(
            row,
            QStringLiteral("there must be one file for table %1, not %2").arg(tableNo).arg(found.size()));
    return words("code_tables/") + found.first();
}

QList<CodeValueRow> Filler::readCodeTable(int tableNo, const QString& fileName)
{
    const CsvTable table(m_files, fileName, columns("Value,ID,DisplayText,Active"));
    QList<CodeValueRow> values;
    Unique<int> numbers;
    Unique<QString> ids;
    for (int row = 0; row < table.rowCount(); ++row) {
        const CodeValueRow value{tableNo,
                                 table.number(row, words("Value")),
                                 table.requiredText(row, words("ID")),
                                 table.requiredText(row, words("DisplayText")),
                                 table.flag(row, words("Active")),
                                 row + 1};
        if (value.ValueNo < 1 || value.ValueNo > 32767)
            table.fail(row, QStringLiteral("Value must be 1 to 32767: %1").arg(value.ValueNo));
        numbers.add(table, row, "Value", value.ValueNo);
        ids.add(table, row, "ID", value.Id);
        m_known.Values[tableNo].insert(value.ValueNo);
        if (tableNo == OffenseCodeTable)
            m_reportingCodes.insert(value.Id);
        values << value;
    }
    return values;
}

void Filler::fillEmployees()
{
    const CsvTable table(m_files, words("sample/employees.csv"),
                         columns("OfficerNo,OfficerId,Name,BadgeNo,Active,K9Handler,Hired,Left,DeptTeamNo"));
    QList<EmployeeRow> rows;
    Unique<int> numbers;
    for (int row = 0; row < table.rowCount(); ++row) {
        rows << EmployeeRow{table.number(row, words("OfficerNo")),
                            table.requiredText(row, words("OfficerId")),
                            table.requiredText(row, words("Name")),
                            table.text(row, words("BadgeNo")),
                            table.flag(row, words("Active")),
                            table.flag(row, words("K9Handler")),
                            table.date(row, words("Hired")),
                            table.date(row, words("Left")),
                            table.optionalNumber(row, words("DeptTeamNo"))};
        const EmployeeRow& employee = rows.last();
        numbers.add(table, row, "OfficerNo", employee.OfficerNo);
        m_officerIds.add(table, row, "OfficerId", employee.OfficerId);
        const std::optional<int> team = employee.DeptTeamNo;
        if (team && !m_known.Values[Tables::Team].contains(*team))
            table.fail(row, QStringLiteral("table %1 has no value %2").arg(Tables::Team).arg(*team));
        m_known.Employees.insert(employee.OfficerNo);
        if (employee.K9Handler)
            m_known.K9Handlers.insert(employee.OfficerNo);
    }
    insertRows(m_database, rows);
}

void Filler::fillUsers()
{
    const CsvTable table(m_files, words("sample/users.csv"),
                         columns("UserId,FirstName,LastName,OfficerId,BadgeNo,Active"));
    QList<UserRow> rows;
    for (int row = 0; row < table.rowCount(); ++row) {
        rows << UserRow{table.requiredText(row, words("UserId")),   table.text(row, words("FirstName")),
                        table.requiredText(row, words("LastName")), table.text(row, words("OfficerId")),
                        table.text(row, words("BadgeNo")),          table.flag(row, words("Active"))};
        const UserRow& user = rows.last();
        m_userIds.add(table, row, "UserId", user.UserId);
        m_known.Users.insert(user.UserId);
        if (!user.OfficerId.isEmpty() && !m_officerIds.contains(user.OfficerId))
            table.fail(row, QStringLiteral("there is no employee with the OfficerId %1").arg(user.OfficerId));
    }
    insertRows(m_database, rows);
}

void Filler::fillOffenses()
{
    const CsvTable table(m_files, words("sample/offenses.csv"),
                         columns("OffenseNo,OffenseId,Description,RptCode,Active"));
    QList<OffenseRow> rows;
    Unique<int> numbers;
    Unique<QString> ids;
    for (int row = 0; row < table.rowCount(); ++row) {
        rows << OffenseRow{table.number(row, words("OffenseNo")), table.requiredText(row, words("OffenseId")),
                           table.requiredText(row, words("Description")),
                           table.requiredText(row, words("RptCode")), table.flag(row, words("Active"))};
        const OffenseRow& offense = rows.last();
        numbers.add(table, row, "OffenseNo", offense.OffenseNo);
        ids.add(table, row, "OffenseId", offense.OffenseId);
        if (!m_reportingCodes.contains(offense.RptCode))
            table.fail(row,
                       QStringLiteral("table %1 has no code %2").arg(OffenseCodeTable).arg(offense.RptCode));
        m_known.Offenses.insert(offense.OffenseNo);
    }
    insertRows(m_database, rows);
}

void Filler::fillSettings()
{
    const CsvTable table(m_files, words("sample/settings.csv"), columns("Section,Key,Value"));
    Statement insert(m_database, words("INSERT INTO setting (section, key, value) VALUES (?, ?, ?)"));
    Unique<QString> keys;
    for (int row = 0; row < table.rowCount(); ++row) {
        const QString section = table.requiredText(row, words("Section"));
        const QString key = table.requiredText(row, words("Key"));
        keys.add(table, row, "Key", section + QLatin1Char('\n') + key);
        insert.run({section, key, table.text(row, words("Value"))});
    }
}

void Filler::fillRights()
{
    const CsvTable table(m_files, words("sample/rights.csv"), columns("UserId,Module,Right"));
    Statement insert(m_database,
                     words("INSERT INTO user_right (user_id, module, right_no) VALUES (?, ?, ?)"));
    Unique<QString> rights;
    for (int row = 0; row < table.rowCount(); ++row) {
        const QString userId = table.requiredText(row, words("UserId"));
        const QString module = table.requiredText(row, words("Module"));
        const int right = table.number(row, words("Right"));
        if (!m_userIds.contains(userId))
            table.fail(row, QStringLiteral("there is no user %1").arg(userId));
        rights.add(table, row, "Right", QStringLiteral("%1\n%2\n%3").arg(userId, module).arg(right));
        insert.run({userId, module, right});
    }
}

void Filler::fillRequiredFields()
{
    const CsvTable table(m_files, words("sample/required_fields.csv"), columns("Module,Table,Field,Extra"));
    Statement insert(
        m_database,
        words("INSERT INTO required_field (module, table_name, field, extra) VALUES (?, ?, ?, ?)"));
    Unique<QString> fields;
    for (int row = 0; row < table.rowCount(); ++row) {
        const QString module = table.requiredText(row, words("Module"));
        const QString name = table.requiredText(row, words("Table"));
        const QString field = table.requiredText(row, words("Field"));
        const QString extra = table.text(row, words("Extra"));
        fields.add(table, row, "Field", QStringList{module, name, field, extra}.join(QLatin1Char('\n')));
        insert.run({module, name, field, extra});
    }
}

bool isEmpty(Database& database)
{
    for (const char* table : {"code_table", "employee", "incident"}) {
        Statement count(database, QStringLiteral("SELECT COUNT(*) FROM %1").arg(words(table)));
        count.run();
        count.next();
        if (count.number(0) > 0)
            return false;
    }
    return true;
}

} // namespace

class SampleData::Private
{
public:
    DataFiles files;
};

SampleData::SampleData(const QString& folder)
    : d(std::make_unique<Private>(Private{DataFiles(folder)}))
{
}

SampleData::~SampleData() = default;

bool SampleData::fillOnce(Database& database) const
{
    Transaction transaction(database);
    if (!isEmpty(database))
        return false;
    Filler(database, d->files).fill();
    transaction.commit();
    return true;
}

} // namespace tavrin
