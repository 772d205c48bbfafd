#include "base/values/Variant.h"
#include "lookup/SearchPicker.h"
#include "widgets/search_box/SuggestionView.h"
#include "workbench/pages/PickerRow.h"
#include "workbench/tour/TourSteps.h"

#include <QLineEdit>
#include <QVariantList>

namespace tavrin::workbench {

namespace {

constexpr int GeneralPageNo = 0;
constexpr int OfficersPageNo = 1;

const QString ReportingOfficer = QStringLiteral("ReportingOfficer");
const QString ReportingOfficerNo = QStringLiteral("ReportingOfficerNo");
const QString K9Handler = QStringLiteral("K9Handler");
const QString K9HandlerNo = QStringLiteral("K9HandlerNo");
const QString Assignments = QStringLiteral("Assignments");
const QString AssignedTo = QStringLiteral("AssignedTo");

class PeopleSteps final : public TourSteps
{
public:
    using TourSteps::TourSteps;
    void walk();

private:
    void findTheOfficer();
    void leaveOutWhoHadLeft();
    void clearTheOfficer();
    void chooseTheHandler();
    void assignATeam();
    void removeAndReassign();
    void saveAndCompare();
    void keepWhoIsInactive();

    void officerIs(int officerNo) const
    {
        d.check(SameValue(picker(ReportingOfficer).GetValue(), officerNo),
                QStringLiteral("officer %1 is the reporting one").arg(officerNo));
    }
    void searchOfficer(const QString& text) const
    {
        d.press(Qt::Key_R, Qt::AltModifier);
        emptyTheBox();
        d.type(text);
    }
    void onlyFound(const QString& part) const
    {
        const QStringList rows = found();
        d.check(rows.size() == 1 && rows.constFirst().contains(part),
                QStringLiteral("%1 alone is found, not: %2").arg(part, rows.join(QStringLiteral(", "))));
    }
    void nobodyFound() const { d.check(found().isEmpty(), QStringLiteral("nobody is found")); }
    QVariant assigned(int line) const { return lines(Assignments).at(line)->value(); }
};

void PeopleSteps::walk()
{
    findTheOfficer();
    leaveOutWhoHadLeft();
    clearTheOfficer();
    chooseTheHandler();
    assignATeam();
    removeAndReassign();
    saveAndCompare();
    keepWhoIsInactive();
}

void PeopleSteps::findTheOfficer()
{
    d.step(QStringLiteral("The page of the officers"), [&] {
        showPage(OfficersPageNo);
        officerIs(ToLong(stored(ReportingOfficerNo)));
        d.check(!record()->isWindowModified(), QStringLiteral("showing them is no change"));
    });
    d.step(QStringLiteral("Search an officer by name"), [&] {
        searchOfficer(QStringLiteral("kettle"));
        onlyFound(QStringLiteral("Kettlewell, Rufus"));
    });
    d.step(QStringLiteral("Choose the officer with Enter"), [&] {
        d.press(Qt::Key_Return);
        officerIs(3);
        d.check(record()->isWindowModified(), QStringLiteral("the record is marked as changed"));
    });
    d.step(QStringLiteral("Search an officer by badge"), [&] {
        searchOfficer(QStringLiteral("388"));
        onlyFound(QStringLiteral("Thistlewood, Marian"));
    });
    d.step(QStringLiteral("Choose the officer with the mouse"), [&] {
        clickRow(0);
        officerIs(2);
    });
    d.step(QStringLiteral("Search a name with an apostrophe"), [&] {
        searchOfficer(QStringLiteral("o'brien"));
        onlyFound(QStringLiteral("O'Brien, Jack"));
    });
    d.step(QStringLiteral("Choose the name with an apostrophe"), [&] {
        d.press(Qt::Key_Return);
        officerIs(1);
    });
}

void PeopleSteps::leaveOutWhoHadLeft()
{
    const QString whoLeftLater = QStringLiteral("bogglesworth"); // on March 31st
    d.step(QStringLiteral("Who left before the incident is not offered"), [&] {
        searchOfficer(QStringLiteral("oakenfold"));
        nobodyFound();
    });
    d.step(QStringLiteral("Who left after it is offered"), [&] {
        searchOfficer(whoLeftLater);
        onlyFound(QStringLiteral("Bogglesworth, Humphrey"));
    });
    d.step(QStringLiteral("But not once the incident is said to be later"), [&] {
        showPage(GeneralPageNo);
        auto* occurred = d.find<QLineEdit>(record(), QStringLiteral("OccurredAt"));
        const QString before = occurred->text();
        d.press(Qt::Key_O, Qt::AltModifier);
        emptyTheBox();
        d.type(QString(before).replace(QStringLiteral("-01-"), QStringLiteral("-04-")));
        showPage(OfficersPageNo);
        searchOfficer(whoLeftLater);
        nobodyFound();
        d.picture(QStringLiteral("Nobody"));
        showPage(GeneralPageNo);
        d.press(Qt::Key_O, Qt::AltModifier);
        emptyTheBox();
        d.type(before);
        showPage(OfficersPageNo);
    });
}

void PeopleSteps::clearTheOfficer()
{
    d.step(QStringLiteral("Clear the officer with the sign"), [&] {
        searchOfficer(QStringLiteral("o'brien"));
        d.press(Qt::Key_Return);
        officerIs(1);
        d.click(d.find<QWidget>(&picker(ReportingOfficer), QStringLiteral("lnkDropDown")));
        d.check(IsNull(picker(ReportingOfficer).GetValue()), QStringLiteral("no officer is chosen"));
    });
    d.step(QStringLiteral("A save without the officer is refused"), [&] {
        saveIsRefusedWithout(QStringLiteral("Reporting officer"));
        record();
        d.type(QStringLiteral("o'brien"));
        onlyFound(QStringLiteral("O'Brien, Jack"));
        d.press(Qt::Key_Return);
        officerIs(1);
    });
}

void PeopleSteps::chooseTheHandler()
{
    const auto search = [&](const QString& text) {
        d.press(Qt::Key_K, Qt::AltModifier);
        emptyTheBox();
        d.type(text);
    };
    d.step(QStringLiteral("Only handlers of dogs are offered"), [&] {
        search(QStringLiteral("kettle"));
        nobodyFound();
        search(QStringLiteral("stonecropper")); // who has left
        nobodyFound();
    });
    d.step(QStringLiteral("Choose a handler"), [&] {
        search(QStringLiteral("mcbram"));
        onlyFound(QStringLiteral("McBramble, Duncan"));
        clickRow(0);
        d.check(SameValue(picker(K9Handler).GetValue(), 27), QStringLiteral("the handler is chosen"));
    });
}

void PeopleSteps::assignATeam()
{
    d.step(QStringLiteral("Who is assigned is not offered again"), [&] {
        d.check(assigned(0) == QVariant(QStringLiteral("user:hwinterbourne")),
                QStringLiteral("the record's user is shown"));
        addLine(Assignments);
        d.check(lines(Assignments).size() == 2, QStringLiteral("there is a second line"));
        d.type(QStringLiteral("winterb"));
        nobodyFound();
    });
    d.step(QStringLiteral("Choose a team"), [&] {
        emptyTheBox();
        d.type(QStringLiteral("patrol a"));
        onlyFound(QStringLiteral("Team"));
        d.press(Qt::Key_Return);
        d.check(assigned(1) == QVariant(QStringLiteral("team:1")), QStringLiteral("the team is chosen"));
    });
    d.step(QStringLiteral("Delete clears, and Down opens the whole list"), [&] {
        d.press(Qt::Key_Delete);
        d.check(IsNull(assigned(1)), QStringLiteral("nothing is chosen"));
        d.press(Qt::Key_Down);
        const QString all = found().join(u' ');
        d.check(all.contains(QStringLiteral("jobrien")) && !all.contains(QStringLiteral("hwinterbourne")),
                QStringLiteral("all but the other line's are offered"));
    });
    d.step(QStringLiteral("Choose the team again"), [&] {
        d.type(QStringLiteral("patrol a"));
        clickRow(0);
        d.check(assigned(1) == QVariant(QStringLiteral("team:1")), QStringLiteral("the team is chosen"));
    });
}

void PeopleSteps::removeAndReassign()
{
    d.step(QStringLiteral("Remove an assignment"), [&] {
        removeLine(*lines(Assignments).constFirst());
        d.check(lines(Assignments).size() == 1, QStringLiteral("one line is left"));
        d.check(assigned(0) == QVariant(QStringLiteral("team:1")), QStringLiteral("the team's"));
    });
    d.step(QStringLiteral("Who was removed is offered again"), [&] {
        addLine(Assignments);
        d.type(QStringLiteral("winterb"));
        d.check(found().size() == 1, QStringLiteral("the user is found"));
        emptyTheBox();
        d.type(QStringLiteral("o'b"));
        d.check(found().size() == 1, QStringLiteral("Jack O'Brien is found"));
        d.press(Qt::Key_Return);
        d.check(assigned(1) == QVariant(QStringLiteral("user:jobrien")), QStringLiteral("and chosen"));
    });
}

void PeopleSteps::saveAndCompare()
{
    const QVariantList expected{QStringLiteral("team:1"), QStringLiteral("user:jobrien")};
    const auto compare = [&] {
        d.check(SameValue(stored(ReportingOfficerNo), 1) && SameValue(stored(K9HandlerNo), 27),
                QStringLiteral("the officers are in the database"));
        d.check(storedRows(Assignments, AssignedTo) == expected,
                QStringLiteral("the assignments are in the database"));
    };
    d.step(QStringLiteral("Save the officers"), [&] {
        save();
        compare();
    });
    d.step(QStringLiteral("Open again and find the officers"), [&] {
        close();
        reopen();
        showPage(OfficersPageNo);
        officerIs(1);
        d.check(SameValue(picker(K9Handler).GetValue(), 27), QStringLiteral("the handler is the saved one"));
        d.check(QVariantList({assigned(0), assigned(1)}) == expected,
                QStringLiteral("the assignments are the saved ones"));
        d.check(!record()->isWindowModified(), QStringLiteral("nothing is unsaved"));
        compare();
        close();
    });
}

void PeopleSteps::keepWhoIsInactive()
{
    d.step(QStringLiteral("A handler who has left shows where the record holds him"), [&] {
        searchAndOpen(QStringLiteral("bakery"));
        showPage(OfficersPageNo);
        d.check(SameValue(picker(K9Handler).GetValue(), 37), QStringLiteral("the handler is shown"));
        d.check(!record()->isWindowModified(), QStringLiteral("nothing is unsaved"));
    });
    d.step(QStringLiteral("And stays offered"), [&] {
        d.press(Qt::Key_K, Qt::AltModifier);
        emptyTheBox();
        d.check(IsNull(picker(K9Handler).GetValue()), QStringLiteral("the handler is cleared"));
        d.type(QStringLiteral("stonecropper"));
        onlyFound(QStringLiteral("Stonecropper, Nils"));
        d.press(Qt::Key_Return);
        d.check(!record()->isWindowModified(), QStringLiteral("the same handler again is no change"));
        close();
        searchAndOpen(QStringLiteral("bicycle"));
    });
}

} // namespace

void walkPeople(TourSite& site)
{
    PeopleSteps(site).walk();
}

} // namespace tavrin::workbench
