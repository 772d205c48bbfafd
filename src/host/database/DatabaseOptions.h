#pragma once

#include "host/database/Migrations.h"

#include <QSqlError>
#include <QString>

#include <functional>

namespace tavrin {

/// What a caller may want otherwise when it opens a database.
struct DatabaseOptions
{
    /// How long a statement waits for another program to let go of the file.
    int BusyTimeoutMs = 3000;
    QList<Migration> Migrations = knownMigrations();
    /// The type of file system that a folder lies on; left out, the platform is asked.
    std::function<QByteArray(const QString& folder)> FileSystemType;
};

/// Thrown text for a driver's failure: what went wrong, in which file, and what to do.
TAVRIN_EXPORT QString databaseErrorText(const QSqlError& error, const QString& path);

} // namespace tavrin
