#pragma once

#include "base/export/Export.h"

#include <QSqlDatabase>
#include <QString>

#include <memory>

namespace tavrin {

/// What `Database::open` does where there is no file.
enum class OpenMode
{
    CreateWhenMissing, ///< makes a new database
    ExistingOnly,      ///< raises an `Error`
};

struct DatabaseOptions;

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
    static std::unique_ptr<Database> open(const QString& path, OpenMode mode = OpenMode::CreateWhenMissing);
    // With options that only the library's own parts know.
    static std::unique_ptr<Database> open(const QString& path, OpenMode mode, const DatabaseOptions& options);
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    /// The file's absolute path.
    const QString& path() const;
    /// The connection itself, for statements of one's own; it ends with the object.
    QSqlDatabase connection() const;

    /// Runs one statement without values. Raises an `Error` that says what went wrong and what to do.
    void execute(const QString& sql);

    /// The next key of a sequence, never given twice once its transaction is committed. To be called inside a
    /// transaction. Raises an `Error` for a sequence that does not exist.
    qint64 nextKey(const QString& sequence);

    /// Number of the newest migration that the database has seen; 0 for none.
    int schemaNumber();

    /// Changes whenever another connection has changed the file; for polling.
    qint64 dataVersion();

private:
    class Q_DECL_HIDDEN Private;
    explicit Database(std::unique_ptr<Private> opened);
    std::unique_ptr<Private> d;
};

} // namespace tavrin
