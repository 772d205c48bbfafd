#include "attachments/dialogs/FileUploadStage.h"
#include "attachments/files/StoredName.h"

#include <QTimer>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

/// The line of one file that is uploaded.
class tst_FileUpload : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aNewLineHasNotStartedAndShowsASheetWithoutAReason()
    {
        const FileUploadStage stage;
        QCOMPARE(stage.line->Status(), 0);
        QVERIFY(!stage.line->Failed());
        QCOMPARE(stage.icon(), u"file"_s);
        QCOMPARE(stage.reason(), QString());
        QCOMPARE(stage.line->Filename(), QString());
        QCOMPARE(stage.bar()->value(), 0);
    }

    void theFileIsKeptAndItsPathShown()
    {
        const FileUploadStage stage;
        stage.line->SetFile(u"/scans/Report & Co.pdf"_s);
        QCOMPARE(stage.line->Filename(), u"/scans/Report & Co.pdf"_s);
        QCOMPARE(stage.part<Label>("lblFilename")->Caption(), u"/scans/Report & Co.pdf"_s);
        QCOMPARE(stage.line->accessibleName(), u"Report & Co.pdf"_s);
    }

    void withoutAFileTheStartRaisesAndIsNoFailureOfTheLine()
    {
        FileUploadStage stage;
        stage.line->show();
        try {
            stage.line->Start();
            QFAIL("no error");
        } catch (const Error& error) {
            QCOMPARE(error.Number, 5);
            QCOMPARE(error.Description, u"attachment not set. Call SetFile first."_s);
        }
        QCOMPARE(stage.told, QStringList());
        QCOMPARE(stage.line->Status(), 0);
        QCOMPARE(stage.reason(), QString());
    }

    // Start

    void aFileArrivesInTheStoreUnderItsStoredName()
    {
        FileUploadStage stage;
        const QString path = stage.file(u"Report.pdf"_s, "the text");
        const QString name = MakeStoredName(path);
        QVERIFY(name.endsWith(uR"(\20160201130507_Report.pdf)"_s));
        stage.line->SetFile(path);
        stage.line->Start();
        QCOMPARE(stage.told, QStringList({u"complete %1 Report.pdf"_s.arg(name)}));
        QCOMPARE(stage.calls(u"Upload"_s),
                 QStringList({u"Upload %1 -> %2\\%3"_s.arg(path, stage.store.path(), name)}));
        QCOMPARE(stage.stored(name), QByteArray("the text"));
        QCOMPARE(stage.line->Status(), 2);
        QVERIFY(!stage.line->Failed());
        QCOMPARE(stage.icon(), u"success"_s);
        QCOMPARE(stage.reason(), QString());
    }

    void aNameWithABackslashIsKeptWholeInTheStoreAndInTheRow()
    {
        FileUploadStage stage;
        const QString path = stage.file(uR"(AC\DC.mp3)"_s);
        stage.line->SetFile(path);
        QCOMPARE(stage.line->accessibleName(), uR"(AC\DC.mp3)"_s);
        stage.line->Start();
        QCOMPARE(stage.told.size(), 1);
        QVERIFY2(stage.told.first().endsWith(uR"(\20160201130507_AC_DC.mp3 AC_DC.mp3)"_s),
                 qPrintable(stage.told.first()));
    }

    void whoIsToldOfTheEndFindsTheLineFinished()
    {
        FileUploadStage stage;
        stage.line->SetFile(stage.file(u"a.txt"_s));
        QStringList seen;
        const Subscription keep = stage.line->UploadComplete.subscribe([&](const UploadedFile&) {
            seen << QString::number(stage.line->Status()) + stage.icon() +
                        stage.line->accessibleDescription();
        });
        stage.line->Start();
        QCOMPARE(seen, QStringList{u"2successUploaded"_s});
    }

    void whoIsToldOfTheEndMayDeleteTheLine()
    {
        FileUploadStage stage;
        stage.line->SetFile(stage.file(u"a.txt"_s));
        const Subscription keep =
            stage.line->UploadComplete.subscribe([&](const UploadedFile&) { delete stage.line.data(); });
        stage.line->Start();
        QVERIFY(stage.line.isNull());
        QCOMPARE(stage.told.size(), 1);
        QVERIFY(stage.told.first().startsWith(u"complete "_s));
    }

    void aLineThatGoesAwayDuringItsUploadTellsNothingAndGivesTheFileUp()
    {
        FileUploadStage stage;
        stage.line->SetFile(stage.file(u"a.txt"_s));
        int steps = 0;
        stage.host.state().duringTransfer = [&](const QString&, qint64, qint64) {
            ++steps;
            QTimer::singleShot(0, &stage.window, [&stage] { delete stage.line; });
        };
        stage.line->Start();
        QVERIFY(!stage.line);
        QCOMPARE(steps, 1);
        QCOMPARE(stage.told, QStringList());
        QVERIFY(QDir(stage.store.path()).isEmpty());
    }

    // Progress

    void theStatusIsUploadingFromTheFirstProgressOn()
    {
        FileUploadStage stage;
        stage.line->SetFile(stage.file(u"a.txt"_s));
        stage.watch([&] { return QString::number(stage.line->Status()) + stage.icon(); });
        stage.line->Start();
        QCOMPARE(stage.seen, QStringList({u"0file"_s, u"1file"_s}));
    }

    void anUploadWithoutProgressEventsArrivesToo()
    {
        FileUploadStage stage;
        QVERIFY(stage.show());
        stage.host.state().uploadTellsProgress = false;
        stage.line->SetFile(stage.file(u"a.txt"_s));
        stage.watch([&] { return QString::number(stage.line->Status()) + stage.icon(); });
        stage.line->Start();
        QCOMPARE(stage.seen, QStringList({u"0file"_s, u"0file"_s}));
        QCOMPARE(stage.told.size(), 1);
        QVERIFY(stage.told.first().startsWith(u"complete "_s));
        QCOMPARE(stage.line->Status(), 2);
        QCOMPARE(stage.icon(), u"success"_s);
        QVERIFY(stage.bar()->isVisible());
        QCOMPARE(stage.bar()->value(), 0); // it stays as it is
    }

    void theBarShowsTheIntegerPartOfThePercentage()
    {
        FileUploadStage stage;
        stage.line->SetFile(stage.file(u"a.txt"_s));
        stage.host.state().uploadTotal = 3; // one of three, then all
        stage.watch([&] { return QString::number(stage.bar()->value()); });
        stage.line->Start();
        QCOMPARE(stage.seen, QStringList({u"0"_s, u"33"_s}));
        QCOMPARE(stage.bar()->value(), 100);
    }

    void aPercentageOfAFileOfTerabytesIsRight()
    {
        FileUploadStage stage;
        stage.line->SetFile(stage.file(u"a.txt"_s));
        stage.host.state().uploadTotal = qint64(40) << 40;
        stage.watch([&] { return QString::number(stage.bar()->value()); });
        stage.line->Start();
        QCOMPARE(stage.seen, QStringList({u"0"_s, u"50"_s}));
    }

    void theBarStaysAsItIsAtTheEnd()
    {
        FileUploadStage stage;
        QVERIFY(stage.show());
        stage.line->SetFile(stage.file(u"a.txt"_s));
        stage.line->Start();
        QVERIFY(stage.bar()->isVisible());
        QCOMPARE(stage.bar()->value(), 100);
    }

    void messagesArePumpedAtEachProgress()
    {
        FileUploadStage stage;
        stage.line->SetFile(stage.file(u"a.txt"_s));
        QStringList order;
        stage.host.state().duringTransfer = [&](const QString&, qint64, qint64) {
            order << u"step"_s;
            QTimer::singleShot(0, &stage.window, [&order] { order << u"message"_s; });
        };
        stage.line->Start();
        QCOMPARE(order, QStringList({u"step"_s, u"message"_s, u"step"_s, u"message"_s}));
    }
};

TAVRIN_TEST_MAIN(tst_FileUpload)
#include "tst_FileUpload.moc"
