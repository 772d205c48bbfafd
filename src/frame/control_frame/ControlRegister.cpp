#include "frame/control_frame/ControlRegister.h"

#include "base/failure/Error.h"

namespace tavrin {

void ControlRegister::add(const QString& className, Factory factory)
{
    m_factories.insert_or_assign(className, std::move(factory));
}

QStringList ControlRegister::classNames() const
{
    QStringList names;
    for (const auto& [name, factory] : m_factories)
        names << name;
    return names;
}

UserControl* ControlRegister::create(const QString& className, QWidget* parent, const ControlSite& site) const
{
    const auto entry = m_factories.find(className);
    if (entry == m_factories.end())
        throw Error(QStringLiteral("There is no control of the class %1").arg(className));
    return entry->second(parent, site);
}

} // namespace tavrin
