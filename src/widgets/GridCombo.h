#pragma once

#include <QString>
#include <QVariant>

#include <array>
#include <vector>

namespace tavrin {

/// The data of a grid combo: rows counted from 1, columns from 0.
class GridArray
{
public:
    static constexpr int ColumnCount = 4;
    using Row = std::array<QVariant, ColumnCount>;

    /// Number of the last row; 0 while the array is empty.
    int UpperBound() const { return static_cast<int>(m_rows.size()); }
    /// Raises an `Error` outside the array.
    QVariant Value(int row, int column) const;
    void AppendRow(Row row) { m_rows.push_back(std::move(row)); }
    /// Raises an `Error` outside the array.
    void DeleteRow(int row);
    /// The first row from `fromRow` on whose cell equals `value` as a number or text; 0 when there is none.
    int Find(int fromRow, int column, const QVariant& value) const;

private:
    const Row& rowAt(int row) const;
    std::vector<Row> m_rows;
};

/// A combo box whose list is a grid over a `GridArray`.
class GridCombo
{
public:
    virtual ~GridCombo() = default;

    /// The array that the combo shows; shared with whoever gave it.
    virtual GridArray& Array() = 0;
    /// Gives the combo a new empty array.
    virtual void ResetArray() = 0;
    /// Shows the array's present content.
    virtual void Rebind() = 0;
    /// The current row; Null when there is none.
    virtual QVariant Bookmark() const = 0;
    virtual void SetBookmark(const QVariant& row) = 0;
    virtual void SetText(const QString& text) = 0;
};

} // namespace tavrin
