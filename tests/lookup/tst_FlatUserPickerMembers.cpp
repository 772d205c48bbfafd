#include "base/values/Variant.h"
#include "lookup/FlatPickerForm.h"
#include "support/Members.h"
#include "support/RaisedError.h"
#include "support/TestCase.h"
#include "testing/Unhandled.h"
#include "widgets/drawing/IconGlyphs.h"

#include <QVariantList>

using namespace tavrin;
using namespace Qt::StringLiterals;
using tavrin::test::Journal;
using tavrin::test::ownProperties;
using tavrin::test::raisedBy;
using tavrin::test::UserForm;

namespace {

const QVariant Jack = u"user:jobrien"_s;
const QVariant Ann = u"user:asmith"_s;
const QVariant Traffic = u"team:3"_s;

} // namespace

/// The clear link, the members besides the value, and failures of the host of `FlatUserPicker`.
class tst_FlatUserPickerMembers : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void theMembersAndEventsStandInThePublishedOrder()
    {
        const QMetaObject& meta = FlatUserPicker::staticMetaObject;
        QCOMPARE(ownProperties(meta),
                 QStringList({u"hWnd"_s, u"Caption"_s, u"Required"_s, u"BackColor"_s, u"ForeColor"_s,
                              u"Font"_s, u"Value"_s, u"Enabled"_s, u"ShowName"_s, u"IncludeInactive"_s,
                              u"RemoveUsedValues"_s, u"FullText"_s, u"ShortText"_s}));
        const int change = meta.indexOfSignal("Change()");
        QVERIFY(change >= 0);
        QVERIFY(change < meta.indexOfSignal("ItemSelect()"));
        QCOMPARE(meta.classInfo(meta.indexOfClassInfo("ClassName")).value(),
                 "TVBoundControls.FlatUserPicker");
    }

    void theReadOnlyMembersCannotBeSet()
    {
        const QMetaObject& meta = FlatUserPicker::staticMetaObject;
        for (const char* name : {"hWnd", "FullText", "ShortText"})
            QVERIFY(!meta.property(meta.indexOfProperty(name)).isWritable());
    }

    // Clear link

    void theLinkOpensTheWholeListWhileNothingIsChosen()
    {
        UserForm form;
        QVERIFY(form.isReady());
        Journal journal(form.picker);
        form.clickLink();
        QVERIFY(form.box->ListIsOpen());
        QCOMPARE(form.rows(),
                 QStringList({u"Jack O'Brien User (jobrien)"_s, u"Ann Smith User (asmith)"_s,
                              u"Ninel Zed User (9)"_s, u"User (bare)"_s, u"TRAF Team"_s, u"K9 Team"_s}));
        QVERIFY(form.box->hasFocus());
        QCOMPARE(journal.entries, QStringList());
        form.clickLink(); // and the second click closes it
        QVERIFY(!form.box->ListIsOpen());
    }

    void theLinkOpensTheWholeListAlsoOverTypedText()
    {
        UserForm form;
        QVERIFY(form.isReady());
        form.type(u"smith"_s);
        form.clickLink();
        QCOMPARE(form.rows().size(), 6);
    }

    void theLinkClearsAValueAndRaisesChangeAlone()
    {
        UserForm form;
        QVERIFY(form.isReady());
        form.picker->SetValue(Jack);
        Journal journal(form.picker);
        form.clickLink();
        QVERIFY(IsNull(form.picker->Value()));
        QCOMPARE(form.box->Text(), QString());
        QVERIFY(!form.tag->isVisible());
        QVERIFY(!form.box->ListIsOpen());
        QCOMPARE(journal.entries, QStringList{u"Change"_s});
    }

    void theLinkOfADisabledPickerDoesNothing()
    {
        UserForm form;
        form.picker->SetValue(Jack);
        form.picker->SetEnabled(false);
        form.clickLink();
        QCOMPARE(form.picker->Value(), Jack);
    }

    // Other members

    void theTextsAreEmptyForNullAndElseTheEmployeeListsForTheRawValue()
    {
        UserForm form;
        form.host.state().employeeFullTexts.insert(u"user:jobrien"_s, u"Full of the raw value"_s);
        form.host.state().employeeShortTexts.insert(u"user:jobrien"_s, u"Short of the raw value"_s);
        const int calls = form.host.calls();
        QCOMPARE(form.picker->FullText(), QString());
        QCOMPARE(form.picker->ShortText(), QString());
        QCOMPARE(form.host.calls(), calls);
        form.picker->SetValue(Jack);
        form.host.state().log.clear();
        QCOMPARE(form.picker->FullText(), u"Full of the raw value"_s);
        QCOMPARE(form.picker->ShortText(), u"Short of the raw value"_s);
        QCOMPARE(form.host.state().log,
                 QStringList({u"new EmployeeListCache"_s, u"EmployeeListCache.FullText"_s,
                              u"new EmployeeListCache"_s, u"EmployeeListCache.ShortText"_s}));
    }

    void eachSetterReportsItsKeyOnceAsTheLastThing()
    {
        UserForm form;
        Journal journal(form.picker);
        form.picker->SetBackColor(Color::rgb(1, 1, 1));
        form.picker->SetForeColor(Color::rgb(2, 2, 2));
        form.picker->SetFont(std::make_shared<Font>());
        form.picker->SetEnabled(true);
        form.picker->SetShowName(true);
        form.picker->SetIncludeInactive(false);
        form.picker->SetRemoveUsedValues(false);
        QCOMPARE(journal.entries,
                 QStringList({u"BackColor"_s, u"ForeColor"_s, u"Font"_s, u"Enabled"_s, u"ShowName"_s,
                              u"IncludeInactive"_s, u"RemoveUsedValues"_s})); // also of an equal value
    }

    void captionAndRequiredReportAChangeOnlyBehindTheirRefreshAndAnEqualOneDoesNothing()
    {
        UserForm form;
        Journal journal(form.picker);
        journal.seen = [&] { return form.label->Caption(); };
        form.picker->SetCaption(QString());
        form.picker->SetRequired(false);
        QCOMPARE(journal.entries, QStringList());
        form.picker->SetCaption(u"Officer"_s);
        form.picker->SetRequired(true);
        QCOMPARE(journal.take(), QStringList({u"Caption"_s, u"Required"_s}));
        QCOMPARE(journal.values, QVariantList({u"Officer"_s, u"Officer*"_s}));
        const int calls = form.host.calls();
        form.picker->SetCaption(u"Officer"_s);
        form.picker->SetRequired(true);
        QCOMPARE(journal.entries, QStringList());
        QCOMPARE(form.host.calls(), calls); // not even a refresh
    }

    void theBoxsColoursShowOnlyUntilTheNextRefresh()
    {
        UserForm form;
        const Color own = Color::rgb(1, 2, 3);
        form.picker->SetBackColor(own);
        form.picker->SetForeColor(own);
        QCOMPARE(form.box->BackColor(), own);
        QCOMPARE(form.picker->BackColor(), own);
        QCOMPARE(form.box->ForeColor(), own);
        QCOMPARE(form.picker->ForeColor(), own);
        form.picker->SetRequired(true);
        QCOMPARE(form.picker->BackColor(), form.host.state().textBoxColors.Normal.BackColor);
        QCOMPARE(form.picker->ForeColor(), form.host.state().textBoxColors.Normal.ForeColor);
    }

    void theSearchOptionsTouchNoLook()
    {
        UserForm form;
        form.host.state().log.clear();
        form.picker->SetIncludeInactive(true);
        form.picker->SetRemoveUsedValues(true);
        QCOMPARE(form.host.state().log, QStringList());
        QVERIFY(form.picker->IncludeInactive());
        QVERIFY(form.picker->RemoveUsedValues());
    }

    void disablingRefreshesAndLeavesTheValue()
    {
        UserForm form;
        form.picker->SetValue(Jack);
        bool refreshed = false;
        connect(form.picker, &UserControl::PropertyChanged, this, [&] {
            refreshed = form.shape->BackColor() == form.host.state().textBoxColors.Disabled.BackColor;
        });
        form.picker->SetEnabled(false);
        QVERIFY(!form.picker->Enabled());
        QVERIFY(refreshed);
        QCOMPARE(form.picker->Value(), Jack);
    }

    void showNameShowsTheTagEvenOfAnEmptyPickerUntilTheNextRefresh()
    {
        UserForm form;
        QVERIFY(!form.tag->isVisible());
        form.picker->SetShowName(true);
        QVERIFY(form.tag->isVisible()); // the setter's own word, and meant
        form.picker->SetRequired(true);
        QVERIFY(!form.tag->isVisible());
    }

    void theFontIsSharedByReferenceAndNoneIsIgnored()
    {
        UserForm form;
        const auto font = std::make_shared<Font>();
        form.picker->SetFont(font);
        QCOMPARE(form.picker->Font(), font);
        QCOMPARE(form.box->Font(), font);
        form.picker->SetFont(nullptr);
        QCOMPARE(form.picker->Font(), font);
    }

    // Failures of the host

    void aFailureOfTheSearchIsToldOnceAndThePickerStaysUsable()
    {
        UserForm form;
        QVERIFY(form.isReady());
        const tavrin::test::Unhandled unhandled;
        form.box->setFocus();
        form.host.failWith(Error(u"no list"_s));
        form.type(u"s"_s);
        QCOMPARE(unhandled.texts.size(), 1);
        QVERIFY(unhandled.texts.first().endsWith(u": no list"_s));
        QVERIFY(!form.box->ListIsOpen());
        form.clickLink();
        QCOMPARE(unhandled.texts.size(), 2);
        form.host.failWith({});
        form.choose(u"mith"_s);
        QCOMPARE(form.picker->Value(), Ann);
        QCOMPARE(unhandled.texts.size(), 2);
    }

    void aFailureOfTheListsReachesWhoeverPutsTheValueAndItStaysAsItWas()
    {
        UserForm form;
        form.picker->SetValue(Traffic);
        Journal journal(form.picker);
        form.host.failWith(Error(u"no list"_s));
        QVERIFY_EXCEPTION_THROWN(form.picker->SetValue(Jack), Error);
        QCOMPARE(form.picker->Value(), Traffic);
        QCOMPARE(journal.entries, QStringList());
        form.host.failWith({});
        form.picker->SetValue(Jack);
        QCOMPARE(form.tag->Caption(), u"Jack O'Brien (user)"_s);
    }

    void aLoadThatTheListsFailLeavesNothingOfTheRecordBefore_data()
    {
        QTest::addColumn<QString>("operation");
        QTest::addColumn<QVariant>("value");
        QTest::newRow("users") << u"UsersCache.Document"_s << Jack;
        QTest::newRow("names") << u"UserDisplayName"_s << Jack;
        QTest::newRow("all") << QString() << Jack;
        QTest::newRow("Null without the theme") << u"TextBoxColors"_s << Null();
    }
    void aLoadThatTheListsFailLeavesNothingOfTheRecordBefore()
    {
        QFETCH(QString, operation);
        QFETCH(QVariant, value);
        UserForm form;
        QVERIFY(form.isReady());
        form.contract().SetValue(Traffic, nullptr);
        QCOMPARE(form.picker->accessibleDescription(), u"TRAF (team)"_s);
        QVERIFY(!form.box->isVisible());
        Journal journal(form.picker);
        const Error failure(u"no list"_s, 17);
        if (operation.isEmpty())
            form.host.failWith(failure);
        else
            form.host.state().failures.emplace(operation, failure);
        const Error error = raisedBy([&] { form.contract().SetValue(value, nullptr); });
        QCOMPARE(error.Number, 17);
        QVERIFY(form.box->isVisible()); // at once, before anything else lays the picker out
        QVERIFY(!form.tag->isVisible());
        QCOMPARE(form.link->Symbol(), DropDownGlyph);
        QCOMPARE(form.link->ToolTipText(), QString());
        QCOMPARE(form.picker->accessibleDescription(), QString());
        const QRect place = form.box->geometry();
        form.host.failWith({});
        form.host.state().failures.clear();
        QVERIFY(IsNull(form.contract().GetValue()));
        QCOMPARE(form.box->Text(), QString());
        const bool isThemeAway = operation.isEmpty() || IsNull(value);
        QCOMPARE(journal.take(), isThemeAway ? QStringList() : QStringList{u"Change"_s});
        form.picker->SetRequired(true);        // lays the picker out anew
        QCOMPARE(form.box->geometry(), place); // it stood where it belongs
        journal.take();
        form.choose(u"mith"_s);
        QCOMPARE(form.picker->Value(), Ann);
        QCOMPARE(journal.take(), QStringList({u"Change"_s, u"ItemSelect"_s}));
        form.contract().SetValue(Jack, nullptr);
        QCOMPARE(form.tag->Caption(), u"Jack O'Brien (user)"_s);
    }

    void aLoadThatIsRefusedLeavesTheValueAsItsWordsSay()
    {
        UserForm form;
        form.contract().SetValue(Traffic, nullptr);
        Journal journal(form.picker);
        QVERIFY_EXCEPTION_THROWN(form.contract().SetValue(u"12"_s, nullptr), Error);
        QCOMPARE(form.contract().GetValue(), Traffic);
        QCOMPARE(form.tag->Caption(), u"TRAF (team)"_s);
        QCOMPARE(journal.entries, QStringList());
    }

    void aThemeThatFailsLeavesTheValueThatWasLoaded()
    {
        UserForm form;
        form.contract().SetValue(Traffic, nullptr);
        form.host.state().failures.emplace(u"TextBoxColors"_s, Error(u"no theme"_s));
        Journal journal(form.picker);
        QVERIFY_EXCEPTION_THROWN(form.contract().SetValue(Jack, nullptr), Error);
        form.host.state().failures.clear(); // before the form shows again
        QCOMPARE(journal.entries, QStringList());
        QCOMPARE(form.contract().GetValue(), Jack);
        QCOMPARE(form.picker->accessibleDescription(), u"Jack O'Brien (user)"_s);
        QVERIFY(form.tag->isVisible());
        QVERIFY(!form.box->isVisible());
        QCOMPARE(form.link->Symbol(), ClearGlyph);
        QCOMPARE(form.tag->Caption(), u"Jack O'Brien (user)"_s);
    }
};

TAVRIN_TEST_MAIN(tst_FlatUserPickerMembers)
#include "tst_FlatUserPickerMembers.moc"
