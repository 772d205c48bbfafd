#include "frame/host_contracts/Host.h"

#include "base/failure/Error.h"

#include <utility>

namespace tavrin {

namespace {
thread_local Host* installedHost = nullptr;
}

Host& currentHost()
{
    if (!installedHost)
        throw Error(QStringLiteral("No host is installed on this thread"));
    return *installedHost;
}

HostInstallation::HostInstallation(Host& host)
    : m_before(std::exchange(installedHost, &host))
{
}

HostInstallation::~HostInstallation()
{
    installedHost = m_before;
}

} // namespace tavrin
