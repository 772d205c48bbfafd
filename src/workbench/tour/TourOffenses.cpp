#include "base/values/Variant.h"
#include "lookup/SearchPicker.h"
#include "widgets/search_box/SuggestionView.h"
#include "workbench/pages/PickerRow.h"
#include "workbench/tour/TourSteps.h"

#include <QCheckBox>
#include <QVariantList>

namespace tavrin::workbench {

namespace {

constexpr int OffensesPageNo = 2;

const QString Offenses = QStringLiteral("Offenses");
const QString OffenseNo = QStringLiteral("OffenseNo");
const QString Completed = QStringLiteral("Completed");

class OffenseSteps final : public TourSteps
{
public:
    using TourSteps::TourSteps;
    void walk();

private:
    void addAnOffense();
    void keepTheListsApart();
    void removeAndAddAgain();
    void saveAndCompare();

    QVariant offense(int line) const { return lines(Offenses).at(line)->value(); }
    QCheckBox* completed(int line) const { return d.find<QCheckBox>(lines(Offenses).at(line), Completed); }
};

void OffenseSteps::walk()
{
    addAnOffense();
    keepTheListsApart();
    removeAndAddAgain();
    saveAndCompare();
}

void OffenseSteps::addAnOffense()
{
    d.step(QStringLiteral("The page of the offenses"), [&] {
        showPage(OffensesPageNo);
        d.check(lines(Offenses).size() == storedRows(Offenses, OffenseNo).size(),
                QStringLiteral("there is a line for each"));
        d.check(SameValue(offense(0), 30), QStringLiteral("the bicycle's theft is shown"));
    });
    d.step(QStringLiteral("Search an offense by its section"), [&] {
        addLine(Offenses);
        d.type(QStringLiteral("440.1"));
        d.check(found().size() == 1, QStringLiteral("the section is found"));
    });
    d.step(QStringLiteral("Choose the offense, which was an attempt"), [&] {
        d.press(Qt::Key_Return);
        d.check(SameValue(offense(1), 73), QStringLiteral("the trespass is chosen"));
        d.press(Qt::Key_Tab);
        d.press(Qt::Key_Space);
        d.check(!completed(1)->isChecked(), QStringLiteral("it was not completed"));
        d.check(completed(0)->isChecked(), QStringLiteral("the other one was"));
    });
}

void OffenseSteps::keepTheListsApart()
{
    d.step(QStringLiteral("An offense of another line is not offered"), [&] {
        addLine(Offenses);
        d.type(QStringLiteral("bicycle"));
        d.check(found().isEmpty(), QStringLiteral("the bicycle's theft is not found"));
        emptyTheBox();
        d.type(QStringLiteral("trespass"));
        d.check(found().size() == 1, QStringLiteral("only the other trespass is found"));
    });
    d.step(QStringLiteral("A line without an offense is no change by itself"), [&] {
        emptyTheBox();
        save();
        d.check(lines(Offenses).size() == 3, QStringLiteral("the empty line is still there"));
        d.check(storedRows(Offenses, OffenseNo).size() == 2, QStringLiteral("two offenses are stored"));
    });
}

void OffenseSteps::removeAndAddAgain()
{
    d.step(QStringLiteral("Remove an offense"), [&] {
        removeLine(*lines(Offenses).constFirst());
        d.check(lines(Offenses).size() == 2, QStringLiteral("two lines are left"));
        d.check(record()->isWindowModified(), QStringLiteral("the record is marked as changed"));
    });
    d.step(QStringLiteral("The removed offense is offered again"), [&] {
        addLine(Offenses);
        d.check(lines(Offenses).size() == 2, QStringLiteral("the empty line is taken"));
        d.type(QStringLiteral("bicycle"));
        d.check(found().size() == 1, QStringLiteral("the bicycle's theft is found"));
        clickRow(0);
        d.check(SameValue(offense(1), 30), QStringLiteral("and chosen"));
    });
}

void OffenseSteps::saveAndCompare()
{
    const auto compare = [&] {
        const QVariantList numbers = storedRows(Offenses, OffenseNo);
        const QVariantList flags = storedRows(Offenses, Completed);
        d.check(numbers == QVariantList({73, 30}), QStringLiteral("the offenses are in the database"));
        d.check(!ToBoolean(flags.at(0)) && ToBoolean(flags.at(1)),
                QStringLiteral("and whether they were completed"));
    };
    d.step(QStringLiteral("Save the offenses"), [&] {
        save();
        compare();
    });
    d.step(QStringLiteral("Open again and find the offenses"), [&] {
        close();
        reopen();
        showPage(OffensesPageNo);
        d.check(SameValue(offense(0), 73) && SameValue(offense(1), 30),
                QStringLiteral("the offenses are the saved ones"));
        d.check(!completed(0)->isChecked() && completed(1)->isChecked(),
                QStringLiteral("and so are their flags"));
        d.check(!record()->isWindowModified(), QStringLiteral("nothing is unsaved"));
        compare();
    });
}

} // namespace

void walkOffenses(TourSite& site)
{
    OffenseSteps(site).walk();
}

} // namespace tavrin::workbench
