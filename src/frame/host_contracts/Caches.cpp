#include "frame/host_contracts/Caches.h"

#include "base/values/Variant.h"
#include "frame/host_contracts/Host.h"
#include "frame/host_contracts/NotOffered.h"

namespace tavrin {

namespace {

/// The entry of a list whose child `key` holds this value, in any case of letters; none for Null and
/// Empty.
XmlNode entryOf(const XmlDocument& list, const QString& key, const QVariant& value)
{
    const QString wanted = ToText(value);
    if (wanted.isEmpty())
        return {};
    for (const XmlNode& entry : list.documentElement().childNodes()) {
        if (entry.childElement(key).text().compare(wanted, Qt::CaseInsensitive) == 0)
            return entry;
    }
    return {};
}

QString textIn(const XmlNode& entry, const char* child)
{
    return entry.isNull() ? QString() : entry.childElement(QLatin1String(child)).text();
}

} // namespace

TableCodeCache::~TableCodeCache() = default;

XmlDocument TableCodeCache::Document(TableNumber table)
{
    HostServices& services = currentHost().hostServices();
    const QList<TableValue> active = services.GetTableValues(table, false).Items;
    auto next = active.begin(); // both lists have the table's order
    XmlDocument document = currentHost().xmlFactory().CreateDocument();
    const XmlNode list = document.appendChild(document.createElement(QStringLiteral("TableCodes")));
    for (const TableValue& value : services.GetTableValues(table, true).Items) {
        const bool isActive = next != active.end() && SameValue(next->Value, value.Value);
        if (isActive)
            ++next;
        const XmlNode code = list.appendElement(QStringLiteral("TableCode"));
        code.appendElement(QStringLiteral("ValueNo"), ToText(value.Value));
        code.appendElement(QStringLiteral("ValueCode"), value.ID);
        code.appendElement(QStringLiteral("ValueDesc"), value.DisplayText);
        code.appendElement(QStringLiteral("ActiveFlag"), QString::number(isActive ? 1 : 0));
    }
    return document;
}

QString TableCodeCache::GetDescription(TableNumber table, const QVariant& code)
{
    return textIn(entryOf(Document(table), QStringLiteral("ValueNo"), code), "ValueDesc");
}

EmployeeListCache::~EmployeeListCache() = default;

XmlDocument EmployeeListCache::Document()
{
    notOffered(QStringLiteral("EmployeeListCache.Document"));
}

QString EmployeeListCache::ShortText(const QVariant& officerNo)
{
    return textIn(entryOf(Document(), QStringLiteral("OfficerNo"), officerNo), "OfficerId");
}

QString EmployeeListCache::FullText(const QVariant& officerNo)
{
    return textIn(entryOf(Document(), QStringLiteral("OfficerNo"), officerNo), "Name");
}

OffenseListCache::~OffenseListCache() = default;

XmlDocument OffenseListCache::Document()
{
    notOffered(QStringLiteral("OffenseListCache.Document"));
}

QString OffenseListCache::ShortText(const QVariant& offenseNo)
{
    return textIn(entryOf(Document(), QStringLiteral("OffenseNo"), offenseNo), "OffenseId");
}

QString OffenseListCache::FullText(const QVariant& offenseNo)
{
    return textIn(entryOf(Document(), QStringLiteral("OffenseNo"), offenseNo), "Description");
}

UsersCache::~UsersCache() = default;

XmlDocument UsersCache::Document()
{
    notOffered(QStringLiteral("UsersCache.Document"));
}

QString UsersCache::UserDisplayName(const QString& userId)
{
    const XmlNode user = entryOf(Document(), QStringLiteral("UserId"), userId);
    return (textIn(user, "FirstName") + QLatin1Char(' ') + textIn(user, "LastName")).trimmed();
}

ThumbnailService::~ThumbnailService() = default;

QVariant ThumbnailService::GetThumbnailPath(const QString& path)
{
    Q_UNUSED(path)
    return {};
}

AttachmentFolders::~AttachmentFolders() = default;

QString AttachmentFolders::GetFolderPath(const QVariant& folderNo)
{
    Q_UNUSED(folderNo)
    notOffered(QStringLiteral("AttachmentFolders.GetFolderPath"));
}

tvCustomDictionary::~tvCustomDictionary() = default;

void tvCustomDictionary::AddWord(const QString& word)
{
    Q_UNUSED(word)
    notOffered(QStringLiteral("tvCustomDictionary.AddWord"));
}

Downloader::Downloader() = default;
Downloader::~Downloader() = default;

void Downloader::SetBufferSize(qint32 bytes)
{
    Q_UNUSED(bytes)
}

QString Downloader::Download(const QString& path)
{
    Q_UNUSED(path)
    notOffered(QStringLiteral("Downloader.Download"));
}

void Downloader::Cancel() {}

Uploader::Uploader() = default;
Uploader::~Uploader() = default;

void Uploader::Upload(const QString& source, const QString& destination, const QVariant& options)
{
    Q_UNUSED(source)
    Q_UNUSED(destination)
    Q_UNUSED(options)
    notOffered(QStringLiteral("Uploader.Upload"));
}

NibrsModuleService::~NibrsModuleService() = default;

QList<QPair<QString, QString>> NibrsModuleService::GetNibrsOffenseCodeList()
{
    notOffered(QStringLiteral("NibrsModuleService.GetNibrsOffenseCodeList"));
}

} // namespace tavrin
