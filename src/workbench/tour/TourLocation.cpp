#include "base/values/Variant.h"
#include "lookup/AgencyPicker.h"
#include "lookup/NibrsOffensePicker.h"
#include "sections/MultiValue.h"
#include "widgets/boxes/FlatOptionButton.h"
#include "widgets/boxes/TextBox.h"
#include "widgets/lists/ListBox.h"
#include "workbench/pages/PickerRow.h"
#include "workbench/tour/TourSteps.h"

#include <QApplication>
#include <QLineEdit>

namespace tavrin::workbench {

namespace {

constexpr int GeneralPageNo = 0;
constexpr int OffensesPageNo = 2;
constexpr int LocationPageNo = 6;
constexpr int PortAnselmPolice = 4;
constexpr int Knife = 20;

const QString Offenses = QStringLiteral("Offenses");
const QString NibrsCode = QStringLiteral("NibrsCode");
const QString Weapons = QStringLiteral("OffenseWeapons");
const QString WeaponNo = QStringLiteral("WeaponNo");

class LocationSteps final : public TourSteps
{
public:
    using TourSteps::TourSteps;
    void walk();

private:
    void chooseTheAgency();
    void detailTheOffense();
    void saveAndCompare();
    void enterCoordinates();
    void geocodeAPoorMatch();

    void addWeapon(const QString& text) const;
    void fill(Qt::Key accessKey, const QString& text) const;
    void chooseOption(int index) const;
    AgencyPicker* agency() const { return d.find<AgencyPicker>(record(), QStringLiteral("Agency")); }
    NibrsOffensePicker* code(int line) const
    {
        return d.find<NibrsOffensePicker>(lines(Offenses).at(line), NibrsCode);
    }
    MultiValue* weapons(int line) const { return d.find<MultiValue>(lines(Offenses).at(line), Weapons); }
    TextBox* coordinate(const char* name) const { return d.find<TextBox>(record(), QLatin1String(name)); }
    QVariant storedLocation(const char* field) const
    {
        return s.otherStore.load(s.incidentNo)
            ->part(QStringLiteral("LocationName"))
            ->cell(QLatin1String(field))
            .value();
    }
};

void LocationSteps::walk()
{
    chooseTheAgency();
    detailTheOffense();
    saveAndCompare();
    enterCoordinates();
    geocodeAPoorMatch();
}

void LocationSteps::chooseTheAgency()
{
    d.step(QStringLiteral("Choose the agency by the keyboard"), [&] {
        showPage(GeneralPageNo);
        d.press(Qt::Key_G, Qt::AltModifier);
        d.press(Qt::Key_F4);
        d.picture(QStringLiteral("The agencies"));
        d.type(QStringLiteral("ZZ01703"));
        d.press(Qt::Key_Return);
        d.check(SameValue(agency()->Value(), PortAnselmPolice), QStringLiteral("the agency is chosen"));
        d.checkEqual(agency()->FullText(), QStringLiteral("Port Anselm Police Department"),
                     QStringLiteral("its name"));
        d.check(record()->isWindowModified(), QStringLiteral("the record is marked as changed"));
    });
}

void LocationSteps::addWeapon(const QString& text) const
{
    d.withBox([&] { d.click(d.find<QWidget>(weapons(0), QStringLiteral("lnkAdd"))); },
              [&](QWidget* box) {
                  d.find<ListBox>(box, QStringLiteral("lstChoices"))->setFocus();
                  d.type(text);
                  d.picture(QStringLiteral("The choices"));
                  d.press(Qt::Key_Return);
              });
}

void LocationSteps::detailTheOffense()
{
    d.step(QStringLiteral("Choose a reporting code by its first digit"), [&] {
        showPage(OffensesPageNo);
        code(0)->setFocus();
        d.type(QStringLiteral("9"));
        d.checkEqual(ToText(code(0)->Value()), QStringLiteral("90B"),
                     QStringLiteral("the first code that begins so"));
        d.type(QStringLiteral("9"));
        d.checkEqual(ToText(code(0)->Value()), QStringLiteral("90C"), QStringLiteral("the next one"));
        d.check(!SameValue(code(0)->Value(), code(1)->Value()), QStringLiteral("the other offense's stands"));
    });
    d.step(QStringLiteral("Add weapons to the offense"), [&] {
        d.check(weapons(0)->Count() == 0, QStringLiteral("the new offense has none"));
        addWeapon(QStringLiteral("Rif"));
        addWeapon(QStringLiteral("Kni"));
        d.check(weapons(0)->Count() == 2, QStringLiteral("both are in the list"));
        d.check(weapons(1)->Count() == 0, QStringLiteral("the other offense has none"));
    });
    d.step(QStringLiteral("Remove a weapon"), [&] {
        auto* list = d.find<ListBox>(weapons(0), QStringLiteral("lstValues"));
        list->setFocus();
        d.press(Qt::Key_Home);
        d.press(Qt::Key_Delete);
        d.check(list->ListCount() == 1 && list->List(0).startsWith(QStringLiteral("Knife")),
                QStringLiteral("the knife is left"));
    });
}

void LocationSteps::saveAndCompare()
{
    QVariant chosen;
    const auto compare = [&] {
        d.check(SameValue(stored(QStringLiteral("AgencyNo")), PortAnselmPolice),
                QStringLiteral("the agency is in the database"));
        d.check(SameValue(storedRows(Offenses, NibrsCode).constFirst(), chosen),
                QStringLiteral("so is the reporting code"));
        d.check(storedRows(Weapons, WeaponNo) == QVariantList{Knife}, QStringLiteral("and the weapon"));
    };
    d.step(QStringLiteral("Save agency, code and weapon"), [&] {
        chosen = code(0)->Value();
        save();
        compare();
    });
    d.step(QStringLiteral("Open again and find them"), [&] {
        close();
        reopen();
        d.check(SameValue(agency()->Value(), PortAnselmPolice), QStringLiteral("the agency is there"));
        showPage(OffensesPageNo);
        d.check(SameValue(code(0)->Value(), chosen), QStringLiteral("the reporting code is there"));
        d.check(weapons(0)->Count() == 1 && weapons(1)->Count() == 0,
                QStringLiteral("the weapon is the first offense's"));
        d.check(!record()->isWindowModified(), QStringLiteral("nothing is unsaved"));
        compare();
    });
}

void LocationSteps::chooseOption(int index) const
{
    d.click(d.find<FlatOptionButton>(record(), QStringLiteral("optGeocodeOnSave%1").arg(index)));
}

void LocationSteps::enterCoordinates()
{
    d.step(QStringLiteral("The coordinates of the address"), [&] {
        showPage(LocationPageNo);
        d.checkEqual(coordinate("txtLat")->Text(), ToText(storedLocation("Latitude")),
                     QStringLiteral("the latitude"));
        d.check(!coordinate("txtLat")->isEnabled(), QStringLiteral("they cannot be edited"));
        d.check(!record()->isWindowModified(), QStringLiteral("nothing is unsaved"));
    });
    d.step(QStringLiteral("Enter coordinates"), [&] {
        chooseOption(0);
        d.check(record()->isWindowModified(), QStringLiteral("the record is marked as changed"));
        for (const auto& [name, text] : {std::pair("txtLat", "45.5"), std::pair("txtLong", "-128.25")}) {
            d.click(coordinate(name));
            emptyTheBox();
            d.type(QLatin1String(text));
        }
        save();
        d.checkEqual(ToText(storedLocation("Latitude")), QStringLiteral("45.5"), QStringLiteral("latitude"));
        d.checkEqual(ToText(storedLocation("Longitude")), QStringLiteral("-128.25"),
                     QStringLiteral("longitude"));
        d.check(SameValue(storedLocation("GeocodeOnSave"), false), QStringLiteral("they stay at a save"));
    });
}

void LocationSteps::fill(Qt::Key accessKey, const QString& text) const
{
    d.press(accessKey, Qt::AltModifier);
    emptyTheBox();
    d.type(text);
}

void LocationSteps::geocodeAPoorMatch()
{
    auto* details = d.find<QWidget>(record(), QStringLiteral("lnkViewDetails"));
    d.step(QStringLiteral("Back to the coordinates of an address that is not known well"), [&] {
        chooseOption(1);
        showPage(GeneralPageNo);
        fill(Qt::Key_A, QStringLiteral("41 Crooked Oar Lane"));
        fill(Qt::Key_I, QStringLiteral("Port Anselm"));
        save();
        showPage(LocationPageNo);
        d.checkEqual(coordinate("txtLat")->Text(), QStringLiteral("45.94604"),
                     QStringLiteral("the latitude that the save has found"));
        d.check(details->isVisible(), QStringLiteral("the poor match is warned of"));
    });
    d.step(QStringLiteral("The details of the match"), [&] {
        d.withBox([&] { d.click(details); },
                  [&](QWidget* box) {
                      d.check(boxText(box).contains(QStringLiteral("40 Crooked Oar Lane, Port Anselm")),
                              QStringLiteral("the box names the address that was found"));
                      d.picture(QStringLiteral("The details"));
                      answer(QMessageBox::Ok, box);
                  });
    });
    d.step(QStringLiteral("Open again and find the coordinates"), [&] {
        close();
        reopen();
        showPage(LocationPageNo);
        d.checkEqual(coordinate("txtLat")->Text(), ToText(storedLocation("Latitude")),
                     QStringLiteral("the latitude"));
        d.check(SameValue(storedLocation("GeocodeOnSave"), true), QStringLiteral("each save finds them"));
        d.check(!record()->isWindowModified(), QStringLiteral("nothing is unsaved"));
    });
}

} // namespace

void walkLocation(TourSite& site)
{
    LocationSteps(site).walk();
}

} // namespace tavrin::workbench
