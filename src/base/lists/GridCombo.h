#pragma once

#include "base/export/Export.h"

#include <QString>
#include <QVariant>
#include <QVariantList>

#include <array>
#include <memory>

namespace tavrin {

/// The data of a grid combo: rows counted from 1, columns from 0.
class TAVRIN_EXPORT GridArray
{
public:
    /// Short text, long text, number of the code, and "1" or "0" for one in use or not.
    static constexpr int ColumnCount = 4;
    /// The values of one row by their columns; a column that was not set is Empty.
    using Row = std::array<QVariant, ColumnCount>;

    GridArray();
    GridArray(const GridArray& other);
    GridArray& operator=(const GridArray& other);
    /// Leaves the other array empty, and in use.
    GridArray(GridArray&& other) noexcept;
    GridArray& operator=(GridArray&& other) noexcept;
    ~GridArray();

    /// Number of the last row; 0 while the array is empty.
    int UpperBound() const;
    /// Raises an `Error` outside the array.
    QVariant Value(int row, int column) const;
    /// Appends a row; it gets the number behind the last.
    void AppendRow(Row row);
    /// Raises an `Error` outside the array.
    void DeleteRow(int row);
    /// Whether two values are equal as numbers or texts, as `Find` compares them. Null equals Null only.
    static bool IsSame(const QVariant& a, const QVariant& b);
    /// The first row from `fromRow` on whose cell is the same as `value`; 0 when there is none. Raises an
    /// `Error` for a column that is not there.
    int Find(int fromRow, int column, const QVariant& value) const;
    /// Deletes for each of the values, in their order, the first row from `fromRow` on that `Find` gives for
    /// it: a value that stands twice in the list takes two rows with it. One pass over the rows where the
    /// column and the values are numbers and texts.
    void DeleteFirstOfEach(int fromRow, int column, const QVariantList& values);

private:
    const Row& rowAt(int row) const;

    struct Private;
    std::unique_ptr<Private> d;
};

/// A combo box whose list is a grid over a `GridArray`. What fills it and selects in it needs no more than
/// this.
class TAVRIN_EXPORT GridCombo
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
    /// Makes a row the current one by its number; Null makes none. A widget may raise its row change before
    /// it returns, and a follower may delete the widget.
    virtual void SetBookmark(const QVariant& row) = 0;
    /// Puts a text into the box, whatever the current row is.
    virtual void SetText(const QString& text) = 0;
};

} // namespace tavrin
