#include "attachments/AttachmentRows.h"
#include "attachments/section/CoverImage.h"
#include "component/ClassRegister.h"
#include "support/FakeDesktop.h"
#include "support/FakeHost.h"
#include "support/OtherDensity.h"
#include "support/TestCase.h"
#include "support/Unhandled.h"
#include "widgets/labels/Label.h"

#include <QAccessible>
#include <QApplication>

#include <optional>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

const QColor Red = Qt::red;
const QColor Blue = Qt::blue;

} // namespace

class tst_CoverImage : public tavrin::test::TestCase
{
    Q_OBJECT

private:
    /// A form with the control on it, and a record whose rows have colours for pictures.
    struct Stage
    {
        Stage()
            : control(new CoverImage(&window))
        {
            host.state().settings.insert(u"_Global/Attachments Folder"_s, u"/store"_s);
            record->setItem(u"Attachments"_s, rows);
            window.resize(300, 300);
            control->setGeometry(10, 10, 120, 150);
        }

        void show()
        {
            window.show();
            QVERIFY(QTest::qWaitForWindowExposed(&window));
        }
        void read() const { static_cast<BoundSection*>(control)->ReadData(record); }
        void add(int seqNo, const QString& fileName, const std::optional<QColor>& color = {})
        {
            const tvTableRowPtr row = rows->AddNew();
            put(*row, {{"SeqNo", seqNo}, {"FileName", fileName}, {"OriginalFileName", fileName}});
            if (!color)
                return;
            host.state().thumbnails.insert(uR"(/store\)"_s + fileName,
                                           pictureFile(folder, qPrintable(fileName + u".png"_s), *color));
        }
        QWidget& noImage() const { return *control->findChild<QWidget*>(u"picNoImage"_s); }
        QColor middle() const { return control->grab().toImage().pixelColor(60, 75); }
        int downloads() { return static_cast<int>(host.state().log.filter(u"Download "_s).size()); }
        QStringList takeLog() { return std::exchange(host.state().log, {}); }
        /// Does something in the middle of the next fetch only.
        void meanwhile(std::function<void()> act)
        {
            host.state().duringTransfer = [act = std::move(act), done = false](const QString&, qint64,
                                                                               qint64) mutable {
                if (!std::exchange(done, true))
                    act();
            };
        }

        QTemporaryDir folder;
        FakeHost host;
        HostInstallation installation{host};
        FakeMessageBoxes boxes;
        Unhandled unhandled;
        std::shared_ptr<FakeRecord> record = std::make_shared<FakeRecord>();
        std::shared_ptr<FakeCollection> rows = std::make_shared<FakeCollection>(attachmentColumns());
        QWidget window;
        CoverImage* control;
    };

    static void verifyCover(Stage& stage, const QColor& color)
    {
        QVERIFY(!stage.noImage().isVisible());
        QCOMPARE(stage.middle(), color);
        QVERIFY(stage.boxes.shown().isEmpty());
        QCOMPARE(stage.unhandled.texts, QStringList());
    }
    static void verifyNoCover(Stage& stage)
    {
        QVERIFY(stage.noImage().isVisible());
        QVERIFY(stage.middle() != Red && stage.middle() != Blue);
        QVERIFY(stage.boxes.shown().isEmpty());
        QCOMPARE(stage.unhandled.texts, QStringList());
    }

private Q_SLOTS:
    // Before a record

    void aNewControlHasAnEmptyCollectionOfTheClassOfAttachments()
    {
        Stage stage;
        QCOMPARE(stage.takeLog(), QStringList({u"new tvTableCollection"_s}));
        const auto collection = stage.host.state().madeCollection.lock();
        QVERIFY(collection);
        QCOMPARE(collection->itemClass, u"TVEvent.tvAttachmentIndex"_s);
        QCOMPARE(collection->Count(), 0);
        stage.show();
        verifyNoCover(stage);
        QCOMPARE(stage.takeLog(), QStringList()); // nothing is fetched
    }

    void aResizeBeforeTheFirstRecordWorksAndShowsNoCover()
    {
        Stage stage;
        stage.show();
        stage.control->resize(200, 220);
        verifyNoCover(stage);
        QCOMPARE(stage.noImage().pos(), QPoint(100 - 47, 110 - 48));
    }

    void theConstituentsStandWhereTheyWereDesigned()
    {
        Stage stage;
        QCOMPARE(stage.control->findChild<QWidget*>(u"shpBorder"_s)->geometry(), QRect(0, 0, 25, 25));
        QCOMPARE(stage.noImage().geometry(), QRect(36, 44, 95, 97));
        QCOMPARE(stage.control->findChild<QWidget*>(u"imgIcon"_s)->geometry(), QRect(24, 8, 48, 48));
        auto* label = stage.control->findChild<Label*>(u"Label1"_s);
        QCOMPARE(label->geometry(), QRect(0, 60, 95, 17));
        QCOMPARE(label->Caption(), u"No cover image"_s);
        QVERIFY(label->alignment().testFlag(Qt::AlignHCenter));
    }

    void inTheDesignerItNeedsNoHost()
    {
        const DesignTime designing;
        CoverImage control; // no host is installed
        control.resize(120, 150);
        control.show();
        QVERIFY(QTest::qWaitForWindowExposed(&control));
        QVERIFY(control.findChild<QWidget*>(u"picNoImage"_s)->isVisible());
    }

    void itCanBeMadeByItsClassName()
    {
        Stage stage;
        const std::unique_ptr<UserControl> made(
            publicControls().create(u"TVBoundControls.CoverImage"_s, nullptr, {}));
        QVERIFY(qobject_cast<CoverImage*>(made.get()));
    }

    void itHasNoPublicMembersAndNoEventsOfItsOwn()
    {
        const QMetaObject& meta = CoverImage::staticMetaObject;
        QCOMPARE(meta.propertyCount(), UserControl::staticMetaObject.propertyCount());
        QCOMPARE(meta.methodCount(), UserControl::staticMetaObject.methodCount());
    }

    // Reading

    void thePrimaryImageIsShown()
    {
        Stage stage;
        stage.add(1, u"a.pdf"_s);
        stage.add(2, u"b.png"_s, Red);
        stage.add(3, u"c.png"_s, Blue);
        stage.rows->SetPrimaryValue(3);
        stage.show();
        stage.read();
        verifyCover(stage, Blue);
    }

    void aRecordWithDocumentsOnlyShowsNoCover()
    {
        Stage stage;
        stage.add(1, u"a.pdf"_s);
        stage.add(2, u"b.txt"_s);
        stage.show();
        stage.takeLog();
        stage.read();
        verifyNoCover(stage);
        QCOMPARE(stage.takeLog(), QStringList());
    }

    void aRecordWhosePrimaryImageHasLostItsFileShowsNoCoverWithoutAMessage()
    {
        Stage stage;
        stage.add(1, u"a.png"_s); // no thumbnail can be made
        stage.rows->SetPrimaryValue(1);
        stage.show();
        stage.read();
        verifyNoCover(stage);
    }

    void aThumbnailThatCannotBeFetchedShowsNoCoverWithoutAMessage_data()
    {
        QTest::addColumn<QString>("failing");
        for (const char* operation :
             {"new ThumbnailService", "GetThumbnailPath", "new Downloader", "LoadPicture", "FitPicture"})
            QTest::newRow(operation) << QString::fromLatin1(operation);
        QTest::newRow("Download") << QString();
    }
    void aThumbnailThatCannotBeFetchedShowsNoCoverWithoutAMessage()
    {
        QFETCH(QString, failing);
        Stage stage;
        stage.add(1, u"a.png"_s, Red);
        stage.rows->SetPrimaryValue(1);
        stage.show();
        stage.read();
        verifyCover(stage, Red);
        if (failing.isEmpty())
            stage.host.state().transferFailures.insert(
                stage.host.state().thumbnails.value(uR"(/store\a.png)"_s), u"gone"_s);
        else
            stage.host.state().failures.emplace(failing, Error(u"gone"_s));
        stage.read();
        verifyNoCover(stage);
    }

    void aPrimaryRowThatIsNoImageShowsNoCover()
    {
        Stage stage;
        stage.add(1, u"a.pdf"_s, Red);
        stage.rows->SetPrimaryValue(1);
        stage.show();
        stage.read();
        verifyNoCover(stage);
    }

    void aNextRecordWithoutCoverTakesThePictureAway()
    {
        Stage stage;
        stage.add(1, u"a.png"_s, Red);
        stage.rows->SetPrimaryValue(1);
        stage.show();
        stage.read();
        verifyCover(stage, Red);
        stage.record->setItem(u"Attachments"_s, std::make_shared<FakeCollection>(attachmentColumns()));
        stage.read();
        verifyNoCover(stage);
    }

    void aRecordWithoutAttachmentsGoesToTheHostAndTheOldOnesStay()
    {
        Stage stage;
        stage.add(1, u"a.png"_s, Red);
        stage.rows->SetPrimaryValue(1);
        stage.show();
        stage.read();
        auto* section = static_cast<BoundSection*>(stage.control);
        for (const tvBusinessObjectPtr& record :
             {tvBusinessObjectPtr(), tvBusinessObjectPtr(std::make_shared<FakeRecord>())}) {
            int number = 0;
            try {
                section->ReadData(record);
            } catch (const Error& error) {
                number = error.Number;
            }
            QCOMPARE(number, 91);
        }
        verifyCover(stage, Red);
        stage.rows->SetPrimaryValue(Null());
        verifyNoCover(stage);
    }

    void writingDoesNothing()
    {
        Stage stage;
        stage.add(1, u"a.png"_s, Red);
        stage.rows->SetPrimaryValue(1);
        stage.show();
        stage.read();
        stage.takeLog();
        const qint64 reads = stage.rows->reads;
        auto* section = static_cast<BoundSection*>(stage.control);
        section->WriteData(stage.record);
        section->WriteData(nullptr);
        QCOMPARE(stage.takeLog(), QStringList());
        QCOMPARE(stage.rows->reads, reads);
        verifyCover(stage, Red);
    }

    // Following the primary row

    void aChangeOfThePrimaryRowShowsTheNewCover()
    {
        Stage stage;
        stage.add(1, u"a.png"_s, Red);
        stage.add(2, u"b.png"_s, Blue);
        stage.show();
        stage.read();
        verifyNoCover(stage);
        stage.rows->SetPrimaryValue(1);
        verifyCover(stage, Red);
        stage.rows->SetPrimaryValue(2);
        verifyCover(stage, Blue);
    }

    void aPrimaryRowOfNullShowsNoCoverAtOnceWithoutReadingTheCollection()
    {
        Stage stage;
        stage.add(1, u"a.png"_s, Red);
        stage.rows->SetPrimaryValue(1);
        stage.show();
        stage.read();
        stage.takeLog();
        const qint64 reads = stage.rows->reads;
        stage.rows->PrimaryStatusChanged.raise(Null()); // although the collection still has a primary row
        verifyNoCover(stage);
        QCOMPARE(stage.rows->reads, reads);
        QCOMPARE(stage.takeLog(), QStringList());
    }

    void theValueOfTheEventIsNotUsedTheCollectionIsRead()
    {
        Stage stage;
        stage.add(1, u"a.png"_s, Red);
        stage.add(2, u"b.png"_s, Blue);
        stage.rows->SetPrimaryValue(1);
        stage.show();
        stage.read();
        stage.rows->PrimaryStatusChanged.raise(2);
        verifyCover(stage, Red);
        stage.rows->PrimaryStatusChanged.raise(QVariant()); // Empty is not Null
        verifyCover(stage, Red);
    }

    void removingTheLastImageShowsNoCover()
    {
        Stage stage;
        stage.add(1, u"a.png"_s, Red);
        stage.rows->SetPrimaryValue(1);
        stage.show();
        stage.read();
        stage.rows->RemoveCurrent(false); // the collection tells that no row is primary any more
        verifyNoCover(stage);
    }

    void theRecordBeforeIsFollowedNoLonger()
    {
        Stage stage;
        stage.add(1, u"a.png"_s, Red);
        stage.show();
        stage.read();
        const auto before = stage.rows;
        stage.record->setItem(u"Attachments"_s, std::make_shared<FakeCollection>(attachmentColumns()));
        stage.read();
        stage.takeLog();
        before->SetPrimaryValue(1);
        verifyNoCover(stage);
        QCOMPARE(stage.takeLog(), QStringList());
    }

    void theCollectionMayOutliveTheControl()
    {
        Stage stage;
        stage.add(1, u"a.png"_s, Red);
        stage.read();
        delete stage.control;
        stage.takeLog();
        stage.rows->SetPrimaryValue(1);
        QCOMPARE(stage.takeLog(), QStringList());
    }

    void theControlMayOutliveTheRecord()
    {
        Stage stage;
        stage.add(1, u"a.png"_s, Red);
        stage.rows->SetPrimaryValue(1);
        stage.show();
        stage.read();
        stage.record.reset();
        stage.rows.reset();
        stage.control->resize(130, 160);
        QVERIFY(!stage.noImage().isVisible());
    }

    void aFailureOfTheCollectionReachesWhoeverMovedThePrimaryRow()
    {
        Stage stage;
        stage.show();
        stage.read();
        const tvTableRowPtr row = stage.rows->AddNew();
        put(*row, {{"SeqNo", 1}, {"FileName", u"a.png"_s}});
        stage.host.failWith(Error(u"no rule"_s)); // whether a row is an image is asked aloud
        QString raised;
        try {
            stage.rows->SetPrimaryValue(1);
        } catch (const Error& error) {
            raised = error.Description;
        }
        QCOMPARE(raised, u"no rule"_s);
        stage.host.failWith({});
    }

    void theControlMayDieWhileTheThumbnailIsFetched()
    {
        Stage stage;
        stage.add(1, u"a.png"_s, Red);
        stage.rows->SetPrimaryValue(1);
        stage.show();
        bool raised = false;
        auto* section = static_cast<BoundSection*>(stage.control);
        stage.host.state().duringTransfer = [&](const QString&, qint64, qint64) {
            delete std::exchange(stage.control, nullptr);
        };
        try {
            section->ReadData(stage.record);
        } catch (const Error&) {
            raised = true;
        }
        QVERIFY(!raised);
        QVERIFY(!stage.control);
    }

    // While a thumbnail is fetched

    void aRecordThatIsReadMeanwhileStays_data()
    {
        QTest::addColumn<bool>("hasCover");
        QTest::newRow("with a cover") << true;
        QTest::newRow("without a cover") << false;
    }
    void aRecordThatIsReadMeanwhileStays()
    {
        QFETCH(bool, hasCover);
        Stage stage;
        stage.add(1, u"a.png"_s, Red);
        stage.rows->SetPrimaryValue(1);
        stage.show();
        stage.meanwhile([&] {
            stage.rows = std::make_shared<FakeCollection>(attachmentColumns());
            stage.record->setItem(u"Attachments"_s, stage.rows);
            stage.add(2, u"b.png"_s, Blue);
            if (hasCover)
                stage.rows->SetPrimaryValue(2);
            stage.read();
        });
        stage.read();
        if (hasCover)
            verifyCover(stage, Blue);
        else
            verifyNoCover(stage);
        QCOMPARE(stage.control->accessibleDescription(), hasCover ? u"b.png"_s : u"No cover image"_s);
    }

    void aPrimaryRowThatIsChosenMeanwhileStays_data()
    {
        QTest::addColumn<QVariant>("primary");
        QTest::newRow("another image") << QVariant(2);
        QTest::newRow("none") << Null();
    }
    void aPrimaryRowThatIsChosenMeanwhileStays()
    {
        QFETCH(QVariant, primary);
        Stage stage;
        stage.add(1, u"a.png"_s, Red);
        stage.add(2, u"b.png"_s, Blue);
        stage.rows->SetPrimaryValue(1);
        stage.show();
        stage.meanwhile([&] { stage.rows->SetPrimaryValue(primary); });
        stage.read();
        if (IsNull(primary))
            verifyNoCover(stage);
        else
            verifyCover(stage, Blue);
    }

    void theSizeThatItGetsMeanwhileStays()
    {
        Stage stage;
        stage.add(1, u"a.png"_s, Red);
        stage.rows->SetPrimaryValue(1);
        stage.show();
        stage.host.state().fitPicture = [](const QImage&, int height, int width, Color) {
            QImage fitted(width, height, QImage::Format_RGB32);
            fitted.fill(width == 110 ? Blue : Red);
            return fitted;
        };
        stage.read();
        verifyCover(stage, Red);
        stage.meanwhile([&] { stage.control->resize(110, 150); });
        stage.control->resize(130, 150);
        QCOMPARE(stage.control->size(), QSize(110, 150));
        verifyCover(stage, Blue);
    }

    // Size

    void aPictureOfAnotherSizeKeepsItsShapeUntilTheNextOneIsThere_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QPoint>("outside");
        QTest::newRow("higher") << QSize(120, 290) << QPoint(60, 35);
        QTest::newRow("wider") << QSize(280, 150) << QPoint(40, 75);
    }
    void aPictureOfAnotherSizeKeepsItsShapeUntilTheNextOneIsThere()
    {
        QFETCH(QSize, size);
        QFETCH(QPoint, outside);
        Stage stage;
        stage.add(1, u"a.png"_s, Red);
        stage.rows->SetPrimaryValue(1);
        stage.show();
        stage.read();
        QImage seen;
        stage.meanwhile([&] { seen = stage.control->grab().toImage(); });
        stage.control->resize(size);
        QCOMPARE(seen.size(), size);
        const QPoint middle(size.width() / 2, size.height() / 2);
        for (const QPoint& corner : {QPoint(-55, -70), QPoint(55, 70)})
            QCOMPARE(seen.pixelColor(middle + corner), Red);
        QVERIFY(seen.pixelColor(outside) != Red);
        QCOMPARE(stage.control->grab().toImage().pixelColor(outside), Red); // the next one fills it
    }

    void onADenseScreenThePictureHasThePixelsOfTheScreen()
    {
        if (!qEnvironmentVariableIsSet("QT_SCALE_FACTOR")) {
            QVERIFY(passesAtDensity(u"1.5"_s));
            return;
        }
        Stage stage;
        stage.add(1, u"a.png"_s, Red);
        stage.rows->SetPrimaryValue(1);
        stage.show();
        QCOMPARE(stage.control->devicePixelRatioF(), 1.5);
        stage.host.state().given.clear();
        stage.read();
        QCOMPARE(stage.host.state().given.filter(u"FitPicture"_s),
                 QStringList{u"FitPicture height 225 width 180 mode 1 flag -1 colour 80000016 reserved 0"_s});
        // All of it shows, and nothing but it.
        const QImage seen = stage.control->grab().toImage();
        QCOMPARE(seen.size(), QSize(180, 225));
        for (const QPoint& place : {QPoint(4, 112), QPoint(175, 112), QPoint(90, 4), QPoint(90, 220)})
            QCOMPARE(seen.pixelColor(place), Red);
    }

    void eachResizeFetchesAndFitsThePictureAnew()
    {
        Stage stage;
        stage.add(1, u"a.png"_s, Red);
        stage.rows->SetPrimaryValue(1);
        stage.show();
        stage.read();
        const int before = stage.downloads();
        stage.host.state().given.clear();
        stage.control->resize(80, 90);
        stage.control->resize(81, 90);
        QCOMPARE(stage.downloads(), before + 2);
        QCOMPARE(stage.host.state().given.filter(u"FitPicture"_s).last(),
                 u"FitPicture height 90 width 81 mode 1 flag -1 colour 80000016 reserved 0"_s);
        QVERIFY(!stage.noImage().isVisible());
    }

    void theBorderGoesAroundTheWholeControlAndTheSignKeepsItsSizeInTheMiddle()
    {
        Stage stage;
        stage.show();
        stage.control->resize(201, 221);
        QCOMPARE(stage.control->findChild<QWidget*>(u"shpBorder"_s)->geometry(), QRect(0, 0, 201, 221));
        QCOMPARE(stage.noImage().geometry(), QRect(53, 62, 95, 97));
        stage.control->resize(41, 41); // smaller than the sign
        QCOMPARE(stage.noImage().geometry(), QRect(-27, -28, 95, 97));
    }

    void aFailureInTheMiddleOfAResizeLeavesTheRestOfTheLayoutAppliedAndIsNotSeen()
    {
        Stage stage;
        stage.add(1, u"a.png"_s, Red);
        stage.rows->SetPrimaryValue(1);
        stage.show();
        stage.read();
        stage.host.failWith(Error(u"no host"_s));
        stage.control->resize(201, 221);
        stage.host.failWith({});
        QCOMPARE(stage.control->findChild<QWidget*>(u"shpBorder"_s)->geometry(), QRect(0, 0, 201, 221));
        QCOMPARE(stage.noImage().geometry(), QRect(53, 62, 95, 97));
        QVERIFY(stage.boxes.shown().isEmpty());
        QCOMPARE(stage.unhandled.texts, QStringList());
    }

    void theControlMayDieInAResizeWhileTheThumbnailIsFetched()
    {
        Stage stage;
        stage.add(1, u"a.png"_s, Red);
        stage.rows->SetPrimaryValue(1);
        stage.show();
        stage.read();
        int steps = 0;
        stage.host.state().duringTransfer = [&](const QString&, qint64, qint64) {
            if (++steps == 1)
                stage.control->deleteLater(); // as a form that closes itself
        };
        stage.control->resize(81, 90);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(steps > 0);
        QCOMPARE(stage.unhandled.texts, QStringList());
    }

    // For the eye and the ear

    void thePictureFillsTheControlInsideOfItsBorder()
    {
        Stage stage;
        stage.add(1, u"a.png"_s, Red);
        stage.rows->SetPrimaryValue(1);
        stage.show();
        stage.read();
        const QImage seen = stage.control->grab().toImage();
        for (const QPoint& place : {QPoint(2, 75), QPoint(117, 75), QPoint(60, 2), QPoint(60, 147)})
            QCOMPARE(seen.pixelColor(place), Red);
        QVERIFY(seen.pixelColor(0, 75) != Red); // the border is in front
        QVERIFY(seen.pixelColor(119, 75) != Red);
        QVERIFY(seen.pixelColor(0, 0) != Red); // round corners
    }

    void screenReadersAreToldWhichFileTheCoverIs()
    {
        Stage stage;
        stage.add(1, u"front door.png"_s, Red);
        stage.show();
        QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(stage.control);
        QCOMPARE(spoken->role(), QAccessible::Graphic);
        QCOMPARE(spoken->text(QAccessible::Name), u"Cover image"_s);
        QCOMPARE(spoken->text(QAccessible::Description), u"No cover image"_s);
        stage.read();
        stage.rows->SetPrimaryValue(1);
        QCOMPARE(spoken->text(QAccessible::Description), u"front door.png"_s);
        stage.rows->SetPrimaryValue(Null());
        QCOMPARE(spoken->text(QAccessible::Description), u"No cover image"_s);
    }

    void theKeyboardPassesItBy()
    {
        Stage stage;
        QCOMPARE(stage.control->focusPolicy(), Qt::NoFocus);
        for (const QWidget* child : stage.control->findChildren<QWidget*>())
            QCOMPARE(child->focusPolicy(), Qt::NoFocus);
    }
};

TAVRIN_TEST_MAIN(tst_CoverImage)
#include "tst_CoverImage.moc"
