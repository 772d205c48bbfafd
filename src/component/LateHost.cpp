#include "component/LateHost.h"

#include "base/values/Variant.h"
#include "component/RecordText.h"
#include "frame/control_frame/SavedProperty.h"
#include "frame/memory_records/MemoryField.h"

#include <optional>

namespace tavrin {

namespace {

/// What the callback answers, or the default for what it does not offer.
template <typename Default>
QString textOr(const std::optional<QVariant>& answer, Default&& byDefault)
{
    return answer ? ToText(*answer) : byDefault();
}

template <typename Default>
bool booleanOr(const std::optional<QVariant>& answer, Default&& byDefault)
{
    return answer ? ToBoolean(*answer) : byDefault();
}

/// A part of the host, all of whose operations go the one way.
class Part
{
public:
    explicit Part(HostPortPtr port)
        : m_port(std::move(port))
    {
    }

protected:
    HostPort& port() const { return *m_port; }

private:
    HostPortPtr m_port;
};

ListedValue listedValueFrom(const HostJson& json)
{
    return {{json.member("ID").text(), json.member("DisplayText").text(), json.member("Value").number()},
            json.member("Active").boolean(true)};
}

class LateHostServices final : public HostServices, Part
{
public:
    using Part::Part;

    TableValues GetTableValues(TableNumber table, bool includeInactive, const QVariant& leftOut,
                               bool reserved) override
    {
        const auto items = port().askJson("HostServices", "GetTableValues", {table, includeInactive});
        if (!items)
            return HostServices::GetTableValues(table, includeInactive, leftOut, reserved);
        TableValues values;
        for (const HostJson& item : items->items()) {
            const ListedValue value = listedValueFrom(item);
            if (includeInactive || value.IsActive)
                values.Items.append(value.Entry);
        }
        return values;
    }
    QString DateDisplayFormat() override
    {
        return textOr(port().ask("HostServices", "DateDisplayFormat"),
                      [this] { return HostServices::DateDisplayFormat(); });
    }
    tvBusinessObjectPtr GetParentObject(const tvBusinessObjectPtr& record) override
    {
        return parentOfRecord(record);
    }
    void SyncCustomDictionaryFile() override { port().ask("HostServices", "SyncCustomDictionaryFile"); }
    void NotifyFileUploaded() override { port().ask("HostServices", "NotifyFileUploaded"); }
};

class LateSession final : public Session, Part
{
public:
    using Part::Part;

    QString CurrentUserId() override
    {
        return textOr(port().ask("Session", "CurrentUserId"), [this] { return Session::CurrentUserId(); });
    }
    QString GetSetting(const QString& section, const QString& key) override
    {
        return textOr(port().ask("Session", "GetSetting", {section, key}),
                      [&] { return Session::GetSetting(section, key); });
    }
    bool HasPermission(const QString& module, int right) override
    {
        return booleanOr(port().ask("Session", "HasPermission", {module, right}),
                         [&] { return Session::HasPermission(module, right); });
    }
    bool FieldExists(const QString& module, const QString& table, const QString& field) override
    {
        return booleanOr(port().ask("Session", "FieldExists", {module, table, field}),
                         [&] { return Session::FieldExists(module, table, field); });
    }
    bool IsFieldRequired(const QString& module, const QString& table, const QString& field,
                         const QString& extra) override
    {
        return booleanOr(port().ask("Session", "IsFieldRequired", {module, table, field, extra}),
                         [&] { return Session::IsFieldRequired(module, table, field, extra); });
    }
    QVariant MakeFieldReference(const tvFieldPtr& field) override { return MemoryField::ReferenceTo(field); }
};

Color colorFrom(const QVariant& value)
{
    return convertProperty(PropertyKind::Color, value).value<Color>();
}

void readColors(const HostJson& json, TextBoxColorSet& set)
{
    if (!json.isThere())
        return;
    const std::pair<const char*, Color*> members[] = {{"BackColor", &set.BackColor},
                                                      {"ForeColor", &set.ForeColor},
                                                      {"BorderColor", &set.BorderColor},
                                                      {"SelectionBackColor", &set.SelectionBackColor},
                                                      {"SelectionForeColor", &set.SelectionForeColor},
                                                      {"TagBackColor", &set.TagBackColor},
                                                      {"TagForeColor", &set.TagForeColor}};
    for (const auto& [name, color] : members) {
        if (const HostJson value = json.member(name); value.isThere())
            *color = Color(value.color());
    }
}

class LateUiServices final : public UiServices, Part
{
public:
    using Part::Part;

    Color ShadeColor(Color color, double factor) override
    {
        const auto answer = port().ask("UiServices", "ShadeColor", {QVariant::fromValue(color), factor});
        return answer ? colorFrom(*answer) : UiServices::ShadeColor(color, factor);
    }
    ScaleMode ScaleModeFromUnits(const QString& units) override
    {
        const auto answer = port().ask("UiServices", "ScaleModeFromUnits", {units});
        return answer ? static_cast<ScaleMode>(ToLong(*answer)) : UiServices::ScaleModeFromUnits(units);
    }
    tavrin::TextBoxColors TextBoxColors() override
    {
        tavrin::TextBoxColors colors = UiServices::TextBoxColors();
        if (const auto json = port().askJson("UiServices", "TextBoxColors")) {
            readColors(json->member("Normal"), colors.Normal);
            readColors(json->member("Disabled"), colors.Disabled);
            readColors(json->member("Focused"), colors.Focused);
        }
        return colors;
    }
};

/// Asks the callback for the entries of a list; they are filled in here.
class LateListFilling final : public ListFilling, Part
{
public:
    LateListFilling(Host& host, const HostPortPtr& port)
        : ListFilling(host)
        , Part(port)
    {
    }

    void FillTableCombo(TableNumber table, DropdownTarget& combo, bool flag, const QVariant& value,
                        bool reserved) override
    {
        m_operation = "FillTableCombo";
        ListFilling::FillTableCombo(table, combo, flag, value, reserved);
    }
    void FillTableGrid(TableNumber table, GridCombo& combo, bool flag, const QVariant& value,
                       bool reserved) override
    {
        m_operation = "FillTableGrid";
        ListFilling::FillTableGrid(table, combo, flag, value, reserved);
    }
    QImage FitPicture(const QImage& picture, int height, int width, int mode, bool flag, Color backColor,
                      bool reserved) override
    {
        const auto answer =
            port().askPicture("ListFilling", "FitPicture",
                              {picture, height, width, mode, flag, QVariant::fromValue(backColor)});
        return answer ? *answer
                      : ListFilling::FitPicture(picture, height, width, mode, flag, backColor, reserved);
    }

protected:
    QList<ListedValue> listedValues(TableNumber table, bool includeInactive, const QVariant& value) override
    {
        const auto entries = port().askJson("ListFilling", m_operation, {table, includeInactive, value});
        if (!entries)
            return ListFilling::listedValues(table, includeInactive, value);
        QList<ListedValue> listed;
        for (const HostJson& entry : entries->items())
            listed.append(listedValueFrom(entry));
        return listed;
    }

private:
    const char* m_operation = "FillTableCombo";
};

class LateImages final : public Images, Part
{
public:
    using Part::Part;

    bool IsImageFile(const QString& fileName) override
    {
        return booleanOr(port().ask("Images", "IsImageFile", {fileName}),
                         [&] { return Images::IsImageFile(fileName); });
    }
    QImage LoadPicture(const QString& path) override
    {
        const auto answer = port().askPicture("Images", "LoadPicture", {path});
        return answer ? *answer : Images::LoadPicture(path);
    }
};

class LateEnvironment final : public Environment, Part
{
public:
    using Part::Part;

    QString GetDictionaryFolder() override
    {
        return textOr(port().ask("Environment", "GetDictionaryFolder"),
                      [this] { return Environment::GetDictionaryFolder(); });
    }
    void RefreshSupportFile(const QString& name) override
    {
        port().ask("Environment", "RefreshSupportFile", {name});
    }
    int GetErrorNumber(int code) override
    {
        const auto answer = port().ask("Environment", "GetErrorNumber", {code});
        return answer ? ToLong(*answer) : Environment::GetErrorNumber(code);
    }
    QString GetDownloadsFolder() override
    {
        return textOr(port().ask("Environment", "GetDownloadsFolder"),
                      [this] { return Environment::GetDownloadsFolder(); });
    }
};

class LateHost final : public Host
{
public:
    explicit LateHost(const HostPortPtr& port)
        : m_port(port)
        , m_hostServices(port)
        , m_session(port)
        , m_uiServices(port)
        , m_listFilling(*this, port)
        , m_images(port)
        , m_environment(port)
    {
    }

    HostServices& hostServices() override { return m_hostServices; }
    Session& session() override { return m_session; }
    UiServices& uiServices() override { return m_uiServices; }
    ListFilling& listFilling() override { return m_listFilling; }
    Images& images() override { return m_images; }
    Environment& environment() override { return m_environment; }

    std::unique_ptr<TableCodeCache> newTableCodeCache() override { return makeLateTableCodeCache(m_port); }
    std::unique_ptr<EmployeeListCache> newEmployeeListCache() override
    {
        return makeLateEmployeeListCache(m_port);
    }
    std::unique_ptr<OffenseListCache> newOffenseListCache() override
    {
        return makeLateOffenseListCache(m_port);
    }
    std::unique_ptr<UsersCache> newUsersCache() override { return makeLateUsersCache(m_port); }
    std::unique_ptr<ThumbnailService> newThumbnailService() override
    {
        return makeLateThumbnailService(m_port);
    }
    std::unique_ptr<AttachmentFolders> newAttachmentFolders() override
    {
        return makeLateAttachmentFolders(m_port);
    }
    std::unique_ptr<tvCustomDictionary> newCustomDictionary() override
    {
        return makeLateCustomDictionary(m_port);
    }
    std::unique_ptr<Downloader> newDownloader() override { return makeLateDownloader(m_port); }
    std::unique_ptr<Uploader> newUploader() override { return makeLateUploader(m_port); }
    tvTableCollectionPtr newTableCollection() override { return newEmptyCollection(); }
    std::shared_ptr<NibrsModuleService> createNibrsModule(const QString& className) override
    {
        auto module = makeLateNibrsModule(m_port, className);
        return module ? module : Host::createNibrsModule(className);
    }

private:
    HostPortPtr m_port;
    LateHostServices m_hostServices;
    LateSession m_session;
    LateUiServices m_uiServices;
    LateListFilling m_listFilling;
    LateImages m_images;
    LateEnvironment m_environment;
};

/// The host of one thread and its place there.
struct Installed
{
    explicit Installed(const HostPortPtr& way)
        : port(way)
        , host(way)
        , installation(host)
    {
    }

    HostPortPtr port;
    LateHost host;
    HostInstallation installation;
};

std::unique_ptr<Installed>& installed()
{
    thread_local std::unique_ptr<Installed> host;
    return host;
}

} // namespace

void installLateHost(TvHostCall call, void* context)
{
    std::unique_ptr<Installed>& now = installed();
    if (now && now->port->isInUse())
        throw CallError(TV_E_UNEXPECTED, QStringLiteral("The host is being asked"));
    if (now)
        now->port->close();
    now.reset();
    if (call)
        now = std::make_unique<Installed>(std::make_shared<HostPort>(call, context));
}

EventHub& lateHostEvents()
{
    if (!installed())
        throw CallError(TV_E_UNEXPECTED, QStringLiteral("No host is installed on this thread"));
    return installed()->host.hostServices().Events();
}

} // namespace tavrin
