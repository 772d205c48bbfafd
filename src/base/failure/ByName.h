#pragma once

#include "base/export/Export.h"
#include "base/failure/Guard.h"

#include <utility>

namespace tavrin {

/// While such an object lives on the thread, the next property that is put or read by its name lets a failure
/// pass to whoever asked. For callers that call the object without Qt in between, and catch.
class TAVRIN_EXPORT RaiseByName
{
public:
    RaiseByName();
    ~RaiseByName();
    RaiseByName(const RaiseByName&) = delete;
    RaiseByName& operator=(const RaiseByName&) = delete;

    /// Whether a failure may pass; only the first to ask is told so.
    static bool take();
};

/// The way into a property for Qt's property system, by which forms, designers and `setProperty` come: a
/// failure goes to the application's handler of unhandled errors, for none may pass through Qt. Setters and
/// getters themselves raise.
template <typename Body>
void byName(const char* where, Body&& body)
{
    if (RaiseByName::take())
        std::forward<Body>(body)();
    else
        guard(where, std::forward<Body>(body));
}

} // namespace tavrin
