#pragma once

#include "host/database/Database.h"

#include <QDate>
#include <QList>
#include <QString>

#include <optional>

// The rows of the lists that the host keeps, as plain values.

namespace tavrin {

/// The code table of reporting codes.
inline constexpr int OffenseCodeTable = 319;

struct CodeTableRow
{
    int TableNo = 0;
    QString Name;
    QString Source;

    friend bool operator==(const CodeTableRow&, const CodeTableRow&) = default;
};

struct CodeValueRow
{
    int TableNo = 0;
    int ValueNo = 0;
    QString Id;
    QString DisplayText;
    bool Active = true;
    int SortOrder = 0;

    friend bool operator==(const CodeValueRow&, const CodeValueRow&) = default;
};

struct EmployeeRow
{
    int OfficerNo = 0;
    QString OfficerId;
    QString Name; ///< "Last, First"
    QString BadgeNo;
    bool Active = true;
    bool K9Handler = false;
    QDate Hired;
    QDate LeftOn;                  ///< null while the person is there
    std::optional<int> DeptTeamNo; ///< value of the table of teams; none for a person without a team

    friend bool operator==(const EmployeeRow&, const EmployeeRow&) = default;
};

struct UserRow
{
    QString UserId;
    QString FirstName;
    QString LastName;
    QString OfficerId; ///< "" for a user who is no officer
    QString BadgeNo;
    bool Active = true;

    friend bool operator==(const UserRow&, const UserRow&) = default;
};

struct OffenseRow
{
    int OffenseNo = 0;
    QString OffenseId;
    QString Description;
    QString RptCode;
    bool Active = true;

    friend bool operator==(const OffenseRow&, const OffenseRow&) = default;
};

/// Each inserts all rows or, as part of the caller's transaction, raises an `Error`.
void insertRows(Database& database, const QList<CodeTableRow>& rows);
void insertRows(Database& database, const QList<CodeValueRow>& rows);
void insertRows(Database& database, const QList<EmployeeRow>& rows);
void insertRows(Database& database, const QList<UserRow>& rows);
void insertRows(Database& database, const QList<OffenseRow>& rows);

} // namespace tavrin
