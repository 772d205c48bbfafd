#include "HostCase.h"
#include "host/HostCaches.h"
#include "host/ReferenceHost.h"
#include "host/SampleData.h"

using namespace tavrin;
using namespace tavrin::test;

namespace {
constexpr TableNumber Weapons = 302;
}

class tst_HostCaches : public HostCase
{
    Q_OBJECT

private Q_SLOTS:
    void nibrsCodesAreTheActiveOnesOfTheirTable()
    {
        const auto module = m_host->createNibrsModule(QStringLiteral("NIBRS.Singletons"));
        const auto codes = module->GetNibrsOffenseCodeList();
        QCOMPARE(codes.first().first, QStringLiteral("09A"));
        QCOMPARE(codes.first().second, QStringLiteral("Murder and Nonnegligent Manslaughter"));
        for (const auto& code : codes)
            QVERIFY(code.first != QStringLiteral("90A"));
        QCOMPARE(module->GetNibrsOffenseCodeList(), codes);
        QCOMPARE(errorNumberOf([this] { m_host->createNibrsModule(QStringLiteral("NIBRS.Other")); }), 429);
    }

    void theListsHaveTheShapesThatThePickersRead()
    {
        const XmlNode employee =
            m_host->newEmployeeListCache()->Document().documentElement().selectSingleNode(
                QStringLiteral("Employee[OfficerNo=7]"));
        QCOMPARE(employee.childElement(QStringLiteral("OfficerId")).text(), QStringLiteral("MC1049"));
        QCOMPARE(employee.childElement(QStringLiteral("Name")).text(), QStringLiteral("D'Amberley, Luc"));
        QCOMPARE(employee.childElement(QStringLiteral("BadgeNo")).text(), QStringLiteral("196"));
        QCOMPARE(employee.childElement(QStringLiteral("ActiveFlag")).text(), QStringLiteral("True"));
        QCOMPARE(employee.childElement(QStringLiteral("IsK9Handler")).text(), QStringLiteral("True"));
        const XmlNode offense = m_host->newOffenseListCache()->Document().documentElement().selectSingleNode(
            QStringLiteral("Offense[OffenseNo=33]"));
        QCOMPARE(offense.childElement(QStringLiteral("OffenseId")).text(), QStringLiteral("PC 220.60"));
        QCOMPARE(offense.childElement(QStringLiteral("RptCode")).text(), QStringLiteral("23H"));
        QCOMPARE(offense.childElement(QStringLiteral("ActiveFlag")).text(), QStringLiteral("0"));
        const XmlNode user = m_host->newUsersCache()->Document().documentElement().selectSingleNode(
            QStringLiteral("UserAccount[UserId='gfairweather']"));
        QCOMPARE(user.childElement(QStringLiteral("IsActive")).text(), QStringLiteral("False"));
        QCOMPARE(user.childElement(QStringLiteral("LastName")).text(), QStringLiteral("Fairweather"));
        const XmlNode team = m_host->newTableCodeCache()
                                 ->Document(Tables::Team)
                                 .documentElement()
                                 .selectSingleNode(QStringLiteral("TableCode[ValueCode='PB']"));
        QCOMPARE(team.childElement(QStringLiteral("ValueNo")).text(), QStringLiteral("2"));
        QCOMPARE(team.childElement(QStringLiteral("ValueDesc")).text(), QStringLiteral("Patrol B"));
        QCOMPARE(team.childElement(QStringLiteral("ActiveFlag")).text(), QStringLiteral("0"));
    }

    void textsOfTheCaches_data()
    {
        QTest::addColumn<QVariant>("number");
        QTest::addColumn<QString>("officer");
        QTest::addColumn<QString>("offense");
        QTest::addColumn<QString>("weapon");
        QTest::newRow("number") << QVariant(12) << QStringLiteral("MC1084/Oakenfold, Theodora")
                                << QStringLiteral("PC 140.10/Robbery in the First Degree")
                                << QStringLiteral("Handgun");
        QTest::newRow("text") << QVariant(QStringLiteral("12"))
                              << QStringLiteral("MC1084/Oakenfold, Theodora")
                              << QStringLiteral("PC 140.10/Robbery in the First Degree")
                              << QStringLiteral("Handgun");
        for (const QVariant& none : {Null(), QVariant(), QVariant(99999), QVariant(QStringLiteral("twelve"))})
            QTest::addRow("none: %s",
                          qPrintable(none.isValid() ? QStringLiteral("'") + none.toString() : QString()))
                << none << QStringLiteral("/") << QStringLiteral("/") << QString();
    }
    void textsOfTheCaches()
    {
        QFETCH(QVariant, number);
        const auto employees = m_host->newEmployeeListCache();
        const auto offenses = m_host->newOffenseListCache();
        QTEST(employees->ShortText(number) + QLatin1Char('/') + employees->FullText(number), "officer");
        QTEST(offenses->ShortText(number) + QLatin1Char('/') + offenses->FullText(number), "offense");
        QTEST(m_host->newTableCodeCache()->GetDescription(Weapons, number), "weapon");
    }

    void usersAreShownByFirstAndLastName()
    {
        QCOMPARE(m_host->newUsersCache()->UserDisplayName(QStringLiteral("JOBrien")),
                 QStringLiteral("Jack O'Brien"));
        QCOMPARE(m_host->newUsersCache()->UserDisplayName(QStringLiteral("nobody")), QString());
    }

    void documentsShareOneTreeAndAChangeStaysWithItsClone()
    {
        const XmlDocument one = m_host->newEmployeeListCache()->Document();
        const XmlDocument two = m_host->newEmployeeListCache()->Document();
        QVERIFY(one.sharesTreeWith(two));
        one.documentElement().setAttribute(QStringLiteral("mine"), QStringLiteral("1"));
        QVERIFY(!m_host->newEmployeeListCache()->Document().documentElement().hasAttribute(
            QStringLiteral("mine")));
    }

    void charactersThatXmlCannotHoldAreLeftOut()
    {
        Statement update(*m_database, QStringLiteral("UPDATE employee SET name = ? WHERE officer_no = 1"));
        update.run({QStringLiteral("Odd\u0001, <N>")});
        m_host->refreshCaches();
        QCOMPARE(m_host->newEmployeeListCache()
                     ->Document()
                     .documentElement()
                     .selectSingleNode(QStringLiteral("Employee[OfficerNo=1]/Name"))
                     .text(),
                 QStringLiteral("Odd, <N>"));
    }

    void aRefreshBringsChangesAndTellsOfThem()
    {
        const auto kept = m_host->newEmployeeListCache();
        QStringList changed;
        int raised = 0;
        const Subscription keep =
            m_host->hostServices().Events().CacheRefreshed.subscribe([&](const CacheRefreshInfo& info) {
                ++raised;
                changed = info.Changed;
            });
        execute("UPDATE employee SET name = 'New, Name' WHERE officer_no = 1");
        QCOMPARE(kept->FullText(1), QStringLiteral("O'Brien, Jack"));
        m_host->refreshCaches();
        QCOMPARE(raised, 1);
        QCOMPARE(changed, QStringList{QStringLiteral("Employee")});
        QCOMPARE(kept->FullText(1), QStringLiteral("New, Name"));
        QVERIFY(kept->Document().xml().contains(QStringLiteral("New, Name")));
    }

    void aRefreshThatFailsKeepsTheLastGoodLists()
    {
        const XmlDocument before = m_host->newEmployeeListCache()->Document();
        bool raised = false;
        const Subscription keep = m_host->hostServices().Events().CacheRefreshed.subscribe(
            [&raised](const CacheRefreshInfo&) { raised = true; });
        execute("UPDATE code_value SET display_text = 'other' WHERE table_no = 228");
        execute("ALTER TABLE employee RENAME TO staff");
        QVERIFY(!errorOf([this] { m_host->refreshCaches(); }).isEmpty());
        QVERIFY(!raised);
        QVERIFY(m_host->newEmployeeListCache()->Document().sharesTreeWith(before));
        QCOMPARE(m_host->newTableCodeCache()->GetDescription(Tables::Team, 1), QStringLiteral("Patrol A"));
        execute("ALTER TABLE staff RENAME TO employee");
        m_host->refreshCaches();
        QVERIFY(raised);
        QCOMPARE(m_host->newTableCodeCache()->GetDescription(Tables::Team, 1), QStringLiteral("other"));
    }

    void aChangeByAnotherProgramIsNoticed()
    {
        QVERIFY(!m_host->refreshIfChanged());
        Database::open(path("records.db"))
            ->execute(QStringLiteral("UPDATE employee SET name = 'x' WHERE officer_no = 1"));
        QVERIFY(m_host->refreshIfChanged());
        QCOMPARE(m_host->newEmployeeListCache()->FullText(1), QStringLiteral("x"));
        QVERIFY(!m_host->refreshIfChanged());
    }

    void aCacheOutlivesTheHost()
    {
        const auto cache = m_host->newEmployeeListCache();
        m_host.reset();
        QCOMPARE(cache->ShortText(1), QStringLiteral("MC1007"));
    }
};

TAVRIN_TEST_MAIN(tst_HostCaches)
#include "tst_HostCaches.moc"
