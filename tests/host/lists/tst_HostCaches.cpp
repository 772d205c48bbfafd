#include "host/HostCase.h"
#include "host/lists/HostCaches.h"
#include "host/samples/SampleData.h"
#include "host/services/ReferenceHost.h"

using namespace tavrin;
using namespace tavrin::test;

namespace {
constexpr TableNumber Weapons = 302;
}

class tst_HostCaches : public HostCase
{
    Q_OBJECT

private:
    /// The list whose root has this name; of the code tables the one of teams.
    XmlNode listUnder(const QString& root)
    {
        if (root == QStringLiteral("Employees"))
            return m_host->newEmployeeListCache()->Document().documentElement();
        if (root == QStringLiteral("Offenses"))
            return m_host->newOffenseListCache()->Document().documentElement();
        if (root == QStringLiteral("UserAccounts"))
            return m_host->newUsersCache()->Document().documentElement();
        return m_host->newTableCodeCache()->Document(Tables::Team).documentElement();
    }

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

    void theListsHaveTheShapesThatThePickersRead_data()
    {
        QTest::addColumn<QString>("root");
        QTest::addColumn<QString>("row");
        QTest::addColumn<QString>("cells");
        const auto row = [](const char* name, const char* root, const char* found, const char* cells) {
            QTest::newRow(name) << QString::fromLatin1(root) << QString::fromLatin1(found)
                                << QString::fromLatin1(cells);
        };
        row("dog handler", "Employees", "Employee[OfficerNo=7]",
            "OfficerNo=7;OfficerId=MC1049;Name=D'Amberley, Luc;BadgeNo=196;ActiveFlag=True;IsK9Handler=True");
        row("inactive employee", "Employees", "Employee[OfficerId='MC1035']",
            "OfficerNo=5;OfficerId=MC1035;Name=Fairweather, Gordon;BadgeNo=402;ActiveFlag=False;"
            "IsK9Handler=False");
        row("offense", "Offenses", "Offense[OffenseId='PC 140.10']",
            "OffenseNo=12;OffenseId=PC 140.10;Description=Robbery in the First Degree;RptCode=120;"
            "ActiveFlag=1");
        row("inactive offense", "Offenses", "Offense[OffenseNo=33]",
            "OffenseNo=33;OffenseId=PC 220.60;Description=Theft of a Library Book;RptCode=23H;ActiveFlag=0");
        row("user", "UserAccounts", "UserAccount[UserId='jobrien']",
            "UserId=jobrien;IsActive=True;FirstName=Jack;LastName=O'Brien;OfficerId=MC1007;BadgeNo=333");
        row("inactive user", "UserAccounts", "UserAccount[UserId='gfairweather']",
            "UserId=gfairweather;IsActive=False;FirstName=Gordon;LastName=Fairweather;OfficerId=MC1035;"
            "BadgeNo=402");
        row("user who is no officer", "UserAccounts", "UserAccount[UserId='clerk']",
            "UserId=clerk;IsActive=True;FirstName=Rosemary;LastName=Inkwell;OfficerId=;BadgeNo=");
        row("code", "TableCodes", "TableCode[ValueCode='PA']",
            "ValueNo=1;ValueCode=PA;ValueDesc=Patrol A;ActiveFlag=1");
        row("inactive code", "TableCodes", "TableCode[ValueCode='PB']",
            "ValueNo=2;ValueCode=PB;ValueDesc=Patrol B;ActiveFlag=0");
    }
    void theListsHaveTheShapesThatThePickersRead()
    {
        QFETCH(QString, root);
        QFETCH(QString, row);
        const XmlNode list = listUnder(root);
        QCOMPARE(list.nodeName(), root);
        QStringList cells;
        for (const XmlNode& cell : list.selectSingleNode(row).childNodes())
            cells << cell.nodeName() + QLatin1Char('=') + cell.text();
        QTEST(cells.join(QLatin1Char(';')), "cells");
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

    void aHandlerOfARefreshSeesTheNewRowsOfEveryList()
    {
        const auto kept = m_host->newEmployeeListCache();
        QStringList seen;
        const Subscription keep =
            m_host->hostServices().Events().CacheRefreshed.subscribe([&](const CacheRefreshInfo& info) {
                seen << info.Changed;
                seen << kept->FullText(1) << m_host->newEmployeeListCache()->FullText(1)
                     << m_host->newOffenseListCache()->FullText(1)
                     << m_host->newUsersCache()->UserDisplayName(QStringLiteral("clerk"))
                     << m_host->newTableCodeCache()->GetDescription(Tables::Team, 1);
                for (const char* root : {"Employees", "Offenses", "UserAccounts", "TableCodes"})
                    seen << listUnder(QString::fromLatin1(root))
                                .selectSingleNode(QStringLiteral("*[*='New']/*[.='New']"))
                                .nodeName();
            });
        execute("UPDATE employee SET name = 'New' WHERE officer_no = 1");
        execute("UPDATE offense_code SET description = 'New' WHERE offense_no = 1");
        execute("UPDATE user_account SET first_name = 'New', last_name = '' WHERE user_id = 'clerk'");
        execute("UPDATE code_value SET display_text = 'New' WHERE table_no = 228 AND value_no = 1");
        m_host->refreshCaches();
        QCOMPARE(seen.join(QLatin1Char(' ')),
                 QStringLiteral("TableCode Employee Offense UserAccount New New New New New "
                                "Name Description FirstName ValueDesc"));
    }

    void aRefreshThatFindsNothingChangedRaisesNothing()
    {
        const XmlDocument before = m_host->newEmployeeListCache()->Document();
        bool raised = false;
        const Subscription keep = m_host->hostServices().Events().CacheRefreshed.subscribe(
            [&raised](const CacheRefreshInfo&) { raised = true; });
        Database::open(path("records.db"))
            ->execute(QStringLiteral("UPDATE incident SET RowVersion = RowVersion + 1"));
        QVERIFY(m_host->refreshIfChanged());
        QVERIFY(!m_host->refreshIfChanged());
        m_host->refreshCaches();
        QVERIFY(!raised);
        QVERIFY(m_host->newEmployeeListCache()->Document().sharesTreeWith(before));
    }

    void aLookForChangesThatFailsIsRepeatedAtTheNext()
    {
        const auto other = Database::open(path("records.db"));
        other->execute(QStringLiteral("UPDATE employee SET name = 'x' WHERE officer_no = 1"));
        other->execute(QStringLiteral("ALTER TABLE employee RENAME TO staff"));
        for (int look = 0; look < 2; ++look)
            QVERIFY(!errorOf([this] { m_host->refreshIfChanged(); }).isEmpty());
        QCOMPARE(m_host->newEmployeeListCache()->FullText(1), QStringLiteral("O'Brien, Jack"));
        other->execute(QStringLiteral("ALTER TABLE staff RENAME TO employee"));
        QVERIFY(m_host->refreshIfChanged());
        QCOMPARE(m_host->newEmployeeListCache()->FullText(1), QStringLiteral("x"));
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
