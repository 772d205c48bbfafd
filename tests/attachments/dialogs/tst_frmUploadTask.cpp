#include "attachments/FolderNotSet.h"
#include "attachments/dialogs/EventWatch.h"
#include "attachments/dialogs/UploadTaskStage.h"
#include "support/NextModal.h"
#include "support/TickingClock.h"
#include "widgets/labels/WrapLabel.h"

#include <QPushButton>

using namespace Qt::StringLiterals;
using namespace tavrin;
using test::EventWatch;
using test::FolderNotSet;
using test::NextModal;
using test::UploadTaskStage;

/// What the dialog of an upload does, file by file.
class tst_frmUploadTask : public test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void theWordsAreAsAPersonKnowsThem()
    {
        const UploadTaskStage stage;
        QCOMPARE(stage.dialog->windowTitle(), u"Uploading attachments..."_s);
        QCOMPARE(stage.strip()->findChild<WrapLabel*>()->Caption(),
                 u"Not all files were uploaded. What do you want to do with the files that could not be "
                 "uploaded?"_s);
        QCOMPARE(stage.part<QPushButton>("cmdRetry")->text(), u"Retry"_s);
        QCOMPARE(stage.part<QPushButton>("cmdSkip")->text(), u"Skip"_s);
    }

    void atFirstOnlyTheFrameShows()
    {
        const UploadTaskStage stage;
        QCOMPARE(stage.dialog->height(), 0);
        QCOMPARE(stage.dialog->width(), 309);
        QCOMPARE(stage.strip()->height(), 93);
        QCOMPARE(stage.shown(), QStringList());
    }

    // The order of work

    void oneFileThatArrivesClosesTheDialogByItself()
    {
        UploadTaskStage stage;
        stage.start(stage.files({u"Report.pdf"_s}));
        QVERIFY(!stage.dialog->isVisible());
        QCOMPARE(stage.unanswered, 0);
        QCOMPARE(stage.dialog->UploadedFiles().size(), 1);
        const UploadedFile file = stage.dialog->UploadedFiles().first();
        QCOMPARE(file.OriginalFilename, u"Report.pdf"_s);
        QVERIFY(file.Filename.endsWith(uR"(\20160201130507_Report.pdf)"_s));
        QCOMPARE(stage.stored(file.Filename), QByteArray("content"));
    }

    void withoutFilesThereIsNoDialog()
    {
        UploadTaskStage stage;
        const NextModal modal([](QWidget&) {});
        stage.start({});
        QVERIFY(!modal.came());
        QVERIFY(!stage.dialog->isVisible());
        QCOMPARE(stage.dialog->UploadedFiles().size(), 0);
    }

    void filesWhoseUploadTellsNoProgressCloseTheDialogToo()
    {
        UploadTaskStage stage;
        stage.host.state().uploadTellsProgress = false;
        stage.start(stage.files({u"a"_s, u"b"_s}));
        QVERIFY(!stage.dialog->isVisible());
        QCOMPARE(stage.unanswered, 0);
        QCOMPARE(stage.uploaded(), QStringList({u"a"_s, u"b"_s}));
    }

    void theDialogIsModalAboveTheOwnersWindow()
    {
        UploadTaskStage stage;
        auto* control = new QWidget(stage.owner);
        bool isModal = false;
        stage.during([&](const QString&) {
            isModal = QApplication::activeModalWidget() == stage.dialog &&
                      stage.dialog->parentWidget() == stage.owner;
        });
        stage.dialog->SetFiles(stage.files({u"a"_s}));
        stage.dialog->Start(control);
        QVERIFY(isModal);
    }

    void filesAreUploadedOneAfterTheOtherEachOnALineOfItsOwn()
    {
        UploadTaskStage stage;
        QStringList seen;
        stage.during([&](const QString& path) {
            const QString step = QFileInfo(path).fileName() + u':' + stage.shown().join(u',');
            if (seen.isEmpty() || seen.last() != step)
                seen << step;
        });
        stage.start(stage.files({u"a"_s, u"b"_s, u"c"_s}));
        QCOMPARE(seen, QStringList({u"a:a"_s, u"b:a,b"_s, u"c:a,b,c"_s}));
        QCOMPARE(stage.uploaded(), QStringList({u"a"_s, u"b"_s, u"c"_s}));
    }

    void threeFilesOfWhichTheSecondFailsAreAllThereAfterARetry()
    {
        UploadTaskStage stage;
        const QStringList paths = stage.files({u"a"_s, u"b"_s, u"c"_s});
        stage.fail({paths[1]});
        QStringList shownAtTheQuestion;
        stage.answer({[&] {
            shownAtTheQuestion = stage.shown();
            stage.host.state().transferFailures.clear();
            stage.click("cmdRetry");
        }});
        stage.start(paths);
        QCOMPARE(shownAtTheQuestion, QStringList({u"b"_s}));
        QCOMPARE(stage.unanswered, 0);
        QVERIFY(!stage.dialog->isVisible());
        QCOMPARE(stage.uploaded(),
                 QStringList({u"a"_s, u"c"_s, u"b"_s})); // the one that was tried again last
        QCOMPARE(stage.calls(u"Upload "_s).size(), 4);
    }

    void theFailedFilesAreTriedAgainInTheirOrderUnderANewStamp()
    {
        UploadTaskStage stage;
        const QStringList paths = stage.files({u"c"_s, u"a"_s, u"x"_s, u"b"_s});
        stage.fail({paths[0], paths[1], paths[3]});
        stage.answer({[&] {
            stage.host.state().transferFailures.clear();
            stage.clock.setNow(QDateTime(QDate(2016, 2, 1), QTime(13, 6, 0)));
            stage.click("cmdRetry");
        }});
        stage.start(paths);
        QStringList names;
        for (const UploadedFile& file : stage.dialog->UploadedFiles())
            names << file.Filename.section(u'\\', -1);
        QCOMPARE(names, QStringList({u"20160201130507_x"_s, u"20160201130600_c"_s, u"20160201130600_a"_s,
                                     u"20160201130600_b"_s}));
    }

    void messagesArePumpedBeforeEachFile()
    {
        UploadTaskStage stage;
        QStringList order;
        std::unique_ptr<Subscription> keep;
        stage.during([&](const QString& path) {
            order << QFileInfo(path).fileName();
            keep = std::make_unique<Subscription>(
                stage.lines().last()->UploadComplete.subscribe([&](const UploadedFile&) {
                    QTimer::singleShot(0, stage.dialog, [&order] { order << u"message"_s; });
                }));
        });
        stage.start(stage.files({u"a"_s, u"b"_s}));
        QCOMPARE(order.first(4), QStringList({u"a"_s, u"a"_s, u"message"_s, u"b"_s}));
    }

    void messagesArePumpedBeforeTheFirstLine()
    {
        UploadTaskStage stage;
        QList<qsizetype> lines;
        // The dialog is moved as its activation begins.
        const EventWatch watch(*stage.dialog, QEvent::Move, [&] {
            QTimer::singleShot(0, stage.dialog, [&] { lines << stage.lines().size(); });
        });
        stage.start(stage.files({u"a"_s}));
        QVERIFY(!lines.isEmpty());
        QCOMPARE(lines.last(), qsizetype(1)); // the hidden one alone
    }

    void aRetryThatFailsAsksAgain()
    {
        UploadTaskStage stage;
        const QStringList paths = stage.files({u"a"_s, u"b"_s});
        stage.fail(paths);
        QStringList questions;
        stage.answer({[&] {
                          questions << stage.shown().join(u',');
                          stage.host.state().transferFailures.remove(paths[0]);
                          stage.click("cmdRetry");
                      },
                      [&] {
                          questions << stage.shown().join(u',');
                          stage.click("cmdSkip");
                      }});
        stage.start(paths);
        QCOMPARE(questions, QStringList({u"a,b"_s, u"b"_s}));
        QCOMPARE(stage.uploaded(), QStringList({u"a"_s}));
    }

    void skipLeavesTheFailedFileOutWithoutAMessage()
    {
        UploadTaskStage stage;
        const QStringList paths = stage.files({u"a"_s, u"b"_s});
        stage.fail({paths[0]});
        stage.answer({[&] { stage.click("cmdSkip"); }});
        stage.start(paths);
        QCOMPARE(stage.uploaded(), QStringList({u"b"_s}));
        QCOMPARE(stage.boxes.texts(), QStringList());
        QCOMPARE(stage.unhandled.texts, QStringList());
        const NextModal modal([](QWidget&) {});
        stage.dialog->Start(stage.owner); // nothing is left of the failed paths
        QVERIFY(!modal.came());
    }

    void theFirstPassUnloadsNothingAndEachPassMakesNewLines()
    {
        UploadTaskStage stage;
        const QPointer<FileUpload> design = stage.lines().first();
        const QStringList paths = stage.files({u"a"_s, u"b"_s});
        stage.fail({paths[1]});
        QList<QPointer<FileUpload>> first;
        stage.answer({[&] {
            for (FileUpload* line : stage.lines())
                first << line;
            stage.host.state().transferFailures.clear();
            stage.click("cmdRetry");
        }});
        stage.start(paths);
        QCOMPARE(first.size(), 3); // the hidden one and two
        QVERIFY(design && first[0] == design);
        QVERIFY(!first[1] && !first[2]);
        QCOMPARE(stage.lines().size(), 2);
        QCOMPARE(stage.calls(u"new Uploader"_s).size(), 1 + 2 + 1);
    }

    void aMissingSettingFailsEachLine()
    {
        UploadTaskStage stage;
        stage.host.state().settings.clear();
        QStringList reasons;
        stage.answer({[&] {
            for (const FileUpload* line : stage.lines()) {
                if (!line->isHidden())
                    reasons << line->findChild<WrapLabel*>(u"lblStatus"_s)->Caption();
            }
            stage.click("cmdSkip");
        }});
        stage.start(stage.files({u"a"_s, u"b"_s}));
        QCOMPARE(reasons, QStringList({FolderNotSet, FolderNotSet}));
        QCOMPARE(stage.dialog->UploadedFiles().size(), 0);
    }

    void threeFilesOfOneNameFromThreeFoldersAllArriveWithoutAQuestion()
    {
        UploadTaskStage stage;
        const test::TickingClock clock;
        QStringList paths;
        for (const auto& folder : {u"one"_s, u"two"_s, u"three"_s}) {
            QVERIFY(QDir(stage.disk.path()).mkdir(folder));
            paths << stage.file(folder + u"/scan.pdf"_s, folder.toUtf8());
        }
        stage.start(paths);
        QCOMPARE(stage.unanswered, 0);
        QCOMPARE(stage.uploaded(), QStringList({u"scan.pdf"_s, u"scan.pdf"_s, u"scan.pdf"_s}));
        QList<QByteArray> contents;
        for (const UploadedFile& file : stage.dialog->UploadedFiles())
            contents << stage.stored(file.Filename);
        QCOMPARE(contents, QList<QByteArray>({"one", "two", "three"}));
    }

    void aFolderAmongTheFilesIsOneFailedLine()
    {
        UploadTaskStage stage;
        QStringList failed;
        stage.answer({[&] {
            failed = stage.shown();
            stage.click("cmdSkip");
        }});
        QVERIFY(QDir(stage.disk.path()).mkdir(u"folder"_s));
        stage.start({stage.file(u"a"_s), stage.disk.filePath(u"folder"_s), stage.file(u"b"_s)});
        QCOMPARE(failed, QStringList({u"folder"_s}));
        QCOMPARE(stage.uploaded(), QStringList({u"a"_s, u"b"_s}));
    }

    void aLaterActivationStartsNothing()
    {
        UploadTaskStage stage;
        const QStringList paths = stage.files({u"a"_s});
        stage.fail(paths);
        stage.answer({[&] {
                          QEvent activation(QEvent::WindowActivate);
                          QApplication::sendEvent(stage.dialog, &activation); // acts at the next turn
                      },
                      [] {}, [] {}, [&] { stage.click("cmdSkip"); }});
        stage.start(paths);
        QCOMPARE(stage.calls(u"Upload "_s).size(), 1);
        QCOMPARE(stage.unanswered, 0);
    }

    // What goes wrong

    void anOwnerThatDiesDuringAnUploadTakesTheDialogWithIt_data()
    {
        QTest::addColumn<bool>("isRetry");
        QTest::newRow("first pass") << false;
        QTest::newRow("retry") << true;
    }
    void anOwnerThatDiesDuringAnUploadTakesTheDialogWithIt()
    {
        QFETCH(bool, isRetry);
        UploadTaskStage stage;
        const QStringList paths = stage.files({u"a"_s, u"b"_s});
        int steps = 0;
        const auto killOwner = [&](const QString&) {
            ++steps;
            QTimer::singleShot(0, stage.owner, [&] { delete stage.owner; });
        };
        if (isRetry) {
            stage.fail(paths);
            stage.answer({[&] {
                stage.host.state().transferFailures.clear();
                stage.during(killOwner);
                stage.click("cmdRetry");
            }});
        } else {
            stage.during(killOwner);
        }
        stage.start(paths);
        QVERIFY(!stage.dialog && !stage.owner);
        QCOMPARE(steps, 1); // no further file is tried
        QVERIFY(QDir(stage.store.path()).isEmpty());
        QCOMPARE(stage.unhandled.texts, QStringList());
    }

    void aFailureOfThePassItselfIsToldAndClosesTheDialogWithWhatHasArrived()
    {
        UploadTaskStage stage;
        const QStringList paths = stage.files({u"a"_s, u"b"_s});
        stage.during([&](const QString&) { stage.host.failWith(Error(u"The host is gone."_s)); });
        stage.start(paths);
        stage.host.failWith({});
        QCOMPARE(stage.unhandled.texts, QStringList({u"Form_Activate: The host is gone."_s}));
        QVERIFY(!stage.dialog->isVisible());
        QCOMPARE(stage.uploaded(), QStringList({u"a"_s}));
        QCOMPARE(stage.dialog->cursor().shape(), Qt::ArrowCursor);
    }
};

TAVRIN_TEST_MAIN(tst_frmUploadTask)
#include "tst_frmUploadTask.moc"
