#include "frame/memory_records/MemoryField.h"
#include "frame/memory_records/MemoryRow.h"
#include "sections/SuspectForm.h"
#include "support/Keys.h"
#include "support/NextModal.h"
#include "support/RaisedError.h"

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

/// Takes something away that a read needs.
void takeAway(SuspectForm& form, const QString& what)
{
    if (what == u"SuspectBO"_s)
        form.page->SetItem(what, nullptr);
    else if (what == u"parent"_s)
        form.host.state().parents.clear();
    else if (what == u"Suspects"_s)
        form.incident->SetItem(what, nullptr);
    else if (what == u"SuspectVictims"_s)
        form.suspectBO->SetItem(what, nullptr);
    else if (what == u"VictimSeqNo"_s)
        form.section->SetOtherItemSeqName(u"NoSuchField"_s);
    else if (what == u"VictimName"_s)
        form.victims->Add(
            std::make_shared<MemoryRow>(QList<tvFieldPtr>{std::make_shared<MemoryField>(u"SeqNo"_s, 4)}));
    else
        form.host.failWith(Error(u"no server"_s));
}

} // namespace

/// Behind a read that has failed the section is empty, and a write is refused before it changes anything.
class tst_SuspRelListFailedRead : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // What fails

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
        takeAway(form, missing);
        form.addLink(4, 1);
        QVERIFY_EXCEPTION_THROWN(form.read(), Error);
        QCOMPARE(form.boxes.shown().size(), 0);
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
            FailingSuspectPage page(form, calls);
            calls.heal();
            calls.failing = failures + 1;
            const Error told = raisedBy([&] { page.contract().ReadData(page.record); });
            failed = calls.hasFailed();
            const auto shown = form.boxes.take().size();
            boxes += static_cast<int>(shown);
            // A record that does not give the parties is told of in a box.
            QCOMPARE(told.Number, failed && shown == 0 ? RecordCalls::FailureNumber : 0);
            QCOMPARE(form.rows().size(), failed ? 0 : 2);
            QCOMPARE(form.tip->isHidden(), !failed);
            QVERIFY(!failed || !form.list->SelectedItem());
            calls.heal();
            const Error refused = raisedBy([&] { page.contract().WriteData(page.record); });
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
        QCOMPARE(raisedBy([&] { form.read(); }).Number, 61);
        form.host.state().failures.clear();
        form.section->SetOtherCollectionTag(u"Victims"_s);
        QCOMPARE(form.rows(), QStringList());
        QCOMPARE(form.writeError().Description, NotRead);
        QCOMPARE(form.linkTexts(), before);
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
        if (missing == u"VictimName"_s)
            form.addLink(4, 1);
        takeAway(form, missing);
        QVERIFY_EXCEPTION_THROWN(form.read(), Error);
        form.host.failWith({});
        QCOMPARE(form.rows(), QStringList());
        QVERIFY(!form.tip->isHidden());
        form.page->SetItem(u"SuspectBO"_s, form.suspectBO);
        form.incident->SetItem(u"Suspects"_s, form.suspects);
        form.suspectBO->SetItem(u"SuspectVictims"_s, form.links);
        const QStringList before = form.linkTexts();
        const Error refused = form.writeError();
        QCOMPARE(refused.Description, NotRead);
        QCOMPARE(refused.Number, 5);
        QCOMPARE(form.linkTexts(), before);
        if (missing == u"VictimName"_s)
            removeAt(*form.victims, static_cast<qint16>(form.victims->Count()));
        form.read(); // a read that succeeds ends it
        QCOMPARE(form.rows().size(), 3);
        form.write();
        QCOMPARE(form.linkTexts().mid(0, 3), QStringList({u"1  \"1\""_s, u"2  \"2\""_s, u"3  \"3\""_s}));
    }

    // Writes without a read

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
        form.boxes.during([&] {
            form.section->SetOtherCollectionTag(u"Victims"_s);
            if (fails)
                form.suspectBO->SetItem(u"SuspectVictims"_s, nullptr);
            QCOMPARE(raisedBy([&] { form.read(); }).Number != 0, fails);
        });
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
        letMenusTell();
        QVERIFY(dialog.came());
        form.write();
        QCOMPARE(form.linkTexts(), QStringList({u"1  \"1\""_s, u"2  \"2\""_s}));
    }
};

TAVRIN_TEST_MAIN(tst_SuspRelListFailedRead)
#include "tst_SuspRelListFailedRead.moc"
