#include "designer/PropertyStandIn.h"

#include "base/values/Variant.h"

#include <QImage>

namespace tavrin::designer {

PropertyStandIn::PropertyStandIn(QObject& control)
    : QObject(&control)
    , m_control(control)
{
}

void PropertyStandIn::SetValue(const QString& value)
{
    m_control.setProperty("Value", value.isEmpty() ? Null() : QVariant(value));
}

QPixmap PropertyStandIn::Icon() const
{
    return QPixmap::fromImage(m_control.property("Icon").value<QImage>());
}

void PropertyStandIn::SetIcon(const QPixmap& icon)
{
    m_control.setProperty("Icon", icon.toImage());
}

QString PropertyStandIn::textOf(const char* property) const
{
    const QVariant value = m_control.property(property);
    return IsNull(value) ? QString() : value.toString();
}

} // namespace tavrin::designer
