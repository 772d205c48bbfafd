#pragma once

#include "base/export/Export.h"
#include "base/failure/Event.h"
#include "base/values/Twips.h"

#include <QIcon>
#include <QTreeView>

#include <memory>
#include <optional>

namespace tavrin {

/// A list in columns. Rows and columns have keys; a row has a text for each column, that of the first
/// column given when it is added, and beside a text there may be an icon.
///
/// One row may be selected, as a whole. A press of the mouse selects the row below it first and then raises
/// `MouseDown`, or the other way round; behind both comes `ItemClick`. The menu key and Shift+F10 raise
/// `MouseDown` as the right button does, at the selected row. The last column that shows reaches to the
/// list's end.
///
///     list->AddColumnHeader("key", "", 0); // holds texts, is never shown
///     list->AddColumnHeader("name", "Name", 3000);
///     list->SetSortKey("key");
///     list->AddItem("key_10", "key_10");
///     list->SetSubItem("key_10", "name", "Smith, John");
class TAVRIN_COMPANION_EXPORT ListView : public QTreeView
{
    Q_OBJECT

public:
    /// Numbers of the errors that a wrong key raises.
    static constexpr int MissingKeyNumber = 35601;
    static constexpr int DuplicateKeyNumber = 35602;

    explicit ListView(QWidget* parent = nullptr);
    ~ListView() override;

    /// Empties the list as well.
    void ClearColumnHeaders();
    /// Keys of columns compare without case. A column of width 0 holds texts only: neither eyes nor screen
    /// readers find it.
    void AddColumnHeader(const QString& key, const QString& caption, Twips width);
    /// The width that was set last, whatever the person has made of it since.
    Twips ColumnWidth(const QString& key) const;
    /// Has no effect on a column that holds texts only. Leaves what the person has made of the others.
    void SetColumnWidth(const QString& key, Twips width);
    /// Where the column begins, from the left end of the columns, as it stands now.
    Twips ColumnLeft(const QString& key) const;
    /// No column gets narrower than this, neither by the person nor for want of room.
    void SetMinimumColumnWidth(Twips width);
    /// Sorts the rows by the texts of this column, without regard to case, from now on; rows of equal texts
    /// stand in the order in which they came. Without it, all rows do.
    void SetSortKey(const QString& columnKey);
    /// Whether the person may drag columns to other places.
    void SetAllowColumnReorder(bool allow);

    /// Height of each row; 0, as at first, for that of its texts.
    void SetRowHeight(int pixels);
    /// Whether the selected row is marked only while the list has the focus. At first off.
    void SetHideSelection(bool hide);
    /// Whether a line surrounds the list, as at first, or only while it has the focus.
    void SetBorder(bool border);
    /// Whether `MouseDown` comes before the press selects a row. At first off.
    void SetMouseDownFirst(bool first);
    /// Whether there are more rows than fit.
    bool HasVerticalScrollBar();

    void Clear();
    int Count() const;
    /// Raises error 35602 when the list has the key already.
    void AddItem(const QString& key, const QString& text);
    /// Raises error 35601 for a key that the list does not have.
    void SetSubItem(const QString& key, const QString& columnKey, const QString& text);
    /// "" for a column that has no text yet. Raises error 35601 for a key that the list does not have.
    QString SubItem(const QString& key, const QString& columnKey) const;
    /// An icon before the text of a cell; the null icon for none. Screen readers say `name` behind the text.
    /// Raises error 35601 for a key that the list does not have.
    void SetSubItemIcon(const QString& key, const QString& columnKey, const QIcon& icon,
                        const QString& name = {});
    /// What shows while the mouse rests on a cell, as it stands; where there is none, a text that is cut
    /// shows whole. Raises error 35601 for a key that the list does not have.
    void SetSubItemToolTip(const QString& key, const QString& columnKey, const QString& text);
    /// A mark of the row that nobody sees; "" at first. Raises error 35601 for a key that the list does not
    /// have.
    QString Tag(const QString& key) const;
    void SetTag(const QString& key, const QString& tag);
    /// Raises error 35601 for a key that the list does not have.
    void Remove(const QString& key);
    /// Removes all of these rows, or none when the list does not have one of them: error 35601.
    void Remove(const QStringList& keys);
    bool Contains(const QString& key) const;
    /// Index of the row, counted from 0 in the order shown. Raises error 35601 for a key that the list does
    /// not have.
    int IndexOf(const QString& key) const;
    /// Key of the row at `index`, counted from 0 in the order shown. Raises error 35601 outside.
    QString Key(int index) const;

    /// Key of the selected row; nothing when none is.
    std::optional<QString> SelectedItem() const;
    /// Selects the row and brings it into view; nothing selects none. Raises error 35601 for a key that the
    /// list does not have.
    void SetSelectedItem(const std::optional<QString>& key);
    /// Key of the row that is marked whether or not it is selected, and wherever the focus is; nothing when
    /// none is. The mark goes with its row.
    std::optional<QString> DropHighlight() const;
    /// Raises error 35601 for a key that the list does not have.
    void SetDropHighlight(const std::optional<QString>& key);
    /// Key of the row at a place inside the list; nothing beside the rows.
    std::optional<QString> HitTest(Twips x, Twips y) const;
    /// Scrolls the row into view, but never a row away from below the mouse whose press is being handled.
    /// Raises error 35601 for a key that the list does not have.
    void EnsureVisible(const QString& key);

    /// Button bits (1 left, 2 right, 4 middle), shift state, and the place inside the list.
    Event<int, int, Twips, Twips> MouseDown;
    /// The person has pressed the mouse on this row, or moved the selection to it with the keyboard.
    Event<const QString&> ItemClick;
    /// The left button has been pressed twice, on a row or beside the rows.
    Event<> DblClick;
    /// Key code by reference, shift state. A handler that sets the code to 0 swallows the key.
    /// The repeats of a Delete or Enter that is held down are swallowed, and not told.
    Event<int&, int> KeyDown;
    /// Local paths of the files that were dropped, and by reference the effect: 1 when they were taken, 0, as
    /// it is at first, when not. Something without local files comes with no paths. While nobody listens the
    /// list takes no drops.
    Event<const QStringList&, int&> OLEDragDrop;

    QSize sizeHint() const override;

protected:
    bool event(QEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                         const QEvent* event) const override;

private:
    class Model;
    class RowDelegate;
    void applyWidth(int column);
    void letLastColumnShrink();
    void raiseMouseDown(int button, Qt::KeyboardModifiers modifiers, const QPoint& place);
    void raiseItemClick(const QString& key);
    bool swallows(const QKeyEvent& event);
    void openMenuByKey();
    void takePress(QMouseEvent& event, const std::optional<QString>& pressed);
    std::optional<QString> keyBelow(const QPoint& placeInViewport) const;
    QPoint placeOfMenu() const;
    void offerDrop(QDropEvent& event);
    void setDropOffered(bool offered);
    QString toolTipAt(const QPoint& place) const;
    bool isMarked(const QModelIndex& index) const;

    std::unique_ptr<Model> m_model;
    QPersistentModelIndex m_dropHighlight;
    int m_rowHeight = 0;
    bool m_hideSelection = false;
    bool m_border = true;
    bool m_mouseDownFirst = false;
    bool m_pressing = false;    // handlers of a press of the mouse are running
    bool m_dropOffered = false; // files are held over the list
};

} // namespace tavrin
