#include "host/store/StoreTestSupport.h"
#include "support/TracedProgram.h"

#include <QElapsedTimer>
#include <QThread>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

/// Uploads as a program of its own does, so that its calls of the system can be made to fail.
int uploadAsOwnProgram(const QString& folder)
{
    const auto database = Database::open(folder + u"/records.db"_s);
    ReferenceHost host(*database, ReferenceHostOptions{u"admin"_s, folder + u"/station"_s, folder});
    host.waitForSweep();
    const QString text = errorOf([&] { host.newUploader()->Upload(folder + u"/Report.pdf"_s, Stored, {}); });
    const QString stored = folder + u"/attachments/2014/03"_s;
    const QStringList left = filesIn(stored);
    if (text.isEmpty())
        return left.size() == 1 &&
                       contentOf(stored + u'/' + left.constFirst()) == contentOf(folder + u"/Report.pdf"_s)
                   ? Passed
                   : LeftSomething;
    const bool isClear = text.startsWith(u"The file '"_s) && text.endsWith(u'.') &&
                         text.contains(u"could not be copied to the attachments folder: "_s);
    if (!isClear)
        return OtherText;
    return left.isEmpty() ? Raised : LeftSomething;
}

/// Signs on, and off again while the sweep hangs in the attachments folder.
int signOnAsOwnProgram(const QString& folder)
{
    const auto database = Database::open(folder + u"/records.db"_s);
    auto host = std::make_unique<ReferenceHost>(
        *database, ReferenceHostOptions{u"admin"_s, folder + u"/station"_s, folder});
    QElapsedTimer clock;
    clock.start();
    const auto isAtWork = [&] {
        const QDir open(u"/proc/self/fd"_s);
        const QStringList numbers = open.entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
        return std::count_if(numbers.begin(), numbers.end(), [&](const QString& number) {
                   return QFile::symLinkTarget(open.filePath(number)) == folder + u"/attachments"_s;
               }) == 2; // the folder, and its listing
    };
    while (!isAtWork()) {
        if (clock.elapsed() > 30'000)
            return NotPossible;
        QThread::yieldCurrentThread();
    }
    clock.start();
    host.reset();
    return clock.elapsed() < 8'000 ? Passed : Raised;
}

} // namespace

/// Programs of their own, whose calls of the system strace lets fail or hang.
class tst_SystemCallFaults : public StoreCase
{
    Q_OBJECT

private:
    /// Runs the upload as a program whose calls fail as `faults` tell; returns its answer.
    int uploadWith(const QStringList& faults) const
    {
        return runTraced(injected(faults), {u"--upload-in"_s, m_folder->path()});
    }

private Q_SLOTS:
    void eachCallOfTheSystemMayFail_data()
    {
        QTest::addColumn<QString>("fault");
        QTest::addColumn<int>("least"); // times that it must have stopped the upload
        QTest::newRow("write, disk full") << u"write:error=ENOSPC"_s << 1;
        QTest::newRow("write, broken disk") << u"write:error=EIO"_s << 1;
        QTest::newRow("write, interrupted") << u"write:error=EINTR"_s << 0;
        QTest::newRow("fsync, broken disk") << u"fsync:error=EIO"_s << 2;
        QTest::newRow("fsync beside the reading of a long file") << u"fsync:error=EIO"_s << 1;
        QTest::newRow("fsync of a new folder, disk full") << u"fsync:error=ENOSPC"_s << 4;
        QTest::newRow("fsync, interrupted") << u"fsync:error=EINTR"_s << 0;
        QTest::newRow("rename, broken disk") << u"renameat2:error=EIO"_s << 1;
        QTest::newRow("rename, not offered") << u"renameat2:error=EINVAL"_s << 0;
        QTest::newRow("folder, no right") << u"mkdirat:error=EACCES"_s << 1;
        QTest::newRow("lock, not offered") << u"flock:error=ENOLCK"_s << 0;
        QTest::newRow("hint, not offered") << u"sync_file_range:error=ESPIPE"_s << 0;
        QTest::newRow("one call for a path, not offered") << u"openat2:error=ENOSYS"_s << 0;
    }
    void eachCallOfTheSystemMayFail()
    {
        QFETCH(QString, fault);
        QFETCH(int, least);
        if (!traceWorks())
            QSKIP("strace cannot be used here");
        const QByteArray row(QTest::currentDataTag());
#ifdef __SANITIZE_ADDRESS__
        if (fault.startsWith(u"write"))
            QSKIP("the sanitizers write to probe the memory, and end the program when that fails");
#endif
        source(QByteArray(row == "fsync, broken disk" ? 100000 : (9 << 20) + 5, 'x'));
        if (!row.contains("folder")) // else each of its folders is a new one
            QVERIFY(QDir().mkpath(month()));
        int raised = 0;
        int answer = Raised;
        for (int call = 1; answer != Passed && call < 100; ++call) {
            if (row.contains("folder"))
                QVERIFY(QDir(path("attachments")).removeRecursively());
            answer = uploadWith({fault + u":when=%1"_s.arg(call)});
            if (row == "fsync of a new folder, disk full" && answer == Raised) {
                // A folder that is not known to be on the disk is no folder for the next upload.
                const QStringList left{u"2014"_s, u"2014/03"_s};
                QCOMPARE(stored(), left.first(std::min<qsizetype>(call - 1, 2)));
            }
            QVERIFY2(answer == Passed || answer == Raised, qPrintable(u"answer %1"_s.arg(answer)));
            raised += answer == Raised ? 1 : 0;
        }
        QCOMPARE(answer, Passed);
        QVERIFY2(raised >= least && (least > 0 || raised == 0), qPrintable(QString::number(raised)));
    }

    void whereNeitherRenamingNorASecondNameIsOfferedTheUploadIsRefused()
    {
        if (!traceWorks())
            QSKIP("strace cannot be used here");
        const QString from = source("content");
        QCOMPARE(uploadWith({u"renameat2:error=EINVAL"_s, u"linkat:error=EPERM"_s}), Raised);
        nothingIsLeftAndTheNextUploadWorks(from);
    }

    void anUploadKilledRightBeforeItsFileGetsItsNameLeavesNone()
    {
        if (!traceWorks())
            QSKIP("strace cannot be used here");
        const QString from = source(QByteArray(100000, 'x'));
        QVERIFY(uploadWith({u"renameat2:error=EIO:signal=SIGKILL"_s}) >= 128);
        onlyAPartIsLeft();
        startAgain();
        nothingIsLeftAndTheNextUploadWorks(from);
    }

    void theEndOfTheProgramDoesNotWaitForAShareThatHangs()
    {
        if (!traceWorks())
            QSKIP("strace cannot be used here");
        QVERIFY(QDir().mkpath(path("attachments")));
        QCOMPARE(
            runTraced(QStringList{u"-P"_s, path("attachments")} + injected({u"getdents64:delay_enter=12s"_s}),
                      {u"--sign-on-in"_s, m_folder->path()}),
            Passed);
    }
};

static int runOrBeStarted(int argc, char** argv)
{
    if (argc == 3 && qstrcmp(argv[1], "--upload-in") == 0) {
        const QCoreApplication application(argc, argv);
        return uploadAsOwnProgram(QFile::decodeName(argv[2]));
    }
    if (argc == 3 && qstrcmp(argv[1], "--sign-on-in") == 0) {
        const QCoreApplication application(argc, argv);
        return signOnAsOwnProgram(QFile::decodeName(argv[2]));
    }
    tst_SystemCallFaults testCase;
    return tavrin::test::run(testCase, argc, argv);
}
TAVRIN_TEST_UNIT(tst_SystemCallFaults, runOrBeStarted)
#include "tst_SystemCallFaults.moc"
