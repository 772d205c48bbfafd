#include "base/values/Variant.h"
#include "lookup/TavrinDropdown.h"
#include "sections/SuspRelList.h"
#include "widgets/lists/ListView.h"
#include "workbench/tour/TourSteps.h"

#include <QApplication>
#include <QLineEdit>
#include <QListWidget>
#include <QTest>
#include <QVariantList>
#include <QWindow>

namespace tavrin::workbench {

namespace {

constexpr int SuspectsPageNo = 3;

const QString Suspects = QStringLiteral("Suspects");
const QString SuspectName = QStringLiteral("SuspectName");
const QString SuspectVictims = QStringLiteral("SuspectVictims");
const QString SuspectWitnesses = QStringLiteral("SuspectWitnesses");
const QString RelationNo = QStringLiteral("RelationNo");
const QString Newcomer = QStringLiteral("Quillfeather, Silas");

class SuspectSteps final : public TourSteps
{
public:
    using TourSteps::TourSteps;
    void walk();

private:
    void addASuspect();
    void refuseTheSave();
    void addARelationship();
    void saveAndCompare();
    void removeARelationship();

    QListWidget& list() const { return *d.find<QListWidget>(record(), QStringLiteral("suspects")); }
    ListView& section(const QString& name) const
    {
        return *d.find<ListView>(d.find<SuspRelList>(record(), name), QStringLiteral("lvwRows"));
    }
    QVariant code(const QString& name) const { return d.find<TavrinDropdown>(record(), name)->Value(); }
    /// The code of a section's first row.
    QString relation(const QString& name) const
    {
        const ListView& rows = section(name);
        return rows.SubItem(rows.Key(0), QStringLiteral("relationship_value"));
    }
    /// Goes to a section by its access key and opens its menu by the menu key, which only windows know.
    QWidget* openMenu(int accessKey) const
    {
        d.press(accessKey, Qt::AltModifier);
        QTest::keyClick(record()->windowHandle(), Qt::Key_Menu);
        d.waitFor([] { return QApplication::activePopupWidget() != nullptr; },
                  QStringLiteral("the menu is open"));
        return QApplication::activePopupWidget();
    }
};

void SuspectSteps::walk()
{
    addASuspect();
    refuseTheSave();
    addARelationship();
    saveAndCompare();
    removeARelationship();
}

void SuspectSteps::addASuspect()
{
    d.step(QStringLiteral("The page of the suspects"), [&] {
        showPage(SuspectsPageNo);
        d.check(list().count() == 0, QStringLiteral("nobody is suspected of the bicycle's theft"));
        d.check(!record()->isWindowModified(), QStringLiteral("showing that is no change"));
    });
    d.step(QStringLiteral("Add a suspect"), [&] {
        d.press(Qt::Key_A, Qt::AltModifier);
        auto* name = d.find<QLineEdit>(record(), SuspectName);
        d.waitFor([&] { return name->hasFocus(); }, QStringLiteral("the keyboard is in the name"));
        d.type(Newcomer);
        d.checkEqual(list().item(0)->text(), Newcomer, QStringLiteral("the list's first suspect"));
        d.press(Qt::Key_R, Qt::AltModifier);
        d.press(Qt::Key_Down);
        d.press(Qt::Key_X, Qt::AltModifier);
        d.type(QStringLiteral("m"));
        d.check(!IsNull(code(QStringLiteral("Race"))), QStringLiteral("a race is chosen"));
        d.check(SameValue(code(QStringLiteral("Sex")), 13), QStringLiteral("and the sex"));
        d.check(record()->isWindowModified(), QStringLiteral("the record is marked as changed"));
    });
}

void SuspectSteps::refuseTheSave()
{
    d.step(QStringLiteral("A save without a relationship is refused"), [&] {
        showPage(0);
        d.withBox([&] { d.press(Qt::Key_S, Qt::ControlModifier); },
                  [&](QWidget* box) {
                      d.picture(QStringLiteral("The refusal"));
                      d.check(boxText(box).startsWith(QStringLiteral(
                                  "You must specify the relationship this suspect has to each victim "
                                  "before continuing.\r\n\r\nYou need to add 1 relationship to "
                                  "complete this section.")),
                              QStringLiteral("the box has the section's words"));
                      answer(QMessageBox::Ok, box);
                  });
        d.check(d.find<QListWidget>(record(), QStringLiteral("pages"))->currentRow() == SuspectsPageNo,
                QStringLiteral("the page is in front"));
        d.check(section(SuspectVictims).hasFocus(), QStringLiteral("the section has the keyboard"));
        d.check(storedRows(Suspects, SuspectName).isEmpty(), QStringLiteral("nothing was stored"));
    });
}

void SuspectSteps::addARelationship()
{
    d.step(QStringLiteral("The menu key opens the menu"), [&] {
        QWidget* menu = openMenu(Qt::Key_V);
        d.picture(QStringLiteral("The menu"));
        d.withBox([&] { d.choose(menu, Qt::Key_A); },
                  [&](QWidget* dialog) {
                      d.withBox([&] { d.press(Qt::Key_Return); },
                                [&](QWidget* box) {
                                    d.checkEqual(
                                        boxText(box),
                                        QStringLiteral(
                                            "Please select the relationship this victim has to the suspect."),
                                        QStringLiteral("the refusal"));
                                    d.picture(QStringLiteral("No relationship"));
                                    answer(QMessageBox::Ok, box);
                                });
                      d.check(dialog->isVisible(), QStringLiteral("the dialog is still there"));
                      d.press(Qt::Key_Escape);
                  });
        d.check(section(SuspectVictims).Count() == 0, QStringLiteral("Escape adds nothing"));
    });
    d.step(QStringLiteral("Add the relationship"), [&] {
        QWidget* menu = openMenu(Qt::Key_V);
        d.withBox([&] { d.choose(menu, Qt::Key_A); },
                  [&](QWidget*) {
                      d.press(Qt::Key_Tab);
                      d.type(QStringLiteral("neigh"));
                      d.picture(QStringLiteral("The dialog"));
                      d.press(Qt::Key_Return);
                  });
        d.check(section(SuspectVictims).Count() == 1, QStringLiteral("there is a row"));
        d.check(record()->isWindowModified(), QStringLiteral("the record is marked as changed"));
    });
}

void SuspectSteps::saveAndCompare()
{
    const auto compare = [&] {
        d.check(storedRows(Suspects, SuspectName) == QVariantList{Newcomer},
                QStringLiteral("the suspect is in the database"));
        d.check(SameValue(storedRows(Suspects, QStringLiteral("SexNo")).constFirst(), 13),
                QStringLiteral("and the sex"));
        const QVariantList relations = storedRows(SuspectVictims, RelationNo);
        d.check(relations.size() == 1 && ToText(relations.constFirst()) == relation(SuspectVictims),
                QStringLiteral("and the relationship"));
    };
    d.step(QStringLiteral("Save the suspect"), [&] {
        save();
        compare();
    });
    d.step(QStringLiteral("Open again and find the suspect"), [&] {
        close();
        reopen();
        showPage(SuspectsPageNo);
        d.checkEqual(d.find<QLineEdit>(record(), SuspectName)->text(), Newcomer, QStringLiteral("the name"));
        d.check(SameValue(code(QStringLiteral("Sex")), 13), QStringLiteral("the sex is the saved one"));
        d.check(section(SuspectVictims).Count() == 1, QStringLiteral("the relationship is there"));
        d.check(!record()->isWindowModified(), QStringLiteral("nothing is unsaved"));
        compare();
        close();
    });
}

void SuspectSteps::removeARelationship()
{
    const QString summary = QStringLiteral("copper pipe");
    const qint64 before = s.incidentNo;
    s.incidentNo = s.otherStore.list(summary).constFirst().IncidentNo;
    d.step(QStringLiteral("Go from suspect to suspect"), [&] {
        searchAndOpen(summary);
        showPage(SuspectsPageNo);
        d.check(list().count() == 2, QStringLiteral("there are two suspects"));
        d.check(section(SuspectWitnesses).Count() == 1, QStringLiteral("the first one knows the witness"));
        d.press(Qt::Key_U, Qt::AltModifier);
        d.press(Qt::Key_Down);
        d.check(section(SuspectWitnesses).Count() == 0, QStringLiteral("the second one does not"));
        d.check(!record()->isWindowModified(), QStringLiteral("going there is no change"));
        d.press(Qt::Key_Up);
        d.check(section(SuspectWitnesses).Count() == 1, QStringLiteral("the first one is back"));
    });
    d.step(QStringLiteral("Remove a relationship"), [&] {
        QWidget* menu = openMenu(Qt::Key_W);
        d.choose(menu, Qt::Key_R);
        d.waitFor([&] { return section(SuspectWitnesses).Count() == 0; }, QStringLiteral("it is gone"));
        d.check(record()->isWindowModified(), QStringLiteral("the record is marked as changed"));
        d.check(storedRows(SuspectWitnesses, RelationNo).size() == 1,
                QStringLiteral("the database still has it"));
    });
    d.step(QStringLiteral("Save without it"), [&] {
        save();
        d.check(storedRows(SuspectWitnesses, RelationNo).isEmpty(),
                QStringLiteral("it is gone from the database"));
        d.check(storedRows(SuspectVictims, RelationNo).size() == 2,
                QStringLiteral("those to the victim are there"));
        close();
        searchAndOpen(QStringLiteral("bicycle"));
    });
    s.incidentNo = before;
}

} // namespace

void walkSuspects(TourSite& site)
{
    SuspectSteps(site).walk();
}

} // namespace tavrin::workbench
