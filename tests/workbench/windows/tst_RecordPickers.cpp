#include "base/values/Variant.h"
#include "support/TestCase.h"
#include "widgets/search_box/SuggestionView.h"
#include "workbench/Site.h"
#include "workbench/pages/PickerRows.h"

#include <QCheckBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVariantList>

using namespace tavrin;
using namespace tavrin::workbench;
using namespace tavrin::test;

namespace {

const QString ReportingOfficer = QStringLiteral("ReportingOfficer");
const QString ReportingOfficerNo = QStringLiteral("ReportingOfficerNo");
const QString K9Handler = QStringLiteral("K9Handler");
const QString K9HandlerNo = QStringLiteral("K9HandlerNo");
const QString Assignments = QStringLiteral("Assignments");
const QString AssignedTo = QStringLiteral("AssignedTo");
const QString Offenses = QStringLiteral("Offenses");
const QString OffenseNo = QStringLiteral("OffenseNo");
const QString Completed = QStringLiteral("Completed");
const QString Narrative = QStringLiteral("Narrative");
const QString WhoLeftOnMarch31st = QStringLiteral("Bogglesworth");

/// A site with an incident that has the rows that a test wants.
struct PickerSite : Site
{
    using Site::Site;

    void storeRows(const QString& collection, const QString& field, const QVariantList& values)
    {
        const RecordPtr record = workspace->store().load(incidentNo);
        const RecordCollectionPtr rows = record->collection(collection);
        while (rows->Count() > 0)
            rows->RemoveCurrent(false);
        for (const QVariant& value : values)
            fieldOf(*rows->AddNew(), field)->SetValue(value);
        workspace->store().save(*record);
    }
    /// Two employees and an offense that came after this workstation has read its lists.
    void makeNewcomers()
    {
        workspace->database().execute(QStringLiteral("INSERT INTO employee (officer_no, officer_id, name) "
                                                     "VALUES (998, 'N8', 'New'), (999, 'N9', 'New')"));
        workspace->database().execute(
            QStringLiteral("INSERT INTO offense_code (offense_no, offense_id, "
                           "description, rpt_code) VALUES (997, 'N7', 'New', '90Z')"));
    }
    QList<PickerRow*> lines(const QString& collection) const
    {
        auto lines = window->findChild<PickerRows*>(collection)->findChildren<PickerRow*>();
        lines.removeIf([](const PickerRow* line) { return line->isHidden(); });
        return lines;
    }
    QVariantList values(const QString& collection) const
    {
        QVariantList values;
        for (const PickerRow* line : lines(collection))
            values << line->value();
        return values;
    }
    QPushButton* addButton(const QString& collection) const
    {
        return window->findChild<QPushButton*>(QStringLiteral("add") + collection);
    }
    void remove(const QString& collection, int line) const
    {
        layOut();
        QTest::mouseClick(lines(collection).at(line)->findChild<QPushButton*>(QStringLiteral("remove")),
                          Qt::LeftButton);
    }
    SearchPicker& add(const QString& collection) const
    {
        layOut();
        QTest::mouseClick(addButton(collection), Qt::LeftButton);
        return lines(collection).last()->picker();
    }
};

/// Types into the picker's box; the texts of the rows that are then offered.
QStringList offered(SearchPicker& picker, const QString& text)
{
    picker.setFocus();
    QWidget* box = QApplication::focusWidget();
    QTest::keyClick(box, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(box, Qt::Key_Backspace);
    QTest::keyClicks(QApplication::focusWidget(), text);
    QStringList rows;
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->objectName() != QLatin1String("suggestionList") || !window->isVisible())
            continue;
        const auto* list = window->findChild<SuggestionView*>();
        for (int row = 0; row < list->rowCount(); ++row)
            rows << list->rowText(row);
    }
    return rows;
}

/// Chooses the only row that the text finds.
void choose(SearchPicker& picker, const QString& text)
{
    QCOMPARE(offered(picker, text).size(), 1);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    QVERIFY(!IsNull(picker.GetValue()));
}

/// In a picker whose box holds what is chosen.
void clear(SearchPicker& picker)
{
    picker.setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Delete);
    QVERIFY(IsNull(picker.GetValue()));
}

} // namespace

/// The officers, assignments and offenses of an incident, with the real pickers and a real database.
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
        site.makeNewcomers();
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
        site.makeNewcomers();
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

    void onlyHandlersOfDogsAreOfferedAndOnlyTheRecordsOwnWhenInactive()
    {
        PickerSite site;
        site.store(K9HandlerNo, 7);
        site.openPage(OfficersPageNo);
        QCOMPARE(offered(*site.picker(K9Handler), QStringLiteral("oaken")), QStringList());
        QCOMPARE(offered(*site.picker(K9Handler), QStringLiteral("stonecr")), QStringList());
        QCOMPARE(offered(*site.picker(K9Handler), QStringLiteral("starling")).size(), 1);
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

    void whatOneLineHoldsTheOthersDoNotOffer()
    {
        PickerSite site;
        site.storeRows(Assignments, AssignedTo, {QStringLiteral("user:jobrien"), QStringLiteral("team:1")});
        site.openPage(OfficersPageNo);
        SearchPicker& third = site.add(Assignments);
        QCOMPARE(offered(third, QStringLiteral("jobrien")), QStringList());
        QCOMPARE(offered(third, QStringLiteral("patrol a")), QStringList());
        choose(third, QStringLiteral("patrol b"));
        QCOMPARE(offered(site.add(Assignments), QStringLiteral("patrol b")), QStringList());
        site.remove(Assignments, 0);
        QCOMPARE(offered(site.lines(Assignments).last()->picker(), QStringLiteral("jobrien")).size(), 1);
    }

    void aLineStillOffersWhatItHoldsItself()
    {
        PickerSite site;
        site.storeRows(Offenses, OffenseNo, {30, 73});
        site.openPage(OffensesPageNo);
        QCOMPARE(offered(site.lines(Offenses).constFirst()->picker(), QStringLiteral("220.51")).size(), 1);
        QCOMPARE(offered(site.lines(Offenses).constFirst()->picker(), QStringLiteral("440.10")),
                 QStringList());
    }

    void addedRemovedAndClearedLinesAreSavedAsSuch()
    {
        PickerSite site;
        site.storeRows(Assignments, AssignedTo,
                       {QStringLiteral("user:jobrien"), QStringLiteral("team:1"), QStringLiteral("team:2")});
        site.openPage(OfficersPageNo);
        choose(site.add(Assignments), QStringLiteral("patrol c"));
        site.remove(Assignments, 1);
        clear(site.lines(Assignments).constFirst()->picker());
        QVERIFY(site.window->isDirty());
        QVERIFY(site.window->save());
        QCOMPARE(site.storedRows(Assignments, AssignedTo),
                 QVariantList({QStringLiteral("team:2"), QStringLiteral("team:3")}));
        QVERIFY(!site.window->isDirty());
        choose(site.lines(Assignments).constFirst()->picker(), QStringLiteral("patrol a"));
        QVERIFY(site.window->isDirty());
        QVERIFY(site.window->save());
        QCOMPARE(
            site.storedRows(Assignments, AssignedTo),
            QVariantList({QStringLiteral("team:2"), QStringLiteral("team:3"), QStringLiteral("team:1")}));
    }

    void anEmptyLineIsNoChangeAndIsTakenByTheNextAdd()
    {
        PickerSite site;
        site.storeRows(Assignments, AssignedTo, {QStringLiteral("team:1")});
        site.openPage(OfficersPageNo);
        site.add(Assignments);
        QVERIFY(!site.window->isDirty());
        QCOMPARE(&site.add(Assignments), &site.lines(Assignments).at(1)->picker());
        QCOMPARE(site.lines(Assignments).size(), 2);
        site.editSummary();
        QVERIFY(site.window->save());
        QCOMPARE(site.storedRows(Assignments, AssignedTo), QVariantList{QStringLiteral("team:1")});
    }

    void aTextThatWasTypedIntoALineAndNotChosenRefusesTheSave()
    {
        PickerSite site;
        site.storeRows(Assignments, AssignedTo, {QStringLiteral("team:1")});
        site.openPage(OfficersPageNo);
        SearchPicker& picker = site.add(Assignments);
        QVERIFY(!offered(picker, QStringLiteral("patrol")).isEmpty());
        QVERIFY(site.window->isWindowModified());
        QVERIFY(!site.window->save());
        QCOMPARE(site.boxes.texts().size(), 1);
        QVERIFY(site.boxes.texts().constFirst().startsWith(
            QStringLiteral("\"patrol\" in \"Assigned to\" was typed but not chosen from the list.")));
        QVERIFY(picker.isAncestorOf(QApplication::focusWidget()));
        QCOMPARE(picker.TypedText(), QStringLiteral("patrol"));
        choose(picker, QStringLiteral("patrol c"));
        QVERIFY(site.window->save());
        QCOMPARE(site.storedRows(Assignments, AssignedTo),
                 QVariantList({QStringLiteral("team:1"), QStringLiteral("team:3")}));
    }

    void whatWasTypedAndNotChosenIsUnsavedUntilItGivesWay_data()
    {
        QTest::addColumn<bool>("inALine");
        QTest::newRow("a field") << false;
        QTest::newRow("a line") << true;
    }
    void whatWasTypedAndNotChosenIsUnsavedUntilItGivesWay()
    {
        QFETCH(bool, inALine);
        PickerSite site;
        site.storeRows(Assignments, AssignedTo, {QStringLiteral("team:1")});
        site.openPage(OfficersPageNo);
        SearchPicker& picker = inALine ? site.add(Assignments)
                                       : *site.window->findChild<SearchPicker*>(QStringLiteral("K9Handler"));
        QVERIFY(!site.window->isWindowModified());
        picker.setFocus();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Z);
        QVERIFY(site.window->isDirty());
        QVERIFY(site.window->isWindowModified());
        site.boxes.answerWith({BoxAnswer::Cancel});
        QVERIFY(!site.window->close()); // it asks
        site.addButton(Assignments)->setFocus();
        QCOMPARE(picker.TypedText(), QString());
        QVERIFY(!site.window->isDirty());
        QVERIFY(!site.window->isWindowModified());
    }

    void anOffenseIsCompletedUnlessThePersonSaysOtherwise()
    {
        PickerSite site;
        site.storeRows(Offenses, OffenseNo, {30}); // whose flag is empty
        site.openPage(OffensesPageNo);
        const auto flag = [&](int line) { return site.lines(Offenses).at(line)->findChild<QCheckBox*>(); };
        QVERIFY(!flag(0)->isChecked());
        QVERIFY(!site.window->isDirty());
        choose(site.add(Offenses), QStringLiteral("440.10"));
        choose(site.add(Offenses), QStringLiteral("440.20"));
        QTest::keyClick(flag(2), Qt::Key_Space);
        QVERIFY(site.window->save());
        QCOMPARE(site.storedRows(Offenses, OffenseNo), QVariantList({30, 73, 74}));
        QCOMPARE(site.storedRows(Offenses, Completed), QVariantList({Null(), true, false}));
        QTest::keyClick(flag(0), Qt::Key_Space);
        QVERIFY(site.window->isDirty());
        QVERIFY(site.window->save());
        QCOMPARE(site.storedRows(Offenses, Completed), QVariantList({true, true, false}));
    }

    void aSaveThatFailedAndIsRepeatedWritesEachLineOnce()
    {
        PickerSite site;
        site.storeRows(Offenses, OffenseNo, {30, 18});
        site.openPage(OffensesPageNo);
        choose(site.add(Offenses), QStringLiteral("440.10"));
        site.remove(Offenses, 0);
        site.window->findChild<QPlainTextEdit*>(Narrative)->setPlainText(QString(19000, QLatin1Char('n')));
        site.workspace->database().execute(QStringLiteral("PRAGMA max_page_count = 1"));
        QVERIFY(!site.window->save());
        QCOMPARE(site.storedRows(Offenses, OffenseNo), QVariantList({30, 18}));
        QCOMPARE(site.values(Offenses), QVariantList({18.0, 73.0}));
        QVERIFY(site.window->isDirty());
        site.workspace->database().execute(QStringLiteral("PRAGMA max_page_count = 1000000"));
        QVERIFY(site.window->save());
        QCOMPARE(site.storedRows(Offenses, OffenseNo), QVariantList({18, 73}));
        QVERIFY(!site.window->isDirty());
    }

    void somebodyElsesSaveIsNotOverwritten()
    {
        PickerSite site;
        site.storeRows(Assignments, AssignedTo, {QStringLiteral("team:1")});
        site.openPage(OfficersPageNo);
        choose(site.add(Assignments), QStringLiteral("patrol b"));
        site.storeRows(Assignments, AssignedTo, {QStringLiteral("team:9")});
        QVERIFY(!site.window->save());
        QCOMPARE(site.boxes.shown().size(), 1);
        QCOMPARE(site.storedRows(Assignments, AssignedTo), QVariantList{QStringLiteral("team:9")});
        QCOMPARE(site.values(Assignments),
                 QVariantList({QStringLiteral("team:1"), QStringLiteral("team:2")}));
        QVERIFY(site.window->isDirty());
    }

    void closingAsksWhenALineWasRemoved()
    {
        PickerSite site;
        site.storeRows(Assignments, AssignedTo, {QStringLiteral("team:1")});
        site.openPage(OfficersPageNo);
        site.remove(Assignments, 0);
        site.boxes.answerWith({BoxAnswer::Cancel, BoxAnswer::Save});
        QVERIFY(!site.window->close());
        QCOMPARE(site.boxes.shown().size(), 1);
        QCOMPARE(site.storedRows(Assignments, AssignedTo), QVariantList{QStringLiteral("team:1")});
        QVERIFY(site.window->close());
        QCOMPARE(site.storedRows(Assignments, AssignedTo), QVariantList());
    }

    void tabWalksThroughTheLinesOldAndNewAndThenToTheButtons()
    {
        PickerSite site;
        site.storeRows(Assignments, AssignedTo, {QStringLiteral("team:1")});
        site.openPage(OfficersPageNo);
        SearchPicker& second = site.add(Assignments);
        choose(second, QStringLiteral("patrol b"));
        clear(second);
        choose(second, QStringLiteral("patrol c"));
        site.picker(K9Handler)->setFocus();
        const auto tab = [] { QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab); };
        for (PickerRow* line : site.lines(Assignments)) {
            tab();
            QCOMPARE(QApplication::focusWidget(), &line->picker()); // the tag has taken the box's place
            tab();
            QCOMPARE(QApplication::focusWidget(), line->findChild<QPushButton*>(QStringLiteral("remove")));
        }
        tab();
        QCOMPARE(QApplication::focusWidget(), site.addButton(Assignments));
        tab();
        QCOMPARE(QApplication::focusWidget(), site.window->findChild<QPushButton*>(QStringLiteral("save")));
    }

    void removingALineLeavesTheKeyboardInTheNext()
    {
        PickerSite site;
        site.storeRows(Offenses, OffenseNo, {30, 18});
        site.openPage(OffensesPageNo);
        site.remove(Offenses, 0);
        QVERIFY(site.lines(Offenses).constFirst()->picker().isAncestorOf(QApplication::focusWidget()));
        site.remove(Offenses, 0);
        QCOMPARE(QApplication::focusWidget(), site.addButton(Offenses));
        QTest::keyClick(site.window, Qt::Key_O,
                        Qt::AltModifier); // leads to the button while there is no line
        QCOMPARE(QApplication::focusWidget(), site.addButton(Offenses));
    }

    void aFormThatRepeatsWhatCannotBeRepeatedGivesOneMessageAndTheRestStands()
    {
        PickerSite site(R"({"title": "Officers", "controls": [
            {"class": "TVBoundControls.AutoCompleteField", "name": "Codes",
             "host": {"collection": "Offenses", "field": "OffenseNo"}},
            {"class": "TVBoundControls.EmployeePicker", "name": "K9Handler",
             "host": {"field": "K9HandlerNo", "label": "Handler"}}]})",
                        QStringLiteral("officers.json"));
        site.open();
        QTRY_COMPARE(site.boxes.shown().size(), 1);
        QCOMPARE(site.boxes.texts().constFirst(),
                 QStringLiteral("%1: control \"Codes\": It cannot be repeated.")
                     .arg(site.folder.filePath(QStringLiteral("officers.json"))));
        QVERIFY(site.picker(K9Handler));
        QVERIFY(!site.window->isDirty());
    }
};

TAVRIN_TEST_MAIN(tst_RecordPickers)
#include "tst_RecordPickers.moc"
