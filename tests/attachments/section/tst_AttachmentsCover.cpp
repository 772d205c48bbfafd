#include "attachments/AttachmentRows.h"
#include "attachments/section/AttachmentsCase.h"
#include "attachments/section/CoverImage.h"

#include <QVariantList>

using namespace Qt::StringLiterals;
using namespace tavrin;

/// The box "Cover image" of `Attachments`.
class tst_AttachmentsCover : public test::AttachmentsCase
{
    Q_OBJECT

private:
    /// Of three files the second is current and the cover.
    bool openWithSecondAsCover()
    {
        m_form->addThree();
        m_form->rows->SetPosition(2);
        m_form->rows->SetPrimaryValue(102);
        return m_form->open();
    }

private Q_SLOTS:
    void selectingADocumentThatIsThePrimaryRowClearsNothing()
    {
        QVERIFY(openWithSecondAsCover());
        QCOMPARE(m_form->cover->Value(), 1);
        m_form->rows->SetPrimaryValue(101);
        m_form->rows->primaries.clear();
        m_form->click(m_form->placeOfLine(0));
        QCOMPARE(m_form->cover->Value(), 0);
        QCOMPARE(m_form->rows->primaries, QStringList());
        QCOMPARE(m_form->rows->PrimaryIndex(), 1);
    }

    void checkingTheBoxMovesTheCoverAndTheOldOneShowsUnchecked()
    {
        QVERIFY(openWithSecondAsCover());
        QCOMPARE(m_form->cover->Value(), 1);
        m_form->click(m_form->placeOfLine(2));
        QCOMPARE(m_form->cover->Value(), 0);
        m_form->rows->primaries.clear();
        m_form->click(m_form->cover);
        QCOMPARE(m_form->cover->Value(), 1);
        QCOMPARE(m_form->rows->primaries, QStringList{u"103"_s});
        m_form->click(m_form->placeOfLine(1));
        QCOMPARE(m_form->cover->Value(), 0);
        QCOMPARE(m_form->rows->PrimaryIndex(), 3);
    }

    void clearingTheBoxOnTheCoverLeavesTheRecordWithoutOne()
    {
        QVERIFY(openWithSecondAsCover());
        m_form->rows->primaries.clear();
        m_form->cover->setFocus();
        m_form->press(Qt::Key_Space);
        QCOMPARE(m_form->rows->primaries, QStringList{u"Null"_s});
        QCOMPARE(m_form->rows->PrimaryIndex(), 0);
    }

    void selectingADocumentHidesTheBoxAndChangesNoCover()
    {
        QVERIFY(openWithSecondAsCover());
        QCOMPARE(m_form->cover->Value(), 1);
        m_form->rows->primaries.clear();
        m_form->click(m_form->placeOfLine(0));
        QVERIFY(m_form->cover->isHidden());
        QCOMPARE(m_form->cover->Value(), 0);
        QCOMPARE(m_form->rows->primaries, QStringList());
        QCOMPARE(m_form->rows->PrimaryIndex(), 2);
    }

    void showingTheCoverRaisesTheClickThatWritesTheSameCover()
    {
        m_form->addThree();
        m_form->rows->SetPrimaryValue(102);
        QVERIFY(m_form->open());
        m_form->rows->primaries.clear();
        m_form->click(m_form->placeOfLine(1));
        QCOMPARE(m_form->rows->primaries, QStringList{u"102"_s});
        QCOMPARE(m_form->cover->Value(), 1);
    }

    // With the cover beside it

    void aCoverOnTheSameFormFollowsTheRowsOfTheSameRecord()
    {
        auto* image = new CoverImage(&m_form->window);
        image->setGeometry(430, 300, 120, 120);
        const auto* none = image->findChild<QWidget*>(u"picNoImage"_s);
        m_form->addRow(u"report.docx"_s);
        m_form->addImage(u"door.png"_s);
        m_form->addImage(u"lock.png"_s);
        m_form->rows->SetPosition(1);
        QVERIFY(m_form->open());
        static_cast<BoundSection*>(image)->ReadData(m_form->record);
        QVERIFY(none->isVisible());
        QStringList fetched;
        const auto takeFetched = [&] {
            fetched.clear();
            for (const QString& call : std::exchange(m_form->host.state().given, {})) {
                if (call.startsWith(u"LoadPicture "_s))
                    fetched << call.mid(int(qstrlen("LoadPicture thumbnail of ")));
            }
            return fetched;
        };

        m_form->click(m_form->placeOfLine(2)); // "lock.png" shows in the pane
        takeFetched();
        m_form->click(m_form->cover);
        QVERIFY(!none->isVisible());
        QCOMPARE(takeFetched(), QStringList{u"lock.png"_s}); // by the cover

        m_form->click(m_form->placeOfLine(0));
        QVERIFY(!none->isVisible()); // a document moves nothing

        m_form->click(m_form->placeOfLine(1));
        takeFetched();
        m_form->press(Qt::Key_Delete); // any image that goes moves the cover to the first
        QCOMPARE(m_form->rows->PrimaryIndex(), 2);
        QVERIFY(!none->isVisible());

        m_form->click(m_form->placeOfLine(0));
        m_form->click(m_form->placeOfLine(1));
        m_form->press(Qt::Key_Delete); // the last image
        QCOMPARE(m_form->rows->PrimaryIndex(), 0);
        QVERIFY(none->isVisible());

        m_form->dialogs.choose({m_form->newFile(u"new.png"_s)}); // whose thumbnail nobody has
        m_form->section->AddAttachments();
        QCOMPARE(m_form->rows->PrimaryIndex(), 2);
        QVERIFY(none->isVisible());
        QCOMPARE(m_form->boxes.shown().size(), 0);
    }

    // The key

    void theCoverIsSetByTheCollectionsOwnKeyWhateverItsColumn()
    {
        QStringList columns = test::attachmentColumns();
        columns.prepend(u"Id"_s);
        const auto rows = std::make_shared<test::FakeCollection>(columns);
        for (int number = 1; number <= 3; ++number) {
            const tvTableRowPtr row = rows->NewItem();
            test::put(*row, {{"Id", 70 + number}, {"SeqNo", number}, {"FileName", u"a.png"_s}});
            rows->Add(row);
        }
        m_form->record->SetItem(u"Attachments"_s, rows);
        QVERIFY(m_form->open());
        QVariantList told;
        const Subscription telling =
            rows->PrimaryStatusChanged.subscribe([&](const QVariant& key) { told << key; });
        m_form->click(m_form->placeOfLine(2));
        m_form->click(m_form->cover);
        QCOMPARE(told, QVariantList{73});
        QCOMPARE(rows->PrimaryIndex(), 3);
        m_form->click(m_form->placeOfLine(1));
        m_form->press(Qt::Key_Delete);
        QCOMPARE(told, QVariantList({73, 71}));
        QCOMPARE(rows->PrimaryIndex(), 1);
    }

    void aFollowerOfTheCoverMayDeleteTheSection()
    {
        m_form->addThree();
        m_form->rows->SetPrimaryValue(102);
        m_form->read();
        m_form->rows->SetPosition(2);
        const Subscription deleting = m_form->rows->PrimaryStatusChanged.subscribe(
            [&](const QVariant&) { delete m_form->section.data(); });
        m_form->read();
        QVERIFY(m_form->section.isNull());
    }
};

TAVRIN_TEST_MAIN(tst_AttachmentsCover)
#include "tst_AttachmentsCover.moc"
