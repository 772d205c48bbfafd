#include "host/lists/HostRows.h"

#include "base/values/Variant.h"
#include "host/database/Statement.h"

namespace tavrin {

namespace {

QVariant textOrNull(const QString& text)
{
    return text.isEmpty() ? Null() : QVariant(text);
}

QVariant numberOrNull(const std::optional<int>& number)
{
    return number ? QVariant(*number) : Null();
}

} // namespace

void insertRows(Database& database, const QList<CodeTableRow>& rows)
{
    Statement insert(database,
                     QStringLiteral("INSERT INTO code_table (table_no, name, source) VALUES (?, ?, ?)"));
    for (const CodeTableRow& row : rows)
        insert.run({row.TableNo, row.Name, row.Source});
}

void insertRows(Database& database, const QList<CodeValueRow>& rows)
{
    Statement insert(database, QStringLiteral("INSERT INTO code_value (table_no, value_no, id, display_text, "
                                              "active, sort_order) VALUES (?, ?, ?, ?, ?, ?)"));
    for (const CodeValueRow& row : rows)
        insert.run({row.TableNo, row.ValueNo, row.Id, row.DisplayText, row.Active, row.SortOrder});
}

void insertRows(Database& database, const QList<EmployeeRow>& rows)
{
    Statement insert(database, QStringLiteral("INSERT INTO employee (officer_no, officer_id, name, badge_no, "
                                              "active, k9_handler, hired, left_on, dept_team_no) "
                                              "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)"));
    for (const EmployeeRow& row : rows)
        insert.run({row.OfficerNo, row.OfficerId, row.Name, textOrNull(row.BadgeNo), row.Active,
                    row.K9Handler, row.Hired, row.LeftOn, numberOrNull(row.DeptTeamNo)});
}

void insertRows(Database& database, const QList<UserRow>& rows)
{
    Statement insert(database, QStringLiteral("INSERT INTO user_account (user_id, first_name, last_name, "
                                              "officer_id, badge_no, active) VALUES (?, ?, ?, ?, ?, ?)"));
    for (const UserRow& row : rows)
        insert.run({row.UserId, row.FirstName, row.LastName, textOrNull(row.OfficerId),
                    textOrNull(row.BadgeNo), row.Active});
}

void insertRows(Database& database, const QList<OffenseRow>& rows)
{
    Statement insert(database,
                     QStringLiteral("INSERT INTO offense_code (offense_no, offense_id, description, "
                                    "rpt_code, active) VALUES (?, ?, ?, ?, ?)"));
    for (const OffenseRow& row : rows)
        insert.run({row.OffenseNo, row.OffenseId, row.Description, row.RptCode, row.Active});
}

} // namespace tavrin
