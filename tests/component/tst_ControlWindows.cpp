#include "base/LiveObject.h"
#include "component/ComponentClient.h"
#include "frame/control_frame/UserControl.h"
#include "frame/host_contracts/Host.h"
#include "support/TestCase.h"
#include "testing/FakeHost.h"
#include "widgets/panels/Form.h"

#include <QApplication>
#include <QPointer>
#include <QTimer>

#include <memory>

using namespace Qt::StringLiterals;
using namespace tavrin::test;
using tavrin::UserControl;

/// Where controls stand, how they end, and what keeps the library in use.
class tst_ControlWindows : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init() override
    {
        failOnUnexpectedWarnings();
        QCOMPARE(DllCanUnloadNow(), TV_S_OK);
    }
    void cleanup() override
    {
        TestCase::cleanup();
        QCOMPARE(DllCanUnloadNow(), TV_S_OK);
    }

    void aControlWithoutAParentStandsInAWindowOfItsOwn()
    {
        tavrin::Host host;
        const tavrin::HostInstallation installation(host);
        auto made = std::make_unique<Made>("MultiValue");
        const QPointer<QWidget> window = widget(*made)->window();
        QVERIFY(window != widget(*made));
        QVERIFY(!window->isVisible());
        QCOMPARE(made->functions.SetTitle(made->handle, "Where \xc3\xa4"), TV_S_OK);
        QCOMPARE(made->functions.Move(made->handle, 30, 40, 300, 200), TV_S_OK);
        QCOMPARE(made->functions.Show(made->handle, 1), TV_S_OK);
        QVERIFY(window->isVisible());
        QVERIFY(widget(*made)->isVisible());
        QCOMPARE(window->windowTitle(), u"Where ä"_s);
        QCOMPARE(window->geometry(), QRect(30, 40, 300, 200));
        QTRY_COMPARE(widget(*made)->size(), QSize(300, 200));
        QCOMPARE(made->functions.Show(made->handle, 0), TV_S_OK);
        QVERIFY(!window->isVisible());
        QCOMPARE(made->functions.Move(made->handle, 0, 0, -1, 0), TV_E_INVALIDARG);
        QCOMPARE(made->functions.Destroy(made->handle), TV_S_OK);
        QVERIFY(!window);
    }

    void controlsShareAWindowThatEndsWithTheLast()
    {
        auto first = std::make_unique<Made>("LatLong");
        const QPointer<QWidget> window = widget(*first)->window();
        TvSite site{};
        site.size = sizeof site;
        site.parentKind = TV_PARENT_CONTROL;
        site.parent = first->handle;
        site.name = "second";
        TvControl second = 0;
        QCOMPARE(first->functions.Create(&first->functions, &site, &second), TV_S_OK);
        QCOMPARE(window->findChildren<UserControl*>().size(), 2);
        QCOMPARE(window->findChildren<UserControl*>().last()->objectName(), u"second"_s);
        const TvClassObject& functions = first->functions;
        first.reset();
        QVERIFY(window);
        QCOMPARE(functions.Destroy(second), TV_S_OK);
        QVERIFY(!window);
    }

    void aControlStandsOnAWidgetOfTheProgram()
    {
        QWidget parent;
        const TvControl control = makeOn(parent);
        QCOMPARE(parent.findChildren<UserControl*>().size(), 1);
        const TvClassObject& functions = classObject("LatLong");
        QCOMPARE(functions.Move(control, 5, 6, 70, 80), TV_S_OK);
        QCOMPARE(parent.findChild<UserControl*>()->geometry(), QRect(5, 6, 70, 80));
        QCOMPARE(functions.SetTitle(control, "mine"), TV_E_UNEXPECTED);
        QCOMPARE(functions.Destroy(control), TV_S_OK);
        QVERIFY(parent.children().isEmpty());
    }

    void aControlThatIsMadeForTheDesignerRunsThere()
    {
        TvSite site{};
        site.size = sizeof site;
        site.designTime = 1;
        const TvClassObject& functions = classObject("FlatUserPicker"); // asks its host for nothing here
        TvControl control = 0;
        QVERIFY2(functions.Create(&functions, &site, &control) == TV_S_OK, qPrintable(lastDescription()));
        void* object = nullptr;
        QCOMPARE(functions.QtObject(control, &object), TV_S_OK);
        QVERIFY(!static_cast<UserControl*>(object)->ambient().UserMode());
        QCOMPARE(functions.Destroy(control), TV_S_OK);
    }

    void aHandleOfADeadControlIsRefused()
    {
        auto parent = std::make_unique<QWidget>();
        const TvControl control = makeOn(*parent);
        parent.reset();
        const TvClassObject& one = classObject("LatLong");
        TvVariant value{};
        void* object = nullptr;
        QCOMPARE(one.Destroy(control), TV_E_HANDLE);
        QCOMPARE(one.Show(control, 1), TV_E_HANDLE);
        QCOMPARE(one.Move(control, 0, 0, 1, 1), TV_E_HANDLE);
        QCOMPARE(one.SetTitle(control, ""), TV_E_HANDLE);
        QCOMPARE(one.Get(control, "Value", &value), TV_E_HANDLE);
        QCOMPARE(one.Put(control, "Value", &value), TV_E_HANDLE);
        QCOMPARE(one.Call(control, "Go", nullptr, 0, nullptr), TV_E_HANDLE);
        QCOMPARE(one.Subscribe(
                     control, "Change",
                     [](TvControl, const char*, TvVariant*, int32_t, void*) -> TvResult { return 0; },
                     nullptr, nullptr),
                 TV_E_HANDLE);
        QCOMPARE(one.Unsubscribe(control, 1), TV_E_HANDLE);
        QCOMPARE(one.SavedProperties(control, &value), TV_E_HANDLE);
        QCOMPARE(one.RestoreProperties(control, "{}"), TV_E_HANDLE);
        QCOMPARE(one.Contract(control, "ReadData", nullptr, 0, nullptr), TV_E_HANDLE);
        QCOMPARE(one.QtObject(control, &object), TV_E_HANDLE);
        QCOMPARE(one.Get(0, "Value", &value), TV_E_HANDLE);
    }

    void anObjectHasOneHandleAsLongAsItLives()
    {
        const TvClassObject& one = classObject("LatLong");
        QWidget parent;
        const TvControl control = makeOn(parent);
        TvHandle again = 0;
        QCOMPARE(one.HandleOf(parent.findChild<UserControl*>(), &again), TV_S_OK);
        QCOMPARE(again, control);
        QCOMPARE(one.Destroy(control), TV_S_OK);
        const TvControl other = makeOn(parent);
        QVERIFY(other != control);
        QCOMPARE(one.Destroy(other), TV_S_OK);
    }

    // What keeps the library in use

    void aControlKeepsTheLibraryUntilItsParentEnds()
    {
        auto parent = std::make_unique<QWidget>();
        makeOn(*parent);
        QCOMPARE(DllCanUnloadNow(), TV_S_FALSE);
        parent.reset();
        QCOMPARE(DllCanUnloadNow(), TV_S_OK);
    }

    void aDialogKeepsTheLibrary()
    {
        auto form = std::make_unique<tavrin::Form>();
        QCOMPARE(DllCanUnloadNow(), TV_S_FALSE);
        form.reset();
        QCOMPARE(DllCanUnloadNow(), TV_S_OK);
    }

    void aCallKeepsTheLibrary()
    {
        TvResult inside = TV_S_OK;
        QTimer::singleShot(0, [&] {
            inside = DllCanUnloadNow();
            library().Quit();
        });
        QCOMPARE(library().Run(), TV_S_OK);
        QCOMPARE(inside, TV_S_FALSE);
        QCOMPARE(DllCanUnloadNow(), TV_S_OK);
    }

    // The application

    void aLoopRunsOnlyOnce()
    {
        TvResult inside = TV_S_OK;
        TvResult ended = TV_S_OK;
        QTimer::singleShot(0, [&] {
            inside = library().Run();
            ended = library().EndApplication();
            library().Quit();
        });
        QCOMPARE(library().Run(), TV_S_OK);
        QCOMPARE(inside, TV_E_UNEXPECTED);
        QCOMPARE(ended, TV_S_FALSE); // the application is the test's
    }

    void eventsAreHandledWithoutALoop()
    {
        int times = 0;
        QTimer::singleShot(0, [&] { ++times; });
        QCOMPARE(library().ProcessEvents(0), TV_S_OK);
        QTRY_COMPARE(times, 1);
        QTimer::singleShot(20, [&] { ++times; });
        QCOMPARE(library().ProcessEvents(10000), TV_S_OK); // waits no longer than for the first event
        QTRY_COMPARE(times, 2);
        QCOMPARE(library().ProcessEvents(-1), TV_E_INVALIDARG);
    }

    void theApplicationOfTheProgramIsLeftAlone()
    {
        QCOMPARE(library().StartApplication(), TV_S_FALSE);
        QCOMPARE(library().EndApplication(), TV_S_FALSE);
        QVERIFY(qApp);
    }

private:
    static QWidget* widget(const Made& made) { return qobject_cast<QWidget*>(made.object()); }

    static TvControl makeOn(QWidget& parent)
    {
        TvSite site{};
        site.size = sizeof site;
        site.parentKind = TV_PARENT_QWIDGET;
        site.parent = reinterpret_cast<quintptr>(&parent);
        const TvClassObject& functions = classObject("LatLong");
        TvControl control = 0;
        if (functions.Create(&functions, &site, &control) != TV_S_OK)
            qFatal("%s", qPrintable(lastDescription()));
        return control;
    }
};

TAVRIN_TEST_MAIN(tst_ControlWindows)
#include "tst_ControlWindows.moc"
