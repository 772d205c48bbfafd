#include "host/services/HostEnvironment.h"

#include "base/failure/Error.h"
#include "host/words/InstalledDictionary.h"

#include <QStandardPaths>

namespace tavrin {

HostEnvironment::HostEnvironment(const QString& workstationFolder, const QString& downloadsFolder,
                                 const QString& installedDictionary)
    : m_workstationFolder(workstationFolder.isEmpty()
                              ? QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation)
                              : workstationFolder)
    , m_downloadsFolder(downloadsFolder)
    , m_installedDictionary(installedDictionary.isEmpty() ? QStringLiteral("/usr/share/hunspell/en_US")
                                                          : installedDictionary)
{
}

QString HostEnvironment::GetDictionaryFolder()
{
    return madeFolder(m_workstationFolder, QStringLiteral("The workstation's folder"));
}

void HostEnvironment::RefreshSupportFile(const QString& name)
{
    if (name != QStringLiteral("vssp_ae.dct"))
        throw Error(QStringLiteral("This host does not offer the support file %1").arg(name),
                    Error::NoSuchComponentNumber);
    refreshSpellingDictionary(GetDictionaryFolder() + QLatin1Char('/') + name, m_installedDictionary);
}

QString HostEnvironment::GetDownloadsFolder()
{
    return m_downloadsFolder.isEmpty()
               ? Environment::GetDownloadsFolder()
               : madeFolder(m_downloadsFolder, QStringLiteral("The Downloads folder"));
}

} // namespace tavrin
