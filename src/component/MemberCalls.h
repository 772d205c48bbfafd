#pragma once

#include <QObject>
#include <QString>
#include <QVariant>
#include <QVariantList>

namespace tavrin {

// Members of an object by their names, without Qt's own way in between: what a member raises reaches the
// caller, as TV_E_EXCEPTION with the error's number, source and description.

/// Raises TV_E_MEMBERNOTFOUND.
QVariant getProperty(QObject& object, const QString& name);

/// Raises TV_E_MEMBERNOTFOUND, TV_E_ACCESSDENIED for a property that is read-only, TV_E_TYPEMISMATCH and
/// TV_E_OVERFLOW.
void putProperty(QObject& object, const QString& name, const QVariant& value);

/// Empty for an operation without a result. Raises TV_E_MEMBERNOTFOUND, TV_E_BADPARAMCOUNT, TV_E_TYPEMISMATCH
/// and TV_E_OVERFLOW.
QVariant callOperation(QObject& object, const QString& name, const QVariantList& arguments);

} // namespace tavrin
