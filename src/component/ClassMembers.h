#pragma once

#include <QMetaMethod>
#include <QMetaProperty>
#include <QString>

#include <vector>

namespace tavrin {

/// A public member of a class of controls, as its meta-object tells.
struct ClassMember
{
    enum Kind
    {
        Property = 1,
        Operation = 2,
        Event = 3
    };

    Kind kind;
    QString name;
    /// "Boolean", "Long", "String", "Variant", "Color", "Font", "Picture", "Object"; of an operation without
    /// a result and of an event "".
    QString type;
    /// As in "OfficerNo As Long, ByRef Exclude As Boolean".
    QString parameters;
    int parameterCount = 0;
    bool isReadOnly = false;
    /// Of the property or method in the meta-object.
    int index = -1;
};

/// The properties, the operations and the events that the class publishes, each in the order of their
/// declaration. Of a control what it has beyond its frame; of any other object all that can be called by
/// name.
std::vector<ClassMember> membersOf(const QMetaObject& meta);

/// The member of that kind and name, compared without case. Raises TV_E_MEMBERNOTFOUND with both names when
/// there is none. The frame's own event "PropertyChanged" is found too.
ClassMember memberOf(const QMetaObject& meta, ClassMember::Kind kind, const QString& name);

/// A method's parameter: its type without the reference, and whether it is one by which the receiver answers.
struct Parameter
{
    QMetaType type;
    bool isReference;
};
Parameter parameterOf(const QMetaMethod& method, int index);

} // namespace tavrin
