#pragma once

#include "host/database/Database.h"

#include <QSqlQuery>
#include <QVariant>

namespace tavrin {

/// One prepared SQL statement with positional values.
///
///     Statement find(database, QStringLiteral("SELECT Summary FROM incident WHERE IncidentNo = ?"));
///     find.bind(7).run();
///     while (find.next())
///         qInfo() << find.value(0);
class Statement
{
public:
    /// Prepares; raises an `Error` when the database refuses.
    Statement(Database& database, const QString& sql);

    /// The value of the next placeholder. Null, Empty and an empty date become NULL, dates ISO text,
    /// booleans 0 or 1.
    Statement& bind(const QVariant& value);
    /// Executes with the values bound since the last run. Raises an `Error` with a text for a person.
    void run();
    /// Executes once more with other values.
    void run(const QVariantList& values);

    /// Moves to the next row of the answer; false at its end. Raises an `Error` when reading fails.
    bool next();
    /// A column of the current row, counted from 0; NULL gives the variant Null.
    QVariant value(int column) const;
    QString text(int column) const;
    int number(int column) const;
    bool flag(int column) const;
    /// Rows that the last run changed.
    int affectedRows() const;

private:
    [[noreturn]] void fail() const;

    Database& m_database;
    QSqlQuery m_query;
    int m_bound = 0;
};

/// A transaction, which rolls back unless it was committed.
class Transaction
{
public:
    enum class Kind
    {
        Write, ///< takes the file's lock at once
        Read,  ///< one state of the database for several statements
    };

    /// Raises an `Error` when another program holds the lock for longer than the busy timeout.
    explicit Transaction(Database& database, Kind kind = Kind::Write);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    /// Raises an `Error` when it fails; everything is then rolled back.
    void commit();
    void rollback() noexcept;

private:
    Database& m_database;
    bool m_open = true;
};

} // namespace tavrin
