#include "host/store/StoreTestSupport.h"

#include <QScopeGuard>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

const QString OutOfFolder = QStringLiteral("the path leads out of the attachments folder");
const QString LinkInPath = QStringLiteral("a symbolic link stands in its path");
const QString BadCharacter =
    QStringLiteral("its name holds a character that no file in the attachments folder may have");

} // namespace

/// Where the file of a row lies, and which paths lead to none.
class tst_AttachmentStore : public StoreCase
{
    Q_OBJECT

private Q_SLOTS:
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
        QCOMPARE(filesIn(month()), QStringList(stamped));
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

    void thePathOnThePlatformIsTold() { QCOMPARE(m_host->attachmentFile(Stored), report()); }

    void aNameOfATemporaryFileIsRefusedForAStoredOne()
    {
        const QString from = source("content");
        const QString name = QLatin1String(TemporaryPrefix) + QStringLiteral("x");
        QCOMPARE(errorOf([&] { upload(from, QStringLiteral("attachments\\") + name); }),
                 uploadProblem(from, QStringLiteral("its name is kept for temporary files")));
    }
};

TAVRIN_TEST_MAIN(tst_AttachmentStore)
#include "tst_AttachmentStore.moc"
