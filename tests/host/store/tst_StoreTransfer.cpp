#include "host/store/StoreTestSupport.h"

#include <QScopeGuard>

#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

/// Files on their way into the store and out of it: their bytes, the events, and handlers that interfere.
class tst_StoreTransfer : public StoreCase
{
    Q_OBJECT

private Q_SLOTS:
    void aFileGoesInAndComesOutAgain_data()
    {
        QTest::addColumn<qint64>("size");
        QTest::newRow("empty") << qint64(0);
        QTest::newRow("one byte") << qint64(1);
        QTest::newRow("a buffer less one") << qint64((1 << 20) - 1);
        QTest::newRow("a buffer") << qint64(1 << 20);
        QTest::newRow("a buffer and one") << qint64((1 << 20) + 1);
        QTest::newRow("flushed on the way") << qint64((20 << 20) + 17);
    }
    void aFileGoesInAndComesOutAgain()
    {
        QFETCH(qint64, size);
        QByteArray content(size, '\0');
        for (qsizetype i = 0; i < content.size(); ++i)
            content[i] = static_cast<char>(i * 31 >> 3);
        const QString from = source(content);
        upload(from, Stored);
        QVERIFY(contentOf(report()) == content);
        QCOMPARE(stored(), (QStringList{QStringLiteral("2014"), QStringLiteral("2014/03"),
                                        QStringLiteral("2014/03/20160201130507_Report.pdf")}));
        const QString copy = download(Stored);
        QVERIFY(contentOf(copy) == content);
        QVERIFY(contentOf(from) == content);
    }

    void theEventsOfAnUploadComeInOrderInsideTheCall()
    {
        const QString from = source(QByteArray((2 << 20) + 5, 'x'));
        const auto uploader = m_host->newUploader();
        QStringList told;
        const auto progress =
            uploader->UploadProgress.subscribe([&](const QString& path, qint64 bytes, qint64 total) {
                QVERIFY(!QFileInfo::exists(report()));
                told << QStringLiteral("%1 %2 of %3").arg(path).arg(bytes).arg(total);
            });
        const auto complete = uploader->UploadComplete.subscribe([&](const QString& path, bool flag) {
            QVERIFY(QFileInfo::exists(report()));
            told << QStringLiteral("%1 complete %2").arg(path).arg(flag);
        });
        uploader->Upload(from, Stored, {});
        QCOMPARE(told, (QStringList{from + u" 1048576 of 2097157"_s, from + u" 2097152 of 2097157"_s,
                                    from + u" 2097157 of 2097157"_s, from + u" complete 0"_s}));
    }

    void theEventsOfADownloadComeInOrderAndItsBufferCounts()
    {
        upload(source(QByteArray(10, 'x')), Stored);
        const auto downloader = m_host->newDownloader();
        downloader->SetBufferSize(4);
        QStringList told;
        const auto started =
            downloader->DownloadStarted.subscribe([&](const QString& path) { told << path + u" started"_s; });
        const auto progress =
            downloader->DownloadProgress.subscribe([&](const QString&, qint64 bytes, qint64 total) {
                told << QStringLiteral("%1 of %2").arg(bytes).arg(total);
            });
        const auto complete =
            downloader->DownloadComplete.subscribe([&](const QString& path, bool cancelled) {
                told << QStringLiteral("%1 complete %2").arg(path).arg(cancelled);
            });
        downloader->Download(Stored);
        QCOMPARE(told,
                 (QStringList{Stored + u" started"_s, QStringLiteral("4 of 10"), QStringLiteral("8 of 10"),
                              QStringLiteral("10 of 10"), Stored + u" complete 0"_s}));
    }

    void noProgressIsToldOfAnEmptyFileSoThatNobodyDividesByZero()
    {
        const QString from = source({});
        const auto uploader = m_host->newUploader();
        int told = 0;
        bool complete = false;
        const auto progress =
            uploader->UploadProgress.subscribe([&](const QString&, qint64, qint64) { ++told; });
        const auto end = uploader->UploadComplete.subscribe([&](const QString&, bool) { complete = true; });
        uploader->Upload(from, Stored, {});
        const auto downloader = m_host->newDownloader();
        const auto down =
            downloader->DownloadProgress.subscribe([&](const QString&, qint64, qint64) { ++told; });
        QVERIFY(QFileInfo::exists(downloader->Download(Stored)));
        QCOMPARE(told, 0);
        QVERIFY(complete);
    }

    void aBufferOfNothingIsRefused()
    {
        QCOMPARE(errorOf([this] { m_host->newDownloader()->SetBufferSize(0); }),
                 QStringLiteral("A download needs a buffer of at least one byte, not 0."));
    }

    void aStoredFileFollowsTheMaskAndIsNeverAProgram()
    {
        const QString from = source("#!/bin/sh");
        QVERIFY(QFile::setPermissions(from, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        const mode_t before = ::umask(027);
        const auto restore = qScopeGuard([before] { ::umask(before); });
        upload(from, Stored);
        QCOMPARE(modeOf(report()), mode_t(0640));
        QCOMPARE(modeOf(storedPath(QStringLiteral("2014"))), mode_t(0750));
    }

    void cancelEndsADownloadWithinOneBufferAndLeavesNothing_data()
    {
        QTest::addColumn<qint64>("at");
        QTest::newRow("at the start") << qint64(0);
        QTest::newRow("in the middle") << qint64(4);
        QTest::newRow("at the last progress") << qint64(12);
    }
    void cancelEndsADownloadWithinOneBufferAndLeavesNothing()
    {
        QFETCH(qint64, at);
        upload(source(QByteArray(12, 'x')), Stored);
        const auto downloader = m_host->newDownloader();
        downloader->SetBufferSize(4);
        qint64 last = 0;
        QStringList ends;
        const auto started = downloader->DownloadStarted.subscribe([&](const QString&) {
            if (at == 0)
                downloader->Cancel();
        });
        const auto progress =
            downloader->DownloadProgress.subscribe([&](const QString&, qint64 bytes, qint64) {
                last = bytes;
                if (bytes == at)
                    downloader->Cancel();
            });
        const auto complete =
            downloader->DownloadComplete.subscribe([&](const QString& path, bool cancelled) {
                ends << path + (cancelled ? QStringLiteral(" cancelled") : QStringLiteral(" done"));
                QCOMPARE(filesIn(temporary()).isEmpty(), cancelled);
            });
        QCOMPARE(downloader->Download(Stored), QString());
        QCOMPARE(last, at);
        QCOMPARE(ends, QStringList(Stored + u" cancelled"_s));
        QCOMPARE(filesIn(temporary()), QStringList());
        // The same object may be used again.
        downloader->Cancel(); // nothing is under way
        at = -1;
        QCOMPARE(contentOf(downloader->Download(Stored)), QByteArray(12, 'x'));
    }

    void whatAHandlerRaisesEndsTheTransferAndPassesOn()
    {
        const QString from = source("content");
        const auto uploader = m_host->newUploader();
        auto progress = uploader->UploadProgress.subscribe(
            [](const QString&, qint64, qint64) { throw Error(QStringLiteral("no more"), 77); });
        QCOMPARE(errorOf([&] { uploader->Upload(from, Stored, {}); }), QStringLiteral("no more"));
        QCOMPARE(errorNumberOf([&] { uploader->Upload(from, Stored, {}); }), 77);
        QCOMPARE(filesIn(month()), QStringList());
        progress.cancel();
        uploader->Upload(from, Stored, {});

        const auto downloader = m_host->newDownloader();
        const auto down = downloader->DownloadProgress.subscribe(
            [](const QString&, qint64, qint64) { throw Error(QStringLiteral("no more")); });
        QCOMPARE(errorOf([&] { downloader->Download(Stored); }), QStringLiteral("no more"));
        QCOMPARE(filesIn(temporary()), QStringList());
    }

    void aHandlerOfTheEndThatFailsDoesNotTakeTheStoredFileAway()
    {
        const auto uploader = m_host->newUploader();
        const auto complete = uploader->UploadComplete.subscribe(
            [](const QString&, bool) { throw Error(QStringLiteral("later")); });
        QCOMPARE(errorOf([&] { uploader->Upload(source("content"), Stored, {}); }), QStringLiteral("later"));
        QCOMPARE(contentOf(report()), QByteArray("content"));
    }

    void aHandlerOfTheEndOfADownloadThatFailsLeavesNoCopy()
    {
        upload(source("content"), Stored);
        const auto downloader = m_host->newDownloader();
        const auto complete = downloader->DownloadComplete.subscribe(
            [](const QString&, bool) { throw Error(QStringLiteral("later")); });
        QCOMPARE(errorOf([&] { downloader->Download(Stored); }), QStringLiteral("later"));
        QCOMPARE(filesIn(temporary()), QStringList());
    }

    void aHandlerMayDestroyTheObjectWhoseEventItHandles()
    {
        const QString from = source(QByteArray(3 << 20, 'x'));
        auto uploader = m_host->newUploader();
        auto* pointer = uploader.get();
        const auto progress =
            uploader->UploadProgress.subscribe([&](const QString&, qint64, qint64) { uploader.reset(); });
        QCOMPARE(errorOf([&] { pointer->Upload(from, Stored, {}); }),
                 QStringLiteral("The transfer was given up."));
        QCOMPARE(filesIn(month()), QStringList());

        upload(from, Stored);
        auto downloader = m_host->newDownloader();
        auto* down = downloader.get();
        const auto started =
            downloader->DownloadStarted.subscribe([&](const QString&) { downloader.reset(); });
        QCOMPARE(errorOf([&] { down->Download(Stored); }), QStringLiteral("The transfer was given up."));
        QCOMPARE(filesIn(temporary()), QStringList());
    }

    void anObjectDoesOneTransferAtATime()
    {
        const QString from = source("content");
        const auto uploader = m_host->newUploader();
        QString second;
        const auto progress = uploader->UploadProgress.subscribe([&](const QString&, qint64, qint64) {
            second = errorOf([&] { uploader->Upload(from, Stored + u'2', {}); });
        });
        uploader->Upload(from, Stored, {});
        QCOMPARE(second, QStringLiteral("A transfer is under way already."));
        QCOMPARE(contentOf(report()), QByteArray("content"));
    }

    void twoUploadsOfOneNameInOneSecondLeaveTheFirst()
    {
        upload(source("first"), Stored);
        const QString other = source("second", "other/Report.pdf");
        QCOMPARE(errorOf([&] { upload(other, Stored); }),
                 uploadProblem(other, QStringLiteral("a file of that name is there already")));
        QCOMPARE(contentOf(report()), QByteArray("first"));
        QCOMPARE(filesIn(month()).size(), 1);
    }

    void anUploadThatIsOvertakenByAnotherLeavesThatOne()
    {
        const QString from = source("slower");
        const auto uploader = m_host->newUploader();
        const auto progress = uploader->UploadProgress.subscribe(
            [&](const QString&, qint64, qint64) { upload(source("quicker", "other/Report.pdf"), Stored); });
        QCOMPARE(errorOf([&] { uploader->Upload(from, Stored, {}); }),
                 uploadProblem(from, QStringLiteral("a file of that name is there already")));
        QCOMPARE(contentOf(report()), QByteArray("quicker"));
        QCOMPARE(filesIn(month()).size(), 1);
    }
};

TAVRIN_TEST_MAIN(tst_StoreTransfer)
#include "tst_StoreTransfer.moc"
