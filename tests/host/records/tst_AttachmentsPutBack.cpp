#include "attachments/section/Attachments.h"
#include "host/HostCase.h"
#include "host/records/RecordTestSupport.h"
#include "testing/FakeDesktop.h"
#include "testing/FakeHost.h"
#include "widgets/lists/ListView.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

/// The section on a record of the reference host.
struct Page
{
    explicit Page(RecordPtr incident)
        : installation(host)
        , record(std::move(incident))
        , rows(record->collection(u"Attachments"_s))
        , section(new Attachments(&window))
        , list(section->findChild<ListView*>(u"lvwFiles"_s))
    {
        host.state().permissions << u"Incident/10"_s << u"Incident/20"_s;
        window.resize(section->size());
        static_cast<BoundSection*>(section)->ReadData(record);
    }
    bool show()
    {
        window.show();
        window.activateWindow();
        list->setFocus();
        return QTest::qWaitForWindowActive(&window);
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(window.windowHandle(), key, modifiers);
    }
    void undo() { press(Qt::Key_Z, Qt::ControlModifier); }

    FakeHost host;
    HostInstallation installation;
    FakeMessageBoxes boxes;
    RecordPtr record;
    RecordCollectionPtr rows;
    QWidget window;
    Attachments* section;
    ListView* list;
};

/// Key, stored name, description and comment of each row, and "*" for the cover.
QStringList contentOf(RecordCollection& rows)
{
    QStringList content;
    for (const RecordRowPtr& row : rows.rows()) {
        QStringList texts;
        for (const QString& column : {u"SeqNo"_s, u"FileName"_s, u"Description"_s, u"Notes"_s})
            texts << ToText(row->cell(column).value());
        const bool isCover = rows.PrimaryIndex() == content.size() + 1;
        content << texts.join(u'|') + (isCover ? u"*"_s : QString());
    }
    return content;
}

} // namespace

/// What a removal and its undo leave in the database.
class tst_AttachmentsPutBack : public RecordStoreCase
{
    Q_OBJECT

private:
    /// A saved incident with three attachments, the second its cover.
    RecordPtr incidentWithFiles()
    {
        const RecordPtr record = savedIncident();
        const RecordCollectionPtr rows = record->collection(u"Attachments"_s);
        for (const QString& name : {u"report.docx"_s, u"door.png"_s, u"lock.png"_s}) {
            const tvTableRowPtr row = rows->NewItem();
            fieldOf(*row, u"FileName"_s)->SetValue(u"2014\\03\\20160201130507_"_s + name);
            fieldOf(*row, u"OriginalFileName"_s)->SetValue(name);
            fieldOf(*row, u"Description"_s)->SetValue(u"of "_s + name);
            fieldOf(*row, u"Notes"_s)->SetValue(u"noted"_s);
            fieldOf(*row, u"UserDate"_s)->SetValue(QDateTime(QDate(2016, 2, 1), QTime(13, 5, 7)));
            rows->Add(row);
        }
        rows->SetPrimaryValue(rows->rows()[1]->keyValue());
        m_store->save(*record);
        return m_store->load(record->key());
    }
    QStringList saved(const RecordPtr& record)
    {
        return contentOf(*m_store->load(record->key())->collection(u"Attachments"_s));
    }

private Q_SLOTS:
    void aSavedRowThatIsPutBackIsTheSavedRowAgain()
    {
        const RecordPtr record = incidentWithFiles();
        const QStringList before = saved(record);
        const RecordRowPtr row = record->collection(u"Attachments"_s)->rows().front();
        Page page(record);
        QVERIFY(page.show());
        page.press(Qt::Key_Delete);
        QCOMPARE(page.rows->removedRows().size(), std::size_t(1));
        page.undo();
        QCOMPARE(page.rows->rows().back(), row);
        QVERIFY(!row->IsNew());
        QVERIFY(!row->isChanged());
        QCOMPARE(page.rows->removedRows().size(), std::size_t(0));
        QVERIFY(!record->isChanged()); // nothing is left to save
        const QString tables = contentOfTables(*m_database);
        m_store->save(*record);
        QCOMPARE(contentOfTables(*m_database), tables);
        QCOMPARE(saved(record), before);
        QCOMPARE(page.boxes.shown().size(), 0);
    }

    void theCoverThatIsPutBackIsTheCoverAgain()
    {
        const RecordPtr record = incidentWithFiles();
        const QStringList before = saved(record);
        Page page(record);
        QVERIFY(page.show());
        page.press(Qt::Key_Down);
        page.press(Qt::Key_Delete);
        QCOMPARE(page.rows->PrimaryIndex(), 2); // lock.png
        page.undo();
        QCOMPARE(page.rows->PrimaryIndex(), 3);
        QVERIFY(!record->isChanged());
        m_store->save(*record);
        QCOMPARE(saved(record), before);
    }

    void aRowThatIsPutBackBehindASaveIsThereOnce()
    {
        const RecordPtr record = incidentWithFiles();
        const QStringList before = saved(record);
        Page page(record);
        QVERIFY(page.show());
        page.press(Qt::Key_Down);
        page.press(Qt::Key_Delete);
        m_store->save(*record);
        QCOMPARE(saved(record).size(), 2);
        page.undo();
        QCOMPARE(page.boxes.shown().size(), 0);
        QCOMPARE(page.list->Count(), 3);
        QVERIFY(page.rows->rows().back()->IsNew());
        m_store->save(*record);
        QCOMPARE(saved(record), before); // at its place again, with its key, its texts and as the cover
        m_store->save(*record);
        QCOMPARE(saved(record), before);
    }

    void allRowsCanBePutBackBehindASave()
    {
        const RecordPtr record = incidentWithFiles();
        const QStringList before = saved(record);
        Page page(record);
        QVERIFY(page.show());
        for (int i = 0; i < 3; ++i)
            page.press(Qt::Key_Delete);
        m_store->save(*record);
        QCOMPARE(saved(record), QStringList());
        for (int i = 0; i < 3; ++i)
            page.undo();
        m_store->save(*record);
        QCOMPARE(saved(record), before);
        QCOMPARE(page.boxes.shown().size(), 0);
    }

    void aRowThatWasNeverSavedIsPutBackAsANewOne()
    {
        const RecordPtr record = incidentWithFiles();
        const tvTableRowPtr row = record->collection(u"Attachments"_s)->NewItem();
        fieldOf(*row, u"FileName"_s)->SetValue(u"2016\\02\\20160201130507_new.txt"_s);
        record->collection(u"Attachments"_s)->Add(row);
        record->collection(u"Attachments"_s)->SetPosition(4);
        Page page(record);
        QVERIFY(page.show());
        page.press(Qt::Key_Delete);
        m_store->save(*record);
        QCOMPARE(saved(record).size(), 3);
        page.undo();
        QVERIFY(page.rows->rows().back()->IsNew());
        m_store->save(*record);
        QCOMPARE(saved(record).size(), 4);
        QCOMPARE(saved(record).last(), u"4|2016\\02\\20160201130507_new.txt||"_s);
    }

    void aRowThatIsRemovedAndPutBackAgainAndAgainStaysOne()
    {
        const RecordPtr record = incidentWithFiles();
        const QStringList before = saved(record);
        Page page(record);
        QVERIFY(page.show());
        for (int i = 0; i < 3; ++i) {
            page.press(Qt::Key_Delete);
            page.undo();
            m_store->save(*record);
            QCOMPARE(saved(record), before);
        }
    }
};

TAVRIN_TEST_MAIN(tst_AttachmentsPutBack)
#include "tst_AttachmentsPutBack.moc"
