#include "base/values/Variant.h"
#include "component/ComponentClient.h"
#include "component/Values.h"
#include "support/TestCase.h"

#include <QDateTime>

#include <limits>

using namespace Qt::StringLiterals;
using namespace tavrin::test;

/// Values of controls and records, as programs get them.
class tst_Values : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aValueLosesNothing_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("text");
        const QDate date(2024, 1, 31);
        QTest::newRow("date") << QVariant(date) << int(TV_TEXT) << u"2024-01-31"_s;
        QTest::newRow("moment") << QVariant(QDateTime(date, QTime(10, 15))) << int(TV_TEXT)
                                << u"2024-01-31T10:15:00"_s;
        QTest::newRow("moment with milliseconds") << QVariant(QDateTime(date, QTime(10, 15, 0, 250)))
                                                  << int(TV_TEXT) << u"2024-01-31T10:15:00.250"_s;
        QTest::newRow("integer") << QVariant(7) << int(TV_LONG) << u"7"_s;
        QTest::newRow("integer beyond a Long")
            << QVariant(Q_INT64_C(3000000000)) << int(TV_DOUBLE) << u"3000000000"_s;
        QTest::newRow("last integer that a double tells from the next")
            << QVariant(Q_INT64_C(9007199254740991)) << int(TV_DOUBLE) << u"9007199254740991"_s;
        QTest::newRow("integer beyond a double")
            << QVariant(Q_INT64_C(9007199254740993)) << int(TV_TEXT) << u"9007199254740993"_s;
        QTest::newRow("negative integer beyond a double")
            << QVariant(Q_INT64_C(-9007199254740993)) << int(TV_TEXT) << u"-9007199254740993"_s;
        QTest::newRow("last integer")
            << QVariant(std::numeric_limits<quint64>::max()) << int(TV_TEXT) << u"18446744073709551615"_s;
        QTest::newRow("large fraction") << QVariant(1e17) << int(TV_DOUBLE) << u"1e+17"_s;
    }
    void aValueLosesNothing()
    {
        QFETCH(QVariant, value);
        QFETCH(int, type);
        QFETCH(QString, text);
        Answer answer;
        tavrin::putValue(value, *answer.out());
        QCOMPARE(answer.type(), type);
        QCOMPARE(tavrin::ToText(tavrin::toValue(*answer)), text);
    }
};

TAVRIN_TEST_MAIN(tst_Values)
#include "tst_Values.moc"
