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
    Boolean,
    Long,
    Text,
    Variant,
    Color,
    Font,
    Picture
};

/// One saved property of a control.
struct SavedProperty
{
    /// The key in the bag; `PropertyChanged` bears it too.
    QString key;
    PropertyKind kind;
    QVariant defaultValue;
    std::function<QVariant()> get;
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
