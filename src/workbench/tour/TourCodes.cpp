#include "base/values/Variant.h"
#include "lookup/AutoCompleteField.h"
#include "widgets/boxes/TextBox.h"
#include "widgets/lists/DropDownList.h"
#include "workbench/tour/TourSteps.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QTableView>

#include <algorithm>

namespace tavrin::workbench {

namespace {

class CodeSteps final : public TourSteps
{
public:
    using TourSteps::TourSteps;
    void walk();

private:
    void findAndOpen();
    void searchInTheField();
    void chooseByKeyboard();
    void chooseByMouse();
    void refuseWhatWasNotChosen();
    void saveAndCompare();

    AutoCompleteField* code(const QString& name) const { return d.find<AutoCompleteField>(record(), name); }
    QString text(const QString& name) const { return ToText(code(name)->Text()); }
    DropDownList* matches(const QString& name) const
    {
        return d.find<DropDownList>(code(name), QStringLiteral("lstMatches"));
    }
};

void CodeSteps::walk()
{
    findAndOpen();
    searchInTheField();
    chooseByKeyboard();
    chooseByMouse();
    refuseWhatWasNotChosen();
    saveAndCompare();
}

void CodeSteps::findAndOpen()
{
    auto* list = d.find<QTableView>(&s.window, QStringLiteral("incidents"));
    d.step(QStringLiteral("The list of incidents"), [&] {
        d.check(list->model()->rowCount() == s.otherStore.list().size(),
                QStringLiteral("all incidents are listed"));
        d.check(s.window.focusWidget() == d.find<QLineEdit>(&s.window, QStringLiteral("search")),
                QStringLiteral("the search line has the focus"));
    });
    d.step(QStringLiteral("Search an incident"), [&] {
        d.type(QStringLiteral("bicycle"));
        const auto expected = s.otherStore.list(QStringLiteral("bicycle"));
        d.check(!expected.isEmpty() && list->model()->rowCount() == expected.size(),
                QStringLiteral("the incidents with a bicycle are listed"));
        s.incidentNo = expected.constFirst().IncidentNo;
    });
    d.step(QStringLiteral("Open the record"), [&] {
        d.press(Qt::Key_Return);
        d.checkEqual(d.find<QLabel>(record(), QStringLiteral("title"))->text(),
                     ToText(stored(QStringLiteral("CaseNo"))), QStringLiteral("the window's title"));
        d.check(SameValue(code(QStringLiteral("LocationType"))->Value(),
                          stored(QStringLiteral("LocationTypeNo"))),
                QStringLiteral("the location type is the record's"));
    });
}

void CodeSteps::searchInTheField()
{
    d.step(QStringLiteral("Two characters list nothing"), [&] {
        d.press(Qt::Key_W, Qt::AltModifier);
        emptyTheBox();
        d.type(QStringLiteral("gu"));
        d.waitFor([&] { return IsNull(code(QStringLiteral("Weapon"))->Value()); },
                  QStringLiteral("no weapon is chosen"));
        d.checkEqual(text(QStringLiteral("Weapon")), QStringLiteral("gu"),
                     QStringLiteral("the weapon's text"));
        d.check(!matches(QStringLiteral("Weapon"))->IsOpen(), QStringLiteral("no list is open"));
    });
    d.step(QStringLiteral("Three characters open the list"), [&] {
        emptyTheBox();
        d.type(QStringLiteral("gun"));
        d.waitFor([&] { return matches(QStringLiteral("Weapon"))->IsOpen(); },
                  QStringLiteral("the list is open"));
        d.checkEqual(text(QStringLiteral("Weapon")), QStringLiteral("gun"),
                     QStringLiteral("the weapon's text"));
        d.check(matches(QStringLiteral("Weapon"))->ListCount() >= 2,
                QStringLiteral("handgun and shotgun are found"));
    });
}

void CodeSteps::chooseByKeyboard()
{
    d.step(QStringLiteral("Walk down the list"), [&] {
        d.press(Qt::Key_Down);
        d.press(Qt::Key_Down);
        d.check(matches(QStringLiteral("Weapon"))->ListIndex() == 1,
                QStringLiteral("the second entry is marked"));
        d.check(IsNull(code(QStringLiteral("Weapon"))->Value()), QStringLiteral("nothing is chosen yet"));
    });
    d.step(QStringLiteral("Choose with Enter"), [&] {
        const QString marked = matches(QStringLiteral("Weapon"))->Text();
        d.press(Qt::Key_Return);
        d.checkEqual(text(QStringLiteral("Weapon")), marked, QStringLiteral("the weapon's text"));
        d.check(!IsNull(code(QStringLiteral("Weapon"))->Value()), QStringLiteral("a weapon is chosen"));
        d.check(!matches(QStringLiteral("Weapon"))->IsOpen(), QStringLiteral("the list is closed"));
        d.check(record()->isWindowModified(), QStringLiteral("the record is marked as changed"));
    });
}

void CodeSteps::chooseByMouse()
{
    d.step(QStringLiteral("Search by description"), [&] {
        d.press(Qt::Key_L, Qt::AltModifier);
        emptyTheBox();
        d.type(QStringLiteral("HOME"));
        d.waitFor([&] { return matches(QStringLiteral("LocationType"))->IsOpen(); },
                  QStringLiteral("the list is open"));
    });
    d.step(QStringLiteral("Choose with the mouse"), [&] {
        const auto lists = record()->findChildren<QListView*>(QStringLiteral("entries"));
        const auto open =
            std::find_if(lists.begin(), lists.end(), [](QListView* list) { return list->isVisible(); });
        d.check(open != lists.end(), QStringLiteral("the list can be seen"));
        const QString first = matches(QStringLiteral("LocationType"))->List(0);
        d.click((*open)->viewport(), (*open)->visualRect((*open)->model()->index(0, 0)).center());
        d.checkEqual(text(QStringLiteral("LocationType")), first, QStringLiteral("the location type's text"));
        d.check(!matches(QStringLiteral("LocationType"))->IsOpen(), QStringLiteral("the list is closed"));
    });
}

void CodeSteps::refuseWhatWasNotChosen()
{
    d.step(QStringLiteral("A text that is no entry is not saved"), [&] {
        d.press(Qt::Key_B, Qt::AltModifier);
        emptyTheBox();
        d.type(QStringLiteral("martian"));
        d.waitFor([&] { return IsNull(code(QStringLiteral("BiasMotivation"))->Value()); },
                  QStringLiteral("no motivation is chosen"));
        d.withBox([&] { d.press(Qt::Key_S, Qt::ControlModifier); },
                  [&](QWidget* box) {
                      d.check(boxText(box).contains(QStringLiteral("\"martian\" in \"Bias motivation\"")),
                              QStringLiteral("the box names the text and the field"));
                      d.picture(QStringLiteral("The box"));
                      d.press(Qt::Key_Return);
                  });
        record();
        d.check(code(QStringLiteral("BiasMotivation"))->isAncestorOf(QApplication::focusWidget()),
                QStringLiteral("the field at fault has the focus"));
        d.checkEqual(text(QStringLiteral("BiasMotivation")), QStringLiteral("martian"),
                     QStringLiteral("the text"));
    });
    d.step(QStringLiteral("Choose an entry instead"), [&] {
        emptyTheBox();
        d.type(QStringLiteral("anti-b"));
        d.waitFor([&] { return matches(QStringLiteral("BiasMotivation"))->IsOpen(); },
                  QStringLiteral("the list is open"));
        d.press(Qt::Key_Down);
        d.press(Qt::Key_Return);
        d.check(!IsNull(code(QStringLiteral("BiasMotivation"))->Value()),
                QStringLiteral("a motivation is chosen"));
    });
}

void CodeSteps::saveAndCompare()
{
    d.step(QStringLiteral("Save"), [&] {
        const QVariant weapon = code(QStringLiteral("Weapon"))->Value();
        const QVariant location = code(QStringLiteral("LocationType"))->Value();
        const QVariant bias = code(QStringLiteral("BiasMotivation"))->Value();
        d.press(Qt::Key_S, Qt::ControlModifier);
        d.check(!record()->isWindowModified(), QStringLiteral("nothing is unsaved"));
        d.check(
            d.find<QLabel>(record(), QStringLiteral("status"))->text().startsWith(QStringLiteral("Saved")),
            QStringLiteral("the status line says so"));
        d.check(SameValue(stored(QStringLiteral("WeaponNo")), weapon),
                QStringLiteral("the weapon is in the database"));
        d.check(SameValue(stored(QStringLiteral("LocationTypeNo")), location),
                QStringLiteral("the location type is in the database"));
        d.check(SameValue(stored(QStringLiteral("BiasNo")), bias),
                QStringLiteral("the motivation is in the database"));
    });
}

} // namespace

void walkCodes(TourSite& site)
{
    CodeSteps(site).walk();
}

} // namespace tavrin::workbench
