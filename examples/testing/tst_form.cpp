#include "IncidentForm.h"
#include "OfficeHost.h"

#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <TVBoundControls/AgencyPicker.h>
#include <TVBoundControls/Error.h>
#include <TVBoundControls/FakeDesktop.h>
#include <TVBoundControls/FakeHost.h>
#include <TVBoundControls/MultiValue.h>
#include <TVBoundControls/Unhandled.h>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::testing;

namespace {

//! [fake]
/// A host that answers what a test tells it, and keeps what it was asked.
void fill(FakeHost& host)
{
    host.setTable(Tables::Agency, {{u"MCSO"_s, u"Marlow County Sheriff's Office"_s, 1},
                                   {u"MPD"_s, u"Marlow Police Department"_s, 2}});
    host.setTable(WeaponTable, {{u"11"_s, u"Handgun"_s, 11}, {u"12"_s, u"Rifle"_s, 12}});
    host.setTable(Tables::SuspectRelationship, {{u"FR"_s, u"Friend"_s, 7}});
}
//! [/fake]

void press(QWidget& form, Qt::Key key)
{
    QTest::keyClick(form.focusWidget(), key);
}

} // namespace

class tst_form : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    //! [keys]
    void anAgencyThatIsChosenByTheKeyboardIsAnEdit()
    {
        FakeHost host;
        fill(host);
        const HostInstallation installed(host);
        IncidentForm form;
        form.open(savedIncident());
        form.show();
        form.agency().setFocus();
        QVERIFY(!form.isWindowModified());

        press(form, Qt::Key_Down); // the next agency of the list
        QCOMPARE(form.agency().GetValue(), QVariant(2));
        QVERIFY(form.isWindowModified());
    }
    //! [/keys]

    void aRefusedSaveTellsWhyAndKeepsWhatWasEntered()
    {
        FakeHost host;
        fill(host);
        host.state().requiredFields << u"Incident/IncdSuspVictim/RelationNo"_s;
        const HostInstallation installed(host);
        IncidentForm form;
        form.open(savedIncident());
        form.agency().SetValue(2);

        QVERIFY(!form.save());
        QVERIFY(
            form.reason().startsWith(u"You must specify the relationship this suspect has to each victim"_s));
        QCOMPARE(form.agency().GetValue(), QVariant(2));
        QVERIFY(form.isWindowModified());
    }

    //! [failure]
    void aHostThatFailsIsHeardAndTheFormCanBeOpenedAgain()
    {
        FakeHost host;
        fill(host);
        const HostInstallation installed(host);
        const Unhandled unhandled; // what would have gone to the application's handler
        FakeMessageBoxes boxes;    // no test waits for a person
        IncidentForm form;

        host.failWith(Error(u"The server does not answer"_s));
        QVERIFY_THROWS_EXCEPTION(Error, form.open(savedIncident()));
        host.failWith({});
        form.open(savedIncident());
        QCOMPARE(form.agency().FullText(), u"Marlow County Sheriff's Office"_s);
        QCOMPARE(unhandled.texts, QStringList());
        QCOMPARE(boxes.texts(), QStringList());
    }
    //! [/failure]

    //! [own-host]
    void theOfficesHostShowsAnAgencyThatIsNoLongerInUseWhereARecordHoldsIt()
    {
        OfficeHost host;
        const HostInstallation installed(host);
        QCOMPARE(host.hostServices().GetTableValues(Tables::Agency, false).Items.size(), 2);

        AgencyPicker picker;
        picker.SetValue(3, nullptr); // as a record holds it
        QCOMPARE(picker.FullText(), u"Harbour Patrol"_s);
    }
    //! [/own-host]
};

QTEST_MAIN(tst_form)
#include "tst_form.moc"
