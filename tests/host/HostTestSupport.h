#pragma once

#include "base/failure/Error.h"
#include "base/values/Variant.h"
#include "host/database/Database.h"
#include "host/database/DatabaseOptions.h"
#include "host/database/Statement.h"
#include "support/TestCase.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <optional>

// What the tests of the host share.

namespace tavrin::test {

/// The text of the `Error` that `action` raises; "" when it raises none.
template <typename Action>
QString errorOf(Action action)
{
    try {
        action();
    } catch (const Error& error) {
        return error.Description;
    }
    return {};
}

/// The number of the `Error` that `action` raises; 0 when it raises none.
template <typename Action>
int errorNumberOf(Action action)
{
    try {
        action();
    } catch (const Error& error) {
        return error.Number;
    }
    return 0;
}

inline QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

inline void writeFile(const QString& path, const QByteArray& content)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write %s", qPrintable(path));
}

inline QByteArray sha256Of(const QString& path)
{
    return QCryptographicHash::hash(contentOf(path), QCryptographicHash::Sha256).toHex();
}

inline QStringList filesIn(const QString& folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                                  QDir::Name);
}

/// The first value that a query gives; Null when it gives none.
inline QVariant firstOf(Database& database, const QString& sql, const QVariantList& values = {})
{
    Statement statement(database, sql);
    statement.run(values);
    return statement.next() ? statement.value(0) : Null();
}

/// Options under which a lock is reported at once.
inline DatabaseOptions impatient()
{
    DatabaseOptions options;
    options.BusyTimeoutMs = 50;
    return options;
}

} // namespace tavrin::test
