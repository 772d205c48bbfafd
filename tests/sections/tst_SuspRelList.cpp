#include "sections/SuspectForm.h"
#include "support/FailingRecords.h"
#include "support/Keys.h"
#include "support/NextModal.h"

#include <QScopeGuard>

using namespace Qt::StringLiterals;
using namespace tavrin;
using tavrin::test::FailingRecord;
using tavrin::test::FakeRecord;
using tavrin::test::NextModal;
using tavrin::test::RecordCalls;
using tavrin::test::ShownBox;
using tavrin::test::SuspectForm;

namespace {

const QString Incomplete =
    QStringLiteral("You must specify the relationship this suspect has to each victim before "
                   "continuing.\r\n\r\nYou need to add %1 to complete this section.");

const QString NotRead =
    QStringLiteral("The relationships of the record could not be read, so none are written.");

template <typename Body>
Error errorOf(Body body)
{
    try {
        body();
    } catch (const Error& error) {
        return error;
    }
    return Error(QString(), 0);
}

/// The record of a form behind one whose calls may fail.
struct FailingPage
{
    FailingPage(SuspectForm& form, RecordCalls& calls)
        : section(form.section)
        , record(std::make_shared<FailingRecord>(form.page, calls))
    {
        const HostObjectPtr suspect = record->Item(u"SuspectBO"_s);
        form.host.state().parents.insert(suspect.get(),
                                         std::make_shared<FailingRecord>(form.incident, calls));
    }
    BoundSection& contract() const { return *section; }

    SuspRelList* section;
    std::shared_ptr<FailingRecord> record;
};

/// Message boxes under which something happens.
struct ReadingBoxes final : MessageBoxes
{
    BoxAnswer show(QWidget*, const QString&, BoxIcon, const QString&, BoxButtons) override
    {
        if (const auto once = std::exchange(meanwhile, {}))
            once();
        return BoxAnswer::Ok;
    }
    std::function<void()> meanwhile;
};

} // namespace

/// Reading and writing of `SuspRelList`.
class tst_SuspRelList : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // Tags

    void aBadTagShowsOneMessageAndLeavesAnEmptySectionAndIsNoErrorForTheHost_data()
    {
        QTest::addColumn<QString>("tag");
        QTest::addColumn<QString>("text");
        const QString start = u"Error in ctlVictims: Invalid collection tag. "_s;
        QTest::newRow("empty, with two blanks")
            << QString() << start + u" has too many segments (should be 0 or 1)."_s;
        QTest::newRow("three segments")
            << u"A.B.C"_s << start + u"A.B.C has too many segments (should be 0 or 1)."_s;
        QTest::newRow("first segment no object")
            << u"A.B"_s << start + u"A should refer to an tvBusinessObject."_s;
        QTest::newRow("first segment a collection")
            << u"Victims.B"_s << start + u"Victims should refer to an tvBusinessObject."_s;
        QTest::newRow("no such collection")
            << u"IncidentBO.B"_s << start + u"IncidentBO.B should refer to an tvTableCollection."_s;
        QTest::newRow("a record, no collection")
            << u"IncidentBO"_s << start + u"IncidentBO should refer to an tvTableCollection."_s;
        QTest::newRow("one point alone") << u"."_s << start + u" should refer to an tvBusinessObject."_s;
    }
    void aBadTagShowsOneMessageAndLeavesAnEmptySectionAndIsNoErrorForTheHost()
    {
        QFETCH(QString, tag);
        QFETCH(QString, text);
        SuspectForm form;
        form.addThreeVictimsOfWhomTwoAreLinked();
        form.read();
        QCOMPARE(form.rows().size(), 2);
        form.section->SetOtherCollectionTag(tag);
        form.read();
        const QList<ShownBox> shown = form.boxes.take();
        QCOMPARE(shown.size(), 1);
        QCOMPARE(shown.first().text, text);
        QCOMPARE(shown.first().title, u"Error"_s);
        QCOMPARE(shown.first().icon, BoxIcon::Critical);
        QCOMPARE(form.rows(), QStringList());
        QVERIFY(!form.tip->isHidden());
        form.requireRelations();
        form.write(); // no parties, so nothing is missing
        QCOMPARE(form.boxes.texts(), QStringList{text});
        QCOMPARE(form.linkTexts().size(), 2);
    }

    void theTagLeadsToTheCollection_data()
    {
        QTest::addColumn<QString>("tag");
        QTest::newRow("in the record") << u"Victims"_s;
        QTest::newRow("in a child of the record") << u"IncidentBO.Victims"_s;
    }
    void theTagLeadsToTheCollection()
    {
        QFETCH(QString, tag);
        SuspectForm form(tag);
        form.addThreeVictimsOfWhomTwoAreLinked();
        form.read();
        QCOMPARE(form.rows().size(), 2);
        QCOMPARE(form.boxes.shown().size(), 0);
    }

    // Reading

    void readingShowsOneRowForEachLinkedPartyAndSelectsTheFirst()
    {
        SuspectForm form;
        form.addThreeVictimsOfWhomTwoAreLinked();
        QVERIFY(!form.tip->isHidden());
        form.read();
        QCOMPARE(form.rows(), QStringList({u"key_1/1/Ash, Ann/Friend"_s, u"key_2/2/Birch, Ben/Neighbor"_s}));
        QCOMPARE(form.list->SelectedItem(), u"key_1"_s);
        QVERIFY(form.tip->isHidden());
    }

    void readingAgainReplacesTheRows()
    {
        SuspectForm form;
        form.addThreeVictimsOfWhomTwoAreLinked();
        form.read();
        form.links->SetPosition(1);
        form.links->RemoveCurrent(false);
        form.read();
        QCOMPARE(form.rows(), QStringList{u"key_2/2/Birch, Ben/Neighbor"_s});
        form.links->SetPosition(1);
        form.links->RemoveCurrent(false);
        form.read();
        QCOMPARE(form.rows(), QStringList());
        QVERIFY(!form.tip->isHidden());
        QVERIFY(form.list->accessibleDescription().contains(form.tip->Sentence()));
    }

    void keysSortAsTextSoTenStandsBeforeTwo()
    {
        SuspectForm form;
        for (const int seqNo : {2, 10}) {
            form.addVictim(seqNo, u"Ash, Ann"_s);
            form.addLink(seqNo, 3);
        }
        form.read();
        QCOMPARE(form.rows(), QStringList({u"key_10/3/Ash, Ann/Stranger"_s, u"key_2/3/Ash, Ann/Stranger"_s}));
        QCOMPARE(form.list->SelectedItem(), u"key_10"_s);
    }

    void theFirstOfSeveralLinksOfAPartyCounts()
    {
        SuspectForm form;
        form.addVictim(1, u"Ash, Ann"_s);
        form.addLink(1, 2);
        form.addLink(1, 3);
        form.read();
        QCOMPARE(form.rows(), QStringList{u"key_1/2/Ash, Ann/Neighbor"_s});
    }

    void numbersMatchByValueAndTextsAreNoNumbers()
    {
        SuspectForm form;
        form.addVictim(1, u"Ash, Ann"_s);
        form.addVictim(2, u"Birch, Ben"_s);
        form.addLink(1.0, 2);
        form.addLink(u"2"_s, 2);
        form.read();
        QCOMPARE(form.rows(), QStringList{u"key_1/2/Ash, Ann/Neighbor"_s});
    }

    void aCodeOfNullShowsTheDescriptionOfNullAndIsWrittenAsAnEmptyText()
    {
        SuspectForm form;
        form.host.setTable(Tables::SuspectRelationship, {{u"?"_s, u"Not told"_s, Null()}});
        form.addVictim(1, u"Ash, Ann"_s);
        form.addLink(1, Null());
        form.read();
        QCOMPARE(form.rows(), QStringList{u"key_1//Ash, Ann/Not told"_s});
        form.write();
        QCOMPARE(form.linkTexts(), QStringList{u"1  \"\""_s});
    }

    void partiesThatWereNeverSavedShareOneRowAndOneLink()
    {
        SuspectForm form;
        form.addVictim(Null(), u"Ash, Ann"_s);
        form.addVictim(Null(), u"Birch, Ben"_s);
        form.addLink(Null(), 1);
        form.read();
        QCOMPARE(form.rows(), QStringList{u"key_/1/Ash, Ann/Friend"_s});
        form.write();
        form.write();
        QCOMPARE(form.links->Count(), 1);
    }

    // Writing

    void writingChangesLinksAndPutsTheCodeAsText()
    {
        SuspectForm form;
        form.addThreeVictimsOfWhomTwoAreLinked();
        form.read();
        form.list->SetSubItem(u"key_2"_s, u"relationship_value"_s, u"3"_s);
        form.write();
        QCOMPARE(form.linkTexts(), QStringList({u"1  \"1\""_s, u"2  \"3\""_s}));
    }

    void aNewLinkRefersToThePartyAndToTheSuspectThatIsOpenInTheForm()
    {
        SuspectForm form;
        form.addSuspect(8, u"Nolan, Bea"_s);
        form.suspects->SetPosition(2);
        const tvTableRowPtr victim = form.addVictim(5, u"Ash, Ann"_s);
        form.read();
        form.list->AddItem(u"key_5"_s, u"key_5"_s);
        form.list->SetSubItem(u"key_5"_s, u"relationship_value"_s, u"2"_s);
        form.write();
        QCOMPARE(form.linkTexts(), QStringList{u"5 8 \"2\""_s});
        // References, not copies: what the save assigns arrives.
        fieldOf(*victim, u"SeqNo"_s)->SetValue(55);
        fieldOf(*form.suspects->Item(2), u"SeqNo"_s)->SetValue(88);
        QCOMPARE(form.linkTexts(), QStringList{u"55 88 \"2\""_s});
        fieldOf(*victim, u"SeqNo"_s)->SetValue(5);
        form.write(); // finds the link through the reference
        QCOMPARE(form.links->Count(), 1);
    }

    void afterRemoveAndASaveTheLinkIsGoneAndTheOthersStay()
    {
        SuspectForm form;
        form.addThreeVictimsOfWhomTwoAreLinked();
        form.addLink(99, 3); // of no party: it is left alone
        form.read();
        form.list->Remove(u"key_1"_s);
        form.write();
        QCOMPARE(form.linkTexts(), QStringList({u"2  \"2\""_s, u"99  3"_s}));
        QCOMPARE(form.links->removedImmediately, QList<bool>{false}); // with the save, not at once
    }

    void afterRemoveAndANewReadWithoutASaveTheRowComesBack()
    {
        SuspectForm form;
        form.addThreeVictimsOfWhomTwoAreLinked();
        form.read();
        form.list->Remove(u"key_1"_s);
        form.read();
        QCOMPARE(form.rows().size(), 2);
    }

    void aRowWhosePartyWasRemovedNeverCountsAsFound()
    {
        SuspectForm form;
        form.requireRelations();
        form.addThreeVictimsOfWhomTwoAreLinked();
        form.read();
        form.victims->SetPosition(1);
        form.victims->RemoveCurrent(false);
        QCOMPARE(form.rows().size(), 2); // the row stays until the next read; it is meant
        QCOMPARE(form.writeError().Description, Incomplete.arg(u"1 relationship"_s));
        form.read();
        QCOMPARE(form.rows(), QStringList{u"key_2/2/Birch, Ben/Neighbor"_s});
    }

    void aRemovedPartyLeavesItsRowAndTheTipFollowsTheRows()
    {
        SuspectForm form;
        form.addThreeVictimsOfWhomTwoAreLinked();
        form.read();
        form.tip->show(); // whatever it was before
        form.victims->SetPosition(1);
        form.victims->RemoveCurrent(false);
        QCOMPARE(form.rows().size(), 2);
        QVERIFY(form.tip->isHidden());
    }

    void aRowThatBearsTheKeyOfSuspectAndPartyGoesWithTheParty()
    {
        SuspectForm form;
        form.addThreeVictimsOfWhomTwoAreLinked();
        form.read();
        form.list->AddItem(u"key_7:3"_s, {});
        form.victims->SetPosition(3);
        form.victims->RemoveCurrent(false);
        QVERIFY(!form.list->Contains(u"key_7:3"_s));
    }

    void aPartyThatGoesWhileThereIsNoSuspectRaisesNothing()
    {
        SuspectForm form;
        form.addThreeVictimsOfWhomTwoAreLinked();
        form.read();
        form.suspects->RemoveCurrent(false);
        form.victims->RemoveCurrent(false);
        QCOMPARE(form.rows().size(), 2);
    }

    void onlyTheLatestCollectionIsFollowed()
    {
        SuspectForm form;
        form.addThreeVictimsOfWhomTwoAreLinked();
        form.read();
        const auto before = form.victims;
        const auto after = std::make_shared<tavrin::test::FakeCollection>(
            before->KeyColumn() == u"SeqNo"_s ? QStringList{u"SeqNo"_s} : QStringList());
        form.incident->setItem(u"Victims"_s, after);
        form.write(); // a write connects anew, as a read does
        form.list->AddItem(u"key_7:1"_s, {});
        before->SetPosition(1);
        before->RemoveCurrent(false);
        QVERIFY(form.list->Contains(u"key_7:1"_s));
        fieldOf(*after->AddNew(), u"SeqNo"_s)->SetValue(1);
        after->RemoveCurrent(false);
        QVERIFY(!form.list->Contains(u"key_7:1"_s));
    }

    // Completeness

    void aMissingRelationshipRefusesTheSaveOnlyWhereItIsRequired_data()
    {
        QTest::addColumn<int>("links");
        QTest::addColumn<bool>("isRequired");
        QTest::addColumn<bool>("hasSuspect");
        QTest::addColumn<QString>("text");
        QTest::newRow("one of three missing") << 2 << true << true << Incomplete.arg(u"1 relationship"_s);
        QTest::newRow("two missing") << 1 << true << true << Incomplete.arg(u"2 more relationships"_s);
        QTest::newRow("all missing") << 0 << true << true << Incomplete.arg(u"3 more relationships"_s);
        QTest::newRow("none missing") << 3 << true << true << QString();
        QTest::newRow("not required") << 0 << false << true << QString();
        QTest::newRow("no suspects") << 0 << true << false << QString();
    }
    void aMissingRelationshipRefusesTheSaveOnlyWhereItIsRequired()
    {
        QFETCH(int, links);
        QFETCH(bool, isRequired);
        QFETCH(bool, hasSuspect);
        QFETCH(QString, text);
        SuspectForm form;
        for (int seqNo = 1; seqNo <= 3; ++seqNo)
            form.addVictim(seqNo, u"Ash, Ann"_s);
        for (int seqNo = 1; seqNo <= links; ++seqNo)
            form.addLink(seqNo, 1);
        if (isRequired)
            form.requireRelations();
        if (!hasSuspect)
            form.suspects->RemoveCurrent(false);
        form.read();
        const Error error = form.writeError();
        QCOMPARE(error.Description, text);
        QCOMPARE(error.Number, text.isEmpty() ? 0 : -1550907422);
        QCOMPARE(error.Source, QString());
        QCOMPARE(static_cast<quint32>(SuspRelList::CompletenessErrorNumber), 0xA38F07E2U);
    }

    void withoutPartiesTheCheckNeverFires()
    {
        SuspectForm form;
        form.requireRelations();
        form.read();
        QCOMPARE(form.writeError().Number, 0);
    }

    void aRefusedSaveLeavesTheCompleteLinksWrittenAndThisIsMeant()
    {
        SuspectForm form;
        form.requireRelations();
        form.addThreeVictimsOfWhomTwoAreLinked();
        form.read();
        form.list->Remove(u"key_1"_s);
        form.list->SetSubItem(u"key_2"_s, u"relationship_value"_s, u"3"_s);
        QCOMPARE(form.writeError().Number, SuspRelList::CompletenessErrorNumber);
        QCOMPARE(form.linkTexts(), QStringList{u"2  \"3\""_s});
    }

    void theWordIsInLowerCaseInTheText()
    {
        SuspectForm form;
        form.host.state().requiredFields << u"Incident/IncdSuspOther/RelationNo"_s;
        form.section->SetOtherItemName(u"Other"_s);
        form.suspectBO->setItem(u"SuspectOthers"_s, form.links);
        form.addVictim(1, {});
        form.read();
        QVERIFY(form.writeError().Description.startsWith(
            u"You must specify the relationship this suspect has to each other before continuing."_s));
    }

    // Failures

    void writingBeforeAnyReadFailsForLackOfTheSuspectsAndTouchesNothing_data()
    {
        QTest::addColumn<QString>("tag");
        QTest::newRow("a good tag") << u"IncidentBO.Victims"_s;
        QTest::newRow("a bad one") << u"A.B"_s;
    }
    void writingBeforeAnyReadFailsForLackOfTheSuspectsAndTouchesNothing()
    {
        QFETCH(QString, tag);
        SuspectForm form(tag);
        form.requireRelations();
        form.addThreeVictimsOfWhomTwoAreLinked();
        form.addLink(99, 3); // of no party
        const QStringList before = form.linkTexts();
        form.links->reads = 0;
        const Error error = form.writeError();
        QCOMPARE(error.Number, 91);
        QCOMPARE(error.Description, u"There is no collection of suspects"_s);
        QCOMPARE(form.links->reads, 0);
        QCOMPARE(form.linkTexts(), before);
        QCOMPARE(form.boxes.shown().size(), 0);
        form.section->SetOtherCollectionTag(u"IncidentBO.Victims"_s);
        form.read(); // and from then on it writes
        form.list->Remove(u"key_1"_s);
        QCOMPARE(form.writeError().Number, SuspRelList::CompletenessErrorNumber);
        QCOMPARE(form.linkTexts(), QStringList({u"2  \"2\""_s, u"99  3"_s}));
    }

    void whicheverCallOfTheRecordFailsInAReadNothingIsShownAndAWriteChangesNothing()
    {
        int failures = 0;
        int boxes = 0;
        for (bool failed = true; failed; ++failures) {
            SuspectForm form;
            form.addThreeVictimsOfWhomTwoAreLinked();
            form.read(); // another record, as far as the section knows
            const QStringList before = form.linkTexts();
            RecordCalls calls;
            FailingPage page(form, calls);
            calls.heal();
            calls.failing = failures + 1;
            const Error told = errorOf([&] { page.contract().ReadData(page.record); });
            failed = calls.hasFailed();
            const auto shown = form.boxes.take().size();
            boxes += static_cast<int>(shown);
            // A record that does not give the parties is told of in a box.
            QCOMPARE(told.Number, failed && shown == 0 ? RecordCalls::FailureNumber : 0);
            QCOMPARE(form.rows().size(), failed ? 0 : 2);
            QCOMPARE(form.tip->isHidden(), !failed);
            QVERIFY(!failed || !form.list->SelectedItem());
            calls.heal();
            const Error refused = errorOf([&] { page.contract().WriteData(page.record); });
            QCOMPARE(refused.Description, failed ? NotRead : QString());
            if (failed)
                QCOMPARE(form.linkTexts(), before);
            else
                QCOMPARE(form.linkTexts(), QStringList({u"1  \"1\""_s, u"2  \"2\""_s}));
        }
        QVERIFY2(failures > 20, qPrintable(QString::number(failures)));
        QCOMPARE(boxes, 2); // its two steps to the parties
    }

    void whicheverCallOfTheHostFailsInAReadNothingIsShownAndAWriteChangesNothing_data()
    {
        QTest::addColumn<QString>("call");
        QTest::addColumn<QString>("tag");
        QTest::newRow("the incident") << u"GetParentObject"_s << u"Victims"_s;
        QTest::newRow("a description") << u"GetDescription 84"_s << u"Victims"_s;
        QTest::newRow("the empty collection behind a bad tag") << u"new tvTableCollection"_s << u"A.B"_s;
    }
    void whicheverCallOfTheHostFailsInAReadNothingIsShownAndAWriteChangesNothing()
    {
        QFETCH(QString, call);
        QFETCH(QString, tag);
        SuspectForm form;
        form.addThreeVictimsOfWhomTwoAreLinked();
        form.read();
        const QStringList before = form.linkTexts();
        form.section->SetOtherCollectionTag(tag);
        form.host.state().failures.insert({call, Error(u"no server"_s, 61)});
        QCOMPARE(errorOf([&] { form.read(); }).Number, 61);
        form.host.state().failures.clear();
        form.section->SetOtherCollectionTag(u"Victims"_s);
        QCOMPARE(form.rows(), QStringList());
        QCOMPARE(form.writeError().Description, NotRead);
        QCOMPARE(form.linkTexts(), before);
    }

    void behindAReadWithABadTagAWriteWithAGoodOneIsRefused()
    {
        SuspectForm form(u"A.B"_s);
        form.addThreeVictimsOfWhomTwoAreLinked();
        const QStringList before = form.linkTexts();
        form.read();
        form.write(); // no parties, nothing to do
        form.section->SetOtherCollectionTag(u"Victims"_s);
        QCOMPARE(form.writeError().Description, NotRead); // it would take the missing rows for removed ones
        QCOMPARE(form.linkTexts(), before);
        form.read();
        form.write();
        QCOMPARE(form.linkTexts(), QStringList({u"1  \"1\""_s, u"2  \"2\""_s}));
    }

    void aRecordThatIsReadWhileTheMessageOfABadTagIsUpStays()
    {
        SuspectForm form(u"A.B"_s);
        form.addThreeVictimsOfWhomTwoAreLinked();
        const auto boxes = std::make_shared<ReadingBoxes>();
        boxes->meanwhile = [&form] {
            form.section->SetOtherCollectionTag(u"Victims"_s);
            form.read();
        };
        const auto before = std::exchange(desktop().messageBoxes, boxes);
        const auto restore = qScopeGuard([&] { desktop().messageBoxes = before; });
        form.read();
        QCOMPARE(form.rows(), QStringList({u"key_1/1/Ash, Ann/Friend"_s, u"key_2/2/Birch, Ben/Neighbor"_s}));
        QVERIFY(form.tip->isHidden());
        form.write();
        QCOMPARE(form.linkTexts(), QStringList({u"1  \"1\""_s, u"2  \"2\""_s}));
    }

    void aWriteBelowWhoseMessageARecordIsReadWritesNothingAndLeavesTheRecord_data()
    {
        QTest::addColumn<bool>("fails");
        QTest::newRow("a record that can be read") << false;
        QTest::newRow("a record that cannot") << true;
    }
    void aWriteBelowWhoseMessageARecordIsReadWritesNothingAndLeavesTheRecord()
    {
        QFETCH(bool, fails);
        SuspectForm form;
        form.addThreeVictimsOfWhomTwoAreLinked();
        form.read();
        form.section->SetOtherCollectionTag(u"A.B"_s);
        const auto boxes = std::make_shared<ReadingBoxes>();
        boxes->meanwhile = [&] {
            form.section->SetOtherCollectionTag(u"Victims"_s);
            if (fails)
                form.suspectBO->setItem(u"SuspectVictims"_s, nullptr);
            QCOMPARE(errorOf([&] { form.read(); }).Number != 0, fails);
        };
        const auto before = std::exchange(desktop().messageBoxes, boxes);
        const auto restore = qScopeGuard([&] { desktop().messageBoxes = before; });
        const QStringList links = form.linkTexts();
        QCOMPARE(form.writeError().Description, NotRead);
        QCOMPARE(form.linkTexts(), links);
        QCOMPARE(form.rows().size(), fails ? 0 : 2);
        QCOMPARE(form.tip->isHidden(), !fails);
        if (fails)
            return;
        // The parties are those of the record that was read.
        const NextModal dialog([](QWidget& window) { window.close(); });
        form.add->trigger();
        tavrin::test::letMenusTell();
        QVERIFY(dialog.came());
        form.write();
        QCOMPARE(form.linkTexts(), QStringList({u"1  \"1\""_s, u"2  \"2\""_s}));
    }

    void aReadThatFailsLeavesAnEmptySectionAndAWriteIsRefusedBeforeItChangesAnything_data()
    {
        QTest::addColumn<QString>("missing");
        QTest::newRow("the suspect") << u"SuspectBO"_s;
        QTest::newRow("the suspects") << u"Suspects"_s;
        QTest::newRow("the links") << u"SuspectVictims"_s;
        QTest::newRow("the name of the last party") << u"VictimName"_s;
        QTest::newRow("the host") << u"host"_s;
    }
    void aReadThatFailsLeavesAnEmptySectionAndAWriteIsRefusedBeforeItChangesAnything()
    {
        QFETCH(QString, missing);
        SuspectForm form;
        form.addThreeVictimsOfWhomTwoAreLinked();
        form.read(); // another record, as far as the section knows
        form.addLink(3, 3);
        if (missing == u"SuspectBO"_s)
            form.page->setItem(missing, nullptr);
        else if (missing == u"Suspects"_s)
            form.incident->setItem(missing, nullptr);
        else if (missing == u"SuspectVictims"_s)
            form.suspectBO->setItem(missing, nullptr);
        else if (missing == u"VictimName"_s) {
            form.addLink(4, 1);
            form.victims->Add(std::make_shared<tavrin::test::FakeRow>(
                QList<tvFieldPtr>{std::make_shared<tavrin::test::FakeField>(u"SeqNo"_s, 4)}));
        } else
            form.host.failWith(Error(u"no server"_s));
        QVERIFY_EXCEPTION_THROWN(form.read(), Error);
        form.host.failWith({});
        QCOMPARE(form.rows(), QStringList());
        QVERIFY(!form.tip->isHidden());
        form.page->setItem(u"SuspectBO"_s, form.suspectBO);
        form.incident->setItem(u"Suspects"_s, form.suspects);
        form.suspectBO->setItem(u"SuspectVictims"_s, form.links);
        const QStringList before = form.linkTexts();
        const Error refused = form.writeError();
        QCOMPARE(refused.Description,
                 u"The relationships of the record could not be read, so none are written."_s);
        QCOMPARE(refused.Number, 5);
        QCOMPARE(form.linkTexts(), before);
        if (missing == u"VictimName"_s) {
            form.victims->SetPosition(static_cast<qint16>(form.victims->Count()));
            form.victims->RemoveCurrent(false);
        }
        form.read(); // a read that succeeds ends it
        QCOMPARE(form.rows().size(), 3);
        form.write();
        QCOMPARE(form.linkTexts().mid(0, 3), QStringList({u"1  \"1\""_s, u"2  \"2\""_s, u"3  \"3\""_s}));
    }

    void aNewLinkThatCannotBeCompletedIsTakenBack_data()
    {
        QTest::addColumn<QStringList>("columns");
        QTest::newRow("no number of the party") << QStringList{u"LinkNo"_s, u"SeqNo"_s, u"RelationNo"_s};
        QTest::newRow("no number of the suspect")
            << QStringList{u"LinkNo"_s, u"VictimSeqNo"_s, u"RelationNo"_s};
        QTest::newRow("no code") << QStringList{u"LinkNo"_s, u"VictimSeqNo"_s, u"SeqNo"_s};
    }
    void aNewLinkThatCannotBeCompletedIsTakenBack()
    {
        QFETCH(QStringList, columns);
        SuspectForm form;
        form.addVictim(1, u"Ash, Ann"_s);
        const auto links = std::make_shared<tavrin::test::FakeCollection>(columns);
        form.suspectBO->setItem(u"SuspectVictims"_s, links);
        form.read();
        form.list->AddItem(u"key_1"_s, u"key_1"_s);
        const Error error = form.writeError();
        QCOMPARE(error.Number, 5);
        QVERIFY2(error.Description.startsWith(u"The row has no field "_s), qPrintable(error.Description));
        QCOMPARE(links->Count(), 0);
        QCOMPARE(links->removedImmediately, QList<bool>{false});
    }

    void whicheverCallFailsInAWriteNoLinkIsLeftThatLeadsNowhere()
    {
        int failures = 0;
        for (bool failed = true; failed; ++failures) {
            SuspectForm form;
            form.addThreeVictimsOfWhomTwoAreLinked();
            RecordCalls calls;
            FailingPage page(form, calls);
            page.contract().ReadData(page.record);
            form.list->Remove(u"key_1"_s);
            form.list->AddItem(u"key_3"_s, u"key_3"_s);
            form.list->SetSubItem(u"key_3"_s, u"relationship_value"_s, u"3"_s);
            calls.heal();
            calls.failing = failures + 1;
            const Error told = errorOf([&] { page.contract().WriteData(page.record); });
            failed = calls.hasFailed();
            calls.heal();
            const auto shown = form.boxes.take().size();
            QCOMPARE(told.Number, failed && shown == 0 ? RecordCalls::FailureNumber : 0);
            for (const QString& link : form.linkTexts()) {
                const QStringList whole{u"1  1"_s, u"2  2"_s, u"2  \"2\""_s, u"3 7 \"3\""_s};
                QVERIFY2(whole.contains(link), qPrintable(u"%1: %2"_s.arg(failures + 1).arg(link)));
            }
            page.contract().WriteData(page.record); // and the next one brings all about
            QCOMPARE(form.linkTexts(), QStringList({u"2  \"2\""_s, u"3 7 \"3\""_s}));
        }
        QVERIFY2(failures > 30, qPrintable(QString::number(failures)));
    }

    void aNewLinkIsTakenBackWhereTheHostFailsAndTheOthersStay()
    {
        SuspectForm form;
        form.addThreeVictimsOfWhomTwoAreLinked();
        form.read();
        form.list->AddItem(u"key_3"_s, u"key_3"_s);
        form.host.failWith(Error(u"no server"_s, 1234, u"Session"_s));
        const Error error = form.writeError();
        QCOMPARE(error.Number, 1234);
        QCOMPARE(form.linkTexts(), QStringList({u"1  \"1\""_s, u"2  \"2\""_s}));
        form.host.failWith({});
        form.write(); // and the next one is complete
        QCOMPARE(form.linkTexts().last(), u"3 7 \"\""_s);
        QCOMPARE(form.links->Count(), 3);
    }

    void aFollowerOfTheLinksMayEmptyTheListWhileItIsWritten()
    {
        SuspectForm form;
        form.requireRelations();
        form.addThreeVictimsOfWhomTwoAreLinked();
        form.addLink(3, 3);
        form.read();
        form.list->Remove(u"key_1"_s);
        form.list->SetSubItem(u"key_3"_s, u"relationship_value"_s, u"1"_s);
        const Subscription emptying =
            form.links->ItemRemoved.subscribe([&](const QVariant&) { form.list->Clear(); });
        const Error error = form.writeError();
        QCOMPARE(error.Description,
                 Incomplete.arg(u"1 relationship"_s)); // what there was at the start counts
        QCOMPARE(form.linkTexts(), QStringList({u"2  \"2\""_s, u"3  \"1\""_s}));
    }

    void aFollowerOfTheLinksMayDeleteTheSectionAndTheWriteIsCompleted()
    {
        SuspectForm form;
        form.requireRelations();
        form.addThreeVictimsOfWhomTwoAreLinked();
        form.read();
        form.list->Remove(u"key_1"_s);
        form.list->AddItem(u"key_3"_s, u"key_3"_s);
        form.list->SetSubItem(u"key_3"_s, u"relationship_value"_s, u"3"_s);
        const Subscription closing =
            form.links->ItemRemoved.subscribe([&](const QVariant&) { delete form.section.data(); });
        BoundSection* section = form.section;
        QString refused;
        try {
            section->WriteData(form.page);
        } catch (const Error& error) {
            refused = error.Description;
        }
        QVERIFY(!form.section);
        QCOMPARE(refused, Incomplete.arg(u"1 relationship"_s));
        QCOMPARE(form.linkTexts(), QStringList({u"2  \"2\""_s, u"3 7 \"3\""_s}));
    }

    void whatIsMissingInARecordGoesToTheHost_data()
    {
        QTest::addColumn<QString>("missing");
        QTest::newRow("the suspect") << u"SuspectBO"_s;
        QTest::newRow("the incident") << u"parent"_s;
        QTest::newRow("the suspects") << u"Suspects"_s;
        QTest::newRow("the links") << u"SuspectVictims"_s;
        QTest::newRow("the link's field") << u"VictimSeqNo"_s;
        QTest::newRow("the party's name") << u"VictimName"_s;
    }
    void whatIsMissingInARecordGoesToTheHost()
    {
        QFETCH(QString, missing);
        SuspectForm form;
        form.addThreeVictimsOfWhomTwoAreLinked();
        if (missing == u"SuspectBO"_s)
            form.page->setItem(missing, nullptr);
        else if (missing == u"parent"_s)
            form.host.state().parents.clear();
        else if (missing == u"Suspects"_s)
            form.incident->setItem(missing, nullptr);
        else if (missing == u"SuspectVictims"_s)
            form.suspectBO->setItem(missing, nullptr);
        else if (missing == u"VictimSeqNo"_s)
            form.section->SetOtherItemSeqName(u"NoSuchField"_s);
        else
            form.victims->Add(std::make_shared<tavrin::test::FakeRow>(
                QList<tvFieldPtr>{std::make_shared<tavrin::test::FakeField>(u"SeqNo"_s, 4)}));
        form.addLink(4, 1);
        QVERIFY_EXCEPTION_THROWN(form.read(), Error);
        QCOMPARE(form.boxes.shown().size(), 0);
    }

    void aFailureOfTheHostReachesTheCallerAsItIs()
    {
        SuspectForm form;
        form.addThreeVictimsOfWhomTwoAreLinked();
        form.read();
        form.host.failWith(Error(u"no server"_s, 1234, u"Session"_s));
        const Error error = form.writeError();
        QCOMPARE(error.Description, u"no server"_s);
        QCOMPARE(error.Number, 1234);
        QCOMPARE(error.Source, u"Session"_s);
        try {
            form.read();
            QFAIL("a read without a host went on");
        } catch (const Error& failure) {
            QCOMPARE(failure.Number, 1234);
            QCOMPARE(failure.Source, u"Session"_s);
        }
    }

    // Order and cost

    void theSuspectsComeBeforeTheTagIsResolved()
    {
        SuspectForm form(QString{});
        form.host.state().parents.clear();
        QVERIFY_EXCEPTION_THROWN(form.read(), Error);
        QCOMPARE(form.boxes.shown().size(), 0); // it has not come to the tag
    }

    void whetherTheFieldIsRequiredIsAskedBehindTheLinksAreWritten()
    {
        SuspectForm form;
        form.addVictim(1, u"Ash, Ann"_s);
        form.read();
        form.list->AddItem(u"key_1"_s, u"key_1"_s);
        form.host.state().log.clear();
        form.write();
        QCOMPARE(form.host.state().log,
                 QStringList({u"MakeFieldReference"_s, u"MakeFieldReference"_s, u"IsFieldRequired"_s}));
    }

    void aThousandPartiesReadEachLinkOnlyAFewTimes()
    {
        SuspectForm form;
        constexpr int Count = 1000;
        for (int i = 1; i <= Count; ++i)
            form.addVictim(i, u"Ash, Ann"_s);
        for (int i = Count; i >= 1; --i)
            form.addLink(i, 1);
        form.links->reads = 0;
        form.read();
        QCOMPARE(form.list->Count(), Count);
        QVERIFY2(form.links->reads <= 4 * Count, qPrintable(QString::number(form.links->reads)));
        for (int i = 1; i <= Count; i += 2)
            form.list->Remove(u"key_%1"_s.arg(i));
        form.links->reads = 0;
        form.write();
        QCOMPARE(form.links->Count(), Count / 2);
        QVERIFY2(form.links->reads <= 6 * Count, qPrintable(QString::number(form.links->reads)));
        for (const tvTableRowPtr& row : *form.links)
            QCOMPARE(fieldOf(*row, u"VictimSeqNo"_s)->Value().toInt() % 2, 0);
    }
};

TAVRIN_TEST_MAIN(tst_SuspRelList)
#include "tst_SuspRelList.moc"
