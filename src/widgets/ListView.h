#pragma once

#include "base/Event.h"
#include "base/Twips.h"

#include <QTreeView>

#include <memory>
#include <optional>

namespace tavrin {

/// A list in columns. Rows and columns have keys; a row has a text for each column, that of the first
/// column given when it is added.
///
/// One row may be selected, as a whole. A press of the mouse selects the row below it first and then raises
/// `MouseDown`; the menu key and Shift+F10 raise it as the right button does, at the selected row. The last
/// column that shows reaches to the list's end.
///
///     list->AddColumnHeader("key", "", 0); // holds texts, is never shown
///     list->AddColumnHeader("name", "Name", 3000);
///     list->SetSortKey("key");
///     list->AddItem("key_10", "key_10");
///     list->SetSubItem("key_10", "name", "Smith, John");
class ListView : public QTreeView
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
    /// A column of width 0 holds texts only: neither eyes nor screen readers find it.
    void AddColumnHeader(const QString& key, const QString& caption, Twips width);
    /// The width that was set last, whatever the person has made of it since.
    Twips ColumnWidth(const QString& key) const;
    /// Has no effect on a column that holds texts only.
    void SetColumnWidth(const QString& key, Twips width);
    /// Sorts the rows by the texts of this column, without regard to case, from now on; rows of equal texts
    /// stand in the order in which they came. Without it, all rows do.
    void SetSortKey(const QString& columnKey);
    /// Whether the person may drag columns to other places.
    void SetAllowColumnReorder(bool allow);

    void Clear();
    int Count() const;
    /// Raises error 35602 when the list has the key already.
    void AddItem(const QString& key, const QString& text);
    /// Raises error 35601 for a key that the list does not have.
    void SetSubItem(const QString& key, const QString& columnKey, const QString& text);
    /// "" for a column that has no text yet. Raises error 35601 for a key that the list does not have.
    QString SubItem(const QString& key, const QString& columnKey) const;
    /// Raises error 35601 for a key that the list does not have.
    void Remove(const QString& key);
    bool Contains(const QString& key) const;
    /// Key of the row at `index`, counted from 0 in the order shown. Raises error 35601 outside.
    QString Key(int index) const;

    /// Key of the selected row; nothing when none is.
    std::optional<QString> SelectedItem() const;
    /// Selects the row and brings it into view; nothing selects none. Raises error 35601 for a key that the
    /// list does not have.
    void SetSelectedItem(const std::optional<QString>& key);

    /// Button bits (1 left, 2 right, 4 middle), shift state, and the place inside the list.
    Event<int, int, Twips, Twips> MouseDown;

    QSize sizeHint() const override;

protected:
    bool event(QEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                         const QEvent* event) const override;

private:
    class Model;
    void applyWidths();
    void raiseMouseDown(int button, Qt::KeyboardModifiers modifiers, const QPoint& place);
    QPoint placeOfMenu() const;
    QString cutTextAt(const QPoint& place) const;

    std::unique_ptr<Model> m_model;
};

} // namespace tavrin
