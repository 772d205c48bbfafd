#include "base/failure/Error.h"
#include "base/values/Variant.h"
#include "frame/control_frame/PropertyBag.h"
#include "lookup/AutoCompleteForm.h"
#include "support/TestCase.h"

using namespace tavrin;
using tavrin::test::AutoCompleteForm;
using tavrin::test::bagOf;
using tavrin::test::FakeHost;
using tavrin::test::keysOf;
using tavrin::test::ownProperties;
using tavrin::test::SampleTableNo;

namespace {

const QString LoadTable = QStringLiteral("GetTableValues 301");

/// The keys in the published order.
const QStringList AllKeys{
    QStringLiteral("Enabled"),  QStringLiteral("TableNo"), QStringLiteral("IncludeInactiveValues"),
    QStringLiteral("Value"),    QStringLiteral("Text"),    QStringLiteral("BackColor"),
    QStringLiteral("ForeColor")};

struct Site
{
    Site()
        : installation(host)
    {
        host.setTable(SampleTableNo, tavrin::test::sampleTable());
    }
    FakeHost host;
    HostInstallation installation;
};

} // namespace

/// Properties, saved properties, the designer and the end of `AutoCompleteField`.
class tst_AutoCompleteFieldProperties : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void theMembersStandInThePublishedOrder()
    {
        const QMetaObject& meta = AutoCompleteField::staticMetaObject;
        QCOMPARE(ownProperties(meta), QStringList{QStringLiteral("hWnd")} + AllKeys);
        QVERIFY(meta.indexOfMethod("ReloadList()") >= 0);
        QCOMPARE(meta.classInfo(meta.indexOfClassInfo("ClassName")).value(),
                 "TVBoundControls.AutoCompleteField");
    }

    void everySetterReportsItsKeyOnce()
    {
        const Site site;
        AutoCompleteField field;
        const QSignalSpy changes(&field, &UserControl::PropertyChanged);
        field.SetEnabled(true);
        field.SetTableNo(SampleTableNo);
        field.SetIncludeInactiveValues(true);
        field.SetValue(1);
        field.SetText(QStringLiteral("a"));
        field.SetBackColor(Color::rgb(1, 1, 1));
        field.SetForeColor(Color::rgb(1, 1, 1));
        QCOMPARE(keysOf(changes), AllKeys);
    }

    // Colours

    void aSetValueShowsOnYellowAndAClearedOneInTheSystemsColoursEvenWithAnotherBackColor()
    {
        AutoCompleteForm form;
        form.field->SetBackColor(Color::rgb(1, 2, 3));
        form.field->SetForeColor(Color::rgb(4, 5, 6));
        QCOMPARE(form.box->BackColor(), Color::rgb(1, 2, 3));
        QCOMPARE(form.box->ForeColor(), Color::rgb(4, 5, 6));
        form.field->SetValue(12);
        QCOMPARE(form.box->BackColor().value(), 8454143U);
        QCOMPARE(form.box->ForeColor().value(), 0U);
        QCOMPARE(form.box->palette().color(QPalette::Base), QColor(255, 255, 128));
        form.field->SetBackColor(Color::rgb(7, 8, 9)); // kept, and not shown over a value
        form.field->SetForeColor(Color::rgb(4, 5, 7));
        QCOMPARE(form.box->BackColor().value(), 8454143U);
        QCOMPARE(form.box->ForeColor().value(), 0U);
        form.field->SetValue(Null());
        QCOMPARE(form.box->BackColor(), SystemColor::WindowBackground);
        QCOMPARE(form.box->ForeColor(), SystemColor::WindowText);
        QCOMPARE(form.box->palette().color(QPalette::Base), QApplication::palette().color(QPalette::Base));
        QCOMPARE(form.field->BackColor(), Color::rgb(7, 8, 9));
        QCOMPARE(form.field->ForeColor(), Color::rgb(4, 5, 7));
    }

    void propertyChangedComesAtItsStepOfEachSetter()
    {
        AutoCompleteForm form;
        bool boxEnabled = true;
        Color boxColor;
        QString boxText;
        connect(form.field, &UserControl::PropertyChanged, this, [&](const QString& key) {
            if (key == QLatin1String("Enabled"))
                boxEnabled = form.box->isEnabled();
            else if (key == QLatin1String("Value"))
                boxColor = form.box->BackColor();
            else if (key == QLatin1String("Text"))
                boxText = form.box->Text();
        });
        form.field->SetEnabled(false);
        QVERIFY(!boxEnabled);
        form.field->SetValue(12);
        QCOMPARE(boxColor, SystemColor::WindowBackground); // told before the box is coloured
        form.field->SetText(QStringLiteral("now"));
        QCOMPARE(boxText, QStringLiteral("now"));
    }

    void aFollowerThatAnswersWithAnotherValueLeavesTheColourOfThatValue()
    {
        AutoCompleteForm form;
        connect(form.field, &UserControl::PropertyChanged, this, [&](const QString& key) {
            if (key == QLatin1String("Value") && !IsNull(form.field->Value()))
                form.field->SetValue(Null());
        });
        form.field->SetValue(12);
        QVERIFY(IsNull(form.field->Value()));
        QCOMPARE(form.box->BackColor(), SystemColor::WindowBackground);
    }

    void emptyCountsAsNull()
    {
        AutoCompleteForm form;
        form.field->SetValue(12);
        form.field->SetValue(QVariant());
        QVERIFY(IsNull(form.field->Value()));
        QCOMPARE(form.box->BackColor(), SystemColor::WindowBackground);
    }

    // Tables

    void theTableNumberMinusOneGivesAnEmptyListAndNoCallToTheCache()
    {
        AutoCompleteForm form;
        QVERIFY(form.isReady());
        QVERIFY(form.search(QStringLiteral("gun")));
        form.list->Close();
        const int calls = form.host.calls();
        form.field->SetTableNo(Tables::None);
        QCOMPARE(form.list->ListCount(), 0);
        QCOMPARE(form.host.calls(), calls);
        QVERIFY(form.search(QStringLiteral("n"))); // "gunn" finds nothing, and the document is still there
        form.box->selectAll();
        QVERIFY(form.search(QStringLiteral("rif")));
        QCOMPARE(form.entries(), QStringList{QStringLiteral("13 - Rifle")});
        form.list->Close();
    }

    void theTableIsLoadedAtEverySettingAlsoOfTheSameNumber()
    {
        Site site;
        AutoCompleteField field;
        field.SetTableNo(SampleTableNo);
        field.SetTableNo(SampleTableNo);
        field.SetIncludeInactiveValues(false);
        field.ReloadList();
        QCOMPARE(site.host.state().log.count(LoadTable), 4);
    }

    void propertyChangedOfTheTableComesBeforeItsListIsLoaded()
    {
        const Site site;
        AutoCompleteField field;
        int callsAtReport = -1;
        connect(&field, &UserControl::PropertyChanged, this, [&] { callsAtReport = site.host.calls(); });
        field.SetTableNo(SampleTableNo);
        QCOMPARE(callsAtReport, 0);
        QVERIFY(site.host.calls() > 0);
    }

    void aFailureOfTheHostReachesWhoeverSetsTheTableAndTheOldListStillServes()
    {
        AutoCompleteForm form;
        QVERIFY(form.isReady());
        form.host.failWith(Error(QStringLiteral("no cache")));
        QVERIFY_EXCEPTION_THROWN(form.field->SetTableNo(SampleTableNo), Error);
        QVERIFY_EXCEPTION_THROWN(form.field->SetIncludeInactiveValues(true), Error);
        QVERIFY_EXCEPTION_THROWN(form.field->ReloadList(), Error);
        form.host.failWith({});
        QVERIFY(form.search(QStringLiteral("gun")));
        QCOMPARE(form.list->ListCount(), 2);
        form.list->Close();
    }

    // Saved properties

    void aNewFieldHasItsStartValuesAndTheTableNumberZero()
    {
        const Site site;
        AutoCompleteField field;
        QVERIFY(IsNull(field.Value()));
        QVERIFY(field.Enabled());
        QCOMPARE(field.BackColor(), SystemColor::WindowBackground);
        QCOMPARE(field.ForeColor(), SystemColor::WindowText);
        QCOMPARE(field.TableNo(), 0); // not -1: initialising leaves it alone, and this is meant
        QVERIFY(!field.IncludeInactiveValues());
        QCOMPARE(field.Text(), QVariant(QString()));
        QCOMPARE(site.host.calls(), 0);
    }

    void restoringRunsTheSettersInTheirOrderAndBuildsTheListTwice()
    {
        Site site;
        AutoCompleteField field;
        const QSignalSpy changes(&field, &UserControl::PropertyChanged);
        field.ReadProperties(bagOf({{"Value", 12}, {"tableno", SampleTableNo}}));
        QCOMPARE(keysOf(changes), AllKeys);
        QCOMPARE(site.host.state().log.count(LoadTable), 2);
        QCOMPARE(field.Value(), QVariant(12)); // the empty saved text does not take the saved value away
    }

    void aBagWithoutKeysGivesTheDefaultsAndTheirSettersHaveRun()
    {
        const Site site;
        const PropertyBag empty;
        AutoCompleteField field(nullptr, {QStringLiteral("Weapon"), &empty});
        QCOMPARE(field.ambient().DisplayName(), QStringLiteral("Weapon"));
        QVERIFY(field.Enabled());
        QCOMPARE(field.TableNo(), Tables::None);
        QVERIFY(IsNull(field.Value()));
        QCOMPARE(field.BackColor(), SystemColor::WindowBackground);
        QCOMPARE(field.ForeColor(), SystemColor::WindowText);
        QCOMPARE(site.host.calls(), 0);
        const QSignalSpy changes(&field, &UserControl::PropertyChanged);
        field.ReadProperties(empty);
        QCOMPARE(keysOf(changes), AllKeys);
    }

    void theBagIsWrittenInOrderWithTheForegroundUnderItsOtherFormAndComesBackWhole()
    {
        const Site site;
        AutoCompleteField field;
        field.SetEnabled(false);
        field.SetTableNo(SampleTableNo);
        field.SetIncludeInactiveValues(true);
        field.SetText(QStringLiteral("typed"));
        field.SetValue(7);
        field.SetBackColor(Color::rgb(1, 1, 1));
        field.SetForeColor(Color::rgb(2, 2, 2));
        PropertyBag bag;
        field.WriteProperties(bag);
        QCOMPARE(keysOf(bag), QStringList(AllKeys.mid(0, 6)) << QStringLiteral("Forecolor"));
        QStringList problems;
        const PropertyBag saved = PropertyBag::fromJson(bag.toJson(), &problems);
        QCOMPARE(problems, QStringList());
        AutoCompleteField restored(nullptr, {QString(), &saved});
        QVERIFY(!restored.Enabled());
        QCOMPARE(restored.TableNo(), SampleTableNo);
        QVERIFY(restored.IncludeInactiveValues());
        QCOMPARE(restored.Text(), QVariant(QStringLiteral("typed")));
        QCOMPARE(restored.Value(), QVariant(7));
        QCOMPARE(restored.BackColor(), Color::rgb(1, 1, 1));
        QCOMPARE(restored.ForeColor(), Color::rgb(2, 2, 2));
    }

    void defaultsAreNotWritten()
    {
        const Site site;
        const PropertyBag empty;
        AutoCompleteField field(nullptr, {QString(), &empty});
        PropertyBag bag;
        field.WriteProperties(bag);
        QCOMPARE(keysOf(bag), QStringList());
    }

    void aPropertyThatFailsLeavesTheFollowingRestoredAndShowsNothing()
    {
        Site site;
        site.host.failWith(Error(QStringLiteral("no cache")));
        const PropertyBag bag = bagOf({{"TableNo", SampleTableNo},
                                       {"Value", 12},
                                       {"BackColor", QVariant::fromValue(Color::rgb(3, 3, 3))}});
        AutoCompleteField field(nullptr, {QString(), &bag});
        QCOMPARE(field.TableNo(), SampleTableNo);
        QCOMPARE(field.Value(), QVariant(12));
        QCOMPARE(field.BackColor(), Color::rgb(3, 3, 3));
        QVERIFY(field.Enabled());
    }

    void aWrongTypeInTheBagGivesTheDefaultAndTheOthersAreRestored()
    {
        const Site site;
        const PropertyBag bag = bagOf({{"Enabled", QStringLiteral("perhaps")},
                                       {"TableNo", QStringLiteral("many")},
                                       {"Text", QStringLiteral("kept")},
                                       {"BackColor", QStringLiteral("blue")},
                                       {"ForeColor", Null()}});
        AutoCompleteField field(nullptr, {QString(), &bag});
        QVERIFY(field.Enabled());
        QCOMPARE(field.TableNo(), Tables::None);
        QCOMPARE(field.Text(), QVariant(QStringLiteral("kept")));
        QCOMPARE(field.BackColor(), SystemColor::WindowBackground);
        QCOMPARE(field.ForeColor(), SystemColor::WindowText);
    }

    // Designer

    void theDesignerCallsNoHostServiceWhateverTableOrValue()
    {
        const Site site;
        std::optional<DesignTime> designer(std::in_place);
        QWidget form;
        AutoCompleteField fresh(&form);
        PropertyBag bag = bagOf({{"TableNo", SampleTableNo}, {"Value", 12}});
        AutoCompleteField restored(&form, {QStringLiteral("Weapon"), &bag});
        designer.reset();
        fresh.SetTableNo(SampleTableNo);
        fresh.SetValue(12);
        fresh.ReloadList();
        form.show();
        QVERIFY(QTest::qWaitForWindowExposed(&form));
        auto* box = restored.findChild<TextBox*>();
        QTest::keyClicks(box, QStringLiteral("gun"));
        QVERIFY(AutoCompleteForm::letPendingSearchesRun());
        restored.WriteProperties(bag);
        QCOMPARE(restored.findChild<DropDownList*>()->ListCount(), 0);
        QCOMPARE(site.host.calls(), 0);
    }

    void inTheDesignerTheFrameShrinksToTheBoxAndAtRunTimeItKeepsItsHeight_data()
    {
        QTest::addColumn<bool>("designer");
        QTest::newRow("designer") << true;
        QTest::newRow("run time") << false;
    }
    void inTheDesignerTheFrameShrinksToTheBoxAndAtRunTimeItKeepsItsHeight()
    {
        QFETCH(bool, designer);
        const Site site;
        std::optional<DesignTime> scope;
        if (designer)
            scope.emplace();
        QWidget form;
        AutoCompleteField field(&form);
        field.setGeometry(10, 10, 200, 90);
        form.resize(300, 150);
        form.show();
        QVERIFY(QTest::qWaitForWindowExposed(&form));
        const auto* box = field.findChild<TextBox*>();
        const auto* list = field.findChild<DropDownList*>();
        for (const int width : {200, 120}) {
            field.resize(width, 90);
            QCOMPARE(box->width(), width);
            QCOMPARE(box->height(), box->sizeHint().height());
            QCOMPARE(field.height(), designer ? box->height() : 90);
            QCOMPARE(field.width(), width);
            QCOMPARE(list->geometry(), box->geometry());
        }
    }

    // The end

    void theFieldMayDieWithItsListOpenAndASearchPending()
    {
        AutoCompleteForm form;
        QVERIFY(form.isReady());
        QVERIFY(form.search(QStringLiteral("gun")));
        QVERIFY(form.list->IsOpen());
        QTest::keyClicks(form.box, QStringLiteral("x"));
        delete form.field;
        QVERIFY(AutoCompleteForm::letPendingSearchesRun());
        for (const QWidget* window : QApplication::topLevelWidgets())
            QVERIFY(window == &form.window || !window->isVisible());
    }
};

TAVRIN_TEST_MAIN(tst_AutoCompleteFieldProperties)
#include "tst_AutoCompleteFieldProperties.moc"
