#include "frame/host_contracts/Services.h"

#include "base/failure/Error.h"
#include "base/pictures/PictureReading.h"
#include "frame/host_contracts/NotOffered.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QStandardPaths>

#include <memory>

namespace tavrin {

struct HostServices::Private
{
    EventHub events;
};

HostServices::HostServices()
    : d(std::make_unique<Private>())
{
}

HostServices::~HostServices() = default;

TableValues HostServices::GetTableValues(TableNumber table, bool includeInactive, const QVariant& leftOut,
                                         bool reserved)
{
    // cppcheck-suppress missingReturn
    Q_UNUSED(table)
    Q_UNUSED(includeInactive)
    Q_UNUSED(leftOut)
    Q_UNUSED(reserved)
    notOffered(QStringLiteral("HostServices.GetTableValues"));
}

EventHub& HostServices::Events()
{
    return d->events;
}

QString HostServices::DateDisplayFormat()
{
    return QLocale().dateFormat(QLocale::ShortFormat);
}

tvBusinessObjectPtr HostServices::GetParentObject(const tvBusinessObjectPtr& record)
{
    Q_UNUSED(record)
    return nullptr;
}

void HostServices::SyncCustomDictionaryFile() {}

void HostServices::NotifyFileUploaded() {}

XmlFactory::~XmlFactory() = default;

XmlDocument XmlFactory::CreateDocument()
{
    return {};
}

Session::~Session() = default;

QString Session::CurrentUserId()
{
    return {};
}

QString Session::GetSetting(const QString& section, const QString& key)
{
    Q_UNUSED(section)
    Q_UNUSED(key)
    return {};
}

bool Session::HasPermission(const QString& module, int right)
{
    Q_UNUSED(module)
    Q_UNUSED(right)
    return false;
}

bool Session::FieldExists(const QString& module, const QString& table, const QString& field)
{
    Q_UNUSED(module)
    Q_UNUSED(table)
    Q_UNUSED(field)
    return false;
}

bool Session::IsFieldRequired(const QString& module, const QString& table, const QString& field,
                              const QString& extra)
{
    Q_UNUSED(module)
    Q_UNUSED(table)
    Q_UNUSED(field)
    Q_UNUSED(extra)
    return false;
}

QVariant Session::MakeFieldReference(const tvFieldPtr& field)
{
    Q_UNUSED(field)
    notOffered(QStringLiteral("Session.MakeFieldReference"));
}

Images::~Images() = default;

bool Images::IsImageFile(const QString& fileName)
{
    return PictureReading::knownEndings().contains(QFileInfo(fileName).suffix().toLower());
}

QImage Images::LoadPicture(const QString& path)
{
    if (!QFileInfo(path).isFile())
        PictureReading::refuse(path, QStringLiteral("the file is not there"));
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        PictureReading::refuse(path, file.errorString());
    return PictureReading::read(file, path);
}

Environment::~Environment() = default;

QString Environment::GetDictionaryFolder()
{
    notOffered(QStringLiteral("Environment.GetDictionaryFolder"));
}

void Environment::RefreshSupportFile(const QString& name)
{
    Q_UNUSED(name)
}

int Environment::GetErrorNumber(int code)
{
    return FirstErrorNumber + code;
}

QString Environment::GetDownloadsFolder()
{
    return madeFolder(QStandardPaths::writableLocation(QStandardPaths::DownloadLocation),
                      QStringLiteral("The Downloads folder"));
}

QString Environment::madeFolder(const QString& path, const QString& name)
{
    QString folder = QDir::cleanPath(path);
    if (!QDir().mkpath(folder))
        throw Error(QStringLiteral("%1 %2 cannot be made").arg(name, QDir::toNativeSeparators(folder)));
    return folder;
}

} // namespace tavrin
