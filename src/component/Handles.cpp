#include "component/Handles.h"

#include <QCoreApplication>
#include <QThread>

#include <atomic>

namespace tavrin {

void wantOwnThread()
{
    static std::atomic<QThread*> first = nullptr;
    QThread* here = QThread::currentThread();
    QThread* before = nullptr;
    const QThread* own = nullptr;
    if (const auto* application = QCoreApplication::instance())
        own = application->thread();
    else
        own = first.compare_exchange_strong(before, here) ? here : before;
    if (own != here)
        throw CallError(TV_E_WRONGTHREAD, QStringLiteral("Controls and records live on another thread"));
}

TvHandle Handles::add(QObject* object)
{
    if (!object)
        return 0;
    if (const TvHandle known = m_numbers.value(object))
        return known;
    const TvHandle handle = ++m_last;
    m_entries[handle] = {object, nullptr, true};
    m_numbers.insert(object, handle);
    QObject::connect(object, &QObject::destroyed, [this, handle, object] {
        m_numbers.remove(object);
        remove(handle);
    });
    return handle;
}

TvHandle Handles::add(const HostObjectPtr& record)
{
    if (!record)
        return 0;
    m_entries[++m_last] = {nullptr, record, false};
    return m_last;
}

void Handles::remove(TvHandle handle)
{
    const auto found = m_entries.find(handle);
    if (found == m_entries.end())
        return;
    m_numbers.remove(found->second.object);
    const Entry gone = std::move(found->second); // the end of a record may end others
    m_entries.erase(found);
}

Handles::Entry& Handles::entry(TvHandle handle)
{
    wantOwnThread();
    const auto found = m_entries.find(handle);
    if (found == m_entries.end() || (found->second.isObject && !found->second.object))
        throw CallError(TV_E_HANDLE, QStringLiteral("There is no object %1, or none any more").arg(handle));
    return found->second;
}

QObject& Handles::object(TvHandle handle)
{
    const Entry& found = entry(handle);
    if (!found.isObject)
        throw CallError(TV_E_NOINTERFACE, QStringLiteral("The object %1 is a record").arg(handle));
    return *found.object;
}

UserControl& Handles::control(TvHandle handle)
{
    auto* control = qobject_cast<UserControl*>(&object(handle));
    if (!control)
        throw CallError(TV_E_NOINTERFACE, QStringLiteral("The object %1 is no control").arg(handle));
    return *control;
}

HostObjectPtr Handles::record(TvHandle handle)
{
    const Entry& found = entry(handle);
    if (found.isObject)
        throw CallError(TV_E_NOINTERFACE, QStringLiteral("The object %1 is no record").arg(handle));
    return found.record;
}

QVariant Handles::valueOf(TvHandle handle)
{
    if (handle == 0)
        return QVariant::fromValue<QObject*>(nullptr);
    const Entry& found = entry(handle);
    return found.isObject ? QVariant::fromValue<QObject*>(found.object) : QVariant::fromValue(found.record);
}

HostObjectPtr& Handles::lastRecord(TvHandle handle)
{
    return entry(handle).record;
}

QList<UserControl*> Handles::controls() const
{
    QList<UserControl*> found;
    for (const auto& [handle, entry] : m_entries) {
        if (auto* control = qobject_cast<UserControl*>(entry.object.data()))
            found << control;
    }
    return found;
}

Handles& handles()
{
    static Handles* const all = new Handles; // objects may end behind the library's own end
    return *all;
}

} // namespace tavrin
