#include "IncidentForm.h"
#include "OfficeHost.h"

#include <QApplication>
#include <QMessageBox>

#include <TVBoundControls/AgencyPicker.h>
#include <TVBoundControls/Error.h>
#include <TVBoundControls/Guard.h>
#include <TVBoundControls/HostObjects.h>
#include <TVBoundControls/MultiValue.h>
#include <cstdio>

using namespace Qt::StringLiterals;
using namespace tavrin;

namespace {

bool allAsExpected = true;

void expect(bool isSo, const QString& line)
{
    allAsExpected = allAsExpected && isSo;
    std::printf("%s %s\n", isSo ? "ok  " : "FAIL", qUtf8Printable(line));
}

/// The victim whose relationship is not known was entered by mistake.
void removeSecondVictim(MemoryRecord& incident)
{
    const auto victims = childOf<tvTableCollection>(incident, u"Victims"_s);
    victims->SetPosition(2);
    victims->RemoveCurrent(false);
}

tvFieldPtr agencyOf(MemoryRecord& incident)
{
    return fieldOf(*childOf<tvTableRow>(incident, u"Incident"_s), u"AgencyNo"_s);
}

//! [left-out]
/// This host has no list of employees. Whoever asks for it gets one clear error, and nobody else does.
void askForWhatIsLeftOut()
{
    try {
        currentHost().newEmployeeListCache();
        expect(false, u"a host without employees has no list of them"_s);
    } catch (const Error& error) {
        expect(error.Number == Error::NoSuchComponentNumber, u"left out: "_s + error.Description);
    }
    expect(!currentHost().session().HasPermission(u"Incident"_s, 20), u"left out: nobody has a right"_s);
}
//! [/left-out]

/// Goes through what a person does with the form.
int check()
{
    const auto incident = savedIncident();
    IncidentForm form;
    form.show();

    form.open(incident);
    expect(form.agency().FullText() == u"Marlow County Sheriff's Office",
           u"opened: "_s + form.agency().FullText());
    expect(form.weapons().Count() == 1, u"opened: %1 weapon"_s.arg(form.weapons().Count()));
    expect(!form.isWindowModified(), u"opened: nothing is edited yet"_s);

    form.agency().SetValue(2);
    expect(form.isWindowModified(), u"edited: "_s + form.agency().FullText());

    const bool isRefused = !form.save();
    expect(isRefused, u"refused: "_s + form.reason().simplified());
    expect(form.isWindowModified() && form.agency().GetValue() == 2,
           u"refused: what was entered is still there"_s);
    expect(agencyOf(*incident)->Value() == 1, u"refused: nothing is written"_s);

    removeSecondVictim(*incident);
    const bool isSaved = form.save();
    expect(isSaved, u"saved: "_s + form.reason());
    expect(!form.isWindowModified(), u"saved: nothing is edited any more"_s);

    IncidentForm again;
    again.open(incident);
    expect(again.agency().ShortText() == u"MPD", u"reopened: "_s + again.agency().FullText());
    expect(again.weapons().Count() == 1, u"reopened: %1 weapon"_s.arg(again.weapons().Count()));
    expect(again.save(), u"reopened: it can be saved as it is"_s);

    agencyOf(*incident)->SetValue(55);
    again.open(incident);
    expect(again.save() && agencyOf(*incident)->Value() == 55,
           u"saved: an agency that the list does not know stays"_s);

    askForWhatIsLeftOut();
    return allAsExpected ? 0 : 1;
}

} // namespace

//! [main]
int main(int argc, char** argv)
{
    const bool isCheck = argc > 1 && qstrcmp(argv[1], "--check") == 0;
    if (isCheck && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);

    OfficeHost host;
    const HostInstallation installed(host); // before the first control is made

    // What fails while Qt calls a control, as when a key is pressed, has no caller to go to.
    setUnhandledErrorHandler([isCheck](const Error& error, const QString& where) {
        if (isCheck)
            expect(false, where + u": "_s + error.Description);
        else
            QMessageBox::warning(nullptr, u"Incident"_s, error.Description);
    });

    try {
        if (isCheck)
            return check();
        IncidentForm form;
        form.open(savedIncident());
        form.resize(520, 420);
        form.show();
        return QApplication::exec();
    } catch (const Error& error) {
        std::fprintf(stderr, "%s\n", qUtf8Printable(error.Description));
        return 1;
    }
}
//! [/main]
