#include "workbench/application/Workspace.h"

#include "base/failure/Error.h"
#include "frame/modUtils.h"
#include "host/samples/SampleData.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace tavrin::workbench {

namespace {

void checkFolder(const QString& folder, const QString& option)
{
    if (!folder.isEmpty() && !QFileInfo(folder).isDir()) {
        throw Error(QStringLiteral("There is no folder %1. Name a folder that exists with %2, or leave the "
                                   "option out.")
                        .arg(folder, option));
    }
}

/// The options with the database named, once the folders that they name are found to exist.
Options checked(Options options)
{
    checkFolder(options.dataFolder, QStringLiteral("--data"));
    checkFolder(options.formsFolder, QStringLiteral("--forms"));
    if (!options.database.isEmpty())
        return options;
    options.database = defaultDatabasePath();
    const QString folder = QFileInfo(options.database).absolutePath();
    if (!QDir().mkpath(folder)) {
        throw Error(QStringLiteral("The folder %1 could not be made. Check that you may write there, or name "
                                   "a database with --db.")
                        .arg(folder));
    }
    return options;
}

bool fill(Database& database, const QString& dataFolder)
{
    try {
        return SampleData(dataFolder).fillOnce(database);
    } catch (const Error& error) {
        if (dataFolder.isEmpty())
            throw;
        const QString stop = error.Description.endsWith(u'.') ? QString() : QStringLiteral(".");
        throw Error(error.Description + stop + QStringLiteral(" Mend that, or start without --data."));
    }
}

/// The program that makes thumbnails: beside this one where it was built, else in its place below the prefix.
QString thumbnailer()
{
    const QDir programs(QCoreApplication::applicationDirPath());
    QString beside = programs.filePath(QStringLiteral("tavrin_thumbnailer"));
    if (QFileInfo::exists(beside))
        return beside;
    return programs.filePath(QStringLiteral("../" TAVRIN_LIBEXEC_DIR "/tavrin_thumbnailer"));
}

void checkUser(ReferenceHost& host, const Options& options)
{
    if (host.newUsersCache()->UserDisplayName(options.user).isEmpty()) {
        throw Error(QStringLiteral("The database %1 has no user \"%2\". Name one of its users with --user.")
                        .arg(options.database, options.user));
    }
}

} // namespace

Workspace::NewFile::NewFile(const QString& path)
    : m_path(path)
{
    // An empty file is a new database. Whoever makes it knows that nobody else has.
    QFile file(path);
    m_isToBeRemoved = file.open(QIODevice::WriteOnly | QIODevice::NewOnly);
}

Workspace::NewFile::~NewFile()
{
    if (!m_isToBeRemoved)
        return;
    for (const QString& ending : {QString(), QStringLiteral("-journal")})
        QFile::remove(m_path + ending);
}

Workspace::Workspace(const Options& options)
    : m_options(checked(options))
    , m_newFile(m_options.database)
    , m_database(Database::open(m_options.database))
    , m_isFirstStart(fill(*m_database, options.dataFolder))
    , m_host(std::make_unique<ReferenceHost>(*m_database,
                                             ReferenceHostOptions{options.user, options.workstationFolder,
                                                                  options.downloadsFolder, thumbnailer()}))
    , m_installation(std::make_unique<HostInstallation>(*m_host))
    , m_store(std::make_unique<RecordStore>(*m_database))
{
    m_host->setTheme(isDark(options.theme) ? Theme::Dark : Theme::Light);
    checkUser(*m_host, m_options);
    m_newFile.keep();
    modUtils::ReleaseNibrsModule(); // one of another workspace is not this host's
}

} // namespace tavrin::workbench
