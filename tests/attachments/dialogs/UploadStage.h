#pragma once

#include "base/failure/Error.h"
#include "support/Fakes.h"
#include "testing/FakeDesktop.h"
#include "testing/FakeHost.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

namespace tavrin::test {

/// A host whose store is a folder, a workstation's folder with files, and a clock that stands at
/// 13:05:07 of 1 February 2016.
struct UploadStage
{
    UploadStage()
        : installation(host)
    {
        host.state().settings.insert(QStringLiteral("_Global/Attachments Folder"), store.path());
    }

    /// Makes a file of the workstation and returns its path.
    QString file(const QString& name, const QByteArray& content = "content") const
    {
        const QString path = disk.filePath(name);
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            throw Error(QStringLiteral("cannot write ") + path);
        return path;
    }
    QStringList files(const QStringList& names) const
    {
        QStringList paths;
        for (const QString& name : names)
            paths << file(name);
        return paths;
    }
    /// The uploads of these paths fail from now on.
    void fail(const QStringList& paths, const QString& reason = QStringLiteral("The disk is full."))
    {
        for (const QString& path : paths)
            host.state().transferFailures.insert(path, reason);
    }
    /// What the store holds under a stored name; nothing when there is no such file.
    QByteArray stored(QString name) const
    {
        QFile file(store.filePath(name.replace(u'\\', u'/')));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    /// The calls of the host that begin so.
    QStringList calls(const QString& operation)
    {
        return host.state().log.filter(QRegularExpression(u'^' + operation));
    }

    QTemporaryDir disk;
    QTemporaryDir store;
    FakeHost host;
    HostInstallation installation;
    FakeClock clock{QDateTime(QDate(2016, 2, 1), QTime(13, 5, 7))};
};

inline const QString LongReason = QStringLiteral(
    "The file could not be copied to the attachments folder, because the server that holds it has not "
    "answered for a minute: //records-server.example/shared/departments/attachments/archive/2016");

} // namespace tavrin::test
