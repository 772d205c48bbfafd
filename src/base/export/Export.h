#pragma once

#include <QtGlobal>

/// Marks what programs that link the library may call: every class and function of a public header.
///
/// All else is hidden in the shared libraries.
#define TAVRIN_EXPORT Q_DECL_EXPORT

/// Marks what the libraries and programs of the same version share beyond the public headers. Nobody else may
/// count on it: it changes from version to version.
#define TAVRIN_COMPANION_EXPORT Q_DECL_EXPORT
