#include "host/store/StoreTestSupport.h"

#include <cstdio>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

/// The copies that downloads hand out: whose they are, how long they stay, and what is left without one.
class tst_LocalCopies : public StoreCase
{
    Q_OBJECT

private:
    static int openDescriptors()
    {
        return static_cast<int>(filesIn(u"/proc/self/fd"_s).size()); // with the one that lists them
    }

    /// A download that ends in one of several ways; tells what came of it.
    QByteArray downloadTo(const QByteArray& fate)
    {
        auto downloader = m_host->newDownloader();
        auto* running = downloader.get();
        QString file = Stored;
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
                QVERIFY(QFile::resize(report(), QFileInfo(report()).size() + 4));
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

private Q_SLOTS:
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
        const QString text = errorOf([&] { downloader->Download(Stored); });
        QCOMPARE(text, downloadProblem(Stored, u"the copy in '%1' has not its length"_s.arg(folder)));
        QCOMPARE(filesIn(temporary()), QStringList());
        progress.cancel();
        QVERIFY(contentOf(downloader->Download(Stored)) == contentOf(report()));
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
        const QString whole = download(Stored); // its folder is held open
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
};

TAVRIN_TEST_MAIN(tst_LocalCopies)
#include "tst_LocalCopies.moc"
