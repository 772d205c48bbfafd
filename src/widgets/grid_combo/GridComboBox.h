#pragma once

#include "base/lists/GridCombo.h"
#include "widgets/drawing/SharedFont.h"
#include "widgets/grid_combo/GridTable.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QWidget>

#include <optional>

namespace tavrin {

class GridComboBox;

/// One column of a grid combo.
class GridColumn
{
public:
    /// Stands above the column in the list; "" at first.
    QString Caption() const { return m_caption; }
    void SetCaption(const QString& caption) { m_caption = caption; }
    /// Whether the list has room for the column; true at first. A hidden one has its values all the same.
    bool Visible() const { return m_isVisible; }
    void SetVisible(bool visible) { m_isVisible = visible; }

    /// The column's value in the current row; Null when there is none.
    QVariant Value() const;
    /// The column's text in a row of the array; "" in a row that the array does not have, and for Null.
    QString CellText(const QVariant& bookmark) const;

private:
    friend class GridComboBox;
    const GridComboBox* m_combo = nullptr;
    int m_index = 0;
    QString m_caption;
    bool m_isVisible = true;
};

/// A combo box whose list has columns with headers, over an array of rows. The person can only pick.
///
///     auto* combo = new GridComboBox(this);
///     combo->Columns(0).SetCaption(u"Code"_s);
///     combo->Columns(3).SetVisible(false);
///     combo->ResetArray();
///     combo->Array().AppendRow({u"SO"_s, u"Sheriff's Office"_s, 7, u"1"_s});
///     combo->Rebind();
///     m_row = combo->RowChange.subscribe([this] { show(m_combo->Columns(1).Value()); });
///     combo->SetBookmark(1);
///
/// `RowChange` is raised before `SetBookmark` returns when the current row becomes another one, and by the
/// person's choice. After `ResetArray` or `Rebind` a row is the one before when its cells are the same,
/// wherever it stands now; those two by themselves raise it only when the first rows arrive and none was
/// current, so that a list can be filled anew and its row found again without a word.
///
/// | key | does |
/// |---|---|
/// | Down, Up, Page Down, Page Up, Home, End | choose another row; in the open list mark it |
/// | letters and digits | the same with the next row whose short text (column 0) begins so |
/// | Alt+Down, Alt+Up, F4 | open the list, or close it |
/// | Space | opens the list |
/// | Enter, Tab | take the marked row and close |
/// | Escape | closes the list; the row stays as it was |
/// | Ctrl+C | copies the text |
///
/// Enter and Escape mean an open list whatever the shift state. With the list closed Enter, Escape and Tab
/// are left to the form. A click on a row closes the list first and then takes the row. The list is a window
/// that never takes the focus; it closes on a press of the mouse elsewhere, when the box loses the focus, is
/// hidden, disabled or moved, and when its window is left.
class GridComboBox final : public QWidget, public GridCombo, private GridTableSource
{
    Q_OBJECT

public:
    explicit GridComboBox(QWidget* parent = nullptr);
    ~GridComboBox() override;

    /// Raises an `Error` while there is no array, as at first.
    GridArray& Array() override;
    const GridArray& Array() const;
    bool HasArray() const { return m_array.has_value(); }
    /// Closes the list.
    void ResetArray() override;
    /// Takes the array away; no row is current then. Raises `RowChange` when one was.
    void RemoveArray();
    /// Also needed when rows have changed. The text becomes the current row's short text.
    void Rebind() override;

    /// Null when no row is current, or the array does not have it yet.
    QVariant Bookmark() const override;
    /// Null for no row. A row that the array does not have waits until it is there. The text becomes the
    /// row's short text. An error in a handler of `RowChange` reaches the caller.
    void SetBookmark(const QVariant& row) override;

    /// What the box shows, until the next row.
    QString Text() const { return m_text; }
    void SetText(const QString& text) override;

    /// Raises an `Error` for an index outside the array's columns.
    GridColumn& Columns(int index);

    /// Nothing happens while the box is hidden or disabled.
    void OpenList();
    /// Takes no row.
    void CloseList();
    bool ListIsOpen() const;

    /// Shared by reference; the box has the height of its line.
    const FontPtr& Font() const { return m_font.get(); }
    void SetFont(const FontPtr& font) { m_font.set(font); }
    Color BackColor() const { return m_backColor; }
    void SetBackColor(Color color);
    Color ForeColor() const { return m_foreColor; }
    void SetForeColor(Color color);
    /// Its own state, whatever its form's.
    bool Enabled() const { return isEnabledTo(parentWidget()); }
    void SetEnabled(bool enabled) { setEnabled(enabled); }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    /// The current row is another one. A handler may delete the box, also when a click brought it here.
    Event<> RowChange;
    /// A row comes into view: its number, and how it shows. What a handler throws is reported, once for this
    /// list.
    Event<int, GridRowStyle&> FetchRowStyle;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    friend class GridColumn;

    /// The row that the followers know of.
    struct ToldRow
    {
        int row;
        GridArray::Row cells;
        bool isMoved; ///< the array may be another one since
    };

    int rowCount() const override { return m_array ? m_array->UpperBound() : 0; }
    int columnCount() const override { return GridArray::ColumnCount; }
    QString caption(int column) const override;
    bool isShown(int column) const override;
    QString text(int row, int column) const override;
    GridRowStyle style(int row) const override;

    bool hasRow(int row) const { return row >= 1 && row <= rowCount(); }
    QVariant cell(int row, int column) const;
    GridArray::Row cellsOf(int row) const;
    bool isTold(int row) const;
    void showRow();
    void tellRow();

    void makeList();
    void placeList();
    void markChanged();
    void toggleList();
    /// Closes, then makes the row current if there is one.
    void take(int row);
    bool answersKey(const QKeyEvent& event);
    bool answersListKey(int key);
    bool moveBy(int keyCode);
    bool typeAhead(const QString& text);
    int rowOfText(const QString& text, int from) const;
    /// Where keys move from: the marked row of the open list, else the current row; 0 for none.
    int keyRow() const;
    void moveTo(int row);

    std::optional<GridArray> m_array;
    std::array<GridColumn, GridArray::ColumnCount> m_columns;
    int m_row = 0;
    std::optional<ToldRow> m_told;
    QString m_text;
    SharedFont m_font;
    Color m_backColor = SystemColor::WindowBackground;
    Color m_foreColor = SystemColor::WindowText;

    // A child of the window, which may die before this box.
    QPointer<QWidget> m_popup;
    QPointer<GridTable> m_table;
    std::vector<Subscription> m_tableSubscriptions;
    QRect m_place; // of the box on the screen when the list opened
    QString m_typed;
    QElapsedTimer m_sinceTyped;
    bool m_isClicked = false; // a row of the list, just now
    mutable bool m_styleFailed = false;
};

} // namespace tavrin
