#include "frame/control_frame/PropertyBag.h"
#include "geocode/LatLongStage.h"
#include "testing/FakeHost.h"
#include "testing/Unhandled.h"
#include "widgets/drawing/BoxShape.h"
#include "widgets/drawing/IconGlyphs.h"

#include <QAccessible>
#include <QApplication>
#include <QMetaClassInfo>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

constexpr int Pixel = 15; // twips

/// The fonts are so small that each constituent has room for its text.
void shrinkFont(const LatLongStage& stage)
{
    stage.child<FontIconLabel>("lblWarning")->Font()->SetSize(3);
}

} // namespace

class tst_LatLongLayout : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // The face

    void itIsAControlWithoutMembersAndEventsOfItsOwn()
    {
        const QMetaObject& meta = LatLong::staticMetaObject;
        QCOMPARE(meta.propertyCount(), UserControl::staticMetaObject.propertyCount());
        QCOMPARE(meta.methodCount(), UserControl::staticMetaObject.methodCount());
        const auto told = [&meta](const char* name) {
            const int index = meta.indexOfClassInfo(name);
            return index < 0 ? QString() : QString::fromLatin1(meta.classInfo(index).value());
        };
        QCOMPARE(told("ClassName"), u"TVBoundControls.LatLong"_s);
        QCOMPARE(told("DefaultInterface"), u"_LatLong"_s);
        QCOMPARE(told("EventInterface"), QString());
    }

    void itSavesNothing()
    {
        LatLong control;
        PropertyBag bag;
        control.WriteProperties(bag);
        QVERIFY(bag.entries().empty());
        control.ReadProperties(bag);
    }

    void itsTextsStandAsDesigned()
    {
        LatLongStage stage;
        QCOMPARE(stage.child<Label>("Label13")->Caption(), u"Latitude"_s);
        QCOMPARE(stage.child<Label>("Label14")->Caption(), u"Longitude"_s);
        QCOMPARE(stage.option(1)->Caption(), u"Update coordinates on save"_s);
        QCOMPARE(stage.option(0)->Caption(), u"Enter coordinates manually"_s);
        QCOMPARE(stage.details()->Caption(), u"More details"_s);
        QCOMPARE(stage.details()->ForeColor(), SystemColor::Highlight);
        QCOMPARE(stage.details()->Font()->Name(), u"Segoe UI"_s);
        QCOMPARE(stage.details()->Font()->Size(), 8.25);
        QCOMPARE(stage.child<FontIconLabel>("lblWarning")->Icon(), 0xE7BA);
        QCOMPARE(stage.child<GroupBox>("grpWarning")->BackColor(), SystemColor::TooltipBackground);
    }

    void theLabelsAreTiedToTheirBoxes_data()
    {
        QTest::addColumn<QByteArray>("label");
        QTest::addColumn<QByteArray>("box");
        QTest::newRow("latitude") << QByteArray("Label13") << QByteArray("txtLat");
        QTest::newRow("longitude") << QByteArray("Label14") << QByteArray("txtLong");
    }
    void theLabelsAreTiedToTheirBoxes()
    {
        QFETCH(QByteArray, label);
        QFETCH(QByteArray, box);
        LatLongStage stage;
        auto* told = stage.child<Label>(label);
        QVERIFY(told);
        QCOMPARE(told->property("Tag").toString(), u"Buddy="_s + QString::fromLatin1(box));
        QCOMPARE(told->buddy(), stage.child<TextBox>(box));
        QCOMPARE(QAccessible::queryAccessibleInterface(stage.child<TextBox>(box))->text(QAccessible::Name),
                 told->Caption());
    }

    // Layout

    void eachConstituentHasItsPlace_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QByteArray>("parent");
        QTest::addColumn<QRect>("twips");
        const auto add = [](const char* name, const char* parent, const QRect& twips) {
            QTest::newRow(name) << QByteArray(name) << QByteArray(parent) << twips;
        };
        add("Label13", "coordinates", {0, 0, 1095, 195});
        add("txtLat", "coordinates", {0, 240, 1275, 315});
        add("Label14", "coordinates", {1380, 0, 705, 195});
        add("txtLong", "coordinates", {1380, 240, 1275, 315});
        add("grpGeocoding", "coordinates", {0, 720, 2775, 1395});
        add("optGeocodeOnSave1", "grpGeocoding", {0, 0, 2340, 225});
        add("optGeocodeOnSave0", "grpGeocoding", {0, 300, 2235, 225});
        add("grpWarning", "grpGeocoding", {0, 660, 2715, 675});
        add("shpWarning", "grpWarning", {0, 0, 2715, 675});
        add("lblWarning", "grpWarning", {120, 120, 2295, 210});
        add("lnkViewDetails", "grpWarning", {420, 330, 960, 195});
    }
    void eachConstituentHasItsPlace()
    {
        QFETCH(QByteArray, name);
        QFETCH(QByteArray, parent);
        QFETCH(QRect, twips);
        LatLongStage stage;
        auto* widget = stage.child<QWidget>(name);
        QVERIFY(widget);
        QCOMPARE(widget->parentWidget()->objectName(), QString::fromLatin1(parent));
        const QRect designed(twips.topLeft() / Pixel, twips.size() / Pixel);
        QCOMPARE(widget->pos(), designed.topLeft());
        shrinkFont(stage);
        QCOMPARE(widget->pos(), designed.topLeft());
        QCOMPARE(widget->width(), designed.width());
        if (!name.startsWith("opt")) // the sign of an option is as high as the style makes it
            QCOMPARE(widget->height(), designed.height());
    }

    void noTextIsCutWhateverTheFont_data()
    {
        QTest::addColumn<double>("points");
        QTest::newRow("designed") << 8.25;
        QTest::newRow("large") << 14.0;
    }
    void noTextIsCutWhateverTheFont()
    {
        QFETCH(double, points);
        LatLongStage stage;
        stage.child<FontIconLabel>("lblWarning")->Font()->SetSize(points);
        LocationRecord location;
        location.putGeocoded(4);
        stage.read(location);
        for (const char* name : {"Label13", "Label14", "optGeocodeOnSave1", "optGeocodeOnSave0", "lblWarning",
                                 "lnkViewDetails"}) {
            auto* widget = stage.child<QWidget>(name);
            QVERIFY2(widget->width() >= widget->sizeHint().width(), name);
            const QRect seen(widget->mapTo(stage.control, QPoint()), widget->size());
            QVERIFY2(seen.right() < stage.control->width(), name);
            QVERIFY2(seen.right() < widget->parentWidget()->mapTo(stage.control, QPoint()).x() +
                                        widget->parentWidget()->width(),
                     name);
        }
    }

    void itHugsItsContentsWhateverTheHostGives()
    {
        LatLongStage stage;
        shrinkFont(stage);
        const QSize hugged(2775 / Pixel, (720 + 1395) / Pixel);
        QCOMPARE(stage.control->size(), hugged);
        for (const QSize& given : {QSize(400, 300), QSize(10, 10), QSize(0, 0), hugged}) {
            stage.control->resize(given);
            QCOMPARE(stage.control->size(), hugged);
            QCOMPARE(stage.control->sizeHint(), hugged);
        }
    }

    void hiddenChildrenCountAndEachCountsWhereItsContainerHasIt()
    {
        LatLongStage stage;
        shrinkFont(stage);
        auto* link = stage.child<QWidget>("lnkViewDetails");
        QVERIFY(!link->isVisible());
        link->move(300, 200); // of the hidden group, whose own place does not count
        stage.control->resize(1, 1);
        QCOMPARE(stage.control->size(), QSize(300 + link->width(), 200 + link->height()));
    }

    void aMenuOfABoxDoesNotCount()
    {
        LatLongStage stage;
        shrinkFont(stage);
        const QSize before = stage.control->size();
        QWidget menu(stage.lat(), Qt::Popup);
        menu.setGeometry(900, 900, 100, 100);
        stage.control->resize(1, 1);
        QCOMPARE(stage.control->size(), before);
    }

    void onAFormThatCountsInOtherUnitsItHasTheSameSize()
    {
        FakeHost host;
        const HostInstallation installation(host);
        LatLongStage stage;
        stage.window.setProperty("ScaleUnits", u"Pixel"_s);
        shrinkFont(stage);
        host.state().log.clear();
        stage.control->resize(400, 300);
        QVERIFY(host.state().log.contains(u"ScaleModeFromUnits Pixel"_s)); // the form's unit was asked for
        QCOMPARE(stage.control->size(), QSize(185, 141));
        QCOMPARE(stage.control->Width(), 185.0F * Pixel);
        QCOMPARE(stage.control->extender().Width(), 185.0F);
        QCOMPARE(stage.control->extender().Height(), 141.0F);
    }

    void aFailingHostLeavesItsSizeRight()
    {
        FakeHost host;
        const HostInstallation installation(host);
        LatLongStage stage;
        shrinkFont(stage);
        stage.window.setProperty("ScaleUnits", u"Pixel"_s);
        const Unhandled unhandled;
        host.failWith(Error(u"no host"_s));
        const int before = host.calls();
        stage.control->resize(400, 300);
        QVERIFY(host.calls() > before); // it was asked, and failed
        QCOMPARE(unhandled.texts, QStringList());
        QCOMPARE(stage.control->size(), QSize(185, 141));
        QCOMPARE(stage.control->sizeHint(), QSize(185, 141));
        QVERIFY(stage.boxes.shown().isEmpty());
    }

    void itLivesAndShowsWithoutAHost()
    {
        LatLong control;
        QVERIFY(control.width() >= 185);
        QCOMPARE(control.height(), 141);
        control.show();
        QVERIFY(QTest::qWaitForWindowExposed(&control));
        QCOMPARE(control.height(), 141);
    }

    // The keyboard

    void tabWalksInManualModeFromBoxToBoxToTheOption()
    {
        LatLongStage stage;
        QVERIFY(stage.isReady());
        stage.read(LocationRecord());
        stage.control->setFocus();
        QVERIFY(stage.lat()->hasFocus()); // first in tab order
        stage.press(Qt::Key_Tab);
        QVERIFY(stage.lon()->hasFocus());
        stage.press(Qt::Key_Tab);
        QVERIFY(stage.option(0)->hasFocus());
        stage.press(Qt::Key_Tab);
        QVERIFY(stage.other->hasFocus());
        stage.press(Qt::Key_Backtab);
        QVERIFY(stage.option(0)->hasFocus());
    }

    void tabWalksWithAWarningFromTheOptionToTheDetails()
    {
        LatLongStage stage;
        QVERIFY(stage.isReady());
        LocationRecord location;
        location.putGeocoded(1);
        stage.read(location);
        stage.control->setFocus();
        QVERIFY(stage.option(1)->hasFocus());
        stage.press(Qt::Key_Tab);
        QVERIFY(stage.details()->hasFocus());
        stage.press(Qt::Key_Return);
        QCOMPARE(stage.boxes.shown().size(), 1);
        stage.press(Qt::Key_Space);
        QTRY_COMPARE(stage.boxes.shown().size(), 2);
    }

    void aWarningThatGoesGivesTheFocusOfItsDetailsToTheChoice_data()
    {
        QTest::addColumn<QVariant>("onSave");
        QTest::addColumn<bool>("fails");
        QTest::addColumn<int>("option");
        QTest::newRow("a good match") << QVariant(true) << false << 1;
        QTest::newRow("manual") << QVariant(false) << false << 0;
        QTest::newRow("a read that fails") << QVariant(true) << true << 1;
    }
    void aWarningThatGoesGivesTheFocusOfItsDetailsToTheChoice()
    {
        QFETCH(QVariant, onSave);
        QFETCH(bool, fails);
        QFETCH(int, option);
        LatLongStage stage;
        QVERIFY(stage.isReady());
        LocationRecord poor;
        poor.putGeocoded(1);
        stage.read(poor);
        stage.details()->setFocus();
        LocationRecord location;
        location.put("GeocodeOnSave", onSave);
        if (fails)
            location.failing = u"Latitude"_s;
        QList<QWidget*> path;
        const auto follow =
            connect(qApp, &QApplication::focusChanged, this, [&](QWidget*, QWidget* now) { path << now; });
        stage.read(location);
        disconnect(follow);
        QVERIFY(stage.option(option)->hasFocus());
        QCOMPARE(path, QList<QWidget*>({stage.option(option)})); // and nobody else had it meanwhile
        QCOMPARE(stage.boxes.shown().size(), fails ? 1 : 0);
    }

    void aWarningThatStaysKeepsTheFocusOfItsDetails()
    {
        LatLongStage stage;
        QVERIFY(stage.isReady());
        for (const int status : {1, 4}) {
            LocationRecord location;
            location.putGeocoded(status);
            stage.read(location);
            if (status == 1)
                stage.details()->setFocus();
        }
        QVERIFY(stage.details()->hasFocus());
    }

    void arrowKeysChangeTheMode()
    {
        LatLongStage stage;
        QVERIFY(stage.isReady());
        LocationRecord location;
        location.put("GeocodeOnSave", true);
        stage.read(location);
        stage.control->setFocus();
        stage.press(Qt::Key_Down);
        QTRY_COMPARE(stage.mode(), ManualMode);
        QVERIFY(stage.option(0)->hasFocus());
        stage.press(Qt::Key_Up);
        QTRY_COMPARE(stage.mode(), OnSaveMode);
        QCOMPARE(location.written, QStringList({u"GeocodeOnSave=False"_s, u"GeocodeOnSave=True"_s}));
    }

    void everythingThatTakesTheFocusHasAName()
    {
        LatLongStage stage;
        for (QWidget* widget : stage.control->findChildren<QWidget*>()) {
            if (widget->focusPolicy() != Qt::NoFocus) {
                QVERIFY2(!QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name).isEmpty(),
                         qPrintable(widget->objectName()));
            }
        }
    }
};

TAVRIN_TEST_MAIN(tst_LatLongLayout)
#include "tst_LatLongLayout.moc"
