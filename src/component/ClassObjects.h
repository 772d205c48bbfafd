#pragma once

#include "component/CallResult.h"

namespace tavrin {

/// The structure of functions for a class and an interface. Raises TV_E_POINTER, TV_E_CLASSNOTAVAILABLE and
/// TV_E_NOINTERFACE; `*object` is null then.
TvResult getClassObject(const char* className, const char* interfaceName, void** object);

/// The functions that belong to no class.
const TvLibrary& libraryObject();

} // namespace tavrin
