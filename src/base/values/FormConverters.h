#pragma once

namespace tavrin {

/// Tells Qt's variants how to turn what a form file or a form designer holds into the library's own values,
/// and back, so that `setProperty` takes them: a `QColor` or a number into a `Color`, a `QFont` into a
/// `FontPtr`.
///
/// A `QColor` that is invalid is refused. A system colour becomes the colour that it has in the application's
/// palette now. A number counts as a colour as saved ones do, with a sign or without. Every control sees to
/// it when it is made; a second call does nothing.
void registerFormConverters();

} // namespace tavrin
