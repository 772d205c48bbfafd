#pragma once

#include "support/Fakes.h"
#include "testing/FakeHost.h"

namespace tavrin::test {

/// A fake host of which a derived one replaces what a picture shows.
class ForwardingHost : public Host
{
public:
    FakeHost fake;

    HostServices& hostServices() override { return fake.hostServices(); }
    XmlFactory& xmlFactory() override { return fake.xmlFactory(); }
    Session& session() override { return fake.session(); }
    UiServices& uiServices() override { return fake.uiServices(); }
    ListFilling& listFilling() override { return fake.listFilling(); }
    Images& images() override { return fake.images(); }
    Environment& environment() override { return fake.environment(); }
    std::unique_ptr<TableCodeCache> newTableCodeCache() override { return fake.newTableCodeCache(); }
    std::unique_ptr<EmployeeListCache> newEmployeeListCache() override { return fake.newEmployeeListCache(); }
    std::unique_ptr<OffenseListCache> newOffenseListCache() override { return fake.newOffenseListCache(); }
    std::unique_ptr<UsersCache> newUsersCache() override { return fake.newUsersCache(); }
    std::unique_ptr<ThumbnailService> newThumbnailService() override { return fake.newThumbnailService(); }
    std::unique_ptr<AttachmentFolders> newAttachmentFolders() override { return fake.newAttachmentFolders(); }
    std::unique_ptr<tvCustomDictionary> newCustomDictionary() override { return fake.newCustomDictionary(); }
    std::unique_ptr<Downloader> newDownloader() override { return fake.newDownloader(); }
    std::unique_ptr<Uploader> newUploader() override { return fake.newUploader(); }
    tvTableCollectionPtr newTableCollection() override { return fake.newTableCollection(); }
    std::shared_ptr<NibrsModuleService> createNibrsModule(const QString& name) override
    {
        return fake.createNibrsModule(name);
    }
};

} // namespace tavrin::test
