#include "UserControl.h"

#include "FailurePolicy.h"
#include "base/Guard.h"
#include "widgets/KeyCodes.h"

#include <QApplication>
#include <QDynamicPropertyChangeEvent>
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
                                       [this](const QWidget*, const QWidget* now) { focusMoved(now); });
    connectGuarded(this, &QObject::objectNameChanged, this, "UserControl_AmbientChanged",
                   [this] { ambientChanged(QStringLiteral("DisplayName")); });
    watchContainer();
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

// Saved properties

void UserControl::propertyStep(const QString& routine, const std::function<void()>& statement) const
{
    if (trapsPropertyErrors())
        trapAndGoOn(typeName(), routine, statement);
    else
        statement();
}

QVariant UserControl::storedValue(const PropertyBag& bag, const SavedProperty& property) const
{
    const QVariant stored = bag.ReadProperty(property.key, property.defaultValue);
    QVariant value = property.defaultValue;
    trapAndGoOn(typeName(), QStringLiteral("ReadProperties"),
                [&] { value = convertProperty(property.kind, stored); });
    return value;
}

void UserControl::UserControl_ReadProperties(const PropertyBag& bag)
{
    for (const SavedProperty& property : savedProperties()) {
        propertyStep(QStringLiteral("ReadProperties"), [&] { property.put(storedValue(bag, property)); });
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
    if (!event->spontaneous())
        guard("UserControl_Show", [this] { UserControl_Show(); });
}

void UserControl::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    if (!event->spontaneous())
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
    int keyCode = keyCodeOf(*event);
    // Keys that a constituent has left alone come here too; they are not the frame's, not even those of
    // a constituent that stands in for it (so not hasFocus).
    if (QApplication::focusWidget() == this && keyCode != 0)
        guard("UserControl_KeyDown", [&] { UserControl_KeyDown(keyCode, shiftStateOf(event->modifiers())); });
    if (keyCode == 0 && keyCodeOf(*event) != 0)
        event->accept();
    else
        QWidget::keyPressEvent(event);
}

void UserControl::mouseReleaseEvent(QMouseEvent* event)
{
    QWidget::mouseReleaseEvent(event);
    const QPoint place = event->position().toPoint();
    if (!rect().contains(place) || childAt(place)) // a constituent has left the event alone; it is not the bare surface's
        return;
    const int button = event->button() == Qt::LeftButton     ? 1
                       : event->button() == Qt::RightButton  ? 2
                       : event->button() == Qt::MiddleButton ? 4
                                                             : 0;
    guard("UserControl_MouseUp", [&] {
        UserControl_MouseUp(button, shiftStateOf(event->modifiers()), toTwips(place.x()), toTwips(place.y()));
    });
}

void UserControl::focusMoved(const QWidget* now)
{
    if (!now || now->window() != window())
        return;
    const bool inside = now == this || isAncestorOf(now);
    if (inside == m_focusInside)
        return;
    m_focusInside = inside;
    if (!inside) {
        controlsWithFocus.removeOne(this);
        UserControl_ExitFocus();
        return;
    }
    // The focus leaves the other controls first, whichever of them Qt tells first.
    const QList<UserControl*> others = controlsWithFocus;
    controlsWithFocus.append(this);
    const QPointer<UserControl> self(this);
    for (UserControl* other : others) {
        if (controlsWithFocus.contains(other))
            guard("UserControl_Focus", [&] { other->focusMoved(now); });
    }
    if (self && m_focusInside)
        UserControl_EnterFocus();
}

// Ambient values

void UserControl::ambientChanged(const QString& propertyName)
{
    if (m_begun)
        UserControl_AmbientChanged(propertyName);
}

void UserControl::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    guard("UserControl_AmbientChanged", [&] {
        if (event->type() == QEvent::FontChange)
            ambientChanged(QStringLiteral("Font"));
        else if (event->type() == QEvent::PaletteChange)
            ambientChanged(QStringLiteral("BackColor"));
    });
}

bool UserControl::event(QEvent* event)
{
    if (event->type() == QEvent::ParentChange)
        watchContainer();
    return QWidget::event(event);
}

void UserControl::watchContainer()
{
    if (m_watchedContainer == parentWidget())
        return;
    if (m_watchedContainer)
        m_watchedContainer->removeEventFilter(this);
    m_watchedContainer = parentWidget();
    if (m_watchedContainer)
        m_watchedContainer->installEventFilter(this);
}

bool UserControl::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_watchedContainer && event->type() == QEvent::DynamicPropertyChange) {
        const QByteArray name = static_cast<QDynamicPropertyChangeEvent*>(event)->propertyName();
        if (name == "BackColor" || name == "ScaleUnits")
            guard("UserControl_AmbientChanged", [&] { ambientChanged(QString::fromLatin1(name)); });
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace tavrin
