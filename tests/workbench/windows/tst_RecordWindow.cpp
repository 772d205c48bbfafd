#include "base/failure/Error.h"
#include "base/values/Variant.h"
#include "lookup/AutoCompleteField.h"
#include "support/TestCase.h"
#include "widgets/boxes/TextBox.h"
#include "widgets/lists/DropDownList.h"
#include "workbench/Site.h"
#include "workbench/application/Theme.h"
#include "workbench/windows/MainWindow.h"

#include <QClipboard>
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTreeWidget>

#include <functional>
#include <memory>

using namespace tavrin;
using namespace tavrin::workbench;
using tavrin::test::Site;

namespace {

const QString Weapon = QStringLiteral("Weapon");
const QString WeaponNo = QStringLiteral("WeaponNo");
const QString StillThere = QStringLiteral("\n\nWhat you typed is still in this window.");
const QString Summary = QStringLiteral("Summary");

using Act = std::function<void(QLineEdit&)>;

} // namespace

/// Loading, saving and refusing, with the real controls and a real database.
class tst_RecordWindow : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aFormWithAnUnknownControlGivesOneMessageWithFileAndControlAndTheRestStands()
    {
        Site site(R"({"title": "Codes", "controls": [
            {"class": "TVBoundControls.Nothing", "name": "Gone", "host": {"field": "BiasNo"}},
            {"class": "TVBoundControls.AutoCompleteField", "name": "Weapon",
             "properties": {"TableNo": 302}, "host": {"field": "WeaponNo", "label": "&Weapon"}}]})");
        site.open();
        QTRY_COMPARE(site.boxes.shown().size(), 1);
        const QString text = site.boxes.texts().constFirst();
        QVERIFY2(text.contains(site.folder.filePath(QStringLiteral("general.json"))), qPrintable(text));
        QVERIFY2(text.contains(QStringLiteral("\"Gone\"")), qPrintable(text));
        QVERIFY2(text.contains(QStringLiteral("TVBoundControls.Nothing")), qPrintable(text));
        QVERIFY(site.code(Weapon));
        QCOMPARE(site.code(Weapon)->TableNo(), 302);
        QVERIFY(site.line(Summary));
        QVERIFY(!site.window->isDirty());
    }

    void aDamagedFormGivesOneMessageAndTheBuiltInFormStandsIn()
    {
        Site site("{\"title\": \"Codes\",\n \"controls\": [");
        site.open();
        QTRY_COMPARE(site.boxes.shown().size(), 1);
        const QString text = site.boxes.texts().constFirst();
        QVERIFY2(text.contains(QStringLiteral("general.json: line 2")), qPrintable(text));
        QVERIFY2(text.endsWith(QStringLiteral("\nThe built-in form is shown instead.")), qPrintable(text));
        QVERIFY(site.code(QStringLiteral("LocationType")));
        QVERIFY(site.code(Weapon));
    }

    void aFormWithoutControlsGivesOneMessageAndTheBuiltInFormStandsIn()
    {
        Site site("{}");
        site.open();
        QTRY_COMPARE(site.boxes.shown().size(), 1);
        QCOMPARE(site.boxes.texts().constFirst(),
                 QStringLiteral("%1: The form has no controls.\nThe built-in form is shown instead.")
                     .arg(site.folder.filePath(QStringLiteral("general.json"))));
        QVERIFY(site.code(Weapon));
    }

    void aCodeThatNoTableKnowsIsShownAndKept()
    {
        Site site;
        site.store(WeaponNo, 31999);
        site.open();
        QCOMPARE(site.code(Weapon)->Value(), QVariant(31999));
        QCOMPARE(site.code(Weapon)->Text(), QVariant(QStringLiteral("31999")));
        QVERIFY(!site.window->isDirty());
        site.line(Summary)->selectAll();
        QTest::keyClicks(site.line(Summary), QStringLiteral("Another summary"));
        QVERIFY(site.window->save());
        QVERIFY(SameValue(site.stored(WeaponNo), 31999));
    }

    void aCodeThatHasBecomeInactiveStaysShownAndIsNotBlankedByASave()
    {
        Site site;
        site.store(WeaponNo, 12);
        site.workspace->database().execute(
            QStringLiteral("UPDATE code_value SET active = 0 WHERE table_no = 302 AND value_no = 12"));
        site.workspace->host().refreshCaches();
        site.open();
        QCOMPARE(site.code(Weapon)->Value(), QVariant(12));
        QVERIFY(ToText(site.code(Weapon)->Text()).contains(QStringLiteral("Handgun")));
        site.editSummary();
        QVERIFY(site.window->save());
        QVERIFY(SameValue(site.stored(WeaponNo), 12));
    }

    void aTextThatWasNotChosenRefusesTheSaveAndTakesTheFocus()
    {
        Site site;
        site.store(WeaponNo, 12);
        site.open();
        QVERIFY(QTest::qWaitForWindowActive(site.window));
        site.line(Summary)->setFocus();
        site.code(Weapon)->SetValue(Null());
        site.code(Weapon)->SetText(QStringLiteral("hand"));
        QVERIFY(site.window->isDirty());
        QVERIFY(!site.window->save());
        QCOMPARE(site.boxes.texts(),
                 QStringList{
                     QStringLiteral("\"hand\" in \"Weapon or force\" was typed but not chosen from the list. "
                                    "Choose an entry, or empty the field.") +
                     StillThere});
        QVERIFY(site.code(Weapon)->isAncestorOf(QApplication::focusWidget()));
        QVERIFY(SameValue(site.stored(WeaponNo), 12));
        site.code(Weapon)->SetText(QString());
        QVERIFY(site.window->save());
        QVERIFY(IsNull(site.stored(WeaponNo)));
    }

    void aChosenTextThatWasChangedWithoutASearchIsTypedAndNotChosen_data()
    {
        QTest::addColumn<Act>("change");
        QTest::addColumn<QString>("typed");
        const QString rest = QStringLiteral("2 - Handgun");
        QTest::newRow("Delete") << Act([](QLineEdit& box) { QTest::keyClick(&box, Qt::Key_Delete); }) << rest;
        QTest::newRow("Ctrl+X") << Act([](QLineEdit& box) {
            QTest::keyClick(&box, Qt::Key_Right, Qt::ShiftModifier);
            QTest::keySequence(&box, QKeySequence::Cut);
        }) << rest;
        QTest::newRow("paste") << Act([](QLineEdit& box) {
            QGuiApplication::clipboard()->setText(QStringLiteral("x"));
            QTest::keySequence(&box, QKeySequence::Paste);
        }) << QStringLiteral("x12 - Handgun");
        QTest::newRow("e acute") << Act([](QLineEdit& box) {
            QTest::sendKeyEvent(QTest::Click, &box, Qt::Key_Eacute, QString(QChar(0xe9)), Qt::NoModifier);
        }) << QString(QChar(0xe9)) + QStringLiteral("12 - Handgun");
        QTest::newRow("parenthesis") << Act([](QLineEdit& box) {
            QTest::keyClicks(&box, QStringLiteral("("));
        }) << QStringLiteral("(12 - Handgun");
        QTest::newRow("menu") << Act([](QLineEdit& box) {
            QTest::keyClick(&box, Qt::Key_Right, Qt::ShiftModifier);
            const std::unique_ptr<QMenu> menu(box.createStandardContextMenu());
            for (QAction* action : menu->actions()) {
                if (action->text().remove(u'&') == QLatin1String("Delete"))
                    action->trigger();
            }
        }) << rest;
    }
    void aChosenTextThatWasChangedWithoutASearchIsTypedAndNotChosen()
    {
        QFETCH(Act, change);
        QFETCH(QString, typed);
        for (const bool isChosen : {false, true}) {
            Site site;
            site.store(WeaponNo, isChosen ? 13 : 12);
            site.open();
            QVERIFY(QTest::qWaitForWindowActive(site.window));
            AutoCompleteField& weapon = *site.code(Weapon);
            auto& box = *qobject_cast<QLineEdit*>(weapon.focusProxy());
            weapon.setFocus();
            if (isChosen) { // else it is the record's
                box.selectAll();
                QTest::keyClicks(&box, QStringLiteral("handgun"));
                QTRY_VERIFY(weapon.findChild<DropDownList*>()->IsOpen());
                QTest::keyClick(&box, Qt::Key_Down);
                QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
            }
            QCOMPARE(weapon.Value(), QVariant(12));
            QCOMPARE(box.text(), QStringLiteral("12 - Handgun"));
            QCOMPARE(site.window->isDirty(), isChosen);
            box.setCursorPosition(0);
            change(box);
            QCOMPARE(box.text(), typed);
            QCOMPARE(weapon.Value(), QVariant(12)); // as the field is told
            QVERIFY(site.window->isDirty());
            QCOMPARE(site.status(), QStringLiteral("Unsaved changes"));
            QTest::keyClick(site.window->windowHandle(), Qt::Key_S, Qt::ControlModifier);
            QCOMPARE(site.boxes.texts(),
                     QStringList{QStringLiteral("\"%1\" in \"Weapon or force\" was typed but not chosen from "
                                                "the list. Choose an entry, or empty the field.")
                                     .arg(typed) +
                                 StillThere});
            QVERIFY(weapon.isAncestorOf(QApplication::focusWidget()));
            QVERIFY(SameValue(site.stored(WeaponNo), isChosen ? 13 : 12));
            QTest::keySequence(&box, QKeySequence::Undo);
            QCOMPARE(box.text(), QStringLiteral("12 - Handgun"));
            QCOMPARE(site.window->isDirty(), isChosen);
            QVERIFY(site.window->save());
            QVERIFY(SameValue(site.stored(WeaponNo), 12));
        }
    }

    void aChangeThatIsTakenBackIsNone()
    {
        Site site;
        site.open();
        site.editSummary();
        QCOMPARE(site.status(), QStringLiteral("Unsaved changes"));
        QTest::keyClick(site.line(Summary), Qt::Key_Backspace);
        QVERIFY(!site.window->isDirty());
        QCOMPARE(site.status(), QString());
    }

    void aDateThatIsNoneRefusesTheSaveAndStays()
    {
        Site site;
        site.open();
        auto* reported = site.line(QStringLiteral("ReportedAt"));
        reported->setText(QStringLiteral("yesterday"));
        QVERIFY(!site.window->save());
        QVERIFY(site.boxes.texts().constFirst().startsWith(
            QStringLiteral("\"yesterday\" in \"Reported\" is not a date and time.")));
        QVERIFY(site.boxes.texts().constFirst().endsWith(StillThere));
        QCOMPARE(reported->text(), QStringLiteral("yesterday"));
    }

    void aFullDiskStopsTheSaveAsAWholeAndWhatWasTypedStays()
    {
        Site site;
        const QString before = ToText(site.stored(Summary));
        site.open();
        const QString typed(200000, QLatin1Char('n'));
        auto* narrative = site.window->findChild<QPlainTextEdit*>(QStringLiteral("Narrative"));
        narrative->setPlainText(typed.left(19000));
        site.line(Summary)->setText(QStringLiteral("Typed"));
        limitPages(site, QStringLiteral("1"));
        QVERIFY(!site.window->save());
        QCOMPARE(site.boxes.shown().size(), 1);
        QCOMPARE(site.boxes.shown().constFirst().icon, BoxIcon::Critical);
        QVERIFY(site.boxes.texts().constFirst().endsWith(StillThere));
        QCOMPARE(site.line(Summary)->text(), QStringLiteral("Typed"));
        QCOMPARE(narrative->toPlainText(), typed.left(19000));
        QVERIFY(site.window->isDirty());
        QCOMPARE(ToText(site.stored(Summary)), before);
        limitPages(site, QStringLiteral("1000000"));
        QVERIFY(site.window->save());
        QCOMPARE(ToText(site.stored(Summary)), QStringLiteral("Typed"));
        QVERIFY(!site.window->isDirty());
    }

    void closingWithUnsavedChangesAsksAndObeys_data()
    {
        QTest::addColumn<BoxAnswer>("answer");
        QTest::addColumn<bool>("closes");
        QTest::addColumn<bool>("saves");
        QTest::newRow("save") << BoxAnswer::Save << true << true;
        QTest::newRow("discard") << BoxAnswer::Discard << true << false;
        QTest::newRow("cancel") << BoxAnswer::Cancel << false << false;
    }
    void closingWithUnsavedChangesAsksAndObeys()
    {
        QFETCH(BoxAnswer, answer);
        QFETCH(bool, closes);
        QFETCH(bool, saves);
        Site site;
        site.open();
        site.line(Summary)->setText(QStringLiteral("Typed"));
        site.boxes.answerWith({answer});
        QCOMPARE(site.window->close(), closes);
        QCOMPARE(site.boxes.shown().size(), 1);
        QCOMPARE(site.boxes.shown().constFirst().buttons, BoxButtons::SaveDiscardCancel);
        QCOMPARE(ToText(site.stored(Summary)) == QStringLiteral("Typed"), saves);
        delete site.window;
    }

    void closingAnUntouchedWindowDoesNotAsk()
    {
        Site site;
        site.open();
        QCOMPARE(site.status(), QString());
        QVERIFY(site.window->close());
        QCOMPARE(site.boxes.shown().size(), 0);
    }

    void closingWhoseSaveIsRefusedLeavesTheWindowOpen()
    {
        Site site;
        site.open();
        site.line(QStringLiteral("CaseNo"))->clear();
        site.boxes.answerWith({BoxAnswer::Save});
        QVERIFY(!site.window->close());
        QCOMPARE(site.boxes.texts().last(),
                 QStringLiteral("\"Case number\" must be filled in.") + StillThere);
        QVERIFY(site.window->isVisible());
    }

    void inTheListOfPeopleNothingIsCurrentUntilThePersonGoesThere()
    {
        Site site;
        site.open();
        QVERIFY(QTest::qWaitForWindowActive(site.window));
        auto* people = site.window->findChild<QTreeWidget*>(QStringLiteral("people"));
        for (int page = 0; page < 4; ++page)
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_PageDown, Qt::ControlModifier);
        QVERIFY(people->isVisible());
        people->setFocus();
        QVERIFY(!people->currentIndex().isValid());
        QTest::keyClick(people, Qt::Key_Down);
        QVERIFY(people->currentIndex().isValid());
    }

    void itOpensRightAndBelowTheListSoThatBothAreSeen()
    {
        Site site;
        MainWindow list(*site.workspace);
        list.show();
        list.openIncident(site.incidentNo);
        const auto* record = list.findChild<RecordWindow*>();
        QVERIFY(record && record->isVisible());
        QCOMPARE(record->pos() - list.pos(), QPoint(48, 48));
    }

    void buttonsAndTheChoiceAreAsHighAsTheTextBoxes()
    {
        applyTheme(false);
        Site site;
        site.open();
        const int height = site.line(Summary)->height();
        QCOMPARE(site.window->findChild<QComboBox*>(QStringLiteral("Status"))->height(), height);
        for (const char* name : {"save", "close"})
            QCOMPARE(site.window->findChild<QPushButton*>(QString::fromLatin1(name))->height(), height);
    }

private:
    static void limitPages(Site& site, const QString& pages)
    {
        site.workspace->database().execute(QStringLiteral("PRAGMA max_page_count = ") + pages);
    }
};

TAVRIN_TEST_MAIN(tst_RecordWindow)
#include "tst_RecordWindow.moc"
