#include "host/database/Statement.h"

#include "base/failure/Error.h"
#include "base/values/Variant.h"
#include "host/database/DatabaseOptions.h"

#include <QDateTime>
#include <QVariantList>

namespace tavrin {

namespace {

QVariant databaseNull()
{
    return QVariant(QMetaType::fromType<QString>());
}

QVariant bindable(const QVariant& value)
{
    if (IsNull(value) || IsEmpty(value))
        return databaseNull();
    switch (value.typeId()) {
    case QMetaType::Bool:
        return value.toBool() ? 1 : 0;
    case QMetaType::QDate:
        return value.toDate().isValid() ? QVariant(value.toDate().toString(Qt::ISODate)) : databaseNull();
    case QMetaType::QDateTime:
        return value.toDateTime().isValid()
                   ? QVariant(value.toDateTime().toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss")))
                   : databaseNull();
    case QMetaType::QString:
        // A null string is an empty text here; what means NULL says so by Null.
        return value.toString().isNull() ? QVariant(QStringLiteral("")) : value;
    default:
        return value;
    }
}

} // namespace

Statement::Statement(Database& database, const QString& sql)
    : m_database(database)
    , m_query(database.connection())
{
    if (!database.connection().isOpen())
        throw Error(databaseErrorText({}, database.path()));
    m_query.setForwardOnly(true);
    if (!m_query.prepare(sql))
        fail();
}

Statement& Statement::bind(const QVariant& value)
{
    m_query.bindValue(m_bound++, bindable(value));
    return *this;
}

void Statement::run()
{
    m_bound = 0;
    if (!m_query.exec())
        fail();
}

void Statement::run(const QVariantList& values)
{
    for (const QVariant& value : values)
        bind(value);
    run();
}

bool Statement::next()
{
    if (m_query.next())
        return true;
    if (m_query.lastError().isValid())
        fail();
    return false;
}

QVariant Statement::value(int column) const
{
    const QVariant value = m_query.value(column);
    return value.isNull() ? Null() : value;
}

QString Statement::text(int column) const
{
    return m_query.value(column).toString();
}

int Statement::number(int column) const
{
    return m_query.value(column).toInt();
}

bool Statement::flag(int column) const
{
    return m_query.value(column).toInt() != 0;
}

int Statement::affectedRows() const
{
    return m_query.numRowsAffected();
}

void Statement::fail() const
{
    throw Error(databaseErrorText(m_query.lastError(), m_database.path()));
}

Transaction::Transaction(Database& database, Kind kind)
    : m_database(database)
{
    // Taking the write lock at the start means that no statement inside can find it taken.
    m_database.execute(kind == Kind::Write ? QStringLiteral("BEGIN IMMEDIATE") : QStringLiteral("BEGIN"));
}

Transaction::~Transaction()
{
    rollback();
}

void Transaction::commit()
{
    try {
        m_database.execute(QStringLiteral("COMMIT"));
        m_open = false;
    } catch (const Error&) {
        rollback();
        throw;
    }
}

void Transaction::rollback() noexcept
{
    if (!m_open)
        return;
    m_open = false;
    // SQLite has already rolled back by itself after some failures; there is then nothing left to do, and its
    // complaint about that says nothing.
    try {
        m_database.execute(QStringLiteral("ROLLBACK"));
    } catch (...) {
    }
}

} // namespace tavrin
