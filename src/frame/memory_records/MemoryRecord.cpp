#include "frame/memory_records/MemoryRecord.h"

#include "frame/memory_records/MemoryCollection.h"
#include "frame/memory_records/MemoryRow.h"

#include <QMap>

#include <algorithm>

namespace tavrin {

struct MemoryRecord::Private
{
    struct Child
    {
        QString name;
        HostObjectPtr object;
    };

    QString className;
    /// By their names in lower case.
    QMap<QString, Child> children;
    std::weak_ptr<tvBusinessObject> owner;

    // Of a child of any kind in memory.
    static tvBusinessObjectPtr ownerOf(const HostObjectPtr& child)
    {
        if (const auto rows = std::dynamic_pointer_cast<MemoryCollection>(child))
            return rows->Owner();
        return OwnerOf(std::dynamic_pointer_cast<tvBusinessObject>(child));
    }
    static void setOwner(const HostObjectPtr& child, const std::weak_ptr<tvBusinessObject>& owner)
    {
        if (const auto record = std::dynamic_pointer_cast<MemoryRecord>(child))
            record->d->owner = owner;
        else if (const auto row = std::dynamic_pointer_cast<MemoryRow>(child))
            row->SetOwner(owner);
        else if (const auto rows = std::dynamic_pointer_cast<MemoryCollection>(child))
            rows->SetOwner(owner);
    }
};

MemoryRecord::MemoryRecord(const QString& className)
    : d(std::make_unique<Private>())
{
    d->className = className;
}

MemoryRecord::~MemoryRecord() = default;

HostObjectPtr MemoryRecord::Item(const QString& name)
{
    return d->children.value(name.toLower()).object;
}

void MemoryRecord::SetItem(const QString& name, const HostObjectPtr& child)
{
    const QString key = name.toLower();
    const HostObjectPtr before = d->children.take(key).object;
    if (child)
        d->children.insert(key, {name, child});
    const bool isGone = std::none_of(d->children.cbegin(), d->children.cend(),
                                     [&](const Private::Child& each) { return each.object == before; });
    if (isGone && Private::ownerOf(before).get() == this) // another record may have taken it by now
        Private::setOwner(before, {});
    Private::setOwner(child, weak_from_this());
}

QStringList MemoryRecord::ChildNames() const
{
    QStringList names;
    for (const Private::Child& child : qAsConst(d->children))
        names << child.name;
    return names;
}

QString MemoryRecord::ClassName() const
{
    return d->className;
}

void MemoryRecord::SetClassName(const QString& name)
{
    d->className = name;
}

tvBusinessObjectPtr MemoryRecord::Owner() const
{
    return d->owner.lock();
}

tvBusinessObjectPtr MemoryRecord::OwnerOf(const tvBusinessObjectPtr& part)
{
    if (const auto record = std::dynamic_pointer_cast<MemoryRecord>(part))
        return record->Owner();
    const auto row = std::dynamic_pointer_cast<MemoryRow>(part);
    return row ? row->Owner() : nullptr;
}

void MemoryRecord::MarkSaved()
{
    for (const auto& [name, child] : qAsConst(d->children)) {
        if (const auto record = std::dynamic_pointer_cast<MemoryRecord>(child))
            record->MarkSaved();
        else if (const auto row = std::dynamic_pointer_cast<MemoryRow>(child))
            row->MarkSaved();
        else if (const auto rows = std::dynamic_pointer_cast<MemoryCollection>(child))
            rows->MarkSaved();
    }
}

} // namespace tavrin
