#include "attachments/section/AttachmentsStage.h"
#include "frame/control_frame/PropertyBag.h"
#include "frame/memory_records/MemoryField.h"
#include "frame/memory_records/MemoryRow.h"

#include <QMetaClassInfo>
#include <QStyle>
#include <QVariantList>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

constexpr int Pixel = 15; // twips

/// A field that refuses to be written.
struct StubbornField final : tvField
{
    QVariant Value() const override { return u"as it was"_s; }
    void SetValue(const QVariant&) override { throw Error(u"The field is locked"_s); }
    QString Name() const override { return u"Description"_s; }
    bool IsKey() const override { return false; }
    qint32 MaxLength() const override { return 0; }
};

} // namespace

/// The frame of `Attachments`: how it binds, follows its collection and lies.
class tst_Attachments : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // The face

    void itHasTwoMembersAndNoEventsOfItsOwn()
    {
        const QMetaObject& meta = Attachments::staticMetaObject;
        QStringList properties;
        for (int i = UserControl::staticMetaObject.propertyCount(); i < meta.propertyCount(); ++i)
            properties << QString::fromLatin1(meta.property(i).name());
        QCOMPARE(properties, QStringList({u"hWnd"_s, u"CommentsTextBox"_s}));
        QVERIFY(meta.indexOfMethod("AddAttachments()") >= 0);
        QCOMPARE(meta.methodCount(), UserControl::staticMetaObject.methodCount() + 1);
        const auto told = [&meta](const char* name) {
            const int index = meta.indexOfClassInfo(name);
            return index < 0 ? QString() : QString::fromLatin1(meta.classInfo(index).value());
        };
        QCOMPARE(told("ClassName"), u"TVBoundControls.Attachments"_s);
        QCOMPARE(told("DefaultInterface"), u"_Attachments"_s);
        QCOMPARE(told("EventInterface"), QString());
    }

    void itSavesNothing()
    {
        AttachmentsStage stage;
        PropertyBag bag;
        stage.section->WriteProperties(bag);
        QVERIFY(bag.entries().empty());
    }

    void theCommentsBoxIsHandedOut()
    {
        AttachmentsStage stage;
        QVERIFY(stage.comment());
        QCOMPARE(stage.section->CommentsTextBox(), stage.comment());
    }

    void itsTextsStandAsDesigned()
    {
        AttachmentsStage stage;
        QCOMPARE(stage.child<QWidget>("lnkAddAttachments")->property("accessibleName").toString(),
                 u"Browse for files"_s);
        QCOMPARE(stage.caption("Label4"), u"or drag-and-drop files into the attachment area above."_s);
        QCOMPARE(stage.caption("lblCountLabel"), u"Attachments:"_s);
        QCOMPARE(stage.caption("lblUpdating"), u"Refreshing attachments list..."_s);
        QVERIFY(stage.child<GroupBox>("picUpdating")->isHidden());
    }

    void aNewSectionHasAnEmptyCollectionOfTheClassOfAttachments()
    {
        AttachmentsStage stage;
        const auto collection = stage.host.state().madeCollection.lock();
        QVERIFY(collection); // which the section keeps
        QCOMPARE(collection->ItemClass(), u"TVEvent.tvAttachmentIndex"_s);
        QCOMPARE(collection->Count(), 0);
    }

    void beforeTheFirstReadItIsEmptyAndItsPaneDisabled()
    {
        AttachmentsStage stage;
        QCOMPARE(stage.lines(), QStringList());
        QCOMPARE(stage.caption("lblCount"), u"0"_s);
        QVERIFY(!stage.description()->isEnabled());
        QVERIFY(!stage.comment()->isEnabled());
        stage.write(); // there is nothing to bring home
        QCOMPARE(stage.boxes.texts(), QStringList());
    }

    void inTheDesignerItAsksNoHost()
    {
        const DesignTime designing;
        Attachments section;
        section.resize(section.sizeHint());
        static_cast<BoundSection&>(section).WriteData(nullptr);
        QCOMPARE(section.findChild<Label*>(u"lblCount"_s)->Caption(), u"0"_s);
    }

    // Binding

    void readingShowsTheRecordsRowsAndItsCurrentOne()
    {
        AttachmentsStage stage;
        stage.addThree();
        stage.rows->SetPosition(2);
        stage.read();
        QCOMPARE(stage.keys(), QStringList({u"1"_s, u"2"_s, u"3"_s}));
        QCOMPARE(stage.list->DropHighlight(), u"2"_s);
        QCOMPARE(stage.caption("lblFilename"), u"report.docx"_s);
        QVERIFY(stage.description()->isEnabled());
        QCOMPARE(stage.rows->Position(), 2);
    }

    void readingAsksForBothRightsOfTheModule()
    {
        AttachmentsStage stage;
        stage.read();
        QCOMPARE(stage.host.state().log.count(u"HasPermission"_s), 2);
    }

    void aRecordThatCannotBeBoundLeavesAllAsItWas_data()
    {
        QTest::addColumn<QString>("className");
        QTest::addColumn<bool>("hasRows");
        QTest::addColumn<bool>("hostFails");
        QTest::addColumn<int>("number");
        QTest::newRow("class of another name") << u"Incident"_s << true << false << 5;
        QTest::newRow("no attachments") << u"tvIncidentBO"_s << false << false << 91;
        QTest::newRow("failing host") << u"tvIncidentBO"_s << true << true << 7;
    }
    void aRecordThatCannotBeBoundLeavesAllAsItWas()
    {
        QFETCH(QString, className);
        QFETCH(bool, hasRows);
        QFETCH(bool, hostFails);
        QFETCH(int, number);
        AttachmentsStage stage;
        stage.addThree();
        stage.add(4, u"second.png"_s);
        stage.read();
        const QStringList before = stage.lines();

        const auto wrong = std::make_shared<FakeRecord>();
        wrong->SetClassName(className);
        if (hasRows)
            wrong->SetItem(u"Attachments"_s, newAttachmentRows());
        if (hostFails)
            stage.host.failWith(Error(u"no session"_s, 7));
        const Error error = stage.readError(wrong);
        stage.host.failWith({});
        QCOMPARE(error.Number, number);
        if (className == u"Incident"_s)
            QVERIFY(error.Description.startsWith(u"Unexpected business object type 'Incident' passed"_s));
        QCOMPARE(stage.lines(), before);
        QCOMPARE(stage.boxes.texts(), QStringList());
        stage.rows->RemoveCurrent(false); // still followed: the cover moves
        QCOMPARE(stage.rows->PrimaryIndex(), 3);
    }

    void anotherRecordIsBoundAndTheOldOneLetGo()
    {
        AttachmentsStage stage;
        stage.addThree();
        stage.read();
        const std::shared_ptr<FakeCollection> old = stage.rows;
        stage.replaceRows();
        stage.add(9, u"other.png"_s);
        stage.read();
        QCOMPARE(stage.keys(), QStringList{u"9"_s});
        const qint64 reads = old->reads;
        old->SetPosition(1);
        old->RemoveCurrent(false); // an image, whose removal nobody hears of
        QCOMPARE(old->reads, reads + 1);
        QCOMPARE(old.use_count(), 1L);
    }

    void readingTheSameRecordAgainKeepsTheLines()
    {
        AttachmentsStage stage;
        stage.addThree();
        stage.read();
        stage.read();
        QCOMPARE(stage.keys(), QStringList({u"1"_s, u"2"_s, u"3"_s}));
        QCOMPARE(stage.list->DropHighlight(), u"1"_s);
    }

    void writingBringsTheTextBoxesHome()
    {
        AttachmentsStage stage;
        stage.addThree();
        stage.read();
        stage.comment()->setPlainText(u"seen from the street"_s);
        QCOMPARE(stage.value(stage.rows->Item(1), "Notes"), QString());
        stage.write();
        QCOMPARE(stage.value(stage.rows->Item(1), "Notes"), u"seen from the street"_s);
        QCOMPARE(stage.value(stage.rows->Item(2), "Notes"), QString());
    }

    void writingAnEmptyCollectionDoesNothing()
    {
        AttachmentsStage stage;
        stage.read();
        stage.write();
        QCOMPARE(stage.boxes.texts(), QStringList());
        QCOMPARE(stage.rows->Count(), 0);
    }

    void aFailingWriteIsShownAndIsNoErrorForTheHost()
    {
        AttachmentsStage stage;
        const auto put = [](const char* name, const QVariant& value) {
            return std::make_shared<MemoryField>(QString::fromLatin1(name), value);
        };
        stage.rows->Add(std::make_shared<MemoryRow>(
            QList<tvFieldPtr>{put("SeqNo", 1), put("FileName", u"a.txt"_s), put("OriginalFileName", Null()),
                              put("FolderNo", Null()), std::make_shared<StubbornField>(),
                              put("Notes", Null()), put("UserId", Null()), put("UserDate", Null())}));
        stage.read();
        stage.write();
        QCOMPARE(stage.boxes.shown().size(), 1);
        const ShownBox box = stage.boxes.take().first();
        QCOMPARE(box.text, u"The field is locked"_s);
        QCOMPARE(box.title, u"Error"_s);
        QCOMPARE(box.icon, BoxIcon::Critical);
    }

    // The cover

    void removingAnImageMovesTheCoverToTheFirstImageAlsoFromAnotherOneWhichIsMeant()
    {
        AttachmentsStage stage;
        for (int key = 1; key <= 3; ++key)
            stage.add(key, u"a.png"_s);
        stage.read();
        stage.rows->SetPrimaryValue(3);
        stage.rows->SetPosition(2);
        stage.rows->RemoveCurrent(false);
        QCOMPARE(stage.rows->PrimaryIndex(), 1);
    }

    void removingADocumentLeavesTheCoverAndRemovingTheLastImageSetsNone()
    {
        AttachmentsStage stage;
        stage.addThree();
        stage.read();
        stage.rows->SetPrimaryValue(1);
        QVariantList told;
        const Subscription follower =
            stage.rows->PrimaryStatusChanged.subscribe([&](const QVariant& key) { told << key; });
        stage.rows->SetPosition(2);
        stage.rows->RemoveCurrent(false);
        QCOMPARE(stage.rows->PrimaryIndex(), 1);
        QCOMPARE(told.size(), 0);
        stage.rows->SetPosition(1);
        stage.rows->RemoveCurrent(false);
        QVERIFY(!told.isEmpty() && IsNull(told.first()));
        QCOMPARE(stage.rows->PrimaryIndex(), 0);
    }

    // Layout

    void eachPartBeginsWhereItWasDesigned_data()
    {
        // In twips. A text may need more room than it had; one that sizes itself has no size here. The count
        // and its label stand at the right end whatever the width is.
        QTest::addColumn<QString>("container");
        QTest::addColumn<QRect>("place");
        QTest::addColumn<bool>("mayGrow");
        const auto row = [](const char* part, const char* container, const QRect& place,
                            bool mayGrow = false) {
            QTest::newRow(part) << QString::fromLatin1(container) << place << mayGrow;
        };
        row("lvwFiles", "", {0, 0, 7995, 2535});
        row("picToolbar", "", {0, 2520, 7995, 315});
        row("lnkAddAttachments", "picToolbar", {45, 60, 0, 0}, true);
        row("lblFilename", "", {0, 3000, 0, 0}, true);
        row("fraDetails", "", {0, 3240, 7995, 2775});
        row("Label3", "fraDetails", {180, 180, 0, 0}, true);
        row("imgThumbnail", "fraDetails", {180, 420, 1395, 1845});
        row("shpThumbnailBorder", "fraDetails", {180, 420, 1395, 1845});
        row("imgFileIcon", "picNoThumbnail", {540, 540, 360, 360});
        row("lblFileType", "picNoThumbnail", {45, 960, 1305, 255}, true);
        row("chkDefault", "fraDetails", {180, 2400, 1395, 195}, true);
        row("Label1", "fraDetails", {1755, 180, 0, 0}, true);
        row("txtDescription", "fraDetails", {1755, 420, 4395, 345}, true);
        row("Label2", "fraDetails", {1755, 900, 0, 0}, true);
        row("txtComment", "fraDetails", {1755, 1140, 6075, 1425});
    }
    void eachPartBeginsWhereItWasDesigned()
    {
        QFETCH(QString, container);
        QFETCH(QRect, place);
        QFETCH(bool, mayGrow);
        const AttachmentsStage stage;
        const auto* part = stage.child<QWidget>(QTest::currentDataTag());
        QVERIFY(part);
        QCOMPARE(part->parentWidget()->objectName(), container.isEmpty() ? u"ctlAttachments"_s : container);
        QCOMPARE(part->pos(), place.topLeft() / Pixel);
        const QSize size = place.size() / Pixel;
        QCOMPARE(mayGrow ? part->size().boundedTo(size) : part->size(), size);
    }

    void theWordsBesideTheLinkStandWhereTheyWereDesignedOrBehindItsText()
    {
        const AttachmentsStage stage;
        const QRect link = stage.child<QWidget>("lnkAddAttachments")->geometry();
        QCOMPARE(stage.child<QWidget>("Label4")->pos(),
                 QPoint(std::max(1290 / Pixel, link.right() + 1 + 45 / Pixel), 60 / Pixel));
    }

    void thePartsFollowTheControl_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::newRow("as designed") << QSize(533, 401);
        QTest::newRow("wide and high") << QSize(900, 700);
        QTest::newRow("narrow") << QSize(320, 401);
        QTest::newRow("lower than the pane's top") << QSize(533, 100);
        QTest::newRow("nothing") << QSize(0, 0);
    }
    void thePartsFollowTheControl()
    {
        QFETCH(QSize, size);
        AttachmentsStage stage;
        QVERIFY(stage.show());
        stage.section->resize(size);
        const int w = size.width();
        const int h = size.height();
        const auto rect = [&](const char* name) { return stage.child<QWidget>(name)->geometry(); };
        QCOMPARE(rect("lvwFiles"), QRect(0, 0, w, 2535 / Pixel));
        QCOMPARE(rect("picToolbar"), QRect(0, 2520 / Pixel, w, 315 / Pixel));
        const QRect pane(0, 3240 / Pixel, w, std::max(0, h - 3240 / Pixel));
        QCOMPARE(rect("fraDetails"), pane);
        const QRect thumbnail = rect("imgThumbnail");
        QCOMPARE(rect("shpThumbnailBorder"), thumbnail);
        QCOMPARE(rect("picNoThumbnail"), thumbnail.adjusted(1, 1, -1, -1));
        QCOMPARE(rect("chkDefault").left(), thumbnail.left());
        const QRect comment = rect("txtComment");
        QCOMPARE(comment.topLeft(), QPoint(1755 / Pixel, 1140 / Pixel));
        QCOMPARE(comment.width(), std::max(0, pane.width() - 180 / Pixel - comment.left()));
        QCOMPARE(comment.height(), std::max(0, pane.height() - 180 / Pixel - comment.top()));
        const int edge = stage.section->style()->pixelMetric(QStyle::PM_DefaultFrameWidth);
        const QRect updating = rect("picUpdating");
        QCOMPARE(updating.topLeft(), QPoint(edge, edge));
        QCOMPARE(updating.size(), QSize(std::max(0, w - 2 * edge), 2535 / Pixel - 2 * edge));
        QCOMPARE(rect("lblUpdating").left(), 0);
        QCOMPARE(rect("lblUpdating").width(), updating.width());
        QVERIFY(std::abs(rect("lblUpdating").center().y() - updating.height() / 2) <= 1);
        QCOMPARE(rect("lblCount").right() + 1, w);
        QCOMPARE(rect("lblCountLabel").right() + 1 + 60 / Pixel, rect("lblCount").left());
    }

    void atItsOwnSizeNoTextIsCut()
    {
        AttachmentsStage stage;
        QVERIFY(stage.show());
        for (const char* name : {"lnkAddAttachments", "Label4", "lblCountLabel", "lblCount", "lblUpdating"}) {
            const auto* widget = stage.child<QWidget>(name);
            QVERIFY2(widget->width() >= widget->sizeHint().width(), name);
            const int right = widget->mapTo(stage.section, QPoint(widget->width(), 0)).x();
            QVERIFY2(right <= stage.section->width(), name);
        }
        QVERIFY(!stage.child<QWidget>("lnkAddAttachments")
                     ->geometry()
                     .intersects(stage.child<QWidget>("Label4")->geometry()));
    }

    void theFocusOfTheListIsSeenOnAllItsSides()
    {
        AttachmentsStage stage;
        QVERIFY(stage.show());
        const QImage image = stage.section->grab().toImage();
        const QRect list = stage.list->geometry();
        const QRgb highlight = stage.list->palette().color(QPalette::Highlight).rgb();
        for (const QPoint& place :
             {QPoint(list.center().x(), list.top()), QPoint(list.left(), list.center().y()),
              QPoint(list.right(), list.center().y()), QPoint(list.center().x(), list.bottom())})
            QCOMPARE(image.pixel(place), highlight);
    }

    void tabLeavesTheListForTheLink()
    {
        AttachmentsStage stage;
        QVERIFY(stage.openThree());
        QTest::keyClick(stage.window.windowHandle(), Qt::Key_Tab);
        QVERIFY(stage.child<QWidget>("lnkAddAttachments")->hasFocus());
    }
};

TAVRIN_TEST_MAIN(tst_Attachments)
#include "tst_Attachments.moc"
