#include "attachments/section/AttachmentsForm.h"
#include "frame/memory_records/MemoryField.h"
#include "frame/memory_records/MemoryRow.h"

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

/// The main row of an incident.
tvTableRowPtr incidentRow(const QVariant& key)
{
    return std::make_shared<MemoryRow>(
        QList<tvFieldPtr>{std::make_shared<MemoryField>(u"Summary"_s, u"the same"_s),
                          std::make_shared<MemoryField>(u"IncidentNo"_s, key, true)});
}

} // namespace

/// Adding files to `Attachments` while the host follows, fails, reads a record or deletes the section.
class tst_AttachmentsAddingHost : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // What the host hears

    void theHostIsToldOfEachFileBeforeItsRowIsAdded()
    {
        AttachmentsForm form;
        QVERIFY(form.open());
        form.dialogs.choose({form.newFile(u"a.txt"_s), form.newFile(u"b.txt"_s)});
        form.click(form.link);
        QTRY_COMPARE(form.rows->Count(), 2);
        QStringList calls;
        for (const QString& call : form.host.state().log) {
            if (call == u"NotifyFileUploaded"_s || call == u"CurrentUserId"_s)
                calls << call;
        }
        QCOMPARE(calls, QStringList({u"NotifyFileUploaded"_s, u"CurrentUserId"_s, u"NotifyFileUploaded"_s,
                                     u"CurrentUserId"_s}));
    }

    void aFailurePartWayKeepsTheRowsThatAreThereAndLeavesTheSectionUsable()
    {
        AttachmentsForm form;
        QVERIFY(form.open());
        Subscription failing = form.rows->PrimaryStatusChanged.subscribe([](const QVariant& key) {
            if (!IsNull(key))
                throw Error(u"no cover today"_s, 17, u"CoverImage"_s);
        });
        form.dialogs.choose({form.newFile(u"a.txt"_s), form.newFile(u"b.png"_s), form.newFile(u"c.txt"_s)});
        form.click(form.link);
        QCOMPARE(form.theBox(), u"no cover today|Attachments|critical"_s);
        QCOMPARE(form.fileNames(), QStringList({u"a.txt"_s, u"b.png"_s}));
        QVERIFY(form.section->isEnabled());
        QVERIFY(form.child<GroupBox>("picUpdating")->isHidden());
        QCOMPARE(form.list->Count(), 0); // until the next refresh
        failing.cancel();
        form.dialogs.choose({form.newFile(u"d.txt"_s)});
        form.click(form.link);
        QCOMPARE(form.list->Count(), 3);
    }

    // Another record, or the same one anew, while files are uploaded

    void aRecordThatIsReadAnewWhileFilesAreUploadedGetsTheirRows_data()
    {
        QTest::addColumn<bool>("isNewObject");
        QTest::newRow("the same object") << false;
        QTest::newRow("another object of its key") << true;
    }
    void aRecordThatIsReadAnewWhileFilesAreUploadedGetsTheirRows()
    {
        QFETCH(bool, isNewObject);
        AttachmentsForm form;
        form.addThree();
        form.record->SetItem(u"Incident"_s, incidentRow(7));
        QVERIFY(form.open());
        const auto former = std::exchange(form.rows, std::make_shared<NumberedRows>());
        form.addThree();
        form.host.state().duringTransfer = [&](const QString&, qint64, qint64) {
            if (isNewObject) {
                form.record = std::make_shared<FakeRecord>();
                form.record->SetItem(u"Incident"_s, incidentRow(7));
            }
            form.record->SetItem(u"Attachments"_s, form.rows);
            form.read();
            form.host.state().duringTransfer = {};
        };
        form.dialogs.choose({form.newFile(u"a.txt"_s), form.newFile(u"b.txt"_s)});
        form.click(form.link);
        QCOMPARE(former->Count(), 3);
        QCOMPARE(form.fileNames().mid(3), QStringList({u"a.txt"_s, u"b.txt"_s}));
        QCOMPARE(form.list->Count(), 5);
        QCOMPARE(form.marked(), u"105"_s);
        QCOMPARE(form.theBox(), QString());
        QVERIFY(form.section->isEnabled());
    }

    void aRecordThatIsReadAnewWhileTheRowsAreAddedGetsThemAll()
    {
        AttachmentsForm form;
        QVERIFY(form.openThree());
        const auto former = form.rows;
        const Subscription reading = former->PrimaryStatusChanged.subscribe([&](const QVariant&) {
            form.replaceRows();
            form.read();
        });
        form.dialogs.choose({form.newFile(u"a.png"_s), form.newFile(u"b.txt"_s)});
        form.click(form.link); // the first image becomes the cover
        QCOMPARE(former->Count(), 4);
        QCOMPARE(form.fileNames(), QStringList({u"b.txt"_s, u"a.png"_s}));
        QCOMPARE(form.list->Count(), 2);
        QCOMPARE(form.theBox(), QString());
    }

    void filesOfARecordDoNotReachAnotherThatIsBoundWhileTheyAreUploadedAndThePersonIsTold_data()
    {
        QTest::addColumn<QVariant>("key");
        QTest::addColumn<QVariant>("otherKey");
        QTest::addColumn<QString>("otherClass");
        QTest::newRow("of another key") << QVariant(7) << QVariant(8) << u"tvIncidentBO"_s;
        QTest::newRow("of another class") << QVariant(7) << QVariant(7) << u"tvWarrantBO"_s;
        QTest::newRow("both new") << Null() << Null() << u"tvIncidentBO"_s;
        QTest::newRow("without main rows") << QVariant() << QVariant() << u"tvIncidentBO"_s;
    }
    void filesOfARecordDoNotReachAnotherThatIsBoundWhileTheyAreUploadedAndThePersonIsTold()
    {
        QFETCH(QVariant, key);
        QFETCH(QVariant, otherKey);
        QFETCH(QString, otherClass);
        AttachmentsForm form;
        form.addThree();
        if (key.isValid())
            form.record->SetItem(u"Incident"_s, incidentRow(key));
        QVERIFY(form.open());
        const auto others = std::make_shared<NumberedRows>();
        const auto other = std::make_shared<FakeRecord>();
        other->SetClassName(otherClass);
        other->SetItem(u"Attachments"_s, others);
        if (otherKey.isValid())
            other->SetItem(otherClass == u"tvIncidentBO"_s ? u"Incident"_s : u"Warrant"_s,
                           incidentRow(otherKey));
        form.host.state().duringTransfer = [&](const QString&, qint64, qint64) {
            static_cast<BoundSection*>(form.section)->ReadData(other);
            form.window.setWindowTitle(u"Incident 8"_s);
        };
        form.dialogs.choose({form.newFile(u"a.txt"_s), form.newFile(u"b.png"_s)});
        form.click(form.link);
        const QList<ShownBox> shown = form.boxes.take();
        QCOMPARE(shown.size(), 1);
        QCOMPARE(
            shown.first().text,
            u"Another record was opened here while files were uploaded for \"Incident 7\". They are in the "
            u"attachments folder. Open \"Incident 7\" again and add those that it does not list:"
            u"\r\n\r\na.txt\r\nb.png"_s);
        QCOMPARE(shown.first().title, u"Attachments"_s);
        QCOMPARE(shown.first().icon, BoxIcon::Exclamation);
        QCOMPARE(form.fileNames().mid(3), QStringList({u"a.txt"_s, u"b.png"_s}));
        QCOMPARE(others->Count(), 0);
        QCOMPARE(form.list->Count(), 0);
        QVERIFY(form.section->isEnabled());
    }

    void anotherRecordWhileAllFilesFailIsNothingToTell()
    {
        AttachmentsForm form;
        QVERIFY(form.open());
        const QString path = form.newFile(u"a.txt"_s);
        const auto other = std::make_shared<FakeRecord>();
        other->SetItem(u"Attachments"_s, std::make_shared<NumberedRows>());
        form.host.state().duringTransfer = [&](const QString&, qint64, qint64) {
            static_cast<BoundSection*>(form.section)->ReadData(other);
            throw Error(u"the store is away"_s);
        };
        const NextModal skip([](QWidget&) {});
        form.dialogs.choose({path});
        form.click(form.link);
        QCOMPARE(form.theBox(), QString());
        QVERIFY(form.section->isEnabled());
    }

    // A form that goes

    void aFormThatDeletesTheSectionDuringAnUploadEndsTheAddingQuietly()
    {
        AttachmentsForm form;
        QVERIFY(form.openThree());
        const Unhandled unhandled;
        form.dialogs.choose({form.newFile(u"a.txt"_s)});
        form.host.state().duringTransfer = [&](const QString&, qint64, qint64) {
            delete form.section.data();
        };
        form.choose(0, Qt::Key_A);
        QVERIFY(form.section.isNull());
        QVERIFY(!QApplication::activeModalWidget());
        QCOMPARE(unhandled.texts, QStringList());
        QCOMPARE(form.boxes.shown().size(), 0);
        QCOMPARE(form.rows->Count(), 3);
    }
};

TAVRIN_TEST_MAIN(tst_AttachmentsAddingHost)
#include "tst_AttachmentsAddingHost.moc"
