#include "base/failure/Error.h"
#include "base/values/Color.h"
#include "base/values/Variant.h"
#include "support/TestCase.h"

#include <QDate>
#include <QVariantList>
#include <QVariantMap>

#include <limits>

using namespace Qt::StringLiterals;
using tavrin::Error;

namespace {

constexpr int NoError = 0;

QVariant typedNull(QMetaType::Type type)
{
    return QVariant(QMetaType(type));
}

QVariant anObject()
{
    return QVariant::fromValue(tavrin::Color(1));
}

/// Runs a conversion and gives the number of the error that it raised; `NoError` for none.
template <typename Conversion>
int errorOf(Conversion&& conversion)
{
    try {
        conversion();
        return NoError;
    } catch (const Error& error) {
        return error.Number;
    }
}

} // namespace

class tst_Variant : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void nullAndEmptyAreTwoThings_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<bool>("isNull");
        QTest::addColumn<bool>("isEmpty");
        QTest::newRow("Null") << tavrin::Null() << true << false;
        QTest::newRow("Empty") << QVariant() << false << true;
        QTest::newRow("integer without content") << typedNull(QMetaType::Int) << true << false;
        QTest::newRow("text without content") << typedNull(QMetaType::QString) << true << false;
        QTest::newRow("double without content") << typedNull(QMetaType::Double) << true << false;
        QTest::newRow("date without content") << typedNull(QMetaType::QDateTime) << true << false;
        QTest::newRow("empty text") << QVariant(u""_s) << false << false;
        QTest::newRow("text that was never set") << QVariant(QString()) << false << false;
        QTest::newRow("zero") << QVariant(0) << false << false;
        QTest::newRow("False") << QVariant(false) << false << false;
        QTest::newRow("object") << anObject() << false << false;
    }
    void nullAndEmptyAreTwoThings()
    {
        QFETCH(QVariant, value);
        QTEST(tavrin::IsNull(value), "isNull");
        QTEST(tavrin::IsEmpty(value), "isEmpty");
    }

    void toText_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QString>("text");
        QTest::newRow("Null") << tavrin::Null() << u""_s;
        QTest::newRow("Empty") << QVariant() << u""_s;
        QTest::newRow("integer without content") << typedNull(QMetaType::Int) << u""_s;
        QTest::newRow("text") << QVariant(u" a%1 "_s) << u" a%1 "_s;
        QTest::newRow("True") << QVariant(true) << u"True"_s;
        QTest::newRow("False") << QVariant(false) << u"False"_s;
        QTest::newRow("integer") << QVariant(-12) << u"-12"_s;
        QTest::newRow("64 bits") << QVariant(Q_INT64_C(9007199254740993)) << u"9007199254740993"_s;
        QTest::newRow("double without fraction") << QVariant(1024.0) << u"1024"_s;
        QTest::newRow("large double without fraction") << QVariant(100000000000000.0) << u"100000000000000"_s;
        QTest::newRow("double with fraction") << QVariant(0.1) << u"0.1"_s;
        QTest::newRow("negative double") << QVariant(-2.5) << u"-2.5"_s;
        QTest::newRow("small double") << QVariant(0.0001) << u"0.0001"_s;
        QTest::newRow("zero") << QVariant(0.0) << u"0"_s;
        QTest::newRow("minus zero") << QVariant(-0.0) << u"0"_s;
        QTest::newRow("double beyond its digits") << QVariant(1e20) << u"1e+20"_s;
        QTest::newRow("single precision") << QVariant(0.1F) << u"0.1"_s;
        QTest::newRow("single precision without fraction") << QVariant(3.0F) << u"3"_s;
    }
    void toText()
    {
        QFETCH(QVariant, value);
        QTEST(tavrin::ToText(value), "text");
    }

    void anObjectHasNoText()
    {
        QCOMPARE(errorOf([] { tavrin::ToText(anObject()); }), Error::TypeMismatchNumber);
        QCOMPARE(errorOf([] { tavrin::ToText(QVariantMap({{u"a"_s, 1}})); }), Error::TypeMismatchNumber);
    }

    void wholeNumbers_data()
    {
        // The numbers that ToLong and ToInteger give, or the errors that they raise.
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<int>("toLong");
        QTest::addColumn<int>("longError");
        QTest::addColumn<int>("toInteger");
        QTest::addColumn<int>("integerError");
        const auto both = [](const char* name, const QVariant& value, int number) {
            QTest::newRow(name) << value << number << NoError << number << NoError;
        };
        const auto fails = [](const char* name, const QVariant& value, int error) {
            QTest::newRow(name) << value << 0 << error << 0 << error;
        };
        const auto longOnly = [](const char* name, const QVariant& value, int number) {
            QTest::newRow(name) << value << number << NoError << 0 << Error::OverflowNumber;
        };
        both("Empty", {}, 0);
        both("True", true, -1);
        both("False", false, 0);
        both("integer", 42, 42);
        both("byte", QVariant::fromValue<uchar>(200), 200);
        both("half down to even", 2.5, 2);
        both("half up to even", 3.5, 4);
        both("half at zero", 0.5, 0);
        both("one and a half", 1.5, 2);
        both("negative half to even", -2.5, -2);
        both("negative half up", -3.5, -4);
        both("below the half", 2.49, 2);
        both("above the half", 2.51, 3);
        both("text", u"17"_s, 17);
        both("text with blanks", u" 17 "_s, 17);
        both("text with a half", u"4.5"_s, 4);
        both("text with exponent", u"1e3"_s, 1000);
        both("largest integer", 32767, 32767);
        both("smallest integer", -32768, -32768);
        both("largest integer with a fraction", 32767.4, 32767);
        longOnly("above the largest integer", 32768, 32768);
        longOnly("below the smallest integer", -32769, -32769);
        longOnly("a half above the largest integer", 32767.5, 32768);
        longOnly("largest long", 2147483647, 2147483647);
        longOnly("smallest long", std::numeric_limits<int>::min(), std::numeric_limits<int>::min());
        longOnly("largest long with a fraction", 2147483647.4, 2147483647);
        fails("a half above the largest long", 2147483647.5, Error::OverflowNumber);
        fails("above the largest long", 2147483648.0, Error::OverflowNumber);
        fails("below the smallest long", -2147483649.0, Error::OverflowNumber);
        fails("64 bits", Q_INT64_C(4294967296), Error::OverflowNumber);
        fails("text out of range", u"99999999999"_s, Error::OverflowNumber);
        fails("infinite", std::numeric_limits<double>::infinity(), Error::OverflowNumber);
        fails("no number", std::numeric_limits<double>::quiet_NaN(), Error::OverflowNumber);
        fails("Null", tavrin::Null(), Error::InvalidUseOfNullNumber);
        fails("integer without content", typedNull(QMetaType::Int), Error::InvalidUseOfNullNumber);
        fails("text without content", typedNull(QMetaType::QString), Error::InvalidUseOfNullNumber);
        fails("word", u"seventeen"_s, Error::TypeMismatchNumber);
        fails("empty text", u""_s, Error::TypeMismatchNumber);
        fails("number and more", u"17 a"_s, Error::TypeMismatchNumber);
        fails("infinite text", u"inf"_s, Error::TypeMismatchNumber);
        fails("no number as text", u"nan"_s, Error::TypeMismatchNumber);
        fails("object", anObject(), Error::TypeMismatchNumber);
        fails("list", QVariantList({1}), Error::TypeMismatchNumber);
    }
    void wholeNumbers()
    {
        QFETCH(QVariant, value);
        QFETCH(int, toLong);
        QFETCH(int, toInteger);
        qint32 longNumber = 0;
        qint16 integer = 0;
        QTEST(errorOf([&] { longNumber = tavrin::ToLong(value); }), "longError");
        QCOMPARE(longNumber, toLong);
        QTEST(errorOf([&] { integer = tavrin::ToInteger(value); }), "integerError");
        QCOMPARE(static_cast<int>(integer), toInteger);
    }

    void toDouble_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<double>("number");
        QTest::addColumn<int>("error");
        QTest::newRow("Empty") << QVariant() << 0.0 << NoError;
        QTest::newRow("True") << QVariant(true) << -1.0 << NoError;
        QTest::newRow("False") << QVariant(false) << 0.0 << NoError;
        QTest::newRow("integer") << QVariant(7) << 7.0 << NoError;
        QTest::newRow("double") << QVariant(7.25) << 7.25 << NoError;
        QTest::newRow("text") << QVariant(u"-7.25"_s) << -7.25 << NoError;
        QTest::newRow("text in another language") << QVariant(u"7,25"_s) << 0.0 << Error::TypeMismatchNumber;
        QTest::newRow("word") << QVariant(u"x"_s) << 0.0 << Error::TypeMismatchNumber;
        QTest::newRow("Null") << tavrin::Null() << 0.0 << Error::InvalidUseOfNullNumber;
        QTest::newRow("double without content")
            << typedNull(QMetaType::Double) << 0.0 << Error::InvalidUseOfNullNumber;
        QTest::newRow("object") << anObject() << 0.0 << Error::TypeMismatchNumber;
    }
    void toDouble()
    {
        QFETCH(QVariant, value);
        double number = 0;
        QTEST(errorOf([&] { number = tavrin::ToDouble(value); }), "error");
        QTEST(number, "number");
    }

    void toBoolean_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<bool>("result");
        QTest::addColumn<int>("error");
        QTest::newRow("Empty") << QVariant() << false << NoError;
        QTest::newRow("True") << QVariant(true) << true << NoError;
        QTest::newRow("False") << QVariant(false) << false << NoError;
        QTest::newRow("minus one") << QVariant(-1) << true << NoError;
        QTest::newRow("zero") << QVariant(0) << false << NoError;
        QTest::newRow("fraction") << QVariant(0.25) << true << NoError;
        QTest::newRow("text true") << QVariant(u"true"_s) << true << NoError;
        QTest::newRow("text TRUE with blanks") << QVariant(u" TRUE "_s) << true << NoError;
        QTest::newRow("text False") << QVariant(u"False"_s) << false << NoError;
        QTest::newRow("text 0") << QVariant(u"0"_s) << false << NoError;
        QTest::newRow("text 2") << QVariant(u"2"_s) << true << NoError;
        QTest::newRow("text yes") << QVariant(u"yes"_s) << false << Error::TypeMismatchNumber;
        QTest::newRow("empty text") << QVariant(u""_s) << false << Error::TypeMismatchNumber;
        QTest::newRow("Null") << tavrin::Null() << false << Error::InvalidUseOfNullNumber;
        QTest::newRow("text without content")
            << typedNull(QMetaType::QString) << false << Error::InvalidUseOfNullNumber;
        QTest::newRow("boolean without content")
            << typedNull(QMetaType::Bool) << false << Error::InvalidUseOfNullNumber;
    }
    void toBoolean()
    {
        QFETCH(QVariant, value);
        bool result = false;
        QTEST(errorOf([&] { result = tavrin::ToBoolean(value); }), "error");
        QTEST(result, "result");
    }

    void sameValue_data()
    {
        QTest::addColumn<QVariant>("a");
        QTest::addColumn<QVariant>("b");
        QTest::addColumn<bool>("same");
        const QVariant null = tavrin::Null();
        QTest::newRow("Null and Null") << null << null << true;
        QTest::newRow("Null and a database's null") << null << typedNull(QMetaType::Int) << true;
        QTest::newRow("two databases' nulls")
            << typedNull(QMetaType::QString) << typedNull(QMetaType::Int) << true;
        QTest::newRow("Null and Empty") << null << QVariant() << false;
        QTest::newRow("Null and zero") << null << QVariant(0) << false;
        QTest::newRow("Null and empty text") << null << QVariant(u""_s) << false;
        QTest::newRow("Empty and Empty") << QVariant() << QVariant() << true;
        QTest::newRow("Empty and zero") << QVariant() << QVariant(0) << false;
        QTest::newRow("Empty and empty text") << QVariant() << QVariant(u""_s) << false;
        QTest::newRow("integer and double") << QVariant(3) << QVariant(3.0) << true;
        QTest::newRow("integer and 64 bits") << QVariant(3) << QVariant(Q_INT64_C(3)) << true;
        QTest::newRow("integer and another double") << QVariant(3) << QVariant(3.5) << false;
        QTest::newRow("texts") << QVariant(u"a"_s) << QVariant(u"a"_s) << true;
        QTest::newRow("texts of another case") << QVariant(u"a"_s) << QVariant(u"A"_s) << false;
        QTest::newRow("number and its text") << QVariant(3) << QVariant(u"3"_s) << true;
        QTest::newRow("number and another text") << QVariant(3) << QVariant(u"4"_s) << false;
        QTest::newRow("number and a word") << QVariant(0) << QVariant(u"x"_s) << false;
        QTest::newRow("colours") << QVariant::fromValue(tavrin::Color(5))
                                 << QVariant::fromValue(tavrin::Color(5)) << true;
        QTest::newRow("other colours")
            << QVariant::fromValue(tavrin::Color(5)) << QVariant::fromValue(tavrin::Color(6)) << false;
        QTest::newRow("colour and number") << QVariant::fromValue(tavrin::Color(5)) << QVariant(5) << false;
    }
    void sameValue()
    {
        QFETCH(QVariant, a);
        QFETCH(QVariant, b);
        QTEST(tavrin::SameValue(a, b), "same");
        QTEST(tavrin::SameValue(b, a), "same");
    }
};

TAVRIN_TEST_MAIN(tst_Variant)
#include "tst_Variant.moc"
