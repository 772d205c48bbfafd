#include "frame/control_frame/SavedProperty.h"

#include "base/failure/Error.h"
#include "base/values/Color.h"
#include "base/values/Font.h"
#include "base/values/Variant.h"

#include <QImage>

#include <limits>

namespace tavrin {

namespace {

template <typename Type>
QVariant exactly(const QVariant& value)
{
    if (value.typeId() != qMetaTypeId<Type>())
        throw Error(QStringLiteral("Type mismatch"), Error::TypeMismatchNumber);
    return value;
}

QVariant toColor(const QVariant& value)
{
    if (value.typeId() == qMetaTypeId<Color>())
        return value;
    // A colour as a number comes with or without a sign.
    const double number = ToDouble(value);
    if (number > std::numeric_limits<qint32>::max() && number <= std::numeric_limits<quint32>::max())
        return QVariant::fromValue(Color(static_cast<quint32>(number)));
    return QVariant::fromValue(Color(static_cast<quint32>(ToLong(value))));
}

QVariant toText(const QVariant& value)
{
    if (IsNull(value))
        throw Error(QStringLiteral("Invalid use of Null"), Error::InvalidUseOfNullNumber);
    return ToText(value);
}

} // namespace

SavedProperty fontProperty(const FontPtr& standard, std::function<FontPtr()> get,
                           std::function<void(const FontPtr&)> put)
{
    const auto saved = [standard, get = std::move(get)] {
        const FontPtr font = get();
        const bool same = font->toQFont() == standard->toQFont() && font->Charset() == standard->Charset();
        return QVariant::fromValue(same ? standard : font);
    };
    return {QStringLiteral("Font"), PropertyKind::Font, QVariant::fromValue(standard), saved,
            [put = std::move(put)](const QVariant& value) { put(value.value<FontPtr>()); }};
}

SavedProperty colorProperty(const QString& key, Color standard, std::function<Color()> get,
                            std::function<void(Color)> put)
{
    return {key, PropertyKind::Color, QVariant::fromValue(standard),
            [get = std::move(get)] { return QVariant::fromValue(get()); },
            [put = std::move(put)](const QVariant& value) { put(value.value<Color>()); }};
}

SavedProperty booleanProperty(const QString& key, bool standard, std::function<bool()> get,
                              std::function<void(bool)> put)
{
    return {key, PropertyKind::Boolean, standard, [get = std::move(get)] { return QVariant(get()); },
            [put = std::move(put)](const QVariant& value) { put(value.toBool()); }};
}

QVariant convertProperty(PropertyKind kind, const QVariant& value)
{
    switch (kind) {
    case PropertyKind::Boolean:
        return ToBoolean(value);
    case PropertyKind::Long:
        return ToLong(value);
    case PropertyKind::Text:
        return toText(value);
    case PropertyKind::Color:
        return toColor(value);
    case PropertyKind::Font:
        return exactly<FontPtr>(value);
    case PropertyKind::Picture:
        return IsNull(value) || IsEmpty(value) ? value : exactly<QImage>(value);
    case PropertyKind::Variant:
        break;
    }
    return value;
}

} // namespace tavrin
