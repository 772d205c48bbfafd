#pragma once

#include "base/export/Export.h"
#include "host/database/Database.h"

#include <memory>

namespace tavrin {

/// Fills a new database with the code tables and the sample records.
class TAVRIN_EXPORT SampleData
{
public:
    /// From the files that are built in, or from those of a folder of the same layout.
    explicit SampleData(const QString& folder = {});
    ~SampleData();

    /// Fills the database when it holds no code table, no person and no incident yet; returns whether it
    /// did. All or nothing: bad input raises an `Error` with file and line, a folder without the files one
    /// that says what it must hold, and nothing is written.
    bool fillOnce(Database& database) const;

private:
    class Q_DECL_HIDDEN Private;
    std::unique_ptr<Private> d;
};

} // namespace tavrin
