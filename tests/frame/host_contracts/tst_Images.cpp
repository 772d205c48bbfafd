#include "base/pictures/PictureReading.h"
#include "frame/host_contracts/Services.h"
#include "host/TestPictures.h"
#include "support/TestCase.h"
#include "support/TestFiles.h"

#include <QTemporaryDir>

#include <optional>

using namespace tavrin;
using namespace tavrin::test;

class tst_Images : public TestCase
{
    Q_OBJECT

private:
    std::optional<QTemporaryDir> m_folder;
    Images m_images;
    ListFilling m_filling;

    QString path(const char* name) const { return m_folder->filePath(QString::fromLatin1(name)); }

private Q_SLOTS:
    void init() override
    {
        TestCase::init();
        m_folder.emplace();
    }

    void imagesAreKnownByTheirEndings_data()
    {
        QTest::addColumn<bool>("image");
        for (const char* name : {"a.png", "a.JPG", "a.b.jpeg", "a.gif", "A.Bmp"})
            QTest::newRow(name) << true;
        for (const char* name : {"a.svg", "png", "a.png.exe", "a.", "", "a.tif"})
            QTest::newRow(*name ? name : "(empty)") << false;
    }
    void imagesAreKnownByTheirEndings()
    {
        const QString name = QString::fromLatin1(QTest::currentDataTag());
        QTEST(m_images.IsImageFile(name == QStringLiteral("(empty)") ? QString() : name), "image");
    }

    void aPictureIsLoadedByItsContent()
    {
        QImage image(3, 2, QImage::Format_RGB32);
        image.fill(Qt::green);
        QVERIFY(image.save(path("really.png"), "png"));
        QVERIFY(QFile::rename(path("really.png"), path("named.jpg")));
        QCOMPARE(m_images.LoadPicture(path("named.jpg")).size(), QSize(3, 2));
    }

    void picturesThatCannotBeShownAreNamed_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("expected");
        QTest::newRow("text") << QByteArray("not a picture")
                              << QStringLiteral("no picture of a known format");
        QTest::newRow("empty") << QByteArray("") << QStringLiteral("no picture of a known format");
        QTest::newRow("format not in the list")
            << QByteArray("P1\n1 1\n1\n") << QStringLiteral("no picture of a known format");
        QTest::newRow("too many pixels")
            << hollowPng(30000, 30000) << QStringLiteral("too large (30000 by 30000 pixels)");
    }
    void picturesThatCannotBeShownAreNamed()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, expected);
        putFile(path("bad.png"), content);
        const QString text = failureOf([this] { m_images.LoadPicture(path("bad.png")); });
        QVERIFY2(text.contains(expected), qPrintable(text));
        QVERIFY2(text.contains(QStringLiteral("bad.png")), qPrintable(text));
    }

    void aMissingOrVeryLongPictureFileIsRefused()
    {
        QVERIFY(failureOf([this] {
                    m_images.LoadPicture(path("none.png"));
                }).contains(QStringLiteral("not there")));
        QFile file(path("long.png"));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.resize(PictureReading::MaxFileLength + 1));
        QVERIFY(failureOf([this] {
                    m_images.LoadPicture(path("long.png"));
                }).contains(QStringLiteral("too long")));
    }

    void picturesAreFittedWithTheirProportions_data()
    {
        QTest::addColumn<QSize>("picture");
        QTest::addColumn<bool>("enlarge");
        QTest::addColumn<QRect>("filled");
        QTest::newRow("wide") << QSize(400, 200) << true << QRect(0, 25, 100, 50);
        QTest::newRow("tall") << QSize(200, 400) << true << QRect(25, 0, 50, 100);
        QTest::newRow("small, enlarged") << QSize(10, 10) << true << QRect(0, 0, 100, 100);
        QTest::newRow("small, as it is") << QSize(10, 10) << false << QRect(45, 45, 10, 10);
        QTest::newRow("thin as a thread") << QSize(5000, 1) << true << QRect(0, 49, 100, 1);
    }
    void picturesAreFittedWithTheirProportions()
    {
        QFETCH(QSize, picture);
        QFETCH(bool, enlarge);
        QFETCH(QRect, filled);
        QImage image(picture, QImage::Format_RGB32);
        image.fill(Qt::red);
        const QImage fitted = m_filling.FitPicture(image, 100, 100, 1, enlarge, Color::rgb(0, 0, 255), false);
        QCOMPARE(fitted.size(), QSize(100, 100));
        for (int y = 0; y < 100; ++y) {
            for (int x = 0; x < 100; ++x)
                QCOMPARE(fitted.pixelColor(x, y), QColor(filled.contains(x, y) ? Qt::red : Qt::blue));
        }
    }

    void nothingFitsIntoNothing()
    {
        QVERIFY(m_filling.FitPicture({}, 10, 10, 1, true, {}, false).isNull());
        const QImage image(1, 1, QImage::Format_RGB32);
        QVERIFY(m_filling.FitPicture(image, 0, 10, 1, true, {}, false).isNull());
    }
};

TAVRIN_TEST_MAIN(tst_Images)
#include "tst_Images.moc"
