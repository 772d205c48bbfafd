#include "attachments/dialogs/DownloadAllStage.h"
#include "base/files/FileWriter.h"
#include "support/OtherFileSystem.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <csignal>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

/// The run of a child process that is killed in the middle of the second of two files.
[[noreturn]] void runUntilKilled(const QString& downloads)
{
    DownloadAllStage stage(2, downloads);
    stage.host.state().duringTransfer = [&](const QString& path, qint64, qint64) {
        if (path == stage.stored(u"2.pdf"_s))
            ::raise(SIGKILL);
    };
    stage.start();
    ::_exit(1);
}

} // namespace

/// The folder that gets all files of a record, and the one beside it that holds them until they are all
/// there.
class tst_frmDownloadAllTaskFolder : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // The final folder

    void theFolderMayLieOnAnotherDiskThanTemporaryFiles()
    {
        if (otherFileSystem().isEmpty())
            QSKIP("there is no second file system");
        const QTemporaryDir there(otherFileSystem());
        DownloadAllStage stage(2, there.path());
        QCOMPARE(stage.start().Number, 0);
        QCOMPARE(entriesOf(there.path()), QStringList{u"Incident 7"_s});
        QCOMPARE(entriesOf(stage.target), QStringList({u"1.pdf"_s, u"2.pdf"_s}));
        QCOMPARE(contentOf(stage.target + u"/2.pdf"_s), QByteArray(17, '2'));
    }

    void aFinalFolderThatIsThereAlreadyIsLeftAlone()
    {
        DownloadAllStage stage;
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
        DownloadAllStage stage;
        stage.task->SetDownloadPath(stage.downloads + u'/' + name);
        QCOMPARE(stage.start().Description,
                 u"The folder %1/%2_TEMP could not be created: %3"_s.arg(stage.downloads, name, reason));
        QCOMPARE(entriesOf(stage.downloads), QStringList());
        QCOMPARE(stage.transferLog(), QStringList());
    }

    // The one beside it

    void aFolderThatVanishesMeanwhileFailsTheFile()
    {
        DownloadAllStage stage;
        stage.duringTransferOf(u"2.pdf"_s, false, [&] { QDir(stage.temp).removeRecursively(); });
        const QString text = stage.start().Description;
        QVERIFY2(text.startsWith(u"Error downloading file 2.pdf: "_s) &&
                     text.endsWith(u"No such file or directory"_s),
                 qPrintable(text));
        QCOMPARE(entriesOf(stage.downloads), QStringList());
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
        DownloadAllStage stage(1);
        if (!isMoved)
            stage.duringTransferOf(u"1.pdf"_s, true, [&] { QDir(stage.temp).removeRecursively(); });
        QCOMPARE(stage.start().Number == 0, isMoved);
        QCOMPARE(entriesOf(stage.host.state().copies->path()), QStringList());
    }

    void aLeftoverFolderIsUsedAgainAndItsFilesComeAlong()
    {
        DownloadAllStage stage(1);
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
        DownloadAllStage stage(1);
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
        DownloadAllStage stage(1);
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
        DownloadAllStage stage(2);
        const QTemporaryDir childsFiles; // which it cannot remove itself
        QProcess child;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"TMPDIR"_s, childsFiles.path());
        child.setProcessEnvironment(environment);
        child.start(QCoreApplication::applicationFilePath(),
                    {TestUnit::running(), u"--run-until-killed"_s, stage.downloads});
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
};

static int runOrBeStarted(int argc, char** argv)
{
    if (argc == 3 && qstrcmp(argv[1], "--run-until-killed") == 0) {
        const QApplication application(argc, argv);
        runUntilKilled(QString::fromLocal8Bit(argv[2]));
    }
    tst_frmDownloadAllTaskFolder testCase;
    return tavrin::test::run(testCase, argc, argv);
}
TAVRIN_TEST_UNIT(tst_frmDownloadAllTaskFolder, runOrBeStarted)
#include "tst_frmDownloadAllTaskFolder.moc"
