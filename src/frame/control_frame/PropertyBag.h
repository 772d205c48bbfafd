#pragma once

#include "base/export/Export.h"

#include <QJsonObject>
#include <QSharedDataPointer>
#include <QString>
#include <QVariant>

#include <vector>

namespace tavrin {

/// The saved properties of one control: named values in the order in which they were written. Keys compare
/// without case. It belongs to the form file; a control holds it only while it reads or writes.
class TAVRIN_EXPORT PropertyBag
{
public:
    /// One saved property.
    struct Entry
    {
        QString key;    ///< its name, as it was written
        QVariant value; ///< what was saved
    };

    PropertyBag();
    PropertyBag(const PropertyBag& other);
    PropertyBag& operator=(const PropertyBag& other);
    ~PropertyBag();

    /// The stored value, or `fallback` when there is none.
    QVariant ReadProperty(const QString& key, const QVariant& fallback) const;
    /// Stores the value; a value that equals `fallback` is not stored, and removes one that is.
    void WriteProperty(const QString& key, const QVariant& value, const QVariant& fallback);

    /// Whether a value is stored, be it Null.
    bool contains(const QString& key) const;
    /// All of them, in the order in which they were written.
    const std::vector<Entry>& entries() const;

    /// Booleans, numbers, texts and Null as JSON has them. Colours, fonts and pictures are objects:
    /// {"color": "0x80000005"}, {"font": {"name": ..., "size": points, "weight": ...}}, {"picture": PNG as
    /// base64}. Empty is saved as Null. Raises an `Error` for a value that is none of these.
    QJsonObject toJson() const;
    /// An entry that cannot be read is left out; `problems`, when given, gets one sentence for each.
    static PropertyBag fromJson(const QJsonObject& object, QStringList* problems = nullptr);

private:
    class Q_DECL_HIDDEN Private;
    QSharedDataPointer<Private> d;
};

} // namespace tavrin
