#include "component/ControlWindows.h"

#include "component/Handles.h"
#include "component/NativeWindow.h"
#include "component/Values.h"

#include <QApplication>
#include <QEventLoop>
#include <QJsonDocument>
#include <QJsonObject>
#include <QScopeGuard>
#include <QTimer>
#include <QVBoxLayout>
#include <QWindow>

#include <memory>
#include <optional>

namespace tavrin {

namespace {

/// The application object that the library has made, with what it wants for as long as it lives.
struct OwnApplication
{
    int argc = 1;
    char name[16] = "TVBoundControls";
    char* argv[2] = {name, nullptr};
    QApplication application{argc, argv};
    LiveObject live;
};

std::unique_ptr<OwnApplication>& ownApplication()
{
    // Never destroyed by itself: at the end of a program the platform's own parts may be gone already.
    static auto* const own = new std::unique_ptr<OwnApplication>;
    return *own;
}

int runningLoops = 0;

/// Qt ends the program where it finds no display.
bool hasDisplay()
{
#if defined(Q_OS_LINUX)
    return qEnvironmentVariableIsSet("QT_QPA_PLATFORM") || !qEnvironmentVariableIsEmpty("DISPLAY") ||
           !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
#else
    return true;
#endif
}

/// A window for controls of programs without Qt: one of its own, or one inside a window of the platform's. It
/// ends with its last control.
class ControlWindow final : public QWidget
{
public:
    ControlWindow() { (new QVBoxLayout(this))->setContentsMargins(0, 0, 0, 0); }
    ~ControlWindow() override
    {
        for (UserControl* control : findChildren<UserControl*>(Qt::FindDirectChildrenOnly))
            control->disconnect(this); // those that are left end with it
        if (m_foreign && windowHandle())
            windowHandle()->setParent(nullptr); // the foreign window is not to take this one with it
    }

    void embed(WId window)
    {
        m_foreign.reset(QWindow::fromWinId(window));
        if (!m_foreign)
            throw CallError(
                TV_E_NOTIMPL,
                QStringLiteral("The platform cannot show a control in a window of another program part"));
        if (!mayBeWindow(window))
            throw CallError(TV_E_HANDLE, QStringLiteral("There is no window %1").arg(window));
        winId();
        windowHandle()->setParent(m_foreign.get());
    }
    bool isEmbedded() const { return m_foreign != nullptr; }

    void take(UserControl& control)
    {
        ++m_controls;
        layout()->addWidget(&control);
        connect(&control, &QObject::destroyed, this, [this] {
            if (--m_controls == 0) {
                hide();
                destroyLater(this);
            }
        });
    }

private:
    std::unique_ptr<QWindow> m_foreign;
    LiveObject m_live;
    int m_controls = 0;
};

ControlWindow* windowOf(const UserControl& control)
{
    return dynamic_cast<ControlWindow*>(control.parentWidget());
}

/// The widget that the control is to stand on; a new window is the caller's.
QWidget* parentFor(const TvSite& site, std::unique_ptr<ControlWindow>& made)
{
    switch (site.parentKind) {
    case TV_PARENT_NONE:
        made = std::make_unique<ControlWindow>();
        return made.get();
    case TV_PARENT_NATIVE:
        if (site.parent == 0)
            throw CallError(TV_E_HANDLE, QStringLiteral("There is no window 0"));
        made = std::make_unique<ControlWindow>();
        made->embed(static_cast<WId>(site.parent));
        return made.get();
    case TV_PARENT_CONTROL:
        return handles().control(site.parent).parentWidget();
    case TV_PARENT_QWIDGET:
        if (site.parent == 0)
            throw CallError(TV_E_HANDLE, QStringLiteral("There is no parent"));
        // NOLINTNEXTLINE(performance-no-int-to-ptr): the border knows handles as numbers only
        return reinterpret_cast<QWidget*>(static_cast<quintptr>(site.parent));
    default:
        throw CallError(TV_E_INVALIDARG,
                        QStringLiteral("There is no kind %1 of parents").arg(site.parentKind));
    }
}

} // namespace

bool startApplication()
{
    if (const auto* application = QCoreApplication::instance()) {
        if (!qobject_cast<const QApplication*>(application))
            throw CallError(TV_E_UNEXPECTED,
                            QStringLiteral("The program's application object cannot show windows"));
        wantOwnThread();
        return false;
    }
    wantOwnThread();
    if (!hasDisplay())
        throw CallError(TV_E_FAIL,
                        QStringLiteral("There is no display: neither DISPLAY nor WAYLAND_DISPLAY is set"));
    ownApplication() = std::make_unique<OwnApplication>();
    return true;
}

bool endApplication()
{
    wantOwnThread();
    if (!ownApplication())
        return false;
    if (runningLoops > 0 || CallbackScope::isActive())
        throw CallError(TV_E_UNEXPECTED, QStringLiteral("The application is at work"));
    const QList<UserControl*> controls = handles().controls();
    for (const QPointer<UserControl> control : controls) // one may take others with it
        delete control;
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (const QPointer<QWidget> window : windows)
        delete dynamic_cast<ControlWindow*>(window.data());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    ownApplication().reset();
    return true;
}

void runApplication()
{
    startApplication();
    if (runningLoops > 0)
        throw CallError(TV_E_UNEXPECTED, QStringLiteral("The application runs already"));
    ++runningLoops;
    const auto leave = qScopeGuard([] { --runningLoops; });
    QApplication::exec();
}

void processEvents(int milliseconds)
{
    startApplication();
    if (milliseconds < 0)
        throw CallError(TV_E_INVALIDARG, QStringLiteral("A time is negative"));
    QCoreApplication::processEvents();
    if (milliseconds == 0)
        return;
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.processEvents(QEventLoop::WaitForMoreEvents);
}

UserControl* createControl(const PublicClass& controlClass, const TvSite& site)
{
    startApplication();
    std::optional<PropertyBag> saved;
    if (site.saved) {
        const QJsonDocument json = QJsonDocument::fromJson(QByteArray(site.saved));
        if (!json.isObject())
            throw CallError(TV_E_INVALIDARG, QStringLiteral("The saved properties are no JSON object"));
        saved = PropertyBag::fromJson(json.object());
    }
    std::unique_ptr<ControlWindow> made;
    QWidget* parent = parentFor(site, made);
    std::optional<DesignTime> designTime;
    if (site.designTime != 0)
        designTime.emplace();
    const ControlSite place{site.name ? toText(site.name) : QString(), saved ? &*saved : nullptr};
    UserControl* control =
        raisingException([&] { return publicControls().create(controlClass.name, parent, place); });
    if (auto* window = windowOf(*control))
        window->take(*control);
    made.release(); // NOLINT(bugprone-unused-return-value): it is its control's from here on
    return control;
}

void destroyControl(UserControl& control)
{
    if (!CallbackScope::isActive()) {
        delete &control;
        return;
    }
    control.hide();
    destroyLater(&control);
}

void showControl(UserControl& control, bool visible)
{
    control.setVisible(visible);
    if (ControlWindow* window = windowOf(control))
        window->setVisible(visible);
}

void moveControl(UserControl& control, const QRect& place)
{
    if (ControlWindow* window = windowOf(control))
        window->setGeometry(place);
    else
        control.setGeometry(place);
}

void setWindowTitle(UserControl& control, const QString& title)
{
    ControlWindow* window = windowOf(control);
    if (!window || window->isEmbedded())
        throw CallError(TV_E_UNEXPECTED, QStringLiteral("The control's window is the program's own"));
    window->setWindowTitle(title);
}

} // namespace tavrin
