#include "base/values/Variant.h"
#include "lookup/ComboPickerForm.h"
#include "lookup/OffensePicker.h"
#include "support/Fonts.h"
#include "support/Members.h"
#include "support/TestCase.h"
#include "support/Unhandled.h"
#include "widgets/drawing/Placement.h"
#include "widgets/labels/Link.h"

#include <QFontMetricsF>

#include <cmath>

using namespace tavrin;
using namespace Qt::StringLiterals;
using tavrin::test::bagOf;
using tavrin::test::FakeHost;
using tavrin::test::fontOf;
using tavrin::test::keysOf;
using tavrin::test::listOf;
using tavrin::test::offense;
using tavrin::test::RecordParts;
using tavrin::test::Unhandled;
using Form = tavrin::test::ComboPickerForm<OffensePicker>;

namespace {

const QStringList Everything{u"13A"_s, u"13B"_s, u"220"_s, u"240"_s, u"999"_s};
const QStringList InUse{u"13A"_s, u"220"_s, u"240"_s};
const QString Alphabets = u"'abcdefghijklmnopqrstuvwxyzabcdefghijklmnopqrstuvwxyz', "
                          u"'ABCDEFGHIJKLMNOPQRSTUVWXYZABCDEFGHIJKLMNOPQRSTUVWXYZ'"_s;

/// The width of letters in a font, in pixels.
int pixelsOf(const QString& letters, const FontPtr& font, const QWidget& widget)
{
    return static_cast<int>(std::lround(QFontMetricsF(font->toQFont(), &widget).horizontalAdvance(letters)));
}

XmlNode recordOf(const RecordParts& parts)
{
    return listOf("L", "Offense", {parts}).documentElement().childElement(u"Offense"_s);
}

} // namespace

/// `OffensePicker`: what differs from `EmployeePicker`, and that the rest is there.
class tst_OffensePicker : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // Members

    void theMembersStandInThePublishedOrderAndThereIsNoFilter()
    {
        const QMetaObject& meta = OffensePicker::staticMetaObject;
        QCOMPARE(tavrin::test::ownProperties(meta),
                 QStringList({u"hWnd"_s, u"BackColor"_s, u"ForeColor"_s, u"Font"_s, u"Value"_s, u"Enabled"_s,
                              u"ShowName"_s, u"ListAllOffenses"_s, u"RemoveUsedValues"_s, u"FullText"_s,
                              u"ShortText"_s}));
        for (const char* name : {"hWnd", "FullText", "ShortText"})
            QVERIFY(!meta.property(meta.indexOfProperty(name)).isWritable());
        QCOMPARE(tavrin::test::ownSignals(meta), QStringList());
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
        try {
            form.picker->SetValue(u"]"_s);
            QFAIL("nothing raised");
        } catch (const Error& error) {
            QVERIFY(error.Description.endsWith(u"Offense[OffenseNo=]]"_s));
        }
        form.type(u"burg"_s);
        QTest::keyClick(form.box, Qt::Key_Return);
        QCOMPARE(form.picker->Value(), QVariant(33.0));
    }

    // Searching

    void onlyTheSecondCharacterSearches()
    {
        Form form;
        QVERIFY(form.isReady());
        form.type(u"b"_s);
        QVERIFY(!form.box->ListIsOpen());
        QCOMPARE(form.host.calls(), 0);
        form.type(u"u"_s);
        QCOMPARE(form.rows(), QStringList{u"220: Burglary"_s});
        QTest::keyClick(form.box, Qt::Key_Backspace);
        QVERIFY(!form.box->ListIsOpen());
        QCOMPARE(form.box->Text(), u"b"_s);
    }

    void nothingOpensTheListOfAnEmptyBox_data()
    {
        QTest::addColumn<int>("key");
        QTest::newRow("Down") << int(Qt::Key_Down);
        QTest::newRow("F4") << int(Qt::Key_F4);
    }
    void nothingOpensTheListOfAnEmptyBox()
    {
        QFETCH(int, key);
        Form form;
        QVERIFY(form.isReady());
        QTest::keyClick(form.box, static_cast<Qt::Key>(key));
        QVERIFY(!form.box->ListIsOpen());
        QCOMPARE(form.host.calls(), 0);
        QVERIFY(!form.box->findChild<Link*>(u"lnkButton"_s)->isVisible());
    }

    void theButtonClearsWhatIsChosen()
    {
        Form form;
        QVERIFY(form.isReady());
        form.picker->SetValue(31);
        form.follow();
        auto* button = form.box->findChild<Link*>(u"lnkButton"_s);
        QVERIFY(button->isVisible());
        QTest::mouseClick(button, Qt::LeftButton);
        QCOMPARE(form.take(), QStringList{u"Change Null"_s});
        QVERIFY(!form.box->ListIsOpen());
    }

    void idDescriptionAndCodeAllMatchAnywhere_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QStringList>("found");
        QTest::newRow("description") << u"aSSault"_s << QStringList{u"13A"_s};
        QTest::newRow("inside the id, or inside the code") << u"3a"_s << QStringList({u"13A"_s, u"240"_s});
        QTest::newRow("inside the code") << u"200"_s << QStringList{u"220"_s};
        QTest::newRow("not in use") << u"simple"_s << QStringList();
    }
    void idDescriptionAndCodeAllMatchAnywhere()
    {
        QFETCH(QString, typed);
        QFETCH(QStringList, found);
        Form form;
        QVERIFY(form.isReady());
        form.type(typed);
        QStringList shown;
        for (const QString& row : form.rows())
            shown << row.section(u':', 0, 0);
        QCOMPARE(shown, found);
        form.box->CloseList();
    }

    void activeFlagEquals1WithoutQuotesSoThatAListWithTheTextTrueMatchesNothing()
    {
        Form form;
        QCOMPARE(form.found(), InUse); // 999 bears "True"
        form.host.state().offenses =
            listOf("L", "Offense", {offense(1, "one", "", "", "True"), offense(2, "two", "", "", "1.0")});
        OffensePicker other(&form.window);
        Suggestions found;
        other.findChild<AutoCompleteComboBox*>()->SearchRequested.raise(QString(), found);
        QCOMPARE(found.size(), std::size_t(1)); // a number is compared, not a text
        QCOMPARE(found.front().childElement(u"OffenseId"_s).text(), u"two"_s);
    }

    void theExpressionHoldsTheConditionsInTheirOrder_data()
    {
        QTest::addColumn<QString>("query");
        QTest::addColumn<bool>("listAll");
        QTest::addColumn<QVariant>("hostValue");
        QTest::addColumn<QString>("expression");
        const QString group = u"(contains(translate(OffenseId, %1), %2) or "
                              u"contains(translate(Description, %1), %2) or "
                              u"contains(translate(RptCode, %1), %2))"_s.arg(Alphabets, u"'X1'"_s);
        QTest::newRow("used values") << QString() << true << Null()
                                     << u"Offense[(OffenseNo != 7 and OffenseNo != ])]"_s;
        QTest::newRow("in use") << QString() << false << Null()
                                << u"Offense[((ActiveFlag=1) and OffenseNo != 7 and OffenseNo != ])]"_s;
        QTest::newRow("all")
            << u"x1"_s << false << QVariant(32)
            << u"Offense[((ActiveFlag=1 or OffenseNo=32) and OffenseNo != 7 and OffenseNo != ] and "_s +
                   group + u")]"_s;
    }
    void theExpressionHoldsTheConditionsInTheirOrder()
    {
        QFETCH(QString, query);
        QFETCH(bool, listAll);
        QFETCH(QVariant, hostValue);
        QFETCH(QString, expression);
        const Form form;
        form.picker->SetListAllOffenses(listAll);
        form.picker->SetRemoveUsedValues(true);
        form.hold(hostValue, {7, Null(), u"]"_s}); // which spoils the expression, so that it is quoted
        const QString error = form.searchError(query);
        QCOMPARE(error.mid(error.indexOf(u"Offense["_s)), expression);
    }

    void theOptionsAreReadAtTheNextSearchAndTheHostsValueStaysOffered()
    {
        const Form form;
        QCOMPARE(form.found(), InUse);
        form.hold(32, {31});
        QCOMPARE(form.found(), QStringList({u"13A"_s, u"13B"_s, u"220"_s, u"240"_s}));
        form.picker->SetRemoveUsedValues(true);
        QCOMPARE(form.found(), QStringList({u"13B"_s, u"220"_s, u"240"_s}));
        form.picker->SetListAllOffenses(true);
        QCOMPARE(form.found(), Everything.mid(1));
        form.picker->SetRemoveUsedValues(false);
        QCOMPARE(form.found(), Everything);
        form.picker->SetListAllOffenses(false);
        form.hold(Null());
        QCOMPARE(form.found(), InUse);
    }

    void aTextOfEveryKindIsSearchedForAndNeverAnError_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("both quotes") << u"'\"'"_s;
        QTest::newRow("an expression") << u"') or true() or ('"_s;
        QTest::newRow("NUL") << QString(2, QChar(0));
        QTest::newRow("control characters") << u"\u0001\u001b\n"_s;
        QTest::newRow("half characters") << QString(2, QChar(0xDE00));
        QTest::newRow("right to left") << u"\u05D3\u05D5\u05D3"_s;
        QTest::newRow("100,000 letters") << QString(100000, u'z');
        QTest::newRow("100,000 apostrophes") << QString(100000, u'\'');
    }
    void aTextOfEveryKindIsSearchedForAndNeverAnError()
    {
        QFETCH(QString, text);
        Form form;
        QVERIFY(form.isReady());
        const Unhandled unhandled;
        form.host.state()
            .offenses.selectSingleNode(u"Offenses/Offense[3]/RptCode"_s)
            .setText(u"a"_s + text + u"b"_s);
        form.paste(text);
        QCOMPARE(unhandled.texts.size(), 0);
        QCOMPARE(form.rows(), QStringList{u"220: Burglary"_s});
        QTest::keyClick(form.box, Qt::Key_Return);
        QCOMPARE(form.picker->Value(), QVariant(33.0));
    }

    // Rows

    void aRowHasItsFixedFontTheIdInBoldAndNoSecondColumnAndLeavesTheWidthAlone()
    {
        Form form;
        form.picker->SetFont(fontOf(30));
        const XmlNode item = recordOf(offense(1, "13A", "Assault", "X1", "1"));
        const QStringList calls{u"Segoe UI 9 bold \"13A: \" at 0"_s, u"Segoe UI 9 \"Assault\" at 600"_s,
                                u"line"_s, u"height 200"_s};
        QCOMPARE(form.drawn(item), calls);
        QCOMPARE(form.drawn(item, {}, true), calls);
        QCOMPARE(form.drawn(item, u"3a"_s),
                 QStringList({u"Segoe UI 9 bold \"1\" at 0"_s, u"box 120 to 360"_s,
                              u"Segoe UI 9 bold \"3A\" at 120"_s, u"Segoe UI 9 bold \": \" at 360"_s,
                              u"Segoe UI 9 \"Assault\" at 600"_s, u"line"_s, u"height 200"_s}));
        QCOMPARE(form.drawn(recordOf({})),
                 QStringList({u"Segoe UI 9 bold \": \" at 0"_s, u"line"_s, u"height 200"_s}));
    }

    // Layout

    void theComboIsAsWideAsTenLettersOfTheControlsFontAndNeverNarrowerThan1695_data()
    {
        QTest::addColumn<double>("size");
        QTest::addColumn<bool>("isLeast");
        QTest::newRow("6 points") << 6.0 << true;
        QTest::newRow("20 points") << 20.0 << false;
    }
    void theComboIsAsWideAsTenLettersOfTheControlsFontAndNeverNarrowerThan1695()
    {
        QFETCH(double, size);
        QFETCH(bool, isLeast);
        Form form(600);
        QVERIFY(form.isReady());
        const FontPtr font = fontOf(size);
        form.picker->SetFont(font);
        const int letters = pixelsOf(QString(10, u'W'), font, *form.picker);
        QCOMPARE(letters < 113, isLeast);
        const int combo = isLeast ? 113 : letters;
        const int height = form.box->sizeHint().height();
        QCOMPARE(form.box->geometry(), QRect(0, 0, combo, height));
        QCOMPARE(form.label->geometry(), QRect(combo + 3, 0, 600 - combo - 3, height));
        QCOMPARE(form.picker->size(), QSize(600, height));
        form.picker->resize(500, 200);
        QCOMPARE(form.box->geometry(), QRect(0, 0, combo, height));
        QCOMPARE(form.label->geometry(), QRect(combo + 3, 0, 500 - combo - 3, height));
        QCOMPARE(form.picker->size(), QSize(500, height));
    }

    void withAWideFontTheControlGrowsToFitAndWithoutTheNameTheWidthComesFromTheControl()
    {
        Form form(150);
        QVERIFY(form.isReady());
        const FontPtr font = fontOf(30);
        form.picker->SetFont(font);
        const int letters = pixelsOf(QString(10, u'W'), font, *form.picker);
        QVERIFY(letters > 150);
        QCOMPARE(form.picker->width(), letters);
        QCOMPARE(form.box->width(), letters);
        form.picker->SetShowName(false);
        form.picker->resize(120, 30);
        QCOMPARE(form.picker->width(), 120);
        QCOMPARE(form.box->width(), 120);
        QCOMPARE(form.picker->height(), form.box->height());
    }

    void aLabelWithoutTheNameIsNotMovedAtAllAndItsHeightStillFollows()
    {
        Form form(400);
        QVERIFY(form.isReady());
        const QRect place = form.label->geometry();
        form.picker->SetShowName(false);
        form.picker->resize(500, 30);
        QCOMPARE(form.label->geometry(), place);
        form.picker->SetFont(fontOf(30));
        QVERIFY(form.picker->height() > place.height());
        QCOMPARE(form.label->geometry(), QRect(place.topLeft(), QSize(place.width(), form.picker->height())));
    }

    void theListIsAsWideAs80LettersHoweverNarrowTheControl()
    {
        Form form(150);
        QVERIFY(form.isReady());
        const FontPtr font = fontOf(6);
        form.picker->SetFont(font);
        form.type(u"as"_s);
        const int letters = pixelsOf(QString(80, u'X'), font, *form.picker);
        QVERIFY(letters > 150);
        const int screen = form.window.screen()->availableGeometry().width();
        QCOMPARE(form.view()->window()->width(), std::min(letters, screen));
        form.box->CloseList();
    }

    void aChangeInsideTheFontWidensTheCombo()
    {
        Form form(600);
        QVERIFY(form.isReady());
        const FontPtr font = fontOf(6);
        form.picker->SetFont(font);
        QCOMPARE(form.box->width(), 113);
        font->SetSize(24);
        QCOMPARE(form.box->width(), pixelsOf(QString(10, u'W'), font, *form.picker));
        QCOMPARE(form.label->x(), form.box->width() + 3);
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
