#include "support/FakeHost.h"

#include "base/values/Variant.h"
#include "frame/host_contracts/RemovableWord.h"
#include "support/FakeRecorder.h"
#include "support/FakeTransfer.h"
#include "widgets/grid_combo/GridCombo.h"
#include "widgets/lists/DropdownTarget.h"

#include <QFileInfo>

#include <algorithm>

namespace tavrin::test {

namespace {

QString path(std::initializer_list<QString> names)
{
    return QStringList(names).join(u'/');
}

QList<TableValue> valuesOf(const FakeHostState& state, TableNumber table, bool includeInactive,
                           const QVariant& alwaysIncluded = {})
{
    QList<TableValue> values = state.tables.value(table);
    values.removeIf([&](const TableValue& value) {
        return !includeInactive && state.inactive.value(table).contains(value.Value.toInt()) &&
               !SameValue(value.Value, alwaysIncluded);
    });
    return values;
}

class FakeServices final : public HostServices, Recorder
{
public:
    using Recorder::Recorder;

    TableValues GetTableValues(TableNumber table, bool includeInactive, const QVariant&, bool) override
    {
        return {valuesOf(asked(QStringLiteral("GetTableValues %1").arg(table)), table, includeInactive)};
    }
    EventHub& Events() override { return asked(QStringLiteral("Events")).hub; }
    QString DateDisplayFormat() override
    {
        return asked(QStringLiteral("DateDisplayFormat")).dateDisplayFormat;
    }
    tvBusinessObjectPtr GetParentObject(const tvBusinessObjectPtr& record) override
    {
        return asked(QStringLiteral("GetParentObject")).parents.value(record.get());
    }
    void SyncCustomDictionaryFile() override { asked(QStringLiteral("SyncCustomDictionaryFile")); }
    void NotifyFileUploaded() override { asked(QStringLiteral("NotifyFileUploaded")); }
};

class FakeXmlFactory final : public XmlFactory, Recorder
{
public:
    using Recorder::Recorder;

    XmlDocument CreateDocument() override
    {
        asked(QStringLiteral("CreateDocument"));
        return {};
    }
};

class FakeSession final : public Session, Recorder
{
public:
    using Recorder::Recorder;

    QString CurrentUserId() override { return asked(QStringLiteral("CurrentUserId")).userId; }
    QString GetSetting(const QString& section, const QString& key) override
    {
        state()->given << QStringLiteral("GetSetting %1/%2").arg(section, key);
        return asked(QStringLiteral("GetSetting")).settings.value(path({section, key}));
    }
    bool HasPermission(const QString& module, int right) override
    {
        return asked(QStringLiteral("HasPermission"))
            .permissions.contains(path({module, QString::number(right)}));
    }
    bool FieldExists(const QString& module, const QString& table, const QString& field) override
    {
        return !asked(QStringLiteral("FieldExists")).missingFields.contains(path({module, table, field}));
    }
    bool IsFieldRequired(const QString& module, const QString& table, const QString& field,
                         const QString& extra) override
    {
        QStringList names{module, table, field};
        if (!extra.isEmpty())
            names << extra;
        return asked(QStringLiteral("IsFieldRequired")).requiredFields.contains(names.join(u'/'));
    }
    QVariant MakeFieldReference(const tvFieldPtr& field) override
    {
        asked(QStringLiteral("MakeFieldReference"));
        return QVariant::fromValue<HostObjectPtr>(field);
    }
};

class FakeUiServices final : public UiServices, Recorder
{
public:
    using Recorder::Recorder;

    Color ShadeColor(Color color, double factor) override
    {
        asked(QStringLiteral("ShadeColor"));
        const auto shade = [&](int shift) {
            return std::min(255, static_cast<int>((color.value() >> shift & 0xFF) * factor));
        };
        return Color::rgb(shade(0), shade(8), shade(16));
    }
    ScaleMode ScaleModeFromUnits(const QString& units) override
    {
        asked(QStringLiteral("ScaleModeFromUnits ") + units);
        static const QMap<QString, ScaleMode> modes = {
            {QStringLiteral("User"), ScaleMode::User},
            {QStringLiteral("Twip"), ScaleMode::Twips},
            {QStringLiteral("Point"), ScaleMode::Points},
            {QStringLiteral("Pixel"), ScaleMode::Pixels},
            {QStringLiteral("Character"), ScaleMode::Characters},
            {QStringLiteral("Inch"), ScaleMode::Inches},
            {QStringLiteral("Millimeter"), ScaleMode::Millimeters},
            {QStringLiteral("Centimeter"), ScaleMode::Centimeters}};
        const auto found = modes.find(units);
        if (found == modes.end())
            throw Error(QStringLiteral("There is no scale unit \"%1\"").arg(units));
        return found.value();
    }
    tavrin::TextBoxColors TextBoxColors() override
    {
        return asked(QStringLiteral("TextBoxColors")).textBoxColors;
    }
};

class FakeListFilling final : public ListFilling, Recorder
{
public:
    using Recorder::Recorder;

    void FillTableCombo(TableNumber table, DropdownTarget& combo, bool includeInactive, const QVariant& value,
                        bool) override
    {
        const FakeHostState& state = asked(QStringLiteral("FillTableCombo %1").arg(table));
        combo.Clear();
        combo.AddItem(QString(), 0);
        int selected = 0;
        for (const TableValue& entry : valuesOf(state, table, includeInactive, value)) {
            if (SameValue(entry.Value, value))
                selected = combo.ListCount();
            combo.AddItem(entry.DisplayText, ToLong(entry.Value));
        }
        if (selected > 0)
            combo.SetListIndex(selected);
    }
    void FillTableGrid(TableNumber table, GridCombo& combo, bool includeInactive, const QVariant& value,
                       bool reserved) override
    {
        const FakeHostState& state =
            asked(QStringLiteral("FillTableGrid %1 %2 %3 %4")
                      .arg(table)
                      .arg(ToText(includeInactive), ToText(value), ToText(reserved)));
        combo.Array().AppendRow({QString(), QString(), Null(), Null()});
        for (const TableValue& entry : valuesOf(state, table, includeInactive, value)) {
            const bool active = !state.inactive.value(table).contains(entry.Value.toInt());
            combo.Array().AppendRow(
                {entry.ID, entry.DisplayText, entry.Value, QString::number(active ? 1 : 0)});
        }
        combo.Rebind();
    }
    QImage FitPicture(const QImage& picture, int height, int width, int mode, bool flag, Color backColor,
                      bool reserved) override
    {
        state()->given << QStringLiteral(
                              "FitPicture height %1 width %2 mode %3 flag %4 colour %5 reserved %6")
                              .arg(height)
                              .arg(width)
                              .arg(mode)
                              .arg(flag ? -1 : 0)
                              .arg(backColor.value(), 0, 16)
                              .arg(reserved ? -1 : 0);
        if (asked(QStringLiteral("FitPicture")).fitPicture)
            return state()->fitPicture(picture, height, width, backColor);
        QImage fitted(width, height, QImage::Format_RGB32);
        fitted.fill(picture.isNull() ? backColor.resolve(QPalette()) : picture.pixelColor(0, 0));
        return fitted;
    }
};

class FakeImages final : public Images, Recorder
{
public:
    using Recorder::Recorder;

    bool IsImageFile(const QString& fileName) override
    {
        state()->given << QStringLiteral("IsImageFile ") + fileName;
        asked(QStringLiteral("IsImageFile"));
        static const QStringList suffixes = {QStringLiteral("png"), QStringLiteral("jpg"),
                                             QStringLiteral("bmp")};
        return suffixes.contains(QFileInfo(fileName).suffix().toLower());
    }
    QImage LoadPicture(const QString& fileName) override
    {
        state()->given << QStringLiteral("LoadPicture ") + fileName;
        const QHash<QString, QImage>& pictures = asked(QStringLiteral("LoadPicture")).pictures;
        if (pictures.contains(fileName))
            return pictures.value(fileName);
        const QImage read(fileName); // where a test has files
        if (read.isNull())
            throw Error(QStringLiteral("The picture %1 cannot be shown").arg(fileName));
        return read;
    }
};

class FakeEnvironment final : public Environment, Recorder
{
public:
    using Recorder::Recorder;

    QString GetDictionaryFolder() override
    {
        return asked(QStringLiteral("GetDictionaryFolder")).dictionaryFolder;
    }
    void RefreshSupportFile(const QString& name) override
    {
        asked(QStringLiteral("RefreshSupportFile ") + name);
    }
    int GetErrorNumber(int code) override
    {
        state()->given << QStringLiteral("GetErrorNumber %1").arg(code);
        asked(QStringLiteral("GetErrorNumber"));
        return 1000 + code;
    }
    QString GetDownloadsFolder() override
    {
        return asked(QStringLiteral("GetDownloadsFolder")).downloadsFolder;
    }
};

class FakeTableCodeCache final : public TableCodeCache, Recorder
{
public:
    using Recorder::Recorder;

    XmlDocument Document(TableNumber table) override
    {
        const FakeHostState& state = asked(QStringLiteral("TableCodeCache.Document %1").arg(table));
        XmlDocument document;
        const XmlNode list = document.appendChild(document.createElement(QStringLiteral("TableCodes")));
        for (const TableValue& value : state.tables.value(table)) {
            const bool active = !state.inactive.value(table).contains(value.Value.toInt());
            const XmlNode code = list.appendElement(QStringLiteral("TableCode"));
            code.appendElement(QStringLiteral("ValueNo"), ToText(value.Value));
            code.appendElement(QStringLiteral("ValueCode"), value.ID);
            code.appendElement(QStringLiteral("ValueDesc"), value.DisplayText);
            code.appendElement(QStringLiteral("ActiveFlag"),
                               active ? QStringLiteral("1") : QStringLiteral("0"));
        }
        return document;
    }
    QString GetDescription(TableNumber table, const QVariant& code) override
    {
        const FakeHostState& state = asked(QStringLiteral("GetDescription %1").arg(table));
        for (const TableValue& value : state.tables.value(table)) {
            if (SameValue(value.Value, code))
                return value.DisplayText;
        }
        return {};
    }
};

class FakeEmployees final : public EmployeeListCache, Recorder
{
public:
    using Recorder::Recorder;

    XmlDocument Document() override { return asked(QStringLiteral("EmployeeListCache.Document")).employees; }
    QString ShortText(const QVariant& officerNo) override
    {
        return asked(QStringLiteral("EmployeeListCache.ShortText"))
            .employeeShortTexts.value(ToText(officerNo));
    }
    QString FullText(const QVariant& officerNo) override
    {
        return asked(QStringLiteral("EmployeeListCache.FullText")).employeeFullTexts.value(ToText(officerNo));
    }
};

class FakeOffenses final : public OffenseListCache, Recorder
{
public:
    using Recorder::Recorder;

    XmlDocument Document() override { return asked(QStringLiteral("OffenseListCache.Document")).offenses; }
    QString ShortText(const QVariant& offenseNo) override
    {
        return asked(QStringLiteral("OffenseListCache.ShortText")).offenseShortTexts.value(ToText(offenseNo));
    }
    QString FullText(const QVariant& offenseNo) override
    {
        return asked(QStringLiteral("OffenseListCache.FullText")).offenseFullTexts.value(ToText(offenseNo));
    }
};

class FakeUsers final : public UsersCache, Recorder
{
public:
    using Recorder::Recorder;

    XmlDocument Document() override { return asked(QStringLiteral("UsersCache.Document")).users; }
    QString UserDisplayName(const QString& userId) override
    {
        return asked(QStringLiteral("UserDisplayName")).userNames.value(userId);
    }
};

class FakeThumbnails final : public ThumbnailService, Recorder
{
public:
    using Recorder::Recorder;

    QVariant GetThumbnailPath(const QString& file) override
    {
        state()->given << QStringLiteral("GetThumbnailPath ") + file;
        const QHash<QString, QString>& thumbnails = asked(QStringLiteral("GetThumbnailPath")).thumbnails;
        return thumbnails.contains(file) ? QVariant(thumbnails.value(file)) : QVariant();
    }
};

class FakeFolders final : public AttachmentFolders, Recorder
{
public:
    using Recorder::Recorder;

    QString GetFolderPath(const QVariant& folderNo) override
    {
        state()->given << QStringLiteral("GetFolderPath ") + ToText(folderNo);
        return asked(QStringLiteral("GetFolderPath")).folders.value(ToText(folderNo));
    }
};

class FakeDictionary final : public tvCustomDictionary, public RemovableWord, Recorder
{
public:
    using Recorder::Recorder;

    void AddWord(const QString& word) override
    {
        asked(QStringLiteral("AddWord")).addedWords << word;
        m_word = word;
    }
    void TakeBack() override { asked(QStringLiteral("TakeBack")).addedWords.removeOne(m_word); }

private:
    QString m_word;
};

class FakeNibrsModule final : public NibrsModuleService, Recorder
{
public:
    using Recorder::Recorder;

    QList<QPair<QString, QString>> GetNibrsOffenseCodeList() override
    {
        return asked(QStringLiteral("GetNibrsOffenseCodeList")).nibrsCodes;
    }
};

} // namespace

void FakeHostState::called(const QString& operation)
{
    ++calls;
    log << operation;
    if (failure)
        throw Error(*failure);
    if (const auto own = failures.find(operation); own != failures.end())
        throw Error(own->second);
}

struct FakeHost::Services
{
    explicit Services(const StatePtr& state)
        : host(state)
        , xml(state)
        , session(state)
        , ui(state)
        , lists(state)
        , images(state)
        , environment(state)
    {
    }

    FakeServices host;
    FakeXmlFactory xml;
    FakeSession session;
    FakeUiServices ui;
    FakeListFilling lists;
    FakeImages images;
    FakeEnvironment environment;
};

FakeHost::FakeHost()
    : m_state(std::make_shared<FakeHostState>())
    , m_services(std::make_unique<Services>(m_state))
{
}

FakeHost::~FakeHost() = default;

void FakeHost::setTable(TableNumber table, QList<TableValue> values)
{
    m_state->tables.insert(table, std::move(values));
}

HostServices& FakeHost::hostServices()
{
    return m_services->host;
}

XmlFactory& FakeHost::xmlFactory()
{
    return m_services->xml;
}

Session& FakeHost::session()
{
    return m_services->session;
}

UiServices& FakeHost::uiServices()
{
    return m_services->ui;
}

ListFilling& FakeHost::listFilling()
{
    return m_services->lists;
}

Images& FakeHost::images()
{
    return m_services->images;
}

Environment& FakeHost::environment()
{
    return m_services->environment;
}

std::unique_ptr<TableCodeCache> FakeHost::newTableCodeCache()
{
    m_state->called(QStringLiteral("new TableCodeCache"));
    return std::make_unique<FakeTableCodeCache>(m_state);
}

std::unique_ptr<EmployeeListCache> FakeHost::newEmployeeListCache()
{
    m_state->called(QStringLiteral("new EmployeeListCache"));
    return std::make_unique<FakeEmployees>(m_state);
}

std::unique_ptr<OffenseListCache> FakeHost::newOffenseListCache()
{
    m_state->called(QStringLiteral("new OffenseListCache"));
    return std::make_unique<FakeOffenses>(m_state);
}

std::unique_ptr<UsersCache> FakeHost::newUsersCache()
{
    m_state->called(QStringLiteral("new UsersCache"));
    return std::make_unique<FakeUsers>(m_state);
}

std::unique_ptr<ThumbnailService> FakeHost::newThumbnailService()
{
    m_state->called(QStringLiteral("new ThumbnailService"));
    return std::make_unique<FakeThumbnails>(m_state);
}

std::unique_ptr<AttachmentFolders> FakeHost::newAttachmentFolders()
{
    m_state->called(QStringLiteral("new AttachmentFolders"));
    return std::make_unique<FakeFolders>(m_state);
}

std::unique_ptr<tvCustomDictionary> FakeHost::newCustomDictionary()
{
    m_state->called(QStringLiteral("new tvCustomDictionary"));
    return std::make_unique<FakeDictionary>(m_state);
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
        throw Error(QStringLiteral("The host has no component %1").arg(className),
                    Error::NoSuchComponentNumber);
    return std::make_shared<FakeNibrsModule>(m_state);
}

} // namespace tavrin::test
