#include "host/store/StoreTestSupport.h"

#include <array>
#include <csignal>
#include <fcntl.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

/// What programs that were killed leave behind, and what the next start takes away of it.
class tst_StoreSweep : public StoreCase
{
    Q_OBJECT

private:
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

private Q_SLOTS:
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
            uploader->Upload(from, Stored, {});
            return Passed;
        });
        QCOMPARE(answer, 128 + SIGKILL);
        onlyAPartIsLeft();

        startAgain();
        nothingIsLeftAndTheNextUploadWorks(from);
    }

    void aStartLeavesTheUploadOfARunningProgramAlone()
    {
        const QString from = source(QByteArray(3 << 20, 'x'));
        uploadMeeting(from, [&] {
            QCOMPARE(filesIn(month()).size(), 1);
            QCOMPARE(startAsAnotherProgram(), Passed);
            QCOMPARE(filesIn(month()).size(), 1);
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
        startAgain();
        QCOMPARE(filesIn(temporary()), QStringList());
        QVERIFY(QFileInfo::exists(download(Stored)));
    }

    void thePartOfAKilledDownloadGoesFromBesideACopyThatWasHandedOut()
    {
        writeFile(report(), QByteArray(3 << 20, 'x'));
        const int answer = inChild([&] {
            download(Stored);
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
        const QString whole = download(Stored);
        QString copy;
        const auto downloader = m_host->newDownloader();
        const auto progress = downloader->DownloadProgress.subscribe([&](const QString&, qint64, qint64) {
            age(temporary(), 3); // the lock counts, not the time
            QCOMPARE(startAsAnotherProgram(), Passed);
        });
        copy = downloader->Download(Stored);
        QCOMPARE(contentOf(copy), contentOf(report()));
        QVERIFY(contentOf(whole) == contentOf(report())); // somebody may be looking at it
    }

    void aCopyThatAKilledProgramHandedOutIsRemovedAfterADayAndNotBefore()
    {
        writeFile(report(), "content");
        const auto killed = [&]() -> QString { // the folder that it leaves
            const QStringList before = filesIn(temporary());
            const int answer = inChild([&] {
                download(Stored);
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
        startAgain();
        QVERIFY(QFileInfo::exists(others + u"/attachment.tmp"_s));
        QVERIFY(QFileInfo(link).isSymLink());
        QVERIFY(QFileInfo::exists(part));
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
        startAgain();
        QStringList left;
        for (const QString& name : files) {
            if (QFileInfo::exists(name))
                left << name;
        }
        QCOMPARE(left, files.mid(5));
    }
};

TAVRIN_TEST_MAIN(tst_StoreSweep)
#include "tst_StoreSweep.moc"
