#include "base/values/Variant.h"
#include "lookup/TavrinDropdown.h"
#include "sections/SuspRelList.h"
#include "support/Keys.h"
#include "support/NextModal.h"
#include "support/TestCase.h"
#include "widgets/lists/FlatDropdown.h"
#include "widgets/lists/ListView.h"
#include "workbench/Site.h"

#include <QListWidget>
#include <QPushButton>
#include <QVariantList>

using namespace tavrin;
using namespace tavrin::workbench;
using namespace tavrin::test;

namespace {

const QString Suspects = QStringLiteral("Suspects");
const QString SuspectName = QStringLiteral("SuspectName");
const QString RaceNo = QStringLiteral("RaceNo");
const QString SeqNo = QStringLiteral("SeqNo");
const QString Race = QStringLiteral("Race");
const QString Sex = QStringLiteral("Sex");
const QString Victims = QStringLiteral("SuspectVictims");
const QString Witnesses = QStringLiteral("SuspectWitnesses");
const QString Others = QStringLiteral("SuspectOthers");
const QString VictimSeqNo = QStringLiteral("VictimSeqNo");
const QString RelationNo = QStringLiteral("RelationNo");
/// The second of two suspects lacks the relationship to the second of two victims.
const QString Incomplete = QStringLiteral("school hallway");
/// Two suspects, one victim, and one witness whom the first suspect knows.
const QString Complete = QStringLiteral("copper pipe");
const QString Refusal =
    QStringLiteral("You must specify the relationship this suspect has to each victim before "
                   "continuing.\r\n\r\nYou need to add 1 relationship to complete this "
                   "section.\n\nWhat you typed is still in this window.");

struct SuspectSite : Site
{
    explicit SuspectSite(const QString& summary = Complete, const QByteArray& form = {})
        : Site(form, QStringLiteral("suspects.json"))
    {
        incidentNo = workspace->store().list(summary).constFirst().IncidentNo;
    }

    QListWidget* list() const { return window->findChild<QListWidget*>(QStringLiteral("suspects")); }
    SuspRelList* section(const QString& name) const { return window->findChild<SuspRelList*>(name); }
    ListView* rows(const QString& name) const { return section(name)->findChild<ListView*>(); }
    TavrinDropdown* code(const QString& name) const { return window->findChild<TavrinDropdown*>(name); }
    void openPage() { Site::openPage(SuspectsPageNo); }
    /// By keys, as long as the list is in view.
    void goTo(int row) const
    {
        list()->setFocus();
        while (list()->currentRow() != row)
            QTest::keyClick(list(), list()->currentRow() < row ? Qt::Key_Down : Qt::Key_Up);
    }
    void press(const QString& button) const
    {
        QTest::mouseClick(window->findChild<QPushButton*>(button), Qt::LeftButton);
    }
    void addSuspect(const QString& name) const
    {
        press(QStringLiteral("addSuspect"));
        QCOMPARE(QApplication::focusWidget(), line(SuspectName));
        QTest::keyClicks(line(SuspectName), name);
    }
    QWidget* openMenu(const QString& sectionName) const
    {
        section(sectionName)->setFocus();
        QTest::keyClick(window->windowHandle(), Qt::Key_Menu);
        return QApplication::activePopupWidget();
    }
    /// To the first party without one.
    void addRelationship(const QString& sectionName, const QString& letters) const
    {
        const int before = rows(sectionName)->Count();
        QWidget* menu = openMenu(sectionName);
        QVERIFY(menu);
        const NextModal dialog([&](QWidget& modal) {
            auto* relations = modal.findChild<FlatDropdown*>(QStringLiteral("cboRelationship"));
            relations->setFocus();
            QTest::keyClicks(relations, letters);
            QTest::keyClick(relations, Qt::Key_Return);
        });
        chooseByKey(menu, Qt::Key_A);
        QVERIFY(dialog.came());
        window->activateWindow(); // what a desktop does by itself, the offscreen platform does not
        QVERIFY(QTest::qWaitForWindowActive(window));
        QCOMPARE(rows(sectionName)->Count(), before + 1);
    }
    void removeRelationship(const QString& sectionName) const
    {
        const int before = rows(sectionName)->Count();
        QWidget* menu = openMenu(sectionName);
        QVERIFY(menu);
        chooseByKey(menu, Qt::Key_R);
        QTRY_COMPARE(rows(sectionName)->Count(), before - 1);
    }
    /// The suspect and the victim of each link, as "1-2".
    QStringList storedPairs()
    {
        QStringList pairs;
        const QVariantList suspects = storedRows(Victims, SeqNo);
        const QVariantList victims = storedRows(Victims, VictimSeqNo);
        for (qsizetype i = 0; i < suspects.size(); ++i)
            pairs << ToText(suspects.at(i)) + u'-' + ToText(victims.at(i));
        pairs.sort();
        return pairs;
    }
    void editName() const
    {
        QTest::keyClick(line(SuspectName), Qt::Key_End);
        QTest::keyClicks(line(SuspectName), QStringLiteral("x"));
    }
};

} // namespace

/// The suspects of an incident and their relationships, with the real sections and a real database.
class tst_RecordSuspects : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // Loading

    void whatTheRecordHoldsIsShownAndIsNoChange()
    {
        SuspectSite site(Incomplete);
        site.open();
        QVERIFY(!site.window->isDirty());
        site.showPage(SuspectsPageNo);
        QCOMPARE(site.list()->count(), 2);
        QCOMPARE(site.list()->item(1)->text(), QStringLiteral("Hopscotch, Dale"));
        QCOMPARE(site.line(SuspectName)->text(), QStringLiteral("Skylarkin, Perry"));
        QVERIFY(SameValue(site.code(Race)->Value(), 1));
        QVERIFY(SameValue(site.code(Sex)->Value(), 13));
        QCOMPARE(site.rows(Victims)->Count(), 2);
        QCOMPARE(site.rows(Witnesses)->Count(), 0);
        QCOMPARE(site.rows(Others)->Count(), 0);
        QVERIFY(!site.window->isDirty());
        site.goTo(1);
        QCOMPARE(site.line(SuspectName)->text(), QStringLiteral("Hopscotch, Dale"));
        QVERIFY(SameValue(site.code(Race)->Value(), 23));
        QCOMPARE(site.rows(Victims)->Count(), 1);
        QCOMPARE(site.rows(Witnesses)->Count(), 1);
        QVERIFY(!site.window->isDirty());
        QTest::mouseClick(site.list()->viewport(), Qt::LeftButton, {},
                          site.list()->visualItemRect(site.list()->item(0)).center());
        QCOMPARE(site.rows(Victims)->Count(), 2);
        QVERIFY(!site.window->isDirty());
        QCOMPARE(site.boxes.texts(), QStringList());
    }

    void aPageThatWasNeverShownLosesNothingInASave()
    {
        SuspectSite site;
        const QVariantList relations = site.storedRows(Victims, RelationNo);
        site.open();
        site.editSummary();
        QVERIFY(site.window->save());
        QCOMPARE(site.storedRows(Suspects, RaceNo), QVariantList({21, 21}));
        QCOMPARE(site.storedRows(Victims, RelationNo), relations);
        QCOMPARE(site.storedRows(Witnesses, SeqNo), QVariantList({1}));
        QVERIFY(!site.window->isDirty());
    }

    void aCodeThatIsNotInTheListStaysUntilAnotherIsChosen()
    {
        SuspectSite site;
        const RecordPtr record = site.workspace->store().load(site.incidentNo);
        fieldOf(*record->collection(Suspects)->Item(1), RaceNo)->SetValue(999);
        site.workspace->store().save(*record);
        site.openPage();
        QVERIFY(IsNull(site.code(Race)->Value()));
        QVERIFY(!site.window->isDirty());
        site.goTo(1);
        QVERIFY(SameValue(site.code(Race)->Value(), 21));
        site.goTo(0);
        QVERIFY(!site.window->isDirty());
        site.editSummary();
        QVERIFY(site.window->save());
        QCOMPARE(site.storedRows(Suspects, RaceNo), QVariantList({999, 21}));
        site.code(Race)->setFocus();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
        QVERIFY(site.window->isDirty());
        const QVariant chosen = site.code(Race)->Value();
        QVERIFY(site.window->save());
        QVERIFY(SameValue(site.storedRows(Suspects, RaceNo).constFirst(), chosen));
    }

    // Changes

    void whatIsTakenBackIsNoChange()
    {
        SuspectSite site;
        site.openPage();
        site.editName();
        QVERIFY(site.window->isWindowModified());
        QCOMPARE(site.list()->item(0)->text(), QStringLiteral("Unknownx"));
        QTest::keyClick(site.line(SuspectName), Qt::Key_Backspace);
        QVERIFY(!site.window->isWindowModified());
        site.code(Sex)->setFocus();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Up);
        QVERIFY(site.window->isWindowModified());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
        QVERIFY(!site.window->isWindowModified());
    }

    void aRelationshipThatIsRemovedIsAChangeAndWithoutASaveNoOther()
    {
        SuspectSite site;
        site.openPage();
        site.removeRelationship(Witnesses);
        QVERIFY(site.window->isWindowModified());
        QCOMPARE(site.storedRows(Witnesses, SeqNo).size(), 1);
        QVERIFY(site.window->save());
        QVERIFY(!site.window->isWindowModified());
        QVERIFY(site.storedRows(Witnesses, SeqNo).isEmpty());
        QCOMPARE(site.storedPairs(), QStringList({QStringLiteral("1-1"), QStringLiteral("2-1")}));
    }

    void goingToAnotherSuspectKeepsWhatWasEdited()
    {
        SuspectSite site;
        site.openPage();
        site.editName();
        site.removeRelationship(Victims); // leaves the section incomplete
        site.goTo(1);
        QCOMPARE(site.boxes.texts(), QStringList());
        QCOMPARE(site.line(SuspectName)->text(), QStringLiteral("Unknown"));
        QCOMPARE(site.rows(Victims)->Count(), 1);
        QVERIFY(site.window->isWindowModified());
        site.goTo(0);
        QCOMPARE(site.line(SuspectName)->text(), QStringLiteral("Unknownx"));
        QCOMPARE(site.rows(Victims)->Count(), 0);
        QCOMPARE(site.storedRows(Suspects, SuspectName).constFirst().toString(), QStringLiteral("Unknown"));
        site.addRelationship(Victims, QStringLiteral("s"));
        site.goTo(1);
        QVERIFY(site.window->save());
        QCOMPARE(site.list()->currentRow(), 1);
        QCOMPARE(site.line(SuspectName)->text(), QStringLiteral("Unknown"));
        QCOMPARE(site.storedRows(Suspects, SuspectName).constFirst().toString(), QStringLiteral("Unknownx"));
        QCOMPARE(site.storedPairs(), QStringList({QStringLiteral("1-1"), QStringLiteral("2-1")}));
    }

    // Refusals

    void anIncompleteSectionOfAnySuspectRefusesTheSaveAndComesToTheFront()
    {
        SuspectSite site(Incomplete);
        const QVariant summary = site.stored(QStringLiteral("Summary"));
        site.openPage();
        site.editName();
        site.showPage(GeneralPageNo);
        site.editSummary();
        QVERIFY(!site.window->save());
        QCOMPARE(site.boxes.texts(), QStringList({Refusal}));
        QCOMPARE(site.pages()->currentRow(), int(SuspectsPageNo));
        QCOMPARE(site.list()->currentRow(), 1);
        QCOMPARE(site.line(SuspectName)->text(), QStringLiteral("Hopscotch, Dale"));
        QVERIFY(site.rows(Victims)->hasFocus());
        QVERIFY(site.window->isWindowModified());
        QCOMPARE(site.stored(QStringLiteral("Summary")), summary);

        site.addRelationship(Victims, QStringLiteral("s"));
        QVERIFY(site.window->save());
        QVERIFY(!site.window->isWindowModified());
        QCOMPARE(site.list()->currentRow(), 1);
        QCOMPARE(site.storedPairs(), QStringList({QStringLiteral("1-1"), QStringLiteral("1-2"),
                                                  QStringLiteral("2-1"), QStringLiteral("2-2")}));
        QCOMPARE(site.storedRows(Suspects, SuspectName).constFirst().toString(),
                 QStringLiteral("Skylarkin, Perryx"));
        QCOMPARE(site.boxes.shown().size(), 1);
    }

    void aSuspectWithoutANameRefusesTheSave()
    {
        SuspectSite site(Incomplete);
        site.openPage();
        QTest::keyClick(site.line(SuspectName), Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(site.line(SuspectName), Qt::Key_Delete);
        QCOMPARE(site.list()->item(0)->text(), QStringLiteral("(no name)"));
        site.goTo(1);
        QVERIFY(!site.window->save());
        QVERIFY(site.boxes.texts().constFirst().startsWith(
            QStringLiteral("\"Name\" must be filled in; \"Unknown\" will do.")));
        QCOMPARE(site.list()->currentRow(), 0);
        QVERIFY(site.line(SuspectName)->hasFocus());
    }

    // Adding and removing

    void newSuspectsAreLinkedToNewVictimsInOneSave()
    {
        SuspectSite site;
        const RecordPtr record = site.workspace->store().create();
        fieldOf(*record->mainRow(), QStringLiteral("CaseNo"))->SetValue(QStringLiteral("2026-009002"));
        fieldOf(*record->mainRow(), QStringLiteral("ReportedAt"))
            ->SetValue(QDateTime(QDate(2026, 3, 1), QTime(12, 0)));
        fieldOf(*record->mainRow(), QStringLiteral("ReportingOfficerNo"))->SetValue(1);
        for (const auto& name : {QStringLiteral("Ash, Ann"), QStringLiteral("Birch, Ben")})
            fieldOf(*record->collection(QStringLiteral("Victims"))->AddNew(), QStringLiteral("VictimName"))
                ->SetValue(name);
        site.window = new RecordWindow(*site.workspace, record);
        site.window->show();
        site.showPage(SuspectsPageNo);
        QVERIFY(site.window->findChild<QLabel*>(QStringLiteral("noSuspect"))->isVisible());
        for (const auto& name : {QStringLiteral("First"), QStringLiteral("Second")}) {
            site.addSuspect(name);
            QCOMPARE(site.rows(Victims)->Count(), 0);
            site.addRelationship(Victims, QStringLiteral("s"));
            site.addRelationship(Victims, QStringLiteral("n"));
        }
        QVERIFY2(site.window->save(), qPrintable(site.boxes.texts().join(u'\n')));
        site.incidentNo = site.window->incidentNo();
        QVERIFY(!site.window->isWindowModified());
        QCOMPARE(site.storedRows(Suspects, SuspectName),
                 QVariantList({QStringLiteral("First"), QStringLiteral("Second")}));
        QCOMPARE(site.storedPairs(), QStringList({QStringLiteral("1-1"), QStringLiteral("1-2"),
                                                  QStringLiteral("2-1"), QStringLiteral("2-2")}));
        QCOMPARE(site.boxes.texts(), QStringList());
    }

    void theDialogKnowsTheNameThatWasJustTyped()
    {
        SuspectSite site;
        site.openPage();
        site.addSuspect(QStringLiteral("Fresh"));
        QWidget* menu = site.openMenu(Victims);
        QVERIFY(menu);
        QString words;
        const NextModal dialog([&](QWidget& modal) {
            words = modal.findChild<FlatDropdown*>(QStringLiteral("cboRelationship"))->accessibleName();
            QTest::keyClick(&modal, Qt::Key_Escape);
        });
        chooseByKey(menu, Qt::Key_A);
        QVERIFY(dialog.came());
        QCOMPARE(words, QStringLiteral("Relationship to Fresh"));
    }

    void aRemovedSuspectTakesOnlyItsOwnLinksAlong()
    {
        SuspectSite site;
        site.openPage();
        site.press(QStringLiteral("removeSuspect"));
        QCOMPARE(site.list()->count(), 1);
        QCOMPARE(site.rows(Witnesses)->Count(), 0);
        QVERIFY(site.window->isWindowModified());
        QCOMPARE(site.storedRows(Suspects, SeqNo).size(), 2);
        QVERIFY(site.window->save());
        QCOMPARE(site.storedRows(Suspects, SeqNo), QVariantList({2}));
        QCOMPARE(site.storedPairs(), QStringList({QStringLiteral("2-1")}));
        QVERIFY(site.storedRows(Witnesses, SeqNo).isEmpty());
    }

    void withTheLastSuspectTheFieldsGo()
    {
        SuspectSite site;
        site.openPage();
        site.press(QStringLiteral("removeSuspect"));
        site.press(QStringLiteral("removeSuspect"));
        QVERIFY(!site.line(SuspectName)->isVisible());
        QVERIFY(!site.window->findChild<QPushButton*>(QStringLiteral("removeSuspect"))->isEnabled());
        QVERIFY(site.window->save());
        QVERIFY(site.storedRows(Suspects, SeqNo).isEmpty());
        QVERIFY(site.storedPairs().isEmpty());
        QVERIFY(!site.window->isWindowModified());
    }

    void aSuspectThatIsAddedAndRemovedAgainIsNoChange()
    {
        SuspectSite site;
        site.openPage();
        site.addSuspect(QStringLiteral("Nobody"));
        QVERIFY(site.window->isWindowModified());
        site.press(QStringLiteral("removeSuspect"));
        QVERIFY(!site.window->isWindowModified());
        QCOMPARE(site.list()->count(), 2);
    }

    // The form

    void aControlWithoutAPlaceGivesOneMessageAndTheRestStands()
    {
        SuspectSite site(Complete, R"({"title": "Suspects", "controls": [
            {"class": "TVBoundControls.AutoCompleteField", "name": "Weapon"},
            {"class": "TVBoundControls.TavrinDropdown", "name": "Hair", "host": {"field": "HairNo"}},
            {"class": "TVBoundControls.TavrinDropdown", "name": "Race",
             "properties": {"TableNumber": 312}, "host": {"field": "RaceNo"}}]})");
        site.openPage();
        QTRY_COMPARE(site.boxes.shown().size(), 1);
        const QString text = site.boxes.texts().constFirst();
        QVERIFY2(text.contains(QStringLiteral("\"Weapon\": The page of the suspects has no place for it.")),
                 qPrintable(text));
        QVERIFY2(text.contains(QStringLiteral("\"Hair\": The table IncdSuspect has no field HairNo.")),
                 qPrintable(text));
        QVERIFY(!site.code(QStringLiteral("Hair")));
        QVERIFY(SameValue(site.code(Race)->Value(), 21));
    }
};

TAVRIN_TEST_MAIN(tst_RecordSuspects)
#include "tst_RecordSuspects.moc"
