#include "host/services/HostEnvironment.h"

#include "base/failure/Error.h"
#include "host/words/InstalledDictionary.h"

#include <QDir>
#include <QStandardPaths>

namespace tavrin {

namespace {

QString placeOr(const QString& given, QStandardPaths::StandardLocation location)
{
    const QString place = given.isEmpty() ? QStandardPaths::writableLocation(location) : given;
    // Cleaning takes the separator off the end.
    return QDir::cleanPath(place);
}

} // namespace

HostEnvironment::HostEnvironment(const QString& workstationFolder, const QString& downloadsFolder,
                                 const QString& installedDictionary)
    : m_workstationFolder(placeOr(workstationFolder, QStandardPaths::AppLocalDataLocation))
    , m_downloadsFolder(placeOr(downloadsFolder, QStandardPaths::DownloadLocation))
    , m_installedDictionary(installedDictionary.isEmpty() ? QStringLiteral("/usr/share/hunspell/en_US")
                                                          : installedDictionary)
{
}

QString HostEnvironment::GetDictionaryFolder()
{
    if (!QDir().mkpath(m_workstationFolder))
        throw Error(QStringLiteral("The workstation's folder %1 cannot be made")
                        .arg(QDir::toNativeSeparators(m_workstationFolder)));
    return m_workstationFolder;
}

void HostEnvironment::RefreshSupportFile(const QString& name)
{
    if (name != QStringLiteral("vssp_ae.dct"))
        throw Error(QStringLiteral("This host does not offer the support file %1").arg(name),
                    Error::NoSuchComponentNumber);
    refreshSpellingDictionary(GetDictionaryFolder() + QLatin1Char('/') + name, m_installedDictionary);
}

int HostEnvironment::GetErrorNumber(int code)
{
    return FirstErrorNumber + code;
}

QString HostEnvironment::GetDownloadsFolder()
{
    if (!QDir().mkpath(m_downloadsFolder))
        throw Error(QStringLiteral("The Downloads folder %1 cannot be made")
                        .arg(QDir::toNativeSeparators(m_downloadsFolder)));
    return m_downloadsFolder;
}

} // namespace tavrin
