#include "frame/memory_records/MemoryRecord.h"

#include "frame/memory_records/MemoryCollection.h"
#include "frame/memory_records/MemoryRow.h"

#include <QHash>

namespace tavrin {

struct MemoryRecord::Private
{
    QString className;
    QHash<QString, HostObjectPtr> children;
    std::weak_ptr<tvBusinessObject> owner;
};

MemoryRecord::MemoryRecord(const QString& className)
    : d(std::make_unique<Private>())
{
    d->className = className;
}

MemoryRecord::~MemoryRecord() = default;

HostObjectPtr MemoryRecord::Item(const QString& name)
{
    return d->children.value(name.toLower());
}

void MemoryRecord::SetItem(const QString& name, const HostObjectPtr& child)
{
    if (!child) {
        d->children.remove(name.toLower());
        return;
    }
    d->children.insert(name.toLower(), child);
    if (const auto record = std::dynamic_pointer_cast<MemoryRecord>(child))
        record->d->owner = weak_from_this();
    else if (const auto row = std::dynamic_pointer_cast<MemoryRow>(child))
        row->SetOwner(weak_from_this());
    else if (const auto rows = std::dynamic_pointer_cast<MemoryCollection>(child))
        rows->SetOwner(weak_from_this());
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
    for (const HostObjectPtr& child : qAsConst(d->children)) {
        if (const auto record = std::dynamic_pointer_cast<MemoryRecord>(child))
            record->MarkSaved();
        else if (const auto row = std::dynamic_pointer_cast<MemoryRow>(child))
            row->MarkSaved();
        else if (const auto rows = std::dynamic_pointer_cast<MemoryCollection>(child))
            rows->MarkSaved();
    }
}

} // namespace tavrin
