#include "host/store/StoreTestSupport.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QThread>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

// What a child or a second program answers.
constexpr int Passed = 0;
constexpr int OtherText = 1;
constexpr int NotPossible = 2;
constexpr int Raised = 3;
constexpr int LeftSomething = 4;

namespace {

constexpr auto StoredName = "attachments\\2014\\03\\20160201130507_Report.pdf";

/// For a child: whether the action raises this text.
int expectText(const QString& expected, const std::function<void()>& action)
{
    const QString text = errorOf(action);
    if (text == expected)
        return Passed;
    std::fprintf(stderr, "expected: %s\nraised:   %s\n", qPrintable(expected), qPrintable(text));
    return OtherText;
}

bool limitFileSize(rlim_t bytes)
{
    std::signal(SIGXFSZ, SIG_IGN); // the write then fails instead of ending the process
    const rlimit limit = {bytes, bytes};
    return ::setrlimit(RLIMIT_FSIZE, &limit) == 0;
}

/// For a child: takes a lease on a file, tells it, and gives it up when somebody wants the file.
int holdLease(const QString& file, int ready)
{
    sigset_t asked = {};
    ::sigemptyset(&asked);
    ::sigaddset(&asked, SIGIO);
    ::sigprocmask(SIG_BLOCK, &asked, nullptr);
    const int held = ::open(QFile::encodeName(file).constData(), O_RDWR | O_CLOEXEC);
    const bool isHeld = held >= 0 && ::fcntl(held, F_SETLEASE, F_WRLCK) == 0;
    if (::write(ready, isHeld ? "y" : "n", 1) != 1 || !isHeld)
        return NotPossible;
    const timespec longest = {60, 0};
    if (::sigtimedwait(&asked, nullptr, &longest) != SIGIO)
        return Raised;
    return ::fcntl(held, F_SETLEASE, F_UNLCK) == 0 ? Passed : OtherText;
}

/// Uploads as a program of its own does, so that its calls of the system can be made to fail.
int uploadAsOwnProgram(const QString& folder)
{
    const auto database = Database::open(folder + u"/records.db"_s);
    ReferenceHost host(*database, ReferenceHostOptions{u"admin"_s, folder + u"/station"_s, folder});
    host.waitForSweep();
    const QString text = errorOf(
        [&] { host.newUploader()->Upload(folder + u"/Report.pdf"_s, QLatin1String(StoredName), {}); });
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

class tst_StoreFaults : public StoreCase
{
    Q_OBJECT

private:
    static QString storedFile() { return QLatin1String(StoredName); }
    QString month() const { return storedPath(u"2014/03"_s); }

    /// Uploads, and does something when the first buffer has been written.
    void uploadMeeting(const QString& from, const std::function<void()>& event)
    {
        const auto uploader = m_host->newUploader();
        bool met = false;
        const auto progress = uploader->UploadProgress.subscribe([&](const QString&, qint64, qint64) {
            if (!std::exchange(met, true))
                event();
        });
        uploader->Upload(from, storedFile(), {});
    }

    void downloadMeeting(const std::function<void()>& event)
    {
        const auto downloader = m_host->newDownloader();
        bool met = false;
        const auto progress = downloader->DownloadProgress.subscribe([&](const QString&, qint64, qint64) {
            if (!std::exchange(met, true))
                event();
        });
        downloader->Download(storedFile());
    }

    /// Makes all that lies in a folder, and the folder, so many days old.
    void age(const QString& folder, int days) const
    {
        const time_t then = ::time(nullptr) - static_cast<time_t>(days) * 24 * 60 * 60;
        const std::array<timespec, 2> times = {timespec{then, 0}, timespec{then, 0}};
        const QStringList names = treeOf(folder) << QString();
        for (const QString& name : names)
            QCOMPARE(::utimensat(AT_FDCWD, QFile::encodeName(folder + u'/' + name).constData(), times.data(),
                                 AT_SYMLINK_NOFOLLOW),
                     0);
    }

    /// The start of another program on the same folders.
    int startAsAnotherProgram() const
    {
        return inChild([this] {
            const auto database = Database::open(m_database->path());
            ReferenceHost host(*database, ReferenceHostOptions{u"admin"_s, m_folder->path(), {}});
            host.waitForSweep();
            return Passed;
        });
    }

    void change(const QString& file, const QByteArray& how) const
    {
        QFile changed(file);
        QVERIFY(changed.open(QIODevice::ReadWrite));
        if (how == "grown")
            QVERIFY(changed.seek(changed.size()) && changed.write("more") == 4);
        else if (how == "shrunk")
            QVERIFY(changed.resize(1 << 20));
        else if (how == "emptied")
            QVERIFY(changed.resize(0));
        else
            QVERIFY(changed.write("other") == 5); // of the same length
    }

    void nothingIsLeftAndTheNextUploadWorks(const QString& from)
    {
        QCOMPARE(filesIn(month()), QStringList());
        upload(from, storedFile());
        QVERIFY(contentOf(report()) == contentOf(from));
        QCOMPARE(filesIn(month()).size(), 1);
    }

    /// Does something on a disk of this size in the place of a folder; returns its answer.
    static int onSmallDisk(const QString& folder, const char* size, const std::function<int()>& body)
    {
        return inChild([&] {
            if (::unshare(CLONE_NEWNS) != 0 ||
                ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
                ::mount("tmpfs", QFile::encodeName(folder).constData(), "tmpfs", 0, size) != 0)
                return NotPossible;
            return body();
        });
    }

    static int openDescriptors()
    {
        return static_cast<int>(filesIn(u"/proc/self/fd"_s).size()); // with the one that lists them
    }

    /// A download that ends in one of several ways; tells what came of it.
    QByteArray downloadTo(const QByteArray& fate)
    {
        auto downloader = m_host->newDownloader();
        auto* running = downloader.get();
        QString file = storedFile();
        if (fate == "no file")
            file += u'x';
        else if (fate == "not a file")
            file = u"attachments\\2014"_s;
        else if (fate == "no path of the store")
            file = u"/etc/passwd"_s;
        const auto started = running->DownloadStarted.subscribe([&](const QString&) {
            if (fate == "cancelled at the start")
                running->Cancel();
        });
        const auto progress = running->DownloadProgress.subscribe([&](const QString&, qint64, qint64) {
            if (fate == "cancelled")
                running->Cancel();
            else if (fate == "failed by a handler")
                throw Error(u"no more"_s);
            else if (fate == "given up")
                downloader.reset();
            else if (fate == "changed meanwhile")
                change(report(), "grown");
            else if (fate == "cut short")
                cutCopies();
            else if (fate == "folder of copies gone")
                QVERIFY(QDir(temporary()).removeRecursively() && QDir().mkpath(temporary()));
        });
        const auto complete = running->DownloadComplete.subscribe([&](const QString&, bool) {
            if (fate == "failed at its end")
                throw Error(u"later"_s);
        });
        if (fate == "no folder for copies")
            qputenv("TMPDIR", QFile::encodeName(path("nowhere")));
        QString copy;
        const QString text = errorOf([&] { copy = running->Download(file); });
        qputenv("TMPDIR", QFile::encodeName(temporary()));
        return !text.isEmpty() ? "failure" : copy.isEmpty() ? "nothing" : "copy";
    }
    void cutCopies() const
    {
        for (const QString& folder : filesIn(temporary())) {
            for (const QString& name : filesIn(temporary() + u'/' + folder)) {
                if (name.startsWith(QLatin1String(TemporaryPrefix)))
                    QVERIFY(QFile::resize(temporary() + u'/' + folder + u'/' + name, 1));
            }
        }
    }

    bool traceWorks() const
    {
        return QProcess::execute(u"strace"_s, {u"-o"_s, u"/dev/null"_s, u"true"_s}) == 0;
    }

    /// Runs the upload as a program whose calls fail as `faults` tell; returns its answer.
    int uploadWith(const QStringList& faults)
    {
        QStringList arguments{u"-f"_s, u"-qq"_s, u"-o"_s, u"/dev/null"_s};
        for (const QString& fault : faults)
            arguments << u"-e"_s << u"inject="_s + fault;
        arguments << QCoreApplication::applicationFilePath() << test::TestUnit::running() << u"--upload-in"_s
                  << m_folder->path();
        QProcess program;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        // The search for leaks traces the program too, which only one can do at a time.
        environment.insert(u"ASAN_OPTIONS"_s, u"detect_leaks=0"_s);
        program.setProcessEnvironment(environment);
        program.setProcessChannelMode(QProcess::ForwardedChannels);
        program.start(u"strace"_s, arguments);
        if (!program.waitForFinished(120000))
            return NotPossible;
        return program.exitStatus() == QProcess::NormalExit ? program.exitCode() : 128;
    }

private Q_SLOTS:
    void aSourceThatIsNotThereIsNamed()
    {
        const QString from = path("Report.pdf");
        QCOMPARE(errorOf([&] { upload(from, storedFile()); }),
                 uploadProblem(from, u"No such file or directory"_s));
        QCOMPARE(stored(), QStringList());
    }

    void aSourceThatVanishesMeanwhileIsStillCopiedWhole()
    {
        const QByteArray content(3 << 20, 'x');
        const QString from = source(content);
        uploadMeeting(from, [&] { QVERIFY(QFile::remove(from)); });
        QVERIFY(contentOf(report()) == content);
    }

    void aSourceThatMayNotBeReadIsNamed()
    {
        const QString from = source("content");
        QVERIFY(::chmod(QFile::encodeName(m_folder->path()).constData(), 0755) == 0);
        QVERIFY(QFile::setPermissions(from, QFile::Permissions()));
        QCOMPARE(inChild([&] {
                     return dropRights() ? expectText(uploadProblem(from, u"Permission denied"_s),
                                                      [&] { upload(from, storedFile()); })
                                         : NotPossible;
                 }),
                 Passed);
        QVERIFY(QFile::setPermissions(from, QFile::ReadOwner | QFile::WriteOwner));
        nothingIsLeftAndTheNextUploadWorks(from);
    }

    void aSourceThatIsNoFileIsNamed()
    {
        QCOMPARE(::mkfifo(QFile::encodeName(path("pipe")).constData(), 0600), 0);
        for (const QString& from : {path("pipe"), m_folder->path(), u"/dev/zero"_s})
            QCOMPARE(errorOf([&] { upload(from, storedFile()); }),
                     uploadProblem(from, u"it is not a file"_s));
    }

    void aFileThatAnotherProgramHasALeaseOnIsReadOnceThatGivesItUp()
    {
        const QByteArray content(100000, 'x');
        const QString from = source(content);
        const auto beside = [&](const QString& file, const std::function<void()>& action) {
            std::array<int, 2> ready = {-1, -1};
            QCOMPARE(::pipe(ready.data()), 0);
            const pid_t holder = ::fork();
            if (holder == 0)
                ::_exit(holdLease(file, ready[1]));
            ::close(ready[1]);
            char answer = 0;
            const bool isHeld = ::read(ready[0], &answer, 1) == 1 && answer == 'y';
            ::close(ready[0]);
            const QString text = isHeld ? errorOf(action) : QString();
            int status = 0;
            QCOMPARE(::waitpid(holder, &status, 0), holder);
            if (!isHeld)
                QSKIP("this file system knows no leases");
            QCOMPARE(text, QString());
            QVERIFY(WIFEXITED(status));
            QCOMPARE(WEXITSTATUS(status), Passed); // it was asked
        };
        beside(from, [&] { upload(from, storedFile()); });
        QVERIFY(contentOf(report()) == content);
        QString copy;
        beside(report(), [&] { copy = download(storedFile()); });
        QVERIFY(contentOf(copy) == content);
    }

    void aSourceThatIsChangedMeanwhileIsRefused_data()
    {
        QTest::addColumn<QByteArray>("how");
        for (const char* how : {"grown", "shrunk", "emptied", "written to"})
            QTest::newRow(how) << QByteArray(how);
    }
    void aSourceThatIsChangedMeanwhileIsRefused()
    {
        QFETCH(QByteArray, how);
        const QString from = source(QByteArray(3 << 20, 'x'));
        const QString changed = u"it was changed by another program meanwhile; try again"_s;
        QCOMPARE(errorOf([&] { uploadMeeting(from, [&] { change(from, how); }); }),
                 uploadProblem(from, changed));
        nothingIsLeftAndTheNextUploadWorks(from);

        // The same holds for a stored file that is fetched.
        writeFile(report(), QByteArray(3 << 20, 'y'));
        QCOMPARE(errorOf([&] { downloadMeeting([&] { change(report(), how); }); }),
                 downloadProblem(storedFile(), changed));
        QCOMPARE(filesIn(temporary()), QStringList());
        QVERIFY(QFileInfo::exists(download(storedFile())));
    }

    void aStoreThatMayNotBeWrittenToIsNamed_data()
    {
        QTest::addColumn<bool>("monthExists");
        QTest::newRow("no folder can be made") << false;
        QTest::newRow("no file can be made") << true;
    }
    void aStoreThatMayNotBeWrittenToIsNamed()
    {
        QFETCH(bool, monthExists);
        QVERIFY(QDir().mkpath(monthExists ? month() : path("attachments")));
        const QString from = source("content");
        const QString closed = monthExists ? month() : path("attachments");
        QVERIFY(::chmod(QFile::encodeName(m_folder->path()).constData(), 0755) == 0);
        QVERIFY(::chmod(QFile::encodeName(closed).constData(), 0555) == 0);
        const QString reason =
            monthExists ? u"Permission denied"_s
                        : u"the folder '%1/2014/03' cannot be opened or made: Permission denied"_s.arg(
                              path("attachments"));
        QCOMPARE(inChild([&] {
                     return dropRights()
                                ? expectText(uploadProblem(from, reason), [&] { upload(from, storedFile()); })
                                : NotPossible;
                 }),
                 Passed);
        QVERIFY(::chmod(QFile::encodeName(closed).constData(), 0755) == 0);
        nothingIsLeftAndTheNextUploadWorks(from);
    }

    void aWriteThatStopsIsToldAndLeavesNothing_data()
    {
        QTest::addColumn<int>("limit");
        QTest::newRow("nothing fits") << 0;
        QTest::newRow("a part of the first buffer fits") << 4096;
        QTest::newRow("two buffers fit") << (2 << 20);
        QTest::newRow("all but one byte fits") << (3 << 20) - 1;
    }
    void aWriteThatStopsIsToldAndLeavesNothing()
    {
        QFETCH(int, limit);
        const QString from = source(QByteArray(3 << 20, 'x'));
        QCOMPARE(inChild([&] {
                     return limitFileSize(static_cast<rlim_t>(limit))
                                ? expectText(uploadProblem(from, u"File too large"_s),
                                             [&] { upload(from, storedFile()); })
                                : NotPossible;
                 }),
                 Passed);
        nothingIsLeftAndTheNextUploadWorks(from);
        QCOMPARE(inChild([&] {
                     return limitFileSize(static_cast<rlim_t>(limit))
                                ? expectText(downloadProblem(storedFile(), u"File too large"_s),
                                             [&] { download(storedFile()); })
                                : NotPossible;
                 }),
                 Passed);
        QCOMPARE(filesIn(temporary()), QStringList());
    }

    void aFullDiskIsToldBeforeAndMeanwhile()
    {
        const QString from = source(QByteArray(3 << 20, 'x'));
        QVERIFY(QDir().mkpath(path("attachments")));
        const auto onSmallStore = [&](const char* size, const std::function<int()>& body) {
            return onSmallDisk(path("attachments"), size, [&] {
                const int answer = body();
                return answer == Passed && !filesIn(month()).isEmpty() ? LeftSomething : answer;
            });
        };
        const int before = onSmallStore("size=2m", [&] {
            return expectText(
                uploadProblem(from, u"there is not enough free space: 3.0 MB are needed, 2.0 MB are free"_s),
                [&] { upload(from, storedFile()); });
        });
        if (before == NotPossible)
            QSKIP("a small disk cannot be mounted here");
        QCOMPARE(before, Passed);
        const int meanwhile = onSmallStore("size=4m", [&] {
            const auto fill = [&] { writeFile(storedPath(u"filler"_s), QByteArray(5 << 19, 'f')); };
            const int answer = expectText(uploadProblem(from, u"No space left on device"_s),
                                          [&] { uploadMeeting(from, fill); });
            if (answer != Passed || !filesIn(month()).isEmpty())
                return answer == Passed ? LeftSomething : answer;
            QFile::remove(storedPath(u"filler"_s));
            upload(from, storedFile());
            const bool isWhole = contentOf(report()) == contentOf(from);
            QFile::remove(report());
            return isWhole ? Passed : OtherText;
        });
        QCOMPARE(meanwhile, Passed);
    }

    void aFullDiskForCopiesIsToldBeforeAndMeanwhile()
    {
        writeFile(report(), QByteArray(3 << 20, 'x'));
        const auto nothingIsLeft = [&](int answer) {
            return answer == Passed && !filesIn(temporary()).isEmpty() ? LeftSomething : answer;
        };
        const int before = onSmallDisk(temporary(), "size=2m", [&] {
            return nothingIsLeft(expectText(
                downloadProblem(storedFile(),
                                u"there is not enough free space: 3.0 MB are needed, 2.0 MB are free"_s),
                [&] { download(storedFile()); }));
        });
        if (before == NotPossible)
            QSKIP("a small disk cannot be mounted here");
        QCOMPARE(before, Passed);
        const int meanwhile = onSmallDisk(temporary(), "size=4m", [&] {
            const QString filler = temporary() + u"/filler"_s;
            const int answer = expectText(downloadProblem(storedFile(), u"No space left on device"_s), [&] {
                downloadMeeting([&] { writeFile(filler, QByteArray(5 << 19, 'f')); });
            });
            QFile::remove(filler);
            if (nothingIsLeft(answer) != Passed)
                return nothingIsLeft(answer);
            return contentOf(download(storedFile())) == contentOf(report()) ? Passed : OtherText;
        });
        QCOMPARE(meanwhile, Passed);
    }

    void aCopyThatHasNotItsLengthIsNotHandedOut_data()
    {
        QTest::addColumn<qint64>("length");
        QTest::newRow("a byte too few") << qint64((3 << 20) - 1);
        QTest::newRow("nothing") << qint64(0);
        QTest::newRow("a byte too many") << qint64((3 << 20) + 1);
    }
    void aCopyThatHasNotItsLengthIsNotHandedOut()
    {
        QFETCH(qint64, length);
        writeFile(report(), QByteArray(3 << 20, 'x'));
        const auto downloader = m_host->newDownloader();
        QString folder;
        auto progress =
            downloader->DownloadProgress.subscribe([&](const QString&, qint64 done, qint64 total) {
                folder = temporary() + u'/' + filesIn(temporary()).value(0);
                QCOMPARE(filesIn(folder).size(), 1);
                if (done == total)
                    QVERIFY(QFile::resize(folder + u'/' + filesIn(folder).constFirst(), length));
            });
        const QString text = errorOf([&] { downloader->Download(storedFile()); });
        QCOMPARE(text, downloadProblem(storedFile(), u"the copy in '%1' has not its length"_s.arg(folder)));
        QCOMPARE(filesIn(temporary()), QStringList());
        progress.cancel();
        QVERIFY(contentOf(downloader->Download(storedFile())) == contentOf(report()));
    }

    void aDownloadLeavesNoDescriptorOpenWhateverBecomesOfIt_data()
    {
        QTest::addColumn<QByteArray>("fate");
        for (const char* fate :
             {"done", "no file", "not a file", "no path of the store", "cancelled", "cancelled at the start",
              "failed by a handler", "failed at its end", "given up", "changed meanwhile", "cut short",
              "no folder for copies", "folder of copies gone"})
            QTest::newRow(fate) << QByteArray(fate);
    }
    void aDownloadLeavesNoDescriptorOpenWhateverBecomesOfIt()
    {
        QFETCH(QByteArray, fate);
        m_host->waitForSweep();
        writeFile(report(), QByteArray(3 << 20, 'x'));
        const QString whole = download(storedFile()); // its folder is held open
        const auto folder = QFileInfo(whole).path();
        if (fate.startsWith("no folder") || fate.startsWith("folder of")) {
            QVERIFY(QDir(folder).removeRecursively());
            errorOf([&] { downloadMeeting([&] { throw Error(u"gone"_s); }); }); // which lets go of it
        }
        const QByteArray expected = fate == "done"                 ? "copy"
                                    : fate.startsWith("cancelled") ? "nothing"
                                                                   : "failure";
        const int before = openDescriptors();
        for (int i = 0; i < 5; ++i)
            QCOMPARE(downloadTo(fate), expected);
        QCOMPARE(openDescriptors(), before);
    }

    void aFolderThatIsMovedAwayMeanwhileGetsNoFile_data()
    {
        QTest::addColumn<QString>("moved");
        QTest::newRow("the base folder") << QString();
        QTest::newRow("the year") << u"2014"_s;
        QTest::newRow("the month") << u"2014/03"_s;
    }
    void aFolderThatIsMovedAwayMeanwhileGetsNoFile()
    {
        QFETCH(QString, moved);
        const QString from = source(QByteArray(3 << 20, 'x'));
        const QString folder = QDir::cleanPath(storedPath(moved));
        const QString away = path("away");
        QCOMPARE(errorOf([&] { uploadMeeting(from, [&] { QVERIFY(QDir().rename(folder, away)); }); }),
                 uploadProblem(from, u"its folder was moved or replaced meanwhile"_s));
        for (const QString& entry : treeOf(away))
            QVERIFY2(QFileInfo(away + u'/' + entry).isDir(), qPrintable(entry));
        nothingIsLeftAndTheNextUploadWorks(from);
    }

    void aFolderForCopiesThatCannotBeUsedIsTold()
    {
        upload(source("content"), storedFile());
        qputenv("TMPDIR", QFile::encodeName(path("nowhere")));
        QCOMPARE(errorOf([&] { download(storedFile()); }),
                 downloadProblem(storedFile(),
                                 u"the folder for temporary files, which TMPDIR names, is not there"_s));
        QVERIFY(QDir().mkpath(path("nowhere")));
        QVERIFY(::chmod(QFile::encodeName(path("nowhere")).constData(), 0555) == 0);
        QVERIFY(::chmod(QFile::encodeName(m_folder->path()).constData(), 0755) == 0);
        QCOMPARE(inChild([&] {
                     const QString reason =
                         u"no folder can be made in '%1': Permission denied"_s.arg(path("nowhere"));
                     return dropRights() ? expectText(downloadProblem(storedFile(), reason),
                                                      [&] { download(storedFile()); })
                                         : NotPossible;
                 }),
                 Passed);
        qputenv("TMPDIR", QFile::encodeName(temporary()));
        QCOMPARE(contentOf(download(storedFile())), QByteArray("content"));
    }

    void aKilledUploadLeavesNoNameAndTheNextStartSweeps_data()
    {
        QTest::addColumn<int>("chunk");
        for (int chunk = 1; chunk <= 4; ++chunk)
            QTest::addRow("after buffer %d of 4", chunk) << chunk;
    }
    void aKilledUploadLeavesNoNameAndTheNextStartSweeps()
    {
        QFETCH(int, chunk);
        const QString from = source(QByteArray((3 << 20) + 5, 'x'));
        const int answer = inChild([&] {
            const auto uploader = m_host->newUploader();
            int chunks = 0;
            const auto progress = uploader->UploadProgress.subscribe([&](const QString&, qint64, qint64) {
                if (++chunks == chunk)
                    ::raise(SIGKILL);
            });
            uploader->Upload(from, storedFile(), {});
            return Passed;
        });
        QCOMPARE(answer, 128 + SIGKILL);
        const QStringList left = filesIn(month());
        QCOMPARE(left.size(), 1);
        QVERIFY2(left.constFirst().startsWith(QLatin1String(TemporaryPrefix)), qPrintable(left.constFirst()));

        signOn(u"admin"_s); // the next start
        m_host->waitForSweep();
        nothingIsLeftAndTheNextUploadWorks(from);
    }

    void aStartLeavesTheUploadOfARunningProgramAlone()
    {
        const QString from = source(QByteArray(3 << 20, 'x'));
        uploadMeeting(from, [&] {
            QCOMPARE(filesIn(month()).size(), 1);
            QCOMPARE(
                inChild([&] { // another program on the same folder
                    const auto database = Database::open(m_database->path());
                    ReferenceHost host(*database, ReferenceHostOptions{u"admin"_s, m_folder->path(), {}});
                    host.waitForSweep();
                    return filesIn(month()).size() == 1 ? Passed : LeftSomething;
                }),
                Passed);
        });
        QVERIFY(contentOf(report()) == contentOf(from));
    }

    void aKilledDownloadLeavesAPartThatTheNextStartRemoves()
    {
        writeFile(report(), QByteArray(3 << 20, 'x'));
        const int answer = inChild([&] {
            downloadMeeting([] { ::raise(SIGKILL); });
            return Passed;
        });
        QCOMPARE(answer, 128 + SIGKILL);
        QCOMPARE(filesIn(temporary()).size(), 1);
        signOn(u"admin"_s);
        m_host->waitForSweep();
        QCOMPARE(filesIn(temporary()), QStringList());
        QVERIFY(QFileInfo::exists(download(storedFile())));
    }

    void thePartOfAKilledDownloadGoesFromBesideACopyThatWasHandedOut()
    {
        writeFile(report(), QByteArray(3 << 20, 'x'));
        const int answer = inChild([&] {
            download(storedFile());
            downloadMeeting([] { ::raise(SIGKILL); });
            return Passed;
        });
        QCOMPARE(answer, 128 + SIGKILL);
        const QString folder = temporary() + u'/' + filesIn(temporary()).value(0);
        QCOMPARE(filesIn(folder).size(), 2);
        QCOMPARE(startAsAnotherProgram(), Passed);
        QCOMPARE(filesIn(folder).size(), 1);
        QVERIFY(contentOf(folder + u'/' + filesIn(folder).constFirst()) == contentOf(report()));
    }

    void aStartLeavesTheDownloadsOfARunningProgramAlone()
    {
        m_host->waitForSweep(); // of this program's own start
        writeFile(report(), QByteArray(3 << 20, 'x'));
        const QString whole = download(storedFile());
        QString copy;
        const auto downloader = m_host->newDownloader();
        const auto progress = downloader->DownloadProgress.subscribe([&](const QString&, qint64, qint64) {
            age(temporary(), 3); // the lock counts, not the time
            QCOMPARE(startAsAnotherProgram(), Passed);
        });
        copy = downloader->Download(storedFile());
        QCOMPARE(contentOf(copy), contentOf(report()));
        QVERIFY(contentOf(whole) == contentOf(report())); // somebody may be looking at it
    }

    void aCopyThatAKilledProgramHandedOutIsRemovedAfterADayAndNotBefore()
    {
        writeFile(report(), "content");
        const auto killed = [&]() -> QString { // the folder that it leaves
            const QStringList before = filesIn(temporary());
            const int answer = inChild([&] {
                download(storedFile());
                ::raise(SIGKILL);
                return Passed;
            });
            if (answer != 128 + SIGKILL)
                qFatal("the program was not killed");
            QStringList folders = filesIn(temporary());
            folders.removeIf([&](const QString& name) { return before.contains(name); });
            return temporary() + u'/' + folders.value(0);
        };
        const QString old = killed();
        const QString edited = killed();
        QVERIFY(QDir().mkpath(temporary() + u"/other"_s));
        age(temporary(), 2);
        writeFile(edited + u'/' + filesIn(edited).value(0), "somebody works with it");
        const QString fresh = killed();
        QCOMPARE(startAsAnotherProgram(), Passed);
        QVERIFY(!QFileInfo::exists(old));
        QCOMPARE(contentOf(edited + u'/' + filesIn(edited).value(0)), QByteArray("somebody works with it"));
        QCOMPARE(contentOf(fresh + u'/' + filesIn(fresh).value(0)), QByteArray("content"));
        QVERIFY(QFileInfo::exists(temporary() + u"/other"_s));
    }

    void anotherPersonsCopiesAndLinksAreLeftAlone()
    {
        if (::getuid() != 0)
            QSKIP("only the superuser can act for two persons");
        m_host->waitForSweep();
        const QString others = temporary() + u"/tavrin-download-others"_s;
        const QString link = temporary() + u"/tavrin-download-link"_s;
        writeFile(others + u"/attachment.tmp"_s, "x");
        const QString part = path("target/") + QLatin1String(TemporaryPrefix) + u"1"_s;
        writeFile(part, "x");
        QVERIFY(QFile::link(path("target"), link));
        age(temporary(), 2);
        QCOMPARE(::chown(QFile::encodeName(others).constData(), 65534, 65534), 0);
        signOn(u"admin"_s);
        m_host->waitForSweep();
        QVERIFY(QFileInfo::exists(others + u"/attachment.tmp"_s));
        QVERIFY(QFileInfo(link).isSymLink());
        QVERIFY(QFileInfo::exists(part));
    }

    void theEndOfTheProgramDoesNotWaitForAShareThatHangs()
    {
        if (!traceWorks())
            QSKIP("strace cannot be used here");
        QVERIFY(QDir().mkpath(path("attachments")));
        QProcess program;
        program.setProcessChannelMode(QProcess::ForwardedChannels);
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"ASAN_OPTIONS"_s, u"detect_leaks=0"_s);
        program.setProcessEnvironment(environment);
        program.start(u"strace"_s,
                      {u"-f"_s, u"-qq"_s, u"-o"_s, u"/dev/null"_s, u"-P"_s, path("attachments"), u"-e"_s,
                       u"inject=getdents64:delay_enter=12s"_s, QCoreApplication::applicationFilePath(),
                       test::TestUnit::running(), u"--sign-on-in"_s, m_folder->path()});
        QVERIFY(program.waitForFinished(120'000));
        QCOMPARE(program.exitCode(), Passed);
    }

    void aStartSweepsEveryBaseFolderAndNothingElse()
    {
        const QString killed =
            QString::fromLatin1(TemporaryPrefix) + u"another-1"_s; // of another workstation, long ago
        const QDateTime old = QDateTime::currentDateTime().addDays(-2);
        execute("INSERT INTO attachment_folder VALUES (3, 'archive')");
        const QStringList files{storedPath(killed),
                                storedPath(u"2014/"_s + killed),
                                storedPath(u"2014/03/"_s + killed),
                                storedPath(u".thumbnails/ab/"_s + killed),
                                path("archive/") + killed,
                                storedPath(u".snapshot/ab/"_s + killed),
                                storedPath(u"2014/03/20140301000000_a.pdf"_s),
                                path("other/") + killed};
        for (const QString& name : files) {
            writeFile(name, "x");
            QFile file(name);
            QVERIFY(file.open(QIODevice::ReadWrite) &&
                    file.setFileTime(old, QFileDevice::FileModificationTime));
        }
        QVERIFY(QFile::link(path("other"), storedPath(u"link"_s)));
        signOn(u"admin"_s);
        m_host->waitForSweep();
        QStringList left;
        for (const QString& name : files) {
            if (QFileInfo::exists(name))
                left << name;
        }
        QCOMPARE(left, files.mid(5));
    }

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
        const QStringList left = filesIn(month());
        QCOMPARE(left.size(), 1);
        QVERIFY2(left.constFirst().startsWith(QLatin1String(TemporaryPrefix)), qPrintable(left.constFirst()));
        signOn(u"admin"_s);
        m_host->waitForSweep();
        nothingIsLeftAndTheNextUploadWorks(from);
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
    tst_StoreFaults testCase;
    return tavrin::test::run(testCase, argc, argv);
}
TAVRIN_TEST_UNIT(tst_StoreFaults, runOrBeStarted)
#include "tst_StoreFaults.moc"
