#pragma once

#include "frame/host_contracts/Caches.h"

#include <memory>

// Stand-ins for services that this host does not offer: each can be made, and raises an `Error` with the
// number `Error::NoSuchComponentNumber` when it is called.

namespace tavrin {

[[noreturn]] void raiseNotOffered(const QString& what);

std::unique_ptr<tvCustomDictionary> makeMissingCustomDictionary();

} // namespace tavrin
