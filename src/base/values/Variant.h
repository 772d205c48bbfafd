#pragma once

#include "base/export/Export.h"

#include <QString>
#include <QVariant>

/// Conversions of variants, as the controls rely on them.
///
/// A variant is a `QVariant`. The invalid one is Empty; Null is a value of its own and not equal to Empty.
/// A database's null (a `QVariant` with a type and no content) counts as Null too.
namespace tavrin {

/// The variant Null.
TAVRIN_EXPORT QVariant Null();

/// True for Null. False for Empty.
TAVRIN_EXPORT bool IsNull(const QVariant& value);

/// True for the invalid variant.
TAVRIN_EXPORT bool IsEmpty(const QVariant& value);

/// Null and Empty give "". A boolean gives "True" or "False". A double without fraction prints without one.
/// Raises error 13 for objects.
TAVRIN_EXPORT QString ToText(const QVariant& value);

/// A 32-bit integer; halves round to the even neighbour. Empty gives 0, True gives -1.
/// Null raises error 94, a text that is no number error 13, a number out of range error 6.
TAVRIN_EXPORT qint32 ToLong(const QVariant& value);

/// A 16-bit integer; otherwise as `ToLong`.
TAVRIN_EXPORT qint16 ToInteger(const QVariant& value);

/// Empty gives 0, True gives -1. Null raises error 94, a text that is no number error 13.
TAVRIN_EXPORT double ToDouble(const QVariant& value);

/// Numbers other than 0 are True; texts are "True", "False" in any case, or numbers. Empty gives False.
/// Null raises error 94, any other text error 13.
TAVRIN_EXPORT bool ToBoolean(const QVariant& value);

/// True when both hold the same value: numbers compare as numbers whatever their types, Null equals Null
/// only, Empty equals Empty only, all else compares as `QVariant` does. Never raises.
TAVRIN_EXPORT bool SameValue(const QVariant& a, const QVariant& b);

} // namespace tavrin
