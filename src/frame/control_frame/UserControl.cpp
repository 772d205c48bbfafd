#include "frame/control_frame/UserControl.h"

#include "base/failure/Guard.h"
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

UserControl::UserControl(QWidget* parent, const ControlSite& site)
    : QWidget(parent)
    , m_saved(site.saved)
    , m_ambient(*this)
    , m_extender(*this)
{
    setObjectName(site.name);
}

UserControl::~UserControl()
{
    controlsWithFocus.removeOne(this);
    disconnect(m_focusConnection); // no focus event reaches a half-destroyed control
}

void UserControl::begin()
{
    m_focusConnection = connectGuarded(qApp, &QApplication::focusChanged, this, "UserControl_Focus",
                                       [this] { focusMoved(); });
    connectGuarded(this, &QObject::objectNameChanged, this, "UserControl_AmbientChanged",
                   [this] { ambientChanged(QStringLiteral("DisplayName")); });
    m_containerWatch =
        std::make_unique<ContainerWatch>(*this, [this](const QString& name) { containerChanged(name); });
    if (const PropertyBag* saved = std::exchange(m_saved, nullptr))
        UserControl_ReadProperties(*saved);
    else
        UserControl_InitProperties();
    m_begun = true;
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

void UserControl::SetFrameBackColor(Color color)
{
    m_frameBackColor = color;
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
    setAutoFillBackground(m_extender.Container().HasBackColor());
}

Color UserControl::TakeAmbientBackColor()
{
    return m_containerWatch ? m_containerWatch->takeColor() : m_ambient.BackColor();
}

Color UserControl::ContainerBackColor() const
{
    try {
        return m_extender.Container().BackColor();
    } catch (const Error&) {
        return m_ambient.BackColor();
    }
}

// Saved properties

bool UserControl::ReportChange(const QString& key)
{
    const QPointer<UserControl> self(this);
    Q_EMIT PropertyChanged(key);
    return !self.isNull();
}

void UserControl::propertyStep(const QString& routine, const std::function<void()>& statement) const
{
    if (trapsPropertyErrors())
        trapAndGoOn(typeName(), routine, statement);
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
        propertyStep(routine, [&] {
            QVariant value = property.defaultValue;
            const auto readKey = [&](const QString& key) {
                value = convertProperty(property.kind, bag.ReadProperty(key, value));
            };
            const auto read = [&] { readKey(property.key); };
            if (!property.olderKey.isEmpty())
                propertyStep(routine, [&] { readKey(property.olderKey); });
            // What cannot be read leaves a living control as it is; a new one has nothing yet to keep and
            // takes the default.
            if (m_begun)
                read();
            else
                propertyStep(routine, read);
            property.put(value);
        });
    }
}

void UserControl::UserControl_WriteProperties(PropertyBag& bag)
{
    for (const SavedProperty& property : savedProperties()) {
        propertyStep(QStringLiteral("WriteProperties"), [&] {
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
        m_containerWatch->look();
    // A constituent may have kept the focus while it was hidden.
    if (self && QApplication::focusWidget())
        guard("UserControl_Focus", [this] { focusMoved(); });
}

void UserControl::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    if (event->spontaneous())
        return;
    guard("UserControl_Focus", [this] { leaveFocus(); });
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

void UserControl::focusMoved()
{
    // Where the focus is, and not what the signal says of it: whoever was told before may have moved it on.
    const QWidget* now = QApplication::focusWidget();
    // Another program or another window takes the focus for a while; nothing in the active window takes it
    // for good.
    const bool isElsewhere = now ? now->window() != window() : QApplication::activeWindow() != window();
    if (isElsewhere)
        return;
    if (!containsFocus()) {
        leaveFocus();
        return;
    }
    if (m_focusInside)
        return;
    // The focus leaves the other controls first, whichever of them Qt tells first.
    const QList<UserControl*> others = controlsWithFocus;
    const QPointer<UserControl> self(this);
    for (UserControl* other : others) {
        if (controlsWithFocus.contains(other))
            guard("UserControl_Focus", [other] { other->focusMoved(); });
    }
    // One of them may have kept it, or this one has entered meanwhile.
    if (!self || m_focusInside || !containsFocus())
        return;
    m_focusInside = true;
    controlsWithFocus.append(this);
    UserControl_EnterFocus();
}

bool UserControl::containsFocus() const
{
    const QWidget* now = QApplication::focusWidget();
    return now && (now == this || isAncestorOf(now));
}

void UserControl::leaveFocus()
{
    if (!std::exchange(m_focusInside, false))
        return;
    controlsWithFocus.removeOne(this);
    UserControl_ExitFocus();
}

// Ambient values

void UserControl::ambientChanged(const QString& propertyName)
{
    if (m_begun)
        UserControl_AmbientChanged(propertyName);
}

void UserControl::containerChanged(const QString& propertyName)
{
    guard("UserControl_AmbientChanged", [&] { ambientChanged(propertyName); });
}

bool UserControl::event(QEvent* event)
{
    if (event->type() == QEvent::ParentChange && m_containerWatch && m_containerWatch->follow()) {
        for (const char* name : {"Font", "BackColor", "ScaleUnits"})
            containerChanged(QString::fromLatin1(name));
    }
    return QWidget::event(event);
}

} // namespace tavrin
