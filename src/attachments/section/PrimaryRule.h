#pragma once

#include "frame/host_contracts/Records.h"

/// How the primary row of the attachments, the image that is the cover of the record, moves by itself.
namespace tavrin::PrimaryRule {

/// To be called when `row` has been appended: the first image of a record becomes its cover, and a first file
/// that is no image leaves it without one.
void added(tvTableCollection& attachments, tvTableRow& row);

/// To be called when `row` has been removed: with any image that goes, the first one that is left becomes the
/// cover, also when the cover was another one. Null is the cover when none is left.
void removed(tvTableCollection& attachments, tvTableRow& row);

} // namespace tavrin::PrimaryRule
