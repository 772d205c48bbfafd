#pragma once

#include "frame/host_contracts/Records.h"

#include <QString>

namespace tavrin {

// Records as JSON, in the shape that TVBoundControls.h tells at NewRecord.

/// A record, or a collection alone. Raises TV_E_INVALIDARG with what is wrong and where.
HostObjectPtr recordFromText(const QString& json);

/// Of what `recordFromText` has made, as it is now.
QString textOfRecord(const HostObjectPtr& record);

/// The record that the text gave as its parent, or else the one that holds it; nullptr for none and for
/// records of others.
tvBusinessObjectPtr parentOfRecord(const tvBusinessObjectPtr& record);

/// A new empty collection of no record; its rows have the column SeqNo alone, which numbers them.
tvTableCollectionPtr newEmptyCollection();

} // namespace tavrin
