#include "sections/SuspectForm.h"
#include "sections/frmSuspRel.h"
#include "support/Keys.h"
#include "support/NextModal.h"
#include "widgets/lists/FlatDropdown.h"

using namespace Qt::StringLiterals;
using namespace tavrin;
using tavrin::test::NextModal;
using tavrin::test::ShownBox;
using tavrin::test::SuspectForm;
using tavrin::test::Unhandled;

namespace {

FlatDropdown& combo(QWidget& dialog, const char* name)
{
    return *dialog.findChild<FlatDropdown*>(QString::fromLatin1(name));
}

void openByKey(SuspectForm& form)
{
    QTest::keyClick(form.window.windowHandle(), Qt::Key_Menu);
}

} // namespace

/// The menu of `SuspRelList` and what it does.
class tst_SuspRelListMenu : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // The menu

    void aRightClickOnARowSelectsItAndTheCaptionNamesItsParty()
    {
        SuspectForm form;
        form.addThreeVictimsOfWhomTwoAreLinked();
        form.read();
        QVERIFY(form.show());
        form.rightClick(form.placeOfRow(1));
        QVERIFY(form.menu->isVisible());
        QCOMPARE(form.menu->title(), u"Edit"_s);
        QCOMPARE(form.add->Caption(), u"Add Relationship"_s);
        QCOMPARE(form.remove->Caption(), u"Remove Relationship to 'Birch, Ben'"_s);
        QVERIFY(form.add->isEnabled());
        QVERIFY(form.remove->isEnabled());
        form.menu->close();
    }

    void theLeftAndTheMiddleButtonDoNothing_data()
    {
        QTest::addColumn<Qt::MouseButton>("button");
        QTest::newRow("left") << Qt::LeftButton;
        QTest::newRow("middle") << Qt::MiddleButton;
    }
    void theLeftAndTheMiddleButtonDoNothing()
    {
        QFETCH(Qt::MouseButton, button);
        SuspectForm form;
        form.addThreeVictimsOfWhomTwoAreLinked();
        form.read();
        QVERIFY(form.show());
        QTest::mouseClick(form.window.windowHandle(), button, {},
                          form.section->mapTo(&form.window, form.placeOfRow(0)));
        QVERIFY(!form.menu->isVisible());
    }

    void inAnEmptyListAClickOnTheTipOpensTheMenuWithoutRemove()
    {
        SuspectForm form;
        form.addThreeVictimsOfWhomTwoAreLinked();
        form.read();
        QVERIFY(form.show());
        form.rightClick(form.placeOfRow(0)); // leaves a name in the caption
        form.menu->close();
        form.section->SetOtherCollectionTag(u"IncidentBO.Victims"_s);
        form.suspectBO->SetItem(u"SuspectVictims"_s, std::make_shared<tavrin::test::FakeCollection>());
        form.read();
        form.rightClick(form.tip->geometry().center());
        QVERIFY(form.menu->isVisible());
        QVERIFY(form.add->isEnabled());
        QVERIFY(!form.remove->isEnabled());
        QCOMPARE(form.remove->Caption(), u"Remove Relationship"_s);
        form.menu->close();
    }

    void withRowsButNoneSelectedTheCaptionIsPlainAndRemoveFailsAsAMissingObject()
    {
        SuspectForm form;
        form.addThreeVictimsOfWhomTwoAreLinked();
        form.read();
        QVERIFY(form.show());
        const Unhandled unhandled;
        form.list->SetSelectedItem(std::nullopt);
        openByKey(form);
        QCOMPARE(form.remove->Caption(), u"Remove Relationship"_s);
        QVERIFY(form.remove->isEnabled());
        tavrin::test::chooseByKey(form.menu, Qt::Key_R);
        QCOMPARE(unhandled.texts, QStringList{u"MenuItem_Click: There is no selected row"_s});
        QCOMPARE(form.rows().size(), 2);
    }

    void theMenuKeyOpensTheMenuOfTheSelectedRow()
    {
        SuspectForm form;
        form.addThreeVictimsOfWhomTwoAreLinked();
        form.read();
        QVERIFY(form.show());
        QTest::keyClick(form.window.windowHandle(), Qt::Key_Down);
        QTest::keyClick(form.window.windowHandle(), Qt::Key_F10, Qt::ShiftModifier);
        QVERIFY(form.menu->isVisible());
        QCOMPARE(form.remove->Caption(), u"Remove Relationship to 'Birch, Ben'"_s);
        form.menu->close();
    }

    void aDisabledSectionOpensNoMenu()
    {
        SuspectForm form;
        form.addThreeVictimsOfWhomTwoAreLinked();
        form.read();
        QVERIFY(form.show());
        form.section->SetEnabled(false);
        form.rightClick(form.placeOfRow(0));
        QVERIFY(!form.menu->isVisible());
    }

    void theMenuClosesWithTheRowsItWasOpenedFor_data()
    {
        QTest::addColumn<bool>("byKey");
        QTest::addColumn<QString>("missing");
        QTest::newRow("mouse") << false << QString();
        QTest::newRow("key") << true << QString();
        QTest::newRow("mouse, a read that fails at the links") << false << u"SuspectVictims"_s;
        QTest::newRow("key, a read that fails at the links") << true << u"SuspectVictims"_s;
        QTest::newRow("mouse, a read that fails at once") << false << u"SuspectBO"_s;
    }
    void theMenuClosesWithTheRowsItWasOpenedFor()
    {
        QFETCH(bool, byKey);
        QFETCH(QString, missing);
        const bool fails = !missing.isEmpty();
        SuspectForm form;
        form.addThreeVictimsOfWhomTwoAreLinked();
        form.read();
        QVERIFY(form.show());
        if (byKey)
            openByKey(form);
        else
            form.rightClick(form.placeOfRow(0));
        QVERIFY(form.menu->isVisible());
        // Another suspect.
        const auto before =
            std::exchange(form.links, std::make_shared<tavrin::test::FakeCollection>(QStringList{
                                          u"LinkNo"_s, u"VictimSeqNo"_s, u"SeqNo"_s, u"RelationNo"_s}));
        form.addLink(3, 3);
        form.suspectBO->SetItem(u"SuspectVictims"_s, form.links);
        if (fails)
            (missing == u"SuspectBO"_s ? *form.page : *form.suspectBO).SetItem(missing, nullptr);
        try {
            form.read();
            QVERIFY(!fails);
        } catch (const Error&) {
            QVERIFY(fails);
        }
        QVERIFY(!form.menu->isVisible());
        QVERIFY(!QApplication::activePopupWidget());
        const QStringList rows = form.rows();
        QCOMPARE(rows, fails ? QStringList() : QStringList{u"key_3/3/Cedar, Cy/Stranger"_s});
        form.remove->setEnabled(true);                          // as it was when the menu opened
        QTest::keyClick(form.window.windowHandle(), Qt::Key_R); // meant for the menu
        QCOMPARE(form.rows(), rows);
        QCOMPARE(before->Count(), 2);
    }

    void aChoiceThatARecordOvertakesIsDropped()
    {
        SuspectForm form;
        form.addThreeVictimsOfWhomTwoAreLinked();
        form.read();
        QVERIFY(form.show());
        form.rightClick(form.placeOfRow(0));
        QTest::keyClick(form.menu, Qt::Key_R);
        form.read();
        form.list->SetSelectedItem(form.list->Key(0));
        tavrin::test::letMenusTell();
        QCOMPARE(form.rows().size(), 2);
    }

    void aSectionThatIsDisabledClosesItsMenu()
    {
        SuspectForm form;
        form.addThreeVictimsOfWhomTwoAreLinked();
        form.read();
        QVERIFY(form.show());
        form.rightClick(form.placeOfRow(0));
        QVERIFY(form.menu->isVisible());
        form.section->SetEnabled(false);
        QVERIFY(!form.menu->isVisible());
        QVERIFY(!QApplication::activePopupWidget());
    }

    // Remove

    void removingTakesTheSelectedRowAndTheTipComesBehindTheLast()
    {
        SuspectForm form;
        form.addThreeVictimsOfWhomTwoAreLinked();
        form.read();
        QVERIFY(form.show());
        form.rightClick(form.placeOfRow(1));
        tavrin::test::chooseByKey(form.menu, Qt::Key_R);
        QCOMPARE(form.rows(), QStringList{u"key_1/1/Ash, Ann/Friend"_s});
        QVERIFY(!form.tip->isVisible());
        QCOMPARE(form.links->Count(), 2); // nothing reaches the record before a write
        openByKey(form);
        tavrin::test::chooseByKey(form.menu, Qt::Key_R);
        QCOMPARE(form.rows(), QStringList());
        QVERIFY(form.tip->isVisible());
        form.write();
        QCOMPARE(form.links->Count(), 0);
    }

    // Add

    void addingOffersThePartiesWithoutARowAndAddsTheChosenOne()
    {
        SuspectForm form;
        form.addThreeVictimsOfWhomTwoAreLinked();
        form.addVictim(4, u"Dogwood, Di"_s);
        form.read();
        QVERIFY(form.show());
        QStringList names;
        QStringList captions;
        QWidget* parent = nullptr;
        const NextModal next([&](QWidget& window) {
            auto& dialog = dynamic_cast<frmSuspRel&>(window);
            parent = dialog.parentWidget();
            for (int i = 0; i < combo(dialog, "cboName").ListCount(); ++i)
                names << combo(dialog, "cboName").List(i);
            QTest::keyClick(dialog.windowHandle(), Qt::Key_Down); // the second party
            QTest::keyClick(dialog.windowHandle(), Qt::Key_Tab);
            QTest::keyClick(dialog.windowHandle(), Qt::Key_S); // Stranger
            QTest::keyClick(dialog.windowHandle(), Qt::Key_Return);
        });
        openByKey(form);
        tavrin::test::chooseByKey(form.menu, Qt::Key_A);
        QVERIFY(next.came());
        QCOMPARE(parent, &form.window);
        QCOMPARE(names, QStringList({u"Cedar, Cy"_s, u"Dogwood, Di"_s}));
        QCOMPARE(form.rows(), QStringList({u"key_1/1/Ash, Ann/Friend"_s, u"key_2/2/Birch, Ben/Neighbor"_s,
                                           u"key_4/3/Dogwood, Di/Stranger"_s}));
        QCOMPARE(form.list->SelectedItem(), u"key_4"_s);
        QCOMPARE(form.boxes.shown().size(), 0);
        QCOMPARE(form.links->Count(), 2);
        QVERIFY(form.window.findChildren<frmSuspRel*>().isEmpty()); // unloaded
        form.write();
        QCOMPARE(form.linkTexts().last(), u"4 7 \"3\""_s);
    }

    void theFirstRowHidesTheTip()
    {
        SuspectForm form;
        form.addVictim(1, u"Ash, Ann"_s);
        form.read();
        QVERIFY(form.show());
        QVERIFY(form.tip->isVisible());
        const NextModal next([&](QWidget& dialog) {
            combo(dialog, "cboRelationship").SetListIndex(1);
            QTest::keyClick(dialog.windowHandle(), Qt::Key_Return);
        });
        openByKey(form);
        tavrin::test::chooseByKey(form.menu, Qt::Key_A);
        QVERIFY(!form.tip->isVisible());
        QCOMPARE(form.rows(), QStringList{u"key_1/1/Ash, Ann/Friend"_s});
    }

    void cancellingAddsNothing()
    {
        SuspectForm form;
        form.addVictim(1, u"Ash, Ann"_s);
        form.read();
        QVERIFY(form.show());
        const NextModal next([&](QWidget& dialog) {
            combo(dialog, "cboRelationship").SetListIndex(1);
            QTest::keyClick(dialog.windowHandle(), Qt::Key_Escape);
        });
        openByKey(form);
        tavrin::test::chooseByKey(form.menu, Qt::Key_A);
        QVERIFY(next.came());
        QCOMPARE(form.rows(), QStringList());
        QVERIFY(form.tip->isVisible());
    }

    void theDialogBlocksTheFormAndStandsOverIt()
    {
        SuspectForm form;
        form.window.move(60, 200);
        form.addVictim(1, u"Ash, Ann"_s);
        form.read();
        QVERIFY(form.show());
        const NextModal next([&](QWidget& dialog) {
            QCOMPARE(dialog.windowModality(), Qt::ApplicationModal);
            QCOMPARE(dialog.parentWidget(), &form.window);
            QVERIFY(form.window.frameGeometry().contains(dialog.frameGeometry().center()));
            QTest::mouseClick(form.window.windowHandle(), Qt::LeftButton, {},
                              form.other->geometry().center());
            tavrin::test::typeInto(form.window.windowHandle(), u"x"_s);
            QCOMPARE(form.other->text(), QString());
            form.rightClick(form.list->geometry().center());
            QVERIFY(!form.menu->isVisible());
            dialog.close();
        });
        openByKey(form);
        tavrin::test::chooseByKey(form.menu, Qt::Key_A);
        QVERIFY(next.came());
        QVERIFY(!QApplication::activeModalWidget());
        QCOMPARE(form.rows(), QStringList());
    }

    void anotherRecordThatIsReadWhileTheDialogIsOpenLeavesItsAnswerOut_data()
    {
        QTest::addColumn<bool>("confirmed");
        QTest::newRow("still asking") << false;
        QTest::newRow("confirmed already") << true;
    }
    void anotherRecordThatIsReadWhileTheDialogIsOpenLeavesItsAnswerOut()
    {
        QFETCH(bool, confirmed);
        SuspectForm form;
        form.addVictim(1, u"Ash, Ann"_s);
        form.read();
        QVERIFY(form.show());
        const NextModal next([&](QWidget& dialog) {
            combo(dialog, "cboRelationship").SetListIndex(1);
            if (confirmed)
                QTest::keyClick(dialog.windowHandle(), Qt::Key_Return);
            form.read();
            QVERIFY(!dialog.isVisible());
        });
        openByKey(form);
        tavrin::test::chooseByKey(form.menu, Qt::Key_A);
        QVERIFY(next.came());
        QCOMPARE(form.rows(), QStringList());
        QVERIFY(form.tip->isVisible());
    }

    void theRecordOfAnotherSuspectThatIsReadWhileTheDialogIsOpenKeepsItsLinks()
    {
        SuspectForm form;
        form.addSuspect(8, u"Nolan, Bea"_s);
        form.addThreeVictimsOfWhomTwoAreLinked();
        form.read();
        QVERIFY(form.show());
        const NextModal next([&](QWidget& dialog) {
            combo(dialog, "cboRelationship").SetListIndex(1); // of Cedar to Moss
            QTest::keyClick(dialog.windowHandle(), Qt::Key_Return);
            form.links = std::make_shared<tavrin::test::FakeCollection>(
                QStringList{u"LinkNo"_s, u"VictimSeqNo"_s, u"SeqNo"_s, u"RelationNo"_s});
            form.suspectBO->SetItem(u"SuspectVictims"_s, form.links);
            form.addLink(1, 2);
            form.suspects->SetPosition(2);
            form.read();
        });
        openByKey(form);
        tavrin::test::chooseByKey(form.menu, Qt::Key_A);
        QVERIFY(next.came());
        QCOMPARE(form.rows(), QStringList{u"key_1/2/Ash, Ann/Neighbor"_s});
        form.write();
        QCOMPARE(form.linkTexts(), QStringList{u"1  \"2\""_s});
    }

    void aRowWhoseTextsCannotBeReadIsNotAdded()
    {
        SuspectForm form;
        form.addVictim(1, u"Ash, Ann"_s);
        form.read();
        QVERIFY(form.show());
        const Unhandled unhandled;
        const NextModal next([&](QWidget& dialog) {
            combo(dialog, "cboRelationship").SetListIndex(1);
            form.host.failWith(Error(u"no table"_s));
            QTest::keyClick(dialog.windowHandle(), Qt::Key_Return);
        });
        openByKey(form);
        tavrin::test::chooseByKey(form.menu, Qt::Key_A);
        QCOMPARE(unhandled.texts, QStringList{u"MenuItem_Click: no table"_s});
        QCOMPARE(form.rows(), QStringList());
        QVERIFY(form.tip->isVisible());
    }

    void theDialogNamesTheSuspectThatIsOpenInTheForm()
    {
        SuspectForm form;
        form.addSuspect(8, u"Nolan, Bea"_s);
        form.addVictim(1, u"Ash, Ann"_s);
        form.suspects->SetPosition(2);
        form.read();
        QVERIFY(form.show());
        QString relationship;
        const NextModal next([&](QWidget& dialog) {
            relationship = combo(dialog, "cboRelationship").accessibleName();
            dialog.close();
        });
        openByKey(form);
        tavrin::test::chooseByKey(form.menu, Qt::Key_A);
        QCOMPARE(relationship, u"Relationship to Nolan, Bea"_s);
    }

    void withoutPartiesABoxSaysSo()
    {
        SuspectForm form;
        form.read();
        QVERIFY(form.show());
        openByKey(form);
        tavrin::test::chooseByKey(form.menu, Qt::Key_A);
        const QList<ShownBox> shown = form.boxes.take();
        QCOMPARE(shown.size(), 1);
        QCOMPARE(shown.first().title, u"No Victims Present"_s);
        QCOMPARE(shown.first().text,
                 u"There are no victims attached to this record. Add at least one victim first."_s);
        QCOMPARE(shown.first().icon, BoxIcon::Information);
    }

    void withARowForEachPartyABoxSaysSo()
    {
        SuspectForm form;
        form.addVictim(1, u"Ash, Ann"_s);
        form.addLink(1, 1);
        form.read();
        QVERIFY(form.show());
        openByKey(form);
        tavrin::test::chooseByKey(form.menu, Qt::Key_A);
        const QList<ShownBox> shown = form.boxes.take();
        QCOMPARE(shown.size(), 1);
        QCOMPARE(shown.first().title, u"No Relationships to Add"_s);
        QCOMPARE(shown.first().text,
                 u"You've already added a relationship for each victim to this suspect."_s);
        QCOMPARE(shown.first().icon, BoxIcon::Information);
    }

    void addingBeforeAnyReadFailsAndTheFailureDoesNotCrossQt()
    {
        SuspectForm form;
        QVERIFY(form.show());
        const Unhandled unhandled;
        openByKey(form);
        tavrin::test::chooseByKey(form.menu, Qt::Key_A);
        QCOMPARE(unhandled.texts.size(), 1);
        QCOMPARE(form.boxes.shown().size(), 0);
    }

    void aFailureOfTheHostWhileTheDialogIsFilledLeavesNoDialogBehind()
    {
        SuspectForm form;
        form.addVictim(1, u"Ash, Ann"_s);
        form.read();
        QVERIFY(form.show());
        const Unhandled unhandled;
        openByKey(form);
        form.host.failWith(Error(u"no table"_s));
        tavrin::test::chooseByKey(form.menu, Qt::Key_A);
        QCOMPARE(unhandled.texts, QStringList{u"MenuItem_Click: no table"_s});
        for (const QWidget* window : QApplication::topLevelWidgets())
            QVERIFY(!qobject_cast<const frmSuspRel*>(window));
    }

    void aFormThatDeletesTheSectionWhileTheDialogIsOpenEndsTheAddingQuietly()
    {
        SuspectForm form;
        form.addVictim(1, u"Ash, Ann"_s);
        form.read();
        QVERIFY(form.show());
        const Unhandled unhandled;
        const NextModal next([&](QWidget& dialog) {
            combo(dialog, "cboRelationship").SetListIndex(1);
            form.section->deleteLater();
            QCoreApplication::sendPostedEvents(form.section, QEvent::DeferredDelete);
            QVERIFY(!dialog.isVisible()); // nobody is left to take its answer
        });
        openByKey(form);
        tavrin::test::chooseByKey(form.menu, Qt::Key_A);
        QVERIFY(next.came());
        QVERIFY(!QApplication::activeModalWidget());
        QVERIFY(form.section.isNull());
        QCOMPARE(unhandled.texts, QStringList());
    }
};

TAVRIN_TEST_MAIN(tst_SuspRelListMenu)
#include "tst_SuspRelListMenu.moc"
