#include "support/TestCase.h"
#include "widgets/PictureSurface.h"

#include <QImage>
#include <QPainter>

using namespace Qt::StringLiterals;
using tavrin::Color;
using tavrin::DrawMode;
using tavrin::PaintedPicture;
using tavrin::toTwips;
using tavrin::Twips;

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
    QRect bounds;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y) != ground)
                bounds |= QRect(x, y, 1, 1);
        }
    }
    return bounds;
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
};

TAVRIN_TEST_MAIN(tst_PictureSurface)
#include "tst_PictureSurface.moc"
