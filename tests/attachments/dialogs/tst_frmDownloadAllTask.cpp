#include "attachments/FolderNotSet.h"
#include "attachments/dialogs/DownloadAllStage.h"
#include "attachments/dialogs/EventWatch.h"

#include <QApplication>
#include <QTimer>

#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

/// Downloading all files of a record: the run, and the files that it makes.
class tst_frmDownloadAllTask : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void thePartsStandAtTheirPlacesWithTheirCaptions()
    {
        const DownloadAllStage stage;
        QCOMPARE(stage.task->windowTitle(), u"Downloading attachments..."_s);
        QCOMPARE(stage.lblStatus->pos(), QPoint(20, 32));
        QCOMPARE(stage.lblFilePercent->pos(), QPoint(108, 32));
        QCOMPARE(stage.lblFilePercent->Caption(), u"(0%)"_s);
        QCOMPARE(stage.bar->geometry(), QRect(20, 52, 261, 9));
        QCOMPARE(stage.link->pos(), QPoint(136, 88));
        QCOMPARE(stage.link->Caption(), u"Cancel"_s);
    }

    void whatIsMissingRefusesTheStartInThisOrder()
    {
        DownloadAllStage stage(0);
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
        DownloadAllStage stage;
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
        DownloadAllStage stage;
        QStringList seen;
        const EventWatch watch(*stage.task, QEvent::Hide,
                               [&] { seen << stage.lblStatus->Caption() << entriesOf(stage.downloads); });
        QCOMPARE(stage.start().Number, 0);
        QCOMPARE(seen, QStringList({u"Download complete"_s, u"Incident 7_TEMP"_s}));
        QCOMPARE(entriesOf(stage.downloads), QStringList{u"Incident 7"_s});
    }

    void theBarCountsTheFileThatIsBeingFetchedAndTheLabelNeverShows100()
    {
        DownloadAllStage stage;
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

    void oneFileThatFailsEndsTheRunAndLeavesNothing()
    {
        DownloadAllStage stage;
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
        DownloadAllStage stage(1);
        stage.host.state().settings.clear();
        QCOMPARE(stage.start().Description, u"Error downloading file 1.pdf: "_s + FolderNotSet);
        QCOMPARE(entriesOf(stage.downloads), QStringList());
    }

    void aLaterActivationStartsNothing()
    {
        DownloadAllStage stage;
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

    void aRowThatIsRemovedMeanwhileIsStillFetched()
    {
        DownloadAllStage stage;
        stage.duringTransferOf(u"1.pdf"_s, false, [&] {
            stage.rows->SetPosition(3);
            stage.rows->RemoveCurrent(false);
        });
        QCOMPARE(stage.start().Number, 0);
        QCOMPARE(entriesOf(stage.target).size(), 3);
    }

    // The files

    void twoFilesOfOneNameStandBesideEachOther()
    {
        DownloadAllStage stage(0);
        stage.add(u"x1"_s, "first", u"a.pdf"_s);
        stage.add(u"x2"_s, "second", u"a.pdf"_s);
        QCOMPARE(stage.start().Number, 0);
        QCOMPARE(entriesOf(stage.target), QStringList({u"a (1).pdf"_s, u"a.pdf"_s}));
        QCOMPARE(contentOf(stage.target + u"/a.pdf"_s), QByteArray("first"));
        QCOMPARE(contentOf(stage.target + u"/a (1).pdf"_s), QByteArray("second"));
    }

    void twoLongNamesLeaveRoomForTheNumber()
    {
        DownloadAllStage stage(0);
        const QString name = QString(251, u'x') + u".txt"_s;
        stage.add(u"x1"_s, "first", name);
        stage.add(u"x2"_s, "second", name);
        stage.add(u"x3"_s, "third", name);
        QCOMPARE(stage.start().Description, QString());
        const QString cut = QString(235, u'x');
        QCOMPARE(entriesOf(stage.target), QStringList({cut + u" (1).txt"_s, cut + u".txt"_s, name}));
        QCOMPARE(contentOf(stage.target + u'/' + name), QByteArray("first"));
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
        DownloadAllStage stage(0);
        stage.add(u"x"_s, "content", name);
        QCOMPARE(stage.start().Description, QString());
        QCOMPARE(entriesOf(stage.downloads), QStringList{u"Incident 7"_s});
        QCOMPARE(entriesOf(stage.target), QStringList{onDisk});
        QCOMPARE(contentOf(stage.target + u'/' + onDisk), QByteArray("content"));
        QCOMPARE(entriesOf(stage.folder.path()), QStringList({u"Downloads"_s, u"store"_s}));
    }

    void aDownloadedCopyIsNeverExecutable()
    {
        DownloadAllStage stage(1);
        QFile::setPermissions(stage.store + u"/1.pdf"_s,
                              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::ExeOther);
        QCOMPARE(stage.start().Number, 0);
        struct stat state = {};
        QCOMPARE(::stat(QFile::encodeName(stage.target + u"/1.pdf"_s).constData(), &state), 0);
        QCOMPARE(state.st_mode & 07111, mode_t(0));
    }
};

TAVRIN_TEST_MAIN(tst_frmDownloadAllTask)
#include "tst_frmDownloadAllTask.moc"
