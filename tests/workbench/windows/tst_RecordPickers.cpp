#include "base/values/Variant.h"
#include "support/TestCase.h"
#include "workbench/PickerSite.h"

using namespace tavrin;
using namespace tavrin::workbench;
using namespace tavrin::test;

namespace {

const QString ReportingOfficer = QStringLiteral("ReportingOfficer");
const QString ReportingOfficerNo = QStringLiteral("ReportingOfficerNo");
const QString K9HandlerNo = QStringLiteral("K9HandlerNo");
const QString WhoLeftOnMarch31st = QStringLiteral("Bogglesworth");

/// Two employees and an offense that came after this workstation has read its lists.
void makeNewcomers(Site& site)
{
    site.workspace->database().execute(QStringLiteral("INSERT INTO employee (officer_no, officer_id, name) "
                                                      "VALUES (998, 'N8', 'New'), (999, 'N9', 'New')"));
    site.workspace->database().execute(
        QStringLiteral("INSERT INTO offense_code (offense_no, offense_id, "
                       "description, rpt_code) VALUES (997, 'N7', 'New', '90Z')"));
}

} // namespace

/// The officers of an incident, and what its pickers show and offer, with a real database.
class tst_RecordPickers : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void whatTheRecordHoldsIsShownAndIsNoChange()
    {
        PickerSite site;
        site.store(ReportingOfficerNo, 13);
        site.store(K9HandlerNo, 37); // who has left
        site.storeRows(Assignments, AssignedTo, {QStringLiteral("user:jobrien"), QStringLiteral("team:24")});
        site.storeRows(Offenses, OffenseNo, {18, 33});
        site.open();
        QVERIFY(SameValue(site.picker(ReportingOfficer)->GetValue(), 13));
        QVERIFY(SameValue(site.picker(K9Handler)->GetValue(), 37));
        QCOMPARE(site.values(Assignments),
                 QVariantList({QStringLiteral("user:jobrien"), QStringLiteral("team:24")}));
        QCOMPARE(site.values(Offenses), QVariantList({18.0, 33.0}));
        QVERIFY(!site.window->isDirty());
    }

    void whatNoListKnowsIsNoChangeAndSurvivesASave()
    {
        const QVariantList assignments{QStringLiteral("user:nobody"), QStringLiteral("team:9999"),
                                       QStringLiteral("no such form")};
        PickerSite site;
        makeNewcomers(site);
        site.store(ReportingOfficerNo, 999);
        site.store(K9HandlerNo, 998);
        site.storeRows(Assignments, AssignedTo, assignments);
        site.storeRows(Offenses, OffenseNo, {997, 18});
        site.open();
        QCOMPARE(site.boxes.texts(), QStringList());
        QVERIFY(IsNull(site.picker(ReportingOfficer)->GetValue()));
        QVERIFY(site.picker(ReportingOfficer)->toolTip().contains(QStringLiteral("999")));
        QVERIFY(!site.window->isDirty());
        site.editSummary();
        QVERIFY(site.window->save());
        QVERIFY(SameValue(site.stored(ReportingOfficerNo), 999));
        QVERIFY(SameValue(site.stored(K9HandlerNo), 998));
        QCOMPARE(site.storedRows(Assignments, AssignedTo), assignments);
        QCOMPARE(site.storedRows(Offenses, OffenseNo), QVariantList({997, 18}));
    }

    void aChoiceTakesTheUnknownValuesPlaceAndMayBeClearedAgain()
    {
        PickerSite site;
        makeNewcomers(site);
        site.store(K9HandlerNo, 998);
        site.openPage(OfficersPageNo);
        choose(*site.picker(K9Handler), QStringLiteral("mcbram"));
        QCOMPARE(site.picker(K9Handler)->toolTip(), QString());
        QVERIFY(site.window->isDirty());
        QVERIFY(site.window->save());
        QVERIFY(SameValue(site.stored(K9HandlerNo), 27));
        QVERIFY(!site.window->isDirty());
        clear(*site.picker(K9Handler)); // as empty as it was while the unknown value was there
        QVERIFY(site.window->isDirty());
        QVERIFY(site.window->save());
        QVERIFY(IsNull(site.stored(K9HandlerNo)));
    }

    void theSameChoiceAgainIsNoChange()
    {
        PickerSite site;
        site.store(K9HandlerNo, 37); // who has left, and is offered because the record holds him
        site.openPage(OfficersPageNo);
        clear(*site.picker(K9Handler));
        QVERIFY(site.window->isDirty());
        choose(*site.picker(K9Handler), QStringLiteral("stonecr"));
        QVERIFY(!site.window->isDirty());
        QCOMPARE(site.status(), QString());
    }

    void theOfficerIsRequired()
    {
        PickerSite site;
        site.store(ReportingOfficerNo, 13);
        site.openPage(OfficersPageNo);
        clear(*site.picker(ReportingOfficer));
        site.showPage(GeneralPageNo);
        QVERIFY(!site.window->save());
        QCOMPARE(site.boxes.texts(), QStringList{QStringLiteral("\"Reporting officer\" must be filled in.\n\n"
                                                                "What you typed is still in this window.")});
        QVERIFY(site.picker(ReportingOfficer)->isAncestorOf(QApplication::focusWidget()));
        QVERIFY(SameValue(site.stored(ReportingOfficerNo), 13));
    }

    // Who is offered

    void onlyHandlersOfDogsAreOfferedAndOnlyTheRecordsOwnWhenInactive()
    {
        PickerSite site;
        site.store(K9HandlerNo, 7);
        site.openPage(OfficersPageNo);
        QCOMPARE(offered(*site.picker(K9Handler), QStringLiteral("oaken")), QStringList());
        QCOMPARE(offered(*site.picker(K9Handler), QStringLiteral("stonecr")), QStringList());
        QCOMPARE(offered(*site.picker(K9Handler), QStringLiteral("starling")).size(), 1);
    }

    void whoHadLeftBeforeTheIncidentIsNotOffered_data()
    {
        QTest::addColumn<QString>("occurred");
        QTest::addColumn<QString>("reported");
        QTest::addColumn<bool>("isOffered");
        const QString early = QStringLiteral("2026-03-01 08:00");
        const QString lastDay = QStringLiteral("2026-03-31 23:59");
        const QString late = QStringLiteral("2026-04-01 00:00");
        const QString none;
        QTest::newRow("occurred before") << early << late << true;
        QTest::newRow("on the last day") << lastDay << late << true;
        QTest::newRow("occurred after") << late << early << false;
        QTest::newRow("reported before") << none << early << true;
        QTest::newRow("reported after") << none << late << false;
        QTest::newRow("no date of occurrence") << QStringLiteral("in spring") << late << false;
        QTest::newRow("neither") << none << none << true;
    }
    void whoHadLeftBeforeTheIncidentIsNotOffered()
    {
        QFETCH(QString, occurred);
        QFETCH(QString, reported);
        QFETCH(bool, isOffered);
        PickerSite site;
        site.store(ReportingOfficerNo, 13);
        site.openPage(OfficersPageNo);
        site.line(QStringLiteral("OccurredAt"))->setText(occurred);
        site.line(QStringLiteral("ReportedAt"))->setText(reported);
        QCOMPARE(offered(*site.picker(ReportingOfficer), WhoLeftOnMarch31st).size(), isOffered ? 1 : 0);
        QCOMPARE(offered(*site.picker(ReportingOfficer), QStringLiteral("kettlew")).size(), 1);
    }

    void theRecordsOwnOfficerStaysOfferedAlthoughHeHadLeft()
    {
        PickerSite site;
        site.store(ReportingOfficerNo, 57);
        site.openPage(OfficersPageNo);
        site.line(QStringLiteral("OccurredAt"))->setText(QStringLiteral("2026-04-01 00:00"));
        QCOMPARE(offered(*site.picker(ReportingOfficer), WhoLeftOnMarch31st).size(), 1);
        QCOMPARE(offered(*site.picker(ReportingOfficer), QStringLiteral("oakenfold")), QStringList());
    }
};

TAVRIN_TEST_MAIN(tst_RecordPickers)
#include "tst_RecordPickers.moc"
