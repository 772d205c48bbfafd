#include "component/ClassMembers.h"

#include "component/CallResult.h"
#include "frame/control_frame/UserControl.h"

#include <QImage>

#include <algorithm>

namespace tavrin {

namespace {

QString typeName(QMetaType type)
{
    struct Name
    {
        QMetaType type;
        const char* name;
    };
    static const Name names[] = {
        {QMetaType::fromType<bool>(), "Boolean"},     {QMetaType::fromType<qint32>(), "Long"},
        {QMetaType::fromType<double>(), "Double"},    {QMetaType::fromType<QString>(), "String"},
        {QMetaType::fromType<QVariant>(), "Variant"}, {QMetaType::fromType<Color>(), "Color"},
        {QMetaType::fromType<FontPtr>(), "Font"},     {QMetaType::fromType<QImage>(), "Picture"},
        {QMetaType::fromType<QObject*>(), "Object"},  {QMetaType::fromType<void>(), ""}};
    for (const Name& name : names) {
        if (name.type == type)
            return QString::fromLatin1(name.name);
    }
    return QString::fromLatin1(type.name());
}

QString parametersText(const QMetaMethod& method)
{
    QStringList texts;
    const QList<QByteArray> names = method.parameterNames();
    for (int i = 0; i < method.parameterCount(); ++i) {
        const Parameter parameter = parameterOf(method, i);
        texts << QStringLiteral("%1%2 As %3")
                     .arg(parameter.isReference ? QStringLiteral("ByRef ") : QString(),
                          QString::fromLatin1(names.at(i)), typeName(parameter.type));
    }
    return texts.join(QStringLiteral(", "));
}

ClassMember memberFrom(const QMetaMethod& method, ClassMember::Kind kind)
{
    ClassMember member{kind, QString::fromLatin1(method.name()),
                       kind == ClassMember::Event ? QString() : typeName(method.returnMetaType()),
                       parametersText(method), method.parameterCount()};
    member.index = method.methodIndex();
    return member;
}

void addMethods(const QMetaObject& meta, int from, ClassMember::Kind kind, std::vector<ClassMember>& members)
{
    const auto type = kind == ClassMember::Event ? QMetaMethod::Signal : QMetaMethod::Method;
    for (int i = from; i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        if (method.methodType() == type && method.access() == QMetaMethod::Public &&
            !(method.attributes() & QMetaMethod::Cloned))
            members.push_back(memberFrom(method, kind));
    }
}

QString kindName(ClassMember::Kind kind)
{
    switch (kind) {
    case ClassMember::Property:
        return QStringLiteral("property");
    case ClassMember::Operation:
        return QStringLiteral("operation");
    case ClassMember::Event:
        break;
    }
    return QStringLiteral("event");
}

} // namespace

Parameter parameterOf(const QMetaMethod& method, int index)
{
    QByteArray name = method.parameterTypes().at(index);
    const bool isReference = name.endsWith('&');
    if (isReference)
        name.chop(1);
    return {isReference ? QMetaType::fromName(name) : method.parameterMetaType(index), isReference};
}

std::vector<ClassMember> membersOf(const QMetaObject& meta)
{
    const QMetaObject& frame = UserControl::staticMetaObject;
    const bool isControl = meta.inherits(&frame);
    std::vector<ClassMember> members;
    for (int i = isControl ? frame.propertyCount() : 0; i < meta.propertyCount(); ++i) {
        const QMetaProperty property = meta.property(i);
        ClassMember member{
            ClassMember::Property, QString::fromLatin1(property.name()), typeName(property.metaType()), {}};
        member.isReadOnly = !property.isWritable();
        member.index = i;
        members.push_back(std::move(member));
    }
    const int from = isControl ? frame.methodCount() : 0;
    addMethods(meta, from, ClassMember::Operation, members);
    addMethods(meta, from, ClassMember::Event, members);
    return members;
}

ClassMember memberOf(const QMetaObject& meta, ClassMember::Kind kind, const QString& name)
{
    std::vector<ClassMember> members = membersOf(meta);
    if (kind == ClassMember::Event && meta.inherits(&UserControl::staticMetaObject))
        members.push_back(memberFrom(QMetaMethod::fromSignal(&UserControl::PropertyChanged), kind));
    const auto found = std::find_if(members.begin(), members.end(), [&](const ClassMember& member) {
        return member.kind == kind && member.name.compare(name, Qt::CaseInsensitive) == 0;
    });
    if (found == members.end())
        throw CallError(TV_E_MEMBERNOTFOUND,
                        QStringLiteral("%1 has no %2 \"%3\"")
                            .arg(QString::fromLatin1(meta.className()).section(QStringLiteral("::"), -1),
                                 kindName(kind), name));
    return *found;
}

} // namespace tavrin
