#include "support/FakeHost.h"

#include "base/values/Variant.h"
#include "support/FakeCaches.h"
#include "support/FakeListFilling.h"
#include "support/FakePictures.h"
#include "support/FakeServices.h"
#include "support/FakeTransfer.h"

namespace tavrin::test {

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

FakeHost::FakeHost()
    : m_state(std::make_shared<FakeHostState>())
    , m_hostServices(makeFakeHostServices(m_state))
    , m_xmlFactory(makeFakeXmlFactory(m_state))
    , m_session(makeFakeSession(m_state))
    , m_uiServices(makeFakeUiServices(m_state))
    , m_listFilling(makeFakeListFilling(m_state))
    , m_images(makeFakeImages(m_state))
    , m_environment(makeFakeEnvironment(m_state))
{
}

void FakeHost::setTable(TableNumber table, QList<TableValue> values)
{
    m_state->tables.insert(table, std::move(values));
}

std::unique_ptr<TableCodeCache> FakeHost::newTableCodeCache()
{
    m_state->called(QStringLiteral("new TableCodeCache"));
    return makeFakeTableCodeCache(m_state);
}

std::unique_ptr<EmployeeListCache> FakeHost::newEmployeeListCache()
{
    m_state->called(QStringLiteral("new EmployeeListCache"));
    return makeFakeEmployeeListCache(m_state);
}

std::unique_ptr<OffenseListCache> FakeHost::newOffenseListCache()
{
    m_state->called(QStringLiteral("new OffenseListCache"));
    return makeFakeOffenseListCache(m_state);
}

std::unique_ptr<UsersCache> FakeHost::newUsersCache()
{
    m_state->called(QStringLiteral("new UsersCache"));
    return makeFakeUsersCache(m_state);
}

std::unique_ptr<ThumbnailService> FakeHost::newThumbnailService()
{
    m_state->called(QStringLiteral("new ThumbnailService"));
    return makeFakeThumbnailService(m_state);
}

std::unique_ptr<AttachmentFolders> FakeHost::newAttachmentFolders()
{
    m_state->called(QStringLiteral("new AttachmentFolders"));
    return makeFakeAttachmentFolders(m_state);
}

std::unique_ptr<tvCustomDictionary> FakeHost::newCustomDictionary()
{
    m_state->called(QStringLiteral("new tvCustomDictionary"));
    return makeFakeCustomDictionary(m_state);
}

std::unique_ptr<Downloader> FakeHost::newDownloader()
{
    m_state->called(QStringLiteral("new Downloader"));
    return m_state->makeDownloader ? m_state->makeDownloader() : makeFakeDownloader(m_state);
}

std::unique_ptr<Uploader> FakeHost::newUploader()
{
    m_state->called(QStringLiteral("new Uploader"));
    return makeFakeUploader(m_state);
}

tvTableCollectionPtr FakeHost::newTableCollection()
{
    m_state->called(QStringLiteral("new tvTableCollection"));
    const auto collection = std::make_shared<FakeCollection>();
    m_state->madeCollection = collection;
    return collection;
}

std::shared_ptr<NibrsModuleService> FakeHost::createNibrsModule(const QString& className)
{
    m_state->called(QStringLiteral("create ") + className);
    if (!m_state->hasNibrs || className != QLatin1String("NIBRS.Singletons"))
        return Host::createNibrsModule(className);
    return makeFakeNibrsModule(m_state);
}

} // namespace tavrin::test
