#include "host/HostCase.h"
#include "host/records/RecordTestSupport.h"

#include <QVariantList>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

const QString Attachments = QStringLiteral("Attachments");

} // namespace

class tst_AttachmentRows : public RecordStoreCase
{
    Q_OBJECT

private:
    RecordCollectionPtr addRows(const RecordPtr& record, int count)
    {
        const RecordCollectionPtr rows = record->collection(Attachments);
        for (int i = 1; i <= count; ++i) {
            const tvTableRowPtr row = rows->NewItem();
            fieldOf(*row, QStringLiteral("FileName"))
                ->SetValue(QStringLiteral("2014\\03\\20160201130507_%1.jpg").arg(i));
            rows->Add(row);
        }
        return rows;
    }

private Q_SLOTS:
    void theRecordTellsItsClass()
    {
        QCOMPARE(m_store->create()->ClassName(), QStringLiteral("tvIncidentBO"));
        QCOMPARE(m_store->create()->mainRow()->ClassName(), QString());
    }

    void aRowHasTheFieldsOfAnAttachmentAndTheirLengths()
    {
        const RecordCollectionPtr rows = m_store->create()->collection(Attachments);
        QVERIFY(rows);
        QCOMPARE(rows->KeyColumn(), SeqNo);
        QCOMPARE(rows->schema().Table.RowClass, QStringLiteral("TVEvent.tvAttachmentIndex"));
        const tvTableRowPtr row = rows->NewItem();
        for (const char* name : {"SeqNo", "FileName", "OriginalFileName", "FolderNo", "Description", "Notes",
                                 "UserId", "UserDate"})
            QVERIFY2(row->Item(QString::fromLatin1(name)), name);
        QCOMPARE(fieldOf(*row, QStringLiteral("Description"))->MaxLength(), 100);
        QCOMPARE(fieldOf(*row, QStringLiteral("Notes"))->MaxLength(), 2000);
        QVERIFY(fieldOf(*row, SeqNo)->IsKey());
        QVERIFY(IsNull(fieldOf(*row, QStringLiteral("FolderNo"))->Value()));
    }

    void aCollectionOfTheControlsOwnTakesTheClass()
    {
        RecordCollection rows;
        rows.SetItemClass(QStringLiteral("TVEvent.tvAttachmentIndex"));
        fieldOf(*rows.NewItem(), QStringLiteral("OriginalFileName"))->SetValue(QStringLiteral("a.pdf"));
    }

    void everyFieldSurvivesSaveAndReload()
    {
        const RecordPtr record = savedIncident();
        const RecordCollectionPtr rows = record->collection(Attachments);
        rows->AddNew();
        const QDateTime moment(QDate(2016, 2, 1), QTime(13, 5, 7));
        putLast(record, Attachments, "FileName", QStringLiteral("2014\\03\\20160201130507_Bericht é.pdf"));
        putLast(record, Attachments, "OriginalFileName", QStringLiteral("Bericht é.pdf"));
        putLast(record, Attachments, "FolderNo", 3);
        putLast(record, Attachments, "Description", QString(100, QLatin1Char('d')));
        putLast(record, Attachments, "Notes", QString(2000, QLatin1Char('n')));
        putLast(record, Attachments, "UserId", QStringLiteral("admin"));
        putLast(record, Attachments, "UserDate", moment);
        m_store->save(*record);

        const RecordPtr loaded = m_store->load(record->key());
        const RecordRowPtr row = loaded->collection(Attachments)->rows().front();
        for (const FieldCell* cell : rows->rows().front()->cells()) {
            const QString column = cell->column().Name;
            QVERIFY2(SameValue(row->cell(column).value(), cell->value()), qPrintable(column));
        }
        QVERIFY(!row->IsNew() && !loaded->isChanged());
        QCOMPARE(row->cell(QStringLiteral("UserDate")).value().toDateTime(), moment);
        QCOMPARE(ToText(row->cell(QStringLiteral("FileName")).value()),
                 QStringLiteral("2014\\03\\20160201130507_Bericht é.pdf"));
    }

    void aTextThatIsTooLongStopsTheSaveAndNothingIsWritten_data()
    {
        QTest::addColumn<QByteArray>("field");
        QTest::addColumn<int>("length");
        QTest::newRow("description") << QByteArray("Description") << 101;
        QTest::newRow("notes") << QByteArray("Notes") << 2001;
    }
    void aTextThatIsTooLongStopsTheSaveAndNothingIsWritten()
    {
        QFETCH(QByteArray, field);
        QFETCH(int, length);
        const RecordPtr record = savedIncident();
        addRows(record, 1);
        putLast(record, Attachments, field.constData(), QString(length, QLatin1Char('x')));
        const QString before = contentOfTables(*m_database);
        QCOMPARE(errorOf([&] { m_store->save(*record); }),
                 QStringLiteral("IncdAttachment, row 1: the field %1 takes %2 characters, but the text has "
                                "%3. Shorten it and save again.")
                     .arg(QString::fromLatin1(field))
                     .arg(length - 1)
                     .arg(length));
        QCOMPARE(contentOfTables(*m_database), before);
    }

    void aNewRowCanBePrimaryBeforeItIsSaved()
    {
        const RecordPtr record = m_store->create();
        put(record, "CaseNo", QStringLiteral("2026-7"));
        const RecordCollectionPtr rows = addRows(record, 3);
        QVariantList told;
        const auto keep = rows->PrimaryStatusChanged.subscribe([&](const QVariant& key) { told << key; });
        rows->SetPrimaryValue(rows->rows()[1]->keyValue());
        QCOMPARE(told, QVariantList{2});
        m_store->save(*record);

        const RecordCollectionPtr loaded = m_store->load(record->key())->collection(Attachments);
        QCOMPARE(loaded->Count(), 3);
        QCOMPARE(loaded->PrimaryIndex(), 2);
        loaded->SetPosition(2);
        QVERIFY(loaded->CurrentIsPrimary());
        loaded->SetPosition(3);
        QVERIFY(!loaded->CurrentIsPrimary());
    }

    void thePrimaryRowOfTheAttachmentsIsNotThatOfTheOffenses()
    {
        const RecordPtr record = savedIncident();
        addRows(record, 1)->SetPrimaryValue(1);
        m_store->save(*record);
        const RecordPtr loaded = m_store->load(record->key());
        QCOMPARE(loaded->collection(Attachments)->PrimaryIndex(), 1);
        QCOMPARE(loaded->collection(Offenses)->PrimaryIndex(), 2);
    }

    void removingThePrimaryRowLeavesNoneAndSaysSo_data()
    {
        QTest::addColumn<bool>("immediately");
        QTest::newRow("with the next save") << false;
        QTest::newRow("at once") << true;
    }
    void removingThePrimaryRowLeavesNoneAndSaysSo()
    {
        QFETCH(bool, immediately);
        const RecordPtr record = savedIncident();
        const RecordCollectionPtr rows = addRows(record, 3);
        rows->SetPrimaryValue(2);
        m_store->save(*record);
        QStringList told;
        const auto removed =
            rows->ItemRemoved.subscribe([&](const QVariant& key) { told << u"removed "_s + ToText(key); });
        const auto removedEx = rows->ItemRemovedEx.subscribe([&](qint32 index, const tvTableRowPtr& row) {
            told << QStringLiteral("removed at %1 ").arg(index) + ToText(fieldOf(*row, SeqNo)->Value());
        });
        const auto primary = rows->PrimaryStatusChanged.subscribe(
            [&](const QVariant& key) { told << (IsNull(key) ? QStringLiteral("no primary") : ToText(key)); });
        rows->SetPosition(2);
        rows->RemoveCurrent(immediately);
        QCOMPARE(told, (QStringList{QStringLiteral("removed 2"), QStringLiteral("removed at 2 2"),
                                    QStringLiteral("no primary")}));
        QCOMPARE(m_store->load(record->key())->collection(Attachments)->Count(), immediately ? 2 : 3);
        m_store->save(*record);
        const RecordCollectionPtr loaded = m_store->load(record->key())->collection(Attachments);
        QCOMPARE(loaded->Count(), 2);
        QCOMPARE(loaded->PrimaryIndex(), 0);
    }
};

TAVRIN_TEST_MAIN(tst_AttachmentRows)
#include "tst_AttachmentRows.moc"
