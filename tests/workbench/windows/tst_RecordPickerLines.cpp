#include "base/values/Variant.h"
#include "support/TestCase.h"
#include "workbench/PickerSite.h"

#include <QCheckBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVariantList>

using namespace tavrin;
using namespace tavrin::workbench;
using namespace tavrin::test;

namespace {

const QString Completed = QStringLiteral("Completed");
const QString Narrative = QStringLiteral("Narrative");

} // namespace

/// The assignments and offenses of an incident, a picker a line, with a real database.
class tst_RecordPickerLines : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // What a line offers

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

    // Saving

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

    // What is typed and not chosen

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

    // The keyboard

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

    // The form file

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

TAVRIN_TEST_MAIN(tst_RecordPickerLines)
#include "tst_RecordPickerLines.moc"
