#include "base/values/Variant.h"
#include "lookup/FlatPickerForm.h"
#include "support/Members.h"
#include "support/TestCase.h"
#include "testing/Unhandled.h"
#include "widgets/drawing/IconGlyphs.h"

using namespace tavrin;
using namespace Qt::StringLiterals;
using tavrin::test::EmployeeForm;
using tavrin::test::Journal;
using tavrin::test::keysOf;
using tavrin::test::ownProperties;
using tavrin::test::PeopleSite;
using tavrin::test::usedValues;

namespace {

const QString Jack = u"K12: O'Brien, Jack #4512"_s;
const QString Ann = u"A1: Smith, Ann #1245"_s;
const QString Ninel = u"Z0: Zed, Ninel"_s;
const QString Bare = u":"_s;

} // namespace

/// What is the employees' own in the flat picker.
class tst_FlatEmployeePicker : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void theMembersAndEventsStandInThePublishedOrder()
    {
        const QMetaObject& meta = FlatEmployeePicker::staticMetaObject;
        QCOMPARE(ownProperties(meta),
                 QStringList({u"hWnd"_s, u"Caption"_s, u"Required"_s, u"BackColor"_s, u"ForeColor"_s,
                              u"Font"_s, u"Value"_s, u"Enabled"_s, u"ShowName"_s, u"K9HandlersOnly"_s,
                              u"ListAllEmployees"_s, u"RemoveUsedValues"_s, u"FullText"_s, u"ShortText"_s}));
        QVERIFY(meta.indexOfSignal("Change()") < meta.indexOfSignal("ItemSelect()"));
        QVERIFY(meta.indexOfSignal("ItemSelect()") < meta.indexOfSignal("Filter(qint32,bool&)"));
        QCOMPARE(meta.classInfo(meta.indexOfClassInfo("ClassName")).value(),
                 "TVBoundControls.FlatEmployeePicker");
    }

    // Value

    void anOfficersNumberShowsTheNameAsATagWithoutASuffix()
    {
        EmployeeForm form;
        form.picker->SetValue(11);
        QCOMPARE(form.picker->Value(), QVariant(11.0));
        QCOMPARE(form.picker->Value().typeId(), static_cast<int>(QMetaType::Double));
        QCOMPARE(form.tag->Caption(), u"O'Brien, Jack"_s);
        QCOMPARE(form.box->Text(), u"K12"_s);
    }

    void aValueIsFoundWhateverItsTypeAndAlsoWhenInactive_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::newRow("double") << QVariant(13.0);
        QTest::newRow("text") << QVariant(u"13"_s);
        QTest::newRow("integer") << QVariant(13);
    }
    void aValueIsFoundWhateverItsTypeAndAlsoWhenInactive()
    {
        QFETCH(QVariant, value);
        EmployeeForm form;
        form.picker->SetValue(value);
        QCOMPARE(form.tag->Caption(), u"Old, Hanna"_s);
        QCOMPARE(form.picker->Value(), QVariant(13.0)); // the record's number took its place
    }

    void theChangeComesBeforeTheReportAndTheSameValueAgainRaisesBoth()
    {
        EmployeeForm form;
        Journal journal(form.picker);
        form.picker->SetValue(12);
        form.picker->SetValue(12.0); // no test of equality here
        form.picker->SetValue(Null());
        form.picker->SetValue(Null());
        QCOMPARE(journal.entries, QStringList({u"Change"_s, u"Value"_s, u"Change"_s, u"Value"_s, u"Change"_s,
                                               u"Value"_s, u"Change"_s, u"Value"_s}));
    }

    void aValueThatIsNotInTheListBecomesNull_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::newRow("number") << QVariant(99);
        QTest::newRow("word") << QVariant(u"abc"_s);
        QTest::newRow("empty text") << QVariant(QString());
        QTest::newRow("Empty") << QVariant();
        QTest::newRow("fraction") << QVariant(12.5);
    }
    void aValueThatIsNotInTheListBecomesNull()
    {
        QFETCH(QVariant, value);
        EmployeeForm form;
        form.picker->SetValue(11);
        form.contract().SetValue(value, nullptr);
        QVERIFY(IsNull(form.contract().GetValue()));
        QVERIFY(!form.tag->isVisible());
        QCOMPARE(form.box->Text(), QString());
    }

    void aPutThatFailedOverNothingShowsAtOnceThatThereIsAValueToClear()
    {
        EmployeeForm form;
        QVERIFY(form.isReady());
        QCOMPARE(form.link->Symbol(), DropDownGlyph);
        QVERIFY_EXCEPTION_THROWN(form.picker->SetValue(u"1 2"_s), Error);
        QCOMPARE(form.link->Symbol(), ClearGlyph);
        QCOMPARE(form.link->ToolTipText(), u"Clear"_s);
        QVERIFY(form.tag->isVisible());
        QCOMPARE(form.tag->Caption(), QString());
        Journal journal(form.picker);
        form.clickLink();
        QVERIFY(IsNull(form.picker->Value()));
        QCOMPARE(journal.take(), QStringList{u"Change"_s});
        QCOMPARE(form.link->Symbol(), DropDownGlyph);
        QCOMPARE(form.link->ToolTipText(), QString());
        QVERIFY(!form.tag->isVisible());
    }

    void thePersonClearsAValueThatShowsNoNameFromTheKeyboardToo()
    {
        EmployeeForm form;
        QVERIFY(form.isReady());
        QVERIFY_EXCEPTION_THROWN(form.contract().SetValue(u"1 2"_s, nullptr), Error);
        Journal journal(form.picker);
        form.picker->setFocus();
        form.press(Qt::Key_Delete);
        QVERIFY(IsNull(form.picker->Value()));
        QVERIFY(!form.tag->isVisible());
        QCOMPARE(journal.take(), QStringList{u"Change"_s});
    }

    void aLoadOfNullThatTheThemeFailsEndsLaidOutAndTellsNoName()
    {
        EmployeeForm form;
        QVERIFY(form.isReady());
        const QRect alone = form.box->geometry();
        form.contract().SetValue(11, nullptr);
        QCOMPARE(form.picker->accessibleDescription(), u"O'Brien, Jack"_s);
        QVERIFY(form.box->geometry() != alone);
        Journal journal(form.picker);
        form.host.state().failures.emplace(u"TextBoxColors"_s, Error(u"no theme"_s));
        QVERIFY_EXCEPTION_THROWN(form.contract().SetValue(Null(), nullptr), Error);
        QVERIFY(IsNull(form.contract().GetValue()));
        QCOMPARE(form.picker->accessibleDescription(), QString());
        QVERIFY(!form.tag->isVisible());
        QCOMPARE(form.box->geometry(), alone);
        QCOMPARE(form.link->Symbol(), DropDownGlyph);
        QCOMPARE(journal.entries, QStringList());
        form.host.state().failures.clear();
    }

    void aValueThatMakesNoExpressionReachesTheCallerAndThePickerStaysUsable_data()
    {
        QTest::addColumn<QString>("value");
        QTest::newRow("two numbers") << u"1 2"_s;
        QTest::newRow("apostrophe") << u"'"_s;
        QTest::newRow("bracket") << u"12]["_s;
        QTest::newRow("NUL") << QString(u"1"_s + QChar(0));
        QTest::newRow("control character") << u"\u0001"_s;
        QTest::newRow("10,000 apostrophes") << QString(10'000, u'\'') + u'"';
    }
    void aValueThatMakesNoExpressionReachesTheCallerAndThePickerStaysUsable()
    {
        QFETCH(QString, value);
        EmployeeForm form;
        QVERIFY(form.isReady());
        form.picker->SetValue(11);
        Journal journal(form.picker);
        QVERIFY_EXCEPTION_THROWN(form.picker->SetValue(value), Error);
        QVERIFY_EXCEPTION_THROWN(form.contract().SetValue(value, nullptr), Error);
        QCOMPARE(journal.entries, QStringList());
        form.picker->SetRequired(true); // any look over that value
        form.contract().SetValue(12, nullptr);
        QCOMPARE(form.tag->Caption(), u"Smith, Ann"_s);
        form.clickLink();
        QVERIFY(IsNull(form.picker->Value()));
        form.choose(u"zed"_s);
        QCOMPARE(form.picker->Value(), QVariant(14.0));
    }

    void aPutThatFailedShowsNothingOfTheValueBefore()
    {
        EmployeeForm form;
        QVERIFY(form.isReady());
        form.host.state()
            .employees.selectSingleNode(u"Employees/Employee[1]/Name"_s)
            .setText(QString(40, u'n')); // too long for the tag
        form.contract().SetValue(11, nullptr);
        Journal journal(form.picker);
        QVERIFY_EXCEPTION_THROWN(form.contract().SetValue(u"1 2"_s, nullptr), Error);
        QCOMPARE(form.contract().GetValue(), QVariant(u"1 2"_s)); // stored first
        QCOMPARE(form.box->Text(), QString());
        form.press(Qt::Key_Tab); // a look over that value
        QCOMPARE(form.tag->Caption(), QString());
        QCOMPARE(form.tag->ToolTipText(), QString());
        QCOMPARE(form.picker->accessibleDescription(), QString());
        QCOMPARE(journal.entries, QStringList());
        form.clickLink(); // there is a value to clear
        QVERIFY(IsNull(form.picker->Value()));
        form.choose(u"zed"_s);
        QCOMPARE(form.tag->Caption(), u"Zed, Ninel"_s);
        QCOMPARE(journal.entries, QStringList({u"Change"_s, u"Change"_s, u"ItemSelect"_s}));
    }

    void aValueOfTheHostThatMakesNoExpressionIsNotHeld()
    {
        EmployeeForm form;
        QVERIFY_EXCEPTION_THROWN(form.contract().SetValue(u"1 2"_s, nullptr), Error);
        QCOMPARE(form.found(u"smith"_s), QStringList{Ann}); // it is in no search
    }

    void aUsedValueThatMakesNoExpressionFailsTheSearchAloneAndOnce()
    {
        EmployeeForm form;
        QVERIFY(form.isReady());
        const tavrin::test::Unhandled unhandled;
        form.picker->SetRemoveUsedValues(true);
        form.contract().SetValue(Null(), usedValues({u"1 2"_s}));
        form.type(u"s"_s);
        QCOMPARE(unhandled.texts.size(), 1);
        QVERIFY(!form.box->ListIsOpen());
        form.picker->SetRemoveUsedValues(false);
        form.type(u"m"_s);
        QCOMPARE(form.rows(), QStringList{Ann});
        QCOMPARE(unhandled.texts.size(), 1);
    }

    void anEmployeeWithoutANumberBecomesNullWhenChosen()
    {
        EmployeeForm form;
        QVERIFY(form.isReady());
        form.host.state().employees = tavrin::test::xmlOf(
            u"<Employees><Employee><Name>No Number</Name><ActiveFlag>True</ActiveFlag></Employee>"
            "</Employees>"_s);
        form.choose(u"number"_s);
        QVERIFY(IsNull(form.picker->Value()));
        QVERIFY(!form.tag->isVisible());
    }

    // The tag's text

    void aNameOf25CharactersShowsWholeAndALongerOneIsCutWithTheWholeAsToolTip_data()
    {
        QTest::addColumn<int>("length");
        QTest::newRow("24") << 24;
        QTest::newRow("25") << 25;
        QTest::newRow("26") << 26;
        QTest::newRow("29") << 29;
    }
    void aNameOf25CharactersShowsWholeAndALongerOneIsCutWithTheWholeAsToolTip()
    {
        QFETCH(int, length);
        EmployeeForm form;
        const QString name(length, u'n');
        form.host.state().employees = tavrin::test::xmlOf(
            u"<Employees>"_s + tavrin::test::employeeRecord(1, true, name, u"N"_s, u"1"_s, false) +
            u"</Employees>"_s);
        form.picker->SetValue(1);
        const bool cut = length > 25;
        QCOMPARE(form.tag->Caption(), cut ? QString(22, u'n') + u"..."_s : name);
        QCOMPARE(form.tag->ToolTipText(), cut ? name : QString());
    }

    void aRecordWithoutAChildElementShowsEmptyTextInItsPlace()
    {
        EmployeeForm form;
        form.picker->SetValue(15);
        QCOMPARE(form.picker->Value(), QVariant(15.0));
        QCOMPARE(form.tag->Caption(), QString());
        QCOMPARE(form.box->Text(), QString());
        QVERIFY(form.tag->isVisible());
        QVERIFY(form.found(QString()).contains(Bare));
    }

    // Choosing

    void aChoiceRaisesChangeThenItemSelectAndReportsNothing()
    {
        EmployeeForm form;
        QVERIFY(form.isReady());
        Journal journal(form.picker);
        form.choose(u"smith"_s);
        QCOMPARE(journal.entries, QStringList({u"Change"_s, u"ItemSelect"_s}));
        QCOMPARE(form.picker->Value(), QVariant(12.0));
    }

    void theLinkOpensTheListOrClears()
    {
        EmployeeForm form;
        QVERIFY(form.isReady());
        form.clickLink();
        QCOMPARE(form.rows(), QStringList({Jack, Ann, Ninel, Bare}));
        form.clickLink();
        form.picker->SetValue(12);
        Journal journal(form.picker);
        form.clickLink();
        QVERIFY(IsNull(form.picker->Value()));
        QCOMPARE(journal.entries, QStringList{u"Change"_s});
        QVERIFY(!form.box->ListIsOpen());
    }

    // Texts, lists, lifecycle

    void theTextsAreTheEmployeeLists()
    {
        EmployeeForm form;
        form.host.state().employeeFullTexts.insert(u"12"_s, u"Ann Smith, Patrol"_s);
        form.host.state().employeeShortTexts.insert(u"12"_s, u"A. Smith"_s);
        QCOMPARE(form.picker->FullText(), QString());
        QCOMPARE(form.picker->ShortText(), QString());
        form.picker->SetValue(12);
        QCOMPARE(form.picker->FullText(), u"Ann Smith, Patrol"_s);
        QCOMPARE(form.picker->ShortText(), u"A. Smith"_s);
    }

    void theListStaysAsFirstClonedWhateverTheCachesDo()
    {
        EmployeeForm form;
        form.picker->SetValue(12);
        form.host.state().employees = tavrin::test::xmlOf(u"<Employees/>"_s);
        form.host.state().hub.CacheRefreshed.raise({});
        QCOMPARE(form.found(u"smith"_s), QStringList{Ann});
        form.picker->SetValue(11);
        QCOMPARE(form.picker->Value(), QVariant(11.0));
        QCOMPARE(form.host.state().log.count(u"EmployeeListCache.Document"_s), 1);
    }

    void itDoesNotListenToTheCaches()
    {
        PeopleSite site;
        const FlatEmployeePicker picker;
        QVERIFY(!site.host.state().hub.CacheRefreshed.hasHandlers());
        QCOMPARE(site.host.state().log.count(u"Events"_s), 0);
        QCOMPARE(site.host.state().log.filter(u"Document"_s), QStringList());
    }

    void thePropertiesAreSavedInOrderAndComeBackWhole()
    {
        EmployeeForm form;
        form.picker->SetEnabled(false);
        form.picker->SetShowName(false);
        form.picker->SetRemoveUsedValues(true);
        form.picker->SetK9HandlersOnly(true);
        form.picker->SetListAllEmployees(true);
        form.picker->SetCaption(u"Officer"_s);
        form.picker->SetRequired(true);
        form.picker->SetFont(std::make_shared<Font>(QFont(form.window.font().family(), 21)));
        PropertyBag bag;
        form.picker->WriteProperties(bag);
        QCOMPARE(keysOf(bag), QStringList({u"Enabled"_s, u"ShowName"_s, u"RemoveUsedValues"_s, u"Font"_s,
                                           u"K9HandlersOnly"_s, u"ListAllEmployees"_s, u"BackColor"_s,
                                           u"ForeColor"_s, u"Caption"_s, u"Required"_s}));
        FlatEmployeePicker restored(nullptr, {QString(), &bag});
        QVERIFY(!restored.Enabled());
        QVERIFY(!restored.ShowName());
        QVERIFY(restored.RemoveUsedValues());
        QCOMPARE(restored.Font()->Size(), 21.0);
        QVERIFY(restored.K9HandlersOnly());
        QVERIFY(restored.ListAllEmployees());
        QCOMPARE(restored.Caption(), u"Officer"_s);
        QVERIFY(restored.Required());
        Journal journal(&restored);
        restored.ReadProperties(bag);
        QCOMPARE(journal.entries, // the two options go straight into their fields
                 QStringList({u"Enabled"_s, u"ShowName"_s, u"RemoveUsedValues"_s, u"Font"_s, u"BackColor"_s,
                              u"ForeColor"_s}));
    }

    void aBagWithoutKeysGivesTheDefaults()
    {
        const PeopleSite site;
        const PropertyBag empty;
        const FlatEmployeePicker picker(nullptr, {QString(), &empty});
        QVERIFY(picker.Enabled());
        QVERIFY(picker.ShowName());
        QVERIFY(!picker.RemoveUsedValues());
        QVERIFY(!picker.K9HandlersOnly());
        QVERIFY(!picker.ListAllEmployees());
        QVERIFY(IsNull(picker.Value()));
    }

    void aFailureOfTheHostInASearchIsToldOnceAndThePickerStaysUsable()
    {
        EmployeeForm form;
        QVERIFY(form.isReady());
        const tavrin::test::Unhandled unhandled;
        form.box->setFocus();
        form.host.failWith(Error(u"no list"_s));
        form.type(u"s"_s);
        QCOMPARE(unhandled.texts.size(), 1);
        QVERIFY(unhandled.texts.first().endsWith(u": no list"_s));
        form.host.failWith({});
        form.type(u"m"_s);
        QCOMPARE(form.rows(), QStringList{Ann});
        QCOMPARE(unhandled.texts.size(), 1);
    }
};

TAVRIN_TEST_MAIN(tst_FlatEmployeePicker)
#include "tst_FlatEmployeePicker.moc"
