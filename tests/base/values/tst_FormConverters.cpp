#include "base/values/Color.h"
#include "base/values/Font.h"
#include "base/values/FormConverters.h"
#include "support/TestCase.h"

#include <QApplication>

using namespace tavrin;
using namespace tavrin::test;

namespace {

/// Stands for a control: properties of the library's types.
class Holder : public QObject
{
    Q_OBJECT
    Q_PROPERTY(tavrin::Color BackColor MEMBER color)
    Q_PROPERTY(tavrin::FontPtr Font MEMBER font)

public:
    Color color = SystemColor::WindowBackground;
    FontPtr font;
};

} // namespace

class tst_FormConverters : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        registerFormConverters();
        registerFormConverters(); // without a warning
    }

    void aPropertyTakesAColorOfQt()
    {
        Holder holder;
        QVERIFY(holder.setProperty("BackColor", QColor(0x12, 0x34, 0x56)));
        QCOMPARE(holder.color.value(), 0x563412U);
    }

    void aPropertyTakesASystemColorAsANumber_data()
    {
        QTest::addColumn<QVariant>("number");
        QTest::newRow("with a sign") << QVariant(static_cast<int>(0x8000000FU));
        QTest::newRow("without") << QVariant(0x8000000FU);
    }
    void aPropertyTakesASystemColorAsANumber()
    {
        QFETCH(QVariant, number);
        Holder holder;
        QVERIFY(holder.setProperty("BackColor", number));
        QVERIFY(holder.color == SystemColor::ButtonFace);
    }

    void aColorThatIsATextIsRefused()
    {
        Holder holder;
        QVERIFY(!holder.setProperty("BackColor", QStringLiteral("red")));
        QVERIFY(holder.color == SystemColor::WindowBackground);
    }

    void aColorThatIsNoneIsRefused()
    {
        Holder holder;
        QVERIFY(!holder.setProperty("BackColor", QColor()));
        QVERIFY(holder.color == SystemColor::WindowBackground);
    }

    void aSystemColorShowsAsThePaletteHasIt()
    {
        QCOMPARE(QVariant::fromValue(SystemColor::ButtonFace).value<QColor>(),
                 QApplication::palette().color(QPalette::Window));
        QCOMPARE(QVariant::fromValue(Color(0x563412)).value<QColor>(), QColor(0x12, 0x34, 0x56));
    }

    void aPropertyTakesAFontOfQt()
    {
        Holder holder;
        QFont font(QStringLiteral("DejaVu Serif"), 13, QFont::Bold);
        QVERIFY(holder.setProperty("Font", font));
        QVERIFY(holder.font);
        QCOMPARE(holder.font->toQFont(), font);
        QCOMPARE(holder.property("Font").value<QFont>(), font);
    }

    void noFontIsTheApplicationsOwn() { QCOMPARE(QVariant::fromValue(FontPtr()).value<QFont>(), QFont()); }
};

TAVRIN_TEST_MAIN(tst_FormConverters)
#include "tst_FormConverters.moc"
