#include "frame/memory_records/MemoryRow.h"

#include "frame/memory_records/MemoryField.h"

#include <algorithm>

namespace tavrin {

namespace {

QList<tvFieldPtr> fieldsOf(const QList<MemoryColumn>& columns)
{
    QList<tvFieldPtr> fields;
    for (const MemoryColumn& column : columns) {
        if (column.IsLink)
            fields << std::make_shared<MemoryLinkField>(column.Name, QVariant(), column.IsKey,
                                                        column.MaxLength);
        else
            fields << std::make_shared<MemoryField>(column.Name, QVariant(), column.IsKey, column.MaxLength);
    }
    return fields;
}

} // namespace

struct MemoryRow::Private
{
    QList<tvFieldPtr> fields;
    bool isNew = true;
    std::weak_ptr<tvBusinessObject> owner;
};

MemoryRow::MemoryRow(const QList<tvFieldPtr>& fields, bool isNew)
    : d(std::make_unique<Private>(Private{fields, isNew, {}}))
{
}

MemoryRow::MemoryRow(const QList<MemoryColumn>& columns, bool isNew)
    : MemoryRow(fieldsOf(columns), isNew)
{
}

MemoryRow::~MemoryRow() = default;

HostObjectPtr MemoryRow::Item(const QString& name)
{
    const auto field = std::find_if(d->fields.cbegin(), d->fields.cend(), [&](const tvFieldPtr& candidate) {
        return candidate->Name().compare(name, Qt::CaseInsensitive) == 0;
    });
    return field == d->fields.cend() ? nullptr : *field;
}

tvFieldPtr MemoryRow::Item(int index)
{
    return d->fields.value(index - 1);
}

int MemoryRow::FieldCount() const
{
    return static_cast<int>(d->fields.size());
}

QList<MemoryColumn> MemoryRow::Columns() const
{
    QList<MemoryColumn> columns;
    for (const tvFieldPtr& field : qAsConst(d->fields)) {
        const bool isLink = dynamic_cast<const tvLinkField*>(field.get()) != nullptr;
        columns.append({field->Name(), field->IsKey(), field->MaxLength(), isLink});
    }
    return columns;
}

bool MemoryRow::IsNew() const
{
    return d->isNew;
}

void MemoryRow::SetNew(bool isNew)
{
    d->isNew = isNew;
}

tvBusinessObjectPtr MemoryRow::Owner() const
{
    return d->owner.lock();
}

void MemoryRow::SetOwner(const std::weak_ptr<tvBusinessObject>& owner)
{
    d->owner = owner;
}

void MemoryRow::MarkSaved()
{
    d->isNew = false;
    for (const tvFieldPtr& field : d->fields) {
        if (auto* plain = dynamic_cast<MemoryField*>(field.get()))
            plain->MarkSaved();
        else if (auto* link = dynamic_cast<MemoryLinkField*>(field.get()))
            link->MarkSaved();
    }
}

} // namespace tavrin
