#include "host/HostTestSupport.h"
#include "host/geocode/Geocoder.h"

using namespace tavrin;
using namespace tavrin::test;

namespace {

const QByteArray Header = "Address,City,Latitude,Longitude,Result,Accuracy,Match,Error\n";

} // namespace

class tst_Geocoder : public TestCase
{
    Q_OBJECT

private:
    std::optional<QTemporaryDir> m_folder;

    Geocoder geocoder(const QByteArray& lines) const
    {
        writeFile(m_folder->filePath(QStringLiteral("geocode/addresses.csv")), Header + lines);
        return Geocoder(DataFiles(m_folder->path()));
    }
    Geocoder usual() const
    {
        return geocoder("1 Main Street,Town,45.5,-128.25,exact,,,\n"
                        "Main Street & Oak Lane,Town,45.6,-128.5,intersection,,,\n"
                        "Elm Road / Ash Road,Town,45.7,-128.5,intersection,0.8,Elm Road & Fir Road,\n"
                        "2 Main Street,Town,45.8,-128.5,nearest,0.92,\"4 Main Street, Town\",\n"
                        "3 Main Street,Town,,,error,,,No answer\n"
                        "1 Main Street,Village,46,-128,exact,,,\n");
    }

private Q_SLOTS:
    void init() override
    {
        TestCase::init();
        m_folder.emplace();
    }

    void anAddressIsFoundWithoutRegardToCaseAndSpaces_data()
    {
        QTest::addColumn<QString>("address");
        QTest::addColumn<QString>("city");
        QTest::addColumn<QString>("latitude");
        const auto add = [](const char* address, const char* city, const char* latitude) {
            QTest::addRow("%s, %s", address, city)
                << QString::fromUtf8(address) << QString::fromUtf8(city) << QString::fromUtf8(latitude);
        };
        add("1 Main Street", "Town", "45.5");
        add(" 1  MAIN street ", "tOWN ", "45.5");
        add("1MainStreet", "Town", "45.5");
        add("1\u00a0Main\tStreet", "Town", "45.5");
        add("1 Main Street", "Village", "46");
        add("1 Main Street", "Other", "");
        add("1 Main Street", "", "");
        add("", "", "");
        add("11 Main Street", "Town", "");
        add("1 Main", "Town", "");
        add("Main Street & Oak Lane", "Town", "45.6");
        add("main street&oak lane", "Town", "45.6");
        add("Main Street / Oak Lane", "Town", "45.6");
        add("Oak Lane & Main Street", "Town", "45.6");
        add("Ash Road/Elm Road", "Town", "45.7");
        add("Main Street & Ash Road", "Town", "");
        add("Main Street Oak Lane", "Town", "");
        add("Main Street & Oak Lane & Ash Road", "Town", "");
    }
    void anAddressIsFoundWithoutRegardToCaseAndSpaces()
    {
        QFETCH(QString, address);
        QFETCH(QString, city);
        QFETCH(QString, latitude);
        const GeocodeResult result = usual().find(address, city);
        QCOMPARE(result.Latitude, latitude);
        QCOMPARE(result.Status, latitude.isEmpty() ? 1 : 0);
        QCOMPARE(result.Accuracy.has_value(), !latitude.isEmpty());
    }

    void eachKindTellsWhatItFound_data()
    {
        QTest::addColumn<QString>("address");
        QTest::addColumn<int>("status");
        QTest::addColumn<QVariant>("accuracy");
        QTest::addColumn<QString>("type");
        QTest::addColumn<QString>("output");
        QTest::addColumn<QString>("error");
        const QString none;
        const QString crossing = QStringLiteral("intersection");
        QTest::newRow("exact") << QStringLiteral("1 main street") << 0 << QVariant(1.0)
                               << QStringLiteral("address") << QStringLiteral("1 Main Street, Town") << none;
        QTest::newRow("intersection") << QStringLiteral("oak lane & main street") << 0 << QVariant(0.95)
                                      << crossing << QStringLiteral("Main Street & Oak Lane, Town") << none;
        QTest::newRow("poor intersection") << QStringLiteral("elm road & ash road") << 0 << QVariant(0.8)
                                           << crossing << QStringLiteral("Elm Road & Fir Road") << none;
        QTest::newRow("nearest") << QStringLiteral("2 main street") << 0 << QVariant(0.92)
                                 << QStringLiteral("street") << QStringLiteral("4 Main Street, Town") << none;
        QTest::newRow("error") << QStringLiteral("3 main street") << 4 << QVariant() << none << none
                               << QStringLiteral("No answer");
        QTest::newRow("not found") << QStringLiteral("9 main street") << 1 << QVariant() << none << none
                                   << none;
    }
    void eachKindTellsWhatItFound()
    {
        QFETCH(QString, address);
        QFETCH(int, status);
        QFETCH(QVariant, accuracy);
        const GeocodeResult result = usual().find(address, QStringLiteral("town"));
        QCOMPARE(result.Status, status);
        QCOMPARE(result.Accuracy ? QVariant(*result.Accuracy) : QVariant(), accuracy);
        QTEST(result.AccuracyType, "type");
        QTEST(result.OutputAddress, "output");
        QTEST(result.Error, "error");
    }

    void aTableThatIsWrongIsNamedByFileAndLine_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<QString>("problem");
        const auto add = [](const char* line, const char* problem) {
            QTest::newRow(problem) << QByteArray(line) + '\n' << QString::fromUtf8(problem);
        };
        add(",Town,1,1,exact,,,", "Address");
        add("A,,1,1,exact,,,", "City");
        add("A,Town,x,1,exact,,,", "Latitude is not a number of degrees: x");
        add("A,Town,91,1,exact,,,", "Latitude is not a number of degrees: 91");
        add("A,Town,nan,1,exact,,,", "Latitude is not a number of degrees: nan");
        add("A,Town,1,-181,exact,,,", "Longitude is not a number of degrees: -181");
        add("A,Town,1,1,guess,,,", "not \"guess\"");
        add("A,Town,1,1,intersection,,,", "not \"intersection\"");
        add("A,Town,1,1,nearest,0.5,,", "Match");
        add("A,Town,1,1,nearest,,B,", "Accuracy must lie between 0 and 1: ");
        add("A,Town,1,1,nearest,1,B,", "Accuracy must lie between 0 and 1: 1");
        add("A & B,Town,1,1,intersection,0,,", "Accuracy must lie between 0 and 1: 0");
        add("A,Town,,,error,,,", "Error");
        add("1 MAIN street,town,1,1,exact,,,", "Address stands twice: 1 MAIN street");
    }
    void aTableThatIsWrongIsNamedByFileAndLine()
    {
        QFETCH(QByteArray, line);
        QFETCH(QString, problem);
        const QString text = errorOf([&] { geocoder("1 Main Street,Town,45.5,-128.25,exact,,,\n" + line); });
        QVERIFY2(text.contains(problem), qPrintable(text));
        QVERIFY2(text.contains(QStringLiteral("geocode/addresses.csv, line 3: ")), qPrintable(text));
    }

    void aFileThatIsNoTableIsOneErrorWithItsPlace_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("problem");
        QTest::newRow("empty") << QByteArray() << QStringLiteral(", line 1: the header line is missing");
        QTest::newRow("no column Result") << QByteArray("Address,City,Latitude,Longitude\n")
                                          << QStringLiteral(", line 1: the column Result is missing");
        QTest::newRow("a cell too few") << Header + QByteArray("A,Town,1,1\n")
                                        << QStringLiteral(", line 2: the row has 4 cells, the header has 8");
        QTest::newRow("no UTF-8") << Header + QByteArray("\xff\n")
                                  << QStringLiteral(": the file is not UTF-8 text");
    }
    void aFileThatIsNoTableIsOneErrorWithItsPlace()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, problem);
        const QString path = m_folder->filePath(QStringLiteral("geocode/addresses.csv"));
        writeFile(path, content);
        QCOMPARE(errorOf([&] { Geocoder(DataFiles(m_folder->path())); }), path + problem);
    }

    void aMissingFileIsOneErrorWithItsPlace()
    {
        const QString text = errorOf([&] { Geocoder(DataFiles(m_folder->path())); });
        const QString path = m_folder->filePath(QStringLiteral("geocode/addresses.csv"));
        QVERIFY2(text.startsWith(path + QStringLiteral(": the file cannot be read (")), qPrintable(text));
    }

    void theBuiltInTableCanBeRead()
    {
        QCOMPARE(Geocoder::builtIn()
                     .find(QStringLiteral("14 Acorn Hollow Road"), QStringLiteral("Marlow Falls"))
                     .Accuracy,
                 std::optional(1.0));
    }
};

TAVRIN_TEST_MAIN(tst_Geocoder)
#include "tst_Geocoder.moc"
