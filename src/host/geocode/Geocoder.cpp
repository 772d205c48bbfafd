#include "host/geocode/Geocoder.h"

#include <cmath>

namespace tavrin {

namespace {

const QString Address = QStringLiteral("Address");
const QString City = QStringLiteral("City");
const QString Accuracy = QStringLiteral("Accuracy");
constexpr double UsualIntersection = 0.95;

QString folded(const QString& text)
{
    QString bare;
    for (const QChar c : text.normalized(QString::NormalizationForm_C)) {
        if (!c.isSpace())
            bare += c;
    }
    return bare.toCaseFolded();
}

/// The streets of an intersection; the address alone where it is none.
QStringList streetsOf(const QString& address)
{
    QString plain = address;
    plain.replace(QLatin1Char('/'), QLatin1Char('&'));
    QStringList streets;
    for (const QString& street : plain.split(QLatin1Char('&')))
        streets << folded(street);
    return streets;
}

QString keyOf(const QString& address, const QString& city)
{
    QStringList streets = streetsOf(address);
    streets.sort();
    return streets.join(QLatin1Char('&')) + QLatin1Char('\n') + folded(city);
}

/// One line of the table.
class Line
{
public:
    Line(const CsvTable& table, int row)
        : m_table(table)
        , m_row(row)
    {
    }

    GeocodeResult result() const
    {
        const QString kind = required("Result");
        GeocodeResult result;
        if (kind == QStringLiteral("error")) {
            result.Status = GeocodeResult::Failed;
            result.Error = required("Error");
            return result;
        }
        result.Status = GeocodeResult::Found;
        result.Latitude = coordinate("Latitude", 90);
        result.Longitude = coordinate("Longitude", 180);
        const QString match = m_table.text(m_row, QStringLiteral("Match"));
        result.OutputAddress =
            match.isEmpty() ? Geocoder::oneLine(required("Address"), required("City")) : match;
        const bool isIntersection = streetsOf(required("Address")).size() > 1;
        if (kind == QStringLiteral("exact")) {
            result.Accuracy = 1.0;
            result.AccuracyType = QStringLiteral("address");
        } else if (kind == QStringLiteral("intersection") && isIntersection) {
            result.Accuracy = accuracy(UsualIntersection);
            result.AccuracyType = QStringLiteral("intersection");
        } else if (kind == QStringLiteral("nearest")) {
            required("Match");
            result.Accuracy = accuracy(std::nullopt);
            result.AccuracyType = QStringLiteral("street");
        } else {
            fail(QStringLiteral("Result is \"exact\", \"nearest\", \"error\", or \"intersection\" for two "
                                "streets, not \"%1\"")
                     .arg(kind));
        }
        return result;
    }

private:
    QString required(const char* column) const
    {
        return m_table.requiredText(m_row, QString::fromLatin1(column));
    }
    [[noreturn]] void fail(const QString& what) const { m_table.fail(m_row, what); }

    QString coordinate(const char* column, double limit) const
    {
        QString text = required(column);
        bool isNumber = false;
        const double degrees = text.toDouble(&isNumber);
        if (!isNumber || !(std::abs(degrees) <= limit))
            fail(QStringLiteral("%1 is not a number of degrees: %2").arg(QString::fromLatin1(column), text));
        return text;
    }

    double accuracy(std::optional<double> usual) const
    {
        const QString text = m_table.text(m_row, Accuracy);
        if (text.isEmpty() && usual)
            return *usual;
        bool isNumber = false;
        const double share = text.toDouble(&isNumber);
        if (!isNumber || !(share > 0 && share < 1))
            fail(QStringLiteral("Accuracy must lie between 0 and 1: %1").arg(text));
        return share;
    }

    const CsvTable& m_table;
    int m_row;
};

} // namespace

Geocoder::Geocoder(const DataFiles& files)
{
    const CsvTable table(files, QStringLiteral("geocode/addresses.csv"),
                         {Address, City, QStringLiteral("Latitude"), QStringLiteral("Longitude"),
                          QStringLiteral("Result"), Accuracy, QStringLiteral("Match"),
                          QStringLiteral("Error")});
    for (int row = 0; row < table.rowCount(); ++row) {
        const QString key = keyOf(table.requiredText(row, Address), table.requiredText(row, City));
        if (m_results.contains(key))
            table.fail(row, QStringLiteral("Address stands twice: %1").arg(table.text(row, Address)));
        m_results.insert(key, Line(table, row).result());
    }
}

const Geocoder& Geocoder::builtIn()
{
    static const Geocoder geocoder{DataFiles()};
    return geocoder;
}

GeocodeResult Geocoder::find(const QString& address, const QString& city) const
{
    return m_results.value(keyOf(address, city));
}

QString Geocoder::oneLine(const QString& address, const QString& city)
{
    const QString separator = address.isEmpty() || city.isEmpty() ? QString() : QStringLiteral(", ");
    return address + separator + city;
}

} // namespace tavrin
