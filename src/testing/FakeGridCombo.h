#pragma once

#include "base/lists/GridCombo.h"
#include "base/values/Variant.h"

#include <QStringList>

namespace tavrin::test {

/// A grid combo without a face. It notes what was done to it, in order.
class FakeGridCombo final : public GridCombo
{
public:
    GridArray& Array() override { return m_array; }
    void ResetArray() override
    {
        m_array = {};
        log << QStringLiteral("reset");
    }
    void Rebind() override { log << QStringLiteral("rebind %1").arg(m_array.UpperBound()); }
    QVariant Bookmark() const override { return m_bookmark; }
    void SetBookmark(const QVariant& row) override
    {
        m_bookmark = row;
        log << QStringLiteral("bookmark ") + ToText(row);
    }
    void SetText(const QString& text) override
    {
        m_text = text;
        log << QStringLiteral("text \"%1\"").arg(text);
    }
    QString text() const { return m_text; }

    /// The values in column 2, row by row.
    QVariantList values() const
    {
        QVariantList list;
        for (int row = 1; row <= m_array.UpperBound(); ++row)
            list << m_array.Value(row, 2);
        return list;
    }

    QStringList log;

private:
    GridArray m_array;
    QVariant m_bookmark = Null();
    QString m_text = QStringLiteral("old text");
};

} // namespace tavrin::test
