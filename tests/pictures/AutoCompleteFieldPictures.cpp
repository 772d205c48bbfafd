// Writes a picture of each state of AutoCompleteField into the folder that is named on the command line.

#include "base/Error.h"
#include "lookup/AutoCompleteForm.h"
#include "workbench/Theme.h"

#include <QApplication>
#include <QDir>
#include <QPainter>

#include <cstdio>

using namespace tavrin;
using tavrin::test::AutoCompleteForm;

namespace {

/// The window with the list that is open over it.
QPixmap pictureOf(QWidget& window)
{
    QPixmap picture = window.grab();
    for (QWidget* list : QApplication::topLevelWidgets()) {
        if (list->isVisible() && list != &window) {
            QPainter painter(&picture);
            painter.drawPixmap(window.mapFromGlobal(list->pos()), list->grab());
        }
    }
    return picture;
}

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
    QApplication::processEvents();
    const QString path =
        QDir(folder).filePath(QStringLiteral("autocomplete-%1.png").arg(QLatin1String(state.name)));
    if (!pictureOf(form.window).save(path))
        throw Error(QStringLiteral("%1 cannot be written").arg(path));
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    try {
        for (const State& state : States)
            write(state, QApplication::arguments().value(1, QStringLiteral(".")));
    } catch (const Error& error) {
        std::fprintf(stderr, "%s\n", qPrintable(error.Description));
        return 1;
    }
    return 0;
}
