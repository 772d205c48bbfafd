#include "host/store/StoreTestSupport.h"
#include "support/FileSizeLimit.h"

#include <cstdio>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

/// For a child: whether the action raises this text.
int expectText(const QString& expected, const std::function<void()>& action)
{
    const QString text = errorOf(action);
    if (text == expected)
        return Passed;
    std::fprintf(stderr, "expected: %s\nraised:   %s\n", qPrintable(expected), qPrintable(text));
    return OtherText;
}

} // namespace

/// A disk that is full, may not be written to or loses what was written, below the store and below the
/// copies.
class tst_DiskFaults : public StoreCase
{
    Q_OBJECT

private:
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

private Q_SLOTS:
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
        QCOMPARE(asNobody([&] { return errorOf([&] { upload(from, Stored); }); }),
                 uploadProblem(from, reason));
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
        const auto limited = [limit](const std::function<void()>& action) {
            const FileSizeLimit full(static_cast<rlim_t>(limit));
            return errorOf(action);
        };
        QCOMPARE(limited([&] { upload(from, Stored); }), uploadProblem(from, u"File too large"_s));
        nothingIsLeftAndTheNextUploadWorks(from);
        QCOMPARE(limited([&] { download(Stored); }), downloadProblem(Stored, u"File too large"_s));
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
                [&] { upload(from, Stored); });
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
            upload(from, Stored);
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
                downloadProblem(Stored,
                                u"there is not enough free space: 3.0 MB are needed, 2.0 MB are free"_s),
                [&] { download(Stored); }));
        });
        if (before == NotPossible)
            QSKIP("a small disk cannot be mounted here");
        QCOMPARE(before, Passed);
        const int meanwhile = onSmallDisk(temporary(), "size=4m", [&] {
            const QString filler = temporary() + u"/filler"_s;
            const int answer = expectText(downloadProblem(Stored, u"No space left on device"_s), [&] {
                downloadMeeting([&] { writeFile(filler, QByteArray(5 << 19, 'f')); });
            });
            QFile::remove(filler);
            if (nothingIsLeft(answer) != Passed)
                return nothingIsLeft(answer);
            return contentOf(download(Stored)) == contentOf(report()) ? Passed : OtherText;
        });
        QCOMPARE(meanwhile, Passed);
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
        upload(source("content"), Stored);
        qputenv("TMPDIR", QFile::encodeName(path("nowhere")));
        QCOMPARE(
            errorOf([&] { download(Stored); }),
            downloadProblem(Stored, u"the folder for temporary files, which TMPDIR names, is not there"_s));
        QVERIFY(QDir().mkpath(path("nowhere")));
        QVERIFY(::chmod(QFile::encodeName(path("nowhere")).constData(), 0555) == 0);
        QVERIFY(::chmod(QFile::encodeName(m_folder->path()).constData(), 0755) == 0);
        QCOMPARE(asNobody([&] { return errorOf([&] { download(Stored); }); }),
                 downloadProblem(Stored,
                                 u"no folder can be made in '%1': Permission denied"_s.arg(path("nowhere"))));
        qputenv("TMPDIR", QFile::encodeName(temporary()));
        QCOMPARE(contentOf(download(Stored)), QByteArray("content"));
    }
};

TAVRIN_TEST_MAIN(tst_DiskFaults)
#include "tst_DiskFaults.moc"
