#include "testing/FakeHost.h"

#include "base/values/Variant.h"
#include "testing/FakeCaches.h"
#include "testing/FakeListFilling.h"
#include "testing/FakePictures.h"
#include "testing/FakeServices.h"
#include "testing/FakeTransfer.h"

#include <memory>
#include <utility>

namespace tavrin::testing {

void FakeHostState::called(const QString& operation)
{
    ++calls;
    log << operation;
    if (failure)
        throw Error(*failure);
    if (const auto own = failures.find(operation); own != failures.end())
        throw Error(own->second);
}

QList<TableValue> FakeHostState::valuesOf(TableNumber table, bool includeInactive,
                                          const QVariant& alwaysIncluded) const
{
    QList<TableValue> values = tables.value(table);
    values.removeIf([&](const TableValue& value) {
        return !includeInactive && !isActive(table, value) && !SameValue(value.Value, alwaysIncluded);
    });
    return values;
}

bool FakeHostState::isActive(TableNumber table, const TableValue& value) const
{
    return !inactive.value(table).contains(value.Value.toInt());
}

struct FakeHost::Private
{
    std::shared_ptr<FakeHostState> state = std::make_shared<FakeHostState>();
    std::unique_ptr<HostServices> hostServices = makeFakeHostServices(state);
    std::unique_ptr<XmlFactory> xmlFactory = makeFakeXmlFactory(state);
    std::unique_ptr<Session> session = makeFakeSession(state);
    std::unique_ptr<UiServices> uiServices = makeFakeUiServices(state);
    std::unique_ptr<ListFilling> listFilling = makeFakeListFilling(state);
    std::unique_ptr<Images> images = makeFakeImages(state);
    std::unique_ptr<Environment> environment = makeFakeEnvironment(state);
};

FakeHost::FakeHost()
    : d(std::make_unique<Private>())
{
}

FakeHost::~FakeHost() = default;

FakeHostState& FakeHost::state()
{
    return *d->state;
}

int FakeHost::calls() const
{
    return d->state->calls;
}

void FakeHost::setTable(TableNumber table, const QList<TableValue>& values)
{
    d->state->tables.insert(table, values);
}

void FakeHost::failWith(std::optional<Error> error)
{
    d->state->failure = std::move(error);
}

HostServices& FakeHost::hostServices()
{
    return *d->hostServices;
}

XmlFactory& FakeHost::xmlFactory()
{
    return *d->xmlFactory;
}

Session& FakeHost::session()
{
    return *d->session;
}

UiServices& FakeHost::uiServices()
{
    return *d->uiServices;
}

ListFilling& FakeHost::listFilling()
{
    return *d->listFilling;
}

Images& FakeHost::images()
{
    return *d->images;
}

Environment& FakeHost::environment()
{
    return *d->environment;
}

std::unique_ptr<TableCodeCache> FakeHost::newTableCodeCache()
{
    d->state->called(QStringLiteral("new TableCodeCache"));
    return makeFakeTableCodeCache(d->state);
}

std::unique_ptr<EmployeeListCache> FakeHost::newEmployeeListCache()
{
    d->state->called(QStringLiteral("new EmployeeListCache"));
    return makeFakeEmployeeListCache(d->state);
}

std::unique_ptr<OffenseListCache> FakeHost::newOffenseListCache()
{
    d->state->called(QStringLiteral("new OffenseListCache"));
    return makeFakeOffenseListCache(d->state);
}

std::unique_ptr<UsersCache> FakeHost::newUsersCache()
{
    d->state->called(QStringLiteral("new UsersCache"));
    return makeFakeUsersCache(d->state);
}

std::unique_ptr<ThumbnailService> FakeHost::newThumbnailService()
{
    d->state->called(QStringLiteral("new ThumbnailService"));
    return makeFakeThumbnailService(d->state);
}

std::unique_ptr<AttachmentFolders> FakeHost::newAttachmentFolders()
{
    d->state->called(QStringLiteral("new AttachmentFolders"));
    return makeFakeAttachmentFolders(d->state);
}

std::unique_ptr<tvCustomDictionary> FakeHost::newCustomDictionary()
{
    d->state->called(QStringLiteral("new tvCustomDictionary"));
    return makeFakeCustomDictionary(d->state);
}

std::unique_ptr<Downloader> FakeHost::newDownloader()
{
    d->state->called(QStringLiteral("new Downloader"));
    return d->state->makeDownloader ? d->state->makeDownloader() : makeFakeDownloader(d->state);
}

std::unique_ptr<Uploader> FakeHost::newUploader()
{
    d->state->called(QStringLiteral("new Uploader"));
    return makeFakeUploader(d->state);
}

tvTableCollectionPtr FakeHost::newTableCollection()
{
    d->state->called(QStringLiteral("new tvTableCollection"));
    const auto collection = std::make_shared<FakeCollection>();
    d->state->madeCollection = collection;
    return collection;
}

std::shared_ptr<NibrsModuleService> FakeHost::createNibrsModule(const QString& className)
{
    d->state->called(QStringLiteral("create ") + className);
    if (!d->state->hasNibrs || className != QLatin1String("NIBRS.Singletons"))
        return Host::createNibrsModule(className);
    return makeFakeNibrsModule(d->state);
}

} // namespace tavrin::testing
