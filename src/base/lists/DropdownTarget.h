#pragma once

#include "base/export/Export.h"

#include <QString>
#include <QVariant>

namespace tavrin {

/// A list that can be filled with entries of a text and 32-bit data, and whose selection is an index counted
/// from 0, -1 for none.
class TAVRIN_EXPORT DropdownTarget
{
public:
    virtual ~DropdownTarget() = default;

    /// Takes all entries out, and the selection with them.
    virtual void Clear() = 0;
    /// Appends an entry; `itemData` is the number that goes with it, such as a code.
    virtual void AddItem(const QString& text, qint32 itemData) = 0;
    /// Number of the entries.
    virtual int ListCount() const = 0;
    /// "" outside the list.
    virtual QString List(int index) const = 0;
    /// 0 outside the list.
    virtual qint32 ItemData(int index) const = 0;
    /// Index of the selected entry, counted from 0; -1 for none.
    virtual int ListIndex() const = 0;
    /// Raises the widget's `Click` when the selection changes.
    virtual void SetListIndex(int index) = 0;
};

} // namespace tavrin
