#include "host/records/LocationFilling.h"

#include "base/values/Variant.h"
#include "host/geocode/Geocoder.h"
#include "host/records/Record.h"

namespace tavrin {

namespace {

QVariant textOrNull(const QString& text)
{
    return text.isEmpty() ? Null() : QVariant(text);
}

/// The text of a column; "" where the row has none of this name.
QString textOf(const RecordRow& row, const QString& column)
{
    return row.table().indexOf(column) < 0 ? QString() : ToText(row.cell(column).value());
}

bool geocodesOnSave(const RecordRow& location)
{
    const QString column = QStringLiteral("GeocodeOnSave");
    if (location.table().indexOf(column) < 0)
        return false;
    const QVariant value = location.cell(column).value();
    return !IsNull(value) && ToBoolean(value);
}

} // namespace

LocationFilling::LocationFilling(const Record& record, const Geocoder& geocoder)
{
    const RecordRowPtr location = record.part(QStringLiteral("LocationName"));
    if (!location || !geocodesOnSave(*location))
        return;
    const QString address = textOf(*record.mainRow(), QStringLiteral("Address")).trimmed();
    const QString city = textOf(*record.mainRow(), QStringLiteral("City")).trimmed();
    const QString input = Geocoder::oneLine(address, city);
    const bool isSameAddress = textOf(*location, QStringLiteral("GeocodeInputAddress")) == input;
    // What was found for this address before, and nobody has touched since, need not be looked up again.
    const QVariant status = location->table().indexOf(QStringLiteral("GeocodeStatus")) < 0
                                ? Null()
                                : location->cell(QStringLiteral("GeocodeStatus")).value();
    if (isSameAddress && !location->isChanged() && !location->IsNew() && !IsNull(status) &&
        ToLong(status) == GeocodeResult::Found)
        return;
    const GeocodeResult result = geocoder.find(address, city);
    const bool keepsCoordinates = result.Status == GeocodeResult::Failed && isSameAddress;
    if (!keepsCoordinates) {
        fillIn(*location, "Latitude", textOrNull(result.Latitude));
        fillIn(*location, "Longitude", textOrNull(result.Longitude));
    }
    fillIn(*location, "GeocodeStatus", result.Status);
    fillIn(*location, "GeocodeAccuracy", result.Accuracy ? QVariant(*result.Accuracy) : Null());
    fillIn(*location, "GeocodeAccuracyType", textOrNull(result.AccuracyType));
    fillIn(*location, "GeocodeError", textOrNull(result.Error));
    fillIn(*location, "GeocodeInputAddress", textOrNull(input));
    fillIn(*location, "GeocodeOutputAddress", textOrNull(result.OutputAddress));
}

LocationFilling::~LocationFilling()
{
    for (const auto& [cell, value] : m_before)
        cell->fillIn(value);
}

void LocationFilling::fillIn(const RecordRow& location, const char* column, const QVariant& value)
{
    const QString name = QString::fromLatin1(column);
    if (location.table().indexOf(name) < 0)
        return;
    FieldCell& cell = location.cell(name);
    m_before.emplace_back(&cell, cell.value());
    cell.fillIn(value);
}

} // namespace tavrin
