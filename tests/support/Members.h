#pragma once

#include "frame/control_frame/PropertyBag.h"

#include <QMetaMethod>
#include <QMetaProperty>
#include <QSignalSpy>
#include <QStringList>

#include <utility>
#include <vector>

// What the tests of controls see of their members, and of the bags that these are saved in.

namespace tavrin::test {

/// The keys that `PropertyChanged` bore.
inline QStringList keysOf(const QSignalSpy& spy)
{
    QStringList keys;
    for (const auto& call : spy)
        keys << call.at(0).toString();
    return keys;
}

inline QStringList keysOf(const PropertyBag& bag)
{
    QStringList keys;
    for (const PropertyBag::Entry& entry : bag.entries())
        keys << entry.key;
    return keys;
}

/// A bag of these values, stored whatever the defaults.
inline PropertyBag bagOf(const std::vector<std::pair<const char*, QVariant>>& values)
{
    PropertyBag bag;
    for (const auto& [key, value] : values)
        bag.WriteProperty(QString::fromLatin1(key), value, QVariant());
    return bag;
}

/// The properties and signals that a class declares itself, in their order.
inline QStringList ownProperties(const QMetaObject& meta)
{
    QStringList names;
    for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i)
        names << QString::fromLatin1(meta.property(i).name());
    return names;
}

inline QStringList ownSignals(const QMetaObject& meta)
{
    QStringList names;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        if (meta.method(i).methodType() == QMetaMethod::Signal)
            names << QString::fromLatin1(meta.method(i).methodSignature());
    }
    return names;
}

} // namespace tavrin::test
