#include "geocode/GeocodeResult.h"

#include "base/values/Variant.h"

namespace tavrin::GeocodeResult {

namespace {

constexpr int AddressNotFound = 1;
constexpr int GeocodingError = 4;
constexpr double GoodMatch = 1.0;
constexpr double GoodIntersection = 0.9;

QVariant valueOf(tvTableRow& row, const char* field)
{
    return fieldOf(row, QString::fromLatin1(field))->Value();
}

QString textOf(tvTableRow& row, const char* field)
{
    return ToText(valueOf(row, field));
}

bool hasStatus(tvTableRow& row, int status)
{
    const QVariant value = valueOf(row, "GeocodeStatus");
    return !IsNull(value) && ToLong(value) == status;
}

} // namespace

QString longestWarning()
{
    return QStringLiteral("A geocoding error occurred.");
}

bool isPoorMatch(tvTableRow& row)
{
    const bool isKnown = !IsNull(valueOf(row, "GeocodeStatus")) && !row.IsNew();
    const bool isIntersection = textOf(row, "GeocodeAccuracyType") == QLatin1String("intersection");
    const double threshold = isIntersection ? GoodIntersection : GoodMatch;
    const QVariant accuracy = valueOf(row, "GeocodeAccuracy");
    return isKnown && (IsNull(accuracy) || ToDouble(accuracy) < threshold);
}

QString warningText(tvTableRow& row)
{
    if (hasStatus(row, GeocodingError))
        return longestWarning();
    if (hasStatus(row, AddressNotFound))
        return QStringLiteral("Address not found.");
    return QStringLiteral("Lat/long may be incorrect.");
}

QString detailsText(tvTableRow& row)
{
    if (hasStatus(row, GeocodingError))
        return QStringLiteral("A geocoding error occurred: ") + textOf(row, "GeocodeError");
    if (IsNull(valueOf(row, "GeocodeAccuracy")))
        return QStringLiteral("An incomplete or unknown address was entered. Complete all address fields to "
                              "get more accurate coordinates, or manually enter the correct coordinates "
                              "instead.");
    const QString paragraph = QStringLiteral("\r\n\r\n");
    const QString bullet = QStringLiteral("  \u2022 ");
    return QStringLiteral("We couldn't an exact match for this location:") + paragraph + bullet +
           textOf(row, "GeocodeInputAddress") + paragraph +
           QStringLiteral("The coordinates shown are for the closest match:") + paragraph + bullet +
           textOf(row, "GeocodeOutputAddress") + paragraph +
           QStringLiteral("Check to make sure you entered the address correctly in this Location record. ") +
           paragraph +
           QStringLiteral("If the address you entered is correct, manually enter the coordinates for this "
                          "location instead to ensure accuracy.");
}

} // namespace tavrin::GeocodeResult
