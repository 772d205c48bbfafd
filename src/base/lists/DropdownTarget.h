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

    virtual void Clear() = 0;
    virtual void AddItem(const QString& text, qint32 itemData) = 0;
    virtual int ListCount() const = 0;
    /// "" outside the list.
    virtual QString List(int index) const = 0;
    /// 0 outside the list.
    virtual qint32 ItemData(int index) const = 0;
    virtual int ListIndex() const = 0;
    /// Raises the widget's `Click` when the selection changes.
    virtual void SetListIndex(int index) = 0;
};

} // namespace tavrin
