#pragma once

#include "host/database/Database.h"
#include "host/database/DatabaseOptions.h"

namespace tavrin {

/// Looks at a database file without changing it. Raises an `Error` that names the file and says what to do
/// when it cannot be worked with; a file that is not there yet is fine when `mode` allows to create it.
void checkDatabaseFile(const QString& path, OpenMode mode, const DatabaseOptions& options);

/// True for the name, as the platform gives it, of a file system that lies on another machine.
bool isNetworkFileSystem(const QByteArray& fileSystemType);

/// A connection's name that no other has.
QString uniqueConnectionName();

} // namespace tavrin
