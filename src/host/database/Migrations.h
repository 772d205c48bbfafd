#pragma once

#include "base/export/Export.h"

#include <QList>
#include <QString>

namespace tavrin {

class Database;

/// One numbered step of the schema: plain SQL statements that end in a semicolon at the end of a line.
struct Migration
{
    int Number = 0;
    QString Name;
    QString Sql;
};

/// The steps that this program knows, in ascending order of their numbers.
TAVRIN_COMPANION_EXPORT const QList<Migration>& knownMigrations();

/// Runs the steps that the database has not seen yet, each in a transaction of its own, and notes them in
/// `schema_migration`. Raises an `Error` that names the step which failed; the database then stands at the
/// step before it.
void migrate(Database& database, const QList<Migration>& migrations = knownMigrations());

/// The statements of a script. A `--` line is a comment; a semicolon ends a statement at the end of a line
/// only.
QStringList splitScript(const QString& sql);

} // namespace tavrin
