#include "Workspace.h"

#include "base/Error.h"
#include "frame/modUtils.h"
#include "host/SampleData.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace tavrin::workbench {

namespace {

QString databasePath(const Options& options)
{
    if (!options.database.isEmpty())
        return options.database;
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation);
    if (!QDir().mkpath(folder)) {
        throw Error(QStringLiteral("The folder %1 could not be made. Check that you may write there, or name "
                                   "a database with --db.")
                        .arg(folder));
    }
    return QDir(folder).filePath(QStringLiteral("records.sqlite"));
}

} // namespace

Workspace::Workspace(const Options& options)
    : m_options(options)
    , m_database(Database::open(databasePath(options)))
    , m_isFirstStart(SampleData(options.dataFolder).fillOnce(*m_database))
    , m_host(std::make_unique<ReferenceHost>(*m_database, ReferenceHostOptions{options.user, {}, {}}))
    , m_installation(std::make_unique<HostInstallation>(*m_host))
    , m_store(std::make_unique<RecordStore>(*m_database))
{
    m_host->setTheme(isDark(options.theme) ? Theme::Dark : Theme::Light);
    modUtils::ReleaseNibrsModule(); // one of another workspace is not this host's
}

} // namespace tavrin::workbench
