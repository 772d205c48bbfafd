#pragma once

#include "base/failure/Error.h"

namespace tavrin {

/// Raises the one error of an operation that a host has not overridden and that has no answer without it.
[[noreturn]] inline void notOffered(const QString& what)
{
    throw Error(QStringLiteral("The host does not offer %1").arg(what), Error::NoSuchComponentNumber);
}

} // namespace tavrin
