#pragma once

#include "host/HostTestSupport.h"
#include "host/samples/SampleData.h"
#include "host/services/ReferenceHost.h"

namespace tavrin::test {

/// A reference host on a new database with the sample records, "admin" signed on.
class HostCase : public TestCase
{
protected:
    std::optional<QTemporaryDir> m_folder;
    std::unique_ptr<Database> m_database;
    std::unique_ptr<ReferenceHost> m_host;

    void signOn(const QString& userId)
    {
        m_host = std::make_unique<ReferenceHost>(
            *m_database, ReferenceHostOptions{userId, m_folder->filePath(QStringLiteral("station/")),
                                              m_folder->filePath(QStringLiteral("down"))});
    }
    void execute(const char* sql) { m_database->execute(QString::fromLatin1(sql)); }
    QString path(const char* name) const { return m_folder->filePath(QString::fromLatin1(name)); }

    void init() override
    {
        TestCase::init();
        m_folder.emplace();
        m_database = Database::open(path("records.db"), OpenMode::CreateWhenMissing, impatient());
        SampleData().fillOnce(*m_database);
        execute("UPDATE code_value SET active = 0 WHERE table_no = 228 AND value_no = 2");
        signOn(QStringLiteral("admin"));
    }
    void cleanup() override
    {
        m_host.reset();
        m_database.reset();
        TestCase::cleanup();
    }
};

} // namespace tavrin::test
