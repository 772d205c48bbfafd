#include "base/failure/Error.h"
#include "base/values/Variant.h"
#include "frame/control_frame/PropertyBag.h"
#include "lookup/TavrinDropdown.h"
#include "support/Members.h"
#include "support/TestCase.h"
#include "testing/FakeHost.h"
#include "testing/Unhandled.h"
#include "widgets/lists/FlatDropdown.h"

#include <QApplication>
#include <QClipboard>
#include <QSignalSpy>

using namespace Qt::StringLiterals;
using namespace tavrin;
using tavrin::test::FakeHost;
using tavrin::test::keysOf;
using tavrin::test::ownProperties;

namespace {

constexpr tavrin::TableNumber Races = 312;
constexpr tavrin::TableNumber Nothing = 313;

QImage redIcon()
{
    QImage icon(12, 12, QImage::Format_ARGB32);
    icon.fill(Qt::red);
    return icon;
}

/// A host with two tables, and a window that shows what is placed on it.
struct Site
{
    Site()
        : installation(host)
    {
        host.setTable(Races, {{u"W"_s, u"White"_s, 23}, {u"B"_s, u"Black"_s, 24}, {u"A"_s, u"Asian"_s, 25}});
        host.setTable(Nothing, {});
        window.resize(400, 200);
    }
    TavrinDropdown* place(tavrin::TableNumber table)
    {
        auto* control = new TavrinDropdown(&window);
        control->SetTableNumber(table);
        QObject::connect(control, &UserControl::PropertyChanged, &window,
                         [this](const QString& key) { told << key; });
        QObject::connect(control, &TavrinDropdown::Change, &window, [this] { told << u"Change"_s; });
        return control;
    }
    void show()
    {
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
    }
    static FlatDropdown* box(const TavrinDropdown* control)
    {
        return control->findChild<FlatDropdown*>(u"cboItems"_s);
    }
    static QStringList entries(const TavrinDropdown* control)
    {
        QStringList texts;
        for (int i = 0; i < box(control)->ListCount(); ++i)
            texts << box(control)->List(i);
        return texts;
    }
    QStringList take() { return std::exchange(told, {}); }

    FakeHost host;
    HostInstallation installation;
    QWidget window;
    QStringList told;
};

} // namespace

class tst_TavrinDropdown : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void theMembersStandInThePublishedOrder()
    {
        const QMetaObject& meta = TavrinDropdown::staticMetaObject;
        QCOMPARE(ownProperties(meta),
                 QStringList({u"hWnd"_s, u"Font"_s, u"Icon"_s, u"TableNumber"_s, u"Value"_s}));
    }

    void theListIsBuiltAtShowAndNotBefore()
    {
        Site site;
        auto* control = site.place(Races);
        QCOMPARE(Site::entries(control), QStringList());
        QCOMPARE(site.host.state().log.filter(u"GetTableValues"_s), QStringList());
        site.show();
        QCOMPARE(Site::entries(control), QStringList({u"(None)"_s, u"White"_s, u"Black"_s, u"Asian"_s}));
        QCOMPARE(site.host.state().log.filter(u"GetTableValues"_s), QStringList{u"GetTableValues 312"_s});
        QCOMPARE(Site::box(control)->ListIndex(), 0);
        QCOMPARE(Site::box(control)->ItemData(2), 24);
    }

    void inactiveValuesAreNotListed()
    {
        Site site;
        site.host.state().inactive[Races] = {24};
        auto* control = site.place(Races);
        site.show();
        QCOMPARE(Site::entries(control), QStringList({u"(None)"_s, u"White"_s, u"Asian"_s}));
    }

    void laterShowsOnlyBuildAnOutdatedList()
    {
        Site site;
        auto* control = site.place(Races);
        site.show();
        control->hide();
        control->show();
        QCOMPARE(site.host.state().log.filter(u"GetTableValues"_s).size(), 1);
        control->SetTableNumber(Nothing);
        QCOMPARE(Site::entries(control).size(),
                 4); // no visible effect until it is shown again: this is meant
        control->hide();
        control->show();
        QCOMPARE(Site::entries(control), QStringList{u"(None)"_s});
    }

    void aFollowerOfTheTableNumberThatHidesAndShowsTheControlSeesTheNewTable()
    {
        Site site;
        auto* control = site.place(Races);
        site.show();
        control->SetValue(23);
        QStringList seen;
        QObject::connect(control, &UserControl::PropertyChanged, &site.window, [&](const QString& key) {
            if (key != u"TableNumber"_s)
                return;
            seen << QString::number(control->TableNumber());
            seen << Site::entries(control); // not before it shows again
            control->hide();
            control->show();
            seen << Site::entries(control);
        });
        control->SetTableNumber(Nothing);
        QCOMPARE(seen, QStringList({u"313"_s, u"(None)"_s, u"White"_s, u"Black"_s, u"Asian"_s, u"(None)"_s}));
        QVERIFY(IsNull(control->Value()));
        site.host.state().log.clear();
        control->hide();
        control->show();
        QCOMPARE(site.host.state().log.filter(u"GetTableValues"_s), QStringList()); // it is built already
    }

    void withoutATableTheListIsEmptyAndTheValueReadsNullAndIgnoresASet()
    {
        Site site;
        auto* control = site.place(Tables::None);
        site.show();
        QCOMPARE(Site::entries(control), QStringList());
        site.take();
        control->SetValue(23);
        QVERIFY(IsNull(control->Value()));
        QCOMPARE(site.take(), QStringList());
    }

    void aTableWithoutValuesShowsOnlyNoneSelected()
    {
        Site site;
        auto* control = site.place(Nothing);
        site.show();
        QCOMPARE(Site::entries(control), QStringList{u"(None)"_s});
        QCOMPARE(Site::box(control)->ListIndex(), 0);
        QVERIFY(IsNull(control->Value()));
    }

    void aValueGivenBeforeTheFirstShowIsLostAsIsMeant()
    {
        Site site;
        auto* control = site.place(Races);
        control->SetValue(24);
        site.show();
        QVERIFY(IsNull(control->Value()));
    }

    void aValueIsFoundAndReadBackAsALong()
    {
        Site site;
        auto* control = site.place(Races);
        site.show();
        site.take();
        control->SetValue(24.0);
        QCOMPARE(control->Value(), QVariant(24));
        QCOMPARE(control->Value().typeId(), int(QMetaType::Int));
        // The selection reports first, then the setter.
        QCOMPARE(site.take(), QStringList({u"Value"_s, u"Change"_s, u"Value"_s}));
    }

    void aValueThatTheListLacksSelectsNoneAndReadsNull_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::newRow("unknown") << QVariant(99);
        QTest::newRow("Null") << Null();
        QTest::newRow("Empty") << QVariant();
    }
    void aValueThatTheListLacksSelectsNoneAndReadsNull()
    {
        QFETCH(QVariant, value);
        Site site;
        auto* control = site.place(Races);
        site.show();
        control->SetValue(23);
        control->SetValue(value);
        QCOMPARE(Site::box(control)->ListIndex(), 0);
        QVERIFY(IsNull(control->Value()));
    }

    void theValueThatIsSelectedAlreadyReportsNothing()
    {
        Site site;
        auto* control = site.place(Races);
        site.show();
        control->SetValue(23);
        site.take();
        control->SetValue(23);
        QCOMPARE(site.take(), QStringList());
    }

    void thePersonsChoiceReportsTheValueThenRaisesChange()
    {
        Site site;
        auto* control = site.place(Races);
        site.show();
        control->setFocus();
        QVERIFY(Site::box(control)->hasFocus());
        site.take();
        QTest::keyClick(Site::box(control), Qt::Key_Down);
        QCOMPARE(site.take(), QStringList({u"Value"_s, u"Change"_s}));
        QCOMPARE(control->Value(), QVariant(23));
    }

    void theCopyKeyCopiesTheChosenTextAndNotNone()
    {
        Site site;
        auto* control = site.place(Races);
        site.show();
        control->setFocus();
        QApplication::clipboard()->setText(u"before"_s);
        QTest::keyClick(Site::box(control), Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QApplication::clipboard()->text(), u"before"_s);
        control->SetValue(24);
        site.take();
        QTest::keyClick(Site::box(control), Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QApplication::clipboard()->text(), u"Black"_s);
        QCOMPARE(control->Value(), QVariant(24));
        QCOMPARE(site.take(), QStringList());
    }

    void theHeightIsAlwaysTheWidgets()
    {
        Site site;
        auto* control = site.place(Races);
        site.show();
        const int height = Site::box(control)->height();
        for (const QSize& asked : {QSize(300, 90), QSize(120, 3)}) {
            control->resize(asked);
            QCOMPARE(control->height(), height);
            QCOMPARE(control->width(), asked.width());
            QCOMPARE(Site::box(control)->geometry(), QRect(0, 0, asked.width(), height));
        }
        const auto large = std::make_shared<tavrin::Font>();
        large->SetSize(30);
        control->SetFont(large);
        QVERIFY(control->height() > height);
        QCOMPARE(control->height(), Site::box(control)->height());
    }

    void aChangeInsideTheFontKeepsTheFrameAsHighAsTheBoxShownOrNot_data()
    {
        QTest::addColumn<bool>("isShown");
        QTest::newRow("shown") << true;
        QTest::newRow("not shown yet") << false;
    }
    void aChangeInsideTheFontKeepsTheFrameAsHighAsTheBoxShownOrNot()
    {
        QFETCH(bool, isShown);
        Site site;
        auto* control = site.place(Races);
        if (isShown)
            site.show();
        const auto replaced = control->Font();
        const auto font = std::make_shared<tavrin::Font>();
        control->SetFont(font);
        QCOMPARE(control->Font(), font);
        site.take();
        const int height = control->height();
        font->SetSize(30);
        QVERIFY(control->height() > height + 10);
        QCOMPARE(control->height(), Site::box(control)->height());
        QCOMPARE(site.take(), QStringList()); // the property is the same object
        font->SetSize(6);
        QVERIFY(control->height() < height);
        QCOMPARE(control->height(), Site::box(control)->height());
        const int small = control->height();
        replaced->SetSize(40);
        QCOMPARE(control->height(), small);
        QCOMPARE(Site::box(control)->height(), small);
    }

    void aNewControlHasItsWidthItsFontAndNoTable()
    {
        Site site;
        QFont font = site.window.font();
        font.setPointSize(17);
        site.window.setFont(font);
        const TavrinDropdown control(&site.window);
        QCOMPARE(control.TableNumber(), -1);
        QCOMPARE(control.width(), toPixels(3073));
        QCOMPARE(control.Font()->Size(), 17.0);
        QVERIFY(control.Icon().isNull());
    }

    void theContainersColourFillsTheFrame()
    {
        Site site;
        site.window.setProperty("BackColor", QVariant::fromValue(Color::rgb(1, 2, 3)));
        const TavrinDropdown control(&site.window);
        QCOMPARE(control.FrameBackColor(), Color::rgb(1, 2, 3));
        site.window.setProperty("BackColor", QVariant::fromValue(Color::rgb(9, 8, 7)));
        QCOMPARE(control.FrameBackColor(), Color::rgb(9, 8, 7));
    }

    void aContainerWithoutAColourLeavesTheAmbientOne()
    {
        Site site;
        const TavrinDropdown control(&site.window);
        QCOMPARE(control.FrameBackColor(), control.ambient().BackColor());
        QPalette palette;
        palette.setColor(QPalette::Window, QColor(250, 240, 10));
        site.window.setPalette(palette);
        QCOMPARE(control.FrameBackColor(), Color::rgb(250, 240, 10));
        QVERIFY(!control.autoFillBackground()); // the container is seen
    }

    void theSavedPropertiesComeBackInTheirOrder()
    {
        Site site;
        TavrinDropdown control(&site.window);
        PropertyBag bag;
        control.WriteProperties(bag);
        QCOMPARE(keysOf(bag), QStringList());
        const auto font = std::make_shared<tavrin::Font>();
        font->SetSize(21);
        control.SetFont(font);
        control.SetIcon(redIcon());
        control.SetTableNumber(Races);
        control.WriteProperties(bag);
        QCOMPARE(keysOf(bag), QStringList({u"Font"_s, u"Icon"_s, u"TableNumber"_s}));
        const TavrinDropdown restored(&site.window, {u"Race"_s, &bag});
        QCOMPARE(restored.Font()->Size(), 21.0);
        QCOMPARE(restored.Icon().pixelColor(3, 3), QColor(Qt::red));
        QCOMPARE(restored.TableNumber(), Races);
    }

    void restoringMakesTheListBeBuiltAgain()
    {
        Site site;
        auto* control = site.place(Races);
        site.show();
        control->SetValue(24);
        PropertyBag bag;
        bag.WriteProperty(u"TableNumber"_s, Races, Tables::None); // the same one: no setter asks for a list
        site.take();
        site.host.state().log.clear();
        control->ReadProperties(bag);
        QVERIFY(!site.take().contains(u"TableNumber"_s));
        QCOMPARE(Site::entries(control).size(), 4); // not before it shows again
        QCOMPARE(control->Value(), QVariant(24));
        QCOMPARE(site.host.state().log.filter(u"GetTableValues"_s), QStringList());
        control->hide();
        control->show();
        QCOMPARE(site.host.state().log.filter(u"GetTableValues"_s), QStringList{u"GetTableValues 312"_s});
        QVERIFY(IsNull(control->Value())); // a new list stands on "(None)"
    }

    void aFailureOfTheHostIsAFailureOfShowAndTheNextShowTriesAgain()
    {
        Site site;
        tavrin::test::Unhandled unhandled;
        auto* control = site.place(Races);
        site.host.failWith(Error(u"the tables are away"_s));
        site.show();
        QCOMPARE(unhandled.texts.filter(u"UserControl_Show"_s),
                 QStringList{u"UserControl_Show: the tables are away"_s});
        QCOMPARE(Site::entries(control),
                 QStringList()); // no half a list, in which a value would read as Null
        QCOMPARE(control->height(), Site::box(control)->height());
        site.host.failWith({});
        control->hide();
        control->show();
        QCOMPARE(Site::entries(control).size(), 4);
        control->SetValue(24);
        QCOMPARE(control->Value(), QVariant(24));
    }

    void aListThatCannotBeBuiltAnewLeavesTheValue_data()
    {
        QTest::addColumn<bool>("isOtherTable");
        QTest::newRow("the same table, restored again") << false;
        QTest::newRow("another table") << true;
    }
    void aListThatCannotBeBuiltAnewLeavesTheValue()
    {
        QFETCH(bool, isOtherTable);
        Site site;
        tavrin::test::Unhandled unhandled;
        auto* control = site.place(Races);
        site.show();
        control->SetValue(24);
        PropertyBag bag;
        bag.WriteProperty(u"TableNumber"_s, Races, Tables::None);
        if (isOtherTable)
            control->SetTableNumber(Nothing);
        else
            control->ReadProperties(bag);
        site.take();
        control->hide();
        site.host.failWith(Error(u"the tables are away"_s));
        control->show();
        QVERIFY(unhandled.texts.contains(u"UserControl_Show: the tables are away"_s));
        QCOMPARE(control->Value(), QVariant(24));
        QCOMPARE(Site::box(control)->Text(), u"Black"_s);
        QCOMPARE(site.take(), QStringList());
        control->SetValue(23); // and the old list still takes a value
        QCOMPARE(control->Value(), QVariant(23));
        site.host.failWith({});
        control->hide();
        control->show();
        QCOMPARE(Site::entries(control).size(), isOtherTable ? 1 : 4);
    }

    void anEntryWithoutANumberFailsBeforeTheListChanges()
    {
        Site site;
        tavrin::test::Unhandled unhandled;
        auto* control = site.place(Races);
        site.show();
        control->SetValue(24);
        site.host.setTable(Nothing, {{u"X"_s, u"No number"_s, u"none"_s}});
        control->SetTableNumber(Nothing);
        control->hide();
        control->show();
        QCOMPARE(unhandled.texts.size(), 1);
        QVERIFY(unhandled.texts.first().startsWith(u"UserControl_Show: "_s));
        QCOMPARE(control->Value(), QVariant(24));
    }

    void withoutAHostTheFrameTakesTheSizeOfItsBox()
    {
        QWidget window;
        TavrinDropdown control(&window);
        const auto* box = control.findChild<FlatDropdown*>(u"cboItems"_s);
        QCOMPARE(control.size(), QSize(toPixels(3073), box->height()));
        QVERIFY(box->height() > 0);
        window.show();
        control.resize(240, 90);
        QCOMPARE(control.size(), QSize(240, box->height()));
        QCOMPARE(box->width(), 240);
    }

    void aFollowerMayDeleteTheControl()
    {
        Site site;
        auto* control = site.place(Races);
        site.show();
        const QPointer<TavrinDropdown> alive(control);
        QObject::connect(control, &TavrinDropdown::Change, &site.window, [&] { delete alive.data(); });
        control->SetValue(24);
        QVERIFY(!alive);
    }
};

TAVRIN_TEST_MAIN(tst_TavrinDropdown)
#include "tst_TavrinDropdown.moc"
