#pragma once

#include "Options.h"
#include "host/Database.h"
#include "host/RecordStore.h"
#include "host/ReferenceHost.h"

#include <memory>

namespace tavrin::workbench {

/// What the windows work on: the database, the host over it, and the store of incidents.
class Workspace
{
public:
    /// Opens the database, fills a new one with sample records, and installs the host on this thread.
    /// Raises an `Error` that says what is wrong with the database and what to do.
    explicit Workspace(const Options& options);

    const Options& options() const { return m_options; }
    Database& database() { return *m_database; }
    ReferenceHost& host() { return *m_host; }
    RecordStore& store() { return *m_store; }
    /// This start has made the sample records.
    bool isFirstStart() const { return m_isFirstStart; }

private:
    Options m_options;
    std::unique_ptr<Database> m_database;
    bool m_isFirstStart = false;
    std::unique_ptr<ReferenceHost> m_host;
    std::unique_ptr<HostInstallation> m_installation;
    std::unique_ptr<RecordStore> m_store;
};

} // namespace tavrin::workbench
