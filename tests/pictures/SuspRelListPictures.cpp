// Writes a picture of each state of the list of relationships and of its dialog into the folder that is named
// on the command line; with QT_SCALE_FACTOR=2 a few large ones.

#include "base/values/Variant.h"
#include "pictures/Pictures.h"
#include "sections/SuspRelList.h"
#include "sections/frmSuspRel.h"
#include "support/Fakes.h"
#include "testing/FakeHost.h"
#include "widgets/lists/FlatDropdown.h"
#include "widgets/lists/ListView.h"
#include "workbench/application/Theme.h"

#include <QLineEdit>
#include <QTest>

#include <functional>

using namespace tavrin;
using namespace Qt::StringLiterals;
using tavrin::test::FakeCollection;
using tavrin::test::FakeRecord;

namespace {

const char* const Names[] = {"Thistlewood, Marian", "O'Brien, Jack", "Kettlewell, Rufus", "Wellbeloved, Ann",
                             "Ashdown, Piers",      "Quill, Dora",   "Fenwick, Tobias",   "Marsh, Eleanor"};

/// A form with the section of one suspect and somewhere else for the focus to go.
struct Stage
{
    Stage(bool dark, int links)
        : installation(host)
    {
        workbench::applyTheme(dark);
        host.setTable(Tables::SuspectRelationship, {{u"AQ"_s, u"Acquaintance"_s, 1},
                                                    {u"NE"_s, u"Neighbor"_s, 2},
                                                    {u"ST"_s, u"Stranger"_s, 3},
                                                    {u"EE"_s, u"Employee"_s, 4}});
        page->SetItem(u"SuspectBO"_s, suspectBO);
        page->SetItem(u"Victims"_s, parties);
        suspectBO->SetItem(u"SuspectVictims"_s, this->links);
        incident->SetItem(u"Suspects"_s, suspects);
        host.state().parents.insert(suspectBO.get(), incident);
        suspect = suspects->AddNew();
        fieldOf(*suspect, u"SuspectName"_s)->SetValue(u"Moss, Ada"_s);
        int seqNo = 0;
        for (const char* name : Names) {
            const tvTableRowPtr row = parties->AddNew();
            fieldOf(*row, u"SeqNo"_s)->SetValue(++seqNo);
            fieldOf(*row, u"VictimName"_s)->SetValue(QString::fromUtf8(name));
            if (seqNo > links)
                continue;
            const tvTableRowPtr link = this->links->AddNew();
            fieldOf(*link, u"VictimSeqNo"_s)->SetValue(seqNo);
            fieldOf(*link, u"RelationNo"_s)->SetValue(1 + seqNo % 4);
        }
        section = new SuspRelList(&window, {u"ctlVictims"_s, nullptr});
        section->SetOtherCollectionTag(u"Victims"_s);
        section->SetOtherItemName(u"Victim"_s);
        section->SetOtherItemSeqName(u"VictimSeqNo"_s);
        window.resize(600, 240);
        section->setGeometry(20, 16, 560, 170);
        auto* other = new QLineEdit(&window);
        other->setGeometry(20, 200, 560, 26);
        static_cast<BoundSection*>(section)->ReadData(page);
        window.show();
        window.activateWindow();
        if (!QTest::qWaitForWindowActive(&window))
            throw Error(u"the form did not come up"_s);
        other->setFocus();
    }
    void press(Qt::Key key) { QTest::keyClick(window.windowHandle(), key); }
    /// The dialog, beside which there is nothing.
    void showDialog()
    {
        section->hide();
        QList<tvTableRowPtr> choices;
        for (const tvTableRowPtr& party : *parties)
            choices << party;
        dialog = std::make_unique<frmSuspRel>();
        dialog->SetupForm(u"Victim"_s, choices, suspect);
        dialog->show();
        dialog->activateWindow();
        if (!QTest::qWaitForWindowActive(dialog.get()))
            throw Error(u"the dialog did not come up"_s);
    }
    QWidget& pictured() { return dialog ? static_cast<QWidget&>(*dialog) : window; }

    test::FakeHost host;
    HostInstallation installation;
    std::shared_ptr<FakeRecord> page = std::make_shared<FakeRecord>();
    std::shared_ptr<FakeRecord> suspectBO = std::make_shared<FakeRecord>();
    std::shared_ptr<FakeRecord> incident = std::make_shared<FakeRecord>();
    std::shared_ptr<FakeCollection> suspects =
        std::make_shared<FakeCollection>(QStringList{u"SeqNo"_s, u"SuspectName"_s});
    std::shared_ptr<FakeCollection> parties =
        std::make_shared<FakeCollection>(QStringList{u"SeqNo"_s, u"VictimName"_s});
    std::shared_ptr<FakeCollection> links = std::make_shared<FakeCollection>(
        QStringList{u"LinkNo"_s, u"VictimSeqNo"_s, u"SeqNo"_s, u"RelationNo"_s});
    tvTableRowPtr suspect;
    QWidget window;
    SuspRelList* section;
    std::unique_ptr<frmSuspRel> dialog;
};

struct State
{
    const char* name;
    int links;
    bool isLarge; // also at 200 %
    std::function<void(Stage&)> bring;
};

void openMenu(Stage& form)
{
    form.section->setFocus();
    form.press(Qt::Key_Menu);
}

void pickRelation(Stage& form)
{
    form.showDialog();
    auto* combo = form.dialog->findChild<FlatDropdown*>(u"cboRelationship"_s);
    combo->setFocus();
    QTest::keyClick(form.dialog->windowHandle(), Qt::Key_Down);
    QTest::keyClick(form.dialog->windowHandle(), Qt::Key_Down);
}

const State States[] = {
    {"empty", 0, false, [](Stage&) {}},
    {"empty-focused", 0, true, [](Stage& form) { form.section->setFocus(); }},
    {"empty-menu", 0, false, openMenu},
    {"filled", 4, false, [](Stage&) {}},
    {"filled-focused", 4, false, [](Stage& form) { form.section->setFocus(); }},
    {"scrolled", 8, false, [](Stage& form) { form.section->setFocus(); }},
    {"menu", 4, true, openMenu},
    {"disabled", 4, false, [](Stage& form) { form.section->SetEnabled(false); }},
    {"disabled-empty", 0, false, [](Stage& form) { form.section->SetEnabled(false); }},
    {"dialog", 4, true, [](Stage& form) { form.showDialog(); }},
    {"dialog-picked", 4, false, pickRelation},
};

} // namespace

TAVRIN_PICTURES(SuspRelList)(int argc, char** argv)
{
    return test::writePictures(argc, argv, [](const QString& folder, bool isLarge) {
        for (const State& state : States) {
            for (const bool dark : {false, true}) {
                if (isLarge && !state.isLarge)
                    continue;
                Stage form(dark, state.links);
                state.bring(form);
                form.window.setVisible(!form.dialog);
                test::writePicture(form.pictured(), folder,
                                   u"SuspRelList/%1%2%3"_s.arg(QLatin1String(state.name),
                                                               QLatin1String(dark ? "-dark" : ""),
                                                               QLatin1String(isLarge ? "-200" : "")));
            }
        }
    });
}
