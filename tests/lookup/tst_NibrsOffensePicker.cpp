#include "base/failure/Error.h"
#include "base/values/Variant.h"
#include "frame/control_frame/PropertyBag.h"
#include "frame/modUtils.h"
#include "lookup/NibrsOffensePicker.h"
#include "support/Members.h"
#include "support/RaisedError.h"
#include "support/TestCase.h"
#include "testing/FakeHost.h"
#include "widgets/lists/FlatDropdown.h"

#include <QApplication>
#include <QClipboard>
#include <QSignalSpy>

using namespace Qt::StringLiterals;
using namespace tavrin;
using tavrin::test::FakeHost;
using tavrin::test::keysOf;
using tavrin::test::ownProperties;
using tavrin::test::raisedBy;

namespace {

struct Site
{
    Site()
        : installation(host)
    {
        host.state().nibrsCodes = {{u"13A"_s, u"Aggravated Assault"_s},
                                   {u"09A"_s, u"Murder"_s},
                                   {u"90Z"_s, u"90Z"_s},
                                   {u"720"_s, QString()}};
        modUtils::ReleaseNibrsModule();
    }
    ~Site() { modUtils::ReleaseNibrsModule(); }
    Site(const Site&) = delete;
    Site& operator=(const Site&) = delete;

    static FlatDropdown* box(const NibrsOffensePicker& control)
    {
        return control.findChild<FlatDropdown*>(u"cboNibrsCode"_s);
    }
    static QStringList entries(const NibrsOffensePicker& control)
    {
        QStringList texts;
        for (int i = 0; i < box(control)->ListCount(); ++i)
            texts << box(control)->List(i);
        return texts;
    }
    /// Notes what the control tells.
    void follow(NibrsOffensePicker& control)
    {
        QObject::connect(&control, &UserControl::PropertyChanged, &window,
                         [this](const QString& key) { told << key; });
        QObject::connect(&control, &NibrsOffensePicker::Change, &window, [this] { told << u"Change"_s; });
    }
    QStringList take() { return std::exchange(told, {}); }

    FakeHost host;
    HostInstallation installation;
    QWidget window;
    QStringList told;
};

} // namespace

class tst_NibrsOffensePicker : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void theMembersStandInThePublishedOrder()
    {
        const QMetaObject& meta = NibrsOffensePicker::staticMetaObject;
        QCOMPARE(ownProperties(meta),
                 QStringList({u"hWnd"_s, u"Enabled"_s, u"Value"_s, u"Text"_s, u"ValueIsNull"_s, u"Font"_s,
                              u"ForeColor"_s, u"BackColor"_s}));
    }

    void theListHoldsNoneAndEachCodeWithItsDescriptionUnlessThatSaysNothing()
    {
        const Site site;
        const NibrsOffensePicker control;
        QCOMPARE(Site::entries(control), QStringList({u"(None)"_s, u"13A - Aggravated Assault"_s,
                                                      u"09A - Murder"_s, u"90Z"_s, u"720"_s}));
        QCOMPARE(Site::box(control)->ListIndex(), 0);
        QCOMPARE(control.Text(), u"(None)"_s);
        QVERIFY(control.ValueIsNull());
    }

    void noneReadsAsNullAndSoDoesAListWithoutCodes()
    {
        Site site;
        site.host.state().nibrsCodes.clear();
        const NibrsOffensePicker control;
        QCOMPARE(Site::entries(control), QStringList{u"(None)"_s});
        QVERIFY(IsNull(control.Value()));
    }

    void aValueIsTheCodeItself()
    {
        Site site;
        NibrsOffensePicker control;
        site.follow(control);
        control.SetValue(u"09A"_s);
        QCOMPARE(control.Value(), QVariant(u"09A"_s));
        QCOMPARE(control.Text(), u"09A - Murder"_s);
        QVERIFY(!control.ValueIsNull());
        QCOMPARE(site.take(), QStringList({u"Change"_s, u"Value"_s}));
        control.SetValue(u"09A"_s);
        QCOMPARE(site.take(), QStringList{u"Value"_s});
    }

    void aCodeThatTheDictionaryLacksSelectsNoneWithoutAnError_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::newRow("unknown") << QVariant(u"XYZ"_s);
        QTest::newRow("other case") << QVariant(u"09a"_s);
        QTest::newRow("Null") << Null();
        QTest::newRow("Empty") << QVariant();
    }
    void aCodeThatTheDictionaryLacksSelectsNoneWithoutAnError()
    {
        QFETCH(QVariant, value);
        const Site site;
        NibrsOffensePicker control;
        control.SetValue(u"13A"_s);
        control.SetValue(value);
        QCOMPARE(control.Text(), u"(None)"_s);
        QVERIFY(IsNull(control.Value()));
    }

    void theContractSetsTheValueAndHeedsNoUsedValues()
    {
        const Site site;
        NibrsOffensePicker control;
        auto& contract = static_cast<TavrinControl&>(control);
        contract.SetValue(u"13A"_s, std::make_shared<QVariantList>(QVariantList{u"13A"_s}));
        QCOMPARE(contract.GetValue(), QVariant(u"13A"_s));
        contract.SetValue(u"720"_s, nullptr);
        QCOMPARE(contract.GetValue(), QVariant(u"720"_s));
    }

    void thePersonsChoiceRaisesChange()
    {
        Site site;
        auto* control = new NibrsOffensePicker(&site.window);
        site.window.show();
        site.window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&site.window));
        control->setFocus();
        site.follow(*control);
        QTest::keyClicks(Site::box(*control), u"9"_s);
        QCOMPARE(control->Value(), QVariant(u"90Z"_s));
        QCOMPARE(site.take(), QStringList{u"Change"_s});
    }

    void theCopyKeyCopiesTheChosenTextAndNotNone()
    {
        Site site;
        auto* control = new NibrsOffensePicker(&site.window);
        site.window.show();
        site.window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&site.window));
        control->setFocus();
        QApplication::clipboard()->setText(u"before"_s);
        QTest::keyClick(Site::box(*control), Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QApplication::clipboard()->text(), u"before"_s);
        control->SetValue(u"09A"_s);
        QTest::keyClick(Site::box(*control), Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QApplication::clipboard()->text(), u"09A - Murder"_s);
    }

    void aDictionaryThatShrinksToJustThePositionHasNoSuchCodeAnyMore()
    {
        Site site;
        NibrsOffensePicker control;
        control.SetValue(u"13A"_s);
        site.follow(control);
        site.host.state().nibrsCodes.resize(2); // in the same place: behind its end still lies the old code
        control.SetValue(u"90Z"_s);             // stood at position 2
        QVERIFY(IsNull(control.Value()));
        QCOMPARE(control.Text(), u"(None)"_s);
        QCOMPARE(site.take(), QStringList({u"Change"_s, u"Value"_s}));
    }

    void aLoadThatTheModuleFailsLeavesNothingOfTheRecordBefore()
    {
        Site site;
        NibrsOffensePicker control;
        auto& contract = static_cast<TavrinControl&>(control);
        contract.SetValue(u"09A"_s, nullptr);
        site.follow(control);
        site.host.failWith(Error(u"the module is away"_s, 17));
        const Error error = raisedBy([&] { contract.SetValue(u"13A"_s, nullptr); });
        QCOMPARE(error.Number, 17);
        QVERIFY(IsNull(contract.GetValue())); // and asks nobody for that
        QCOMPARE(control.Text(), u"(None)"_s);
        QCOMPARE(site.take(), QStringList{u"Change"_s});
        site.host.failWith({});
        contract.SetValue(u"09A"_s, nullptr);
        QCOMPARE(contract.GetValue(), QVariant(u"09A"_s));
        QCOMPARE(site.take(), QStringList({u"Change"_s, u"Value"_s}));
    }

    void aFollowerOfALoadThatTheModuleFailsMayDeleteTheControlOrPutAnotherValue()
    {
        for (const bool deletes : {true, false}) {
            Site site;
            const QPointer<NibrsOffensePicker> control(new NibrsOffensePicker(&site.window));
            control->SetValue(u"09A"_s);
            if (!deletes)
                site.follow(*control);
            int changes = 0;
            connect(control, &NibrsOffensePicker::Change, &site.window, [&] {
                site.host.failWith({});
                if (deletes)
                    delete control.data();
                else if (++changes == 1)
                    control->SetValue(u"720"_s);
            });
            site.host.failWith(Error(u"the module is away"_s, 17));
            const Error error =
                raisedBy([&] { static_cast<TavrinControl&>(*control).SetValue(u"13A"_s, nullptr); });
            QCOMPARE(error.Number, 17); // the failure of the load is told all the same
            QCOMPARE(control.isNull(), deletes);
            if (deletes)
                continue;
            QCOMPARE(control->Value(), QVariant(u"720"_s)); // and the follower has the last word
            QCOMPARE(control->Text(), u"720"_s);
            QCOMPARE(site.take(), QStringList({u"Change"_s, u"Change"_s, u"Value"_s}));
        }
    }

    void aPutThatTheModuleFailsLeavesTheCode()
    {
        Site site;
        NibrsOffensePicker control;
        control.SetValue(u"09A"_s);
        site.follow(control);
        site.host.failWith(Error(u"the module is away"_s));
        QVERIFY_EXCEPTION_THROWN(control.SetValue(u"13A"_s), Error);
        site.host.failWith({});
        QCOMPARE(control.Value(), QVariant(u"09A"_s));
        QCOMPARE(site.take(), QStringList());
    }

    void theCodeIsReadFromTheDictionaryAsItIsNow()
    {
        Site site;
        NibrsOffensePicker control;
        control.SetValue(u"09A"_s);
        site.host.state().nibrsCodes[1].first = u"09B"_s;
        QCOMPARE(control.Value(), QVariant(u"09B"_s));
        site.host.state().nibrsCodes.resize(1);
        QVERIFY_EXCEPTION_THROWN(Q_UNUSED(control.Value()), Error);
        site.host.failWith(Error(u"the module is away"_s));
        QVERIFY_EXCEPTION_THROWN(Q_UNUSED(control.Value()), Error);
        QVERIFY_EXCEPTION_THROWN(control.SetValue(u"13A"_s), Error);
    }

    void withoutTheComponentTheControlCannotBeMade()
    {
        Site site;
        site.host.state().hasNibrs = false;
        QVERIFY_EXCEPTION_THROWN(NibrsOffensePicker(nullptr), Error);
        const PropertyBag bag;
        QVERIFY_EXCEPTION_THROWN(NibrsOffensePicker(nullptr, {u"Code"_s, &bag}), Error);
    }

    void theSavedPropertiesComeBackInTheirOrderTheValueBehindTheList()
    {
        const Site site;
        NibrsOffensePicker control;
        const auto font = std::make_shared<tavrin::Font>();
        font->SetSize(21);
        control.SetValue(u"09A"_s);
        control.SetFont(font);
        control.SetForeColor(Color::rgb(1, 2, 3));
        control.SetBackColor(Color::rgb(4, 5, 6));
        control.SetEnabled(false); // is not saved
        PropertyBag bag;
        control.WriteProperties(bag);
        QCOMPARE(keysOf(bag), QStringList({u"Value"_s, u"Font"_s, u"ForeColor"_s, u"BackColor"_s}));
        const NibrsOffensePicker restored(nullptr, {u"Code"_s, &bag});
        QCOMPARE(restored.Value(), QVariant(u"09A"_s));
        QCOMPARE(restored.Font()->Size(), 21.0);
        QCOMPARE(restored.ForeColor(), Color::rgb(1, 2, 3));
        QCOMPARE(restored.BackColor(), Color::rgb(4, 5, 6));
        QVERIFY(restored.Enabled());
    }

    void everySetterReportsItsKey()
    {
        Site site;
        NibrsOffensePicker control;
        site.follow(control);
        FlatDropdown* box = Site::box(control);
        control.SetEnabled(false);
        QCOMPARE(site.take(), QStringList{u"Enabled"_s});
        QVERIFY(!control.Enabled());
        QVERIFY(!control.isEnabled());
        QVERIFY(!box->isEnabledTo(&control)); // the box has the state itself too
        control.SetEnabled(true);
        QCOMPARE(site.take(), QStringList{u"Enabled"_s});
        QVERIFY(control.Enabled() && control.isEnabled() && box->isEnabled());
        const auto font = std::make_shared<tavrin::Font>();
        font->SetSize(23);
        control.SetFont(font);
        QCOMPARE(site.take(), QStringList{u"Font"_s});
        QCOMPARE(control.Font(), font);
        QCOMPARE(box->font().pointSizeF(), 23.0);
        control.SetForeColor(Color::rgb(1, 2, 3));
        QCOMPARE(site.take(), QStringList{u"ForeColor"_s});
        QCOMPARE(box->ForeColor(), Color::rgb(1, 2, 3));
        QCOMPARE(control.ForeColor(), Color::rgb(1, 2, 3));
        control.SetBackColor(Color::rgb(4, 5, 6));
        QCOMPARE(site.take(), QStringList{u"BackColor"_s});
        QCOMPARE(box->BackColor(), Color::rgb(4, 5, 6));
        QCOMPARE(control.BackColor(), Color::rgb(4, 5, 6));
        QCOMPARE(control.ForeColor(), Color::rgb(1, 2, 3));
    }

    void inTheDesignerItShowsItsNameAndKeepsTheValueUnchanged()
    {
        Site site;
        site.host.state().hasNibrs = false;
        const DesignTime designer;
        PropertyBag bag;
        bag.WriteProperty(u"Value"_s, u"whatever"_s, QVariant());
        NibrsOffensePicker control(nullptr, {u"NibrsCode1"_s, &bag});
        QCOMPARE(Site::entries(control), QStringList{u"NibrsCode1"_s});
        QCOMPARE(control.Text(), u"NibrsCode1"_s);
        QCOMPARE(control.Value(), QVariant(u"whatever"_s));
        control.setObjectName(u"Other"_s);
        QCOMPARE(control.Text(), u"Other"_s);
        PropertyBag saved;
        control.WriteProperties(saved);
        QCOMPARE(saved.ReadProperty(u"Value"_s, Null()), QVariant(u"whatever"_s));
        QCOMPARE(site.host.calls(), 0);
    }

    void atRunTimeAnotherNameChangesNothing()
    {
        const Site site;
        NibrsOffensePicker control;
        control.setObjectName(u"Other"_s);
        QCOMPARE(control.Text(), u"(None)"_s);
    }

    void theFrameTakesTheBoxesHeightAndTheBoxTheFramesWidth()
    {
        Site site;
        auto* control = new NibrsOffensePicker(&site.window);
        site.window.show();
        control->setGeometry(30, 40, 250, 90);
        QCOMPARE(control->pos(), QPoint(30, 40));
        QCOMPARE(control->size(), QSize(250, Site::box(*control)->height()));
        QCOMPARE(Site::box(*control)->geometry(), control->rect());
        const auto font = std::make_shared<tavrin::Font>();
        font->SetSize(24);
        control->SetFont(font); // runs the same layout
        const int line = QFontMetrics(font->toQFont()).height();
        QVERIFY(control->height() > line);
        QCOMPARE(control->geometry(), QRect(30, 40, 250, control->height()));
        QCOMPARE(Site::box(*control)->geometry(), control->rect());
    }

    void aChangeInsideTheFontDoesNothingUntilTheNextResizeAndThisIsMeant()
    {
        Site site;
        auto* control = new NibrsOffensePicker(&site.window);
        site.window.show();
        control->setGeometry(30, 40, 250, 90);
        const auto font = std::make_shared<tavrin::Font>();
        font->SetSize(10);
        control->SetFont(font);
        const FlatDropdown& box = *Site::box(*control);
        const QRect before = box.geometry();
        QCOMPARE(before, control->rect());
        font->SetSize(30);
        QCOMPARE(control->Font(), font);
        QCOMPARE(control->height(), before.height());
        QCOMPARE(box.geometry(), before); // neither grows out of the other
        QCOMPARE(box.font().pointSizeF(), 10.0);
        control->resize(240, 90);
        QCOMPARE(box.font().pointSizeF(), 30.0);
        QVERIFY(control->height() > before.height() + 10);
        QCOMPARE(control->width(), 240);
        QCOMPARE(box.geometry(), control->rect());
    }

    void aCodeThatHasGoneFromAShrunkDictionaryIsEqualToNothing_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QString>("text");
        QTest::newRow("still there") << QVariant(u"13A"_s) << u"13A - Aggravated Assault"_s;
        QTest::newRow("gone") << QVariant(u"90Z"_s) << u"(None)"_s;
        QTest::newRow("empty text") << QVariant(QString()) << u"(None)"_s;
        QTest::newRow("Empty") << QVariant() << u"(None)"_s;
        QTest::newRow("Null") << Null() << u"(None)"_s;
    }
    void aCodeThatHasGoneFromAShrunkDictionaryIsEqualToNothing()
    {
        QFETCH(QVariant, value);
        QFETCH(QString, text);
        Site site;
        NibrsOffensePicker control;
        control.SetValue(u"09A"_s);
        site.host.state().nibrsCodes.resize(1);
        control.SetValue(value);
        QCOMPARE(control.Text(), text);
        QCOMPARE(control.ValueIsNull(), text == u"(None)"_s);
    }
};

TAVRIN_TEST_MAIN(tst_NibrsOffensePicker)
#include "tst_NibrsOffensePicker.moc"
