#include "attachments/files/StoredName.h"

#include "base/failure/Error.h"
#include "base/values/StorePath.h"
#include "frame/desktop/Desktop.h"

#include <QDeadlineTimer>
#include <QFileInfo>
#include <QSet>
#include <QThread>

#include <filesystem>
#include <system_error>

namespace tavrin {

namespace {

constexpr qsizetype LongestName = 255; // bytes, on all that stores live on
constexpr qsizetype StampLength = 15;  // the stamp and the line below it
constexpr int LongestWait = 1200;      // milliseconds
constexpr int BetweenLooks = 10;       // milliseconds

/// Qt says that a file does not exist, but not why it cannot be seen.
void requireFile(const QString& path)
{
    if (path.contains(QChar::Null) || !path.isValidUtf16())
        throw Error(QStringLiteral("The name of this file holds a character that cannot be used. Rename the "
                                   "file and add it again."));
    std::error_code problem;
    const std::filesystem::path native(path.toStdU16String());
    static_cast<void>(std::filesystem::last_write_time(native, problem));
    if (problem)
        throw Error(QString::fromLocal8Bit(problem.message()));
}

void requireRoomForTheStamp(const QString& name)
{
    const qsizetype bytes = name.toUtf8().size();
    if (bytes > LongestName - StampLength)
        throw Error(
            QStringLiteral("The name of this file is too long: it has %1 bytes and may have %2, because "
                           "the time stamp that is put before it needs %3 bytes. Rename the file and "
                           "add it again.")
                .arg(bytes)
                .arg(LongestName - StampLength)
                .arg(StampLength));
}

qint64 secondNow()
{
    return desktop().clock->now().toSecsSinceEpoch();
}

/// What has arrived in the newest second; no more is ever asked for.
struct Arrivals
{
    qint64 second = 0;
    QSet<QString> destinations;
};

Arrivals& arrivals()
{
    static Arrivals instance;
    return instance;
}

} // namespace

QString storedName(const QDateTime& created, const QDateTime& now, const QString& fileName)
{
    const QString folder = created.toString(QStringLiteral("yyyy\\MM"));
    const QString stamp = now.toString(QStringLiteral("yyyyMMddHHmmss"));
    return StorePath::join(folder, stamp + u'_' + fileName);
}

QString uploadedFileName(const QString& path)
{
    QString name = QFileInfo(path).fileName().replace(u'\\', u'_');
    if (StorePath::hasDrive(name))
        name.replace(1, 1, u'_'); // the colon behind the letter
    return name;
}

QDateTime creationDate(const QDateTime& birth, const QDateTime& changed)
{
    if (birth.isValid())
        return birth;
    return changed.isValid() ? changed : QDateTime::fromMSecsSinceEpoch(0);
}

QDateTime creationDateOf(const QString& path)
{
    requireFile(path);
    const QFileInfo file(path);
    return creationDate(file.birthTime(), file.lastModified());
}

QString MakeStoredName(const QString& path)
{
    const QDateTime created = creationDateOf(path);
    if (QFileInfo(path).isDir())
        throw Error(QStringLiteral("This is a folder. Only files can be attached."));
    const QString name = uploadedFileName(path);
    requireRoomForTheStamp(name);
    return storedName(created, desktop().clock->now(), name);
}

void rememberStored(const QString& destination)
{
    const qint64 second = secondNow();
    if (arrivals().second != second)
        arrivals() = {second, {}};
    arrivals().destinations.insert(destination.toCaseFolded());
}

bool wasStored(const QString& destination)
{
    return arrivals().destinations.contains(destination.toCaseFolded());
}

void awaitNextSecond()
{
    const qint64 second = secondNow();
    const QDeadlineTimer deadline(LongestWait);
    while (secondNow() == second && !deadline.hasExpired())
        QThread::msleep(BetweenLooks);
}

} // namespace tavrin
