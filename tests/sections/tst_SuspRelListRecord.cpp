#include "host/HostCase.h"
#include "host/records/RecordTestSupport.h"
#include "sections/SuspRelList.h"
#include "sections/SuspectForm.h"
#include "support/Keys.h"
#include "support/NextModal.h"
#include "testing/FakeDesktop.h"
#include "testing/Unhandled.h"
#include "widgets/lists/FlatDropdown.h"
#include "widgets/lists/ListView.h"
#include "widgets/panels/PopupMenu.h"

#include <QPointer>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

const QString Victims = u"Victims"_s;
const QString LinkRows = u"SuspectVictims"_s;

/// The section of one record's victims on a form of its own, as after a start of the program.
struct Page
{
    explicit Page(RecordPtr shown)
        : record(std::move(shown))
    {
        section = new SuspRelList(&window, {u"ctlVictims"_s, nullptr});
        section->SetOtherCollectionTag(Victims);
        section->SetOtherItemName(u"Victim"_s);
        section->SetOtherItemSeqName(u"VictimSeqNo"_s);
        section->setGeometry(10, 10, 500, 200);
        window.resize(520, 220);
        list = section->findChild<ListView*>(u"lvwRows"_s);
        window.show();
        window.activateWindow();
        section->setFocus();
        contract().ReadData(record);
    }
    BoundSection& contract() const { return *section; }
    bool isReady() { return QTest::qWaitForWindowActive(&window) && list->hasFocus(); }
    QString refusal() const
    {
        return errorOf([this] { contract().WriteData(record); });
    }
    /// Through menu and dialog: the first victim without a relationship gets the code at `relation`.
    bool add(int relation)
    {
        auto* menu = section->findChild<PopupMenu*>();
        const NextModal dialog([relation](QWidget& modal) {
            modal.findChild<FlatDropdown*>(u"cboRelationship"_s)->SetListIndex(relation);
            QTest::keyClick(modal.windowHandle(), Qt::Key_Return);
        });
        QTest::keyClick(window.windowHandle(), Qt::Key_Menu);
        tavrin::test::chooseByKey(menu, Qt::Key_A);
        window.activateWindow();
        return dialog.came() && isReady();
    }
    void removeSelected()
    {
        QTest::keyClick(window.windowHandle(), Qt::Key_Menu);
        tavrin::test::chooseByKey(section->findChild<PopupMenu*>(), Qt::Key_R);
    }
    /// "name/relationship", as they show.
    QStringList rows() const
    {
        QStringList texts;
        for (int i = 0; i < list->Count(); ++i)
            texts << list->SubItem(list->Key(i), u"name"_s) + u'/' +
                         list->SubItem(list->Key(i), u"relationship"_s);
        return texts;
    }

    RecordPtr record;
    QWidget window;
    QPointer<SuspRelList> section;
    ListView* list = nullptr;
};

} // namespace

/// The section on records of the reference host, which are saved to a real database and read again.
class tst_SuspRelListRecord : public HostCase
{
    Q_OBJECT

private:
    std::optional<HostInstallation> m_installation;
    std::optional<RecordStore> m_store;

    void useHost()
    {
        m_installation.reset();
        signOn(u"admin"_s);
        m_installation.emplace(*m_host);
    }
    void requireRelations()
    {
        execute("INSERT INTO required_field (module, table_name, field, extra) "
                "VALUES ('Incident', 'IncdSuspVictim', 'RelationNo', '')");
        useHost();
    }
    /// A saved incident of two suspects and three victims without relationships; the first suspect is open.
    qint64 savedIncident()
    {
        const RecordPtr record = m_store->create();
        put(record, "CaseNo", u"2099-1"_s);
        for (const QString& name : {u"Moss, Ada"_s, u"Nolan, Bea"_s}) {
            record->collection(Suspects)->AddNew();
            putLast(record, Suspects, "SuspectName", name);
        }
        for (const QString& name : {u"Ash, Ann"_s, u"Birch, Ben"_s, u"Cedar, Cy"_s}) {
            record->collection(Victims)->AddNew();
            putLast(record, Victims, "VictimName", name);
        }
        m_store->save(*record);
        return record->key();
    }
    RecordPtr opened(qint64 incidentNo, qint16 suspect = 1)
    {
        const RecordPtr record = m_store->load(incidentNo);
        record->collection(Suspects)->SetPosition(suspect);
        return record;
    }
    /// "suspect victim code" of each link in the database.
    QStringList stored(qint64 incidentNo)
    {
        QStringList texts;
        const RecordPtr record = m_store->load(incidentNo);
        for (const RecordRowPtr& row : record->collection(LinkRows)->rows()) {
            QStringList values;
            for (const char* field : {"SeqNo", "VictimSeqNo", "RelationNo"})
                values << ToText(row->cell(QString::fromLatin1(field)).value());
            texts << values.join(u' ');
        }
        texts.sort();
        return texts;
    }
    /// The codes of the relationships and their descriptions, in the order in which the dialog offers them
    /// behind its empty row.
    TableValue relation(int index)
    {
        return m_host->hostServices().GetTableValues(Tables::SuspectRelationship, false).Items.at(index - 1);
    }
    QString code(int index) { return ToText(relation(index).Value); }
    QString description(int index) { return relation(index).DisplayText; }

private Q_SLOTS:
    void init() override
    {
        HostCase::init();
        m_store.emplace(*m_database);
        execute("DELETE FROM required_field");
        useHost();
    }
    void cleanup() override
    {
        m_store.reset();
        m_installation.reset();
        HostCase::cleanup();
    }

    void whatIsAddedIsInTheDatabaseBehindTheSaveAndComesBackWhenTheRecordIsOpenedAgain()
    {
        const qint64 incidentNo = savedIncident();
        QStringList shown;
        {
            Page page(opened(incidentNo));
            QVERIFY(page.isReady());
            QCOMPARE(page.rows(), QStringList());
            QVERIFY(page.add(2));
            QVERIFY(page.add(1));
            shown = page.rows();
            QCOMPARE(shown,
                     QStringList({u"Ash, Ann/"_s + description(2), u"Birch, Ben/"_s + description(1)}));
            QVERIFY(!page.record->isChanged()); // nothing reaches the record before a write
            QCOMPARE(page.refusal(), QString());
            QVERIFY(page.record->isChanged());
            QCOMPARE(stored(incidentNo), QStringList()); // nor the database before a save
            m_store->save(*page.record);
        }
        QCOMPARE(stored(incidentNo), QStringList({u"1 1 "_s + code(2), u"1 2 "_s + code(1)}));
        const Page again(opened(incidentNo));
        QCOMPARE(again.rows(), shown);
        QCOMPARE(again.refusal(), QString());
        QVERIFY(!again.record->isChanged()); // the same codes are no change, although they come as texts
        const Page other(opened(incidentNo, 2));
        QCOMPARE(other.rows(), QStringList());
    }

    void aRefusedWriteSavesNothingAndIsCompletedLater()
    {
        requireRelations();
        const qint64 incidentNo = savedIncident();
        Page page(opened(incidentNo));
        QVERIFY(page.isReady());
        QVERIFY(page.add(1));
        QCOMPARE(page.refusal(), Incomplete.arg(u"2 more relationships"_s));
        QCOMPARE(page.record->collection(LinkRows)->Count(), 1); // written into the record; this is meant
        QCOMPARE(stored(incidentNo), QStringList());
        QCOMPARE(page.rows(), QStringList{u"Ash, Ann/"_s + description(1)});
        QVERIFY(page.add(2));
        QCOMPARE(page.refusal(), Incomplete.arg(u"1 relationship"_s));
        QVERIFY(page.add(3));
        QCOMPARE(page.refusal(), QString());
        m_store->save(*page.record);
        QCOMPARE(stored(incidentNo),
                 QStringList({u"1 1 "_s + code(1), u"1 2 "_s + code(2), u"1 3 "_s + code(3)}));
    }

    void whatIsRemovedIsGoneBehindTheSaveAndTheOtherSuspectKeepsItsLinks()
    {
        const qint64 incidentNo = savedIncident();
        for (const qint16 suspect : {qint16(1), qint16(2)}) {
            Page page(opened(incidentNo, suspect));
            QVERIFY(page.isReady());
            QVERIFY(page.add(1));
            QVERIFY(page.add(2));
            QCOMPARE(page.refusal(), QString());
            m_store->save(*page.record);
        }
        {
            Page page(opened(incidentNo, 2));
            QVERIFY(page.isReady());
            page.removeSelected(); // the first
            QCOMPARE(page.rows(), QStringList{u"Birch, Ben/"_s + description(2)});
            QCOMPARE(page.refusal(), QString());
            QCOMPARE(stored(incidentNo).size(), 4);
            m_store->save(*page.record);
        }
        QCOMPARE(stored(incidentNo),
                 QStringList({u"1 1 "_s + code(1), u"1 2 "_s + code(2), u"2 2 "_s + code(2)}));
        const Page again(opened(incidentNo, 2));
        QCOMPARE(again.rows(), QStringList{u"Birch, Ben/"_s + description(2)});
    }

    void aLinkBetweenRowsThatAreStillToBeSavedHasTheirNumbersBehindTheSave()
    {
        const RecordPtr record = m_store->create();
        put(record, "CaseNo", u"2099-2"_s);
        record->collection(Suspects)->AddNew();
        putLast(record, Suspects, "SuspectName", u"Moss, Ada"_s);
        record->collection(Victims)->AddNew();
        putLast(record, Victims, "VictimName", u"Ash, Ann"_s);
        Page page(record);
        QVERIFY(page.isReady());
        QVERIFY(page.add(1));
        QCOMPARE(page.refusal(), QString());
        record->collection(Victims)->rows().front()->cell(u"SeqNo"_s).setValue(41); // as a host may
        m_store->save(*record);
        QCOMPARE(stored(record->key()), QStringList{u"1 41 "_s + code(1)});
        const Page again(opened(record->key()));
        QCOMPARE(again.rows(), QStringList{u"Ash, Ann/"_s + description(1)});
    }

    void aLinkThatCannotBeCompletedIsNeitherInTheRecordNorInTheDatabase()
    {
        const qint64 incidentNo = savedIncident();
        Page page(opened(incidentNo));
        QVERIFY(page.isReady());
        QVERIFY(page.add(1));
        page.section->SetOtherItemSeqName(u"WitnessSeqNo"_s); // a form that was designed for another list
        QVERIFY(page.refusal().contains(u"WitnessSeqNo"_s));
        QCOMPARE(page.record->collection(LinkRows)->Count(), 0);
        QVERIFY(!page.record->isChanged());
        m_store->save(*page.record);
        QCOMPARE(stored(incidentNo), QStringList());
        page.section->SetOtherItemSeqName(u"VictimSeqNo"_s);
        QCOMPARE(page.refusal(), QString()); // what the person entered is still there
        m_store->save(*page.record);
        QCOMPARE(stored(incidentNo), QStringList{u"1 1 "_s + code(1)});
    }

    void aRecordThatCannotBeReadKeepsItsLinks()
    {
        const qint64 incidentNo = savedIncident();
        {
            Page page(opened(incidentNo));
            QVERIFY(page.isReady());
            QVERIFY(page.add(1));
            QCOMPARE(page.refusal(), QString());
            m_store->save(*page.record);
        }
        Page page(opened(incidentNo));
        page.section->SetOtherItemSeqName(u"WitnessSeqNo"_s);
        const QString failure = errorOf([&] { page.contract().ReadData(page.record); });
        QVERIFY(failure.contains(u"WitnessSeqNo"_s));
        QCOMPARE(page.rows(), QStringList());
        page.section->SetOtherItemSeqName(u"VictimSeqNo"_s);
        QCOMPARE(page.refusal(), NotRead);
        m_store->save(*page.record);
        QCOMPARE(stored(incidentNo), QStringList{u"1 1 "_s + code(1)});
    }
};

TAVRIN_TEST_MAIN(tst_SuspRelListRecord)
#include "tst_SuspRelListRecord.moc"
