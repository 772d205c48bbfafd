#include "attachments/section/AttachmentsForm.h"
#include "attachments/section/AttachmentsHosts.h"
#include "frame/memory_records/MemoryField.h"
#include "frame/memory_records/MemoryRow.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;
using namespace tavrin;
using tavrin::test::AttachmentsForm;
using tavrin::test::NumberedRows;

/// The row that `Attachments` shows, while the host moves the position or makes an object for a row at each
/// call.
class tst_AttachmentsShownRow : public tavrin::test::TestCase
{
    Q_OBJECT

private:
    /// The form with three rows, the second shown.
    static bool openSecond(AttachmentsForm& form)
    {
        test::prepare(form);
        form.rows->SetPosition(2);
        return form.open() && form.marked() == u"102"_s;
    }

    /// What the rows hold: name, description and comment of each.
    static QStringList textsOf(const AttachmentsForm& form)
    {
        QStringList texts;
        for (const tvTableRowPtr& row : *form.rows)
            texts << AttachmentsForm::text(*row, "OriginalFileName") + u'|' +
                         AttachmentsForm::text(*row, "Description") + u'|' +
                         AttachmentsForm::text(*row, "Notes");
        return texts;
    }

private Q_SLOTS:
    void initTestCase_data() { test::addHosts(); }

    // What is typed

    void aDescriptionReachesTheRowThatShowsWhereverThePositionIs()
    {
        AttachmentsForm form;
        QVERIFY(openSecond(form));
        form.rows->SetPosition(3);
        form.typeDescription(u"x"_s);
        QCOMPARE(textsOf(form), QStringList({u"report.docx|first|one"_s, u"door.png|secondx|two"_s,
                                             u"lock.png|third|three"_s}));
        QCOMPARE(form.list->SubItem(u"102"_s, u"Description"_s), u"secondx"_s);
        QCOMPARE(form.list->SubItem(u"103"_s, u"Description"_s), u"third"_s);
        QCOMPARE(form.rows->Position(), 3); // it is the host's
    }

    void aLineShowsItsOwnRowWhenTheHostHasRemovedOneBeforeIt_data()
    {
        QTest::addColumn<bool>("byRightClick");
        QTest::newRow("click") << false;
        QTest::newRow("right click") << true;
    }
    void aLineShowsItsOwnRowWhenTheHostHasRemovedOneBeforeIt()
    {
        QFETCH(bool, byRightClick);
        AttachmentsForm form;
        QVERIFY(openSecond(form));
        form.rows->SetPosition(1);
        form.rows->RemoveCurrent(false);
        QCOMPARE(form.list->Count(), 3); // until the next read
        form.click(form.placeOfLine(2), byRightClick ? Qt::RightButton : Qt::LeftButton);
        QCOMPARE(form.rows->Position(), 2);
        QCOMPARE(form.description->Text(), u"third"_s);
        QCOMPARE(form.marked(), u"103"_s);
        QCOMPARE(form.selected(), u"103"_s);
        QCOMPARE(form.boxes.shown().size(), 0);
        if (byRightClick) {
            QTRY_VERIFY(form.menu->isVisible());
            form.menu->close();
        }
    }

    void theLineOfARowThatTheHostHasRemovedIsNotTaken()
    {
        AttachmentsForm form;
        QVERIFY(openSecond(form));
        form.rows->SetPosition(1);
        form.rows->RemoveCurrent(false);
        form.click(form.placeOfLine(0));
        QCOMPARE(form.boxes.take().first().text,
                 u"Unexpected error handling item click: The attachment has been removed from the record."_s);
        QCOMPARE(form.description->Text(), u"second"_s);
        QCOMPARE(form.marked(), u"102"_s);
        QCOMPARE(form.selected(), u"102"_s);
    }

    void typingAsksForAsManyRowsWhateverTheirNumber()
    {
        QList<qint64> asked;
        for (const int count : {3, 300}) {
            AttachmentsForm form;
            for (int row = 0; row < count; ++row) {
                AttachmentsForm::set(*form.rows->AddNew(), "FileName", u"a.txt"_s); // the last is current
            }
            QVERIFY(form.open());
            form.description->setFocus();
            const qint64 before = form.rows->reads();
            form.type(u"x"_s);
            QCOMPARE(form.text(count, "Description"), u"x"_s);
            asked << form.rows->reads() - before;
        }
        QCOMPARE(asked.first(), asked.last());
    }

    void aCommentIsSavedToTheRowThatShowsWhereverThePositionIs()
    {
        AttachmentsForm form;
        QVERIFY(openSecond(form));
        form.typeComment(u"a "_s);
        form.rows->SetPosition(1);
        form.write();
        QCOMPARE(textsOf(form), QStringList({u"report.docx|first|one"_s, u"door.png|second|a two"_s,
                                             u"lock.png|third|three"_s}));
    }

    void aRowThatTheHostAppendsTakesNothingThatIsTypedForTheOneThatShows()
    {
        AttachmentsForm form;
        QVERIFY(openSecond(form));
        form.typeComment(u"a "_s);
        AttachmentsForm::set(*form.rows->AddNew(), "OriginalFileName", u"new"_s);
        QCOMPARE(form.rows->Position(), 4);
        form.typeDescription(u"x"_s);
        form.write();
        QCOMPARE(textsOf(form), QStringList({u"report.docx|first|one"_s, u"door.png|secondx|a two"_s,
                                             u"lock.png|third|three"_s, u"new||"_s}));
        QCOMPARE(form.boxes.shown().size(), 0);
    }

    void whatIsTypedFollowsTheRowThatShowsWhenTheHostRemovesOneBeforeIt()
    {
        AttachmentsForm form;
        QVERIFY(openSecond(form));
        form.typeComment(u"a "_s);
        form.rows->SetPosition(1);
        form.rows->RemoveCurrent(false);
        form.rows->SetPosition(2);
        form.typeDescription(u"x"_s);
        form.write();
        QCOMPARE(textsOf(form), QStringList({u"door.png|secondx|a two"_s, u"lock.png|third|three"_s}));
        form.read();
        QCOMPARE(form.list->Count(), 2);
    }

    void whatIsTypedForARowThatTheHostHasRemovedReachesNoOther()
    {
        AttachmentsForm form;
        QVERIFY(openSecond(form));
        form.rows->RemoveCurrent(false);
        form.typeComment(u"a "_s);
        form.description->setFocus();
        form.type(u"x"_s);
        form.write();
        form.cover->SetValue(CheckBox::Checked);
        QCOMPARE(textsOf(form), QStringList({u"report.docx|first|one"_s, u"lock.png|third|three"_s}));
        QCOMPARE(form.rows->PrimaryIndex(), 2); // where the rule of a removed image has put it
        QCOMPARE(form.boxes.shown().size(), 0);
    }

    void aRowOfAnotherRecordWithTheKeyOfTheOneThatShowedIsAnotherRow()
    {
        AttachmentsForm form;
        QVERIFY(openSecond(form));
        form.typeComment(u"a "_s);
        const auto others = std::make_shared<NumberedRows>();
        const tvTableRowPtr theirs = NumberedRows::makeRow(false);
        AttachmentsForm::set(*theirs, "SeqNo", 102); // and its other fields cannot be shown
        const tvTableRowPtr broken = std::make_shared<tavrin::MemoryRow>(
            QList<tvFieldPtr>{fieldOf(*theirs, u"SeqNo"_s), fieldOf(*theirs, u"Notes"_s)});
        others->Add(broken);
        form.record->SetItem(u"Attachments"_s, others);
        QVERIFY_THROWS_EXCEPTION(Error, form.read());
        form.write();
        QVERIFY(IsNull(AttachmentsForm::value(*theirs, "Notes")));
        QVERIFY(!form.comment->isEnabled());
    }

    // The cover

    void theCoverIsTickedForTheRowThatShowsWhereverThePositionIs()
    {
        AttachmentsForm form;
        QVERIFY(openSecond(form));
        form.rows->SetPosition(1);
        form.click(form.cover);
        QCOMPARE(form.rows->primaries, QStringList{u"102"_s});
        form.rows->SetPosition(3);
        form.click(form.cover);
        QCOMPARE(form.rows->primaries, QStringList({u"102"_s, u"Null"_s}));
    }

    // The lines

    void theLineThatTheHostHasMadeCurrentCanBeChosen_data()
    {
        QTest::addColumn<bool>("byKey");
        QTest::newRow("click") << false;
        QTest::newRow("arrow key") << true;
    }
    void theLineThatTheHostHasMadeCurrentCanBeChosen()
    {
        QFETCH(bool, byKey);
        AttachmentsForm form;
        QVERIFY(openSecond(form));
        form.typeComment(u"a "_s);
        form.rows->SetPosition(3);
        if (byKey) {
            form.list->setFocus();
            form.press(Qt::Key_Down);
        } else {
            form.click(form.placeOfLine(2));
        }
        QCOMPARE(form.selected(), u"103"_s);
        QCOMPARE(form.marked(), u"103"_s);
        QCOMPARE(form.description->Text(), u"third"_s);
        QCOMPARE(form.comment->Text(), u"three"_s);
        QCOMPARE(form.text(2, "Notes"), u"a two"_s);
        QCOMPARE(form.text(3, "Notes"), u"three"_s);
        QCOMPARE(form.rows->Position(), 3);
    }

    void aClickOnTheLineThatShowsBringsThePositionBackAndKeepsWhatIsTyped()
    {
        AttachmentsForm form;
        QVERIFY(openSecond(form));
        form.typeComment(u"a "_s);
        form.rows->SetPosition(3);
        form.click(form.placeOfLine(1));
        QCOMPARE(form.rows->Position(), 2);
        QCOMPARE(form.selected(), u"102"_s);
        QCOMPARE(form.marked(), u"102"_s);
        QCOMPARE(form.comment->Text(), u"a two"_s);
        QCOMPARE(form.text(2, "Notes"), u"two"_s); // it waits for the save
    }

    void anotherLineSavesTheCommentOfTheOneBefore()
    {
        AttachmentsForm form;
        QVERIFY(openSecond(form));
        form.typeComment(u"a "_s);
        form.click(form.placeOfLine(0));
        QCOMPARE(form.text(2, "Notes"), u"a two"_s);
        QCOMPARE(form.comment->Text(), u"one"_s);
        QCOMPARE(form.marked(), u"101"_s);
    }

    // What is done to the row

    void removingTakesTheRowThatShowsWhereverThePositionIs_data()
    {
        QTest::addColumn<int>("position");
        QTest::newRow("elsewhere") << 3;
        QTest::newRow("there") << 2;
    }
    void removingTakesTheRowThatShowsWhereverThePositionIs()
    {
        QFETCH(int, position);
        AttachmentsForm form;
        QVERIFY(openSecond(form));
        form.rows->SetPosition(static_cast<qint16>(position));
        form.press(Qt::Key_Delete);
        QCOMPARE(form.fileNames(), QStringList({u"report.docx"_s, u"lock.png"_s}));
        QCOMPARE(form.list->Count(), 2);
        QCOMPARE(form.marked(), u"103"_s);
        QCOMPARE(form.comment->Text(), u"three"_s);
        QCOMPARE(form.boxes.shown().size(), 0);
    }

    void openingTakesTheRowThatShowsWhereverThePositionIs()
    {
        AttachmentsForm form;
        QVERIFY(openSecond(form));
        form.rows->SetPosition(3);
        form.press(Qt::Key_Return);
        QTRY_COMPARE(form.shell.opened().size(), 1);
        QCOMPARE(QFileInfo(form.shell.opened().first()).fileName(), u"door.png"_s);
    }

    void whatTheMenuAllowsIsThatOfTheRowThatShows()
    {
        AttachmentsForm form;
        QVERIFY(openSecond(form));
        form.host.state().permissions.remove(u"Incident/20"_s);
        form.addRow(u"new.txt"_s, Null(), Null(), true);
        form.read();
        form.rows->SetPosition(4); // a new row, which may be removed by anybody
        form.click(form.placeOfLine(1), Qt::RightButton);
        QTRY_VERIFY(form.menu->isVisible());
        QVERIFY(form.item("mnuOpen")->isEnabled());
        QVERIFY(!form.item("mnuRemove")->isEnabled());
        form.menu->close();
    }

    void theThumbnailShows()
    {
        AttachmentsForm form;
        QVERIFY(openSecond(form));
        QVERIFY(form.child<QLabel>("imgThumbnail")->isVisible());
        QVERIFY(!form.child<QLabel>("imgThumbnail")->pixmap(Qt::ReturnByValue).isNull());
        QVERIFY(form.child<GroupBox>("picNoThumbnail")->isHidden());
        form.click(form.placeOfLine(0));
        QVERIFY(form.child<GroupBox>("picNoThumbnail")->isVisible());
        QCOMPARE(form.child<Label>("lblFileType")->Caption(), u"docx"_s);
    }

    void anUploadAddsItsRow()
    {
        AttachmentsForm form;
        QVERIFY(openSecond(form));
        form.dialogs.choose({form.newFile(u"a.png"_s)});
        form.click(form.link);
        QCOMPARE(form.fileNames(), QStringList({u"report.docx"_s, u"door.png"_s, u"lock.png"_s, u"a.png"_s}));
        QCOMPARE(form.rows->PrimaryIndex(), 4);
        QCOMPARE(form.marked(), u"104"_s);
        QVERIFY(form.cover->isVisible());
        QCOMPARE(form.cover->Value(), CheckBox::Checked);
        QCOMPARE(form.boxes.shown().size(), 0);
    }
};

TAVRIN_TEST_MAIN(tst_AttachmentsShownRow)
#include "tst_AttachmentsShownRow.moc"
