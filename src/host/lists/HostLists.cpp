#include "host/lists/HostLists.h"

#include "base/values/Variant.h"
#include "host/database/Statement.h"

namespace tavrin {

namespace {

const QChar Separator(0x1F);

qint64 codeKey(int tableNo, int valueNo)
{
    return (static_cast<qint64>(tableNo) << 32) | static_cast<quint32>(valueNo);
}

/// Names of modules, tables, settings and users compare without case.
QString nameKey(const QStringList& parts)
{
    return parts.join(Separator).toCaseFolded();
}

template <typename Row>
const Row* rowAt(const QList<Row>& rows, int index)
{
    return index < 0 ? nullptr : &rows.at(index);
}

QDate dateAt(const Statement& statement, int column)
{
    return QDate::fromString(statement.text(column), Qt::ISODate);
}

std::optional<int> numberOrNone(const Statement& statement, int column)
{
    return IsNull(statement.value(column)) ? std::nullopt : std::optional(statement.number(column));
}

} // namespace

std::shared_ptr<const HostLists> HostLists::read(Database& database)
{
    Transaction oneState(database, Transaction::Kind::Read);
    std::shared_ptr<HostLists> lists(new HostLists);
    lists->readCodeValues(database);
    lists->readEmployees(database);
    lists->readOffenses(database);
    lists->readUsers(database);
    lists->readSettings(database);
    return lists;
}

void HostLists::readCodeValues(Database& database)
{
    Statement read(database, QStringLiteral("SELECT table_no, value_no, id, display_text, active, sort_order "
                                            "FROM code_value ORDER BY table_no, sort_order, value_no"));
    read.run();
    while (read.next()) {
        QList<CodeValueRow>& rows = m_codeValues[read.number(0)];
        m_codeIndex.insert(codeKey(read.number(0), read.number(1)), static_cast<int>(rows.size()));
        rows << CodeValueRow{read.number(0), read.number(1), read.text(2),
                             read.text(3),   read.flag(4),   read.number(5)};
    }
}

void HostLists::readEmployees(Database& database)
{
    Statement read(database,
                   QStringLiteral("SELECT officer_no, officer_id, name, badge_no, active, k9_handler, "
                                  "hired, left_on, dept_team_no FROM employee ORDER BY name, officer_no"));
    read.run();
    while (read.next()) {
        m_employeeIndex.insert(read.number(0), static_cast<int>(m_employees.size()));
        m_employees << EmployeeRow{read.number(0),  read.text(1),    read.text(2),
                                   read.text(3),    read.flag(4),    read.flag(5),
                                   dateAt(read, 6), dateAt(read, 7), numberOrNone(read, 8)};
    }
}

void HostLists::readOffenses(Database& database)
{
    Statement read(database, QStringLiteral("SELECT offense_no, offense_id, description, rpt_code, active "
                                            "FROM offense_code ORDER BY offense_id"));
    read.run();
    while (read.next()) {
        m_offenseIndex.insert(read.number(0), static_cast<int>(m_offenses.size()));
        m_offenses << OffenseRow{read.number(0), read.text(1), read.text(2), read.text(3), read.flag(4)};
    }
}

void HostLists::readUsers(Database& database)
{
    Statement read(database,
                   QStringLiteral("SELECT user_id, first_name, last_name, officer_id, badge_no, active "
                                  "FROM user_account ORDER BY last_name, first_name, user_id"));
    read.run();
    while (read.next()) {
        m_userIndex.insert(nameKey({read.text(0)}), static_cast<int>(m_users.size()));
        m_users << UserRow{read.text(0), read.text(1), read.text(2),
                           read.text(3), read.text(4), read.flag(5)};
    }
}

void HostLists::readSettings(Database& database)
{
    Statement settings(database, QStringLiteral("SELECT section, key, value FROM setting"));
    settings.run();
    while (settings.next())
        m_settings.insert(nameKey({settings.text(0), settings.text(1)}), settings.text(2));
    Statement folders(database, QStringLiteral("SELECT folder_no, path FROM attachment_folder"));
    folders.run();
    while (folders.next())
        m_attachmentFolders.insert(folders.number(0), folders.text(1));
    Statement rights(database, QStringLiteral("SELECT user_id, module, right_no FROM user_right"));
    rights.run();
    while (rights.next())
        m_rights.insert(nameKey({rights.text(0), rights.text(1), rights.text(2)}));
    Statement required(database,
                       QStringLiteral("SELECT module, table_name, field, extra FROM required_field"));
    required.run();
    while (required.next())
        m_required.insert(nameKey({required.text(0), required.text(1), required.text(2), required.text(3)}));
}

const QList<CodeValueRow>& HostLists::codeValues(int tableNo) const
{
    static const QList<CodeValueRow> none;
    const auto found = m_codeValues.find(tableNo);
    return found == m_codeValues.end() ? none : found->second;
}

const CodeValueRow* HostLists::codeValue(int tableNo, int valueNo) const
{
    return rowAt(codeValues(tableNo), m_codeIndex.value(codeKey(tableNo, valueNo), -1));
}

const EmployeeRow* HostLists::employee(int officerNo) const
{
    return rowAt(m_employees, m_employeeIndex.value(officerNo, -1));
}

const OffenseRow* HostLists::offense(int offenseNo) const
{
    return rowAt(m_offenses, m_offenseIndex.value(offenseNo, -1));
}

const UserRow* HostLists::user(const QString& userId) const
{
    return rowAt(m_users, m_userIndex.value(nameKey({userId}), -1));
}

QString HostLists::setting(const QString& section, const QString& key) const
{
    return m_settings.value(nameKey({section, key}));
}

std::optional<QString> HostLists::attachmentFolder(int folderNo) const
{
    const auto found = m_attachmentFolders.constFind(folderNo);
    return found == m_attachmentFolders.constEnd() ? std::nullopt : std::optional(*found);
}

bool HostLists::hasRight(const QString& userId, const QString& module, int right) const
{
    return m_rights.contains(nameKey({userId, module, QString::number(right)}));
}

bool HostLists::isRequired(const QString& module, const QString& table, const QString& field,
                           const QString& extra) const
{
    return m_required.contains(nameKey({module, table, field, extra}));
}

QStringList HostLists::differencesFrom(const HostLists& before) const
{
    QStringList names;
    const auto note = [&names](bool differs, const QString& name) {
        if (differs)
            names << name;
    };
    note(m_codeValues != before.m_codeValues, QStringLiteral("TableCode"));
    note(m_employees != before.m_employees, QStringLiteral("Employee"));
    note(m_offenses != before.m_offenses, QStringLiteral("Offense"));
    note(m_users != before.m_users, QStringLiteral("UserAccount"));
    note(m_settings != before.m_settings, QStringLiteral("Setting"));
    note(m_attachmentFolders != before.m_attachmentFolders, QStringLiteral("AttachmentFolder"));
    note(m_rights != before.m_rights, QStringLiteral("Right"));
    note(m_required != before.m_required, QStringLiteral("RequiredField"));
    return names;
}

} // namespace tavrin
