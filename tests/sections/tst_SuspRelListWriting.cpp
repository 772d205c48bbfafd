#include "sections/SuspectForm.h"
#include "support/RaisedError.h"

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

/// What a write does with the links, when it refuses, and what its failures leave.
class tst_SuspRelListWriting : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // The links

    void writingChangesLinksAndPutsTheCodeAsText()
    {
        SuspectForm form;
        form.addThreeVictimsOfWhomTwoAreLinked();
        form.read();
        form.setRelation(2, u"3"_s);
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
        form.addRow(5, u"2"_s);
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

    void whetherTheFieldIsRequiredIsAskedBehindTheLinksAreWritten()
    {
        SuspectForm form;
        form.addVictim(1, u"Ash, Ann"_s);
        form.read();
        form.addRow(1);
        form.host.state().log.clear();
        form.write();
        QCOMPARE(form.host.state().log,
                 QStringList({u"MakeFieldReference"_s, u"MakeFieldReference"_s, u"IsFieldRequired"_s}));
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
        form.setRelation(2, u"3"_s);
        QCOMPARE(form.writeError().Number, SuspRelList::CompletenessErrorNumber);
        QCOMPARE(form.linkTexts(), QStringList{u"2  \"3\""_s});
    }

    void theWordIsInLowerCaseInTheText()
    {
        SuspectForm form;
        form.host.state().requiredFields << u"Incident/IncdSuspOther/RelationNo"_s;
        form.section->SetOtherItemName(u"Other"_s);
        form.suspectBO->SetItem(u"SuspectOthers"_s, form.links);
        form.addVictim(1, {});
        form.read();
        QVERIFY(form.writeError().Description.startsWith(
            u"You must specify the relationship this suspect has to each other before continuing."_s));
    }

    // Failures

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
        const auto links = std::make_shared<FakeCollection>(columns);
        form.suspectBO->SetItem(u"SuspectVictims"_s, links);
        form.read();
        form.addRow(1);
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
            FailingSuspectPage page(form, calls);
            page.contract().ReadData(page.record);
            form.list->Remove(u"key_1"_s);
            form.addRow(3, u"3"_s);
            calls.heal();
            calls.failing = failures + 1;
            const Error told = raisedBy([&] { page.contract().WriteData(page.record); });
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
        form.addRow(3);
        form.host.failWith(Error(u"no server"_s, 1234, u"Session"_s));
        const Error error = form.writeError();
        QCOMPARE(error.Number, 1234);
        QCOMPARE(form.linkTexts(), QStringList({u"1  \"1\""_s, u"2  \"2\""_s}));
        form.host.failWith({});
        form.write(); // and the next one is complete
        QCOMPARE(form.linkTexts().last(), u"3 7 \"\""_s);
        QCOMPARE(form.links->Count(), 3);
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
        const Error failure = raisedBy([&] { form.read(); });
        QCOMPARE(failure.Number, 1234);
        QCOMPARE(failure.Source, u"Session"_s);
    }

    // Followers

    void aFollowerOfTheLinksMayEmptyTheListWhileItIsWritten()
    {
        SuspectForm form;
        form.requireRelations();
        form.addThreeVictimsOfWhomTwoAreLinked();
        form.addLink(3, 3);
        form.read();
        form.list->Remove(u"key_1"_s);
        form.setRelation(3, u"1"_s);
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
        form.addRow(3, u"3"_s);
        const Subscription closing =
            form.links->ItemRemoved.subscribe([&](const QVariant&) { delete form.section.data(); });
        BoundSection* section = form.section;
        const Error refused = raisedBy([&] { section->WriteData(form.page); });
        QVERIFY(!form.section);
        QCOMPARE(refused.Description, Incomplete.arg(u"1 relationship"_s));
        QCOMPARE(form.linkTexts(), QStringList({u"2  \"2\""_s, u"3 7 \"3\""_s}));
    }
};

TAVRIN_TEST_MAIN(tst_SuspRelListWriting)
#include "tst_SuspRelListWriting.moc"
