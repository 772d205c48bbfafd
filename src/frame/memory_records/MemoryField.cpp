#include "frame/memory_records/MemoryField.h"

#include "base/failure/Error.h"
#include "base/values/Variant.h"

namespace tavrin {

struct MemoryField::Private
{
    QString name;
    QVariant value = Null();
    tvFieldPtr linked;
    bool isKey = false;
    qint32 maxLength = 0;
};

MemoryField::MemoryField(const QString& name, const QVariant& value, bool isKey, qint32 maxLength)
    : d(std::make_unique<Private>())
{
    d->name = name;
    d->isKey = isKey;
    d->maxLength = maxLength;
    MemoryField::SetValue(value);
}

MemoryField::~MemoryField() = default;

QVariant MemoryField::Value() const
{
    return d->linked ? d->linked->Value() : d->value;
}

void MemoryField::SetValue(const QVariant& value)
{
    if (value.userType() == qMetaTypeId<HostObjectPtr>()) {
        const auto field = std::dynamic_pointer_cast<tvField>(value.value<HostObjectPtr>());
        if (!field)
            throw Error(QStringLiteral("The field %1 takes a value, not an object").arg(d->name),
                        Error::TypeMismatchNumber);
        const MemoryField* target = within(field.get());
        if (target && target->refersTo(this))
            throw Error(QStringLiteral("The field %1 cannot refer to itself").arg(d->name));
        d->linked = field;
        return;
    }
    d->value = IsEmpty(value) ? Null() : value;
    d->linked.reset();
}

QString MemoryField::Name() const
{
    return d->name;
}

bool MemoryField::IsKey() const
{
    return d->isKey;
}

qint32 MemoryField::MaxLength() const
{
    return d->maxLength;
}

QVariant MemoryField::ReferenceTo(const tvFieldPtr& field)
{
    if (!field)
        throw Error(QStringLiteral("A field reference needs a field"));
    return QVariant::fromValue<HostObjectPtr>(field);
}

void MemoryField::MarkSaved()
{
    d->value = Value();
    // A number that has not been given yet may still arrive.
    if (!IsNull(d->value))
        d->linked.reset();
}

bool MemoryField::refersTo(const MemoryField* field) const
{
    for (const MemoryField* next = this; next; next = within(next->d->linked.get())) {
        if (next == field)
            return true;
    }
    return false;
}

struct MemoryLinkField::Private
{
    MemoryField field;
};

MemoryLinkField::MemoryLinkField(const QString& name, const QVariant& value, bool isKey, qint32 maxLength)
    : d(new Private{MemoryField(name, value, isKey, maxLength)})
{
}

const MemoryField* MemoryField::within(const tvField* field)
{
    if (const auto* link = dynamic_cast<const MemoryLinkField*>(field))
        return &link->d->field;
    return dynamic_cast<const MemoryField*>(field);
}

MemoryLinkField::~MemoryLinkField() = default;

QVariant MemoryLinkField::Value() const
{
    return d->field.Value();
}

void MemoryLinkField::SetValue(const QVariant& value)
{
    d->field.SetValue(value);
}

QString MemoryLinkField::Name() const
{
    return d->field.Name();
}

bool MemoryLinkField::IsKey() const
{
    return d->field.IsKey();
}

qint32 MemoryLinkField::MaxLength() const
{
    return d->field.MaxLength();
}

void MemoryLinkField::MarkSaved()
{
    d->field.MarkSaved();
}

} // namespace tavrin
