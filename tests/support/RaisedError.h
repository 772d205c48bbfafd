#pragma once

#include "base/failure/Error.h"

namespace tavrin::test {

/// The error that `call` raises; its number is 0 when it raises none.
template <typename Call>
Error raisedBy(Call call)
{
    try {
        call();
    } catch (const Error& error) {
        return error;
    }
    return Error(QString(), 0);
}

} // namespace tavrin::test
