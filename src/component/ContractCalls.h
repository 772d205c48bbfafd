#pragma once

#include "component/CallResult.h"

#include <QString>
#include <QVariant>
#include <QVariantList>

namespace tavrin {

/// Calls the contract of the control behind the handle by the operation's name. Raises TV_E_NOINTERFACE for a
/// control without a contract, TV_E_MEMBERNOTFOUND, TV_E_BADPARAMCOUNT, TV_E_TYPEMISMATCH, and what the
/// control raises as TV_E_EXCEPTION.
QVariant callContract(TvHandle handle, const QString& operation, const QVariantList& arguments);

} // namespace tavrin
