#include "frame/control_frame/Extender.h"

#include "base/failure/Error.h"
#include "frame/control_frame/ContainerColor.h"
#include "frame/control_frame/UserControl.h"
#include "frame/host_contracts/Host.h"

#include <QVariant>

namespace tavrin {

bool Container::HasBackColor() const
{
    return m_widget && colorOf(m_widget->property("BackColor"));
}

Color Container::BackColor() const
{
    if (!HasBackColor())
        throw Error(QStringLiteral("Object doesn't support this property or method"),
                    Error::NoSuchMemberNumber);
    return *colorOf(m_widget->property("BackColor"));
}

namespace {

/// The container's unit; a container without one counts in twips, and then no host is asked.
ScaleMode scaleMode(const QWidget& control)
{
    const QString units = Ambient(control).ScaleUnits();
    if (units == QLatin1String("Twip"))
        return ScaleMode::Twips;
    return currentHost().uiServices().ScaleModeFromUnits(units);
}

} // namespace

float Extender::unitX() const
{
    return twipsPerUnitX(scaleMode(m_control));
}

float Extender::unitY() const
{
    return twipsPerUnitY(scaleMode(m_control));
}

float Extender::Left() const
{
    return toTwips(m_control.x()) / unitX();
}

float Extender::Top() const
{
    return toTwips(m_control.y()) / unitY();
}

float Extender::Width() const
{
    return toTwips(m_control.width()) / unitX();
}

void Extender::SetWidth(float width)
{
    m_control.resize(toPixels(width * unitX()), m_control.height());
}

float Extender::Height() const
{
    return toTwips(m_control.height()) / unitY();
}

void Extender::SetHeight(float height)
{
    m_control.resize(m_control.width(), toPixels(height * unitY()));
}

void Extender::Move(float left, float top, float width, float height)
{
    m_control.setGeometry(toPixels(left * unitX()), toPixels(top * unitY()), toPixels(width * unitX()),
                          toPixels(height * unitY()));
}

tavrin::Container Extender::Container() const
{
    return tavrin::Container(m_control.parentWidget());
}

} // namespace tavrin
