#pragma once

#include "base/export/Export.h"
#include "host/database/Migrations.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

#include <functional>
#include <memory>

namespace tavrin {

enum class OpenMode
{
    CreateWhenMissing,
    ExistingOnly,
};

/// What a caller may want otherwise when it opens a database.
struct DatabaseOptions
{
    /// How long a statement waits for another program to let go of the file.
    int BusyTimeoutMs = 3000;
    QList<Migration> Migrations = knownMigrations();
    /// The type of file system that a folder lies on; left out, the platform is asked.
    std::function<QByteArray(const QString& folder)> FileSystemType;
};

/// The records database: one SQLite file on a workstation's own disk, one connection an object.
///
/// An object belongs to the thread that opened it. Whatever uses it must not outlive it.
class TAVRIN_EXPORT Database
{
public:
    /// Opens the file, creating it when `mode` allows, and brings its schema up to date.
    ///
    /// Raises an `Error` with one text that names the file and says what to do when the file cannot be
    /// opened, is locked, read-only, damaged, no database of ours, written by a newer version, or lies on a
    /// network file system. The file is then untouched and nothing new lies beside it.
    static std::unique_ptr<Database> open(const QString& path, OpenMode mode = OpenMode::CreateWhenMissing,
                                          const DatabaseOptions& options = {});
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    const QString& path() const { return m_path; }
    /// The connection itself, for what `Statement` does not cover.
    QSqlDatabase connection() const;

    /// Runs one statement without values. Raises an `Error` as `Statement::run` does.
    void execute(const QString& sql);

    /// The next key of a sequence, never given twice once its transaction is committed. To be called inside a
    /// transaction. Raises an `Error` for a sequence that does not exist.
    qint64 nextKey(const QString& sequence);

    /// Number of the newest migration that the database has seen; 0 for none.
    int schemaNumber();

    /// Changes whenever another connection has changed the file; for polling.
    qint64 dataVersion();

private:
    Database(QString path, QString connectionName);
    void connectTo(const DatabaseOptions& options);

    QString m_path;
    QString m_connectionName;
};

/// Thrown text for a driver's failure: what went wrong, in which file, and what to do.
TAVRIN_EXPORT QString databaseErrorText(const QSqlError& error, const QString& path);

} // namespace tavrin
