#include "attachments/section/AttachmentsUndoForm.h"

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

/// Putting removed attachments back while the host reads, saves, refuses and fails.
class tst_AttachmentsUndoHost : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data() { addHosts(); }

    // What the host does meanwhile

    void readingTheSameRowsAgainKeepsWhatWasRemoved()
    {
        AttachmentsForm form;
        QVERIFY(open(form));
        form.press(Qt::Key_Delete);
        goToUndoLink(form);
        form.read();
        QCOMPARE(said(form), u"report.docx removed. Undo"_s);
        QVERIFY(form.child<TextLink>("lnkUndo")->hasFocus());
        undo(form);
        QCOMPARE(form.fileNames(), QStringList({u"door.png"_s, u"lock.png"_s, u"report.docx"_s}));
    }

    void aRecordThatIsReadIsTheHostsToKeep()
    {
        AttachmentsForm form;
        QVERIFY(open(form));
        const std::weak_ptr<tvBusinessObject> record = form.record;
        form.record.reset();
        QVERIFY(record.expired());
        form.press(Qt::Key_Delete); // the rows are still there
        QCOMPARE(form.rows->Count(), 2);
    }

    void readingOtherRowsForgetsWhatWasRemoved_data()
    {
        QTest::addColumn<bool>("isNewRecord");
        QTest::newRow("the record with a new collection") << false;
        QTest::newRow("another record") << true;
    }
    void readingOtherRowsForgetsWhatWasRemoved()
    {
        QFETCH(bool, isNewRecord);
        AttachmentsForm form;
        QVERIFY(open(form));
        form.press(Qt::Key_Delete);
        goToUndoLink(form);
        QVERIFY(form.child<TextLink>("lnkUndo")->hasFocus());
        if (isNewRecord)
            form.record = std::make_shared<tavrin::test::FakeRecord>();
        form.replaceRows();
        form.addThree();
        const int count = form.rows->Count();
        form.read();
        QCOMPARE(said(form), QString());
        QVERIFY(form.list->hasFocus());
        undo(form);
        QCOMPARE(form.rows->Count(), count);
    }

    void whoeverHearsOfTheFocusThatARecordTakesMayBindAnother()
    {
        AttachmentsForm form;
        QVERIFY(open(form));
        form.press(Qt::Key_Delete);
        goToUndoLink(form);
        const auto bind = [&form](const QString& name) {
            form.replaceRows();
            form.addRow(name, name);
            form.read();
        };
        bool hasBound = false;
        QObject::connect(qApp, &QApplication::focusChanged, form.section, [&] {
            if (!std::exchange(hasBound, true))
                bind(u"inner.txt"_s);
        });
        bind(u"outer.txt"_s);
        QVERIFY(hasBound);
        QCOMPARE(form.list->Count(), 1);
        QCOMPARE(form.child<Label>("lblFilename")->Caption(), u"inner.txt"_s);
        QCOMPARE(form.description->Text(), u"inner.txt"_s);
        QCOMPARE(said(form), QString());
    }

    void aRecordThatCannotBeBoundLeavesTheUndo()
    {
        AttachmentsForm form;
        QVERIFY(open(form));
        form.press(Qt::Key_Delete);
        QVERIFY_THROWS_EXCEPTION(
            Error,
            static_cast<BoundSection*>(form.section)->ReadData(std::make_shared<tavrin::test::FakeRecord>()));
        QCOMPARE(said(form), u"report.docx removed. Undo"_s);
        undo(form);
        QCOMPARE(form.rows->Count(), 3);
    }

    void aRowThatASaveHasDeletedComesBackAsACopyWithItsKey()
    {
        AttachmentsForm form;
        QVERIFY(open(form));
        const QString fields = fieldsOf(*form.rows->Item(1));
        form.press(Qt::Key_Delete);
        form.write();
        form.rows->beforeAdding = [](tvTableRow& row) {
            if (!row.IsNew())
                throw Error(u"the row belongs to no record any more"_s);
        };
        undo(form);
        QCOMPARE(form.fileNames(), QStringList({u"door.png"_s, u"lock.png"_s, u"report.docx"_s}));
        QCOMPARE(fieldsOf(*form.rows->Item(3)), fields);
        QVERIFY(form.rows->Item(3)->IsNew());
        QCOMPARE(form.marked(), u"101"_s);
        QCOMPARE(said(form), QString());
        QCOMPARE(form.boxes.shown().size(), 0);
    }

    void aCopyLeavesTheLinksToItsCollection()
    {
        AttachmentsForm form;
        form.rows->Add(rowWith(std::make_shared<LinkToRecord>()));
        prepare(form);
        QVERIFY(form.open());
        form.press(Qt::Key_Delete);
        form.rows->beforeAdding = [](tvTableRow& row) {
            if (!row.IsNew())
                throw Error(u"the row belongs to no record any more"_s);
        };
        undo(form);
        QCOMPARE(form.boxes.shown().size(), 0);
        QCOMPARE(form.fileNames().last(), u"special.png"_s);
        QVERIFY(!form.rows->Item(4)->Item(u"IncidentNo"_s));
    }

    void aRowWhoseKeyIsTakenComesBackOnceAlthoughAFollowerFails()
    {
        AttachmentsForm form;
        QVERIFY(open(form));
        remove(form, 0);
        const tvTableRowPtr other = form.addRow(u"other.txt"_s);
        AttachmentsForm::set(*other, "SeqNo", 101);
        form.rows->afterAdding = [] { throw Error(u"the title is away"_s); };
        const QStringList expected = {u"door.png"_s, u"lock.png"_s, u"other.txt"_s, u"report.docx"_s};
        undo(form);
        QCOMPARE(form.boxes.take().first().text,
                 u"Unexpected error putting attachment back: the title is away"_s);
        QCOMPARE(form.fileNames(), expected);
        QCOMPARE(said(form), QString());
        undo(form);
        QCOMPARE(form.fileNames(), expected);
        QCOMPARE(form.list->Count(), 4);
    }

    void aRowWhoseKeyIsTakenAndThatIsRefusedStaysRemoved()
    {
        AttachmentsForm form;
        QVERIFY(open(form));
        remove(form, 0);
        const tvTableRowPtr other = form.addRow(u"other.txt"_s);
        AttachmentsForm::set(*other, "SeqNo", 101);
        form.rows->beforeAdding = [](tvTableRow&) { throw Error(u"the record is locked"_s); };
        undo(form);
        QCOMPARE(form.boxes.take().size(), 1);
        QCOMPARE(form.rows->Count(), 3);
        QCOMPARE(said(form), u"report.docx removed. Undo"_s);
        form.rows->beforeAdding = {};
        undo(form);
        QCOMPARE(form.fileNames().last(), u"report.docx"_s);
        QCOMPARE(form.rows->Count(), 4);
        QCOMPARE(said(form), QString());
    }

    void aRowWhoseKeyIsTakenComesBackWithAnother()
    {
        AttachmentsForm form;
        prepare(form);
        form.rows->SetPrimaryValue(102);
        QVERIFY(form.open());
        remove(form, 1);
        const tvTableRowPtr other = form.addRow(u"other.txt"_s); // 104
        AttachmentsForm::set(*other, "SeqNo", 102);
        undo(form);
        QCOMPARE(form.fileNames(),
                 QStringList({u"report.docx"_s, u"lock.png"_s, u"other.txt"_s, u"door.png"_s}));
        QCOMPARE(form.text(3, "SeqNo"), u"102"_s);
        QCOMPARE(form.text(4, "SeqNo"), u"105"_s);
        QCOMPARE(form.text(4, "Description"), u"second"_s);
        QCOMPARE(coverOf(form), 105);
        QCOMPARE(form.marked(), u"105"_s);
        QCOMPARE(form.list->Count(), 4);
    }

    void aRowThatTheHostHasPutBackIsOnlyShown()
    {
        AttachmentsForm form;
        QVERIFY(open(form));
        const tvTableRowPtr row = form.rows->Item(1);
        form.press(Qt::Key_Delete);
        form.rows->Add(row);
        undo(form);
        QCOMPARE(form.fileNames(), QStringList({u"door.png"_s, u"lock.png"_s, u"report.docx"_s}));
        QCOMPARE(form.marked(), u"101"_s);
        QCOMPARE(said(form), QString());
    }

    void aFailureIsToldAndTheLineStays()
    {
        AttachmentsForm form;
        QVERIFY(open(form));
        form.press(Qt::Key_Delete);
        form.rows->beforeAdding = [](tvTableRow&) { throw Error(u"the record is locked"_s); };
        undo(form);
        const QList<ShownBox> shown = form.boxes.take();
        QCOMPARE(shown.size(), 1);
        QCOMPARE(shown.first().text, u"Unexpected error putting attachment back: the record is locked"_s);
        QCOMPARE(shown.first().title, u"Attachments"_s);
        QCOMPARE(shown.first().icon, BoxIcon::Critical);
        QCOMPARE(form.rows->Count(), 2);
        QCOMPARE(form.list->Count(), 2);
        QCOMPARE(said(form), u"report.docx removed. Undo"_s);
        form.rows->beforeAdding = {};
        undo(form);
        QCOMPARE(form.rows->Count(), 3);
        QCOMPARE(said(form), QString());
    }

    void aFollowerThatFailsBehindTheReturnLeavesTheListInStep()
    {
        AttachmentsForm form;
        prepare(form);
        form.rows->SetPrimaryValue(102);
        QVERIFY(form.open());
        remove(form, 1);
        const Subscription failing = form.rows->PrimaryStatusChanged.subscribe(
            [](const QVariant&) { throw Error(u"the cover is away"_s); });
        undo(form);
        QCOMPARE(form.boxes.take().first().text,
                 u"Unexpected error putting attachment back: the cover is away"_s);
        QCOMPARE(form.rows->Count(), 3);
        QCOMPARE(form.list->Count(), 3);
        QCOMPARE(said(form), QString());
    }

    void aRowThatIsBackAlthoughAFollowerFailedIsThereOnce()
    {
        AttachmentsForm form;
        QVERIFY(open(form));
        form.press(Qt::Key_Delete);
        form.rows->afterAdding = [] { throw Error(u"the title is away"_s); };
        undo(form);
        QCOMPARE(form.boxes.take().first().text,
                 u"Unexpected error putting attachment back: the title is away"_s);
        QCOMPARE(form.fileNames(), QStringList({u"door.png"_s, u"lock.png"_s, u"report.docx"_s}));
        QCOMPARE(form.list->Count(), 3);
        QCOMPARE(said(form), QString());
    }

    void aFollowerThatFailsBehindTheReturnTakesNeitherCommentNorCoverAway()
    {
        AttachmentsForm form;
        prepare(form);
        form.rows->SetPrimaryValue(102);
        QVERIFY(form.open());
        form.click(form.placeOfLine(1));
        form.typeComment(u"a "_s);
        form.choose(1, Qt::Key_R);
        QCOMPARE(coverOf(form), 103);
        form.rows->afterAdding = [] { throw Error(u"the title is away"_s); };
        undo(form);
        QCOMPARE(form.boxes.take().first().text,
                 u"Unexpected error putting attachment back: the title is away"_s);
        QCOMPARE(form.fileNames(), QStringList({u"report.docx"_s, u"lock.png"_s, u"door.png"_s}));
        QCOMPARE(form.text(3, "Notes"), u"a two"_s);
        QCOMPARE(coverOf(form), 102);
        QCOMPARE(said(form), QString());
    }

    void aCommentThatIsRefusedLeavesTheCoverWhatItWas()
    {
        AttachmentsForm form;
        const auto notes = std::make_shared<FollowedNotes>(u"noted"_s);
        form.rows->Add(rowWith(notes));
        prepare(form);
        form.rows->SetPrimaryValue(101);
        QVERIFY(form.open());
        form.typeComment(u"a "_s);
        form.choose(0, Qt::Key_R);
        QCOMPARE(coverOf(form), 103);
        notes->follower = [] { throw Error(u"the comment is locked"_s); };
        undo(form);
        QCOMPARE(form.boxes.take().first().text,
                 u"Unexpected error putting attachment back: the comment is locked"_s);
        QCOMPARE(form.rows->Count(), 4);
        QCOMPARE(coverOf(form), 101);
        QCOMPARE(said(form), QString());
    }

    void aFollowerOfTheReturnMayDeleteTheSection()
    {
        AttachmentsForm form;
        prepare(form);
        form.rows->SetPrimaryValue(102);
        QVERIFY(form.open());
        remove(form, 1);
        const tavrin::test::Unhandled unhandled;
        const Subscription deleting =
            form.rows->PrimaryStatusChanged.subscribe([&](const QVariant&) { delete form.section.data(); });
        undo(form);
        QVERIFY(form.section.isNull());
        QCOMPARE(form.rows->Count(), 3);
        QCOMPARE(form.boxes.shown().size(), 0);
        QCOMPARE(unhandled.texts, QStringList());
    }

    void aFollowerOfTheReturnMayBindAnotherRecord()
    {
        AttachmentsForm form;
        prepare(form);
        form.rows->SetPrimaryValue(102);
        QVERIFY(form.open());
        remove(form, 1);
        const auto former = form.rows;
        const Subscription binding = former->PrimaryStatusChanged.subscribe([&](const QVariant&) {
            form.replaceRows();
            form.addRow(u"other.txt"_s, u"other"_s);
            form.read();
        });
        undo(form);
        QCOMPARE(former->Count(), 3);
        QCOMPARE(form.fileNames(), QStringList{u"other.txt"_s});
        QCOMPARE(form.list->Count(), 1);
        QCOMPARE(form.description->Text(), u"other"_s);
        QCOMPARE(said(form), QString());
        QCOMPARE(form.boxes.shown().size(), 0);
    }
};

TAVRIN_TEST_MAIN(tst_AttachmentsUndoHost)
#include "tst_AttachmentsUndoHost.moc"
