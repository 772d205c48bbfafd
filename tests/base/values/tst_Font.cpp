#include "base/failure/Error.h"
#include "base/values/Font.h"
#include "support/TestCase.h"

#include <QApplication>
#include <QVariantList>

using namespace Qt::StringLiterals;
using tavrin::Font;
using tavrin::FontPtr;
using tavrin::Subscription;

class tst_Font : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aNewFontIsTheApplicationsAndAFontOfAQFontIsThatOne()
    {
        QCOMPARE(Font().toQFont(), QGuiApplication::font());
        QFont wanted(u"Tavrin Sans"_s, 13);
        wanted.setItalic(true);
        const Font font(wanted);
        QCOMPARE(font.toQFont(), wanted);
        QCOMPARE(font.Name(), u"Tavrin Sans"_s);
        QCOMPARE(font.Size(), 13.0);
        QVERIFY(font.Italic());
        QVERIFY(!font.Bold());
    }

    void aSetterThatChangesSomethingTellsWhichPropertyOnce_data()
    {
        QTest::addColumn<QString>("property");
        QTest::addColumn<QVariant>("value");
        QTest::newRow("name") << u"Name"_s << QVariant(u"Tavrin Sans"_s);
        QTest::newRow("size") << u"Size"_s << QVariant(17.5);
        QTest::newRow("bold") << u"Bold"_s << QVariant(true);
        QTest::newRow("italic") << u"Italic"_s << QVariant(true);
        QTest::newRow("underline") << u"Underline"_s << QVariant(true);
        QTest::newRow("strikethrough") << u"Strikethrough"_s << QVariant(true);
        QTest::newRow("weight") << u"Weight"_s << QVariant(300);
    }
    void aSetterThatChangesSomethingTellsWhichPropertyOnce()
    {
        QFETCH(QString, property);
        QFETCH(QVariant, value);
        Font font(QFont(u"Plain"_s, 10));
        QStringList told;
        QVariantList seen; // at the time of the event the font already has the new value
        const Subscription keep = font.FontChanged.subscribe([&](const QString& name) {
            told << name;
            seen << valueOf(font, name);
        });
        set(font, property, value);
        QCOMPARE(told, QStringList(property));
        QCOMPARE(seen, QVariantList({value}));
        set(font, property, value); // nothing changes, nothing is told
        QCOMPARE(told, QStringList(property));
        QCOMPARE(valueOf(font, property), value);
    }

    void boldAndWeightAreOneThing()
    {
        Font font(QFont(u"Plain"_s, 10));
        QCOMPARE(font.Weight(), 400);
        font.SetBold(true);
        QCOMPARE(font.Weight(), 700);
        font.SetWeight(400);
        QVERIFY(!font.Bold());
    }

    void aWeightOrSizeOutOfRangeIsBroughtIntoItAndToldOnce()
    {
        Font font(QFont(u"Plain"_s, 10));
        QStringList told;
        const Subscription keep = font.FontChanged.subscribe([&](const QString& name) { told << name; });
        font.SetWeight(5000);
        QCOMPARE(font.Weight(), 1000);
        font.SetWeight(5000);
        font.SetWeight(1000);
        font.SetSize(-3);
        QCOMPARE(font.Size(), 1.0);
        font.SetSize(0);
        QCOMPARE(told, QStringList({u"Weight"_s, u"Size"_s}));
    }

    void aFontThatWasGivenInPixelsTellsItsSizeInPoints()
    {
        QFont pixels(u"Plain"_s);
        pixels.setPixelSize(16);
        const Font font(pixels);
        QVERIFY2(font.Size() > 4 && font.Size() < 40, qPrintable(QString::number(font.Size())));
    }

    void aHandlersFailureReachesWhoeverSetTheProperty()
    {
        Font font(QFont(u"Plain"_s, 10));
        const Subscription keep =
            font.FontChanged.subscribe([](const QString&) { throw tavrin::Error(u"no"_s); });
        QVERIFY_EXCEPTION_THROWN(font.SetBold(true), tavrin::Error);
        QVERIFY(font.Bold());
    }

    void aFontTravelsInAVariantByReference()
    {
        const auto font = std::make_shared<Font>();
        const QVariant value = QVariant::fromValue<FontPtr>(font);
        value.value<FontPtr>()->SetSize(33);
        QCOMPARE(font->Size(), 33.0);
        QCOMPARE(value, QVariant::fromValue<FontPtr>(font));
        QVERIFY(value != QVariant::fromValue<FontPtr>(std::make_shared<Font>())); // another object
    }

private:
    static void set(Font& font, const QString& property, const QVariant& value)
    {
        if (property == u"Name")
            font.SetName(value.toString());
        else if (property == u"Size")
            font.SetSize(value.toDouble());
        else if (property == u"Bold")
            font.SetBold(value.toBool());
        else if (property == u"Italic")
            font.SetItalic(value.toBool());
        else if (property == u"Underline")
            font.SetUnderline(value.toBool());
        else if (property == u"Strikethrough")
            font.SetStrikethrough(value.toBool());
        else
            font.SetWeight(value.toInt());
    }

    static QVariant valueOf(const Font& font, const QString& property)
    {
        if (property == u"Name")
            return font.Name();
        if (property == u"Size")
            return font.Size();
        if (property == u"Bold")
            return font.Bold();
        if (property == u"Italic")
            return font.Italic();
        if (property == u"Underline")
            return font.Underline();
        if (property == u"Strikethrough")
            return font.Strikethrough();
        return font.Weight();
    }
};

TAVRIN_TEST_MAIN(tst_Font)
#include "tst_Font.moc"
