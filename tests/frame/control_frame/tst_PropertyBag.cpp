#include "base/failure/Error.h"
#include "base/values/Color.h"
#include "base/values/Font.h"
#include "base/values/Variant.h"
#include "frame/control_frame/PropertyBag.h"
#include "frame/control_frame/SavedProperty.h"
#include "support/Members.h"
#include "support/RaisedError.h"
#include "support/TestCase.h"

#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QVariantMap>

#include <limits>

using namespace Qt::StringLiterals;
using tavrin::Color;
using tavrin::convertProperty;
using tavrin::Error;
using tavrin::FontPtr;
using tavrin::Null;
using tavrin::PropertyBag;
using tavrin::PropertyKind;
using tavrin::test::keysOf;
using tavrin::test::raisedBy;

namespace {

/// The bag after it went through the text of a file.
PropertyBag reread(const PropertyBag& bag, QStringList* problems = nullptr)
{
    const QByteArray text = QJsonDocument(bag.toJson()).toJson();
    return PropertyBag::fromJson(QJsonDocument::fromJson(text).object(), problems);
}

PropertyBag bagOf(const QByteArray& json, QStringList* problems = nullptr)
{
    return PropertyBag::fromJson(QJsonDocument::fromJson(json).object(), problems);
}

QImage checkered()
{
    QImage image(3, 2, QImage::Format_ARGB32);
    image.fill(QColor(10, 20, 30, 40));
    image.setPixelColor(1, 1, Qt::red);
    return image;
}

int errorOf(PropertyKind kind, const QVariant& value)
{
    return raisedBy([&] { convertProperty(kind, value); }).Number;
}

} // namespace

class tst_PropertyBag : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void keysCompareWithoutCase()
    {
        PropertyBag bag;
        bag.WriteProperty(u"Forecolor"_s, 5, 0);
        QCOMPARE(bag.ReadProperty(u"ForeColor"_s, 0), QVariant(5));
        QVERIFY(bag.contains(u"FORECOLOR"_s));
        bag.WriteProperty(u"forecolor"_s, 6, 0);
        QCOMPARE(bag.entries().size(), 1U);
        QCOMPARE(bag.ReadProperty(u"ForeColor"_s, 0), QVariant(6));
    }

    void aMissingKeyGivesTheDefault()
    {
        const PropertyBag bag;
        QCOMPARE(bag.ReadProperty(u"A"_s, u"default"_s), QVariant(u"default"_s));
        QVERIFY(tavrin::IsNull(bag.ReadProperty(u"A"_s, Null())));
        QVERIFY(!bag.contains(u"A"_s));
    }

    void aValueThatEqualsItsDefaultIsNotStoredAndRemovesOneThatIs()
    {
        PropertyBag bag;
        bag.WriteProperty(u"A"_s, 1, 1);
        bag.WriteProperty(u"B"_s, Null(), Null());
        bag.WriteProperty(u"C"_s, 1.0, 1);
        QVERIFY(bag.entries().empty());
        bag.WriteProperty(u"A"_s, 2, 1);
        bag.WriteProperty(u"B"_s, 0, Null());
        QCOMPARE(keysOf(bag), QStringList({u"A"_s, u"B"_s}));
        bag.WriteProperty(u"a"_s, 1, 1);
        QCOMPARE(keysOf(bag), QStringList({u"B"_s}));
    }

    void aNullIsStoredWhereTheDefaultIsAnotherValue()
    {
        PropertyBag bag;
        bag.WriteProperty(u"A"_s, Null(), 5);
        QVERIFY(bag.contains(u"A"_s));
        QVERIFY(tavrin::IsNull(bag.ReadProperty(u"A"_s, 5)));
        QVERIFY(tavrin::IsNull(reread(bag).ReadProperty(u"A"_s, 5)));
    }

    void theEntriesKeepTheOrderInWhichTheyWereWritten()
    {
        PropertyBag bag;
        for (const QString& key : {u"Zebra"_s, u"Apple"_s, u"Mango"_s})
            bag.WriteProperty(key, 1, 0);
        bag.WriteProperty(u"apple"_s, 2, 0);
        QCOMPARE(keysOf(bag), QStringList({u"Zebra"_s, u"apple"_s, u"Mango"_s}));
    }

    void plainValuesSurviveTheFile_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::newRow("True") << QVariant(true);
        QTest::newRow("False") << QVariant(false);
        QTest::newRow("integer") << QVariant(-17);
        QTest::newRow("largest integer") << QVariant(2147483647);
        QTest::newRow("smallest integer") << QVariant(std::numeric_limits<int>::min());
        QTest::newRow("double") << QVariant(0.1);
        QTest::newRow("large double") << QVariant(1e300);
        QTest::newRow("text") << QVariant(u"a \"b\" \\ \u00E9 \U0001F600 \n %1"_s);
        QTest::newRow("empty text") << QVariant(u""_s);
        QTest::newRow("text that looks like a colour") << QVariant(u"{\"color\": \"0x1\"}"_s);
        QTest::newRow("colour") << QVariant::fromValue(Color(0x00FCE77E));
        QTest::newRow("system colour") << QVariant::fromValue(Color(0x80000005));
        QTest::newRow("black") << QVariant::fromValue(Color());
    }
    void plainValuesSurviveTheFile()
    {
        QFETCH(QVariant, value);
        PropertyBag bag;
        bag.WriteProperty(u"Key"_s, value, Null());
        QStringList problems;
        const QVariant read = reread(bag, &problems).ReadProperty(u"Key"_s, u"missing"_s);
        QCOMPARE(read.typeId(), value.typeId());
        QCOMPARE(read, value);
        QCOMPARE(problems, QStringList());
    }

    void aFontSurvivesTheFile()
    {
        auto font = std::make_shared<tavrin::Font>(QFont(u"Tavrin Sans"_s, 13));
        font->SetWeight(600);
        font->SetItalic(true);
        font->SetUnderline(true);
        font->SetStrikethrough(true);
        font->SetSize(12.5);
        font->SetCharset(238);
        PropertyBag bag;
        bag.WriteProperty(u"Font"_s, QVariant::fromValue<FontPtr>(font), Null());
        const auto read = reread(bag).ReadProperty(u"Font"_s, Null()).value<FontPtr>();
        QVERIFY(read != nullptr);
        QVERIFY(read != font);
        QCOMPARE(read->Name(), u"Tavrin Sans"_s);
        QCOMPARE(read->Size(), 12.5);
        QCOMPARE(read->Weight(), 600);
        QCOMPARE(read->Charset(), 238);
        QVERIFY(read->Italic() && read->Underline() && read->Strikethrough());
    }

    void aFontInPixelsKeepsItsSizeThroughTheFile()
    {
        QFont pixels(u"Tavrin Sans"_s);
        pixels.setPixelSize(20);
        const auto font = std::make_shared<tavrin::Font>(pixels);
        PropertyBag bag;
        bag.WriteProperty(u"Font"_s, QVariant::fromValue<FontPtr>(font), Null());
        QCOMPARE(reread(bag).ReadProperty(u"Font"_s, Null()).value<FontPtr>()->Size(), font->Size());
    }

    void aFontOfWhichLittleIsSaidHasTheDefaultsOfANewOne()
    {
        const PropertyBag bag = bagOf(R"({"Font": {"font": {"italic": true, "size": "large"}}})");
        const auto font = bag.ReadProperty(u"Font"_s, Null()).value<FontPtr>();
        QVERIFY(font != nullptr);
        QVERIFY(font->Italic());
        QCOMPARE(font->Name(), tavrin::Font().Name());
        QCOMPARE(font->Size(), tavrin::Font().Size());
        QCOMPARE(font->Weight(), tavrin::Font().Weight());
    }

    void aPictureSurvivesTheFile()
    {
        PropertyBag bag;
        bag.WriteProperty(u"Picture"_s, checkered(), Null());
        QCOMPARE(reread(bag)
                     .ReadProperty(u"Picture"_s, Null())
                     .value<QImage>()
                     .convertToFormat(QImage::Format_ARGB32),
                 checkered());
    }

    void noFontAndNoPictureAreSavedAsNull_data()
    {
        QTest::addColumn<QVariant>("nothing");
        QTest::newRow("font") << QVariant::fromValue(FontPtr());
        QTest::newRow("picture") << QVariant(QImage());
    }
    void noFontAndNoPictureAreSavedAsNull()
    {
        QFETCH(QVariant, nothing);
        PropertyBag bag;
        bag.WriteProperty(u"Key"_s, nothing, 5);
        QStringList problems;
        const PropertyBag read = reread(bag, &problems);
        QVERIFY(tavrin::IsNull(read.ReadProperty(u"Key"_s, 5)));
        QCOMPARE(problems, QStringList());
    }

    void aValueOfNoKnownKindRaisesWithItsKey_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::newRow("date") << QVariant(QDate(2026, 1, 2));
        QTest::newRow("list") << QVariant(QVariantList({1, 2}));
        QTest::newRow("map") << QVariant(QVariantMap({{u"a"_s, 1}}));
        QTest::newRow("point") << QVariant(QPoint(1, 2));
        QTest::newRow("infinite") << QVariant(std::numeric_limits<double>::infinity());
    }
    void aValueOfNoKnownKindRaisesWithItsKey()
    {
        QFETCH(QVariant, value);
        PropertyBag bag;
        bag.WriteProperty(u"TheKey"_s, value, 0);
        const Error error = raisedBy([&] { bag.toJson(); });
        QCOMPARE(error.Description, u"The value of TheKey cannot be saved"_s);
    }

    void anEntryThatCannotBeReadIsLeftOutAndTold_data()
    {
        QTest::addColumn<QByteArray>("value");
        QTest::newRow("list") << QByteArray("[1]");
        QTest::newRow("empty object") << QByteArray("{}");
        QTest::newRow("unknown object") << QByteArray(R"({"sound": "x"})");
        QTest::newRow("colour as number") << QByteArray(R"({"color": 5})");
        QTest::newRow("colour as word") << QByteArray(R"({"color": "red"})");
        QTest::newRow("colour too long") << QByteArray(R"({"color": "0x123456789"})");
        QTest::newRow("font as text") << QByteArray(R"({"font": "Arial"})");
        QTest::newRow("picture that is none") << QByteArray(R"({"picture": "aGVsbG8="})");
        QTest::newRow("picture as number") << QByteArray(R"({"picture": 1})");
    }
    void anEntryThatCannotBeReadIsLeftOutAndTold()
    {
        QFETCH(QByteArray, value);
        QStringList problems;
        const PropertyBag bag = bagOf(R"({"Good": 1, "Bad": )" + value + R"(, "Well": true})", &problems);
        QVERIFY(!bag.contains(u"Bad"_s));
        QCOMPARE(bag.ReadProperty(u"Good"_s, 0), QVariant(1));
        QCOMPARE(bag.ReadProperty(u"Well"_s, false), QVariant(true));
        QCOMPARE(problems, QStringList({u"The value of Bad cannot be read"_s}));
        bagOf(R"({"Bad": )" + value + '}'); // without a list of problems
    }

    void keysOfAFileThatDifferInCaseOnlyAreOneEntry()
    {
        PropertyBag bag = bagOf(R"({"ForeColor": 1, "Forecolor": 2})");
        QCOMPARE(bag.entries().size(), 1U);
        bag.WriteProperty(u"ForeColor"_s, 0, 0);
        QVERIFY(!bag.contains(u"ForeColor"_s));
    }

    void aValueIsConvertedToItsPropertysKind_data()
    {
        QTest::addColumn<PropertyKind>("kind");
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QVariant>("converted");
        QTest::newRow("boolean of a number") << PropertyKind::Boolean << QVariant(-1) << QVariant(true);
        QTest::newRow("boolean of a text")
            << PropertyKind::Boolean << QVariant(u"FALSE"_s) << QVariant(false);
        QTest::newRow("long of a text") << PropertyKind::Long << QVariant(u"12"_s) << QVariant(12);
        QTest::newRow("long of a double") << PropertyKind::Long << QVariant(2.5) << QVariant(2);
        QTest::newRow("text of a number") << PropertyKind::Text << QVariant(12.0) << QVariant(u"12"_s);
        QTest::newRow("colour") << PropertyKind::Color << QVariant::fromValue(Color(5))
                                << QVariant::fromValue(Color(5));
        QTest::newRow("colour of a number")
            << PropertyKind::Color << QVariant(-2147483643) << QVariant::fromValue(Color(0x80000005));
        QTest::newRow("colour of a number without sign")
            << PropertyKind::Color << QVariant(2147483653.0) << QVariant::fromValue(Color(0x80000005));
        QTest::newRow("variant") << PropertyKind::Variant << QVariant(u"x"_s) << QVariant(u"x"_s);
        QTest::newRow("picture") << PropertyKind::Picture << QVariant(checkered()) << QVariant(checkered());
    }
    void aValueIsConvertedToItsPropertysKind()
    {
        QFETCH(PropertyKind, kind);
        QFETCH(QVariant, value);
        QFETCH(QVariant, converted);
        const QVariant result = convertProperty(kind, value);
        QCOMPARE(result.typeId(), converted.typeId());
        QCOMPARE(result, converted);
    }

    void nullIsAVariantAndAPictureAndNothingElse()
    {
        QVERIFY(tavrin::IsNull(convertProperty(PropertyKind::Variant, Null())));
        QVERIFY(tavrin::IsNull(convertProperty(PropertyKind::Picture, Null())));
        for (const auto kind :
             {PropertyKind::Boolean, PropertyKind::Long, PropertyKind::Text, PropertyKind::Color})
            QCOMPARE(errorOf(kind, Null()), Error::InvalidUseOfNullNumber);
        QCOMPARE(errorOf(PropertyKind::Font, Null()), Error::TypeMismatchNumber);
    }

    void aValueOfTheWrongTypeIsRefused()
    {
        QCOMPARE(errorOf(PropertyKind::Boolean, u"maybe"_s), Error::TypeMismatchNumber);
        QCOMPARE(errorOf(PropertyKind::Long, u"twelve"_s), Error::TypeMismatchNumber);
        QCOMPARE(errorOf(PropertyKind::Long, 1e10), Error::OverflowNumber);
        QCOMPARE(errorOf(PropertyKind::Text, QVariant::fromValue(Color(5))), Error::TypeMismatchNumber);
        QCOMPARE(errorOf(PropertyKind::Color, u"red"_s), Error::TypeMismatchNumber);
        QCOMPARE(errorOf(PropertyKind::Color, 1e10), Error::OverflowNumber);
        QCOMPARE(errorOf(PropertyKind::Font, u"Arial"_s), Error::TypeMismatchNumber);
        QCOMPARE(errorOf(PropertyKind::Picture, 5), Error::TypeMismatchNumber);
    }
};

TAVRIN_TEST_MAIN(tst_PropertyBag)
#include "tst_PropertyBag.moc"
