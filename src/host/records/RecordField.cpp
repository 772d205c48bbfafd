#include "host/records/RecordField.h"

#include "base/failure/Error.h"
#include "base/values/Variant.h"

#include <QDateTime>

namespace tavrin {

namespace {

QString kindName(ColumnType type)
{
    switch (type) {
    case ColumnType::Integer:
        return QStringLiteral("a whole number");
    case ColumnType::Real:
        return QStringLiteral("a number");
    case ColumnType::Boolean:
        return QStringLiteral("yes or no");
    case ColumnType::Date:
        return QStringLiteral("a date");
    case ColumnType::DateTime:
        return QStringLiteral("a date and time");
    case ColumnType::Text:
        break;
    }
    return QStringLiteral("a text");
}

/// A date, or a date with its time, that the value is or that its text names.
template <typename Moment>
Moment momentIn(const QVariant& value)
{
    Moment moment = value.typeId() == QMetaType::QString ? Moment::fromString(value.toString(), Qt::ISODate)
                                                         : value.value<Moment>();
    if (!moment.isValid())
        throw Error(QStringLiteral("Type mismatch"), Error::TypeMismatchNumber);
    return moment;
}

/// Local time in whole seconds, which is what the database keeps.
QVariant toDateTime(const QVariant& value)
{
    const QDateTime local = momentIn<QDateTime>(value).toLocalTime();
    const QTime time(local.time().hour(), local.time().minute(), local.time().second());
    return QDateTime(local.date(), time);
}

bool isDateOrText(const QVariant& value)
{
    const int type = value.typeId();
    return type == QMetaType::QDate || type == QMetaType::QDateTime || type == QMetaType::QString;
}

QVariant convert(const QVariant& value, ColumnType type)
{
    switch (type) {
    case ColumnType::Integer:
        return ToLong(value);
    case ColumnType::Real:
        return ToDouble(value);
    case ColumnType::Boolean:
        return ToBoolean(value);
    case ColumnType::Date:
    case ColumnType::DateTime:
        if (!isDateOrText(value))
            throw Error(QStringLiteral("Type mismatch"), Error::TypeMismatchNumber);
        return type == ColumnType::Date ? momentIn<QDate>(value) : toDateTime(value);
    case ColumnType::Text:
        break;
    }
    return ToText(value);
}

} // namespace

FieldReference::FieldReference(tvFieldPtr target)
    : m_target(std::move(target))
{
    if (!m_target)
        throw Error(QStringLiteral("A field reference needs a field"));
}

QVariant FieldReference::toVariant(const tvFieldPtr& target)
{
    return QVariant::fromValue(HostObjectPtr(std::make_shared<FieldReference>(target)));
}

FieldCell::FieldCell(ColumnSchema column)
    : m_column(std::move(column))
    , m_value(Null())
    , m_saved(Null())
{
}

QVariant FieldCell::value() const
{
    if (!m_reference)
        return m_value;
    const QVariant linked = m_reference->Value();
    try {
        return converted(linked);
    } catch (const Error& error) {
        throw Error(
            QStringLiteral("The field %1 takes its value from the field %2, but it takes %3, not \"%4\". "
                           "Change one of the two fields.")
                .arg(m_column.Name, m_reference->Name(), kindName(m_column.Type), linked.toString()),
            error.Number);
    }
}

std::optional<QVariant> FieldCell::readableValue() const
{
    try {
        return value();
    } catch (const Error&) {
        return std::nullopt;
    }
}

void FieldCell::setValue(const QVariant& value)
{
    const std::optional<QVariant> before = readableValue();
    if (value.userType() == qMetaTypeId<HostObjectPtr>()) {
        const auto reference = std::dynamic_pointer_cast<FieldReference>(value.value<HostObjectPtr>());
        if (!reference)
            throw Error(QStringLiteral("The field %1 takes a value, not an object").arg(m_column.Name),
                        Error::TypeMismatchNumber);
        if (refersTo(reference->target()))
            throw Error(QStringLiteral("The field %1 cannot refer to itself").arg(m_column.Name));
        converted(reference->target()->Value());
        m_reference = reference->target();
    } else {
        m_value = converted(value);
        m_reference.reset();
    }
    if (before && SameValue(*before, this->value()))
        return;
    if (const auto sink = m_sink.lock())
        sink->recordChanged();
}

bool FieldCell::refersTo(const tvFieldPtr& field) const
{
    for (auto next = field; next;) {
        const auto* cell = dynamic_cast<const FieldCell*>(next.get());
        if (cell == this)
            return true;
        next = cell ? cell->m_reference : nullptr;
    }
    return false;
}

QVariant FieldCell::converted(const QVariant& value) const
{
    const bool empty = IsNull(value) || IsEmpty(value) ||
                       (value.typeId() == QMetaType::QString && value.toString().isEmpty());
    if (empty)
        return Null();
    try {
        return convert(value, m_column.Type);
    } catch (const Error& error) {
        throw Error(QStringLiteral("The field %1 takes %2, not \"%3\"")
                        .arg(m_column.Name, kindName(m_column.Type), value.toString()),
                    error.Number);
    }
}

bool FieldCell::isChanged() const
{
    const std::optional<QVariant> present = readableValue();
    return !present || !SameValue(*present, m_saved);
}

void FieldCell::load(const QVariant& value)
{
    m_reference.reset();
    m_value = converted(value);
    m_saved = m_value;
}

void FieldCell::fillIn(const QVariant& value)
{
    m_reference.reset();
    m_value = converted(value);
}

void FieldCell::markSaved()
{
    m_value = value();
    m_saved = m_value;
    // A number that has not been given yet may still arrive.
    if (!IsNull(m_value))
        m_reference.reset();
}

} // namespace tavrin
