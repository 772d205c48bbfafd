#include "host/database/DatabaseFile.h"

#include "base/failure/Error.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>
#include <QSqlQuery>
#include <QStorageInfo>
#include <QUrl>

#include <algorithm>
#include <array>
#include <atomic>

namespace tavrin {

namespace {

constexpr qint64 HeaderLength = 100;
constexpr qsizetype ReadVersionOffset = 19;
constexpr char WriteAheadVersion = 2;

[[noreturn]] void refuse(const QString& text, const QString& path)
{
    throw Error(text.arg(QDir::toNativeSeparators(path)));
}

void checkFolder(const QFileInfo& file, const DatabaseOptions& options)
{
    const QFileInfo folder(file.absolutePath());
    if (!folder.isDir())
        refuse(QStringLiteral("The database %1 cannot be opened: its folder does not exist. Check the path."),
               file.filePath());
    if (!folder.isExecutable())
        refuse(QStringLiteral("The database %1 cannot be opened: you have no permission to enter its folder. "
                              "Ask for access to the folder."),
               file.filePath());
    const QByteArray type = options.FileSystemType ? options.FileSystemType(folder.filePath())
                                                   : QStorageInfo(folder.filePath()).fileSystemType();
    if (isNetworkFileSystem(type))
        refuse(
            QStringLiteral("The database %1 lies on a network file system. SQLite is for one workstation's "
                           "file only: move it to a disk of this computer, or use a database server."),
            file.filePath());
}

/// The first bytes of the file; fewer when it is shorter.
QByteArray readHeader(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw Error(QStringLiteral("The database %1 cannot be opened: %2. Check that you have permission to "
                                   "read it.")
                        .arg(QDir::toNativeSeparators(path), file.errorString()));
    return file.read(HeaderLength);
}

void checkHeader(const QByteArray& header, const QString& path)
{
    static constexpr std::array<char, 16> magic{'S', 'Q', 'L', 'i', 't', 'e', ' ', 'f',
                                                'o', 'r', 'm', 'a', 't', ' ', '3', '\0'};
    if (!header.startsWith(QByteArrayView(magic.data(), magic.size())))
        refuse(QStringLiteral("The file %1 is not a database. Choose another file, or move this one away so "
                              "that a new database can be made."),
               path);
    if (header.size() < HeaderLength)
        refuse(QStringLiteral("The database %1 is damaged. Restore it from a backup."), path);
}

void checkWritable(const QFileInfo& file)
{
    if (!file.isWritable())
        refuse(QStringLiteral("The database %1 is read-only. Ask for permission to write to the file."),
               file.filePath());
    if (!QFileInfo(file.absolutePath()).isWritable())
        refuse(
            QStringLiteral("The database %1 lies in a folder that is read-only. Ask for permission to write "
                           "to the folder."),
            file.filePath());
}

bool hasLeftoverJournal(const QString& path)
{
    return QFileInfo(path + QStringLiteral("-journal")).size() > 0 ||
           QFileInfo(path + QStringLiteral("-wal")).size() > 0;
}

/// A connection for looking only. A file that was left in the middle of a write is the exception: SQLite has
/// to put it back first, which is a write.
void openForInspection(QSqlDatabase& connection, const QString& path, const QByteArray& header,
                       const DatabaseOptions& options)
{
    QString connectOptions = QStringLiteral("QSQLITE_BUSY_TIMEOUT=%1").arg(options.BusyTimeoutMs);
    connection.setDatabaseName(path);
    if (!hasLeftoverJournal(path)) {
        connectOptions += QStringLiteral(";QSQLITE_OPEN_READONLY");
        // Even reading leaves files beside a database in write-ahead mode, unless it is told that nobody
        // else is there.
        if (header.at(ReadVersionOffset) == WriteAheadVersion) {
            connectOptions += QStringLiteral(";QSQLITE_OPEN_URI");
            connection.setDatabaseName(QString::fromLatin1(QUrl::fromLocalFile(path).toEncoded()) +
                                       QStringLiteral("?immutable=1"));
        }
    }
    connection.setConnectOptions(connectOptions);
    if (!connection.open())
        throw Error(databaseErrorText(connection.lastError(), path));
}

QVariant firstValue(QSqlDatabase& connection, const QString& sql, const QString& path)
{
    QSqlQuery query(connection);
    if (!query.exec(sql) || !query.next())
        throw Error(databaseErrorText(query.lastError(), path));
    return query.value(0);
}

void inspect(QSqlDatabase& connection, const QString& path, const DatabaseOptions& options)
{
    const int tables =
        firstValue(connection, QStringLiteral("SELECT COUNT(*) FROM sqlite_master"), path).toInt();
    if (firstValue(connection, QStringLiteral("PRAGMA quick_check(1)"), path).toString() !=
        QStringLiteral("ok"))
        refuse(QStringLiteral("The database %1 is damaged. Restore it from a backup."), path);
    if (tables == 0)
        return;
    if (firstValue(connection,
                   QStringLiteral("SELECT COUNT(*) FROM sqlite_master WHERE name = 'schema_migration'"), path)
            .toInt() == 0)
        refuse(QStringLiteral("The database %1 belongs to another program. Choose another file."), path);

    int known = 0;
    for (const Migration& migration : options.Migrations)
        known = std::max(known, migration.Number);
    if (firstValue(connection, QStringLiteral("SELECT MAX(number) FROM schema_migration"), path).toInt() >
        known)
        refuse(QStringLiteral("The database %1 was written by a newer version of this program. Install the "
                              "newer version on this computer."),
               path);
}

void inspectContent(const QString& path, const QByteArray& header, const DatabaseOptions& options)
{
    const QString name = uniqueConnectionName();
    const auto drop = qScopeGuard([&name] { QSqlDatabase::removeDatabase(name); });
    QSqlDatabase connection = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
    openForInspection(connection, path, header, options);
    inspect(connection, path, options);
    connection.close();
}

} // namespace

void checkDatabaseFile(const QString& path, OpenMode mode, const DatabaseOptions& options)
{
    const QFileInfo file(path);
    if (file.isDir())
        refuse(QStringLiteral("The database %1 cannot be opened: it is a folder. Choose a file."), path);
    checkFolder(file, options);
    if (!file.exists()) {
        if (mode == OpenMode::ExistingOnly)
            refuse(QStringLiteral("The database %1 does not exist. Check the path."), path);
        if (!QFileInfo(file.absolutePath()).isWritable())
            refuse(
                QStringLiteral("The database %1 cannot be made: its folder is read-only. Ask for permission "
                               "to write to the folder."),
                path);
        return;
    }
    if (!file.isFile())
        refuse(QStringLiteral("The database %1 cannot be opened: it is not a file. Choose a file."), path);

    const QByteArray header = readHeader(path);
    if (!header.isEmpty())
        checkHeader(header, path);
    checkWritable(file);
    if (!header.isEmpty())
        inspectContent(path, header, options);
}

bool isNetworkFileSystem(const QByteArray& fileSystemType)
{
    static constexpr std::array names{"nfs",         "nfs4",          "cifs",  "smb3",           "smb2",
                                      "smbfs",       "ncpfs",         "afs",   "ceph",           "fuse.sshfs",
                                      "fuse.rclone", "fuse.s3fs",     "coda",  "fuse.glusterfs", "9p",
                                      "fuse.davfs",  "fuse.smbnetfs", "davfs", "fuse.gvfsd-fuse"};
    const QByteArray type = fileSystemType.toLower();
    return std::any_of(names.begin(), names.end(), [&type](const char* name) { return type == name; });
}

QString uniqueConnectionName()
{
    static std::atomic<int> last = 0;
    return QStringLiteral("tavrin_%1").arg(++last);
}

} // namespace tavrin
