#include "frame/control_frame/ControlRegister.h"

#include "base/failure/Error.h"

#include <map>

namespace tavrin {

class ControlRegister::Private
{
public:
    std::map<QString, Factory> factories;
};

ControlRegister::ControlRegister()
    : d(std::make_unique<Private>())
{
}

ControlRegister::ControlRegister(ControlRegister&&) noexcept = default;
ControlRegister& ControlRegister::operator=(ControlRegister&&) noexcept = default;
ControlRegister::~ControlRegister() = default;

bool ControlRegister::contains(const QString& className) const
{
    return d->factories.count(className) != 0;
}

void ControlRegister::add(const QString& className, Factory factory)
{
    d->factories.insert_or_assign(className, std::move(factory));
}

QStringList ControlRegister::classNames() const
{
    QStringList names;
    for (const auto& [name, factory] : d->factories)
        names << name;
    return names;
}

UserControl* ControlRegister::create(const QString& className, QWidget* parent, const ControlSite& site) const
{
    const auto entry = d->factories.find(className);
    if (entry == d->factories.end())
        throw Error(QStringLiteral("There is no control of the class %1").arg(className));
    return entry->second(parent, site);
}

} // namespace tavrin
