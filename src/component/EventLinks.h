#pragma once

#include "component/CallResult.h"

#include <QObject>
#include <QString>

namespace tavrin {

/// Calls the program at each event of the object, which keeps the subscription until it dies. Returns the
/// number that ends it. Raises TV_E_MEMBERNOTFOUND.
quint64 subscribeToEvent(QObject& object, TvHandle handle, const QString& event, TvEventCall call,
                         void* context);

/// False when the object has no such subscription.
bool unsubscribe(QObject& object, quint64 cookie);

/// Ends all subscriptions: nothing more is told of the object.
void unsubscribeAll(QObject& object);

} // namespace tavrin
