#pragma once

#include "frame/host_contracts/Services.h"

namespace tavrin {

/// Places on the workstation, and error numbers.
class HostEnvironment : public Environment
{
public:
    /// Numbers of the host's own errors count from here.
    static constexpr int FirstErrorNumber = -2147221504;

    /// "" takes the platform's places.
    HostEnvironment(const QString& workstationFolder, const QString& downloadsFolder);

    /// The folder is made when it is missing; raises an `Error` when that fails.
    QString GetDictionaryFolder() override;
    void RefreshSupportFile(const QString& name) override;
    int GetErrorNumber(int code) override;
    QString GetDownloadsFolder() override;

private:
    QString m_workstationFolder;
    QString m_downloadsFolder;
};

} // namespace tavrin
