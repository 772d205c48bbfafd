#pragma once

#include "frame/host_contracts/Records.h"

namespace tavrin {

/// The collection that a tag leads to: its name in the record, or the name of a child record, a point, and
/// its name there. Raises an `Error` that says what is wrong with the tag.
tvTableCollectionPtr resolveCollectionTag(const QString& tag, const tvBusinessObjectPtr& record);

} // namespace tavrin
