#pragma once

#include "host/database/DataFiles.h"
#include "host/database/Database.h"

#include <QSet>

#include <map>

namespace tavrin {

/// What the rows of an incident may refer to.
struct KnownCodes
{
    std::map<int, QSet<int>> Values; ///< by table number
    QSet<int> Offenses;
    QSet<int> Employees;
    QSet<int> K9Handlers; ///< those of the employees who handle a dog
    QSet<QString> Users;
};

/// Inserts the incidents of "sample/incidents.json" as part of the caller's transaction. Raises an `Error`
/// with file and line, the line being the one on which the incident starts.
void insertSampleIncidents(Database& database, const DataFiles& files, const KnownCodes& known);

} // namespace tavrin
