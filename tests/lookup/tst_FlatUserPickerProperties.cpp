#include "base/values/Variant.h"
#include "frame/control_frame/PropertyBag.h"
#include "lookup/FlatPickerForm.h"
#include "support/FakeDesktop.h"
#include "support/Fonts.h"
#include "support/Members.h"
#include "support/TestCase.h"
#include "support/Unhandled.h"

using namespace tavrin;
using namespace Qt::StringLiterals;
using tavrin::test::bagOf;
using tavrin::test::fontOf;
using tavrin::test::Journal;
using tavrin::test::keysOf;
using tavrin::test::PeopleSite;
using tavrin::test::UserForm;

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

/// Saved properties, the designer and the life of `FlatUserPicker`.
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
        const tavrin::test::Unhandled unhandled;
        tavrin::test::FakeMessageBoxes boxes;
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
        const tavrin::test::Unhandled unhandled;
        tavrin::test::FakeMessageBoxes boxes;
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

    void theFrameFollowsTheContainersBackColour()
    {
        UserForm form;
        QCOMPARE(form.picker->FrameBackColor(), Color(SystemColor::ButtonFace));
        for (const Color color : {Color::rgb(9, 8, 7), Color::rgb(6, 5, 4)}) {
            form.window.setProperty("BackColor", QVariant::fromValue(color));
            QCOMPARE(form.picker->FrameBackColor(), color);
        }
        form.window.setProperty("BackColor", QVariant()); // which takes the member away
        QCOMPARE(form.picker->FrameBackColor(), Color(SystemColor::ButtonFace));
    }

    // Show, font

    void showRefreshesAndLaysOut()
    {
        PeopleSite site;
        QWidget form;
        FlatUserPicker picker(&form);
        QLineEdit other(&form);
        other.move(0, 200);
        other.setFocus();
        TextBoxColors& colors = site.host.state().textBoxColors;
        colors.Normal.BorderColor = Color::rgb(200, 0, 0);
        auto* shape = picker.findChild<BoxShape*>(u"shpBorder"_s);
        QVERIFY(shape->BorderColor() != Color::rgb(200, 0, 0));
        const QRect place = shape->geometry();
        shape->setGeometry(1, 1, 1, 1);
        form.show();
        form.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&form));
        QCOMPARE(shape->BorderColor(), Color::rgb(200, 0, 0));
        QCOMPARE(shape->geometry(), place);
        QCOMPARE(shape->width(), picker.width());
    }

    void aChangeInsideTheFontShowsAtOnceAndReportsNothing()
    {
        UserForm form;
        Journal journal(form.picker);
        const int height = form.picker->height();
        form.picker->Font()->SetSize(form.picker->Font()->Size() * 2);
        QVERIFY(form.picker->height() > height);
        QCOMPARE(form.tag->Font()->Size(), form.picker->Font()->Size() * 0.95);
        QCOMPARE(journal.entries, QStringList());
    }

    void aFontThatWasReplacedIsNoLongerFollowed()
    {
        UserForm form;
        const FontPtr old = form.picker->Font();
        const FontPtr font = fontOf(10);
        form.picker->SetFont(font);
        const QSize size = form.picker->size();
        form.host.state().log.clear();
        old->SetSize(30);
        QCOMPARE(form.host.state().log, QStringList());
        QCOMPARE(form.picker->size(), size);
        QCOMPARE(form.tag->Font()->Size(), 9.5);
        QCOMPARE(form.box->Font(), font);
        QCOMPARE(form.box->font().pointSizeF(), 10.0);
        font->SetSize(20); // the new one is
        QVERIFY(form.picker->height() > size.height());
        QCOMPARE(form.tag->Font()->Size(), 19.0);
    }

    // Caches

    void theListsAreClonedOnceAndAfreshAfterACacheRefresh()
    {
        UserForm form;
        const auto asked = [&](const char* what) {
            return form.host.state().log.count(QString::fromLatin1(what));
        };
        form.found(u"a"_s);
        form.found(u"b"_s);
        form.picker->SetValue(u"user:asmith"_s);
        form.picker->SetValue(u"team:3"_s);
        QCOMPARE(asked("UsersCache.Document"), 1);
        QCOMPARE(asked("TableCodeCache.Document 228"), 1);
        form.host.state().hub.CacheRefreshed.raise({});
        QCOMPARE(asked("UsersCache.Document"), 1); // at the next use, not before
        form.picker->SetShowName(false);
        form.found(u"a"_s);
        QCOMPARE(asked("UsersCache.Document"), 2);
        QCOMPARE(asked("TableCodeCache.Document 228"), 2);
        QCOMPARE(asked("new UsersCache"), 1); // the caches themselves are kept
        QCOMPARE(asked("new TableCodeCache"), 1);
    }

    void aUserWhoIsNewIsFoundOnlyAfterTheCacheRefresh()
    {
        UserForm form;
        QCOMPARE(form.found(u"newman"_s).size(), 0);
        form.host.state().users = tavrin::test::xmlOf(
            u"<Users>"_s + tavrin::test::userRecord(u"n"_s, true, u"Al"_s, u"Newman"_s, u"N"_s, u"1"_s) +
            u"</Users>"_s);
        QCOMPARE(form.found(u"newman"_s).size(), 0);
        form.host.state().hub.CacheRefreshed.raise({{u"Users"_s}});
        QCOMPARE(form.found(u"newman"_s).size(), 1);
    }

    void aCacheRefreshTouchesNeitherValueNorTag()
    {
        UserForm form;
        form.picker->SetValue(u"user:asmith"_s);
        Journal journal(form.picker);
        form.host.state().users = XmlDocument();
        form.host.state().userNames.clear();
        form.host.state().hub.CacheRefreshed.raise({});
        QCOMPARE(form.picker->Value(), QVariant(u"user:asmith"_s));
        QCOMPARE(form.tag->Caption(), u"Ann Smith (user)"_s);
        QVERIFY(form.tag->isVisible());
        QCOMPARE(journal.entries, QStringList());
    }

    void aListWithoutRecordsOrWithoutARootFindsNothingAndRaisesNothing()
    {
        UserForm form;
        QVERIFY(!form.found(u"a"_s).isEmpty());
        form.host.state().users = XmlDocument();
        form.host.setTable(Tables::Team, {});
        form.host.state().hub.CacheRefreshed.raise({});
        QCOMPARE(form.found(u"a"_s), QStringList());
        form.picker->SetIncludeInactive(true);
        QCOMPARE(form.found(QString()), QStringList());
        form.picker->SetValue(u"user:asmith"_s);
        QCOMPARE(form.picker->Value(), QVariant(u"user:asmith"_s));
    }

    void theHostsListKeepsItsPropertiesAndIsNotChanged()
    {
        UserForm form;
        const QString before = form.host.state().users.xml();
        QVERIFY(!form.found(u"a"_s).isEmpty());
        QVERIFY(!form.host.state().users.property(u"SelectionLanguage"_s).isValid());
        QCOMPARE(form.host.state().users.xml(), before);
    }

    void whatIsChosenMayGoWithItsList()
    {
        UserForm form;
        QVERIFY(form.isReady());
        form.choose(u"smith"_s);
        form.host.state().users = XmlDocument();
        form.host.state().hub.CacheRefreshed.raise({});
        QCOMPARE(form.box->SelectedItem().childElement(u"UserId"_s).text(), u"asmith"_s);
        form.clickLink();
        QVERIFY(IsNull(form.picker->Value()));
    }

    // The end

    void anEndedPickerListensNoLonger()
    {
        PeopleSite site;
        {
            const FlatUserPicker picker;
            QVERIFY(site.host.state().hub.CacheRefreshed.hasHandlers());
        }
        QVERIFY(!site.host.state().hub.CacheRefreshed.hasHandlers());
    }

    void thePickerMayDieWithItsListOpenAndWithTheFocus()
    {
        UserForm form;
        QVERIFY(form.isReady());
        form.type(u"smith"_s);
        QVERIFY(form.box->ListIsOpen());
        const QPointer<QWidget> list(form.list()->window());
        QVERIFY(list && list != &form.window && list->isVisible());
        delete form.picker;
        QVERIFY(!list);
        form.host.state().hub.CacheRefreshed.raise({});
        for (const QWidget* window : QApplication::topLevelWidgets())
            QVERIFY(window == &form.window || !window->isVisible());
    }

    void aFollowerMayDeleteThePickerWhileAnEntryIsTaken_data()
    {
        QTest::addColumn<bool>("byMouse");
        QTest::newRow("Enter") << false;
        QTest::newRow("click in the list") << true;
    }
    void aFollowerMayDeleteThePickerWhileAnEntryIsTaken()
    {
        QFETCH(bool, byMouse);
        UserForm form;
        QVERIFY(form.isReady());
        const QPointer<FlatUserPicker> picker(form.picker);
        int selected = 0;
        connect(form.picker, &SearchPicker::ItemSelect, this, [&] {
            ++selected;
            delete form.picker;
        });
        form.type(u"smith"_s);
        const QPointer<QWidget> list(form.list()->window());
        if (byMouse) {
            QTest::mouseClick(form.list()->viewport(), Qt::LeftButton, {}, form.list()->rowRect(0).center());
        } else {
            form.press(Qt::Key_Return);
        }
        QCOMPARE(selected, 1);
        QVERIFY(!picker);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!list);
    }
};

TAVRIN_TEST_MAIN(tst_FlatUserPickerProperties)
#include "tst_FlatUserPickerProperties.moc"
