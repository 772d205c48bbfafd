#include "attachments/section/AttachmentsForm.h"

#include <QFile>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

void chooseRemove(AttachmentsForm& form, const QString& way)
{
    form.openMenu(form.placeOfLine(0));
    PopupMenu* menu = form.menu;
    if (way == u"key of the menu"_s) {
        QTest::keyClick(menu, Qt::Key_R);
    } else if (way == u"mouse"_s) {
        QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(form.item("mnuRemove")).center());
    } else {
        for (int line = 0; line < 3; ++line)
            QTest::keyClick(menu, Qt::Key_Down);
        QCOMPARE(menu->activeAction(), form.item("mnuRemove"));
        QTest::keyClick(menu, Qt::Key_Return);
    }
    letMenusTell();
}

} // namespace

/// Removing an attachment, by the menu of `Attachments` and by the key.
class tst_AttachmentsRemoving : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void removingTakesTheCurrentRowWithoutAQuestionAndLeavesTheFile()
    {
        AttachmentsForm form;
        QVERIFY(form.openThree());
        const QString stored = form.storedPath(form.text(2, "FileName"));
        form.choose(1, Qt::Key_R);
        QCOMPARE(form.fileNames(), QStringList({u"report.docx"_s, u"lock.png"_s}));
        QCOMPARE(form.rows->removedImmediately(), QList<bool>{false});
        QCOMPARE(form.list->Count(), 2);
        QCOMPARE(form.selected(), u"103"_s);
        QCOMPARE(form.marked(), u"103"_s);
        QCOMPARE(form.description->Text(), u"third"_s);
        QCOMPARE(form.boxes.shown().size(), 0);
        QVERIFY(QFile::exists(stored));
    }

    void removingTheLastRowEmptiesThePane()
    {
        AttachmentsForm form;
        form.addRow(u"a.txt"_s, u"first"_s);
        QVERIFY(form.open());
        form.choose(0, Qt::Key_R);
        QCOMPARE(form.list->Count(), 0);
        QCOMPARE(form.marked(), u"none"_s);
        QCOMPARE(form.description->Text(), QString());
        QVERIFY(!form.description->isEnabled());
    }

    void deleteRemovesWhereItIsAllowed_data()
    {
        QTest::addColumn<bool>("canDelete");
        QTest::addColumn<int>("left");
        QTest::newRow("allowed") << true << 2;
        QTest::newRow("not allowed") << false << 3;
    }
    void deleteRemovesWhereItIsAllowed()
    {
        QFETCH(bool, canDelete);
        QFETCH(int, left);
        AttachmentsForm form;
        if (!canDelete)
            form.host.state().permissions.remove(u"Incident/20"_s);
        QVERIFY(form.openThree());
        form.press(Qt::Key_Delete);
        QCOMPARE(form.rows->Count(), left);
        QCOMPARE(form.list->Count(), left);
    }

    void aHeldDeleteRemovesOneRowOnly()
    {
        AttachmentsForm form;
        QVERIFY(form.openThree());
        form.hold(Qt::Key_Delete);
        QCOMPARE(form.rows->Count(), 2);
        QCOMPARE(form.list->Count(), 2);
    }

    void deleteInTheTextsRemovesNoRow()
    {
        AttachmentsForm form;
        QVERIFY(form.openThree());
        form.description->setFocus();
        form.press(Qt::Key_Delete);
        form.comment->setFocus();
        form.press(Qt::Key_Delete);
        QCOMPARE(form.rows->Count(), 3);
    }

    // Failures

    void aFailureToRemoveIsToldInABox()
    {
        AttachmentsForm form;
        QVERIFY(form.openThree());
        form.rows->removalFailure = Error(u"the row is locked"_s);
        form.choose(1, Qt::Key_R);
        const QList<ShownBox> shown = form.boxes.take();
        QCOMPARE(shown.size(), 1);
        QCOMPARE(shown.first().text, u"Unexpected error removing attachment: the row is locked"_s);
        QCOMPARE(shown.first().title, u"Attachments"_s);
        QCOMPARE(shown.first().icon, BoxIcon::Critical);
        QCOMPARE(form.rows->Count(), 3);
    }

    void aFollowerThatFailsBehindTheRemovalLeavesListAndPaneInStep()
    {
        AttachmentsForm form;
        QVERIFY(form.openThree());
        const Subscription failing = form.rows->ItemRemovedEx.subscribe(
            [](qint32, const tvTableRowPtr&) { throw Error(u"the cover is away"_s); });
        form.choose(1, Qt::Key_R);
        QCOMPARE(form.boxes.take().first().text,
                 u"Unexpected error removing attachment: the cover is away"_s);
        QCOMPARE(form.rows->Count(), 2);
        QCOMPARE(form.list->Count(), 2);
        QCOMPARE(form.list->Key(1), u"103"_s);
        QCOMPARE(form.marked(), u"103"_s);
        QCOMPARE(form.description->Text(), u"third"_s);
        form.write();
        QCOMPARE(form.text(2, "Description"), u"third"_s);
        QCOMPARE(form.text(2, "Notes"), u"three"_s);
    }

    void aFailureThatLeavesTheRowKeepsTheTypedComment()
    {
        AttachmentsForm form;
        QVERIFY(form.openThree());
        form.typeComment(u"a "_s);
        form.rows->removalFailure = Error(u"the row is locked"_s);
        form.choose(0, Qt::Key_R);
        QCOMPARE(form.boxes.take().size(), 1);
        QCOMPARE(form.comment->Text(), u"a one"_s);
    }

    void aRemovalWithoutItsRowIsAnError()
    {
        AttachmentsForm form;
        form.addThree();
        form.read();
        QVERIFY_THROWS_EXCEPTION(Error, form.rows->ItemRemovedEx.raise(1, nullptr));
        QCOMPARE(form.rows->primaries, QStringList());
    }

    // What the host does meanwhile

    void aRemovalMayBindAnotherRecord()
    {
        AttachmentsForm form;
        QVERIFY(form.openThree());
        const std::weak_ptr<NumberedRows> before = form.rows;
        const Subscription binding =
            form.rows->ItemRemovedEx.subscribe([&form](qint32, const tvTableRowPtr&) {
                form.replaceRows();
                form.addRow(u"other.txt"_s, u"other"_s);
                form.rows->SetPosition(1);
                form.read();
            });
        form.choose(1, Qt::Key_R);
        QVERIFY(before.expired());
        QCOMPARE(form.list->Count(), 1);
        QCOMPARE(form.description->Text(), u"other"_s);
        QCOMPARE(form.boxes.shown().size(), 0);
    }

    void aRemovalMayDeleteTheSection_data()
    {
        QTest::addColumn<QString>("way");
        for (const char* way : {"Delete", "key of the menu", "arrows and Return", "mouse"})
            QTest::newRow(way) << QString::fromLatin1(way);
    }
    void aRemovalMayDeleteTheSection()
    {
        QFETCH(QString, way);
        AttachmentsForm form;
        QVERIFY(form.openThree());
        const Unhandled unhandled;
        int removed = 0;
        const Subscription deleting = form.rows->ItemRemovedEx.subscribe([&](qint32, const tvTableRowPtr&) {
            ++removed;
            delete form.section.data();
        });
        if (way == u"Delete"_s)
            form.press(Qt::Key_Delete);
        else
            chooseRemove(form, way);
        QVERIFY(form.section.isNull());
        QCOMPARE(removed, 1);
        QCOMPARE(form.rows->Count(), 2);
        QCOMPARE(form.boxes.shown().size(), 0);
        QCOMPARE(unhandled.texts, QStringList());
    }

    void aChoiceThatAnotherRecordOvertakesIsDropped()
    {
        AttachmentsForm form;
        QVERIFY(form.openThree());
        const auto former = form.rows;
        form.openMenu(form.placeOfLine(1));
        QTest::keyClick(form.menu, Qt::Key_R);
        form.replaceRows();
        form.addThree();
        form.read();
        letMenusTell();
        QCOMPARE(former->Count(), 3);
        QCOMPARE(form.rows->Count(), 3);
    }

    void aChoiceIsKeptWhenTheSameRecordIsReadAgain()
    {
        AttachmentsForm form;
        QVERIFY(form.openThree());
        form.openMenu(form.placeOfLine(1));
        QTest::keyClick(form.menu, Qt::Key_R);
        form.read();
        letMenusTell();
        QCOMPARE(form.fileNames(), QStringList({u"report.docx"_s, u"lock.png"_s}));
    }
};

TAVRIN_TEST_MAIN(tst_AttachmentsRemoving)
#include "tst_AttachmentsRemoving.moc"
