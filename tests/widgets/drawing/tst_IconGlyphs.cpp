#include "support/Looks.h"
#include "support/TestCase.h"
#include "widgets/drawing/IconGlyphs.h"

#include <QImage>
#include <QPainter>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace tavrin::test;
using tavrin::ClearGlyph;
using tavrin::DropDownGlyph;
using tavrin::iconGlyphName;
using tavrin::isIconGlyph;
using tavrin::paintIconGlyph;
using tavrin::WarningGlyph;

namespace {

constexpr int Side = 24;

QImage painted(int code, qreal scale, const QRectF& box, const QColor& color = Qt::black)
{
    QImage image((QSizeF(Side, Side) * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    paintIconGlyph(painter, code, box, color);
    return image;
}

/// The largest difference of coverage between two images.
int difference(const QImage& a, const QImage& b)
{
    int largest = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x)
            largest = std::max(largest, std::abs(qAlpha(a.pixel(x, y)) - qAlpha(b.pixel(x, y))));
    }
    return largest;
}

constexpr int Rounding = 12; // of the antialiasing; nobody sees it

} // namespace

class tst_IconGlyphs : public tavrin::test::TestCase
{
    Q_OBJECT

private:
    static void addGlyphsAndScales()
    {
        QTest::addColumn<int>("code");
        QTest::addColumn<double>("scale");
        for (const double scale : {1.0, 1.5, 2.0}) {
            QTest::addRow("chevron at %g", scale) << DropDownGlyph << scale;
            QTest::addRow("cross at %g", scale) << ClearGlyph << scale;
            QTest::addRow("triangle at %g", scale) << WarningGlyph << scale;
        }
    }

private Q_SLOTS:
    void eachSignHasAName()
    {
        QCOMPARE(DropDownGlyph, 59758);
        QCOMPARE(ClearGlyph, 60846);
        QVERIFY(isIconGlyph(DropDownGlyph));
        QVERIFY(isIconGlyph(ClearGlyph));
        QCOMPARE(WarningGlyph, 0xE7BA);
        QVERIFY(isIconGlyph(WarningGlyph));
        QVERIFY(!isIconGlyph('x'));
        QCOMPARE(iconGlyphName(DropDownGlyph), u"Open the list"_s);
        QCOMPARE(iconGlyphName(ClearGlyph), u"Clear"_s);
        QCOMPARE(iconGlyphName(WarningGlyph), u"Warning"_s);
        QCOMPARE(iconGlyphName('x'), QString());
    }

    void aSignIsTheSameOnItsLeftAndOnItsRight_data() { addGlyphsAndScales(); }
    void aSignIsTheSameOnItsLeftAndOnItsRight()
    {
        QFETCH(int, code);
        QFETCH(double, scale);
        const QImage image = painted(code, scale, QRectF(0, 0, Side, Side));
        QVERIFY(difference(image, image.mirrored(true, false)) <= Rounding);
        if (code == ClearGlyph)
            QVERIFY(difference(image, image.mirrored(false, true)) <= Rounding);
        else
            QVERIFY(difference(image, image.mirrored(false, true)) > 200);
    }

    void aSignIsEquallySharpWhereverItsBoxLies_data() { addGlyphsAndScales(); }
    void aSignIsEquallySharpWhereverItsBoxLies()
    {
        QFETCH(int, code);
        QFETCH(double, scale);
        QList<QImage> looks; // one with its middle in a pixel, one with its middle between pixels
        for (const double shift : {0.0, 0.1, 0.2, 0.3, 0.4, 0.5, 0.6, 0.7, 0.8, 0.9}) {
            const QImage image = painted(code, scale, QRectF(4 + shift, 4 + shift / 2, 16, 16));
            QVERIFY(strongestOf(image).alpha() >= 255 - Rounding);
            const QImage ink = image.copy(inkOf(image));
            const auto isLike = [&](const QImage& look) {
                return look.size() == ink.size() && difference(look, ink) <= Rounding;
            };
            if (std::none_of(looks.begin(), looks.end(), isLike))
                looks << ink;
        }
        QVERIFY2(looks.size() <= 2, qPrintable(u"%1 looks"_s.arg(looks.size())));
    }

    void aSignLiesInTheMiddleOfItsBoxAndLeavesAMargin_data() { addGlyphsAndScales(); }
    void aSignLiesInTheMiddleOfItsBoxAndLeavesAMargin()
    {
        QFETCH(int, code);
        QFETCH(double, scale);
        const QRectF box(4, 2, 18, 18);
        const QRectF ink = inkOf(painted(code, scale, box));
        const QRectF place(box.topLeft() * scale, box.size() * scale);
        QVERIFY(!ink.isEmpty());
        QVERIFY(place.adjusted(2, 2, -2, -2).contains(ink));
        QVERIFY(ink.width() > place.width() * 0.4);
        QVERIFY(std::abs(ink.center().x() - place.center().x()) <= 0.5);
        QVERIFY(std::abs(ink.center().y() - place.center().y()) <= 1);
    }

    void theShorterSideDecidesHowLargeASignIs()
    {
        const QSize square = inkOf(painted(ClearGlyph, 1, QRectF(6, 6, 12, 12))).size();
        QCOMPARE(inkOf(painted(ClearGlyph, 1, QRectF(0, 6, 24, 12))).size(), square);
        QVERIFY(inkOf(painted(ClearGlyph, 1, QRectF(0, 0, 24, 24))).width() > square.width());
    }

    void theChevronPointsDown()
    {
        const QImage image = painted(DropDownGlyph, 1, QRectF(0, 0, Side, Side));
        const QRect ink = inkOf(image);
        QVERIFY(qAlpha(image.pixel(Side / 2, ink.bottom() - 1)) > 0);
        QCOMPARE(qAlpha(image.pixel(Side / 2, ink.top())), 0);
    }

    void theTriangleStandsOnItsBaseAroundAnExclamationMark()
    {
        const QImage image = painted(WarningGlyph, 1, QRectF(0, 0, Side, Side));
        const QRect ink = inkOf(image);
        const auto covered = [&image](int x, int y) { return qAlpha(image.pixel(x, y)) > 100; };
        QVERIFY(covered(ink.left() + 2, ink.bottom() - 1) && covered(ink.right() - 2, ink.bottom() - 1));
        QVERIFY(!covered(ink.left() + 2, ink.top()) && !covered(ink.right() - 2, ink.top()));
        QList<int> changes; // down the middle: apex, stroke, dot and base, each with a gap behind it
        for (int y = 1; y < Side; ++y) {
            if (covered(Side / 2, y) != covered(Side / 2, y - 1))
                changes << y;
        }
        QCOMPARE(changes.size(), 8);
    }

    void aSignHasItsColour()
    {
        QCOMPARE(strongestOf(painted(ClearGlyph, 2, QRectF(0, 0, Side, Side), QColor(200, 10, 20))),
                 QColor(200, 10, 20));
    }

    void anotherCodeAndABoxWithoutRoomPaintNothing()
    {
        QVERIFY(inkOf(painted('x', 1, QRectF(0, 0, Side, Side))).isEmpty());
        QVERIFY(inkOf(painted(ClearGlyph, 1, QRectF(5, 5, 0, 10))).isEmpty());
        QVERIFY(!inkOf(painted(ClearGlyph, 1, QRectF(5, 5, 10, 10))).isEmpty());
    }

    void thePainterIsAsBefore()
    {
        QImage image(Side, Side, QImage::Format_ARGB32_Premultiplied);
        QPainter painter(&image);
        painter.translate(3, 4);
        painter.setPen(Qt::red);
        const QTransform transform = painter.worldTransform();
        paintIconGlyph(painter, ClearGlyph, QRectF(0, 0, 16, 16), Qt::blue);
        QCOMPARE(painter.worldTransform(), transform);
        QCOMPARE(painter.pen().color(), QColor(Qt::red));
        QVERIFY(!painter.testRenderHint(QPainter::Antialiasing));
    }
};

TAVRIN_TEST_MAIN(tst_IconGlyphs)
#include "tst_IconGlyphs.moc"
