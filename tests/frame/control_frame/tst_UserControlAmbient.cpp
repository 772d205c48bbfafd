#include "frame/control_frame/ContainerPalette.h"
#include "support/ProbeControl.h"
#include "support/TestCase.h"

#include <QApplication>
#include <QPointer>
#include <QScopeGuard>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

/// The ambient values of whose change the control has been told since it was last asked.
QStringList toldTo(ProbeControl& control)
{
    return control.take().filter(u"AmbientChanged"_s);
}

} // namespace

/// What a control is told of its container, above all its colour.
class tst_UserControlAmbient : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // Ambient values

    void theInstanceHasItsNameFromTheStartWithoutAnEvent()
    {
        ProbeControl control(nullptr, {u"Weapon"_s});
        QCOMPARE(control.ambient().DisplayName(), u"Weapon"_s);
        QCOMPARE(control.take(), QStringList({u"Initialize"_s, u"InitProperties"_s}));
    }

    void theModeIsFixedWhenTheControlIsMade()
    {
        const ProbeControl before;
        QVERIFY(before.ambient().UserMode());
        {
            const DesignTime designing;
            const ProbeControl control;
            QVERIFY(!control.ambient().UserMode());
            QVERIFY(before.ambient().UserMode());
            {
                const DesignTime nested;
            }
            QVERIFY(DesignTime::isActive());
        }
        QVERIFY(!DesignTime::isActive());
        QVERIFY(ProbeControl().ambient().UserMode());
    }

    void ambientChangedNamesWhatChanged_data()
    {
        QTest::addColumn<std::function<void(QWidget&, ProbeControl&)>>("change");
        QTest::addColumn<QString>("name");
        using Change = std::function<void(QWidget&, ProbeControl&)>;
        QTest::newRow("name of the instance")
            << Change([](QWidget&, ProbeControl& control) { control.setObjectName(u"other"_s); })
            << u"DisplayName"_s;
        QTest::newRow("font of the container")
            << Change([](QWidget& window, ProbeControl&) { window.setFont(QFont(u"Tavrin Sans"_s, 31)); })
            << u"Font"_s;
        QTest::newRow("colour of the container") << Change([](QWidget& window, ProbeControl&) {
            window.setProperty("BackColor", QVariant::fromValue(Color(5)));
        }) << u"BackColor"_s;
        QTest::newRow("palette of the container")
            << Change([](QWidget& window, ProbeControl&) { window.setPalette(QPalette(QColor(1, 2, 3))); })
            << u"BackColor"_s;
        QTest::newRow("unit of the container")
            << Change([](QWidget& window, ProbeControl&) { window.setProperty("ScaleUnits", u"Pixel"_s); })
            << u"ScaleUnits"_s;
    }
    void ambientChangedNamesWhatChanged()
    {
        QFETCH(std::function<void(QWidget&, ProbeControl&)>, change);
        QFETCH(QString, name);
        QWidget window;
        auto* control = new ProbeControl(&window, {u"name"_s});
        window.show();
        control->take();
        change(window, *control);
        QCOMPARE(toldTo(*control), QStringList(u"AmbientChanged "_s + name));
        window.setProperty("Unrelated", 5);
        QCOMPARE(control->take(), QStringList());
    }

    void ambientChangedFollowsTheControlToAnotherContainer()
    {
        QWidget first;
        QWidget second;
        auto* control = new ProbeControl(&first);
        control->setParent(&second);
        control->take();
        first.setProperty("ScaleUnits", u"Pixel"_s);
        QCOMPARE(control->take(), QStringList());
        second.setProperty("ScaleUnits", u"Pixel"_s);
        QCOMPARE(control->take(), QStringList({u"AmbientChanged ScaleUnits"_s}));
    }

    void anotherContainerTellsItsAmbientValuesAndTheControlsOwnFontTellsNone()
    {
        QWidget one;
        QWidget other;
        auto* control = new ProbeControl(&one);
        control->take();
        control->setFont(QFont(u"Tavrin Sans"_s, 31));
        control->setPalette(QPalette(QColor(1, 2, 3)));
        QCOMPARE(toldTo(*control), QStringList());
        control->setParent(&other);
        QCOMPARE(toldTo(*control), QStringList({u"AmbientChanged Font"_s, u"AmbientChanged BackColor"_s,
                                                u"AmbientChanged ScaleUnits"_s}));
    }

    void aFollowerOfAnAmbientValueMayDeleteTheControl_data()
    {
        QTest::addColumn<int>("cause");
        QTest::newRow("colour") << 0;
        QTest::newRow("font") << 1;
        QTest::newRow("colour further down") << 2;
        QTest::newRow("another place of the container") << 3;
    }
    void aFollowerOfAnAmbientValueMayDeleteTheControl()
    {
        QFETCH(int, cause);
        QWidget window;
        QWidget other;
        other.setProperty("BackColor", QColor(7, 8, 9));
        auto* container = new QWidget(&window);
        QPointer<ProbeControl> control(new ProbeControl(container));
        auto* second = new ProbeControl(container);
        control->during = [&control](const QString& what) {
            if (what.startsWith(u"AmbientChanged"_s))
                delete control;
        };
        if (cause == 0)
            container->setProperty("BackColor", QColor(1, 2, 3));
        else if (cause == 1)
            container->setFont(QFont(u"Tavrin Sans"_s, 31));
        else if (cause == 2)
            window.setProperty("BackColor", QColor(1, 2, 3));
        else
            container->setParent(&other);
        QVERIFY(!control);
        QCOMPARE(toldTo(*second).size(), 1);
    }

    // Colours

    void theFrameHasABackgroundOfItsOwn()
    {
        QWidget window;
        ProbeControl control(&window);
        QCOMPARE(control.FrameBackColor(), SystemColor::ButtonFace);
        control.SetFrameBackColor(Color::rgb(10, 200, 30));
        control.resize(20, 20);
        QCOMPARE(control.grab().toImage().pixelColor(5, 5), QColor(10, 200, 30));
        QCOMPARE(control.ContainerBackColor(), control.ambient().BackColor());
        window.setProperty("BackColor", QVariant::fromValue(Color::rgb(1, 2, 3)));
        QCOMPARE(control.ContainerBackColor(), Color::rgb(1, 2, 3));
    }

    void theColourIsFollowedWhereverItComesFrom()
    {
        QWidget window;
        QWidget other;
        auto* outer = new QWidget(&window);
        auto* container = new QWidget(outer);
        auto* control = new ProbeControl(container);
        window.show();
        control->take();
        const QStringList once{u"AmbientChanged BackColor"_s};

        window.setPalette(windowOf(Qt::red));
        QCOMPARE(toldTo(*control), once);
        QCOMPARE(control->ambient().BackColor(), Color::rgb(255, 0, 0));
        window.setPalette(windowOf(Qt::red));
        QCOMPARE(toldTo(*control), QStringList()); // it is the same
        container->setPalette(windowOf(Qt::green));
        QCOMPARE(toldTo(*control), QStringList()); // it is looked through
        window.setPalette(windowOf(Qt::blue));
        QCOMPARE(toldTo(*control), once);
        outer->setProperty("BackColor", QColor(1, 2, 3));
        QCOMPARE(toldTo(*control), once);
        QCOMPARE(control->ambient().BackColor(), Color::rgb(1, 2, 3));
        container->setProperty("BackColor", 0x30201);
        QCOMPARE(toldTo(*control), once);
        outer->setProperty("BackColor", QColor(7, 8, 9));
        QCOMPARE(toldTo(*control), QStringList());
        container->setProperty("BackColor", QVariant());
        QCOMPARE(toldTo(*control), once);
        QCOMPARE(control->ambient().BackColor(), Color::rgb(7, 8, 9));

        other.setPalette(windowOf(Qt::yellow));
        container->setParent(&other);
        QCOMPARE(toldTo(*control), once);
        QCOMPARE(control->ambient().BackColor(), Color::rgb(255, 255, 0));
        window.setPalette(windowOf(Qt::cyan));
        outer->setProperty("BackColor", QColor(4, 5, 6));
        QCOMPARE(toldTo(*control), QStringList()); // it stands there no more
        other.setPalette(windowOf(Qt::magenta));
        QCOMPARE(toldTo(*control), once);
    }

    void anotherThemeTellsItsColourAlthoughItIsStillTheSystems()
    {
        const QPalette before = QApplication::palette();
        const auto restore = qScopeGuard([&before] { QApplication::setPalette(before); });
        QWidget window;
        auto* control = new ProbeControl(&window);
        window.show();
        control->take();
        QApplication::setPalette(QPalette(QColor(40, 50, 60)));
        QTRY_COMPARE(control->journal().filter(u"AmbientChanged"_s),
                     QStringList({u"AmbientChanged BackColor"_s}));
        QCOMPARE(control->ambient().BackColor(), SystemColor::ButtonFace);
    }

    void aFrameThatTakesTheContainersColourLetsItBeSeen()
    {
        QWidget window;
        window.resize(60, 40);
        auto* container = new QWidget(&window);
        container->resize(60, 40);
        auto* control = new ProbeControl(container);
        control->resize(20, 20);
        const auto seen = [&window] { return window.grab().toImage().pixelColor(5, 5); };
        window.setPalette(windowOf(Qt::red));
        container->setPalette(windowOf(Qt::green));
        control->TakeContainerBackColor();
        QCOMPARE(control->FrameBackColor(), Color::rgb(255, 0, 0));
        QCOMPARE(seen(), QColor(Qt::red));
        container->setAutoFillBackground(true); // of which Qt tells nobody
        QCOMPARE(seen(), QColor(Qt::green));
        container->setProperty("BackColor", QColor(1, 2, 3)); // what is offered is taken at its word
        control->TakeContainerBackColor();
        QCOMPARE(control->FrameBackColor(), Color::rgb(1, 2, 3));
        QCOMPARE(seen(), QColor(1, 2, 3));
        container->setProperty("BackColor", QVariant());
        control->TakeContainerBackColor();
        QCOMPARE(seen(), QColor(Qt::green));
    }
};

TAVRIN_TEST_MAIN(tst_UserControlAmbient)
#include "tst_UserControlAmbient.moc"
