#include "base/files/FileWriter.h"
#include "host/store/ThumbnailCase.h"
#include "pictures/ThumbnailMaker.h"

#include <QThread>

#include <array>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utime.h>
#include <vector>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

/// Thumbnails that are kept below the store: when they are made anew, and of which paths there are any.
class tst_Thumbnails : public ThumbnailCase
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { openDatabase(); }
    void cleanupTestCase() { closeDatabase(); }

    void aThumbnailIsMadeAtTheFirstAskAndKeptBelowTheStore_data()
    {
        QTest::addColumn<QString>("program");
        QTest::newRow("in a process of its own") << thumbnailer();
        QTest::newRow("in this process") << QString();
    }
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
        QVERIFY(QDir(keptFolder()).removeRecursively());
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
        QCOMPARE(filesIn(keptFolder()), QStringList({u"a.png"_s}));
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
        QVERIFY(QDir().mkpath(elsewhere) && QFile::link(elsewhere, keptFolder()));
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
                           thumbnailer());
        QCOMPARE(service.pathFor(u"/nowhere\\a.png"_s), QString());
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
