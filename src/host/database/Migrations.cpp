#include "host/database/Migrations.h"

#include "base/failure/Error.h"
#include "host/database/Statement.h"

#include <QDateTime>
#include <QDir>
#include <QFile>

static void initMigrationResources()
{
    Q_INIT_RESOURCE(tavrin_host);
}

namespace tavrin {

namespace {

Migration readMigration(const QString& folder, const QString& fileName)
{
    QFile file(folder + QLatin1Char('/') + fileName);
    if (!file.open(QIODevice::ReadOnly))
        throw Error(QStringLiteral("The program's schema step %1 cannot be read").arg(fileName));
    const qsizetype underscore = fileName.indexOf(QLatin1Char('_'));
    const QString name = fileName.mid(underscore + 1).chopped(4); // without ".sql"
    return {fileName.left(underscore).toInt(), name, QString::fromUtf8(file.readAll())};
}

QList<Migration> readAll()
{
    initMigrationResources();
    const QString folder = QStringLiteral(":/host/migrations");
    QList<Migration> migrations;
    for (const QString& fileName : QDir(folder).entryList({QStringLiteral("*.sql")}, QDir::Files, QDir::Name))
        migrations << readMigration(folder, fileName);
    return migrations;
}

void run(Database& database, const Migration& migration)
{
    Transaction transaction(database);
    // Another program may have brought the schema up to date while this one waited for the lock.
    if (database.schemaNumber() >= migration.Number)
        return;
    database.execute(
        QStringLiteral("CREATE TABLE IF NOT EXISTS schema_migration (number INTEGER PRIMARY KEY, "
                       "name TEXT NOT NULL, applied_at TEXT NOT NULL)"));
    for (const QString& statement : splitScript(migration.Sql))
        database.execute(statement);
    Statement note(
        database, QStringLiteral("INSERT INTO schema_migration (number, name, applied_at) VALUES (?, ?, ?)"));
    note.run({migration.Number, migration.Name, QDateTime::currentDateTimeUtc().toString(Qt::ISODate)});
    transaction.commit();
}

} // namespace

const QList<Migration>& knownMigrations()
{
    static const QList<Migration> migrations = readAll();
    return migrations;
}

QStringList splitScript(const QString& sql)
{
    QStringList statements;
    QString current;
    for (const QString& line : sql.split(QLatin1Char('\n'))) {
        const QString trimmed = line.trimmed();
        if (trimmed.isEmpty() || trimmed.startsWith(QStringLiteral("--")))
            continue;
        current += line + QLatin1Char('\n');
        if (trimmed.endsWith(QLatin1Char(';'))) {
            statements << current.trimmed().chopped(1);
            current.clear();
        }
    }
    if (!current.isEmpty())
        statements << current.trimmed();
    return statements;
}

void migrate(Database& database, const QList<Migration>& migrations)
{
    const int present = database.schemaNumber();
    for (const Migration& migration : migrations) {
        if (migration.Number <= present)
            continue;
        try {
            run(database, migration);
        } catch (const Error& error) {
            throw Error(QStringLiteral("The database could not be brought to schema step %1 (%2). %3")
                            .arg(QString::number(migration.Number), migration.Name, error.Description));
        }
    }
}

} // namespace tavrin
