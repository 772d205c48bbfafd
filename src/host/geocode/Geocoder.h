#pragma once

#include "host/database/DataFiles.h"
#include "host/records/RecordRow.h"

#include <QHash>

namespace tavrin {

class Record;

/// What a search for an address found.
struct GeocodeResult
{
    static constexpr qint32 Found = 0;
    static constexpr qint32 NotFound = 1;
    static constexpr qint32 Failed = 4;

    qint32 Status = NotFound;
    /// 1 for the address itself, less for another; none where nothing was found.
    std::optional<double> Accuracy;
    QString AccuracyType; ///< "address", "intersection" or "street"
    QString Latitude;
    QString Longitude;
    QString OutputAddress;
    QString Error;
};

/// Finds the coordinates of addresses in a small table, "geocode/addresses.csv".
class Geocoder
{
public:
    /// Raises an `Error` with file and line for a table that cannot be read.
    explicit Geocoder(const DataFiles& files);
    /// The one over the table that is built into the program.
    static const Geocoder& builtIn();

    /// Address and city compare without case and spaces. Two streets with "&" or "/" between them are an
    /// intersection, in either order.
    GeocodeResult find(const QString& address, const QString& city) const;

private:
    QHash<QString, GeocodeResult> m_results;
};

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
