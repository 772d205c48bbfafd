#include "host/services/ReferenceHost.h"

#include "base/failure/Error.h"
#include "host/lists/HostCaches.h"
#include "host/records/RecordCollection.h"
#include "host/services/HostEnvironment.h"
#include "host/services/HostSession.h"
#include "host/services/HostUiServices.h"
#include "host/services/ReferenceHostServices.h"
#include "host/store/AttachmentStore.h"
#include "host/store/LocalCopies.h"
#include "host/store/StoreDownloader.h"
#include "host/store/StoreSweep.h"
#include "host/store/StoreUploader.h"
#include "host/store/Thumbnails.h"
#include "host/words/CustomWordTable.h"

#include <QCryptographicHash>
#include <QFileInfo>
#include <QStandardPaths>

namespace tavrin {

namespace {

/// Two databases must not take each other's custom words away.
QString workstationFolder(const ReferenceHostOptions& options, const Database& database)
{
    if (!options.WorkstationFolder.isEmpty())
        return options.WorkstationFolder;
    constexpr int length = 16; // digits that tell the databases of a workstation apart
    const QString path = QFileInfo(database.path()).absoluteFilePath();
    const QByteArray hash = QCryptographicHash::hash(path.toUtf8(), QCryptographicHash::Sha256).toHex();
    return QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation) +
           QStringLiteral("/dictionaries/") + QString::fromLatin1(hash.left(length));
}

} // namespace

class ReferenceHost::Private
{
public:
    Private(Database& opened, const ReferenceHostOptions& options)
        : database(opened)
        , dataVersion(opened.dataVersion())
        , lists(std::make_shared<HostListsHolder>())
        , environment(workstationFolder(options, database), options.DownloadsFolder,
                      options.InstalledDictionary)
        , hostServices(*lists, database, environment)
        , session(*lists, options.UserId)
        , thumbnails([this](const QString& path) { return openStoreFile(*store, path); }, options.Thumbnailer)
    {
        lists->Lists = HostLists::read(database);
        store = std::make_shared<AttachmentStore>(lists, QFileInfo(database.path()).absolutePath());
        sweep = std::make_unique<StoreSweep>(store->baseFolders(), folderOfLocalCopies());
    }

    Database& database;
    qint64 dataVersion;                     // read before the lists, so that no change falls in between
    std::shared_ptr<HostListsHolder> lists; // caches that controls keep share it
    HostEnvironment environment;
    ReferenceHostServices hostServices;
    HostSession session;
    HostUiServices uiServices;
    AttachmentStorePtr store; // transfers that controls keep share it
    std::shared_ptr<LocalCopies> localCopies = std::make_shared<LocalCopies>();
    std::unique_ptr<StoreSweep> sweep;
    Thumbnails thumbnails;
};

ReferenceHost::ReferenceHost(Database& database, const ReferenceHostOptions& options)
    : d(std::make_unique<Private>(database, options))
{
}

ReferenceHost::~ReferenceHost() = default;

void ReferenceHost::refreshCaches()
{
    const qint64 version = d->database.dataVersion();
    const auto fresh = HostLists::read(d->database);
    d->dataVersion = version;
    const CacheRefreshInfo info{fresh->differencesFrom(*d->lists->Lists)};
    // Most changes of the database are saved records: the lists then stay, with the documents built for them.
    if (info.Changed.isEmpty())
        return;
    d->lists->Lists = fresh;
    d->hostServices.Events().CacheRefreshed.raise(info);
}

bool ReferenceHost::refreshIfChanged()
{
    if (d->database.dataVersion() == d->dataVersion)
        return false;
    refreshCaches();
    return true;
}

std::optional<QDate> ReferenceHost::employeeLeftOn(int officerNo) const
{
    const EmployeeRow* employee = d->lists->Lists->employee(officerNo);
    return employee && employee->LeftOn.isValid() ? std::optional(employee->LeftOn) : std::nullopt;
}

QString ReferenceHost::attachmentFile(const QString& path) const
{
    return d->store->platformPath(path);
}

void ReferenceHost::waitForSweep()
{
    d->sweep->wait();
}

void ReferenceHost::setTheme(Theme theme)
{
    d->uiServices.setTheme(theme);
}

Theme ReferenceHost::theme() const
{
    return d->uiServices.theme();
}

HostServices& ReferenceHost::hostServices()
{
    return d->hostServices;
}

Session& ReferenceHost::session()
{
    return d->session;
}

UiServices& ReferenceHost::uiServices()
{
    return d->uiServices;
}

Environment& ReferenceHost::environment()
{
    return d->environment;
}

std::unique_ptr<TableCodeCache> ReferenceHost::newTableCodeCache()
{
    return std::make_unique<HostTableCodeCache>(d->lists);
}

std::unique_ptr<EmployeeListCache> ReferenceHost::newEmployeeListCache()
{
    return std::make_unique<HostEmployeeListCache>(d->lists);
}

std::unique_ptr<OffenseListCache> ReferenceHost::newOffenseListCache()
{
    return std::make_unique<HostOffenseListCache>(d->lists);
}

std::unique_ptr<UsersCache> ReferenceHost::newUsersCache()
{
    return std::make_unique<HostUsersCache>(d->lists);
}

std::unique_ptr<ThumbnailService> ReferenceHost::newThumbnailService()
{
    return makeThumbnailService(d->thumbnails);
}

std::unique_ptr<AttachmentFolders> ReferenceHost::newAttachmentFolders()
{
    return std::make_unique<HostAttachmentFolders>(d->lists);
}

std::unique_ptr<tvCustomDictionary> ReferenceHost::newCustomDictionary()
{
    return std::make_unique<CustomWordTable>(d->database);
}

std::unique_ptr<Downloader> ReferenceHost::newDownloader()
{
    return std::make_unique<StoreDownloader>(d->store, d->localCopies);
}

std::unique_ptr<Uploader> ReferenceHost::newUploader()
{
    return std::make_unique<StoreUploader>(d->store);
}

tvTableCollectionPtr ReferenceHost::newTableCollection()
{
    return std::make_shared<RecordCollection>();
}

std::shared_ptr<NibrsModuleService> ReferenceHost::createNibrsModule(const QString& className)
{
    if (className != QStringLiteral("NIBRS.Singletons"))
        return Host::createNibrsModule(className);
    return std::make_shared<HostNibrsModule>(d->lists);
}

} // namespace tavrin
