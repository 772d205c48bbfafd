#include "base/values/Variant.h"
#include "lookup/AgencyPicker.h"
#include "support/TestCase.h"
#include "widgets/boxes/FlatOptionButton.h"
#include "widgets/boxes/TextBox.h"
#include "workbench/Site.h"

using namespace tavrin;
using namespace tavrin::workbench;
using namespace tavrin::test;

namespace {

/// A site whose incident has the location that a test wants.
struct LocationSite : Site
{
    void storeLocation(const QVariant& geocodes, const QVariant& latitude = Null(),
                       const QVariant& longitude = Null())
    {
        const RecordPtr record = workspace->store().load(incidentNo);
        const RecordRowPtr row = record->part(QStringLiteral("LocationName"));
        row->cell(QStringLiteral("GeocodeOnSave")).setValue(geocodes);
        row->cell(QStringLiteral("Latitude")).setValue(latitude);
        row->cell(QStringLiteral("Longitude")).setValue(longitude);
        workspace->store().save(*record);
    }
    QVariant location(const char* column, qint64 incident = 0)
    {
        return workspace->store()
            .load(incident ? incident : incidentNo)
            ->part(QStringLiteral("LocationName"))
            ->cell(QLatin1String(column))
            .value();
    }
    void openPage(PageNo page = LocationPageNo) { Site::openPage(page); }
    TextBox* latitude() const { return window->findChild<TextBox*>(QStringLiteral("txtLat")); }
    TextBox* longitude() const { return window->findChild<TextBox*>(QStringLiteral("txtLong")); }
    FlatOptionButton* manual() const
    {
        return window->findChild<FlatOptionButton*>(QStringLiteral("optGeocodeOnSave0"));
    }
    FlatOptionButton* onSave() const
    {
        return window->findChild<FlatOptionButton*>(QStringLiteral("optGeocodeOnSave1"));
    }
    QWidget* details() const { return window->findChild<QWidget*>(QStringLiteral("lnkViewDetails")); }
    AgencyPicker* agency() const { return window->findChild<AgencyPicker*>(QStringLiteral("Agency")); }
};

} // namespace

/// The agency and the coordinates of an incident, with the real controls and a real database.
class tst_LocationPage : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void anyLocationIsShownAndIsNoChange_data()
    {
        QTest::addColumn<QVariant>("geocodes");
        QTest::addColumn<QVariant>("latitude");
        QTest::addColumn<bool>("isManual");
        QTest::newRow("typed") << QVariant(false) << QVariant(QStringLiteral("45.5")) << true;
        QTest::newRow("still to be typed") << QVariant(false) << Null() << true;
        QTest::newRow("nobody has chosen") << Null() << Null() << true;
        QTest::newRow("from the address") << QVariant(true) << Null() << false;
    }
    void anyLocationIsShownAndIsNoChange()
    {
        QFETCH(QVariant, geocodes);
        QFETCH(QVariant, latitude);
        QFETCH(bool, isManual);
        LocationSite site;
        site.storeLocation(geocodes, latitude);
        site.open();
        QCOMPARE(site.latitude()->Text(), ToText(site.location("Latitude")));
        QCOMPARE(site.manual()->Value(), isManual);
        QVERIFY(!site.window->isDirty());
        site.editSummary();
        QVERIFY(site.window->save());
        QVERIFY(SameValue(site.location("GeocodeOnSave"), geocodes)); // also the choice that nobody has made
        QVERIFY(!site.window->isDirty());
    }

    void typedCoordinatesAreAChangeUntilTheyAreTheStoredOnesAgain()
    {
        LocationSite site;
        site.storeLocation(false, QStringLiteral("45.5"), QStringLiteral("-128"));
        site.openPage();
        QTest::keyClicks(site.latitude(), QStringLiteral("7"));
        QCOMPARE(site.status(), QStringLiteral("Unsaved changes"));
        QTest::keyClick(site.latitude(), Qt::Key_Backspace);
        QCOMPARE(site.status(), QString());
        QTest::keyClicks(site.longitude(), QStringLiteral(".25"));
        QVERIFY(site.window->save());
        QCOMPARE(ToText(site.location("Latitude")), QStringLiteral("45.5"));
        QCOMPARE(ToText(site.location("Longitude")), QStringLiteral("-128.25"));
        QVERIFY(!site.window->isDirty());
    }

    void typingWhereNobodyHasChosenChoosesToType()
    {
        LocationSite site;
        site.storeLocation(Null());
        site.openPage();
        QTest::keyClicks(site.latitude(), QStringLiteral("45"));
        QVERIFY(site.window->save());
        QVERIFY(SameValue(site.location("GeocodeOnSave"), false));
        QCOMPARE(ToText(site.location("Latitude")), QStringLiteral("45"));
    }

    void anOptionIsAChangeAtOnceAndTheSaveShowsWhatItFound()
    {
        LocationSite site;
        site.storeLocation(false, QStringLiteral("1"), QStringLiteral("2"));
        site.store(QStringLiteral("Address"), QStringLiteral("41 Crooked Oar Lane"));
        site.store(QStringLiteral("City"), QStringLiteral("Port Anselm"));
        site.openPage();
        QVERIFY(!site.details()->isVisible());
        QTest::mouseClick(site.onSave(), Qt::LeftButton);
        QCOMPARE(site.status(), QStringLiteral("Unsaved changes"));
        QVERIFY(site.window->isWindowModified());
        QVERIFY(site.window->save());
        QCOMPARE(site.latitude()->Text(), QStringLiteral("45.94604"));
        QCOMPARE(ToText(site.location("Latitude")), QStringLiteral("45.94604"));
        QVERIFY(site.details()->isVisible());
        QVERIFY(!site.window->isDirty());
    }

    void aSaveThatFailedLeavesWhatWasTyped()
    {
        LocationSite site;
        site.storeLocation(false, QStringLiteral("45.5"));
        site.openPage();
        QTest::keyClicks(site.latitude(), QStringLiteral("7"));
        site.storeLocation(false, QStringLiteral("9"));
        QVERIFY(!site.window->save());
        QCOMPARE(site.latitude()->Text(), QStringLiteral("45.57"));
        QCOMPARE(ToText(site.location("Latitude")), QStringLiteral("9"));
        QVERIFY(site.window->isDirty());
    }

    void aNewIncidentTakesItsCoordinatesFromItsAddressAndIsNoChangeByItself()
    {
        LocationSite site;
        const RecordPtr record = Record::create(incidentSchema());
        site.window = new RecordWindow(*site.workspace, record);
        site.window->show();
        QVERIFY(site.onSave()->Value());
        QVERIFY(!site.window->isDirty());
        site.line(QStringLiteral("CaseNo"))->setText(QStringLiteral("2026-009009"));
        record->mainRow()->cell(QStringLiteral("ReportingOfficerNo")).setValue(13);
        site.line(QStringLiteral("ReportedAt"))->setText(QStringLiteral("2026-04-01 08:00"));
        site.line(QStringLiteral("Summary"))->setText(QStringLiteral("New"));
        site.line(QStringLiteral("Address"))->setText(QStringLiteral("14 Acorn Hollow Road"));
        site.line(QStringLiteral("City"))->setText(QStringLiteral("Marlow Falls"));
        QVERIFY2(site.window->save(), qPrintable(site.boxes.texts().join(u'\n')));
        QVERIFY(SameValue(site.location("GeocodeOnSave", record->key()), true));
        QCOMPARE(ToText(site.location("Latitude", record->key())), QStringLiteral("45.85492"));
        QCOMPARE(site.latitude()->Text(), QStringLiteral("45.85492"));
    }

    void theAgencyIsLoadedChangedAndStored()
    {
        LocationSite site;
        site.store(QStringLiteral("AgencyNo"), 13); // which is no longer in use
        site.openPage(GeneralPageNo);
        QVERIFY(SameValue(site.agency()->Value(), 13));
        QVERIFY(!site.window->isDirty());
        QTest::keyClick(site.window, Qt::Key_G, Qt::AltModifier);
        QVERIFY(site.agency()->isAncestorOf(QApplication::focusWidget()));
        QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("ZZ01703"));
        QVERIFY(site.window->isDirty());
        QVERIFY(site.window->save());
        QVERIFY(SameValue(site.stored(QStringLiteral("AgencyNo")), 4));
        QVERIFY(!site.window->isDirty());
    }

    void anAgencyThatNoListKnowsSurvivesASave()
    {
        LocationSite site;
        site.store(QStringLiteral("AgencyNo"), 4711);
        site.open();
        QVERIFY(IsNull(site.agency()->Value()));
        QVERIFY(site.agency()->toolTip().contains(QStringLiteral("4711")));
        QVERIFY(!site.window->isDirty());
        site.editSummary();
        QVERIFY(site.window->save());
        QVERIFY(SameValue(site.stored(QStringLiteral("AgencyNo")), 4711));
    }
};

TAVRIN_TEST_MAIN(tst_LocationPage)
#include "tst_LocationPage.moc"
