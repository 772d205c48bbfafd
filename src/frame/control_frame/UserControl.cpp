#include "frame/control_frame/UserControl.h"

#include "base/LiveObject.h"
#include "base/failure/Guard.h"
#include "base/values/FormConverters.h"
#include "frame/control_frame/ContainerWatch.h"
#include "frame/control_frame/FailurePolicy.h"
#include "widgets/boxes/KeyCodes.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>

namespace tavrin {

namespace {
/// The controls that the focus is in; more than one where they are nested or stand on several windows.
thread_local QList<UserControl*> controlsWithFocus;
} // namespace

class UserControl::Private
{
public:
    Private(UserControl& control, const ControlSite& site)
        : q(control)
        , saved(site.saved)
        , ambient(control)
        , extender(control)
    {
    }

    void focusMoved();
    bool containsFocus() const;
    void leaveFocus();
    void containerChanged(const QString& propertyName);
    void ambientChanged(const QString& propertyName);
    void propertyStep(const QString& routine, const std::function<void()>& statement) const;

    UserControl& q;
    LiveObject live;
    const PropertyBag* saved;
    Ambient ambient;
    Extender extender;
    QMetaObject::Connection focusConnection;
    std::unique_ptr<ContainerWatch> containerWatch;
    Color frameBackColor = SystemColor::ButtonFace;
    bool begun = false;
    bool focusInside = false;
};

UserControl::UserControl(QWidget* parent, const ControlSite& site)
    : QWidget(parent)
    , d(std::make_unique<Private>(*this, site))
{
    registerFormConverters(); // for the properties that a form puts next
    setObjectName(site.name);
}

UserControl::~UserControl()
{
    controlsWithFocus.removeOne(this);
    disconnect(d->focusConnection); // no focus event reaches a half-destroyed control
}

const Ambient& UserControl::ambient() const
{
    return d->ambient;
}

Extender& UserControl::extender()
{
    return d->extender;
}

void UserControl::begin()
{
    d->focusConnection = connectGuarded(qApp, &QApplication::focusChanged, this, "UserControl_Focus",
                                        [this] { d->focusMoved(); });
    connectGuarded(this, &QObject::objectNameChanged, this, "UserControl_AmbientChanged",
                   [this] { d->ambientChanged(QStringLiteral("DisplayName")); });
    d->containerWatch =
        std::make_unique<ContainerWatch>(*this, [this](const QString& name) { d->containerChanged(name); });
    if (const PropertyBag* saved = std::exchange(d->saved, nullptr))
        UserControl_ReadProperties(*saved);
    else
        UserControl_InitProperties();
    d->begun = true;
}

qint32 UserControl::hWnd() const
{
    // Never winId(), which would make native windows of all relatives.
    return static_cast<qint32>(effectiveWinId());
}

QString UserControl::typeName() const
{
    return QString::fromLatin1(metaObject()->className()).section(QStringLiteral("::"), -1);
}

// Size

void UserControl::SetWidth(Twips width)
{
    resize(toPixels(width), height());
}

void UserControl::SetHeight(Twips height)
{
    resize(width(), toPixels(height));
}

void UserControl::Size(Twips width, Twips height)
{
    resize(toPixels(width), toPixels(height));
}

Twips UserControl::ScaleX(Twips length, ScaleMode from, ScaleMode to)
{
    return length * twipsPerUnitX(from) / twipsPerUnitX(to);
}

Twips UserControl::ScaleY(Twips length, ScaleMode from, ScaleMode to)
{
    return length * twipsPerUnitY(from) / twipsPerUnitY(to);
}

QList<QWidget*> UserControl::Controls() const
{
    return findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
}

// Colours

Color UserControl::FrameBackColor() const
{
    return d->frameBackColor;
}

void UserControl::SetFrameBackColor(Color color)
{
    d->frameBackColor = color;
    QPalette own = palette();
    own.setColor(QPalette::Window, color.resolve(QApplication::palette()));
    setPalette(own);
    setAutoFillBackground(true);
}

void UserControl::TakeContainerBackColor()
{
    TakeAmbientBackColor();
    SetFrameBackColor(ContainerBackColor());
    // What a container without the property shows need not be one colour: a style may draw it, and it may be
    // looked through. So nothing is drawn over it.
    setAutoFillBackground(d->extender.Container().HasBackColor());
}

Color UserControl::TakeAmbientBackColor()
{
    return d->containerWatch ? d->containerWatch->takeColor() : d->ambient.BackColor();
}

Color UserControl::ContainerBackColor() const
{
    try {
        return d->extender.Container().BackColor();
    } catch (const Error&) {
        return d->ambient.BackColor();
    }
}

// Saved properties

bool UserControl::ReportChange(const QString& key)
{
    const QPointer<UserControl> self(this);
    Q_EMIT PropertyChanged(key);
    return !self.isNull();
}

void UserControl::Private::propertyStep(const QString& routine, const std::function<void()>& statement) const
{
    if (q.trapsPropertyErrors())
        trapAndGoOn(q.typeName(), routine, statement);
    else
        statement();
}

void UserControl::UserControl_ReadProperties(const PropertyBag& bag)
{
    const QString routine = QStringLiteral("ReadProperties");
    const QPointer<UserControl> self(this);
    for (const SavedProperty& property : savedProperties()) {
        if (!self)
            return; // a follower of a property has deleted the control
        d->propertyStep(routine, [&] {
            QVariant value = property.defaultValue;
            const auto readKey = [&](const QString& key) {
                value = convertProperty(property.kind, bag.ReadProperty(key, value));
            };
            const auto read = [&] { readKey(property.key); };
            if (!property.olderKey.isEmpty())
                d->propertyStep(routine, [&] { readKey(property.olderKey); });
            // What cannot be read leaves a living control as it is; a new one has nothing yet to keep and
            // takes the default.
            if (d->begun)
                read();
            else
                d->propertyStep(routine, read);
            property.put(value);
        });
    }
}

void UserControl::UserControl_WriteProperties(PropertyBag& bag)
{
    for (const SavedProperty& property : savedProperties()) {
        d->propertyStep(QStringLiteral("WriteProperties"), [&] {
            const QString& key = property.writtenKey.isEmpty() ? property.key : property.writtenKey;
            bag.WriteProperty(key, property.get(), property.defaultValue);
        });
    }
}

// Events

void UserControl::UserControl_AmbientChanged(const QString&) {}

void UserControl::UserControl_KeyDown(int&, int) {}

void UserControl::UserControl_MouseUp(int, int, Twips, Twips) {}

void UserControl::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    if (event->spontaneous())
        return;
    const QPointer<UserControl> self(this);
    guard("UserControl_Show", [this] { UserControl_Show(); });
    // The style has its say before a widget is shown, and a hidden one is not painted: neither is told.
    if (self)
        d->containerWatch->look();
    // A constituent may have kept the focus while it was hidden.
    if (self && QApplication::focusWidget())
        guard("UserControl_Focus", [this] { d->focusMoved(); });
}

void UserControl::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    if (event->spontaneous())
        return;
    guard("UserControl_Focus", [this] { d->leaveFocus(); });
    guard("UserControl_Hide", [this] { UserControl_Hide(); });
}

void UserControl::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    guard("UserControl_Resize", [this] { UserControl_Resize(); });
}

void UserControl::focusOutEvent(QFocusEvent* event)
{
    QWidget::focusOutEvent(event);
    guard("UserControl_LostFocus", [this] { UserControl_LostFocus(); });
}

void UserControl::keyPressEvent(QKeyEvent* event)
{
    const QPointer<UserControl> self(this);
    int keyCode = keyCodeOf(*event);
    // Keys that a constituent has left alone come here too; they are not the frame's, not even those of
    // a constituent that stands in for it (so not hasFocus).
    if (QApplication::focusWidget() == this && keyCode != 0)
        guard("UserControl_KeyDown", [&] { UserControl_KeyDown(keyCode, shiftStateOf(event->modifiers())); });
    if (!self || (keyCode == 0 && keyCodeOf(*event) != 0))
        event->accept();
    else
        QWidget::keyPressEvent(event);
}

void UserControl::mouseReleaseEvent(QMouseEvent* event)
{
    QWidget::mouseReleaseEvent(event);
    const QPoint place = event->position().toPoint();
    if (!rect().contains(place) || childAt(place)) // a constituent's event that was left alone comes here too
        return;
    const int button = event->button() == Qt::LeftButton     ? 1
                       : event->button() == Qt::RightButton  ? 2
                       : event->button() == Qt::MiddleButton ? 4
                                                             : 0;
    guard("UserControl_MouseUp", [&] {
        UserControl_MouseUp(button, shiftStateOf(event->modifiers()), toTwips(place.x()), toTwips(place.y()));
    });
}

void UserControl::Private::focusMoved()
{
    // Where the focus is, and not what the signal says of it: whoever was told before may have moved it on.
    const QWidget* now = QApplication::focusWidget();
    // Another program or another window takes the focus for a while; nothing in the active window takes it
    // for good.
    const bool isElsewhere = now ? now->window() != q.window() : QApplication::activeWindow() != q.window();
    if (isElsewhere)
        return;
    if (!containsFocus()) {
        leaveFocus();
        return;
    }
    if (focusInside)
        return;
    // The focus leaves the other controls first, whichever of them Qt tells first.
    const QList<UserControl*> others = controlsWithFocus;
    const QPointer<UserControl> self(&q);
    for (UserControl* other : others) {
        if (controlsWithFocus.contains(other))
            guard("UserControl_Focus", [other] { other->d->focusMoved(); });
    }
    // One of them may have kept it, or this one has entered meanwhile.
    if (!self || focusInside || !containsFocus())
        return;
    focusInside = true;
    controlsWithFocus.append(&q);
    q.UserControl_EnterFocus();
}

bool UserControl::Private::containsFocus() const
{
    const QWidget* now = QApplication::focusWidget();
    return now && (now == &q || q.isAncestorOf(now));
}

void UserControl::Private::leaveFocus()
{
    if (!std::exchange(focusInside, false))
        return;
    controlsWithFocus.removeOne(&q);
    q.UserControl_ExitFocus();
}

// Ambient values

void UserControl::Private::ambientChanged(const QString& propertyName)
{
    if (begun)
        q.UserControl_AmbientChanged(propertyName);
}

void UserControl::Private::containerChanged(const QString& propertyName)
{
    guard("UserControl_AmbientChanged", [&] { ambientChanged(propertyName); });
}

bool UserControl::event(QEvent* event)
{
    if (event->type() == QEvent::ParentChange && d->containerWatch && d->containerWatch->follow()) {
        const QPointer<UserControl> self(this);
        for (const char* name : {"Font", "BackColor", "ScaleUnits"}) {
            if (!self)
                return true; // a follower of the change has deleted the control
            d->containerChanged(QString::fromLatin1(name));
        }
        if (!self)
            return true;
    }
    return QWidget::event(event);
}

} // namespace tavrin
