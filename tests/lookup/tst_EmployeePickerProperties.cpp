#include "base/values/Variant.h"
#include "lookup/ComboPickerForm.h"
#include "lookup/EmployeePicker.h"
#include "support/Fonts.h"
#include "support/Members.h"
#include "support/TestCase.h"

#include <optional>

using namespace tavrin;
using namespace tavrin::test;
using namespace Qt::StringLiterals;
using Form = ComboPickerForm<EmployeePicker>;

namespace {

/// The saved properties in their order.
const QStringList SavedKeys{u"Enabled"_s,   u"ShowName"_s,       u"RemoveUsedValues"_s,
                            u"Font"_s,      u"K9HandlersOnly"_s, u"ListAllEmployees"_s,
                            u"BackColor"_s, u"ForeColor"_s};

} // namespace

/// The members of `EmployeePicker`, what is saved of them, and what a designer shows.
class tst_EmployeePickerProperties : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // Members

    void theMembersStandInThePublishedOrder()
    {
        const QMetaObject& meta = EmployeePicker::staticMetaObject;
        QCOMPARE(ownProperties(meta),
                 QStringList({u"hWnd"_s, u"BackColor"_s, u"ForeColor"_s, u"Font"_s, u"Value"_s, u"Enabled"_s,
                              u"ShowName"_s, u"K9HandlersOnly"_s, u"ListAllEmployees"_s,
                              u"RemoveUsedValues"_s, u"FullText"_s, u"ShortText"_s}));
        for (const char* name : {"hWnd", "FullText", "ShortText"})
            QVERIFY(!meta.property(meta.indexOfProperty(name)).isWritable());
        QCOMPARE(ownSignals(SearchPicker::staticMetaObject) + ownSignals(meta),
                 QStringList({u"Change()"_s, u"ItemSelect()"_s, u"Filter(int,bool&)"_s}));
        QCOMPARE(meta.classInfo(meta.indexOfClassInfo("ClassName")).value(),
                 "TVBoundControls.EmployeePicker");
    }

    void everySetterReportsItsKeyOnceAlsoForTheSameValue()
    {
        const EmployeeSite site;
        EmployeePicker picker;
        const QSignalSpy changes(&picker, &UserControl::PropertyChanged);
        for (int round = 0; round < 2; ++round) {
            picker.SetBackColor(Color::rgb(1, 1, 1));
            picker.SetForeColor(Color::rgb(1, 1, 1));
            picker.SetFont(picker.Font());
            picker.SetValue(11);
            picker.SetEnabled(false);
            picker.SetShowName(false);
            picker.SetK9HandlersOnly(true);
            picker.SetListAllEmployees(true);
            picker.SetRemoveUsedValues(true);
        }
        const QStringList keys{u"BackColor"_s,      u"ForeColor"_s,        u"Font"_s,
                               u"Value"_s,          u"Enabled"_s,          u"ShowName"_s,
                               u"K9HandlersOnly"_s, u"ListAllEmployees"_s, u"RemoveUsedValues"_s};
        QCOMPARE(keysOf(changes), keys + keys);
        QVERIFY(picker.K9HandlersOnly() && picker.ListAllEmployees() && picker.RemoveUsedValues());
        QVERIFY(!picker.ShowName() && !picker.Enabled());
    }

    void theOptionsChangeNothingButWhatTheNextSearchHeeds()
    {
        Form form;
        form.picker->SetValue(11);
        form.follow();
        form.picker->SetK9HandlersOnly(true);
        form.picker->SetListAllEmployees(true);
        form.picker->SetRemoveUsedValues(true);
        QCOMPARE(form.take(),
                 QStringList({u"K9HandlersOnly 11"_s, u"ListAllEmployees 11"_s, u"RemoveUsedValues 11"_s}));
        QCOMPARE(form.box->Text(), u"A11"_s);
    }

    // Saved properties

    void aNewPickerHasItsStartValuesAndAsksTheHostForNothing()
    {
        const EmployeeSite site;
        QWidget container;
        QFont font = container.font();
        font.setPointSizeF(13);
        container.setFont(font);
        EmployeePicker picker(&container);
        QVERIFY(IsNull(picker.Value()));
        QVERIFY(picker.Enabled());
        QVERIFY(picker.ShowName());
        QVERIFY(!picker.RemoveUsedValues() && !picker.K9HandlersOnly() && !picker.ListAllEmployees());
        QCOMPARE(picker.Font()->Size(), 13.0);
        QCOMPARE(picker.BackColor().value(), 0x80000005U);
        QCOMPARE(picker.ForeColor().value(), 0x80000008U);
        const auto* box = picker.findChild<AutoCompleteComboBox*>();
        QCOMPARE(box->Text(), QString());
        QCOMPARE(box->MinQueryLength(), 0);
        QVERIFY(box->ShowClearButton());
        QCOMPARE(site.host.calls(), 0);
    }

    void restoringGoesThroughTheSettersInOrderButForTheTwoOptionsThatGoStraightIn()
    {
        const EmployeeSite site;
        EmployeePicker picker;
        const QSignalSpy changes(&picker, &UserControl::PropertyChanged);
        picker.ReadProperties(
            bagOf({{"K9HandlersOnly", true}, {"ListAllEmployees", true}, {"enabled", false}}));
        QCOMPARE(keysOf(changes), QStringList({u"Enabled"_s, u"ShowName"_s, u"RemoveUsedValues"_s, u"Font"_s,
                                               u"BackColor"_s, u"ForeColor"_s}));
        QVERIFY(picker.K9HandlersOnly() && picker.ListAllEmployees());
        QVERIFY(!picker.Enabled());
        QCOMPARE(picker.findChild<AutoCompleteComboBox*>()->Placeholder(), QString());
    }

    void theBagIsWrittenInOrderAndComesBackWhole()
    {
        const EmployeeSite site;
        QWidget container;
        EmployeePicker picker(&container);
        picker.SetEnabled(false);
        picker.SetShowName(false);
        picker.SetRemoveUsedValues(true);
        picker.SetFont(fontOf(17));
        picker.SetK9HandlersOnly(true);
        picker.SetListAllEmployees(true);
        picker.SetBackColor(Color::rgb(1, 1, 1));
        picker.SetForeColor(Color::rgb(2, 2, 2));
        picker.SetValue(11); // which is not saved
        PropertyBag bag;
        picker.WriteProperties(bag);
        QCOMPARE(keysOf(bag), SavedKeys);
        QStringList problems;
        const PropertyBag saved = PropertyBag::fromJson(bag.toJson(), &problems);
        QCOMPARE(problems, QStringList());
        EmployeePicker restored(&container, {QString(), &saved});
        QVERIFY(!restored.Enabled() && !restored.ShowName() && restored.RemoveUsedValues());
        QVERIFY(restored.K9HandlersOnly() && restored.ListAllEmployees());
        QCOMPARE(restored.Font()->Size(), 17.0);
        QCOMPARE(restored.BackColor(), Color::rgb(1, 1, 1));
        QCOMPARE(restored.ForeColor(), Color::rgb(2, 2, 2));
        QVERIFY(IsNull(restored.Value()));
    }

    void defaultsAreNotWrittenAndAnEmptyBagGivesThem()
    {
        const EmployeeSite site;
        const PropertyBag empty;
        QWidget container;
        EmployeePicker picker(&container, {QString(), &empty});
        QVERIFY(picker.Enabled() && picker.ShowName());
        QVERIFY(!picker.RemoveUsedValues() && !picker.K9HandlersOnly() && !picker.ListAllEmployees());
        QCOMPARE(picker.BackColor().value(), 0x80000005U);
        QCOMPARE(picker.ForeColor().value(), 0x80000008U);
        QCOMPARE(picker.Font()->toQFont(), container.font());
        PropertyBag bag;
        picker.WriteProperties(bag);
        QCOMPARE(keysOf(bag), QStringList());
    }

    void wrongTypesInTheBagGiveTheDefaultsAndTheOthersAreRestored()
    {
        const EmployeeSite site;
        const PropertyBag bag = bagOf({{"Enabled", u"perhaps"_s},
                                       {"ShowName", Null()},
                                       {"RemoveUsedValues", u"true"_s},
                                       {"Font", 12},
                                       {"K9HandlersOnly", u"x"_s},
                                       {"ListAllEmployees", 1},
                                       {"BackColor", u"blue"_s},
                                       {"ForeColor", QVariant::fromValue(Color::rgb(3, 3, 3))}});
        EmployeePicker picker(nullptr, {QString(), &bag});
        QVERIFY(picker.Enabled() && picker.ShowName() && picker.RemoveUsedValues());
        QVERIFY(!picker.K9HandlersOnly() && picker.ListAllEmployees());
        QCOMPARE(picker.BackColor(), SystemColor::WindowBackground);
        QCOMPARE(picker.ForeColor(), Color::rgb(3, 3, 3));
    }

    // In a designer

    void theDesignerShowsTheInstancesNameAndRunTimeDoesNot_data()
    {
        QTest::addColumn<bool>("designer");
        QTest::addColumn<bool>("saved");
        QTest::newRow("new in the designer") << true << false;
        QTest::newRow("restored in the designer") << true << true;
        QTest::newRow("new at run time") << false << false;
        QTest::newRow("restored at run time") << false << true;
    }
    void theDesignerShowsTheInstancesNameAndRunTimeDoesNot()
    {
        QFETCH(bool, designer);
        QFETCH(bool, saved);
        const EmployeeSite site;
        std::optional<DesignTime> scope;
        if (designer)
            scope.emplace();
        const PropertyBag bag;
        EmployeePicker picker(nullptr, {u"Handler"_s, saved ? &bag : nullptr});
        scope.reset();
        const auto* box = picker.findChild<AutoCompleteComboBox*>();
        QCOMPARE(box->Text(), designer ? u"Handler"_s : QString());
        picker.setObjectName(u"Owner"_s);
        QCOMPARE(box->Text(), designer ? u"Owner"_s : QString());
        QCOMPARE(site.host.calls(), 0);
    }

    void otherAmbientValuesThanTheNameLeaveTheDesignersTextAlone()
    {
        const EmployeeSite site;
        const DesignTime designer;
        QWidget container;
        EmployeePicker picker(&container, {u"Handler"_s});
        auto* box = picker.findChild<AutoCompleteComboBox*>();
        box->SetText(u"typed"_s);
        container.setProperty("BackColor", QVariant::fromValue(Color::rgb(1, 2, 3)));
        container.setProperty("ScaleUnits", u"Pixel"_s);
        QCOMPARE(box->Text(), u"typed"_s);
    }
};

TAVRIN_TEST_MAIN(tst_EmployeePickerProperties)
#include "tst_EmployeePickerProperties.moc"
