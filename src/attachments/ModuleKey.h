#pragma once

#include "frame/host_contracts/Records.h"

#include <QString>

namespace tavrin {

/// Key of the module that a record belongs to, by the name of its class: "Incident" for a tvIncidentBO,
/// "MIWarrant" for a tvMIWarrant. Raises error 5 for a class of another name, and error 91 without a record.
QString GetModuleKeyFromBO(const tvBusinessObjectPtr& record);

} // namespace tavrin
