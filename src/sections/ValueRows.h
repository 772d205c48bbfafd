#pragma once

#include "frame/host_contracts/Records.h"

#include <QVariantList>

namespace tavrin {

/// Writes the values into a field of the rows, from the first on. Appends the rows that are missing, removes
/// those behind the last value in which nothing but a value stands, and sets the value of what is left to
/// Null. `line` gets the number of the statement that runs, from 1010 to 1120.
void writeValues(const QVariantList& values, const QString& fieldName, tvTableCollection& rows, int& line);

} // namespace tavrin
