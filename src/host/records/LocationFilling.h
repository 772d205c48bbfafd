#pragma once

#include "host/records/RecordRow.h"

#include <QVariant>

#include <utility>
#include <vector>

namespace tavrin {

class Geocoder;
class Record;

/// Fills in coordinates and "Geocode..." fields of a record whose "GeocodeOnSave" is true, without telling
/// anybody, and takes them back unless the save comes to its end. Fields that the record does not have are
/// passed over.
///
/// An address that is not found loses its coordinates. After an error they stay if they are those of the same
/// address.
class LocationFilling
{
public:
    LocationFilling(const Record& record, const Geocoder& geocoder);
    ~LocationFilling();
    LocationFilling(const LocationFilling&) = delete;
    LocationFilling& operator=(const LocationFilling&) = delete;

    void keep() { m_before.clear(); }

private:
    void fillIn(const RecordRow& location, const char* column, const QVariant& value);

    std::vector<std::pair<FieldCell*, QVariant>> m_before;
};

} // namespace tavrin
