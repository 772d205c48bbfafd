#pragma once

#include "base/export/Export.h"

namespace tavrin {

/// What a host's `tvCustomDictionary` may be besides: able to take back what it did.
///
/// A person who adds a word by mistake can take that back for as long as the spelling dialog is open. A host
/// whose objects do not offer this keeps the word.
class TAVRIN_EXPORT RemovableWord
{
public:
    virtual ~RemovableWord() = default;

    /// Takes the word that `AddWord` of this object added out of the list again. A word that the list held
    /// before stays. Raises an `Error` with a text for a person.
    virtual void TakeBack() = 0;
};

} // namespace tavrin
