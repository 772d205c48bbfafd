#include "GridCombo.h"

#include "base/Error.h"
#include "base/Variant.h"

#include <algorithm>

namespace tavrin {

const GridArray::Row& GridArray::rowAt(int row) const
{
    if (row < 1 || row > UpperBound())
        throw Error(QStringLiteral("The grid has no row %1").arg(row));
    return m_rows[static_cast<std::size_t>(row - 1)];
}

QVariant GridArray::Value(int row, int column) const
{
    if (column < 0 || column >= ColumnCount)
        throw Error(QStringLiteral("The grid has no column %1").arg(column));
    return rowAt(row).at(static_cast<std::size_t>(column));
}

void GridArray::DeleteRow(int row)
{
    rowAt(row);
    m_rows.erase(m_rows.begin() + (row - 1));
}

int GridArray::Find(int fromRow, int column, const QVariant& value) const
{
    const bool hasText = !IsNull(value) && !IsEmpty(value);
    const QString text = ToText(value);
    for (int row = std::max(fromRow, 1); row <= UpperBound(); ++row) {
        const QVariant cell = Value(row, column);
        if (SameValue(cell, value) || (hasText && !IsNull(cell) && !IsEmpty(cell) && ToText(cell) == text))
            return row;
    }
    return 0;
}

} // namespace tavrin
