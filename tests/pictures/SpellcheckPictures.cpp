// Writes a picture of each state of the spelling dialog in both themes, and of the control in the designer,
// into the folder that is named on the command line; with QT_SCALE_FACTOR=2 large ones.

#include "pictures/Pictures.h"
#include "spell/SpellingStage.h"
#include "spell/SpellingWalk.h"
#include "spell/TavrinSpellcheck.h"
#include "widgets/boxes/TextArea.h"
#include "workbench/application/Theme.h"

#include <QLabel>

#include <functional>
#include <string_view>

using namespace tavrin;

namespace {

const QString Narrative = QStringLiteral(
    "Officer Ruiz arrived at 21:40. The witnes stated that a grey van had been parked before the gate since "
    "noon. Two men in dark jackets left it and walked towards Harrowgate Strete.");
const QString LongNarrative =
    QStringLiteral("The caller, who had been walking her dog along the canal and did not at first pay any "
                   "attention to the two persons on the other bank, stated that she then heard a loud noise, "
                   "turned round, and saw that the taller one had droped a bag and was running towards the "
                   "bridge while the other one stood still, looked at the water for a while, picked the bag "
                   "up, and went away in the direction of the railway station.");
const QString Name = QStringLiteral("The car is registered to Xqzvortbryllkmpf, of no fixed address.");

/// A form with a narrative, and the dialog over it.
struct Stage
{
    Stage(bool dark, const QString& text, bool allowAdd, bool readOnly)
    {
        workbench::applyTheme(dark);
        window.setGeometry(20, 20, 560, 110);
        area.setParent(&window);
        area.setGeometry(12, 12, 536, 86);
        area.SetText(text);
        area.setReadOnly(readOnly);
        window.show();
        walk = std::make_shared<SpellingWalk>(&area, test::spellerOf(folder));
        form = std::make_unique<frmSpelling>(walk, allowAdd);
        form->show();
        form->activateWindow();
        if (!QTest::qWaitForWindowActive(form.get()))
            throw Error(QStringLiteral("the dialog did not come up"));
    }
    test::Dialog dialog() const { return test::Dialog(*form); }

    test::SpellingFolder folder;
    QWidget window;
    TextArea area;
    std::shared_ptr<SpellingWalk> walk;
    std::unique_ptr<frmSpelling> form;
};

struct State
{
    const char* name;
    const QString& text;
    bool allowAdd;
    bool readOnly;
    std::function<void(Stage&)> bring;
};

void undoable(Stage& stage)
{
    stage.dialog().click("cmdChange");
}

void refused(Stage& stage)
{
    stage.area.SetMaxLength(static_cast<qint32>(Narrative.size()));
    stage.dialog().changeTo()->SetText(QStringLiteral("witness from the other side of the road"));
    stage.dialog().click("cmdChange");
}

void nothing(Stage&) {}

const State States[] = {
    {"word", Narrative, true, false, nothing},      {"undo", Narrative, true, false, undoable},
    {"no-suggestions", Name, true, false, nothing}, {"without-add", Narrative, false, false, nothing},
    {"long", LongNarrative, true, false, nothing},  {"refused", Narrative, true, false, refused},
    {"read-only", Narrative, true, true, nothing},
};

void writeDialog(const State& state, bool dark, const QString& folder, const QString& ending)
{
    Stage stage(dark, state.text, state.allowAdd, state.readOnly);
    state.bring(stage);
    QApplication::processEvents();
    test::writePicture(stage.form->grab(), folder,
                       QStringLiteral("TavrinSpellcheck/%1%2").arg(QLatin1String(state.name), ending));
    stage.form->hide();
}

/// The form below the dialog, with the word marked in it.
void writeTogether(bool dark, const QString& folder, const QString& name)
{
    Stage stage(dark, Narrative, true, false);
    QApplication::processEvents();
    const QRect all = stage.window.geometry().united(stage.form->geometry()).adjusted(-12, -12, 12, 12);
    const qreal scale = stage.form->devicePixelRatioF();
    QPixmap picture(all.size() * scale);
    picture.setDevicePixelRatio(scale);
    picture.fill(QApplication::palette().color(QPalette::Mid));
    QPainter painter(&picture);
    painter.drawPixmap(stage.window.pos() - all.topLeft(), stage.window.grab());
    painter.drawPixmap(stage.form->pos() - all.topLeft(), stage.form->grab());
    painter.end();
    test::writePicture(picture, folder, name);
    stage.form->hide();
}

void writeControl(bool dark, const QString& folder, const QString& name)
{
    workbench::applyTheme(dark);
    const DesignTime designer;
    QWidget window;
    window.resize(64, 64);
    TavrinSpellcheck control(&window);
    control.move(16, 16);
    window.show();
    test::writePicture(window, folder, name);
}

} // namespace

TAVRIN_PICTURES(Spellcheck)(int argc, char** argv)
{
    return test::writePictures(argc, argv, [](const QString& folder, bool isLarge) {
        const QString ending = isLarge ? QStringLiteral("-200") : QString();
        for (const State& state : States) {
            writeDialog(state, false, folder, ending);
            writeDialog(state, true, folder, QStringLiteral("-dark") + ending);
        }
        writeControl(false, folder, QStringLiteral("TavrinSpellcheck/designer") + ending);
        if (!isLarge) {
            writeControl(true, folder, QStringLiteral("TavrinSpellcheck/designer-dark"));
            writeTogether(false, folder, QStringLiteral("TavrinSpellcheck/over-form"));
            writeTogether(true, folder, QStringLiteral("TavrinSpellcheck/over-form-dark"));
        }
    });
}
