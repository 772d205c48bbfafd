#include "lookup/AgencyForm.h"
#include "support/TestCase.h"

#include <QApplication>
#include <QPointer>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

/// The value of `AgencyPicker`, put by code, by the host or chosen by the person, and its followers.
class tst_AgencyPicker : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // Value

    void aPutLoadsTheListWithTheValueAndSelectsIt()
    {
        AgencyForm form;
        form.picker->SetValue(30);
        QCOMPARE(form.host.state().log, QStringList({u"FillTableGrid 997 False 30 False"_s}));
        QCOMPARE(form.picker->Value(), QVariant(30));
        QCOMPARE(form.picker->ShortText(), u"CS"_s);
        QCOMPARE(form.picker->FullText(), u"County Sheriff"_s);
        QCOMPARE(form.combo->Text(), u"CS"_s);
        QCOMPARE(form.label->Caption(), u"County Sheriff"_s);
        QCOMPARE(form.take(), QStringList({u"Change 30 County Sheriff"_s}));
        QCOMPARE(form.reported, QStringList()); // a value is no design-time property
        QCOMPARE(form.contract().GetValue(), QVariant(30));
    }

    void aPutOfAnAgencyMissingFromTheListSelectsRowOneAndStoresThatRowsValue()
    {
        AgencyForm form;
        form.picker->SetValue(30);
        form.take();
        form.picker->SetValue(99);
        QVERIFY(IsNull(form.picker->Value()));
        QCOMPARE(form.combo->Bookmark(), QVariant(1));
        QCOMPARE(form.take(), QStringList({u"Change  "_s}));
        QCOMPARE(form.picker->FullText(), QString());
        QCOMPARE(form.picker->ShortText(), QString());
    }

    void anotherAgencyInTheSameRowIsAnotherRow()
    {
        AgencyForm form;
        form.picker->SetValue(20); // the third row, since the inactive one is listed
        form.take();
        form.picker->SetValue(30); // the third row without it
        QCOMPARE(form.combo->Bookmark(), QVariant(3));
        QCOMPARE(form.take(), QStringList({u"Change 30 County Sheriff"_s}));
    }

    void withoutADataArrayARowChangeMakesTheValueNull()
    {
        AgencyForm form;
        form.picker->SetValue(30);
        form.take();
        form.combo->RemoveArray();
        QVERIFY(IsNull(form.picker->Value()));
        QCOMPARE(form.take(), QStringList({u"ItemSelect  "_s, u"Change  "_s}));
    }

    void aRowChangeToNoRowLeavesTheValue()
    {
        AgencyForm form;
        form.picker->SetValue(30);
        form.take();
        form.combo->SetBookmark(Null());
        QCOMPARE(form.take(), QStringList({u"ItemSelect 30 "_s, u"Change 30 "_s}));
        QCOMPARE(form.picker->FullText(), QString());
    }

    // Choosing

    void aPersonsChoiceRaisesItemSelectThenChange_data()
    {
        QTest::addColumn<QString>("by");
        for (const char* by : {"key", "letter", "list", "click"})
            QTest::newRow(by) << QString::fromLatin1(by);
    }
    void aPersonsChoiceRaisesItemSelectThenChange()
    {
        QFETCH(QString, by);
        AgencyForm form;
        QVERIFY(form.isReady());
        if (by == u"key") {
            QTest::keyClick(form.combo, Qt::Key_Down);
        } else if (by == u"letter") {
            QTest::keyClick(form.combo, Qt::Key_A);
        } else {
            QTest::keyClick(form.combo, Qt::Key_F4);
            auto* table = form.window->findChild<GridTable*>();
            QTest::keyClick(form.combo, Qt::Key_Down);
            QCOMPARE(form.take(), QStringList());
            if (by == u"list")
                QTest::keyClick(form.combo, Qt::Key_Return);
            else
                QTest::mouseClick(table->viewport(), Qt::LeftButton, {},
                                  {10, table->rowViewportPosition(1) + 3});
        }
        QCOMPARE(form.take(), chosen(u"10 Aston Police"_s));
        QCOMPARE(form.picker->Value(), QVariant(10));
    }

    void setValueRaisesChangeAloneAndTheRowChangeClearsTheFlag()
    {
        AgencyForm form;
        QVERIFY(form.isReady());
        form.contract().SetValue(10, AgencyForm::used({}));
        QCOMPARE(form.take(), QStringList({u"Change 10 Aston Police"_s}));
        QTest::keyClick(form.combo, Qt::Key_Down);
        QCOMPARE(form.take(), chosen(u"30 County Sheriff"_s));
        form.contract().SetValue(40, AgencyForm::used({}));
        QCOMPARE(form.take(), QStringList({u"Change 40 Dale Patrol"_s}));
    }

    void afterTheSameRowAgainThePersonsNextRowChangeRaisesNoItemSelectAndThisIsMeant()
    {
        AgencyForm form;
        QVERIFY(form.isReady());
        form.picker->SetValue(10);
        form.take();
        form.picker->SetValue(10);
        QCOMPARE(form.take(), QStringList());
        QCOMPARE(form.picker->Value(), QVariant(10));
        QTest::keyClick(form.combo, Qt::Key_Down);
        QCOMPARE(form.take(), QStringList({u"Change 30 County Sheriff"_s}));
        QTest::keyClick(form.combo, Qt::Key_Down);
        QCOMPARE(form.take(), chosen(u"40 Dale Patrol"_s));
    }

    void nullOverNullIsTheSameRowAgain()
    {
        AgencyForm form;
        QVERIFY(form.isReady());
        form.picker->SetValue(Null());
        QCOMPARE(form.take(), QStringList());
        QTest::keyClick(form.combo, Qt::Key_Down);
        QCOMPARE(form.take(), QStringList({u"Change 10 Aston Police"_s}));
    }

    void theFirstRowChangeAfterCreationCountsForNothing()
    {
        AgencyForm form;
        QStringList told;
        AgencyPicker fresh; // never restored, so without a list
        follow(fresh, told);
        fresh.SetValue(Null());
        QCOMPARE(told, QStringList());
        fresh.SetValue(30);
        QCOMPARE(told, QStringList({u"Change"_s}));
    }

    // Followers

    void aFollowerMayEndTheWholeFormByAClickInTheOpenList()
    {
        AgencyForm form;
        QVERIFY(form.isReady());
        connect(form.picker, &AgencyPicker::Change, form.picker, [&] { form.window.reset(); });
        form.chooseInList(3, true);
        QVERIFY(!form.window);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        for (const QWidget* window : QApplication::topLevelWidgets())
            QVERIFY(window->objectName() != u"gridList"_s); // nothing stays behind
    }

    void aFollowerMayDeleteTheControl_data()
    {
        QTest::addColumn<QString>("event");
        QTest::addColumn<QString>("by");
        for (const char* event : {"Change", "ItemSelect"})
            QTest::addRow("%s by a key", event) << QString::fromLatin1(event) << u"key"_s;
        QTest::newRow("Change by Enter in the open list") << u"Change"_s << u"enter"_s;
        for (const char* event : {"Change", "ItemSelect"})
            QTest::addRow("%s by a click in the open list", event)
                << QString::fromLatin1(event) << u"click"_s;
        QTest::newRow("Change by a put") << u"Change"_s << u"put"_s;
        QTest::newRow("Change by SetValue") << u"Change"_s << u"contract"_s;
        QTest::newRow("PropertyChanged") << u"PropertyChanged"_s << u"setter"_s;
    }
    void aFollowerMayDeleteTheControl()
    {
        QFETCH(QString, event);
        QFETCH(QString, by);
        AgencyForm form;
        QVERIFY(form.isReady());
        const QPointer<AgencyPicker> picker(form.picker);
        form.picker->disconnect(form.window.get());
        const auto destroy = [&] { delete form.picker; };
        if (event == u"Change")
            connect(form.picker, &AgencyPicker::Change, form.window.get(), destroy);
        else if (event == u"ItemSelect")
            connect(form.picker, &AgencyPicker::ItemSelect, form.window.get(), destroy);
        else
            connect(form.picker, &UserControl::PropertyChanged, form.window.get(), destroy);
        if (by == u"key")
            QTest::keyClick(form.combo, Qt::Key_Down);
        else if (by == u"enter" || by == u"click")
            form.chooseInList(3, by == u"click");
        else if (by == u"put")
            form.picker->SetValue(30);
        else if (by == u"contract")
            form.contract().SetValue(30, nullptr);
        else
            form.picker->SetListAllAgencies(true);
        QVERIFY(picker.isNull());
    }
};

TAVRIN_TEST_MAIN(tst_AgencyPicker)
#include "tst_AgencyPicker.moc"
