#include "frame/host_contracts/Host.h"

#include "base/failure/Error.h"
#include "frame/host_contracts/NotOffered.h"

#include <utility>

namespace tavrin {

namespace {
thread_local Host* installedHost = nullptr;
}

struct Host::Private
{
    explicit Private(Host& host)
        : listFilling(host)
    {
    }

    HostServices hostServices;
    XmlFactory xmlFactory;
    Session session;
    UiServices uiServices;
    ListFilling listFilling;
    Images images;
    Environment environment;
};

Host::Host()
    : d(std::make_unique<Private>(*this))
{
}

Host::~Host() = default;

HostServices& Host::hostServices()
{
    return d->hostServices;
}

XmlFactory& Host::xmlFactory()
{
    return d->xmlFactory;
}

Session& Host::session()
{
    return d->session;
}

UiServices& Host::uiServices()
{
    return d->uiServices;
}

ListFilling& Host::listFilling()
{
    return d->listFilling;
}

Images& Host::images()
{
    return d->images;
}

Environment& Host::environment()
{
    return d->environment;
}

std::unique_ptr<TableCodeCache> Host::newTableCodeCache()
{
    return std::make_unique<TableCodeCache>();
}

std::unique_ptr<EmployeeListCache> Host::newEmployeeListCache()
{
    notOffered(QStringLiteral("Host.newEmployeeListCache"));
}

std::unique_ptr<OffenseListCache> Host::newOffenseListCache()
{
    notOffered(QStringLiteral("Host.newOffenseListCache"));
}

std::unique_ptr<UsersCache> Host::newUsersCache()
{
    notOffered(QStringLiteral("Host.newUsersCache"));
}

std::unique_ptr<ThumbnailService> Host::newThumbnailService()
{
    return std::make_unique<ThumbnailService>();
}

std::unique_ptr<AttachmentFolders> Host::newAttachmentFolders()
{
    notOffered(QStringLiteral("Host.newAttachmentFolders"));
}

std::unique_ptr<tvCustomDictionary> Host::newCustomDictionary()
{
    notOffered(QStringLiteral("Host.newCustomDictionary"));
}

std::unique_ptr<Downloader> Host::newDownloader()
{
    notOffered(QStringLiteral("Host.newDownloader"));
}

std::unique_ptr<Uploader> Host::newUploader()
{
    notOffered(QStringLiteral("Host.newUploader"));
}

tvTableCollectionPtr Host::newTableCollection()
{
    notOffered(QStringLiteral("Host.newTableCollection"));
}

std::shared_ptr<NibrsModuleService> Host::createNibrsModule(const QString& className)
{
    notOffered(QStringLiteral("the component ") + className);
}

Host& currentHost()
{
    if (!installedHost)
        throw Error(
            QStringLiteral("No host is installed on this thread; a HostInstallation must live before the "
                           "first control is made"));
    return *installedHost;
}

HostInstallation::HostInstallation(Host& host)
    : m_before(std::exchange(installedHost, &host))
{
}

HostInstallation::~HostInstallation()
{
    installedHost = m_before;
}

} // namespace tavrin
