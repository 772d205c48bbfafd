#pragma once

#include "base/export/Export.h"
#include "base/values/Color.h"
#include "base/values/Font.h"

#include <QString>
#include <QVariant>

#include <functional>
#include <vector>

namespace tavrin {

/// What a saved value must be convertible to. One that is not leaves the property as it is; in a control that
/// is being made, the default takes its place.
enum class PropertyKind
{
    Boolean, ///< as `ToBoolean` converts
    Long,    ///< as `ToLong` converts
    Text,    ///< as `ToText` converts; Null raises error 94
    Variant, ///< anything
    Color,   ///< a `Color`, or its number
    Font,    ///< a `FontPtr`
    Picture  ///< a `QImage`, or Null or Empty for none
};

/// One saved property of a control.
struct SavedProperty
{
    /// The key in the bag; `PropertyChanged` bears it too.
    QString key;
    /// What the value must be convertible to.
    PropertyKind kind;
    /// Not saved, and put where nothing is saved.
    QVariant defaultValue;
    /// Reads the property; it may raise what the getter raises.
    std::function<QVariant()> get;
    /// Puts the property; it may raise what the setter raises.
    std::function<void(const QVariant&)> put;
    /// Where the key is written in another form than it is read; else empty.
    QString writtenKey = {};
    /// A key under which older forms hold the value: read where the key is missing, never written.
    QString olderKey = {};
};

/// The property "Font". A font that says the same as the default counts as the default, though it is another
/// object.
TAVRIN_EXPORT SavedProperty fontProperty(const FontPtr& standard, std::function<FontPtr()> get,
                                         std::function<void(const FontPtr&)> put);

/// A property that is a colour.
TAVRIN_EXPORT SavedProperty colorProperty(const QString& key, Color standard, std::function<Color()> get,
                                          std::function<void(Color)> put);

/// A property that is a yes or no.
TAVRIN_EXPORT SavedProperty booleanProperty(const QString& key, bool standard, std::function<bool()> get,
                                            std::function<void(bool)> put);

/// In the order in which they are read and written.
using SavedProperties = std::vector<SavedProperty>;

/// The value as the property's kind wants it. Raises an `Error` when it cannot be converted.
TAVRIN_EXPORT QVariant convertProperty(PropertyKind kind, const QVariant& value);

} // namespace tavrin
