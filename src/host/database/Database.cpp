#include "host/database/Database.h"

#include "base/failure/Error.h"
#include "host/database/DatabaseFile.h"
#include "host/database/DatabaseOptions.h"
#include "host/database/Statement.h"

#include <QDir>
#include <QFileInfo>

namespace tavrin {

namespace {

// SQLite's primary result codes; the rest of a native code is detail.
enum ResultCode
{
    Busy = 5,
    Locked = 6,
    ReadOnly = 8,
    InputOutput = 10,
    Corrupt = 11,
    Full = 13,
    CannotOpen = 14,
    Constraint = 19,
    NotADatabase = 26,
};

int resultCode(const QSqlError& error)
{
    return error.nativeErrorCode().toInt() & 0xFF;
}

QString knownText(int code)
{
    switch (code) {
    case Busy:
    case Locked:
        return QStringLiteral("The database %1 is locked by another program. Close the other program, or try "
                              "again in a moment.");
    case ReadOnly:
        return QStringLiteral("The database %1 is read-only. Ask for permission to write to the file and its "
                              "folder.");
    case InputOutput:
        return QStringLiteral("The database %1 cannot be read or written: the disk reports a failure. Check "
                              "the disk.");
    case Corrupt:
    case NotADatabase:
        return QStringLiteral("The database %1 is damaged. Restore it from a backup.");
    case Full:
        return QStringLiteral("The disk is full: nothing was written to the database %1. Make room on the "
                              "disk and try again.");
    case CannotOpen:
        return QStringLiteral("The database %1 cannot be opened. Check that the file is there and that you "
                              "have permission to use it.");
    default:
        return {};
    }
}

} // namespace

QString databaseErrorText(const QSqlError& error, const QString& path)
{
    const QString file = QDir::toNativeSeparators(path);
    const int code = resultCode(error);
    if (const QString text = knownText(code); !text.isEmpty())
        return text.arg(file);
    const QString detail = error.databaseText().trimmed();
    if (code == Constraint)
        return QStringLiteral("The database %1 does not accept the data: %2.").arg(file, detail);
    if (detail.isEmpty())
        return QStringLiteral("The database connection was lost: %1. Start the program again.").arg(file);
    return QStringLiteral("The database %1 reports a failure: %2.").arg(file, detail);
}

class Database::Private
{
public:
    QString path;
    QString connectionName;
};

std::unique_ptr<Database> Database::open(const QString& path, OpenMode mode)
{
    return open(path, mode, DatabaseOptions());
}

std::unique_ptr<Database> Database::open(const QString& path, OpenMode mode, const DatabaseOptions& options)
{
    const QString absolute = QFileInfo(path).absoluteFilePath();
    checkDatabaseFile(absolute, mode, options);
    std::unique_ptr<Database> database(
        new Database(std::make_unique<Private>(Private{absolute, uniqueConnectionName()})));
    QSqlDatabase connection =
        QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), database->d->connectionName);
    connection.setDatabaseName(absolute);
    connection.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=%1").arg(options.BusyTimeoutMs));
    if (!connection.open())
        throw Error(databaseErrorText(connection.lastError(), absolute));
    // The rollback journal stays as it is by default: a records file at rest is then one file, which a person
    // can copy as a backup.
    database->execute(QStringLiteral("PRAGMA foreign_keys = ON"));
    database->execute(QStringLiteral("PRAGMA synchronous = FULL"));
    migrate(*database, options.Migrations);
    return database;
}

Database::Database(std::unique_ptr<Private> opened)
    : d(std::move(opened))
{
}

Database::~Database()
{
    QSqlDatabase::database(d->connectionName, false).close();
    QSqlDatabase::removeDatabase(d->connectionName);
}

const QString& Database::path() const
{
    return d->path;
}

QSqlDatabase Database::connection() const
{
    return QSqlDatabase::database(d->connectionName, false);
}

void Database::execute(const QString& sql)
{
    Statement(*this, sql).run();
}

qint64 Database::nextKey(const QString& sequence)
{
    Statement advance(*this, QStringLiteral("UPDATE key_sequence SET last = last + 1 WHERE name = ?"));
    advance.bind(sequence).run();
    if (advance.affectedRows() != 1)
        throw Error(QStringLiteral("The database has no key sequence %1").arg(sequence));
    Statement read(*this, QStringLiteral("SELECT last FROM key_sequence WHERE name = ?"));
    read.bind(sequence).run();
    read.next();
    return read.value(0).toLongLong();
}

int Database::schemaNumber()
{
    Statement tables(*this,
                     QStringLiteral("SELECT COUNT(*) FROM sqlite_master WHERE type = 'table' AND name = "
                                    "'schema_migration'"));
    tables.run();
    tables.next();
    if (tables.number(0) == 0)
        return 0;
    Statement newest(*this, QStringLiteral("SELECT COALESCE(MAX(number), 0) FROM schema_migration"));
    newest.run();
    newest.next();
    return newest.number(0);
}

qint64 Database::dataVersion()
{
    Statement version(*this, QStringLiteral("PRAGMA data_version"));
    version.run();
    version.next();
    return version.value(0).toLongLong();
}

} // namespace tavrin
