#include "frame/control_frame/PropertyBag.h"

#include "base/failure/Error.h"
#include "base/values/Color.h"
#include "base/values/Font.h"
#include "base/values/Variant.h"

#include <QBuffer>
#include <QImage>

#include <algorithm>
#include <cmath>
#include <limits>

namespace tavrin {

namespace {

QJsonObject fontToJson(const Font& font)
{
    return {{QStringLiteral("name"), font.Name()},
            {QStringLiteral("size"), font.Size()},
            {QStringLiteral("weight"), font.Weight()},
            {QStringLiteral("charset"), font.Charset()},
            {QStringLiteral("italic"), font.Italic()},
            {QStringLiteral("underline"), font.Underline()},
            {QStringLiteral("strikethrough"), font.Strikethrough()}};
}

FontPtr fontFromJson(const QJsonObject& object)
{
    auto font = std::make_shared<Font>();
    font->SetName(object.value(QStringLiteral("name")).toString(font->Name()));
    font->SetSize(object.value(QStringLiteral("size")).toDouble(font->Size()));
    font->SetWeight(object.value(QStringLiteral("weight")).toInt(font->Weight()));
    font->SetCharset(object.value(QStringLiteral("charset")).toInt(font->Charset()));
    font->SetItalic(object.value(QStringLiteral("italic")).toBool());
    font->SetUnderline(object.value(QStringLiteral("underline")).toBool());
    font->SetStrikethrough(object.value(QStringLiteral("strikethrough")).toBool());
    return font;
}

/// No font or no picture.
bool isNoObject(const QVariant& value)
{
    return (value.typeId() == qMetaTypeId<FontPtr>() && !value.value<FontPtr>()) ||
           (value.typeId() == QMetaType::QImage && value.value<QImage>().isNull());
}

QJsonValue toJsonValue(const QString& key, const QVariant& value)
{
    if (IsNull(value) || IsEmpty(value) || isNoObject(value))
        return QJsonValue::Null;
    if (value.typeId() == qMetaTypeId<Color>()) {
        const QString hex = QStringLiteral("0x%1").arg(value.value<Color>().value(), 8, 16, QLatin1Char('0'));
        return QJsonObject{{QStringLiteral("color"), hex}};
    }
    if (value.typeId() == qMetaTypeId<FontPtr>())
        return QJsonObject{{QStringLiteral("font"), fontToJson(*value.value<FontPtr>())}};
    if (value.typeId() == QMetaType::QImage) {
        QBuffer png;
        value.value<QImage>().save(&png, "PNG");
        return QJsonObject{{QStringLiteral("picture"), QString::fromLatin1(png.data().toBase64())}};
    }
    QJsonValue plain = QJsonValue::fromVariant(value);
    const bool keepsItsType = plain.isBool() || plain.isDouble() || value.typeId() == QMetaType::QString;
    if (!keepsItsType)
        throw Error(QStringLiteral("The value of %1 cannot be saved").arg(key));
    return plain;
}

/// Empty when the value cannot be read.
QVariant fromJsonObject(const QJsonObject& object)
{
    if (object.contains(QStringLiteral("color"))) {
        bool ok = false;
        const quint32 value = object.value(QStringLiteral("color")).toString().toUInt(&ok, 0);
        return ok ? QVariant::fromValue(Color(value)) : QVariant();
    }
    const QJsonValue font = object.value(QStringLiteral("font"));
    if (font.isObject())
        return QVariant::fromValue(fontFromJson(font.toObject()));
    const QByteArray png = object.value(QStringLiteral("picture")).toString().toLatin1();
    const QImage picture = QImage::fromData(QByteArray::fromBase64(png), "PNG");
    return picture.isNull() ? QVariant() : QVariant(picture);
}

QVariant fromJsonValue(const QJsonValue& value)
{
    switch (value.type()) {
    case QJsonValue::Null:
        return Null();
    case QJsonValue::Double: {
        const double number = value.toDouble();
        const bool whole = std::floor(number) == number && number >= std::numeric_limits<qint32>::min() &&
                           number <= std::numeric_limits<qint32>::max();
        return whole ? QVariant(static_cast<qint32>(number)) : QVariant(number);
    }
    case QJsonValue::Object:
        return fromJsonObject(value.toObject());
    case QJsonValue::Array:
    case QJsonValue::Undefined:
        return {};
    default:
        return value.toVariant();
    }
}

template <typename Entries>
auto find(Entries& entries, const QString& key)
{
    return std::find_if(entries.begin(), entries.end(), [&](const PropertyBag::Entry& entry) {
        return entry.key.compare(key, Qt::CaseInsensitive) == 0;
    });
}

} // namespace

class PropertyBag::Private : public QSharedData
{
public:
    std::vector<Entry> entries;
};

PropertyBag::PropertyBag()
    : d(new Private)
{
}

PropertyBag::PropertyBag(const PropertyBag&) = default;
PropertyBag& PropertyBag::operator=(const PropertyBag&) = default;
PropertyBag::~PropertyBag() = default;

const std::vector<PropertyBag::Entry>& PropertyBag::entries() const
{
    return d->entries;
}

QVariant PropertyBag::ReadProperty(const QString& key, const QVariant& fallback) const
{
    const auto entry = find(d->entries, key);
    return entry == d->entries.end() ? fallback : entry->value;
}

void PropertyBag::WriteProperty(const QString& key, const QVariant& value, const QVariant& fallback)
{
    std::vector<Entry>& entries = d->entries;
    const auto entry = find(entries, key);
    if (SameValue(value, fallback)) {
        if (entry != entries.end())
            entries.erase(entry);
    } else if (entry != entries.end()) {
        *entry = {key, value};
    } else {
        entries.push_back({key, value});
    }
}

bool PropertyBag::contains(const QString& key) const
{
    return find(d->entries, key) != d->entries.end();
}

QJsonObject PropertyBag::toJson() const
{
    QJsonObject object;
    for (const Entry& entry : d->entries)
        object.insert(entry.key, toJsonValue(entry.key, entry.value));
    return object;
}

PropertyBag PropertyBag::fromJson(const QJsonObject& object, QStringList* problems)
{
    PropertyBag bag;
    for (auto entry = object.begin(); entry != object.end(); ++entry) {
        const QVariant value = fromJsonValue(entry.value());
        if (!IsEmpty(value))
            bag.WriteProperty(entry.key(), value, QVariant());
        else if (problems)
            problems->append(QStringLiteral("The value of %1 cannot be read").arg(entry.key()));
    }
    return bag;
}

} // namespace tavrin
