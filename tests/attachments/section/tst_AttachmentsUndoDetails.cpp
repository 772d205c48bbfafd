#include "attachments/section/AttachmentsUndoForm.h"

#include <QVariantList>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

/// What comes back with a removed attachment: its comment, and the cover that it was.
class tst_AttachmentsUndoDetails : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data() { addHosts(); }

    // The texts

    void aCommentThatWaitedForTheSaveComesBackWithItsRow()
    {
        AttachmentsForm form;
        QVERIFY(open(form));
        form.typeComment(u"a "_s);
        form.choose(0, Qt::Key_R);
        QCOMPARE(form.comment->Text(), u"two"_s);
        undo(form);
        QCOMPARE(form.comment->Text(), u"a one"_s);
        QCOMPARE(form.text(3, "Notes"), u"a one"_s);
        QCOMPARE(form.text(1, "Notes"), u"two"_s);
    }

    void aCommentThatNobodyTouchedComesBackAsItWas()
    {
        AttachmentsForm form;
        prepare(form);
        const tvTableRowPtr row = form.addRow(u"null.txt"_s);
        QVERIFY(form.open());
        remove(form, 3);
        undo(form);
        QVERIFY(IsNull(AttachmentsForm::value(*row, "Notes")));
    }

    void theCommentOfTheRowThatShowsIsSavedFirst()
    {
        AttachmentsForm form;
        QVERIFY(open(form));
        form.press(Qt::Key_Delete);
        form.typeComment(u"b "_s);
        undo(form);
        QCOMPARE(form.text(1, "Notes"), u"b two"_s);
        QCOMPARE(form.comment->Text(), u"one"_s);
    }

    void savingTheTextsFirstMayDeleteTheSection()
    {
        AttachmentsForm form;
        const auto notes = std::make_shared<FollowedNotes>(u"noted"_s);
        form.rows->Add(rowWith(notes));
        prepare(form);
        QVERIFY(form.open());
        remove(form, 1);
        form.click(form.placeOfLine(0));
        const Unhandled unhandled;
        notes->follower = [&form] { delete form.section.data(); };
        undo(form);
        QVERIFY(form.section.isNull());
        QCOMPARE(form.rows->Count(), 3);
        QCOMPARE(form.boxes.shown().size(), 0);
        QCOMPARE(unhandled.texts, QStringList());
    }

    void savingTheTextsFirstMayBindAnotherRecordWithItsOwnUndo()
    {
        AttachmentsForm form;
        const auto notes = std::make_shared<FollowedNotes>(u"noted"_s);
        form.rows->Add(rowWith(notes));
        prepare(form);
        QVERIFY(form.open());
        remove(form, 1);
        form.click(form.placeOfLine(0));
        const auto former = form.rows;
        notes->follower = [&] {
            notes->follower = {};
            form.replaceRows();
            form.addRow(u"other.txt"_s);
            form.addRow(u"another.txt"_s);
            form.read();
            form.press(Qt::Key_Delete);
        };
        undo(form);
        QCOMPARE(former->Count(), 3);
        QCOMPARE(form.fileNames(), QStringList{u"another.txt"_s});
        QCOMPARE(said(form), u"other.txt removed. Undo"_s);
    }

    // The cover

    void theCoverIsWhatItWasBeforeTheRemoval_data()
    {
        QTest::addColumn<int>("cover"); // keys, 0 for none
        QTest::addColumn<int>("line");
        QTest::addColumn<int>("between");
        QTest::newRow("the cover itself") << 102 << 1 << 103;
        QTest::newRow("an image while another is the cover") << 103 << 1 << 103;
        QTest::newRow("an image while none is the cover") << 0 << 1 << 103;
        QTest::newRow("a document") << 103 << 0 << 103;
        QTest::newRow("a document while none is the cover") << 0 << 0 << 0;
    }
    void theCoverIsWhatItWasBeforeTheRemoval()
    {
        QFETCH(int, cover);
        QFETCH(int, line);
        QFETCH(int, between);
        AttachmentsForm form;
        prepare(form);
        if (cover != 0)
            form.rows->SetPrimaryValue(cover);
        QVERIFY(form.open());
        remove(form, line);
        QCOMPARE(coverOf(form), between);
        undo(form);
        QCOMPARE(coverOf(form), cover);
        QCOMPARE(form.cover->Value() == CheckBox::Checked, cover == form.text(3, "SeqNo").toInt());
        QCOMPARE(form.boxes.shown().size(), 0);
    }

    void theLastImageIsTheCoverAgainAndEverybodyIsTold()
    {
        AttachmentsForm form;
        form.addImage(u"door.png"_s);
        form.rows->SetPrimaryValue(101);
        QVERIFY(form.open());
        form.press(Qt::Key_Delete);
        QCOMPARE(coverOf(form), 0);
        QVariantList told;
        const Subscription follower =
            form.rows->PrimaryStatusChanged.subscribe([&](const QVariant& key) { told << key; });
        undo(form);
        QVERIFY(!told.isEmpty());
        QCOMPARE(told.first(), QVariant(101));
        QCOMPARE(coverOf(form), 101);
        QCOMPARE(form.cover->Value(), CheckBox::Checked);
    }

    void aCoverThatWasChosenSinceStays()
    {
        AttachmentsForm form;
        prepare(form);
        form.addImage(u"key.png"_s);
        form.rows->SetPrimaryValue(102);
        QVERIFY(form.open());
        remove(form, 1);
        QCOMPARE(coverOf(form), 103);
        form.click(form.placeOfLine(2));
        form.click(form.cover);
        QCOMPARE(coverOf(form), 104);
        undo(form);
        QCOMPARE(coverOf(form), 104);
        QCOMPARE(form.cover->Value(), CheckBox::Unchecked);
    }

    void aCoverThatWasTakenAwayAndChosenAgainSinceStays()
    {
        AttachmentsForm form;
        prepare(form);
        form.addImage(u"key.png"_s);
        form.rows->SetPrimaryValue(104);
        QVERIFY(form.open());
        remove(form, 1);
        QCOMPARE(coverOf(form), 103);
        form.click(form.placeOfLine(1));
        form.click(form.cover);
        QCOMPARE(coverOf(form), 0);
        form.click(form.cover);
        QCOMPARE(coverOf(form), 103);
        undo(form);
        QCOMPARE(coverOf(form), 103);
    }

    void lookingAtTheCoverIsNoChoice()
    {
        AttachmentsForm form;
        prepare(form);
        form.addImage(u"key.png"_s);
        form.rows->SetPrimaryValue(104);
        QVERIFY(form.open());
        remove(form, 1);
        form.click(form.placeOfLine(0));
        form.click(form.placeOfLine(1));
        QCOMPARE(form.cover->Value(), CheckBox::Checked);
        form.click(form.placeOfLine(2));
        undo(form);
        QCOMPARE(coverOf(form), 104);
    }

    void aCoverThatHasLeftTheRecordSinceIsNotMadeTheCover()
    {
        AttachmentsForm form;
        prepare(form);
        form.addImage(u"key.png"_s);
        form.rows->SetPrimaryValue(104);
        QVERIFY(form.open());
        remove(form, 1);
        QCOMPARE(coverOf(form), 103);
        form.rows->SetPosition(3);
        form.rows->RemoveCurrent(false); // 104, by the host
        QCOMPARE(coverOf(form), 103);
        form.rows->primaries.clear();
        undo(form);
        QCOMPARE(coverOf(form), 103);
        QVERIFY(!form.rows->primaries.contains(u"104"_s));
        QCOMPARE(form.boxes.shown().size(), 0);
    }

    void severalImagesGiveTheCoverBackOneAfterTheOther()
    {
        AttachmentsForm form;
        prepare(form);
        form.rows->SetPrimaryValue(103);
        QVERIFY(form.open());
        remove(form, 2); // the cover goes to 102
        remove(form, 1);
        QCOMPARE(coverOf(form), 0);
        undo(form);
        QCOMPARE(coverOf(form), 102);
        undo(form);
        QCOMPARE(coverOf(form), 103);
    }
};

TAVRIN_TEST_MAIN(tst_AttachmentsUndoDetails)
#include "tst_AttachmentsUndoDetails.moc"
