#pragma once

#include "frame/host_contracts/Records.h"

/// What the host's last geocoding has left in the row of a location, and the words for it.
namespace tavrin::GeocodeResult {

/// Whether the last geocoding of the saved row found less than a good match.
bool isPoorMatch(tvTableRow& row);
/// What is said beside the coordinates of a poor match.
QString warningText(tvTableRow& row);
/// The longest of these texts, that of a geocoding error.
QString longestWarning();
/// What a person who asks for more is told.
QString detailsText(tvTableRow& row);

} // namespace tavrin::GeocodeResult
