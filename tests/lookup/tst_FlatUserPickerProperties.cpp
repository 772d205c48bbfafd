#include "base/values/Variant.h"
#include "frame/control_frame/PropertyBag.h"
#include "lookup/FlatPickerForm.h"
#include "support/Fonts.h"
#include "support/Members.h"
#include "support/TestCase.h"
#include "testing/FakeDesktop.h"
#include "testing/Unhandled.h"

#include <QRegularExpression>

#include <optional>

using namespace tavrin;
using namespace tavrin::test;
using namespace Qt::StringLiterals;

namespace {

const QStringList ReportedKeys{u"Enabled"_s,   u"ShowName"_s,  u"RemoveUsedValues"_s, u"Font"_s,
                               u"BackColor"_s, u"ForeColor"_s, u"Caption"_s,          u"Required"_s};

/// Makes each property differ from its default.
void changeAll(FlatUserPicker& picker)
{
    picker.SetRequired(true);
    picker.SetCaption(u"Officer"_s);
    picker.SetEnabled(false);
    picker.SetShowName(false);
    picker.SetRemoveUsedValues(true);
    picker.SetFont(fontOf(21));
    picker.SetIncludeInactive(true);
    picker.SetForeColor(Color::rgb(2, 2, 2));
    picker.SetBackColor(Color::rgb(1, 1, 1));
}

} // namespace

/// What is saved of `FlatUserPicker`, its defaults, and what a designer shows.
class tst_FlatUserPickerProperties : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // A new picker

    void aNewPickerHasItsDefaultsTheContainersFontAndTheThemesColours()
    {
        PeopleSite site;
        QWidget form;
        QFont font = form.font();
        font.setPointSize(17);
        form.setFont(font);
        const FlatUserPicker picker(&form);
        QVERIFY(IsNull(picker.Value()));
        QCOMPARE(picker.Caption(), QString());
        QVERIFY(!picker.Required());
        QVERIFY(picker.Enabled());
        QVERIFY(picker.ShowName());
        QVERIFY(!picker.IncludeInactive());
        QVERIFY(!picker.RemoveUsedValues());
        QCOMPARE(picker.Font()->Size(), 17.0);
        QCOMPARE(picker.BackColor(), site.host.state().textBoxColors.Normal.BackColor);
        const auto* box = picker.findChild<AutoCompleteTextBox*>();
        QCOMPARE(box->Placeholder(), u"Type to search"_s);
        QCOMPARE(box->Text(), QString());
        QVERIFY(!box->hasFrame());
    }

    void aNewPickerAsksForNoListBeforeItNeedsOne()
    {
        PeopleSite site;
        const FlatUserPicker picker;
        QCOMPARE(site.host.state().log.filter(u"new "_s), QStringList());
        QCOMPARE(site.host.state().log.filter(u"Document"_s), QStringList());
        QCOMPARE(site.host.state().log.first(), u"Events"_s); // listened to before anything else
    }

    void theConstituentsStandInTheirOrderFromTheTop()
    {
        const UserForm form;
        const QObjectList children = form.picker->children();
        const QList<QWidget*> fromTheTop{form.linkGroup, form.box, form.label, form.tag, form.shape};
        for (qsizetype i = 1; i < fromTheTop.size(); ++i)
            QVERIFY(children.indexOf(fromTheTop.at(i - 1)) > children.indexOf(fromTheTop.at(i)));
        QCOMPARE(form.link->parentWidget(), form.linkGroup);
    }

    // Reading

    void restoringRunsThePublicSettersInTheirOrderButThatOfIncludeInactive()
    {
        UserForm form;
        Journal journal(form.picker);
        form.picker->ReadProperties(
            bagOf({{"Required", true}, {"Caption", u"Officer"_s}, {"IncludeInactive", true}}));
        QCOMPARE(journal.entries, ReportedKeys);
        QVERIFY(form.picker->IncludeInactive());
    }

    void aBagWithoutKeysGivesTheDefaults()
    {
        UserForm form;
        changeAll(*form.picker);
        form.picker->ReadProperties(PropertyBag());
        QVERIFY(form.picker->Enabled());
        QVERIFY(form.picker->ShowName());
        QVERIFY(!form.picker->RemoveUsedValues());
        QVERIFY(!form.picker->IncludeInactive());
        QCOMPARE(form.picker->Font()->toQFont(), form.window.font());
        QCOMPARE(form.picker->Caption(), QString());
        QVERIFY(!form.picker->Required());
        // The colours' defaults gave way to the theme's when the caption behind them was restored.
        const TextBoxColorSet& theme = form.host.state().textBoxColors.Normal;
        QCOMPARE(form.picker->BackColor(), theme.BackColor);
        QCOMPARE(form.picker->ForeColor(), theme.ForeColor);
        QVERIFY(form.box->isEnabled());
    }

    void anOldFormThatHoldsOnlyListAllUsersLoadsWithIncludeInactive_data()
    {
        QTest::addColumn<QVariant>("listAllUsers");
        QTest::addColumn<QVariant>("includeInactive");
        QTest::addColumn<bool>("expected");
        QTest::newRow("neither") << QVariant() << QVariant() << false;
        QTest::newRow("old true") << QVariant(true) << QVariant() << true;
        QTest::newRow("old false") << QVariant(false) << QVariant() << false;
        QTest::newRow("new true") << QVariant() << QVariant(true) << true;
        QTest::newRow("new false wins over old true") << QVariant(true) << QVariant(false) << false;
        QTest::newRow("new true wins over old false") << QVariant(false) << QVariant(true) << true;
        QTest::newRow("old as a number") << QVariant(-1) << QVariant() << true;
        QTest::newRow("old that is no truth value") << QVariant(u"perhaps"_s) << QVariant() << false;
        QTest::newRow("new beside an old that is none") << QVariant(u"perhaps"_s) << QVariant(true) << true;
        QTest::newRow("new that is none beside an old") << QVariant(true) << QVariant(u"perhaps"_s) << true;
    }
    void anOldFormThatHoldsOnlyListAllUsersLoadsWithIncludeInactive()
    {
        QFETCH(QVariant, listAllUsers);
        QFETCH(QVariant, includeInactive);
        QFETCH(bool, expected);
        PropertyBag bag;
        bag.WriteProperty(u"ListAllUsers"_s, listAllUsers, QVariant());
        bag.WriteProperty(u"IncludeInactive"_s, includeInactive, QVariant());
        const PeopleSite site;
        FlatUserPicker picker(nullptr, {QString(), &bag});
        QCOMPARE(picker.IncludeInactive(), expected);
        PropertyBag saved;
        picker.WriteProperties(saved);
        QVERIFY(!saved.contains(u"ListAllUsers"_s));
        QCOMPARE(saved.contains(u"IncludeInactive"_s), expected); // False is the default
    }

    void aPropertyThatFailsLeavesTheFollowingRestoredAndShowsNothing()
    {
        PeopleSite site;
        const PropertyBag bag = bagOf({{"Enabled", u"perhaps"_s},
                                       {"Font", 12},
                                       {"IncludeInactive", true},
                                       {"BackColor", u"blue"_s},
                                       {"Caption", u"Officer"_s},
                                       {"Required", true}});
        const Unhandled unhandled;
        FakeMessageBoxes boxes;
        QWidget form;
        FlatUserPicker picker(&form);
        picker.SetEnabled(false);
        const FontPtr font = fontOf(19);
        picker.SetFont(font);
        picker.ReadProperties(bag);
        QVERIFY(!picker.Enabled()); // what cannot be restored keeps what it had
        QCOMPARE(picker.Font(), font);
        QCOMPARE(picker.Font()->Size(), 19.0);
        QVERIFY(picker.IncludeInactive());
        QCOMPARE(picker.Caption(), u"Officer"_s);
        QVERIFY(picker.Required());
        QCOMPARE(picker.BackColor(), site.host.state().textBoxColors.Disabled.BackColor);
        QCOMPARE(unhandled.texts, QStringList());
        QCOMPARE(boxes.texts(), QStringList());
    }

    void aHostThatFailsLeavesThePickerRestored()
    {
        PeopleSite site;
        const PropertyBag bag = bagOf({{"ShowName", false}, {"Caption", u"Officer"_s}, {"Required", true}});
        const Unhandled unhandled;
        FakeMessageBoxes boxes;
        FlatUserPicker picker;
        const int callsBefore = site.host.calls();
        site.host.failWith(Error(u"no theme"_s));
        picker.ReadProperties(bag);
        QVERIFY(site.host.calls() > callsBefore); // it was asked, and failed
        QVERIFY(!picker.ShowName());
        QCOMPARE(picker.Caption(), u"Officer"_s);
        QVERIFY(picker.Required());
        QCOMPARE(unhandled.texts, QStringList());
        QCOMPARE(boxes.texts(), QStringList());
        site.host.failWith({});
        picker.SetValue(u"user:asmith"_s);
        QCOMPARE(picker.Value(), QVariant(u"user:asmith"_s));
        QCOMPARE(picker.findChild<Label*>(u"lblCaption"_s)->Caption(), u"Officer*"_s);
    }

    // Writing

    void theBagIsWrittenInOrderWithoutListAllUsersAndComesBackWhole()
    {
        UserForm form;
        changeAll(*form.picker);
        PropertyBag bag;
        form.picker->WriteProperties(bag);
        QCOMPARE(keysOf(bag), QStringList({u"Enabled"_s, u"ShowName"_s, u"RemoveUsedValues"_s, u"Font"_s,
                                           u"IncludeInactive"_s, u"BackColor"_s, u"ForeColor"_s, u"Caption"_s,
                                           u"Required"_s}));
        QStringList problems;
        const PropertyBag saved = PropertyBag::fromJson(bag.toJson(), &problems);
        QCOMPARE(problems, QStringList());
        const FlatUserPicker restored(nullptr, {QString(), &saved});
        QVERIFY(!restored.Enabled());
        QVERIFY(!restored.ShowName());
        QVERIFY(restored.RemoveUsedValues());
        QCOMPARE(restored.Font()->Size(), 21.0);
        QVERIFY(restored.IncludeInactive());
        QCOMPARE(restored.Caption(), u"Officer"_s);
        QVERIFY(restored.Required());
        // The colours gave way to the theme's when the caption behind them was restored.
        QCOMPARE(restored.BackColor(), form.host.state().textBoxColors.Disabled.BackColor);
        QCOMPARE(restored.ForeColor(), form.host.state().textBoxColors.Disabled.ForeColor);
    }

    void theSavedColoursAreTheBoxs()
    {
        const UserForm form;
        form.picker->SetBackColor(Color::rgb(1, 1, 1));
        form.picker->SetForeColor(Color::rgb(2, 2, 2));
        QCOMPARE(form.box->BackColor(), Color::rgb(1, 1, 1));
        QCOMPARE(form.box->ForeColor(), Color::rgb(2, 2, 2));
        PropertyBag bag;
        form.picker->WriteProperties(bag);
        QCOMPARE(bag.ReadProperty(u"BackColor"_s, QVariant()).value<Color>(), Color::rgb(1, 1, 1));
        QCOMPARE(bag.ReadProperty(u"ForeColor"_s, QVariant()).value<Color>(), Color::rgb(2, 2, 2));
        form.picker->SetBackColor(SystemColor::WindowBackground);
        form.picker->SetForeColor(SystemColor::WindowText);
        form.picker->WriteProperties(bag);
        QVERIFY(!bag.contains(u"BackColor"_s)); // the default
        QVERIFY(!bag.contains(u"ForeColor"_s));
    }

    void defaultsAreNotWrittenWhileTheThemesColoursAreTheSystems()
    {
        PeopleSite site;
        site.host.state().textBoxColors = {};
        QWidget form;
        FlatUserPicker picker(&form);
        PropertyBag bag;
        picker.WriteProperties(bag);
        QCOMPARE(keysOf(bag), QStringList());
    }

    void theValueIsNeverSaved()
    {
        const UserForm form;
        form.picker->SetValue(u"user:asmith"_s);
        PropertyBag bag;
        form.picker->WriteProperties(bag);
        QVERIFY(!keysOf(bag).isEmpty()); // the theme's colours
        QVERIFY(!bag.contains(u"Value"_s));
        PropertyBag forged = bag;
        forged.WriteProperty(u"Value"_s, u"user:jobrien"_s, QVariant());
        form.picker->ReadProperties(forged); // nor read
        QCOMPARE(form.picker->Value(), QVariant(u"user:asmith"_s));
    }

    // Designer

    void theDesignerShowsTheInstancesNameAndCallsNoHost()
    {
        PeopleSite site;
        std::optional<DesignTime> designer(std::in_place);
        QWidget form;
        FlatUserPicker fresh(&form, {u"AssignedTo"_s});
        const PropertyBag bag = bagOf({{"Caption", u"Officer"_s}});
        FlatUserPicker restored(&form, {u"Second"_s, &bag});
        designer.reset();
        const auto* freshBox = fresh.findChild<AutoCompleteTextBox*>();
        QCOMPARE(freshBox->Text(), u"AssignedTo"_s);
        QCOMPARE(restored.findChild<AutoCompleteTextBox*>()->Text(), u"Second"_s);
        fresh.setObjectName(u"Renamed"_s);
        QCOMPARE(freshBox->Text(), u"Renamed"_s);
        QVERIFY(!site.host.state().hub.CacheRefreshed.hasHandlers());
        QCOMPARE(site.host.state().log.filter(QRegularExpression(u"Cache|Document|TextBoxColors|Events"_s)),
                 QStringList());
    }

    void atRunTimeTheNameOfTheInstanceIsNotShown()
    {
        UserForm form;
        form.picker->setObjectName(u"Renamed"_s);
        QCOMPARE(form.box->Text(), QString());
    }
};

TAVRIN_TEST_MAIN(tst_FlatUserPickerProperties)
#include "tst_FlatUserPickerProperties.moc"
