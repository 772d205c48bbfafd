#include "lookup/ComboPickerForm.h"
#include "lookup/OffensePicker.h"
#include "support/Fonts.h"
#include "support/TestCase.h"

#include <QFontMetricsF>
#include <QScreen>

#include <algorithm>
#include <cmath>

using namespace tavrin;
using namespace tavrin::test;
using namespace Qt::StringLiterals;
using Form = ComboPickerForm<OffensePicker>;

namespace {

/// The width of letters in a font, in pixels.
int pixelsOf(const QString& letters, const FontPtr& font, const QWidget& widget)
{
    return static_cast<int>(std::lround(QFontMetricsF(font->toQFont(), &widget).horizontalAdvance(letters)));
}

} // namespace

/// The layout of `OffensePicker` and the painting of its rows.
class tst_OffensePickerLayout : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // Layout

    void theComboIsAsWideAsTenLettersOfTheControlsFontAndNeverNarrowerThan1695_data()
    {
        QTest::addColumn<double>("size");
        QTest::addColumn<bool>("isLeast");
        QTest::newRow("6 points") << 6.0 << true;
        QTest::newRow("20 points") << 20.0 << false;
    }
    void theComboIsAsWideAsTenLettersOfTheControlsFontAndNeverNarrowerThan1695()
    {
        QFETCH(double, size);
        QFETCH(bool, isLeast);
        Form form(600);
        QVERIFY(form.isReady());
        const FontPtr font = fontOf(size);
        form.picker->SetFont(font);
        const int letters = pixelsOf(QString(10, u'W'), font, *form.picker);
        QCOMPARE(letters < 113, isLeast);
        const int combo = isLeast ? 113 : letters;
        const int height = form.box->sizeHint().height();
        QCOMPARE(form.box->geometry(), QRect(0, 0, combo, height));
        QCOMPARE(form.label->geometry(), QRect(combo + 3, 0, 600 - combo - 3, height));
        QCOMPARE(form.picker->size(), QSize(600, height));
        form.picker->resize(500, 200);
        QCOMPARE(form.box->geometry(), QRect(0, 0, combo, height));
        QCOMPARE(form.label->geometry(), QRect(combo + 3, 0, 500 - combo - 3, height));
        QCOMPARE(form.picker->size(), QSize(500, height));
    }

    void withAWideFontTheControlGrowsToFitAndWithoutTheNameTheWidthComesFromTheControl()
    {
        Form form(150);
        QVERIFY(form.isReady());
        const FontPtr font = fontOf(30);
        form.picker->SetFont(font);
        const int letters = pixelsOf(QString(10, u'W'), font, *form.picker);
        QVERIFY(letters > 150);
        QCOMPARE(form.picker->width(), letters);
        QCOMPARE(form.box->width(), letters);
        form.picker->SetShowName(false);
        form.picker->resize(120, 30);
        QCOMPARE(form.picker->width(), 120);
        QCOMPARE(form.box->width(), 120);
        QCOMPARE(form.picker->height(), form.box->height());
    }

    void aLabelWithoutTheNameIsNotMovedAtAllAndItsHeightStillFollows()
    {
        Form form(400);
        QVERIFY(form.isReady());
        const QRect place = form.label->geometry();
        form.picker->SetShowName(false);
        form.picker->resize(500, 30);
        QCOMPARE(form.label->geometry(), place);
        form.picker->SetFont(fontOf(30));
        QVERIFY(form.picker->height() > place.height());
        QCOMPARE(form.label->geometry(), QRect(place.topLeft(), QSize(place.width(), form.picker->height())));
    }

    void theListIsAsWideAs80LettersHoweverNarrowTheControl()
    {
        Form form(150);
        QVERIFY(form.isReady());
        const FontPtr font = fontOf(6);
        form.picker->SetFont(font);
        form.type(u"as"_s);
        const int letters = pixelsOf(QString(80, u'X'), font, *form.picker);
        QVERIFY(letters > 150);
        const int screen = form.window.screen()->availableGeometry().width();
        QCOMPARE(form.view()->window()->width(), std::min(letters, screen));
        form.box->CloseList();
    }

    void aChangeInsideTheFontWidensTheCombo()
    {
        Form form(600);
        QVERIFY(form.isReady());
        const FontPtr font = fontOf(6);
        form.picker->SetFont(font);
        QCOMPARE(form.box->width(), 113);
        font->SetSize(24);
        QCOMPARE(form.box->width(), pixelsOf(QString(10, u'W'), font, *form.picker));
        QCOMPARE(form.label->x(), form.box->width() + 3);
    }

    // Rows

    void aRowHasItsFixedFontTheIdInBoldAndNoSecondColumnAndLeavesTheWidthAlone()
    {
        Form form;
        form.picker->SetFont(fontOf(30));
        const XmlNode item = recordOf("Offense", offense(1, "13A", "Assault", "X1", "1"));
        const QStringList calls{u"Segoe UI 9 bold \"13A: \" at 0"_s, u"Segoe UI 9 \"Assault\" at 600"_s,
                                u"line"_s, u"height 200"_s};
        QCOMPARE(form.drawn(item), calls);
        QCOMPARE(form.drawn(item, {}, true), calls);
        QCOMPARE(form.drawn(item, u"3a"_s),
                 QStringList({u"Segoe UI 9 bold \"1\" at 0"_s, u"box 120 to 360"_s,
                              u"Segoe UI 9 bold \"3A\" at 120"_s, u"Segoe UI 9 bold \": \" at 360"_s,
                              u"Segoe UI 9 \"Assault\" at 600"_s, u"line"_s, u"height 200"_s}));
        QCOMPARE(form.drawn(recordOf("Offense", {})),
                 QStringList({u"Segoe UI 9 bold \": \" at 0"_s, u"line"_s, u"height 200"_s}));
    }
};

TAVRIN_TEST_MAIN(tst_OffensePickerLayout)
#include "tst_OffensePickerLayout.moc"
