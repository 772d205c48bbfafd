#include "sections/SuspectForm.h"

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

/// What a read shows, and what it costs.
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

    void theSuspectsComeBeforeTheTagIsResolved()
    {
        SuspectForm form(QString{});
        form.host.state().parents.clear();
        QVERIFY_EXCEPTION_THROWN(form.read(), Error);
        QCOMPARE(form.boxes.shown().size(), 0); // it has not come to the tag
    }

    void aRecordThatIsReadWhileTheMessageOfABadTagIsUpStays()
    {
        SuspectForm form(u"A.B"_s);
        form.addThreeVictimsOfWhomTwoAreLinked();
        form.boxes.during([&form] {
            form.section->SetOtherCollectionTag(u"Victims"_s);
            form.read();
        });
        form.read();
        QCOMPARE(form.rows(), QStringList({u"key_1/1/Ash, Ann/Friend"_s, u"key_2/2/Birch, Ben/Neighbor"_s}));
        QVERIFY(form.tip->isHidden());
        form.write();
        QCOMPARE(form.linkTexts(), QStringList({u"1  \"1\""_s, u"2  \"2\""_s}));
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
        removeAt(*form.links, 1);
        form.read();
        QCOMPARE(form.rows(), QStringList{u"key_2/2/Birch, Ben/Neighbor"_s});
        removeAt(*form.links, 1);
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

    // Parties that go

    void aRowWhosePartyWasRemovedNeverCountsAsFound()
    {
        SuspectForm form;
        form.requireRelations();
        form.addThreeVictimsOfWhomTwoAreLinked();
        form.read();
        removeAt(*form.victims, 1);
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
        removeAt(*form.victims, 1);
        QCOMPARE(form.rows().size(), 2);
        QVERIFY(form.tip->isHidden());
    }

    void aRowThatBearsTheKeyOfSuspectAndPartyGoesWithTheParty()
    {
        SuspectForm form;
        form.addThreeVictimsOfWhomTwoAreLinked();
        form.read();
        form.list->AddItem(u"key_7:3"_s, {});
        removeAt(*form.victims, 3);
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
        const auto after = std::make_shared<FakeCollection>(
            before->KeyColumn() == u"SeqNo"_s ? QStringList{u"SeqNo"_s} : QStringList());
        form.incident->SetItem(u"Victims"_s, after);
        form.write(); // a write connects anew, as a read does
        form.list->AddItem(u"key_7:1"_s, {});
        removeAt(*before, 1);
        QVERIFY(form.list->Contains(u"key_7:1"_s));
        fieldOf(*after->AddNew(), u"SeqNo"_s)->SetValue(1);
        after->RemoveCurrent(false);
        QVERIFY(!form.list->Contains(u"key_7:1"_s));
    }
};

TAVRIN_TEST_MAIN(tst_SuspRelList)
#include "tst_SuspRelList.moc"
