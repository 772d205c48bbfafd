#include "frame/control_frame/ContainerWatch.h"

#include "frame/control_frame/ContainerColor.h"

#include <QApplication>
#include <QDynamicPropertyChangeEvent>
#include <QWidget>

namespace tavrin {

ContainerWatch::ContainerWatch(QWidget& control, Changed changed)
    : m_control(control)
    , m_changed(std::move(changed))
{
    follow();
}

bool ContainerWatch::follow()
{
    const bool isOther = m_container != m_control.parentWidget();
    m_container = m_control.parentWidget();
    watchAll();
    noteColor();
    return isOther;
}

void ContainerWatch::watchAll()
{
    QList<QPointer<QObject>> now;
    for (QWidget* widget = m_control.parentWidget(); widget; widget = widget->parentWidget()) {
        now << widget;
        if (!m_watched.contains(widget))
            widget->installEventFilter(this);
        if (widget->isWindow())
            break;
    }
    for (const QPointer<QObject>& former : std::exchange(m_watched, now)) {
        if (former && !now.contains(former))
            former->removeEventFilter(this);
    }
}

bool ContainerWatch::noteColor()
{
    // A colour of the theme is another one, too, when the theme changes.
    const Color color = m_container ? shownBackColor(*m_control.parentWidget()) : SystemColor::ButtonFace;
    const QColor shown = color.resolve(QApplication::palette());
    const bool isOther = color != m_color || shown != m_shown;
    m_color = color;
    m_shown = shown;
    return isOther;
}

void ContainerWatch::look()
{
    if (noteColor())
        m_changed(QStringLiteral("BackColor"));
}

Color ContainerWatch::takeColor()
{
    noteColor();
    return m_color;
}

void ContainerWatch::propertyChanged(const QObject* owner, const QByteArray& name)
{
    const bool isAmbient = name == "Font" || name == "BackColor" || name == "ScaleUnits";
    if (owner == m_container && isAmbient) {
        noteColor();
        m_changed(QString::fromLatin1(name));
    } else if (name == "BackColor") {
        look();
    }
}

bool ContainerWatch::eventFilter(QObject* watched, QEvent* event)
{
    // Each tells as its last step: whoever hears of it may delete the control, and this with it.
    switch (event->type()) {
    case QEvent::FontChange:
        if (watched == m_container)
            m_changed(QStringLiteral("Font"));
        break;
    case QEvent::DynamicPropertyChange:
        propertyChanged(watched, static_cast<QDynamicPropertyChangeEvent*>(event)->propertyName());
        break;
    case QEvent::ParentChange:
        watchAll();
        look();
        break;
    case QEvent::PaletteChange:
    case QEvent::StyleChange:
        look();
        break;
    case QEvent::UpdateRequest: // comes to the window, with all that asked to be painted
        if (m_control.isVisible())
            look();
        break;
    default:
        break;
    }
    return false;
}

} // namespace tavrin
