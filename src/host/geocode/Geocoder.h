#pragma once

#include "base/export/Export.h"
#include "host/database/DataFiles.h"

#include <QHash>
#include <QString>

#include <optional>

namespace tavrin {

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
class TAVRIN_COMPANION_EXPORT Geocoder
{
public:
    /// Raises an `Error` with file and line for a table that cannot be read.
    explicit Geocoder(const DataFiles& files);
    /// The one over the table that is built into the program.
    static const Geocoder& builtIn();

    /// Address and city compare without case and spaces. Two streets with "&" or "/" between them are an
    /// intersection, in either order.
    GeocodeResult find(const QString& address, const QString& city) const;

    /// Both in one line, as results name an address.
    static QString oneLine(const QString& address, const QString& city);

private:
    QHash<QString, GeocodeResult> m_results;
};

} // namespace tavrin
