#pragma once

#include "base/failure/Error.h"
#include "frame/host_contracts/Records.h"

namespace tavrin {

/// Number of the error that a missing object raises.
inline constexpr int MissingObjectNumber = 91;

/// The object itself. Raises error 91, saying what is missing, for nullptr.
template <typename Object>
Object& required(const std::shared_ptr<Object>& object, const QString& what)
{
    if (!object)
        throw Error(QStringLiteral("There is no %1").arg(what), MissingObjectNumber);
    return *object;
}

/// The child of this name. Raises error 91 when there is none of this kind.
template <typename Child>
std::shared_ptr<Child> childOf(tvBusinessObject& record, const QString& name)
{
    auto child = std::dynamic_pointer_cast<Child>(record.Item(name));
    required(child, name);
    return child;
}

} // namespace tavrin
