#pragma once

#include "frame/host_contracts/Records.h"

#include <QString>

namespace tavrin {

/// Key of the module that a record belongs to, by the name of its class: "Incident" for a tvIncidentBO,
/// "MIWarrant" for a tvMIWarrant. Raises error 5 for a class of another name, and error 91 without a record.
QString GetModuleKeyFromBO(const tvBusinessObjectPtr& record);

/// Whether both stand for one record: they are one object, or of one class, and their main rows, each the row
/// under the module's name, have equal keys other than Null. nullptr is no record.
bool isSameRecord(const tvBusinessObjectPtr& one, const tvBusinessObjectPtr& other);

} // namespace tavrin
