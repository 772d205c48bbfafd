#include "frame/modUtils.h"
#include "support/Looks.h"
#include "support/TestCase.h"
#include "widgets/drawing/PictureSurface.h"

#include <QFontDatabase>
#include <QImage>
#include <QPainter>

#include <array>
#include <vector>

using namespace Qt::StringLiterals;
using tavrin::Color;
using tavrin::DrawMode;
using tavrin::MeasuredPicture;
using tavrin::PaintedPicture;
using tavrin::PictureSurface;
using tavrin::toTwips;
using tavrin::Twips;
using tavrin::test::boundsOf;
using tavrin::test::Theme;
namespace SystemColor = tavrin::SystemColor;

namespace {

constexpr int Side = 60;

QImage filled(const QColor& color)
{
    QImage image(Side, Side, QImage::Format_ARGB32_Premultiplied);
    image.fill(color);
    return image;
}

/// The bounds of all pixels that are not of the colour `ground`.
QRect changedPixels(const QImage& image, const QColor& ground)
{
    return boundsOf(image, [&](const QColor& color) { return color != ground; });
}

/// A surface that paints, and one that measures the same row.
class BothSurfaces
{
public:
    BothSurfaces()
        : m_image(filled(Qt::white))
        , m_painter(&m_image)
        , painted(m_painter, QRectF(0, 0, 40, 30), Qt::white)
        , measured(m_painter.font(), &m_image, QSizeF(40, 30))
    {
    }

    std::array<PictureSurface*, 2> all() { return {&painted, &measured}; }
    const QImage& image() const { return m_image; }

private:
    QImage m_image;
    QPainter m_painter;

public:
    PaintedPicture painted;
    MeasuredPicture measured;
};

/// What a measured picture takes down while `print` prints.
template <typename Print>
QString takenDown(Print print)
{
    BothSurfaces surfaces;
    print(surfaces.measured);
    return surfaces.measured.text();
}

} // namespace

class tst_PictureSurface : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aBoxHasItsModesColourAndFillsItsPixelsExactly_data()
    {
        QTest::addColumn<QColor>("ground");
        QTest::addColumn<DrawMode>("mode");
        QTest::addColumn<QColor>("expected");
        const QColor mark(0x7E, 0xE7, 0xFC);
        QTest::newRow("copy on white") << QColor(Qt::white) << DrawMode::CopyPen << mark;
        QTest::newRow("copy on a colour") << QColor(0x30, 0x8C, 0xC6) << DrawMode::CopyPen << mark;
        QTest::newRow("copy on black") << QColor(Qt::black) << DrawMode::CopyPen << mark;
        QTest::newRow("mask on white") << QColor(Qt::white) << DrawMode::MaskPen << mark;
        // Where the bits of both would hardly show, a third of the mark lies over the ground.
        QTest::newRow("mask on a selected row")
            << QColor(0x30, 0x8C, 0xC6) << DrawMode::MaskPen
            << QColor((0x30 * 2 + 0x7E) / 3, (0x8C * 2 + 0xE7) / 3, (0xC6 * 2 + 0xFC) / 3);
        QTest::newRow("mask on yellow")
            << QColor(0xFF, 0xFF, 0x80) << DrawMode::MaskPen << QColor(0x7E, 0xE7, 0x80);
        QTest::newRow("mask on black")
            << QColor(Qt::black) << DrawMode::MaskPen << QColor(0x7E / 3, 0xE7 / 3, 0xFC / 3);
    }
    void aBoxHasItsModesColourAndFillsItsPixelsExactly()
    {
        QFETCH(QColor, ground);
        QFETCH(DrawMode, mode);
        QFETCH(QColor, expected);
        QImage image = filled(ground);
        {
            QPainter painter(&image);
            PaintedPicture picture(painter, QRectF(10, 5, 40, 40), ground);
            picture.SetDrawMode(mode);
            picture.DrawBox(toTwips(2), toTwips(3), toTwips(12), toTwips(8), Color(0x00FCE77E));
        }
        const QRect box(12, 8, 10, 5);
        for (int y = 0; y < Side; ++y) {
            for (int x = 0; x < Side; ++x)
                QCOMPARE(image.pixelColor(x, y), box.contains(x, y) ? expected : ground);
        }
    }

    void afterABoxThePositionIsItsSecondCorner()
    {
        QImage image = filled(Qt::white);
        QPainter painter(&image);
        PaintedPicture picture(painter, image.rect(), Qt::white);
        QCOMPARE(picture.CurrentX(), 0.0F);
        QCOMPARE(picture.CurrentY(), 0.0F);
        picture.DrawBox(30, 45, 300, 150, Color());
        QCOMPARE(picture.CurrentX(), 300.0F);
        QCOMPARE(picture.CurrentY(), 150.0F);
    }

    void aBoxLeavesThePaintersModeAlone()
    {
        QImage image = filled(Qt::white);
        QPainter painter(&image);
        PaintedPicture picture(painter, image.rect(), Qt::white);
        picture.SetDrawMode(DrawMode::MaskPen);
        picture.DrawBox(0, 0, 150, 150, Color::rgb(255, 0, 0));
        QCOMPARE(painter.compositionMode(), QPainter::CompositionMode_SourceOver);
        picture.SetDrawMode(DrawMode::CopyPen);
        picture.DrawBox(0, 0, 150, 150, Color::rgb(0, 0, 255));
        QCOMPARE(image.pixelColor(0, 0), QColor(Qt::blue));
    }

    void printMovesThePositionBehindTheTextOnTheSameLine()
    {
        QImage image = filled(Qt::white);
        QPainter painter(&image);
        PaintedPicture picture(painter, image.rect(), Qt::white);
        picture.SetCurrentX(75);
        picture.SetCurrentY(150);
        picture.Print(u"Ab"_s);
        QCOMPARE(picture.CurrentX(), 75 + picture.TextWidth(u"Ab"_s));
        QCOMPARE(picture.CurrentY(), 150.0F);
        const Twips before = picture.CurrentX();
        picture.Print(QString());
        QCOMPARE(picture.CurrentX(), before);
    }

    void printPaintsWithinTheBoxOfItsWidthAndHeight()
    {
        QImage image = filled(Qt::white);
        Twips width = 0;
        Twips height = 0;
        {
            QPainter painter(&image);
            painter.setPen(Qt::black);
            PaintedPicture picture(painter, QRectF(5, 6, 50, 50), Qt::white);
            picture.SetCurrentX(toTwips(4));
            picture.SetCurrentY(toTwips(3));
            width = picture.TextWidth(u"HEM"_s);
            height = picture.TextHeight(u"HEM"_s);
            picture.Print(u"HEM"_s);
        }
        QVERIFY(width > 0);
        const QRect ink = changedPixels(image, Qt::white);
        QVERIFY(!ink.isEmpty());
        const QRect room(5 + 4, 6 + 3, tavrin::toPixels(width), tavrin::toPixels(height));
        QVERIFY(room.adjusted(-1, 0, 1, 0).contains(ink));
    }

    void theDrawModeDoesNotCountForTexts()
    {
        const auto printed = [](DrawMode mode) {
            QImage image = filled(QColor(0x30, 0x8C, 0xC6));
            QPainter painter(&image);
            painter.setPen(Qt::white);
            PaintedPicture picture(painter, image.rect(), Qt::white);
            picture.SetDrawMode(mode);
            picture.Print(u"HEM"_s);
            painter.end();
            return image;
        };
        QCOMPARE(printed(DrawMode::MaskPen), printed(DrawMode::CopyPen));
        QVERIFY(!changedPixels(printed(DrawMode::MaskPen), QColor(0x30, 0x8C, 0xC6)).isEmpty());
    }

    void boldTextIsPrintedAndMeasuredBold()
    {
        QImage image = filled(Qt::white);
        QPainter painter(&image);
        QFont font = painter.font();
        font.setPointSize(14);
        painter.setFont(font);
        PaintedPicture picture(painter, image.rect(), Qt::white);
        QVERIFY(!picture.FontBold());
        const QString text = u"mmmmmmmm"_s;
        const Twips plain = picture.TextWidth(text);
        picture.SetFontBold(true);
        QVERIFY(picture.FontBold());
        font.setBold(true);
        QCOMPARE(picture.TextWidth(text),
                 static_cast<Twips>(QFontMetricsF(font, &image).horizontalAdvance(text)) * 15);
        picture.Print(text);
        QVERIFY(painter.font().bold());
        picture.SetFontBold(false);
        QCOMPARE(picture.TextWidth(text), plain);
        QVERIFY(plain > 0);
    }

    void theHeightCountsTheLines()
    {
        QImage image = filled(Qt::white);
        QPainter painter(&image);
        const PaintedPicture picture(painter, image.rect(), Qt::white);
        const Twips one = picture.TextHeight(u"a"_s);
        QVERIFY(one > 0);
        QCOMPARE(picture.TextHeight(u"a\nb"_s), 2 * one);
        QCOMPARE(picture.TextHeight(QString()), one);
    }

    void theEndOfALineIsTheStartOfTheNext()
    {
        BothSurfaces surfaces;
        for (PictureSurface* picture : surfaces.all()) {
            picture->SetCurrentX(75);
            picture->SetCurrentY(150);
            picture->Print(u"Ab"_s);
            picture->EndLine();
            QCOMPARE(picture->CurrentX(), 0.0F);
            QCOMPARE(picture->CurrentY(), 150 + picture->TextHeight(u"Ab"_s));
        }
    }

    void aLineIsAsHighAsTheFontThatItEndsWith()
    {
        BothSurfaces surfaces;
        for (PictureSurface* picture : surfaces.all()) {
            const Twips low = picture->TextHeight(QString());
            picture->SetFontSize(picture->FontSize() * 3);
            picture->EndLine();
            QVERIFY(picture->CurrentY() > 2 * low);
            QCOMPARE(picture->CurrentY(), picture->TextHeight(QString()));
        }
    }

    void anotherFontMeasuresAndPrints()
    {
        BothSurfaces surfaces;
        tavrin::Font font;
        font.SetSize(21);
        font.SetBold(true);
        font.SetItalic(true);
        const QFontMetricsF metrics(font.toQFont(), &surfaces.image());
        for (PictureSurface* picture : surfaces.all()) {
            picture->SetFont(font);
            QCOMPARE(picture->FontSize(), 21.0);
            QVERIFY(picture->FontBold());
            QCOMPARE(picture->TextWidth(u"HEM"_s),
                     static_cast<Twips>(metrics.horizontalAdvance(u"HEM"_s)) * 15);
            QCOMPARE(picture->TextHeight(u"HEM"_s), static_cast<Twips>(metrics.height()) * 15);
        }
        surfaces.painted.Print(u"HEM"_s);
        QVERIFY(changedPixels(surfaces.image(), Qt::white).height() > 12);
    }

    void aLargerSizeIsWiderAndHigherAndCountsInPoints()
    {
        BothSurfaces surfaces;
        for (PictureSurface* picture : surfaces.all()) {
            picture->SetFontSize(8);
            const Twips width = picture->TextWidth(u"HEM"_s);
            const Twips height = picture->TextHeight(u"HEM"_s);
            picture->SetFontSize(16);
            QCOMPARE(picture->FontSize(), 16.0);
            QVERIFY(picture->TextWidth(u"HEM"_s) > 1.8F * width);
            QVERIFY(picture->TextHeight(u"HEM"_s) > 1.8F * height);
        }
    }

    void anotherNameKeepsSizeAndWeight()
    {
        BothSurfaces surfaces;
        tavrin::Font mono;
        mono.SetName(QFontDatabase::systemFont(QFontDatabase::FixedFont).family());
        mono.SetSize(14);
        mono.SetBold(true);
        const QFontMetricsF metrics(mono.toQFont(), &surfaces.image());
        for (PictureSurface* picture : surfaces.all()) {
            picture->SetFontSize(14);
            picture->SetFontBold(true);
            picture->SetFontName(mono.Name());
            QCOMPARE(picture->FontSize(), 14.0);
            QVERIFY(picture->FontBold());
            QCOMPARE(picture->TextWidth(u"iiiiWWWW"_s),
                     static_cast<Twips>(metrics.horizontalAdvance(u"iiiiWWWW"_s)) * 15);
        }
    }

    void whatIsPrintedFromNowOnHasTheForeColor()
    {
        const auto bounds = [](Color first, Color second, const QColor& looked) {
            BothSurfaces surfaces;
            surfaces.painted.SetFontSize(12);
            surfaces.painted.SetForeColor(first);
            surfaces.painted.Print(u"H"_s);
            surfaces.painted.SetForeColor(second);
            surfaces.painted.SetCurrentX(toTwips(20));
            surfaces.painted.Print(u"H"_s);
            return boundsOf(surfaces.image(), [&](const QColor& color) { return color == looked; });
        };
        const Color red = Color::rgb(255, 0, 0);
        const Color blue = Color::rgb(0, 0, 255);
        QVERIFY(!bounds(red, blue, Qt::red).isEmpty());
        QVERIFY(bounds(red, blue, Qt::red).right() < 20);
        QVERIFY(!bounds(red, blue, Qt::blue).isEmpty());
        QVERIFY(bounds(red, blue, Qt::blue).left() >= 20);
    }

    void aSystemColourFollowsThePalette()
    {
        Theme theme;
        for (const QColor& shade : {QColor(0, 120, 0), QColor(120, 0, 0)}) {
            theme.change(QPalette::Text, shade);
            BothSurfaces surfaces;
            surfaces.painted.SetForeColor(SystemColor::WindowText);
            surfaces.painted.SetFontSize(16);
            surfaces.painted.Print(u"H"_s);
            const auto isShade = [&](const QColor& color) { return color == shade; };
            QVERIFY(!boundsOf(surfaces.image(), isShade).isEmpty());
        }
    }

    void theSizeIsAtFirstThatOfTheRowAndThenAsItWasTold()
    {
        BothSurfaces surfaces;
        for (PictureSurface* picture : surfaces.all()) {
            QCOMPARE(picture->Width(), toTwips(40));
            QCOMPARE(picture->Height(), toTwips(30));
            picture->SetWidth(1234);
            picture->SetHeight(777);
            QCOMPARE(picture->Width(), 1234.0F);
            QCOMPARE(picture->Height(), 777.0F);
        }
    }

    void measuringGivesWhatPaintingWouldGive()
    {
        BothSurfaces surfaces;
        std::vector<std::array<Twips, 5>> told;
        for (PictureSurface* picture : surfaces.all()) {
            picture->SetCurrentX(30);
            picture->Print(u"Handgun"_s);
            const Twips behind = picture->CurrentX();
            picture->SetFontBold(true);
            picture->EndLine();
            picture->DrawBox(15, 30, 150, 300, Color());
            told.push_back({behind, picture->CurrentX(), picture->CurrentY(), picture->TextWidth(u"Knife"_s),
                            picture->TextHeight(u"a\nb"_s)});
        }
        QVERIFY(told[0][0] > 30);
        QCOMPARE(told[1], told[0]);
    }

    void textsInSeparatePlacesAreTakenDownAsWordsOfTheirOwn()
    {
        QCOMPARE(takenDown([](PictureSurface& picture) {
                     picture.Print(u"12"_s);
                     picture.SetCurrentX(600);
                     picture.Print(u"Handgun"_s);
                     picture.SetCurrentX(3000);
                     picture.Print(u"Weapons"_s);
                 }),
                 u"12 Handgun Weapons"_s);
    }

    void aTextBelowTheEndOfAnotherIsAWordOfItsOwn()
    {
        QCOMPARE(takenDown([](PictureSurface& picture) {
                     picture.Print(u"Handgun"_s);
                     picture.SetCurrentY(300);
                     picture.Print(u"loaded"_s);
                 }),
                 u"Handgun loaded"_s);
    }

    void textsThatContinueOneAnotherAreTakenDownAsOneWord()
    {
        QCOMPARE(takenDown([](PictureSurface& picture) {
                     picture.Print(u"Hand"_s);
                     picture.SetFontBold(true);
                     picture.Print(u"gun"_s);
                 }),
                 u"Handgun"_s);
    }

    void linesAreJoinedByABlank()
    {
        QCOMPARE(takenDown([](PictureSurface& picture) {
                     picture.Print(u"Handgun"_s);
                     picture.EndLine();
                     picture.Print(u"loaded "_s);
                     picture.EndLine();
                     picture.EndLine();
                     picture.SetCurrentX(600);
                     picture.Print(u"at home"_s);
                 }),
                 u"Handgun loaded at home"_s);
    }

    void aBoxBehindATextMakesNoBlankWhereThePositionIsPutBack()
    {
        QCOMPARE(takenDown([](PictureSurface& picture) {
                     picture.Print(u"Hand"_s);
                     const Twips x = picture.CurrentX();
                     picture.DrawBox(x, 0, x + 300, 200, Color());
                     picture.SetCurrentX(x);
                     picture.SetCurrentY(0);
                     picture.Print(u"gun"_s);
                 }),
                 u"Handgun"_s);
    }

    void aHighlightedTextIsTakenDownWhole_data()
    {
        QTest::addColumn<QString>("search");
        QTest::newRow("at the start") << u"hand"_s;
        QTest::newRow("inside a word") << u"ndg"_s;
        QTest::newRow("several times") << u"n"_s;
        QTest::newRow("with a blank") << u"gun and"_s;
        QTest::newRow("at the end") << u"KNIFE"_s;
        QTest::newRow("the whole text") << u"handgun and knife"_s;
        QTest::newRow("no match") << u"xyz"_s;
        QTest::newRow("no search") << QString();
    }
    void aHighlightedTextIsTakenDownWhole()
    {
        QFETCH(QString, search);
        BothSurfaces surfaces;
        for (PictureSurface* picture : surfaces.all())
            tavrin::modUtils::PrintHighlighted(*picture, u"Handgun and knife"_s, search);
        QCOMPARE(surfaces.measured.text(), u"Handgun and knife"_s);
        QCOMPARE(surfaces.measured.CurrentX(), surfaces.painted.CurrentX());
        QCOMPARE(surfaces.measured.CurrentY(), surfaces.painted.CurrentY());
        QVERIFY(!surfaces.measured.FontBold());
    }
};

TAVRIN_TEST_MAIN(tst_PictureSurface)
#include "tst_PictureSurface.moc"
