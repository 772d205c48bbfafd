#include "base/values/Variant.h"

#include "base/failure/Error.h"

#include <QDateTime>
#include <QLocale>

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace tavrin {

namespace {

bool isNumber(const QVariant& value)
{
    switch (value.typeId()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::UChar:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::Double:
    case QMetaType::Float:
        return true;
    default:
        return false;
    }
}

[[noreturn]] void raiseTypeMismatch()
{
    throw Error(QStringLiteral("Type mismatch"), Error::TypeMismatchNumber);
}

QString doubleText(double value)
{
    // The shortest text that reads back as the same number, without an exponent where a person expects none.
    const bool plain = value == 0 || (std::fabs(value) < 1e15 && std::fabs(value) >= 1e-4);
    return plain ? QString::number(value, 'f', QLocale::FloatingPointShortest)
                 : QString::number(value, 'g', QLocale::FloatingPointShortest);
}

/// The double whose shortest text is the shortest one of the single-precision number.
double widened(float value)
{
    std::array<char, 32> text = {};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value).ptr;
    return QByteArray(text.data(), end - text.data()).toDouble();
}

template <typename Target>
Target toWhole(const QVariant& value)
{
    const double number = std::nearbyint(ToDouble(value)); // rounds halves to even
    if (!(number >= std::numeric_limits<Target>::min() && number <= std::numeric_limits<Target>::max()))
        throw Error(QStringLiteral("Overflow"), Error::OverflowNumber);
    return static_cast<Target>(number);
}

} // namespace

QVariant Null()
{
    return QVariant::fromValue(nullptr);
}

bool IsNull(const QVariant& value)
{
    return value.isValid() && value.isNull();
}

bool IsEmpty(const QVariant& value)
{
    return !value.isValid();
}

QString ToText(const QVariant& value)
{
    if (IsEmpty(value) || IsNull(value))
        return {};
    switch (value.typeId()) {
    case QMetaType::QString:
        return value.toString();
    case QMetaType::Bool:
        return value.toBool() ? QStringLiteral("True") : QStringLiteral("False");
    case QMetaType::Double:
        return doubleText(value.toDouble());
    case QMetaType::Float:
        return doubleText(widened(value.toFloat()));
    default:
        if (!value.canConvert<QString>())
            raiseTypeMismatch();
        return value.toString();
    }
}

double ToDouble(const QVariant& value)
{
    if (IsEmpty(value))
        return 0;
    if (IsNull(value))
        throw Error(QStringLiteral("Invalid use of Null"), Error::InvalidUseOfNullNumber);
    if (value.typeId() == QMetaType::Bool)
        return value.toBool() ? -1 : 0;
    if (isNumber(value))
        return value.toDouble();
    if (value.typeId() == QMetaType::QString) {
        bool ok = false;
        const double number = QLocale::c().toDouble(value.toString().trimmed(), &ok);
        if (ok && std::isfinite(number))
            return number;
    }
    raiseTypeMismatch();
}

qint32 ToLong(const QVariant& value)
{
    return toWhole<qint32>(value);
}

qint16 ToInteger(const QVariant& value)
{
    return toWhole<qint16>(value);
}

bool ToBoolean(const QVariant& value)
{
    if (value.typeId() == QMetaType::QString) {
        const QString text = value.toString().trimmed();
        if (text.compare(QLatin1String("true"), Qt::CaseInsensitive) == 0)
            return true;
        if (text.compare(QLatin1String("false"), Qt::CaseInsensitive) == 0)
            return false;
    }
    return ToDouble(value) != 0;
}

bool SameValue(const QVariant& a, const QVariant& b)
{
    if (IsNull(a) || IsNull(b))
        return IsNull(a) && IsNull(b);
    if (isNumber(a) && isNumber(b))
        return a.toDouble() == b.toDouble();
    return a == b;
}

} // namespace tavrin
