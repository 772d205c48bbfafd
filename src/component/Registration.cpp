#include "component/Registration.h"

#include "base/files/FileWriter.h"
#include "component/CallResult.h"
#include "component/ClassRegister.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QSet>
#include <QStandardPaths>
#include <QStringDecoder>
#include <QStringList>

#include <algorithm>
#include <functional>
#include <vector>

namespace tavrin {

namespace {

constexpr int LockWaitMs = 10000;

/// One group of the file, or what stands before the first.
struct Group
{
    QString name;
    QStringList lines; // with the heading
    QString library;
};

using Groups = std::vector<Group>;

bool isRemark(const QString& line)
{
    const QString text = line.trimmed();
    return text.isEmpty() || text.startsWith(QLatin1Char(';')) || text.startsWith(QLatin1Char('#'));
}

/// Reads the file line by line.
class Reader
{
public:
    explicit Reader(const QString& path)
        : m_path(path)
    {
    }

    Groups read(const QByteArray& content)
    {
        // Stateless, so that a text that is cut inside a character is an error.
        QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
        const QString text = decoder(content);
        m_groups.emplace_back();
        if (decoder.hasError() || text.contains(QChar(0)))
            throw damaged(QStringLiteral("it is no text"));
        QStringList lines = text.split(QLatin1Char('\n'));
        if (lines.last().isEmpty())
            lines.removeLast();
        for (QString& line : lines) {
            ++m_line;
            if (line.endsWith(QLatin1Char('\r')))
                line.chop(1);
            readLine(line);
        }
        return std::move(m_groups);
    }

private:
    CallError damaged(const QString& why) const
    {
        const QString place = m_line > 0 ? QStringLiteral(", line %1").arg(m_line) : QString();
        return {TV_E_REGISTRATION,
                QStringLiteral("The file of registrations is damaged: %1%2: %3").arg(m_path, place, why)};
    }

    void readLine(const QString& line)
    {
        if (line.startsWith(QLatin1Char('['))) {
            beginGroup(line);
        } else if (!isRemark(line)) {
            const auto equals = line.indexOf(QLatin1Char('='));
            if (equals < 1)
                throw damaged(QStringLiteral("neither a heading nor an entry"));
            if (m_groups.size() == 1)
                throw damaged(QStringLiteral("an entry without a heading"));
            if (line.left(equals) == QLatin1String("Library"))
                m_groups.back().library = line.mid(equals + 1);
        }
        m_groups.back().lines << line;
    }

    void beginGroup(const QString& line)
    {
        const QString heading = line.trimmed();
        if (!heading.endsWith(QLatin1Char(']')) || heading.size() < 3)
            throw damaged(QStringLiteral("a heading without an end"));
        const QString name = heading.mid(1, heading.size() - 2);
        if (m_names.contains(name))
            throw damaged(QStringLiteral("a second group %1").arg(name));
        m_names.insert(name);
        m_groups.push_back({name, {}, {}});
    }

    QString m_path;
    int m_line = 0;
    Groups m_groups;
    QSet<QString> m_names;
};

/// Takes the groups out. Comments behind a group's last entry may be those of the next one, and stay.
void remove(Groups& groups, const std::function<bool(const Group&)>& isGone)
{
    for (auto group = groups.begin() + 1; group != groups.end();) {
        if (!isGone(*group)) {
            ++group;
            continue;
        }
        auto last = std::find_if_not(group->lines.rbegin(), group->lines.rend(), isRemark).base();
        QStringList& before = std::prev(group)->lines;
        std::copy_if(last, group->lines.end(), std::back_inserter(before),
                     [](const QString& line) { return !line.trimmed().isEmpty(); });
        group = groups.erase(group);
    }
}

/// Whether entries are those of the library at a path. The loader may know one file by several names: by
/// links to it and to its folders.
class SameLibrary
{
public:
    explicit SameLibrary(const QString& library)
        : m_library(library)
        , m_file(fileAt(library))
    {
    }

    bool operator()(const Group& group) const
    {
        return group.library == m_library || (!m_file.isEmpty() && fileAt(group.library) == m_file);
    }

private:
    /// "" for what does not exist, and for a name that the loader looks for in its own folders.
    static QString fileAt(const QString& path)
    {
        return QDir::isAbsolutePath(path) ? QFileInfo(path).canonicalFilePath() : QString();
    }

    QString m_library;
    QString m_file;
};

QStringList entry(const PublicClass& one, const QString& library)
{
    return {QStringLiteral("[%1]").arg(one.name),
            QStringLiteral("Library=") + library,
            QStringLiteral("Version=") + QLatin1String(TypeLibraryVersion),
            QStringLiteral("TypeLibrary=") + QLatin1String(TypeLibraryName),
            QStringLiteral("Interface=") + one.defaultInterface,
            QStringLiteral("Events=") + one.eventInterface,
            QStringLiteral("Contract=") + one.contract};
}

Groups readGroups(const QString& path)
{
    QFile file(path);
    if (!file.exists())
        return {Group()};
    if (!file.open(QIODevice::ReadOnly))
        throw CallError(
            TV_E_REGISTRATION,
            QStringLiteral("The file of registrations cannot be read: %1: %2").arg(path, file.errorString()));
    return Reader(path).read(file.readAll());
}

void writeGroups(const QString& path, const Groups& groups)
{
    QStringList lines;
    for (const Group& group : groups) {
        if (!lines.isEmpty() && !group.name.isEmpty() && !lines.last().isEmpty())
            lines << QString();
        lines << group.lines;
    }
    while (!lines.isEmpty() && lines.last().trimmed().isEmpty())
        lines.removeLast();
    if (!lines.isEmpty())
        replaceFile(path, (lines.join(QLatin1Char('\n')) + QLatin1Char('\n')).toUtf8());
    else if (QFile::exists(path) && !QFile::remove(path))
        throw Error(QStringLiteral("%1 cannot be removed").arg(path));
}

/// Changes the file while no other program does.
void change(const std::function<void(Groups&)>& edit, bool makesFile)
{
    const QString path = registrationPath();
    const QString folder = QFileInfo(path).path();
    if (!makesFile && !QFile::exists(path))
        return;
    const auto refused = [&](const QString& why) {
        return CallError(
            TV_E_CANNOTWRITE,
            QStringLiteral("The file of registrations cannot be written: %1: %2").arg(path, why));
    };
    if (!QDir().mkpath(folder))
        throw refused(QStringLiteral("its folder cannot be made"));
    QLockFile lock(path + QStringLiteral(".lock"));
    if (!lock.tryLock(LockWaitMs))
        throw refused(lock.error() == QLockFile::LockFailedError
                          ? QStringLiteral("another program holds it")
                          : QStringLiteral("its folder cannot be written"));
    Groups groups = readGroups(path);
    edit(groups);
    try {
        writeGroups(path, groups);
    } catch (const Error& error) {
        throw refused(error.Description);
    }
}

} // namespace

QString registrationPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QStringLiteral("/TVBoundControls/components.ini");
}

void registerClasses(const QString& library)
{
    if (library.isEmpty() || library.contains(QLatin1Char('\n')))
        throw CallError(TV_E_CANNOTWRITE,
                        QStringLiteral("The library's path cannot be registered: %1").arg(library));
    change(
        [&](Groups& groups) {
            remove(groups, [isOwn = SameLibrary(library)](const Group& group) {
                return isOwn(group) || findPublicClass(group.name);
            });
            for (const PublicClass& one : publicClasses())
                groups.push_back({one.name, entry(one, library), library});
        },
        true);
}

void unregisterClasses(const QString& library)
{
    change([&](Groups& groups) { remove(groups, SameLibrary(library)); }, false);
}

} // namespace tavrin
