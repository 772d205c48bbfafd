#pragma once

#include "frame/host_contracts/Services.h"

namespace tavrin {

/// Places on the workstation, and error numbers.
class HostEnvironment : public Environment
{
public:
    /// "" takes the platform's places. The installed spelling dictionary is the path of its files without
    /// their endings; "" takes the platform's American English.
    HostEnvironment(const QString& workstationFolder, const QString& downloadsFolder,
                    const QString& installedDictionary);

    /// The folder is made when it is missing; raises an `Error` when that fails.
    QString GetDictionaryFolder() override;
    /// Knows "vssp_ae.dct", the dictionary of the spelling engine, which it makes from the installed one, see
    /// `refreshSpellingDictionary`. Another name raises an `Error` with the number
    /// `Error::NoSuchComponentNumber`.
    void RefreshSupportFile(const QString& name) override;
    /// The folder is made when it is missing; raises an `Error` when that fails.
    QString GetDownloadsFolder() override;

private:
    QString m_workstationFolder;
    QString m_downloadsFolder;
    QString m_installedDictionary;
};

} // namespace tavrin
