#include "component/EventLinks.h"

#include "base/failure/Guard.h"
#include "component/ClassMembers.h"
#include "component/Values.h"

#include <algorithm>
#include <vector>

namespace tavrin {

namespace {

/// One subscription, a part of the object that it listens to. It is connected with the signal by its number,
/// as no slot of C++ could be.
class EventLink final : public QObject
{
public:
    EventLink(QObject& sender, TvHandle handle, const ClassMember& event, TvEventCall call, void* context)
        : QObject(&sender)
        , m_handle(handle)
        , m_name(event.name.toUtf8())
        , m_call(call)
        , m_context(context)
    {
        const QMetaMethod method = sender.metaObject()->method(event.index);
        for (int i = 0; i < method.parameterCount(); ++i)
            m_parameters.push_back(parameterOf(method, i));
        QMetaObject::connect(&sender, event.index, this, QObject::staticMetaObject.methodCount());
    }

    int qt_metacall(QMetaObject::Call call, int id, void** arguments) override
    {
        const int own = QObject::qt_metacall(call, id, arguments);
        if (own != 0 || call != QMetaObject::InvokeMetaMethod)
            return own;
        const QByteArray name = m_name; // outlives the link
        guard(name.constData(), [&] { answer(arguments + 1); });
        return -1;
    }

    const quint64 cookie = nextCookie();

private:
    static quint64 nextCookie()
    {
        static quint64 last = 0; // on the controls' thread only
        return ++last;
    }

    /// The callback may end this subscription and the control: nothing of either is touched behind it.
    void answer(void** arguments) const
    {
        const std::vector<Parameter> parameters = m_parameters;
        const QByteArray name = m_name;
        QVariantList values;
        for (size_t i = 0; i < parameters.size(); ++i)
            values << (parameters[i].type == QMetaType::fromType<QVariant>()
                           ? *static_cast<const QVariant*>(arguments[i])
                           : QVariant(parameters[i].type, arguments[i]));
        VariantArray variants(values);
        forgetRaised();
        TvResult result = TV_S_OK;
        {
            const CallbackScope scope;
            result = m_call(m_handle, name.constData(), variants.data(), variants.count(), m_context);
        }
        if (result < 0)
            throwRaised(result, QStringLiteral("The handler of %1").arg(QString::fromUtf8(name)));
        for (size_t i = 0; i < parameters.size(); ++i) {
            if (!parameters[i].isReference)
                continue;
            const QVariant answered = convertTo(parameters[i].type, toValue(variants.at(static_cast<int>(i))),
                                                QString::fromUtf8(name));
            parameters[i].type.destruct(arguments[i]);
            parameters[i].type.construct(arguments[i], answered.constData());
        }
    }

    const TvHandle m_handle;
    const QByteArray m_name;
    const TvEventCall m_call;
    void* const m_context;
    std::vector<Parameter> m_parameters;
};

std::vector<EventLink*> linksOf(const QObject& object)
{
    std::vector<EventLink*> links;
    for (QObject* child : object.children()) {
        if (auto* link = dynamic_cast<EventLink*>(child))
            links.push_back(link);
    }
    return links;
}

} // namespace

quint64 subscribeToEvent(QObject& object, TvHandle handle, const QString& event, TvEventCall call,
                         void* context)
{
    const ClassMember member = memberOf(*object.metaObject(), ClassMember::Event, event);
    return (new EventLink(object, handle, member, call, context))->cookie;
}

bool unsubscribe(QObject& object, quint64 cookie)
{
    const auto links = linksOf(object);
    const auto found = std::find_if(links.begin(), links.end(),
                                    [&](const EventLink* link) { return link->cookie == cookie; });
    if (found == links.end())
        return false;
    delete *found;
    return true;
}

void unsubscribeAll(QObject& object)
{
    qDeleteAll(linksOf(object));
}

} // namespace tavrin
