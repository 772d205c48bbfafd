#pragma once

#include "base/lists/DropdownTarget.h"

#include <QList>
#include <QPair>

namespace tavrin::test {

/// A list without a widget, for whatever fills lists.
class FakeDropdown : public DropdownTarget
{
public:
    void Clear() override
    {
        m_rows.clear();
        m_index = -1;
    }
    void AddItem(const QString& text, qint32 itemData) override { m_rows.append({text, itemData}); }
    int ListCount() const override { return static_cast<int>(m_rows.size()); }
    QString List(int index) const override { return m_rows.value(index).first; }
    qint32 ItemData(int index) const override { return m_rows.value(index).second; }
    int ListIndex() const override { return m_index; }
    void SetListIndex(int index) override { m_index = index; }

private:
    QList<QPair<QString, qint32>> m_rows;
    int m_index = -1;
};

} // namespace tavrin::test
