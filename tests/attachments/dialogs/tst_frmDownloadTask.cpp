#include "attachments/dialogs/DownloadStage.h"
#include "attachments/dialogs/frmDownloadTask.h"

using namespace Qt::StringLiterals;
using namespace tavrin;
using tavrin::test::contentOf;
using tavrin::test::DownloadStage;
using tavrin::test::errorOf;

namespace {

struct Stage : DownloadStage
{
    Stage()
    {
        add(u"a.pdf"_s, QByteArray(100, 'a'));
        task->SetFilename(stored(u"a.pdf"_s));
    }
    ~Stage() { delete task; }
    Error start()
    {
        return errorOf([this] { task->Start(owner); });
    }

    QPointer<frmDownloadTask> task = new frmDownloadTask;
    Label* lblStatus = part<Label>(task, "lblStatus");
    QProgressBar* bar = part<QProgressBar>(task, "ProgressBar");
    TextLink* link = part<TextLink>(task, "lnkCancel");
};

/// A downloader that does what a test says.
struct OddDownloader final : Downloader
{
    explicit OddDownloader(std::function<QString(OddDownloader&)> download)
        : m_download(std::move(download))
    {
    }
    void SetBufferSize(qint32) override {}
    QString Download(const QString&) override { return m_download(*this); }
    void Cancel() override { ++cancels; }

    int cancels = 0;

private:
    std::function<QString(OddDownloader&)> m_download;
};

} // namespace

class tst_frmDownloadTask : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void thePartsStandAtTheirPlacesWithTheirCaptions()
    {
        const Stage stage;
        QCOMPARE(stage.task->windowTitle(), u"Downloading attachment..."_s);
        QCOMPARE(stage.lblStatus->pos(), QPoint(20, 32));
        QCOMPARE(stage.lblStatus->Caption(), u"Downloading..."_s);
        QVERIFY(stage.lblStatus->AutoSize());
        QCOMPARE(stage.bar->geometry(), QRect(20, 52, 261, 9));
        QCOMPARE(stage.bar->value(), 0);
        QCOMPARE(stage.link->pos(), QPoint(136, 88));
        QVERIFY(stage.link->width() >= 36 && stage.link->height() >= 15);
        QCOMPARE(stage.link->Caption(), u"Cancel"_s);
        QVERIFY(stage.task->rect().contains(stage.link->geometry()));
    }

    void withoutAFilenameTheStartIsRefused_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("empty") << QString();
        QTest::newRow("blanks") << u"   "_s;
    }
    void withoutAFilenameTheStartIsRefused()
    {
        QFETCH(QString, name);
        Stage stage;
        stage.task->SetFilename(name);
        const Error error = stage.start();
        QCOMPARE(error.Number, 5);
        QCOMPARE(error.Description, u"Error starting download task: Filename not set."_s);
        QCOMPARE(stage.transferLog(), QStringList());
    }

    void theFileIsFetchedThroughABufferOfOneMebibyte()
    {
        Stage stage;
        QString early = u"-"_s;
        bool wasModal = false;
        stage.duringTransferOf(u"a.pdf"_s, true, [&] {
            early = stage.task->DownloadedFilename();
            wasModal = stage.task->isModal() && stage.task->isVisible();
        });
        QCOMPARE(stage.start().Number, 0);
        QVERIFY(stage.host.state().log.contains(u"SetBufferSize 1048576"_s));
        QCOMPARE(stage.transferLog(), QStringList{u"Download a.pdf"_s});
        QCOMPARE(early, QString()); // until the download has ended
        QVERIFY(wasModal);
        QCOMPARE(contentOf(stage.task->DownloadedFilename()), QByteArray(100, 'a'));
        QVERIFY(!stage.task->Canceled());
        QVERIFY(!stage.task->isVisible());
        QCOMPARE(stage.unhandled.texts, QStringList());
    }

    void progressShowsThePercent()
    {
        Stage stage;
        stage.add(u"b.pdf"_s, QByteArray(17, 'b'));
        stage.task->SetFilename(stage.stored(u"b.pdf"_s));
        QStringList seen;
        stage.host.state().duringTransfer = [&](const QString&, qint64, qint64) {
            QTimer::singleShot(0, qApp, [&] {
                seen << stage.lblStatus->Caption() + u' ' + QString::number(stage.bar->value());
            });
        };
        QCOMPARE(stage.start().Number, 0);
        // 8 of 17 bytes are 47.06 %
        QCOMPARE(seen, QStringList(
                           {u"Downloading... (47% complete) 47"_s, u"Downloading... (100% complete) 100"_s}));
    }

    void anEmptyFileIsFetchedWithoutADivisionByItsLength()
    {
        Stage stage;
        stage.host.state().makeDownloader = [] {
            return std::make_unique<OddDownloader>([](OddDownloader& self) {
                self.DownloadProgress.raise(u"x"_s, 0, 0);
                self.DownloadComplete.raise(u"x"_s, false);
                return u"/tmp/x"_s;
            });
        };
        QCOMPARE(stage.start().Number, 0);
        QCOMPARE(stage.bar->value(), 100);
        QCOMPARE(stage.task->DownloadedFilename(), u"/tmp/x"_s);
    }

    void aFailureIsKeptAndRaisedPastTheWordsOfTheStart()
    {
        Stage stage;
        stage.host.state().transferFailures.insert(stage.stored(u"a.pdf"_s), u"The store is gone."_s);
        const Error error = stage.start();
        QCOMPARE(error.Number, 5);
        QCOMPARE(error.Description, u"The store is gone."_s);
        QVERIFY(!stage.task->isVisible());
        QVERIFY(!stage.task->Canceled());
        QCOMPARE(stage.task->DownloadedFilename(), QString());
        QCOMPARE(stage.unhandled.texts, QStringList());
    }

    void aFailureWithoutWordsIsNoSuccess()
    {
        Stage stage;
        stage.host.failWith(Error(QString()));
        QCOMPARE(stage.start().Description, u"The download failed."_s);
        QVERIFY(!stage.task->isVisible());
    }

    void whateverClosesTheDialogCancels_data()
    {
        QTest::addColumn<QString>("way");
        for (const QString& way : tavrin::test::waysToCancel().keys())
            QTest::newRow(qPrintable(way)) << way;
    }
    void whateverClosesTheDialogCancels()
    {
        QFETCH(QString, way);
        Stage stage;
        bool stayed = false;
        QString caption;
        stage.duringTransferOf(u"a.pdf"_s, false, [&] {
            const auto cancel = tavrin::test::waysToCancel().value(way);
            cancel(stage.task);
            stayed = stage.task->isVisible(); // until the download has ended
            caption = stage.link->Caption();
            cancel(stage.task); // a second time does nothing more
        });
        QCOMPARE(stage.start().Number, 0); // cancelled is no failure
        QVERIFY(stayed);
        QCOMPARE(caption, u"Canceling..."_s);
        QVERIFY(!stage.link->isEnabled());
        QCOMPARE(stage.transferLog(), QStringList({u"Download a.pdf"_s, u"Cancel"_s}));
        QVERIFY(stage.task->Canceled());
        QVERIFY(!stage.task->isVisible());
        QCOMPARE(stage.unhandled.texts, QStringList());
    }

    void aCancelBeforeTheDownloadBeginsFetchesNothing()
    {
        Stage stage;
        QTimer::singleShot(0, stage.task, [&] { stage.task->close(); }); // comes before the activation
        QCOMPARE(stage.start().Number, 0);
        QVERIFY(stage.task->Canceled());
        QCOMPARE(stage.transferLog(), QStringList());
        QVERIFY(!stage.task->isVisible());
    }

    void onlyTheEventTellsWhetherTheDownloadWasCancelled()
    {
        Stage stage;
        // Behind its last bytes a download is complete, whatever the person still presses.
        stage.host.state().makeDownloader = [&] {
            return std::make_unique<OddDownloader>([&](OddDownloader& self) {
                QTimer::singleShot(0, qApp, [&] { stage.task->close(); });
                self.DownloadProgress.raise(u"x"_s, 1, 1);
                self.DownloadComplete.raise(u"x"_s, false);
                return u"/tmp/x"_s;
            });
        };
        QCOMPARE(stage.start().Number, 0);
        QVERIFY(!stage.task->Canceled());
        QCOMPARE(stage.task->DownloadedFilename(), u"/tmp/x"_s);
    }

    void aDownloadThatReturnsWithoutItsEventHangsNobody_data()
    {
        QTest::addColumn<bool>("cancelled");
        QTest::newRow("complete") << false;
        QTest::newRow("cancelled") << true;
    }
    void aDownloadThatReturnsWithoutItsEventHangsNobody()
    {
        QFETCH(bool, cancelled);
        Stage stage;
        stage.host.state().makeDownloader = [&] {
            return std::make_unique<OddDownloader>([&](OddDownloader& self) {
                if (cancelled)
                    QTimer::singleShot(0, qApp, [&] { stage.task->close(); });
                self.DownloadProgress.raise(u"x"_s, 1, 2);
                return u"/tmp/x"_s;
            });
        };
        QCOMPARE(stage.start().Number, 0);
        QVERIFY(!stage.task->isVisible());
        QCOMPARE(stage.task->Canceled(), cancelled);
        QCOMPARE(stage.task->DownloadedFilename(), u"/tmp/x"_s);
    }

    void aLaterActivationStartsNothing()
    {
        Stage stage;
        stage.duringTransferOf(u"a.pdf"_s, false, [&] {
            QEvent again(QEvent::WindowActivate);
            QApplication::sendEvent(stage.task, &again);
        });
        QCOMPARE(stage.start().Number, 0);
        stage.task->show();
        stage.task->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(stage.task));
        bool isPast = false;
        QTimer::singleShot(0, stage.task, [&] { isPast = true; }); // behind the queued activation
        QTRY_VERIFY(isPast);
        QCOMPARE(stage.transferLog(), QStringList{u"Download a.pdf"_s});
        QVERIFY(stage.task->close()); // nothing is under way, so it closes like any window
    }

    void aDialogServesOneDownload()
    {
        Stage stage;
        QCOMPARE(stage.start().Number, 0);
        QCOMPARE(stage.start().Description,
                 u"Error starting download task: The download was started before."_s);
        QVERIFY(!stage.task->isVisible());
        QCOMPARE(stage.transferLog(), QStringList{u"Download a.pdf"_s});
    }

    void aSecondEnterOfSomebodyInHasteDoesNotCancel()
    {
        Stage stage;
        stage.duringTransferOf(u"a.pdf"_s, false,
                               [&] { QTest::keyClick(stage.task->windowHandle(), Qt::Key_Return); });
        QCOMPARE(stage.start().Number, 0);
        QVERIFY(!stage.task->Canceled());
        QCOMPARE(stage.transferLog(), QStringList{u"Download a.pdf"_s});
    }

    void theWindowBelowMayDieInTheMiddleOfTheDownload()
    {
        Stage stage;
        int steps = 0;
        stage.host.state().duringTransfer = [&](const QString&, qint64, qint64) {
            ++steps;
            QTimer::singleShot(0, qApp, [&] { delete stage.owner; });
        };
        QCOMPARE(stage.start().Number, 0);
        QVERIFY(!stage.task);
        QCOMPARE(steps, 1); // nobody waits for the rest of the file
        QCOMPARE(stage.unhandled.texts, QStringList());
    }

    void theDialogItselfMayDieInTheMiddleOfTheDownload()
    {
        Stage stage;
        stage.duringTransferOf(u"a.pdf"_s, false, [&] { delete stage.task; });
        QCOMPARE(stage.start().Number, 0);
        QVERIFY(!stage.task);
        QCOMPARE(stage.unhandled.texts, QStringList());
    }
};

TAVRIN_TEST_MAIN(tst_frmDownloadTask)
#include "tst_frmDownloadTask.moc"
