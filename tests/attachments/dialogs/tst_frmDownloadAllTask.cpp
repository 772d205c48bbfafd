#include "attachments/FolderNotSet.h"
#include "attachments/dialogs/DownloadStage.h"
#include "attachments/dialogs/frmDownloadAllTask.h"
#include "base/files/FileWriter.h"

#include <QProcess>

#include <csignal>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace tavrin;
using tavrin::test::contentOf;
using tavrin::test::DownloadStage;
using tavrin::test::entriesOf;
using tavrin::test::errorOf;
using tavrin::test::FolderNotSet;
using tavrin::test::putFile;

namespace {

const QString CanceledText = u"Download was canceled."_s;

struct Stage : DownloadStage
{
    explicit Stage(int files = 3, const QString& place = {})
        : DownloadStage(place)
    {
        for (int i = 1; i <= files; ++i)
            add(u"%1.pdf"_s.arg(i), QByteArray(17, static_cast<char>('0' + i)));
        task->SetDownloadPath(target);
        task->SetAttachments(rows);
    }
    ~Stage() { delete task; }
    Error start()
    {
        return errorOf([this] { task->Start(owner); });
    }

    QPointer<frmDownloadAllTask> task = new frmDownloadAllTask;
    Label* lblStatus = part<Label>(task, "lblStatus");
    Label* lblFilePercent = part<Label>(task, "lblFilePercent");
    QProgressBar* bar = part<QProgressBar>(task, "ProgressBar");
    TextLink* link = part<TextLink>(task, "lnkCancel");
};

/// Acts as a window is hidden.
class HideWatch : public QObject
{
public:
    explicit HideWatch(std::function<void()> act)
        : m_act(std::move(act))
    {
    }

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::Hide)
            m_act();
        return false;
    }

private:
    std::function<void()> m_act;
};

/// A folder in memory, which is another file system than that of temporary files; "" where there is none.
QString otherFileSystem()
{
    struct stat here = {};
    struct stat there = {};
    const bool isOther = ::stat(QFile::encodeName(QDir::tempPath()).constData(), &here) == 0 &&
                         ::stat("/dev/shm", &there) == 0 && here.st_dev != there.st_dev &&
                         ::access("/dev/shm", W_OK) == 0;
    return isOther ? u"/dev/shm/tavrin-test-XXXXXX"_s : QString();
}

/// The run of a child process that is killed in the middle of the second of two files.
[[noreturn]] void runUntilKilled(const QString& downloads)
{
    Stage stage(2, downloads);
    stage.host.state().duringTransfer = [&](const QString& path, qint64, qint64) {
        if (path == stage.stored(u"2.pdf"_s))
            ::raise(SIGKILL);
    };
    stage.start();
    ::_exit(1);
}

} // namespace

class tst_frmDownloadAllTask : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void thePartsStandAtTheirPlacesWithTheirCaptions()
    {
        const Stage stage;
        QCOMPARE(stage.task->windowTitle(), u"Downloading attachments..."_s);
        QCOMPARE(stage.lblStatus->pos(), QPoint(20, 32));
        QCOMPARE(stage.lblFilePercent->pos(), QPoint(108, 32));
        QCOMPARE(stage.lblFilePercent->Caption(), u"(0%)"_s);
        QCOMPARE(stage.bar->geometry(), QRect(20, 52, 261, 9));
        QCOMPARE(stage.link->pos(), QPoint(136, 88));
        QCOMPARE(stage.link->Caption(), u"Cancel"_s);
    }

    // Before the start

    void whatIsMissingRefusesTheStartInThisOrder()
    {
        Stage stage(0);
        stage.task->SetDownloadPath(u"  "_s);
        stage.task->SetAttachments(nullptr);
        Error error = stage.start();
        QCOMPARE(error.Number, 5);
        QCOMPARE(error.Description, u"Error starting download task: DownloadPath not set."_s);
        stage.task->SetDownloadPath(stage.target);
        error = stage.start();
        QCOMPARE(error.Number, 5);
        QCOMPARE(error.Description,
                 u"Error starting download task: Call SetAttachments to set attachments."_s);
        stage.task->SetAttachments(stage.rows);
        error = stage.start();
        QCOMPARE(error.Number, 5);
        QCOMPARE(error.Description, u"Error starting download task: No attachments to download."_s);
        QCOMPARE(entriesOf(stage.downloads), QStringList());
    }

    // A run

    void allFilesStandInTheNewFolder()
    {
        Stage stage;
        QStringList whileItRuns;
        stage.duringTransferOf(u"2.pdf"_s, true,
                               [&] { whileItRuns = entriesOf(stage.downloads) + entriesOf(stage.temp); });
        QCOMPARE(stage.start().Number, 0);
        QCOMPARE(whileItRuns, QStringList({u"Incident 7_TEMP"_s, u"1.pdf"_s}));
        QCOMPARE(entriesOf(stage.downloads), QStringList{u"Incident 7"_s});
        QCOMPARE(entriesOf(stage.target), QStringList({u"1.pdf"_s, u"2.pdf"_s, u"3.pdf"_s}));
        QCOMPARE(contentOf(stage.target + u"/3.pdf"_s), QByteArray(17, '3'));
        QCOMPARE(stage.transferLog(),
                 QStringList({u"Download 1.pdf"_s, u"Download 2.pdf"_s, u"Download 3.pdf"_s}));
        QCOMPARE(stage.host.state().log.count(u"new Downloader"_s), 3);
        QCOMPARE(stage.host.state().log.count(u"SetBufferSize 1048576"_s), 3);
        QCOMPARE(stage.lblStatus->Caption(), u"Download complete"_s);
        QVERIFY(!stage.task->Canceled());
        QVERIFY(!stage.task->isVisible());
        QCOMPARE(stage.unhandled.texts, QStringList());
    }

    void theDialogHidesBeforeTheFolderGetsItsName()
    {
        Stage stage;
        QStringList seen;
        HideWatch watch([&] { seen << stage.lblStatus->Caption() << entriesOf(stage.downloads); });
        stage.task->installEventFilter(&watch);
        QCOMPARE(stage.start().Number, 0);
        QCOMPARE(seen, QStringList({u"Download complete"_s, u"Incident 7_TEMP"_s}));
        QCOMPARE(entriesOf(stage.downloads), QStringList{u"Incident 7"_s});
    }

    void theBarCountsTheFileThatIsBeingFetchedAndTheLabelNeverShows100()
    {
        Stage stage;
        QStringList seen;
        stage.host.state().duringTransfer = [&](const QString&, qint64, qint64) {
            const bool isPlaced =
                stage.lblFilePercent->x() == stage.lblStatus->x() + stage.lblStatus->width() + 4 &&
                stage.lblFilePercent->y() == stage.lblStatus->y();
            const QString before = stage.lblFilePercent->Caption();
            QTimer::singleShot(0, qApp, [&seen, &stage, isPlaced, before] {
                seen << u"%1|%2|%3|%4|%5"_s.arg(
                    stage.lblStatus->Caption(), before, stage.lblFilePercent->Caption(),
                    QString::number(stage.bar->value()), QString::number(int(isPlaced)));
            });
        };
        QCOMPARE(stage.start().Number, 0);
        QCOMPARE(
            seen,
            QStringList(
                {u"Downloading file 1 of 3||(47%)|33|1"_s, u"Downloading file 1 of 3|(47%)|(47%)|33|1"_s,
                 u"Downloading file 2 of 3||(47%)|66|1"_s, u"Downloading file 2 of 3|(47%)|(47%)|66|1"_s,
                 u"Downloading file 3 of 3||(47%)|100|1"_s, u"Downloading file 3 of 3|(47%)|(47%)|100|1"_s}));
    }

    void twoFilesOfOneNameStandBesideEachOther()
    {
        Stage stage(0);
        stage.add(u"x1"_s, "first", u"a.pdf"_s);
        stage.add(u"x2"_s, "second", u"a.pdf"_s);
        QCOMPARE(stage.start().Number, 0);
        QCOMPARE(entriesOf(stage.target), QStringList({u"a (1).pdf"_s, u"a.pdf"_s}));
        QCOMPARE(contentOf(stage.target + u"/a.pdf"_s), QByteArray("first"));
        QCOMPARE(contentOf(stage.target + u"/a (1).pdf"_s), QByteArray("second"));
    }

    void noFolderOfACopyStaysBehind_data()
    {
        QTest::addColumn<bool>("isMoved");
        QTest::newRow("a copy that is moved") << true;
        QTest::newRow("a copy that cannot be moved") << false;
    }
    void noFolderOfACopyStaysBehind()
    {
        QFETCH(bool, isMoved);
        Stage stage(1);
        if (!isMoved)
            stage.duringTransferOf(u"1.pdf"_s, true, [&] { QDir(stage.temp).removeRecursively(); });
        QCOMPARE(stage.start().Number == 0, isMoved);
        QCOMPARE(entriesOf(stage.host.state().copies->path()), QStringList());
    }

    void aRowThatIsRemovedMeanwhileIsStillFetched()
    {
        Stage stage;
        stage.duringTransferOf(u"1.pdf"_s, false, [&] {
            stage.rows->SetPosition(3);
            stage.rows->RemoveCurrent(false);
        });
        QCOMPARE(stage.start().Number, 0);
        QCOMPARE(entriesOf(stage.target).size(), 3);
    }

    void theFolderMayLieOnAnotherDiskThanTemporaryFiles()
    {
        if (otherFileSystem().isEmpty())
            QSKIP("there is no second file system");
        const QTemporaryDir there(otherFileSystem());
        Stage stage(2, there.path());
        QCOMPARE(stage.start().Number, 0);
        QCOMPARE(entriesOf(there.path()), QStringList{u"Incident 7"_s});
        QCOMPARE(entriesOf(stage.target), QStringList({u"1.pdf"_s, u"2.pdf"_s}));
        QCOMPARE(contentOf(stage.target + u"/2.pdf"_s), QByteArray(17, '2'));
    }

    void aDownloadedCopyIsNeverExecutable()
    {
        Stage stage(1);
        QFile::setPermissions(stage.store + u"/1.pdf"_s,
                              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::ExeOther);
        QCOMPARE(stage.start().Number, 0);
        struct stat state = {};
        QCOMPARE(::stat(QFile::encodeName(stage.target + u"/1.pdf"_s).constData(), &state), 0);
        QCOMPARE(state.st_mode & 07111, mode_t(0));
    }

    void hostileNamesStayInTheFolder_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("onDisk");
        QTest::newRow("folder above") << u".."_s << u"__"_s;
        QTest::newRow("the folder itself") << u"."_s << u"_"_s;
        QTest::newRow("way out") << u"../../out.txt"_s << u"out.txt"_s;
        QTest::newRow("way out the other way") << u"..\\..\\out.txt"_s << u"out.txt"_s;
        QTest::newRow("a drive alone") << u"C:"_s << u"_"_s;
        QTest::newRow("absolute") << u"/etc/passwd"_s << u"passwd"_s;
        QTest::newRow("control characters") << u"a\nb\x1B.txt"_s << u"a_b_.txt"_s;
        QTest::newRow("NUL") << u"a"_s + QChar(u'\0') + u"b.txt"_s << u"a_b.txt"_s;
        QTest::newRow("one blank") << u" "_s << u" "_s;
        QTest::newRow("trailing blank") << u"a.txt "_s << u"a.txt "_s;
        QTest::newRow("an option") << u"-rf"_s << u"-rf"_s;
        QTest::newRow("a device elsewhere") << u"CON"_s << u"CON"_s;
        QTest::newRow("255 bytes") << QString(251, u'x') + u".txt"_s << QString(251, u'x') + u".txt"_s;
        QTest::newRow("300 bytes") << QString(300, u'x') + u".txt"_s << QString(251, u'x') + u".txt"_s;
    }
    void hostileNamesStayInTheFolder()
    {
        QFETCH(QString, name);
        QFETCH(QString, onDisk);
        Stage stage(0);
        stage.add(u"x"_s, "content", name);
        QCOMPARE(stage.start().Description, QString());
        QCOMPARE(entriesOf(stage.downloads), QStringList{u"Incident 7"_s});
        QCOMPARE(entriesOf(stage.target), QStringList{onDisk});
        QCOMPARE(contentOf(stage.target + u'/' + onDisk), QByteArray("content"));
        QCOMPARE(entriesOf(stage.folder.path()), QStringList({u"Downloads"_s, u"store"_s}));
    }

    void twoLongNamesLeaveRoomForTheNumber()
    {
        Stage stage(0);
        const QString name = QString(251, u'x') + u".txt"_s;
        stage.add(u"x1"_s, "first", name);
        stage.add(u"x2"_s, "second", name);
        stage.add(u"x3"_s, "third", name);
        QCOMPARE(stage.start().Description, QString());
        const QString cut = QString(235, u'x');
        QCOMPARE(entriesOf(stage.target), QStringList({cut + u" (1).txt"_s, cut + u".txt"_s, name}));
        QCOMPARE(contentOf(stage.target + u'/' + name), QByteArray("first"));
    }

    // Failures

    void oneFileThatFailsEndsTheRunAndLeavesNothing()
    {
        Stage stage;
        stage.host.state().transferFailures.insert(stage.stored(u"2.pdf"_s), u"The store is gone."_s);
        const Error error = stage.start();
        QCOMPARE(error.Number, 5);
        QCOMPARE(error.Description, u"Error downloading file 2.pdf: The store is gone."_s);
        QCOMPARE(stage.transferLog(), QStringList({u"Download 1.pdf"_s, u"Download 2.pdf"_s}));
        QCOMPARE(entriesOf(stage.downloads), QStringList());
        QVERIFY(!stage.task->Canceled());
        QVERIFY(!stage.task->isVisible());
        QCOMPARE(stage.unhandled.texts, QStringList());
    }

    void aRowWhoseFolderIsNotSetFailsWithTheWordsOfTheSetting()
    {
        Stage stage(1);
        stage.host.state().settings.clear();
        QCOMPARE(stage.start().Description, u"Error downloading file 1.pdf: "_s + FolderNotSet);
        QCOMPARE(entriesOf(stage.downloads), QStringList());
    }

    void aFinalFolderThatIsThereAlreadyIsLeftAlone()
    {
        Stage stage;
        QDir().mkpath(stage.target);
        putFile(stage.target + u"/mine"_s, "mine");
        const Error error = stage.start();
        QCOMPARE(error.Number, 5);
        QCOMPARE(error.Description,
                 u"%1 could not be moved to %2: File exists"_s.arg(stage.temp, stage.target));
        QCOMPARE(entriesOf(stage.downloads), QStringList{u"Incident 7"_s});
        QCOMPARE(entriesOf(stage.target), QStringList{u"mine"_s});
    }

    void aFolderThatCannotBeMadeSaysWhy_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("reason");
        QTest::newRow("no folder above") << u"missing/Incident 7"_s << u"No such file or directory"_s;
        // 84 characters of three bytes, and "_TEMP"
        QTest::newRow("too long for the disk") << QString(84, QChar(0x20AC)) << u"File name too long"_s;
    }
    void aFolderThatCannotBeMadeSaysWhy()
    {
        QFETCH(QString, name);
        QFETCH(QString, reason);
        Stage stage;
        stage.task->SetDownloadPath(stage.downloads + u'/' + name);
        QCOMPARE(stage.start().Description,
                 u"The folder %1/%2_TEMP could not be created: %3"_s.arg(stage.downloads, name, reason));
        QCOMPARE(entriesOf(stage.downloads), QStringList());
        QCOMPARE(stage.transferLog(), QStringList());
    }

    void aFolderThatVanishesMeanwhileFailsTheFile()
    {
        Stage stage;
        stage.duringTransferOf(u"2.pdf"_s, false, [&] { QDir(stage.temp).removeRecursively(); });
        const QString text = stage.start().Description;
        QVERIFY2(text.startsWith(u"Error downloading file 2.pdf: "_s) &&
                     text.endsWith(u"No such file or directory"_s),
                 qPrintable(text));
        QCOMPARE(entriesOf(stage.downloads), QStringList());
    }

    // The folder beside the final one

    void aLeftoverFolderIsUsedAgainAndItsFilesComeAlong()
    {
        Stage stage(1);
        QDir().mkpath(stage.temp + u"/deep"_s);
        putFile(stage.temp + u"/1.pdf"_s, "left");
        putFile(stage.temp + u'/' + QLatin1String(TemporaryPrefix) + u"abc"_s, "half written");
        QCOMPARE(stage.start().Number, 0);
        QCOMPARE(entriesOf(stage.downloads), QStringList{u"Incident 7"_s});
        QCOMPARE(entriesOf(stage.target), QStringList({u"1 (1).pdf"_s, u"1.pdf"_s, u"deep"_s}));
        QCOMPARE(contentOf(stage.target + u"/1.pdf"_s), QByteArray("left"));
        QCOMPARE(contentOf(stage.target + u"/1 (1).pdf"_s), QByteArray(17, '1'));
    }

    void afterAFailureTheFolderGoesWithAllThatWasKeptInItAsItIsMeantButNotWhatLinksLeadTo()
    {
        Stage stage(1);
        const QString outside = stage.folder.filePath(u"store"_s);
        QDir().mkpath(stage.temp + u"/deep"_s);
        putFile(stage.temp + u"/deep/left"_s, "left");
        QFile::setPermissions(stage.temp + u"/deep/left"_s, QFile::ReadOwner);
        QFile::setPermissions(stage.temp + u"/deep"_s, QFile::ReadOwner | QFile::ExeOwner);
        QVERIFY(QFile::link(outside, stage.temp + u"/link"_s));
        stage.host.state().transferFailures.insert(stage.stored(u"1.pdf"_s), u"No."_s);
        QCOMPARE(stage.start().Description, u"Error downloading file 1.pdf: No."_s);
        QCOMPARE(entriesOf(stage.downloads), QStringList());
        QCOMPARE(entriesOf(outside), QStringList{u"1.pdf"_s});
    }

    void whatIsNoFolderIsNeitherUsedNorRemoved_data()
    {
        QTest::addColumn<bool>("isLink");
        QTest::newRow("file") << false;
        QTest::newRow("link to a folder") << true;
    }
    void whatIsNoFolderIsNeitherUsedNorRemoved()
    {
        QFETCH(bool, isLink);
        Stage stage(1);
        const QString outside = stage.folder.filePath(u"outside"_s);
        QDir().mkpath(outside);
        if (isLink)
            QVERIFY(QFile::link(outside, stage.temp));
        else
            putFile(stage.temp, "mine");
        QCOMPARE(stage.start().Description,
                 u"The folder %1 could not be created: File exists"_s.arg(stage.temp));
        QCOMPARE(entriesOf(stage.downloads), QStringList{u"Incident 7_TEMP"_s});
        QCOMPARE(entriesOf(outside), QStringList());
    }

    void aRunThatIsKilledLeavesNothingUnderTheFinalNameAndTheNextOneUsesItsFolder()
    {
        Stage stage(2);
        const QTemporaryDir childsFiles; // which it cannot remove itself
        QProcess child;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"TMPDIR"_s, childsFiles.path());
        child.setProcessEnvironment(environment);
        child.start(QCoreApplication::applicationFilePath(),
                    {test::TestUnit::running(), u"--run-until-killed"_s, stage.downloads});
        QVERIFY(child.waitForFinished());
        QCOMPARE(child.exitStatus(), QProcess::CrashExit);
        QCOMPARE(child.exitCode(), SIGKILL);
        QCOMPARE(entriesOf(stage.downloads), QStringList{u"Incident 7_TEMP"_s});
        QCOMPARE(entriesOf(stage.temp), QStringList{u"1.pdf"_s});

        QCOMPARE(stage.start().Number, 0);
        QCOMPARE(entriesOf(stage.downloads), QStringList{u"Incident 7"_s});
        // What the killed run had fetched stays, since nobody knows whether a person has put it there.
        QCOMPARE(entriesOf(stage.target), QStringList({u"1 (1).pdf"_s, u"1.pdf"_s, u"2.pdf"_s}));
    }

    // Cancel

    void whateverClosesTheDialogCancels_data()
    {
        QTest::addColumn<QString>("way");
        for (const QString& way : tavrin::test::waysToCancel().keys())
            QTest::newRow(qPrintable(way)) << way;
    }
    void whateverClosesTheDialogCancels()
    {
        QFETCH(QString, way);
        Stage stage;
        bool stayed = false;
        QString caption;
        qsizetype cancelsAtOnce = -1;
        stage.duringTransferOf(u"2.pdf"_s, false, [&] {
            const auto cancel = tavrin::test::waysToCancel().value(way);
            cancel(stage.task);
            stayed = stage.task->isVisible();
            caption = stage.link->Caption();
            cancelsAtOnce = stage.transferLog().count(u"Cancel"_s);
            cancel(stage.task); // a second time does nothing more
        });
        const Error error = stage.start();
        QCOMPARE(error.Number, 5);
        QCOMPARE(error.Description, CanceledText);
        QVERIFY(stayed);
        QCOMPARE(caption, u"Canceling..."_s);
        QCOMPARE(cancelsAtOnce, 0); // the downloader hears of it at its next event
        QCOMPARE(stage.transferLog(), QStringList({u"Download 1.pdf"_s, u"Download 2.pdf"_s, u"Cancel"_s}));
        QVERIFY(stage.task->Canceled());
        QVERIFY(!stage.task->isVisible());
        QCOMPARE(entriesOf(stage.downloads), QStringList());
        QCOMPARE(stage.unhandled.texts, QStringList());
    }

    void aCancelBetweenTwoFilesCancelsTheNextAsItStarts()
    {
        Stage stage;
        // Behind the last event of the first file; the next event is the start of the second.
        stage.duringTransferOf(u"1.pdf"_s, true, [&] { stage.task->close(); });
        QCOMPARE(stage.start().Description, CanceledText);
        QCOMPARE(stage.transferLog(), QStringList({u"Download 1.pdf"_s, u"Download 2.pdf"_s, u"Cancel"_s}));
        QVERIFY(stage.task->Canceled());
        QCOMPARE(entriesOf(stage.downloads), QStringList());
    }

    void aCancelDuringTheLastFileLeavesNoFolder_data()
    {
        QTest::addColumn<bool>("behindItsLastEvent");
        QTest::newRow("in its middle") << false;
        QTest::newRow("behind its last event") << true;
    }
    void aCancelDuringTheLastFileLeavesNoFolder()
    {
        QFETCH(bool, behindItsLastEvent);
        Stage stage;
        stage.duringTransferOf(u"3.pdf"_s, behindItsLastEvent, [&] { stage.task->close(); });
        QCOMPARE(stage.start().Description, CanceledText);
        QVERIFY(stage.task->Canceled());
        QVERIFY(!stage.task->isVisible());
        QCOMPARE(entriesOf(stage.downloads), QStringList());
    }

    void aCancelledEndIsNotForgottenAtTheNextEvent()
    {
        struct Twofold final : Downloader
        {
            void SetBufferSize(qint32) override {}
            QString Download(const QString& path) override
            {
                DownloadComplete.raise(path, true);
                DownloadComplete.raise(path, false);
                return {};
            }
            void Cancel() override {}
        };
        Stage stage;
        stage.host.state().makeDownloader = [] { return std::make_unique<Twofold>(); };
        QCOMPARE(stage.start().Description, CanceledText);
        QVERIFY(stage.task->Canceled());
    }

    // Life

    void aLaterActivationStartsNothing()
    {
        Stage stage;
        stage.duringTransferOf(u"1.pdf"_s, false, [&] {
            QEvent again(QEvent::WindowActivate);
            QApplication::sendEvent(stage.task, &again);
        });
        QCOMPARE(stage.start().Number, 0);
        QCOMPARE(stage.transferLog().size(), 3);
        QCOMPARE(stage.start().Description,
                 u"Error starting download task: The download was started before."_s);
        QCOMPARE(stage.transferLog().size(), 3);
    }

    void theWindowBelowMayDieInTheMiddleOfTheRun_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<bool>("last");
        QTest::newRow("first file") << u"1.pdf"_s << false;
        QTest::newRow("between two files") << u"1.pdf"_s << true;
        QTest::newRow("behind the last file") << u"3.pdf"_s << true;
    }
    void theWindowBelowMayDieInTheMiddleOfTheRun()
    {
        QFETCH(QString, file);
        QFETCH(bool, last);
        Stage stage;
        stage.duringTransferOf(file, last, [&] { delete stage.owner; });
        QCOMPARE(stage.start().Number, 0);
        QVERIFY(!stage.task);
        QCOMPARE(entriesOf(stage.downloads), QStringList());
        QCOMPARE(stage.unhandled.texts, QStringList());
    }
};

static int runOrBeStarted(int argc, char** argv)
{
    if (argc == 3 && qstrcmp(argv[1], "--run-until-killed") == 0) {
        const QApplication application(argc, argv);
        runUntilKilled(QString::fromLocal8Bit(argv[2]));
    }
    tst_frmDownloadAllTask testCase;
    return tavrin::test::run(testCase, argc, argv);
}
TAVRIN_TEST_UNIT(tst_frmDownloadAllTask, runOrBeStarted)
#include "tst_frmDownloadAllTask.moc"
