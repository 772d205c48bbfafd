#pragma once

#include "host/database/Database.h"
#include "host/records/RecordStore.h"
#include "host/services/ReferenceHost.h"
#include "workbench/application/Options.h"

#include <memory>

namespace tavrin::workbench {

/// What the windows work on: the database, the host over it, and the store of incidents.
class Workspace
{
public:
    /// Opens the database, fills a new one with sample records, and installs the host on this thread.
    /// Raises an `Error` that says what is wrong with the database or the options, and what to do; a database
    /// that was made by this start is then removed again.
    explicit Workspace(const Options& options);

    const Options& options() const { return m_options; }
    Database& database() { return *m_database; }
    ReferenceHost& host() { return *m_host; }
    RecordStore& store() { return *m_store; }
    /// This start has made the sample records.
    bool isFirstStart() const { return m_isFirstStart; }

private:
    /// A database file that did not exist before; goes again unless it is kept.
    class NewFile
    {
    public:
        explicit NewFile(const QString& path);
        ~NewFile();
        NewFile(const NewFile&) = delete;
        NewFile& operator=(const NewFile&) = delete;

        void keep() { m_isToBeRemoved = false; }

    private:
        QString m_path;
        bool m_isToBeRemoved;
    };

    Options m_options;
    NewFile m_newFile; // before the database, which must be closed first
    std::unique_ptr<Database> m_database;
    bool m_isFirstStart = false;
    std::unique_ptr<ReferenceHost> m_host;
    std::unique_ptr<HostInstallation> m_installation;
    std::unique_ptr<RecordStore> m_store;
};

} // namespace tavrin::workbench
