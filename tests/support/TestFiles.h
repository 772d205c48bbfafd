#pragma once

#include "base/failure/Error.h"
#include "support/ChildProcess.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QString>

// Files and failures in tests that need no host.

namespace tavrin::test {

/// The text of the `Error` that `action` raises; "" when it raises none.
template <typename Action>
QString failureOf(Action action)
{
    try {
        action();
    } catch (const Error& error) {
        return error.Description;
    }
    return {};
}

inline QByteArray bytesOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<cannot be read>");
}

inline void putFile(const QString& path, const QByteArray& content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write %s", qPrintable(path));
}

/// All that lies in a folder, hidden files too.
inline QStringList namesIn(const QString& folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                                  QDir::Name);
}

} // namespace tavrin::test
