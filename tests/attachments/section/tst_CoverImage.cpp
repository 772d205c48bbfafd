#include "attachments/section/CoverStage.h"
#include "component/ClassRegister.h"

#include <QAccessible>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

/// The cover that a record shows.
class tst_CoverImage : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // Before a record

    void aNewControlHasAnEmptyCollectionOfTheClassOfAttachments()
    {
        CoverStage stage;
        QCOMPARE(stage.takeLog(), QStringList({u"new tvTableCollection"_s}));
        const auto collection = stage.host.state().madeCollection.lock();
        QVERIFY(collection);
        QCOMPARE(collection->ItemClass(), u"TVEvent.tvAttachmentIndex"_s);
        QCOMPARE(collection->Count(), 0);
        stage.show();
        stage.verifyNoCover();
        QCOMPARE(stage.takeLog(), QStringList()); // nothing is fetched
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
        CoverStage stage;
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
        CoverStage stage;
        stage.add(1, u"a.pdf"_s);
        stage.add(2, u"b.png"_s, Red);
        stage.add(3, u"c.png"_s, Blue);
        stage.rows->SetPrimaryValue(3);
        stage.show();
        stage.read();
        stage.verifyCover(Blue);
    }

    void aRecordWithDocumentsOnlyShowsNoCover()
    {
        CoverStage stage;
        stage.add(1, u"a.pdf"_s);
        stage.add(2, u"b.txt"_s);
        stage.show();
        stage.takeLog();
        stage.read();
        stage.verifyNoCover();
        QCOMPARE(stage.takeLog(), QStringList());
    }

    void aRecordWhosePrimaryImageHasLostItsFileShowsNoCoverWithoutAMessage()
    {
        CoverStage stage;
        stage.add(1, u"a.png"_s); // no thumbnail can be made
        stage.rows->SetPrimaryValue(1);
        stage.show();
        stage.read();
        stage.verifyNoCover();
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
        CoverStage stage;
        stage.openWithRedCover();
        stage.verifyCover(Red);
        if (failing.isEmpty())
            stage.host.state().transferFailures.insert(
                stage.host.state().thumbnails.value(uR"(/store\a.png)"_s), u"gone"_s);
        else
            stage.host.state().failures.emplace(failing, Error(u"gone"_s));
        stage.read();
        stage.verifyNoCover();
    }

    void aPrimaryRowThatIsNoImageShowsNoCover()
    {
        CoverStage stage;
        stage.add(1, u"a.pdf"_s, Red);
        stage.rows->SetPrimaryValue(1);
        stage.show();
        stage.read();
        stage.verifyNoCover();
    }

    void aNextRecordWithoutCoverTakesThePictureAway()
    {
        CoverStage stage;
        stage.openWithRedCover();
        stage.verifyCover(Red);
        stage.replaceRows();
        stage.read();
        stage.verifyNoCover();
    }

    void aRecordWithoutAttachmentsGoesToTheHostAndTheOldOnesStay()
    {
        CoverStage stage;
        stage.openWithRedCover();
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
        stage.verifyCover(Red);
        stage.rows->SetPrimaryValue(Null());
        stage.verifyNoCover();
    }

    void writingDoesNothing()
    {
        CoverStage stage;
        stage.openWithRedCover();
        stage.takeLog();
        const qint64 reads = stage.rows->reads;
        auto* section = static_cast<BoundSection*>(stage.control);
        section->WriteData(stage.record);
        section->WriteData(nullptr);
        QCOMPARE(stage.takeLog(), QStringList());
        QCOMPARE(stage.rows->reads, reads);
        stage.verifyCover(Red);
    }

    // For the ear and the keyboard

    void screenReadersAreToldWhichFileTheCoverIs()
    {
        CoverStage stage;
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
        CoverStage stage;
        QCOMPARE(stage.control->focusPolicy(), Qt::NoFocus);
        for (const QWidget* child : stage.control->findChildren<QWidget*>())
            QCOMPARE(child->focusPolicy(), Qt::NoFocus);
    }
};

TAVRIN_TEST_MAIN(tst_CoverImage)
#include "tst_CoverImage.moc"
