#include "component/ClassObjects.h"

#include "component/ClassMembers.h"
#include "component/ClassRegister.h"
#include "component/ContractCalls.h"
#include "component/ControlWindows.h"
#include "component/EventLinks.h"
#include "component/Handles.h"
#include "component/MemberCalls.h"
#include "component/Values.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QScopeGuard>

#include <list>

namespace tavrin {

namespace {

/// A class with its texts as C wants them.
struct ClassObject
{
    struct Member
    {
        ClassMember member;
        QByteArray name, type, parameters;
    };

    explicit ClassObject(const PublicClass& one);

    const PublicClass& publicClass;
    QByteArray name, defaultInterface, eventInterface, contract;
    std::vector<Member> members;
    TvClassObject object{};
};

const std::list<ClassObject>& classObjects()
{
    static const auto* const all = [] {
        auto* objects = new std::list<ClassObject>; // callers hold them as long as the library is loaded
        for (const PublicClass& one : publicClasses())
            objects->emplace_back(one);
        return objects;
    }();
    return *all;
}

const ClassObject& classOf(const TvClassObject* self)
{
    wantPointers(self);
    for (const ClassObject& one : classObjects()) {
        if (&one.object == self)
            return one;
    }
    throw CallError(TV_E_HANDLE, QStringLiteral("This is no class object"));
}

// Functions of a class

TvResult member(const TvClassObject* self, int32_t index, TvMember* out)
{
    return borderCall([&] {
        wantPointers(out);
        *out = {};
        const auto& members = classOf(self).members;
        if (index < 0 || static_cast<size_t>(index) >= members.size())
            return TV_S_FALSE;
        const ClassObject::Member& one = members[static_cast<size_t>(index)];
        *out = {one.member.kind,      one.member.isReadOnly, one.member.parameterCount, 0,
                one.name.constData(), one.type.constData(),  one.parameters.constData()};
        return TV_S_OK;
    });
}

TvResult create(const TvClassObject* self, const TvSite* site, TvControl* control)
{
    return borderCall([&] {
        wantPointers(control);
        *control = 0;
        const ClassObject& one = classOf(self);
        if (site && site->size < sizeof(TvSite))
            throw CallError(TV_E_INVALIDARG, QStringLiteral("The site's size is not set"));
        *control = handles().add(createControl(one.publicClass, site ? *site : TvSite{}));
        return TV_S_OK;
    });
}

// Functions of a control

TvResult destroy(TvControl control)
{
    return borderCall([&] {
        UserControl& gone = handles().control(control);
        handles().remove(control);
        unsubscribeAll(gone);
        destroyControl(gone);
        return TV_S_OK;
    });
}

TvResult show(TvControl control, int32_t visible)
{
    return borderCall([&] {
        showControl(handles().control(control), visible != 0);
        return TV_S_OK;
    });
}

TvResult move(TvControl control, int32_t x, int32_t y, int32_t width, int32_t height)
{
    return borderCall([&] {
        UserControl& moved = handles().control(control);
        if (width < 0 || height < 0)
            throw CallError(TV_E_INVALIDARG, QStringLiteral("A size is negative"));
        moveControl(moved, QRect(x, y, width, height));
        return TV_S_OK;
    });
}

TvResult setTitle(TvControl control, const char* title)
{
    return borderCall([&] {
        setWindowTitle(handles().control(control), toText(title));
        return TV_S_OK;
    });
}

TvResult get(TvHandle object, const char* property, TvVariant* value)
{
    return borderCall([&] {
        wantPointers(value);
        *value = {};
        const QString name = toText(property);
        putValue(getProperty(handles().object(object), name), *value);
        return TV_S_OK;
    });
}

TvResult put(TvHandle object, const char* property, const TvVariant* value)
{
    return borderCall([&] {
        wantPointers(value);
        const QString name = toText(property);
        putProperty(handles().object(object), name, toValue(*value));
        return TV_S_OK;
    });
}

/// The arguments of a call, of which one may be the variant that takes the result; that one is Empty from
/// here on.
QVariantList takeArguments(const TvVariant* arguments, int32_t count, TvVariant* result)
{
    const auto empty = qScopeGuard([result] {
        if (result)
            *result = {};
    });
    return toValues(arguments, count);
}

TvResult call(TvHandle object, const char* operation, const TvVariant* arguments, int32_t argumentCount,
              TvVariant* result)
{
    return borderCall([&] {
        const QVariantList values = takeArguments(arguments, argumentCount, result);
        const QString name = toText(operation);
        const QVariant answer = callOperation(handles().object(object), name, values);
        if (result)
            putValue(answer, *result);
        return TV_S_OK;
    });
}

TvResult subscribe(TvHandle object, const char* event, TvEventCall handler, void* context, uint64_t* cookie)
{
    return borderCall([&] {
        if (cookie)
            *cookie = 0;
        const QString name = toText(event);
        wantPointers(handler);
        const quint64 number = subscribeToEvent(handles().object(object), object, name, handler, context);
        if (cookie)
            *cookie = number;
        return TV_S_OK;
    });
}

TvResult unsubscribe(TvHandle object, uint64_t cookie)
{
    return borderCall(
        [&] { return tavrin::unsubscribe(handles().object(object), cookie) ? TV_S_OK : TV_S_FALSE; });
}

TvResult savedProperties(TvControl control, TvVariant* json)
{
    return borderCall([&] {
        wantPointers(json);
        *json = {};
        UserControl& written = handles().control(control);
        PropertyBag bag;
        raisingException([&] { written.WriteProperties(bag); });
        putText(*json, QString::fromUtf8(QJsonDocument(bag.toJson()).toJson(QJsonDocument::Compact)));
        return TV_S_OK;
    });
}

TvResult restoreProperties(TvControl control, const char* json)
{
    return borderCall([&] {
        UserControl& restored = handles().control(control);
        const QJsonDocument document = QJsonDocument::fromJson(toText(json).toUtf8());
        if (!document.isObject())
            throw CallError(TV_E_INVALIDARG, QStringLiteral("The saved properties are no JSON object"));
        const PropertyBag bag = PropertyBag::fromJson(document.object());
        raisingException([&] { restored.ReadProperties(bag); });
        return TV_S_OK;
    });
}

TvResult callOfContract(TvControl control, const char* operation, const TvVariant* arguments,
                        int32_t argumentCount, TvVariant* result)
{
    return borderCall([&] {
        const QVariantList values = takeArguments(arguments, argumentCount, result);
        const QVariant answer = callContract(control, toText(operation), values);
        if (result)
            putValue(answer, *result);
        return TV_S_OK;
    });
}

TvResult qtObject(TvHandle object, void** qobject)
{
    return borderCall([&] {
        wantPointers(qobject);
        *qobject = nullptr;
        *qobject = &handles().object(object);
        return TV_S_OK;
    });
}

TvResult handleOf(void* qobject, TvHandle* object)
{
    return borderCall([&] {
        wantPointers(object);
        *object = 0;
        wantPointers(qobject);
        wantOwnThread();
        *object = handles().add(static_cast<QObject*>(qobject));
        return TV_S_OK;
    });
}

ClassObject::ClassObject(const PublicClass& one)
    : publicClass(one)
    , name(one.name.toUtf8())
    , defaultInterface(one.defaultInterface.toUtf8())
    , eventInterface(one.eventInterface.toUtf8())
    , contract(one.contract.toUtf8())
{
    for (const ClassMember& each : membersOf(*one.meta))
        members.push_back({each, each.name.toUtf8(), each.type.toUtf8(), each.parameters.toUtf8()});
    object.size = sizeof(TvClassObject);
    object.version = 1;
    object.className = name.constData();
    object.typeLibrary = TypeLibraryName;
    object.typeLibraryVersion = TypeLibraryVersion;
    object.defaultInterface = defaultInterface.constData();
    object.eventInterface = eventInterface.constData();
    object.contract = contract.constData();
    object.memberCount = static_cast<int32_t>(members.size());
    object.Member = member;
    object.Create = create;
    object.Destroy = destroy;
    object.Show = show;
    object.Move = move;
    object.SetTitle = setTitle;
    object.Get = get;
    object.Put = put;
    object.Call = call;
    object.Subscribe = subscribe;
    object.Unsubscribe = unsubscribe;
    object.SavedProperties = savedProperties;
    object.RestoreProperties = restoreProperties;
    object.Contract = callOfContract;
    object.QtObject = qtObject;
    object.HandleOf = handleOf;
}

} // namespace

TvResult getClassObject(const char* className, const char* interfaceName, void** object)
{
    wantPointers(object);
    *object = nullptr;
    const QString name = toText(className);
    const QString wanted = toText(interfaceName);
    const auto want = [&](const char* offered) {
        if (wanted != QLatin1String(offered))
            throw CallError(TV_E_NOINTERFACE, QStringLiteral("%1 has no interface \"%2\"").arg(name, wanted));
    };
    // The structures are never written to; that the entry point speaks of plain pointers is its old form.
    if (name == QLatin1String(TV_LIBRARY_CLASS)) {
        want(TV_LIBRARY_INTERFACE);
        *object = const_cast<TvLibrary*>(&libraryObject());
        return TV_S_OK;
    }
    for (const ClassObject& one : classObjects()) {
        if (one.publicClass.name == name) {
            want(TV_CLASS_INTERFACE);
            *object = const_cast<TvClassObject*>(&one.object);
            return TV_S_OK;
        }
    }
    throw CallError(TV_E_CLASSNOTAVAILABLE, QStringLiteral("The library has no class \"%1\"").arg(name));
}

} // namespace tavrin
