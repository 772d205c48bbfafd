#include "base/values/Variant.h"
#include "lookup/AutoCompleteField.h"
#include "workbench/tour/TourSteps.h"

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTableView>

namespace tavrin::workbench {

namespace {

class SavingSteps final : public TourSteps
{
public:
    using TourSteps::TourSteps;
    void walk();

private:
    void promptForUnsavedChanges();
    void reopenAndCompare();
    void refuseToOverwrite();
    void surviveALockedDatabase();
    void makeANewIncident();

    AutoCompleteField* code(const QString& name) const { return d.find<AutoCompleteField>(record(), name); }
    QString text(const QString& name) const { return ToText(code(name)->Text()); }
};

void SavingSteps::walk()
{
    promptForUnsavedChanges();
    reopenAndCompare();
    refuseToOverwrite();
    surviveALockedDatabase();
    makeANewIncident();
}

void SavingSteps::promptForUnsavedChanges()
{
    const QString before = ToText(stored(QStringLiteral("Narrative")));
    const QString added = QStringLiteral(" A neighbor's camera was checked.");
    d.step(QStringLiteral("Write on the narrative page"), [&] {
        showPage(4);
        d.picture(QStringLiteral("People"));
        showPage(5);
        d.press(Qt::Key_V, Qt::AltModifier);
        d.press(Qt::Key_End, Qt::ControlModifier);
        d.type(added);
        d.check(record()->isWindowModified(), QStringLiteral("the record is marked as changed"));
    });
    d.step(QStringLiteral("Closing asks, and Cancel stays"), [&] {
        d.withBox([&] { d.press(Qt::Key_W, Qt::ControlModifier); },
                  [&](QWidget* box) {
                      d.picture(QStringLiteral("The question"));
                      answer(QMessageBox::Cancel, box);
                  });
        d.check(record()->isVisible(), QStringLiteral("the window is still there"));
        d.check(d.find<QPlainTextEdit>(record(), QStringLiteral("Narrative"))->toPlainText() ==
                    before + added,
                QStringLiteral("what was typed is still there"));
    });
    d.step(QStringLiteral("Closing asks, and Save saves"), [&] {
        d.withBox([&] { d.press(Qt::Key_W, Qt::ControlModifier); },
                  [&](QWidget* box) { answer(QMessageBox::Save, box); });
        waitUntilRecordIsClosed();
        d.checkEqual(ToText(stored(QStringLiteral("Narrative"))), before + added,
                     QStringLiteral("the narrative"));
    });
}

void SavingSteps::reopenAndCompare()
{
    d.step(QStringLiteral("Open again and find the choices"), [&] {
        reopen();
        for (const auto& [name, field] :
             {std::pair(QStringLiteral("Weapon"), QStringLiteral("WeaponNo")),
              std::pair(QStringLiteral("LocationType"), QStringLiteral("LocationTypeNo")),
              std::pair(QStringLiteral("BiasMotivation"), QStringLiteral("BiasNo"))}) {
            d.check(SameValue(code(name)->Value(), stored(field)),
                    QStringLiteral("%1 is the saved one").arg(name));
            d.check(text(name).contains(QStringLiteral(" - ")),
                    QStringLiteral("%1 shows code and text").arg(name));
        }
        d.check(text(QStringLiteral("Weapon")).contains(QStringLiteral("gun"), Qt::CaseInsensitive),
                QStringLiteral("the weapon is the one that was chosen"));
        d.check(!record()->isWindowModified(), QStringLiteral("nothing is unsaved"));
    });
    d.step(QStringLiteral("Discard a change"), [&] {
        const QVariant saved = stored(QStringLiteral("WeaponNo"));
        d.press(Qt::Key_W, Qt::AltModifier);
        emptyTheBox();
        d.check(IsNull(code(QStringLiteral("Weapon"))->Value()),
                QStringLiteral("the emptied box has no value"));
        discard();
        d.check(SameValue(stored(QStringLiteral("WeaponNo")), saved),
                QStringLiteral("the database is unchanged"));
    });
}

void SavingSteps::refuseToOverwrite()
{
    d.step(QStringLiteral("Somebody else has saved meanwhile"), [&] {
        reopen();
        const RecordPtr theirs = s.otherStore.load(s.incidentNo);
        fieldOf(*theirs->mainRow(), QStringLiteral("City"))->SetValue(QStringLiteral("Elsewhere"));
        s.otherStore.save(*theirs);
        d.press(Qt::Key_U, Qt::AltModifier);
        d.press(Qt::Key_End);
        d.type(QStringLiteral(" (mine)"));
        d.withBox([&] { d.press(Qt::Key_S, Qt::ControlModifier); },
                  [&](QWidget* box) {
                      d.picture(QStringLiteral("The refusal"));
                      answer(QMessageBox::Ok, box);
                  });
        d.checkEqual(ToText(stored(QStringLiteral("City"))), QStringLiteral("Elsewhere"),
                     QStringLiteral("the other's city"));
        d.check(!ToText(stored(QStringLiteral("Summary"))).endsWith(QStringLiteral("(mine)")),
                QStringLiteral("nothing was overwritten"));
        d.check(
            d.find<QLineEdit>(record(), QStringLiteral("Summary"))->text().endsWith(QStringLiteral("(mine)")),
            QStringLiteral("what was typed is still there"));
        discard();
    });
}

void SavingSteps::surviveALockedDatabase()
{
    d.step(QStringLiteral("A save that fails loses nothing"), [&] {
        reopen();
        d.press(Qt::Key_U, Qt::AltModifier);
        d.press(Qt::Key_End);
        d.type(QStringLiteral(", corrected"));
        s.otherDatabase->execute(QStringLiteral("BEGIN EXCLUSIVE"));
        d.withBox([&] { d.press(Qt::Key_S, Qt::ControlModifier); },
                  [&](QWidget* box) {
                      d.picture(QStringLiteral("The message"));
                      answer(QMessageBox::Ok, box);
                  });
        s.otherDatabase->execute(QStringLiteral("ROLLBACK"));
        d.check(record()->isWindowModified(), QStringLiteral("the record is still marked as changed"));
        d.press(Qt::Key_S, Qt::ControlModifier);
        d.check(!record()->isWindowModified(), QStringLiteral("the next save works"));
        d.check(ToText(stored(QStringLiteral("Summary"))).endsWith(QStringLiteral(", corrected")),
                QStringLiteral("the summary is in the database"));
        close();
    });
}

void SavingSteps::makeANewIncident()
{
    d.step(QStringLiteral("A new incident needs its case number"), [&] {
        s.window.activateWindow();
        d.window(QStringLiteral("mainWindow"));
        d.press(Qt::Key_N, Qt::ControlModifier);
        record();
        d.press(Qt::Key_U, Qt::AltModifier);
        d.type(QStringLiteral("Found property at the station's desk"));
        saveIsRefusedWithout(QStringLiteral("Case number"), QStringLiteral("The refusal"));
        d.type(QStringLiteral("2026-009001"));
    });
    d.step(QStringLiteral("And its reporting officer"), [&] {
        saveIsRefusedWithout(QStringLiteral("Reporting officer"));
        record();
        d.type(QStringLiteral("fennel"));
        d.check(found().size() == 1, QStringLiteral("the officer is found"));
        d.press(Qt::Key_Return);
    });
    d.step(QStringLiteral("Save the new incident"), [&] {
        d.press(Qt::Key_S, Qt::ControlModifier);
        d.check(!record()->isWindowModified(), QStringLiteral("nothing is unsaved"));
        const auto found = s.otherStore.list(QStringLiteral("2026-009001"));
        d.check(found.size() == 1 && found.constFirst().Summary.startsWith(QStringLiteral("Found property")),
                QStringLiteral("the incident is in the database"));
        close();
    });
    d.step(QStringLiteral("The new incident is in the list"), [&] {
        s.window.activateWindow();
        d.window(QStringLiteral("mainWindow"));
        d.press(Qt::Key_F, Qt::ControlModifier);
        d.type(QStringLiteral("009001"));
        d.check(d.find<QTableView>(&s.window, QStringLiteral("incidents"))->model()->rowCount() == 1,
                QStringLiteral("the list shows it"));
    });
}

} // namespace

void walkSaving(TourSite& site)
{
    SavingSteps(site).walk();
}

} // namespace tavrin::workbench
