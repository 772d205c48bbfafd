#pragma once

#include "base/export/Export.h"
#include "host/database/DataFiles.h"
#include "host/database/Database.h"

namespace tavrin {

/// Fills a new database with the code tables and the sample records.
class TAVRIN_EXPORT SampleData
{
public:
    /// From the files that are built in, or from those of a folder of the same layout.
    explicit SampleData(const QString& folder = {});

    /// Fills the database when it holds no code table, no person and no incident yet; returns whether it
    /// did. All or nothing: bad input raises an `Error` with file and line, a folder without the files one
    /// that says what it must hold, and nothing is written.
    bool fillOnce(Database& database) const;

private:
    DataFiles m_files;
};

} // namespace tavrin
