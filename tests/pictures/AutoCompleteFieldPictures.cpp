// Writes a picture of each state of AutoCompleteField into the folder that is named on the command line.

#include "lookup/AutoCompleteForm.h"
#include "pictures/Pictures.h"
#include "workbench/application/Theme.h"

#include <QApplication>

using namespace tavrin;
using tavrin::test::AutoCompleteForm;

namespace {

struct State
{
    const char* name;
    bool dark;
    std::function<void(AutoCompleteForm&)> bring;
};

void searchGun(AutoCompleteForm& form)
{
    if (!form.search(QStringLiteral("gun")))
        throw Error(QStringLiteral("the search did not run"));
    QTest::keyClick(form.box, Qt::Key_Down);
}

void chooseHandgun(AutoCompleteForm& form)
{
    form.field->SetText(QStringLiteral("12 - Handgun"));
    form.field->SetValue(12);
    form.other->setFocus();
}

const State States[] = {
    {"empty", false, [](AutoCompleteForm& form) { form.other->setFocus(); }},
    {"focused", false, [](AutoCompleteForm&) {}},
    {"open", false, searchGun},
    {"open-dark", true, searchGun},
    {"chosen", false, chooseHandgun},
    {"chosen-dark", true, chooseHandgun},
    {"disabled", false,
     [](AutoCompleteForm& form) {
         chooseHandgun(form);
         form.field->SetEnabled(false);
     }},
};

void write(const State& state, const QString& folder)
{
    workbench::applyTheme(state.dark);
    AutoCompleteForm form;
    form.other->hide();
    form.window.resize(360, 120);
    const bool ready = form.isReady();
    form.other->show();
    form.other->setGeometry(-100, -100, 10, 10); // somewhere for the focus to go
    if (!ready)
        throw Error(QStringLiteral("the form did not come up"));
    state.bring(form);
    tavrin::test::writePicture(form.window, folder,
                               QStringLiteral("AutoCompleteField/%1").arg(QLatin1String(state.name)));
}

} // namespace

TAVRIN_PICTURES(AutoCompleteField)(int argc, char** argv)
{
    return test::writePictures(argc, argv, [](const QString& folder, bool) {
        for (const State& state : States)
            write(state, folder);
    });
}
