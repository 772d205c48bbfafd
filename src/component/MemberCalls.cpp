#include "component/MemberCalls.h"

#include "base/failure/ByName.h"
#include "component/ClassMembers.h"
#include "component/Values.h"

#include <vector>

namespace tavrin {

namespace {

/// A value of the type, for the object to read or to fill.
class Slot
{
public:
    explicit Slot(QMetaType type)
        : m_isVariant(type == QMetaType::fromType<QVariant>())
    {
        if (!m_isVariant && type.isValid() && type.id() != QMetaType::Void)
            m_value = QVariant(type);
    }
    Slot(QMetaType type, const QVariant& value)
        : m_isVariant(type == QMetaType::fromType<QVariant>())
        , m_value(value)
    {
    }

    void* data() { return m_isVariant ? &m_value : m_value.data(); }
    const QVariant& value() const { return m_value; }

private:
    bool m_isVariant;
    QVariant m_value;
};

} // namespace

QVariant getProperty(QObject& object, const QString& name)
{
    const ClassMember member = memberOf(*object.metaObject(), ClassMember::Property, name);
    Slot slot(object.metaObject()->property(member.index).metaType());
    raisingException([&] {
        void* arguments[] = {slot.data()};
        const RaiseByName raising(object, member.name.toLatin1());
        object.qt_metacall(QMetaObject::ReadProperty, member.index, arguments);
    });
    return slot.value();
}

void putProperty(QObject& object, const QString& name, const QVariant& value)
{
    const ClassMember member = memberOf(*object.metaObject(), ClassMember::Property, name);
    if (member.isReadOnly)
        throw CallError(TV_E_ACCESSDENIED,
                        QStringLiteral("The property \"%1\" is read-only").arg(member.name));
    const QMetaType type = object.metaObject()->property(member.index).metaType();
    Slot slot(type, convertTo(type, value, member.name));
    raisingException([&] {
        int status = -1;
        int flags = 0;
        void* arguments[] = {slot.data(), nullptr, &status, &flags};
        const RaiseByName raising(object, member.name.toLatin1());
        object.qt_metacall(QMetaObject::WriteProperty, member.index, arguments);
    });
}

QVariant callOperation(QObject& object, const QString& name, const QVariantList& arguments)
{
    const ClassMember member = memberOf(*object.metaObject(), ClassMember::Operation, name);
    if (arguments.size() != member.parameterCount)
        throw CallError(TV_E_BADPARAMCOUNT, QStringLiteral("\"%1\" takes %2 arguments, and not %3")
                                                .arg(member.name)
                                                .arg(member.parameterCount)
                                                .arg(arguments.size()));
    const QMetaMethod method = object.metaObject()->method(member.index);
    Slot result(method.returnMetaType());
    std::vector<Slot> values;
    values.reserve(static_cast<size_t>(arguments.size()));
    std::vector<void*> pointers{result.data()};
    for (int i = 0; i < member.parameterCount; ++i) {
        const QMetaType type = parameterOf(method, i).type;
        values.emplace_back(type, convertTo(type, arguments.at(i), member.name));
        pointers.push_back(values.back().data());
    }
    raisingException(
        [&] { object.qt_metacall(QMetaObject::InvokeMetaMethod, member.index, pointers.data()); });
    return result.value();
}

} // namespace tavrin
