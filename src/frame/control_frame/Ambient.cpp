#include "frame/control_frame/Ambient.h"

#include "frame/control_frame/ContainerColor.h"

#include <QVariant>
#include <QWidget>

namespace tavrin {

namespace {
thread_local int designTimeDepth = 0;
}

DesignTime::DesignTime()
{
    ++designTimeDepth;
}

DesignTime::~DesignTime()
{
    --designTimeDepth;
}

bool DesignTime::isActive()
{
    return designTimeDepth > 0;
}

Ambient::Ambient(const QWidget& control)
    : m_control(control)
    , m_userMode(!DesignTime::isActive())
{
}

QString Ambient::DisplayName() const
{
    return m_control.objectName();
}

FontPtr Ambient::Font() const
{
    const QWidget* container = m_control.parentWidget();
    return std::make_shared<tavrin::Font>(container ? container->font() : m_control.font());
}

Color Ambient::BackColor() const
{
    const QWidget* container = m_control.parentWidget();
    return container ? shownBackColor(*container) : SystemColor::ButtonFace;
}

QString Ambient::ScaleUnits() const
{
    const QWidget* container = m_control.parentWidget();
    const QVariant units = container ? container->property("ScaleUnits") : QVariant();
    return units.isValid() ? units.toString() : QStringLiteral("Twip");
}

} // namespace tavrin
