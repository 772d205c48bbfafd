#include "attachments/FolderNotSet.h"
#include "attachments/dialogs/FileUploadStage.h"

#include <QDir>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

/// What keeps the file of a line from its upload, and what the line says then.
class tst_FileUploadFailures : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aFailedUploadShowsItsReasonAndGoesNoFurther()
    {
        FileUploadStage stage;
        QVERIFY(stage.show());
        const QString path = stage.file(u"a.txt"_s);
        stage.line->SetFile(path);
        stage.fail({path});
        stage.line->Start();
        QCOMPARE(stage.reason(), u"The disk is full."_s);
        QCOMPARE(stage.line->Status(), 3);
        QVERIFY(stage.line->Failed());
        QCOMPARE(stage.icon(), u"error"_s);
        QVERIFY(!stage.bar()->isVisible());
        QCOMPARE(stage.told, QStringList({u"failed %1"_s.arg(path)}));
    }

    void whoIsToldOfAFailureFindsTheLineFailedAndMayDeleteIt()
    {
        FileUploadStage stage;
        const QString path = stage.file(u"a.txt"_s);
        stage.line->SetFile(path);
        stage.fail({path});
        QStringList seen;
        const Subscription keep = stage.line->UploadFailed.subscribe([&](const QString&) {
            seen << QString::number(stage.line->Status()) + stage.icon() + stage.reason();
            delete stage.line.data();
        });
        stage.line->Start();
        QCOMPARE(seen, QStringList{u"3errorThe disk is full."_s});
        QVERIFY(stage.line.isNull());
    }

    void aLongReasonWrapsAndHasLengthenedTheLineWhenTheFailureIsTold()
    {
        FileUploadStage stage;
        QVERIFY(stage.show());
        const QString path = stage.file(u"a.txt"_s);
        stage.line->SetFile(path);
        stage.fail({path}, LongReason);
        int heightWhenTold = 0;
        const Subscription keep = stage.line->UploadFailed.subscribe(
            [&](const QString&) { heightWhenTold = stage.line->height(); });
        stage.line->Start();
        const auto* status = stage.part<WrapLabel>("lblStatus");
        QVERIFY(status->height() >= 3 * status->fontMetrics().height());
        QCOMPARE(stage.line->height(), status->geometry().bottom() + 1 + 8);
        QCOMPARE(heightWhenTold, stage.line->height());
    }

    // Reasons

    void aMissingFolderSettingIsTheLinesFailure()
    {
        FileUploadStage stage;
        stage.host.state().settings.clear();
        stage.line->SetFile(stage.file(u"a.txt"_s));
        stage.line->Start();
        QVERIFY(stage.line->Failed());
        QCOMPARE(stage.reason(), FolderNotSet);
        QCOMPARE(stage.calls(u"Upload"_s), QStringList());
    }

    void aFileThatIsGoneFailsWithTheSystemsOwnWordsBeforeTheUploaderIsAsked()
    {
        FileUploadStage stage;
        stage.line->SetFile(stage.disk.filePath(u"gone.txt"_s));
        stage.line->Start();
        QVERIFY(stage.line->Failed());
        QCOMPARE(stage.reason(), u"No such file or directory"_s);
        QCOMPARE(stage.calls(u"Upload"_s), QStringList());
    }

    void aMissingFileIsToldBeforeAMissingSetting()
    {
        FileUploadStage stage;
        stage.host.state().settings.clear();
        stage.line->SetFile(stage.disk.filePath(u"gone.txt"_s));
        stage.line->Start();
        QCOMPARE(stage.reason(), u"No such file or directory"_s);
    }

    void aFolderFailsWithAReason()
    {
        FileUploadStage stage;
        stage.line->SetFile(stage.disk.path());
        stage.line->Start();
        QVERIFY(stage.line->Failed());
        QCOMPARE(stage.reason(), u"This is a folder. Only files can be attached."_s);
        QCOMPARE(stage.calls(u"Upload"_s), QStringList());
    }

    void aProgressWithZeroBytesInAllIsADivisionByZeroAndFailsTheLine()
    {
        FileUploadStage stage;
        const QString path = stage.file(u"empty.txt"_s, {});
        stage.line->SetFile(path);
        stage.host.state().uploadTotal = 0;
        stage.line->Start();
        QVERIFY(stage.line->Failed());
        QCOMPARE(stage.reason(), u"Division by zero"_s);
        QCOMPARE(stage.told, QStringList({u"failed %1"_s.arg(path)}));
        QVERIFY(QDir(stage.store.path()).isEmpty()); // the uploader has not gone on
    }

    // Another start

    void aStartWithoutAFileHasTakenTheFormerOutcomeAway()
    {
        FileUploadStage stage;
        QVERIFY(stage.show());
        stage.line->SetFile(stage.disk.filePath(u"gone.txt"_s));
        stage.line->Start();
        QCOMPARE(stage.icon(), u"error"_s);
        stage.line->SetFile({});
        QVERIFY_EXCEPTION_THROWN(stage.line->Start(), Error);
        QCOMPARE(stage.icon(), u"file"_s);
        QVERIFY(stage.bar()->isVisible());
        QCOMPARE(stage.reason(), QString());
    }

    void anotherStartTakesTheReasonAwayButNotTheStatusAndMakesANewStoredName()
    {
        FileUploadStage stage;
        QVERIFY(stage.show());
        const QString path = stage.file(u"a.txt"_s);
        stage.line->SetFile(path);
        stage.fail({path});
        stage.line->Start();
        stage.host.state().transferFailures.clear();
        stage.told.clear();
        stage.clock.setNow(QDateTime(QDate(2016, 2, 1), QTime(13, 6, 0)));
        stage.watch([&] {
            return u"%1%2[%3]%4"_s.arg(stage.line->Status())
                .arg(stage.icon(), stage.reason())
                .arg(stage.bar()->isVisible());
        });
        stage.line->Start();
        QCOMPARE(stage.seen, QStringList({u"3file[]1"_s, u"1file[]1"_s})); // 3 at first: it is meant
        QCOMPARE(stage.told.size(), 1);
        QVERIFY2(stage.told.first().endsWith(uR"(\20160201130600_a.txt a.txt)"_s),
                 qPrintable(stage.told.first()));
    }
};

TAVRIN_TEST_MAIN(tst_FileUploadFailures)
#include "tst_FileUploadFailures.moc"
