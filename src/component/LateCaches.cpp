#include "base/values/Variant.h"
#include "component/LateHost.h"

namespace tavrin {

namespace {

/// What a host makes anew at each call, all of whose operations go the one way.
template <typename Service>
class Late : public Service
{
public:
    explicit Late(HostPortPtr port)
        : m_port(std::move(port))
    {
    }

protected:
    HostPort& port() const { return *m_port; }

private:
    HostPortPtr m_port;
};

class LateTableCodeCache final : public Late<TableCodeCache>
{
public:
    using Late::Late;
    XmlDocument Document(TableNumber table) override
    {
        const auto answer = port().askDocument("TableCodeCache", {table});
        return answer ? *answer : TableCodeCache::Document(table);
    }
    QString GetDescription(TableNumber table, const QVariant& code) override
    {
        const auto answer = port().ask("TableCodeCache", "GetDescription", {table, code});
        return answer ? ToText(*answer) : TableCodeCache::GetDescription(table, code);
    }
};

/// Both lists of numbered entries.
template <typename Service>
class LateNumberedCache final : public Late<Service>
{
public:
    LateNumberedCache(const HostPortPtr& port, const char* name)
        : Late<Service>(port)
        , m_name(name)
    {
    }
    XmlDocument Document() override
    {
        const auto answer = this->port().askDocument(m_name);
        return answer ? *answer : Service::Document();
    }
    QString ShortText(const QVariant& number) override
    {
        const auto answer = this->port().ask(m_name, "ShortText", {number});
        return answer ? ToText(*answer) : Service::ShortText(number);
    }
    QString FullText(const QVariant& number) override
    {
        const auto answer = this->port().ask(m_name, "FullText", {number});
        return answer ? ToText(*answer) : Service::FullText(number);
    }

private:
    const char* m_name;
};

class LateUsersCache final : public Late<UsersCache>
{
public:
    using Late::Late;
    XmlDocument Document() override
    {
        const auto answer = port().askDocument("UsersCache");
        return answer ? *answer : UsersCache::Document();
    }
    QString UserDisplayName(const QString& userId) override
    {
        const auto answer = port().ask("UsersCache", "UserDisplayName", {userId});
        return answer ? ToText(*answer) : UsersCache::UserDisplayName(userId);
    }
};

class LateThumbnailService final : public Late<ThumbnailService>
{
public:
    using Late::Late;
    QVariant GetThumbnailPath(const QString& path) override
    {
        const auto answer = port().ask("ThumbnailService", "GetThumbnailPath", {path});
        return answer ? *answer : ThumbnailService::GetThumbnailPath(path);
    }
};

class LateAttachmentFolders final : public Late<AttachmentFolders>
{
public:
    using Late::Late;
    QString GetFolderPath(const QVariant& folderNo) override
    {
        const auto answer = port().ask("AttachmentFolders", "GetFolderPath", {folderNo});
        return answer ? ToText(*answer) : AttachmentFolders::GetFolderPath(folderNo);
    }
};

class LateCustomDictionary final : public Late<tvCustomDictionary>
{
public:
    using Late::Late;
    void AddWord(const QString& word) override
    {
        if (!port().ask("CustomDictionary", "AddWord", {word}))
            tvCustomDictionary::AddWord(word);
    }
};

/// The program copies in one go: nothing can be told between the beginning and the end, and nothing
/// cancelled.
class LateDownloader final : public Late<Downloader>
{
public:
    using Late::Late;
    QString Download(const QString& path) override
    {
        DownloadStarted.raise(path);
        const auto answer = port().ask("Downloader", "Download", {path});
        if (!answer)
            return Downloader::Download(path);
        QString copy = ToText(*answer);
        DownloadComplete.raise(path, false);
        return copy;
    }
};

class LateUploader final : public Late<Uploader>
{
public:
    using Late::Late;
    void Upload(const QString& source, const QString& destination, const QVariant& options) override
    {
        if (!port().ask("Uploader", "Upload", {source, destination}))
            Uploader::Upload(source, destination, options);
        UploadComplete.raise(source, false);
    }
};

/// Its list stays the same between calls.
class LateNibrsModule final : public NibrsModuleService
{
public:
    explicit LateNibrsModule(QList<QPair<QString, QString>> codes)
        : m_codes(std::move(codes))
    {
    }
    QList<QPair<QString, QString>> GetNibrsOffenseCodeList() override { return m_codes; }

private:
    QList<QPair<QString, QString>> m_codes;
};

} // namespace

std::unique_ptr<TableCodeCache> makeLateTableCodeCache(const HostPortPtr& port)
{
    return std::make_unique<LateTableCodeCache>(port);
}

std::unique_ptr<EmployeeListCache> makeLateEmployeeListCache(const HostPortPtr& port)
{
    return std::make_unique<LateNumberedCache<EmployeeListCache>>(port, "EmployeeListCache");
}

std::unique_ptr<OffenseListCache> makeLateOffenseListCache(const HostPortPtr& port)
{
    return std::make_unique<LateNumberedCache<OffenseListCache>>(port, "OffenseListCache");
}

std::unique_ptr<UsersCache> makeLateUsersCache(const HostPortPtr& port)
{
    return std::make_unique<LateUsersCache>(port);
}

std::unique_ptr<ThumbnailService> makeLateThumbnailService(const HostPortPtr& port)
{
    return std::make_unique<LateThumbnailService>(port);
}

std::unique_ptr<AttachmentFolders> makeLateAttachmentFolders(const HostPortPtr& port)
{
    return std::make_unique<LateAttachmentFolders>(port);
}

std::unique_ptr<tvCustomDictionary> makeLateCustomDictionary(const HostPortPtr& port)
{
    return std::make_unique<LateCustomDictionary>(port);
}

std::unique_ptr<Downloader> makeLateDownloader(const HostPortPtr& port)
{
    return std::make_unique<LateDownloader>(port);
}

std::unique_ptr<Uploader> makeLateUploader(const HostPortPtr& port)
{
    return std::make_unique<LateUploader>(port);
}

std::shared_ptr<NibrsModuleService> makeLateNibrsModule(const HostPortPtr& port, const QString& className)
{
    const auto list = port->askJson(className.toUtf8().constData(), "GetNibrsOffenseCodeList");
    if (!list)
        return nullptr;
    QList<QPair<QString, QString>> codes;
    for (const HostJson& code : list->items()) {
        const QList<HostJson> pair = code.isList() ? code.items() : QList<HostJson>();
        if (pair.size() != 2)
            code.refuse(QStringLiteral("no list of two texts"));
        codes.append({pair.at(0).text(), pair.at(1).text()});
    }
    return std::make_shared<LateNibrsModule>(codes);
}

} // namespace tavrin
