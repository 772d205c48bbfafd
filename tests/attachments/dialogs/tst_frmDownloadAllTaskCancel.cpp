#include "attachments/dialogs/DownloadAllStage.h"

#include <memory>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

const QString CanceledText = u"Download was canceled."_s;

} // namespace

/// What ends the download of all files of a record before its time.
class tst_frmDownloadAllTaskCancel : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // Cancel

    void whateverClosesTheDialogCancels_data()
    {
        QTest::addColumn<QString>("way");
        for (const QString& way : waysToCancel().keys())
            QTest::newRow(qPrintable(way)) << way;
    }
    void whateverClosesTheDialogCancels()
    {
        QFETCH(QString, way);
        DownloadAllStage stage;
        bool stayed = false;
        QString caption;
        qsizetype cancelsAtOnce = -1;
        stage.duringTransferOf(u"2.pdf"_s, false, [&] {
            const auto cancel = waysToCancel().value(way);
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
        DownloadAllStage stage;
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
        DownloadAllStage stage;
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
        DownloadAllStage stage;
        stage.host.state().makeDownloader = [] { return std::make_unique<Twofold>(); };
        QCOMPARE(stage.start().Description, CanceledText);
        QVERIFY(stage.task->Canceled());
    }

    // Life

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
        DownloadAllStage stage;
        stage.duringTransferOf(file, last, [&] { delete stage.owner; });
        QCOMPARE(stage.start().Number, 0);
        QVERIFY(!stage.task);
        QCOMPARE(entriesOf(stage.downloads), QStringList());
        QCOMPARE(stage.unhandled.texts, QStringList());
    }
};

TAVRIN_TEST_MAIN(tst_frmDownloadAllTaskCancel)
#include "tst_frmDownloadAllTaskCancel.moc"
