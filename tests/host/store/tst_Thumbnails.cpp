#include "base/files/FileWriter.h"
#include "host/HostTestSupport.h"
#include "host/store/AttachmentStore.h"
#include "host/store/Thumbnails.h"
#include "pictures/PictureReading.h"
#include "pictures/ThumbnailMaker.h"

#include <QBuffer>
#include <QColorSpace>
#include <QElapsedTimer>
#include <QLoggingCategory>
#include <QPainter>
#include <QProcess>
#include <QThread>
#include <QtEndian>

#include <array>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utime.h>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

const QString Program = QStringLiteral(TAVRIN_THUMBNAILER);

QByteArray encoded(const QImage& image, const char* format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, format))
        qFatal("cannot encode");
    return bytes;
}

QImage plain(const QSize& size, const QColor& color)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

/// Left half red, right half blue.
QImage halves(const QSize& size)
{
    QImage image = plain(size, Qt::red);
    QPainter(&image).fillRect(QRect(size.width() / 2, 0, size.width(), size.height()), Qt::blue);
    return image;
}

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

/// A PNG that says it has this many pixels.
QByteArray hollowPng(quint32 width, quint32 height)
{
    QByteArray bytes = encoded(plain({1, 1}, Qt::red), "png");
    qToBigEndian(width, bytes.data() + 16);
    qToBigEndian(height, bytes.data() + 20);
    quint32 crc = 0xFFFFFFFFU; // of the header chunk
    for (int i = 12; i < 29; ++i) {
        crc ^= static_cast<quint8>(bytes.at(i));
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc & 1U) ? (crc >> 1) ^ 0xEDB88320U : crc >> 1;
    }
    qToBigEndian(~crc, bytes.data() + 29);
    return bytes;
}

bool isNear(const QColor& a, const QColor& b)
{
    constexpr int Tolerance = 12; // JPEG keeps colours nearly
    return qAbs(a.red() - b.red()) <= Tolerance && qAbs(a.green() - b.green()) <= Tolerance &&
           qAbs(a.blue() - b.blue()) <= Tolerance;
}

} // namespace

class tst_Thumbnails : public TestCase
{
    Q_OBJECT

private:
    std::optional<QTemporaryDir> m_folder;
    std::optional<QTemporaryDir> m_data; // of all tests
    std::unique_ptr<Database> m_database;
    QString m_base;
    AttachmentStorePtr m_store; // whose folder is `m_base`

    /// A store in this folder. A drive leads to `m_base`.
    AttachmentStorePtr storeIn(const QString& folder, const QString& numberedFolder = {},
                               const QString& drive = {}) const
    {
        m_database->execute(u"DELETE FROM setting"_s);
        m_database->execute(u"DELETE FROM attachment_folder"_s);
        const auto set = [this](const QString& section, const QString& key, const QString& value) {
            Statement(*m_database, u"INSERT INTO setting VALUES (?, ?, ?)"_s).run({section, key, value});
        };
        set(u"_Global"_s, u"Attachments Folder"_s, folder);
        if (!drive.isEmpty())
            set(u"_Drives"_s, drive, m_base);
        if (!numberedFolder.isEmpty())
            Statement(*m_database, u"INSERT INTO attachment_folder VALUES (3, ?)"_s).run({numberedFolder});
        const auto lists = std::make_shared<HostListsHolder>(HostListsHolder{HostLists::read(*m_database)});
        return std::make_shared<AttachmentStore>(lists, m_data->path());
    }
    static Thumbnails thumbnailsOf(const AttachmentStorePtr& store, const QString& program = Program,
                                   int timeLimitMs = Thumbnails::TimeLimitMs)
    {
        return {[store](const QString& path) { return openStoreFile(*store, path); }, program, timeLimitMs};
    }
    Thumbnails thumbnails(const QString& program = Program, int timeLimitMs = Thumbnails::TimeLimitMs) const
    {
        return thumbnailsOf(m_store, program, timeLimitMs);
    }
    /// As the row's path comes: the base folder and a stored name with backslashes.
    QString storePath(const char* name) const { return m_base + u'\\' + QString::fromLatin1(name); }
    static QString platformPath(QString path) { return path.replace(u'\\', u'/'); }
    QString put(const char* name, const QByteArray& content) const
    {
        const QString path = storePath(name);
        writeFile(platformPath(path), content);
        return path;
    }
    QString put(const char* name, const QImage& image, const char* format = "png") const
    {
        return put(name, encoded(image, format));
    }
    /// The picture of the thumbnail of a file; a null one when there is none.
    QImage pictureFor(const QString& path, const QString& program = Program) const
    {
        const QString thumbnail = thumbnails(program).pathFor(path);
        return thumbnail.isEmpty() ? QImage() : QImage(platformPath(thumbnail));
    }
    QStringList kept() const
    {
        QStringList found;
        const QString folder = m_base + u"/.thumbnails"_s;
        for (const QString& bucket : filesIn(folder)) {
            for (const QString& name : filesIn(folder + u'/' + bucket))
                found << bucket + u'/' + name;
        }
        return found;
    }
    /// A program that runs these lines.
    QString script(const QByteArray& lines) const
    {
        const QString path = m_folder->filePath(u"program"_s);
        writeFile(path, "#!/bin/sh\n" + lines + "\n");
        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return path;
    }
    static void programs()
    {
        QTest::addColumn<QString>("program");
        QTest::newRow("in a process of its own") << Program;
        QTest::newRow("in this process") << QString();
    }

private Q_SLOTS:
    void initTestCase()
    {
        // What decoders say of hostile pictures.
        QLoggingCategory::setFilterRules(u"qt.gui.*=false"_s);
        m_data.emplace();
        m_database =
            Database::open(m_data->filePath(u"records.db"_s), OpenMode::CreateWhenMissing, impatient());
    }
    void cleanupTestCase() { m_database.reset(); }
    void init() override
    {
        TestCase::init();
        m_folder.emplace();
        m_base = m_folder->filePath(u"store"_s);
        QVERIFY(QDir().mkpath(m_base));
        m_store = storeIn(m_base);
    }

    // What is made

    void aThumbnailIsMadeAtTheFirstAskAndKeptBelowTheStore_data() { programs(); }
    void aThumbnailIsMadeAtTheFirstAskAndKeptBelowTheStore()
    {
        QFETCH(QString, program);
        const QString photo = put("2014\\03\\a.png", plain({1600, 800}, Qt::red));
        QCOMPARE(kept(), QStringList());
        const QString path = thumbnails(program).pathFor(photo);
        QVERIFY2(path.startsWith(m_base + u"\\.thumbnails\\"_s), qPrintable(path));
        QCOMPARE(kept().size(), 1);
        QCOMPARE(path, m_base + u"\\.thumbnails\\"_s + QString(kept().first()).replace(u'/', u'\\'));
        const QImage picture(platformPath(path));
        QCOMPARE(picture.size(), QSize(640, 320));
        QVERIFY(isNear(picture.pixelColor(320, 160), Qt::red));
    }

    void aSecondAskAndAnotherWorkstationFindTheOneThatIsKept()
    {
        const QString photo = put("a.png", plain({10, 10}, Qt::red));
        const QString first = thumbnails().pathFor(photo);
        const QByteArray other = encoded(plain({3, 3}, Qt::blue), "jpeg");
        writeFile(platformPath(first), other);
        QCOMPARE(thumbnails().pathFor(photo), first);
        QCOMPARE(contentOf(platformPath(first)), other); // not made again
    }

    void aKeptThumbnailThatIsDamagedIsMadeAnew_data()
    {
        QTest::addColumn<QByteArray>("how");
        for (const char* how : {"empty", "cut short", "another file", "too long", "a link"})
            QTest::newRow(how) << QByteArray(how);
    }
    void aKeptThumbnailThatIsDamagedIsMadeAnew()
    {
        QFETCH(QByteArray, how);
        const QString photo = put("a.png", plain({10, 10}, Qt::red));
        const QString kept = platformPath(thumbnails().pathFor(photo));
        const QByteArray whole = contentOf(kept);
        const QString elsewhere = m_folder->filePath(u"elsewhere"_s);
        if (how == "empty" || how == "another file") {
            writeFile(kept, how == "empty" ? "" : "not a picture");
        } else if (how == "a link") {
            writeFile(elsewhere, whole);
            QVERIFY(QFile::remove(kept) && QFile::link(elsewhere, kept));
        } else {
            QVERIFY(
                QFile::resize(kept, how == "cut short" ? whole.size() - 20 : ThumbnailMaker::MaxLength + 1));
        }
        QCOMPARE(platformPath(thumbnails().pathFor(photo)), kept);
        QCOMPARE(contentOf(kept), whole);
        QVERIFY(!QFileInfo(kept).isSymLink());
    }

    void aThumbnailIsReadByNobodyWhoMayNotReadItsPicture_data()
    {
        QTest::addColumn<uint>("mode");
        QTest::addColumn<uint>("kept");
        QTest::newRow("one person's") << 0600U << 0600U;
        QTest::newRow("a group's") << 0640U << 0640U;
        QTest::newRow("everybody's, and a program") << 0755U << 0644U;
    }
    void aThumbnailIsReadByNobodyWhoMayNotReadItsPicture()
    {
        QFETCH(uint, mode);
        const QString photo = put("a.png", plain({10, 10}, Qt::red));
        QCOMPARE(::chmod(QFile::encodeName(platformPath(photo)).constData(), mode), 0);
        const QString kept = platformPath(thumbnails().pathFor(photo));
        struct stat status = {};
        QCOMPARE(::stat(QFile::encodeName(kept).constData(), &status), 0);
        QTEST(uint(status.st_mode & 07777), "kept");
    }

    void aFailureThatPassesIsTriedAgain_data()
    {
        QTest::addColumn<QByteArray>("lines");
        QTest::newRow("the program dies") << QByteArray("kill -SEGV $$");
        QTest::newRow("it hangs") << QByteArray("exec sleep 600");
        QTest::newRow("it fails otherwise") << QByteArray("exit 2");
        QTest::newRow("it says nothing") << QByteArray("exit 0");
    }
    void aFailureThatPassesIsTriedAgain()
    {
        QFETCH(QByteArray, lines);
        const QString counter = m_folder->filePath(u"count"_s);
        QVERIFY(QDir().mkpath(counter));
        Thumbnails service =
            thumbnails(script("mkdir \"" + QFile::encodeName(counter) + "/$$\"; " + lines), 500);
        const QString path = put("a.png", plain({4, 4}, Qt::red));
        QCOMPARE(service.pathFor(path), QString());
        QCOMPARE(service.pathFor(path), QString());
        QCOMPARE(filesIn(counter).size(), 2);
    }

    void aPictureThatIsWrittenToMeanwhileHasNoneThisTime()
    {
        const QString path = put("a.png", plain({4, 4}, Qt::red));
        const QByteArray file = QFile::encodeName(platformPath(path));
        const QByteArray good = QFile::encodeName(m_folder->filePath(u"good.jpg"_s));
        writeFile(QFile::decodeName(good), encoded(plain({4, 4}, Qt::red), "jpeg"));
        Thumbnails service = thumbnails(script("cat \"" + good + "\"; touch -d 2001-01-01 \"" + file + "\""));
        QCOMPARE(service.pathFor(path), QString());
        QCOMPARE(kept(), QStringList());
        QVERIFY(!service.pathFor(path).isEmpty()); // of the file as it is now
    }

    void aTemporaryFileThatIsBeingWrittenStaysHoweverOldItIs()
    {
        const QString photo = put("a.png", plain({10, 10}, Qt::red));
        const QString bucket = QFileInfo(platformPath(thumbnails().pathFor(photo))).path();
        const Descriptor folder = openFolder(QFile::encodeName(bucket));
        const NewFile living(folder, "f", 0600);
        const std::array<timespec, 2> longAgo = {timespec{1'600'000'000, 0}, timespec{1'600'000'000, 0}};
        QCOMPARE(::futimens(living.descriptor().number(), longAgo.data()), 0);
        put("a.png", plain({20, 20}, Qt::red));
        QVERIFY(!thumbnails().pathFor(photo).isEmpty());
        QCOMPARE(filesIn(bucket).size(), 2);
    }

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

    // Changes

    void aPictureThatHasChangedGetsANewThumbnailAndLosesTheOld()
    {
        const QString photo = put("a.png", plain({10, 10}, Qt::red));
        const QString first = thumbnails().pathFor(photo);
        put("a.png", plain({20, 20}, Qt::blue));
        const QString second = thumbnails().pathFor(photo);
        QVERIFY(second != first);
        QCOMPARE(kept().size(), 1);
        QVERIFY(isNear(QImage(platformPath(second)).pixelColor(5, 5), Qt::blue));
    }

    void aPictureOfTheSameLengthIsKnownByItsTime()
    {
        const QString photo = put("a.bmp", plain({10, 10}, Qt::red), "bmp");
        const QString first = thumbnails().pathFor(photo);
        put("a.bmp", plain({10, 10}, Qt::blue), "bmp");
        const utimbuf later = {1'600'000'000, 1'600'000'000};
        QCOMPARE(::utime(QFile::encodeName(platformPath(photo)).constData(), &later), 0);
        const QString second = thumbnails().pathFor(photo);
        QVERIFY(second != first);
        QVERIFY(isNear(QImage(platformPath(second)).pixelColor(5, 5), Qt::blue));
        QCOMPARE(kept().size(), 1);
    }

    void picturesOfOneNameInTwoFoldersAreTwo()
    {
        const QString a = put("2014\\03\\a.png", plain({10, 10}, Qt::red));
        const QString b = put("2014\\04\\a.png", plain({10, 10}, Qt::blue));
        QVERIFY(isNear(pictureFor(a).pixelColor(5, 5), Qt::red));
        QVERIFY(isNear(pictureFor(b).pixelColor(5, 5), Qt::blue));
        QCOMPARE(kept().size(), 2);
    }

    void aThumbnailThatWasDeletedIsMadeAgain()
    {
        const QString photo = put("a.png", plain({10, 10}, Qt::red));
        Thumbnails service = thumbnails();
        const QString path = service.pathFor(photo);
        QVERIFY(QDir(m_base + u"/.thumbnails"_s).removeRecursively());
        QCOMPARE(service.pathFor(photo), path);
        QCOMPARE(kept().size(), 1);
    }

    void whatAKilledProgramHasLeftIsRemovedAfterADayAndNotBefore()
    {
        const QString photo = put("a.png", plain({10, 10}, Qt::red));
        const QString folder = QFileInfo(platformPath(thumbnails().pathFor(photo))).path();
        const QString old = folder + u'/' + QString::fromLatin1(TemporaryPrefix) + u"old"_s;
        const QString fresh = folder + u'/' + QString::fromLatin1(TemporaryPrefix) + u"new"_s;
        writeFile(old, "x");
        writeFile(fresh, "x");
        const utimbuf longAgo = {1'600'000'000, 1'600'000'000};
        QCOMPARE(::utime(QFile::encodeName(old).constData(), &longAgo), 0);
        put("a.png", plain({20, 20}, Qt::red));
        QVERIFY(!thumbnails().pathFor(photo).isEmpty());
        QVERIFY(!QFile::exists(old));
        QVERIFY(QFile::exists(fresh));
    }

    void twoWorkstationsThatAskAtOnceDoNotSpoilEachOther()
    {
        const QString photo = put("a.jpg", halves({3000, 2000}), "jpeg");
        QStringList paths[4];
        std::vector<std::unique_ptr<QThread>> workstations;
        for (QStringList& mine : paths) {
            workstations.emplace_back(QThread::create([this, &photo, &mine] {
                for (int i = 0; i < 5; ++i)
                    mine << thumbnails().pathFor(photo);
            }));
            workstations.back()->start();
        }
        for (const auto& workstation : workstations)
            QVERIFY(workstation->wait());
        for (const QStringList& mine : paths) {
            for (const QString& path : mine)
                QCOMPARE(path, paths[0].first());
        }
        QCOMPARE(kept().size(), 1); // and no temporary file
        QCOMPARE(QImage(platformPath(paths[0].first())).size(), QSize(640, 426));
    }

    // What has none

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
            QTest::newRow(name) << content << Program;
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
            QDir(m_base + u"/.thumbnails"_s).removeRecursively();
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

    void aPictureThatFailedIsNotTriedAgainUntilItHasChanged()
    {
        const QString counter = m_folder->filePath(u"count"_s);
        QVERIFY(QDir().mkpath(counter));
        Thumbnails service = thumbnails(script("mkdir \"" + QFile::encodeName(counter) + "/$$\"; exit 1"));
        const QString path = put("a.png", plain({4, 4}, Qt::red));
        QCOMPARE(service.pathFor(path), QString());
        QCOMPARE(service.pathFor(path), QString());
        QCOMPARE(filesIn(counter).size(), 1);
        put("a.png", plain({5, 5}, Qt::red));
        QCOMPARE(service.pathFor(path), QString());
        QCOMPARE(filesIn(counter).size(), 2);
    }

    // Paths

    void pathsThatAreNoFileOfTheStoreHaveNone_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("empty") << u""_s;
        QTest::newRow("the store itself") << u"%1"_s;
        QTest::newRow("a folder") << u"%1\\folder"_s;
        QTest::newRow("missing") << u"%1\\none.png"_s;
        QTest::newRow("up and out") << u"%1\\..\\out.png"_s;
        QTest::newRow("up and out, later") << u"%1\\folder\\..\\..\\out.png"_s;
        QTest::newRow("of another place") << u"%1/../out.png"_s;
        QTest::newRow("beside the store") << u"%1side\\a.png"_s;
        QTest::newRow("a drive") << u"C:\\Scans\\a.png"_s;
        QTest::newRow("relative") << u"a.png"_s;
        QTest::newRow("a link to a file") << u"%1\\link.png"_s;
        QTest::newRow("through a link") << u"%1\\linked\\out.png"_s;
        QTest::newRow("a FIFO") << u"%1\\fifo.png"_s;
        QTest::newRow("a thumbnail") << u"%1\\.thumbnails\\a.png"_s;
        QTest::newRow("NUL in the name") << u"%1\\a.png"_s + QChar(QChar::Null);
    }
    void pathsThatAreNoFileOfTheStoreHaveNone()
    {
        QFETCH(QString, path);
        const QByteArray picture = encoded(plain({4, 4}, Qt::red), "png");
        for (const char* name :
             {"store/folder/a.png", "store/a.png", "out.png", "storeside/a.png", "store/.thumbnails/a.png"})
            writeFile(m_folder->filePath(QString::fromLatin1(name)), picture);
        QVERIFY(QFile::link(m_folder->filePath(u"out.png"_s), m_base + u"/link.png"_s));
        QVERIFY(QFile::link(m_folder->path(), m_base + u"/linked"_s));
        QCOMPARE(::mkfifo(QFile::encodeName(m_base + u"/fifo.png"_s).constData(), 0600), 0);
        QCOMPARE(thumbnails().pathFor(path.contains(u'%') ? path.arg(m_base) : path), QString());
        QCOMPARE(filesIn(m_base + u"/.thumbnails"_s), QStringList({u"a.png"_s}));
    }

    void slashesAndDoubledSeparatorsLeadToTheSameFile()
    {
        const QString photo = put("2014\\03\\a.png", plain({4, 4}, Qt::red));
        const QString expected = thumbnails().pathFor(photo);
        QVERIFY(!expected.isEmpty());
        QCOMPARE(thumbnails().pathFor(m_base + u"/2014/03/a.png"_s), expected);
        QCOMPARE(thumbnails().pathFor(m_base + u"\\\\2014\\03\\\\a.png"_s), expected);
    }

    void aStoreIsKnownByTheNameThatSettingsGiveIt()
    {
        put("a.png", plain({4, 4}, Qt::red));
        Thumbnails service =
            thumbnailsOf(storeIn(uR"(\\server\files\)"_s, QString(), uR"(\\server\files)"_s));
        const QString path = service.pathFor(uR"(\\server\files\a.png)"_s);
        QVERIFY2(path.startsWith(uR"(\\server\files\.thumbnails\)"_s), qPrintable(path));
        QCOMPARE(kept().size(), 1);
    }

    void aPictureIsFoundInWhicheverFolderOfTheStoreItLies()
    {
        const QString archive = m_folder->filePath(u"archive"_s);
        writeFile(archive + u"/a.png"_s, encoded(plain({4, 4}, Qt::red), "png"));
        Thumbnails service = thumbnailsOf(storeIn(m_base, archive));
        QVERIFY(service.pathFor(archive + u"\\a.png"_s).startsWith(archive + u"\\.thumbnails\\"_s));
        QCOMPARE(kept(), QStringList());
    }

    void aFolderOfThumbnailsThatIsALinkIsNotWrittenTo()
    {
        const QString photo = put("a.png", plain({4, 4}, Qt::red));
        const QString elsewhere = m_folder->filePath(u"elsewhere"_s);
        QVERIFY(QDir().mkpath(elsewhere) && QFile::link(elsewhere, m_base + u"/.thumbnails"_s));
        QCOMPARE(thumbnails().pathFor(photo), QString());
        QCOMPARE(filesIn(elsewhere), QStringList());
    }

    void aStoreThatIsNotThereHasNone()
    {
        Thumbnails service = thumbnailsOf(storeIn(u"/nowhere"_s));
        QCOMPARE(service.pathFor(u"/nowhere\\a.png"_s), QString());
    }

    void aStoreThatFailsIsNoFailure()
    {
        Thumbnails service([](const QString&) -> std::optional<StoreFile> { throw Error(u"no settings"_s); },
                           Program);
        QCOMPARE(service.pathFor(u"/nowhere\\a.png"_s), QString());
    }

    // The program

    void aProgramThatFailsOrLiesGivesNoThumbnail_data()
    {
        QTest::addColumn<QByteArray>("lines");
        QTest::newRow("fails") << QByteArray("exit 1");
        QTest::newRow("says nothing") << QByteArray("exit 0");
        QTest::newRow("dies") << QByteArray("kill -SEGV $$");
        QTest::newRow("writes what is no picture") << QByteArray("echo hello");
        QTest::newRow("gives the picture back as it is") << QByteArray("cat");
        QTest::newRow("never ends its answer") << QByteArray("exec cat /dev/zero");
    }
    void aProgramThatFailsOrLiesGivesNoThumbnail()
    {
        QFETCH(QByteArray, lines);
        const QString path = put("a.png", plain({700, 700}, Qt::red));
        QCOMPARE(thumbnails(script(lines)).pathFor(path), QString());
        QCOMPARE(kept(), QStringList());
    }

    void aProgramThatHangsIsEndedInTime()
    {
        const QString path = put("a.png", plain({4, 4}, Qt::red));
        QElapsedTimer clock;
        clock.start();
        QCOMPARE(thumbnails(script("exec sleep 600"), 200).pathFor(path), QString());
        QVERIFY(clock.elapsed() < 60'000);
        QCOMPARE(kept(), QStringList());
    }

    void theProgramHasBoundsToItsMemoryAndWritesNoFiles()
    {
        const QByteArray seen = QFile::encodeName(m_folder->path());
        const QString path = put("a.png", plain({4, 4}, Qt::red));
        thumbnails(script("mkdir \"" + seen + "/memory-$(ulimit -v)\" \"" + seen + "/files-$(ulimit -f)\""))
            .pathFor(path);
        QVERIFY(QFileInfo::exists(m_folder->filePath(u"files-0"_s)));
#ifndef __SANITIZE_ADDRESS__
        QVERIFY(QFileInfo::exists(m_folder->filePath(u"memory-1048576"_s)));
#endif
    }

    void theProgramReadsThePictureAndNothingElse()
    {
        const QByteArray seen = QFile::encodeName(m_folder->path());
        const QString path = put("a.png", plain({4, 4}, Qt::red));
        thumbnails(script("mkdir \"" + seen + "/$(sha256sum | cut -c1-64)\"")).pathFor(path);
        QVERIFY(QFileInfo::exists(m_folder->filePath(QString::fromLatin1(sha256Of(platformPath(path))))));
    }

    void thePlainProgramFailsWithoutAPicture()
    {
        QProcess program;
        program.start(Program, QStringList());
        QVERIFY(program.waitForStarted());
        program.write("not a picture");
        program.closeWriteChannel();
        QVERIFY(program.waitForFinished());
        QCOMPARE(program.exitCode(), 1);
        QCOMPARE(program.readAllStandardOutput(), QByteArray());
    }

    void theServiceGivesTheSamePaths()
    {
        const QString photo = put("a.png", plain({4, 4}, Qt::red));
        Thumbnails all = thumbnails();
        QCOMPARE(makeThumbnailService(all)->GetThumbnailPath(photo).toString(), all.pathFor(photo));
        QCOMPARE(makeThumbnailService(all)->GetThumbnailPath(storePath("none.png")).toString(), QString());
    }
};

TAVRIN_TEST_MAIN(tst_Thumbnails)
#include "tst_Thumbnails.moc"
