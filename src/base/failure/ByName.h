#pragma once

#include "base/export/Export.h"
#include "base/failure/Guard.h"

#include <QByteArray>

#include <utility>

namespace tavrin {

/// While such an object lives on the thread, one property of one object lets a failure pass to whoever puts
/// or reads it by its name: the first time, and for callers that call the object without Qt in between, and
/// catch. All that others put or read meanwhile, as slots do, goes through Qt.
class TAVRIN_EXPORT RaiseByName
{
public:
    RaiseByName(const QObject& object, const QByteArray& property);
    ~RaiseByName();
    RaiseByName(const RaiseByName&) = delete;
    RaiseByName& operator=(const RaiseByName&) = delete;

    /// Whether a failure of this property may pass; only the first to ask is told so. `where` ends with a dot
    /// and the property's name.
    static bool take(const QObject& object, const char* where);

private:
    const QObject* m_object;
    QByteArray m_ending;
    RaiseByName* m_outer;
};

/// The way into a property for Qt's property system, by which forms, designers and `setProperty` come: a
/// failure goes to the application's handler of unhandled errors, for none may pass through Qt. Setters and
/// getters themselves raise.
template <typename Body>
void byName(const QObject& object, const char* where, Body&& body)
{
    if (RaiseByName::take(object, where))
        std::forward<Body>(body)();
    else
        guard(where, std::forward<Body>(body));
}

} // namespace tavrin
