#pragma once

#include "component/CallResult.h"

#include <QDateTime>
#include <QString>
#include <QVariant>
#include <QVariantList>

#include <vector>

namespace tavrin {

/// A text of the program's. Raises TV_E_POINTER for a null one and TV_E_INVALIDARG for one that is no UTF-8.
QString toText(const char* text);

/// A value of the program's. Raises TV_E_TYPEMISMATCH for a type that is none, TV_E_POINTER for a text, font
/// or list that is null, TV_E_HANDLE for an object that has died.
QVariant toValue(const TvVariant& variant);

/// The arguments of a call. Raises TV_E_POINTER when they are null and more than 0, TV_E_INVALIDARG when they
/// are fewer.
QVariantList toValues(const TvVariant* variants, qint32 count);

/// Puts a value into a variant of which the content is not looked at. Raises TV_E_TYPEMISMATCH for a value
/// that has no place in one; the variant is Empty then.
void putValue(const QVariant& value, TvVariant& variant);

/// From here on a double does not hold every integer.
inline constexpr double LastExact = 9007199254740992.0;

/// The moment as texts hold it, with milliseconds where it has some.
QString isoText(const QDateTime& moment);

/// Ends what the variant holds and makes it Empty.
void clearVariant(TvVariant& variant) noexcept;

// Each ends what the variant holds and then puts a copy.
void putText(TvVariant& variant, const QString& text);
void putPicture(TvVariant& variant, const QByteArray& png);
void putFont(TvVariant& variant, const TvFont& font);
void putList(TvVariant& variant, qint32 count);

/// Variants for a call of the program: filled with values, and cleared at the end.
class VariantArray
{
public:
    explicit VariantArray(const QVariantList& values);
    ~VariantArray();
    VariantArray(const VariantArray&) = delete;
    VariantArray& operator=(const VariantArray&) = delete;

    TvVariant* data() { return m_variants.data(); }
    qint32 count() const { return static_cast<qint32>(m_variants.size()); }
    TvVariant& at(int index) { return m_variants.at(static_cast<size_t>(index)); }

private:
    explicit VariantArray(size_t count)
        : m_variants(count)
    {
    }

    std::vector<TvVariant> m_variants;
};

/// The value as a property or an argument of the type wants it. Raises TV_E_TYPEMISMATCH or TV_E_OVERFLOW,
/// naming `what`.
QVariant convertTo(QMetaType type, const QVariant& value, const QString& what);

} // namespace tavrin
