#include "host/HostTestSupport.h"
#include "host/samples/Generator.h"

#include <QSet>

using namespace tavrin;
using namespace tavrin::test;

class tst_Generator : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void theSameSeedGivesTheSameRows()
    {
        const Generator one(42);
        const Generator two(42);
        two.offenses(10); // asking for one kind does not change another
        QCOMPARE(one.employees(300), two.employees(300));
        QCOMPARE(one.offenses(300), two.offenses(300));
        QCOMPARE(one.codeValues(7, 300), two.codeValues(7, 300));
    }

    void theFirstRowsOfASeedStayTheSameForEver()
    {
        const EmployeeRow first = Generator(1).employees(1).first();
        QCOMPARE(first.OfficerId, QStringLiteral("GN1007"));
        QCOMPARE(first.Name, QStringLiteral("Åkerlund, Iris"));
        QCOMPARE(first.Hired, QDate(2023, 1, 30));
    }

    void anotherSeedGivesOtherRows()
    {
        QVERIFY(Generator(1).employees(50) != Generator(2).employees(50));
        QVERIFY(Generator(1).codeValues(7, 50) != Generator(1).codeValues(8, 50));
    }

    void moreRowsBeginWithTheFewer()
    {
        const Generator generator(3);
        QCOMPARE(generator.employees(500).mid(0, 20), generator.employees(20));
    }

    void keysAreUnique()
    {
        const Generator generator(5);
        const auto employees = generator.employees(20000);
        QSet<QString> officerIds;
        QSet<QString> userIds;
        for (const EmployeeRow& row : employees)
            officerIds << row.OfficerId;
        for (const UserRow& row : generator.users(employees))
            userIds << row.UserId;
        QCOMPARE(officerIds.size(), 20000);
        QCOMPARE(userIds.size(), 20000);
    }

    void someAreInactiveAndSomeHandleDogs()
    {
        int inactive = 0;
        int handlers = 0;
        for (const EmployeeRow& row : Generator(9).employees(1000)) {
            inactive += row.Active ? 0 : 1;
            handlers += row.K9Handler ? 1 : 0;
            QCOMPARE(row.LeftOn.isValid(), !row.Active);
        }
        QVERIFY(inactive > 50 && inactive < 200);
        QVERIFY(handlers > 40 && handlers < 170);
    }

    void everythingFitsIntoADatabase()
    {
        QTemporaryDir folder;
        const auto database = Database::open(folder.filePath(QStringLiteral("records.db")));
        const Generator generator(11);
        const auto employees = generator.employees(500);
        Transaction transaction(*database);
        insertRows(*database,
                   QList<CodeTableRow>{{500, QStringLiteral("Made up"), QStringLiteral("generated")}});
        insertRows(*database, generator.codeValues(500, 2000));
        insertRows(*database, employees);
        insertRows(*database, generator.users(employees));
        insertRows(*database, generator.offenses(2000));
        transaction.commit();
        QCOMPARE(firstOf(*database, QStringLiteral("SELECT COUNT(*) FROM offense_code")).toInt(), 2000);
    }

    void countsThatCannotBeMadeAreRefused()
    {
        QVERIFY(Generator(1).employees(0).isEmpty());
        QVERIFY(!errorOf([] { Generator(1).employees(-1); }).isEmpty());
        QVERIFY(!errorOf([] { Generator(1).codeValues(1, 32768); }).isEmpty());
    }
};

TAVRIN_TEST_MAIN(tst_Generator)
#include "tst_Generator.moc"
