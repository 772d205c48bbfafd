#include "base/values/Variant.h"
#include "lookup/ComboPickerForm.h"
#include "lookup/EmployeePicker.h"
#include "support/Fonts.h"
#include "support/TestCase.h"
#include "widgets/labels/Link.h"

#include <QPointer>

using namespace tavrin;
using namespace tavrin::test;
using namespace Qt::StringLiterals;
using Form = ComboPickerForm<EmployeePicker>;

/// `EmployeePicker` as a person meets it: its look, choosing, and its end.
class tst_EmployeePicker : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // Look

    void coloursGoToTheBoxAndTheBoxIsReadForThem()
    {
        Form form;
        form.picker->SetBackColor(Color::rgb(1, 2, 3));
        form.picker->SetForeColor(Color::rgb(4, 5, 6));
        QCOMPARE(form.box->BackColor(), Color::rgb(1, 2, 3));
        QCOMPARE(form.box->ForeColor(), Color::rgb(4, 5, 6));
        form.box->SetBackColor(Color::rgb(7, 8, 9));
        form.box->SetForeColor(Color::rgb(9, 8, 7));
        QCOMPARE(form.picker->BackColor(), Color::rgb(7, 8, 9));
        QCOMPARE(form.picker->ForeColor(), Color::rgb(9, 8, 7));
    }

    void theFontIsOneObjectForLabelAndBoxAndAChangeInsideItShowsInBoth()
    {
        Form form;
        const FontPtr font = fontOf(12);
        form.picker->SetFont(font);
        QCOMPARE(form.picker->Font(), font);
        QCOMPARE(form.label->Font(), font);
        QCOMPARE(form.box->Font(), font);
        const QSignalSpy changes(form.picker, &UserControl::PropertyChanged);
        font->SetItalic(true);
        QVERIFY(form.label->font().italic());
        QVERIFY(form.box->font().italic());
        QCOMPARE(changes.size(), 0);
    }

    void aFontThatWasReplacedIsFollowedNoLonger()
    {
        Form form;
        const FontPtr former = fontOf(12);
        form.picker->SetFont(former);
        form.picker->SetFont(fontOf(10));
        const int height = form.picker->height();
        former->SetSize(40);
        QCOMPARE(form.picker->height(), height);
        QCOMPARE(form.box->font().pointSizeF(), 10.0);
    }

    void theDisabledBoxHasNoPlaceholderAndTakesNoKeys()
    {
        Form form;
        QVERIFY(form.isReady());
        QCOMPARE(form.box->Placeholder(), u"Type to search"_s);
        form.picker->SetEnabled(false);
        QVERIFY(!form.picker->Enabled());
        QVERIFY(!form.box->isEnabled());
        QCOMPARE(form.box->Placeholder(), QString());
        form.type(u"a"_s);
        QCOMPARE(form.box->Text(), QString());
        QVERIFY(!form.box->ListIsOpen());
        form.picker->SetEnabled(true);
        QVERIFY(form.box->isEnabled());
        QCOMPARE(form.box->Placeholder(), u"Type to search"_s);
    }

    void aFormThatIsDisabledForAWhileDoesNotDisableTheControlForGood()
    {
        Form form;
        form.window.setEnabled(false);
        QVERIFY(form.picker->Enabled());
        PropertyBag bag;
        form.picker->WriteProperties(bag);
        QVERIFY(!bag.contains(u"Enabled"_s));
        form.picker->SetEnabled(false);
        form.window.setEnabled(true);
        QVERIFY(!form.picker->Enabled());
    }

    void theWindowHandleIsTheOneOfTheWindowItStandsOn()
    {
        Form form;
        QVERIFY(form.isReady());
        QCOMPARE(form.picker->hWnd(), static_cast<qint32>(form.window.winId()));
        QVERIFY(!form.picker->internalWinId());
    }

    void aRecordWithoutChildElementsShowsEmptyTextsInTheirPlaces()
    {
        Form form;
        QVERIFY(form.isReady());
        form.host.state().employees =
            listOf("L", "Employee",
                   {RecordParts{{"OfficerNo", u"1"_s}}, RecordParts{{"Name", u"Only"_s}}, RecordParts{}});
        form.picker->SetListAllEmployees(true);
        form.picker->SetValue(1);
        QCOMPARE(form.picker->Value(), QVariant(1.0));
        QCOMPARE(form.box->Text(), QString());
        QCOMPARE(form.label->Caption(), QString());
        form.picker->SetValue(Null());
        QTest::keyClick(form.box, Qt::Key_Down);
        QCOMPARE(form.rows(), QStringList({u":"_s, u": Only"_s, u":"_s}));
        form.clickRow(1);
        QVERIFY(IsNull(form.picker->Value())); // there is no number to be had
        QCOMPARE(form.label->Caption(), u"Only"_s);
    }

    void aCaptionShowsItsSignsAsTheyAre()
    {
        Form form;
        form.host.state().employees =
            listOf("L", "Employee", {employee(1, "<b>", "<i>Smith & Sons</i>", "", true)});
        form.picker->SetValue(1);
        QCOMPARE(form.box->Text(), u"<b>"_s);
        QCOMPARE(form.label->Caption(), u"<i>Smith & Sons</i>"_s);
        QCOMPARE(form.label->textFormat(), Qt::PlainText);
    }

    // Choosing

    void aChoiceRaisesChangeThenItemSelectAndReportsNoProperty_data()
    {
        QTest::addColumn<int>("key");
        QTest::newRow("Enter") << int(Qt::Key_Return);
        QTest::newRow("Tab") << int(Qt::Key_Tab);
        QTest::newRow("mouse") << 0;
    }
    void aChoiceRaisesChangeThenItemSelectAndReportsNoProperty()
    {
        QFETCH(int, key);
        Form form;
        QVERIFY(form.isReady());
        form.follow();
        form.type(u"cole"_s);
        QCOMPARE(form.take(), QStringList());
        if (key == 0)
            form.clickRow(0);
        else
            QTest::keyClick(form.box, static_cast<Qt::Key>(key));
        QCOMPARE(form.take(), QStringList({u"Change 13"_s, u"ItemSelect 13"_s}));
        QCOMPARE(form.picker->Value().typeId(), int(QMetaType::Double));
        QCOMPARE(form.box->Text(), u"C13"_s);
        QCOMPARE(form.label->Caption(), u"Cole, Carl"_s);
    }

    void takingTheSameEntryAgainIsAChoiceLikeAnyOther()
    {
        Form form;
        QVERIFY(form.isReady());
        form.picker->SetValue(13);
        form.follow();
        form.box->selectAll();
        form.type(u"cole"_s);
        QTest::keyClick(form.box, Qt::Key_Return);
        QCOMPARE(form.take(), QStringList({u"Change 13"_s, u"ItemSelect 13"_s}));
    }

    void emptyingTheBoxTakesTheValueAwayWithoutItemSelect()
    {
        Form form;
        QVERIFY(form.isReady());
        form.picker->SetValue(13);
        form.follow();
        form.emptyBox();
        QCOMPARE(form.take(), QStringList{u"Change Null"_s});
        QCOMPARE(form.label->Caption(), QString());
        form.box->CloseList();
    }

    void theClearButtonTakesTheValueAway()
    {
        Form form;
        QVERIFY(form.isReady());
        form.picker->SetValue(13);
        form.follow();
        auto* button = form.box->findChild<Link*>(u"lnkButton"_s);
        QCOMPARE(button->ToolTipText(), u"Clear"_s);
        QTest::mouseClick(button, Qt::LeftButton);
        QCOMPARE(form.take(), QStringList{u"Change Null"_s});
        QCOMPARE(form.box->Text(), QString());
        QCOMPARE(form.label->Caption(), QString());
    }

    void aTypedTextThatWasNotChosenGivesWayWhenTheFocusLeaves()
    {
        Form form;
        QVERIFY(form.isReady());
        form.picker->SetValue(13);
        form.follow();
        form.box->selectAll();
        form.type(u"adam"_s);
        form.other->setFocus();
        QCOMPARE(form.box->Text(), u"C13"_s);
        QCOMPARE(form.picker->Value(), QVariant(13.0));
        QCOMPARE(form.take(), QStringList());
    }

    void aFollowerOfAChoiceMayDeleteThePicker()
    {
        Form form;
        QVERIFY(form.isReady());
        form.type(u"cole"_s);
        connect(form.picker, &EmployeePicker::Change, &form.window, [&] { delete form.picker; });
        const QPointer<EmployeePicker> picker(form.picker);
        QTest::keyClick(form.box, Qt::Key_Return);
        QVERIFY(picker.isNull());
    }

    // Life

    void showingAndHidingChangesNothing()
    {
        Form form;
        QVERIFY(form.isReady());
        form.picker->SetValue(11);
        form.follow();
        form.picker->hide();
        form.picker->show();
        QCOMPARE(form.take(), QStringList());
        QCOMPARE(form.box->Text(), u"A11"_s);
    }

    void thePickerMayDieWithItsListOpen()
    {
        Form form;
        QVERIFY(form.isReady());
        form.type(u"a"_s);
        QVERIFY(form.box->ListIsOpen());
        delete form.picker;
        for (const QWidget* window : QApplication::topLevelWidgets())
            QVERIFY(window == &form.window || !window->isVisible());
    }
};

TAVRIN_TEST_MAIN(tst_EmployeePicker)
#include "tst_EmployeePicker.moc"
