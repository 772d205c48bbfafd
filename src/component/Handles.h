#pragma once

#include "component/CallResult.h"
#include "frame/control_frame/UserControl.h"
#include "frame/host_contracts/Records.h"

#include <QHash>
#include <QPointer>
#include <QVariant>

#include <map>

namespace tavrin {

/// Raises TV_E_WRONGTHREAD on another thread than the controls' one: that of the application object, or,
/// before there is one, the first that came here.
void wantOwnThread();

/// Controls, other objects and records by the numbers that programs know them by. A number never comes back.
/// On the controls' thread only.
class Handles
{
public:
    Handles() = default;
    Handles(const Handles&) = delete;
    Handles& operator=(const Handles&) = delete;

    /// The object's number, the same as long as it lives; 0 for nullptr.
    TvHandle add(QObject* object);
    TvHandle add(const HostObjectPtr& record);
    /// Forgets the number.
    void remove(TvHandle handle);

    // These raise TV_E_HANDLE for what is not there any more.
    QObject& object(TvHandle handle);
    /// Raises TV_E_NOINTERFACE for an object that is no control.
    UserControl& control(TvHandle handle);
    /// Raises TV_E_NOINTERFACE for what is no record.
    HostObjectPtr record(TvHandle handle);
    /// A `QObject*` or a `HostObjectPtr`; a null object for 0.
    QVariant valueOf(TvHandle handle);

    /// The record that the section behind the handle has read last.
    HostObjectPtr& lastRecord(TvHandle handle);
    /// The controls that live.
    QList<UserControl*> controls() const;

private:
    struct Entry
    {
        QPointer<QObject> object;
        HostObjectPtr record; // of a control the one that it read last
        bool isObject = false;
    };

    Entry& entry(TvHandle handle);

    std::map<TvHandle, Entry> m_entries;
    QHash<const QObject*, TvHandle> m_numbers;
    TvHandle m_last = 0;
};

/// The table of this program.
Handles& handles();

} // namespace tavrin
