#include "base/failure/Error.h"
#include "component/ClassRegister.h"
#include "frame/control_frame/Ambient.h"
#include "lookup/AgencyForm.h"
#include "support/Fonts.h"
#include "support/Members.h"
#include "support/TestCase.h"
#include "testing/FakeDesktop.h"
#include "testing/Unhandled.h"

#include <QAccessible>
#include <QSignalSpy>

using namespace Qt::StringLiterals;
using namespace tavrin;
using tavrin::test::AgencyForm;
using tavrin::test::fontOf;
using tavrin::test::keysOf;
using tavrin::test::ownProperties;

namespace {

const QStringList SavedKeys{u"Enabled"_s, u"ShowName"_s,  u"ListAllAgencies"_s, u"RemoveUsedValues"_s,
                            u"Font"_s,    u"BackColor"_s, u"ForeColor"_s};

int lineOf(const QWidget& widget)
{
    return widget.fontMetrics().height() + 8;
}

} // namespace

/// Members, saved properties, lifecycle and layout of `AgencyPicker`.
class tst_AgencyPickerProperties : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void theMembersAndEventsStandInThePublishedOrder()
    {
        const QMetaObject& meta = AgencyPicker::staticMetaObject;
        QCOMPARE(ownProperties(meta),
                 QStringList({u"hWnd"_s, u"BackColor"_s, u"ForeColor"_s, u"Font"_s, u"Value"_s, u"Enabled"_s,
                              u"ShowName"_s, u"ListAllAgencies"_s, u"RemoveUsedValues"_s, u"FullText"_s,
                              u"ShortText"_s}));
        QStringList events;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
            events << QString::fromLatin1(meta.method(i).methodSignature());
        QCOMPARE(events, QStringList({u"Change()"_s, u"ItemSelect()"_s}));
        for (const auto& [info, value] :
             {std::pair("ClassName", "TVBoundControls.AgencyPicker"),
              std::pair("DefaultInterface", "_AgencyPicker"), std::pair("EventInterface", "__AgencyPicker")})
            QCOMPARE(meta.classInfo(meta.indexOfClassInfo(info)).value(), value);
    }

    void theRegisterMakesIt()
    {
        const std::unique_ptr<UserControl> made(
            publicControls().create(u"TVBoundControls.AgencyPicker"_s, nullptr, {}));
        QVERIFY(qobject_cast<AgencyPicker*>(made.get()));
    }

    void aNewOneHasItsDefaultsAndAsksTheHostNothing()
    {
        tavrin::test::FakeHost host;
        const HostInstallation installed(host);
        QWidget window;
        QFont font = window.font();
        font.setPointSizeF(15);
        window.setFont(font);
        AgencyPicker picker(&window);
        QCOMPARE(host.calls(), 0);
        QVERIFY(IsNull(picker.Value()));
        QVERIFY(picker.Enabled() && picker.ShowName());
        QVERIFY(!picker.ListAllAgencies() && !picker.RemoveUsedValues());
        QCOMPARE(picker.BackColor(), SystemColor::WindowBackground);
        QCOMPARE(picker.ForeColor(), SystemColor::WindowText);
        QCOMPARE(picker.Font()->Size(), 15.0);
        QCOMPARE(picker.FullText(), QString());
        QCOMPARE(picker.ShortText(), QString());
        QVERIFY(!picker.findChild<GridComboBox*>()->HasArray());
    }

    void everySetterReportsItsKeyOnce()
    {
        AgencyForm form;
        form.reported.clear();
        form.picker->SetEnabled(false);
        form.picker->SetShowName(false);
        form.picker->SetListAllAgencies(true);
        form.picker->SetRemoveUsedValues(true);
        form.picker->SetFont(std::make_shared<tavrin::Font>());
        form.picker->SetBackColor(Color::rgb(1, 2, 3));
        form.picker->SetForeColor(Color::rgb(4, 5, 6));
        QCOMPARE(form.reported, SavedKeys);
        QVERIFY(!form.combo->isEnabled());
        QCOMPARE(form.combo->BackColor(), Color::rgb(1, 2, 3));
        QCOMPARE(form.combo->ForeColor(), Color::rgb(4, 5, 6));
    }

    void whatIsSavedComesBackInItsOrder()
    {
        AgencyForm form;
        PropertyBag bag;
        form.picker->WriteProperties(bag);
        QCOMPARE(keysOf(bag), QStringList()); // the defaults need not be stored
        form.picker->SetEnabled(false);
        form.picker->SetShowName(false);
        form.picker->SetListAllAgencies(true);
        form.picker->SetRemoveUsedValues(true);
        form.picker->SetFont(fontOf(17));
        form.picker->SetBackColor(Color::rgb(1, 2, 3));
        form.picker->SetForeColor(Color::rgb(4, 5, 6));
        form.picker->WriteProperties(bag);
        QCOMPARE(keysOf(bag), SavedKeys);

        AgencyPicker restored(form.window.get(), {u"agency"_s, &bag});
        QVERIFY(!restored.Enabled() && !restored.ShowName());
        QVERIFY(restored.ListAllAgencies() && restored.RemoveUsedValues());
        QCOMPARE(restored.Font()->Size(), 17.0);
        QCOMPARE(restored.BackColor(), Color::rgb(1, 2, 3));
        QCOMPARE(restored.ForeColor(), Color::rgb(4, 5, 6));
    }

    void readingReportsAllKeysButTheOneThatGoesIntoItsFieldAndReadsTheListOnce()
    {
        AgencyForm form;
        form.combo->RemoveArray();
        form.reported.clear();
        form.host.state().log.clear();
        PropertyBag bag;
        bag.WriteProperty(u"ListAllAgencies"_s, true, false);
        form.picker->ReadProperties(bag);
        QStringList keys = SavedKeys;
        keys.removeOne(u"ListAllAgencies"_s);
        QCOMPARE(form.reported, keys);
        QCOMPARE(form.host.state().log, QStringList({u"FillTableGrid 997 True  False"_s}));
        form.picker->ReadProperties(bag); // the list is there already
        QCOMPARE(form.host.state().log.size(), 1);
    }

    void restoringAtRunTimeLoadsTheListWithoutARaisedEvent()
    {
        tavrin::test::FakeHost host;
        tavrin::test::setAgencies(host);
        const HostInstallation installed(host);
        const PropertyBag bag;
        QWidget form;
        AgencyPicker picker(&form, {u"agency"_s, &bag});
        QCOMPARE(host.state().log, QStringList({u"FillTableGrid 997 False  False"_s}));
        const auto* combo = picker.findChild<GridComboBox*>();
        QCOMPARE(combo->Array().UpperBound(), 4); // the empty row and the active agencies
        QCOMPARE(combo->Bookmark(), QVariant(1));
        QCOMPARE(combo->Text(), QString());
        QVERIFY(IsNull(picker.Value()));

        // One to which somebody can listen before it is restored.
        AgencyPicker second(&form);
        QStringList told;
        tavrin::test::follow(second, told);
        second.ReadProperties(bag); // its first row change, the one from filling, counts for nothing
        QCOMPARE(second.findChild<GridComboBox*>()->Bookmark(), QVariant(1));
        QVERIFY(IsNull(second.Value()));
        QCOMPARE(told, QStringList());
    }

    void inTheDesignerNoListIsLoaded()
    {
        tavrin::test::FakeHost host;
        const HostInstallation installed(host);
        const DesignTime designer;
        const PropertyBag bag;
        AgencyPicker picker(nullptr, {u"agency"_s, &bag});
        const QSignalSpy reports(&picker, &UserControl::PropertyChanged);
        picker.SetListAllAgencies(true);
        QCOMPARE(reports.size(), 1);
        QVERIFY(picker.ListAllAgencies());
        QCOMPARE(host.calls(), 0);
    }

    void aFailureOfTheListWhileRestoringIsTrapped()
    {
        tavrin::test::FakeHost host;
        const HostInstallation installed(host);
        host.failWith(Error(u"no list"_s));
        PropertyBag bag;
        bag.WriteProperty(u"BackColor"_s, u"no colour"_s, QVariant());
        bag.WriteProperty(u"RemoveUsedValues"_s, true, QVariant());
        bag.WriteProperty(u"ForeColor"_s, QVariant::fromValue(Color::rgb(1, 2, 3)), QVariant());
        tavrin::test::Unhandled unhandled;
        tavrin::test::FakeMessageBoxes boxes;
        AgencyPicker picker(nullptr, {u"agency"_s, &bag});
        QCOMPARE(host.calls(), 1); // the list was asked for, and failed
        QCOMPARE(unhandled.texts, QStringList());
        QCOMPARE(boxes.texts(), QStringList());
        QVERIFY(IsNull(picker.Value()));
        QVERIFY(picker.RemoveUsedValues());
        QCOMPARE(picker.BackColor(), SystemColor::WindowBackground);
        QCOMPARE(picker.ForeColor(), Color::rgb(1, 2, 3)); // behind the one that failed
        host.failWith({});
        tavrin::test::setAgencies(host);
        picker.SetValue(30); // it is as usable as before
        QCOMPARE(picker.Value(), QVariant(30));
        QCOMPARE(picker.FullText(), u"County Sheriff"_s);
    }

    void theFontIsThatOfComboLabelAndControlAndAChangeInsideShowsAtOnce()
    {
        AgencyForm form;
        const auto font = std::make_shared<tavrin::Font>();
        form.picker->SetFont(font);
        QCOMPARE(form.combo->Font(), font);
        QCOMPARE(form.label->Font(), font);
        font->SetSize(20);
        QCOMPARE(form.picker->font().pointSizeF(), 20.0);
        QCOMPARE(form.picker->height(), lineOf(*form.picker));
        QCOMPARE(form.combo->height(), form.picker->height());
        QCOMPARE(form.label->height(), form.picker->height());
    }

    void withTheNameTheComboIs1632TwipsWideAndTheLabelTakesTheRest()
    {
        AgencyForm form;
        QCOMPARE(form.combo->width(), 109);
        QCOMPARE(form.label->x(), 112);
        QCOMPARE(form.label->width(), 350 - 112);
        QCOMPARE(form.picker->height(), lineOf(*form.picker));
        form.picker->resize(500, 90);
        QCOMPARE(form.combo->width(), 109);
        QCOMPARE(form.label->width(), 500 - 112);
        QCOMPARE(form.picker->height(), lineOf(*form.picker));
    }

    void withoutTheNameTheComboFillsTheControlAndTheLabelStaysWhereItWas()
    {
        AgencyForm form;
        form.picker->SetShowName(false);
        QCOMPARE(form.combo->width(), 350);
        QVERIFY(form.label->isHidden());
        QCOMPARE(form.label->x(), 112);
        form.picker->resize(300, 20);
        QCOMPARE(form.combo->width(), 300);
        QCOMPARE(form.label->width(), 300 - 112); // set whatever ShowName says
        form.picker->SetShowName(true);
        QVERIFY(form.label->isVisible());
        QCOMPARE(form.combo->width(), 109);
    }

    void aControlNarrowerThanItsComboGrowsToIt()
    {
        AgencyForm form;
        form.picker->resize(50, 20);
        QCOMPARE(form.picker->width(), 109);
        QCOMPARE(form.label->width(), 0);
    }

    void theComboIsReachedByTheKeyboardAndBearsTheControlsName()
    {
        AgencyForm form;
        QVERIFY(form.isReady());
        form.picker->setAccessibleName(u"Responding agency"_s);
        QCOMPARE(QAccessible::queryAccessibleInterface(form.combo)->text(QAccessible::Name),
                 u"Responding agency"_s);
        form.other->setFocus();
        form.picker->setFocus();
        QVERIFY(form.combo->hasFocus());
    }
};

TAVRIN_TEST_MAIN(tst_AgencyPickerProperties)
#include "tst_AgencyPickerProperties.moc"
