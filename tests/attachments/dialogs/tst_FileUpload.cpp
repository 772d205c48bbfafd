#include "attachments/FolderNotSet.h"
#include "attachments/dialogs/FileUpload.h"
#include "attachments/dialogs/TransferBar.h"
#include "attachments/dialogs/UploadIcon.h"
#include "attachments/dialogs/UploadStage.h"
#include "attachments/files/StoredName.h"
#include "support/Looks.h"
#include "support/TestCase.h"
#include "widgets/labels/Label.h"
#include "widgets/labels/WrapLabel.h"

#include <QAccessible>
#include <QApplication>
#include <QPointer>
#include <QScopeGuard>
#include <QTimer>

using namespace Qt::StringLiterals;
using namespace tavrin;
using test::FolderNotSet;
using test::LongReason;

namespace {

/// A line on a window, and what it tells.
struct Stage : test::UploadStage
{
    Stage()
    {
        window.resize(400, 300);
        line = new FileUpload(&window);
        complete = line->UploadComplete.subscribe([this](const UploadedFile& file) {
            told << u"complete %1 %2"_s.arg(file.Filename, file.OriginalFilename);
        });
        failed =
            line->UploadFailed.subscribe([this](const QString& path) { told << u"failed %1"_s.arg(path); });
    }
    bool show()
    {
        window.show();
        return QTest::qWaitForWindowExposed(&window);
    }
    /// Notes what `state` says before each step of the copy.
    void watch(const std::function<QString()>& state)
    {
        host.state().duringTransfer = [this, state](const QString&, qint64, qint64) { seen << state(); };
    }
    template <typename Widget>
    Widget* part(const char* name) const
    {
        return line->findChild<Widget*>(QString::fromLatin1(name));
    }
    QString reason() const { return part<WrapLabel>("lblStatus")->Caption(); }
    QString icon() const { return part<UploadIcon>("imgIcon")->Key(); }
    TransferBar* bar() const { return part<TransferBar>("ProgressBar"); }

    QWidget window;
    QPointer<FileUpload> line;
    Subscription complete;
    Subscription failed;
    QStringList told;
    QStringList seen;
};

} // namespace

class tst_FileUpload : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void thePartsStandAtTheirPlaces()
    {
        const Stage stage;
        QCOMPARE(stage.line->size(), QSize(309, 49));
        QCOMPARE(stage.part<QWidget>("imgIcon")->geometry(), QRect(8, 16, 20, 20));
        QCOMPARE(stage.part<QWidget>("lblFilename")->pos(), QPoint(40, 12));
        QCOMPARE(stage.bar()->geometry(), QRect(40, 32, 229, 9));
        QCOMPARE(stage.part<QWidget>("lblStatus")->pos(), QPoint(40, 32));
        QCOMPARE(stage.part<QWidget>("lblStatus")->width(), 228);
        QCOMPARE(stage.part<Label>("lblFilename")->Caption(), u"..."_s);
    }

    void aNewLineHasNotStartedAndShowsASheetWithoutAReason()
    {
        const Stage stage;
        QCOMPARE(stage.line->Status(), 0);
        QVERIFY(!stage.line->Failed());
        QCOMPARE(stage.icon(), u"file"_s);
        QCOMPARE(stage.reason(), QString());
        QCOMPARE(stage.line->Filename(), QString());
        QCOMPARE(stage.bar()->value(), 0);
    }

    void theFileIsKeptAndItsPathShown()
    {
        const Stage stage;
        stage.line->SetFile(u"/scans/Report & Co.pdf"_s);
        QCOMPARE(stage.line->Filename(), u"/scans/Report & Co.pdf"_s);
        QCOMPARE(stage.part<Label>("lblFilename")->Caption(), u"/scans/Report & Co.pdf"_s);
        QCOMPARE(stage.line->accessibleName(), u"Report & Co.pdf"_s);
    }

    void aLongPathEndsWhereTheBarEndsAndStandsWholeInTheToolTip()
    {
        const Stage stage;
        const QString path = u"/"_s + QString(200, u'W') + u"/Report.pdf"_s;
        stage.line->SetFile(path);
        const auto* label = stage.part<Label>("lblFilename");
        QCOMPARE(label->geometry().right(), stage.bar()->geometry().right());
        QCOMPARE(label->toolTip(), path);
        stage.line->SetFile(u"a"_s);
        QVERIFY(label->width() < 40);
        QCOMPARE(label->toolTip(), QString());
    }

    // Start

    void aFileArrivesInTheStoreUnderItsStoredName()
    {
        Stage stage;
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
        Stage stage;
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
        Stage stage;
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
        Stage stage;
        stage.line->SetFile(stage.file(u"a.txt"_s));
        const Subscription keep =
            stage.line->UploadComplete.subscribe([&](const UploadedFile&) { delete stage.line.data(); });
        stage.line->Start();
        QVERIFY(stage.line.isNull());
        QCOMPARE(stage.told.size(), 1);
        QVERIFY(stage.told.first().startsWith(u"complete "_s));
    }

    void whoIsToldOfAFailureFindsTheLineFailedAndMayDeleteIt()
    {
        Stage stage;
        const QString path = stage.file(u"a.txt"_s);
        stage.line->SetFile(path);
        stage.host.state().transferFailures.insert(path, u"The disk is full."_s);
        QStringList seen;
        const Subscription keep = stage.line->UploadFailed.subscribe([&](const QString&) {
            seen << QString::number(stage.line->Status()) + stage.icon() + stage.reason();
            delete stage.line.data();
        });
        stage.line->Start();
        QCOMPARE(seen, QStringList{u"3errorThe disk is full."_s});
        QVERIFY(stage.line.isNull());
    }

    void theBarStaysAsItIsAtTheEnd()
    {
        Stage stage;
        QVERIFY(stage.show());
        stage.line->SetFile(stage.file(u"a.txt"_s));
        stage.line->Start();
        QVERIFY(stage.bar()->isVisible());
        QCOMPARE(stage.bar()->value(), 100);
    }

    void theStatusIsUploadingFromTheFirstProgressOn()
    {
        Stage stage;
        stage.line->SetFile(stage.file(u"a.txt"_s));
        stage.watch([&] { return QString::number(stage.line->Status()) + stage.icon(); });
        stage.line->Start();
        QCOMPARE(stage.seen, QStringList({u"0file"_s, u"1file"_s}));
    }

    void anUploadWithoutProgressEventsArrivesToo()
    {
        Stage stage;
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
        Stage stage;
        stage.line->SetFile(stage.file(u"a.txt"_s));
        stage.host.state().uploadTotal = 3; // one of three, then all
        stage.watch([&] { return QString::number(stage.bar()->value()); });
        stage.line->Start();
        QCOMPARE(stage.seen, QStringList({u"0"_s, u"33"_s}));
        QCOMPARE(stage.bar()->value(), 100);
    }

    void aPercentageOfAFileOfTerabytesIsRight()
    {
        Stage stage;
        stage.line->SetFile(stage.file(u"a.txt"_s));
        stage.host.state().uploadTotal = qint64(40) << 40;
        stage.watch([&] { return QString::number(stage.bar()->value()); });
        stage.line->Start();
        QCOMPARE(stage.seen, QStringList({u"0"_s, u"50"_s}));
    }

    void messagesArePumpedAtEachProgress()
    {
        Stage stage;
        stage.line->SetFile(stage.file(u"a.txt"_s));
        QStringList order;
        stage.host.state().duringTransfer = [&](const QString&, qint64, qint64) {
            order << u"step"_s;
            QTimer::singleShot(0, &stage.window, [&order] { order << u"message"_s; });
        };
        stage.line->Start();
        QCOMPARE(order, QStringList({u"step"_s, u"message"_s, u"step"_s, u"message"_s}));
    }

    void withoutAFileTheStartRaisesAndIsNoFailureOfTheLine()
    {
        Stage stage;
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

    // Failures

    void aFailedUploadShowsItsReasonAndGoesNoFurther()
    {
        Stage stage;
        QVERIFY(stage.show());
        const QString path = stage.file(u"a.txt"_s);
        stage.line->SetFile(path);
        stage.host.state().transferFailures.insert(path, u"The disk is full."_s);
        stage.line->Start();
        QCOMPARE(stage.reason(), u"The disk is full."_s);
        QCOMPARE(stage.line->Status(), 3);
        QVERIFY(stage.line->Failed());
        QCOMPARE(stage.icon(), u"error"_s);
        QVERIFY(!stage.bar()->isVisible());
        QCOMPARE(stage.told, QStringList({u"failed %1"_s.arg(path)}));
    }

    void aLongReasonWrapsAndHasLengthenedTheLineWhenTheFailureIsTold()
    {
        Stage stage;
        QVERIFY(stage.show());
        const QString path = stage.file(u"a.txt"_s);
        stage.line->SetFile(path);
        stage.host.state().transferFailures.insert(path, LongReason);
        int heightWhenTold = 0;
        const Subscription keep = stage.line->UploadFailed.subscribe(
            [&](const QString&) { heightWhenTold = stage.line->height(); });
        stage.line->Start();
        const auto* status = stage.part<WrapLabel>("lblStatus");
        QVERIFY(status->height() >= 3 * status->fontMetrics().height());
        QCOMPARE(stage.line->height(), status->geometry().bottom() + 1 + 8);
        QCOMPARE(heightWhenTold, stage.line->height());
    }

    void aMissingFolderSettingIsTheLinesFailure()
    {
        Stage stage;
        stage.host.state().settings.clear();
        stage.line->SetFile(stage.file(u"a.txt"_s));
        stage.line->Start();
        QVERIFY(stage.line->Failed());
        QCOMPARE(stage.reason(), FolderNotSet);
        QCOMPARE(stage.calls(u"Upload"_s), QStringList());
    }

    void aFileThatIsGoneFailsWithTheSystemsOwnWordsBeforeTheUploaderIsAsked()
    {
        Stage stage;
        stage.line->SetFile(stage.disk.filePath(u"gone.txt"_s));
        stage.line->Start();
        QVERIFY(stage.line->Failed());
        QCOMPARE(stage.reason(), u"No such file or directory"_s);
        QCOMPARE(stage.calls(u"Upload"_s), QStringList());
    }

    void aMissingFileIsToldBeforeAMissingSetting()
    {
        Stage stage;
        stage.host.state().settings.clear();
        stage.line->SetFile(stage.disk.filePath(u"gone.txt"_s));
        stage.line->Start();
        QCOMPARE(stage.reason(), u"No such file or directory"_s);
    }

    void aStartWithoutAFileHasTakenTheFormerOutcomeAway()
    {
        Stage stage;
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

    void aFolderFailsWithAReason()
    {
        Stage stage;
        stage.line->SetFile(stage.disk.path());
        stage.line->Start();
        QVERIFY(stage.line->Failed());
        QCOMPARE(stage.reason(), u"This is a folder. Only files can be attached."_s);
        QCOMPARE(stage.calls(u"Upload"_s), QStringList());
    }

    void aProgressWithZeroBytesInAllIsADivisionByZeroAndFailsTheLine()
    {
        Stage stage;
        const QString path = stage.file(u"empty.txt"_s, {});
        stage.line->SetFile(path);
        stage.host.state().uploadTotal = 0;
        stage.line->Start();
        QVERIFY(stage.line->Failed());
        QCOMPARE(stage.reason(), u"Division by zero"_s);
        QCOMPARE(stage.told, QStringList({u"failed %1"_s.arg(path)}));
        QVERIFY(QDir(stage.store.path()).isEmpty()); // the uploader has not gone on
    }

    void anotherStartTakesTheReasonAwayButNotTheStatusAndMakesANewStoredName()
    {
        Stage stage;
        QVERIFY(stage.show());
        const QString path = stage.file(u"a.txt"_s);
        stage.line->SetFile(path);
        stage.host.state().transferFailures.insert(path, u"The disk is full."_s);
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

    void aLineThatGoesAwayDuringItsUploadTellsNothingAndGivesTheFileUp()
    {
        Stage stage;
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

    // Layout

    void theBarAndTheReasonFollowTheWidthAndTheHeightFollowsWhatShows()
    {
        Stage stage;
        QVERIFY(stage.show());
        stage.line->resize(380, 200);
        QCOMPARE(stage.bar()->geometry(), QRect(40, 32, 300, 9));
        QCOMPARE(stage.part<QWidget>("lblStatus")->width(), 300);
        QCOMPARE(stage.line->height(), 32 + 9 + 8); // without a reason the bar ends the line
        const QString path = stage.file(u"a.txt"_s);
        stage.line->SetFile(path);
        stage.host.state().transferFailures.insert(path, LongReason);
        stage.line->Start();
        const int wide = stage.line->height();
        stage.line->resize(200, wide);
        QCOMPARE(stage.part<QWidget>("lblStatus")->width(), 120);
        QVERIFY(stage.line->height() > wide);
    }

    void aLargerFontMovesTheBarBelowTheName_data()
    {
        QTest::addColumn<int>("points");
        QTest::newRow("14 points") << 14;
        QTest::newRow("18 points") << 18;
    }
    void aLargerFontMovesTheBarBelowTheName()
    {
        QFETCH(int, points);
        const QFont before = QApplication::font();
        const auto restore = qScopeGuard([&before] { QApplication::setFont(before); });
        QFont large = before;
        large.setPointSize(points);
        QApplication::setFont(large);
        Stage stage;
        const QString path = stage.file(u"Report.pdf"_s);
        stage.line->SetFile(path);
        const auto* name = stage.part<Label>("lblFilename");
        const auto* status = stage.part<WrapLabel>("lblStatus");
        QVERIFY(name->height() >= name->fontMetrics().height());
        QVERIFY(name->height() > 20); // else the font has not come
        QVERIFY(stage.bar()->y() > name->geometry().bottom());
        QCOMPARE(stage.line->height(), stage.bar()->geometry().bottom() + 1 + 8);
        QVERIFY(stage.show());
        stage.host.state().transferFailures.insert(path, LongReason);
        stage.line->Start();
        QCOMPARE(name->pos(), QPoint(40, 12));
        QVERIFY(status->y() > name->geometry().bottom());
        QCOMPARE(status->y(), stage.bar()->y());
        QCOMPARE(stage.line->height(), status->geometry().bottom() + 1 + 8);
    }

    void lineBreaksInANameAreShownAsBlanksOnOneLine()
    {
        const Stage stage;
        stage.line->SetFile(u"/a.pdf"_s);
        const auto* name = stage.part<Label>("lblFilename");
        const QRect oneLine = name->geometry();
        const QString path = u"/a\nb\rc"_s + QChar(QChar::LineSeparator) + u"d"_s +
                             QChar(QChar::ParagraphSeparator) + u"e.pdf"_s;
        stage.line->SetFile(path);
        QCOMPARE(stage.line->Filename(), path);
        QCOMPARE(name->Caption(), u"/a b c d e.pdf"_s);
        QCOMPARE(name->height(), oneLine.height());
        QVERIFY(name->geometry().bottom() < stage.bar()->y());
    }

    void aLineWithoutRoomIsNoFailure()
    {
        Stage stage;
        QVERIFY(stage.show());
        stage.line->resize(10, 10);
        QCOMPARE(stage.bar()->width(), 0);
    }

    // What eyes and screen readers get

    void screenReadersAreToldOfTheStatus()
    {
        Stage stage;
        const QString path = stage.file(u"a.txt"_s);
        stage.line->SetFile(path);
        const auto words = [&] { return stage.line->accessibleDescription(); };
        const auto iconName = [&] { return stage.part<UploadIcon>("imgIcon")->accessibleName(); };
        QCOMPARE(words(), u"Not started"_s);
        QCOMPARE(iconName(), u"File"_s);
        stage.watch(words);
        stage.line->Start();
        QCOMPARE(stage.seen, QStringList({u"Not started"_s, u"Uploading"_s}));
        QCOMPARE(words(), u"Uploaded"_s);
        QCOMPARE(iconName(), u"Uploaded"_s);
        stage.host.state().transferFailures.insert(path, u"The disk is full."_s);
        stage.line->Start();
        QCOMPARE(words(), u"Failed: The disk is full."_s);
        QCOMPARE(iconName(), u"Failed"_s);
        QCOMPARE(QAccessible::queryAccessibleInterface(stage.line)->role(), QAccessible::Grouping);
    }

    void theSignsDifferAndAnUnknownKeyIsAnError()
    {
        UploadIcon icon;
        icon.resize(20, 20);
        QList<QImage> pictures;
        for (const auto& key : {u"file"_s, u"success"_s, u"error"_s}) {
            icon.SetKey(key);
            const QImage picture = test::imageOf(icon);
            QVERIFY2(!pictures.contains(picture), qPrintable(key));
            pictures << picture;
        }
        QVERIFY_EXCEPTION_THROWN(icon.SetKey(u"other"_s), Error);
        QCOMPARE(icon.Key(), u"error"_s);
    }

    void theBarIsFilledByItsShare()
    {
        TransferBar bar;
        bar.resize(200, 9);
        bar.setValue(25);
        const QImage image = test::imageOf(bar);
        const QColor filled = bar.palette().color(QPalette::Highlight);
        QCOMPARE(image.pixelColor(30, 4), filled);
        QCOMPARE(image.pixelColor(48, 4), filled);
        QVERIFY(image.pixelColor(52, 4) != filled);
        QVERIFY(image.pixelColor(190, 4) != filled);
    }
};

TAVRIN_TEST_MAIN(tst_FileUpload)
#include "tst_FileUpload.moc"
