#include "base/values/Variant.h"
#include "lookup/ComboPickerForm.h"
#include "lookup/OffensePicker.h"
#include "support/Fonts.h"
#include "support/Members.h"
#include "support/RaisedError.h"
#include "support/TestCase.h"

using namespace tavrin;
using namespace tavrin::test;
using namespace Qt::StringLiterals;
using Form = ComboPickerForm<OffensePicker>;

/// `OffensePicker`: what differs from `EmployeePicker` in its members and values, and that the rest is there.
class tst_OffensePicker : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // Members

    void theMembersStandInThePublishedOrderAndThereIsNoFilter()
    {
        const QMetaObject& meta = OffensePicker::staticMetaObject;
        QCOMPARE(ownProperties(meta),
                 QStringList({u"hWnd"_s, u"BackColor"_s, u"ForeColor"_s, u"Font"_s, u"Value"_s, u"Enabled"_s,
                              u"ShowName"_s, u"ListAllOffenses"_s, u"RemoveUsedValues"_s, u"FullText"_s,
                              u"ShortText"_s}));
        for (const char* name : {"hWnd", "FullText", "ShortText"})
            QVERIFY(!meta.property(meta.indexOfProperty(name)).isWritable());
        QCOMPARE(ownSignals(meta), QStringList());
        QVERIFY(meta.indexOfSignal("Change()") >= 0);
        QVERIFY(meta.indexOfSignal("ItemSelect()") >= 0);
        QCOMPARE(meta.classInfo(meta.indexOfClassInfo("ClassName")).value(), "TVBoundControls.OffensePicker");
    }

    void everySetterReportsItsKeyOnceAlsoForTheSameValue()
    {
        Form form;
        OffensePicker& picker = *form.picker;
        const QSignalSpy changes(&picker, &UserControl::PropertyChanged);
        for (int round = 0; round < 2; ++round) {
            picker.SetBackColor(Color::rgb(1, 1, 1));
            picker.SetForeColor(Color::rgb(1, 1, 1));
            picker.SetFont(picker.Font());
            picker.SetValue(31);
            picker.SetEnabled(false);
            picker.SetShowName(false);
            picker.SetListAllOffenses(true);
            picker.SetRemoveUsedValues(true);
        }
        const QStringList keys{u"BackColor"_s,       u"ForeColor"_s,       u"Font"_s,
                               u"Value"_s,           u"Enabled"_s,         u"ShowName"_s,
                               u"ListAllOffenses"_s, u"RemoveUsedValues"_s};
        QCOMPARE(keysOf(changes), keys + keys);
    }

    void theTextsAreTheOffenseListsAndEmptyForNull()
    {
        Form form;
        auto& state = form.host.state();
        state.offenseShortTexts.insert(u"31"_s, u"short"_s);
        state.offenseFullTexts.insert(u"31"_s, u"full"_s);
        state.employeeFullTexts.insert(u"31"_s, u"somebody"_s);
        QCOMPARE(form.picker->FullText() + form.picker->ShortText(), QString());
        QCOMPARE(form.host.calls(), 0);
        form.picker->SetValue(31);
        QCOMPARE(form.picker->FullText(), u"full"_s);
        QCOMPARE(form.picker->ShortText(), u"short"_s);
    }

    // Value and choosing

    void aValueShowsIdAndDescriptionAndRaisesChangeBeforeItIsReported()
    {
        Form form;
        form.follow();
        form.picker->SetValue(u"32"_s); // inactive
        QCOMPARE(form.take(), QStringList({u"Change 32"_s, u"Value 32"_s}));
        QCOMPARE(form.picker->Value().typeId(), int(QMetaType::Double));
        QCOMPARE(form.box->Text(), u"13B"_s);
        QCOMPARE(form.label->Caption(), u"Simple Assault"_s);
        form.picker->SetValue(11);
        QCOMPARE(form.take(), QStringList({u"Change Null"_s, u"Value Null"_s}));
        QCOMPARE(form.box->Text() + form.label->Caption(), QString());
        QCOMPARE(form.host.state().log.filter(u"Document"_s), QStringList{u"OffenseListCache.Document"_s});
    }

    void aPutThatFailedShowsNothingOfTheValueBefore()
    {
        Form form;
        QVERIFY(form.isReady());
        form.hold(31);
        form.follow();
        QVERIFY_EXCEPTION_THROWN(form.hold(u"1 2"_s), Error);
        QCOMPARE(form.picker->Value(), QVariant(u"1 2"_s)); // stored first
        QCOMPARE(form.box->Text(), QString());
        QCOMPARE(form.label->Caption(), QString());
        QCOMPARE(form.take(), QStringList());
        form.type(u"x"_s);
        QTest::keyClick(form.box, Qt::Key_Backspace); // the person clears what shows no name
        QVERIFY(IsNull(form.picker->Value()));
        QCOMPARE(form.take(), QStringList{u"Change Null"_s});
        form.hold(33);
        QCOMPARE(form.label->Caption(), u"Burglary"_s);
    }

    void aChoiceRaisesChangeThenItemSelect()
    {
        Form form;
        QVERIFY(form.isReady());
        form.follow();
        form.type(u"burg"_s);
        QCOMPARE(form.rows(), QStringList{u"220: Burglary"_s});
        QTest::keyClick(form.box, Qt::Key_Return);
        QCOMPARE(form.take(), QStringList({u"Change 33"_s, u"ItemSelect 33"_s}));
        QCOMPARE(form.box->Text(), u"220"_s);
        QCOMPARE(form.label->Caption(), u"Burglary"_s);
    }

    void aValueThatMakesNoExpressionReachesTheCallerAndThePickerStaysUsable()
    {
        Form form;
        QVERIFY(form.isReady());
        const Error error = raisedBy([&] { form.picker->SetValue(u"]"_s); });
        QVERIFY(error.Description.endsWith(u"Offense[OffenseNo=]]"_s));
        form.type(u"burg"_s);
        QTest::keyClick(form.box, Qt::Key_Return);
        QCOMPARE(form.picker->Value(), QVariant(33.0));
    }

    // Saved properties

    void aNewPickerHasItsStartValuesAndAsksTheHostForNothing()
    {
        FakeHost host;
        const HostInstallation installation(host);
        const OffensePicker picker;
        QVERIFY(IsNull(picker.Value()));
        QVERIFY(picker.Enabled() && picker.ShowName());
        QVERIFY(!picker.RemoveUsedValues() && !picker.ListAllOffenses());
        const auto* box = picker.findChild<AutoCompleteComboBox*>();
        QCOMPARE(box->MinQueryLength(), 2);
        QVERIFY(box->ShowClearButton());
        QCOMPARE(box->Placeholder(), u"Type to search"_s);
        QCOMPARE(host.calls(), 0);
    }

    void restoringGoesThroughTheSettersInOrderButForTheOptionThatGoesStraightIn()
    {
        OffensePicker picker;
        const QSignalSpy changes(&picker, &UserControl::PropertyChanged);
        picker.ReadProperties(bagOf({{"ListAllOffenses", true}}));
        QCOMPARE(keysOf(changes), QStringList({u"Enabled"_s, u"ShowName"_s, u"RemoveUsedValues"_s, u"Font"_s,
                                               u"BackColor"_s, u"ForeColor"_s}));
        QVERIFY(picker.ListAllOffenses());
    }

    void theBagIsWrittenInOrderAndComesBackWholeAndDefaultsAreNotWritten()
    {
        QWidget container;
        OffensePicker picker(&container);
        PropertyBag bag;
        picker.WriteProperties(bag);
        QCOMPARE(keysOf(bag), QStringList());
        picker.SetEnabled(false);
        picker.SetShowName(false);
        picker.SetListAllOffenses(true);
        picker.SetRemoveUsedValues(true);
        picker.SetFont(fontOf(17));
        picker.SetBackColor(Color::rgb(1, 1, 1));
        picker.SetForeColor(Color::rgb(2, 2, 2));
        picker.WriteProperties(bag);
        QCOMPARE(keysOf(bag),
                 QStringList({u"Enabled"_s, u"ShowName"_s, u"ListAllOffenses"_s, u"RemoveUsedValues"_s,
                              u"Font"_s, u"BackColor"_s, u"ForeColor"_s}));
        const PropertyBag saved = PropertyBag::fromJson(bag.toJson());
        const OffensePicker restored(&container, {QString(), &saved});
        QVERIFY(!restored.Enabled() && !restored.ShowName());
        QVERIFY(restored.ListAllOffenses() && restored.RemoveUsedValues());
        QCOMPARE(restored.Font()->Size(), 17.0);
        QCOMPARE(restored.BackColor(), Color::rgb(1, 1, 1));
        QCOMPARE(restored.ForeColor(), Color::rgb(2, 2, 2));
        const PropertyBag empty;
        const OffensePicker plain(&container, {QString(), &empty});
        QVERIFY(plain.Enabled() && plain.ShowName());
        QVERIFY(!plain.ListAllOffenses() && !plain.RemoveUsedValues());
        QCOMPARE(plain.BackColor().value(), 0x80000005U);
        QCOMPARE(plain.ForeColor().value(), 0x80000008U);
        QCOMPARE(plain.Font()->toQFont(), container.font());
    }

    void theDesignerShowsTheInstancesName()
    {
        const DesignTime designer;
        OffensePicker picker(nullptr, {u"Charge"_s});
        const auto* box = picker.findChild<AutoCompleteComboBox*>();
        QCOMPARE(box->Text(), u"Charge"_s);
        picker.setObjectName(u"Offense"_s);
        QCOMPARE(box->Text(), u"Offense"_s);
    }
};

TAVRIN_TEST_MAIN(tst_OffensePicker)
#include "tst_OffensePicker.moc"
