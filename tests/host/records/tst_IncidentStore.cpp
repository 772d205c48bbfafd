#include "frame/host_contracts/Contracts.h"
#include "host/HostTestSupport.h"
#include "host/records/IncidentStore.h"
#include "support/RaisedError.h"
#include "support/TestCase.h"

#include <QTemporaryDir>

using namespace Qt::StringLiterals;
using namespace tavrin;
using tavrin::test::raisedBy;

namespace {

tvFieldPtr field(const tvBusinessObjectPtr& incident, const QString& name)
{
    return fieldOf(dynamic_cast<tvTableRow&>(*incident->Item(u"Incident"_s)), name);
}

/// A record of somebody else.
class Stranger final : public tvBusinessObject
{
public:
    HostObjectPtr Item(const QString&) override { return nullptr; }
};

} // namespace

class tst_IncidentStore : public tavrin::test::TestCase
{
    Q_OBJECT

private:
    QTemporaryDir m_folder;
    std::unique_ptr<Database> m_database;

private Q_SLOTS:
    void initTestCase() { m_database = Database::open(m_folder.filePath(u"records.sqlite"_s)); }

    void anIncidentIsCreatedSavedFoundAndOpenedAgain()
    {
        IncidentStore store(*m_database);
        QList<qint64> saved;
        const Subscription keep = store.Saved.subscribe([&](qint64 number) { saved << number; });
        const tvBusinessObjectPtr incident = store.create();
        QCOMPARE(IncidentStore::numberOf(incident), 0);
        field(incident, u"CaseNo"_s)->SetValue(u"26-0001"_s);
        field(incident, u"Summary"_s)->SetValue(u"A bicycle"_s);
        QVERIFY(IncidentStore::isChanged(incident));

        store.save(incident);

        const qint64 number = IncidentStore::numberOf(incident);
        QVERIFY(number > 0);
        QVERIFY(!IncidentStore::isChanged(incident));
        QCOMPARE(saved, QList<qint64>{number});
        QCOMPARE(store.list(u"bicycle"_s).size(), 1);
        QCOMPARE(store.list(u"bicycle"_s).first().IncidentNo, number);
        QCOMPARE(field(store.open(number), u"Summary"_s)->Value(), QVariant(u"A bicycle"_s));
    }

    void aRecordOfSomebodyElseIsRefused()
    {
        IncidentStore store(*m_database);
        const auto stranger = std::make_shared<Stranger>();
        const QString refusal = u"The record is no incident of this store"_s;
        QCOMPARE(raisedBy([&] { store.save(stranger); }).Description, refusal);
        QCOMPARE(raisedBy([&] { store.save(nullptr); }).Description, refusal);
        QCOMPARE(raisedBy([&] { IncidentStore::numberOf(stranger); }).Description, refusal);
        QCOMPARE(raisedBy([&] { IncidentStore::isChanged(stranger); }).Description, refusal);
    }

    void anIncidentThatIsNotThereCannotBeOpened()
    {
        IncidentStore store(*m_database);
        QVERIFY(raisedBy([&] { store.open(4711); }).Number != 0);
    }
};

TAVRIN_TEST_MAIN(tst_IncidentStore)
#include "tst_IncidentStore.moc"
