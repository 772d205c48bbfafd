#include "base/pictures/PictureReading.h"
#include "host/store/ThumbnailCase.h"

#include <QColorSpace>

#include <utility>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

/// A JPEG that says how its camera was held.
QByteArray held(const QByteArray& jpeg, quint8 orientation)
{
    QByteArray exif = QByteArray("Exif\0\0", 6);
    exif += QByteArray("MM\0\x2A\0\0\0\x08", 8); // big endian, the directory follows
    exif += QByteArray("\0\x01", 2);             // one entry
    exif += QByteArray("\x01\x12\0\x03\0\0\0\x01", 8);
    exif += QByteArray(1, '\0') + QByteArray(1, static_cast<char>(orientation)) + QByteArray(2, '\0');
    exif += QByteArray(4, '\0'); // no further directory
    QByteArray segment("\xFF\xE1", 2);
    const auto length = static_cast<quint16>(exif.size() + 2);
    segment += static_cast<char>(length >> 8);
    segment += static_cast<char>(length & 0xFF);
    return jpeg.left(2) + segment + exif + jpeg.mid(2);
}

} // namespace

/// What a thumbnail shows of its picture, and which pictures have none.
class tst_ThumbnailMaking : public ThumbnailCase
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { openDatabase(); }
    void cleanupTestCase() { closeDatabase(); }

    void aPictureIsNeverEnlarged()
    {
        QCOMPARE(pictureFor(put("a.png", plain({7, 5}, Qt::red))).size(), QSize(7, 5));
        QCOMPARE(pictureFor(put("b.jpg", plain({640, 640}, Qt::red), "jpeg")).size(), QSize(640, 640));
    }

    void theProportionsAreKept_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QByteArray>("format");
        QTest::addColumn<QSize>("made");
        for (const char* format : {"png", "jpeg", "bmp"}) {
            const auto row = [&](const char* name, QSize size, QSize made) {
                QTest::newRow(qPrintable(QString::fromLatin1(name) + u' ' + QString::fromLatin1(format)))
                    << size << QByteArray(format) << made;
            };
            row("wide", {1280, 640}, {640, 320});
            row("tall", {640, 1280}, {320, 640});
            row("thin as a thread", {3000, 1}, {640, 1});
        }
    }
    void theProportionsAreKept()
    {
        QFETCH(QSize, size);
        QFETCH(QByteArray, format);
        QTEST(pictureFor(put("a.png", plain(size, Qt::red), format.constData())).size(), "made");
    }

    void aPictureIsTurnedAsItsCameraWasHeld_data()
    {
        QTest::addColumn<int>("orientation");
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QPoint>("red");
        QTest::addColumn<QPoint>("blue");
        QTest::newRow("upright") << 1 << QSize(640, 320) << QPoint(100, 160) << QPoint(540, 160);
        QTest::newRow("mirrored") << 2 << QSize(640, 320) << QPoint(540, 160) << QPoint(100, 160);
        QTest::newRow("upside down") << 3 << QSize(640, 320) << QPoint(540, 160) << QPoint(100, 160);
        QTest::newRow("turned right") << 6 << QSize(320, 640) << QPoint(160, 100) << QPoint(160, 540);
        QTest::newRow("turned left") << 8 << QSize(320, 640) << QPoint(160, 540) << QPoint(160, 100);
    }
    void aPictureIsTurnedAsItsCameraWasHeld()
    {
        QFETCH(int, orientation);
        QFETCH(QPoint, red);
        QFETCH(QPoint, blue);
        const QByteArray jpeg = encoded(halves({1280, 640}), "jpeg");
        const QImage picture = pictureFor(put("a.jpg", held(jpeg, static_cast<quint8>(orientation))));
        QTEST(picture.size(), "size");
        QVERIFY(isNear(picture.pixelColor(red), Qt::red));
        QVERIFY(isNear(picture.pixelColor(blue), Qt::blue));
    }

    void whatIsTransparentStandsOnALightGround()
    {
        QImage image(40, 40, QImage::Format_ARGB32);
        image.fill(Qt::transparent);
        QPainter(&image).fillRect(0, 0, 20, 40, Qt::blue);
        const QImage picture = pictureFor(put("a.png", image));
        QVERIFY(isNear(picture.pixelColor(5, 20), Qt::blue));
        QVERIFY(isNear(picture.pixelColor(35, 20), Qt::white));
    }

    void coloursOfAnotherSpaceAreBroughtToTheScreens()
    {
        QImage image = plain({40, 40}, QColor(100, 180, 60));
        image.setColorSpace(QColorSpace::AdobeRgb);
        const QColor expected = image.convertedToColorSpace(QColorSpace::SRgb).pixelColor(20, 20);
        QVERIFY(!isNear(expected, QColor(100, 180, 60)));
        QVERIFY(isNear(pictureFor(put("a.png", image)).pixelColor(20, 20), expected));
    }

    void whatElseTheFileTellsStaysBehind()
    {
        QImage image = plain({40, 40}, Qt::red);
        image.setText(u"Comment"_s, u"the place"_s);
        const QString path = put("a.png", image);
        QVERIFY(contentOf(platformPath(path)).contains("the place"));
        QVERIFY(!contentOf(platformPath(thumbnails().pathFor(path))).contains("the place"));
    }

    void whatIsNoSoundPictureHasNoThumbnail_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("program");
        const std::pair<const char*, QByteArray> contents[] = {
            {"empty", ""},
            {"text", "not a picture"},
            {"format not in the list", "P1\n1 1\n1\n"},
            {"too many pixels", hollowPng(30000, 30000)},
            {"very wide", hollowPng(0x7FFFFFFF, 1)},
            {"pixels that are not there", hollowPng(7000, 7000)},
            {"half a JPEG", encoded(halves({64, 64}), "jpeg").left(200)},
        };
        for (const auto& [name, content] : contents) {
            QTest::newRow(name) << content << thumbnailer();
            QTest::newRow(qPrintable(QString::fromLatin1(name) + u", in this process"_s))
                << content << QString();
        }
    }
    void whatIsNoSoundPictureHasNoThumbnail()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, program);
        QCOMPARE(thumbnails(program).pathFor(put("a.png", content)), QString());
        QCOMPARE(kept(), QStringList());
    }

    void aVeryLongFileHasNone()
    {
        const QString path = put("a.png", encoded(plain({4, 4}, Qt::red), "png"));
        QVERIFY(QFile::resize(platformPath(path), PictureReading::MaxFileLength + 1));
        QCOMPARE(thumbnails().pathFor(path), QString());
    }

    void aPictureDamagedAtAnyByteNeitherCrashesNorLeavesAPartialFile_data()
    {
        QTest::addColumn<QByteArray>("format");
        for (const char* format : {"png", "jpeg", "bmp"})
            QTest::newRow(format) << QByteArray(format);
    }
    void aPictureDamagedAtAnyByteNeitherCrashesNorLeavesAPartialFile()
    {
        QFETCH(QByteArray, format);
        const QByteArray whole = encoded(halves({8, 8}), format.constData());
        const auto tryOut = [&](const QByteArray& content) {
            QDir(keptFolder()).removeRecursively();
            const QString path = thumbnails({}).pathFor(put("a.img", content));
            if (path.isEmpty())
                QCOMPARE(kept(), QStringList());
            else
                QVERIFY(!QImage(platformPath(path)).isNull());
        };
        for (qsizetype i = 0; i < whole.size(); ++i) {
            QByteArray damaged = whole;
            damaged[i] = static_cast<char>(damaged.at(i) ^ (1 << (i % 8)));
            tryOut(damaged);
            tryOut(whole.left(i));
        }
    }
};

TAVRIN_TEST_MAIN(tst_ThumbnailMaking)
#include "tst_ThumbnailMaking.moc"
