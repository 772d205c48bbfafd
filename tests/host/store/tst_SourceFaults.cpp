#include "host/store/StoreTestSupport.h"

#include <array>
#include <csignal>
#include <fcntl.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

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

} // namespace

/// What befalls a file while it is read, be it uploaded or downloaded.
class tst_SourceFaults : public StoreCase
{
    Q_OBJECT

private:
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

private Q_SLOTS:
    void aSourceThatIsNotThereIsNamed()
    {
        const QString from = path("Report.pdf");
        QCOMPARE(errorOf([&] { upload(from, Stored); }), uploadProblem(from, u"No such file or directory"_s));
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
        QCOMPARE(asNobody([&] { return errorOf([&] { upload(from, Stored); }); }),
                 uploadProblem(from, u"Permission denied"_s));
        QVERIFY(QFile::setPermissions(from, QFile::ReadOwner | QFile::WriteOwner));
        nothingIsLeftAndTheNextUploadWorks(from);
    }

    void aSourceThatIsNoFileIsNamed()
    {
        QCOMPARE(::mkfifo(QFile::encodeName(path("pipe")).constData(), 0600), 0);
        for (const QString& from : {path("pipe"), m_folder->path(), u"/dev/zero"_s})
            QCOMPARE(errorOf([&] { upload(from, Stored); }), uploadProblem(from, u"it is not a file"_s));
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
        beside(from, [&] { upload(from, Stored); });
        QVERIFY(contentOf(report()) == content);
        QString copy;
        beside(report(), [&] { copy = download(Stored); });
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
                 downloadProblem(Stored, changed));
        QCOMPARE(filesIn(temporary()), QStringList());
        QVERIFY(QFileInfo::exists(download(Stored)));
    }
};

TAVRIN_TEST_MAIN(tst_SourceFaults)
#include "tst_SourceFaults.moc"
