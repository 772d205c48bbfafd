#pragma once

#include <QString>

namespace tavrin {

/// The user's file in which libraries enter their classes, so that programs find them by their names: one
/// group a class, as in
///
///     [TVBoundControls.AgencyPicker]
///     Library=/usr/lib/x86_64-linux-gnu/libTVBoundControls.so.1
///     Version=1.0
///     TypeLibrary=Tavrin Bound User Controls
///     Interface=_AgencyPicker
///     Events=__AgencyPicker
///     Contract=TavrinControl
///
/// Lines that begin with ';' or '#' are comments.
QString registrationPath();

/// Enters the public classes for the library at this path, in place of what stands there for them, and takes
/// out what it has entered before for others. The file is replaced as a whole; entries of other libraries and
/// comments stay. Raises TV_E_REGISTRATION for a damaged file, with the line, and TV_E_CANNOTWRITE; the file
/// then stands as it was.
void registerClasses(const QString& library);

/// Takes out what was entered for the library at this path, also under another name of the same file, and
/// the file of registrations when nothing is left. Raises as `registerClasses`.
void unregisterClasses(const QString& library);

} // namespace tavrin
