#include "base/values/Variant.h"
#include "sections/SuspRelList.h"
#include "support/TestCase.h"
#include "widgets/lists/ListView.h"
#include "workbench/Site.h"

#include <QPushButton>
#include <QTreeWidget>

using namespace tavrin;
using namespace tavrin::workbench;
using namespace tavrin::test;

namespace {

const QString Unnamed = QStringLiteral("(no name)");
const QString NoneRecorded = QStringLiteral("None recorded");

struct PeopleSite : Site
{
    explicit PeopleSite(const QString& summary = QStringLiteral("copper pipe"))
    {
        incidentNo = workspace->store().list(summary).constFirst().IncidentNo;
    }

    QTreeWidget* list() const { return window->findChild<QTreeWidget*>(QStringLiteral("people")); }
    QLineEdit* name() const { return line(QStringLiteral("personName")); }
    QPushButton* button(const char* name) const
    {
        return window->findChild<QPushButton*>(QString::fromLatin1(name));
    }
    void openPage() { Site::openPage(PeoplePageNo); }
    void press(const char* name) const { QTest::mouseClick(button(name), Qt::LeftButton); }
    void add(const char* button, const QString& text) const
    {
        press(button);
        QCOMPARE(QApplication::focusWidget(), name());
        QTest::keyClicks(name(), text);
    }
    void choose(int kind, int row) const
    {
        QTreeWidgetItem* item = list()->topLevelItem(kind)->child(row);
        list()->scrollToItem(item);
        QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, list()->visualItemRect(item).center());
        QCOMPARE(list()->currentItem(), item);
    }
    QStringList shown(int kind) const
    {
        QStringList names;
        for (int i = 0; i < list()->topLevelItem(kind)->childCount(); ++i)
            names << list()->topLevelItem(kind)->child(i)->text(0);
        return names;
    }
    QStringList stored(const char* collection, const char* field)
    {
        QStringList names;
        const RecordPtr record = workspace->store().load(incidentNo);
        for (const RecordRowPtr& row : record->collection(QString::fromLatin1(collection))->rows())
            names << ToText(fieldOf(*row, QString::fromLatin1(field))->Value());
        return names;
    }
    int relationshipRows(const char* section) const
    {
        return window->findChild<SuspRelList*>(QString::fromLatin1(section))->findChild<ListView*>()->Count();
    }
};

} // namespace

/// The victims, witnesses and other people of an incident, on a real database.
class tst_RecordPeople : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void whatTheRecordHoldsIsShownAndIsNoChange()
    {
        PeopleSite site;
        site.openPage();
        QCOMPARE(site.shown(0), site.stored("Victims", "VictimName"));
        QCOMPARE(site.shown(1), site.stored("Witnesses", "WitnessName"));
        QCOMPARE(site.shown(2), QStringList{NoneRecorded});
        QVERIFY(!site.name()->isEnabled());
        QVERIFY(!site.button("removePerson")->isEnabled());
        site.choose(0, 0);
        QCOMPARE(site.name()->text(), site.shown(0).constFirst());
        QVERIFY(site.name()->isEnabled());
        QVERIFY(site.button("removePerson")->isEnabled());
        QTest::keyClick(site.list(), Qt::Key_Up); // the heading
        QCOMPARE(site.name()->text(), QString());
        QVERIFY(!site.name()->isEnabled());
        QVERIFY(!site.button("removePerson")->isEnabled());
        QVERIFY(!site.window->isDirty());
    }

    void eachKindIsAddedNamedSavedAndLoadedAgain_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QByteArray>("button");
        QTest::addColumn<QByteArray>("collection");
        QTest::addColumn<QByteArray>("field");
        const auto row = [](int kind, const char* button, const char* collection, const char* field) {
            QTest::newRow(collection)
                << kind << QByteArray(button) << QByteArray(collection) << QByteArray(field);
        };
        row(0, "addVictim", "Victims", "VictimName");
        row(1, "addWitness", "Witnesses", "WitnessName");
        row(2, "addOther", "Others", "OtherName");
    }
    void eachKindIsAddedNamedSavedAndLoadedAgain()
    {
        QFETCH(int, kind);
        QFETCH(QByteArray, button);
        QFETCH(QByteArray, collection);
        QFETCH(QByteArray, field);
        PeopleSite site(QStringLiteral("")); // the first incident
        const RecordPtr record = site.workspace->store().load(site.incidentNo);
        while (record->collection(QStringLiteral("Suspects"))->Count() > 0)
            record->collection(QStringLiteral("Suspects"))
                ->RemoveCurrent(false); // none asks for relationships
        site.workspace->store().save(*record);
        const QStringList before = site.stored(collection, field);
        site.openPage();
        site.press(button);
        QVERIFY(site.window->isDirty());
        QCOMPARE(site.shown(kind), before + QStringList{Unnamed});
        QCOMPARE(QApplication::focusWidget(), site.name());
        QTest::keyClicks(site.name(), QStringLiteral("Quillfeather, Ida"));
        QCOMPARE(site.shown(kind), before + QStringList{QStringLiteral("Quillfeather, Ida")});
        site.add(button, QStringLiteral("Second"));
        const QStringList after =
            before + QStringList{QStringLiteral("Quillfeather, Ida"), QStringLiteral("Second")};
        QCOMPARE(site.stored(collection, field), before); // not before the save
        QVERIFY(site.window->save());
        QVERIFY(!site.window->isDirty());
        QCOMPARE(site.stored(collection, field), after);
        delete site.window;
        site.openPage();
        QCOMPARE(site.shown(kind), after);

        site.choose(kind, static_cast<int>(before.size()));
        site.press("removePerson");
        QVERIFY(site.window->isDirty());
        QCOMPARE(site.shown(kind), before + QStringList{QStringLiteral("Second")});
        QCOMPARE(site.name()->text(), QStringLiteral("Second")); // the next one is current
        QVERIFY(site.window->save());
        QCOMPARE(site.stored(collection, field), before + QStringList{QStringLiteral("Second")});
    }

    void anotherNameIsSaved()
    {
        PeopleSite site;
        site.openPage();
        site.choose(1, 0);
        site.name()->setFocus();
        QTest::keyClick(site.name(), Qt::Key_End);
        QTest::keyClicks(site.name(), QStringLiteral(" Jr"));
        const QString changed = site.name()->text();
        QVERIFY(changed.endsWith(QStringLiteral(" Jr")));
        QCOMPARE(site.shown(1).constFirst(), changed);
        QVERIFY(site.window->isDirty());
        QVERIFY(site.window->save());
        QCOMPARE(site.stored("Witnesses", "WitnessName").constFirst(), changed);
    }

    void theLastOneThatGoesLeavesTheLineThatTellsSo()
    {
        PeopleSite site;
        site.openPage();
        site.press("addOther");
        QCOMPARE(site.shown(2), QStringList{Unnamed});
        site.press("removePerson");
        QCOMPARE(site.shown(2), QStringList{NoneRecorded});
        QCOMPARE(site.list()->currentItem(), site.list()->topLevelItem(2));
        QVERIFY(!site.button("removePerson")->isEnabled());
        QVERIFY(!site.window->isDirty()); // somebody new who went again is no change
    }

    void aPersonWithoutANameIsNotSavedAndIsShown()
    {
        PeopleSite site;
        const QStringList before = site.stored("Witnesses", "WitnessName");
        site.openPage();
        site.add("addWitness", QStringLiteral("  "));
        site.showPage(GeneralPageNo);
        QVERIFY(!site.window->save());
        QCOMPARE(site.boxes.texts(), QStringList{QStringLiteral(
                                         "\"Name\" must be filled in; \"Unknown\" will do.\n\nWhat you typed "
                                         "is still in this window.")});
        QVERIFY(site.list()->isVisible());
        QCOMPARE(QApplication::focusWidget(), site.name());
        QCOMPARE(site.list()->currentItem()->text(0), Unnamed);
        QCOMPARE(site.stored("Witnesses", "WitnessName"), before);
        site.name()->clear();
        QTest::keyClicks(site.name(), QStringLiteral("Unknown"));
        QVERIFY(site.window->save());
        QCOMPARE(site.stored("Witnesses", "WitnessName"), before + QStringList{QStringLiteral("Unknown")});
    }

    void theRelationshipsGoWithThePersonAlsoOnThePageOfTheSuspects()
    {
        PeopleSite site;
        QCOMPARE(site.stored("SuspectWitnesses", "SeqNo"), QStringList{QStringLiteral("1")});
        site.open();
        site.showPage(SuspectsPageNo);
        QCOMPARE(site.relationshipRows("SuspectWitnesses"), 1);
        site.showPage(PeoplePageNo);
        site.choose(1, 0);
        site.press("removePerson");
        site.showPage(SuspectsPageNo);
        QCOMPARE(site.relationshipRows("SuspectWitnesses"), 0);
        QCOMPARE(site.relationshipRows("SuspectVictims"), 1); // the others stay
        QVERIFY(site.window->save());
        QCOMPARE(site.stored("SuspectWitnesses", "SeqNo"), QStringList());
        QCOMPARE(site.stored("Witnesses", "WitnessName"), QStringList());
        QCOMPARE(site.boxes.texts(), QStringList());
    }

    void whatWasTypedOnThePageOfTheSuspectsOutlivesAChangeOfThePeople()
    {
        PeopleSite site;
        site.open();
        site.showPage(SuspectsPageNo);
        QLineEdit* suspect = site.line(QStringLiteral("SuspectName"));
        suspect->setFocus();
        QTest::keyClick(suspect, Qt::Key_End);
        QTest::keyClicks(suspect, QStringLiteral("x"));
        const QString typed = suspect->text();
        site.showPage(PeoplePageNo);
        site.add("addOther", QStringLiteral("Somebody"));
        site.showPage(SuspectsPageNo);
        QCOMPARE(suspect->text(), typed);
        QVERIFY(site.window->save());
        QCOMPARE(site.stored("Suspects", "SuspectName").constFirst(), typed);
        QCOMPARE(site.stored("Others", "OtherName"), QStringList{QStringLiteral("Somebody")});
    }
};

TAVRIN_TEST_MAIN(tst_RecordPeople)
#include "tst_RecordPeople.moc"
