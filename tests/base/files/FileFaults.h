#pragma once

#include "base/files/Descriptor.h"

#include <functional>

// What the tests of files share that cannot be read or written.

namespace tavrin::test {

/// The system's code of the `SystemError` that `action` raises; 0 when it raises none.
inline int codeOf(const std::function<void()>& action)
{
    try {
        action();
    } catch (const SystemError& error) {
        return error.Code;
    }
    return 0;
}

} // namespace tavrin::test
