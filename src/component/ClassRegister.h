#pragma once

#include "base/export/Export.h"
#include "frame/control_frame/ControlRegister.h"

#include <vector>

namespace tavrin {

/// Name and version of the type library that the public controls belong to.
inline constexpr char TypeLibraryName[] = "Tavrin Bound User Controls";
inline constexpr char TypeLibraryVersion[] = "1.0";

/// What is known of a public control without making one.
struct PublicClass
{
    /// As in "TVBoundControls.AgencyPicker".
    QString name;
    /// Its properties, operations and events, by Qt.
    const QMetaObject* meta;
    /// The contract by which a host drives it: "TavrinControl", "BoundControl", "BoundSection" or "".
    QString contract;
    /// As in "_AgencyPicker".
    QString defaultInterface;
    /// As in "__AgencyPicker"; "" for a class without events.
    QString eventInterface;
};

/// All public controls of the library, in the order of their names.
TAVRIN_EXPORT const std::vector<PublicClass>& publicClasses();

/// The class of this name; nullptr when there is none.
TAVRIN_EXPORT const PublicClass* findPublicClass(const QString& name);

/// All public controls of the library by their class names.
TAVRIN_EXPORT const ControlRegister& publicControls();

} // namespace tavrin
