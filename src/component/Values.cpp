#include "component/Values.h"

#include "base/values/Variant.h"
#include "component/Handles.h"
#include "frame/control_frame/SavedProperty.h"

#include <QBuffer>
#include <QImage>
#include <QStringDecoder>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>

namespace tavrin {

namespace {

constexpr int DeepestList = 32;

CallError mismatch(const QString& description)
{
    return {TV_E_TYPEMISMATCH, description, Error::TypeMismatchNumber};
}

template <typename Type>
Type* allocate(size_t count)
{
    void* memory = std::calloc(count ? count : 1, sizeof(Type));
    if (!memory)
        throw std::bad_alloc();
    return static_cast<Type*>(memory);
}

/// The variant's memory is the library's own where it is changed.
template <typename Type>
void release(const Type* memory) noexcept
{
    std::free(const_cast<Type*>(memory)); // NOLINT: as it was allocated here
}

char* copyOf(const QByteArray& bytes)
{
    char* copy = allocate<char>(static_cast<size_t>(bytes.size()) + 1);
    std::memcpy(copy, bytes.constData(), static_cast<size_t>(bytes.size()));
    return copy;
}

QVariant fontFrom(const TvFont* font)
{
    wantPointers(font);
    auto made = std::make_shared<Font>();
    if (font->name && *font->name)
        made->SetName(toText(font->name));
    if (font->size > 0)
        made->SetSize(font->size);
    if (font->weight > 0)
        made->SetWeight(font->weight);
    made->SetCharset(font->charset);
    made->SetItalic(font->italic != 0);
    made->SetUnderline(font->underline != 0);
    made->SetStrikethrough(font->strikethrough != 0);
    return QVariant::fromValue<FontPtr>(made);
}

QVariant pictureFrom(const TvPicture* picture)
{
    if (!picture || picture->length == 0)
        return QImage();
    wantPointers(picture->data);
    if (picture->length > static_cast<quint64>(std::numeric_limits<int>::max()))
        throw mismatch(QStringLiteral("The picture is too large"));
    const QImage image = QImage::fromData(picture->data, static_cast<int>(picture->length), "PNG");
    if (image.isNull())
        throw mismatch(QStringLiteral("The picture is no PNG"));
    return image;
}

QVariant valueFrom(const TvVariant& variant, int depth);

QVariant listFrom(const TvList* list, int depth)
{
    wantPointers(list);
    if (depth >= DeepestList)
        throw mismatch(QStringLiteral("The list holds lists too deeply"));
    if (list->count < 0)
        throw CallError(TV_E_INVALIDARG, QStringLiteral("A count is negative"));
    if (list->count > 0)
        wantPointers(list->items);
    QVariantList values;
    for (qint32 i = 0; i < list->count; ++i)
        values << valueFrom(list->items[i], depth + 1);
    return values;
}

QVariant valueFrom(const TvVariant& variant, int depth)
{
    switch (variant.type) {
    case TV_EMPTY:
        return {};
    case TV_NULL:
        return Null();
    case TV_LONG:
        return variant.value.integer;
    case TV_DOUBLE:
        return variant.value.number;
    case TV_TEXT:
        return toText(variant.value.text);
    case TV_OBJECT:
        return handles().valueOf(variant.value.object);
    case TV_BOOLEAN:
        return variant.value.boolean != 0;
    case TV_COLOR:
        return QVariant::fromValue(Color(variant.value.color));
    case TV_FONT:
        return fontFrom(variant.value.font);
    case TV_PICTURE:
        return pictureFrom(variant.value.picture);
    case TV_LIST:
        return listFrom(variant.value.list, depth);
    default:
        throw mismatch(QStringLiteral("There is no type %1 of values").arg(variant.type));
    }
}

void putNumber(const QVariant& value, TvVariant& variant)
{
    const double number = value.toDouble();
    const bool isFloat = value.typeId() == QMetaType::Double || value.typeId() == QMetaType::Float;
    if (!isFloat && std::abs(number) >= LastExact)
        return putText(variant, value.toString()); // a double would lose digits
    if (!isFloat && number >= std::numeric_limits<qint32>::min() &&
        number <= std::numeric_limits<qint32>::max()) {
        variant.type = TV_LONG;
        variant.value.integer = value.toInt();
    } else {
        variant.type = TV_DOUBLE;
        variant.value.number = number;
    }
}

void putFontOf(const FontPtr& font, TvVariant& variant)
{
    if (!font) {
        variant.type = TV_NULL;
        return;
    }
    const QByteArray name = font->Name().toUtf8();
    putFont(variant, {name.constData(), font->Size(), font->Weight(), font->Charset(), font->Italic(),
                      font->Underline(), font->Strikethrough()});
}

void putImage(const QImage& image, TvVariant& variant)
{
    QBuffer png;
    if (!image.isNull())
        image.save(&png, "PNG");
    putPicture(variant, png.data());
}

void putValues(const QVariantList& values, TvVariant& variant)
{
    putList(variant, static_cast<qint32>(values.size()));
    for (qsizetype i = 0; i < values.size(); ++i)
        putValue(values.at(i), variant.value.list->items[i]);
}

void putOther(const QVariant& value, TvVariant& variant)
{
    if (value.typeId() == qMetaTypeId<Color>()) {
        variant.type = TV_COLOR;
        variant.value.color = value.value<Color>().value();
    } else if (value.typeId() == qMetaTypeId<FontPtr>()) {
        putFontOf(value.value<FontPtr>(), variant);
    } else if (value.typeId() == qMetaTypeId<HostObjectPtr>()) {
        variant.type = TV_OBJECT;
        variant.value.object = handles().add(value.value<HostObjectPtr>());
    } else if (value.canConvert<QObject*>()) {
        variant.type = TV_OBJECT;
        variant.value.object = handles().add(value.value<QObject*>());
    } else {
        throw mismatch(QStringLiteral("A value of the type %1 cannot be handed over")
                           .arg(QString::fromLatin1(value.typeName())));
    }
}

void putInto(const QVariant& value, TvVariant& variant)
{
    switch (value.typeId()) {
    case QMetaType::UnknownType:
        return;
    case QMetaType::Bool:
        variant.type = TV_BOOLEAN;
        variant.value.boolean = value.toBool() ? 1 : 0;
        return;
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Short:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double:
    case QMetaType::Float:
        return putNumber(value, variant);
    case QMetaType::QString:
        return putText(variant, value.toString());
    case QMetaType::QDate:
        return putText(variant, value.toDate().toString(Qt::ISODate));
    case QMetaType::QDateTime:
        return putText(variant, isoText(value.toDateTime()));
    case QMetaType::QImage:
        return putImage(value.value<QImage>(), variant);
    case QMetaType::QStringList:
    case QMetaType::QVariantList:
        return putValues(value.toList(), variant);
    default:
        return putOther(value, variant);
    }
}

} // namespace

QString toText(const char* text)
{
    wantPointers(text);
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString decoded = decoder(QByteArrayView(text));
    if (decoder.hasError())
        throw CallError(TV_E_INVALIDARG, QStringLiteral("A text is no UTF-8"));
    return decoded;
}

QVariant toValue(const TvVariant& variant)
{
    return valueFrom(variant, 0);
}

QVariantList toValues(const TvVariant* variants, qint32 count)
{
    if (count < 0)
        throw CallError(TV_E_INVALIDARG, QStringLiteral("A count is negative"));
    if (count > 0)
        wantPointers(variants);
    QVariantList values;
    for (qint32 i = 0; i < count; ++i)
        values << toValue(variants[i]);
    return values;
}

QString isoText(const QDateTime& moment)
{
    return moment.toString(moment.time().msec() == 0 ? Qt::ISODate : Qt::ISODateWithMs);
}

void putValue(const QVariant& value, TvVariant& variant)
{
    variant = {};
    try {
        if (IsNull(value))
            variant.type = TV_NULL;
        else
            putInto(value, variant);
    } catch (...) {
        clearVariant(variant);
        throw;
    }
}

void clearVariant(TvVariant& variant) noexcept
{
    switch (variant.type) {
    case TV_TEXT:
        release(variant.value.text);
        break;
    case TV_FONT:
        if (variant.value.font)
            release(variant.value.font->name);
        release(variant.value.font);
        break;
    case TV_PICTURE:
        if (variant.value.picture)
            release(variant.value.picture->data);
        release(variant.value.picture);
        break;
    case TV_LIST:
        if (TvList* list = variant.value.list) {
            for (qint32 i = 0; i < list->count; ++i)
                clearVariant(list->items[i]);
            release(list->items);
            release(list);
        }
        break;
    default:
        break;
    }
    variant = {};
}

void putText(TvVariant& variant, const QString& text)
{
    if (text.contains(QChar(0)))
        throw mismatch(QStringLiteral("The text holds a character 0"));
    const char* copy = copyOf(text.toUtf8());
    clearVariant(variant);
    variant.type = TV_TEXT;
    variant.value.text = copy;
}

void putPicture(TvVariant& variant, const QByteArray& png)
{
    clearVariant(variant);
    variant.type = TV_PICTURE;
    if (png.isEmpty())
        return;
    auto* picture = allocate<TvPicture>(1);
    variant.value.picture = picture;
    auto* bytes = allocate<unsigned char>(static_cast<size_t>(png.size()));
    std::memcpy(bytes, png.constData(), static_cast<size_t>(png.size()));
    *picture = {bytes, static_cast<quint64>(png.size())};
}

void putFont(TvVariant& variant, const TvFont& font)
{
    const QByteArray name(font.name ? font.name : "");
    const TvFont given = font; // may lie in the variant
    clearVariant(variant);
    auto* copy = allocate<TvFont>(1);
    variant.type = TV_FONT;
    variant.value.font = copy;
    *copy = given;
    copy->name = nullptr;
    copy->name = copyOf(name);
}

void putList(TvVariant& variant, qint32 count)
{
    clearVariant(variant);
    auto* list = allocate<TvList>(1);
    variant.type = TV_LIST;
    variant.value.list = list;
    list->items = allocate<TvVariant>(static_cast<size_t>(count));
    list->count = count;
}

VariantArray::VariantArray(const QVariantList& values)
    : VariantArray(static_cast<size_t>(values.size())) // so that what is filled ends also when the rest fails
{
    for (qsizetype i = 0; i < values.size(); ++i)
        putValue(values.at(i), m_variants[static_cast<size_t>(i)]);
}

VariantArray::~VariantArray()
{
    for (TvVariant& variant : m_variants)
        clearVariant(variant);
}

QVariant convertTo(QMetaType type, const QVariant& value, const QString& what)
{
    const auto as = [&](PropertyKind kind) { return convertProperty(kind, value); };
    try {
        if (type == QMetaType::fromType<QVariant>())
            return value;
        if (type == QMetaType::fromType<bool>())
            return as(PropertyKind::Boolean);
        if (type == QMetaType::fromType<qint32>())
            return as(PropertyKind::Long);
        if (type == QMetaType::fromType<QString>())
            return as(PropertyKind::Text);
        if (type == QMetaType::fromType<Color>())
            return as(PropertyKind::Color);
        if (type == QMetaType::fromType<FontPtr>())
            return as(PropertyKind::Font);
        if (type == QMetaType::fromType<QImage>()) {
            const QVariant picture = as(PropertyKind::Picture);
            return picture.typeId() == QMetaType::QImage ? picture : QVariant(QImage());
        }
        if (type == QMetaType::fromType<QObject*>() && (IsNull(value) || IsEmpty(value)))
            return QVariant::fromValue<QObject*>(nullptr);
        QVariant converted = value;
        if (IsNull(value) || IsEmpty(value) || !converted.convert(type))
            throw Error(QStringLiteral("Type mismatch"), Error::TypeMismatchNumber);
        return converted;
    } catch (const CallError&) {
        throw;
    } catch (const Error& error) {
        throw CallError(error.Number == Error::OverflowNumber ? TV_E_OVERFLOW : TV_E_TYPEMISMATCH,
                        QStringLiteral("%1: %2").arg(what, error.Description), error.Number, error.Source);
    }
}

} // namespace tavrin
