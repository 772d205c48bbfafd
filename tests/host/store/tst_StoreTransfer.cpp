#include "host/store/StoreTestSupport.h"

#include <cstdio>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

mode_t modeOf(const QString& path)
{
    struct stat status = {};
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_mode & 07777 : 0;
}

const QString OutOfFolder = QStringLiteral("the path leads out of the attachments folder");
const QString LinkInPath = QStringLiteral("a symbolic link stands in its path");
const QString BadCharacter =
    QStringLiteral("its name holds a character that no file in the attachments folder may have");

} // namespace

class tst_StoreTransfer : public StoreCase
{
    Q_OBJECT

private Q_SLOTS:
    void aFileGoesInAndComesOutAgain_data()
    {
        QTest::addColumn<qint64>("size");
        QTest::newRow("empty") << qint64(0);
        QTest::newRow("one byte") << qint64(1);
        QTest::newRow("a buffer less one") << qint64((1 << 20) - 1);
        QTest::newRow("a buffer") << qint64(1 << 20);
        QTest::newRow("a buffer and one") << qint64((1 << 20) + 1);
        QTest::newRow("flushed on the way") << qint64((20 << 20) + 17);
    }
    void aFileGoesInAndComesOutAgain()
    {
        QFETCH(qint64, size);
        QByteArray content(size, '\0');
        for (qsizetype i = 0; i < content.size(); ++i)
            content[i] = static_cast<char>(i * 31 >> 3);
        const QString from = source(content);
        upload(from, Stored);
        QVERIFY(contentOf(report()) == content);
        QCOMPARE(stored(), (QStringList{QStringLiteral("2014"), QStringLiteral("2014/03"),
                                        QStringLiteral("2014/03/20160201130507_Report.pdf")}));
        const QString copy = download(Stored);
        QVERIFY(contentOf(copy) == content);
        QVERIFY(contentOf(from) == content);
    }

    void theEventsOfAnUploadComeInOrderInsideTheCall()
    {
        const QString from = source(QByteArray((2 << 20) + 5, 'x'));
        const auto uploader = m_host->newUploader();
        QStringList told;
        const auto progress =
            uploader->UploadProgress.subscribe([&](const QString& path, qint64 bytes, qint64 total) {
                QVERIFY(!QFileInfo::exists(report()));
                told << QStringLiteral("%1 %2 of %3").arg(path).arg(bytes).arg(total);
            });
        const auto complete = uploader->UploadComplete.subscribe([&](const QString& path, bool flag) {
            QVERIFY(QFileInfo::exists(report()));
            told << QStringLiteral("%1 complete %2").arg(path).arg(flag);
        });
        uploader->Upload(from, Stored, {});
        QCOMPARE(told, (QStringList{from + u" 1048576 of 2097157"_s, from + u" 2097152 of 2097157"_s,
                                    from + u" 2097157 of 2097157"_s, from + u" complete 0"_s}));
    }

    void theEventsOfADownloadComeInOrderAndItsBufferCounts()
    {
        upload(source(QByteArray(10, 'x')), Stored);
        const auto downloader = m_host->newDownloader();
        downloader->SetBufferSize(4);
        QStringList told;
        const auto started =
            downloader->DownloadStarted.subscribe([&](const QString& path) { told << path + u" started"_s; });
        const auto progress =
            downloader->DownloadProgress.subscribe([&](const QString&, qint64 bytes, qint64 total) {
                told << QStringLiteral("%1 of %2").arg(bytes).arg(total);
            });
        const auto complete =
            downloader->DownloadComplete.subscribe([&](const QString& path, bool cancelled) {
                told << QStringLiteral("%1 complete %2").arg(path).arg(cancelled);
            });
        downloader->Download(Stored);
        QCOMPARE(told,
                 (QStringList{Stored + u" started"_s, QStringLiteral("4 of 10"), QStringLiteral("8 of 10"),
                              QStringLiteral("10 of 10"), Stored + u" complete 0"_s}));
    }

    void noProgressIsToldOfAnEmptyFileSoThatNobodyDividesByZero()
    {
        const QString from = source({});
        const auto uploader = m_host->newUploader();
        int told = 0;
        bool complete = false;
        const auto progress =
            uploader->UploadProgress.subscribe([&](const QString&, qint64, qint64) { ++told; });
        const auto end = uploader->UploadComplete.subscribe([&](const QString&, bool) { complete = true; });
        uploader->Upload(from, Stored, {});
        const auto downloader = m_host->newDownloader();
        const auto down =
            downloader->DownloadProgress.subscribe([&](const QString&, qint64, qint64) { ++told; });
        QVERIFY(QFileInfo::exists(downloader->Download(Stored)));
        QCOMPARE(told, 0);
        QVERIFY(complete);
    }

    void aBufferOfNothingIsRefused()
    {
        QCOMPARE(errorOf([this] { m_host->newDownloader()->SetBufferSize(0); }),
                 QStringLiteral("A download needs a buffer of at least one byte, not 0."));
    }

    void copiesAreThePersonsAloneAndLieInTheFolderOfTheHost()
    {
        upload(source("x"), Stored);
        const QString first = download(Stored);
        const QString second = download(Stored);
        const QString folder = QFileInfo(first).path();
        QCOMPARE(QFileInfo(folder).path(), temporary());
        QCOMPARE(QFileInfo(second).path(), folder);
        QVERIFY(first != second);
        QCOMPARE(modeOf(first), mode_t(0600));
        QCOMPARE(modeOf(folder), mode_t(0700));
        QCOMPARE(filesIn(folder).size(), 2);
        QCOMPARE(filesIn(temporary()).size(), 1);
    }

    void theEndOfTheHostRemovesItsCopies()
    {
        upload(source("x"), Stored);
        download(Stored);
        const QString renamed = QFileInfo(download(Stored)).path() + u"/Report.pdf"_s;
        QVERIFY(QFile::rename(download(Stored), renamed));
        QVERIFY(QFile::setPermissions(renamed, QFile::ReadOwner));
        m_host.reset();
        QCOMPARE(filesIn(temporary()), QStringList());
    }

    void whatSomebodyHasWrittenOutlivesTheHost()
    {
        upload(source("x"), Stored);
        const QString edited = download(Stored);
        const QString untouched = download(Stored);
        const QString replaced = download(Stored);
        const QString folder = QFileInfo(edited).path();
        QFile file(edited);
        QVERIFY(file.open(QIODevice::Append) && file.write("more") == 4);
        file.close();
        // As an editor does that writes a new file and renames it.
        writeFile(folder + u"/new"_s, "y");
        QCOMPARE(std::rename(qPrintable(folder + u"/new"_s), qPrintable(replaced)), 0);
        writeFile(folder + u"/.~lock.Report.pdf#"_s, "somebody");
        m_host.reset();
        QCOMPARE(contentOf(edited), QByteArray("xmore"));
        QCOMPARE(contentOf(replaced), QByteArray("y"));
        QVERIFY(!QFileInfo::exists(untouched));
        QCOMPARE(filesIn(folder).size(), 3);
    }

    void aDownloaderThatOutlivesItsHostKeepsItsCopiesUntilItsOwnEnd()
    {
        upload(source("x"), Stored);
        auto downloader = m_host->newDownloader();
        m_host.reset();
        const QString copy = downloader->Download(Stored);
        QCOMPARE(contentOf(copy), QByteArray("x"));
        downloader.reset();
        QCOMPARE(filesIn(temporary()), QStringList());
    }

    void aFolderThatWentWithItsLastCopyIsMadeAnew_data()
    {
        QTest::addColumn<bool>("atOnce");
        QTest::newRow("taken away by whoever had the copy") << false;
        QTest::newRow("swept with all that was in it") << true;
    }
    void aFolderThatWentWithItsLastCopyIsMadeAnew()
    {
        QFETCH(bool, atOnce);
        upload(source("x"), Stored);
        for (int i = 0; i < 3; ++i) {
            const QString copy = download(Stored);
            QCOMPARE(contentOf(copy), QByteArray("x"));
            QDir folder(QFileInfo(copy).path());
            QVERIFY(atOnce ? folder.removeRecursively() : QFile::remove(copy) && QDir().rmdir(folder.path()));
        }
        QCOMPARE(filesIn(temporary()), QStringList());
    }

    void aStoredFileFollowsTheMaskAndIsNeverAProgram()
    {
        const QString from = source("#!/bin/sh");
        QVERIFY(QFile::setPermissions(from, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        const mode_t before = ::umask(027);
        const auto restore = qScopeGuard([before] { ::umask(before); });
        upload(from, Stored);
        QCOMPARE(modeOf(report()), mode_t(0640));
        QCOMPARE(modeOf(storedPath(QStringLiteral("2014"))), mode_t(0750));
    }

    void cancelEndsADownloadWithinOneBufferAndLeavesNothing_data()
    {
        QTest::addColumn<qint64>("at");
        QTest::newRow("at the start") << qint64(0);
        QTest::newRow("in the middle") << qint64(4);
        QTest::newRow("at the last progress") << qint64(12);
    }
    void cancelEndsADownloadWithinOneBufferAndLeavesNothing()
    {
        QFETCH(qint64, at);
        upload(source(QByteArray(12, 'x')), Stored);
        const auto downloader = m_host->newDownloader();
        downloader->SetBufferSize(4);
        qint64 last = 0;
        QStringList ends;
        const auto started = downloader->DownloadStarted.subscribe([&](const QString&) {
            if (at == 0)
                downloader->Cancel();
        });
        const auto progress =
            downloader->DownloadProgress.subscribe([&](const QString&, qint64 bytes, qint64) {
                last = bytes;
                if (bytes == at)
                    downloader->Cancel();
            });
        const auto complete =
            downloader->DownloadComplete.subscribe([&](const QString& path, bool cancelled) {
                ends << path + (cancelled ? QStringLiteral(" cancelled") : QStringLiteral(" done"));
                QCOMPARE(filesIn(temporary()).isEmpty(), cancelled);
            });
        QCOMPARE(downloader->Download(Stored), QString());
        QCOMPARE(last, at);
        QCOMPARE(ends, QStringList(Stored + u" cancelled"_s));
        QCOMPARE(filesIn(temporary()), QStringList());
        // The same object may be used again.
        downloader->Cancel(); // nothing is under way
        at = -1;
        QCOMPARE(contentOf(downloader->Download(Stored)), QByteArray(12, 'x'));
    }

    void whatAHandlerRaisesEndsTheTransferAndPassesOn()
    {
        const QString from = source("content");
        const auto uploader = m_host->newUploader();
        auto progress = uploader->UploadProgress.subscribe(
            [](const QString&, qint64, qint64) { throw Error(QStringLiteral("no more"), 77); });
        QCOMPARE(errorOf([&] { uploader->Upload(from, Stored, {}); }), QStringLiteral("no more"));
        QCOMPARE(errorNumberOf([&] { uploader->Upload(from, Stored, {}); }), 77);
        QCOMPARE(filesIn(storedPath(QStringLiteral("2014/03"))), QStringList());
        progress.cancel();
        uploader->Upload(from, Stored, {});

        const auto downloader = m_host->newDownloader();
        const auto down = downloader->DownloadProgress.subscribe(
            [](const QString&, qint64, qint64) { throw Error(QStringLiteral("no more")); });
        QCOMPARE(errorOf([&] { downloader->Download(Stored); }), QStringLiteral("no more"));
        QCOMPARE(filesIn(temporary()), QStringList());
    }

    void aHandlerOfTheEndThatFailsDoesNotTakeTheStoredFileAway()
    {
        const auto uploader = m_host->newUploader();
        const auto complete = uploader->UploadComplete.subscribe(
            [](const QString&, bool) { throw Error(QStringLiteral("later")); });
        QCOMPARE(errorOf([&] { uploader->Upload(source("content"), Stored, {}); }), QStringLiteral("later"));
        QCOMPARE(contentOf(report()), QByteArray("content"));
    }

    void aHandlerOfTheEndOfADownloadThatFailsLeavesNoCopy()
    {
        upload(source("content"), Stored);
        const auto downloader = m_host->newDownloader();
        const auto complete = downloader->DownloadComplete.subscribe(
            [](const QString&, bool) { throw Error(QStringLiteral("later")); });
        QCOMPARE(errorOf([&] { downloader->Download(Stored); }), QStringLiteral("later"));
        QCOMPARE(filesIn(temporary()), QStringList());
    }

    void aHandlerMayDestroyTheObjectWhoseEventItHandles()
    {
        const QString from = source(QByteArray(3 << 20, 'x'));
        auto uploader = m_host->newUploader();
        auto* pointer = uploader.get();
        const auto progress =
            uploader->UploadProgress.subscribe([&](const QString&, qint64, qint64) { uploader.reset(); });
        QCOMPARE(errorOf([&] { pointer->Upload(from, Stored, {}); }),
                 QStringLiteral("The transfer was given up."));
        QCOMPARE(filesIn(storedPath(QStringLiteral("2014/03"))), QStringList());

        upload(from, Stored);
        auto downloader = m_host->newDownloader();
        auto* down = downloader.get();
        const auto started =
            downloader->DownloadStarted.subscribe([&](const QString&) { downloader.reset(); });
        QCOMPARE(errorOf([&] { down->Download(Stored); }), QStringLiteral("The transfer was given up."));
        QCOMPARE(filesIn(temporary()), QStringList());
    }

    void anObjectDoesOneTransferAtATime()
    {
        const QString from = source("content");
        const auto uploader = m_host->newUploader();
        QString second;
        const auto progress = uploader->UploadProgress.subscribe([&](const QString&, qint64, qint64) {
            second = errorOf([&] { uploader->Upload(from, Stored + u'2', {}); });
        });
        uploader->Upload(from, Stored, {});
        QCOMPARE(second, QStringLiteral("A transfer is under way already."));
        QCOMPARE(contentOf(report()), QByteArray("content"));
    }

    void twoUploadsOfOneNameInOneSecondLeaveTheFirst()
    {
        upload(source("first"), Stored);
        const QString other = source("second", "other/Report.pdf");
        QCOMPARE(errorOf([&] { upload(other, Stored); }),
                 uploadProblem(other, QStringLiteral("a file of that name is there already")));
        QCOMPARE(contentOf(report()), QByteArray("first"));
        QCOMPARE(filesIn(storedPath(QStringLiteral("2014/03"))).size(), 1);
    }

    void anUploadThatIsOvertakenByAnotherLeavesThatOne()
    {
        const QString from = source("slower");
        const auto uploader = m_host->newUploader();
        const auto progress = uploader->UploadProgress.subscribe(
            [&](const QString&, qint64, qint64) { upload(source("quicker", "other/Report.pdf"), Stored); });
        QCOMPARE(errorOf([&] { uploader->Upload(from, Stored, {}); }),
                 uploadProblem(from, QStringLiteral("a file of that name is there already")));
        QCOMPARE(contentOf(report()), QByteArray("quicker"));
        QCOMPARE(filesIn(storedPath(QStringLiteral("2014/03"))).size(), 1);
    }

    void namesAreKeptAsTheyAre_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("only dots") << QStringLiteral("....");
        QTest::newRow("accents and other alphabets")
            << QStringLiteral("Übersicht Åse \u65E5\u672C \U0001F4F7.jpg");
        QTest::newRow("like an option") << QStringLiteral("-rf");
        QTest::newRow("blanks around it") << QStringLiteral("  a  ");
        QTest::newRow("of 240 letters, 255 with the stamp") << QString(240, u'n');
        for (const char c : {'<', '>', ':', '"', '|', '?', '*'})
            QTest::addRow("holding %c", c) << QStringLiteral("a%1b.txt").arg(QLatin1Char(c));
    }
    void namesAreKeptAsTheyAre()
    {
        QFETCH(QString, name);
        const QString stamped = QStringLiteral("20160201130507_") + name;
        const QString from = path("from") + u'/' + name;
        writeFile(from, "content");
        upload(from, QStringLiteral("attachments\\2014\\03\\") + stamped);
        QCOMPARE(filesIn(storedPath(QStringLiteral("2014/03"))), QStringList(stamped));
        QCOMPARE(contentOf(download(QStringLiteral("attachments\\2014\\03\\") + stamped)),
                 QByteArray("content"));
    }

    void aSlashInARowSeparatesAsABackslashDoes()
    {
        upload(source("content"), QStringLiteral("attachments/2014/03\\20160201130507_Report.pdf"));
        QCOMPARE(contentOf(download(Stored)), QByteArray("content"));
    }

    void aNameThatIsTooLongForTheDiskIsTold()
    {
        const QString name(256, u'n');
        const QString from = source("content");
        QCOMPARE(errorOf([&] { upload(from, QStringLiteral("attachments\\") + name); }),
                 uploadProblem(from, QStringLiteral("File name too long")));
        QCOMPARE(stored(), QStringList());
    }

    void pathsThatAreNoFilesOfTheStoreAreRefused_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("reason");
        const auto nowhere = [](const QString& path) {
            return QStringLiteral("the path '%1' lies in no attachments folder").arg(path);
        };
        QTest::newRow("upwards") << QStringLiteral("attachments\\..\\records.db") << OutOfFolder;
        QTest::newRow("upwards with slashes")
            << QStringLiteral("attachments/2014/../../records.db") << OutOfFolder;
        QTest::newRow("here") << QStringLiteral("attachments\\.\\a") << OutOfFolder;
        QTest::newRow("absolute") << QStringLiteral("/etc/passwd") << nowhere(QStringLiteral("/etc/passwd"));
        QTest::newRow("another folder beside the database")
            << QStringLiteral("records.db") << nowhere(QStringLiteral("records.db"));
        QTest::newRow("a folder whose name begins alike")
            << QStringLiteral("attachments2\\a") << nowhere(QStringLiteral("attachments2\\a"));
        QTest::newRow("the folder itself")
            << QStringLiteral("attachments\\") << QStringLiteral("the path 'attachments\\' names no file");
        QTest::newRow("nothing") << QString() << nowhere(QString());
        QTest::newRow("control character") << QStringLiteral("attachments\\a\nb") << BadCharacter;
        QTest::newRow("NUL") << QStringLiteral("attachments\\a") + QChar(u'\0') + u'b' << BadCharacter;
        QTest::newRow("half a character") << QStringLiteral("attachments\\a") + QChar(0xD83D) << BadCharacter;
        QTest::newRow("drive") << QStringLiteral("C:\\Scans\\a.tif")
                               << QStringLiteral("'C:' leads to no folder at this workstation; the setting "
                                                 "\"C:\" under \"_Drives\" can name one");
        QTest::newRow("share") << QStringLiteral("\\\\server\\files\\a.tif")
                               << QStringLiteral(
                                      "'\\\\server\\files' leads to no folder at this workstation; "
                                      "the setting \"\\\\server\\files\" under \"_Drives\" can "
                                      "name one");
    }
    void pathsThatAreNoFilesOfTheStoreAreRefused()
    {
        QFETCH(QString, path);
        QFETCH(QString, reason);
        const QString from = source("content");
        const QByteArray database = contentOf(m_database->path());
        QCOMPARE(errorOf([&] { download(path); }), downloadProblem(path, reason));
        QCOMPARE(errorOf([&] { upload(from, path); }), uploadProblem(from, reason));
        QVERIFY(contentOf(m_database->path()) == database);
        QCOMPARE(filesIn(temporary()), QStringList());
        QCOMPARE(stored(), QStringList());
    }

    void whatIsNoRegularFileIsRefused_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("reason");
        const QString noFile = QStringLiteral("it is not a file");
        QTest::newRow("pipe") << QStringLiteral("pipe") << noFile;
        QTest::newRow("folder") << QStringLiteral("folder") << noFile;
        QTest::newRow("socket") << QStringLiteral("socket") << noFile;
        QTest::newRow("link out") << QStringLiteral("out") << LinkInPath;
        QTest::newRow("link inside") << QStringLiteral("inside") << LinkInPath;
        QTest::newRow("dangling link") << QStringLiteral("dangling") << LinkInPath;
        QTest::newRow("through a linked folder") << QStringLiteral("linked\\secret") << LinkInPath;
        QTest::newRow("missing") << QStringLiteral("missing") << QStringLiteral("No such file or directory");
        QTest::newRow("below a file") << QStringLiteral("file\\a") << QStringLiteral("Not a directory");
    }
    void whatIsNoRegularFileIsRefused()
    {
        QFETCH(QString, name);
        QFETCH(QString, reason);
        writeFile(storedPath(QStringLiteral("file")), "inside");
        writeFile(path("elsewhere/secret"), "secret");
        QVERIFY(QDir().mkpath(storedPath(QStringLiteral("folder"))));
        QCOMPARE(::mkfifo(QFile::encodeName(storedPath(QStringLiteral("pipe"))).constData(), 0666), 0);
        const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
        const auto close = qScopeGuard([socket] { ::close(socket); });
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        qstrncpy(address.sun_path, QFile::encodeName(storedPath(QStringLiteral("socket"))).constData(),
                 sizeof address.sun_path);
        QCOMPARE(::bind(socket, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
        QVERIFY(QFile::link(path("elsewhere/secret"), storedPath(QStringLiteral("out"))));
        QVERIFY(QFile::link(QStringLiteral("file"), storedPath(QStringLiteral("inside"))));
        QVERIFY(QFile::link(path("nowhere"), storedPath(QStringLiteral("dangling"))));
        QVERIFY(QFile::link(path("elsewhere"), storedPath(QStringLiteral("linked"))));

        const QString path = QStringLiteral("attachments\\") + name;
        QCOMPARE(errorOf([&] { download(path); }), downloadProblem(path, reason));
        QCOMPARE(filesIn(temporary()), QStringList());
    }

    void anUploadDoesNotFollowALinkOutOfTheStore()
    {
        QVERIFY(QDir().mkpath(path("elsewhere")));
        QVERIFY(QDir().mkpath(path("attachments")));
        QVERIFY(QFile::link(path("elsewhere"), storedPath(QStringLiteral("2014"))));
        const QString from = source("content");
        QCOMPARE(errorOf([&] { upload(from, Stored); }),
                 uploadProblem(from, QStringLiteral("the folder '%1/2014/03' cannot be opened or made: "
                                                    "Too many levels of symbolic links")
                                         .arg(path("attachments"))));
        QCOMPARE(filesIn(path("elsewhere")), QStringList());
        // A link in the place of the file itself is no free place either.
        QVERIFY(QFile::link(path("nowhere"), storedPath(QStringLiteral("a"))));
        QCOMPARE(errorOf([&] { upload(from, QStringLiteral("attachments\\a")); }),
                 uploadProblem(from, QStringLiteral("a file of that name is there already")));
        QVERIFY(!QFileInfo::exists(path("nowhere")));
    }

    void theBaseFolderMayItselfBeALink()
    {
        QVERIFY(QDir().mkpath(path("real")));
        QVERIFY(QFile::link(path("real"), path("attachments")));
        upload(source("content"), Stored);
        QCOMPARE(contentOf(path("real/2014/03/20160201130507_Report.pdf")), QByteArray("content"));
        QCOMPARE(contentOf(download(Stored)), QByteArray("content"));
    }

    void anAbsoluteBaseFolderIsThePlatformsAndMustBeThere()
    {
        const QString base = path("share");
        setFolder(base);
        const QString stored = base + QStringLiteral("\\2014\\03\\x_Report.pdf");
        const QString from = source("content");
        const QString missing =
            QStringLiteral("the attachments folder '%1' cannot be opened: No such file or directory")
                .arg(base);
        QCOMPARE(errorOf([&] { upload(from, stored); }), uploadProblem(from, missing));
        QCOMPARE(errorOf([&] { download(stored); }), downloadProblem(stored, missing));
        QVERIFY(!QFileInfo::exists(base)); // it may be a share that is not mounted
        QVERIFY(QDir().mkpath(base));
        upload(from, stored);
        QCOMPARE(contentOf(base + QStringLiteral("/2014/03/x_Report.pdf")), QByteArray("content"));
        QCOMPARE(contentOf(download(stored)), QByteArray("content"));
        // The folder of the time before is none any more.
        QVERIFY(errorOf([&] { download(Stored); }).contains(QStringLiteral("lies in no attachments folder")));
    }

    void aRelativeBaseFolderThatLeadsOutIsRefused()
    {
        setFolder(QStringLiteral("..\\elsewhere"));
        const QString from = source("content");
        QCOMPARE(errorOf([&] { upload(from, QStringLiteral("..\\elsewhere\\a")); }),
                 uploadProblem(from, OutOfFolder));
    }

    void aDriveLeadsWhereTheSettingsSay()
    {
        QVERIFY(QDir().mkpath(path("scans")));
        QVERIFY(QDir().mkpath(path("server")));
        writeFile(path("scans/Old/a.tif"), "old scan");
        setSetting(QStringLiteral("_Drives"), QStringLiteral("C:"), path("scans"));
        setSetting(QStringLiteral("_Drives"), QStringLiteral("\\\\server\\files"), path("server"));
        QCOMPARE(contentOf(download(QStringLiteral("c:\\Old\\a.tif"))), QByteArray("old scan"));
        QVERIFY(errorOf([&] { download(QStringLiteral("C:\\..\\records.db")); }).contains(OutOfFolder));
        QVERIFY(errorOf([&] { download(QStringLiteral("C:..\\records.db")); }).contains(OutOfFolder));

        setFolder(QStringLiteral("\\\\server\\files\\Attachments"));
        QVERIFY(QDir().mkpath(path("server/Attachments")));
        const QString stored = QStringLiteral("\\\\server\\files\\Attachments\\2014\\a.pdf");
        upload(source("content"), stored);
        QCOMPARE(contentOf(path("server/Attachments/2014/a.pdf")), QByteArray("content"));
        QCOMPARE(contentOf(download(stored)), QByteArray("content"));
    }

    void aDriveMustLeadToAnAbsolutePath_data()
    {
        QTest::addColumn<QString>("mapped");
        QTest::newRow("beside the program") << QStringLiteral("scans");
        QTest::newRow("the working folder") << QStringLiteral(".");
        QTest::newRow("out of it") << QStringLiteral("../scans");
        QTest::newRow("inside the program") << QStringLiteral(":/scans");
    }
    void aDriveMustLeadToAnAbsolutePath()
    {
        QFETCH(QString, mapped);
        const QString before = QDir::currentPath();
        const auto restore = qScopeGuard([&before] { QDir::setCurrent(before); });
        QVERIFY(QDir::setCurrent(m_folder->path()));
        writeFile(path("scans/a.tif"), "a scan that nobody means");
        setSetting(QStringLiteral("_Drives"), QStringLiteral("C:"), mapped);
        const QString scan = QStringLiteral("C:\\a.tif");
        const QString reason = QStringLiteral("'C:' leads to '%1', which is no absolute path; the setting "
                                              "\"C:\" under \"_Drives\" must name one")
                                   .arg(mapped);
        QCOMPARE(errorOf([&] { download(scan); }), downloadProblem(scan, reason));
        const QString from = source("content");
        QCOMPARE(errorOf([&] { upload(from, scan); }), uploadProblem(from, reason));
    }

    void numberedFoldersHavePathsOfTheirOwn()
    {
        execute("INSERT INTO attachment_folder VALUES (3, 'archive')");
        execute("INSERT INTO attachment_folder VALUES (4, 'attachments/deep')");
        m_host->refreshCaches();
        QCOMPARE(m_host->newAttachmentFolders()->GetFolderPath(3), QStringLiteral("archive"));
        QCOMPARE(errorOf([this] { m_host->newAttachmentFolders()->GetFolderPath(7); }),
                 QStringLiteral("There is no attachments folder with the number 7."));
        QCOMPARE(errorNumberOf([this] { m_host->newAttachmentFolders()->GetFolderPath(Null()); }),
                 Error::InvalidUseOfNullNumber + 0);
        writeFile(path("archive/2009/a.pdf"), "archived");
        QCOMPARE(contentOf(download(QStringLiteral("archive\\2009\\a.pdf"))), QByteArray("archived"));
        // The longest base folder counts.
        QCOMPARE(errorOf([&] { download(QStringLiteral("attachments\\deep")); }),
                 downloadProblem(QStringLiteral("attachments\\deep"),
                                 QStringLiteral("the path 'attachments\\deep' names no file")));
    }

    void thePathOnThePlatformIsTold()
    {
        QCOMPARE(m_host->attachmentStore()->platformPath(Stored), report());
        QCOMPARE(m_host->attachmentStore()->baseFolders(), QStringList(path("attachments")));
    }

    void aNameOfATemporaryFileIsRefusedForAStoredOne()
    {
        const QString from = source("content");
        const QString name = QLatin1String(TemporaryPrefix) + QStringLiteral("x");
        QCOMPARE(errorOf([&] { upload(from, QStringLiteral("attachments\\") + name); }),
                 uploadProblem(from, QStringLiteral("its name is kept for temporary files")));
    }
};

TAVRIN_TEST_MAIN(tst_StoreTransfer)
#include "tst_StoreTransfer.moc"
